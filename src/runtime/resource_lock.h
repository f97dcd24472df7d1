// CResourceLock: a recursive POSIX mutex. The same thread may take it again
// while holding it; every Lock is matched by an Unlock.
#pragma once

#include <pthread.h>

class CResourceLock final {
 public:
  CResourceLock();
  ~CResourceLock();
  CResourceLock(const CResourceLock&) = delete;
  CResourceLock& operator=(const CResourceLock&) = delete;

  // Each returns the POSIX result.
  virtual int Lock();
  virtual int Unlock();
  virtual int Delete();

 private:
  pthread_mutex_t m_Mutex;
};

// Holds a lock for the lifetime of a scope.
template <class Lockable>
class ScopedLock {
 public:
  explicit ScopedLock(Lockable& lockable) : m_Lockable(lockable) { m_Lockable.Lock(); }
  ~ScopedLock() { m_Lockable.Unlock(); }
  ScopedLock(const ScopedLock&) = delete;
  ScopedLock& operator=(const ScopedLock&) = delete;

 private:
  Lockable& m_Lockable;
};
