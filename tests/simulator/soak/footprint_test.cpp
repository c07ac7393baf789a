#include "simulator/soak/footprint.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <fcntl.h>
#include <future>
#include <thread>
#include <unistd.h>

using namespace panelkit::simulator;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

std::vector<std::string> texts(const QStringList &sentences)
{
    std::vector<std::string> texts;
    for (const QString &sentence : sentences)
        texts.push_back(sentence.toStdString());
    return texts;
}

} // namespace

TEST(Footprint, SeesADescriptorThatStaysOpen)
{
    const Footprint before = Footprint::now();
    const int descriptor = open("/dev/null", O_RDONLY);
    const Footprint after = Footprint::now();
    close(descriptor);
    EXPECT_EQ(after.descriptors, before.descriptors + 1);
    EXPECT_EQ(Footprint::now().descriptors, before.descriptors);
}

TEST(Footprint, SeesAThreadThatGoesOn)
{
    std::promise<void> end;
    std::thread thread([future = end.get_future()] { future.wait(); });
    const int threads = Footprint::now().threads;
    EXPECT_GE(threads, 2);
    EXPECT_GE(Footprint::settled(1).threads, 2) << "it goes on";
    end.set_value();
    thread.join();
    EXPECT_LT(Footprint::settled(threads - 1).threads, threads);
}

TEST(Footprint, SeesMemoryThatIsKept)
{
    const Footprint before = Footprint::now();
    void *volatile kept = std::malloc(3'000'000);
    const Footprint after = Footprint::now();
    std::free(kept);
    EXPECT_GE(after.heap, before.heap + 3'000'000);
    EXPECT_GT(after.resident, 0);
}

TEST(Footprint, MayGrowWithinTheBoundsOnly)
{
    const Footprint before{1'000'000, 50'000'000, 15, 3};
    const FootprintBounds bounds{500, 1000};
    EXPECT_THAT(texts(growth(before, {1'000'500, 50'001'000, 15, 3}, bounds)), IsEmpty());
    EXPECT_THAT(texts(growth(before, {1'000'501, 50'001'001, 16, 4}, bounds)),
                ElementsAre("the heap grew from 1000000 to 1000501, by more than 500",
                            "resident memory grew from 50000000 to 50001001, by more than 1000",
                            "the number of open descriptors grew from 15 to 16, by more than 0",
                            "the number of threads grew from 3 to 4, by more than 0"));
}
