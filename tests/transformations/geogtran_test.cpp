// The geographic transformation object: its constructor's checks in order
// with their exact reports, ownership, the parameters' units, accessors,
// equality, clone, the constants' status rules (final failures, retries,
// the report that names a missing grid) and clean failure when memory runs
// out.
#include "support/failing_alloc.h"
#include "tests/foundation/report_capture.h"
#include "tests/objects/object_support.h"
#include "tests/transformations/frame_support.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

namespace {

using ko::test::GcsSpec;
using ko::test::Obj;
using ko::test::Slots;

constexpr const char *kSource = "ko_geogtran_ext_new_errext";
// One arc-second in radians, from its definition (pi / 648000).
const double kArcsecond = M_PI / 648000.0;

Slots seven(double tx = 446.448, double ty = -125.157, double tz = 542.06) {
  return ko::test::make_slots({{"X_Axis_Translation", tx},
                               {"Y_Axis_Translation", ty},
                               {"Z_Axis_Translation", tz},
                               {"X_Axis_Rotation", 0.15},
                               {"Y_Axis_Rotation", 0.247},
                               {"Z_Axis_Rotation", 0.842},
                               {"Scale_Difference", -20.489}});
}

// The inputs of one constructor call, owned by the test until handed on.
struct Inputs {
  ko_geogcs *gcs1 = ko::test::make_gcs(GcsSpec{"GCS_OSGB_1936", 6377563.396, 299.3249646});
  ko_geogcs *gcs2 = ko::test::make_gcs(ko::test::wgs84());
  ko_method *method = ko_method_new("Position_Vector");
  Slots slots = seven();

  ko_geogtran *make(const char *name, ko_err *err = nullptr) {
    ko_geogtran *gt = ko_geogtran_new_errext(name, gcs1, gcs2, method, slots.data(), err);
    if (gt != nullptr) gcs1 = gcs2 = nullptr, method = nullptr, slots = Slots{};
    return gt;
  }
  ~Inputs() {
    ko_geogcs_del(gcs1);
    ko_geogcs_del(gcs2);
    ko_method_del(method);
    ko::test::delete_slots(slots);
  }
};

TEST(GeogtranNew, TakesItsInputsAndKeepsTheNameToSeventyNineCharacters) {
  Inputs in;
  ko_geogcs *gcs1 = in.gcs1;
  ko_geogcs *gcs2 = in.gcs2;
  ko_method *method = in.method;
  ko_parameter *tx = in.slots[0];
  ko_err err = ko::test::stale_record();
  const std::string long_name(100, 'n');
  Obj<ko_geogtran> gt(in.make(long_name.c_str(), &err));
  ASSERT_NE(gt, nullptr);
  ko::test::expect_report(err, {KO_SEV_WARNING, KO_ERRCAT_ARGUMENT, 354, kSource,
                                long_name.c_str()});
  char name[KO_NAME_SIZE];
  EXPECT_EQ(std::string(ko_geogtran_name(gt.get(), name)), long_name.substr(0, 79));
  EXPECT_EQ(ko_geogtran_geogcs1(gt.get()), gcs1);
  EXPECT_EQ(ko_geogtran_geogcs2(gt.get()), gcs2);
  EXPECT_EQ(ko_geogtran_method(gt.get()), method);
  EXPECT_EQ(ko_geogtran_parameters_ptr(gt.get())[0], tx);
  EXPECT_EQ(ko_geogtran_accuracy(gt.get()), 999.0);
  EXPECT_EQ(ko_geogtran_constants_status(gt.get()), 0);
  EXPECT_EQ(ko_geogtran_isconstloaded(gt.get()), 0);
  EXPECT_STREQ(ko_geogtran_get_opversion(gt.get(), name), "");
  EXPECT_EQ(ko_geogtran_metadata(gt.get()), nullptr);
  EXPECT_EQ(ko_geogtran_remark(gt.get()), nullptr);
  EXPECT_EQ(ko_geogtran_type(gt.get()), KO_TYPE_GEOGTRAN);
  EXPECT_EQ(ko_object_vector(KO_TYPE_GEOGTRAN), &ko_geogtran_objvec);

  ko_err quiet = ko::test::stale_record();
  Inputs again;
  Obj<ko_geogtran> unnamed(again.make(nullptr, &quiet));
  ASSERT_NE(unnamed, nullptr);
  ko::test::expect_no_report(quiet);
  EXPECT_STREQ(ko_geogtran_name(unnamed.get(), name), "");
}

TEST(GeogtranNew, RefusesBadArgumentsInOrderAndLeavesThemWithTheCaller) {
  ko::test::Ghost ghost;
  struct Case {
    const char *what;
    bool bad_method, bad_gcs1, bad_gcs2, null_parms;
    int number;
  } cases[] = {
      {"everything wrong: the method first", true, true, true, true, 335},
      {"GCS 1 before GCS 2", false, true, true, true, 332},
      {"GCS 2 before the parameters", false, false, true, true, 333},
      {"the parameter array", false, false, false, true, 330},
  };
  for (const Case &c : cases) {
    SCOPED_TRACE(c.what);
    Inputs in;
    ko_err err{};
    ko_geogtran *gt = ko_geogtran_new_errext(
        "OSGB36 to WGS 84 (6)", c.bad_gcs1 ? nullptr : in.gcs1,
        c.bad_gcs2 ? static_cast<ko_geogcs *>(ghost.ptr()) : in.gcs2,
        c.bad_method ? reinterpret_cast<ko_method *>(in.gcs1) : in.method,
        c.null_parms ? nullptr : in.slots.data(), &err);
    EXPECT_EQ(gt, nullptr);
    ko::test::expect_report(err, {KO_SEV_ERROR, KO_ERRCAT_ARGUMENT, c.number, kSource,
                                  "OSGB36 to WGS 84 (6)"});
    // Still the caller's (the destructor of Inputs deletes them).
    EXPECT_TRUE(ko_geogcs_p(in.gcs1));
    EXPECT_TRUE(ko_method_p(in.method));
    EXPECT_TRUE(ko_parameter_p(in.slots[0]));
  }
  EXPECT_TRUE(ghost.untouched());

  // The method's own check fails: its report stands.
  Inputs in;
  in.slots[2] = ko_parameter_del(in.slots[2]);
  ko_err err{};
  EXPECT_EQ(in.make("T", &err), nullptr);
  ko::test::expect_report(err, {KO_SEV_ERROR, KO_ERRCAT_ARGUMENT, 347, "T", "Z_Axis_Translation"});
  EXPECT_TRUE(ko_geogcs_p(in.gcs1));
  // The units the check was run with are taken back.
  for (ko_parameter *p : in.slots)
    if (p != nullptr) {
      EXPECT_EQ(ko_parameter_unit(p), nullptr);
      EXPECT_EQ(ko_parameter_dflt_factor(p), 1.0);
    }
}

TEST(GeogtranNew, TheValidityCheckReadsUnitlessValuesInTheTransformationsUnits) {
  // -20.489 unitless is -20.489 ppm, a valid scale difference; -1e6 ppm
  // (a scale of zero) is not.
  Inputs in;
  ko_err err{};
  Obj<ko_geogtran> gt(in.make("OSGB36 to WGS 84 (6)", &err));
  ASSERT_NE(gt, nullptr);
  ko::test::expect_no_report(err);
  EXPECT_NEAR(ko_parameter_value_si(ko_geogtran_parameters_ptr(gt.get())[6]), -20.489e-6, 1e-18);
  Inputs zero_scale;
  ko_parameter_value_set(zero_scale.slots[6], -1e6);
  EXPECT_EQ(zero_scale.make("T", &err), nullptr);
  ko::test::expect_report(err, {KO_SEV_ERROR, KO_ERRCAT_ARGUMENT, 356, "T", "Scale_Difference"});
}

TEST(GeogtranNew, OneSystemOnBothSidesIsKeptOnce) {
  ko_geogcs *gcs = ko::test::make_gcs(ko::test::wgs84());
  Slots none{};
  Obj<ko_geogtran> gt(ko_geogtran_new("WGS 84 identity", gcs, gcs, ko_method_new("Null"),
                                      none.data()));
  ASSERT_NE(gt, nullptr);
  EXPECT_EQ(ko_geogtran_geogcs1(gt.get()), gcs);
  EXPECT_EQ(ko_geogtran_geogcs2(gt.get()), gcs);
  // Deleting it frees the system once (the sanitizer build would see a
  // second free).
}

TEST(GeogtranParameters, UnitsAndDefaultFactorsByUnitType) {
  Slots slots = ko::test::make_slots({{"X_Axis_Translation", 1.5},
                                      {"Y_Axis_Rotation", 0.3},
                                      {"Scale_Difference", 2.0},
                                      {"Dataset_ntf_r93.gsb", 0.0}});
  // A projection parameter in an otherwise empty slot.
  slots[1] = ko_parameter_new("False_Easting", 500000.0);
  // A rotation that already has a unit keeps it.
  ko_parameter *rz = ko_parameter_ext_new(
      "Z_Axis_Rotation", reinterpret_cast<ko_unit *>(ko_angunit_new("Radian", 1.0)), 1e-5);
  slots[5] = rz;
  ASSERT_EQ(ko_geogtran_parameters_fix(slots.data()), 1);

  struct Want {
    int slot;
    uint32_t unit_type;
    const char *unit;
    double factor, dflt, si;
  } wants[] = {
      {0, KO_TYPE_LINUNIT, "Meter", 1.0, 1.0, 1.5},
      {4, KO_TYPE_ANGUNIT, "Arcsecond", kArcsecond, kArcsecond, 0.3 * kArcsecond},
      {5, KO_TYPE_ANGUNIT, "Radian", 1.0, kArcsecond, 1e-5},
      {6, KO_TYPE_SCALEUNIT, "Parts_Per_Million", 1e-6, 1e-6, 2e-6},
      {15, KO_TYPE_SCALEUNIT, "Unity", 1.0, 1.0, 0.0},
  };
  char name[KO_NAME_SIZE];
  for (const Want &w : wants) {
    SCOPED_TRACE(w.slot);
    const ko_unit *unit = ko_parameter_unit(slots[w.slot]);
    ASSERT_NE(unit, nullptr);
    EXPECT_EQ(ko_object_type(unit), w.unit_type);
    EXPECT_STREQ(ko_object_name(unit, name), w.unit);
    EXPECT_NEAR(ko_unit_factor(unit), w.factor, 1e-15 * w.factor);
    EXPECT_NEAR(ko_parameter_dflt_factor(slots[w.slot]), w.dflt, 1e-15 * w.dflt);
    EXPECT_NEAR(ko_parameter_value_si(slots[w.slot]), w.si, 1e-15 * std::fabs(w.si) + 1e-300);
  }
  // In its default factor the radian-valued rotation reads in arc-seconds.
  EXPECT_NEAR(ko_parameter_value(rz), 1e-5 / kArcsecond, 1e-9);
  // A projection parameter (category 2) is not touched.
  EXPECT_EQ(ko_parameter_unit(slots[1]), nullptr);
  EXPECT_STREQ(ko_object_name(slots[1], name), "False_Easting");
  EXPECT_EQ(ko_parameter_dflt_factor(slots[1]), 1.0);

  // The value array: SI values by slot, 0 for empty slots.
  double values[KO_PARM_COUNT];
  ko_geogtran_parm_array(slots.data(), values);
  EXPECT_EQ(values[0], 1.5);
  EXPECT_EQ(values[5], 1e-5);
  EXPECT_EQ(values[1], 500000.0);
  EXPECT_EQ(values[2], 0.0);
  EXPECT_EQ(values[23], 0.0);
  ko::test::delete_slots(slots);
  EXPECT_EQ(ko_geogtran_parameters_fix(nullptr), 0);
}

TEST(GeogtranParameters, OutOfMemoryChangesNothing) {
  ASSERT_TRUE(ko::test::installed());
  Slots slots = seven();
  ko::test::fail_after(3);
  EXPECT_EQ(ko_geogtran_parameters_fix(slots.data()), 0);
  ko::test::never_fail();
  for (ko_parameter *p : slots)
    if (p != nullptr) {
      EXPECT_EQ(ko_parameter_unit(p), nullptr);
      EXPECT_EQ(ko_parameter_dflt_factor(p), 1.0);
    }
  ko::test::delete_slots(slots);
}

TEST(GeogtranAccessors, OfNoTransformation) {
  ko::test::Ghost ghost;
  Obj<ko_parameter> p(ko_parameter_new("X_Axis_Translation", 1.0));
  for (void *obj : {static_cast<void *>(nullptr), ghost.ptr(), static_cast<void *>(p.get())}) {
    auto *gt = static_cast<ko_geogtran *>(obj);
    EXPECT_FALSE(ko_geogtran_p(gt));
    EXPECT_EQ(ko_geogtran_geogcs2(gt), nullptr);
    ko_parameter *out[KO_PARM_COUNT];
    std::fill(std::begin(out), std::end(out), p.get());
    ko_geogtran_parameters(gt, out);
    for (ko_parameter *q : out) EXPECT_EQ(q, nullptr);
    EXPECT_EQ(ko_geogtran_accuracy(gt), 999.0);
    ko_geogtran_set_opversion(gt, "1");
    EXPECT_EQ(ko_geogtran_usable(gt), 0);
    EXPECT_EQ(ko_geogtran_load_constants(gt), 0);
    ko_geogtran_unload_constants(gt);
    EXPECT_EQ(ko_geogtran_method_interp_type(gt), KO_INTERP_NONE);
    EXPECT_EQ(ko_geogtran_del(gt), nullptr);
  }
  EXPECT_TRUE(ghost.untouched());
  EXPECT_TRUE(ko_parameter_p(p.get()));
}

TEST(GeogtranAccessors, MetadataRemarkVersionAndMethodProperties) {
  Inputs in;
  ko_metadata **vec = ko::alloc_array<ko_metadata *>(2);
  vec[0] = ko_metadata_new("Great Britain", nullptr, 1264);
  ko_remark *remark = ko_remark_new("Accuracy 2 m");
  Obj<ko_geogtran> gt(ko_geogtran_ext_new("OSGB36 to WGS 84 (6)", in.gcs1, in.gcs2, in.method,
                                          in.slots.data(), vec, remark, 2.0));
  ASSERT_NE(gt, nullptr);
  in.gcs1 = in.gcs2 = nullptr, in.method = nullptr, in.slots = Slots{};
  EXPECT_EQ(ko_geogtran_accuracy(gt.get()), 2.0);
  EXPECT_EQ(ko_geogtran_metadata_vector(gt.get()), vec);
  EXPECT_EQ(ko_geogtran_metadata(gt.get()), vec[0]);
  EXPECT_EQ(ko_geogtran_remark(gt.get()), remark);

  ko_metadata *other = ko_metadata_new("Scotland", nullptr, 1247);
  EXPECT_EQ(ko_geogtran_metadata_set(gt.get(), other), 1);
  EXPECT_EQ(ko_geogtran_metadata(gt.get()), other);
  EXPECT_EQ(ko_geogtran_metadata_vector(gt.get())[1], nullptr);
  EXPECT_EQ(ko_geogtran_metadata_set(gt.get(), nullptr), 1);
  EXPECT_EQ(ko_geogtran_metadata(gt.get()), nullptr);

  char buf[KO_OPVERSION_SIZE];
  ko_geogtran_set_opversion(gt.get(), "OSGB-Gbr 1");
  EXPECT_STREQ(ko_geogtran_get_opversion(gt.get(), buf), "OSGB-Gbr 1");
  ko_geogtran_set_opversion(gt.get(), std::string(120, 'v').c_str());
  EXPECT_EQ(std::string(ko_geogtran_get_opversion(gt.get(), buf)), std::string(79, 'v'));
  ko_geogtran_set_opversion(gt.get(), nullptr);
  EXPECT_STREQ(ko_geogtran_get_opversion(gt.get(), buf), "");

  EXPECT_EQ(ko_geogtran_transforms_heights(gt.get()), 1);
  EXPECT_EQ(ko_geogtran_needs_file(gt.get()), 0);
  EXPECT_EQ(ko_geogtran_method_rtn_type(gt.get()), 1);
  EXPECT_EQ(ko_geogtran_method_interp_type(gt.get()), KO_INTERP_NONE);
  EXPECT_EQ(ko_geogtran_usable(gt.get()), 1);
  EXPECT_EQ(ko_geogtran_filenames(gt.get(), buf, sizeof buf), 0);

  ko_parameter *copy[KO_PARM_COUNT];
  ko_geogtran_parameters(gt.get(), copy);
  for (int i = 0; i < KO_PARM_COUNT; ++i)
    EXPECT_EQ(copy[i], ko_geogtran_parameters_ptr(gt.get())[i]);
}

TEST(GeogtranAccessors, GridMethodFilesUsabilityAndInterpolation) {
  ko::test::DataDir dir;
  Obj<ko_geogtran> gt(ko::test::make_gt("NTF to RGF93", GcsSpec{"GCS_NTF", 6378249.2, 293.4660212936269},
                                        GcsSpec{"GCS_RGF_1993", 6378137.0, 298.257222101}, "NTv2",
                                        {{"Dataset_ntf_r93.gsb", 0.0}}));
  ASSERT_NE(gt, nullptr);
  EXPECT_EQ(ko_geogtran_needs_file(gt.get()), 1);
  EXPECT_EQ(ko_geogtran_transforms_heights(gt.get()), 0);
  EXPECT_EQ(ko_geogtran_method_interp_type(gt.get()), KO_INTERP_BILINEAR);
  char buf[2048];
  EXPECT_EQ(ko_geogtran_filenames(gt.get(), buf, sizeof buf), 1);
  EXPECT_EQ(std::string(buf), dir.path("ntv2", "ntf_r93.gsb"));
  EXPECT_EQ(ko_geogtran_usable(gt.get()), 0);
  if (!ko::test::file_exists(ko::test::kNtfGrid)) GTEST_SKIP() << "no " << ko::test::kNtfGrid;
  dir.link("ntv2", ko::test::kNtfGrid, "ntf_r93.gsb");
  EXPECT_EQ(ko_geogtran_usable(gt.get()), 1);
}

TEST(GeogtranEquality, ComparesParametersNameSystemsAndMethod) {
  const GcsSpec osgb{"GCS_OSGB_1936", 6377563.396, 299.3249646};
  const GcsSpec wgs = ko::test::wgs84();
  const auto pv = [&](const char *name, const GcsSpec &g1, const char *method, double tx) {
    Slots s = seven(tx);
    return ko_geogtran_new(name, ko::test::make_gcs(g1), ko::test::make_gcs(wgs),
                           ko_method_new(method), s.data());
  };
  Obj<ko_geogtran> base(pv("OSGB36 to WGS 84", osgb, "Position_Vector", 446.448));
  struct Case {
    const char *what;
    ko_geogtran *other;
    int want;
  } cases[] = {
      {"the same definition", pv("OSGB36 to WGS 84", osgb, "Position_Vector", 446.448), 1},
      {"the name in other case", pv("osgb36 TO wgs 84", osgb, "Position_Vector", 446.448), 1},
      {"another name", pv("OSGB36 to WGS 84 (2)", osgb, "Position_Vector", 446.448), 0},
      {"another translation", pv("OSGB36 to WGS 84", osgb, "Position_Vector", 446.5), 0},
      {"another method", pv("OSGB36 to WGS 84", osgb, "Coordinate_Frame", 446.448), 0},
      {"another GCS 1", pv("OSGB36 to WGS 84", GcsSpec{"GCS_Other", 6377563.396, 299.3249646},
                           "Position_Vector", 446.448),
       0},
  };
  for (const Case &c : cases) {
    ASSERT_NE(c.other, nullptr) << c.what;
    EXPECT_EQ(ko_geogtran_eq(base.get(), c.other), c.want) << c.what;
    EXPECT_EQ(ko_object_eq(c.other, base.get()), c.want) << c.what;
    ko_geogtran_del(c.other);
  }
  // A parameter on one side only.
  Slots s = seven();
  s[9] = ko_parameter_new("Z_Coordinate_of_Rotation_Origin", 0.0);
  Obj<ko_geogtran> extra(ko_geogtran_new("OSGB36 to WGS 84", ko::test::make_gcs(osgb),
                                         ko::test::make_gcs(wgs), ko_method_new("Position_Vector"),
                                         s.data()));
  ASSERT_NE(extra, nullptr);
  EXPECT_EQ(ko_geogtran_eq(base.get(), extra.get()), 0);
  // A missing GCS 2 on one side is not compared.
  ko_geogcs *one = ko::test::make_gcs(osgb);
  Slots none{};
  Obj<ko_geogtran> same_sides(ko_geogtran_new("T", one, one, ko_method_new("Null"), none.data()));
  Obj<ko_geogtran> two_sides(ko_geogtran_new("T", ko::test::make_gcs(osgb),
                                             ko::test::make_gcs(wgs), ko_method_new("Null"),
                                             none.data()));
  EXPECT_EQ(ko_geogtran_eq(same_sides.get(), two_sides.get()), 1);
}

TEST(GeogtranClone, IsDeepAndKeepsHeaderVersionAndAccuracy) {
  Inputs in;
  Obj<ko_geogtran> gt(in.make("OSGB36 to WGS 84 (6)"));
  ASSERT_NE(gt, nullptr);
  ko_object_code_set(gt.get(), 1314, 1314, 0, 3, "EPSG", "10.076");
  ko_geogtran_set_opversion(gt.get(), "OSGB-Gbr 1");
  ASSERT_EQ(ko_geogtran_load_constants(gt.get()), 1);
  Obj<ko_geogtran> copy(ko_geogtran_clone(gt.get()));
  ASSERT_NE(copy, nullptr);
  EXPECT_EQ(ko_geogtran_eq(copy.get(), gt.get()), 1);
  EXPECT_NE(ko_geogtran_geogcs1(copy.get()), ko_geogtran_geogcs1(gt.get()));
  EXPECT_NE(ko_geogtran_method(copy.get()), ko_geogtran_method(gt.get()));
  EXPECT_NE(ko_geogtran_parameters_ptr(copy.get())[0], ko_geogtran_parameters_ptr(gt.get())[0]);
  EXPECT_EQ(ko_geogtran_code(copy.get()), 1314);
  EXPECT_EQ(ko_geogtran_dbid(copy.get()), 3u);
  char buf[KO_OPVERSION_SIZE];
  EXPECT_STREQ(ko_geogtran_get_opversion(copy.get(), buf), "OSGB-Gbr 1");
  EXPECT_STREQ(ko_authority_authname(ko_geogtran_authority(copy.get()), buf), "EPSG");
  // Constants are the original's own.
  EXPECT_EQ(ko_geogtran_constants_status(copy.get()), 0);
  EXPECT_EQ(ko_geogtran_isconstloaded(copy.get()), 0);
}

TEST(GeogtranMemory, ConstructorAndCloneLeaveNothingBehind) {
  ASSERT_TRUE(ko::test::installed());
  // The constructor: inputs are made with memory to spare, then each of the
  // constructor's own allocations fails in turn.
  long succeeded_after = -1;
  for (long n = 0; n < 200 && succeeded_after < 0; ++n) {
    const long before = ko::test::live_allocations();
    ko_geogtran *gt = nullptr;
    {
      Inputs in;
      ko_err err{};
      ko::test::fail_after(n);
      gt = in.make("OSGB36 to WGS 84", &err);
      ko::test::never_fail();
      if (gt == nullptr)
        ko::test::expect_report(err, {KO_SEV_ERROR, KO_ERRCAT_MEMORY, 1, kSource,
                                      "OSGB36 to WGS 84"});
    }
    if (gt != nullptr) succeeded_after = n;
    ko_geogtran_del(gt);
    ASSERT_EQ(ko::test::live_allocations(), before) << "after " << n << " allocations";
  }
  EXPECT_GE(succeeded_after, 2);

  Inputs in;
  Obj<ko_geogtran> gt(in.make("OSGB36 to WGS 84"));
  ko_geogtran_set_opversion(gt.get(), "1");
  ko_geogtran_metadata_set(gt.get(), ko_metadata_new("Great Britain", nullptr, 1264));
  ko_geogtran_authority_set(gt.get(), ko_authority_new("EPSG", 1314, "10.076"));
  EXPECT_GE(ko::test::sweep_failures([&] {
              ko_geogtran *copy = ko_geogtran_clone(gt.get());
              const bool ok = copy != nullptr && ko_geogtran_eq(copy, gt.get()) == 1;
              ko_geogtran_del(copy);
              return ok;
            }),
            10);
  // Replacing the metadata when memory runs out keeps the old.
  ko_metadata *md = ko_metadata_new("Scotland", nullptr, 1247);
  ko::test::fail_after(0);
  EXPECT_EQ(ko_geogtran_metadata_set(gt.get(), md), 0);
  ko::test::never_fail();
  char name[KO_NAME_SIZE];
  EXPECT_STREQ(ko_metadata_name(ko_geogtran_metadata(gt.get()), name), "Great Britain");
  ko_metadata_del(md);
}

// ---------------------------------------------------------------------------
// Constants.

TEST(GeogtranConstants, StatusByMethod) {
  Inputs in;
  Obj<ko_geogtran> pv(in.make("PV"));
  EXPECT_EQ(ko_geogtran_load_constants(pv.get()), 1);
  EXPECT_EQ(ko_geogtran_constants_status(pv.get()), 1);
  EXPECT_EQ(ko_geogtran_isconstloaded(pv.get()), 1);
  EXPECT_NE(ko_geogtran_constants(pv.get()), nullptr);
  EXPECT_EQ(ko_geogtran_load_constants(pv.get()), 1);
  ko_geogtran_unload_constants(pv.get());
  EXPECT_EQ(ko_geogtran_constants_status(pv.get()), 0);
  EXPECT_EQ(ko_geogtran_constants(pv.get()), nullptr);

  // No loader: nothing to load, status 2.
  Obj<ko_geogtran> gt(ko::test::make_gt("T", ko::test::wgs84(), ko::test::wgs84(),
                                        "Geocentric_Translation",
                                        {{"X_Axis_Translation", 1.0},
                                         {"Y_Axis_Translation", 2.0},
                                         {"Z_Axis_Translation", 3.0}}));
  EXPECT_EQ(ko_geogtran_load_constants(gt.get()), 1);
  EXPECT_EQ(ko_geogtran_constants_status(gt.get()), 2);
  EXPECT_EQ(ko_geogtran_isconstloaded(gt.get()), 0);
}

TEST(GeogtranConstants, AMissingGridIsFinalAndReportedOnce) {
  ko::test::DataDir dir;
  ko::test::ReportCapture capture;
  Obj<ko_geogtran> gt(ko::test::make_gt("NTF to RGF93 (1)", GcsSpec{"GCS_NTF"},
                                        GcsSpec{"GCS_RGF_1993"}, "NTv2",
                                        {{"Dataset_ntf_r93.gsb", 0.0}}));
  EXPECT_EQ(ko_geogtran_load_constants(gt.get()), 0);
  EXPECT_EQ(ko_geogtran_constants_status(gt.get()), -1);
  ASSERT_EQ(capture.reports().size(), 1u);
  const std::string want = "Invalid parameter value argument: NTF to RGF93 (1): cannot read grid " +
                           dir.path("ntv2", "ntf_r93.gsb");
  ko::test::expect_report(capture.reports()[0],
                          {KO_SEV_ERROR, KO_ERRCAT_ARGUMENT, 356,
                           "ko_geogtran_load_constants_with_extent", want.c_str()});
  if (!ko::test::file_exists(ko::test::kNtfGrid)) GTEST_SKIP() << "no " << ko::test::kNtfGrid;
  // The file appears: the failure still stands (the loader is not called
  // again, nothing more is reported) until the constants are unloaded.
  dir.link("ntv2", ko::test::kNtfGrid, "ntf_r93.gsb");
  EXPECT_EQ(ko_geogtran_load_constants(gt.get()), 0);
  EXPECT_EQ(ko_geogtran_constants_status(gt.get()), -1);
  EXPECT_EQ(capture.reports().size(), 1u);
  ko_geogtran_unload_constants(gt.get());
  EXPECT_EQ(ko_geogtran_load_constants(gt.get()), 1);
  EXPECT_EQ(ko_geogtran_constants_status(gt.get()), 1);
  // The loader recorded the grid's extent (degrees) in the constants.
  const ko_gcs_extent *e = ko_constants_extent(ko_geogtran_constants(gt.get()));
  ASSERT_NE(e, nullptr);
  EXPECT_LT(e->west, -4.0);
  EXPECT_GT(e->east, 8.0);
  EXPECT_LT(e->south, 42.0);
  EXPECT_GT(e->north, 51.0);
  EXPECT_EQ(capture.reports().size(), 1u);
}

TEST(GeogtranConstants, ACorruptGridIsFinal) {
  ko::test::DataDir dir;
  dir.write("ntv2", "broken.gsb", std::string(300, '\x7f'));
  ko::test::ReportCapture capture;
  Obj<ko_geogtran> gt(ko::test::make_gt("Broken", GcsSpec{"A"}, GcsSpec{"B"}, "NTv2",
                                        {{"Dataset_broken.gsb", 0.0}}));
  EXPECT_EQ(ko_geogtran_load_constants(gt.get()), 0);
  EXPECT_EQ(ko_geogtran_constants_status(gt.get()), -1);
  ASSERT_EQ(capture.reports().size(), 1u);
  EXPECT_EQ(capture.reports()[0].number, 356);
  EXPECT_EQ(std::string(capture.reports()[0].message),
            "Invalid parameter value argument: Broken: cannot read grid " +
                dir.path("ntv2", "broken.gsb"));
}

TEST(GeogtranConstants, OutOfMemoryIsFinalForTheRecordAndRetriedForTheLoader) {
  ASSERT_TRUE(ko::test::installed());
  Inputs in;
  Obj<ko_geogtran> gt(in.make("PV"));
  ko::test::ReportCapture capture;
  // The record itself: status -1, final until unloaded, reported as error 1.
  ko::test::fail_after(0);
  EXPECT_EQ(ko_geogtran_load_constants(gt.get()), 0);
  ko::test::never_fail();
  EXPECT_EQ(ko_geogtran_constants_status(gt.get()), -1);
  EXPECT_EQ(ko_geogtran_load_constants(gt.get()), 0);
  ASSERT_EQ(capture.reports().size(), 1u);
  ko::test::expect_report(capture.reports()[0], {KO_SEV_ERROR, KO_ERRCAT_MEMORY, 1,
                                                 "ko_geogtran_load_constants_with_extent", "PV"});
  ko_geogtran_unload_constants(gt.get());
  // The loader's own arrays: it answers 0, which leaves the status at 0 and
  // is tried again, without a report.
  ko::test::fail_after(1);
  EXPECT_EQ(ko_geogtran_load_constants(gt.get()), 0);
  ko::test::never_fail();
  EXPECT_EQ(ko_geogtran_constants_status(gt.get()), 0);
  EXPECT_EQ(ko_geogtran_load_constants(gt.get()), 1);
  EXPECT_EQ(capture.reports().size(), 1u);
}

TEST(GeogtranConstants, ASingularSimilarityIsFinal) {
  // A scale difference of -1e6 ppm collapses everything onto the origin:
  // nothing can be inverted.  The validity check refuses it at creation, so
  // the parameter is changed afterwards.
  Inputs in;
  Obj<ko_geogtran> gt(in.make("PV"));
  ko_parameter_value_set(ko_geogtran_parameters_ptr(gt.get())[6], -1e6);
  ko::test::ReportCapture capture;
  EXPECT_EQ(ko_geogtran_load_constants(gt.get()), 0);
  EXPECT_EQ(ko_geogtran_constants_status(gt.get()), -1);
  ASSERT_EQ(capture.reports().size(), 1u);
  EXPECT_STREQ(capture.reports()[0].message,
               "Invalid parameter value argument: PV: the method's constants cannot be built "
               "from its parameters");
}

}  // namespace
