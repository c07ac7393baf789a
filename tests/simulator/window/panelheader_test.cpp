#include "simulator/comm/communication.h"
#include "simulator/window/linklamp.h"
#include "simulator/window/panelheader.h"
#include "simulator/window/panellanguage.h"
#include "tests/simulator/window/cutofftexts.h"
#include "tests/simulator/window/manylinks.h"
#include "tests/simulator/window/panelwindowfixture.h"

#include <QPushButton>

#include <algorithm>

using namespace panelkit::simulator;
using namespace panelkit::testing;

namespace {

// As many links as a test wants on each screen.
class PanelHeaderScreen : public ::testing::TestWithParam<Screen>
{
protected:
    class Panel : public PanelWindowFixture
    {
    public:
        Panel(const Screen &screen, int links) : PanelWindowFixture(screen, projectOfManyLinks(links))
        {
            PanelWindowFixture::SetUp();
        }
        void TestBody() override {}
        using PanelWindowFixture::watch;

        QList<LinkLamp *> lamps() const
        {
            QList<LinkLamp *> shown;
            for (LinkLamp *lamp : window->findChildren<LinkLamp *>())
                if (lamp->isVisible())
                    shown << lamp;
            return shown;
        }

        void speak(const QString &language)
        {
            QString fault;
            ASSERT_TRUE(window->changeLanguage(language, fault)) << fault.toStdString();
            for (int round = 0; round < 4; ++round)
                QCoreApplication::processEvents();
        }

        // Whether the name, the time and the button have their room, each beside the others.
        void expectWellLaidOut() const
        {
            const auto *header = window->findChild<PanelHeader *>(QStringLiteral("header"));
            EXPECT_EQ(cutOffTexts(*window).join(QLatin1Char('\n')).toStdString(), "");
            QList<QWidget *> parts = header->findChildren<QWidget *>();
            std::sort(parts.begin(), parts.end(),
                      [](const QWidget *left, const QWidget *right) { return left->x() < right->x(); });
            int end = 0;
            for (const QWidget *part : parts) {
                if (!part->isVisible())
                    continue;
                EXPECT_GE(part->x(), end) << part->metaObject()->className();
                EXPECT_GE(part->width(), part->minimumSizeHint().width()) << part->metaObject()->className();
                end = part->x() + part->width();
            }
            EXPECT_EQ(end, header->width());
            const auto *name = header->findChild<QLabel *>(QStringLiteral("projectName"));
            EXPECT_GE(name->width(), 60);
            EXPECT_GE(name->text().size(), 4);
            EXPECT_TRUE(name->isVisible());
            EXPECT_TRUE(header->findChild<QPushButton *>(QStringLiteral("language"))->isVisible());
        }

        using PanelWindowFixture::window;
    };
};

} // namespace

TEST_P(PanelHeaderScreen, KeepsNameTimeAndLanguageBesideAnyNumberOfLinks)
{
    for (const int links : {0, 1, 3, 4, 6, 8, 12, 16, 100}) {
        Panel panel(GetParam(), links);
        for (const QString &language : PanelLanguage::known()) {
            SCOPED_TRACE(std::to_string(links) + " links, " + language.toStdString());
            panel.speak(language);
            panel.expectWellLaidOut();
            EXPECT_EQ(panel.lamps().isEmpty(), links == 0);
        }
    }
}

TEST_P(PanelHeaderScreen, LeavesNumbersOutBeforeItLeavesLampsOut)
{
    std::size_t form = 0;
    for (int links = 1; links <= 40; ++links) {
        const Panel panel(GetParam(), links);
        const QList<LinkLamp *> lamps = panel.lamps();
        ASSERT_FALSE(lamps.isEmpty());
        const std::size_t now = lamps.first()->text() == QLatin1String("1") ? 0
                                : lamps.first()->text().isEmpty()           ? 1
                                                                            : 2;
        EXPECT_EQ(lamps.size(), now == 2 ? 1 : links);
        EXPECT_GE(now, form) << links;
        EXPECT_LE(now, form + 1) << links;
        EXPECT_TRUE(links > 3 || now == 0) << links;
        form = now;
        if (form == 2)
            break;
    }
    EXPECT_EQ(form, 2U);
}

TEST_P(PanelHeaderScreen, ShowsWhichOfTooManyLinksDoesWorst)
{
    Panel panel(GetParam(), 60);
    ASSERT_EQ(panel.lamps().size(), 1);
    EXPECT_EQ(panel.lamps().first()->text(), QStringLiteral("1 +59"));
    panel.watch(1, 1);
    WAIT_FOR(panel.lamps().first()->text() == QStringLiteral("2 +59")); // idle, while 1 is connected
    panel.watch(47, 9);                                                 // nobody there
    WAIT_FOR(panel.lamps().first()->text() == QStringLiteral("47 +59"));
    EXPECT_EQ(panel.lamps().first()->condition(), LinkCondition::Away);
    EXPECT_TRUE(panel.lamps().first()->toolTip().startsWith(QStringLiteral("PLC 47: ")));
    EXPECT_EQ(panel.lamps().size(), 1);
    panel.watch(12, 1);
    panel.watch(12, 9);
    panel.watch(58, 1);
    panel.expectWellLaidOut();
}

INSTANTIATE_ON_EVERY_SCREEN(PanelHeaderScreen);
