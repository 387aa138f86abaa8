// Synonyms: other authorities' spellings of the library's names.  Each
// type's synonym table is sorted by synonym under the name key (case and
// the characters ( ) - / \ _ and white space ignored), so a synonym is
// found by binary search; a generated index sorts the same records by
// library name for the reverse lookup.
#include "database/catalog.h"
#include "foundation/internal.h"

#include <cstring>

namespace {

using ko::catalog::compare_name_keys;

bool authority_matches(const char *wanted, const char *authority) {
  return wanted == nullptr || *wanted == '\0' || ko_strcmp_i(wanted, authority) == 0;
}

std::span<const ko_db_synonym_rec> synonym_records(const ko_db_builtin_entry *row) {
  if (row == nullptr || row->synonym == nullptr) return {};
  return ko::catalog::records<ko_db_synonym_rec>(row->synonym());
}

const uint32_t *by_name_index(uint32_t type) {
  for (const ko::catalog::SynonymIndex *p = ko::catalog::kSynonymIndex; p->type != 0; ++p)
    if (p->type == type) return p->by_name;
  return nullptr;
}

// The first position in [0, n) whose key is not below `key`, where
// key_at(i) gives the key text at position i of a sorted sequence.
template <class KeyAt>
std::size_t lower_bound_key(std::size_t n, const char *key, KeyAt key_at) {
  std::size_t lo = 0;
  std::size_t hi = n;
  while (lo < hi) {
    std::size_t mid = lo + (hi - lo) / 2;
    if (compare_name_keys(key_at(mid), key) < 0)
      lo = mid + 1;
    else
      hi = mid;
  }
  return lo;
}

// Copies at most 79 characters and the terminator into an 80-byte field.
char *copy80(char *out, const char *text) {
  if (text != out) ko_strncpy(out, text != nullptr ? text : "", KO_NAME_SIZE);
  return out;
}

// The registry rows a type code stands for: the type's own row, or for a
// composite code (unit, coordsys, hvdatum, transform) each member's row.
template <class F>
const ko_db_synonym_rec *for_each_row(uint32_t type, F lookup) {
  if (const ko_db_builtin_entry *row = ko::catalog::row_of(type)) return lookup(row);
  for (const ko_db_builtin_entry *row = ko_db_builtin_registry; row->type != 0; ++row) {
    if ((row->type & type) == row->type) {
      if (const ko_db_synonym_rec *found = lookup(row)) return found;
    }
  }
  return nullptr;
}

}  // namespace

extern "C" {

const ko_db_synonym_rec *ko_db_builtin_synonym_s_lookup(const ko_db_builtin_entry *row,
                                                        const char *synonym,
                                                        const char *authority) {
  if (synonym == nullptr || *synonym == '\0') return nullptr;
  auto syns = synonym_records(row);
  std::size_t i = lower_bound_key(syns.size(), synonym,
                                  [&](std::size_t k) { return syns[k].synonym; });
  for (; i < syns.size() && compare_name_keys(syns[i].synonym, synonym) == 0; ++i)
    if (authority_matches(authority, syns[i].authority)) return &syns[i];
  return nullptr;
}

const ko_db_synonym_rec *ko_db_builtin_synonym_a_lookup(const ko_db_builtin_entry *row,
                                                        const char *name,
                                                        const char *authority) {
  if (row == nullptr || name == nullptr || *name == '\0') return nullptr;
  auto syns = synonym_records(row);
  const uint32_t *index = by_name_index(row->type);
  if (syns.empty() || index == nullptr) return nullptr;
  std::size_t i = lower_bound_key(syns.size(), name,
                                  [&](std::size_t k) { return syns[index[k]].name; });
  for (; i < syns.size() && compare_name_keys(syns[index[i]].name, name) == 0; ++i)
    if (authority_matches(authority, syns[index[i]].authority)) return &syns[index[i]];
  return nullptr;
}

char *ko_synonym_lookup_by_syn(uint32_t type, const char *name, const char *authority,
                               char *out80) {
  if (out80 == nullptr) return nullptr;
  const ko_db_synonym_rec *found = for_each_row(type, [&](const ko_db_builtin_entry *row) {
    return ko_db_builtin_synonym_s_lookup(row, name, authority);
  });
  return copy80(out80, found != nullptr ? found->name : name);
}

char *ko_synonym_lookup_by_act(uint32_t type, const char *libname, const char *authority,
                               char *out80) {
  if (out80 == nullptr) return nullptr;
  const ko_db_synonym_rec *found = for_each_row(type, [&](const ko_db_builtin_entry *row) {
    return ko_db_builtin_synonym_a_lookup(row, libname, authority);
  });
  return copy80(out80, found != nullptr ? found->synonym : libname);
}

}  // extern "C"
