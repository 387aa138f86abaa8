// Vertical transformations: the argument checks in order, the systems
// against the method, the parameters, equality, deep clones, clean
// failures, and every vertical transformation of the catalogue built from
// its record.
#include "ko.h"
#include "objects/systems_support.h"
#include "support/failing_alloc.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <string>

namespace {

using ko::test::expect_no_report;
using ko::test::expect_report;
using ko::test::name_of;
using ko::test::Report;
using ko::test::Slots;

constexpr const char *kSource = "ko_verttran_ext_new_errext";

// The parts of a transformation, deleted unless handed over.
struct Parts {
  void *coordsys = nullptr;
  ko_vertcs *vcs1 = nullptr;
  ko_vertcs *vcs2 = nullptr;
  ko_vtmethod *method = nullptr;
  Slots slots;
  void del() {
    ko_object_del(coordsys);
    ko_object_del(vcs1);
    ko_object_del(vcs2);
    ko_object_del(method);
    slots.del();
  }
};

// NAVD 88 to NGVD 29 by a constant offset.
Parts offset_parts(double offset = -0.3) {
  Parts p;
  p.vcs1 = ko::test::gravity_system("NAVD_1988_Height", "NAVD_1988");
  p.vcs2 = ko::test::gravity_system("NGVD_1929_Height", "NGVD_1929");
  p.method = ko_vtmethod_new("Vertical_Offset");
  p.slots.put("Vertical_Offset", offset);
  return p;
}

ko_verttran *build(const char *name, Parts &p, ko_err *err, double accuracy = 999.0) {
  ko_verttran *vt = ko_verttran_ext_new_errext(name, p.coordsys, p.vcs1, p.vcs2, p.method,
                                               p.slots.data(), nullptr, nullptr, err, accuracy);
  if (vt == nullptr) p.del();
  return vt;
}

TEST(Verttran, OffsetTransformation) {
  ko_err err = ko::test::stale_record();
  Parts p = offset_parts();
  ko_verttran *vt = build("NAVD_1988_To_NGVD_1929", p, &err, 0.02);
  ASSERT_NE(vt, nullptr);
  expect_no_report(err);
  EXPECT_EQ(ko_verttran_type(vt), KO_TYPE_VERTTRAN);
  EXPECT_EQ(ko_verttran_coordsys(vt), nullptr);
  EXPECT_EQ(ko_verttran_vertcs1(vt), p.vcs1);
  EXPECT_EQ(ko_verttran_vertcs2(vt), p.vcs2);
  EXPECT_EQ(ko_verttran_vtmethod(vt), p.method);
  EXPECT_EQ(ko_verttran_parameters_ptr(vt)[0], p.slots.p[0]);
  EXPECT_EQ(ko_verttran_accuracy(vt), 0.02);
  double values[KO_PARM_COUNT];
  ko_verttran_parm_array(vt, values);
  EXPECT_EQ(values[0], -0.3);
  for (int i = 1; i < KO_PARM_COUNT; ++i) EXPECT_EQ(values[i], 0.0);
  char buf[KO_NAME_SIZE] = "x";
  EXPECT_STREQ(ko_verttran_get_opversion(vt, buf), "");
  ko_verttran_set_opversion(vt, "NGS-Usa");
  EXPECT_STREQ(ko_verttran_get_opversion(vt, buf), "NGS-Usa");
  ko_verttran_del(vt);

  // The plain form: unknown accuracy.
  p = offset_parts();
  vt = ko_verttran_new("T", nullptr, p.vcs1, p.vcs2, p.method, p.slots.data());
  ASSERT_NE(vt, nullptr);
  EXPECT_EQ(ko_verttran_accuracy(vt), 999.0);
  ko_verttran_del(vt);
}

// Slope parameters in their own units come out in radians and metres.
TEST(Verttran, ParameterArrayInBaseUnits) {
  Parts p;
  p.coordsys = ko::test::wgs84_geogcs();
  p.vcs1 = ko::test::gravity_system("LN02_Height", "Landesnivellement_1902");
  p.vcs2 = ko::test::gravity_system("LHN95_Height", "Landeshohennetz_1995");
  p.method = ko_vtmethod_new("Vertical Offset and Slope");
  auto arcsec = [] { return reinterpret_cast<ko_unit *>(ko_angunit_new_code(9104)); };
  auto degree = [] { return reinterpret_cast<ko_unit *>(ko_angunit_new_code(9102)); };
  p.slots
      .put(ko_parameter_ext_new("Vertical_Offset",
                                reinterpret_cast<ko_unit *>(ko_linunit_new_code(9002)), 1.0))
      .put(ko_parameter_ext_new("Latitude_Of_Evaluation", degree(), 46.9))
      .put(ko_parameter_ext_new("Longitude_Of_Evaluation", degree(), 7.4))
      .put(ko_parameter_ext_new("Inclination_North", arcsec(), 0.2))
      .put(ko_parameter_ext_new("Inclination_East", arcsec(), -0.1));
  ko_err err{};
  ko_verttran *vt = build("LN02_To_LHN95", p, &err);
  ASSERT_NE(vt, nullptr);
  EXPECT_EQ(ko_verttran_coordsys(vt), p.coordsys);
  double v[KO_PARM_COUNT];
  ko_verttran_parm_array(vt, v);
  const double rad_per_arcsec = std::numbers::pi / 648000.0;
  EXPECT_DOUBLE_EQ(v[0], 0.3048);
  EXPECT_DOUBLE_EQ(v[6], 46.9 * std::numbers::pi / 180.0);
  EXPECT_DOUBLE_EQ(v[2], 7.4 * std::numbers::pi / 180.0);
  EXPECT_DOUBLE_EQ(v[13], 0.2 * rad_per_arcsec);
  EXPECT_DOUBLE_EQ(v[14], -0.1 * rad_per_arcsec);
  ko_verttran_del(vt);
}

TEST(Verttran, ArgumentChecksInOrder) {
  struct Case {
    const char *label;
    int number;
    const char *message;  // null: the transformation's name
  } cases[] = {
      {"no method", 343, nullptr},
      {"a method object of the wrong list", 343, nullptr},
      {"no vertcs1", 341, nullptr},
      {"vertcs2 is a datum", 342, nullptr},
      {"horizontal system is vertical", 338, nullptr},
      {"no parameter array", 330, nullptr},
      {"negative accuracy", 352, nullptr},
      {"infinite accuracy", 352, nullptr},
      {"geoid grid from gravity-related heights", 115, nullptr},
      {"geoid grid to ellipsoidal heights", 115, nullptr},
      {"geoid depth grid to heights", 115, nullptr},
      {"reversal between two height systems", 115, nullptr},
      {"ellipsoidal offset from gravity-related heights", 115, nullptr},
      {"offset missing", 347, "Missing parameter: T: Vertical_Offset"},
      {"unknown method code", 351, "109799"},
  };
  for (const Case &c : cases) {
    SCOPED_TRACE(c.label);
    std::string label = c.label;
    Parts p = offset_parts();
    ko_parameter **parms = p.slots.data();
    double accuracy = 1.0;
    auto method = [&](const char *name) {
      ko_object_del(p.method);
      p.method = ko_vtmethod_new(name);
    };
    auto grid = [&] {
      p.slots.del();
      p.slots.put("Dataset_geoid.gtx", 0.0);
    };
    if (label == "no method") p.method = static_cast<ko_vtmethod *>(ko_object_del(p.method));
    if (label == "a method object of the wrong list") {
      ko_object_del(p.method);
      p.method = reinterpret_cast<ko_vtmethod *>(ko_htmethod_new("Affine"));
    }
    if (label == "no vertcs1") p.vcs1 = static_cast<ko_vertcs *>(ko_object_del(p.vcs1));
    if (label == "vertcs2 is a datum") {
      ko_object_del(p.vcs2);
      p.vcs2 = reinterpret_cast<ko_vertcs *>(ko_vdatum_new("D"));
    }
    if (label == "horizontal system is vertical") p.coordsys = ko::test::gravity_system("X", "Y");
    if (label == "no parameter array") parms = nullptr;
    if (label == "negative accuracy") accuracy = -0.01;
    if (label == "infinite accuracy") accuracy = INFINITY;
    if (label == "geoid grid from gravity-related heights") {
      method("Geoid_Height_By_Grid");
      grid();
    }
    if (label == "geoid grid to ellipsoidal heights" || label == "geoid depth grid to heights") {
      method(label == "geoid depth grid to heights" ? "Geoid_Depth_By_Grid"
                                                    : "Geoid_Height_By_Grid");
      grid();
      ko_object_del(p.vcs1);
      p.vcs1 = ko::test::ellipsoidal_system();
      if (label == "geoid grid to ellipsoidal heights") {
        ko_object_del(p.vcs2);
        p.vcs2 = ko::test::ellipsoidal_system("Other");
      }
    }
    if (label == "reversal between two height systems") {
      method("Height_Depth_Reversal");
      p.slots.del();
    }
    if (label == "ellipsoidal offset from gravity-related heights") {
      method("Ellipsoidal_Height_Offset_By_Grid");
      grid();
    }
    if (label == "offset missing") p.slots.del();
    if (label == "unknown method code") ko_object_code_set(p.method, 109799, 109799, 0, 0, "", "");
    ko_err err = ko::test::stale_record();
    EXPECT_EQ(ko_verttran_ext_new_errext("T", p.coordsys, p.vcs1, p.vcs2, p.method, parms, nullptr,
                                         nullptr, &err, accuracy),
              nullptr);
    expect_report(err, Report{4, 8, c.number, kSource, c.message != nullptr ? c.message : "T"});
    if (p.vcs1 != nullptr) {
      EXPECT_EQ(ko_object_p(p.vcs1), 1) << "refused parts stay the caller's";
    }
    p.del();
  }
}

// The kinds of systems each family of methods accepts.
TEST(Verttran, SystemsThatSuitTheMethods) {
  struct Case {
    const char *method;
    bool ellipsoidal_source, ellipsoidal_target;
    int source_direction, target_direction;
    const char *dataset;  // null: a Vertical_Offset parameter, "": none
  } cases[] = {
      {"Geoid_Height_By_Grid", true, false, 1, 1, "Dataset_egm08_25.gtx"},
      {"Geoid_Depth_By_Grid", true, false, 1, -1, "Dataset_dk_geoid.gtx"},
      {"Height_Depth_Reversal", false, false, 1, -1, ""},
      {"Height_Depth_Reversal", false, false, -1, 1, ""},
      {"Vertical_Offset", false, false, -1, 1, nullptr},
      {"Change_Of_Vertical_Unit", false, false, 1, 1, ""},
      {"Ellipsoidal_Height_Offset_By_Grid", true, true, 1, 1, "Dataset_eht.gtx"},
      {"Null", true, true, 1, 1, ""},
  };
  for (const Case &c : cases) {
    SCOPED_TRACE(c.method);
    Parts p;
    p.vcs1 = c.ellipsoidal_source ? ko::test::ellipsoidal_system()
                                  : ko::test::gravity_system("A", "A", c.source_direction);
    p.vcs2 = c.ellipsoidal_target ? ko::test::ellipsoidal_system("B")
                                  : ko::test::gravity_system("B", "B", c.target_direction);
    p.method = ko_vtmethod_new(c.method);
    if (c.dataset == nullptr)
      p.slots.put("Vertical_Offset", 1.0);
    else if (*c.dataset != '\0')
      p.slots.put(c.dataset, 0.0);
    ko_err err{};
    ko_verttran *vt = build("T", p, &err);
    EXPECT_NE(vt, nullptr);
    expect_no_report(err);
    ko_verttran_del(vt);
  }
}

TEST(Verttran, EqualityRules) {
  auto make = [](const char *name, double offset, bool with_horizontal, const char *gcs) {
    Parts p = offset_parts(offset);
    if (with_horizontal) p.coordsys = ko::test::wgs84_geogcs(gcs);
    ko_err err{};
    return build(name, p, &err);
  };
  ko_verttran *base = make("NAVD_1988_To_NGVD_1929", -0.3, true, "GCS_WGS_1984");
  struct Variant {
    const char *label;
    ko_verttran *vt;
    int equal;
  } variants[] = {
      {"spelling", make("navd 1988 to ngvd 1929", -0.3, true, "GCS_WGS_1984"), 1},
      {"no horizontal system on one side", make("NAVD_1988_To_NGVD_1929", -0.3, false, ""), 1},
      {"other horizontal system", make("NAVD_1988_To_NGVD_1929", -0.3, true, "GCS_Other"), 0},
      {"other offset", make("NAVD_1988_To_NGVD_1929", -0.31, true, "GCS_WGS_1984"), 0},
      {"other name", make("NAVD_1988_To_NGVD_1929_2", -0.3, true, "GCS_WGS_1984"), 0},
  };
  for (const Variant &v : variants) {
    SCOPED_TRACE(v.label);
    ASSERT_NE(v.vt, nullptr);
    EXPECT_EQ(ko_verttran_eq(base, v.vt), v.equal);
    EXPECT_EQ(ko_object_eq(v.vt, base), v.equal);
    ko_verttran_del(v.vt);
  }
  // Other systems or another method.
  Parts swapped = offset_parts();
  std::swap(swapped.vcs1, swapped.vcs2);
  ko_err err{};
  ko_verttran *reverse = build("NAVD_1988_To_NGVD_1929", swapped, &err);
  EXPECT_EQ(ko_verttran_eq(base, reverse), 0);
  Parts unit_change = offset_parts();
  unit_change.slots.del();
  ko_object_del(unit_change.method);
  unit_change.method = ko_vtmethod_new("Change_Of_Vertical_Unit");
  ko_verttran *other_method = build("NAVD_1988_To_NGVD_1929", unit_change, &err);
  EXPECT_EQ(ko_verttran_eq(base, other_method), 0);
  for (ko_verttran *vt : {base, reverse, other_method}) ko_verttran_del(vt);
}

TEST(Verttran, CloneIsDeep) {
  Parts p = offset_parts();
  p.coordsys = ko::test::wgs84_geogcs();
  ko_metadata *md[2] = {ko_metadata_new("USA", nullptr, 1323), nullptr};
  ko_verttran *vt =
      ko_verttran_ext_new("NAVD_1988_To_NGVD_1929", p.coordsys, p.vcs1, p.vcs2, p.method,
                          p.slots.data(), ko_metadata_vector_clone(md), ko_remark_new("r"), 0.05);
  ko_metadata_del(md[0]);
  ASSERT_NE(vt, nullptr);
  ko_verttran_set_opversion(vt, "v1");
  ko_object_code_set(vt, 7968, 7968, 0, 0, "EPSG", "");
  ko_verttran *c = ko_verttran_clone(vt);
  ASSERT_NE(c, nullptr);
  EXPECT_EQ(ko_verttran_eq(c, vt), 1);
  EXPECT_EQ(ko_verttran_code(c), 7968);
  EXPECT_EQ(ko_verttran_accuracy(c), 0.05);
  char buf[KO_NAME_SIZE];
  EXPECT_STREQ(ko_verttran_get_opversion(c, buf), "v1");
  EXPECT_NE(ko_verttran_coordsys(c), ko_verttran_coordsys(vt));
  EXPECT_NE(ko_verttran_vertcs1(c), ko_verttran_vertcs1(vt));
  EXPECT_NE(ko_verttran_parameters_ptr(c)[0], ko_verttran_parameters_ptr(vt)[0]);
  ko_verttran_del(vt);
  EXPECT_EQ(name_of(ko_verttran_vtmethod(c)), "Vertical_Offset");
  EXPECT_EQ(name_of(ko_verttran_metadata_vector(c)[0]), "USA");
  char text[768];
  EXPECT_STREQ(ko_remark_text(ko_verttran_remark(c), text), "r");
  ko_verttran_del(c);
}

// Every vertical transformation of the catalogue can be built from its
// record: the method is listed, the parameters suit it and the kinds of
// its systems suit it.  (A source that is a geographic 3D system stands
// for ellipsoidal heights on its datum.)
TEST(Verttran, EveryCatalogueRecordBuilds) {
  const ko_db_builtin_entry *vertcs_row = ko_db_builtin_data_find(KO_TYPE_VERTCS);
  ASSERT_NE(vertcs_row, nullptr);
  const auto *recs = static_cast<const ko_db_verttran_rec *>(ko_obj_verttran_data_tbl.recs);
  ASSERT_GT(ko_obj_verttran_data_tbl.count, 500);
  auto system = [&](int32_t code) -> ko_vertcs * {
    const auto *v = static_cast<const ko_db_vertcs_rec *>(
        ko_db_builtin_data_lookup_code(vertcs_row->data, code));
    if (v == nullptr) return ko::test::ellipsoidal_system();
    return ko::test::gravity_system(v->name, "datum", v->direction);
  };
  int built = 0;
  for (int i = 0; i < ko_obj_verttran_data_tbl.count; ++i) {
    const ko_db_verttran_rec &r = recs[i];
    SCOPED_TRACE(r.name);
    Parts p;
    p.vcs1 = system(r.vcs1);
    p.vcs2 = system(r.vcs2);
    p.method = ko_vtmethlist_vtmethod_from_code(r.method, nullptr);
    for (int k = 0; k < r.parm_count; ++k) {
      const ko_db_parm_rec &parm = ko_obj_verttran_parms[r.parm_first + k];
      std::string name = ko_parmlist_from_code(parm.code)->name;
      if (parm.code == KO_PARM_CODE_DATASET) name += ko_obj_verttran_parm_texts[parm.aux];
      p.slots.put(name.c_str(), parm.value);
    }
    ASSERT_TRUE(p.slots.ok);
    ko_err err{};
    ko_verttran *vt = build(r.name, p, &err, r.accuracy);
    ASSERT_NE(vt, nullptr) << err.number << " " << err.message;
    EXPECT_EQ(ko_verttran_accuracy(vt), r.accuracy);
    built += ko_verttran_p(vt);
    ko_verttran_del(vt);
  }
  EXPECT_EQ(built, ko_obj_verttran_data_tbl.count);
}

TEST(VerttranNoObject, NullAndStalePointers) {
  ko::test::Ghost ghost;
  for (void *p : {static_cast<void *>(nullptr), ghost.ptr()}) {
    auto *vt = static_cast<ko_verttran *>(p);
    ko_parameter *out[KO_PARM_COUNT];
    out[5] = reinterpret_cast<ko_parameter *>(&ghost);
    double values[KO_PARM_COUNT];
    values[5] = 1.0;
    char buf[KO_NAME_SIZE] = "x";
    EXPECT_EQ(ko_verttran_p(vt), 0);
    EXPECT_EQ(ko_verttran_coordsys(vt), nullptr);
    EXPECT_EQ(ko_verttran_vertcs1(vt), nullptr);
    EXPECT_EQ(ko_verttran_vertcs2(vt), nullptr);
    EXPECT_EQ(ko_verttran_vtmethod(vt), nullptr);
    EXPECT_EQ(ko_verttran_parameters_ptr(vt), nullptr);
    ko_verttran_parameters(vt, out);
    EXPECT_EQ(out[5], nullptr);
    ko_verttran_parm_array(vt, values);
    EXPECT_EQ(values[5], 0.0);
    EXPECT_EQ(ko_verttran_accuracy(vt), 999.0);
    ko_verttran_set_opversion(vt, "v");
    EXPECT_STREQ(ko_verttran_get_opversion(vt, buf), "");
    EXPECT_EQ(ko_verttran_metadata_vector(vt), nullptr);
    EXPECT_EQ(ko_verttran_remark(vt), nullptr);
    EXPECT_EQ(ko_verttran_clone(vt), nullptr);
    EXPECT_EQ(ko_verttran_eq(vt, vt), 0);
    EXPECT_EQ(ko_verttran_del(vt), nullptr);
  }
  EXPECT_TRUE(ghost.untouched());
  EXPECT_EQ(ko_object_vector(KO_TYPE_VERTTRAN), &ko_verttran_objvec);
}

TEST(VerttranMemory, ConstructorAndCloneCleanUp) {
  ASSERT_TRUE(ko::test::installed());
  EXPECT_GT(ko::test::sweep_failures([] {
              Parts p = offset_parts();
              p.coordsys = ko::test::wgs84_geogcs();
              ko_err err{};
              ko_verttran *vt = nullptr;
              if (p.vcs1 && p.vcs2 && p.method && p.coordsys && p.slots.ok)
                vt = build("T", p, &err);
              else
                p.del();
              if (vt == nullptr) {
                if (err.number != 0) expect_report(err, Report{4, 1, 1, kSource, "T"});
                return false;
              }
              ko_verttran_del(vt);
              return true;
            }),
            10);
  Parts p = offset_parts();
  p.coordsys = ko::test::wgs84_geogcs();
  ko_metadata *md[2] = {ko_metadata_new("Area", nullptr, 1), nullptr};
  ko_verttran *src = ko_verttran_ext_new("T", p.coordsys, p.vcs1, p.vcs2, p.method, p.slots.data(),
                                         ko_metadata_vector_clone(md), ko_remark_new("r"), 1.0);
  ko_metadata_del(md[0]);
  ASSERT_NE(src, nullptr);
  EXPECT_GT(ko::test::clone_sweep(src, ko_verttran_clone, ko_verttran_del), 15);
  ko_verttran_del(src);
}

}  // namespace
