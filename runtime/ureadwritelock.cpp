#include "runtime/ureadwritelock.h"

UReadWriteLock::UReadWriteLock()
{
    initLock();
}

UReadWriteLock::~UReadWriteLock()
{
    destroyLock();
}

int UReadWriteLock::initLock()
{
    return pthread_rwlock_init(&m_lock, nullptr);
}

int UReadWriteLock::destroyLock()
{
    return pthread_rwlock_destroy(&m_lock);
}

int UReadWriteLock::lockForRead()
{
    return pthread_rwlock_rdlock(&m_lock);
}

int UReadWriteLock::lockForWrite()
{
    return pthread_rwlock_wrlock(&m_lock);
}

int UReadWriteLock::unlock()
{
    return pthread_rwlock_unlock(&m_lock);
}
