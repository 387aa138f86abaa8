// The vertical method list: its agreement with the catalogue, the lookups
// by code, name and index, the method object and the parameter check.
#include "ko.h"
#include "objects/systems_support.h"
#include "support/failing_alloc.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace {

using ko::test::expect_no_report;
using ko::test::expect_report;
using ko::test::name_of;
using ko::test::Report;
using ko::test::Slots;

TEST(Vtmethlist, FifteenEntriesInCodeOrderWithUniqueNames) {
  ASSERT_EQ(ko_vtmethlist_count(), 15);
  ASSERT_EQ(ko_vtmethlist_tbl_cnt, 15);
  EXPECT_EQ(ko_vtmethlist_tbl[15].code, 0);
  std::set<std::string> names;
  for (int i = 0; i < ko_vtmethlist_count(); ++i) {
    const ko_vtmethlist_entry *e = ko_vtmethlist_from_indx(i);
    ASSERT_NE(e, nullptr);
    if (i > 0) {
      EXPECT_LT(ko_vtmethlist_from_indx(i - 1)->code, e->code);
    }
    EXPECT_TRUE(names.insert(e->name).second) << e->name;
    EXPECT_EQ(ko_vtmethlist_from_code(e->code), e);
    EXPECT_EQ(ko_vtmethlist_from_name(e->name), e);
    // Every listed parameter is a vertical-transformation parameter.
    int listed = 0;
    for (; listed < KO_VTM_MAX_PARMS && e->parms[listed] != 0; ++listed) {
      const ko_parmlist_entry *row = ko_parmlist_from_code(e->parms[listed]);
      ASSERT_NE(row, nullptr) << e->name;
      EXPECT_NE(row->category & KO_PARM_CAT_VERTTRAN, 0u) << e->name << " " << row->name;
    }
    EXPECT_LE(e->required, listed) << e->name;
    // File methods take the file; others do not.
    bool takes_file = false;
    for (int32_t code : e->parms) takes_file = takes_file || code == KO_PARM_CODE_DATASET;
    EXPECT_EQ(takes_file, (e->flags & KO_VTM_NEEDS_FILE) != 0) << e->name;
  }
  EXPECT_EQ(ko_vtmethlist_from_indx(-1), nullptr);
  EXPECT_EQ(ko_vtmethlist_from_indx(15), nullptr);
}

// The catalogue's vertical methods and every method its vertical
// transformations name are in the list under the same code and name.
TEST(Vtmethlist, AgreesWithTheCatalogue) {
  const auto *methods = static_cast<const ko_db_method_rec *>(ko_obj_vtmethod_data_tbl.recs);
  ASSERT_GT(ko_obj_vtmethod_data_tbl.count, 0);
  for (int i = 0; i < ko_obj_vtmethod_data_tbl.count; ++i) {
    const ko_vtmethlist_entry *e = ko_vtmethlist_from_code(methods[i].code);
    ASSERT_NE(e, nullptr) << methods[i].code;
    EXPECT_STREQ(e->name, methods[i].name);
  }
  const auto *trans = static_cast<const ko_db_verttran_rec *>(ko_obj_verttran_data_tbl.recs);
  for (int i = 0; i < ko_obj_verttran_data_tbl.count; ++i)
    EXPECT_NE(ko_vtmethlist_from_code(trans[i].method), nullptr) << trans[i].name;
}

TEST(Vtmethlist, LookupsByCodeAndName) {
  struct Case {
    const char *name;
    int32_t code;
  } cases[] = {
      {"Vertical_Offset", 9616},
      {"vertical offset", 9616},
      {"Vertical Offset and Slope", 1046},
      {"Geographic3D to GravityRelatedHeight (EGM2008)", 9665},
      {"Geog3D to Geog2D+Depth (Gravsoft)", 1109},
      {"Vertical Offset by Grid Interpolation (VERTCON)", 1084},
      {"Null", 109700},
      {"Vertical_Offset_By_Velocity_Grid", 109706},
      {"Molodensky", 0},
      {"", 0},
  };
  for (const Case &c : cases) {
    SCOPED_TRACE(c.name);
    const ko_vtmethlist_entry *e = ko_vtmethlist_from_name(c.name);
    if (c.code == 0) {
      EXPECT_EQ(e, nullptr);
      continue;
    }
    ASSERT_NE(e, nullptr);
    EXPECT_EQ(e->code, c.code);
  }
  EXPECT_EQ(ko_vtmethlist_from_name(nullptr), nullptr);
  for (int32_t code : {0, -9616, 9615, 1000000}) EXPECT_EQ(ko_vtmethlist_from_code(code), nullptr);
}

TEST(Vtmethod, ObjectsFromCodeAndName) {
  ko_err err = ko::test::stale_record();
  ko_vtmethod *m = ko_vtmethlist_vtmethod_from_code(9665, &err);
  ASSERT_NE(m, nullptr);
  expect_no_report(err);
  EXPECT_EQ(name_of(m), "Geoid_Height_By_Grid");
  EXPECT_EQ(ko_vtmethod_code(m), 9665);
  EXPECT_EQ(ko_object_code_internal(m), 9665);
  EXPECT_EQ(ko_vtmethod_status(m), KO_STATUS_CODE);
  EXPECT_EQ(ko_vtmethod_entry(m), ko_vtmethlist_from_code(9665));
  EXPECT_EQ(ko_vtmethod_flags(m), ko_vtmethlist_from_code(9665)->flags);
  EXPECT_NE(ko_vtmethod_flags(m) & KO_VTM_ELLIPSOIDAL_SOURCE, 0u);

  ko_vtmethod *n =
      ko_vtmethlist_vtmethod_from_name("Geographic3D to GravityRelatedHeight (gtx)", &err);
  ASSERT_NE(n, nullptr);
  EXPECT_EQ(ko_vtmethod_status(n), KO_STATUS_STRING);
  EXPECT_EQ(ko_vtmethod_eq(m, n), 1);
  ko_vtmethod *o = ko_vtmethod_new("Vertical_Offset");
  EXPECT_EQ(ko_vtmethod_status(o), KO_STATUS_NEW);
  EXPECT_EQ(ko_vtmethod_eq(m, o), 0);

  ko_object_authority_set(o, ko_authority_new("EPSG", 9616, ""));
  ko_vtmethod *c = ko_vtmethod_clone(o);
  ASSERT_NE(c, nullptr);
  EXPECT_EQ(ko_vtmethod_eq(c, o), 1);
  EXPECT_EQ(ko_authority_authcode(ko_object_authority_const(c)), 9616);
  auto *generic = static_cast<ko_vtmethod *>(ko_object_clone(c));
  EXPECT_EQ(ko_object_eq(generic, m), 0);
  EXPECT_EQ(ko_object_eq(generic, o), 1);
  for (ko_vtmethod *x : {m, n, o, c, generic}) ko_vtmethod_del(x);
}

TEST(Vtmethod, UnknownCodesAndNames) {
  ko_err err{};
  EXPECT_EQ(ko_vtmethlist_vtmethod_from_code(9615, &err), nullptr);
  expect_report(err, Report{4, 4, 222, "ko_vtmethlist_vtmethod_from_code", "9615"});
  EXPECT_EQ(ko_vtmethlist_vtmethod_from_name("NTv2", &err), nullptr);
  expect_report(err, Report{4, 8, 307, "ko_vtmethlist_vtmethod_from_name", "NTv2"});
  EXPECT_EQ(ko_vtmethod_new_errext("NTv2", &err), nullptr);
  expect_report(err, Report{2, 8, 307, "ko_vtmethod_new_errext", "NTv2"});
  EXPECT_EQ(ko_vtmethod_new_vtmethlist(nullptr, &err), nullptr);
  expect_report(
      err, Report{4, 8, 343, "ko_vtmethod_new_vtmethlist", "Null or invalid vtmethod argument"});
}

TEST(Vtmethod, ParameterCheck) {
  struct Case {
    const char *label;
    int32_t code;
    int number;  // 0: valid
    const char *message;
  } cases[] = {
      {"offset", 9616, 0, nullptr},
      {"offset without value", 9616, 347, "Missing parameter: T: Vertical_Offset"},
      {"offset with a slope", 9616, 348, "Extra parameter: T: Inclination_North"},
      {"slope complete", 1046, 0, nullptr},
      {"slope without east inclination", 1046, 347, "Missing parameter: T: Inclination_East"},
      {"grid", 1084, 0, nullptr},
      {"grid with interpolation", 1084, 0, nullptr},
      {"grid without file", 1084, 347, "Missing parameter: T: Dataset_"},
      {"reversal", 1068, 0, nullptr},
      {"reversal with an offset", 1068, 348, "Extra parameter: T: Vertical_Offset"},
      {"geographic parameter", 9616, 348, "Extra parameter: T: X_Axis_Translation"},
      {"no method code", 0, 0, nullptr},
      {"unknown code", 9615, 351, "9615"},
  };
  for (const Case &c : cases) {
    SCOPED_TRACE(c.label);
    std::string label = c.label;
    Slots s;
    if (label.starts_with("offset") || label.starts_with("slope") ||
        label == "reversal with an offset" || label == "no method code" || label == "unknown code")
      if (label != "offset without value") s.put("Vertical_Offset", 0.3);
    if (label.starts_with("slope") || label == "offset with a slope")
      s.put("Inclination_North", 0.2);
    if (label.starts_with("slope")) {
      s.put("Latitude_Of_Evaluation", 52.0).put("Longitude_Of_Evaluation", 5.0);
      if (label == "slope complete") s.put("Inclination_East", -0.1);
    }
    if (label == "grid" || label == "grid with interpolation")
      s.put("Dataset_vertcon/vertconw.gtx", 0.0);
    if (label == "grid with interpolation") s.put("Interpolation_Type", 1.0);
    if (label == "geographic parameter") s.put("X_Axis_Translation", 10.0);
    ko_err err = ko::test::stale_record();
    int valid = ko_vtmethod_valid(s.data(), "T", c.code, &err);
    if (c.number == 0) {
      EXPECT_EQ(valid, 1);
      expect_no_report(err);
    } else {
      EXPECT_EQ(valid, 0);
      expect_report(err, Report{4, 8, c.number, "ko_vtmethod_valid", c.message});
    }
    s.del();
  }
  ko_err err{};
  EXPECT_EQ(ko_vtmethod_valid(nullptr, "T", 9616, &err), 0);
  expect_report(err, Report{4, 8, 330, "ko_vtmethod_valid", "T"});
}

TEST(VtmethodNoObject, NullAndStalePointers) {
  ko::test::Ghost ghost;
  for (void *p : {static_cast<void *>(nullptr), ghost.ptr()}) {
    auto *m = static_cast<ko_vtmethod *>(p);
    EXPECT_EQ(ko_vtmethod_p(m), 0);
    EXPECT_EQ(ko_vtmethod_entry(m), nullptr);
    EXPECT_EQ(ko_vtmethod_flags(m), 0u);
    EXPECT_EQ(ko_vtmethod_clone(m), nullptr);
    EXPECT_EQ(ko_vtmethod_eq(m, m), 0);
    EXPECT_EQ(ko_vtmethod_del(m), nullptr);
  }
  EXPECT_TRUE(ghost.untouched());
  EXPECT_EQ(ko_object_vector(KO_TYPE_VTMETHOD), &ko_vtmethod_objvec);
}

TEST(VtmethodMemory, ConstructorsAndCloneCleanUp) {
  ASSERT_TRUE(ko::test::installed());
  EXPECT_GE(ko::test::sweep_failures([] {
              ko_err err{};
              ko_vtmethod *m = ko_vtmethlist_vtmethod_from_code(1084, &err);
              if (m == nullptr) {
                expect_report(err, Report{4, 1, 1, "ko_vtmethlist_vtmethod_from_code",
                                          "Vertical_Offset_By_Grid"});
                return false;
              }
              ko_vtmethod_del(m);
              return true;
            }),
            1);
  ko_vtmethod *src = ko_vtmethod_new("Null");
  ko_object_authority_set(src, ko_authority_new("KO", 109700, ""));
  EXPECT_GE(ko::test::clone_sweep(src, ko_vtmethod_clone, ko_vtmethod_del), 2);
  ko_vtmethod_del(src);
}

}  // namespace
