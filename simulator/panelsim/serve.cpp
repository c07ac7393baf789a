#include "simulator/panelsim/commands.h"
#include "simulator/panelsim/interrupt.h"
#include "simulator/plc/bottlingline.h"
#include "simulator/plc/plcserver.h"

#include <QCoreApplication>

#include <system_error>

namespace panelkit::simulator {

namespace {

QString faultNames()
{
    QStringList names;
    for (const std::string_view name : plcFaultNames)
        names << QString::fromLatin1(name.data(), static_cast<int>(name.size()));
    return names.join(QLatin1String(", "));
}

} // namespace

ExitCode runServe(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.addOption({QStringLiteral("port"),
                      QStringLiteral("Listen on this port of 127.0.0.1; without it on a free one."),
                      QStringLiteral("N")});
    parser.addOption({QStringLiteral("fault"), QStringLiteral("Answer with a fault: %1.").arg(faultNames()),
                      QStringLiteral("NAME")});
    const auto ended = readOptions(
        parser, QStringLiteral("Runs the bottling line, a Modbus TCP server, until Ctrl-C."), arguments, 0);
    if (ended)
        return *ended;

    PlcServer::Options options;
    if (parser.isSet(QStringLiteral("port"))) {
        bool isNumber = false;
        options.port = parser.value(QStringLiteral("port")).toUShort(&isNumber);
        if (!isNumber || options.port == 0) {
            complain(QStringLiteral("--port '%1' is not a port from 1 to 65535")
                         .arg(parser.value(QStringLiteral("port"))));
            return ExitCode::WrongUse;
        }
    }
    PlcFaultSetting setting;
    if (parser.isSet(QStringLiteral("fault"))) {
        const QString name = parser.value(QStringLiteral("fault"));
        const auto fault = plcFaultNamed(name.toStdString());
        if (!fault) {
            complain(QStringLiteral("--fault '%1' is none of %2").arg(name, faultNames()));
            return ExitCode::WrongUse;
        }
        setting.fault = *fault;
    }

    PlcMemory memory(BottlingLine::units(), BottlingLine::registersPerTable);
    BottlingLine line(memory);
    try {
        PlcServer server(memory, options);
        if (parser.isSet(QStringLiteral("fault")))
            server.setFault(setting);
        const BottlingLineClock clock(line);
        quitOnInterrupt();
        print(QStringLiteral("The bottling line answers at 127.0.0.1:%1; Ctrl-C ends it.\n")
                  .arg(server.port()));
        QCoreApplication::exec();
    } catch (const std::system_error &fault) {
        complain(QStringLiteral("127.0.0.1:%1: %2: give another --port, or none for a free one")
                     .arg(options.port)
                     .arg(QString::fromLocal8Bit(fault.what())));
        return ExitCode::Failed;
    }
    return ExitCode::Done;
}

} // namespace panelkit::simulator
