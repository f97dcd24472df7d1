// CResourceLock: recursive POSIX mutex.
#include "resource_lock.h"

CResourceLock::CResourceLock() {
  pthread_mutexattr_t attributes;
  pthread_mutexattr_init(&attributes);
  pthread_mutexattr_settype(&attributes, PTHREAD_MUTEX_RECURSIVE);
  pthread_mutex_init(&m_Mutex, &attributes);
  pthread_mutexattr_destroy(&attributes);
}

CResourceLock::~CResourceLock() { Delete(); }

int CResourceLock::Lock() { return pthread_mutex_lock(&m_Mutex); }
int CResourceLock::Unlock() { return pthread_mutex_unlock(&m_Mutex); }
int CResourceLock::Delete() { return pthread_mutex_destroy(&m_Mutex); }
