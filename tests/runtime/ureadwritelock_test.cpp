#include "runtime/ureadwritelock.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <thread>
#include <type_traits>
#include <vector>

static_assert(sizeof(UReadWriteLock) == sizeof(pthread_rwlock_t), "it holds the POSIX lock and nothing else");
static_assert(!std::is_polymorphic_v<UReadWriteLock>, "it has no virtual functions");
static_assert(!std::is_copy_constructible_v<UReadWriteLock> && !std::is_copy_assignable_v<UReadWriteLock>,
              "it cannot be copied");

TEST(UReadWriteLock, AnswersZeroWhenAllIsWell)
{
    UReadWriteLock lock;
    EXPECT_EQ(lock.lockForRead(), 0);
    EXPECT_EQ(lock.unlock(), 0);
    EXPECT_EQ(lock.lockForWrite(), 0);
    EXPECT_EQ(lock.unlock(), 0);
}

TEST(UReadWriteLock, CanBeDestroyedAndMadeAnew)
{
    UReadWriteLock lock;
    EXPECT_EQ(lock.destroyLock(), 0);
    EXPECT_EQ(lock.initLock(), 0);
    EXPECT_EQ(lock.lockForWrite(), 0);
    EXPECT_EQ(lock.unlock(), 0);
}

TEST(UReadWriteLock, ReportsTheDeadlockOfAWriterWithItself)
{
    UReadWriteLock lock;
    ASSERT_EQ(lock.lockForWrite(), 0);
    EXPECT_EQ(lock.lockForWrite(), EDEADLK);
    EXPECT_EQ(lock.lockForRead(), EDEADLK);
    EXPECT_EQ(lock.unlock(), 0);
}

TEST(UReadWriteLock, LetsReadersInTogether)
{
    UReadWriteLock lock;
    ASSERT_EQ(lock.lockForRead(), 0);
    int otherResult = -1;
    std::thread other([&] {
        otherResult = lock.lockForRead();
        lock.unlock();
    });
    other.join(); // would never return if the second reader had to wait for the first
    EXPECT_EQ(otherResult, 0);
    EXPECT_EQ(lock.unlock(), 0);
}

TEST(UReadWriteLock, KeepsReadersOutWhileItIsWritten)
{
    UReadWriteLock lock;
    std::atomic<bool> readerStarted{false};
    std::atomic<bool> readerInside{false};
    ASSERT_EQ(lock.lockForWrite(), 0);
    std::thread reader([&] {
        readerStarted = true;
        lock.lockForRead();
        readerInside = true;
        lock.unlock();
    });
    while (!readerStarted)
        std::this_thread::yield();
    const auto patience = std::chrono::steady_clock::now() + std::chrono::milliseconds(50);
    while (!readerInside && std::chrono::steady_clock::now() < patience)
        std::this_thread::yield();
    EXPECT_FALSE(readerInside);
    EXPECT_EQ(lock.unlock(), 0);
    reader.join();
    EXPECT_TRUE(readerInside);
}

TEST(UReadWriteLock, HoldsWithEightReadersAndTwoWriters)
{
    const int writers = 2;
    const int readers = 8;
    const int roundsOfAWriter = 2000;
    UReadWriteLock lock;
    long left = 0; // the two are always equal outside a writer's work
    long right = 0;
    std::atomic<int> writersAtWork{writers};
    std::atomic<long> reads{0};
    std::atomic<long> tornReads{0};
    std::atomic<int> failures{0};

    std::vector<std::thread> threads;
    for (int i = 0; i < writers; ++i) {
        threads.emplace_back([&] {
            for (int round = 0; round < roundsOfAWriter; ++round) {
                failures += lock.lockForWrite() != 0;
                ++left;
                ++right;
                failures += lock.unlock() != 0;
            }
            --writersAtWork;
        });
    }
    for (int i = 0; i < readers; ++i) {
        threads.emplace_back([&] {
            do {
                failures += lock.lockForRead() != 0;
                tornReads += left != right;
                ++reads;
                failures += lock.unlock() != 0;
                std::this_thread::yield(); // POSIX readers may starve a writer
            } while (writersAtWork > 0);
        });
    }
    for (std::thread &thread : threads)
        thread.join();

    EXPECT_EQ(left, writers * roundsOfAWriter);
    EXPECT_EQ(right, writers * roundsOfAWriter);
    EXPECT_EQ(tornReads, 0);
    EXPECT_GE(reads, readers);
    EXPECT_EQ(failures, 0);
}
