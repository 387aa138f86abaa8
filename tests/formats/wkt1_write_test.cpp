// Writing WKT1: the output options, names, numbers and the buffer rule.
#include "ko.h"
#include "formats/catalog_objects.h"
#include "formats/wkt_support.h"
#include "objects/object_support.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

namespace {

using ko::test::Obj;
using ko::test::read_text;
using ko::test::write_text;

using ko::test::kWgs84;

int count(const std::string &text, const std::string &word) {
  int n = 0;
  for (std::size_t p = text.find(word); p != std::string::npos; p = text.find(word, p + 1)) ++n;
  return n;
}

// WGS 84 with an authority and a display name at every level.
const std::string kMarked =
    R"(GEOGCS["GCS_WGS_1984",DATUM["D_WGS_1984",SPHEROID["WGS_1984",6378137.0,298.257223563,)"
    R"(DISPNAME["s"],AUTHORITY["EPSG",7030,"v7030"]],DISPNAME["d"],AUTHORITY["EPSG",6326]],)"
    R"(PRIMEM["Greenwich",0.0,DISPNAME["p"],AUTHORITY["EPSG",8901]],)"
    R"(UNIT["Degree",0.0174532925199433,DISPNAME["u"],AUTHORITY["EPSG",9102]],)"
    R"(DISPNAME["g"],AUTHORITY["EPSG",4326,"v4326"]])";

TEST(Wkt1Write, AuthorityAndDisplayNameFields) {
  auto r = read_text(kMarked);
  ASSERT_NE(r.obj, nullptr) << r.err.number;
  void *g = r.obj.get();
  struct Case {
    uint32_t options;
    int authorities;
    int dispnames;
    int versions;
  } const cases[] = {
      {0, 0, 0, 0},
      {KO_STR_AUTH_TOP, 1, 0, 0},
      {KO_STR_AUTH_ALL, 5, 0, 0},
      {KO_STR_AUTH_TOP | KO_STR_AUTH_ALL, 0, 0, 0},
      {KO_STR_AUTH_ALL | KO_STR_AUTH_VERSION, 5, 0, 2},
      {KO_STR_AUTH_TOP | KO_STR_AUTH_VERSION, 1, 0, 1},
      {KO_STR_AUTH_VERSION, 0, 0, 0},
      {KO_STR_DISP_TOP, 0, 1, 0},
      {KO_STR_DISP_ALL, 0, 5, 0},
      {KO_STR_DISP_TOP | KO_STR_DISP_ALL, 0, 0, 0},
      {KO_STR_AUTH_ALL | KO_STR_DISP_TOP, 5, 1, 0},
  };
  for (const Case &c : cases) {
    std::string text = write_text(g, c.options);
    EXPECT_EQ(count(text, "AUTHORITY["), c.authorities) << std::hex << c.options << " " << text;
    EXPECT_EQ(count(text, "DISPNAME["), c.dispnames) << std::hex << c.options << " " << text;
    EXPECT_EQ(count(text, "\"v"), c.versions) << std::hex << c.options << " " << text;
  }
  // The top object's entries close its node, display name first.
  EXPECT_EQ(write_text(g, KO_STR_AUTH_TOP | KO_STR_DISP_TOP | KO_STR_AUTH_VERSION),
            std::string(kWgs84).substr(0, sizeof kWgs84 - 2) +
                R"(,DISPNAME["g"],AUTHORITY["EPSG",4326,"v4326"]])");
  // Everything written reads back into the same text.
  const uint32_t all = KO_STR_AUTH_ALL | KO_STR_DISP_ALL | KO_STR_AUTH_VERSION;
  EXPECT_EQ(write_text(g, all), kMarked);
}

TEST(Wkt1Write, AuthorityFromTheHeaderCodes) {
  Obj pm(ko_primem_new("Greenwich", 0.0));
  ko_object_code_set(pm.get(), 8901, 8901, 0, 0, "EPSG", "10.076");
  EXPECT_EQ(write_text(pm.get(), KO_STR_AUTH_TOP | KO_STR_AUTH_VERSION),
            R"(PRIMEM["Greenwich",0.0,AUTHORITY["EPSG",8901,"10.076"]])");
  ko_object_code_set(pm.get(), 8901, -1, 0, 0, "EPSG", "");  // no public code: no AUTHORITY
  EXPECT_EQ(write_text(pm.get(), KO_STR_AUTH_TOP), R"(PRIMEM["Greenwich",0.0])");
}

TEST(Wkt1Write, NameChoice) {
  auto r = read_text(R"(GEOGCS["WGS 84",DATUM["WGS_1984",SPHEROID["WGS 84",6378137,298.257223563]],)"
                     R"(PRIMEM["Greenwich",0],UNIT["degree",0.0174532925199433]])");
  ASSERT_NE(r.obj, nullptr);
  // As read; canonical; as another authority spells the library's names.
  EXPECT_EQ(write_text(r.obj.get()),
            R"(GEOGCS["WGS 84",DATUM["WGS_1984",SPHEROID["WGS 84",6378137.0,298.257223563]],)"
            R"(PRIMEM["Greenwich",0.0],UNIT["degree",0.0174532925199433]])");
  EXPECT_EQ(write_text(r.obj.get(), KO_STR_CANONICAL_NAMES), kWgs84);
  char synonym[80];
  std::string expected = std::string(R"(GEOGCS[")") +
                         ko_synonym_lookup_by_act(KO_TYPE_GEOGCS, "GCS_WGS_1984", "EPSG", synonym) + "\"";
  EXPECT_EQ(write_text(r.obj.get(), 0, "EPSG").substr(0, expected.size()), expected);
  EXPECT_NE(std::string(synonym), "GCS_WGS_1984");
  // Canonical names win over the authority.
  EXPECT_EQ(write_text(r.obj.get(), KO_STR_CANONICAL_NAMES, "EPSG"), kWgs84);
  // An object made by a constructor has no original name: its name.
  Obj pm(ko_primem_new("Ferro", -17.666666666666668));
  EXPECT_EQ(write_text(pm.get()), R"(PRIMEM["Ferro",-17.66666666666667])");
}

TEST(Wkt1Write, NumbersInSixteenOrSeventeenDigits) {
  Obj unit(ko_angunit_new_code(9102));
  EXPECT_EQ(write_text(unit.get()), R"(UNIT["Degree",0.0174532925199433])");
  EXPECT_EQ(write_text(unit.get(), KO_STR_FULL_PRECISION), R"(UNIT["Degree",0.017453292519943295])");
  char digits[32];
  std::snprintf(digits, sizeof digits, "%.17g", 0.017453292519943295);
  EXPECT_EQ(std::string(digits), "0.017453292519943295");  // printf agrees with the 17 digits

  Obj s(ko_spheroid_new("Sphere", 6371000.0, 0.0));
  EXPECT_EQ(write_text(s.get()), R"(SPHEROID["Sphere",6371000.0,0.0])");
  Obj tiny(ko_spheroid_new("Almost", 6371000.0, 1e-16));  // below 2^-48: a sphere
  EXPECT_EQ(write_text(tiny.get()), R"(SPHEROID["Almost",6371000.0,0.0])");
  Obj p(ko_parameter_new("Scale_Factor", 0.9996));
  EXPECT_EQ(write_text(p.get()), R"(PARAMETER["Scale_Factor",0.9996])");
}

TEST(Wkt1Write, SpheroidAxisInMetresWhateverItsUnit) {
  // Clarke 1866 in US survey feet: the axis is written in metres, the unit
  // not at all, and reads back into an equal spheroid.
  Obj s(ko_spheroid_ext_new("Clarke_1866", ko_linunit_new_code(9003), 20925832.16445, 1 / 294.9786982));
  std::string text = write_text(s.get());
  char metres[32];
  ko_dtoa(metres, 16, 20925832.16445 * 0.30480060960121924);
  EXPECT_EQ(text, std::string(R"(SPHEROID["Clarke_1866",)") + metres + ",294.9786982]");
  auto back = read_text(text);
  ASSERT_NE(back.obj, nullptr);
  EXPECT_TRUE(ko_object_eq(back.obj.get(), s.get()));
}

TEST(Wkt1Write, PrimeMeridianInAnotherUnitCarriesItsUnit) {
  ko_angunit *grad = ko_angunit_new_code(9105);
  Obj paris(ko_primem_ext_new("Paris", grad, 2.5969213));
  std::string text = write_text(paris.get());
  EXPECT_EQ(text, R"(PRIMEM["Paris",2.5969213,UNIT["Grad",0.01570796326794897]])");
  auto back = read_text(text);
  ASSERT_NE(back.obj, nullptr);
  EXPECT_TRUE(ko_object_eq(back.obj.get(), paris.get()));
  EXPECT_EQ(write_text(back.obj.get()), text);
}

TEST(Wkt1Write, UnitNames) {
  Obj ft(ko_linunit_ext_new("Foot_US", "US survey foot", "US survey feet", "ftUS", 0.30480060960121924));
  std::string text = write_text(ft.get(), KO_STR_UNIT_NAMES);
  EXPECT_EQ(text, R"(UNIT["Foot_US",0.3048006096012192,"US survey foot","US survey feet","ftUS"])");
  EXPECT_EQ(write_text(ft.get()), R"(UNIT["Foot_US",0.3048006096012192])");
  auto back = read_text(text);
  ASSERT_NE(back.obj, nullptr);
  ASSERT_TRUE(ko_linunit_p(back.obj.get()));
  ko_uchar buf[80];
  auto *u = static_cast<ko_linunit *>(back.obj.get());
  EXPECT_EQ(ko::test::units(ko_linunit_display_name(u, buf)), u"US survey foot");
  EXPECT_EQ(ko::test::units(ko_linunit_plural(u, buf)), u"US survey feet");
  EXPECT_EQ(ko::test::units(ko_linunit_abbreviation(u, buf)), u"ftUS");
  // Inside a system the unit's names go along.
  Obj area(ko_areaunit_ext_new("Hectare", "hectare", "hectares", "ha", 10000.0));
  EXPECT_EQ(write_text(area.get(), KO_STR_UNIT_NAMES), R"(AREAUNIT["Hectare",10000.0,"hectare","hectares","ha"])");
}

TEST(Wkt1Write, HiddenObjects) {
  auto r = read_text(kWgs84);
  ASSERT_NE(r.obj, nullptr);
  auto *g = static_cast<ko_geogcs *>(r.obj.get());
  ko_object_hidden_set(ko_geogcs_primem(g), 1);
  std::string without = write_text(g);
  EXPECT_EQ(count(without, "PRIMEM"), 0) << without;
  std::string with = write_text(g, KO_STR_HIDDEN);
  EXPECT_EQ(with, R"(GEOGCS["GCS_WGS_1984",DATUM["D_WGS_1984",SPHEROID["WGS_1984",6378137.0,298.257223563]],)"
                  R"(PRIMEM["Greenwich",0.0,AUTOGENERATED[]],UNIT["Degree",0.0174532925199433]])");
  // The mark reads back as the hidden flag.
  auto back = read_text(with);
  ASSERT_NE(back.obj, nullptr);
  EXPECT_EQ(ko_object_is_hidden(ko_geogcs_primem(static_cast<ko_geogcs *>(back.obj.get()))), 1);
  EXPECT_EQ(write_text(back.obj.get(), KO_STR_HIDDEN), with);

  ko_object_hidden_set(g, 1);
  char buf[KO_STR_BUFFER_SIZE] = "garbage";
  EXPECT_EQ(ko_object_to_string(g, buf), 0);
  EXPECT_STREQ(buf, "");
}

TEST(Wkt1Write, Metadata) {
  ko_gcs_extent box{-10.5, 35.0, 40.0, 71.25, 0.0, 0.0};
  ko_metadata **vec = static_cast<ko_metadata **>(ko_allocate_rtn(3 * sizeof(ko_metadata *), 0, "test"));
  vec[0] = ko_metadata_new("Europe", &box, 1298);
  const ko_gcs_extent empty{};
  vec[1] = ko_metadata_new("World", &empty, 1262);
  vec[2] = nullptr;
  ko_geogcs *g = ko::test::geogcs_from_catalog(4326);
  ASSERT_NE(g, nullptr);
  Obj gcs(ko_geogcs_ext_new("GCS_WGS_1984", ko_datum_clone(ko_geogcs_datum(g)), nullptr, 2, nullptr,
                            nullptr, vec, nullptr));
  ko_geogcs_del(g);
  ASSERT_NE(gcs, nullptr);
  std::string text = write_text(gcs.get());
  EXPECT_EQ(text.substr(text.find("UNIT")),
            R"(UNIT["Degree",0.0174532925199433],METADATA["Europe",-10.5,35.0,40.0,71.25,0.0,0.0,1298],)"
            R"(METADATA["World",0.0,0.0,0.0,0.0,0.0,0.0,1262]])");
  EXPECT_EQ(count(write_text(gcs.get(), KO_STR_NO_METADATA), "METADATA"), 0);
  auto back = read_text(text);
  ASSERT_NE(back.obj, nullptr);
  ko_metadata **read_vec = ko_geogcs_metadata_vector(static_cast<ko_geogcs *>(back.obj.get()));
  ASSERT_NE(read_vec, nullptr);
  EXPECT_TRUE(ko_metadata_eq(read_vec[0], vec[0]));
  EXPECT_TRUE(ko_metadata_eq(read_vec[1], vec[1]));
  EXPECT_EQ(read_vec[2], nullptr);
  EXPECT_EQ(write_text(back.obj.get()), text);
}

TEST(Wkt1Write, BufferSizeRuleForEveryLength) {
  auto r = read_text(kMarked);
  ASSERT_NE(r.obj, nullptr);
  for (uint32_t options : {0u, KO_STR_AUTH_ALL | KO_STR_DISP_ALL, KO_STR_EXPAND}) {
    std::string full = write_text(r.obj.get(), options);
    const int needed = static_cast<int>(full.size()) + 1;
    for (int size = 0; size <= needed; ++size) {
      std::vector<char> buf(static_cast<std::size_t>(size) + 1, 'x');
      int result = ko_object_to_string_len(r.obj.get(), options, size, buf.data());
      if (size < needed) {
        EXPECT_EQ(result, needed) << size;
        if (size > 0) {
          EXPECT_EQ(buf[0], '\0') << size;
        }
        EXPECT_EQ(buf[static_cast<std::size_t>(size)], 'x') << "wrote past the buffer at size " << size;
      } else {
        EXPECT_EQ(result, 0);
        EXPECT_EQ(std::string(buf.data()), full);
      }
    }
  }
  EXPECT_GT(ko_object_to_string_len(r.obj.get(), 0, 0, nullptr), 0);
}

TEST(Wkt1Write, WrongTypeNullAndDeletedObjects) {
  auto r = read_text(kWgs84);
  ASSERT_NE(r.obj, nullptr);
  char buf[KO_STR_BUFFER_SIZE] = "garbage";
  EXPECT_EQ(ko_wkt_datum_to_str(reinterpret_cast<ko_datum *>(r.obj.get()), nullptr, 0, sizeof buf, buf), 0);
  EXPECT_STREQ(buf, "");
  std::strcpy(buf, "garbage");
  EXPECT_EQ(ko_wkt_geogcs_to_str(nullptr, nullptr, 0, sizeof buf, buf), 0);
  EXPECT_STREQ(buf, "");
  ko::test::Ghost ghost;
  std::strcpy(buf, "garbage");
  EXPECT_EQ(ko_wkt_object_to_str(ghost.ptr(), nullptr, 0, sizeof buf, buf), -1);
  EXPECT_STREQ(buf, "");
  EXPECT_EQ(ko_wkt_geogcs_to_str(static_cast<ko_geogcs *>(ghost.ptr()), nullptr, 0, sizeof buf, buf), 0);
  EXPECT_TRUE(ghost.untouched());
  // Types without a WKT1 form.
  Obj axis(ko_axis_new("Easting", "E", KO_AXIS_EAST, nullptr, 1));
  Obj remark(ko_remark_new("note"));
  EXPECT_EQ(ko_wkt_object_to_str(axis.get(), nullptr, 0, sizeof buf, buf), -1);
  EXPECT_EQ(ko_wkt_object_to_str(remark.get(), nullptr, 0, sizeof buf, buf), -1);
  EXPECT_EQ(ko_wkt_object_to_str(nullptr, nullptr, 0, sizeof buf, buf), -1);
  // The union forms write only their members.
  EXPECT_EQ(ko_wkt_coordsys_to_str(r.obj.get(), nullptr, 0, sizeof buf, buf), 0);
  EXPECT_STREQ(buf, kWgs84);
  EXPECT_EQ(ko_wkt_hvdatum_to_str(r.obj.get(), nullptr, 0, sizeof buf, buf), 0);
  EXPECT_STREQ(buf, "");
  EXPECT_EQ(ko_wkt_hvdatum_to_str(ko_geogcs_datum(static_cast<ko_geogcs *>(r.obj.get())), nullptr, 0,
                                  sizeof buf, buf),
            0);
  EXPECT_EQ(std::string(buf).substr(0, 6), "DATUM[");
}

TEST(Wkt1Write, ExpandedThroughTheObjectWriters) {
  auto r = read_text(kWgs84);
  ASSERT_NE(r.obj, nullptr);
  char plain[KO_STR_BUFFER_SIZE];
  char expanded[KO_STR_BUFFER_SIZE];
  ASSERT_EQ(ko_str_expand_wkt(kWgs84, "", KO_STR_EXPAND_TABS, sizeof expanded, expanded), 0);
  EXPECT_STREQ(ko_object_to_string_ext(r.obj.get(), KO_STR_EXPAND_TABS, plain), expanded);
  // Pretty-printed text reads back.
  auto back = read_text(expanded);
  ASSERT_NE(back.obj, nullptr);
  EXPECT_EQ(write_text(back.obj.get()), kWgs84);
}

}  // namespace
