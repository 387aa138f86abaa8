// Error records and the message table: which report a record keeps, how each
// reporting function builds its message, and the table lookups behind them.
#include "ko.h"

#include "foundation/report_capture.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

namespace {

using ko::test::ReportCapture;

// ---------------------------------------------------------------- the table

TEST(MessageTable, EnglishIsTheOnlyAndDefaultTable) {
  EXPECT_EQ(ko_msg_tbl_list[0], &ko_errtbl_en);
  EXPECT_EQ(ko_msg_tbl_list[1], nullptr);
  EXPECT_STREQ(ko_errtbl_en.language, "en");
  EXPECT_EQ(sizeof(ko_errtbl), 80u);
  EXPECT_EQ(sizeof(ko_err), 524u);
}

TEST(MessageTable, AscendingAndTerminatedWithCountMatchingTheWalk) {
  int walked = 0;
  int previous = -1;
  const ko_errtbl_entry *e = ko_errtbl_en.entries;
  for (; e->number >= 0; ++e, ++walked) {
    EXPECT_GT(e->number, previous) << "after " << previous;
    ASSERT_NE(e->text, nullptr) << e->number;
    EXPECT_GT(std::strlen(e->text), 0u) << e->number;
    EXPECT_LT(std::strlen(e->text), 256u) << e->number;
    previous = e->number;
  }
  EXPECT_EQ(e->number, -1);
  EXPECT_EQ(e->text, nullptr);
  EXPECT_EQ(walked, 262);
  EXPECT_EQ(ko_errtbl_en.count, 262);
}

TEST(MessageTable, LooksUpTextsByNumber) {
  // Texts as published for the library's error numbers, one or two from each
  // group, including the ones whose punctuation is easy to get wrong.
  struct Case {
    int number;
    const char *text;
  } cases[] = {
      {0, "No error"},
      {1, "No memory"},
      {3, "Free mutex in use"},
      {107, "Duplicate parameter code in objedit entry"},
      {128, "Duplicate parameter code in objedit entry"},
      {112, "Flattening inverse in objedit entry is not 0 and is < 1"},
      {135, "Coderange overlap"},
      {228, "Macro wrong type"},
      {313, "Invalid areainfo code"},
      {320, "Null or invalid authority name argument"},
      {334, "Null or invalid datum object argument"},
      {354, "Name too long"},
      {358, "NaN or Infinity encountered"},
      {425, "Num_values in WKT string is != number of values"},
      {458, "Expecting ',' or '[' in WKT string"},
      {464, "Missing closing ] character(s) in WKT string"},
      {491, "Invalid property"},
      {511, "DLL returned NULL routine vector"},
      {522, "Cannot create directory"},
      {604, "Invalid parameter"},
      {721, "Geocent CRS not supported"},
      {805, "Null or invalid projcs string"},
  };
  for (const Case &c : cases) {
    char buf[256];
    EXPECT_STREQ(ko_err_num_to_str(buf, c.number), c.text) << c.number;
  }
}

TEST(MessageTable, UnknownNumbersPrintAsDigits) {
  for (int number : {9999, 314, 319, 4, 100, -7, 806}) {
    char buf[256];
    EXPECT_EQ(std::string(ko_err_num_to_str(buf, number)), std::to_string(number));
  }
  EXPECT_EQ(ko_err_num_to_str(nullptr, 1), nullptr);
}

// --------------------------------------------------- which report is kept

TEST(ErrorRecord, KeepsTheFirstReportOfTheHighestSeverity) {
  struct Report {
    int severity;
    int number;
  };
  struct Case {
    const char *what;
    std::vector<Report> reports;
    int severity;
    int number;
  } cases[] = {
      {"warning then error", {{2, 354}, {4, 334}}, 4, 334},
      {"error then warning", {{4, 334}, {2, 354}}, 4, 334},
      {"two errors", {{4, 334}, {4, 327}}, 4, 334},
      {"two warnings", {{2, 354}, {2, 347}}, 2, 354},
      {"info, warning, info", {{1, 101}, {2, 354}, {1, 102}}, 2, 354},
      {"error then anything", {{4, 1}, {1, 101}, {2, 354}, {4, 334}}, 4, 1},
      {"only info", {{1, 101}}, 1, 101},
  };
  for (const Case &c : cases) {
    ko_err err{};
    ko_err_clear(&err);
    for (const Report &r : c.reports) ko_err_set(&err, r.severity, 8, r.number, "src");
    EXPECT_EQ(err.severity, c.severity) << c.what;
    EXPECT_EQ(err.number, c.number) << c.what;
  }
}

TEST(ErrorRecord, KeptReportReplacesEveryFieldTogether) {
  ko_err err{};
  ko_err_clear(&err);
  ko_err_arg(&err, 2, 8, 354, "ko_first_errext", "s", "a long name");
  ko_err_arg(&err, 4, 1, 1, "ko_second_errext", "s", "other");
  EXPECT_EQ(err.severity, 4);
  EXPECT_EQ(err.category, 1);
  EXPECT_EQ(err.number, 1);
  EXPECT_STREQ(err.source, "ko_second_errext");
  EXPECT_STREQ(err.message, "other");
}

TEST(ErrorRecord, ClearEmptiesEveryFieldAndAcceptsNull) {
  ko_err err{};
  std::memset(&err, 'x', sizeof err);
  ko_err_clear(&err);
  EXPECT_EQ(err.severity, 0);
  EXPECT_EQ(err.category, 0);
  EXPECT_EQ(err.number, 0);
  EXPECT_STREQ(err.source, "");
  EXPECT_STREQ(err.message, "");
  ko_err_clear(nullptr);
  ko_err_set(nullptr, 4, 8, 334, "src");  // no record: only the callback sees it
}

// --------------------------------------------------------- message texts

TEST(ErrorMessage, EmptyOrNullMessageMeansTheTableText) {
  ko_err err{};
  for (const char *message : {static_cast<const char *>(nullptr), ""}) {
    ko_err_clear(&err);
    ko_err_str(&err, 4, 8, 327, nullptr, message);
    EXPECT_STREQ(err.message, "Null or invalid spheroid object argument");
    EXPECT_STREQ(err.source, "");
  }
  ko_err_clear(&err);
  ko_err_set(&err, 4, 8, 9999, "src");
  EXPECT_STREQ(err.message, "9999");
}

TEST(ErrorMessage, SourceAndMessageAreCutTo255Characters) {
  const std::string long_text(400, 'n');
  ko_err err{};
  ko_err_clear(&err);
  ko_err_str(&err, 4, 8, 354, long_text.c_str(), long_text.c_str());
  EXPECT_EQ(std::strlen(err.source), 255u);
  EXPECT_EQ(std::strlen(err.message), 255u);
  EXPECT_EQ(std::string(err.message), long_text.substr(0, 255));
}

TEST(ErrorMessage, ArgumentRendersOneValueByTypeLetter) {
  struct Case {
    const char *what;
    void (*report)(ko_err *);
    const char *message;
  } cases[] = {
      {"text", [](ko_err *e) { ko_err_arg(e, 4, 8, 334, "s", "s", "My Datum"); }, "My Datum"},
      {"int", [](ko_err *e) { ko_err_arg(e, 4, 2, 202, "s", "d", -4326); }, "-4326"},
      {"hex", [](ko_err *e) { ko_err_arg(e, 4, 2, 202, "s", "x", 0xBEEFu); }, "beef"},
      {"double", [](ko_err *e) { ko_err_arg(e, 4, 8, 302, "s", "f", -6378137.0); },
       "-6378137.0"},
      {"double, 16 digits", [](ko_err *e) { ko_err_arg(e, 4, 8, 303, "s", "f", 0.1); }, "0.1"},
      // Nothing rendered: the table text stands in.
      {"null text", [](ko_err *e) { ko_err_arg(e, 4, 8, 334, "s", "s", nullptr); },
       "Null or invalid datum object argument"},
      {"unknown letter", [](ko_err *e) { ko_err_arg(e, 4, 8, 334, "s", "q", 5); },
       "Null or invalid datum object argument"},
      {"null letter", [](ko_err *e) { ko_err_arg(e, 4, 8, 334, "s", nullptr, 5); },
       "Null or invalid datum object argument"},
  };
  for (const Case &c : cases) {
    ko_err err{};
    ko_err_clear(&err);
    c.report(&err);
    EXPECT_STREQ(err.message, c.message) << c.what;
  }
}

TEST(ErrorMessage, BufferRendersIntoTheCallersBuffer) {
  char buf[256];
  EXPECT_STREQ(ko_err_buf(buf, 0, "d", 42), "42");
  EXPECT_STREQ(ko_err_buf(buf, 0, "x", 255u), "ff");
  EXPECT_STREQ(ko_err_buf(buf, 0, "f", 298.257223563), "298.257223563");
  EXPECT_STREQ(ko_err_buf(buf, 0, "s", "Clarke 1866"), "Clarke 1866");
  EXPECT_STREQ(ko_err_buf(buf, 0, "z", 1), "");
  const std::string long_text(300, 'q');
  EXPECT_EQ(std::strlen(ko_err_buf(buf, 0, "s", long_text.c_str())), 255u);
  EXPECT_EQ(ko_err_buf(nullptr, 0, "d", 1), nullptr);
}

TEST(ErrorMessage, FormattedMessageFollowsTheTableText) {
  ko_err err{};
  ko_err_clear(&err);
  ko_err_fmt(&err, 4, 16, 463, "ko_wkt_reader", "token %d of '%s'", 7, "PROJCS");
  EXPECT_STREQ(err.message, "Invalid syntax: token 7 of 'PROJCS'");

  ko_err_clear(&err);
  ko_err_fmt(&err, 4, 16, 9999, "src", "%s", "x");
  EXPECT_STREQ(err.message, "9999: x");

  ko_err_clear(&err);
  ko_err_fmt(&err, 4, 16, 463, "src", nullptr);
  EXPECT_STREQ(err.message, "Invalid syntax: ");
}

TEST(ErrorMessage, FormattedMessageIsCutWithinTheRecord) {
  const std::string long_text(600, 'w');
  ko_err err{};
  ko_err_clear(&err);
  ko_err_fmt(&err, 4, 16, 463, "src", "%s", long_text.c_str());
  const std::string prefix = "Invalid syntax: ";
  ASSERT_EQ(std::strlen(err.message), 255u);
  EXPECT_EQ(std::string(err.message), prefix + long_text.substr(0, 255 - prefix.size()));
}

// ---------------------------------------------------------------- language

TEST(Language, NamesMatchOverTheTablesSignificantCharacters) {
  const char *names[] = {"en", "EN", "en_US", "en-GB", "E N", "English", "fr", "", nullptr};
  for (const char *name : names) {
    EXPECT_EQ(ko_err_language_set(name), &ko_errtbl_en) << (name ? name : "(null)");
    char buf[64] = "xx";
    EXPECT_STREQ(ko_err_language_get(buf), "en");
  }
  EXPECT_EQ(ko_err_language_get(nullptr), nullptr);
}

// ---------------------------------------------------------------- callback

TEST(MessageCallback, MasksSelectSeverityAndCategory) {
  ReportCapture capture(KO_SEV_ERROR, KO_ERRCAT_ARGUMENT);
  ko_err_set(nullptr, 4, 8, 334, "error, argument");        // seen
  ko_err_set(nullptr, 2, 8, 354, "warning, argument");      // wrong severity
  ko_err_set(nullptr, 4, 16, 463, "error, parsing");        // wrong category
  ko_err_set(nullptr, 4, 8 | 16, 463, "error, two areas");  // shares a bit
  ASSERT_EQ(capture.reports().size(), 2u);
  EXPECT_STREQ(capture.reports()[0].source, "error, argument");
  EXPECT_STREQ(capture.reports()[1].source, "error, two areas");
}

TEST(MessageCallback, SeesTheCompleteNewReportWhateverTheRecordKeeps) {
  ReportCapture capture;
  ko_err err{};
  ko_err_clear(&err);
  ko_err_arg(&err, 4, 8, 334, "ko_datum_new_errext", "s", "D_first");
  ko_err_arg(&err, 2, 8, 354, "ko_geogcs_new_errext", "s", "second");
  ASSERT_EQ(capture.reports().size(), 2u);
  const ko_err &seen = capture.reports()[1];
  EXPECT_EQ(seen.severity, 2);
  EXPECT_EQ(seen.category, 8);
  EXPECT_EQ(seen.number, 354);
  EXPECT_STREQ(seen.source, "ko_geogcs_new_errext");
  EXPECT_STREQ(seen.message, "second");
  EXPECT_EQ(err.number, 334);  // the record keeps the error
}

void noop_callback(void *, const ko_err *) {}

TEST(MessageCallback, SetAndGetFollowTheMaskRules) {
  int token = 0;
  void *userdata = nullptr;
  int severity_mask = 0;
  int category_mask = 0;
  ko_msg_callback callback = nullptr;

  ko_msg_setrtn(&token, 6, 24, noop_callback);
  ko_msg_getrtn(&userdata, &severity_mask, &category_mask, &callback);
  EXPECT_EQ(userdata, &token);
  EXPECT_EQ(severity_mask, 6);
  EXPECT_EQ(category_mask, 24);
  EXPECT_EQ(callback, &noop_callback);

  // -1 keeps a mask.
  ko_msg_setrtn(&token, -1, 1, noop_callback);
  ko_msg_getrtn(nullptr, &severity_mask, &category_mask, nullptr);
  EXPECT_EQ(severity_mask, 6);
  EXPECT_EQ(category_mask, 1);

  // Removing the callback sets the masks to 0, not to the values given...
  ko_msg_setrtn(nullptr, 5, 5, nullptr);
  ko_msg_getrtn(&userdata, &severity_mask, &category_mask, &callback);
  EXPECT_EQ(userdata, nullptr);
  EXPECT_EQ(severity_mask, 0);
  EXPECT_EQ(category_mask, 0);
  EXPECT_EQ(callback, nullptr);

  // ...unless they are -1, even with user data given.
  ko_msg_setrtn(&token, 3, 7, noop_callback);
  ko_msg_setrtn(&token, -1, 2, nullptr);
  ko_msg_getrtn(&userdata, &severity_mask, &category_mask, &callback);
  EXPECT_EQ(userdata, nullptr);
  EXPECT_EQ(severity_mask, 3);
  EXPECT_EQ(category_mask, 0);
  EXPECT_EQ(callback, nullptr);
  ko_msg_getrtn(nullptr, nullptr, nullptr, nullptr);
}

TEST(MessageCallback, ACallbackMayReportAgain) {
  // Reports made from inside the callback go round once more.
  struct Nested {
    int calls = 0;
    static void callback(void *self, const ko_err *report) {
      auto *n = static_cast<Nested *>(self);
      ++n->calls;
      if (report->number == 334) ko_err_set(nullptr, 4, 8, 327, "nested");
    }
  } nested;
  ko_msg_setrtn(&nested, 7, 127, &Nested::callback);
  ko_err_set(nullptr, 4, 8, 334, "outer");
  ko_msg_setrtn(nullptr, 0, 0, nullptr);
  EXPECT_EQ(nested.calls, 2);
}

}  // namespace
