// The object header that every object of the library starts with, and the
// helpers that each object type uses to build, check, copy and delete its
// objects.  Internal: not installed.
//
// How a new object type plugs in:
//   - its struct starts with `ko_header header;`
//   - its _p test is `ko::as<T>(obj, KO_TYPE_X) != nullptr`
//   - its _errext constructor starts with `ko::errext_prologue(err, source, name)`,
//     allocates with `ko::make_object<T>(KO_TYPE_X, name)` and reports
//     through ko::report_bad_argument / ko::report_no_memory
//   - its clone builds a new object from the source's fields and then calls
//     `ko::header_copy_checked` (named types) or `ko_header_copy_int`
//   - its delete releases what it owns, then `ko::release_object(obj)`
//   - it exports `constinit const ko_objvec ko_x_objvec =
//     ko::make_objvec<T, clone, del, eq>(KO_TYPE_X);`
//     and adds that objvec to objects/registry.cpp
//   - it stamps its per-type forwards with KO_DEFINE_OBJECT_FORWARDS
//     (declared in ko.h with KO_DECLARE_OBJECT_FORWARDS).
#pragma once

#include "foundation/internal.h"

#include <cstdint>
#include <cstring>
#include <memory>

// The header record of a named object.
struct ko_header_info {
  uint32_t status;         // KO_STATUS_* bits; KO_STATUS_NEW at construction
  uint32_t dbid;           // database the object came from
  int32_t code_external;   // public (authority) code, -1 when none
  int32_t code_internal;   // code in the library's own tables, -1 when none
  int32_t orig_code;       // code before a code change, 0 when none
  int32_t hidden;          // non-zero: hidden from lists
  int32_t str_type;        // kind of text the object was read from
  char name[KO_NAME_SIZE];
  char orig_name[KO_NAME_SIZE];   // the name as first given
  char auth_name[KO_NAME_SIZE];
  char auth_version[28];
  ko_authority *authority;  // owned
  ko_dispname *dispname;    // owned
};

// First member of every object.
struct ko_header {
  uint32_t magic;  // KO_MAGIC_LIVE while alive, KO_MAGIC_DEAD once deleted
  uint32_t type;   // one KO_TYPE_* bit
  ko_header_info *info;  // null for record-less objects
};

namespace ko {

inline constexpr int kNameMax = KO_NAME_SIZE - 1;  // characters a name keeps

// The header of a live object, or null for null, stale and foreign pointers.
inline ko_header *live_header(const void *obj) {
  auto *h = static_cast<ko_header *>(const_cast<void *>(obj));
  return (h != nullptr && h->magic == KO_MAGIC_LIVE) ? h : nullptr;
}

// The header record of a live named object, or null.
inline ko_header_info *live_info(const void *obj) {
  ko_header *h = live_header(obj);
  return h != nullptr ? h->info : nullptr;
}

// Type-checked cast: the object as T when it is live and its type shares a
// bit with `mask`, else null.  Constness is the caller's to choose through T.
template <class T>
T *as(const void *obj, uint32_t mask) {
  ko_header *h = live_header(obj);
  if (h == nullptr || (h->type & mask) == 0) return nullptr;
  return reinterpret_cast<T *>(h);
}

// ---------------------------------------------------------------------------
// Error reports shared by every constructor.

// Warning 354: a text longer than its field; the message is the text.
inline void report_too_long(ko_err *err, const char *source, const char *text) {
  ko_err_arg(err, KO_SEV_WARNING, KO_ERRCAT_ARGUMENT, 354, source, "s", text != nullptr ? text : "");
}

// A missing or unusable argument (the 3xx numbers): an error whose message
// is the name of the object being built, empty for a null name.
inline void report_bad_argument(ko_err *err, int number, const char *source, const char *name) {
  ko_err_arg(err, KO_SEV_ERROR, KO_ERRCAT_ARGUMENT, number, source, "s", name != nullptr ? name : "");
}

// Error 1: an allocation failed while building the named object.
inline void report_no_memory(ko_err *err, const char *source, const char *name) {
  ko_err_arg(err, KO_SEV_ERROR, KO_ERRCAT_MEMORY, 1, source, "s", name != nullptr ? name : "");
}

// Length of a C text, null counting as empty.
inline std::size_t text_length(const char *text) { return text != nullptr ? std::strlen(text) : 0; }

// True when the text (null counts as empty) fits a field of N bytes.
template <std::size_t N>
bool fits(const char *text) {
  return text_length(text) < N;
}

// A text cut to a field of N bytes (at most N - 1 characters).
template <std::size_t N>
struct FieldText {
  char text[N] = {};
  bool was_cut = false;
};

// The common start of an _errext constructor: clears the caller's record,
// and when the name does not fit a field of N bytes reports warning 354
// (construction goes on with the cut name, which is returned).
template <std::size_t N = KO_NAME_SIZE>
FieldText<N> errext_prologue(ko_err *err, const char *source, const char *name) {
  ko_err_clear(err);
  FieldText<N> out;
  ko_strncpy(out.text, name != nullptr ? name : "", static_cast<int>(N));
  if (!fits<N>(name)) {
    out.was_cut = true;
    report_too_long(err, source, name);
  }
  return out;
}

// Copies UTF-16 text (null counts as empty) into a field of N units, cut to
// N - 1 units; a cut never leaves the first half of a surrogate pair behind.
template <std::size_t N>
void copy_units(ko_uchar (&dst)[N], const ko_uchar *src) {
  static constexpr ko_uchar kEmpty[1] = {0};
  if (src == nullptr) src = kEmpty;
  int n = ko_strncpy_u(dst, src, static_cast<int>(N));
  bool cut = n > 0 && src[n] != 0;
  if (cut && dst[n - 1] >= 0xD800 && dst[n - 1] <= 0xDBFF) dst[n - 1] = 0;
}

// ---------------------------------------------------------------------------
// Life cycle.

// Fills a new header record with its initial values and the name (cut to
// 79 characters).
void header_info_init(ko_header_info *info, const char *name);

// Allocates a zeroed T and initialises its header.  With a non-null name
// the object also gets a header record; when any allocation fails nothing
// is left behind and the result is null.
template <class T>
T *make_object(uint32_t type, const char *name) {
  T *obj = alloc_object<T>(ko_type_to_name(type));
  if (obj == nullptr) return nullptr;
  ko_header_init(obj, type, name);
  if (name != nullptr && reinterpret_cast<ko_header *>(obj)->info == nullptr) {
    free_object(obj);
    return nullptr;
  }
  return obj;
}

// Marks the object dead, releases its header record (with the authority and
// display name it owns) and the object's memory.  Returns null.
template <class T>
T *release_object(T *obj) {
  if (obj == nullptr) return nullptr;
  ko_header_del(obj);
  free_object(obj);
  return nullptr;
}

// ko_header_copy that tells whether it copied everything: false when an
// allocation failed on the way (the record, or a clone of the authority or
// of the display name).  Clones use it to fail cleanly.
bool header_copy_checked(void *dst, const void *src);

// Owner of a library object under construction: deletes it through the
// generic delete unless released.
struct ObjectDeleter {
  void operator()(void *obj) const { ko_object_del(obj); }
};
template <class T>
using Unique = std::unique_ptr<T, ObjectDeleter>;

// The operation table of type T from its typed clone, delete and equal.
template <class T, T *(*Clone)(const T *), T *(*Del)(T *), int (*Eq)(const T *, const T *)>
constexpr ko_objvec make_objvec(uint32_t type) {
  return ko_objvec{
      type,
      [](const void *obj) -> void * { return Clone(static_cast<const T *>(obj)); },
      [](void *obj) -> void * { return Del(static_cast<T *>(obj)); },
      [](const void *a, const void *b) -> int {
        return Eq(static_cast<const T *>(a), static_cast<const T *>(b));
      },
  };
}

}  // namespace ko

// Per-type forwards of the generic operations (declared in ko.h by
// KO_DECLARE_TYPE_FORWARD / KO_DECLARE_OBJECT_FORWARDS).  Use at file scope,
// without a trailing semicolon.
#define KO_DEFINE_TYPE_FORWARD(prefix, T) \
  extern "C" uint32_t ko_##prefix##_type(const T *obj) { return ko_object_type(obj); }

#define KO_DEFINE_OBJECT_FORWARDS(prefix, T)                                              \
  KO_DEFINE_TYPE_FORWARD(prefix, T)                                                       \
  extern "C" {                                                                            \
  uint32_t ko_##prefix##_dbid(const T *obj) { return ko_object_dbid(obj); }               \
  uint32_t ko_##prefix##_status(const T *obj) { return ko_object_status(obj); }           \
  char *ko_##prefix##_name(const T *obj, char *buf) { return ko_object_name(obj, buf); }  \
  int32_t ko_##prefix##_code(const T *obj) { return ko_object_code(obj); }                \
  ko_uchar *ko_##prefix##_uname(const T *obj, ko_uchar *buf) {                            \
    return ko_object_uname(obj, buf);                                                     \
  }                                                                                       \
  ko_uchar *ko_##prefix##_uname_ext(const T *obj, int flags, ko_uchar *buf) {             \
    return ko_object_uname_ext(obj, flags, buf);                                          \
  }                                                                                       \
  void ko_##prefix##_uname_set(T *obj, const ko_uchar *text) {                            \
    ko_object_uname_set(obj, text);                                                       \
  }                                                                                       \
  ko_authority *ko_##prefix##_authority(T *obj) { return ko_object_authority(obj); }      \
  void ko_##prefix##_authority_set(T *obj, ko_authority *authority) {                     \
    ko_object_authority_set(obj, authority);                                              \
  }                                                                                       \
  ko_dispname *ko_##prefix##_dispname(const T *obj) { return ko_object_dispname(obj); }   \
  void ko_##prefix##_dispname_set(T *obj, ko_dispname *dispname) {                        \
    ko_object_dispname_set(obj, dispname);                                                \
  }                                                                                       \
  }
