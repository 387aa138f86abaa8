// Memory: every allocation of the library passes through ko_allocate_rtn so
// that a caller may redirect it once, before anything has been allocated.
#include "foundation/internal.h"

#include <atomic>
#include <cstdlib>

namespace {

struct AllocatorState {
  void *userdata = nullptr;
  ko_alloc_fn alloc_fn = nullptr;
  ko_realloc_fn realloc_fn = nullptr;
  ko_free_fn free_fn = nullptr;
  std::atomic<bool> used{false};
};

AllocatorState &state() {
  static AllocatorState s;
  return s;
}

}  // namespace

extern "C" {

void *ko_sysmem_malloc(size_t size) { return std::malloc(size); }
void *ko_sysmem_calloc(size_t count, size_t size) { return std::calloc(count, size); }
void *ko_sysmem_realloc(void *ptr, size_t size) { return std::realloc(ptr, size); }
void ko_sysmem_free(void *ptr) { std::free(ptr); }

char *ko_sysmem_strdup(const char *text) {
  if (text == nullptr) return nullptr;
  std::size_t len = std::strlen(text) + 1;
  char *copy = static_cast<char *>(std::malloc(len));
  if (copy != nullptr) std::memcpy(copy, text, len);
  return copy;
}

void *ko_allocate_rtn(size_t size, int /*flags*/, const char *tag) {
  AllocatorState &s = state();
  s.used.store(true, std::memory_order_relaxed);
  if (s.alloc_fn != nullptr) return s.alloc_fn(s.userdata, size, tag);
  return ko_sysmem_malloc(size);
}

void *ko_reallocate_rtn(void *ptr, size_t size, const char *tag) {
  AllocatorState &s = state();
  s.used.store(true, std::memory_order_relaxed);
  if (s.realloc_fn != nullptr) return s.realloc_fn(s.userdata, ptr, size, tag);
  return ko_sysmem_realloc(ptr, size);
}

void *ko_deallocate_rtn(void *ptr, int /*flags*/, const char *tag) {
  AllocatorState &s = state();
  if (s.free_fn != nullptr) {
    s.free_fn(s.userdata, ptr, tag);
  } else {
    ko_sysmem_free(ptr);
  }
  return nullptr;
}

void *ko_memalloc(size_t size) { return ko_allocate_rtn(size, 0, nullptr); }
void *ko_memrealloc(void *ptr, size_t size) { return ko_reallocate_rtn(ptr, size, nullptr); }
void *ko_memdealloc(void *ptr) { return ko_deallocate_rtn(ptr, 0, nullptr); }

void ko_memsetfunc(void *userdata, ko_alloc_fn alloc_fn, ko_realloc_fn realloc_fn,
                   ko_free_fn free_fn) {
  AllocatorState &s = state();
  // Once anything is allocated the allocator is fixed, so that memory is
  // never released by another allocator than the one that gave it.
  if (alloc_fn == nullptr || realloc_fn == nullptr || free_fn == nullptr) return;
  if (s.used.load(std::memory_order_relaxed)) return;
  s.userdata = userdata;
  s.alloc_fn = alloc_fn;
  s.realloc_fn = realloc_fn;
  s.free_fn = free_fn;
}

void ko_mem_set_exitrtn(void (* /*exit_routine*/)(void)) {}

}  // extern "C"
