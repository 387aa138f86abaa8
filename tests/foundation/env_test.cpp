// Environment services: variables, debug output, files opened by path, the
// data directory, and the allocator that is fixed after the first use.
#include "ko.h"

#include "foundation/report_capture.h"
#include "support/failing_alloc.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

using ko::test::ReportCapture;

TEST(Environment, ReadsVariables) {
  setenv("KO_TEST_VARIABLE", "value 1", 1);
  EXPECT_STREQ(ko_getenv("KO_TEST_VARIABLE"), "value 1");
  unsetenv("KO_TEST_VARIABLE");
  EXPECT_EQ(ko_getenv("KO_TEST_VARIABLE"), nullptr);
  EXPECT_EQ(ko_getenv(nullptr), nullptr);
  EXPECT_EQ(ko_getenv(""), nullptr);
}

TEST(DebugOutput, WritesWholeLinesToStandardError) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        ko_odprintf("x=%d %s", 5, "metres");
        ko_odprintf("ends in a newline\n");
        ko_odprintf(nullptr);
        std::exit(0);
      },
      ::testing::ExitedWithCode(0), "^x=5 metres\nends in a newline\n$");
}

std::string temp_path(const char *name) { return ::testing::TempDir() + name; }

TEST(PathOpen, OpensForReadingAndWritingAndClosesOnExec) {
  const std::string path = temp_path("ko_path_fopen.txt");
  auto *out = static_cast<FILE *>(ko_path_fopen(path.c_str(), "w"));
  ASSERT_NE(out, nullptr);
  EXPECT_NE(fcntl(fileno(out), F_GETFD) & FD_CLOEXEC, 0);
  std::fputs("grid", out);
  std::fclose(out);

  auto *in = static_cast<FILE *>(ko_path_fopen(path.c_str(), "rb"));
  ASSERT_NE(in, nullptr);
  char buf[8] = {};
  EXPECT_EQ(std::fread(buf, 1, sizeof buf - 1, in), 4u);
  EXPECT_STREQ(buf, "grid");
  std::fclose(in);
  std::remove(path.c_str());

  EXPECT_EQ(ko_path_fopen(path.c_str(), "r"), nullptr);  // gone
  EXPECT_EQ(ko_path_fopen(nullptr, "r"), nullptr);
  EXPECT_EQ(ko_path_fopen("", "r"), nullptr);
  EXPECT_EQ(ko_path_fopen(path.c_str(), nullptr), nullptr);
}

// ------------------------------------------------------------ data directory

class DataDirectory : public ::testing::Test {
 protected:
  void TearDown() override { ko_datadir_set(nullptr); }
};

TEST_F(DataDirectory, FallsBackToTheEnvironment) {
  setenv("KODATA", "/usr/share/ko-grids", 1);
  char buf[256];
  EXPECT_STREQ(ko_datadir_get(buf, sizeof buf), "/usr/share/ko-grids");
  EXPECT_STREQ(ko_datadir_get(buf, 5), "/usr");
  unsetenv("KODATA");
  EXPECT_STREQ(ko_datadir_get(buf, sizeof buf), "");
  EXPECT_EQ(ko_datadir_get(nullptr, 10), nullptr);
}

TEST_F(DataDirectory, ASetDirectoryWinsUntilReset) {
  setenv("KODATA", "/from/environment", 1);
  const std::string dir = ::testing::TempDir();
  ko_datadir_set(dir.c_str());
  char buf[4096];
  EXPECT_EQ(ko_datadir_get(buf, sizeof buf), buf);
  EXPECT_EQ(std::string(buf), dir);
  ko_datadir_set("");
  EXPECT_STREQ(ko_datadir_get(buf, sizeof buf), "/from/environment");
}

TEST_F(DataDirectory, RefusesWhatIsNoDirectory) {
  const std::string file = temp_path("ko_not_a_dir.txt");
  std::fclose(std::fopen(file.c_str(), "w"));
  const std::string too_long(5000, 'd');
  struct Case {
    std::string path;
    int number;
  } cases[] = {
      {"/no/such/ko/folder", 127},
      {file, 127},
      {too_long, 126},
  };
  const std::string dir = ::testing::TempDir();
  ko_datadir_set(dir.c_str());
  for (const Case &c : cases) {
    ReportCapture capture;
    ko_datadir_set(c.path.c_str());
    ASSERT_EQ(capture.reports().size(), 1u) << c.path;
    EXPECT_EQ(capture.reports()[0].number, c.number);
    EXPECT_EQ(capture.reports()[0].severity, KO_SEV_ERROR);
    EXPECT_STREQ(capture.reports()[0].source, "ko_datadir_set");
    char buf[4096];
    EXPECT_EQ(std::string(ko_datadir_get(buf, sizeof buf)), dir) << "the old value stays";
  }
  std::remove(file.c_str());
}

// ----------------------------------------------------------------- allocator

long g_foreign_calls = 0;
void *foreign_alloc(void *, size_t size, const char *) {
  ++g_foreign_calls;
  return std::malloc(size);
}
void *foreign_realloc(void *, void *p, size_t size, const char *) {
  ++g_foreign_calls;
  return std::realloc(p, size);
}
void foreign_free(void *, void *p, const char *) {
  ++g_foreign_calls;
  std::free(p);
}

TEST(Allocator, IsFixedOnceTheLibraryHasAllocated) {
  // The test program's allocator went in before anything was allocated;
  // after that no other allocator is accepted.
  ASSERT_TRUE(ko::test::installed());
  ko_mutex *m = ko_mutex_create();
  ASSERT_NE(m, nullptr);
  ko_memsetfunc(nullptr, foreign_alloc, foreign_realloc, foreign_free);
  long live = ko::test::live_allocations();
  void *p = ko_memalloc(32);
  EXPECT_EQ(ko::test::live_allocations(), live + 1);
  p = ko_memrealloc(p, 64);
  EXPECT_NE(p, nullptr);
  EXPECT_EQ(ko_memdealloc(p), nullptr);
  EXPECT_EQ(ko::test::live_allocations(), live);
  EXPECT_EQ(g_foreign_calls, 0);
  EXPECT_EQ(ko_mutex_delete(m), nullptr);
}

}  // namespace
