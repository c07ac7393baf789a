#include "simulator/comm/pollplan.h"

#include <algorithm>
#include <tuple>

namespace panelkit::simulator {

namespace {

// Those that stay alone come last, so that the last request is always one to be joined until then.
bool comesBefore(const PollRange &a, const PollRange &b)
{
    return std::tie(a.isAlone, a.range.unit, a.range.table, a.range.first) <
           std::tie(b.isAlone, b.range.unit, b.range.table, b.range.first);
}

// Whether `range`, which begins no earlier than the request, can be read with it.
bool fits(const RegisterRange &request, const RegisterRange &range, int largestGap)
{
    return request.unit == range.unit && request.table == range.table &&
           range.first - request.end() <= largestGap &&
           range.end() - request.first <= largestRead(range.table);
}

} // namespace

std::vector<PollRequest> planPolls(const std::vector<PollRange> &ranges, int largestGap)
{
    std::vector<std::size_t> order;
    order.reserve(ranges.size());
    for (std::size_t i = 0; i < ranges.size(); ++i)
        if (ranges[i].range.count >= 1 && ranges[i].range.count <= largestRead(ranges[i].range.table))
            order.push_back(i);
    std::stable_sort(order.begin(), order.end(),
                     [&](std::size_t a, std::size_t b) { return comesBefore(ranges[a], ranges[b]); });

    std::vector<PollRequest> requests;
    for (const std::size_t number : order) {
        const auto &[range, isAlone] = ranges[number];
        if (!isAlone && !requests.empty() && fits(requests.back().range, range, std::max(largestGap, 0))) {
            RegisterRange &request = requests.back().range;
            request.count = std::max(request.end(), range.end()) - request.first;
        } else {
            requests.push_back({range, {}});
        }
        requests.back().served.push_back(number);
    }
    return requests;
}

} // namespace panelkit::simulator
