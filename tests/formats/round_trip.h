// The round-trip check of the text-format tests: an object is written,
// read back into an equal object, and written again into the same text,
// byte for byte; and the same over every record of a catalogue type.
#pragma once

#include "formats/catalog_objects.h"
#include "formats/wkt_support.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>

namespace ko::test {

// Returns false (with a failure recorded) on a mismatch.
inline bool round_trip(const void *obj, uint32_t options = 0, const char *authority = nullptr) {
  std::string first = write_text(obj, options, authority);
  auto back = read_text(first, authority, ko_object_type(obj));
  if (back.obj == nullptr) {
    ADD_FAILURE() << first << "\n  read error " << back.err.number << " " << back.err.message;
    return false;
  }
  if (ko_object_eq(back.obj.get(), obj) == 0) {
    ADD_FAILURE() << "not equal after reading " << first;
    return false;
  }
  std::string second = write_text(back.obj.get(), options, authority);
  if (second != first) {
    ADD_FAILURE() << first << "\n  became\n" << second;
    return false;
  }
  return true;
}

// The round trip over every code of a catalogue type built by make (a
// record the constructors refuse is left out; at least nine in ten must
// build).  Stops after a few failures.
inline void round_trip_catalog(uint32_t type, const std::function<void *(int32_t)> &make,
                               uint32_t options = 0, const char *authority = nullptr) {
  const std::vector<int32_t> codes = catalog_codes(type);
  int tried = 0;
  int failed = 0;
  for (int32_t code : codes) {
    Obj obj(make(code));
    if (obj == nullptr) continue;
    ++tried;
    if (!round_trip(obj.get(), options, authority)) {
      ADD_FAILURE() << "code " << code;
      if (++failed > 5) return;
    }
  }
  EXPECT_GE(tried * 10, static_cast<int>(codes.size()) * 9) << ko_type_to_name(type);
}

}  // namespace ko::test
