// Reading WKT1: every error the readers raise, the reading rules and what a
// read object carries.
#include "ko.h"
#include "formats/wkt_support.h"
#include "objects/object_support.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <string>

namespace {

using ko::test::Obj;
using ko::test::read_text;
using ko::test::units;
using ko::test::write_text;

const std::string kSph = R"(SPHEROID["WGS_1984",6378137.0,298.257223563])";
const std::string kDat = R"(DATUM["D_WGS_1984",)" + kSph + "]";
const std::string kPrimem = R"(PRIMEM["Greenwich",0.0])";
const std::string kUnit = R"(UNIT["Degree",0.0174532925199433])";
const std::string kGcs = R"(GEOGCS["GCS_WGS_1984",)" + kDat + "," + kPrimem + "," + kUnit + "]";

// A GEOGCS of WGS 84 with extra children before its closing bracket.
std::string gcs_with(const std::string &extra) {
  return kGcs.substr(0, kGcs.size() - 1) + "," + extra + "]";
}

struct ErrorCase {
  std::string text;
  int number;
  int severity;
  int category;
  const char *source;
};

constexpr int kParse = KO_ERRCAT_PARSE;
constexpr int kError = KO_SEV_ERROR;

TEST(Wkt1Read, EveryReaderErrorWithNumberSeverityCategoryAndSource) {
  const std::string long_name(KO_WKT_MAX_CHARS, 'n');
  std::string many_values = "PARAMETER[\"p\"";
  for (int i = 0; i < KO_WKT_MAX_TOKENS; ++i) many_values += ",1";
  many_values += "]";
  const ErrorCase cases[] = {
      // Duplicates.
      {gcs_with(kUnit), 401, kError, kParse, "GEOGCS"},
      {gcs_with(R"(AUTHORITY["EPSG",4326],ID["EPSG",4326])"), 403, kError, kParse, "GEOGCS"},
      {gcs_with(kDat), 405, kError, kParse, "GEOGCS"},
      {gcs_with(R"(LINUNIT["Meter",1.0],LINUNIT["Meter",1.0])"), 409, kError, kParse, "GEOGCS"},
      {gcs_with(kPrimem), 412, kError, kParse, "GEOGCS"},
      {R"(DATUM["d",)" + kSph + R"(,ELLIPSOID["e",6378137,298]])", 415, kError, kParse, "DATUM"},
      {R"(SPHEROID["s",6378137,298,UNIT["Meter",1],UNIT["Meter",1]])", 416, kError, kParse, "SPHEROID"},
      {R"(PRIMEM["p",0,UNIT["Degree",0.0174532925199433],UNIT["Grad",0.0157]])", 416, kError, kParse,
       "PRIMEM"},
      {gcs_with(R"(DISPNAME["a"],DISPNAME["b"])"), 470, kError, kParse, "GEOGCS"},
      // Missing parts.
      {R"(GEOGCS["g",)" + kPrimem + "," + kUnit + "]", 431, kError, kParse, "GEOGCS"},
      {R"(DATUM["d",AUTHORITY["EPSG",6326]])", 442, kError, kParse, "DATUM"},
      {R"(PRIMEM["p"])", 449, kError, kParse, "PRIMEM"},
      {R"(PARAMETER["False_Easting"])", 450, kError, kParse, "PARAMETER"},
      {R"(SPHEROID["s"])", 451, kError, kParse, "SPHEROID"},
      {R"(SPHEROID["s",6378137])", 452, kError, kParse, "SPHEROID"},
      {R"(SPHEROID["s",UNIT["Meter",1.0]])", 451, kError, kParse, "SPHEROID"},
      {R"(UNIT["u"])", 455, kError, kParse, "UNIT"},
      {R"(METADATA["m",1,2,3])", 471, kError, kParse, "METADATA"},
      {R"(AUTHORITY["EPSG"])", 473, kError, kParse, "AUTHORITY"},
      {R"(AUTHORITY["",4326])", 474, kError, kParse, "AUTHORITY"},
      // Values.
      {R"(PRIMEM["p",181])", 419, kError, kParse, "PRIMEM"},
      {R"(PRIMEM["p",250,UNIT["Grad",0.015707963267948967]])", 419, kError, kParse, "PRIMEM"},
      {R"(SPHEROID["s",0,298])", 420, kError, kParse, "SPHEROID"},
      {R"(SPHEROID["s",-6378137,298])", 420, kError, kParse, "SPHEROID"},
      {R"(SPHEROID["s",6378137,0.5])", 421, kError, kParse, "SPHEROID"},
      {R"(SPHEROID["s",6378137,-298])", 421, kError, kParse, "SPHEROID"},
      {R"(UNIT["u",0])", 422, kError, kParse, "UNIT"},
      {R"(UNIT["u",-0.3048])", 422, kError, kParse, "UNIT"},
      {R"(SPHEROID["s",6378137x,298])", 475, kError, kParse, "SPHEROID"},
      {R"(UNIT["u",one])", 475, kError, kParse, "UNIT"},
      {R"(PARAMETER["p",--1])", 475, kError, kParse, "PARAMETER"},
      {R"(AUTHORITY["EPSG",43.5])", 475, kError, kParse, "AUTHORITY"},
      {R"(AUTHORITY["EPSG",99999999999])", 475, kError, kParse, "AUTHORITY"},
      {R"(METADATA["m",1,2,3,4,5,6,-7])", 475, kError, kParse, "METADATA"},
      {R"(PROJECTION["No_Such_Projection"])", 309, kError, kParse, "PROJECTION"},
      // Structure.
      {R"(PROJECTION[])", 459, kError, kParse, "PROJECTION"},
      {R"(GEOGCS[)" + kDat + "]", 465, kError, kParse, "GEOGCS"},
      {R"(GEOGCS["x",DATUM["d"]["e"]])", 458, kError, kParse, "GEOGCS"},
      {R"(GEOGCS["x,DATUM["d"])", 458, kError, kParse, "GEOGCS"},
      {R"(GEOGCS["x",DATUM["d)", 469, kError, kParse, "GEOGCS"},
      {R"(GEOGCS[")" + long_name + "\"]", 467, kError, kParse, "GEOGCS"},
      {many_values, 468, kError, kParse, "PARAMETER"},
      {R"(FOO["x"])", 463, kError, kParse, "ko_formatter_str_to_object"},
      // Constructors' own checks still come through.
      {R"(SPHEROID["s",NaN,298])", 358, kError, KO_ERRCAT_ARGUMENT, "ko_spheroid_ext_new_errext"},
      {R"(AUTHORITY["EPSG",0])", 311, kError, KO_ERRCAT_ARGUMENT, "ko_authority_new_errext"},
  };
  for (const ErrorCase &c : cases) {
    auto r = read_text(c.text);
    EXPECT_EQ(r.obj, nullptr) << c.text;
    EXPECT_EQ(r.err.number, c.number) << c.text;
    EXPECT_EQ(r.err.severity, c.severity) << c.text;
    EXPECT_EQ(r.err.category, c.category) << c.text;
    EXPECT_STREQ(r.err.source, c.source) << c.text;
  }
}

TEST(Wkt1Read, ErrorMessagesNameTheObjectOrTheOffendingText) {
  auto r = read_text(R"(GEOGCS["My GCS",)" + kPrimem + "]");
  EXPECT_STREQ(r.err.message, "My GCS");
  r = read_text(R"(SPHEROID["s",6378137,abc])");
  EXPECT_STREQ(r.err.message, "abc");
  ko_err err;
  EXPECT_EQ(ko_wkt_datum_from_str(kUnit.c_str(), nullptr, &err), nullptr);
  ko::test::expect_report(err, ko::test::Report{kError, kParse, 466, "DATUM", "DATUM"});
}

TEST(Wkt1Read, TokenListErrorsOfFromTokens) {
  auto list = std::make_unique<ko_wkt_tokens>();
  ASSERT_EQ(ko_wkt_str_to_tokens(list.get(), kGcs.c_str(), nullptr, nullptr), 0);
  ko_err err{};
  EXPECT_EQ(ko_wkt_geogcs_from_tokens(list.get(), nullptr, list->count, nullptr, &err), nullptr);
  EXPECT_EQ(err.number, 462);
  EXPECT_STREQ(err.message, std::to_string(list->count).c_str());
  ko_err_clear(&err);  // from_tokens adds to the record it is given
  EXPECT_EQ(ko_wkt_geogcs_from_tokens(list.get(), nullptr, -1, nullptr, &err), nullptr);
  EXPECT_EQ(err.number, 462);
  ko_err_clear(&err);
  EXPECT_EQ(ko_wkt_datum_from_tokens(list.get(), nullptr, 0, nullptr, &err), nullptr);
  EXPECT_EQ(err.number, 466);  // token 0 is GEOGCS
  EXPECT_EQ(ko_wkt_geogcs_from_tokens(nullptr, nullptr, 0, nullptr, &err), nullptr);

  // The DATUM node ends where PRIMEM starts.
  int end = -1;
  Obj datum(ko_wkt_datum_from_tokens(list.get(), nullptr, 2, &end, &err));
  ASSERT_NE(datum, nullptr);
  EXPECT_STREQ(list->tokens[end].text, "PRIMEM");
  end = -1;
  Obj gcs(ko_wkt_geogcs_from_tokens(list.get(), nullptr, 0, &end, &err));
  EXPECT_EQ(end, list->count);

  // A child token out of its level (only a hand-made list can hold one).
  list->tokens[2].depth = 2;
  ko_err_clear(&err);
  EXPECT_EQ(ko_wkt_geogcs_from_tokens(list.get(), nullptr, 0, nullptr, &err), nullptr);
  EXPECT_EQ(err.number, 460);
  list->tokens[2].depth = 1;
  list->tokens[1].depth = 2;  // the name too deep
  ko_err_clear(&err);
  EXPECT_EQ(ko_wkt_geogcs_from_tokens(list.get(), nullptr, 0, nullptr, &err), nullptr);
  EXPECT_EQ(err.number, 465);
}

TEST(Wkt1Read, MissingClosingBracketsAreAWarning) {
  auto r = read_text(kGcs.substr(0, kGcs.size() - 2));
  ASSERT_NE(r.obj, nullptr);
  EXPECT_EQ(r.err.number, 464);
  EXPECT_EQ(r.err.severity, KO_SEV_WARNING);
  EXPECT_STREQ(r.err.message, "2");
  EXPECT_EQ(write_text(r.obj.get()), kGcs);
}

TEST(Wkt1Read, LongNamesAreCutWithAWarning) {
  std::string name(100, 'a');
  auto r = read_text(R"(PRIMEM[")" + name + R"(",10])");
  ASSERT_NE(r.obj, nullptr);
  EXPECT_EQ(r.err.number, 354);
  EXPECT_EQ(r.err.severity, KO_SEV_WARNING);
  EXPECT_EQ(std::string(ko_header_get_name(r.obj.get())), name.substr(0, 79));
  // Not kept as read: cut, a name may stop naming what it named.
  EXPECT_STREQ(ko_header_get_orig_name(r.obj.get()), "");
  auto spaced = read_text("PARAMETER[\"False_Ea" + std::string(80, ' ') + "sting\",1.0]");
  ASSERT_NE(spaced.obj, nullptr);
  EXPECT_EQ(ko_object_code_internal(spaced.obj.get()), 100001);
  EXPECT_EQ(write_text(spaced.obj.get()), R"(PARAMETER["False_Easting",1.0])");
}

TEST(Wkt1Read, AChildFailureStopsTheReadOnlyWhenARecordIsGiven) {
  const std::string text = R"(GEOGCS["g",)" + kDat + R"(,PRIMEM["p"],)" + kUnit + "]";
  ko_err err;
  EXPECT_EQ(ko_wkt_geogcs_from_str(text.c_str(), nullptr, &err), nullptr);
  EXPECT_EQ(err.number, 449);
  // Without a record the faulty child counts as absent: Greenwich.
  Obj g(ko_wkt_geogcs_from_str(text.c_str(), nullptr, nullptr));
  ASSERT_NE(g, nullptr);
  EXPECT_STREQ(ko_header_get_name(ko_geogcs_primem(static_cast<ko_geogcs *>(g.get()))), "Greenwich");
}

TEST(Wkt1Read, LooseSpellingReadsLikeTheCanonicalForm) {
  auto canonical = read_text(kGcs);
  ASSERT_NE(canonical.obj, nullptr);
  const std::string variants[] = {
      "geogcs('GCS_WGS_1984', datum(\"D_WGS_1984\", spheroid(\"WGS_1984\", 6378137, 298.257223563)),\n"
      "  primem('Greenwich', 0), unit('Degree', 0.0174532925199433))",
      "\t" + kGcs,
      gcs_with(R"(AXIS["Lat",NORTH],AXIS["Lon",EAST],EXTENSION["x","y"],FOO[BAR[1,2]],42,"loose")"),
      R"(GEOGCS["GCS_WGS_1984",DATUM["D_WGS_1984",ELLIPSOID["WGS_1984",6378137,298.257223563],)"
      R"(TOWGS84[0,0,0,0,0,0,0]],UNIT["Degree",0.0174532925199433],PRIMEM["Greenwich",0]])",
  };
  // Text around the node: the typed reader finds its keyword (sniffing in
  // ko_object_from_string wants the keyword first).
  Obj around(ko_wkt_geogcs_from_str(("Some text first, " + kGcs + "]] and after").c_str(), nullptr, nullptr));
  ASSERT_NE(around, nullptr);
  EXPECT_TRUE(ko_object_eq(around.get(), canonical.obj.get()));
  for (const std::string &text : variants) {
    auto r = read_text(text);
    ASSERT_NE(r.obj, nullptr) << text << "\n" << r.err.number;
    EXPECT_TRUE(ko_object_eq(r.obj.get(), canonical.obj.get())) << text;
    EXPECT_EQ(write_text(r.obj.get(), KO_STR_CANONICAL_NAMES), kGcs) << text;
  }
}

TEST(Wkt1Read, QuotedNames) {
  auto single = read_text(R"(PRIMEM['It''s',1.5])");  // '' ends a single-quoted name
  EXPECT_EQ(single.obj, nullptr);
  auto doubled = read_text(R"(PRIMEM["A ""quoted"" name",1.5])");
  ASSERT_NE(doubled.obj, nullptr);
  EXPECT_STREQ(ko_header_get_orig_name(doubled.obj.get()), "A \"quoted\" name");
  // The writer puts the name between quotes as it is.
  EXPECT_EQ(write_text(doubled.obj.get()), R"(PRIMEM["A "quoted" name",1.5])");
  auto in_single = read_text(R"(PRIMEM['A "quoted" name',1.5])");
  ASSERT_NE(in_single.obj, nullptr);
  EXPECT_TRUE(ko_object_eq(in_single.obj.get(), doubled.obj.get()));
}

TEST(Wkt1Read, SphereInverseFlattenings) {
  for (const char *inverse : {"0", "0.0", "1e-16", "-1e-16", "1e12"}) {
    auto r = read_text(std::string(R"(SPHEROID["Sphere",6371000,)") + inverse + "]");
    ASSERT_NE(r.obj, nullptr) << inverse;
    EXPECT_EQ(ko_spheroid_flattening(static_cast<ko_spheroid *>(r.obj.get())), 0.0) << inverse;
    EXPECT_EQ(write_text(r.obj.get()), R"(SPHEROID["Sphere",6371000.0,0.0])");
  }
  auto r = read_text(R"(SPHEROID["Flat",6378137,1])");
  ASSERT_NE(r.obj, nullptr);
  EXPECT_EQ(ko_spheroid_flattening(static_cast<ko_spheroid *>(r.obj.get())), 1.0);
}

TEST(Wkt1Read, SpheroidAndPrimeMeridianUnits) {
  // The axis is in the UNIT's length; without it in metres.
  auto feet = read_text(R"(SPHEROID["Clarke_1866",20925832.16,294.978698214,UNIT["Foot_US",0.3048006096012192]])");
  ASSERT_NE(feet.obj, nullptr);
  auto *s = static_cast<ko_spheroid *>(feet.obj.get());
  EXPECT_NEAR(ko_spheroid_axis(s), 20925832.16 * 0.3048006096012192, 1e-6);
  EXPECT_DOUBLE_EQ(ko_linunit_factor(ko_spheroid_unit(s)), 0.3048006096012192);

  // A meridian without unit is in degrees, with "Degree".
  auto paris = read_text(R"(PRIMEM["Paris",2.33722917])");
  ASSERT_NE(paris.obj, nullptr);
  auto *p = static_cast<ko_primem *>(paris.obj.get());
  EXPECT_DOUBLE_EQ(ko_primem_longitude(p), 2.33722917);
  char name[80];
  EXPECT_STREQ(ko_angunit_name(ko_primem_unit(p), name), "Degree");
  EXPECT_EQ(ko_angunit_factor(ko_primem_unit(p)), 0.017453292519943295);

  // 200 grads are 180 degrees: accepted.
  auto grads = read_text(R"(PRIMEM["p",200,UNIT["Grad",0.015707963267948967]])");
  ASSERT_NE(grads.obj, nullptr);
  EXPECT_NEAR(ko_primem_longitude(static_cast<ko_primem *>(grads.obj.get())), 180.0, 1e-12);
}

TEST(Wkt1Read, GeogcsDefaults) {
  // Without PRIMEM: Greenwich; without UNIT: the degree; both in degrees.
  auto r = read_text(R"(GEOGCS["g",)" + kDat + "]");
  ASSERT_NE(r.obj, nullptr);
  auto *g = static_cast<ko_geogcs *>(r.obj.get());
  EXPECT_STREQ(ko_header_get_name(ko_geogcs_primem(g)), "Greenwich");
  EXPECT_EQ(ko_primem_longitude(ko_geogcs_primem(g)), 0.0);
  EXPECT_EQ(ko_angunit_factor(ko_geogcs_unit(g)), 0.017453292519943295);
  EXPECT_EQ(ko_geogcs_dimension(g), 2);

  // A PRIMEM without unit in a grad system still gets the degree.
  r = read_text(R"(GEOGCS["g",)" + kDat + R"(,PRIMEM["Paris",2.33722917],UNIT["Grad",0.01570796326794897]])");
  ASSERT_NE(r.obj, nullptr);
  g = static_cast<ko_geogcs *>(r.obj.get());
  EXPECT_EQ(ko_angunit_factor(ko_primem_unit(ko_geogcs_primem(g))), 0.017453292519943295);
  EXPECT_DOUBLE_EQ(ko_primem_longitude(ko_geogcs_primem(g)), 2.33722917);
  EXPECT_DOUBLE_EQ(ko_angunit_factor(ko_geogcs_unit(g)), 0.01570796326794897);
}

TEST(Wkt1Read, LinunitMakesAThreeDimensionalSystem) {
  auto r = read_text(gcs_with(R"(LINUNIT["Foot",0.3048])"));
  ASSERT_NE(r.obj, nullptr);
  auto *g = static_cast<ko_geogcs *>(r.obj.get());
  ASSERT_EQ(ko_geogcs_dimension(g), 3);
  struct Axis {
    const char *name;
    int direction;
    double factor;
  } const want[] = {{"Longitude", KO_AXIS_EAST, 0.0174532925199433},
                    {"Latitude", KO_AXIS_NORTH, 0.0174532925199433},
                    {"Ellipsoidal height", KO_AXIS_UP, 0.3048}};
  for (int i = 0; i < 3; ++i) {
    ko_axis *a = ko_geogcs_axis(g, i);
    ASSERT_NE(a, nullptr);
    EXPECT_STREQ(ko_header_get_name(a), want[i].name);
    EXPECT_EQ(ko_axis_direction(a), want[i].direction);
    EXPECT_EQ(ko_axis_order(a), i + 1);
    EXPECT_EQ(ko_unit_factor(ko_axis_unit(a)), want[i].factor);
  }
  EXPECT_EQ(ko_linunit_factor(ko_geogcs_vert_unit(g)), 0.3048);
  EXPECT_EQ(write_text(g), gcs_with(R"(LINUNIT["Foot",0.3048])"));
}

TEST(Wkt1Read, HeaderOfAReadObject) {
  auto r = read_text(gcs_with("DISPNAME[\"W\xC3\xB6rld 84\"],AUTHORITY[\"EPSG\",\"4326\",\"9.8.6\"],AUTOGENERATED[]"));
  ASSERT_NE(r.obj, nullptr);
  void *g = r.obj.get();
  EXPECT_EQ(ko_object_status(g), KO_STATUS_STRING);
  EXPECT_EQ(ko_object_string_type(g), static_cast<int32_t>(KO_STR_FMT_WKT1));
  EXPECT_STREQ(ko_header_get_orig_name(g), "GCS_WGS_1984");
  EXPECT_EQ(ko_object_is_hidden(g), 1);
  const ko_authority *a = ko_object_authority_const(g);
  ASSERT_NE(a, nullptr);
  char buf[80];
  EXPECT_STREQ(ko_authority_authname(a, buf), "EPSG");
  EXPECT_EQ(ko_authority_authcode(a), 4326);
  EXPECT_STREQ(ko_authority_version(a, buf), "9.8.6");
  ASSERT_NE(ko_object_dispname(g), nullptr);
  EXPECT_EQ(units(ko_dispname_uname_get(ko_object_dispname(g))), u"W\u00f6rld 84");

  // Every sub-object read carries the same marks.
  for (void *sub : {static_cast<void *>(ko_geogcs_datum(static_cast<ko_geogcs *>(g))),
                    static_cast<void *>(ko_datum_spheroid(ko_geogcs_datum(static_cast<ko_geogcs *>(g)))),
                    static_cast<void *>(ko_geogcs_unit(static_cast<ko_geogcs *>(g)))}) {
    EXPECT_EQ(ko_object_status(sub), KO_STATUS_STRING);
    EXPECT_EQ(ko_object_string_type(sub), static_cast<int32_t>(KO_STR_FMT_WKT1));
    EXPECT_STRNE(ko_header_get_orig_name(sub), "");
  }
}

TEST(Wkt1Read, NamesMapThroughTheAuthoritysSynonyms) {
  const std::string text =
      R"(GEOGCS["WGS 84",DATUM["WGS_1984",SPHEROID["WGS 84",6378137,298.257223563]],)"
      R"(PRIMEM["Greenwich",0],UNIT["degree",0.0174532925199433]])";
  auto r = read_text(text, "PostGIS");
  ASSERT_NE(r.obj, nullptr);
  auto *g = static_cast<ko_geogcs *>(r.obj.get());
  EXPECT_STREQ(ko_header_get_name(g), "GCS_WGS_1984");
  EXPECT_STREQ(ko_header_get_name(ko_geogcs_datum(g)), "D_WGS_1984");
  EXPECT_STREQ(ko_header_get_name(ko_datum_spheroid(ko_geogcs_datum(g))), "WGS_1984");
  EXPECT_STREQ(ko_header_get_name(ko_geogcs_unit(g)), "Degree");
  // Options 0 write the names as they were read, not the synonyms.
  EXPECT_EQ(write_text(g), R"(GEOGCS["WGS 84",DATUM["WGS_1984",SPHEROID["WGS 84",6378137.0,298.257223563]],)"
                           R"(PRIMEM["Greenwich",0.0],UNIT["degree",0.0174532925199433]])");
  EXPECT_EQ(write_text(g, KO_STR_CANONICAL_NAMES), kGcs);

  // Names of another authority's spelling are not mapped when an authority
  // is named that does not spell them so.
  auto other = read_text(text, "No_Such_Authority");
  ASSERT_NE(other.obj, nullptr);
  EXPECT_STREQ(ko_header_get_name(other.obj.get()), "WGS 84");

  // Without an authority the library's own names stay what they are, even
  // where another authority spells a different object alike (EPSG's
  // "Longitude of origin" is the library's Central_Meridian); other names
  // map through any authority's synonyms.
  auto own = read_text(R"(PARAMETER["longitude of origin",10])");
  ASSERT_NE(own.obj, nullptr);
  EXPECT_EQ(ko_object_code_internal(own.obj.get()), 100011);
  EXPECT_STREQ(ko_header_get_name(own.obj.get()), "Longitude_Of_Origin");
  auto epsg = read_text(R"(PARAMETER["Longitude of origin",10])", "EPSG");
  ASSERT_NE(epsg.obj, nullptr);
  EXPECT_EQ(ko_object_code_internal(epsg.obj.get()), 100010);
  auto any = read_text(R"(PROJECTION["Equirectangular"])");
  ASSERT_NE(any.obj, nullptr);
  EXPECT_STREQ(ko_header_get_name(any.obj.get()), "Equidistant_Cylindrical");
}

TEST(Wkt1Read, SpecialCasesAfterReading) {
  const std::string intl = R"(SPHEROID["International_1924",6378388.0,297.0])";
  const std::string hk_datum = R"(DATUM["D_Hong_Kong_1963",)" + intl + "]";
  auto datum = read_text(hk_datum);
  ASSERT_NE(datum.obj, nullptr);
  EXPECT_STREQ(ko_header_get_name(datum.obj.get()), "D_Hong_Kong_1963_67");
  EXPECT_STREQ(ko_header_get_orig_name(datum.obj.get()), "D_Hong_Kong_1963");
  auto clarke = read_text(R"(DATUM["D_Hong_Kong_1963",SPHEROID["Clarke_1858",6378293.645208759,294.2606763692654]])");
  ASSERT_NE(clarke.obj, nullptr);
  EXPECT_STREQ(ko_header_get_name(clarke.obj.get()), "D_Hong_Kong_1963");

  const std::string degree = R"(UNIT["Degree",0.0174532925199433])";
  const std::string grad = R"(UNIT["Grad",0.01570796326794897])";
  const std::string clarke80 = R"(SPHEROID["Clarke_1880_IGN",6378249.2,293.4660212936269])";
  struct Case {
    std::string text;
    const char *name;
  } const cases[] = {
      {R"(GEOGCS["GCS_Hong_Kong_1963",)" + hk_datum + R"(,PRIMEM["Greenwich",0],)" + degree + "]",
       "GCS_Hong_Kong_1963_67"},
      {R"(GEOGCS["GCS_Carthage",DATUM["D_Carthage",)" + clarke80 + "]," + grad + "]", "GCS_Carthage_Grad"},
      {R"(GEOGCS["GCS_Voirol_1875",DATUM["D_Voirol_1875",)" + clarke80 + "]," + grad + "]",
       "GCS_Voirol_1875_Grad"},
      {R"(GEOGCS["GCS_Voirol_1879",DATUM["D_Voirol_1879",)" + clarke80 + "]," + grad + "]",
       "GCS_Voirol_1879_Grad"},
      // Any other combination keeps its name.
      {R"(GEOGCS["GCS_Carthage",DATUM["D_Carthage",)" + clarke80 + "]," + degree + "]", "GCS_Carthage"},
      {R"(GEOGCS["GCS_Voirol_1879",DATUM["D_Voirol_1879",)" + clarke80 + R"(],PRIMEM["Paris",2.33722917],)" +
           grad + "]",
       "GCS_Voirol_1879"},
      {R"(GEOGCS["GCS_Voirol_1875",DATUM["D_Voirol_1879",)" + clarke80 + "]," + grad + "]", "GCS_Voirol_1875"},
  };
  for (const Case &c : cases) {
    auto r = read_text(c.text);
    ASSERT_NE(r.obj, nullptr) << c.text;
    EXPECT_STREQ(ko_header_get_name(r.obj.get()), c.name) << c.text;
  }
  EXPECT_EQ(ko_wkt_geogcs_special_cases(nullptr), 0);
  EXPECT_EQ(ko_wkt_datum_special_cases(nullptr), 0);
}

TEST(Wkt1Read, StandaloneNodes) {
  auto unit = read_text(R"(UNIT["Foot_US",0.3048006096012192])");
  ASSERT_NE(unit.obj, nullptr);
  EXPECT_TRUE(ko_linunit_p(unit.obj.get()));  // the generic reader finds the kind
  auto ang = read_text(R"(ANGUNIT["Grad",0.015707963267948967])");
  ASSERT_NE(ang.obj, nullptr);
  EXPECT_TRUE(ko_angunit_p(ang.obj.get()));
  auto area = read_text(R"(AREAUNIT["Hectare",10000])");
  ASSERT_NE(area.obj, nullptr);
  EXPECT_TRUE(ko_areaunit_p(area.obj.get()));
  auto par = read_text(R"(PARAMETER["false_easting",500000])");
  ASSERT_NE(par.obj, nullptr);
  EXPECT_EQ(ko_object_code_internal(par.obj.get()), 100001);
  EXPECT_EQ(ko_parameter_value(static_cast<ko_parameter *>(par.obj.get())), 500000.0);
  auto prj = read_text(R"(PROJECTION["Transverse_Mercator"])");
  ASSERT_NE(prj.obj, nullptr);
  EXPECT_TRUE(ko_projection_p(prj.obj.get()));
  auto md = read_text(R"(METADATA["Europe",-10.5,35,40,71.25,0,0,1298])");
  ASSERT_NE(md.obj, nullptr);
  const ko_gcs_extent *e = ko_metadata_gcs_extent_ptr(static_cast<ko_metadata *>(md.obj.get()));
  EXPECT_EQ(e->west, -10.5);
  EXPECT_EQ(e->north, 71.25);
  EXPECT_EQ(ko_metadata_areacode(static_cast<ko_metadata *>(md.obj.get())), 1298u);
  auto dn = read_text(R"(DISPNAME["Grad"])");
  ASSERT_NE(dn.obj, nullptr);
  EXPECT_TRUE(ko_dispname_p(dn.obj.get()));
  auto id = read_text(R"(ID["EPSG",4326])", nullptr, KO_TYPE_AUTHORITY);
  ASSERT_NE(id.obj, nullptr);
  EXPECT_EQ(ko_authority_authcode(static_cast<ko_authority *>(id.obj.get())), 4326);
}

}  // namespace

namespace {

// Every reader refuses a null text (456) and a null token list, and every
// writer writes nothing for null and deleted objects.
TEST(Wkt1Read, NullTextsTokenListsAndObjects) {
  using FromStr = void *(*)(const char *, const char *, ko_err *);
#define KO_READERS(t) \
  [](const char *text, const char *authority, ko_err *err) -> void * { return ko_wkt_##t##_from_str(text, authority, err); }
  const FromStr readers[] = {
      KO_READERS(geogcs),    KO_READERS(projcs),   KO_READERS(datum),      KO_READERS(spheroid),
      KO_READERS(primem),    KO_READERS(unit),     KO_READERS(linunit),    KO_READERS(angunit),
      KO_READERS(scaleunit), KO_READERS(areaunit), KO_READERS(parameter),  KO_READERS(projection),
      KO_READERS(method),    KO_READERS(geogtran), KO_READERS(metadata),   KO_READERS(authority),
      KO_READERS(dispname),  KO_READERS(vdatum),   KO_READERS(vertcs),     KO_READERS(gxyzcs),
      KO_READERS(hvcoordsys), KO_READERS(verttran), KO_READERS(vtmethod),  KO_READERS(htmethod),
      KO_READERS(array),     KO_READERS(epoch),    KO_READERS(adjhcs),     ko_wkt_coordsys_from_str,
      ko_wkt_hvdatum_from_str, ko_wkt_transform_from_str,
  };
#undef KO_READERS
  for (FromStr read : readers) {
    ko_err err{};
    EXPECT_EQ(read(nullptr, nullptr, &err), nullptr);
    EXPECT_TRUE(err.number == 456 || err.number == 0) << err.number;  // the union forms read nothing
    EXPECT_EQ(read("", nullptr, nullptr), nullptr);
  }
  EXPECT_EQ(ko_wkt_str_to_object(0, nullptr, nullptr, nullptr), nullptr);
  EXPECT_EQ(ko_wkt_str_to_object_no_type(nullptr, nullptr, nullptr), nullptr);
  ko_err err{};
  EXPECT_EQ(ko_wkt_projcs_from_tokens(nullptr, nullptr, 0, nullptr, &err), nullptr);
  EXPECT_EQ(ko_wkt_verttran_from_tokens(nullptr, nullptr, 0, nullptr, &err), nullptr);
  EXPECT_EQ(ko_wkt_epoch_from_tokens(nullptr, nullptr, 0, nullptr, &err), nullptr);

  ko::test::Ghost ghost;
  for (void *obj : {static_cast<void *>(nullptr), ghost.ptr()}) {
    char buf[64] = "garbage";
    EXPECT_EQ(ko_wkt_object_to_str(obj, nullptr, 0, sizeof buf, buf), -1);
    EXPECT_STREQ(buf, "");
    for (auto write : {ko_wkt_coordsys_to_str, ko_wkt_hvdatum_to_str, ko_wkt_transform_to_str}) {
      std::strcpy(buf, "garbage");
      EXPECT_EQ(write(obj, nullptr, 0, sizeof buf, buf), 0);
      EXPECT_STREQ(buf, "");
    }
    std::strcpy(buf, "garbage");
    EXPECT_EQ(ko_wkt_epoch_to_str(static_cast<ko_epoch *>(obj), nullptr, 0, sizeof buf, buf), 0);
    EXPECT_EQ(ko_wkt_array_to_str(static_cast<ko_array *>(obj), nullptr, 0, sizeof buf, buf), 0);
    EXPECT_EQ(ko_wkt_verttran_to_str(static_cast<ko_verttran *>(obj), nullptr, 0, sizeof buf, buf), 0);
    EXPECT_STREQ(buf, "");
  }
  EXPECT_TRUE(ghost.untouched());
}

}  // namespace
