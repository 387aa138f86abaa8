// The log: destinations, filters and the exact line format.  The logging
// environment is read once per process at the first report, so every case
// runs in a fresh child process (GoogleTest's "threadsafe" death-test style
// re-executes the test program) that sets the variables, reports and exits;
// the parent then checks standard error or the log file.
#include "ko.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <ctime>
#include <fstream>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

namespace {

// Time stamp of a line: date, then the time with dots.
constexpr const char *kStamp =
    "KO: [0-9]{4}-[0-9]{2}-[0-9]{2} [0-9]{2}\\.[0-9]{2}\\.[0-9]{2}: ";

std::string whole_output(const std::string &lines) { return "^" + lines + "$"; }

class Log : public ::testing::Test {
 protected:
  void SetUp() override {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    for (const char *name : {"KOLOGFILE", "KOLOGLEVEL", "KOLOGCATEGORY"}) unsetenv(name);
  }
};

TEST_F(Log, ErrorLineOnStandardError) {
  EXPECT_EXIT(
      {
        setenv("KOLOGFILE", "-", 1);
        ko_err_arg(nullptr, 4, 8, 334, "ko_datum_new_errext", "s", "D_Test");
        std::exit(0);
      },
      ::testing::ExitedWithCode(0),
      whole_output(std::string(kStamp) +
                   "ko_datum_new_errext \\[error\\] Null or invalid datum object argument: "
                   "D_Test\n"));
}

TEST_F(Log, SeverityWordsAndDefaultMasksLogEverything) {
  EXPECT_EXIT(
      {
        setenv("KOLOGFILE", "-", 1);
        ko_err_set(nullptr, 1, 1, 0, "a");
        ko_err_set(nullptr, 2, 64, 801, "b");
        ko_err_str(nullptr, 3, 32, 9999, "c", "odd severity");
        std::exit(0);
      },
      ::testing::ExitedWithCode(0),
      whole_output(std::string(kStamp) + "a \\[info\\] No error: No error\n" + kStamp +
                   "b \\[warning\\] Invalid or not supported projection property: Invalid or "
                   "not supported projection property\n" +
                   kStamp + "c \\[\\?\\] 9999: odd severity\n"));
}

TEST_F(Log, LevelFourDropsWarnings) {
  EXPECT_EXIT(
      {
        setenv("KOLOGFILE", "-", 1);
        setenv("KOLOGLEVEL", "4", 1);
        ko_err_arg(nullptr, 2, 8, 354, "ko_geogcs_new_errext", "s", "long");
        ko_err_arg(nullptr, 4, 8, 331, "ko_projcs_new_errext", "s", "");
        ko_err_arg(nullptr, 1, 8, 354, "ko_geogcs_new_errext", "s", "info");
        std::exit(0);
      },
      ::testing::ExitedWithCode(0),
      whole_output(std::string(kStamp) +
                   "ko_projcs_new_errext \\[error\\] Null or invalid geographic CS object "
                   "argument: Null or invalid geographic CS object argument\n"));
}

TEST_F(Log, CategoryMaskSelectsAreas) {
  EXPECT_EXIT(
      {
        setenv("KOLOGFILE", "-", 1);
        setenv("KOLOGCATEGORY", "16", 1);
        ko_err_set(nullptr, 4, 8, 334, "argument");
        ko_err_set(nullptr, 4, 16, 463, "parse");
        ko_err_set(nullptr, 4, 8 | 16, 463, "both");
        std::exit(0);
      },
      ::testing::ExitedWithCode(0),
      whole_output(std::string(kStamp) + "parse \\[error\\] Invalid syntax: Invalid syntax\n" +
                   kStamp + "both \\[error\\] Invalid syntax: Invalid syntax\n"));
}

TEST_F(Log, BangSendsLinesToTheDebugOutput) {
  EXPECT_EXIT(
      {
        setenv("KOLOGFILE", "!", 1);
        ko_err_set(nullptr, 4, 1, 3, "ko_mutex_delete");
        std::exit(0);
      },
      ::testing::ExitedWithCode(0),
      whole_output(std::string(kStamp) +
                   "ko_mutex_delete \\[error\\] Free mutex in use: Free mutex in use\n"));
}

TEST_F(Log, EnvironmentIsReadOnlyAtTheFirstReport) {
  EXPECT_EXIT(
      {
        ko_err_set(nullptr, 4, 8, 334, "before");
        setenv("KOLOGFILE", "-", 1);
        ko_err_set(nullptr, 4, 8, 334, "after");
        std::exit(0);
      },
      ::testing::ExitedWithCode(0), "^$");
}

TEST_F(Log, NoDestinationNoLog) {
  EXPECT_EXIT(
      {
        setenv("KOLOGFILE", "", 1);
        setenv("KOLOGLEVEL", "7", 1);
        ko_err_set(nullptr, 4, 8, 334, "src");
        std::exit(0);
      },
      ::testing::ExitedWithCode(0), "^$");
}

// ------------------------------------------------------------------- files

// A fresh folder for the test.  The child process runs the test body again
// from the start, so the parent hands its folder down through the
// environment instead of letting the child make another one.
std::string make_temp_dir() {
  const std::string inherited =
      std::string("KO_TEST_DIR_") + ::testing::UnitTest::GetInstance()->current_test_info()->name();
  if (const char *dir = std::getenv(inherited.c_str())) return dir;
  std::string pattern = ::testing::TempDir() + "ko_log_XXXXXX";
  std::vector<char> buf(pattern.begin(), pattern.end());
  buf.push_back('\0');
  EXPECT_NE(mkdtemp(buf.data()), nullptr);
  setenv(inherited.c_str(), buf.data(), 1);
  return buf.data();
}

std::vector<std::string> read_lines(const std::string &path) {
  std::ifstream in(path);
  std::vector<std::string> lines;
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

struct LogLine {
  std::tm when{};
  std::string source, severity, text, message;
};

bool parse_line(const std::string &line, LogLine &out) {
  static const std::regex pattern(
      R"(^KO: (\d{4})-(\d{2})-(\d{2}) (\d{2})\.(\d{2})\.(\d{2}): (.*) \[([a-z?]+)\] (.*?): (.*)$)");
  std::smatch m;
  if (!std::regex_match(line, m, pattern)) return false;
  out.when.tm_year = std::stoi(m[1]) - 1900;
  out.when.tm_mon = std::stoi(m[2]) - 1;
  out.when.tm_mday = std::stoi(m[3]);
  out.when.tm_hour = std::stoi(m[4]);
  out.when.tm_min = std::stoi(m[5]);
  out.when.tm_sec = std::stoi(m[6]);
  out.when.tm_isdst = -1;
  out.source = m[7];
  out.severity = m[8];
  out.text = m[9];
  out.message = m[10];
  return true;
}

TEST_F(Log, FileIsAppendedWithOneLinePerReport) {
  const std::string dir = make_temp_dir();
  const std::string path = dir + "/ko.log";
  { std::ofstream(path) << "earlier line\n"; }

  const std::time_t before = std::time(nullptr);
  EXPECT_EXIT(
      {
        setenv("KOLOGFILE", path.c_str(), 1);
        ko_err_arg(nullptr, 1, 2, 131, "ko_factory_lookup", "d", 99999);
        ko_err_fmt(nullptr, 4, 16, 461, "ko_wkt_reader", "'%s' at %d", "PROJCRS", 0);
        std::exit(0);
      },
      ::testing::ExitedWithCode(0), "^$");
  const std::time_t after = std::time(nullptr);

  const std::vector<std::string> lines = read_lines(path);
  ASSERT_EQ(lines.size(), 3u);
  EXPECT_EQ(lines[0], "earlier line");

  struct Expected {
    const char *source, *severity, *text, *message;
  } expected[] = {
      {"ko_factory_lookup", "info", "Code not found", "99999"},
      {"ko_wkt_reader", "error", "Unrecognized object keyword in WKT string",
       "Unrecognized object keyword in WKT string: 'PROJCRS' at 0"},
  };
  for (int i = 0; i < 2; ++i) {
    LogLine got;
    ASSERT_TRUE(parse_line(lines[i + 1], got)) << lines[i + 1];
    EXPECT_EQ(got.source, expected[i].source);
    EXPECT_EQ(got.severity, expected[i].severity);
    EXPECT_EQ(got.text, expected[i].text);
    EXPECT_EQ(got.message, expected[i].message);
    // The stamp is local time when the report was made.
    const std::time_t stamped = std::mktime(&got.when);
    EXPECT_GE(stamped, before - 1);
    EXPECT_LE(stamped, after + 1);
  }
  std::remove(path.c_str());
  rmdir(dir.c_str());
}

TEST_F(Log, UnopenableFileEndsLoggingForGood) {
  const std::string dir = make_temp_dir();
  const std::string sub = dir + "/later";
  const std::string path = sub + "/ko.log";
  EXPECT_EXIT(
      {
        setenv("KOLOGFILE", path.c_str(), 1);
        ko_err_set(nullptr, 4, 8, 334, "first");  // the folder does not exist yet
        mkdir(sub.c_str(), 0700);
        ko_err_set(nullptr, 4, 8, 334, "second");  // no retry
        std::exit(0);
      },
      ::testing::ExitedWithCode(0), "^$");
  struct stat info {};
  EXPECT_EQ(stat(path.c_str(), &info), -1) << "the log file was created after all";
  rmdir(sub.c_str());
  rmdir(dir.c_str());
}

// ---------------------------------------------------------------- language

TEST_F(Log, UnknownLanguageInTheEnvironmentKeepsEnglish) {
  EXPECT_EXIT(
      {
        setenv("KOLANG", "fr_FR", 1);
        char name[64] = "";
        char text[256] = "";
        ko_err_language_get(name);
        ko_err_num_to_str(text, 354);
        std::exit(std::string(name) == "en" && std::string(text) == "Name too long" ? 0 : 1);
      },
      ::testing::ExitedWithCode(0), "^$");
}

}  // namespace
