// A disk that is full.
#pragma once

#include <QtGlobal>

#include <csignal>
#include <sys/resource.h>

namespace panelkit::simulator {

// While it lives, no file of this process grows beyond `bytes`: what is written behind that fails, as on a
// full disk, but for this process alone. Nothing else should be written meanwhile, logs included.
class FullDisk
{
public:
    explicit FullDisk(rlim_t bytes) : m_earlierHandler(std::signal(SIGXFSZ, SIG_IGN))
    {
        getrlimit(RLIMIT_FSIZE, &m_earlier);
        rlimit limit = m_earlier;
        limit.rlim_cur = qMin(bytes, m_earlier.rlim_max);
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FullDisk()
    {
        setrlimit(RLIMIT_FSIZE, &m_earlier);
        std::signal(SIGXFSZ, m_earlierHandler);
    }
    FullDisk(const FullDisk &) = delete;
    FullDisk &operator=(const FullDisk &) = delete;

private:
    rlimit m_earlier = {};
    void (*m_earlierHandler)(int);
};

} // namespace panelkit::simulator
