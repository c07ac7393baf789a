// What it costs to open a folder of 20,000 files in the file browser, until the operator sees it.

#include "bench/support/comparison.h"
#include "simulator/platform/systembase.h"
#include "tests/support/heapinuse.h"
#include "widgets/filebrowser.h"

#include <QApplication>
#include <QDir>
#include <QEvent>
#include <QFile>
#include <QListWidget>
#include <QTemporaryDir>

#include <cstdio>

#include <unistd.h>

using namespace panelkit::bench;
using panelkit::testing::heapInUse;

namespace {

const int fileCount = 20000;
const std::size_t bytesPerEntry = 350; // promised
const int pathRole = 33;
const int folderRole = 34;

// What a list shows, compared only when asked for: measuring it would be as much work as filling it.
struct Shown
{
    QListWidget *list = nullptr;

    friend bool operator==(const Shown &a, const Shown &b)
    {
        if (a.list->count() != b.list->count())
            return false;
        for (int row = 0; row < a.list->count(); ++row) {
            for (const int role : {static_cast<int>(Qt::DisplayRole), pathRole, folderRole}) {
                if (a.list->item(row)->data(role) != b.list->item(row)->data(role))
                    return false;
            }
        }
        return true;
    }
};

// Waits, without a share in the processor, until the toolkit has laid out and painted what was changed.
class PaintWatch : public QObject
{
public:
    explicit PaintWatch(QWidget *widget) : m_widget(widget) { widget->installEventFilter(this); }

    void waitForPaint()
    {
        QApplication::processEvents(); // the layout, which the list puts off until it is idle
        m_painted = false;
        m_widget->update();
        while (!m_painted)
            QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }

    bool eventFilter(QObject *, QEvent *event) override
    {
        m_painted = m_painted || event->type() == QEvent::Paint;
        return false;
    }

private:
    QWidget *m_widget;
    bool m_painted = false;
};

class OurFolder
{
public:
    OurFolder() { m_browser.show(); }

    void open(const QString &folder)
    {
        m_browser.showDir(folder);
        m_watch.waitForPaint();
    }

    QListWidget *list() const { return m_list; }

private:
    FileBrowser m_browser;
    QListWidget *const m_list = m_browser.findChild<QListWidget *>(QStringLiteral("listWidget"));
    PaintWatch m_watch{m_list->viewport()};
};

// As one writes it first: the entries' data set when the list has them, and all rows measured before the
// first is painted.
class PlainFolder
{
public:
    explicit PlainFolder(const QSize &size)
    {
        m_list.resize(size);
        m_list.show();
    }

    void open(const QString &folder)
    {
        m_list.clear();
        const QFileInfoList files = QDir(folder).entryInfoList(
            QDir::Dirs | QDir::Files | QDir::NoSymLinks | QDir::NoDotAndDotDot, QDir::Name | QDir::DirsFirst);
        for (const QFileInfo &file : files) {
            auto *const item = new QListWidgetItem(file.fileName());
            m_list.addItem(item);
            item->setData(pathRole, file.filePath());
            item->setData(folderRole, file.isDir());
        }
        m_watch.waitForPaint();
    }

    QListWidget *list() { return &m_list; }

private:
    QListWidget m_list;
    PaintWatch m_watch{m_list.viewport()};
};

template <typename Folder>
class Open
{
public:
    Open(Folder &folder, const QString &path) : m_folder(&folder), m_path(path) {}

    void operator()(Shown &shown)
    {
        m_folder->open(m_path);
        shown.list = m_folder->list();
    }

private:
    Folder *m_folder;
    QString m_path;
};

template <typename Folder>
std::size_t heapPerEntry(Folder &folder, const QString &empty, const QString &full)
{
    folder.open(empty);
    const std::size_t before = heapInUse();
    folder.open(full);
    const std::size_t bytes = (heapInUse() - before) / fileCount;
    folder.open(empty);
    return bytes;
}

} // namespace

int main(int argc, char **argv)
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    sys_base_app_pro record = {};
    record.screenWidth = 480;
    record.screenHeight = 272;
    panelkit::simulator::setApplicationRecord(&record);

    const struct
    {
        const char *job;
        const char *fileName;
    } rows[] = {{"20,000 files, short names", "record_%1.csv"},
                {"20,000 files, dated names", "2024-03-05_14-22-31_filling_line_3_batch_%1.csv"},
                {"20,000 files, Chinese names", "配方导出_2024-03-05_第3号灌装线_批次_%1.csv"}};
    QTemporaryDir folders;
    // Names of one file, many times over, are made much faster than files, and are listed alike.
    QFile original(folders.path() + QStringLiteral("/original"));
    original.open(QIODevice::WriteOnly);
    const QString empty = folders.path() + QStringLiteral("/empty");
    QDir().mkpath(empty);
    OurFolder ours;
    PlainFolder plain(ours.list()->size());
    bool promiseKept = true;
    for (const auto &row : rows) {
        const QString folder = folders.path() + QLatin1Char('/') + QString::fromUtf8(row.job);
        QDir().mkpath(folder);
        for (int i = 0; i < fileCount; ++i) {
            const QString number = QStringLiteral("%1").arg(i, 6, 10, QLatin1Char('0'));
            const QString file = folder + QLatin1Char('/') + QString::fromUtf8(row.fileName).arg(number);
            if (link(QFile::encodeName(original.fileName()), QFile::encodeName(file)) != 0)
                return 1;
        }
        const std::size_t heapOfOurs = heapPerEntry(ours, empty, folder);
        std::printf("%s: %zu bytes of heap an entry, plain %zu, promised at most %zu\n", row.job, heapOfOurs,
                    heapPerEntry(plain, empty, folder), bytesPerEntry);
        promiseKept = promiseKept && heapOfOurs <= bytesPerEntry;
        compare<Shown>({row.job, 10, -1, 2}, Open(plain, folder), Open(ours, folder));
    }
    const int result = run(argc, argv);
    return promiseKept ? result : 1;
}
