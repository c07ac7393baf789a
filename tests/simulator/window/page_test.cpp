#include "simulator/window/page.h"
#include "tests/simulator/window/windowfixture.h"

#include <QCoreApplication>

using namespace panelkit::simulator;

namespace {

class CountingPage : public Page
{
public:
    CountingPage() : Page(nullptr) {}
    QString title() const override { return QStringLiteral("Counting"); }
    int translations = 0;

protected:
    void retranslate() override { ++translations; }
};

} // namespace

TEST(Page, SetsItsTextsAnewWhenTheLanguageChanges)
{
    CountingPage page;
    QEvent change(QEvent::LanguageChange);
    QCoreApplication::sendEvent(&page, &change);
    EXPECT_EQ(page.translations, 1);
}
