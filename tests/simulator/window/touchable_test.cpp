// Everything in the window that a finger is to hit is high enough for it.
#include "simulator/window/keypad.h"
#include "simulator/window/runtimenotices.h"
#include "tests/simulator/window/panelwindowfixture.h"
#include "widgets/filebrowser.h"
#include "widgets/touch.h"

#include <QAbstractItemView>
#include <QAbstractSpinBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>

using namespace panelkit;
using namespace panelkit::simulator;
using panelkit::testing::PanelWindowOnEveryScreen;

namespace {

class TouchableScreen : public PanelWindowOnEveryScreen
{
protected:
    // Also what would have to be scrolled to. Returns how many were looked at.
    int expectTouchable(const QWidget &parent)
    {
        for (int round = 0; round < 4; ++round)
            QCoreApplication::processEvents();
        int found = 0;
        for (QWidget *widget : parent.findChildren<QWidget *>()) {
            const bool isControl = qobject_cast<QAbstractButton *>(widget) != nullptr ||
                                   qobject_cast<QComboBox *>(widget) != nullptr ||
                                   qobject_cast<QLineEdit *>(widget) != nullptr ||
                                   qobject_cast<QAbstractSpinBox *>(widget) != nullptr;
            if (auto *const box = qobject_cast<QComboBox *>(widget); box && box->isVisible())
                expectTouchableRows(*box);
            if (auto *const list = qobject_cast<QAbstractItemView *>(widget); list && list->isVisible())
                expectTouchableRows(*list);
            if (!isControl || !widget->isVisible())
                continue;
            ++found;
            EXPECT_GE(widget->height(), fingerHeight) << nameOf(*widget);
            EXPECT_GE(widget->width(), fingerHeight * 3 / 4) << nameOf(*widget);
        }
        return found;
    }

    static std::string nameOf(const QWidget &widget)
    {
        const auto *button = qobject_cast<const QAbstractButton *>(&widget);
        const QString text = button != nullptr ? button->text() : widget.accessibleName();
        return widget.metaObject()->className() + std::string(" ") + widget.objectName().toStdString() +
               " \"" + text.toStdString() + '"';
    }

private:
    void expectTouchableRows(QComboBox &box)
    {
        box.showPopup();
        for (int round = 0; round < 4; ++round)
            QCoreApplication::processEvents();
        EXPECT_GT(box.count(), 0) << nameOf(box);
        expectTouchableRows(*box.view());
        box.hidePopup();
    }

    static void expectTouchableRows(const QAbstractItemView &list)
    {
        for (int row = 0; row < list.model()->rowCount(list.rootIndex()); ++row) {
            const QModelIndex index = list.model()->index(row, 0, list.rootIndex());
            EXPECT_GE(list.visualRect(index).height(), fingerHeight) << nameOf(list) << ", row " << row;
        }
    }
};

} // namespace

TEST_P(TouchableScreen, HasRoomForAFingerOnEveryControlOfEveryPage)
{
    for (const QString &language : PanelLanguage::known()) {
        ASSERT_TRUE(window->changeLanguage(language, error)) << error.toStdString();
        for (const QString &page : window->pageNames()) {
            SCOPED_TRACE(page.toStdString() + ", " + language.toStdString());
            ASSERT_TRUE(window->showPage(page));
            EXPECT_GE(expectTouchable(*window), window->pageNames().size() + 1);
        }
    }
}

TEST_P(TouchableScreen, HasRoomForAFingerInTheFileBrowser)
{
    turnTo("export");
    tap(window->findChild<QPushButton *>(QStringLiteral("chooseFolder")));
    auto *const browser = window->findChild<FileBrowser *>();
    ASSERT_NE(browser, nullptr);
    EXPECT_EQ(expectTouchable(*browser), 4);
    tap(browser->findChild<QPushButton *>(QStringLiteral("btn_cancel")));
    WAIT_FOR(window->findChild<FileBrowser *>() == nullptr);
}

TEST_P(TouchableScreen, HasRoomForAFingerInItsMessages)
{
    for (const int needsAnswer : {1, 0}) {
        window->notices().show(QStringLiteral("A message"), 30, needsAnswer);
        WAIT_FOR(window->notices().box() != nullptr && window->notices().box()->isVisible());
        EXPECT_EQ(expectTouchable(*window->notices().box()), 1);
        window->notices().box()->hide();
        WAIT_FOR(window->notices().box() == nullptr);
    }
}

TEST_P(TouchableScreen, HasRoomForAFingerOnEveryDigit)
{
    turnTo("network");
    tap(window->findChild<QLineEdit *>(QStringLiteral("ip")));
    WAIT_FOR(window->keypad().isVisible());
    EXPECT_GT(expectTouchable(window->keypad()), 10);
}

TEST_P(TouchableScreen, HasRoomForAFingerOnEveryLetter)
{
    turnTo("address");
    tap(window->findChild<QLineEdit *>(QStringLiteral("block")));
    WAIT_FOR(window->keypad().isVisible());
    EXPECT_GT(expectTouchable(window->keypad()), 40);
}

INSTANTIATE_ON_EVERY_SCREEN(TouchableScreen);
