// A POSIX read-write lock as a class.
#pragma once

#include "platform/export.h"

#include <pthread.h>

// Many readers or one writer. All operations but the constructor and the destructor return what the POSIX
// call of the same purpose returns: 0, or an error number such as EDEADLK; nothing is thrown or logged. It
// can neither be copied nor, beyond what POSIX allows, be locked again by a thread that holds it.
class PANELKIT_EXPORT UReadWriteLock
{
public:
    UReadWriteLock();  // calls initLock
    ~UReadWriteLock(); // calls destroyLock; nobody may hold the lock
    UReadWriteLock(const UReadWriteLock &) = delete;
    UReadWriteLock &operator=(const UReadWriteLock &) = delete;

    int initLock();
    int destroyLock();
    int lockForRead();
    int lockForWrite();
    int unlock();

private:
    pthread_rwlock_t m_lock;
};
