// Lookups of the compiled-in catalogue: the registry, data records by code
// and by name, and the per-code tables (descriptions, symbolic constants,
// versions, areas, deprecation, axes, ensembles, epochs, exceptions,
// geographic/vertical/geocentric ties).  Every table is sorted by its
// first code, so each lookup is a binary search that does not start when
// the code lies outside the table.
#include "database/catalog.h"
#include "foundation/internal.h"

#include <cstring>

namespace {

using ko::catalog::find_first;
using ko::catalog::records;

bool ignored_in_names(unsigned char c) {
  return c == ' ' || (c >= '\t' && c <= '\r') || c == '(' || c == ')' || c == '-' ||
         c == '/' || c == '\\' || c == '_';
}

unsigned char fold(unsigned char c) {
  return (c >= 'A' && c <= 'Z') ? static_cast<unsigned char>(c - 'A' + 'a') : c;
}

// The code of the data record at `index` of a data table whose records
// begin with name and code (every data table but the extent's).
int32_t data_code(const ko_db_tbl *tbl, std::size_t index) {
  const auto *base = static_cast<const unsigned char *>(tbl->recs);
  int32_t code;
  std::memcpy(&code, base + index * static_cast<std::size_t>(tbl->size) + kDataCodeOffset,
              sizeof code);
  return code;
}

const char *data_name(const ko_db_tbl *tbl, std::size_t index) {
  const auto *base = static_cast<const unsigned char *>(tbl->recs);
  const char *name;
  std::memcpy(&name, base + index * static_cast<std::size_t>(tbl->size), sizeof name);
  return name;
}

const void *data_record(const ko_db_tbl *tbl, std::size_t index) {
  return static_cast<const unsigned char *>(tbl->recs) + index * static_cast<std::size_t>(tbl->size);
}

bool usable_data(const ko_db_tbl *tbl) {
  return tbl != nullptr && tbl->recs != nullptr && tbl->count > 0 &&
         tbl->size >= static_cast<int32_t>(kDataCodeOffset + sizeof(int32_t));
}

// Searches the name table with the signed difference of the hashes, as
// the catalogue's format prescribes: key minus record taken as a signed
// 32-bit number.  Where two hashes differ by 2^31 or more this order
// disagrees with the table's unsigned order and the search may miss; the
// caller's case-insensitive scan settles those names.
const ko_db_name_rec *search_name_hash(std::span<const ko_db_name_rec> names, uint32_t key) {
  std::ptrdiff_t lo = 0;
  std::ptrdiff_t hi = static_cast<std::ptrdiff_t>(names.size()) - 1;
  while (lo <= hi) {
    std::ptrdiff_t mid = lo + (hi - lo) / 2;
    auto diff = static_cast<int32_t>(key - names[static_cast<std::size_t>(mid)].hash);
    if (diff == 0) return &names[static_cast<std::size_t>(mid)];
    if (diff < 0)
      hi = mid - 1;
    else
      lo = mid + 1;
  }
  return nullptr;
}

// The record whose name equals `name` ignoring case.  Names are unique
// ignoring case (their hashes are), so at most one record matches and a
// binary search of the generated case-folded order finds the record a
// scan from the start would.
const void *find_name_ignoring_case(const ko_db_builtin_entry *row, const char *name) {
  const ko::catalog::TypeIndex *index = ko::catalog::type_index(row->type);
  auto count = static_cast<std::size_t>(row->data->count);
  if (index == nullptr || index->data_by_name == nullptr) {
    for (std::size_t i = 0; i < count; ++i)
      if (ko_strcmp_i(data_name(row->data, i), name) == 0) return data_record(row->data, i);
    return nullptr;
  }
  const uint32_t *order = index->data_by_name;
  std::size_t lo = 0;
  std::size_t hi = count;
  while (lo < hi) {
    std::size_t mid = lo + (hi - lo) / 2;
    if (ko_strcmp_i(data_name(row->data, order[mid]), name) < 0)
      lo = mid + 1;
    else
      hi = mid;
  }
  if (lo < count && ko_strcmp_i(data_name(row->data, order[lo]), name) == 0)
    return data_record(row->data, order[lo]);
  return nullptr;
}

// The first tie whose `column` holds code (0 means none and finds nothing).
const ko_db_gcsvcs_rec *scan_ties(const ko_db_builtin_entry *row, int32_t code,
                                  int32_t ko_db_gcsvcs_rec::*column) {
  if (row == nullptr || code == 0) return nullptr;
  for (const ko_db_gcsvcs_rec &rec : records<ko_db_gcsvcs_rec>(row->gcsvcs))
    if (rec.*column == code) return &rec;
  return nullptr;
}

template <class T>
const T *by_code(const ko_db_tbl *tbl, int32_t code) {
  return find_first(records<T>(tbl), code, [](const T &r) { return r.code; });
}

}  // namespace

namespace ko::catalog {

int compare_name_keys(const char *a, const char *b) {
  const auto *p = reinterpret_cast<const unsigned char *>(a);
  const auto *q = reinterpret_cast<const unsigned char *>(b);
  for (;;) {
    while (*p != 0 && ignored_in_names(*p)) ++p;
    while (*q != 0 && ignored_in_names(*q)) ++q;
    unsigned char x = fold(*p);
    unsigned char y = fold(*q);
    if (x != y) return x < y ? -1 : 1;
    if (x == 0) return 0;
    ++p;
    ++q;
  }
}

const TypeIndex *type_index(uint32_t type) {
  for (const TypeIndex *p = kTypeIndex; p->type != 0; ++p)
    if (p->type == type) return p;
  return nullptr;
}

const ko_db_builtin_entry *row_of(uint32_t type) {
  if (type == 0) return nullptr;
  for (const ko_db_builtin_entry *row = ko_db_builtin_registry; row->type != 0; ++row)
    if (row->type == type) return row;
  return nullptr;
}

int parameter_slot(int32_t code) {
  const ko_db_method_rec *rec = by_code<ko_db_method_rec>(&ko_obj_parameter_data_tbl, code);
  return rec != nullptr ? rec->slot : -1;
}

}  // namespace ko::catalog

extern "C" {

uint32_t ko_str_hashcode(const char *name) {
  uint32_t hash = 0;
  if (name == nullptr) return hash;
  for (const auto *p = reinterpret_cast<const unsigned char *>(name); *p != 0; ++p) {
    if (ignored_in_names(*p)) continue;
    hash = hash * 65599u + fold(*p);
  }
  return hash;
}

const ko_db_builtin_entry *ko_db_builtin_data_find(uint32_t type) {
  return ko::catalog::row_of(type);
}

const void *ko_db_builtin_data_lookup_code(const ko_db_tbl *data, int32_t code) {
  if (!usable_data(data)) return nullptr;
  auto count = static_cast<std::size_t>(data->count);
  if (code < data_code(data, 0) || code > data_code(data, count - 1)) return nullptr;
  std::size_t lo = 0;
  std::size_t hi = count;
  while (lo < hi) {
    std::size_t mid = lo + (hi - lo) / 2;
    int32_t found = data_code(data, mid);
    if (found == code) return data_record(data, mid);
    if (code < found)
      hi = mid;
    else
      lo = mid + 1;
  }
  return nullptr;
}

const ko_db_extent_rec *ko_db_builtin_extent_lookup_code(const ko_db_tbl *data, int32_t code) {
  if (data == nullptr || data->size != static_cast<int32_t>(sizeof(ko_db_extent_rec)))
    return nullptr;
  return by_code<ko_db_extent_rec>(data, code);
}

const void *ko_db_builtin_data_lookup_name(const ko_db_builtin_entry *row, const char *name) {
  if (row == nullptr || name == nullptr || !usable_data(row->data)) return nullptr;
  auto names = records<ko_db_name_rec>(row->name);
  if (!names.empty()) {
    const ko_db_name_rec *hit = search_name_hash(names, ko_str_hashcode(name));
    if (hit != nullptr) {
      const void *rec = ko_db_builtin_data_lookup_code(row->data, hit->code);
      if (rec != nullptr) return rec;
    }
  }
  return find_name_ignoring_case(row, name);
}

const ko_db_text_rec *ko_db_builtin_description_lookup(const ko_db_builtin_entry *row,
                                                       int32_t code) {
  return row != nullptr ? by_code<ko_db_text_rec>(row->description, code) : nullptr;
}

const ko_db_text_rec *ko_db_builtin_defstring_lookup_code(const ko_db_builtin_entry *row,
                                                          int32_t code) {
  return row != nullptr ? by_code<ko_db_text_rec>(row->defstring, code) : nullptr;
}

// Symbolic constants are looked up rarely (reading a constant's name back
// into its code), so a scan serves.
const ko_db_text_rec *ko_db_builtin_defstring_lookup_name(const ko_db_builtin_entry *row,
                                                          const char *text) {
  if (row == nullptr || text == nullptr || *text == '\0') return nullptr;
  for (const ko_db_text_rec &rec : records<ko_db_text_rec>(row->defstring))
    if (ko_strcmp_i(rec.text, text) == 0) return &rec;
  return nullptr;
}

const ko_db_areacode_rec *ko_db_builtin_areacode_lookup(const ko_db_builtin_entry *row,
                                                        int32_t code) {
  return row != nullptr ? by_code<ko_db_areacode_rec>(row->areacode, code) : nullptr;
}

const ko_db_areainfo_rec *ko_db_builtin_areainfo_lookup(const ko_db_builtin_entry *row,
                                                        int32_t area) {
  if (row == nullptr) return nullptr;
  return find_first(records<ko_db_areainfo_rec>(row->areainfo), area,
                    [](const ko_db_areainfo_rec &r) { return r.area; });
}

const ko_db_pair_rec *ko_db_builtin_deprecated_lookup(const ko_db_builtin_entry *row,
                                                      int32_t code) {
  return row != nullptr ? by_code<ko_db_pair_rec>(row->deprecated, code) : nullptr;
}

const ko_db_pair_rec *ko_db_builtin_codechange_lookup_old(const ko_db_builtin_entry *row,
                                                          int32_t old_code) {
  return row != nullptr ? by_code<ko_db_pair_rec>(row->codechange, old_code) : nullptr;
}

// The table is sorted by old code; several old codes may share a new one,
// and the first in the table answers.
const ko_db_pair_rec *ko_db_builtin_codechange_lookup_new(const ko_db_builtin_entry *row,
                                                          int32_t new_code) {
  if (row == nullptr) return nullptr;
  for (const ko_db_pair_rec &rec : records<ko_db_pair_rec>(row->codechange))
    if (rec.value == new_code) return &rec;
  return nullptr;
}

const ko_db_pair_rec *ko_db_builtin_axis_lookup(const ko_db_builtin_entry *row, int32_t code) {
  return row != nullptr ? by_code<ko_db_pair_rec>(row->axis, code) : nullptr;
}

const ko_db_ensemble_rec *ko_db_builtin_ensemble_lookup(const ko_db_builtin_entry *row,
                                                        int32_t code) {
  return row != nullptr ? by_code<ko_db_ensemble_rec>(row->ensemble, code) : nullptr;
}

const ko_db_epoch_rec *ko_db_builtin_epoch_lookup(const ko_db_builtin_entry *row, int32_t code) {
  return row != nullptr ? by_code<ko_db_epoch_rec>(row->epoch, code) : nullptr;
}

const ko_db_pair_rec *ko_db_builtin_exception_lookup(const ko_db_builtin_entry *row,
                                                     int32_t code) {
  return row != nullptr ? by_code<ko_db_pair_rec>(row->exception, code) : nullptr;
}

const ko_db_version_rec *ko_db_builtin_version_lookup(const ko_db_builtin_entry *row,
                                                      int32_t code) {
  return row != nullptr ? by_code<ko_db_version_rec>(row->version, code) : nullptr;
}

const ko_db_gcsvcs_rec *ko_db_builtin_gcsvcs_lookup_by_gcs(const ko_db_builtin_entry *row,
                                                           int32_t code) {
  if (row == nullptr) return nullptr;
  return find_first(records<ko_db_gcsvcs_rec>(row->gcsvcs), code,
                    [](const ko_db_gcsvcs_rec &r) { return r.gcs; });
}

// The geocentric and vertical columns are not sorted; the table has a few
// hundred rows.
const ko_db_gcsvcs_rec *ko_db_builtin_gcsvcs_lookup_by_xyz(const ko_db_builtin_entry *row,
                                                           int32_t code) {
  return scan_ties(row, code, &ko_db_gcsvcs_rec::xyz);
}

const ko_db_gcsvcs_rec *ko_db_builtin_gcsvcs_lookup_by_vcs(const ko_db_builtin_entry *row,
                                                           int32_t code) {
  return scan_ties(row, code, &ko_db_gcsvcs_rec::vcs);
}

char *ko_db_builtin_version_info(char *buf, int size) {
  if (buf == nullptr || size <= 0) return buf;
  ko_snprintf(buf, size, "%s Geodetic Parameter Dataset %s (%s)", ko_db_builtin_source.authority,
              ko_db_builtin_source.version, ko_db_builtin_source.date);
  return buf;
}

}  // extern "C"
