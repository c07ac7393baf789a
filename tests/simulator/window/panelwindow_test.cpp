#include "simulator/comm/communication.h"
#include "simulator/window/keypad.h"
#include "simulator/window/panelruntime.h"
#include "simulator/window/runtimenotices.h"
#include "tests/simulator/window/cutofftexts.h"
#include "tests/simulator/window/panelwindowfixture.h"
#include "widgets/filebrowser.h"

#include <QComboBox>
#include <QPushButton>
#include <QRegion>
#include <QStyleOptionComboBox>

using namespace panelkit::simulator;
using panelkit::testing::cutOffTexts;
using panelkit::testing::PanelWindowFixture;
using panelkit::testing::PanelWindowOnEveryScreen;

namespace {

class PanelWindowTest : public PanelWindowFixture
{
};

class PanelWindowScreen : public PanelWindowOnEveryScreen
{
};

} // namespace

TEST_P(PanelWindowScreen, IsAsLargeAsTheScreenOfThePanel)
{
    EXPECT_EQ(window->size(), QSize(GetParam().width, GetParam().height));
}

TEST_P(PanelWindowScreen, TurnsToEachPageByAFingerOnItsButton)
{
    const QStringList names = window->pageNames();
    ASSERT_GE(names.size(), 2);
    auto *row = window->findChild<QWidget *>(QStringLiteral("pageRow"));
    const QList<QPushButton *> buttons = row->findChildren<QPushButton *>();
    ASSERT_EQ(buttons.size(), names.size());
    for (int i = static_cast<int>(names.size()) - 1; i >= 0; --i) {
        EXPECT_GE(buttons.at(i)->height(), 44) << names.at(i).toStdString();
        tap(buttons.at(i));
        EXPECT_EQ(window->currentPageName(), names.at(i));
        EXPECT_TRUE(window->currentPage()->isVisible());
    }
}

// Its message takes room above the fields, or below them, and goes with the first key.
TEST_P(PanelWindowScreen, NeverCoversAFieldOfThePageWithTheSettings)
{
    turnTo("network");
    const Keypad &keypad = window->keypad();
    for (const char *name : {"ip", "netMask", "gateway", "dns"}) {
        SCOPED_TRACE(name);
        tap(window->findChild<QWidget *>(QStringLiteral("apply")));
        const auto *message = window->findChild<QWidget *>(QStringLiteral("message"));
        WAIT_FOR(message->visibleRegion().boundingRect() == message->rect());
        ASSERT_FALSE(label("message").isEmpty());
        auto *field = window->findChild<MyLineEdit *>(QLatin1String(name));
        field->setFocus();
        const auto expectInView = [&] {
            for (int round = 0; round < 4;
                 ++round) // an area to be scrolled is told of what is in it by events
                QCoreApplication::processEvents();
            ASSERT_EQ(keypad.field(), field);
            EXPECT_EQ(field->visibleRegion().boundingRect(), field->rect());
            const QRect place(field->mapTo(&*window, QPoint(0, 0)), field->size());
            EXPECT_FALSE(keypad.geometry().intersects(place)) << place.y() << " " << keypad.y();
        };
        expectInView();
        tap(keypad.keyFor(QStringLiteral("5")));
        ASSERT_TRUE(label("message").isEmpty());
        expectInView();
        tap(keypad.keyFor(Key::Action::Enter));
        EXPECT_FALSE(keypad.isVisible());
    }
}

TEST_P(PanelWindowScreen, CutsNoTextOffInAnyLanguage)
{
    for (const QString &language : PanelLanguage::known()) {
        ASSERT_TRUE(window->changeLanguage(language, error)) << error.toStdString();
        for (const QString &page : window->pageNames()) {
            ASSERT_TRUE(window->showPage(page));
            QCoreApplication::processEvents();
            window->refresh();
            QCoreApplication::processEvents();
            EXPECT_EQ(cutOffTexts(*window).join(QLatin1Char('\n')).toStdString(), "")
                << page.toStdString() << ", " << language.toStdString();
        }
    }
}

TEST_P(PanelWindowScreen, ShowsTheWholeNameOfEachStorageInTheFileBrowser)
{
    turnTo("export");
    for (const QString &language : PanelLanguage::known()) {
        ASSERT_TRUE(window->changeLanguage(language, error)) << error.toStdString();
        tap(window->findChild<QPushButton *>(QStringLiteral("chooseFolder")));
        QCoreApplication::processEvents();
        auto *const browser = window->findChild<FileBrowser *>();
        ASSERT_NE(browser, nullptr);
        const auto *box = browser->findChild<QComboBox *>(QStringLiteral("cb_root_name"));
        EXPECT_TRUE(browser->rect().contains(box->geometry())) << language.toStdString();
        QStyleOptionComboBox option;
        option.initFrom(box);
        option.editable = false;
        const int room = box->style()
                             ->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, box)
                             .width();
        for (int root = 0; root < box->count(); ++root)
            EXPECT_LE(box->fontMetrics().horizontalAdvance(box->itemText(root)), room)
                << box->itemText(root).toStdString();
        tap(browser->findChild<QPushButton *>(QStringLiteral("btn_cancel")));
        WAIT_FOR(window->findChild<FileBrowser *>() == nullptr);
    }
}

TEST_P(PanelWindowScreen, ChangesTheLanguageOfEveryPageWhileItRuns)
{
    QStringList english;
    QStringList chinese;
    for (const QString &page : window->pageNames()) {
        window->showPage(page);
        english << window->currentPage()->title();
    }
    tap(button(QStringLiteral("中文")));
    for (const QString &page : window->pageNames()) {
        window->showPage(page);
        chinese << window->currentPage()->title();
    }
    for (int i = 0; i < english.size(); ++i)
        EXPECT_NE(english.at(i), chinese.at(i));
    EXPECT_EQ(chinese.first(), QStringLiteral("数值"));
    tap(button(QStringLiteral("English")));
    EXPECT_EQ(window->currentPage()->title(), english.last());
}

INSTANTIATE_ON_EVERY_SCREEN(PanelWindowScreen);

TEST_F(PanelWindowTest, RefusesAnUnknownLanguageAndNamesTheKnown)
{
    EXPECT_FALSE(window->changeLanguage(QStringLiteral("xx"), error));
    EXPECT_EQ(error.toStdString(), "there is no language 'xx': there are en, zh_CN");
    EXPECT_EQ(window->currentPage()->title(), QStringLiteral("Values"));
}

TEST_F(PanelWindowTest, HasNoPageOfAnUnknownName)
{
    EXPECT_FALSE(window->showPage(QStringLiteral("nowhere")));
    EXPECT_EQ(window->currentPageName(), QStringLiteral("values"));
}

TEST_F(PanelWindowTest, SavesSettingsThatAScreenAsksForByFlag)
{
    const quint16 request = 1;
    auto &comm = session->communication();
    const quint16 parts[] = {192, 168, 1, 20, 255, 255, 255, 0, 192, 168, 1, 1, 192, 168, 1, 1};
    int address = 64052;
    for (const quint16 part : parts)
        comm.writeRegisters(0, address++, 1, &part);
    comm.writeRegisters(1, 60213, 1, &request);
    WAIT_FOR(window->notices().box() != nullptr);
    quint16 flag = 1;
    comm.readRegisters(1, 60213, 1, &flag);
    EXPECT_EQ(flag, 0);
}

TEST_F(PanelWindowTest, GoesWhileAMessageIsShownAndAMacroRuns)
{
    window->notices().show(QStringLiteral("A message"), 30, 2);
    window->notices().show(QStringLiteral("Another"), 30, 2);
    window->runtime().press(35);
    QCoreApplication::processEvents();
    window.reset();
    session.reset();
    EXPECT_EQ(QApplication::topLevelWidgets(), QWidgetList());
}
