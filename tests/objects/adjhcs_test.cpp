// Adjusted horizontal systems: the argument checks, the affine form of
// both methods (the similarity checked against PROJ's 2D Helmert, which
// implements EPSG method 9621), equality, deep clones and clean failures.
#include "ko.h"
#include "objects/systems_support.h"
#include "support/failing_alloc.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <numbers>
#include <string>

#ifdef KO_HAVE_PROJ
#include <proj.h>
#endif

namespace {

using ko::test::expect_no_report;
using ko::test::expect_report;
using ko::test::name_of;
using ko::test::Report;

constexpr const char *kSource = "ko_adjhcs_ext_new_errext";

ko_array *values(const char *name, std::initializer_list<double> v, int unit_code = 0) {
  ko_unit *u = unit_code != 0 ? ko_unit_new_code(unit_code) : nullptr;
  ko_array *a = ko_array_new(name, static_cast<int>(v.size()), v.begin(), u);
  if (a == nullptr) ko_unit_del(u);
  return a;
}

// Applies the affine form to a point.
void apply(const double *abc, double x, double y, double &xo, double &yo) {
  xo = abc[0] + abc[1] * x + abc[2] * y;
  yo = abc[3] + abc[4] * x + abc[5] * y;
}

TEST(Adjhcs, AffineValuesScaledByTheirUnit) {
  ko_err err = ko::test::stale_record();
  ko_geogcs *g = ko::test::wgs84_geogcs();
  ko_htmethod *m = ko_htmethod_new("Affine");
  // Translations in arc-seconds on a geographic system.
  ko_array *v = values("Affine", {3.6, 1.0001, 0.0002, -7.2, -0.0003, 0.9998}, 9104);
  ko_adjhcs *a = ko_adjhcs_new_errext("GCS_WGS_1984_Adjusted", g, m, v, &err);
  ASSERT_NE(a, nullptr);
  expect_no_report(err);
  EXPECT_EQ(ko_adjhcs_type(a), KO_TYPE_ADJHCS);
  EXPECT_EQ(ko_adjhcs_coordsys(a), g);
  EXPECT_EQ(ko_adjhcs_htmethod(a), m);
  EXPECT_EQ(ko_adjhcs_array(a), v);
  double out[6];
  ASSERT_EQ(ko_adjhcs_affine(a, out), 1);
  const double arcsec = std::numbers::pi / 648000.0;
  const double expected[6] = {3.6 * arcsec, 1.0001, 0.0002, -7.2 * arcsec, -0.0003, 0.9998};
  for (int i = 0; i < 6; ++i) EXPECT_DOUBLE_EQ(out[i], expected[i]) << i;
  ko_adjhcs_del(a);
}

TEST(Adjhcs, SimilarityAsAffine) {
  const double x0 = 1500.25, y0 = -320.5, scale = 1.0000123, theta_arcsec = 12.75;
  const double theta = theta_arcsec * std::numbers::pi / 648000.0;
  ko_geogcs *g = ko::test::wgs84_geogcs();
  ko_array *v =
      values("Similarity", {x0, y0, scale * std::cos(theta), scale * std::sin(theta)}, 9001);
  ko_err err{};
  ko_htmethod *m = ko_htmethod_new("Similarity");
  // A geographic system takes angular translations only (or plain numbers).
  EXPECT_EQ(ko_adjhcs_new_errext("A", g, m, v, &err), nullptr);
  expect_report(err, Report{4, 8, 477, kSource, "A"});
  ko_array *plain =
      values("Similarity", {x0, y0, scale * std::cos(theta), scale * std::sin(theta)});
  ko_adjhcs *a = ko_adjhcs_new_errext("A", g, m, plain, &err);
  ASSERT_NE(a, nullptr);
  double abc[6];
  ASSERT_EQ(ko_adjhcs_affine(a, abc), 1);
  const double points[][2] = {{0.0, 0.0}, {1000.0, 0.0}, {0.0, 1000.0}, {-25400.5, 73200.25}};
  for (const auto &pt : points) {
    double x, y;
    apply(abc, pt[0], pt[1], x, y);
    // EPSG 9621 as IOGP guidance note 7-2 writes it.
    EXPECT_NEAR(x, x0 + scale * (pt[0] * std::cos(theta) + pt[1] * std::sin(theta)), 1e-9);
    EXPECT_NEAR(y, y0 + scale * (-pt[0] * std::sin(theta) + pt[1] * std::cos(theta)), 1e-9);
#ifdef KO_HAVE_PROJ
    char definition[256];
    std::snprintf(definition, sizeof definition,
                  "+proj=helmert +x=%.17g +y=%.17g +theta=%.17g +s=%.17g", x0, y0, theta_arcsec,
                  scale);
    PJ *helmert = proj_create(PJ_DEFAULT_CTX, definition);
    ASSERT_NE(helmert, nullptr);
    PJ_COORD c = proj_trans(helmert, PJ_FWD, proj_coord(pt[0], pt[1], 0, 0));
    EXPECT_NEAR(x, c.xy.x, 1e-8);
    EXPECT_NEAR(y, c.xy.y, 1e-8);
    proj_destroy(helmert);
#endif
  }
  EXPECT_EQ(ko_adjhcs_coordsys(a), g);
  ko_adjhcs_del(a);
  ko_array_del(v);
}

TEST(Adjhcs, ArgumentChecks) {
  struct Case {
    const char *label;
    int number;
  } cases[] = {
      {"no horizontal system", 338},
      {"a vertical system", 338},
      {"no method", 336},
      {"a vertical method", 336},
      {"no array", 325},
      {"an epoch for the array", 325},
      {"four values for the affine method", 310},
      {"linear translations on a geographic system", 477},
  };
  for (const Case &c : cases) {
    SCOPED_TRACE(c.label);
    std::string label = c.label;
    ko_geogcs *g = ko::test::wgs84_geogcs();
    ko_vertcs *vcs = ko::test::ellipsoidal_system();
    ko_htmethod *m = ko_htmethod_new("Affine");
    ko_vtmethod *vm = ko_vtmethod_new("Null");
    ko_epoch *epoch = ko_epoch_new(2000.0);
    ko_array *v = values("V", {1, 2, 3, 4, 5, 6});
    ko_array *four = values("V", {1, 2, 3, 4});
    ko_array *in_metres = values("V", {1, 2, 3, 4, 5, 6}, 9001);
    void *coordsys = label == "no horizontal system" ? nullptr
                     : label == "a vertical system"  ? static_cast<void *>(vcs)
                                                     : g;
    ko_htmethod *method = label == "no method"           ? nullptr
                          : label == "a vertical method" ? reinterpret_cast<ko_htmethod *>(vm)
                                                         : m;
    ko_array *array = label == "no array"                 ? nullptr
                      : label == "an epoch for the array" ? reinterpret_cast<ko_array *>(epoch)
                      : label == "four values for the affine method"          ? four
                      : label == "linear translations on a geographic system" ? in_metres
                                                                              : v;
    ko_err err{};
    EXPECT_EQ(ko_adjhcs_new_errext("ADJ", coordsys, method, array, &err), nullptr);
    expect_report(err, Report{4, 8, c.number, kSource, "ADJ"});
    for (void *p : {static_cast<void *>(g), static_cast<void *>(vcs), static_cast<void *>(m),
                    static_cast<void *>(vm), static_cast<void *>(epoch), static_cast<void *>(v),
                    static_cast<void *>(four), static_cast<void *>(in_metres)}) {
      EXPECT_EQ(ko_object_p(p), 1) << "refused parts stay the caller's";
      ko_object_del(p);
    }
  }
}

TEST(Adjhcs, EqualityAndClone) {
  auto make = [](const char *name, const char *method, std::initializer_list<double> v,
                 const char *array_name = "V") {
    return ko_adjhcs_new(name, ko::test::wgs84_geogcs(), ko_htmethod_new(method),
                         values(array_name, v));
  };
  ko_adjhcs *base = make("Adjusted", "Similarity", {1, 2, 1, 0});
  struct Variant {
    const char *label;
    ko_adjhcs *a;
    int equal;
  } variants[] = {
      {"spelling and array name", make("ADJUSTED", "Similarity", {1, 2, 1, 0}, "W"), 1},
      {"other values", make("Adjusted", "Similarity", {1, 2, 1, 1e-6}), 0},
      {"other method", make("Adjusted", "Affine", {1, 1, 0, 2, 0, 1}), 0},
      {"other name", make("Adjusted_2", "Similarity", {1, 2, 1, 0}), 0},
  };
  for (const Variant &v : variants) {
    SCOPED_TRACE(v.label);
    ASSERT_NE(v.a, nullptr);
    EXPECT_EQ(ko_adjhcs_eq(base, v.a), v.equal);
    EXPECT_EQ(ko_object_eq(v.a, base), v.equal);
    ko_adjhcs_del(v.a);
  }
  ko_metadata *md[2] = {ko_metadata_new("Area", nullptr, 1), nullptr};
  ko_adjhcs *full = ko_adjhcs_ext_new("Adjusted", ko::test::wgs84_geogcs(),
                                      ko_htmethod_new("Similarity"), values("V", {1, 2, 1, 0}),
                                      ko_metadata_vector_clone(md), ko_remark_new("r"));
  ko_metadata_del(md[0]);
  ASSERT_NE(full, nullptr);
  EXPECT_EQ(ko_adjhcs_eq(full, base), 1);
  ko_adjhcs *copy = ko_adjhcs_clone(full);
  ASSERT_NE(copy, nullptr);
  EXPECT_EQ(ko_adjhcs_eq(copy, full), 1);
  EXPECT_NE(ko_adjhcs_array(copy), ko_adjhcs_array(full));
  EXPECT_NE(ko_adjhcs_coordsys(copy), ko_adjhcs_coordsys(full));
  ko_adjhcs_del(full);
  char text[768];
  EXPECT_STREQ(ko_remark_text(ko_adjhcs_remark(copy), text), "r");
  EXPECT_EQ(name_of(ko_adjhcs_metadata_vector(copy)[0]), "Area");
  EXPECT_EQ(name_of(ko_adjhcs_htmethod(copy)), "Similarity");
  ko_adjhcs_del(copy);
  ko_adjhcs_del(base);
}

TEST(AdjhcsNoObject, NullAndStalePointers) {
  ko::test::Ghost ghost;
  for (void *p : {static_cast<void *>(nullptr), ghost.ptr()}) {
    auto *a = static_cast<ko_adjhcs *>(p);
    double out[6] = {7, 7, 7, 7, 7, 7};
    EXPECT_EQ(ko_adjhcs_p(a), 0);
    EXPECT_EQ(ko_adjhcs_coordsys(a), nullptr);
    EXPECT_EQ(ko_adjhcs_htmethod(a), nullptr);
    EXPECT_EQ(ko_adjhcs_array(a), nullptr);
    EXPECT_EQ(ko_adjhcs_affine(a, out), 0);
    EXPECT_EQ(out[0], 7.0);
    EXPECT_EQ(ko_adjhcs_metadata_vector(a), nullptr);
    EXPECT_EQ(ko_adjhcs_remark(a), nullptr);
    EXPECT_EQ(ko_adjhcs_clone(a), nullptr);
    EXPECT_EQ(ko_adjhcs_eq(a, a), 0);
    EXPECT_EQ(ko_adjhcs_del(a), nullptr);
  }
  EXPECT_TRUE(ghost.untouched());
  EXPECT_EQ(ko_object_vector(KO_TYPE_ADJHCS), &ko_adjhcs_objvec);
}

TEST(AdjhcsMemory, ConstructorAndCloneCleanUp) {
  ASSERT_TRUE(ko::test::installed());
  EXPECT_GT(ko::test::sweep_failures([] {
              ko_geogcs *g = ko::test::wgs84_geogcs();
              ko_htmethod *m = ko_htmethod_new("Affine");
              ko_array *v = values("V", {1, 2, 3, 4, 5, 6}, 9104);
              ko_err err{};
              ko_adjhcs *a = nullptr;
              if (g != nullptr && m != nullptr && v != nullptr)
                a = ko_adjhcs_new_errext("ADJ", g, m, v, &err);
              if (a == nullptr) {
                if (err.number != 0) expect_report(err, Report{4, 1, 1, kSource, "ADJ"});
                ko_geogcs_del(g);
                ko_htmethod_del(m);
                ko_array_del(v);
                return false;
              }
              ko_adjhcs_del(a);
              return true;
            }),
            8);
  ko_adjhcs *src = ko_adjhcs_ext_new("ADJ", ko::test::wgs84_geogcs(), ko_htmethod_new("Similarity"),
                                     values("V", {1, 2, 1, 0}, 9104), nullptr, ko_remark_new("r"));
  ASSERT_NE(src, nullptr);
  EXPECT_GT(ko::test::clone_sweep(src, ko_adjhcs_clone, ko_adjhcs_del), 8);
  ko_adjhcs_del(src);
}

}  // namespace
