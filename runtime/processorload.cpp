#include "runtime/systemfigures.h"

#include "runtime/systempath.h"

#include <QByteArray>
#include <QFile>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

namespace {

const char *const blanks = " \t\n\v\f\r";

quint32 sumOfTicks(const cpu_info &sample)
{
    return sample.user + sample.nice + sample.system + sample.idle + sample.iowait + sample.irq +
           sample.softirq + sample.steal + sample.guest + sample.guestNice;
}

} // namespace

namespace panelkit {

void parseProcessorLine(const char *line, cpu_info &sample)
{
    const char *name = line + std::strspn(line, blanks);
    const std::size_t nameLength = qMin(std::strcspn(name, blanks), sizeof(sample.cpuName) - 1);
    if (nameLength == 0)
        return;
    std::memcpy(sample.cpuName, name, nameLength);
    sample.cpuName[nameLength] = '\0';

    quint32 *const counters[] = {&sample.user,   &sample.nice,     &sample.system,  &sample.idle,
                                 &sample.iowait, &sample.irq,      &sample.softirq, &sample.steal,
                                 &sample.guest,  &sample.guestNice};
    const char *position = name + nameLength;
    for (quint32 *counter : counters) {
        char *end = nullptr;
        // Wider than a counter, so that a long one keeps its low bits on 32-bit processors too.
        const unsigned long long ticks = std::strtoull(position, &end, 10);
        if (end == position)
            return;
        *counter = static_cast<quint32>(ticks);
        position = end;
    }
}

} // namespace panelkit

void get_occupy(cpu_info *sample)
{
    if (sample == nullptr)
        return;
    const QByteArray path = QFile::encodeName(panelkit::systemPath("/proc/stat"));
    const std::unique_ptr<std::FILE, int (*)(std::FILE *)> file(std::fopen(path.constData(), "re"),
                                                                &std::fclose);
    if (file == nullptr)
        return;
    char line[2048] = {};
    if (std::fgets(line, sizeof(line), file.get()) != nullptr)
        panelkit::parseProcessorLine(line, *sample);
}

float cal_occupy(cpu_info *older, cpu_info *newer)
{
    if (older == nullptr || newer == nullptr)
        return 0.0f;
    const quint32 olderSum = sumOfTicks(*older);
    const quint32 newerSum = sumOfTicks(*newer);
    const quint32 busy = (newerSum - newer->idle) - (olderSum - older->idle);
    const float total =
        newerSum == olderSum ? 1.0f : static_cast<float>(static_cast<qint32>(newerSum - olderSum));
    return static_cast<float>(busy * 100.0 / static_cast<double>(total));
}

float tools_get_cpu_info(cpu_info &info)
{
    if (info.firstCall != 0) {
        get_occupy(&info);
        info.firstCall = 0;
        return 0.0f;
    }
    cpu_info older = info;
    get_occupy(&info);
    return cal_occupy(&older, &info);
}
