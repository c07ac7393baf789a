#include "runtime/devicemodel.h"

#include "runtime/systempath.h"

#include <QSettings>
#include <QString>
#include <QVariant>

namespace panelkit {

namespace {

bool namesBox(const QString &model)
{
    return model.contains(QLatin1String("Keld"));
}

} // namespace

QString deviceModel()
{
    const QSettings configuration(systemPath("/usr/tesk42/config.ini"), QSettings::IniFormat);
    return configuration.value(QLatin1String("MODEL")).toString();
}

bool isBoxDevice()
{
    return namesBox(deviceModel());
}

bool isIotDevice()
{
    const QString model = deviceModel();
    return model.contains(QLatin1Char('W')) || namesBox(model);
}

} // namespace panelkit
