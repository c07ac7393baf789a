#include "simulator/window/panelwindow.h"

#include "simulator/host/session.h"
#include "simulator/window/addresspage.h"
#include "simulator/window/devicepage.h"
#include "simulator/window/exportpage.h"
#include "simulator/window/keypad.h"
#include "simulator/window/networkpage.h"
#include "simulator/window/operatepage.h"
#include "simulator/window/page.h"
#include "simulator/window/pageparts.h"
#include "simulator/window/pagerow.h"
#include "simulator/window/panelheader.h"
#include "simulator/window/panelruntime.h"
#include "simulator/window/panelstyle.h"
#include "simulator/window/runtimenotices.h"
#include "simulator/window/valuespage.h"

#include <QEvent>
#include <QGridLayout>
#include <QStackedWidget>

#include <chrono>

namespace panelkit::simulator {

namespace {

constexpr std::chrono::milliseconds refreshInterval{100};

QSize screenOf(const Session &session)
{
    return {session.project().screenWidth, session.project().screenHeight};
}

} // namespace

PanelWindow::PanelWindow(Session &session, QWidget *parent)
    : QWidget(parent),
      m_session(session),
      m_runtime(new PanelRuntime(session, this)),
      m_notices(new RuntimeNotices(this)),
      m_content(new QWidget(this)),
      m_header(new PanelHeader(session, m_content)),
      m_row(new PageRow(screenOf(session), m_content)),
      m_pages(new QStackedWidget(m_content)),
      m_keypad(new Keypad(this, m_content))
{
    setFixedSize(screenOf(session));
    setStyleSheet(panelStyleSheet(size()));
    m_content->setObjectName(QStringLiteral("content"));
    m_content->setAttribute(Qt::WA_StyledBackground);
    m_content->resize(size());
    m_pages->setObjectName(QStringLiteral("pages"));
    m_pages->setFocusPolicy(Qt::ClickFocus);
    buildLayout();
    addPages();

    connect(m_row, &PageRow::pageWanted, this, &PanelWindow::turnTo);
    connect(m_header, &PanelHeader::otherLanguageWanted, this, [this] {
        QString error;
        if (!changeLanguage(m_language.next(), error))
            m_notices->show(breakablePath(error), 0, 1);
    });
    connect(m_runtime, &PanelRuntime::messageBoxWanted, m_notices, &RuntimeNotices::show);
    connect(&m_timer, &QTimer::timeout, this, &PanelWindow::refresh);
    m_timer.setInterval(refreshInterval);
    retranslate();
    turnTo(0);
}

PanelWindow::~PanelWindow() = default;

// All pages, in the order of their row.
void PanelWindow::addPages()
{
    addPage("values", new ValuesPage(m_session, m_pages));
    addPage("operate", new OperatePage(m_session, *m_runtime, m_pages));
    addPage("export", new ExportPage(m_session, m_pages));
    addPage("network", new NetworkPage(m_session, m_pages));
    addPage("device", new DevicePage(m_session, m_pages));
    addPage("address", new AddressPage(m_session, m_pages));
}

void PanelWindow::buildLayout()
{
    auto *grid = new QGridLayout(m_content);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setSpacing(0);
    if (isPortrait(size())) {
        grid->addWidget(m_header, 0, 0);
        grid->addWidget(m_pages, 1, 0);
        grid->addWidget(m_row, 2, 0);
    } else {
        grid->addWidget(m_row, 0, 0, 2, 1);
        grid->addWidget(m_header, 0, 1);
        grid->addWidget(m_pages, 1, 1);
    }
    grid->setRowStretch(1, 1);
}

void PanelWindow::addPage(const char *name, Page *page)
{
    page->setObjectName(QLatin1String(name));
    m_pages->addWidget(page);
    m_row->addPage();
    m_keypad->serveAllIn(page);
}

QStringList PanelWindow::pageNames() const
{
    QStringList names;
    for (int i = 0; i < m_pages->count(); ++i)
        names << m_pages->widget(i)->objectName();
    return names;
}

bool PanelWindow::showPage(const QString &name)
{
    const int page = static_cast<int>(pageNames().indexOf(name));
    if (page >= 0)
        turnTo(page);
    return page >= 0;
}

Page *PanelWindow::currentPage() const
{
    return static_cast<Page *>(m_pages->currentWidget());
}

QString PanelWindow::currentPageName() const
{
    return currentPage()->objectName();
}

// The focus stays with no field: one that the operator has not touched would call the keypad.
void PanelWindow::turnTo(int page)
{
    m_pages->setFocus();
    m_pages->setCurrentIndex(page);
    m_row->setCurrent(page);
    currentPage()->refresh();
}

bool PanelWindow::changeLanguage(const QString &language, QString &error)
{
    const bool isChanged = m_language.change(language, error);
    retranslate();
    return isChanged;
}

void PanelWindow::refresh()
{
    m_runtime->poll();
    m_header->refresh();
    currentPage()->refresh();
}

void PanelWindow::retranslate()
{
    setWindowTitle(m_session.project().name);
    m_header->setOtherLanguage(PanelLanguage::ownName(m_language.next()));
    for (int i = 0; i < m_pages->count(); ++i)
        m_row->setTitle(i, static_cast<Page *>(m_pages->widget(i))->title());
}

void PanelWindow::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange)
        retranslate();
    QWidget::changeEvent(event);
}

void PanelWindow::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    m_pages->setFocus();
    m_timer.start();
}

void PanelWindow::hideEvent(QHideEvent *event)
{
    m_timer.stop();
    QWidget::hideEvent(event);
}

} // namespace panelkit::simulator
