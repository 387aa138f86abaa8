// Mutex objects: recursion, the entry count that guards deletion (error 3
// through the callback only), exclusion between threads, stale pointers and
// failed allocation.
#include "ko.h"

#include "foundation/report_capture.h"
#include "support/failing_alloc.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstring>
#include <thread>
#include <vector>

namespace {

using ko::test::ReportCapture;

void expect_in_use_report(const ReportCapture &capture) {
  ASSERT_EQ(capture.reports().size(), 1u);
  const ko_err &r = capture.reports()[0];
  EXPECT_EQ(r.severity, KO_SEV_ERROR);
  EXPECT_EQ(r.category, KO_ERRCAT_MEMORY);
  EXPECT_EQ(r.number, 3);
  EXPECT_STREQ(r.source, "ko_mutex_delete");
  EXPECT_STREQ(r.message, "Free mutex in use");
}

TEST(Mutex, DeleteRefusesWhileEnteredAndSucceedsAfterTheLastLeave) {
  ko_mutex *m = ko_mutex_create();
  ASSERT_NE(m, nullptr);
  ko_mutex_enter(m);
  ko_mutex_enter(m);  // recursive: the same thread enters again at once
  ko_mutex_leave(m);
  {
    ReportCapture capture;
    EXPECT_EQ(ko_mutex_delete(m), m);
    expect_in_use_report(capture);
  }
  ko_mutex_leave(m);
  ReportCapture capture;
  EXPECT_EQ(ko_mutex_delete(m), nullptr);
  EXPECT_TRUE(capture.reports().empty());
}

TEST(Mutex, DeleteRefusesAMutexHeldByAnotherThread) {
  ko_mutex *m = ko_mutex_create();
  ASSERT_NE(m, nullptr);
  std::atomic<int> stage{0};
  std::thread holder([&] {
    ko_mutex_enter(m);
    stage = 1;
    while (stage != 2) std::this_thread::yield();
    ko_mutex_leave(m);
  });
  while (stage != 1) std::this_thread::yield();
  {
    ReportCapture capture;
    ko_mutex_leave(m);  // this thread holds nothing: ignored
    EXPECT_EQ(ko_mutex_delete(m), m);
    expect_in_use_report(capture);
  }
  stage = 2;
  holder.join();
  EXPECT_EQ(ko_mutex_delete(m), nullptr);
}

TEST(Mutex, LeaveWithoutEnterIsIgnored) {
  ko_mutex *m = ko_mutex_create();
  ASSERT_NE(m, nullptr);
  ko_mutex_leave(m);
  ko_mutex_leave(m);
  ko_mutex_enter(m);
  ReportCapture capture;
  EXPECT_EQ(ko_mutex_delete(m), m);  // one entry still open
  EXPECT_EQ(capture.reports().size(), 1u);
  ko_mutex_leave(m);
  EXPECT_EQ(ko_mutex_delete(m), nullptr);
}

TEST(Mutex, ExcludesOtherThreads) {
  ko_mutex *m = ko_mutex_create();
  ASSERT_NE(m, nullptr);
  constexpr int kThreads = 4;
  constexpr int kRounds = 20000;
  long counter = 0;  // deliberately not atomic: the mutex protects it
  std::vector<std::thread> threads;
  for (int t = 0; t < kThreads; ++t) {
    threads.emplace_back([&] {
      for (int i = 0; i < kRounds; ++i) {
        ko_mutex_enter(m);
        ko_mutex_enter(m);
        long seen = counter;
        counter = seen + 1;
        ko_mutex_leave(m);
        ko_mutex_leave(m);
      }
    });
  }
  for (std::thread &t : threads) t.join();
  EXPECT_EQ(counter, static_cast<long>(kThreads) * kRounds);
  EXPECT_EQ(ko_mutex_delete(m), nullptr);
}

TEST(Mutex, NullAndStalePointersAreIgnored) {
  ko_mutex_enter(nullptr);
  ko_mutex_leave(nullptr);
  EXPECT_EQ(ko_mutex_delete(nullptr), nullptr);
  // Memory without the live magic is no mutex.
  alignas(16) unsigned char junk[256];
  std::memset(junk, 0, sizeof junk);
  auto *stale = reinterpret_cast<ko_mutex *>(junk);
  ko_mutex_enter(stale);
  ko_mutex_leave(stale);
  EXPECT_EQ(ko_mutex_delete(stale), stale);
}

TEST(Mutex, FailedAllocationGivesNullAndLeaksNothing) {
  ASSERT_TRUE(ko::test::installed());
  long allocations = ko::test::sweep_failures([] {
    ko_mutex *m = ko_mutex_create();
    if (m == nullptr) return false;
    return ko_mutex_delete(m) == nullptr;
  });
  EXPECT_EQ(allocations, 1);
}

}  // namespace
