// The panel's screen.
#pragma once

#include "simulator/window/panellanguage.h"

#include <QTimer>
#include <QWidget>

class QStackedWidget;

namespace panelkit::simulator {

class Keypad;
class Page;
class PageRow;
class PanelHeader;
class PanelRuntime;
class RuntimeNotices;
class Session;

// As large as the screen of the session's project. While it is shown, the page in front is refreshed ten
// times a second.
class PanelWindow : public QWidget
{
    Q_OBJECT
public:
    // `session` must live longer than the window.
    explicit PanelWindow(Session &session, QWidget *parent = nullptr);
    ~PanelWindow() override;

    // The names by which pages are asked for, in the order of their row: "values" is the first.
    QStringList pageNames() const;
    bool showPage(const QString &name); // false when there is no such page
    Page *currentPage() const;
    QString currentPageName() const;

    // As PanelLanguage::change.
    bool changeLanguage(const QString &language, QString &error);

    PanelRuntime &runtime() const { return *m_runtime; }
    RuntimeNotices &notices() const { return *m_notices; }
    Keypad &keypad() const { return *m_keypad; }

    // One step of what the window shows and its runtime does, as its timer makes it.
    void refresh();

protected:
    void changeEvent(QEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    void buildLayout();
    void addPages();
    void addPage(const char *name, Page *page);
    void turnTo(int page);
    void retranslate();

    Session &m_session;
    PanelLanguage m_language;
    PanelRuntime *m_runtime;
    RuntimeNotices *m_notices;
    QWidget *m_content; // all that is shown but the keypad
    PanelHeader *m_header;
    PageRow *m_row;
    QStackedWidget *m_pages;
    Keypad *m_keypad;
    QTimer m_timer;
};

} // namespace panelkit::simulator
