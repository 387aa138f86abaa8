// Authority objects: what the constructor accepts and refuses (with the
// exact reports), the getters, equality and clean-up on failed allocations.
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

constexpr char kSource[] = "ko_authority_new_errext";

struct Refusal {
  const char *what;
  std::string name;
  int32_t code;
  std::string version, citation, uri;
  bool null_name;
  int severity, category, number;
  std::string message;
};

TEST(AuthorityNew, RefusesBadArgumentsWithTheDocumentedReports) {
  const std::string n80(80, 'n'), v24(24, 'v'), c256(256, 'c'), u256(256, 'u');
  const Refusal cases[] = {
      {"null name", "", 4326, "", "", "", true, 4, 8, 320, "Null or invalid authority name argument"},
      {"empty name", "", 4326, "", "", "", false, 4, 8, 320, "Null or invalid authority name argument"},
      {"code 0", "EPSG", 0, "", "", "", false, 4, 8, 311, "Invalid authority code argument: EPSG: 0"},
      {"negative code", "EPSG", -7, "", "", "", false, 4, 8, 311,
       "Invalid authority code argument: EPSG: -7"},
      {"80-character name", n80, 4326, "", "", "", false, 2, 8, 354, n80},
      {"24-character version", "EPSG", 4326, v24, "", "", false, 2, 8, 354, v24},
      {"256-character citation", "EPSG", 4326, "", c256, "", false, 2, 8, 354, c256.substr(0, 255)},
      {"256-character uri", "EPSG", 4326, "", "", u256, false, 2, 8, 354, u256.substr(0, 255)},
      // A too-long text refuses before the code is looked at.
      {"long version and code 0", "EPSG", 0, v24, "", "", false, 2, 8, 354, v24},
  };
  for (const Refusal &c : cases) {
    SCOPED_TRACE(c.what);
    ko_err err = ko::test::stale_record();
    ko_authority *a = ko_authority_ext_new_errext(c.null_name ? nullptr : c.name.c_str(), c.code,
                                                  c.version.c_str(), c.citation.c_str(),
                                                  c.uri.c_str(), &err);
    EXPECT_EQ(a, nullptr);
    expect_report(err, Report{c.severity, c.category, c.number, kSource, c.message.c_str()});
    ko_authority_del(a);
  }
}

TEST(AuthorityNew, AcceptsTextsThatFillTheirFieldsExactly) {
  const std::string n79(79, 'n'), v23(23, 'v'), c255(255, 'c'), u255(255, 'u');
  ko_err err = ko::test::stale_record();
  ko_authority *a = ko_authority_ext_new_errext(n79.c_str(), 1, v23.c_str(), c255.c_str(),
                                                u255.c_str(), &err);
  ASSERT_NE(a, nullptr);
  expect_no_report(err);
  char buf[256];
  EXPECT_EQ(ko_authority_authname(a, buf), n79);
  EXPECT_EQ(ko_authority_authcode(a), 1);
  EXPECT_EQ(ko_authority_version(a, buf), v23);
  EXPECT_EQ(ko_authority_citation(a, buf), c255);
  EXPECT_EQ(ko_authority_uri(a, buf), u255);
  ko_authority_del(a);
}

TEST(AuthorityNew, ShortFormsLeaveCitationAndUriEmpty) {
  ko_err err{};
  ko_authority *forms[] = {
      ko_authority_new("EPSG", 4326, "10.0"),
      ko_authority_new_errext("EPSG", 4326, "10.0", &err),
      ko_authority_ext_new("EPSG", 4326, "10.0", nullptr, nullptr),
  };
  for (ko_authority *a : forms) {
    ASSERT_TRUE(ko_authority_p(a));
    char buf[256] = "junk";
    EXPECT_STREQ(ko_authority_version(a, buf), "10.0");
    EXPECT_STREQ(ko_authority_citation(a, buf), "");
    EXPECT_STREQ(ko_authority_uri(a, buf), "");
    EXPECT_EQ(ko_object_type(a), KO_TYPE_AUTHORITY);
    EXPECT_EQ(ko_header_get(a)->info, nullptr);  // no header record
    EXPECT_EQ(ko_authority_del(a), nullptr);
  }
  ko_authority *no_version = ko_authority_new("EPSG", 4326, nullptr);
  char buf[24] = "junk";
  EXPECT_STREQ(ko_authority_version(no_version, buf), "");
  ko_authority_del(no_version);
}

TEST(AuthorityEq, ComparesNameLikeNamesAndCodeExactly) {
  struct Case {
    const char *name_a, *version_a;
    int32_t code_a;
    const char *name_b, *version_b;
    int32_t code_b;
    int equal;
  } const cases[] = {
      {"VELOR", "1.0", 4326, "velor", "2.0", 4326, 1},  // versions do not matter
      {"E-P_S G", "", 4326, "epsg", "", 4326, 1},       // punctuation and blanks ignored
      {"EPSG", "", 4326, "EPSG", "", 4327, 0},
      {"EPSG", "", 4326, "ESRI", "", 4326, 0},
  };
  for (const Case &c : cases) {
    ko_authority *a = ko_authority_new(c.name_a, c.code_a, c.version_a);
    ko_authority *b = ko_authority_new(c.name_b, c.code_b, c.version_b);
    EXPECT_EQ(ko_authority_eq(a, b), c.equal) << c.name_a << " " << c.name_b;
    EXPECT_EQ(ko_object_eq(b, a), c.equal);
    ko_authority_del(a);
    ko_authority_del(b);
  }
}

TEST(AuthorityClone, CopiesEveryField) {
  ko_authority *a = ko_authority_ext_new("EPSG", 4326, "10.0", "IOGP", "urn:ogc:def:crs:EPSG::4326");
  ko_authority *c = ko_authority_clone(a);
  ASSERT_NE(c, nullptr);
  ASSERT_NE(c, a);
  char x[256], y[256];
  EXPECT_STREQ(ko_authority_authname(c, x), ko_authority_authname(a, y));
  EXPECT_EQ(ko_authority_authcode(c), 4326);
  EXPECT_STREQ(ko_authority_version(c, x), "10.0");
  EXPECT_STREQ(ko_authority_citation(c, x), "IOGP");
  EXPECT_STREQ(ko_authority_uri(c, x), "urn:ogc:def:crs:EPSG::4326");
  ko_authority_del(a);
  ko_authority_del(c);
}

TEST(Authority, NullAndStalePointersAreNoAuthority) {
  Ghost ghost;
  ko_authority *real = ko_authority_new("EPSG", 1, nullptr);
  for (void *obj : {static_cast<void *>(nullptr), ghost.ptr()}) {
    auto *a = static_cast<ko_authority *>(obj);
    char buf[256] = "junk";
    EXPECT_FALSE(ko_authority_p(a));
    EXPECT_STREQ(ko_authority_authname(a, buf), "");
    std::snprintf(buf, sizeof buf, "junk");
    EXPECT_STREQ(ko_authority_version(a, buf), "");
    std::snprintf(buf, sizeof buf, "junk");
    EXPECT_STREQ(ko_authority_citation(a, buf), "");
    std::snprintf(buf, sizeof buf, "junk");
    EXPECT_STREQ(ko_authority_uri(a, buf), "");
    EXPECT_EQ(ko_authority_authcode(a), 0);
    EXPECT_EQ(ko_authority_clone(a), nullptr);
    EXPECT_EQ(ko_authority_del(a), nullptr);
    EXPECT_FALSE(ko_authority_eq(a, real));
    EXPECT_FALSE(ko_authority_eq(real, a));
  }
  EXPECT_TRUE(ghost.untouched());
  // Another live type is not an authority either.
  ko_remark *r = ko_remark_new("x");
  EXPECT_FALSE(ko_authority_p(r));
  EXPECT_EQ(ko_authority_del(reinterpret_cast<ko_authority *>(r)), nullptr);
  EXPECT_TRUE(ko_remark_p(r));
  ko_remark_del(r);
  EXPECT_EQ(ko_authority_authname(real, nullptr), nullptr);
  ko_authority_del(real);
}

TEST(AuthorityAllocation, ConstructorAndCloneCleanUpAndReportNoMemory) {
  EXPECT_GT(ko::test::sweep_failures([] {
              ko_err err{};
              ko_authority *a = ko_authority_new_errext("EPSG", 4326, "10.0", &err);
              if (a == nullptr) {
                expect_report(err, Report{4, 1, 1, kSource, "EPSG"});
                return false;
              }
              ko_authority_del(a);
              return true;
            }),
            0);
  ko_authority *src = ko_authority_new("EPSG", 4326, "10.0");
  EXPECT_GT(ko::test::sweep_failures([src] {
              ko_authority *c = ko_authority_clone(src);
              ko_authority_del(c);
              return c != nullptr;
            }),
            0);
  ko_authority_del(src);
}

}  // namespace
