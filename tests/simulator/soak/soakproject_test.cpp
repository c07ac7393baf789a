#include "simulator/soak/soakproject.h"

#include "simulator/sample/sample.h"
#include "simulator/soak/chance.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace panelkit::simulator;

namespace {

std::optional<SoakProject> make(const QByteArray &file, QString &error)
{
    Chance chance(1, 0);
    return makeSoakProject(file, chance, error);
}

} // namespace

TEST(SoakProject, AddsWitnessesCountersAndRefusingLinksToTheSample)
{
    QString error;
    const auto soak = make(sampleProject(), error);
    ASSERT_TRUE(soak) << error.toStdString();
    const auto &items = soak->project.items;
    const auto witnesses = std::count_if(items.begin(), items.end(),
                                         [&](const ItemDefinition &item) { return soak->isWitness(item); });
    EXPECT_EQ(witnesses, 24); // on both Modbus links
    ASSERT_EQ(soak->counters.size(), 2u);
    EXPECT_EQ(soak->counters[0].link, QStringLiteral("Line PLC"));
    EXPECT_EQ(soak->counters[0].index, 600);
    EXPECT_EQ(soak->counters[1].index, 602);
    EXPECT_EQ(soak->refusingLinks, (std::vector<int>{901, 902, 903, 904, 905, 906}));
    EXPECT_EQ(soak->project.links.size(), 9u);
    EXPECT_EQ(soak->stations, (std::vector<int>{1, 2, 3, 4}));
}

TEST(SoakProject, TakesOtherNumbersForItsLinksThanTheProject)
{
    QString error;
    const auto soak = make(R"({"name": "P", "screenWidth": 1, "screenHeight": 1, "links": [
        {"number": 902, "name": "PLC", "driver": "Modbus", "port": "COM1"}]})",
                           error);
    ASSERT_TRUE(soak) << error.toStdString();
    EXPECT_EQ(soak->refusingLinks, (std::vector<int>{901, 903, 904, 905, 906, 907}));
    EXPECT_TRUE(soak->counters.empty()); // a serial link has no PLC here
}

TEST(SoakProject, IsNoneOfAFileThatIsNoProject)
{
    QString error;
    EXPECT_FALSE(make("{}", error));
    EXPECT_NE(error, QString());
}

TEST(SoakProject, SaysWhichNameStandsInItsWay)
{
    QString error;
    EXPECT_FALSE(make(R"({"name": "P", "screenWidth": 1, "screenHeight": 1, "links": [
        {"number": 1, "name": "Soak link 901", "driver": "Modbus", "port": "COM1"}]})",
                      error));
    EXPECT_EQ(error.indexOf(QStringLiteral("with what a soak adds to it: ")), 0) << error.toStdString();
}
