// Vertical datums: the required name, anchor, dynamic frame, equality by
// name, deep clones and clean failures.
#include "ko.h"
#include "objects/systems_support.h"
#include "support/failing_alloc.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

namespace {

using ko::test::expect_no_report;
using ko::test::expect_report;
using ko::test::name_of;
using ko::test::Report;

constexpr const char *kSource = "ko_vdatum_ext_new_errext";

TEST(Vdatum, NameIsRequiredAndKeptTo79Characters) {
  ko_err err = ko::test::stale_record();
  // An empty message is replaced by the table text.
  const char *text = "Null or invalid vertical datum name argument";
  EXPECT_EQ(ko_vdatum_new_errext(nullptr, &err), nullptr);
  expect_report(err, Report{4, 8, 321, kSource, text});
  EXPECT_EQ(ko_vdatum_new_errext("", &err), nullptr);
  expect_report(err, Report{4, 8, 321, kSource, text});

  std::string long_name(85, 'v');
  ko_vdatum *d = ko_vdatum_new_errext(long_name.c_str(), &err);
  ASSERT_NE(d, nullptr);
  expect_report(err, Report{2, 8, 354, kSource, long_name.c_str()});
  EXPECT_EQ(name_of(d), long_name.substr(0, 79));
  EXPECT_EQ(ko_vdatum_type(d), KO_TYPE_VDATUM);
  EXPECT_EQ(ko_hvdatum_p(d), 1);
  EXPECT_EQ(ko_datum_p(d), 0);
  ko_vdatum_del(d);
}

TEST(Vdatum, AnchorMetadataAndDynamicFrame) {
  std::string anchor(300, 'a');
  ko_metadata *md[2] = {ko_metadata_new("Finland", nullptr, 1095), nullptr};
  ko_metadata **vec = ko_metadata_vector_clone(md);
  ko_metadata_del(md[0]);
  ko_err err{};
  ko_vdatum *d = ko_vdatum_ext_new_errext("N2000", anchor.c_str(), vec, &err);
  ASSERT_NE(d, nullptr);
  expect_report(err, Report{2, 8, 354, kSource, anchor.substr(0, 255).c_str()});
  char buf[KO_ANCHOR_SIZE];
  EXPECT_EQ(std::string(ko_vdatum_anchor(d, buf)), anchor.substr(0, 255));
  EXPECT_EQ(ko_vdatum_metadata_vector(d), vec);
  EXPECT_EQ(ko_vdatum_is_dynamic(d), 0);
  ko_vdatum_set_dynamic(d, "N2000 frame", 2000.0);
  char frame[KO_NAME_SIZE];
  EXPECT_EQ(ko_vdatum_get_dynamic(d, frame), 2000.0);
  EXPECT_STREQ(frame, "N2000 frame");
  EXPECT_EQ(ko_vdatum_is_dynamic(d), 1);
  ko_vdatum_set_dynamic(d, nullptr, NAN);
  EXPECT_EQ(ko_vdatum_is_dynamic(d), 1) << "a NaN epoch counts as dynamic";

  ko_object_code_set(d, 1030, 1030, 0, 0, "EPSG", "10.076");
  ko_vdatum *c = ko_vdatum_clone(d);
  ASSERT_NE(c, nullptr);
  EXPECT_EQ(ko_vdatum_eq(c, d), 1);
  EXPECT_EQ(ko_vdatum_code(c), 1030);
  EXPECT_TRUE(std::isnan(ko_vdatum_get_dynamic(c, frame)));
  char copied[KO_ANCHOR_SIZE];
  EXPECT_STREQ(ko_vdatum_anchor(c, copied), ko_vdatum_anchor(d, buf));
  ASSERT_NE(ko_vdatum_metadata_vector(c), nullptr);
  EXPECT_NE(ko_vdatum_metadata_vector(c), vec);
  EXPECT_EQ(ko_metadata_eq(ko_vdatum_metadata_vector(c)[0], vec[0]), 1);
  ko_vdatum_del(d);
  EXPECT_EQ(name_of(c), "N2000");
  ko_vdatum_del(c);
}

TEST(Vdatum, EqualityIsByNameAlone) {
  ko_vdatum *a = ko_vdatum_ext_new("Normaal_Amsterdams_Peil", "Amsterdam tide gauge", nullptr);
  ko_vdatum *b = ko_vdatum_new("normaal amsterdams peil");
  ko_vdatum *c = ko_vdatum_new("Normaal_Amsterdams_Peil_2");
  ko_datum *h = ko::test::wgs84_datum();
  ko_vdatum_set_dynamic(b, "frame", 2010.0);
  EXPECT_EQ(ko_vdatum_eq(a, b), 1) << "anchor and frame do not count";
  EXPECT_EQ(ko_object_eq(a, b), 1);
  EXPECT_EQ(ko_vdatum_eq(a, c), 0);
  EXPECT_EQ(ko_object_eq(a, h), 0) << "a vertical datum is never a horizontal one";
  for (void *p : {static_cast<void *>(a), static_cast<void *>(b), static_cast<void *>(c),
                  static_cast<void *>(h)})
    ko_object_del(p);
}

TEST(VdatumNoObject, NullAndStalePointers) {
  ko::test::Ghost ghost;
  for (void *p : {static_cast<void *>(nullptr), ghost.ptr()}) {
    auto *d = static_cast<ko_vdatum *>(p);
    char buf[KO_ANCHOR_SIZE] = "x";
    EXPECT_EQ(ko_vdatum_p(d), 0);
    EXPECT_EQ(ko_hvdatum_p(d), 0);
    EXPECT_STREQ(ko_vdatum_anchor(d, buf), "");
    EXPECT_EQ(ko_vdatum_metadata_vector(d), nullptr);
    ko_vdatum_set_dynamic(d, "frame", 2000.0);
    buf[0] = 'x';
    EXPECT_EQ(ko_vdatum_get_dynamic(d, buf), 0.0);
    EXPECT_STREQ(buf, "");
    EXPECT_EQ(ko_vdatum_is_dynamic(d), 0);
    EXPECT_EQ(ko_vdatum_clone(d), nullptr);
    EXPECT_EQ(ko_vdatum_eq(d, d), 0);
    EXPECT_EQ(ko_vdatum_del(d), nullptr);
  }
  EXPECT_TRUE(ghost.untouched());
  EXPECT_EQ(ko_object_vector(KO_TYPE_VDATUM), &ko_vdatum_objvec);
}

TEST(VdatumMemory, ConstructorAndCloneCleanUp) {
  ASSERT_TRUE(ko::test::installed());
  EXPECT_GT(ko::test::sweep_failures([] {
              ko_err err{};
              ko_vdatum *d = ko_vdatum_new_errext("NAVD_1988", &err);
              if (d == nullptr) {
                expect_report(err, Report{4, 1, 1, kSource, "NAVD_1988"});
                return false;
              }
              ko_vdatum_del(d);
              return true;
            }),
            0);
  ko_metadata *md[2] = {ko_metadata_new("Area", nullptr, 1), nullptr};
  ko_vdatum *src = ko_vdatum_ext_new("NAVD_1988", "anchor", ko_metadata_vector_clone(md));
  ko_metadata_del(md[0]);
  ko_object_authority_set(src, ko_authority_new("EPSG", 5103, ""));
  EXPECT_GT(ko::test::clone_sweep(src, ko_vdatum_clone, ko_vdatum_del), 2);
  ko_vdatum_del(src);
}

}  // namespace
