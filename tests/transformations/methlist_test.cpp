// The method list and the method object: the published table of the
// eighteen methods (order, codes, names, return types, flags, empty slots),
// lookups by code, name (through the EPSG synonyms) and index, method
// objects from codes and names with their exact reports, the slot getters,
// defaults and validity, and clean failure when memory runs out.
#include "support/failing_alloc.h"
#include "tests/objects/object_support.h"
#include "tests/transformations/frame_support.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

namespace {

using ko::test::Obj;

struct MethodRow {
  const ko_methlist_entry *vector;
  int32_t code;
  const char *name;
  int rtn;
  bool needs_file, height_aware, is_no_op;
  const char *empty_slots;  // digits of the empty slots among 4, 5, 8, 9, 10 ("a" for 10)
};

// The method table as published with the library's method list.
const MethodRow kTable[] = {
    {&ko_mth_bursa_wolf_vector, 109607, "Bursa_Wolf", 1, false, true, false, "589a"},
    {&ko_mth_coordinate_frame_vector, 9607, "Coordinate_Frame", 1, false, true, false, "589a"},
    {&ko_mth_geocon_vector, 109614, "GEOCON", 1, true, true, false, ""},
    {&ko_mth_geocentric_translation_vector, 9603, "Geocentric_Translation", 1, false, true, false,
     "4589a"},
    {&ko_mth_geographic_2d_offset_vector, 9619, "Geographic_2D_Offset", 1, false, false, false,
     "4589a"},
    {&ko_mth_harn_vector, 109613, "HARN", 1, true, false, false, ""},
    {&ko_mth_longitude_rotation_vector, 9601, "Longitude_Rotation", 1, false, false, true,
     "4589a"},
    {&ko_mth_molodensky_vector, 9604, "Molodensky", 1, false, true, false, "4589a"},
    {&ko_mth_molodensky_abridged_vector, 9605, "Molodensky_Abridged", 1, false, true, false,
     "4589a"},
    {&ko_mth_molodensky_badekas_vector, 9636, "Molodensky_Badekas", 1, false, true, false,
     "589a"},
    {&ko_mth_nadcon_vector, 9613, "NADCON", 1, true, false, false, ""},
    {&ko_mth_nadcon5_vector, 109615, "NADCON5", 1, true, true, false, ""},
    {&ko_mth_ntv2_vector, 9615, "NTv2", 1, true, false, false, ""},
    {&ko_mth_null_vector, 109600, "Null", 1, false, false, true, "4589a"},
    {&ko_mth_position_vector_vector, 9606, "Position_Vector", 1, false, true, false, "589a"},
    {&ko_mth_time_based_helmert_coordinate_frame_vector, 109617,
     "Time_Based_Helmert_Coordinate_Frame", 2, false, true, false, "589a"},
    {&ko_mth_time_based_helmert_position_vector_vector, 109616,
     "Time_Based_Helmert_Position_Vector", 2, false, true, false, "589a"},
    {&ko_mth_unit_change_vector, 109601, "Unit_Change", 1, false, false, true, "4589a"},
};

bool listed_empty(const MethodRow &row, char slot) {
  return std::strchr(row.empty_slots, slot) != nullptr;
}

TEST(MethodList, MatchesThePublishedTableInOrder) {
  ASSERT_EQ(ko_methlist_tbl_cnt, 18);
  EXPECT_EQ(ko_methlist_count(), 18);
  EXPECT_EQ(ko_methlist_tbl[18], nullptr);
  EXPECT_EQ(sizeof(ko_methlist_entry), 11 * 8u);
  for (int i = 0; i < 18; ++i) {
    const MethodRow &row = kTable[i];
    const ko_methlist_entry *e = ko_methlist_tbl[i];
    SCOPED_TRACE(row.name);
    EXPECT_EQ(e, row.vector);
    EXPECT_EQ(ko_methlist_from_indx(i), e);
    EXPECT_EQ(ko_methlist_get_code(e), row.code);
    EXPECT_STREQ(ko_methlist_get_name(e), row.name);
    EXPECT_EQ(ko_methlist_get_rtn_type(e), row.rtn);
    EXPECT_EQ(ko_methlist_get_time_based(e), row.rtn == 2 ? 1 : 0);
    EXPECT_EQ(ko_methlist_get_needs_file(e), row.needs_file ? 1 : 0);
    EXPECT_EQ(ko_methlist_get_height_aware(e), row.height_aware ? 1 : 0);
    EXPECT_EQ(ko_methlist_get_is_no_op(e), row.is_no_op ? 1 : 0);
    // The flag word's byte layout: return type, then bits 8, 10 and 12.
    const uint32_t want_flags = static_cast<uint32_t>(row.rtn) | (row.needs_file ? 0x100u : 0u) |
                                (row.height_aware ? 0x400u : 0u) | (row.is_no_op ? 0x1000u : 0u);
    EXPECT_EQ(ko_methlist_get_flags(e), want_flags);
    // Slots 2, 3, 6 and 7 are present in every method.
    EXPECT_NE(ko_methlist_get_forward(e), nullptr);
    EXPECT_NE(ko_methlist_get_inverse(e), nullptr);
    EXPECT_NE(ko_methlist_get_dfltsfunc(e), nullptr);
    EXPECT_NE(ko_methlist_get_validfunc(e), nullptr);
    EXPECT_EQ(ko_methlist_get_constfunc(e) == nullptr, listed_empty(row, '4'));
    EXPECT_EQ(ko_methlist_get_unloadfunc(e) == nullptr, listed_empty(row, '5'));
    EXPECT_EQ(ko_methlist_get_usablefunc(e) == nullptr, listed_empty(row, '8'));
    EXPECT_EQ(ko_methlist_get_filefunc(e) == nullptr, listed_empty(row, '9'));
    EXPECT_EQ(ko_methlist_get_interpfunc(e) == nullptr, listed_empty(row, 'a'));
  }
}

TEST(MethodList, LooksUpByCodeNameAndIndex) {
  for (const MethodRow &row : kTable) {
    EXPECT_EQ(ko_methlist_from_code(row.code), row.vector) << row.name;
    EXPECT_EQ(ko_methlist_from_name(row.name), row.vector) << row.name;
  }
  EXPECT_EQ(ko_methlist_from_code(0), nullptr);
  EXPECT_EQ(ko_methlist_from_code(-9606), nullptr);
  EXPECT_EQ(ko_methlist_from_code(9602), nullptr);
  EXPECT_EQ(ko_methlist_from_indx(-1), nullptr);
  EXPECT_EQ(ko_methlist_from_indx(18), nullptr);

  // Case does not matter; EPSG's names map through the synonym table.
  const struct {
    const char *name;
    const ko_methlist_entry *want;
  } names[] = {
      {"ntv2", &ko_mth_ntv2_vector},
      {"MOLODENSKY_BADEKAS", &ko_mth_molodensky_badekas_vector},
      {"Position Vector transformation (geog2D domain)", &ko_mth_position_vector_vector},
      {"Coordinate Frame rotation (geocentric domain)", &ko_mth_coordinate_frame_vector},
      {"Geocentric translations (geog2D domain)", &ko_mth_geocentric_translation_vector},
      {"Time-dependent Position Vector tfm (geog2D)",
       &ko_mth_time_based_helmert_position_vector_vector},
      {"Helmert", nullptr},
      {"", nullptr},
      {nullptr, nullptr},
  };
  for (const auto &c : names)
    EXPECT_EQ(ko_methlist_from_name(c.name), c.want) << (c.name ? c.name : "(null)");
}

TEST(MethodList, MethodObjectsFromCodeAndName) {
  ko_err err = ko::test::stale_record();
  Obj<ko_method> by_code(ko_methlist_method_from_code(9615, &err));
  ASSERT_NE(by_code, nullptr);
  ko::test::expect_no_report(err);
  char name[KO_NAME_SIZE];
  EXPECT_STREQ(ko_method_name(by_code.get(), name), "NTv2");
  EXPECT_EQ(ko_method_status(by_code.get()), KO_STATUS_CODE);
  EXPECT_EQ(ko_object_code_internal(by_code.get()), 9615);
  EXPECT_EQ(ko_object_code_external(by_code.get()), 9615);
  EXPECT_EQ(ko_method_code(by_code.get()), 9615);

  Obj<ko_method> by_name(
      ko_methlist_method_from_name("Coordinate Frame rotation (geog2D domain)", &err));
  ASSERT_NE(by_name, nullptr);
  EXPECT_STREQ(ko_method_name(by_name.get(), name), "Coordinate_Frame");
  EXPECT_EQ(ko_method_status(by_name.get()), KO_STATUS_STRING);
  EXPECT_EQ(ko_method_code(by_name.get()), 9607);
}

TEST(MethodList, UnknownCodesAndNamesAreReportedExactly) {
  ko_err err{};
  EXPECT_EQ(ko_methlist_method_from_code(4242, &err), nullptr);
  ko::test::expect_report(err, {KO_SEV_ERROR, KO_ERRCAT_DBCONTENT, 215,
                                "ko_methlist_method_from_code", "4242"});
  EXPECT_EQ(ko_methlist_method_from_code(0, &err), nullptr);
  ko::test::expect_report(err, {KO_SEV_ERROR, KO_ERRCAT_DBCONTENT, 215,
                                "ko_methlist_method_from_code", "0"});
  EXPECT_EQ(ko_methlist_method_from_name("Helmert", &err), nullptr);
  ko::test::expect_report(err, {KO_SEV_ERROR, KO_ERRCAT_ARGUMENT, 305,
                                "ko_methlist_method_from_name", "Helmert"});
  // The constructor by name only warns, and makes nothing.
  EXPECT_EQ(ko_method_new_errext("Helmert", &err), nullptr);
  ko::test::expect_report(err, {KO_SEV_WARNING, KO_ERRCAT_ARGUMENT, 305, "ko_method_new_errext",
                                "Helmert"});
  EXPECT_EQ(ko_method_new_errext(nullptr, &err), nullptr);
  // An empty message text reads as the number's own text.
  ko::test::expect_report(err, {KO_SEV_WARNING, KO_ERRCAT_ARGUMENT, 305, "ko_method_new_errext",
                                "Invalid method name argument"});
  EXPECT_EQ(ko_method_new("Helmert"), nullptr);
}

TEST(MethodObject, SlotGettersFollowTheCode) {
  for (const MethodRow &row : kTable) {
    Obj<ko_method> m(ko_method_new(row.name));
    ASSERT_NE(m, nullptr) << row.name;
    EXPECT_TRUE(ko_method_p(m.get()));
    EXPECT_EQ(ko_method_forward(m.get()), row.vector->forward) << row.name;
    EXPECT_EQ(ko_method_inverse(m.get()), row.vector->inverse) << row.name;
    EXPECT_EQ(ko_method_constfunc(m.get()), row.vector->constfunc) << row.name;
    EXPECT_EQ(ko_method_unloadfunc(m.get()), row.vector->unloadfunc) << row.name;
    EXPECT_EQ(ko_method_interpfunc(m.get()), row.vector->interpfunc) << row.name;
    EXPECT_EQ(ko_method_rtn_type(m.get()), row.rtn) << row.name;
    EXPECT_EQ(ko_method_needs_file(m.get()), row.needs_file ? 1 : 0) << row.name;
    EXPECT_EQ(ko_method_height_aware(m.get()), row.height_aware ? 1 : 0) << row.name;
  }
  // Not a method: a parameter, a deleted object, null.
  Obj<ko_parameter> p(ko_parameter_new("X_Axis_Translation", 1.0));
  ko::test::Ghost ghost;
  for (const void *obj : {static_cast<const void *>(p.get()),
                          static_cast<const void *>(ghost.ptr()),
                          static_cast<const void *>(nullptr)}) {
    const auto *m = static_cast<const ko_method *>(obj);
    EXPECT_FALSE(ko_method_p(m));
    EXPECT_EQ(ko_method_forward(m), nullptr);
    EXPECT_EQ(ko_method_constfunc(m), nullptr);
    EXPECT_EQ(ko_method_rtn_type(m), 0);
    EXPECT_EQ(ko_method_height_aware(m), 0);
  }
  EXPECT_TRUE(ghost.untouched());
}

TEST(MethodObject, EqualityCloneAndGenericDispatch) {
  Obj<ko_method> pv(ko_method_new("Position_Vector"));
  Obj<ko_method> pv2(ko_methlist_method_from_code(9606, nullptr));
  Obj<ko_method> cf(ko_method_new("Coordinate_Frame"));
  EXPECT_EQ(ko_method_eq(pv.get(), pv2.get()), 1);
  EXPECT_EQ(ko_method_eq(pv.get(), cf.get()), 0);
  EXPECT_EQ(ko_method_eq(pv.get(), nullptr), 0);
  EXPECT_EQ(ko_object_eq(pv.get(), pv2.get()), 1);
  EXPECT_EQ(ko_object_vector(KO_TYPE_METHOD), &ko_method_objvec);

  ko_object_code_set(pv.get(), 9606, 9606, 0, 7, "EPSG", "10.076");
  ko_object_status_set(pv.get(), KO_STATUS_CODE | KO_STATUS_USER);
  Obj<ko_method> copy(static_cast<ko_method *>(ko_object_clone(pv.get())));
  ASSERT_NE(copy, nullptr);
  EXPECT_NE(copy.get(), pv.get());
  EXPECT_EQ(ko_method_eq(copy.get(), pv.get()), 1);
  EXPECT_EQ(ko_method_status(copy.get()), KO_STATUS_CODE | KO_STATUS_USER);
  EXPECT_EQ(ko_method_dbid(copy.get()), 7u);
  char auth[KO_NAME_SIZE];
  EXPECT_STREQ(ko_authority_authname(ko_method_authority(copy.get()), auth), "EPSG");
  EXPECT_EQ(ko_method_forward(copy.get()), ko_mth_position_vector_vector.forward);
  EXPECT_EQ(ko_method_del(nullptr), nullptr);
  EXPECT_EQ(ko_method_clone(nullptr), nullptr);
}

TEST(MethodObject, DefaultsClearTheSlotsThenFillTheMethodsParameters) {
  struct Case {
    const char *method;
    int made;
    int32_t first_code;  // code in the lowest filled slot
  } cases[] = {
      {"Position_Vector", 7, 100040},
      {"Coordinate_Frame", 7, 100040},
      {"Geocentric_Translation", 3, 100040},
      {"Molodensky_Badekas", 10, 100040},
      {"Time_Based_Helmert_Position_Vector", 15, 100040},
      {"Geographic_2D_Offset", 2, 100051},
      {"NTv2", 1, KO_PARM_CODE_DATASET},
      {"Null", 0, 0},
      {"Unit_Change", 0, 0},
  };
  for (const Case &c : cases) {
    SCOPED_TRACE(c.method);
    Obj<ko_method> m(ko_method_new(c.method));
    // Slots the caller still owns elsewhere: cleared, not deleted.
    Obj<ko_parameter> held(ko_parameter_new("Z_Axis_Rotation", 3.0));
    ko::test::Slots slots{};
    slots.fill(held.get());
    EXPECT_EQ(ko_method_defaults(m.get(), slots.data()), c.made);
    int filled = 0;
    int32_t first = 0;
    for (ko_parameter *p : slots) {
      EXPECT_NE(p, held.get());
      if (p == nullptr) continue;
      if (filled++ == 0) first = ko_object_code_internal(p);
      EXPECT_EQ(ko_parameter_value(p), ko_parmlist_default_from_code(ko_object_code_internal(p)));
    }
    EXPECT_EQ(filled, c.made);
    EXPECT_EQ(first, c.first_code);
    EXPECT_TRUE(ko_parameter_p(held.get()));
    // The defaults make a valid parameter set for the methods that need no
    // file name.
    if (c.first_code != KO_PARM_CODE_DATASET) {
      EXPECT_EQ(ko_method_valid(slots.data(), "t", ko_method_code(m.get()), nullptr), 1);
    }
    ko::test::delete_slots(slots);
  }
  ko::test::Slots slots{};
  EXPECT_EQ(ko_method_defaults(nullptr, slots.data()), 0);
}

TEST(MethodObject, ValidityReportsExactly) {
  ko::test::Slots slots{};
  ko_err err = ko::test::stale_record();
  EXPECT_EQ(ko_method_valid(nullptr, "T", 9606, &err), 0);
  ko::test::expect_report(err, {KO_SEV_ERROR, KO_ERRCAT_ARGUMENT, 330, "ko_method_valid", "T"});
  // Code 0 or below: nothing to check.
  EXPECT_EQ(ko_method_valid(slots.data(), "T", 0, &err), 1);
  ko::test::expect_no_report(err);
  EXPECT_EQ(ko_method_valid(slots.data(), "T", -5, &err), 1);
  EXPECT_EQ(ko_method_valid(slots.data(), "T", 4242, &err), 0);
  ko::test::expect_report(err, {KO_SEV_ERROR, KO_ERRCAT_ARGUMENT, 350, "ko_method_valid", "4242"});
  // The method's own check: the first missing parameter, by name, with the
  // transformation's name as the source.
  EXPECT_EQ(ko_method_valid(slots.data(), "OSGB36 to WGS 84", 9606, &err), 0);
  ko::test::expect_report(err, {KO_SEV_ERROR, KO_ERRCAT_ARGUMENT, 347, "OSGB36 to WGS 84",
                                "X_Axis_Translation"});
  // Coordinate_Frame asks Bursa_Wolf's check, which asks for the same.
  EXPECT_EQ(ko_method_valid(slots.data(), "T", 9607, &err), 0);
  EXPECT_STREQ(err.message, "X_Axis_Translation");
  // A grid method wants its file.
  EXPECT_EQ(ko_method_valid(slots.data(), "T", 9615, &err), 0);
  EXPECT_STREQ(err.message, "Dataset_");
  // The no-op methods accept anything.
  ko::test::Slots extra = ko::test::make_slots({{"X_Axis_Translation", 5.0}});
  for (int32_t code : {109600, 109601, 9601}) {
    EXPECT_EQ(ko_method_valid(extra.data(), "T", code, &err), 1) << code;
    ko::test::expect_no_report(err);
  }
  ko::test::delete_slots(extra);
}

TEST(MethodObject, ConstructorsLeaveNothingBehindWhenMemoryRunsOut) {
  ASSERT_TRUE(ko::test::installed());
  const auto made = [](ko_method *m) {
    const bool ok = m != nullptr;
    ko_method_del(m);
    return ok;
  };
  EXPECT_GE(ko::test::sweep_failures([&] { return made(ko_method_new("NTv2")); }), 1);
  EXPECT_GE(ko::test::sweep_failures(
                [&] { return made(ko_methlist_method_from_code(9606, nullptr)); }),
            1);
  EXPECT_GE(ko::test::sweep_failures(
                [&] { return made(ko_methlist_method_from_name("NADCON5", nullptr)); }),
            1);
  Obj<ko_method> source(ko_method_new("HARN"));
  ko_object_authority_set(source.get(), ko_authority_new("KO", 109613, "1"));
  EXPECT_GE(ko::test::sweep_failures([&] { return made(ko_method_clone(source.get())); }), 2);

  // Out of memory in the constructor by name is error 1, not the warning.
  ko_err err{};
  ko::test::fail_after(0);
  EXPECT_EQ(ko_method_new_errext("NTv2", &err), nullptr);
  ko::test::never_fail();
  ko::test::expect_report(err, {KO_SEV_ERROR, KO_ERRCAT_MEMORY, 1, "ko_method_new_errext", "NTv2"});
}

}  // namespace
