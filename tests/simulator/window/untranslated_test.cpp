// The window of a program that lies where no translations lie beside it.
#include "simulator/window/runtimenotices.h"
#include "tests/simulator/window/panelwindowfixture.h"
#include "widgets/hmimessagebox.h"

using namespace panelkit::simulator;
using panelkit::testing::PanelWindowOnEveryScreen;

namespace {

class UntranslatedScreen : public PanelWindowOnEveryScreen
{
};

} // namespace

TEST_P(UntranslatedScreen, SaysWhyTheLanguageIsNotChanged)
{
    tap(button(QStringLiteral("中文")));
    WAIT_FOR(window->notices().box() != nullptr && window->notices().box()->isVisible());
    auto *const box = dynamic_cast<HMIMessageBox *>(window->notices().box());
    ASSERT_NE(box, nullptr);
    QString text = box->text();
    text.remove(QChar(0x200b)).replace(QLatin1Char('\n'), QLatin1Char(' '));
    EXPECT_TRUE(text.contains(QStringLiteral("language 'zh_CN'"))) << text.toStdString();
    EXPECT_TRUE(text.contains(QStringLiteral("panelsim_zh_CN.qm"))) << text.toStdString();
    EXPECT_LE(box->width(), GetParam().width);
    EXPECT_LE(box->height(), GetParam().height);
    tap(box->button(QMessageBox::Ok));
    WAIT_FOR(window->notices().box() == nullptr);
    EXPECT_EQ(window->currentPage()->title(), QStringLiteral("Values"));
    EXPECT_NE(button(QStringLiteral("中文")), nullptr);
}

INSTANTIATE_ON_EVERY_SCREEN(UntranslatedScreen);
