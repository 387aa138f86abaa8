// A library allocator for tests that fails on demand, to prove that every
// constructor cleans up after a failed allocation.  It is installed before the
// library allocates anything (static initialisation of the test program) and
// never fails until a test asks it to.
#pragma once

#include <cstddef>

namespace ko::test {

// The next `n` allocations succeed, every later one fails (until reset).
void fail_after(long n);
// Stop failing.
void never_fail();
// Allocations not yet released; lets a test check that a failed
// constructor left nothing behind.
long live_allocations();
// True when this allocator is the library's (ko_memsetfunc accepted it).
bool installed();

// Runs `attempt` with the first allocation failing, then the second, and so
// on, until it succeeds; checks after each failure that nothing leaked.
// Returns the number of allocations the successful attempt made, or -1 when
// a failed attempt leaked.  `attempt` returns true on success and must
// release everything it made on success.
template <class F>
long sweep_failures(F attempt, long max_allocations = 1000) {
  for (long n = 0; n < max_allocations; ++n) {
    long before = live_allocations();
    fail_after(n);
    bool ok = attempt();
    never_fail();
    if (live_allocations() != before) return -1;
    if (ok) return n;
  }
  return -1;
}

}  // namespace ko::test
