// Helpers shared by the tests of units, geodetic objects, axes and
// parameters.
#pragma once

#include "ko.h"
#include "support/failing_alloc.h"

#include <cstdio>
#include <string>

namespace ko::test {

// The object's name as ko_object_name gives it.
inline std::string name_of(const void *obj) {
  char buf[KO_NAME_SIZE];
  return ko_object_name(obj, buf);
}

// The message of a value error: the table text, then "name: value" as
// printf's "%s: %f" writes it.
inline std::string with_value(const char *text, const char *name, double value) {
  char buf[256];
  std::snprintf(buf, sizeof buf, "%s: %s: %f", text, name, value);
  return buf;
}

// Runs clone(src) under the failing allocator, failing each allocation in
// turn: the allocations a clone makes, or -1 when a failed clone leaked.
template <class T>
long clone_sweep(const T *src, T *(*clone)(const T *), T *(*del)(T *)) {
  return sweep_failures([&] {
    T *copy = clone(src);
    del(copy);
    return copy != nullptr;
  });
}

}  // namespace ko::test
