// WKT1 of projected systems and geographic transformations: errors,
// special cases, dimensions, accuracy, and round trips over the
// catalogue's records.
#include "ko.h"
#include "formats/round_trip.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <utility>
#include <vector>

namespace {

using ko::test::Obj;
using ko::test::read_text;
using ko::test::write_text;

const std::string kGcs =
    R"(GEOGCS["GCS_WGS_1984",DATUM["D_WGS_1984",SPHEROID["WGS_1984",6378137.0,298.257223563]],)"
    R"(PRIMEM["Greenwich",0.0],UNIT["Degree",0.0174532925199433]])";
const std::string kTm = R"(PROJECTION["Transverse_Mercator"])";
const std::string kUtmParms =
    R"(PARAMETER["False_Easting",500000.0],PARAMETER["False_Northing",0.0],)"
    R"(PARAMETER["Central_Meridian",15.0],PARAMETER["Scale_Factor",0.9996],PARAMETER["Latitude_Of_Origin",0.0])";
const std::string kMeter = R"(UNIT["Meter",1.0])";
const std::string kUtm = R"(PROJCS["WGS_1984_UTM_Zone_33N",)" + kGcs + "," + kTm + "," + kUtmParms + "," + kMeter + "]";

std::string projcs(const std::string &children) { return R"(PROJCS["p",)" + children + "]"; }

const std::string kMethod = R"(METHOD["Geocentric_Translation"])";
const std::string kShift =
    R"(PARAMETER["X_Axis_Translation",-87.0],PARAMETER["Y_Axis_Translation",-98.0],PARAMETER["Z_Axis_Translation",-121.0])";
std::string geogtran(const std::string &children) { return R"(GEOGTRAN["t",)" + children + "]"; }

TEST(Wkt1Projcs, ErrorsOfProjectedSystemsAndTransformations) {
  struct Case {
    std::string text;
    int number;
  } const cases[] = {
      {projcs(kGcs + "," + kGcs + "," + kTm + "," + kMeter), 406},
      {projcs(kGcs + "," + kTm + "," + kTm + "," + kMeter), 414},
      {projcs(kGcs + "," + kTm + "," + kMeter + "," + kMeter), 409},  // a second UNIT is a second linear unit
      {projcs(kGcs + "," + kTm + "," + kMeter + ",LINUNIT[\"Meter\",1],LINUNIT[\"Meter\",1]"), 409},
      {projcs(kTm + "," + kMeter), 433},
      {projcs(kGcs + "," + kMeter), 441},
      {projcs(kGcs + "," + kTm), 438},
      {projcs(kGcs + "," + kTm + R"(,PARAMETER["Not_A_Parameter",1],)" + kMeter), 423},
      {projcs(kGcs + "," + kTm + R"(,PARAMETER["X_Axis_Translation",1],)" + kMeter), 424},
      {projcs(kGcs + "," + kTm + R"(,PARAMETER["Central_Meridian",1],PARAMETER["Longitude_Of_Origin",1],)" + kMeter),
       411},
      {projcs(kGcs + "," + kTm + R"(,PARAMETER["False_Easting"],)" + kMeter), 450},
      // The projected system's own constructor: three dimensions need a
      // three-dimensional geographic system.
      {projcs(kGcs + "," + kTm + "," + kUtmParms + "," + kMeter + R"(,LINUNIT["Meter",1.0])"), 488},
      {geogtran(kMethod + "," + kShift), 434},
      {geogtran(kGcs + "," + kMethod + "," + kShift), 435},
      {geogtran(kGcs + "," + kGcs + "," + kShift), 439},
      {geogtran(kGcs + "," + kGcs + "," + kGcs + "," + kMethod + "," + kShift), 406},
      {geogtran(kGcs + "," + kGcs + "," + kMethod + "," + kMethod + "," + kShift), 410},
      {geogtran(kGcs + "," + kGcs + R"(,METHOD["No_Such_Method"],)" + kShift), 305},
      {geogtran(kGcs + "," + kGcs + "," + kMethod + "," + kShift + ",OPERATIONACCURACY[abc]"), 475},
      {geogtran(kGcs + "," + kGcs + "," + kMethod + "," + kShift + ",OPERATIONACCURACY[]"), 475},
      {geogtran(kGcs + "," + kGcs + "," + kMethod + "," + kShift + R"(,PARAMETER["False_Easting",1])"), 424},
  };
  for (const auto &c : cases) ko::test::expect_read_error(c.text, c.number);
}

TEST(Wkt1Projcs, ReadsAProjectedSystem) {
  auto r = read_text(kUtm);
  ASSERT_NE(r.obj, nullptr) << r.err.number;
  auto *p = static_cast<ko_projcs *>(r.obj.get());
  EXPECT_EQ(ko_object_status(p), KO_STATUS_STRING);
  EXPECT_EQ(ko_projcs_dimension(p), 2);
  double parms[KO_PARM_COUNT];
  ASSERT_EQ(ko_projcs_parm_array(p, parms), 1);
  EXPECT_EQ(parms[0], 500000.0);
  EXPECT_EQ(parms[2], 15.0 * 0.0174532925199433);  // in the GEOGCS unit as written
  EXPECT_EQ(parms[5], 0.9996);
  EXPECT_EQ(write_text(p), kUtm);
  // Parameters in any order read the same; they are written in slot order.
  auto shuffled = read_text(R"(PROJCS["WGS_1984_UTM_Zone_33N",)" + kMeter +
                            R"(,PARAMETER["Scale_Factor",0.9996],PARAMETER["Latitude_Of_Origin",0.0],)" + kTm +
                            R"(,PARAMETER["Central_Meridian",15.0],PARAMETER["False_Northing",0.0],)" + kGcs +
                            R"(,PARAMETER["False_Easting",500000.0]])");
  ASSERT_NE(shuffled.obj, nullptr);
  EXPECT_TRUE(ko_object_eq(shuffled.obj.get(), p));
  EXPECT_EQ(write_text(shuffled.obj.get()), kUtm);
}

TEST(Wkt1Projcs, ParametersInTheSystemsUnits) {
  // A system in US feet on a grad GEOGCS: angles in grads, lengths in feet.
  const std::string text =
      R"(PROJCS["p",GEOGCS["g",DATUM["D_WGS_1984",SPHEROID["WGS_1984",6378137.0,298.257223563]],)"
      R"(PRIMEM["Greenwich",0.0],UNIT["Grad",0.01570796326794897]],PROJECTION["Transverse_Mercator"],)"
      R"(PARAMETER["False_Easting",1640416.666666667],PARAMETER["False_Northing",0.0],)"
      R"(PARAMETER["Central_Meridian",16.66666666666667],PARAMETER["Scale_Factor",0.9996],)"
      R"(PARAMETER["Latitude_Of_Origin",0.0],UNIT["Foot_US",0.3048006096012192]])";
  auto r = read_text(text);
  ASSERT_NE(r.obj, nullptr) << r.err.number;
  double parms[KO_PARM_COUNT];
  ASSERT_EQ(ko_projcs_parm_array(static_cast<ko_projcs *>(r.obj.get()), parms), 1);
  EXPECT_NEAR(parms[0], 1640416.666666667 * 0.3048006096012192, 1e-6);
  EXPECT_NEAR(parms[2], 15.0 * 0.017453292519943295, 1e-15);
  EXPECT_EQ(write_text(r.obj.get()), text);
}

TEST(Wkt1Projcs, ThreeDimensionalSystem) {
  const std::string gcs3 = kGcs.substr(0, kGcs.size() - 1) + R"(,LINUNIT["Meter",1.0]])";
  const std::string text = R"(PROJCS["p",)" + gcs3 + "," + kTm + "," + kUtmParms + "," + kMeter +
                           R"(,LINUNIT["Meter",1.0]])";
  auto r = read_text(text);
  ASSERT_NE(r.obj, nullptr) << r.err.number << " " << r.err.message;
  auto *p = static_cast<ko_projcs *>(r.obj.get());
  ASSERT_EQ(ko_projcs_dimension(p), 3);
  const char *names[] = {"(X)", "(Y)", "Ellipsoidal height"};
  const int directions[] = {KO_AXIS_EAST, KO_AXIS_NORTH, KO_AXIS_UP};
  for (int i = 0; i < 3; ++i) {
    ASSERT_NE(ko_projcs_axis(p, i), nullptr);
    EXPECT_STREQ(ko_header_get_name(ko_projcs_axis(p, i)), names[i]);
    EXPECT_EQ(ko_axis_direction(ko_projcs_axis(p, i)), directions[i]);
  }
  EXPECT_EQ(write_text(p), text);
}

TEST(Wkt1Projcs, SpecialCases) {
  const std::string belge_gcs =
      R"(GEOGCS["GCS_Belge_1972",DATUM["D_Belge_1972",SPHEROID["International_1924",6378388.0,297.0]],)"
      R"(PRIMEM["Greenwich",0.0],UNIT["Degree",0.0174532925199433]])";
  auto belge = [&](const std::string &projection, const std::string &easting) {
    return R"(PROJCS["Belge_Lambert_1972",)" + belge_gcs + R"(,PROJECTION[")" + projection +
           R"("],PARAMETER["False_Easting",)" + easting +
           R"(],PARAMETER["False_Northing",5400088.4378],PARAMETER["Central_Meridian",4.367486666666666],)"
           R"(PARAMETER["Standard_Parallel_1",49.8333339],PARAMETER["Standard_Parallel_2",51.16666723333333],)"
           R"(PARAMETER["Latitude_Of_Origin",90.0],UNIT["Meter",1.0]])";
  };
  auto fixed = read_text(belge("Lambert_Conformal_Conic", "150000.01256"));
  ASSERT_NE(fixed.obj, nullptr) << fixed.err.number << " " << fixed.err.message;
  ko_parameter **parms = ko_conversion_parameters_ptr(ko_projcs_conversion(static_cast<ko_projcs *>(fixed.obj.get())));
  EXPECT_EQ(ko_parameter_value(parms[0]), 150000.013);
  EXPECT_EQ(ko_parameter_value(parms[1]), 5400088.438);
  auto other = read_text(belge("Lambert_Conformal_Conic", "150000.0"));
  ASSERT_NE(other.obj, nullptr);
  parms = ko_conversion_parameters_ptr(ko_projcs_conversion(static_cast<ko_projcs *>(other.obj.get())));
  EXPECT_EQ(ko_parameter_value(parms[0]), 150000.0);
  EXPECT_EQ(ko_parameter_value(parms[1]), 5400088.4378);

  const std::string bng =
      R"(PROJCS["British_National_Grid",GEOGCS["GCS_OSGB_1936",DATUM["D_OSGB_1936",)"
      R"(SPHEROID["Airy_1830",6377563.396,299.3249646]],PRIMEM["Greenwich",0.0],UNIT["Degree",0.0174532925199433]],)"
      R"(PROJECTION["Transverse_Mercator"],PARAMETER["False_Easting",400000.0],PARAMETER["False_Northing",-100000.0],)"
      R"(PARAMETER["Central_Meridian",-2.0],PARAMETER["Scale_Factor",0.999601272],)"
      R"(PARAMETER["Latitude_Of_Origin",49.0],UNIT["Meter",1.0]])";
  auto grid = read_text(bng);
  ASSERT_NE(grid.obj, nullptr);
  parms = ko_conversion_parameters_ptr(ko_projcs_conversion(static_cast<ko_projcs *>(grid.obj.get())));
  EXPECT_EQ(ko_parameter_value(parms[5]), 0.9996012717);  // the Ordnance Survey's value
  EXPECT_EQ(ko_wkt_projcs_special_cases(nullptr), 0);
}

TEST(Wkt1Projcs, TransformationAccuracyMethodAndGrid) {
  const std::string base = R"(GEOGTRAN["t",)" + kGcs + "," + kGcs + "," + kMethod + "," + kShift;
  auto unknown = read_text(base + "]");
  ASSERT_NE(unknown.obj, nullptr) << unknown.err.number;
  EXPECT_EQ(ko_geogtran_accuracy(static_cast<ko_geogtran *>(unknown.obj.get())), 999.0);
  EXPECT_EQ(write_text(unknown.obj.get()), base + "]");
  auto known = read_text(base + ",OPERATIONACCURACY[4]]");
  ASSERT_NE(known.obj, nullptr);
  EXPECT_EQ(ko_geogtran_accuracy(static_cast<ko_geogtran *>(known.obj.get())), 4.0);
  EXPECT_EQ(write_text(known.obj.get()), base + ",OPERATIONACCURACY[4.0]]");
  auto nan = read_text(base + ",OPERATIONACCURACY[NaN]]");
  ASSERT_NE(nan.obj, nullptr);
  EXPECT_TRUE(std::isnan(ko_geogtran_accuracy(static_cast<ko_geogtran *>(nan.obj.get()))));
  EXPECT_EQ(write_text(nan.obj.get()), base + ",OPERATIONACCURACY[NaN]]");
  // Translations are metres.
  double values[KO_PARM_COUNT];
  ko_parameter *parms[KO_PARM_COUNT];
  ko_geogtran_parameters(static_cast<ko_geogtran *>(known.obj.get()), parms);
  ko_geogtran_parm_array(parms, values);
  EXPECT_EQ(values[0], -87.0);

  // A grid transformation keeps its file name in the parameter's name.
  const std::string ntv2 = R"(GEOGTRAN["NAD_1927_To_NAD_1983_NTv2_Canada",)" + kGcs + "," + kGcs +
                           R"(,METHOD["NTv2"],PARAMETER["Dataset_can/ntv2_0",0.0]])";
  auto grid = read_text(ntv2);
  ASSERT_NE(grid.obj, nullptr) << grid.err.number << " " << grid.err.message;
  EXPECT_EQ(write_text(grid.obj.get()), ntv2);
}

// Parameters other writers give some projections under other names.
TEST(Wkt1Projcs, ConventionsOfOtherWriters) {
  auto slots = [](const Obj &obj) {
    std::vector<std::pair<int, int32_t>> out;  // slot, parameter code
    ko_parameter **p = ko_conversion_parameters_ptr(ko_projcs_conversion(static_cast<ko_projcs *>(obj.get())));
    for (int i = 0; i < KO_PARM_COUNT; ++i)
      if (p[i] != nullptr) out.emplace_back(i, ko_object_code_internal(p[i]));
    return out;
  };
  using Slots = std::vector<std::pair<int, int32_t>>;
  auto read_with = [](const std::string &projection, const std::string &parms) {
    return read_text(R"(PROJCS["p",)" + kGcs + R"(,PROJECTION[")" + projection + R"("],)" + parms + "," + kMeter + "]",
                     "PostGIS");
  };
  // Albers' origin called centre.
  auto albers = read_with("Albers_Conic_Equal_Area",
                          R"(PARAMETER["latitude_of_center",0],PARAMETER["longitude_of_center",132],)"
                          R"(PARAMETER["standard_parallel_1",-18],PARAMETER["standard_parallel_2",-36])");
  ASSERT_NE(albers.obj, nullptr) << albers.err.number;
  EXPECT_EQ(slots(albers.obj), (Slots{{2, 100010}, {3, 100025}, {4, 100026}, {6, 100021}}));
  // Orthographic's centre called origin.
  auto ortho = read_with("Orthographic", R"(PARAMETER["latitude_of_origin",50],PARAMETER["central_meridian",10])");
  ASSERT_NE(ortho.obj, nullptr) << ortho.err.number;
  EXPECT_EQ(slots(ortho.obj), (Slots{{10, 100012}, {11, 100022}}));
  EXPECT_EQ(ko_parameter_value(ko_conversion_parameters_ptr(
                ko_projcs_conversion(static_cast<ko_projcs *>(ortho.obj.get())))[10]),
            10.0);
  // Polar stereographic: variant B unless the origin is at a pole.
  auto b = read_with("Polar_Stereographic", R"(PARAMETER["latitude_of_origin",-71],PARAMETER["central_meridian",0],)"
                                            R"(PARAMETER["scale_factor",1])");
  ASSERT_NE(b.obj, nullptr) << b.err.number;
  EXPECT_STREQ(ko_header_get_name(ko_projcs_projection(static_cast<ko_projcs *>(b.obj.get()))),
               "Polar_Stereographic_Variant_B");
  EXPECT_EQ(slots(b.obj), (Slots{{2, 100010}, {3, 100025}}));
  auto a = read_with("Polar_Stereographic", R"(PARAMETER["latitude_of_origin",90],PARAMETER["central_meridian",0],)"
                                            R"(PARAMETER["scale_factor",0.994])");
  ASSERT_NE(a.obj, nullptr) << a.err.number;
  EXPECT_STREQ(ko_header_get_name(ko_projcs_projection(static_cast<ko_projcs *>(a.obj.get()))),
               "Polar_Stereographic_Variant_A");
  EXPECT_EQ(slots(a.obj), (Slots{{2, 100010}, {5, 100003}, {6, 100021}}));
  // Read back as written, each stays what it became.
  for (const Obj *obj : {&albers.obj, &ortho.obj, &b.obj, &a.obj}) {
    auto again = read_text(write_text(obj->get()));
    ASSERT_NE(again.obj, nullptr);
    EXPECT_TRUE(ko_object_eq(again.obj.get(), obj->get())) << write_text(obj->get());
  }
}

TEST(Wkt1Projcs, RoundTripsOverTheCatalogue) {
  auto projcs = [](int32_t c) -> void * { return ko::test::projcs_from_catalog(c); };
  ko::test::round_trip_catalog(KO_TYPE_PROJCS, projcs);
  ko::test::round_trip_catalog(KO_TYPE_PROJCS, projcs, 0, "EPSG");
  ko::test::round_trip_catalog(KO_TYPE_GEOGTRAN, [](int32_t c) -> void * { return ko::test::geogtran_from_catalog(c); });
}

}  // namespace
