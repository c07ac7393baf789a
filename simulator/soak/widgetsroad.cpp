#include "simulator/soak/widgetsroad.h"

#include "platform/sys_base.h"
#include "simulator/platform/eventlibrary.h"
#include "simulator/soak/chance.h"
#include "widgets/filebrowser.h"
#include "widgets/hmimessagebox.h"
#include "widgets/mylineedit.h"
#include "widgets/mymessagebox.h"
#include "widgets/progressbar.h"
#include "widgets/tipsprogressbar.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFocusEvent>
#include <QListWidget>
#include <QMouseEvent>
#include <QProgressBar>
#include <QPushButton>
#include <QWindow>

#include <algorithm>
#include <filesystem>

namespace panelkit::simulator {

namespace {

constexpr int pathRole = 33;
constexpr int folderRole = 34;

void mouse(QWindow *window, QEvent::Type type, const QPoint &position)
{
    const Qt::MouseButtons buttons =
        type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::MouseButtons(Qt::LeftButton);
    QMouseEvent event(type, QPointF(position), QPointF(window->mapToGlobal(position)), Qt::LeftButton,
                      buttons, Qt::NoModifier);
    QCoreApplication::sendEvent(window, &event);
}

// A finger that comes down on the widget and leaves it.
void tap(QWidget *widget, const QPoint &position)
{
    QWindow *const window = widget->window()->windowHandle();
    const QPoint place = widget->mapTo(widget->window(), position);
    mouse(window, QEvent::MouseButtonPress, place);
    mouse(window, QEvent::MouseButtonRelease, place);
    QCoreApplication::processEvents();
}

void tap(QWidget *widget)
{
    if (widget != nullptr && widget->window()->windowHandle() != nullptr)
        tap(widget, widget->rect().center());
}

void showNow(QWidget &window)
{
    window.show();
    QCoreApplication::processEvents();
}

// What waits for the runtime.
int takeEvents()
{
    const int count = eventLibraryEntryCount();
    clearEventLibrary();
    return count;
}

// What a browser has to list: "path" of a file, "path/" of a folder.
QStringList entriesOf(const QString &folder)
{
    QStringList entries;
    std::error_code fault;
    const std::string path = QFile::encodeName(folder).toStdString();
    for (const auto &entry : std::filesystem::directory_iterator(path, fault)) {
        const QString name = QFile::decodeName(entry.path().filename().c_str());
        if (name.startsWith(QLatin1Char('.')) || entry.is_symlink())
            continue;
        if (entry.is_directory())
            entries << folder + QLatin1Char('/') + name + QLatin1Char('/');
        else if (entry.is_regular_file())
            entries << folder + QLatin1Char('/') + name;
    }
    entries.sort();
    return entries;
}

} // namespace

WidgetsRoad::WidgetsRoad() : Road(QStringLiteral("widgets")) {}

WidgetsRoad::~WidgetsRoad() = default;

void WidgetsRoad::beginShift(Session &)
{
    sys_base_get_app_pro()->announceMessageBoxClose = 1;
    m_browser = std::make_unique<FileBrowser>();
    m_browser->setFileBrowserInfo({{QStringLiteral("Storage"), folder()}});
    m_browser->reTranslateUI();
}

void WidgetsRoad::endShift()
{
    m_browser.reset();
}

void WidgetsRoad::act(Chance &chance)
{
    switch (chance.between(1, 10)) {
    case 1:
        return showProgress(chance);
    case 2:
        return showTips(chance);
    case 3:
        return showNotice(chance);
    case 4:
        return showMessage(chance);
    case 5:
        return editLine(chance);
    case 6:
    case 7:
        return pickFile(chance);
    default:
        changeFolder(chance);
        judgeListing();
    }
}

void WidgetsRoad::settleAs(bool isAsExpected, const char *what)
{
    settle(isAsExpected);
    if (!isAsExpected)
        lose(QLatin1String(what));
}

// A file or folder comes, goes, or is called something else.
void WidgetsRoad::changeFolder(Chance &chance)
{
    static const char *const names[] = {"a.csv",    "b.txt",   "recipe", "Störung.log",
                                        "配方.csv", ".hidden", "% 1",    "long name with blanks.pdf"};
    const auto randomPath = [&] {
        return folder() + QLatin1Char('/') + QString::number(chance.between(1, 8)) +
               QString::fromUtf8(chance.of(names));
    };
    const QString path = randomPath();
    switch (chance.between(1, 5)) {
    case 1:
        QDir().mkpath(path);
        break;
    case 2:
        QDir(path).removeRecursively();
        QFile::remove(path);
        break;
    case 3:
        QFile::rename(path, randomPath());
        break;
    case 4:
        QFile::link(folder(), path);
        break;
    default: {
        QFile file(path);
        file.open(QIODevice::WriteOnly);
    }
    }
}

void WidgetsRoad::judgeListing()
{
    ask();
    m_browser->setBroType(FileBro_SingleFile);
    m_browser->showDir(folder());
    QStringList listed;
    const auto *const list = m_browser->findChild<QListWidget *>(QStringLiteral("listWidget"));
    for (int row = 0; row < list->count(); ++row) {
        const QListWidgetItem *item = list->item(row);
        listed << item->data(pathRole).toString() +
                      (item->data(folderRole).toBool() ? QStringLiteral("/") : QString());
    }
    listed.sort();
    settleAs(listed == entriesOf(folder()), "the file browser does not list what is in the folder");
}

void WidgetsRoad::pickFile(Chance &chance)
{
    ask();
    bool isOk = false;
    bool isCancelled = false;
    FileBrowser browser;
    QObject::connect(&browser, &FileBrowser::fileBro_OK, [&isOk] { isOk = true; });
    QObject::connect(&browser, &FileBrowser::fileBro_Cancel, [&isCancelled] { isCancelled = true; });
    browser.setBroType(FileBro_SingleFile);
    browser.setFileBrowserInfo({{QStringLiteral("Storage"), folder()}});
    browser.reTranslateUI();
    showNow(browser);
    auto *const list = browser.findChild<QListWidget *>(QStringLiteral("listWidget"));
    QStringList expected;
    if (list->count() > 0) {
        QListWidgetItem *const item = list->item(chance.between(0, list->count() - 1));
        list->scrollToItem(item);
        QCoreApplication::processEvents();
        if (!item->data(folderRole).toBool())
            expected << item->data(pathRole).toString();
        tap(list->viewport(), list->visualItemRect(item).center());
    }
    const bool isPicked = QStringList(browser.getSelectFile()) == expected;
    const bool wantsOk = chance.oneIn(2);
    tap(browser.findChild<QPushButton *>(wantsOk ? QStringLiteral("btn_ok") : QStringLiteral("btn_cancel")));
    settleAs(isPicked && isOk == wantsOk && isCancelled != wantsOk && !browser.isVisible(),
             "a file that was tapped was not picked, or the browser did not close");
}

void WidgetsRoad::showProgress(Chance &chance)
{
    ask();
    takeEvents();
    ProgressBar bar;
    const int maximum = chance.between(1, 1000);
    const int value = chance.between(0, maximum);
    bar.UpdateProgress(value, maximum, true, QStringLiteral("配方 1"), false);
    QCoreApplication::processEvents();
    const bool isOver = value == maximum;
    const bool isShown = bar.isVisible() != isOver && takeEvents() == (isOver ? 1 : 0);
    if (chance.oneIn(2))
        tap(bar.findChild<QPushButton *>());
    else
        bar.UpdateProgress(value, maximum, false, QString(), true);
    settleAs(isShown && !bar.isVisible(), "a progress dialog was not shown as it had to be");
}

void WidgetsRoad::showTips(Chance &chance)
{
    ask();
    TipsProgressBar tips;
    const int first = chance.between(0, 100);
    const bool hasSecond = chance.oneIn(2);
    tips.UpdateProgress(first, hasSecond ? chance.between(0, 100) : -1, false, QStringLiteral("Update"));
    QCoreApplication::processEvents();
    const auto *const one = tips.findChild<QProgressBar *>(QStringLiteral("pb_1"));
    const auto *const two = tips.findChild<QProgressBar *>(QStringLiteral("pb_2"));
    const bool isShown = tips.isVisible() && one->value() == first && two->isVisible() == hasSecond;
    tips.UpdateProgress(first, -1, true, QString());
    settleAs(isShown && !tips.isVisible(), "a progress overlay was not shown as it had to be");
}

void WidgetsRoad::showNotice(Chance &chance)
{
    ask();
    const QString text = QString(chance.between(0, 200), QLatin1Char('w'));
    MyMessagebox notice(text);
    notice.setText(text, 3600);
    showNow(notice);
    const bool isShown = notice.isVisible();
    tap(notice.findChild<QPushButton *>());
    settleAs(isShown && !notice.isVisible(), "a notice was not shown, or not closed by its button");
}

void WidgetsRoad::showMessage(Chance &chance)
{
    ask();
    takeEvents();
    HMIMessageBox box(nullptr, QStringLiteral("Alarm"), QStringLiteral("压力过高"), QStringLiteral("OK"),
                      chance.oneIn(2) ? QStringLiteral("Cancel") : QString());
    showNow(box);
    const bool isShown = box.isVisible();
    const bool isClosed = chance.oneIn(2);
    if (isClosed)
        box.close();
    else
        tap(box.button(QMessageBox::Ok));
    QCoreApplication::processEvents();
    const bool isAnswered = isClosed ? takeEvents() == 1 && box.clickedButton() == nullptr
                                     : box.clickedButton() == box.button(QMessageBox::Ok);
    settleAs(isShown && isAnswered && !box.isVisible(),
             "a message box was not shown, or its answer was lost");
}

void WidgetsRoad::editLine(Chance &chance)
{
    ask();
    int comings = 0;
    int goings = 0;
    MyLineEdit edit;
    QObject::connect(&edit, &MyLineEdit::focusIn, [&comings] { ++comings; });
    QObject::connect(&edit, &MyLineEdit::focusOut, [&goings] { ++goings; });
    showNow(edit);
    const int before = comings;
    QFocusEvent in(QEvent::FocusIn);
    QCoreApplication::sendEvent(&edit, &in);
    QString typed;
    for (int i = chance.between(0, 12); i > 0; --i) {
        const QChar letter(u'0' + static_cast<ushort>(chance.between(0, 9)));
        QKeyEvent key(QEvent::KeyPress, Qt::Key_0, Qt::NoModifier, letter);
        QCoreApplication::sendEvent(&edit, &key);
        typed += letter;
    }
    const int left = goings;
    QFocusEvent out(QEvent::FocusOut);
    QCoreApplication::sendEvent(&edit, &out);
    settleAs(comings == before + 1 && goings == left + 1 && edit.text() == typed,
             "a line edit lost a change of focus, or what was typed");
}

} // namespace panelkit::simulator
