// Helpers of the factory tests: the catalogue's records read directly
// (independently of the factory), owners of library objects, and EPSG rows
// of proj.db read with the sqlite3 program.
#pragma once

#include "database/catalog.h"
#include "ko.h"
#include "objects/object_support.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

namespace ko::test {

struct ObjectDeleter {
  void operator()(void *obj) const { ko_object_del(obj); }
};
using Obj = std::unique_ptr<void, ObjectDeleter>;

inline const ko_db_builtin_entry *row(uint32_t type) { return ko_db_builtin_data_find(type); }

// Every data record of a type, in table order, with its code.
template <class F>
void for_each_record(uint32_t type, F visit) {
  const ko_db_tbl *data = row(type)->data;
  const auto *base = static_cast<const unsigned char *>(data->recs);
  for (int32_t i = 0; i < data->count; ++i) {
    const void *rec = base + static_cast<std::size_t>(i) * static_cast<std::size_t>(data->size);
    visit(rec, ko::catalog::data_record_code(rec));
  }
}

template <class T>
const T *record(uint32_t type, int32_t code) {
  return static_cast<const T *>(ko_db_builtin_data_lookup_code(row(type)->data, code));
}

// The status bits a record's deprecated flags stand for: 1 discontinued,
// 2 dead, 4 do-not-use.
inline uint32_t expected_deprecated_bits(uint32_t type, int32_t code) {
  const ko_db_pair_rec *d = ko_db_builtin_deprecated_lookup(row(type), code);
  if (d == nullptr) return 0;
  uint32_t bits = 0;
  if (d->value & 1) bits |= KO_STATUS_DISCONTINUED;
  if (d->value & 2) bits |= KO_STATUS_DEAD;
  if (d->value & 4) bits |= KO_STATUS_DONOTUSE;
  return bits;
}

// The code a factory lookup by code lands on: code changes may chain
// (4327 became 4329, which became 4979).
inline int32_t replacement_of(uint32_t type, int32_t code) {
  for (int hop = 0; hop < 8; ++hop) {
    const ko_db_pair_rec *change = ko_db_builtin_codechange_lookup_old(row(type), code);
    if (change == nullptr) break;
    code = change->value;
  }
  return code;
}

// The prime meridian an object holds (itself, or through its geographic
// system), or null.
inline const ko_primem *meridian_of(const void *obj) {
  switch (ko_object_type(obj)) {
    case KO_TYPE_PRIMEM: return static_cast<const ko_primem *>(obj);
    case KO_TYPE_GEOGCS: return ko_geogcs_primem(static_cast<const ko_geogcs *>(obj));
    case KO_TYPE_PROJCS: return meridian_of(ko_projcs_geogcs(static_cast<const ko_projcs *>(obj)));
    case KO_TYPE_GXYZCS: return ko_gxyzcs_primem(static_cast<const ko_gxyzcs *>(obj));
    case KO_TYPE_HVCOORDSYS:
      return meridian_of(ko_hvcoordsys_coordsys(static_cast<const ko_hvcoordsys *>(obj)));
    case KO_TYPE_GEOGTRAN: {
      const auto *gt = static_cast<const ko_geogtran *>(obj);
      const ko_primem *p = meridian_of(ko_geogtran_geogcs1(gt));
      const ko_primem *q = meridian_of(ko_geogtran_geogcs2(gt));
      return ko_angunit_factor(ko_primem_unit(p)) != 0.017453292519943295 ? p : q;
    }
    default: return nullptr;
  }
}

// Objects compare equal to their clones, except where a prime meridian's
// unit is not the degree: a meridian's clone converts its stored degrees
// once more (the library keeps that on purpose), so such a clone differs.
inline int expected_clone_equality(const void *obj) {
  const ko_primem *p = meridian_of(obj);
  return p != nullptr && ko_angunit_factor(ko_primem_unit(p)) != 0.017453292519943295 ? 0 : 1;
}

// The header fields every catalogue object carries: its code (internal and
// external), name, authority and version of its record, and status.
inline void expect_catalogue_header(const void *obj, uint32_t type, int32_t code,
                                    uint32_t made_by, int32_t orig_code = 0) {
  SCOPED_TRACE(testing::Message() << "type 0x" << std::hex << type << std::dec << " code " << code);
  ASSERT_NE(obj, nullptr);
  EXPECT_EQ(ko_object_code(obj), code);
  EXPECT_EQ(ko_object_code_internal(obj), code);
  EXPECT_EQ(ko_object_get_orig_code(obj), orig_code);
  const void *rec = ko_db_builtin_data_lookup_code(row(type)->data, code);
  ASSERT_NE(rec, nullptr);
  EXPECT_STREQ(ko_header_get_name(obj), ko::catalog::data_record_name(rec));
  const ko_db_version_rec *v = ko_db_builtin_version_lookup(row(type), code);
  EXPECT_STREQ(ko_header_get_auth_name(obj), v != nullptr ? v->authority : "");
  EXPECT_STREQ(ko_header_get_auth_ver(obj), v != nullptr ? v->version : "");
  uint32_t status = made_by | expected_deprecated_bits(type, code);
  if (orig_code != 0) status |= KO_STATUS_CODECHANGE;
  EXPECT_EQ(ko_object_status(obj), status);
}

// An object built from a record's code: the catalogue header (following a
// code change when there is one), an equal clone with the same header, and
// the same record found again by the record's name.  Returns the object.
inline Obj check_code_and_name(uint32_t type, int32_t code) {
  ko_err err{};
  Obj obj(ko_factory_object_from_code(type, code, &err));
  EXPECT_NE(obj, nullptr) << "code " << code << ": " << err.number << " " << err.message;
  if (obj == nullptr) return obj;
  int32_t now = replacement_of(type, code);
  EXPECT_TRUE(ko_object_type(obj.get()) & type);
  expect_catalogue_header(obj.get(), type, now, KO_STATUS_CODE, now != code ? code : 0);
  Obj copy(ko_object_clone(obj.get()));
  EXPECT_EQ(ko_object_eq(copy.get(), obj.get()), expected_clone_equality(obj.get()))
      << "clone of " << code;
  EXPECT_EQ(ko_object_code(copy.get()), now);
  EXPECT_EQ(ko_object_status(copy.get()), ko_object_status(obj.get()));

  const char *name = ko::catalog::data_record_name(
      ko_db_builtin_data_lookup_code(row(type)->data, code));
  Obj named(ko_factory_object_from_name(type, name, &err));
  EXPECT_NE(named, nullptr) << name << ": " << err.number;
  if (named != nullptr) expect_catalogue_header(named.get(), type, code, KO_STATUS_STRING);
  return code == now ? std::move(obj) : std::move(named);
}

// Rows of proj.db (EPSG rows only) by the sqlite3 program; fields split at
// '|'.  Empty when proj.db or the program is missing.
inline const char *proj_db() { return "/usr/share/proj/proj.db"; }

inline std::vector<std::vector<std::string>> proj_db_rows(const std::string &sql) {
  std::vector<std::vector<std::string>> rows;
  if (!std::filesystem::exists(proj_db())) return rows;
  std::string command = std::string("sqlite3 -readonly -batch -separator '|' ") + proj_db() +
                        " \"" + sql + "\" 2>/dev/null";
  FILE *pipe = popen(command.c_str(), "r");
  if (pipe == nullptr) return rows;
  char line[4096];
  while (std::fgets(line, sizeof line, pipe) != nullptr) {
    std::string text(line);
    while (!text.empty() && (text.back() == '\n' || text.back() == '\r')) text.pop_back();
    std::vector<std::string> fields;
    std::stringstream in(text);
    std::string field;
    while (std::getline(in, field, '|')) fields.push_back(field);
    if (!text.empty() && text.back() == '|') fields.emplace_back();
    rows.push_back(fields);
  }
  pclose(pipe);
  return rows;
}

inline bool have_proj_db() { return !proj_db_rows("SELECT 1").empty(); }

}  // namespace ko::test
