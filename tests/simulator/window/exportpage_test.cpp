#include "simulator/window/exportpage.h"

#include "runtime/systemroot.h"
#include "simulator/comm/communication.h"
#include "simulator/host/itemdisplay.h"
#include "simulator/host/panelfiles.h"
#include "tests/simulator/stillplc.h"
#include "tests/simulator/window/pagefixture.h"
#include "tests/support/pdffile.h"
#include "widgets/filebrowser.h"
#include "widgets/progressbar.h"
#include "widgets/tipsprogressbar.h"

#include <QDir>
#include <QListWidget>
#include <QProgressBar>
#include <QTextCodec>

using namespace panelkit::simulator;
using namespace panelkit::testing;

namespace {

const QString header = QStringLiteral("Time,Item,Address,Value");

// The lines of an exported file.
QStringList gbkLines(const QString &path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    const QString text = QTextCodec::codecForName("GBK")->toUnicode(file.readAll());
    EXPECT_TRUE(text.endsWith(QLatin1Char('\n')));
    return text.split(QLatin1Char('\n')).mid(0, text.count(QLatin1Char('\n')));
}

// Sees what is painted on the screen.
class Painter : public QObject
{
public:
    explicit Painter(std::function<void(QWidget *)> painted) : m_painted(std::move(painted))
    {
        qApp->installEventFilter(this);
    }
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Paint && watched->isWidgetType())
            m_painted(static_cast<QWidget *>(watched));
        return false;
    }

private:
    std::function<void(QWidget *)> m_painted;
};

class ExportPageTest : public PageOnEveryScreen
{
protected:
    void SetUp() override
    {
        PageOnEveryScreen::SetUp();
        exportPage = open<ExportPage>();
        for (std::size_t i = 0; i < session->project().items.size(); ++i)
            WAIT_FOR(isDisplayedAtOnce(*session, i));
    }

    // So many samples, as if the panel had run for hours.
    void fillHistory(int samples)
    {
        const QDateTime start(QDate(2026, 3, 5), QTime(6, 0));
        for (int i = 0; i < samples; ++i)
            exportPage->history().sample(start.addSecs(5 * i));
    }

    bool isFinished() const
    {
        return partOf("result") == QLatin1String("notice") || partOf("result") == QLatin1String("refusal");
    }

    QStringList historyLines(std::size_t first, std::size_t count)
    {
        QStringList lines;
        for (const QStringList &row : exportPage->history().rows(first, count))
            lines << row.join(QLatin1Char(','));
        return lines;
    }

    static QString folder(const char *panelPath) { return tools_systemRoot() + QLatin1String(panelPath); }

    static QStringList filesIn(const QString &path)
    {
        QStringList files;
        for (const QFileInfo &file : QDir(path).entryInfoList(QDir::Files, QDir::Name))
            files << file.filePath();
        return files;
    }

    ExportPage *exportPage = nullptr;
};

} // namespace

INSTANTIATE_ON_EVERY_SCREEN(ExportPageTest);

TEST_P(ExportPageTest, WritesWhatTheItemsShowNowAsCsv)
{
    touch("export");
    WAIT_FOR(isFinished());
    const QStringList files = filesIn(folder(exportFolder));
    ASSERT_EQ(files.size(), 1);
    EXPECT_TRUE(QFileInfo(files.first())
                    .fileName()
                    .contains(QRegularExpression(QStringLiteral("^values-[0-9]{8}-[0-9]{6}\\.csv$"))));
    const std::size_t items = session->project().items.size();
    const std::size_t first = exportPage->history().rowCount() - items;
    EXPECT_EQ(gbkLines(files.first()), QStringList(header) + historyLines(first, items));
    EXPECT_EQ(gbkLines(files.first()).filter(QStringLiteral(",Batch code,4x11,LOT-0417-A")).size(), 1);
    EXPECT_EQ(partOf("result"), QStringLiteral("notice"));
    EXPECT_EQ(textOf("result"), QStringLiteral("%1: %2 rows, %3 bytes")
                                    .arg(QFileInfo(files.first()).fileName())
                                    .arg(items)
                                    .arg(QFileInfo(files.first()).size()));
}

TEST_P(ExportPageTest, ShowsTheRealProgressOfALongHistory)
{
    fillHistory(300);
    touch("history");
    QList<int> painted;
    bool overTheScreen = false;
    const Painter painter([&](QWidget *widget) {
        if (const auto *bar = qobject_cast<QProgressBar *>(widget)) {
            painted << bar->value();
            overTheScreen = screen.rect().contains(bar->window()->mapFromGlobal(bar->mapToGlobal(QPoint())));
        }
    });
    touch("export");
    EXPECT_FALSE(child("export")->isEnabled());
    WAIT_FOR(isFinished());
    const int rows = static_cast<int>(exportPage->history().rowCount());
    EXPECT_GE(rows, 300 * 30);
    QList<int> between;
    for (const int value : painted)
        if (value > 0 && value < rows && (between.isEmpty() || value > between.last()))
            between << value;
    EXPECT_GE(between.size(), 5) << "painted " << painted.size() << " times";
    EXPECT_TRUE(overTheScreen);
    EXPECT_EQ(screen.findChild<ProgressBar *>(), nullptr) << "it goes when all is written";
    EXPECT_TRUE(child("export")->isEnabled());
    const QStringList files = filesIn(folder(exportFolder));
    ASSERT_EQ(files.size(), 1);
    EXPECT_TRUE(QFileInfo(files.first()).fileName().startsWith(QStringLiteral("history-")));
    EXPECT_EQ(gbkLines(files.first()), QStringList(header) + historyLines(0, static_cast<std::size_t>(rows)));
}

TEST_P(ExportPageTest, ShowsThatItIsBusyBeforeItDrawsAPdf)
{
    touch("pdf");
    bool wasSeen = false;
    const Painter painter([&](QWidget *widget) {
        if (widget->objectName() != QLatin1String("widget"))
            return;
        wasSeen = true;
        EXPECT_TRUE(filesIn(folder(exportFolder)).isEmpty()) << "drawn before anybody could see why";
    });
    touch("export");
    ASSERT_NE(screen.findChild<TipsProgressBar *>(), nullptr);
    WAIT_FOR(isFinished());
    EXPECT_TRUE(wasSeen);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(screen.findChild<TipsProgressBar *>(), nullptr);
    const QStringList files = filesIn(folder(exportFolder));
    ASSERT_EQ(files.size(), 1);
    const PdfFile pdf(files.first());
    EXPECT_EQ(pdf.pageCount(), 1);
    const QStringList lines = pdf.lines(1);
    const std::size_t items = session->project().items.size();
    ASSERT_EQ(static_cast<std::size_t>(lines.size()), items + 1);
    EXPECT_EQ(lines.first(), QStringLiteral("Time Item Address Value"));
    const QList<QStringList> rows =
        exportPage->history().rows(exportPage->history().rowCount() - items, items);
    for (int row = 0; row < rows.size(); ++row)
        EXPECT_EQ(lines.at(row + 1), rows.at(row).join(QLatin1Char(' ')).simplified());
}

TEST_P(ExportPageTest, LetsTheOperatorPickTheFolder)
{
    ASSERT_TRUE(QDir().mkpath(folder(usbFolder) + QStringLiteral("/reports")));
    touch("chooseFolder");
    auto *const browser = screen.findChild<FileBrowser *>();
    ASSERT_NE(browser, nullptr);
    EXPECT_TRUE(browser->isVisible());
    EXPECT_EQ(browser->mapTo(&screen, QPoint()), QPoint());
    EXPECT_EQ(browser->size(), screen.size());
    EXPECT_EQ(browser->findChild<QLabel *>(QStringLiteral("label_title"))->text(),
              QStringLiteral("Folder for the export"));

    auto *const roots = browser->findChild<QComboBox *>(QStringLiteral("cb_root_name"));
    tap(roots);
    WAIT_FOR(roots->view()->isVisible());
    ASSERT_TRUE(QTest::qWaitForWindowExposed(roots->view()->window()));
    QTest::qWait(QApplication::doubleClickInterval() + 50); // the list has only just opened
    tap(roots->view()->viewport(), roots->view()->visualRect(roots->model()->index(1, 0)).center());
    WAIT_FOR(roots->currentText() == QStringLiteral("USB disk"));
    auto *const list = browser->findChild<QListWidget *>(QStringLiteral("listWidget"));
    ASSERT_EQ(list->count(), 1);
    EXPECT_EQ(list->item(0)->text(), QStringLiteral("reports"));
    tap(list->viewport(), list->visualItemRect(list->item(0)).center());
    WAIT_FOR(list->count() == 0);
    tap(browser->findChild<QPushButton *>(QStringLiteral("btn_ok")));
    WAIT_FOR(screen.findChild<FileBrowser *>() == nullptr);
    EXPECT_EQ(textOf("folder").remove(QChar(0x200b)), QStringLiteral("/media/usb/reports"));

    touch("export");
    WAIT_FOR(isFinished());
    EXPECT_EQ(filesIn(folder(usbFolder) + QStringLiteral("/reports")).size(), 1);
    EXPECT_TRUE(filesIn(folder(exportFolder)).isEmpty());
}

TEST_P(ExportPageTest, KeepsTheFolderWhenTheOperatorCancels)
{
    touch("chooseFolder");
    auto *const browser = screen.findChild<FileBrowser *>();
    ASSERT_NE(browser, nullptr);
    tap(browser->findChild<QPushButton *>(QStringLiteral("btn_cancel")));
    WAIT_FOR(screen.findChild<FileBrowser *>() == nullptr);
    EXPECT_EQ(textOf("folder").remove(QChar(0x200b)), QLatin1String(exportFolder));
}

TEST_P(ExportPageTest, OverwritesNothing)
{
    // Files of any second in which the export may come.
    QStringList taken;
    const QDateTime now = QDateTime::currentDateTime();
    for (int second = 0; second < 60; ++second) {
        taken << folder(exportFolder) +
                     now.addSecs(second).toString(QStringLiteral("'/values-'yyyyMMdd-HHmmss'.csv'"));
        QFile file(taken.last());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write("kept"), 4);
    }
    touch("export");
    WAIT_FOR(isFinished());
    for (const QString &path : taken)
        EXPECT_EQ(QFileInfo(path).size(), 4) << path.toStdString();
    const QStringList files = filesIn(folder(exportFolder));
    ASSERT_EQ(files.size(), 61);
    EXPECT_EQ(files.filter(QStringLiteral("-2.csv")).size(), 1);
}

TEST_P(ExportPageTest, SaysThatAFolderCannotBeWritten)
{
    ASSERT_TRUE(QDir(folder(exportFolder)).removeRecursively());
    for (const char *format : {"csv", "pdf"}) {
        touch(format);
        touch("export");
        WAIT_FOR(isFinished());
        EXPECT_EQ(partOf("result"), QStringLiteral("refusal"));
        EXPECT_EQ(textOf("result"),
                  QStringLiteral("Nothing can be written to this folder. Choose another one."));
        expectWellLaidOut();
    }
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(screen.findChild<ProgressBar *>(), nullptr);
    EXPECT_EQ(screen.findChild<TipsProgressBar *>(), nullptr);
}

TEST_P(ExportPageTest, TakesItsDisplaysAlongWhenItGoes)
{
    fillHistory(300);
    touch("history");
    touch("export");
    ASSERT_NE(screen.findChild<ProgressBar *>(), nullptr);
    page = nullptr;
    delete exportPage;
    EXPECT_EQ(screen.findChild<ProgressBar *>(), nullptr);
}

TEST_P(ExportPageTest, TakesItsBrowserAlongWhenItIsLeft)
{
    touch("chooseFolder");
    ASSERT_NE(screen.findChild<FileBrowser *>(), nullptr);
    page->hide();
    EXPECT_FALSE(screen.findChild<FileBrowser *>()->isVisible());
    WAIT_FOR(screen.findChild<FileBrowser *>() == nullptr);
}

TEST_P(ExportPageTest, TakesItsBrowserAlongWhenTheWindowGoes)
{
    touch("chooseFolder");
    ASSERT_NE(screen.findChild<FileBrowser *>(), nullptr);
    screen.hide();
    WAIT_FOR(screen.findChild<FileBrowser *>() == nullptr);
    screen.show();
    EXPECT_TRUE(child("chooseFolder")->isVisible());
}

TEST_P(ExportPageTest, KeepsItsBrowserWhileTheWindowIsMinimised)
{
    touch("chooseFolder");
    screen.showMinimized();
    QTest::qWait(50);
    screen.showNormal();
    ASSERT_NE(screen.findChild<FileBrowser *>(), nullptr);
    WAIT_FOR(screen.findChild<FileBrowser *>()->isVisible());
}

TEST_P(ExportPageTest, ChangesTheLanguageOfItsTableAndItsBrowser)
{
    touch("chooseFolder");
    speak("zh_CN");
    auto *const browser = screen.findChild<FileBrowser *>();
    ASSERT_NE(browser, nullptr);
    EXPECT_EQ(browser->findChild<QLabel *>(QStringLiteral("label_title"))->text(),
              QStringLiteral("选择导出文件夹"));
    EXPECT_EQ(browser->getSelectFile(), QStringList(folder(exportFolder)));
    tap(browser->findChild<QPushButton *>(QStringLiteral("btn_cancel")));
    WAIT_FOR(screen.findChild<FileBrowser *>() == nullptr);
    EXPECT_EQ(page->title(), QStringLiteral("导出"));
    touch("export");
    WAIT_FOR(isFinished());
    const QStringList files = filesIn(folder(exportFolder));
    ASSERT_EQ(files.size(), 1);
    EXPECT_EQ(gbkLines(files.first()).first(), QStringLiteral("时间,名称,地址,数值"));
    EXPECT_TRUE(textOf("result").endsWith(QStringLiteral(" 字节")));
    expectWellLaidOut();
}

TEST_P(ExportPageTest, CutsNothingOff)
{
    expectWellLaidOut();
    speak("zh_CN");
    expectWellLaidOut();
}

namespace {

// With a PLC whose faults the test decides on.
class ExportPageOnItsOwnLine : protected StillPlc, public ::testing::Test
{
protected:
    ExportPageOnItsOwnLine() { session = Session::open(sessionOptions(), error); }

    void SetUp() override { ASSERT_TRUE(session) << error.toStdString(); }

    QString error;
    std::unique_ptr<Session> session;
};

} // namespace

TEST_F(ExportPageOnItsOwnLine, ExportsAllTheSameWhileThePlcIsCutOff)
{
    PlcFaultSetting gone;
    gone.fault = PlcFault::Gone;
    server.setFault(gone);
    ExportPage page(*session, nullptr);
    page.resize(396, 232);
    page.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&page));
    WAIT_FOR(session->communication().linkState(1).condition == LinkCondition::Away);
    auto *const button = page.findChild<QPushButton *>(QStringLiteral("export"));
    QTest::mouseClick(page.windowHandle(), Qt::LeftButton, Qt::NoModifier,
                      button->mapTo(&page, button->rect().center()));
    const auto *result = page.findChild<QLabel *>(QStringLiteral("result"));
    WAIT_FOR(result->property("part").toString() == QLatin1String("notice"));
    const QDir folder(tools_systemRoot() + QLatin1String(exportFolder));
    ASSERT_EQ(folder.entryList(QDir::Files).size(), 1);
    const QStringList lines = gbkLines(folder.filePath(folder.entryList(QDir::Files).first()));
    EXPECT_EQ(static_cast<std::size_t>(lines.size()), session->project().items.size() + 1);
}
