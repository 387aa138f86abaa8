// Helpers of the text-format tests: owning object handles, reading with an
// error record, writing into a std::string.
#pragma once

#include "ko.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace ko::test {

// The geographic system of WGS 84 as the library writes it (the worked
// example of the format's description).
inline constexpr char kWgs84[] =
    R"(GEOGCS["GCS_WGS_1984",DATUM["D_WGS_1984",SPHEROID["WGS_1984",6378137.0,298.257223563]],)"
    R"(PRIMEM["Greenwich",0.0],UNIT["Degree",0.0174532925199433]])";

struct ObjectDeleter {
  void operator()(void *p) const { ko_object_del(p); }
};
using Obj = std::unique_ptr<void, ObjectDeleter>;

// The result of a read: the object (or null) and the record.
struct Read {
  Obj obj;
  ko_err err{};
};

inline Read read_text(const std::string &text, const char *authority = nullptr, uint32_t type = 0) {
  Read r;
  r.obj.reset(ko_object_from_string_auth_by_type_errext(type, text.c_str(), authority, &r.err));
  return r;
}

// A text that must not read, failing with an error of this number.
inline void expect_read_error(const std::string &text, int number) {
  Read r = read_text(text);
  EXPECT_EQ(r.obj, nullptr) << text;
  EXPECT_EQ(r.err.number, number) << text;
  EXPECT_EQ(r.err.severity, KO_SEV_ERROR) << text;
}

// The whole text of an object (any length), or "<needed n>" when the
// writer refused a buffer as large as it asked for.
inline std::string write_text(const void *obj, uint32_t options = 0, const char *authority = nullptr) {
  std::vector<char> buf(KO_STR_BUFFER_SIZE);
  int needed = ko_object_to_string_auth_len(obj, authority, options, static_cast<int>(buf.size()), buf.data());
  if (needed > 0) {
    buf.assign(static_cast<std::size_t>(needed), 'x');
    int again = ko_object_to_string_auth_len(obj, authority, options, needed, buf.data());
    if (again != 0) return "<needed " + std::to_string(again) + ">";
  }
  return buf.data();
}

}  // namespace ko::test
