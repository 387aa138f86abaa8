// Helpers shared by the object tests: checking an error record field by
// field, a stand-in object of a test-only type, a "ghost" that looks like a
// deleted object, and UTF-16 literals.
#pragma once

#include "ko.h"
#include "objects/object.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

namespace ko::test {

struct Report {
  int severity;
  int category;
  int number;
  const char *source;
  const char *message;
};

inline void expect_report(const ko_err &err, const Report &want) {
  EXPECT_EQ(err.severity, want.severity);
  EXPECT_EQ(err.category, want.category);
  EXPECT_EQ(err.number, want.number);
  EXPECT_STREQ(err.source, want.source);
  EXPECT_STREQ(err.message, want.message);
}

inline void expect_no_report(const ko_err &err) {
  EXPECT_EQ(err.severity, 0);
  EXPECT_EQ(err.number, 0);
  EXPECT_STREQ(err.message, "");
}

// A record that a constructor must clear on entry.
inline ko_err stale_record() {
  ko_err err{};
  err.severity = KO_SEV_ERROR;
  err.category = KO_ERRCAT_PARSE;
  err.number = 463;
  std::snprintf(err.source, sizeof err.source, "%s", "left over");
  std::snprintf(err.message, sizeof err.message, "%s", "left over");
  return err;
}

// An object of a type that has no objvec, for exercising the header alone.
struct Probe {
  ko_header header;
  double payload;
};

// What a deleted object looks like while its memory is still mapped: the
// dead magic, every type bit set and a record full of recognisable values,
// so that an accessor that ignored the magic would be caught reading or
// writing it.
struct Ghost {
  ko_header_info record{};
  union {
    ko_header header;
    unsigned char bytes[4096];  // larger than any object type
  };
  Ghost() : header{} {
    record.status = 7;
    record.dbid = 9;
    record.code_external = 4326;
    record.code_internal = 4326;
    record.orig_code = 1;
    record.hidden = 1;
    record.str_type = 2;
    std::snprintf(record.name, sizeof record.name, "%s", "ghost");
    std::snprintf(record.orig_name, sizeof record.orig_name, "%s", "ghost");
    std::snprintf(record.auth_name, sizeof record.auth_name, "%s", "EPSG");
    header.magic = KO_MAGIC_DEAD;
    header.type = 0xFFFFFFFFu;
    header.info = &record;
  }
  void *ptr() { return &header; }
  // The record still holds what the constructor put there.
  bool untouched() const {
    return header.magic == KO_MAGIC_DEAD && header.type == 0xFFFFFFFFu &&
           header.info == &record && record.status == 7 && record.dbid == 9 &&
           record.code_external == 4326 && record.hidden == 1 &&
           std::string(record.name) == "ghost" && record.authority == nullptr &&
           record.dispname == nullptr;
  }
};

inline std::u16string units(const ko_uchar *text) {
  std::u16string out;
  if (text != nullptr)
    for (; *text != 0; ++text) out.push_back(static_cast<char16_t>(*text));
  return out;
}

inline const ko_uchar *uc(const char16_t *text) { return reinterpret_cast<const ko_uchar *>(text); }

}  // namespace ko::test
