// Which of a file system's figures are shown: here the system itself answers with figures that all differ.

#include "runtime/systeminfo.h"

#include <gtest/gtest.h>

#include <sys/statfs.h>

#include <cstring>

// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name): stands before the C library's own
int statfs(const char *path, struct statfs *space) noexcept
{
    if (std::strcmp(path, "/a/disk") != 0)
        return -1;
    *space = {};
    space->f_bsize = 1048576;
    space->f_frsize = 4096;
    space->f_blocks = 100;
    space->f_bfree = 40;
    space->f_bavail = 35;
    space->f_files = 7;
    space->f_ffree = 3;
    return 0;
}

TEST(DiskSpace, CountsWhatIsReservedForTheSuperuserAsFree)
{
    const DevDiskInfo info = tools_get_dev_disk("/a/disk");
    EXPECT_EQ(info.totalMB, 100.0F);
    EXPECT_EQ(info.usedMB, 60.0F);
    EXPECT_EQ(info.freeMB, 40.0F);
}

TEST(DiskSpace, IsZeroWhereTheSystemRefusesToAnswer)
{
    const DevDiskInfo info = tools_get_dev_disk("/no/disk");
    EXPECT_EQ(info.totalMB, 0.0F);
    EXPECT_EQ(info.usedMB, 0.0F);
    EXPECT_EQ(info.freeMB, 0.0F);
}
