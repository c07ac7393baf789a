#include "simulator/sample/sample.h"

#include <QFile>

// A static library's resource is registered only when somebody asks for it, from the global namespace.
static void registerResource()
{
    Q_INIT_RESOURCE(sample);
}

namespace panelkit::simulator {

QByteArray sampleProject()
{
    registerResource();
    QFile file(QStringLiteral(":/panelkit/sample/bottling.json"));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace panelkit::simulator
