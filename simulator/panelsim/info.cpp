#include "runtime/systemroot.h"
#include "simulator/host/devicefigures.h"
#include "simulator/host/panelfiles.h"
#include "simulator/panelsim/commands.h"
#include "simulator/panelsim/interrupt.h"
#include "simulator/panelsim/texttable.h"
#include "simulator/panelsim/watching.h"

#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

#include <thread>

namespace panelkit::simulator {

namespace {

QString withUnit(double value, const char *unit)
{
    return QString::number(value, 'f', 1) + QLatin1Char(' ') + QLatin1String(unit);
}

QString table(const DeviceFigures &figures)
{
    const QString memoryNote =
        figures.isMemoryWrapped()
            ? QStringLiteral("a panel counts to 4 GiB and begins again: here %1 KiB are free")
                  .arg(figures.freeMemoryOfMachine)
            : QString();
    return alignedRows(
        {{QStringLiteral("CPU load"), withUnit(figures.load, "%")},
         {QStringLiteral("Free memory"), QStringLiteral("%1 KiB").arg(figures.freeMemory), memoryNote},
         {QStringLiteral("Disk"), withUnit(figures.disk.totalMB, "MiB"), figures.diskPath},
         {QStringLiteral("  used"), withUnit(figures.disk.usedMB, "MiB")},
         {QStringLiteral("  free"), withUnit(figures.disk.freeMB, "MiB")},
         {QStringLiteral("Device model"),
          figures.model.isEmpty() ? QStringLiteral("not set") : figures.model},
         {QStringLiteral("Device kind"), deviceKind(figures)},
         {QStringLiteral("IoT version"), QString::number(figures.iotVersion)}});
}

QJsonObject json(const DeviceFigures &figures)
{
    return {{QStringLiteral("cpuLoadPercent"), figures.load},
            {QStringLiteral("freeMemoryKiB"), static_cast<double>(figures.freeMemory)},
            {QStringLiteral("freeMemoryWrapped"), figures.isMemoryWrapped()},
            {QStringLiteral("disk"),
             QJsonObject{{QStringLiteral("path"), figures.diskPath},
                         {QStringLiteral("totalMiB"), static_cast<double>(figures.disk.totalMB)},
                         {QStringLiteral("usedMiB"), static_cast<double>(figures.disk.usedMB)},
                         {QStringLiteral("freeMiB"), static_cast<double>(figures.disk.freeMB)}}},
            {QStringLiteral("model"), figures.model},
            {QStringLiteral("isIotDevice"), figures.isIotDevice},
            {QStringLiteral("isBoxDevice"), figures.isBoxDevice},
            {QStringLiteral("iotVersion"), figures.iotVersion}};
}

void printFigures(const DeviceFigures &figures, bool asJson, bool onOneLine)
{
    if (!asJson) {
        print(table(figures));
        return;
    }
    const auto format = onOneLine ? QJsonDocument::Compact : QJsonDocument::Indented;
    print(QString::fromUtf8(QJsonDocument(json(figures)).toJson(format)));
    if (onOneLine)
        print(QStringLiteral("\n"));
}

void addOptions(QCommandLineParser &parser)
{
    parser.addOption(
        {QStringLiteral("root"),
         QStringLiteral("The panel whose files lie below DIR; without it this machine is the panel."),
         QStringLiteral("DIR")});
    parser.addOption({QStringLiteral("disk"),
                      QStringLiteral("The disk that holds PATH; without it the one of the panel's files."),
                      QStringLiteral("PATH")});
    parser.addOption(
        {QStringLiteral("interval"),
         QStringLiteral("The time over which the load is measured, in milliseconds; 1000 without it."),
         QStringLiteral("MS"), QStringLiteral("1000")});
    parser.addOption(
        {QStringLiteral("json"), QStringLiteral("Print JSON; with --watch one line each time.")});
    parser.addOption(
        {QStringLiteral("watch"), QStringLiteral("Draw anew after each interval, until Ctrl-C.")});
}

// Nothing after a complaint.
std::optional<std::chrono::milliseconds> readInterval(const QCommandLineParser &parser)
{
    const QString text = parser.value(QStringLiteral("interval"));
    bool isNumber = false;
    const int milliseconds = text.toInt(&isNumber);
    if (isNumber && milliseconds >= 10 && milliseconds <= 3'600'000)
        return std::chrono::milliseconds(milliseconds);
    complain(QStringLiteral("--interval '%1' is not a number of milliseconds from 10 to 3600000").arg(text));
    return std::nullopt;
}

} // namespace

ExitCode runInfo(const QStringList &arguments)
{
    QCommandLineParser parser;
    addOptions(parser);
    const auto ended = readOptions(
        parser, QStringLiteral("Shows the panel's load, free memory, disk, device model and kind."),
        arguments, 0);
    if (ended)
        return *ended;
    const auto interval = readInterval(parser);
    if (!interval)
        return ExitCode::WrongUse;
    std::unique_ptr<PanelFiles> files;
    if (parser.isSet(QStringLiteral("root"))) {
        const QString root = parser.value(QStringLiteral("root"));
        if (!QFileInfo(root).isDir()) {
            complain(
                QStringLiteral("--root '%1': there is no such folder: name the one that the panel's files "
                               "lie in")
                    .arg(root));
            return ExitCode::Failed;
        }
        QString error;
        files = PanelFiles::create(root, error);
        if (!files) {
            complain(error);
            return ExitCode::Failed;
        }
        tools_setSystemRoot(files->root());
    }
    QString diskPath = parser.value(QStringLiteral("disk"));
    if (diskPath.isEmpty())
        diskPath = files ? files->root() : QStringLiteral("/");
    if (diskSpace(diskPath).totalMB <= 0) {
        complain(QStringLiteral("--disk '%1' is on no disk that can be measured").arg(diskPath));
        return ExitCode::Failed;
    }

    if (parser.isSet(QStringLiteral("watch")))
        quitOnInterrupt();
    cpu_info processor = {};
    processor.firstCall = 1;
    tools_get_cpu_info(processor);
    std::this_thread::sleep_for(*interval);
    const bool asJson = parser.isSet(QStringLiteral("json"));
    if (parser.isSet(QStringLiteral("watch")))
        drawUntilInterrupt(*interval, !asJson, [&](Drawing drawing) {
            printFigures(takeDeviceFigures(processor, diskPath), asJson, drawing == Drawing::Below);
        });
    else
        printFigures(takeDeviceFigures(processor, diskPath), asJson, false);
    return ExitCode::Done;
}

} // namespace panelkit::simulator
