// Synonyms: other authorities' spellings of the library's names.  Each
// type's synonym table is sorted by synonym under the name key (case and
// the characters ( ) - / \ _ and white space ignored), so a synonym is
// found by binary search; a generated index orders the same records by the
// code of the object they name, for the reverse lookup.
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

using SynonymLookup = const ko_db_synonym_rec *(*)(const ko_db_builtin_entry *, const char *,
                                                   const char *);

// Looks `name` up with `lookup` in the type's rows and copies the found
// record's `field` into out, or the name itself when nothing is found.
char *translate(uint32_t type, const char *name, const char *authority, char *out,
                SynonymLookup lookup, const char *ko_db_synonym_rec::*field) {
  if (out == nullptr) return nullptr;
  const ko_db_synonym_rec *found =
      for_each_row(type, [&](const ko_db_builtin_entry *row) { return lookup(row, name, authority); });
  return copy80(out, found != nullptr ? found->*field : name);
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

// Finds the object the library name names, then its synonyms through the
// index by owner code.
const ko_db_synonym_rec *ko_db_builtin_synonym_a_lookup(const ko_db_builtin_entry *row,
                                                        const char *name,
                                                        const char *authority) {
  if (row == nullptr || name == nullptr || *name == '\0') return nullptr;
  auto syns = synonym_records(row);
  const ko::catalog::TypeIndex *index = ko::catalog::type_index(row->type);
  if (syns.empty() || index == nullptr || index->synonyms_by_owner == nullptr) return nullptr;
  const void *owner = ko_db_builtin_data_lookup_name(row, name);
  // A hash hit may belong to another name than the one asked for.
  if (owner == nullptr || compare_name_keys(ko::catalog::data_record_name(owner), name) != 0)
    return nullptr;
  int32_t code = ko::catalog::data_record_code(owner);
  std::span<const ko::catalog::SynonymOwner> owners(index->synonyms_by_owner, syns.size());
  const ko::catalog::SynonymOwner *first = ko::catalog::find_first(
      owners, code, [](const ko::catalog::SynonymOwner &o) { return o.code; });
  if (first == nullptr) return nullptr;
  for (const ko::catalog::SynonymOwner *p = first; p != owners.data() + owners.size() && p->code == code;
       ++p) {
    if (authority_matches(authority, syns[p->position].authority)) return &syns[p->position];
  }
  return nullptr;
}

char *ko_synonym_lookup_by_syn(uint32_t type, const char *name, const char *authority,
                               char *out80) {
  return translate(type, name, authority, out80, ko_db_builtin_synonym_s_lookup,
                   &ko_db_synonym_rec::name);
}

char *ko_synonym_lookup_by_act(uint32_t type, const char *libname, const char *authority,
                               char *out80) {
  return translate(type, libname, authority, out80, ko_db_builtin_synonym_a_lookup,
                   &ko_db_synonym_rec::synonym);
}

}  // extern "C"
