// Type and status tables: lookups in both directions, case rules, the
// composite codes, and the quirks of the status macro lookup.
#include "ko.h"

#include <gtest/gtest.h>

#include <bit>
#include <set>
#include <string>

namespace {

// Every code of the public header, single bits and composites alike.
constexpr uint32_t kAllCodes[] = {
    KO_TYPE_GEOGCS,    KO_TYPE_PROJCS,     KO_TYPE_COORDSYS,   KO_TYPE_VERTCS,
    KO_TYPE_GXYZCS,    KO_TYPE_HVCOORDSYS, KO_TYPE_DATUM,      KO_TYPE_VDATUM,
    KO_TYPE_HVDATUM,   KO_TYPE_GEOGTRAN,   KO_TYPE_VERTTRAN,   KO_TYPE_TRANSFORM,
    KO_TYPE_LINUNIT,   KO_TYPE_ANGUNIT,    KO_TYPE_SCALEUNIT,  KO_TYPE_AREAUNIT,
    KO_TYPE_UNIT,      KO_TYPE_PRIMEM,     KO_TYPE_SPHEROID,   KO_TYPE_METHOD,
    KO_TYPE_HTMETHOD,  KO_TYPE_VTMETHOD,   KO_TYPE_PROJECTION, KO_TYPE_PARAMETER,
    KO_TYPE_AUTHORITY, KO_TYPE_DISPNAME,   KO_TYPE_ADJHCS,     KO_TYPE_ARRAY,
    KO_TYPE_AXIS,      KO_TYPE_EPOCH,      KO_TYPE_REMARK,     KO_TYPE_CONVERSION,
    KO_TYPE_METADATA,  KO_TYPE_EXTENT,
};

TEST(TypeTable, EveryCodeRoundTripsThroughNameAndAbbreviation) {
  std::set<std::string> names, abbrs;
  for (uint32_t code : kAllCodes) {
    std::string name = ko_type_to_name(code);
    std::string abbr = ko_type_to_abbr(code);
    EXPECT_FALSE(name.empty()) << std::hex << code;
    EXPECT_EQ(abbr.size(), 3u) << name;
    EXPECT_EQ(ko_name_to_type(name.c_str()), code) << name;
    EXPECT_EQ(ko_abbr_to_type(abbr.c_str()), code) << abbr;
    EXPECT_EQ(ko_abbr_to_type(name.c_str()), code) << name;  // names are accepted too
    names.insert(name);
    abbrs.insert(abbr);
  }
  EXPECT_EQ(names.size(), std::size(kAllCodes));
  EXPECT_EQ(abbrs.size(), std::size(kAllCodes));
}

TEST(TypeTable, LookupsIgnoreCaseAndRefuseTheUnknown) {
  struct Case {
    const char *text;
    uint32_t by_name, by_abbr;
  } const cases[] = {
      {"GCS", 0, KO_TYPE_GEOGCS},
      {"geogcs", KO_TYPE_GEOGCS, KO_TYPE_GEOGCS},
      {"GeogCS", KO_TYPE_GEOGCS, KO_TYPE_GEOGCS},
      {"hvd", 0, KO_TYPE_HVDATUM},
      {"Unit", KO_TYPE_UNIT, KO_TYPE_UNIT},
      {"geog cs", 0, 0},  // byte comparison: blanks count
      {"geogcsx", 0, 0},
      {"", 0, 0},
  };
  for (const Case &c : cases) {
    EXPECT_EQ(ko_name_to_type(c.text), c.by_name) << c.text;
    EXPECT_EQ(ko_abbr_to_type(c.text), c.by_abbr) << c.text;
  }
  EXPECT_EQ(ko_name_to_type(nullptr), 0u);
  EXPECT_EQ(ko_abbr_to_type(nullptr), 0u);
}

TEST(TypeTable, CodesOutsideTheTableHaveNoName) {
  for (uint32_t code : {0u, 0x40000000u, 0x80000000u, 0x5u, 0xFFFFFFFFu}) {
    EXPECT_STREQ(ko_type_to_name(code), "") << std::hex << code;
    EXPECT_STREQ(ko_type_to_abbr(code), "") << std::hex << code;
  }
  EXPECT_STREQ(ko_type_to_abbr(0x60), "hvd");
  EXPECT_STREQ(ko_type_to_name(0x400300), "unit");
}

TEST(TypeTable, CompositeCodesAreUnionsOfSingleBitTypes) {
  int single_bits = 0;
  for (uint32_t code : kAllCodes) single_bits += std::has_single_bit(code) ? 1 : 0;
  EXPECT_EQ(single_bits, 30);  // 34 rows, of which 4 composites
  EXPECT_EQ(KO_TYPE_UNIT & KO_TYPE_AREAUNIT, 0u);  // an area unit is no unit
}

TEST(StatusTable, MacroNamesOnlySingleBitsOfTheLowByte) {
  struct Case {
    uint32_t status;
    const char *macro;
  } const cases[] = {
      {0, ""},
      {3, ""},                         // a combination
      {1, "KO_STATUS_NEW"},
      {16, "KO_STATUS_CODECHANGE"},
      {64, "KO_STATUS_DEAD"},
      {128, "KO_STATUS_NONE"},         // low 7 bits are zero: the kept quirk
      {256, ""},                       // low 8 bits are zero
      {256 + 4, "KO_STATUS_CODE"},     // bits above the low byte are ignored
  };
  for (const Case &c : cases) EXPECT_STREQ(ko_status_to_macro(c.status), c.macro) << c.status;
}

TEST(StatusTable, TextGivesStatusByWordMacroOrNumber) {
  struct Case {
    const char *text;
    uint32_t status;
  } const cases[] = {
      {"CODECHANGE", 16},
      {"ko_status_codechange", 16},
      {"do_not_use", 128},
      {"KO_STATUS_DONOTUSE", 128},
      {"Discontinued", 32},
      {"259", 3},          // 259 = 256 + 3: only the low byte counts
      {"12abc", 12},       // digits up to the first other character
      {"4294967553", 1},   // 2^32 + 257: larger than 32 bits, low byte still 1
      {"none", 0},
      {"bogus", 0},
      {"", 0},
  };
  for (const Case &c : cases) EXPECT_EQ(ko_string_to_status(c.text), c.status) << c.text;
  EXPECT_EQ(ko_string_to_status(nullptr), 0u);
}

TEST(StatusTable, EverySingleStatusBitRoundTripsThroughItsMacro) {
  for (uint32_t bit = 1; bit <= 64; bit <<= 1)
    EXPECT_EQ(ko_string_to_status(ko_status_to_macro(bit)), bit) << bit;
}

}  // namespace
