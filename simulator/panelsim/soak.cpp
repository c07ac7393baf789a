#include "simulator/soak/soak.h"
#include "simulator/panelsim/commands.h"
#include "simulator/panelsim/interrupt.h"
#include "simulator/panelsim/texttable.h"

#include <QElapsedTimer>
#include <QGuiApplication>
#include <QRandomGenerator>
#include <QTimer>

#include <chrono>

namespace panelkit::simulator {

namespace {

constexpr std::chrono::milliseconds pauseBetweenActions{2};
constexpr std::chrono::minutes defaultDuration{2};
constexpr std::chrono::minutes longestWarmUp{2};
constexpr std::chrono::minutes betweenReports{5};

using Milliseconds = std::chrono::duration<double, std::milli>;

// The number behind an option, or nothing after a complaint.
std::optional<double> positiveNumber(const QCommandLineParser &parser, const QString &option)
{
    bool isNumber = false;
    const double number = parser.value(option).toDouble(&isNumber);
    if (isNumber && number > 0 && number <= 1e6)
        return number;
    complain(QStringLiteral("--%1 '%2' is not a number above 0 and up to 1000000")
                 .arg(option, parser.value(option)));
    return std::nullopt;
}

std::optional<Milliseconds> readDuration(const QCommandLineParser &parser)
{
    const QString minutes = QStringLiteral("minutes");
    const QString seconds = QStringLiteral("seconds");
    if (parser.isSet(minutes) && parser.isSet(seconds)) {
        complain(QStringLiteral("soak: give --minutes or --seconds, not both"));
        return std::nullopt;
    }
    if (!parser.isSet(minutes) && !parser.isSet(seconds))
        return Milliseconds(defaultDuration);
    const auto number = positiveNumber(parser, parser.isSet(minutes) ? minutes : seconds);
    if (!number)
        return std::nullopt;
    return parser.isSet(minutes) ? Milliseconds(std::chrono::duration<double, std::ratio<60>>(*number))
                                 : Milliseconds(std::chrono::duration<double>(*number));
}

// Drawn by chance where none is given, and short enough to be typed again.
std::optional<quint64> readSeed(const QCommandLineParser &parser)
{
    if (!parser.isSet(QStringLiteral("seed")))
        return QRandomGenerator::global()->bounded(1000000);
    bool isNumber = false;
    const quint64 seed = parser.value(QStringLiteral("seed")).toULongLong(&isNumber);
    if (isNumber)
        return seed;
    complain(
        QStringLiteral("--seed '%1' is no whole number from 0 on").arg(parser.value(QStringLiteral("seed"))));
    return std::nullopt;
}

void printRoads(const Soak &soak)
{
    QList<QStringList> rows{{QStringLiteral("ROAD"), QStringLiteral("ASKED"), QStringLiteral("ANSWERED"),
                             QStringLiteral("REFUSED")}};
    for (const Road *road : soak.roads())
        rows << QStringList{road->name(), QString::number(road->count().asked),
                            QString::number(road->count().answered), QString::number(road->count().refused)};
    print(alignedRows(rows) + QLatin1Char('\n'));
}

void printFaults(const Soak &soak)
{
    QList<QStringList> rows{{QStringLiteral("FAULT OF THE PLC"), QStringLiteral("SWITCHED ON")}};
    for (const auto &[name, count] : soak.faults())
        rows << QStringList{name, QString::number(count)};
    print(alignedRows(rows));
    print(QStringLiteral("%1 requests reached the PLC, %2 of them met a fault\n")
              .arg(soak.plcRequests())
              .arg(soak.plcFaultyAnswers()));
    const Soak::Rows exported = soak.rows();
    print(QStringLiteral(
              "%1 rows were exported to CSV, %2 are in the files, %3 were reported as not written\n\n")
              .arg(exported.exported)
              .arg(exported.inFiles)
              .arg(exported.reported));
}

void printFootprints(const Soak &soak)
{
    const auto warm = soak.footprintWarm();
    const auto last = soak.footprint();
    if (!warm || !last) {
        print(QStringLiteral("It was too short to judge memory, descriptors and threads.\n"));
        return;
    }
    const FootprintBounds bounds;
    const auto row = [](const char *name, qint64 before, qint64 after, qint64 bound) {
        return QStringList{QLatin1String(name), QString::number(before), QString::number(after),
                           QString::number(bound)};
    };
    print(alignedRows(
        {{QStringLiteral("THE PROCESS HOLDS"), QStringLiteral("WARMED UP"), QStringLiteral("AT THE END"),
          QStringLiteral("MAY GROW BY")},
         row("heap, KB", warm->heap / 1024, last->heap / 1024, bounds.heap / 1024),
         row("resident memory, KB", warm->resident / 1024, last->resident / 1024, bounds.resident / 1024),
         row("open descriptors", warm->descriptors, last->descriptors, 0),
         row("threads", warm->threads, last->threads, 0)}));
}

// Acts until the time is over, something is lost, or Ctrl-C.
void runSoak(Soak &soak, Milliseconds duration, const QElapsedTimer &clock)
{
    const Milliseconds warmUp = std::min<Milliseconds>(duration / 4, longestWarmUp);
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] {
        const Milliseconds passed(static_cast<double>(clock.elapsed()));
        if (!soak.act() || passed >= duration) {
            QCoreApplication::quit();
            return;
        }
        if (!soak.footprintWarm() && passed >= warmUp)
            soak.endWarmUp();
        if (soak.actions() % 64 == 0 && !soak.losses().isEmpty())
            QCoreApplication::quit();
    });
    const auto report = [&] {
        if (const auto footprint = soak.footprint())
            print(QStringLiteral("after %1 minutes: %2 actions, heap %3 KB, resident %4 KB\n")
                      .arg(clock.elapsed() / 60000)
                      .arg(soak.actions())
                      .arg(footprint->heap / 1024)
                      .arg(footprint->resident / 1024));
    };
    QTimer reports;
    QObject::connect(&reports, &QTimer::timeout, report);
    reports.start(betweenReports);
    timer.start(pauseBetweenActions);
    QCoreApplication::exec();
    timer.stop();
    soak.end();
}

QtMessageHandler earlierHandler = nullptr;

// A platform without a screen complains of every window whose size is fixed.
void hearWarnings()
{
    earlierHandler =
        qInstallMessageHandler([](QtMsgType type, const QMessageLogContext &context, const QString &text) {
            if (!text.contains(QLatin1String("propagateSizeHints")))
                earlierHandler(type, context, text);
        });
}

void addOptions(QCommandLineParser &parser)
{
    parser.addPositionalArgument(
        QStringLiteral("PROJECT"),
        QStringLiteral("The project file; without it the sample that panelsim brings along."),
        QStringLiteral("[PROJECT]"));
    parser.addOption({QStringLiteral("minutes"),
                      QStringLiteral("Go on for so long; without it 2 minutes. Fractions are allowed."),
                      QStringLiteral("N")});
    parser.addOption(
        {QStringLiteral("seconds"), QStringLiteral("The same in seconds."), QStringLiteral("N")});
    parser.addOption(
        {QStringLiteral("seed"),
         QStringLiteral("The same seed makes the same actions in the same order; without it one is drawn."),
         QStringLiteral("S")});
}

} // namespace

ExitCode runSoak(const QStringList &arguments)
{
    QCommandLineParser parser;
    addOptions(parser);
    const auto ended = readOptions(
        parser,
        QStringLiteral(
            "Drives all that a panel does at once, with a PLC, drivers, links, a disk and settings "
            "files that fail by plan, and checks that nothing is lost and nothing grows. Ctrl-C ends "
            "it early."),
        arguments, 1);
    if (ended)
        return *ended;
    const auto duration = readDuration(parser);
    const auto seed = duration ? readSeed(parser) : std::nullopt;
    if (!seed)
        return ExitCode::WrongUse;

    quitOnInterrupt();
    QString error;
    const auto soak = Soak::open({parser.positionalArguments().value(0), *seed}, error);
    if (!soak) {
        complain(error);
        return ExitCode::Failed;
    }
    QGuiApplication::setQuitOnLastWindowClosed(false);
    hearWarnings();
    print(QStringLiteral("seed %1\n").arg(*seed));
    QElapsedTimer clock;
    clock.start();
    runSoak(*soak, *duration, clock);
    print(QStringLiteral("%1 actions in %2 shifts, %3 seconds\n\n")
              .arg(soak->actions())
              .arg(soak->shifts())
              .arg(clock.elapsed() / 1000));
    printRoads(*soak);
    printFaults(*soak);
    printFootprints(*soak);
    const QStringList losses = soak->losses() + soak->growths();
    if (losses.isEmpty())
        return ExitCode::Done;
    complain(QStringLiteral("soak: seed %1, up to action %2: %3%4")
                 .arg(*seed)
                 .arg(soak->actions())
                 .arg(losses.first(), losses.size() > 1
                                          ? QStringLiteral(" (and %1 more)").arg(losses.size() - 1)
                                          : QString()));
    return ExitCode::Failed;
}

} // namespace panelkit::simulator
