// A page on a panel's screen, as the panel's window places it.
#pragma once

#include "simulator/host/flagpolling.h"
#include "simulator/window/page.h"
#include "simulator/window/panellanguage.h"
#include "simulator/window/panelstyle.h"
#include "tests/simulator/window/cutofftexts.h"
#include "tests/simulator/window/windowfixture.h"
#include "widgets/touch.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QTimer>
#include <QVBoxLayout>

namespace panelkit::testing {

class PageOnEveryScreen : public WindowOnEveryScreen
{
protected:
    void SetUp() override
    {
        WindowOnEveryScreen::SetUp();
        screen.setFixedSize(GetParam().width, GetParam().height);
        screen.setStyleSheet(simulator::panelStyleSheet(screen.size()));
        // Somewhat less than the window has beside its header and row of pages.
        auto *const layout = new QVBoxLayout(&screen);
        layout->setSpacing(0);
        if (simulator::isPortrait(screen.size()))
            layout->setContentsMargins(0, 44, 0, 60);
        else
            layout->setContentsMargins(GetParam().width < 800 ? 84 : 140, GetParam().width < 800 ? 44 : 52, 0,
                                       0);
        QObject::connect(&timer, &QTimer::timeout, &screen, [this] {
            session->flags().poll();
            if (page != nullptr)
                page->refresh();
        });
    }

    // Puts the page in front; it goes with the screen.
    template <typename PageType>
    PageType *open()
    {
        auto *const opened = new PageType(*session, &screen);
        page = opened;
        screen.layout()->addWidget(page);
        show(screen);
        timer.start(20);
        return opened;
    }

    template <typename Widget = QWidget>
    Widget *child(const char *name) const
    {
        auto *const found = screen.findChild<Widget *>(QLatin1String(name));
        EXPECT_NE(found, nullptr) << name;
        return found;
    }

    QString textOf(const char *name) const { return child<QLabel>(name)->text(); }
    QString partOf(const char *name) const { return child(name)->property("part").toString(); }

    // Scrolls to it, as a finger would, and taps it.
    void touch(const char *name)
    {
        auto *const target = child(name);
        for (QWidget *parent = target->parentWidget(); parent != nullptr; parent = parent->parentWidget())
            if (auto *const area = qobject_cast<QScrollArea *>(parent))
                area->ensureWidgetVisible(target);
        ASSERT_TRUE(target->isVisible()) << name;
        ASSERT_FALSE(target->visibleRegion().isEmpty()) << name;
        tap(target);
    }

    // Types on behind what a field holds.
    void press(const QString &text)
    {
        for (const QChar character : text)
            QTest::keyClick(screen.windowHandle(), character.toLatin1());
    }

    // Touches a field and types a text in place of what it holds.
    void type(const char *name, const QString &text)
    {
        screen.activateWindow(); // no window manager does
        ASSERT_TRUE(QTest::qWaitForWindowActive(&screen));
        touch(name);
        auto *const edit = child<QLineEdit>(name);
        ASSERT_TRUE(edit->hasFocus()) << name;
        edit->selectAll();
        QTest::keyClick(screen.windowHandle(), Qt::Key_Delete);
        press(text);
        ASSERT_EQ(edit->text(), text);
    }

    void speak(const char *code)
    {
        QString fault;
        ASSERT_TRUE(language.change(QLatin1String(code), fault)) << fault.toStdString();
        QCoreApplication::processEvents(); // the screen hears of it by an event
    }

    // Whether every text has its room, whatever is tapped is as large as a finger, and everything has a name.
    void expectWellLaidOut() const
    {
        for (int round = 0; round < 4; ++round) // an area to be scrolled is told of what is in it by events
            QCoreApplication::processEvents();
        EXPECT_EQ(cutOffTexts(*page), QStringList());
        for (const QWidget *widget : page->findChildren<QWidget *>())
            if (widget->isVisibleTo(page))
                expectRoomFor(*widget);
    }

    QWidget screen; // before what stands on it
    simulator::PanelLanguage language;
    simulator::Page *page = nullptr;
    QTimer timer;

private:
    void expectRoomFor(const QWidget &widget) const
    {
        SCOPED_TRACE(widget.metaObject()->className() + std::string(" ") + widget.objectName().toStdString());
        const int right = widget.mapTo(page, QPoint(widget.width(), 0)).x();
        EXPECT_LE(right, page->width());
        if (const auto *area = qobject_cast<const QScrollArea *>(&widget)) {
            EXPECT_LE(area->widget()->minimumSizeHint().width(), area->viewport()->width());
        }
        if (const auto *button = qobject_cast<const QPushButton *>(&widget))
            expectTouchable(*button);
        if (qobject_cast<const QLineEdit *>(&widget) != nullptr ||
            qobject_cast<const QComboBox *>(&widget) != nullptr) {
            EXPECT_FALSE(widget.accessibleName().isEmpty());
            expectTouchable(widget);
        }
    }

    static void expectTouchable(const QWidget &control)
    {
        EXPECT_GE(control.height(), fingerHeight);
        EXPECT_GE(control.width(), fingerHeight);
        EXPECT_FALSE(control.objectName().isEmpty());
    }
};

} // namespace panelkit::testing
