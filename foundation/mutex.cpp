// Recursive mutex objects for callers and for the library's own shared
// state.  A mutex carries the object magic, so that stale and foreign
// pointers are ignored, and counts its entries, so that deleting a mutex
// that is still held is refused instead of destroying a locked mutex.
#include "foundation/internal.h"

#include <pthread.h>

struct ko_mutex {
  uint32_t magic;
  int32_t entries;  // changed only while the mutex is held
  pthread_mutex_t mutex;
  pthread_mutexattr_t attr;
};

namespace {

bool is_live(const ko_mutex *m) { return m != nullptr && m->magic == KO_MAGIC_LIVE; }

bool init_recursive(ko_mutex *m) {
  if (pthread_mutexattr_init(&m->attr) != 0) return false;
  if (pthread_mutexattr_settype(&m->attr, PTHREAD_MUTEX_RECURSIVE) != 0 ||
      pthread_mutex_init(&m->mutex, &m->attr) != 0) {
    pthread_mutexattr_destroy(&m->attr);
    return false;
  }
  return true;
}

}  // namespace

extern "C" {

ko_mutex *ko_mutex_create(void) {
  ko_mutex *m = ko::alloc_object<ko_mutex>("ko_mutex_create");
  if (m == nullptr) return nullptr;
  if (!init_recursive(m)) {
    ko::free_object(m);
    return nullptr;
  }
  m->magic = KO_MAGIC_LIVE;
  m->entries = 0;
  return m;
}

void ko_mutex_enter(ko_mutex *mutex) {
  if (!is_live(mutex)) return;
  pthread_mutex_lock(&mutex->mutex);
  ++mutex->entries;
}

void ko_mutex_leave(ko_mutex *mutex) {
  if (!is_live(mutex)) return;
  // Only a thread that has entered may leave.  Entering once more (which a
  // recursive mutex grants at once to its holder) makes the count safe to
  // read: if it is 0 this thread held nothing and the leave is ignored; a
  // mutex held by another thread refuses the attempt.
  if (pthread_mutex_trylock(&mutex->mutex) != 0) return;
  if (mutex->entries > 0) {
    --mutex->entries;
    pthread_mutex_unlock(&mutex->mutex);
  }
  pthread_mutex_unlock(&mutex->mutex);
}

ko_mutex *ko_mutex_delete(ko_mutex *mutex) {
  if (!is_live(mutex)) return mutex;
  // A mutex held by any thread (another one, or this one) is still in use.
  bool in_use = pthread_mutex_trylock(&mutex->mutex) != 0;
  if (!in_use) {
    in_use = mutex->entries != 0;
    pthread_mutex_unlock(&mutex->mutex);
  }
  if (in_use) {
    ko_err_set(nullptr, KO_SEV_ERROR, KO_ERRCAT_MEMORY, 3, "ko_mutex_delete");
    return mutex;
  }
  mutex->magic = KO_MAGIC_DEAD;
  pthread_mutex_destroy(&mutex->mutex);
  pthread_mutexattr_destroy(&mutex->attr);
  ko::free_object(mutex);
  return nullptr;
}

}  // extern "C"
