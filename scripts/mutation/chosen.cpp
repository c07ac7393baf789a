// Linked into a test program with woven mutants. PANELKIT_MUTANT is the number of the one that is chosen (none when it
// is not set). With PANELKIT_MUTANTS_REACHED, the name of a file and its size in mutants, the program writes there
// which mutants each test reaches; the line "-" has those that are reached outside of all tests. The last line has the
// seconds of processor time that the program took: bubblewrap tells its parent nothing of them.
#include "woven.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/resource.h>

namespace {

int chosenMutant()
{
    const char *text = std::getenv("PANELKIT_MUTANT");
    return text != nullptr ? std::atoi(text) : -1;
}

// One byte a mutant, shared with the processes that a test forks.
class Reached : public testing::EmptyTestEventListener
{
public:
    Reached()
    {
        const char *path = std::getenv("PANELKIT_MUTANTS_REACHED");
        const char *count = std::getenv("PANELKIT_MUTANTS_COUNT");
        if (path == nullptr || count == nullptr)
            return;
        m_file = std::fopen(path, "w");
        m_count = std::atoi(count);
        void *memory = mmap(nullptr, static_cast<size_t>(m_count) + 1, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
        if (m_file == nullptr || memory == MAP_FAILED)
            std::abort();
        m_marks = static_cast<char *>(memory);
        testing::UnitTest::GetInstance()->listeners().Append(this);
    }

    void mark(int mutant) noexcept
    {
        if (m_marks != nullptr && mutant < m_count)
            m_marks[mutant] = 1;
    }

    void OnTestStart(const testing::TestInfo &) override { write("-"); }
    void OnTestEnd(const testing::TestInfo &info) override
    {
        write((std::string(info.test_suite_name()) + "." + info.name()).c_str());
    }
    void OnTestProgramEnd(const testing::UnitTest &) override
    {
        write("-");
        rusage usage = {};
        getrusage(RUSAGE_SELF, &usage);
        std::fprintf(m_file, "cpu %ld\n", static_cast<long>(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec + 1));
        std::fflush(m_file);
    }

private:
    void write(const char *where)
    {
        std::fputs(where, m_file);
        for (int mutant = 0; mutant < m_count; ++mutant) {
            if (m_marks[mutant] != 0)
                std::fprintf(m_file, " %d", mutant);
        }
        std::fputc('\n', m_file);
        std::memset(m_marks, 0, static_cast<size_t>(m_count));
    }

    std::FILE *m_file = nullptr;
    int m_count = 0;
    char *m_marks = nullptr;
};

// Never destroyed: mutants are still reached while the program ends.
Reached &reached()
{
    static Reached *const reached = new Reached;
    return *reached;
}

const bool isReady = (reached(), true);

} // namespace

bool panelkitMutants::isChosen(int mutant) noexcept
{
    static const int chosen = chosenMutant();
    reached().mark(mutant);
    return mutant == chosen;
}
