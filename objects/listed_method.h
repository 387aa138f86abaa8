// The method objects of the small constant lists (vertical transformation
// methods, horizontal adjustment methods): a header named as the list
// entry whose internal and external codes are the entry's code, and the
// lookups of a list by code and by name.  Each list instantiates these
// templates with its entry type.  Internal.
#pragma once

#include "objects/object.h"

#include <span>

namespace ko {

// What a list and its method object type have in common.
template <class Entry>
struct MethodList {
  std::span<const Entry> entries;  // without the end entry
  uint32_t type;                   // the method object's type code
  const char *from_code_source;    // error sources of the factory forms
  const char *from_name_source;
  int code_error;  // unknown code (category 4)
  int name_error;  // unknown name (category 8)
};

template <class Entry>
const Entry *entry_from_code(const MethodList<Entry> &list, int32_t code) {
  if (code <= 0) return nullptr;
  for (const Entry &e : list.entries)
    if (e.code == code) return &e;
  return nullptr;
}

// The name goes through the type's synonyms (EPSG's method names) and is
// then compared ignoring case.
template <class Entry>
const Entry *entry_from_name(const MethodList<Entry> &list, const char *name) {
  if (name == nullptr || *name == '\0') return nullptr;
  char mapped[KO_NAME_SIZE];
  ko_synonym_lookup_by_syn(list.type, name, nullptr, mapped);
  for (const Entry &e : list.entries)
    if (ko_strcmp_i(e.name, mapped) == 0) return &e;
  return nullptr;
}

template <class Entry>
const Entry *entry_from_index(const MethodList<Entry> &list, int index) {
  return index >= 0 && static_cast<std::size_t>(index) < list.entries.size()
             ? &list.entries[static_cast<std::size_t>(index)]
             : nullptr;
}

// A method object for an entry (null entry: the "invalid method" error).
template <class T, class Entry>
T *method_new(const MethodList<Entry> &list, const Entry *entry, int invalid_object_error,
              const char *source, ko_err *err) {
  ko_err_clear(err);
  if (entry == nullptr) {
    report_bad_argument(err, invalid_object_error, source, "");
    return nullptr;
  }
  auto *m = make_object<T>(list.type, entry->name);
  if (m == nullptr) {
    report_no_memory(err, source, entry->name);
    return nullptr;
  }
  ko_header_set_code_internal(m, entry->code);
  ko_header_set_code_external(m, entry->code);
  return m;
}

// The factory forms: from a code (status KO_STATUS_CODE, unknown code is
// the list's code error with the code as message) and from a name
// (KO_STATUS_STRING, the name error with the name).
template <class T, class Entry>
T *method_from_code(const MethodList<Entry> &list, int32_t code, int invalid_object_error,
                    ko_err *err) {
  const Entry *entry = entry_from_code(list, code);
  if (entry == nullptr) {
    ko_err_clear(err);
    ko_err_arg(err, KO_SEV_ERROR, KO_ERRCAT_DBCONTENT, list.code_error, list.from_code_source, "d",
               code);
    return nullptr;
  }
  T *m = method_new<T>(list, entry, invalid_object_error, list.from_code_source, err);
  ko_object_status_set(m, KO_STATUS_CODE);
  return m;
}

template <class T, class Entry>
T *method_from_name(const MethodList<Entry> &list, const char *name, int invalid_object_error,
                    ko_err *err) {
  const Entry *entry = entry_from_name(list, name);
  if (entry == nullptr) {
    ko_err_clear(err);
    report_bad_argument(err, list.name_error, list.from_name_source, name);
    return nullptr;
  }
  T *m = method_new<T>(list, entry, invalid_object_error, list.from_name_source, err);
  ko_object_status_set(m, KO_STATUS_STRING);
  return m;
}

// The plain constructor by name: an unknown name is only a warning (the
// list's name error), but there is no method to make.
template <class T, class Entry>
T *method_by_name(const MethodList<Entry> &list, const char *name, int invalid_object_error,
                  const char *source, ko_err *err) {
  const Entry *entry = entry_from_name(list, name);
  if (entry == nullptr) {
    ko_err_clear(err);
    ko_err_arg(err, KO_SEV_WARNING, KO_ERRCAT_ARGUMENT, list.name_error, source, "s",
               name != nullptr ? name : "");
    return nullptr;
  }
  return method_new<T>(list, entry, invalid_object_error, source, err);
}

// A method of the same code with the source's header copied across.
template <class T>
T *method_clone(const T *src, uint32_t type, T *(*del)(T *)) {
  if (as<const T>(src, type) == nullptr) return nullptr;
  auto *copy = make_object<T>(type, ko_header_get_name(src));
  if (copy == nullptr) return nullptr;
  if (!header_copy_checked(copy, src)) return del(copy);
  return copy;
}

// Two methods are one when their list codes agree.
template <class T>
int method_eq(const T *a, const T *b, uint32_t type) {
  if (as<const T>(a, type) == nullptr || as<const T>(b, type) == nullptr) return 0;
  return ko_header_get_code_internal(a) == ko_header_get_code_internal(b) ? 1 : 0;
}

// The list entry of a live method object's code, or null.
template <class T, class Entry>
const Entry *method_entry(const MethodList<Entry> &list, const T *m) {
  if (as<const T>(m, list.type) == nullptr) return nullptr;
  return entry_from_code(list, ko_header_get_code_internal(m));
}

}  // namespace ko
