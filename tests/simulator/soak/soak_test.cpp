#include "simulator/soak/soak.h"

#include "simulator/sample/sample.h"

#include <QTemporaryFile>

#include <gtest/gtest.h>

#include <fcntl.h>
#include <unistd.h>

using namespace panelkit::simulator;

namespace {

std::unique_ptr<Soak> openSoak(quint64 seed)
{
    QString error;
    auto soak = Soak::open({QString(), seed}, error);
    EXPECT_TRUE(soak) << error.toStdString();
    return soak;
}

std::vector<quint64> askedAfter(quint64 seed, int actions)
{
    const auto soak = openSoak(seed);
    for (int i = 0; i < actions; ++i)
        EXPECT_TRUE(soak->act());
    soak->end();
    std::vector<quint64> asked;
    for (const Road *road : soak->roads())
        asked.push_back(road->count().asked);
    return asked;
}

// A shift on every road, and its end.
void workAShift(Soak &soak)
{
    for (std::size_t i = 0; i < soak.roads().size(); ++i)
        ASSERT_TRUE(soak.act());
    soak.end();
}

// Of so few shifts nothing can be said about memory: on an X server the toolkit is still warming up.
QStringList descriptorGrowths(const Soak &soak)
{
    return soak.growths().filter(QStringLiteral("the number of open descriptors grew"));
}

} // namespace

TEST(SoakOfTheSample, LosesNothingOnAnyRoad)
{
    const auto soak = openSoak(4);
    for (int i = 0; i < Soak::actionsOfAShift + 50; ++i)
        ASSERT_TRUE(soak->act());
    EXPECT_EQ(soak->shifts(), 1u);
    soak->end();
    EXPECT_EQ(soak->shifts(), 2u);
    EXPECT_EQ(soak->losses().join(QLatin1Char('\n')).toStdString(), "");
    for (const Road *road : soak->roads()) {
        EXPECT_GE(road->count().asked, 1u) << road->name().toStdString();
        EXPECT_TRUE(road->count().isComplete()) << road->name().toStdString();
    }
    EXPECT_FALSE(soak->faults().empty());
    EXPECT_GT(soak->plcRequests(), 0u);
}

TEST(SoakOfTheSample, AsksTheSameForTheSameSeed)
{
    const std::vector<quint64> asked = askedAfter(8, 120);
    EXPECT_EQ(asked, askedAfter(8, 120));
    EXPECT_NE(asked, askedAfter(9, 120));
}

TEST(SoakOfTheSample, FindsADescriptorThatStaysOpen)
{
    const auto soak = openSoak(4);
    workAShift(*soak);
    workAShift(*soak);
    soak->endWarmUp();
    workAShift(*soak);
    EXPECT_EQ(descriptorGrowths(*soak).join(QLatin1Char('\n')).toStdString(), "");
    const int leaked = open("/dev/null", O_RDONLY);
    workAShift(*soak);
    close(leaked);
    EXPECT_EQ(descriptorGrowths(*soak).size(), 1);
}

TEST(SoakOfTheSample, DoesNotOpenWithoutItsProject)
{
    QString error;
    EXPECT_FALSE(Soak::open({QStringLiteral("/nowhere/project.json"), 1}, error));
    EXPECT_EQ(error.toStdString(),
              "/nowhere/project.json: found No such file or directory, expected a project file");
}

TEST(SoakOfTheSample, RefusesAProjectBeyond16MiB)
{
    QTemporaryFile file;
    ASSERT_TRUE(file.open());
    const QByteArray project = sampleProject();
    file.write(project + QByteArray(16 * 1024 * 1024 + 1 - static_cast<int>(project.size()), ' '));
    file.flush();
    QString error;
    EXPECT_FALSE(Soak::open({file.fileName(), 1}, error));
    EXPECT_EQ(error.toStdString(),
              file.fileName().toStdString() + ": found more than 16 MiB, expected a project file");
}

TEST(SoakOfTheSample, SaysWhereItNeedsATemporaryFolder)
{
    const QByteArray before = qgetenv("TMPDIR");
    qputenv("TMPDIR", "/dev/null");
    QString error;
    EXPECT_FALSE(Soak::open({QString(), 1}, error));
    before.isNull() ? qunsetenv("TMPDIR") : qputenv("TMPDIR", before);
    EXPECT_EQ(error.toStdString(), "no temporary folder can be written in /dev/null (Not a directory): "
                                   "name another place in the environment variable TMPDIR");
}
