#include "simulator/soak/showroad.h"

#include "simulator/comm/communication.h"
#include "tests/simulator/soak/roadfixture.h"

#include <algorithm>

using namespace panelkit::simulator;

namespace {

class ShowRoadOnASession : public panelkit::testing::RoadFixture
{
protected:
    // A witness of two words.
    const ItemDefinition &witness() const
    {
        const std::vector<ItemDefinition> &items = project.project.items;
        return *std::find_if(items.begin(), items.end(), [this](const ItemDefinition &item) {
            return project.isWitness(item) && item.wordCount == 2;
        });
    }

    // What a unit's registers from the witness on hold in the next generation.
    QVector<quint16> wordsOf(int unit, quint16 generation) const
    {
        QVector<quint16> words;
        for (int i = 0; i < 2; ++i) {
            for (int word = 0; word <= 0xffff; ++word) {
                const auto found =
                    SoakPlc::generationOf(unit, witness().address.index + i, {static_cast<quint16>(word)});
                if (found == generation)
                    words << static_cast<quint16>(word);
            }
        }
        return words;
    }

    void nextGeneration()
    {
        const quint16 before = plc.generation();
        for (quint64 action = 0; plc.generation() == before; ++action) {
            Chance chance(3, action);
            plc.act(chance);
        }
        plc.recover();
    }

    ShowRoad road{project, plc};
};

} // namespace

TEST_F(ShowRoadOnASession, LosesNothingOfAPlcThatAnswers)
{
    road.beginShift(*session);
    act(road, 200);
    nextGeneration();
    act(road, 200);
    road.endShift();
    EXPECT_EQ(firstLoss(road), "");
    EXPECT_EQ(road.count().asked, 400u);
    EXPECT_GT(road.count().answered, 300u);
    EXPECT_GT(road.count().refused, 0u); // the steam PLC has no connection
    EXPECT_TRUE(road.count().isComplete());
}

TEST_F(ShowRoadOnASession, ShowsZerosOfALinkThatIsAway)
{
    road.beginShift(*session);
    PlcFaultSetting gone;
    gone.fault = PlcFault::Gone;
    plc.switchOn(gone);
    for (const int link : {1, 2})
        ASSERT_TRUE(session->communication().waitForLink(
            link, [](const LinkState &state) { return state.condition == LinkCondition::Away; },
            std::chrono::seconds(60)));
    act(road, 100);
    EXPECT_EQ(firstLoss(road), "");
    EXPECT_GT(road.count().refused, 50u);
    EXPECT_EQ(plc.faults().at(QStringLiteral("gone")), 1u);
}

TEST_F(ShowRoadOnASession, FindsATextThatIsNotWhatTheWordsSay)
{
    ItemDefinition item;
    item.name = QStringLiteral("Tank level");
    item.type = NUM_UINT16;
    item.digits = 4;
    item.decimals = 1;
    road.judgeText(item, {875}, QStringLiteral("87.5"));
    EXPECT_EQ(firstLoss(road), "");
    road.judgeText(item, {875}, QStringLiteral("875"));
    EXPECT_EQ(firstLoss(road), "show: 'Tank level' shows '875' where 036b says '87.5'");
}

TEST_F(ShowRoadOnASession, TakesTheWordsOfAnyGenerationThatThePlcHasHad)
{
    nextGeneration();
    nextGeneration();
    road.judgeWords(witness(), 1, wordsOf(1, 1));
    road.judgeWords(witness(), 1, wordsOf(1, 3));
    EXPECT_EQ(firstLoss(road), "");
}

TEST_F(ShowRoadOnASession, FindsWordsOfTwoGenerations)
{
    nextGeneration();
    const QVector<quint16> torn = {wordsOf(1, 1).at(0), wordsOf(1, 2).at(1)};
    road.judgeWords(witness(), 1, torn);
    EXPECT_NE(firstLoss(road), "");
}

TEST_F(ShowRoadOnASession, FindsWordsThatAreOlderThanThoseBefore)
{
    nextGeneration();
    road.judgeWords(witness(), 1, wordsOf(1, 2));
    EXPECT_EQ(firstLoss(road), "");
    road.judgeWords(witness(), 1, wordsOf(1, 1));
    EXPECT_NE(firstLoss(road), "");
}

TEST_F(ShowRoadOnASession, FindsWordsOfAnotherUnit)
{
    road.judgeWords(witness(), 1, wordsOf(2, 1));
    EXPECT_NE(firstLoss(road), "");
}
