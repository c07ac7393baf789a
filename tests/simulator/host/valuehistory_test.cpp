#include "simulator/host/valuehistory.h"

#include "simulator/comm/communication.h"
#include "simulator/host/session.h"
#include "tests/simulator/stillplc.h"

#include <gtest/gtest.h>

using namespace panelkit::simulator;

namespace {

const QDateTime noon(QDate(2026, 3, 5), QTime(12, 0));

// The sample on a line that stands still.
class ValueHistoryTest : protected panelkit::testing::StillPlc, public ::testing::Test
{
protected:
    void SetUp() override { ASSERT_TRUE(openSession()) << error.toStdString(); }

    bool openSession()
    {
        session = Session::open(sessionOptions(), error);
        return session != nullptr;
    }

    // Until everything that is watched has come.
    void waitForValues()
    {
        for (const int link : {1, 2})
            ASSERT_TRUE(session->communication().waitForLink(
                link, [](const LinkState &state) { return state.rounds >= 2; }, std::chrono::seconds(60)));
    }

    void setOrder(quint16 permille)
    {
        RegisterValueChange order = {};
        order.block[0] = 'L';
        order.block[1] = 'W';
        order.index = 110;
        session->communication().writeAddressWords(order, 1, &permille);
    }

    // The rows of one item.
    static QList<QStringList> of(const ValueHistory &history, const char *name)
    {
        QList<QStringList> rows;
        for (const QStringList &row : history.rows(0, history.rowCount()))
            if (row.at(1) == QLatin1String(name))
                rows << row;
        return rows;
    }

    QString error;
    std::unique_ptr<Session> session;
};

} // namespace

TEST_F(ValueHistoryTest, HasARowForEachItemOfEachSample)
{
    ValueHistory history(*session);
    waitForValues();
    history.sample(noon);
    setOrder(123);
    history.sample(noon.addSecs(5));
    EXPECT_EQ(history.rowsPerSample(), session->project().items.size());
    EXPECT_EQ(history.rowCount(), 2 * session->project().items.size());
    const QList<QStringList> level = of(history, "Tank level");
    ASSERT_EQ(level.size(), 2);
    EXPECT_EQ(level.first(), (QStringList{QStringLiteral("2026-03-05 12:00:00"), QStringLiteral("Tank level"),
                                          QStringLiteral("3x2"), QStringLiteral("87.5")}));
    EXPECT_EQ(level.last().first(), QStringLiteral("2026-03-05 12:00:05"));
    const QList<QStringList> order = of(history, "Order done, percent");
    ASSERT_EQ(order.size(), 2);
    EXPECT_EQ(order.first().last(), QStringLiteral("0.0"));
    EXPECT_EQ(order.last().last(), QStringLiteral("12.3"));
}

TEST_F(ValueHistoryTest, GivesAnyPartOfItsRows)
{
    ValueHistory history(*session);
    waitForValues();
    for (int i = 0; i < 3; ++i)
        history.sample(noon.addSecs(i));
    const QList<QStringList> all = history.rows(0, 1000);
    ASSERT_EQ(static_cast<std::size_t>(all.size()), history.rowCount());
    const int middle = static_cast<int>(history.rowsPerSample()) - 2;
    const QList<QStringList> part = history.rows(static_cast<std::size_t>(middle), 5);
    ASSERT_EQ(part.size(), 5);
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(part.at(i), all.at(middle + i));
    EXPECT_EQ(history.rows(history.rowCount() - 1, 5).size(), 1);
    EXPECT_TRUE(history.rows(history.rowCount(), 5).isEmpty());
    EXPECT_TRUE(history.rows(history.rowCount() + 7, 5).isEmpty());
}

TEST_F(ValueHistoryTest, LetsTheOldestSamplesGo)
{
    ValueHistory history(*session, 2 * session->project().items.size() + 1);
    waitForValues();
    for (int i = 0; i < 4; ++i)
        history.sample(noon.addSecs(i));
    EXPECT_EQ(history.rowCount(), 2 * history.rowsPerSample());
    EXPECT_EQ(history.rows(0, 1).first().first(), QStringLiteral("2026-03-05 12:00:02"));
}

TEST_F(ValueHistoryTest, TakesNoValueOfAPlcThatHasNotAnsweredYetAndDoesNotWaitForIt)
{
    PlcFaultSetting silent;
    silent.fault = PlcFault::Silent;
    server.setFault(silent);
    session.reset();
    ASSERT_TRUE(openSession());
    ValueHistory history(*session);
    history.sample(noon);
    EXPECT_EQ(session->communication().linkState(1).condition, LinkCondition::Idle)
        << "it was not waited for";
    EXPECT_EQ(of(history, "Tank level").first().last(), QString());
    EXPECT_EQ(of(history, "Order done, percent").first().last(), QStringLiteral("0.0"));
}
