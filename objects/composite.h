// Helpers for the object types that own sub-objects: cloning the parts,
// finishing a clone, and reading a field of a live object.  Internal.
#pragma once

#include "objects/object.h"

#include <type_traits>

namespace ko {

// Clones an optional owned part into `out`: true when there was nothing to
// clone or the copy succeeded, false when the copy failed.
template <class T>
bool clone_part(const T *part, Unique<T> &out, T *(*clone)(const T *)) {
  if (part == nullptr) return true;
  out.reset(clone(part));
  return out != nullptr;
}

// The last step of every clone: the header's fields from the source; when
// that fails the copy is deleted and the result is null.
template <class T>
T *with_header_of(T *copy, const void *src, T *(*del)(T *)) {
  if (copy != nullptr && !header_copy_checked(copy, src)) return del(copy);
  return copy;
}

// A field of a live object, or the fallback when obj is no such object.
template <class T, class F>
F field_or(const void *obj, T *(*live)(const void *), F T::*field,
           std::type_identity_t<F> fallback) {
  const T *p = live(obj);
  return p != nullptr ? p->*field : fallback;
}

}  // namespace ko
