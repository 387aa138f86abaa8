// WKT1 of the vertical, geocentric, compound and adjusted systems, the
// vertical transformations and the small nodes they hold: errors, reading,
// and round trips over the catalogue's records.
#include "ko.h"
#include "formats/round_trip.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using ko::test::Obj;
using ko::test::read_text;
using ko::test::round_trip;
using ko::test::round_trip_catalog;
using ko::test::write_text;

const std::string kGcs =
    R"(GEOGCS["GCS_WGS_1984",DATUM["D_WGS_1984",SPHEROID["WGS_1984",6378137.0,298.257223563]],)"
    R"(PRIMEM["Greenwich",0.0],UNIT["Degree",0.0174532925199433]])";
const std::string kDatum = R"(DATUM["D_WGS_1984",SPHEROID["WGS_1984",6378137.0,298.257223563]])";
const std::string kVdatum = R"(VDATUM["North_American_Vertical_Datum_1988"])";
const std::string kMeter = R"(UNIT["Meter",1.0])";
const std::string kNavd88 = R"(VERTCS["NAVD88",)" + kVdatum + "," + kMeter + "]";
const std::string kEllipsoidal = R"(VERTCS["WGS_1984_Height",)" + kDatum + "," + kMeter + "]";
const std::string kOffset = R"(VTMETHOD["Vertical_Offset"],PARAMETER["Vertical_Offset",0.5])";

std::string node(const char *keyword, const std::string &children) {
  return std::string(keyword) + R"([")" + "n" + R"(",)" + children + "]";
}

TEST(Wkt1Systems, Errors) {
  struct Case {
    std::string text;
    int number;
  } const cases[] = {
      {node("VERTCS", kMeter), 437},
      {node("VERTCS", kVdatum + "," + kDatum + "," + kMeter), 408},
      {node("VERTCS", kVdatum + "," + kMeter + "," + kMeter), 409},
      {node("VERTCS", kVdatum + R"(,PARAMETER["False_Easting",1],)" + kMeter), 424},
      {node("VERTCS", kVdatum + R"(,PARAMETER["Direction",2],)" + kMeter), 356},  // the constructor's check
      {node("GXYZCS", kMeter), 431},
      {node("GXYZCS", kDatum + "," + kDatum + "," + kMeter), 405},
      {node("HVCOORDSYS", R"(AUTHORITY["EPSG",1])"), 430},
      {node("HVCOORDSYS", kNavd88), 429},
      {node("HVCOORDSYS", kGcs), 443},
      {node("COMPD_CS", kGcs + "," + kGcs + "," + kNavd88), 404},
      {node("HVCOORDSYS", kGcs + "," + kNavd88 + "," + kNavd88), 418},
      {node("VERTTRAN", kNavd88 + "," + kOffset), 444},
      {node("VERTTRAN", kOffset), 443},
      {node("VERTTRAN", kNavd88 + "," + kNavd88 + R"(,PARAMETER["Vertical_Offset",0.5])"), 445},
      {node("VERTTRAN", kNavd88 + "," + kNavd88 + "," + kNavd88 + "," + kOffset), 418},
      {node("VERTTRAN", kNavd88 + "," + kNavd88 + "," + kOffset + R"(,VTMETHOD["Vertical_Offset"])"), 417},
      {node("VERTTRAN", kNavd88 + "," + kNavd88 + R"(,VTMETHOD["No_Such_Method"])"), 307},
      {node("VERTTRAN", kNavd88 + "," + kNavd88 + "," + kOffset + ",OPERATIONACCURACY[1],OPERATIONACCURACY[2]"),
       352},
      {node("ADJHCS", R"(HTMETHOD["Affine"],ARRAY["a",6,1,2,3,4,5,6])"), 429},
      {node("ADJHCS", kGcs + R"(,ARRAY["a",6,1,2,3,4,5,6])"), 436},
      {node("ADJHCS", kGcs + R"(,HTMETHOD["Affine"])"), 428},
      {node("ADJHCS", kGcs + R"(,HTMETHOD["Affine"],HTMETHOD["Affine"],ARRAY["a",1,1])"), 407},
      {node("ADJHCS", kGcs + R"(,HTMETHOD["Affine"],ARRAY["a",1,1],ARRAY["a",1,1])"), 402},
      {node("ADJHCS", kGcs + R"(,HTMETHOD["Affine"],ARRAY["a",4,1,2,3,4])"), 310},  // Affine takes six
      {R"(HTMETHOD["No_Such_Method"])", 306},
      {R"(ARRAY["a"])", 448},
      {R"(ARRAY["a",3,1,2])", 425},
      {R"(ARRAY["a",1,1,2])", 425},
      {R"(ARRAY["a",2,1,x])", 475},
      {R"(ARRAY["a",1,1,UNIT["Meter",1],UNIT["Meter",1]])", 416},
      {R"(EPOCH[""])", 479},
      {R"(EPOCH[soon])", 475},
      {R"(EPOCH[12345])", 355},
  };
  for (const auto &c : cases) ko::test::expect_read_error(c.text, c.number);
}

TEST(Wkt1Systems, ReadsVerticalSystems) {
  auto gravity = read_text(R"(VERTCS["NAVD88_depth",)" + kVdatum +
                           R"(,PARAMETER["Vertical_Shift",1.5],PARAMETER["Direction",-1.0],UNIT["Foot_US",0.3048006096012192]])");
  ASSERT_NE(gravity.obj, nullptr) << gravity.err.number;
  auto *v = static_cast<ko_vertcs *>(gravity.obj.get());
  EXPECT_EQ(ko_vertcs_direction(v), KO_VERTCS_DEPTH);
  EXPECT_TRUE(ko_vdatum_p(ko_vertcs_hvdatum(v)));
  EXPECT_EQ(ko_vertcs_is_ellipsoidal(v), 0);
  EXPECT_NEAR(ko_vertcs_vertical_shift(v), 1.5 * 0.3048006096012192, 1e-15);  // in the system's unit
  auto ellipsoidal = read_text(kEllipsoidal);
  ASSERT_NE(ellipsoidal.obj, nullptr);
  EXPECT_EQ(ko_vertcs_is_ellipsoidal(static_cast<ko_vertcs *>(ellipsoidal.obj.get())), 1);
  // Other writers' spellings and children (VERT_CS, VERT_DATUM with its
  // datum type, AXIS) read as the library's.
  auto ogc = read_text(R"(VERT_CS["NAVD88",VERT_DATUM["North_American_Vertical_Datum_1988",2005],)"
                       R"(UNIT["Meter",1],AXIS["Gravity-related height",UP]])");
  ASSERT_NE(ogc.obj, nullptr) << ogc.err.number;
  auto navd = read_text(kNavd88);
  ASSERT_NE(navd.obj, nullptr);
  EXPECT_TRUE(ko_object_eq(ogc.obj.get(), navd.obj.get()));
  EXPECT_EQ(write_text(ogc.obj.get()), kNavd88);
}

TEST(Wkt1Systems, CompoundSystems) {
  const std::string inner = kGcs + "," + kNavd88;
  for (const std::string &text : {node("HVCOORDSYS", inner), node("COMPD_CS", inner)}) {
    auto r = read_text(text);
    ASSERT_NE(r.obj, nullptr) << text << " " << r.err.number;
    EXPECT_TRUE(ko_hvcoordsys_p(r.obj.get()));
    EXPECT_TRUE(ko_geogcs_p(ko_hvcoordsys_coordsys(static_cast<ko_hvcoordsys *>(r.obj.get()))));
  }
  // The untyped reader takes a text holding a vertical system and a
  // horizontal one for a compound system before it looks at GEOGCS or
  // PROJCS: text before the compound keyword does not hide it, and a
  // GEOGCS holding a VERTCS is not read as a geographic system.
  ko_err err;
  Obj after_text(ko_wkt_str_to_object_no_type(("Compound: " + node("HVCOORDSYS", inner)).c_str(), nullptr, &err));
  EXPECT_TRUE(ko_hvcoordsys_p(after_text.get()));
  Obj nested(ko_wkt_str_to_object_no_type((kGcs.substr(0, kGcs.size() - 1) + "," + kNavd88 + "]").c_str(),
                                          nullptr, &err));
  EXPECT_EQ(nested, nullptr);
  EXPECT_EQ(err.number, 466);
}

TEST(Wkt1Systems, VerticalTransformation) {
  const std::string text = R"(VERTTRAN["WGS_1984_Height_To_NAVD88",)" + kGcs + "," + kEllipsoidal + "," + kNavd88 +
                           R"(,VTMETHOD["Geoid_Height_By_Grid"],PARAMETER["Dataset_us_noaa_g2018u0.tif",0.0],)"
                           R"(OPERATIONACCURACY[0.05]])";
  auto r = read_text(text);
  ASSERT_NE(r.obj, nullptr) << r.err.number << " " << r.err.message;
  auto *vt = static_cast<ko_verttran *>(r.obj.get());
  EXPECT_EQ(ko_verttran_accuracy(vt), 0.05);
  EXPECT_TRUE(ko_geogcs_p(ko_verttran_coordsys(vt)));
  EXPECT_EQ(ko_vertcs_is_ellipsoidal(ko_verttran_vertcs1(vt)), 1);
  EXPECT_EQ(write_text(vt), text);
  // The horizontal system may be left out; the accuracy when unknown too.
  const std::string plain = R"(VERTTRAN["t",)" + kNavd88 + "," + kNavd88 + "," + kOffset + "]";
  auto offset = read_text(plain);
  ASSERT_NE(offset.obj, nullptr) << offset.err.number << " " << offset.err.message;
  EXPECT_EQ(ko_verttran_coordsys(static_cast<ko_verttran *>(offset.obj.get())), nullptr);
  EXPECT_EQ(write_text(offset.obj.get()), plain);
}

TEST(Wkt1Systems, ArraysEpochsAndAdjustedSystems) {
  auto array = read_text(R"(ARRAY["Affine values",6,1000.5,0.99,0.01,-2000,-0.01,0.99,UNIT["Meter",1]])");
  ASSERT_NE(array.obj, nullptr) << array.err.number;
  auto *a = static_cast<ko_array *>(array.obj.get());
  ASSERT_EQ(ko_array_num_values(a), 6);
  EXPECT_EQ(ko_array_value(a, 0), 1000.5);
  EXPECT_EQ(ko_array_value(a, 3), -2000.0);
  EXPECT_TRUE(ko_linunit_p(ko_array_unit(a)));
  auto epoch = read_text("EPOCH[2010.5]");
  ASSERT_NE(epoch.obj, nullptr);
  EXPECT_EQ(ko_epoch_year(static_cast<ko_epoch *>(epoch.obj.get())), 2010.5);
  EXPECT_EQ(write_text(epoch.obj.get()), "EPOCH[2010.5]");

  const std::string utm =
      R"(PROJCS["WGS_1984_UTM_Zone_33N",)" + kGcs +
      R"(,PROJECTION["Transverse_Mercator"],PARAMETER["False_Easting",500000.0],PARAMETER["False_Northing",0.0],)"
      R"(PARAMETER["Central_Meridian",15.0],PARAMETER["Scale_Factor",0.9996],PARAMETER["Latitude_Of_Origin",0.0],)" +
      kMeter + "]";
  const std::string adjusted = R"(ADJHCS["Site grid",)" + utm +
                               R"(,HTMETHOD["Affine"],ARRAY["Site grid",6,1000.5,0.99,0.01,-2000.0,-0.01,0.99,)"
                               R"(UNIT["Meter",1.0]]])";
  auto adj = read_text(adjusted);
  ASSERT_NE(adj.obj, nullptr) << adj.err.number << " " << adj.err.message;
  double affine[6];
  ASSERT_EQ(ko_adjhcs_affine(static_cast<ko_adjhcs *>(adj.obj.get()), affine), 1);
  EXPECT_EQ(affine[0], 1000.5);
  EXPECT_EQ(affine[5], 0.99);
  EXPECT_EQ(write_text(adj.obj.get()), adjusted);
  EXPECT_TRUE(round_trip(adj.obj.get(), KO_STR_AUTH_ALL | KO_STR_UNIT_NAMES));
}

TEST(Wkt1Systems, RoundTripsOverTheCatalogue) {
  round_trip_catalog(KO_TYPE_VDATUM, [](int32_t c) -> void * { return ko::test::vdatum_from_catalog(c); });
  round_trip_catalog(KO_TYPE_VERTCS, [](int32_t c) -> void * { return ko::test::vertcs_from_catalog(c); });
  round_trip_catalog(KO_TYPE_GXYZCS, [](int32_t c) -> void * { return ko::test::gxyzcs_from_catalog(c); });
  round_trip_catalog(KO_TYPE_HVCOORDSYS, [](int32_t c) -> void * { return ko::test::hvcoordsys_from_catalog(c); });
  round_trip_catalog(KO_TYPE_VERTTRAN, [](int32_t c) -> void * { return ko::test::verttran_from_catalog(c); });
  round_trip_catalog(KO_TYPE_VERTTRAN, [](int32_t c) -> void * { return ko::test::verttran_from_catalog(c); }, 0,
                     "EPSG");
  // The method lists.
  for (int i = 0; i < ko_vtmethlist_count(); ++i) {
    Obj m(ko_vtmethlist_vtmethod_from_code(ko_vtmethlist_from_indx(i)->code, nullptr));
    EXPECT_TRUE(round_trip(m.get())) << ko_vtmethlist_from_indx(i)->name;
  }
  for (int i = 0; i < ko_htmethlist_count(); ++i) {
    Obj m(ko_htmethlist_htmethod_from_code(ko_htmethlist_from_indx(i)->code, nullptr));
    EXPECT_TRUE(round_trip(m.get())) << ko_htmethlist_from_indx(i)->name;
  }
}

}  // namespace
