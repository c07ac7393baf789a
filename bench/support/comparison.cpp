#include "bench/support/comparison.h"

#include <QtGlobal>

#include <algorithm>
#include <cstdio>
#include <map>
#include <optional>

namespace panelkit::bench {

namespace {

struct Row
{
    Job job;
    std::vector<Way> ways;
    int differsAt;
};

std::vector<Row> rows;

std::string benchmarkName(const Row &row, const Way &way)
{
    return row.job.name + '/' + way.name;
}

// Keeps the minimum CPU time of a call, in nanoseconds, of each benchmark.
class MinimumReporter final : public benchmark::BenchmarkReporter
{
public:
    bool ReportContext(const Context &) override { return true; }

    void ReportRuns(const std::vector<Run> &runs) override
    {
        for (const Run &run : runs) {
            if (run.run_type != Run::RT_Iteration || run.iterations == 0)
                continue;
            const double nanoseconds = run.cpu_accumulated_time * 1e9 / static_cast<double>(run.iterations);
            const auto known = m_minima.find(run.run_name.function_name);
            if (known == m_minima.end())
                m_minima.emplace(run.run_name.function_name, nanoseconds);
            else
                known->second = std::min(known->second, nanoseconds);
        }
    }

    std::optional<double> minimum(const Row &row, const char *wayName) const
    {
        for (const Way &way : row.ways) {
            const auto known = m_minima.find(benchmarkName(row, way));
            if (way.name == wayName && known != m_minima.end())
                return known->second;
        }
        return std::nullopt;
    }

private:
    std::map<std::string, double> m_minima;
};

std::string number(double value, int decimals)
{
    char text[64];
    std::snprintf(text, sizeof(text), "%.*f", decimals, value);
    return text;
}

std::string duration(std::optional<double> nanoseconds)
{
    if (!nanoseconds)
        return "";
    const double value = *nanoseconds;
    if (value < 10e3)
        return number(value, 0) + " ns";
    if (value < 10e6)
        return number(value / 1e3, 0) + " us";
    return number(value / 1e6, 0) + " ms";
}

// With as many decimals as it needs, three at most: 15, 13.5, 0.996.
std::string shortNumber(double value)
{
    std::string text = number(value, 3);
    text.erase(text.find_last_not_of('0') + 1);
    if (text.back() == '.')
        text.pop_back();
    return text;
}

void printLine(const std::vector<std::string> &cells, int nameWidth)
{
    std::printf("%-*s", nameWidth, cells[0].c_str());
    for (std::size_t i = 1; i < cells.size(); ++i)
        std::printf(" %10s", cells[i].c_str());
    std::printf("\n");
}

void printTable(const MinimumReporter &measured)
{
    std::size_t nameWidth = 0;
    for (const Row &row : rows)
        nameWidth = std::max(nameWidth, row.job.name.size());
    const auto width = static_cast<int>(nameWidth);

    std::printf("Minimum CPU time of a call and heap allocations of a call, Qt %s\n\n", qVersion());
    printLine({"job", "plain", "careful", "ours", "ratio", "aim", "alloc.", "-> ours", "promised"}, width);
    for (const Row &row : rows) {
        const auto plain = measured.minimum(row, "plain");
        const auto ours = measured.minimum(row, "ours");
        if (!plain || !ours)
            continue;
        const double ratio = *plain / *ours;
        const bool below = ratio < row.job.ratio;
        printLine({row.job.name, duration(plain), duration(measured.minimum(row, "careful")), duration(ours),
                   number(ratio, 1) + (below ? " <" : ""),
                   row.job.ratio > 0 ? shortNumber(row.job.ratio) : "",
                   shortNumber(row.ways.front().allocations), shortNumber(row.ways.back().allocations),
                   row.job.allocations < 0 ? "" : shortNumber(row.job.allocations)},
                  width);
    }
}

// Says what is wrong with the row's answers and allocations.
bool isGood(const Row &row)
{
    if (row.differsAt >= 0)
        std::fprintf(stderr, "%s: the answers differ at call %d\n", row.job.name.c_str(), row.differsAt);
    const double allocations = row.ways.back().allocations;
    const bool kept = row.job.allocations < 0 || std::abs(allocations - row.job.allocations) < 1e-9;
    if (!kept)
        std::fprintf(stderr, "%s: %s allocations a call, %s promised\n", row.job.name.c_str(),
                     shortNumber(allocations).c_str(), shortNumber(row.job.allocations).c_str());
    return row.differsAt < 0 && kept;
}

} // namespace

void addRow(const Job &job, std::vector<Way> ways, int differsAt)
{
    rows.push_back({job, std::move(ways), differsAt});
}

int run(int argc, char **argv)
{
    // Before the caller's own options, so that those hold.
    std::string defaults[] = {"--benchmark_enable_random_interleaving=true", "--benchmark_repetitions=15",
                              "--benchmark_min_time=0.01"};
    std::vector<char *> arguments = {argv[0]};
    for (std::string &option : defaults)
        arguments.push_back(option.data());
    arguments.insert(arguments.end(), argv + 1, argv + argc);
    int count = static_cast<int>(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    if (benchmark::ReportUnrecognizedArguments(count, arguments.data()))
        return 2;

    for (const Row &row : rows) {
        for (const Way &way : row.ways)
            benchmark::RegisterBenchmark(benchmarkName(row, way).c_str(), way.loop);
    }
    MinimumReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();
    printTable(reporter);
    const auto bad = std::count_if(rows.begin(), rows.end(), [](const Row &row) { return !isGood(row); });
    return bad == 0 ? 0 : 1;
}

} // namespace panelkit::bench
