// Metadata: construction and its refusals, stored extents, equality,
// setters, vectors of metadata, and clean-up on failed allocations.
#include "ko.h"
#include "objects/object_support.h"
#include "support/failing_alloc.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

namespace {

using ko::test::expect_no_report;
using ko::test::expect_report;
using ko::test::Ghost;
using ko::test::Report;

constexpr char kSource[] = "ko_metadata_new_errext";
const ko_gcs_extent kEurope{-16.1, 32.88, 40.18, 84.73, 0.0, 0.0};
const ko_vcs_extent kDepth{-1000.0, 0.0};
const ko_time_extent kEpochs{1989.0, 2024.5};

TEST(MetadataNew, RefusesLongNameOrScopeWithWarning354) {
  const std::string n80(80, 'n'), s256(256, 's'), n79(79, 'n'), s255(255, 's');
  struct Case {
    const char *what;
    const std::string &name, &scope;
    bool made;
    std::string message;
  } const cases[] = {
      {"80-character name", n80, s255, false, n80},
      {"256-character scope", n79, s256, false, s256.substr(0, 255)},
      {"fields filled exactly", n79, s255, true, ""},
  };
  for (const Case &c : cases) {
    ko_err err = ko::test::stale_record();
    ko_metadata *m = ko_metadata_ext_new_errext(c.name.c_str(), c.scope.c_str(), &kEurope,
                                                nullptr, nullptr, 1298, &err);
    EXPECT_EQ(m != nullptr, c.made) << c.what;
    if (c.made) {
      expect_no_report(err);
      char buf[256];
      EXPECT_EQ(ko_metadata_name(m, buf), c.name);
      EXPECT_EQ(ko_metadata_scope(m, buf), c.scope);
    } else {
      expect_report(err, Report{2, 8, 354, kSource, c.message.c_str()});
    }
    ko_metadata_del(m);
  }
}

TEST(MetadataNew, NullNameAndScopeCountAsEmpty) {
  ko_err err = ko::test::stale_record();
  ko_metadata *m = ko_metadata_ext_new_errext(nullptr, nullptr, nullptr, nullptr, nullptr, 0, &err);
  ASSERT_NE(m, nullptr);
  expect_no_report(err);
  char buf[256] = "junk";
  EXPECT_STREQ(ko_metadata_name(m, buf), "");
  EXPECT_STREQ(ko_metadata_scope(m, buf), "");
  EXPECT_EQ(ko_object_status(m), KO_STATUS_NEW);  // a named type: it has a record
  EXPECT_EQ(ko_object_code(m), -1);
  ko_metadata_del(m);
}

TEST(MetadataNew, StoresExtentsEmptyOnesCleared) {
  // An extent that its type judges empty (no box) is stored cleared even
  // when its step fields are set.
  const ko_gcs_extent no_box{0, 0, 0, 0, 0.25, 0.25};
  ko_metadata *m = ko_metadata_ext_new("Europe", "Geodesy.", &no_box, &kDepth, &kEpochs, 1298);
  ASSERT_NE(m, nullptr);
  ko_gcs_extent g{1, 1, 1, 1, 1, 1};
  ko_metadata_gcs_extent(m, &g);
  const ko_gcs_extent cleared{};
  EXPECT_EQ(std::memcmp(&g, &cleared, sizeof g), 0);
  ko_vcs_extent v{};
  ko_time_extent t{};
  EXPECT_TRUE(ko_vcs_extent_eq(ko_metadata_vcs_extent(m, &v), &kDepth));
  EXPECT_TRUE(ko_time_extent_eq(ko_metadata_time_extent(m, &t), &kEpochs));
  EXPECT_TRUE(ko_vcs_extent_eq(ko_metadata_vcs_extent_ptr(m), &kDepth));
  EXPECT_TRUE(ko_time_extent_eq(ko_metadata_time_extent_ptr(m), &kEpochs));
  EXPECT_EQ(ko_metadata_areacode(m), 1298u);
  ko_metadata_del(m);

  ko_metadata *n = ko_metadata_new("Europe", &kEurope, 1298);
  EXPECT_TRUE(ko_gcs_extent_eq(ko_metadata_gcs_extent_ptr(n), &kEurope));
  EXPECT_TRUE(ko_vcs_extent_empty(ko_metadata_vcs_extent_ptr(n)));
  EXPECT_TRUE(ko_time_extent_empty(ko_metadata_time_extent_ptr(n)));
  ko_metadata_del(n);
}

TEST(MetadataEq, NameAndExtentsDecideScopeAndAreaCodeDoNot) {
  ko_gcs_extent shifted = kEurope;
  shifted.north = 84.0;
  struct Case {
    const char *what;
    const char *name;
    const char *scope;
    const ko_gcs_extent *gcs;
    const ko_time_extent *time;
    uint32_t area;
    int equal;
  } const cases[] = {
      {"same", "Europe", "Geodesy.", &kEurope, &kEpochs, 1298, 1},
      {"name by the name rules", "EUROPE", "Geodesy.", &kEurope, &kEpochs, 1298, 1},
      {"other scope and area code", "Europe", "Cadastre.", &kEurope, &kEpochs, 2, 1},
      {"other name", "Asia", "Geodesy.", &kEurope, &kEpochs, 1298, 0},
      {"other box", "Europe", "Geodesy.", &shifted, &kEpochs, 1298, 0},
      {"no time extent", "Europe", "Geodesy.", &kEurope, nullptr, 1298, 0},
  };
  ko_metadata *ref = ko_metadata_ext_new("Europe", "Geodesy.", &kEurope, &kDepth, &kEpochs, 1298);
  for (const Case &c : cases) {
    ko_metadata *m = ko_metadata_ext_new(c.name, c.scope, c.gcs, &kDepth, c.time, c.area);
    EXPECT_EQ(ko_metadata_eq(ref, m), c.equal) << c.what;
    EXPECT_EQ(ko_object_eq(m, ref), c.equal) << c.what;
    ko_metadata_del(m);
  }
  ko_metadata_del(ref);
}

TEST(MetadataSetters, ScopeAndAreaNameAreCutToTheirFields) {
  ko_metadata *m = ko_metadata_new("Europe", &kEurope, 1298);
  ko_metadata_scope_set(m, std::string(300, 's').c_str());
  char buf[256];
  EXPECT_EQ(std::string(ko_metadata_scope(m, buf)), std::string(255, 's'));
  ko_metadata_scope_set(m, nullptr);
  EXPECT_STREQ(ko_metadata_scope(m, buf), "");
  ko_metadata_areaname_set(m, "Europe - onshore");
  EXPECT_STREQ(ko_header_get_name(m), "Europe - onshore");
  ko_metadata_areaname_set(m, std::string(100, 'a').c_str());
  EXPECT_EQ(std::string(ko_header_get_name(m)), std::string(79, 'a'));
  ko_metadata_del(m);
}

TEST(MetadataClone, IsDeepAndEqual) {
  ko_metadata *m = ko_metadata_ext_new("Europe", "Geodesy.", &kEurope, &kDepth, &kEpochs, 1298);
  ko_metadata *c = ko_metadata_clone(m);
  ASSERT_NE(c, nullptr);
  EXPECT_TRUE(ko_metadata_eq(m, c));
  EXPECT_NE(ko_metadata_gcs_extent_ptr(c), ko_metadata_gcs_extent_ptr(m));
  char a[256], b[256];
  EXPECT_STREQ(ko_metadata_scope(c, a), ko_metadata_scope(m, b));
  EXPECT_EQ(ko_metadata_areacode(c), 1298u);
  ko_metadata_del(m);  // the clone outlives its source
  EXPECT_TRUE(ko_time_extent_eq(ko_metadata_time_extent_ptr(c), &kEpochs));
  ko_metadata_del(c);
}

TEST(MetadataVector, ClonesAndDeletesANullTerminatedList) {
  ko_metadata *list[] = {
      ko_metadata_new("Europe", &kEurope, 1298),
      ko_metadata_new("World", nullptr, 1262),
      nullptr,
  };
  ko_metadata **copy = ko_metadata_vector_clone(list);
  ASSERT_NE(copy, nullptr);
  for (int i = 0; i < 2; ++i) {
    ASSERT_NE(copy[i], nullptr);
    EXPECT_NE(copy[i], list[i]);
    EXPECT_TRUE(ko_metadata_eq(copy[i], list[i]));
  }
  EXPECT_EQ(copy[2], nullptr);
  EXPECT_EQ(ko_metadata_vector_del(copy), nullptr);
  ko_metadata *empty[] = {nullptr};
  ko_metadata **none = ko_metadata_vector_clone(empty);
  ASSERT_NE(none, nullptr);
  EXPECT_EQ(none[0], nullptr);
  ko_metadata_vector_del(none);
  EXPECT_EQ(ko_metadata_vector_clone(nullptr), nullptr);
  EXPECT_EQ(ko_metadata_vector_del(nullptr), nullptr);
  for (ko_metadata *m : list) ko_metadata_del(m);
}

TEST(Metadata, NullAndStalePointersAreNoMetadata) {
  Ghost ghost;
  ko_metadata *real = ko_metadata_new("Europe", &kEurope, 1);
  for (void *obj : {static_cast<void *>(nullptr), ghost.ptr()}) {
    auto *m = static_cast<ko_metadata *>(obj);
    EXPECT_FALSE(ko_metadata_p(m));
    EXPECT_EQ(ko_metadata_clone(m), nullptr);
    EXPECT_EQ(ko_metadata_del(m), nullptr);
    EXPECT_FALSE(ko_metadata_eq(m, real));
    EXPECT_FALSE(ko_metadata_eq(real, m));
    char buf[256] = "junk";
    EXPECT_STREQ(ko_metadata_scope(m, buf), "");
    ko_metadata_scope_set(m, "x");
    ko_metadata_areaname_set(m, "x");
    EXPECT_EQ(ko_metadata_areacode(m), 0u);
    ko_gcs_extent g = kEurope;
    EXPECT_TRUE(ko_gcs_extent_empty(ko_metadata_gcs_extent(m, &g)));
    EXPECT_EQ(ko_metadata_gcs_extent_ptr(m), nullptr);
    EXPECT_EQ(ko_metadata_vcs_extent_ptr(m), nullptr);
    EXPECT_EQ(ko_metadata_time_extent_ptr(m), nullptr);
  }
  EXPECT_TRUE(ghost.untouched());
  // A list entry that is no metadata is skipped by the copy.
  ko_metadata *vec[] = {static_cast<ko_metadata *>(ghost.ptr()), real, nullptr};
  ko_metadata **copy = ko_metadata_vector_clone(vec);
  ASSERT_NE(copy, nullptr);
  EXPECT_TRUE(ko_metadata_eq(copy[0], real));
  EXPECT_EQ(copy[1], nullptr);
  ko_metadata_vector_del(copy);
  EXPECT_TRUE(ghost.untouched());
  EXPECT_EQ(ko_metadata_gcs_extent(real, nullptr), nullptr);
  ko_metadata_del(real);
}

TEST(MetadataAllocation, ConstructorCloneAndVectorCloneCleanUp) {
  EXPECT_GT(ko::test::sweep_failures([] {
              ko_err err{};
              ko_metadata *m = ko_metadata_new_errext("Europe", &kEurope, 1298, &err);
              if (m == nullptr) {
                expect_report(err, Report{4, 1, 1, kSource, "Europe"});
                return false;
              }
              ko_metadata_del(m);
              return true;
            }),
            0);
  // A source whose header owns an authority and a display name: the clone
  // needs the object, its record and both owned objects.
  ko_metadata *src = ko_metadata_new("Europe", &kEurope, 1298);
  ko_object_authority_set(src, ko_authority_new("EPSG", 1298, nullptr));
  ko_object_dispname_set(src, ko_dispname_new("Europa"));
  EXPECT_GE(ko::test::sweep_failures([src] {
              ko_metadata *c = ko_metadata_clone(src);
              bool ok = c != nullptr && ko_object_authority_const(c) != nullptr &&
                        ko_object_dispname(c) != nullptr;
              ko_metadata_del(c);
              return ok;
            }),
            4);
  ko_metadata *list[] = {src, src, nullptr};
  EXPECT_GE(ko::test::sweep_failures([&list] {
              ko_metadata **copy = ko_metadata_vector_clone(list);
              ko_metadata_vector_del(copy);
              return copy != nullptr;
            }),
            9);
  ko_metadata_del(src);
}

}  // namespace
