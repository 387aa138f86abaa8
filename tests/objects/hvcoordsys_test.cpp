// Compound systems: the argument checks, typed views of the horizontal
// part, equality, deep clones and clean failures.
#include "ko.h"
#include "objects/systems_support.h"
#include "support/failing_alloc.h"

#include <gtest/gtest.h>

namespace {

using ko::test::expect_no_report;
using ko::test::expect_report;
using ko::test::name_of;
using ko::test::Report;

constexpr const char *kSource = "ko_hvcoordsys_ext_new_errext";

ko_hvcoordsys *compound(const char *name, const char *gcs, const char *vcs) {
  ko_geogcs *g = ko::test::wgs84_geogcs(gcs);
  ko_vertcs *v = ko::test::gravity_system(vcs, "EGM_2008_Geoid");
  ko_hvcoordsys *c = g != nullptr && v != nullptr ? ko_hvcoordsys_new(name, g, v) : nullptr;
  if (c == nullptr) {
    ko_geogcs_del(g);
    ko_vertcs_del(v);
  }
  return c;
}

TEST(Hvcoordsys, HoldsBothSystems) {
  ko_err err = ko::test::stale_record();
  ko_geogcs *g = ko::test::wgs84_geogcs();
  ko_vertcs *v = ko::test::gravity_system("EGM_2008_Height", "EGM_2008_Geoid");
  ko_hvcoordsys *c = ko_hvcoordsys_new_errext("WGS_1984_EGM_2008_Height", g, v, &err);
  ASSERT_NE(c, nullptr);
  expect_no_report(err);
  EXPECT_EQ(ko_hvcoordsys_type(c), KO_TYPE_HVCOORDSYS);
  EXPECT_EQ(ko_hvcoordsys_coordsys(c), g);
  EXPECT_EQ(ko_hvcoordsys_geogcs(c), g);
  EXPECT_EQ(ko_hvcoordsys_projcs(c), nullptr);
  EXPECT_EQ(ko_hvcoordsys_vertcs(c), v);
  EXPECT_EQ(ko_coordsys_p(g), 1);
  EXPECT_EQ(ko_coordsys_p(v), 0);
  ko_hvcoordsys_del(c);
}

TEST(Hvcoordsys, ArgumentChecks) {
  ko_geogcs *g = ko::test::wgs84_geogcs();
  ko_vertcs *v = ko::test::gravity_system("H", "D");
  struct Case {
    const char *label;
    void *coordsys;
    ko_vertcs *vertcs;
    int number;
  } cases[] = {
      {"neither", nullptr, nullptr, 339},
      {"no horizontal system", nullptr, v, 338},
      {"a vertical system for the horizontal one", v, v, 338},
      {"no vertical system", g, nullptr, 339},
      {"a geographic system for the vertical one", g, reinterpret_cast<ko_vertcs *>(g), 339},
  };
  for (const Case &c : cases) {
    SCOPED_TRACE(c.label);
    ko_err err{};
    EXPECT_EQ(ko_hvcoordsys_new_errext("C", c.coordsys, c.vertcs, &err), nullptr);
    expect_report(err, Report{4, 8, c.number, kSource, "C"});
  }
  EXPECT_EQ(ko_geogcs_p(g), 1);
  EXPECT_EQ(ko_vertcs_p(v), 1);
  ko_geogcs_del(g);
  ko_vertcs_del(v);
}

TEST(Hvcoordsys, EqualityAndClone) {
  ko_hvcoordsys *a = compound("WGS_1984_EGM_2008", "GCS_WGS_1984", "EGM_2008_Height");
  ko_hvcoordsys *b = compound("wgs 1984 egm 2008", "WGS_1984", "egm 2008 height");
  ko_hvcoordsys *c = compound("WGS_1984_EGM_2008", "GCS_WGS_1984", "EGM_96_Height");
  ko_hvcoordsys *d = compound("WGS_1984_EGM_2008", "GCS_Other", "EGM_2008_Height");
  EXPECT_EQ(ko_hvcoordsys_eq(a, b), 1);
  EXPECT_EQ(ko_hvcoordsys_eq(a, c), 0) << "vertical systems differ";
  EXPECT_EQ(ko_hvcoordsys_eq(a, d), 0) << "horizontal systems differ";

  ko_metadata *md[2] = {ko_metadata_new("World", nullptr, 1262), nullptr};
  ko_hvcoordsys *full =
      ko_hvcoordsys_ext_new("WGS_1984_EGM_2008", ko::test::wgs84_geogcs(),
                            ko::test::gravity_system("EGM_2008_Height", "EGM_2008_Geoid"),
                            ko_metadata_vector_clone(md), ko_remark_new("r"));
  ko_metadata_del(md[0]);
  ASSERT_NE(full, nullptr);
  EXPECT_EQ(ko_hvcoordsys_eq(full, a), 1) << "metadata and remark do not count";
  ko_object_code_set(full, 9518, 9518, 0, 0, "EPSG", "");
  ko_hvcoordsys *copy = ko_hvcoordsys_clone(full);
  ASSERT_NE(copy, nullptr);
  EXPECT_EQ(ko_hvcoordsys_eq(copy, full), 1);
  EXPECT_EQ(ko_hvcoordsys_code(copy), 9518);
  EXPECT_NE(ko_hvcoordsys_geogcs(copy), ko_hvcoordsys_geogcs(full));
  EXPECT_NE(ko_hvcoordsys_vertcs(copy), ko_hvcoordsys_vertcs(full));
  ko_hvcoordsys_del(full);
  char text[768];
  EXPECT_STREQ(ko_remark_text(ko_hvcoordsys_remark(copy), text), "r");
  EXPECT_EQ(name_of(ko_hvcoordsys_metadata_vector(copy)[0]), "World");
  for (ko_hvcoordsys *h : {a, b, c, d, copy}) ko_hvcoordsys_del(h);
}

TEST(HvcoordsysNoObject, NullAndStalePointers) {
  ko::test::Ghost ghost;
  for (void *p : {static_cast<void *>(nullptr), ghost.ptr()}) {
    auto *c = static_cast<ko_hvcoordsys *>(p);
    EXPECT_EQ(ko_hvcoordsys_p(c), 0);
    EXPECT_EQ(ko_coordsys_p(c), 0);
    EXPECT_EQ(ko_hvcoordsys_coordsys(c), nullptr);
    EXPECT_EQ(ko_hvcoordsys_geogcs(c), nullptr);
    EXPECT_EQ(ko_hvcoordsys_projcs(c), nullptr);
    EXPECT_EQ(ko_hvcoordsys_vertcs(c), nullptr);
    EXPECT_EQ(ko_hvcoordsys_metadata_vector(c), nullptr);
    EXPECT_EQ(ko_hvcoordsys_remark(c), nullptr);
    EXPECT_EQ(ko_hvcoordsys_clone(c), nullptr);
    EXPECT_EQ(ko_hvcoordsys_eq(c, c), 0);
    EXPECT_EQ(ko_hvcoordsys_del(c), nullptr);
  }
  EXPECT_TRUE(ghost.untouched());
  EXPECT_EQ(ko_object_vector(KO_TYPE_HVCOORDSYS), &ko_hvcoordsys_objvec);
}

TEST(HvcoordsysMemory, ConstructorAndCloneCleanUp) {
  ASSERT_TRUE(ko::test::installed());
  EXPECT_GT(ko::test::sweep_failures([] {
              ko_err err{};
              ko_geogcs *g = ko::test::wgs84_geogcs();
              ko_vertcs *v = ko::test::gravity_system("H", "D");
              ko_hvcoordsys *c = nullptr;
              if (g != nullptr && v != nullptr) c = ko_hvcoordsys_new_errext("C", g, v, &err);
              if (c == nullptr) {
                if (err.number != 0) expect_report(err, Report{4, 1, 1, kSource, "C"});
                ko_geogcs_del(g);
                ko_vertcs_del(v);
                return false;
              }
              ko_hvcoordsys_del(c);
              return true;
            }),
            8);
  ko_metadata *md[2] = {ko_metadata_new("Area", nullptr, 1), nullptr};
  ko_hvcoordsys *src =
      ko_hvcoordsys_ext_new("C", ko::test::wgs84_geogcs(), ko::test::ellipsoidal_system(),
                            ko_metadata_vector_clone(md), ko_remark_new("r"));
  ko_metadata_del(md[0]);
  ASSERT_NE(src, nullptr);
  EXPECT_GT(ko::test::clone_sweep(src, ko_hvcoordsys_clone, ko_hvcoordsys_del), 10);
  ko_hvcoordsys_del(src);
}

}  // namespace
