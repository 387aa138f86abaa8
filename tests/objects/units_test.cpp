// Unit types and unit tables: construction and its reports, the generic
// unit's choice of kind, equality, cloning, and the tables' contents
// against independent definitions (exact ratios and the EPSG dataset as
// PROJ reads it).
#include "ko.h"
#include "objects/geodetic_support.h"
#include "objects/object_support.h"
#include "objects/units.h"
#include "support/failing_alloc.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstring>
#include <numbers>
#include <string>
#include <vector>

#ifdef KO_HAVE_PROJ
#include <proj.h>
#endif

namespace {

using ko::test::expect_no_report;
using ko::test::expect_report;
using ko::test::Report;
using ko::test::name_of;
using ko::test::with_value;

constexpr double kPi = std::numbers::pi;
constexpr double kUsFoot = 1200.0 / 3937.0;

std::u16string utf16(const ko_uchar *text) { return ko::test::units(text); }

// ---------------------------------------------------------------------------
// Tables

struct TableCase {
  const char *label;
  const ko_unit_entry *table;
  int rows;
};

TEST(UnitTables, RowCountsAndEndRows) {
  const TableCase cases[] = {
      {"linear", ko_linunit_tbl, 67},
      {"angular", ko_angunit_tbl, 11},
      {"area", ko_areaunit_tbl, 66},
      {"scale", ko_scaleunit_tbl, 4},
  };
  for (const TableCase &c : cases) {
    SCOPED_TRACE(c.label);
    EXPECT_EQ(ko_unit_tbl_count(c.table), c.rows);
    EXPECT_EQ(c.table[c.rows].code, 0);
    for (int i = 0; i < c.rows; ++i) {
      EXPECT_GT(c.table[i].factor, 0.0) << c.table[i].name;
      EXPECT_NE(c.table[i].name, nullptr);
    }
  }
  EXPECT_EQ(ko_unit_tbl_count(nullptr), 0);
}

// The tables are stored in alphabetical order of their names, except the
// linear table's last five rows, which repeat units under the library's
// own codes.  Codes are unique within each table.
TEST(UnitTables, StoredInNameOrderWithUniqueCodes) {
  const TableCase cases[] = {
      {"linear", ko_linunit_tbl, 62},
      {"angular", ko_angunit_tbl, 11},
      {"area", ko_areaunit_tbl, 66},
      {"scale", ko_scaleunit_tbl, 4},
  };
  for (const TableCase &c : cases) {
    SCOPED_TRACE(c.label);
    for (int i = 1; i < c.rows; ++i)
      EXPECT_LT(strcasecmp(c.table[i - 1].name, c.table[i].name), 0)
          << c.table[i - 1].name << " / " << c.table[i].name;
    int all = ko_unit_tbl_count(c.table);
    for (int i = 0; i < all; ++i)
      for (int j = i + 1; j < all; ++j) EXPECT_NE(c.table[i].code, c.table[j].code);
  }
  for (int i = 62; i < 67; ++i) {
    const ko_unit_entry &repeat = ko_linunit_tbl[i];
    EXPECT_GT(repeat.code, 109000);
    const ko_unit_entry *first = ko_unit_tbl_from_name(ko_linunit_tbl, repeat.name);
    ASSERT_NE(first, nullptr);
    EXPECT_LT(first->code, 100000) << "lookups by name find the EPSG row first";
    EXPECT_EQ(first->factor, repeat.factor);
  }
}

struct Definition {
  const char *name;
  double factor;
};

// Units defined as exact ratios or multiples, computed here independently;
// the tables must hold the nearest double or within an ulp or two of it.
TEST(UnitTables, FactorsMatchTheirDefinitions) {
  const Definition linear[] = {
      {"Meter", 1.0},
      {"Foot", 0.3048},
      {"Foot_US", kUsFoot},
      {"Inch_US", kUsFoot / 12.0},
      {"Yard_US", 3.0 * kUsFoot},
      {"Chain_US", 66.0 * kUsFoot},
      {"Link_US", 0.66 * kUsFoot},
      {"Rod_US", 16.5 * kUsFoot},
      {"Mile_US", 5280.0 * kUsFoot},
      {"Yard", 3.0 * 0.3048},
      {"Fathom", 6.0 * 0.3048},
      {"Chain", 66.0 * 0.3048},
      {"Link", 0.66 * 0.3048},
      {"Rod", 16.5 * 0.3048},
      {"Statute_Mile", 5280.0 * 0.3048},
      {"Inch", 0.0254},
      {"Point", 0.0254 / 72.0},
      {"Nautical_Mile", 1852.0},
      {"Kilometer", 1000.0},
      {"Micrometer", 1e-6},
      {"Yard_Clarke", 3.0 * 0.3047972654},
      {"Chain_Clarke", 66.0 * 0.3047972654},
      {"Yard_Indian_1937", 3.0 * 0.30479841},
  };
  for (const Definition &d : linear) {
    const ko_unit_entry *row = ko_unit_tbl_from_name(ko_linunit_tbl, d.name);
    ASSERT_NE(row, nullptr) << d.name;
    EXPECT_NEAR(row->factor, d.factor, 4e-16 * d.factor) << d.name;
  }
  const Definition angular[] = {
      {"Radian", 1.0},
      {"Degree", kPi / 180.0},
      {"Grad", kPi / 200.0},
      {"Gon", kPi / 200.0},
      {"Arcminute", kPi / 10800.0},
      {"Arcsecond", kPi / 648000.0},
      {"Milliarcsecond", kPi / 648000000.0},
      {"Mil_6400", 2.0 * kPi / 6400.0},
      {"Microradian", 1e-6},
      {"Minute_Centesimal", kPi / 20000.0},
      {"Second_Centesimal", kPi / 2000000.0},
  };
  for (const Definition &d : angular) {
    const ko_unit_entry *row = ko_unit_tbl_from_name(ko_angunit_tbl, d.name);
    ASSERT_NE(row, nullptr) << d.name;
    EXPECT_NEAR(row->factor, d.factor, 4e-16 * d.factor) << d.name;
  }
  const Definition scale[] = {
      {"Unity", 1.0}, {"Parts_Per_Million", 1e-6}, {"Parts_Per_Billion", 1e-9}, {"Coefficient", 1.0}};
  for (const Definition &d : scale) {
    const ko_unit_entry *row = ko_unit_tbl_from_name(ko_scaleunit_tbl, d.name);
    ASSERT_NE(row, nullptr) << d.name;
    EXPECT_EQ(row->factor, d.factor) << d.name;
  }
}

// Every "Square_X" area unit is the square of the linear unit X; the acre
// is 43560 square feet of its kind, the are and hectare 100 and 10000 m².
TEST(UnitTables, AreaUnitsAreSquaresOfLinearUnits) {
  int squares = 0;
  for (const ko_unit_entry *row = ko_areaunit_tbl; row->code != 0; ++row) {
    if (std::strncmp(row->name, "Square_", 7) != 0) continue;
    const ko_unit_entry *side = ko_unit_tbl_from_name(ko_linunit_tbl, row->name + 7);
    ASSERT_NE(side, nullptr) << row->name;
    EXPECT_NEAR(row->factor, side->factor * side->factor, 1e-15 * row->factor) << row->name;
    ++squares;
  }
  EXPECT_EQ(squares, 62);
  EXPECT_NEAR(ko_unit_tbl_from_name(ko_areaunit_tbl, "Acre")->factor, 43560.0 * 0.3048 * 0.3048,
              1e-12);
  EXPECT_NEAR(ko_unit_tbl_from_name(ko_areaunit_tbl, "Acre_US")->factor,
              43560.0 * kUsFoot * kUsFoot, 1e-11);
  EXPECT_EQ(ko_unit_tbl_from_name(ko_areaunit_tbl, "Are")->factor, 100.0);
  EXPECT_EQ(ko_unit_tbl_from_name(ko_areaunit_tbl, "Hectare")->factor, 10000.0);
}

#ifdef KO_HAVE_PROJ
// Rows under EPSG codes against EPSG's own unit definitions, as PROJ's
// database gives them.
TEST(UnitTables, EpsgCodesAgreeWithTheEpsgDataset) {
  PJ_CONTEXT *ctx = proj_context_create();
  int compared = 0;
  for (const ko_unit_entry *table : {ko_linunit_tbl, ko_angunit_tbl, ko_scaleunit_tbl}) {
    for (const ko_unit_entry *row = table; row->code != 0; ++row) {
      if (row->code >= 100000) continue;
      const char *name = nullptr;
      double factor = 0.0;
      const char *category = nullptr;
      std::string code = std::to_string(row->code);
      ASSERT_TRUE(proj_uom_get_info_from_database(ctx, "EPSG", code.c_str(), &name, &factor,
                                                  &category))
          << row->code;
      EXPECT_NEAR(row->factor, factor, 2e-15 * factor) << row->code << " " << row->name;
      ++compared;
    }
  }
  EXPECT_GT(compared, 60);
  proj_context_destroy(ctx);
}
#endif

TEST(UnitTables, LookupsByCodeAndName) {
  EXPECT_EQ(ko_unit_tbl_from_code(ko_linunit_tbl, 9003), ko_unit_tbl_from_name(ko_linunit_tbl, "foot us"));
  EXPECT_EQ(ko_unit_tbl_from_name(ko_linunit_tbl, "Foot (US)")->code, 9003);
  EXPECT_EQ(ko_unit_tbl_from_code(ko_linunit_tbl, 0), nullptr);
  EXPECT_EQ(ko_unit_tbl_from_code(ko_linunit_tbl, 9102), nullptr);
  EXPECT_EQ(ko_unit_tbl_from_code(nullptr, 9001), nullptr);
  EXPECT_EQ(ko_unit_tbl_from_name(ko_linunit_tbl, ""), nullptr);
  EXPECT_EQ(ko_unit_tbl_from_name(ko_linunit_tbl, nullptr), nullptr);
  EXPECT_EQ(ko_unit_tbl_from_name(ko_linunit_tbl, "Meters"), nullptr);
}

// ---------------------------------------------------------------------------
// Construction

TEST(UnitConstruct, FromNameFactorAndTexts) {
  ko_err err = ko::test::stale_record();
  ko_linunit *u = ko_linunit_ext_new_errext("Foot_US", "US survey foot", "US survey feet", "ftUS",
                                            kUsFoot, &err);
  ASSERT_NE(u, nullptr);
  expect_no_report(err);
  EXPECT_EQ(ko_linunit_type(u), KO_TYPE_LINUNIT);
  EXPECT_EQ(ko_linunit_status(u), KO_STATUS_NEW);
  EXPECT_EQ(ko_linunit_code(u), -1);
  EXPECT_EQ(name_of(u), "Foot_US");
  EXPECT_EQ(ko_linunit_factor(u), kUsFoot);
  EXPECT_EQ(ko_linunit_refcode(u), 0u);
  ko_uchar buf[KO_UNIT_DISPNAME_SIZE];
  EXPECT_EQ(utf16(ko_linunit_display_name(u, buf)), u"US survey foot");
  EXPECT_EQ(utf16(ko_linunit_plural(u, buf)), u"US survey feet");
  ko_uchar abbr[KO_UNIT_ABBR_SIZE];
  EXPECT_EQ(utf16(ko_linunit_abbreviation(u, abbr)), u"ftUS");
  ko_linunit_set_refcode(u, 42);
  EXPECT_EQ(ko_linunit_refcode(u), 42u);
  ko_linunit_del(u);
}

TEST(UnitConstruct, Utf8AndUtf16TextsAgree) {
  ko_angunit *a = ko_angunit_ext_new("Grad", "grade", "grades", "g\xC2\xB0", kPi / 200.0);
  ko_angunit *b = ko_angunit_ext_new_u("Grad", ko::test::uc(u"grade"), ko::test::uc(u"grades"),
                                       ko::test::uc(u"g\u00B0"), kPi / 200.0);
  ASSERT_NE(a, nullptr);
  ASSERT_NE(b, nullptr);
  ko_uchar x[KO_UNIT_ABBR_SIZE], y[KO_UNIT_ABBR_SIZE];
  EXPECT_EQ(utf16(ko_angunit_abbreviation(a, x)), u"g\u00B0");
  EXPECT_EQ(utf16(ko_angunit_abbreviation(a, x)), utf16(ko_angunit_abbreviation(b, y)));
  ko_uchar plural[KO_UNIT_DISPNAME_SIZE];
  EXPECT_EQ(utf16(ko_angunit_plural(b, plural)), u"grades");
  EXPECT_EQ(ko_angunit_eq(a, b), 1);
  ko_angunit_del(a);
  ko_angunit_del(b);
}

struct FactorCase {
  double factor;
  int number;
  const char *text;
};

TEST(UnitConstruct, BadFactorsAreRefused) {
  const FactorCase cases[] = {
      {0.0, 304, "Unit factor argument is <= 0"},
      {-0.3048, 304, "Unit factor argument is <= 0"},
      {-INFINITY, 304, "Unit factor argument is <= 0"},
      {NAN, 358, "NaN or Infinity encountered"},
      {INFINITY, 358, "NaN or Infinity encountered"},
  };
  for (const FactorCase &c : cases) {
    SCOPED_TRACE(c.factor);
    ko_err err{};
    EXPECT_EQ(ko_scaleunit_new_errext("Thing", c.factor, &err), nullptr);
    std::string message = with_value(c.text, "Thing", c.factor);
    expect_report(err, Report{4, 8, c.number, "ko_scaleunit_ext_new_errext", message.c_str()});
    EXPECT_EQ(ko_unit_new_errext("Thing", c.factor, &err), nullptr);
    expect_report(err, Report{4, 8, c.number, "ko_unit_ext_new_errext", message.c_str()});
  }
}

TEST(UnitConstruct, LongTextsWarnAndAreCut) {
  std::string name(100, 'n');
  std::string display(90, 'd');
  std::string abbr(20, 'a');
  ko_err err{};
  ko_areaunit *u = ko_areaunit_ext_new_errext(name.c_str(), display.c_str(), nullptr, abbr.c_str(),
                                              2.0, &err);
  ASSERT_NE(u, nullptr);
  // The first warning stays: later reports of equal severity do not replace it.
  expect_report(err, Report{2, 8, 354, "ko_areaunit_ext_new_errext", name.c_str()});
  EXPECT_EQ(name_of(u), name.substr(0, 79));
  ko_uchar buf[KO_UNIT_DISPNAME_SIZE];
  EXPECT_EQ(utf16(ko_areaunit_display_name(u, buf)).size(), 79u);
  EXPECT_EQ(utf16(ko_areaunit_plural(u, buf)), u"");
  ko_uchar small[KO_UNIT_ABBR_SIZE];
  EXPECT_EQ(utf16(ko_areaunit_abbreviation(u, small)).size(), 15u);
  ko_areaunit_del(u);

  // A text alone too long reports itself.
  u = ko_areaunit_ext_new_errext("Acre", nullptr, display.c_str(), nullptr, 4046.8564224, &err);
  ASSERT_NE(u, nullptr);
  expect_report(err, Report{2, 8, 354, "ko_areaunit_ext_new_errext", display.c_str()});
  ko_areaunit_del(u);
  std::u16string wide(85, u'x');
  ko_linunit *l = ko_linunit_ext_new_errext_u("Meter", ko::test::uc(wide.c_str()), nullptr, nullptr,
                                              1.0, &err);
  ASSERT_NE(l, nullptr);
  expect_report(err, Report{2, 8, 354, "ko_linunit_ext_new_errext", std::string(85, 'x').c_str()});
  ko_linunit_del(l);
}

TEST(UnitConstruct, NullNameIsEmpty) {
  ko_err err{};
  ko_linunit *u = ko_linunit_new_errext(nullptr, 2.0, &err);
  ASSERT_NE(u, nullptr);
  expect_no_report(err);
  EXPECT_EQ(name_of(u), "");
  ko_linunit_del(u);
}

struct CodeCase {
  const char *label;
  void *(*by_code)(int32_t, ko_err *);
  int32_t code;
  uint32_t type;
  const char *name;
  const char *authority;
};

template <class T, T *(*F)(int32_t, ko_err *)>
void *erase(int32_t code, ko_err *err) {
  return F(code, err);
}

TEST(UnitConstruct, FromTableCodes) {
  const CodeCase cases[] = {
      {"linear EPSG", erase<ko_linunit, ko_linunit_new_code_errext>, 9003, KO_TYPE_LINUNIT,
       "Foot_US", "EPSG"},
      {"linear own", erase<ko_linunit, ko_linunit_new_code_errext>, 109014, KO_TYPE_LINUNIT,
       "Smoot", "Velor"},
      {"angular", erase<ko_angunit, ko_angunit_new_code_errext>, 9105, KO_TYPE_ANGUNIT, "Grad",
       "EPSG"},
      {"scale", erase<ko_scaleunit, ko_scaleunit_new_code_errext>, 9202, KO_TYPE_SCALEUNIT,
       "Parts_Per_Million", "EPSG"},
      {"area", erase<ko_areaunit, ko_areaunit_new_code_errext>, 109401, KO_TYPE_AREAUNIT,
       "Hectare", "Velor"},
      {"generic finds angular", erase<ko_unit, ko_unit_new_code_errext>, 9102, KO_TYPE_ANGUNIT,
       "Degree", "EPSG"},
      {"generic finds scale", erase<ko_unit, ko_unit_new_code_errext>, 9201, KO_TYPE_SCALEUNIT,
       "Unity", "EPSG"},
  };
  for (const CodeCase &c : cases) {
    SCOPED_TRACE(c.label);
    ko_err err = ko::test::stale_record();
    void *u = c.by_code(c.code, &err);
    ASSERT_NE(u, nullptr);
    expect_no_report(err);
    EXPECT_EQ(ko_object_type(u), c.type);
    EXPECT_EQ(name_of(u), c.name);
    EXPECT_EQ(ko_object_code(u), c.code);
    EXPECT_EQ(ko_object_code_internal(u), c.code);
    EXPECT_EQ(ko_object_status(u), KO_STATUS_CODE);
    EXPECT_STREQ(ko_header_get_auth_name(u), c.authority);
    const ko_unit_entry *row = nullptr;
    for (const ko_unit_entry *t : {ko_linunit_tbl, ko_angunit_tbl, ko_scaleunit_tbl, ko_areaunit_tbl})
      if (row == nullptr) row = ko_unit_tbl_from_code(t, c.code);
    ASSERT_NE(row, nullptr);
    EXPECT_EQ(ko::unit_factor_or(u, ko::kAnyUnitType, 0.0), row->factor);
    ko_object_del(u);
  }
}

TEST(UnitConstruct, UnknownCodesAndNames) {
  ko_err err{};
  EXPECT_EQ(ko_linunit_new_code_errext(9102, &err), nullptr);
  expect_report(err, Report{4, 2, 212, "ko_linunit_new_code_errext", "9102"});
  EXPECT_EQ(ko_angunit_new_code_errext(9001, &err), nullptr);
  expect_report(err, Report{4, 2, 211, "ko_angunit_new_code_errext", "9001"});
  EXPECT_EQ(ko_scaleunit_new_code_errext(-5, &err), nullptr);
  expect_report(err, Report{4, 2, 210, "ko_scaleunit_new_code_errext", "-5"});
  EXPECT_EQ(ko_areaunit_new_code_errext(9001, &err), nullptr);
  expect_report(err, Report{4, 2, 210, "ko_areaunit_new_code_errext", "9001"});
  // Area units are not units in the generic sense.
  EXPECT_EQ(ko_unit_new_code_errext(109401, &err), nullptr);
  expect_report(err, Report{4, 2, 210, "ko_unit_new_code_errext", "109401"});
  EXPECT_EQ(ko_linunit_new_name_errext("Furlong", &err), nullptr);
  expect_report(err, Report{4, 2, 132, "ko_linunit_new_name_errext", "Furlong"});
  EXPECT_EQ(ko_unit_new_name_errext(nullptr, &err), nullptr);
  // An empty message falls back to the table text.
  expect_report(err, Report{4, 2, 132, "ko_unit_new_name_errext", "Name not found"});
}

// Names in other authorities' spellings reach the table rows through the
// catalogue's synonyms.
TEST(UnitConstruct, SynonymSpellings) {
  ko_linunit *m = ko_linunit_new_name("metre");
  ASSERT_NE(m, nullptr);
  EXPECT_EQ(ko_linunit_code(m), 9001);
  ko_unit *ft = ko_unit_new_name("US survey foot");
  ASSERT_NE(ft, nullptr);
  EXPECT_EQ(ko_unit_type(ft), KO_TYPE_LINUNIT);
  EXPECT_EQ(ko_unit_code(ft), 9003);
  ko_unit *wkt = ko_unit_new("metre", 1.0);
  EXPECT_EQ(ko_unit_type(wkt), KO_TYPE_LINUNIT);
  EXPECT_EQ(name_of(wkt), "metre") << "the name stays as given";
  ko_linunit_del(m);
  ko_unit_del(ft);
  ko_unit_del(wkt);
}

TEST(UnitConstruct, FromTableNames) {
  ko_linunit *yard = ko_linunit_new_name("yard");
  ASSERT_NE(yard, nullptr);
  EXPECT_EQ(ko_linunit_code(yard), 9096);
  EXPECT_EQ(name_of(yard), "Yard");
  ko_unit *gon = ko_unit_new_name("GON");
  ASSERT_NE(gon, nullptr);
  EXPECT_EQ(ko_unit_type(gon), KO_TYPE_ANGUNIT);
  EXPECT_EQ(ko_unit_factor(gon), kPi / 200.0);
  ko_linunit_del(yard);
  ko_unit_del(gon);
}

struct KindCase {
  const char *name;
  double factor;
  uint32_t type;
};

// The generic constructor picks the kind whose table has the name with an
// equal factor; otherwise the unit stays generic.
TEST(UnitConstruct, GenericUnitChoosesItsKind) {
  const KindCase cases[] = {
      {"Meter", 1.0, KO_TYPE_LINUNIT},
      {"foot us", kUsFoot, KO_TYPE_LINUNIT},
      {"Degree", kPi / 180.0, KO_TYPE_ANGUNIT},
      {"Degree", 0.0174532925199433, KO_TYPE_ANGUNIT},  // as WKT writers round it
      {"Parts_Per_Million", 1e-6, KO_TYPE_SCALEUNIT},
      {"Unity", 1.0, KO_TYPE_SCALEUNIT},
      {"Meter", 2.0, KO_TYPE_UNIT},
      {"Degree", 1.0, KO_TYPE_UNIT},
      {"Furlong", 201.168, KO_TYPE_UNIT},
      {"Square_Meter", 1.0, KO_TYPE_UNIT},
  };
  for (const KindCase &c : cases) {
    SCOPED_TRACE(std::string(c.name) + " " + std::to_string(c.factor));
    ko_unit *u = ko_unit_new(c.name, c.factor);
    ASSERT_NE(u, nullptr);
    EXPECT_EQ(ko_unit_type(u), c.type);
    EXPECT_EQ(ko_unit_factor(u), c.factor);
    EXPECT_EQ(ko_object_vector(ko_unit_type(u))->type, c.type);
    ko_object_del(u);
  }
}

// ---------------------------------------------------------------------------
// Equality, clone, delete

TEST(UnitEquality, NameAndFactorWithTolerance) {
  ko_linunit *a = ko_linunit_new("Foot_US", kUsFoot);
  ko_linunit *same = ko_linunit_new("FOOT US", kUsFoot + 4e-15);
  // The tolerance is 2^-48 (1 + mean magnitude): about 4.6e-15 here.
  ko_linunit *off = ko_linunit_new("Foot_US", kUsFoot + 1e-14);
  ko_linunit *other = ko_linunit_new("Foot", kUsFoot);
  ko_angunit *angle = ko_angunit_new("Foot_US", kUsFoot);
  ko_unit *generic = ko_unit_new("Foot_US", kUsFoot);
  ko_areaunit *area = ko_areaunit_new("Foot_US", kUsFoot);
  EXPECT_EQ(ko_linunit_eq(a, same), 1);
  EXPECT_EQ(ko_linunit_eq(a, off), 0);
  EXPECT_EQ(ko_linunit_eq(a, other), 0);
  EXPECT_EQ(ko_object_eq(a, angle), 0);
  EXPECT_EQ(ko_unit_eq(reinterpret_cast<ko_unit *>(a), reinterpret_cast<ko_unit *>(angle)), 0);
  EXPECT_EQ(ko_unit_type(generic), KO_TYPE_LINUNIT);
  EXPECT_EQ(ko_object_eq(a, generic), 1);
  EXPECT_EQ(ko_object_eq(a, area), 0);
  EXPECT_EQ(ko_linunit_eq(a, nullptr), 0);
  EXPECT_EQ(ko_linunit_eq(nullptr, nullptr), 0);
  for (void *u : {(void *)a, (void *)same, (void *)off, (void *)other, (void *)angle,
                  (void *)generic, (void *)area})
    ko_object_del(u);
}

TEST(UnitClone, KeepsTypeTextsCodesAndAuthority) {
  ko_unit *generic = ko_unit_ext_new("Furlong", "furlong", "furlongs", "fur", 201.168);
  ASSERT_EQ(ko_unit_type(generic), KO_TYPE_UNIT);
  ko_unit_set_refcode(generic, 7);
  ko_object_code_set(generic, 123, 456, 0, 3, "EPSG", "10.0");
  ko_unit *copy = static_cast<ko_unit *>(ko_object_clone(generic));
  ASSERT_NE(copy, nullptr);
  EXPECT_EQ(ko_unit_type(copy), KO_TYPE_UNIT);
  EXPECT_EQ(ko_unit_eq(generic, copy), 1);
  EXPECT_EQ(ko_unit_refcode(copy), 7u);
  EXPECT_EQ(ko_object_code_internal(copy), 123);
  EXPECT_EQ(ko_object_code(copy), 456);
  EXPECT_EQ(ko_object_dbid(copy), 3u);
  ko_uchar a[KO_UNIT_DISPNAME_SIZE], b[KO_UNIT_DISPNAME_SIZE];
  EXPECT_EQ(utf16(ko_unit_plural(copy, a)), utf16(ko_unit_plural(generic, b)));
  EXPECT_EQ(utf16(ko_unit_abbreviation(copy, a)), u"fur");
  EXPECT_NE(ko_unit_authority(copy), nullptr);
  ko_unit_del(generic);
  ko_unit_del(copy);
}

TEST(UnitClone, TypedCloneRefusesOtherKinds) {
  ko_angunit *a = ko_angunit_new("Degree", kPi / 180.0);
  EXPECT_EQ(ko_linunit_clone(reinterpret_cast<ko_linunit *>(a)), nullptr);
  EXPECT_EQ(ko_areaunit_del(reinterpret_cast<ko_areaunit *>(a)), nullptr);
  EXPECT_EQ(ko_angunit_p(a), 1) << "a delete of the wrong kind leaves the unit alone";
  ko_angunit *c = ko_angunit_clone(a);
  EXPECT_EQ(ko_angunit_eq(a, c), 1);
  ko_angunit_del(a);
  ko_angunit_del(c);
}

TEST(UnitRegistry, EachKindHasItsObjvec) {
  EXPECT_EQ(ko_object_vector(KO_TYPE_LINUNIT), &ko_linunit_objvec);
  EXPECT_EQ(ko_object_vector(KO_TYPE_ANGUNIT), &ko_angunit_objvec);
  EXPECT_EQ(ko_object_vector(KO_TYPE_SCALEUNIT), &ko_scaleunit_objvec);
  EXPECT_EQ(ko_object_vector(KO_TYPE_AREAUNIT), &ko_areaunit_objvec);
  EXPECT_EQ(ko_object_vector(KO_TYPE_UNIT), &ko_unit_objvec);
  EXPECT_EQ(ko_unit_objvec.type, KO_TYPE_UNIT);
}

TEST(UnitNoObject, NullAndStalePointersAreHarmless) {
  ko::test::Ghost ghost;
  for (void *p : {static_cast<void *>(nullptr), ghost.ptr()}) {
    auto *u = static_cast<ko_linunit *>(p);
    EXPECT_EQ(ko_linunit_p(u), 0);
    EXPECT_EQ(ko_linunit_factor(u), 0.0);
    EXPECT_EQ(ko_linunit_refcode(u), 0u);
    ko_linunit_set_refcode(u, 5);
    EXPECT_EQ(ko_linunit_clone(u), nullptr);
    EXPECT_EQ(ko_linunit_del(u), nullptr);
    EXPECT_EQ(ko_linunit_eq(u, u), 0);
    ko_uchar buf[KO_UNIT_DISPNAME_SIZE] = {'x', 0};
    EXPECT_EQ(ko_linunit_display_name(u, buf), buf);
    EXPECT_EQ(buf[0], 0);
    EXPECT_EQ(ko_unit_factor(static_cast<ko_unit *>(p)), 0.0);
  }
  EXPECT_TRUE(ghost.untouched());
  EXPECT_EQ(ko_linunit_display_name(nullptr, nullptr), nullptr);
}

// ---------------------------------------------------------------------------
// Failed allocations leave nothing behind.

TEST(UnitMemory, ConstructorsAndClonesCleanUp) {
  ASSERT_TRUE(ko::test::installed());
  using Maker = void *(*)();
  const Maker makers[] = {
      [] { return static_cast<void *>(ko_linunit_ext_new("Foot", "foot", "feet", "ft", 0.3048)); },
      [] { return static_cast<void *>(ko_angunit_new_code(9102)); },
      [] { return static_cast<void *>(ko_scaleunit_new_name("unity")); },
      [] { return static_cast<void *>(ko_areaunit_new("Acre", 4046.8564224)); },
      [] { return static_cast<void *>(ko_unit_new("Meter", 1.0)); },
      [] { return static_cast<void *>(ko_unit_new_code(9001)); },
  };
  for (Maker make : makers) {
    long allocations = ko::test::sweep_failures([make] {
      void *u = make();
      if (u == nullptr) return false;
      ko_object_del(u);
      return true;
    });
    EXPECT_GT(allocations, 0);
  }
  ko_err err{};
  EXPECT_GT(ko::test::sweep_failures([&err] {
              ko_linunit *u = ko_linunit_new_errext("Meter", 1.0, &err);
              if (u == nullptr) {
                expect_report(err, Report{4, 1, 1, "ko_linunit_ext_new_errext", "Meter"});
                return false;
              }
              ko_linunit_del(u);
              return true;
            }),
            0);
  ko_unit *src = ko_unit_ext_new("Furlong", "furlong", nullptr, nullptr, 201.168);
  ko_object_code_set(src, 1, 2, 0, 0, "EPSG", "");
  ASSERT_NE(ko_unit_authority(src), nullptr);
  EXPECT_GT(ko::test::clone_sweep(src, ko_unit_clone, ko_unit_del), 1);
  ko_unit_del(src);
}

}  // namespace
