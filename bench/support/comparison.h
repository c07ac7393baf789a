// Benchmarks that set ours beside the ordinary Qt way of doing the same: same process, same inputs, same
// answers.
//
//     void plainWay(QString &answer);
//     void ourWay(QString &answer);
//
//     int main(int argc, char **argv)
//     {
//         panelkit::bench::compare<QString>({"three texts joined", 5, 0}, plainWay, ourWay);
//         return panelkit::bench::run(argc, argv);
//     }
//
// A way is a callable that does the job once and leaves the result in its argument, an `Answer`: any type
// that can be default-constructed and compared with ==. Between calls the answer stays as it was left, so a
// way that overwrites it shows what a caller pays who keeps his object; one that begins with `answer =
// Answer()` what a fresh object costs. Ways may have state, such as a position in a list of inputs: the
// check, the count of allocations and the measuring each begin with a fresh copy, so all ways see the same
// inputs in the same order.
#pragma once

#include "tests/support/allocationcounter.h"

#include <benchmark/benchmark.h>

#include <functional>
#include <string>
#include <vector>

namespace panelkit::bench {

struct Job
{
    std::string name;
    double ratio = 0;        // aimed at, time of plain to time of ours; 0: none
    double allocations = -1; // promised, per call of ours, exactly; negative: none
    int calls = 256;         // that are checked and counted before anything is measured
};

struct Way
{
    std::string name;
    double allocations; // per call, once the answer has been filled
    std::function<void(benchmark::State &)> loop;
};

// Adds a row to the table; `differsAt` names the first call whose answers differed, or is negative.
void addRow(const Job &job, std::vector<Way> ways, int differsAt);

// Measures all rows (Google Benchmark's options hold; the repetitions of all ways are interleaved), prints
// the table of minimum CPU times, ratios and allocations, and returns 1 when answers differed or a promised
// number of allocations was not kept, else 0.
int run(int argc, char **argv);

template <typename Answer, typename Callable>
Way measuredWay(const char *name, int calls, const Callable &callable)
{
    Answer answer{};
    Callable way = callable;
    for (int i = 0; i < calls; ++i)
        way(answer);
    const testing::AllocationCounter counter;
    for (int i = 0; i < calls; ++i)
        way(answer);
    return {name, static_cast<double>(counter.count()) / calls, [callable](benchmark::State &state) {
                Answer kept{};
                Callable copy = callable;
                for ([[maybe_unused]] auto turn : state) {
                    copy(kept);
                    benchmark::DoNotOptimize(kept);
                    benchmark::ClobberMemory();
                }
            }};
}

// The first call that the two answer differently, or -1.
template <typename Answer, typename One, typename Other>
int firstDifference(int calls, One one, Other other)
{
    Answer answerOfOne{};
    Answer answerOfOther{};
    for (int i = 0; i < calls; ++i) {
        one(answerOfOne);
        other(answerOfOther);
        if (!(answerOfOne == answerOfOther))
            return i;
    }
    return -1;
}

template <typename Answer, typename Plain, typename Ours>
void compare(const Job &job, Plain plain, Ours ours)
{
    addRow(job,
           {measuredWay<Answer>("plain", job.calls, plain), measuredWay<Answer>("ours", job.calls, ours)},
           firstDifference<Answer>(job.calls, plain, ours));
}

// With a careful way between: what Qt gives to one who knows which calls allocate.
template <typename Answer, typename Plain, typename Careful, typename Ours>
void compare(const Job &job, Plain plain, Careful careful, Ours ours)
{
    const int difference = firstDifference<Answer>(job.calls, plain, careful);
    addRow(job,
           {measuredWay<Answer>("plain", job.calls, plain),
            measuredWay<Answer>("careful", job.calls, careful), measuredWay<Answer>("ours", job.calls, ours)},
           difference >= 0 ? difference : firstDifference<Answer>(job.calls, plain, ours));
}

} // namespace panelkit::bench
