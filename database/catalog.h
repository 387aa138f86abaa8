// Internal interfaces of the compiled-in catalogue: the record layouts'
// size checks, the by-name synonym indexes and the searches the lookup
// files share.  Not installed.
#pragma once

#include "ko.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>

// The record layouts are part of the exported data: fixed sizes on the
// 64-bit platforms the library supports.
static_assert(sizeof(ko_db_tbl) == 32);
static_assert(sizeof(ko_db_list) == 16);
static_assert(sizeof(ko_db_name_rec) == 8);
static_assert(sizeof(ko_db_geogcs_rec) == 32);
static_assert(sizeof(ko_db_projcs_rec) == 40);
static_assert(sizeof(ko_db_vertcs_rec) == 32);
static_assert(sizeof(ko_db_gxyzcs_rec) == 24);
static_assert(sizeof(ko_db_hvcoordsys_rec) == 24);
static_assert(sizeof(ko_db_datum_rec) == 272);
static_assert(sizeof(ko_db_geogtran_rec) == 48);
static_assert(sizeof(ko_db_verttran_rec) == 64);
static_assert(sizeof(ko_db_angunit_rec) == 48);
static_assert(sizeof(ko_db_linunit_rec) == 56);
static_assert(sizeof(ko_db_primem_rec) == 24);
static_assert(sizeof(ko_db_spheroid_rec) == 32);
static_assert(sizeof(ko_db_method_rec) == 16);
static_assert(sizeof(ko_db_extent_rec) == 48);
static_assert(sizeof(ko_db_parm_rec) == 16);
static_assert(sizeof(ko_db_synonym_rec) == 32);
static_assert(sizeof(ko_db_text_rec) == 16);
static_assert(sizeof(ko_db_version_rec) == 24);
static_assert(sizeof(ko_db_areacode_rec) == 12);
static_assert(sizeof(ko_db_areainfo_rec) == 24);
static_assert(sizeof(ko_db_pair_rec) == 8);
static_assert(sizeof(ko_db_gcsvcs_rec) == 16);
static_assert(sizeof(ko_db_ensemble_rec) == 24);
static_assert(sizeof(ko_db_epoch_rec) == 16);
static_assert(sizeof(ko_db_range_rec) == 16);
static_assert(sizeof(ko_db_ranges) == 24);
static_assert(sizeof(ko_db_builtin_entry) == 128);

// Every data record except the extent's begins with its name and code, so
// that one binary search serves all data tables.
inline constexpr std::size_t kDataCodeOffset = 8;
static_assert(offsetof(ko_db_geogcs_rec, code) == kDataCodeOffset);
static_assert(offsetof(ko_db_projcs_rec, code) == kDataCodeOffset);
static_assert(offsetof(ko_db_vertcs_rec, code) == kDataCodeOffset);
static_assert(offsetof(ko_db_gxyzcs_rec, code) == kDataCodeOffset);
static_assert(offsetof(ko_db_hvcoordsys_rec, code) == kDataCodeOffset);
static_assert(offsetof(ko_db_datum_rec, code) == kDataCodeOffset);
static_assert(offsetof(ko_db_geogtran_rec, code) == kDataCodeOffset);
static_assert(offsetof(ko_db_verttran_rec, code) == kDataCodeOffset);
static_assert(offsetof(ko_db_angunit_rec, code) == kDataCodeOffset);
static_assert(offsetof(ko_db_linunit_rec, code) == kDataCodeOffset);
static_assert(offsetof(ko_db_primem_rec, code) == kDataCodeOffset);
static_assert(offsetof(ko_db_spheroid_rec, code) == kDataCodeOffset);
static_assert(offsetof(ko_db_method_rec, code) == kDataCodeOffset);

namespace ko::catalog {

// Per type, two indexes generated with the tables: the synonym records
// by the code of the object they name (then authority, the primary
// spelling first), and the data records by name with ASCII case folded
// (the order of ko_strcmp_i).
struct SynonymOwner {
  int32_t code;
  uint32_t position;
};
struct TypeIndex {
  uint32_t type;
  const SynonymOwner *synonyms_by_owner;
  const uint32_t *data_by_name;
};
extern const TypeIndex kTypeIndex[];
const TypeIndex *type_index(uint32_t type);

// Name-key comparison: ASCII case folded, white space and ( ) - / \ _
// skipped, bytes compared unsigned; the order the generator sorts
// synonyms in.  Negative, zero or positive as a sorts before b.
int compare_name_keys(const char *a, const char *b);

// The records of a table as a span of T (empty for a null table).
template <class T>
std::span<const T> records(const ko_db_tbl *tbl) {
  if (tbl == nullptr || tbl->recs == nullptr || tbl->count <= 0) return {};
  return {static_cast<const T *>(tbl->recs), static_cast<std::size_t>(tbl->count)};
}
template <class T>
std::span<const T> records(const ko_db_list *list) {
  if (list == nullptr || list->recs == nullptr) return {};
  return {static_cast<const T *>(list->recs), static_cast<std::size_t>(list->count)};
}

// First record whose key equals `key` in records sorted by key; null when
// the key lies outside the table's first..last keys (no search then).
template <class T, class Key>
const T *find_first(std::span<const T> recs, int32_t key, Key key_of) {
  if (recs.empty() || key < key_of(recs.front()) || key > key_of(recs.back())) return nullptr;
  std::size_t lo = 0;
  std::size_t hi = recs.size();
  while (lo < hi) {
    std::size_t mid = lo + (hi - lo) / 2;
    if (key_of(recs[mid]) < key)
      lo = mid + 1;
    else
      hi = mid;
  }
  return lo < recs.size() && key_of(recs[lo]) == key ? &recs[lo] : nullptr;
}

// Name and code of a data record (every data table but the extent's).
inline const char *data_record_name(const void *rec) {
  const char *name;
  std::memcpy(&name, rec, sizeof name);
  return name;
}
inline int32_t data_record_code(const void *rec) {
  int32_t code;
  std::memcpy(&code, static_cast<const unsigned char *>(rec) + kDataCodeOffset, sizeof code);
  return code;
}

// The registry row of the type, as ko_db_builtin_data_find.
const ko_db_builtin_entry *row_of(uint32_t type);

// Slot of a library parameter code in the parameter array, from the
// parameter list's catalogue records; -1 when the code has none.
int parameter_slot(int32_t code);

}  // namespace ko::catalog
