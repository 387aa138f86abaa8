#include "support/failing_alloc.h"

#include "ko.h"

#include <atomic>
#include <cstdlib>

namespace {

std::atomic<long> g_budget{-1};  // -1: never fail
std::atomic<long> g_live{0};
bool g_installed = false;

bool take() {
  long b = g_budget.load();
  if (b < 0) return true;
  if (b == 0) return false;
  g_budget.store(b - 1);
  return true;
}

void *test_alloc(void *, size_t size, const char *) {
  if (!take()) return nullptr;
  void *p = std::malloc(size);
  if (p != nullptr) ++g_live;
  return p;
}

void *test_realloc(void *, void *ptr, size_t size, const char *) {
  if (!take()) return nullptr;
  void *p = std::realloc(ptr, size);
  if (p != nullptr && ptr == nullptr) ++g_live;
  return p;
}

void test_free(void *, void *ptr, const char *) {
  if (ptr != nullptr) --g_live;
  std::free(ptr);
}

struct Installer {
  Installer() {
    ko_memsetfunc(nullptr, test_alloc, test_realloc, test_free);
    // The library allocates nothing until asked to, so this always succeeds;
    // check it through a round trip anyway.
    long before = g_live.load();
    void *p = ko_memalloc(1);
    g_installed = (g_live.load() == before + 1);
    ko_memdealloc(p);
  }
} g_installer;

}  // namespace

namespace ko::test {

void fail_after(long n) { g_budget.store(n); }
void never_fail() { g_budget.store(-1); }
long live_allocations() { return g_live.load(); }
bool installed() { return g_installed; }

}  // namespace ko::test
