// The formatter table, string-type sniffing and the public object text
// entry points.
#include "ko.h"
#include "formats/wkt_support.h"
#include "objects/object_support.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using ko::test::Report;
using ko::test::expect_report;
using ko::test::stale_record;

using ko::test::kWgs84;

using ko::test::Obj;

Obj read(const char *text) { return Obj(ko_object_from_string(text)); }

TEST(Formatter, TableOrderAndStringTypes) {
  const ko_formatter *f = ko_formatter_tbl;
  EXPECT_EQ(f[0].format, KO_STR_FMT_WKT2);
  EXPECT_EQ(f[1].format, KO_STR_FMT_WKT1);
  EXPECT_EQ(f[2].format, KO_STR_FMT_PROJ4);
  EXPECT_EQ(f[3].format, 0u);
  EXPECT_EQ(f[0].string_type, KO_STRTYPE_BRACKETED);
  EXPECT_EQ(f[1].string_type, KO_STRTYPE_BRACKETED);
  EXPECT_EQ(f[2].string_type, KO_STRTYPE_PROJ4);
  EXPECT_EQ(f[1].write, &ko_wkt_object_to_str);
  EXPECT_EQ(f[1].read, &ko_wkt_str_to_object);
  EXPECT_EQ(f[1].object_type, &ko_wkt_object_type);
}

TEST(Formatter, SniffsTheStringType) {
  struct Case {
    const char *text;
    int type;
  } const cases[] = {
      {"GEOGCS[\"x\"]", KO_STRTYPE_BRACKETED},
      {"Unit_2 \t (", KO_STRTYPE_BRACKETED},
      {"\xEF\xBB\xBFGEOGCS[", KO_STRTYPE_BRACKETED},  // UTF-8 byte-order mark
      {"\xFE\xFFGEOGCS[", KO_STRTYPE_BRACKETED},      // bytes of 0xFE and above
      {"<?xml version", KO_STRTYPE_XML},
      {"+proj=longlat", KO_STRTYPE_PROJ4},
      {"\xEF\xBB\xBF+proj", KO_STRTYPE_PROJ4},
      {"GEOGCS x[", KO_STRTYPE_NONE},
      {"GEO-GCS[", KO_STRTYPE_NONE},
      {"  GEOGCS[", KO_STRTYPE_NONE},  // the sniffing itself skips no leading blanks
      {"", KO_STRTYPE_NONE},
  };
  for (const Case &c : cases) {
    EXPECT_EQ(ko_formatters_string_type(c.text), c.type) << c.text;
    EXPECT_EQ(ko_string_type(c.text), c.type) << c.text;
  }
  EXPECT_EQ(ko_string_type(nullptr), KO_STRTYPE_NONE);
}

TEST(Formatter, OutputFormatByOptionBits) {
  Obj g = read(kWgs84);
  ASSERT_NE(g, nullptr);
  struct Case {
    uint32_t options;
    bool wkt1;
  } const cases[] = {
      {0, true},
      {KO_STR_FMT_WKT1, true},
      {KO_STR_FMT_WKT2, false},                    // the WKT2 row writes nothing yet
      {KO_STR_FMT_WKT2 | KO_STR_FMT_WKT1, false},  // first row whose bit is set
      {KO_STR_FMT_RESERVED, false},                // no row answers it
      {KO_STR_FMT_PROJ4, false},
      {KO_STR_FMT_KEEP, true},                     // read from WKT1
      {KO_STR_FMT_KEEP | KO_STR_FMT_PROJ4, false}, // an explicit format wins
  };
  for (const Case &c : cases) {
    char buf[KO_STR_BUFFER_SIZE] = "garbage";
    EXPECT_EQ(ko_formatter_object_to_str(g.get(), nullptr, c.options, sizeof buf, buf), 0);
    EXPECT_STREQ(buf, c.wkt1 ? kWgs84 : "") << std::hex << c.options;
  }
  // Keep: the string type in the header decides.
  ko_header_set_str_type(g.get(), static_cast<int32_t>(KO_STR_FMT_PROJ4));
  char buf[KO_STR_BUFFER_SIZE] = "garbage";
  EXPECT_EQ(ko_formatter_object_to_str(g.get(), nullptr, KO_STR_FMT_KEEP, sizeof buf, buf), 0);
  EXPECT_STREQ(buf, "");
  ko_header_set_str_type(g.get(), 0);  // none recorded: WKT1
  EXPECT_EQ(ko_formatter_object_to_str(g.get(), nullptr, KO_STR_FMT_KEEP, sizeof buf, buf), 0);
  EXPECT_STREQ(buf, kWgs84);
}

TEST(Formatter, ReadFailures) {
  struct Case {
    const char *text;
    int number;
    const char *source;
  } const cases[] = {
      {nullptr, 456, "ko_formatter_str_to_object"},
      {" \t\r\n", 456, "ko_formatter_str_to_object"},
      {"+proj=longlat +datum=WGS84", 463, "ko_formatter_str_to_object"},  // PROJ.4 reads nothing yet
      {"<crs/>", 463, "ko_formatter_str_to_object"},                     // no formatter for XML
      {"hello world", 463, "ko_formatter_str_to_object"},
      {"FOO[\"x\"]", 463, "ko_formatter_str_to_object"},                  // no keyword matches
      {"GEOGCS[\"x\",PRIMEM[\"p\",0]]", 431, "GEOGCS"},                 // the reader's error stays
  };
  for (const Case &c : cases) {
    ko_err err = stale_record();
    EXPECT_EQ(ko_formatter_str_to_object(0, c.text, nullptr, &err), nullptr);
    EXPECT_EQ(err.number, c.number) << (c.text ? c.text : "null");
    EXPECT_EQ(err.severity, KO_SEV_ERROR);
    EXPECT_EQ(err.category, KO_ERRCAT_PARSE);
    EXPECT_STREQ(err.source, c.source);
  }
  EXPECT_EQ(ko_formatter_str_to_object(0, nullptr, nullptr, nullptr), nullptr);
}

TEST(Formatter, ReadClearsTheRecordAndSkipsLeadingBlanks) {
  ko_err err = stale_record();
  Obj g(ko_formatter_str_to_object(0, (std::string("\n  ") + kWgs84).c_str(), nullptr, &err));
  ASSERT_NE(g, nullptr);
  EXPECT_EQ(err.number, 0);
  EXPECT_EQ(err.severity, 0);
  EXPECT_TRUE(ko_geogcs_p(g.get()));
}

TEST(Formatter, ObjectTypeOfTheOuterKeyword) {
  EXPECT_EQ(ko_object_string_to_object_type(kWgs84), KO_TYPE_GEOGCS);
  EXPECT_EQ(ko_object_string_to_object_type(" projcs (\"x\""), KO_TYPE_PROJCS);
  EXPECT_EQ(ko_object_string_to_object_type("GEOGTRAN["), KO_TYPE_GEOGTRAN);
  EXPECT_EQ(ko_object_string_to_object_type("DATUM[\"d\"]"), 0u);
  EXPECT_EQ(ko_object_string_to_object_type("+proj=utm"), 0u);
  EXPECT_EQ(ko_object_string_to_object_type(nullptr), 0u);

  const char16_t wide[] = u"VERTCS[\"h\u00e9ight\",VDATUM[\"x\"]]";
  EXPECT_EQ(ko_object_string_to_object_type_u(reinterpret_cast<const ko_uchar *>(wide)),
            KO_TYPE_VERTCS);
  // Each unit's low byte is kept: U+0147 narrows to 'G'.
  const char16_t narrowed[] = u"\u0147EOGCS[";
  EXPECT_EQ(ko_object_string_to_object_type_u(reinterpret_cast<const ko_uchar *>(narrowed)),
            KO_TYPE_GEOGCS);
  EXPECT_EQ(ko_object_string_to_object_type_u(nullptr), 0u);
}

TEST(Formatter, ToStringEntryPointsAgree) {
  Obj g = read(kWgs84);
  ASSERT_NE(g, nullptr);
  char general[KO_STR_BUFFER_SIZE];
  ASSERT_EQ(ko_object_to_string_auth_len(g.get(), nullptr, 0, sizeof general, general), 0);
  EXPECT_STREQ(general, kWgs84);

  char buf[KO_STR_BUFFER_SIZE];
  EXPECT_EQ(ko_object_to_string(g.get(), buf), 0);
  EXPECT_STREQ(buf, general);
  EXPECT_EQ(ko_object_to_string_len(g.get(), 0, sizeof buf, buf), 0);
  EXPECT_STREQ(buf, general);
  EXPECT_EQ(ko_object_to_string_ext(g.get(), 0, buf), buf);
  EXPECT_STREQ(buf, general);

  // With an authority, names are that authority's spelling; the plain
  // forms pass no authority.
  ASSERT_EQ(ko_object_to_string_auth_len(g.get(), "PostGIS", 0, sizeof general, general), 0);
  EXPECT_EQ(ko_object_to_string_auth(g.get(), "PostGIS", buf), 0);
  EXPECT_STREQ(buf, general);
  EXPECT_EQ(ko_object_to_string_auth_ext(g.get(), "PostGIS", 0, buf), buf);
  EXPECT_STREQ(buf, general);
  EXPECT_NE(std::string(general), kWgs84);

  // The option word reaches the writer.
  ASSERT_EQ(ko_object_to_string_auth_len(g.get(), nullptr, KO_STR_EXPAND, sizeof general, general), 0);
  EXPECT_EQ(ko_object_to_string_ext(g.get(), KO_STR_EXPAND, buf), buf);
  EXPECT_STREQ(buf, general);
  EXPECT_NE(std::string(general).find('\n'), std::string::npos);
}

TEST(Formatter, FromStringEntryPointsAgree) {
  const char *text = R"(GEOGCS["WGS 84",DATUM["WGS_1984",SPHEROID["WGS 84",6378137,298.257223563]],)"
                     R"(PRIMEM["Greenwich",0],UNIT["degree",0.0174532925199433]])";
  Obj reference = read(kWgs84);
  ASSERT_NE(reference, nullptr);
  ko_err err;
  std::vector<Obj> read_back;
  read_back.emplace_back(ko_object_from_string(text));
  read_back.emplace_back(ko_object_from_string_auth(text, "PostGIS"));
  read_back.emplace_back(ko_object_from_string_errext(text, &err));
  read_back.emplace_back(ko_object_from_string_auth_errext(text, "PostGIS", &err));
  read_back.emplace_back(ko_object_from_string_by_type(KO_TYPE_GEOGCS, text));
  read_back.emplace_back(ko_object_from_string_by_type_errext(KO_TYPE_COORDSYS, text, &err));
  read_back.emplace_back(ko_object_from_string_auth_by_type(KO_TYPE_GEOGCS, text, "PostGIS"));
  read_back.emplace_back(
      ko_object_from_string_auth_by_type_errext(KO_TYPE_GEOGCS, text, "PostGIS", &err));
  for (std::size_t i = 0; i < read_back.size(); ++i) {
    ASSERT_NE(read_back[i], nullptr) << i;
    EXPECT_TRUE(ko_object_eq(read_back[i].get(), reference.get())) << i;
  }
}

TEST(Formatter, ReadingByTypeRestrictsTheResult) {
  // A typed read finds its own keyword inside a larger text.
  Obj datum(ko_object_from_string_by_type(KO_TYPE_DATUM, kWgs84));
  ASSERT_NE(datum, nullptr);
  EXPECT_TRUE(ko_datum_p(datum.get()));

  // A union type reads the text's own object and keeps it only when it
  // belongs to the union.
  ko_err err;
  Obj none(ko_object_from_string_by_type_errext(KO_TYPE_COORDSYS,
                                                R"(DATUM["d",SPHEROID["s",6378137,298]])", &err));
  EXPECT_EQ(none, nullptr);
  EXPECT_EQ(err.number, 426);
  Obj hv(ko_object_from_string_by_type_errext(KO_TYPE_HVDATUM,
                                              R"(DATUM["d",SPHEROID["s",6378137,298]])", &err));
  EXPECT_NE(hv, nullptr);

  // A type whose keyword is absent.
  Obj missing(ko_object_from_string_by_type_errext(KO_TYPE_PRIMEM, R"(DATUM["d",SPHEROID["s",1,0]])", &err));
  EXPECT_EQ(missing, nullptr);
  expect_report(err, Report{KO_SEV_ERROR, KO_ERRCAT_PARSE, 466, "PRIMEM", "PRIMEM"});
}

TEST(Formatter, PerTypeForwards) {
  const std::string projcs =
      std::string(R"(PROJCS["p",)") + kWgs84 +
      R"(,PROJECTION["Transverse_Mercator"],PARAMETER["Central_Meridian",15.0],UNIT["Meter",1.0]])";
  // A typed read takes the first node of its type.
  ko_geogcs *g = ko_geogcs_from_string(projcs.c_str());
  ASSERT_NE(g, nullptr);
  ko_datum *d = ko_datum_from_string_auth(projcs.c_str(), "PostGIS");
  ASSERT_NE(d, nullptr);
  ko_err err;
  EXPECT_EQ(ko_spheroid_from_string_errext("PRIMEM[\"p\",0]", &err), nullptr);
  EXPECT_EQ(err.number, 466);
  ko_projcs *p = ko_projcs_from_string(projcs.c_str());
  ASSERT_NE(p, nullptr);

  char buf[KO_STR_BUFFER_SIZE];
  char general[KO_STR_BUFFER_SIZE];
  EXPECT_EQ(ko_geogcs_to_string(g, buf), 0);
  EXPECT_STREQ(buf, kWgs84);
  ko_object_to_string_auth(d, "PostGIS", general);
  EXPECT_EQ(ko_datum_to_string_auth(d, "PostGIS", buf), 0);
  EXPECT_STREQ(buf, general);
  ko_object_to_string_ext(p, KO_STR_EXPAND, general);
  EXPECT_STREQ(ko_projcs_to_string_ext(p, KO_STR_EXPAND, buf), general);
  EXPECT_EQ(ko_projcs_to_string_len(p, 0, 10, buf), static_cast<int>(projcs.size() + 1));
  ko_geogcs_del(g);
  ko_datum_del(d);
  ko_projcs_del(p);
}

}  // namespace
