// The list of transformation methods: the eighteen method vectors in a fixed
// order, their lookups by code, name and index, and the getters of their
// slots and flags.
#include "transformations/geogtran.h"

#include <iterator>

extern "C" {

const ko_methlist_entry *const ko_methlist_tbl[] = {
    &ko_mth_bursa_wolf_vector,
    &ko_mth_coordinate_frame_vector,
    &ko_mth_geocon_vector,
    &ko_mth_geocentric_translation_vector,
    &ko_mth_geographic_2d_offset_vector,
    &ko_mth_harn_vector,
    &ko_mth_longitude_rotation_vector,
    &ko_mth_molodensky_vector,
    &ko_mth_molodensky_abridged_vector,
    &ko_mth_molodensky_badekas_vector,
    &ko_mth_nadcon_vector,
    &ko_mth_nadcon5_vector,
    &ko_mth_ntv2_vector,
    &ko_mth_null_vector,
    &ko_mth_position_vector_vector,
    &ko_mth_time_based_helmert_coordinate_frame_vector,
    &ko_mth_time_based_helmert_position_vector_vector,
    &ko_mth_unit_change_vector,
    nullptr,
};

const int ko_methlist_tbl_cnt = static_cast<int>(std::size(ko_methlist_tbl)) - 1;

const ko_methlist_entry *ko_methlist_from_code(int32_t code) {
  if (code <= 0) return nullptr;
  for (const ko_methlist_entry *const *e = ko_methlist_tbl; *e != nullptr; ++e)
    if ((*e)->code == code) return *e;
  return nullptr;
}

// The name goes through the method synonyms first ("Position Vector
// transformation (geog2D domain)" is "Position_Vector").
const ko_methlist_entry *ko_methlist_from_name(const char *name) {
  if (name == nullptr || *name == '\0') return nullptr;
  char mapped[KO_NAME_SIZE];
  ko_synonym_lookup_by_syn(KO_TYPE_METHOD, name, nullptr, mapped);
  for (const ko_methlist_entry *const *e = ko_methlist_tbl; *e != nullptr; ++e)
    if (ko_strcmp_i((*e)->name, mapped) == 0) return *e;
  return nullptr;
}

const ko_methlist_entry *ko_methlist_from_indx(int i) {
  return (i >= 0 && i < ko_methlist_tbl_cnt) ? ko_methlist_tbl[i] : nullptr;
}

int ko_methlist_count(void) { return ko_methlist_tbl_cnt; }

ko_method *ko_methlist_method_from_code(int32_t code, ko_err *err) {
  ko_err_clear(err);
  const ko_methlist_entry *entry = ko_methlist_from_code(code);
  if (entry == nullptr) {
    ko_err_arg(err, KO_SEV_ERROR, KO_ERRCAT_DBCONTENT, 215, "ko_methlist_method_from_code", "d",
               code);
    return nullptr;
  }
  ko_method *m = ko_method_new_methlist(entry, err);
  ko_object_status_set(m, KO_STATUS_CODE);
  return m;
}

ko_method *ko_methlist_method_from_name(const char *name, ko_err *err) {
  ko_err_clear(err);
  const ko_methlist_entry *entry = ko_methlist_from_name(name);
  if (entry == nullptr) {
    ko::report_bad_argument(err, 305, "ko_methlist_method_from_name", name);
    return nullptr;
  }
  ko_method *m = ko_method_new_methlist(entry, err);
  ko_object_status_set(m, KO_STATUS_STRING);
  return m;
}

// Slots and flags.  The flag word's low byte is the return type; the second
// byte holds needs_file (bit 8), height_aware (bit 10) and is_no_op (bit 12).
int32_t ko_methlist_get_code(const ko_methlist_entry *e) { return e != nullptr ? e->code : 0; }
uint32_t ko_methlist_get_flags(const ko_methlist_entry *e) { return e != nullptr ? e->flags : 0; }
const char *ko_methlist_get_name(const ko_methlist_entry *e) {
  return e != nullptr ? e->name : nullptr;
}
ko_mth_fn ko_methlist_get_forward(const ko_methlist_entry *e) {
  return e != nullptr ? e->forward : nullptr;
}
ko_mth_fn ko_methlist_get_inverse(const ko_methlist_entry *e) {
  return e != nullptr ? e->inverse : nullptr;
}
ko_mth_constfunc ko_methlist_get_constfunc(const ko_methlist_entry *e) {
  return e != nullptr ? e->constfunc : nullptr;
}
ko_mth_unloadfunc ko_methlist_get_unloadfunc(const ko_methlist_entry *e) {
  return e != nullptr ? e->unloadfunc : nullptr;
}
ko_mth_dfltsfunc ko_methlist_get_dfltsfunc(const ko_methlist_entry *e) {
  return e != nullptr ? e->dfltsfunc : nullptr;
}
ko_mth_validfunc ko_methlist_get_validfunc(const ko_methlist_entry *e) {
  return e != nullptr ? e->validfunc : nullptr;
}
ko_mth_usablefunc ko_methlist_get_usablefunc(const ko_methlist_entry *e) {
  return e != nullptr ? e->usablefunc : nullptr;
}
ko_mth_filefunc ko_methlist_get_filefunc(const ko_methlist_entry *e) {
  return e != nullptr ? e->filefunc : nullptr;
}
ko_mth_interpfunc ko_methlist_get_interpfunc(const ko_methlist_entry *e) {
  return e != nullptr ? e->interpfunc : nullptr;
}
int ko_methlist_get_rtn_type(const ko_methlist_entry *e) {
  return static_cast<int>(ko_methlist_get_flags(e) & KO_MTH_RTN_MASK);
}
int ko_methlist_get_needs_file(const ko_methlist_entry *e) {
  return (ko_methlist_get_flags(e) & KO_MTH_NEEDS_FILE) != 0;
}
int ko_methlist_get_height_aware(const ko_methlist_entry *e) {
  return (ko_methlist_get_flags(e) & KO_MTH_HEIGHT_AWARE) != 0;
}
int ko_methlist_get_is_no_op(const ko_methlist_entry *e) {
  return (ko_methlist_get_flags(e) & KO_MTH_IS_NO_OP) != 0;
}
int ko_methlist_get_time_based(const ko_methlist_entry *e) {
  return (ko_methlist_get_rtn_type(e) & (KO_MTH_RTN_TIME_BASED | KO_MTH_RTN_ONE_GCS)) != 0;
}

}  // extern "C"
