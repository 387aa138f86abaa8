// The failing allocator that the other tests use must itself be sound.
#include "ko.h"
#include "support/failing_alloc.h"

#include <gtest/gtest.h>

TEST(FailingAllocator, IsInstalledAndFailsOnDemand) {
  ASSERT_TRUE(ko::test::installed());
  ko::test::fail_after(1);
  void *a = ko_memalloc(8);
  void *b = ko_memalloc(8);
  ko::test::never_fail();
  EXPECT_NE(a, nullptr);
  EXPECT_EQ(b, nullptr);
  ko_memdealloc(a);
}

TEST(FailingAllocator, SweepFindsTheAllocationCountAndLeaks) {
  // A constructor that makes two allocations and cleans up properly.
  auto clean = [] {
    ko_constants *c = ko_constants_new();
    if (c == nullptr) return false;
    auto *d = static_cast<double *>(ko_memalloc(16));
    if (d == nullptr) {
      ko_constants_del(c);
      return false;
    }
    ko_constants_dvals_set(c, d);
    ko_constants_del(c);
    return true;
  };
  EXPECT_EQ(ko::test::sweep_failures(clean), 2);
  // One that forgets to release the first allocation is caught.
  ko_constants *leaked = nullptr;
  auto leaky = [&leaked] {
    ko_constants *c = ko_constants_new();
    if (c == nullptr) return false;
    auto *d = static_cast<double *>(ko_memalloc(16));
    if (d == nullptr) {
      leaked = c;  // forgets to release c; kept here only to free it below
      return false;
    }
    ko_memdealloc(d);
    ko_constants_del(c);
    return true;
  };
  long leaked_before = ko::test::live_allocations();
  EXPECT_EQ(ko::test::sweep_failures(leaky), -1);
  EXPECT_GT(ko::test::live_allocations(), leaked_before);
  ko_constants_del(leaked);
}
