// Display names and remarks: UTF-16 texts with their limits, the reports of
// their constructors, equality, and clean-up on failed allocations.
#include "ko.h"
#include "objects/object_support.h"
#include "support/failing_alloc.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using ko::test::expect_no_report;
using ko::test::expect_report;
using ko::test::Ghost;
using ko::test::Report;
using ko::test::uc;
using ko::test::units;

constexpr char kDispSource[] = "ko_dispname_new_errext";
constexpr char kRemarkSource[] = "ko_remark_new_errext";

// "𝔾" (U+1D53E) takes two UTF-16 units and four UTF-8 bytes.
const std::string kWideUtf8 = "\xF0\x9D\x94\xBE";
const std::u16string kWideUtf16 = u"\U0001D53E";

std::string repeat(const std::string &s, int n) {
  std::string out;
  for (int i = 0; i < n; ++i) out += s;
  return out;
}

TEST(DispnameNew, RefusesNullAndEmptyTextInBothForms) {
  const Report refused{4, 8, 346, kDispSource, "Null or invalid dispname name argument"};
  ko_err err = ko::test::stale_record();
  EXPECT_EQ(ko_dispname_new_errext(nullptr, &err), nullptr);
  expect_report(err, refused);
  err = ko::test::stale_record();
  EXPECT_EQ(ko_dispname_new_errext("", &err), nullptr);
  expect_report(err, refused);
  err = ko::test::stale_record();
  EXPECT_EQ(ko_dispname_new_errext_u(nullptr, &err), nullptr);
  expect_report(err, refused);
  err = ko::test::stale_record();
  EXPECT_EQ(ko_dispname_new_errext_u(uc(u""), &err), nullptr);
  expect_report(err, refused);
  EXPECT_EQ(ko_dispname_new(nullptr), nullptr);
  EXPECT_EQ(ko_dispname_new_u(nullptr), nullptr);
}

TEST(DispnameNew, KeepsTextTo79UnitsWithoutSplittingAPair) {
  struct Case {
    const char *what;
    std::u16string text, kept;
  } const cases[] = {
      {"short", u"Zürich", u"Zürich"},
      {"79 units", std::u16string(79, u'x'), std::u16string(79, u'x')},
      {"100 units", std::u16string(100, u'x'), std::u16string(79, u'x')},
      // 78 units then a pair: the pair would straddle the cut, so it goes.
      {"pair at the cut", std::u16string(78, u'x') + kWideUtf16, std::u16string(78, u'x')},
  };
  for (const Case &c : cases) {
    ko_err err = ko::test::stale_record();
    ko_dispname *d = ko_dispname_new_errext_u(uc(c.text.c_str()), &err);
    ASSERT_NE(d, nullptr) << c.what;
    expect_no_report(err);
    ko_uchar buf[KO_NAME_SIZE];
    EXPECT_EQ(units(ko_dispname_uname(d, buf)), c.kept) << c.what;
    EXPECT_EQ(units(ko_dispname_uname_get(d)), c.kept) << c.what;
    ko_dispname_del(d);
  }
}

TEST(DispnameNew, Utf8FormConvertsToUtf16) {
  ko_dispname *d = ko_dispname_new(("Gauß " + kWideUtf8).c_str());
  ASSERT_NE(d, nullptr);
  EXPECT_EQ(units(ko_dispname_uname_get(d)), u"Gauß " + kWideUtf16);
  ko_dispname *same = ko_dispname_new_u(uc((u"Gauß " + kWideUtf16).c_str()));
  EXPECT_TRUE(ko_dispname_eq(d, same));
  ko_dispname_del(same);
  ko_dispname_del(d);
}

TEST(DispnameEq, IsExactIncludingCase) {
  ko_dispname *a = ko_dispname_new("Lake Zurich");
  ko_dispname *b = ko_dispname_new("lake zurich");
  ko_dispname *c = ko_dispname_clone(a);
  EXPECT_FALSE(ko_dispname_eq(a, b));
  EXPECT_TRUE(ko_dispname_eq(a, c));
  EXPECT_TRUE(ko_object_eq(c, a));
  EXPECT_NE(a, c);
  for (ko_dispname *d : {a, b, c}) ko_dispname_del(d);
}

TEST(Remark, LengthLimitIsCountedInUtf16Units) {
  struct Case {
    const char *what;
    std::string text;
    bool accepted;
  } const cases[] = {
      {"767 ASCII", std::string(767, 'r'), true},
      {"768 ASCII", std::string(768, 'r'), false},
      {"383 pairs and one unit = 767", repeat(kWideUtf8, 383) + "r", true},
      {"384 pairs = 768", repeat(kWideUtf8, 384), false},
      // 767 three-byte characters are 2301 bytes but only 767 units.
      {"767 three-byte characters", repeat("\xE2\x82\xAC", 767), true},
      {"empty", "", true},
  };
  for (const Case &c : cases) {
    ko_err err = ko::test::stale_record();
    ko_remark *r = ko_remark_new_errext(c.text.c_str(), &err);
    EXPECT_EQ(r != nullptr, c.accepted) << c.what;
    if (c.accepted) {
      expect_no_report(err);
    } else {
      expect_report(err, Report{4, 8, 357, kRemarkSource, "Invalid remark"});
    }
    ko_remark_del(r);
  }
  ko_remark *null_text = ko_remark_new(nullptr);  // null counts as empty
  ASSERT_NE(null_text, nullptr);
  char buf[768] = "junk";
  EXPECT_STREQ(ko_remark_text(null_text, buf), "");
  ko_remark_del(null_text);
}

TEST(Remark, KeepsTheFirst255UnitsAndGivesThemBackAsUtf8) {
  struct Case {
    const char *what;
    std::string text, kept;
  } const cases[] = {
      {"short", "Remark with ü", "Remark with ü"},
      {"767 ASCII", std::string(767, 'r'), std::string(255, 'r')},
      {"254 then a pair", std::string(254, 'r') + kWideUtf8, std::string(254, 'r')},
      {"253 then a pair", std::string(253, 'r') + kWideUtf8 + "r", std::string(253, 'r') + kWideUtf8},
      {"255 euro signs", repeat("\xE2\x82\xAC", 300), repeat("\xE2\x82\xAC", 255)},
  };
  for (const Case &c : cases) {
    ko_remark *r = ko_remark_new(c.text.c_str());
    ASSERT_NE(r, nullptr) << c.what;
    char buf[768];
    EXPECT_EQ(std::string(ko_remark_text(r, buf)), c.kept) << c.what;
    ko_remark *copy = ko_remark_clone(r);
    EXPECT_TRUE(ko_remark_eq(r, copy)) << c.what;
    EXPECT_EQ(std::string(ko_remark_text(copy, buf)), c.kept) << c.what;
    ko_remark_del(copy);
    ko_remark_del(r);
  }
}

TEST(Remark, EqualityComparesTheText) {
  ko_remark *a = ko_remark_new("First");
  ko_remark *b = ko_remark_new("first");
  ko_remark *c = ko_remark_new("First");
  EXPECT_FALSE(ko_remark_eq(a, b));
  EXPECT_TRUE(ko_remark_eq(a, c));
  for (ko_remark *r : {a, b, c}) ko_remark_del(r);
}

TEST(TextObjects, NullAndStalePointersAreNoObjects) {
  Ghost ghost;
  ko_dispname *d = ko_dispname_new("shown");
  ko_remark *r = ko_remark_new("note");
  for (void *obj : {static_cast<void *>(nullptr), ghost.ptr()}) {
    auto *dn = static_cast<ko_dispname *>(obj);
    auto *rm = static_cast<ko_remark *>(obj);
    EXPECT_FALSE(ko_dispname_p(dn));
    EXPECT_EQ(ko_dispname_clone(dn), nullptr);
    EXPECT_EQ(ko_dispname_del(dn), nullptr);
    EXPECT_FALSE(ko_dispname_eq(dn, d));
    EXPECT_FALSE(ko_dispname_eq(d, dn));
    EXPECT_EQ(ko_dispname_uname_get(dn), nullptr);
    ko_uchar ubuf[KO_NAME_SIZE] = {'j', 0};
    EXPECT_EQ(units(ko_dispname_uname(dn, ubuf)), u"");
    EXPECT_FALSE(ko_remark_p(rm));
    EXPECT_EQ(ko_remark_clone(rm), nullptr);
    EXPECT_EQ(ko_remark_del(rm), nullptr);
    EXPECT_FALSE(ko_remark_eq(rm, r));
    EXPECT_FALSE(ko_remark_eq(r, rm));
    char buf[768] = "junk";
    EXPECT_STREQ(ko_remark_text(rm, buf), "");
  }
  EXPECT_TRUE(ghost.untouched());
  EXPECT_EQ(ko_dispname_uname(d, nullptr), nullptr);
  EXPECT_EQ(ko_remark_text(r, nullptr), nullptr);
  // Each type's functions refuse the other type.
  EXPECT_FALSE(ko_dispname_p(r));
  EXPECT_FALSE(ko_remark_p(d));
  EXPECT_EQ(ko_dispname_uname_get(reinterpret_cast<ko_dispname *>(r)), nullptr);
  ko_dispname_del(d);
  ko_remark_del(r);
}

TEST(TextObjectsAllocation, ConstructorsAndClonesCleanUpAndReportNoMemory) {
  EXPECT_GT(ko::test::sweep_failures([] {
              ko_err err{};
              ko_dispname *d = ko_dispname_new_errext("Zürich", &err);
              if (d == nullptr) {
                expect_report(err, Report{4, 1, 1, kDispSource, "Zürich"});
                return false;
              }
              ko_dispname_del(d);
              return true;
            }),
            0);
  EXPECT_GT(ko::test::sweep_failures([] {
              ko_err err{};
              ko_remark *r = ko_remark_new_errext("A remark", &err);
              if (r == nullptr) {
                expect_report(err, Report{4, 1, 1, kRemarkSource, "A remark"});
                return false;
              }
              ko_remark_del(r);
              return true;
            }),
            0);
  ko_dispname *d = ko_dispname_new("shown");
  ko_remark *r = ko_remark_new("note");
  EXPECT_GT(ko::test::sweep_failures([d] {
              ko_dispname *c = ko_dispname_clone(d);
              ko_dispname_del(c);
              return c != nullptr;
            }),
            0);
  EXPECT_GT(ko::test::sweep_failures([r] {
              ko_remark *c = ko_remark_clone(r);
              ko_remark_del(c);
              return c != nullptr;
            }),
            0);
  ko_dispname_del(d);
  ko_remark_del(r);
}

}  // namespace
