// The factory's core: from a code or a name to the catalogue record, the
// reports when there is none, and the header fields every object built from
// the catalogue carries (codes, status, authority, display name).  The
// records become objects in the family files (factory_units.cpp,
// factory_geodetic.cpp, ...).
#include "database/factory.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <span>

namespace ko::factory {

namespace {

// The units' display texts and the method-like lists' descriptions are the
// display names the catalogue has.
const char *unit_display(const Found &found) {
  return static_cast<const ko_db_angunit_rec *>(found.record)->display;
}
const char *linear_display(const Found &found) {
  return static_cast<const ko_db_linunit_rec *>(found.record)->display;
}
const char *description_display(const Found &found) {
  const ko_db_text_rec *rec = ko_db_builtin_description_lookup(found.row, found.code);
  return rec != nullptr ? rec->text : nullptr;
}

constexpr Kind kKinds[] = {
    {KO_TYPE_LINUNIT, build_linunit, nullptr, linear_display},
    {KO_TYPE_ANGUNIT, build_angunit, nullptr, unit_display},
    {KO_TYPE_SCALEUNIT, build_scaleunit, nullptr, unit_display},
    {KO_TYPE_AREAUNIT, build_areaunit, nullptr, linear_display},
    {KO_TYPE_SPHEROID, build_spheroid, nullptr, nullptr},
    {KO_TYPE_PRIMEM, build_primem, nullptr, nullptr},
    {KO_TYPE_DATUM, build_datum, "D_", nullptr},
    {KO_TYPE_GEOGCS, build_geogcs, "GCS_", nullptr},
    {KO_TYPE_PROJECTION, build_projection, nullptr, description_display},
    {KO_TYPE_PARAMETER, build_parameter, nullptr, description_display},
    {KO_TYPE_PROJCS, build_projcs, nullptr, nullptr},
    {KO_TYPE_METHOD, build_method, nullptr, description_display},
    {KO_TYPE_GEOGTRAN, build_geogtran, nullptr, nullptr},
    {KO_TYPE_VDATUM, build_vdatum, nullptr, nullptr},
    {KO_TYPE_VERTCS, build_vertcs, nullptr, nullptr},
    {KO_TYPE_GXYZCS, build_gxyzcs, nullptr, nullptr},
    {KO_TYPE_HVCOORDSYS, build_hvcoordsys, nullptr, nullptr},
    {KO_TYPE_HTMETHOD, build_htmethod, nullptr, description_display},
    {KO_TYPE_VTMETHOD, build_vtmethod, nullptr, description_display},
    {KO_TYPE_VERTTRAN, build_verttran, nullptr, nullptr},
};

// A type as callers name it: the number reported for a code it does not
// have (0: 201 outside the members' codes, else 202) and the catalogue
// types it stands for, tried in order.
struct Entry {
  uint32_t type;
  int code_error;
  std::array<uint32_t, 3> members;
};

constexpr Entry kEntries[] = {
    {KO_TYPE_GEOGCS, 203, {KO_TYPE_GEOGCS}},
    {KO_TYPE_PROJCS, 204, {KO_TYPE_PROJCS}},
    {KO_TYPE_COORDSYS, 219, {KO_TYPE_GEOGCS, KO_TYPE_PROJCS}},
    {KO_TYPE_VERTCS, 205, {KO_TYPE_VERTCS}},
    {KO_TYPE_GXYZCS, 0, {KO_TYPE_GXYZCS}},
    {KO_TYPE_HVCOORDSYS, 0, {KO_TYPE_HVCOORDSYS}},
    {KO_TYPE_DATUM, 206, {KO_TYPE_DATUM}},
    {KO_TYPE_VDATUM, 207, {KO_TYPE_VDATUM}},
    {KO_TYPE_HVDATUM, 208, {KO_TYPE_DATUM, KO_TYPE_VDATUM}},
    {KO_TYPE_GEOGTRAN, 209, {KO_TYPE_GEOGTRAN}},
    {KO_TYPE_VERTTRAN, 0, {KO_TYPE_VERTTRAN}},
    {KO_TYPE_TRANSFORM, 0, {KO_TYPE_GEOGTRAN, KO_TYPE_VERTTRAN}},
    {KO_TYPE_UNIT, 210, {KO_TYPE_LINUNIT, KO_TYPE_ANGUNIT, KO_TYPE_SCALEUNIT}},
    {KO_TYPE_LINUNIT, 212, {KO_TYPE_LINUNIT}},
    {KO_TYPE_ANGUNIT, 211, {KO_TYPE_ANGUNIT}},
    {KO_TYPE_SCALEUNIT, 210, {KO_TYPE_SCALEUNIT}},
    {KO_TYPE_AREAUNIT, 210, {KO_TYPE_AREAUNIT}},
    {KO_TYPE_PRIMEM, 213, {KO_TYPE_PRIMEM}},
    {KO_TYPE_SPHEROID, 214, {KO_TYPE_SPHEROID}},
    {KO_TYPE_METHOD, 215, {KO_TYPE_METHOD}},
    {KO_TYPE_HTMETHOD, 216, {KO_TYPE_HTMETHOD}},
    {KO_TYPE_PROJECTION, 217, {KO_TYPE_PROJECTION}},
    {KO_TYPE_PARAMETER, 218, {KO_TYPE_PARAMETER}},
    {KO_TYPE_VTMETHOD, 222, {KO_TYPE_VTMETHOD}},
};

// Deprecated flags and the status bits they stand for.  The catalogue
// marks EPSG's deprecations with flag 1.
struct DeprecatedBit {
  int32_t flag;
  uint32_t status;
};
constexpr DeprecatedBit kDeprecatedBits[] = {
    {1, KO_STATUS_DISCONTINUED},
    {2, KO_STATUS_DEAD},
    {4, KO_STATUS_DONOTUSE},
};

// Code changes chain (4327 became 4329, which became 4979); the bound
// keeps a loop in a broken table from hanging.
constexpr int kMaxCodeChanges = 8;

constexpr uint32_t kBuiltinDbid = 0;

const Entry *entry_of(uint32_t type) {
  for (const Entry &e : kEntries)
    if (e.type == type) return &e;
  return nullptr;
}

// The members of an entry that the factory builds, with their rows.
template <class F>
const void *for_each_member(const Entry &entry, F visit) {
  for (uint32_t member : entry.members) {
    if (member == 0 || kind_of(member) == nullptr) continue;
    const ko_db_builtin_entry *row = ko::catalog::row_of(member);
    if (row == nullptr || row->data == nullptr) continue;
    if (const void *hit = visit(row)) return hit;
  }
  return nullptr;
}

void report_code(Context &ctx, int number, int category, int32_t code) {
  ko_err_arg(ctx.err, KO_SEV_ERROR, category, number, ctx.source, "d", static_cast<int>(code));
}

void report_name(Context &ctx, int number, const char *name) {
  ko_err_arg(ctx.err, KO_SEV_ERROR, KO_ERRCAT_OBJECT, number, ctx.source, "s",
             name != nullptr ? name : "");
}

const void *record_of_code(const ko_db_builtin_entry *row, int32_t code) {
  return ko_db_builtin_data_lookup_code(row->data, code);
}

// True when some other catalogue type has the code (as a record or as an
// old code of a code change).
bool code_of_another_type(const Entry &entry, int32_t code) {
  for (const ko_db_builtin_entry *row = ko_db_builtin_registry; row->type != 0; ++row) {
    if (row->type == KO_TYPE_EXTENT || row->data == nullptr) continue;
    if (std::find(entry.members.begin(), entry.members.end(), row->type) != entry.members.end())
      continue;
    if (record_of_code(row, code) != nullptr ||
        ko_db_builtin_codechange_lookup_old(row, code) != nullptr)
      return true;
  }
  return false;
}

// 201 when the code lies outside every member table's first..last codes,
// else 202.
int range_error(const Entry &entry, int32_t code) {
  bool inside = false;
  for (uint32_t member : entry.members) {
    const ko_db_builtin_entry *row = member != 0 ? ko::catalog::row_of(member) : nullptr;
    if (row == nullptr || row->data == nullptr || row->data->count <= 0) continue;
    const auto *base = static_cast<const unsigned char *>(row->data->recs);
    int32_t first = ko::catalog::data_record_code(base);
    int32_t last = ko::catalog::data_record_code(
        base + static_cast<std::size_t>(row->data->count - 1) *
                   static_cast<std::size_t>(row->data->size));
    inside = inside || (code >= first && code <= last);
  }
  return inside ? 202 : 201;
}

void report_unknown_code(const Entry &entry, int32_t code, Context &ctx) {
  if (code_of_another_type(entry, code)) {
    report_code(ctx, 223, KO_ERRCAT_OBJECT, code);
    return;
  }
  int number = entry.code_error != 0 ? entry.code_error : range_error(entry, code);
  report_code(ctx, number, KO_ERRCAT_OBJECT, code);
}

// Codes, status, authority and display name of a new object.
bool stamp(void *obj, const Found &found, const Kind &kind, uint32_t status, int32_t orig_code,
           Context &ctx) {
  const ko_db_version_rec *version = ko_db_builtin_version_lookup(found.row, found.code);
  ko_object_code_set(obj, found.code, found.code, orig_code, kBuiltinDbid,
                     version != nullptr ? version->authority : "",
                     version != nullptr ? version->version : "");
  ko_object_status_set(obj, status);
  const char *display = kind.display != nullptr ? kind.display(found) : nullptr;
  if (display == nullptr || *display == '\0') return true;
  ko_dispname *d = ko_dispname_new(display);
  if (d == nullptr) {
    report_no_memory(ctx, ko_header_get_name(obj));
    return false;
  }
  ko_object_dispname_set(obj, d);
  return true;
}

uint32_t deprecated_bits(const Found &found) {
  const ko_db_pair_rec *deprecated = ko_db_builtin_deprecated_lookup(found.row, found.code);
  return deprecated != nullptr ? deprecated_status(deprecated->value) : 0;
}

// The record of a part: exactly this code of a type the factory builds.
Found part_record(uint32_t type, int32_t code) {
  const ko_db_builtin_entry *row = ko::catalog::row_of(type);
  if (row == nullptr || row->data == nullptr || kind_of(type) == nullptr) return {};
  const void *rec = record_of_code(row, code);
  return rec != nullptr ? Found{row, rec, code} : Found{};
}

}  // namespace

void *build_record(const Found &found, uint32_t status, int32_t requested, int32_t orig_code,
                   Context &ctx) {
  uint32_t deprecated = deprecated_bits(found);
  if ((deprecated & KO_STATUS_DONOTUSE) != 0) {
    report_code(ctx, 509, KO_ERRCAT_DATABASE, requested);
    return nullptr;
  }
  const Kind *kind = kind_of(found.row->type);
  void *obj = kind->build(found, ctx);
  if (obj == nullptr) return nullptr;
  if (orig_code != 0) status |= KO_STATUS_CODECHANGE;
  if (!stamp(obj, found, *kind, status | deprecated, orig_code, ctx))
    return ko_object_del(obj);
  return obj;
}

namespace {

// The record a name names in one row: through the name hash and the
// catalogue's case-insensitive match, then through the hash searched in
// its unsigned order (the catalogue's signed search misses a few), each
// hit confirmed by the library's name comparison.
const void *record_named(const ko_db_builtin_entry *row, const char *name) {
  const void *rec = ko_db_builtin_data_lookup_name(row, name);
  if (rec != nullptr && ko_strcmp_ci(ko::catalog::data_record_name(rec), name) == 0) return rec;
  auto names = ko::catalog::records<ko_db_name_rec>(row->name);
  uint32_t hash = ko_str_hashcode(name);
  auto hit = std::lower_bound(names.begin(), names.end(), hash,
                                     [](const ko_db_name_rec &r, uint32_t h) { return r.hash < h; });
  if (hit == names.end() || hit->hash != hash) return nullptr;
  rec = record_of_code(row, hit->code);
  if (rec != nullptr && ko_strcmp_ci(ko::catalog::data_record_name(rec), name) == 0) return rec;
  return nullptr;
}

// The record named `name` among the entry's members: the name itself, then
// any authority's synonym, then the name with the type's prefix ("D_",
// "GCS_") when it lacks it.
Found find_named(const Entry &entry, const char *name) {
  Found found;
  auto keep = [&found](const ko_db_builtin_entry *row, const void *rec) -> const void * {
    if (rec != nullptr) found = Found{row, rec, ko::catalog::data_record_code(rec)};
    return rec;
  };
  if (for_each_member(entry, [&](const ko_db_builtin_entry *row) {
        return keep(row, record_named(row, name));
      }))
    return found;
  if (for_each_member(entry, [&](const ko_db_builtin_entry *row) -> const void * {
        const ko_db_synonym_rec *syn = ko_db_builtin_synonym_s_lookup(row, name, nullptr);
        return syn != nullptr ? keep(row, record_named(row, syn->name)) : nullptr;
      }))
    return found;
  for_each_member(entry, [&](const ko_db_builtin_entry *row) -> const void * {
    const char *prefix = kind_of(row->type)->name_prefix;
    if (prefix == nullptr || ko_strncmp_i(name, prefix, static_cast<int>(std::strlen(prefix))) == 0)
      return nullptr;
    char prefixed[2 * KO_NAME_SIZE];
    ko_snprintf(prefixed, static_cast<int>(sizeof prefixed), "%s%s", prefix, name);
    return keep(row, record_named(row, prefixed));
  });
  return found;
}

}  // namespace

const Kind *kind_of(uint32_t type) {
  for (const Kind &k : kKinds)
    if (k.type == type) return &k;
  return nullptr;
}

uint32_t deprecated_status(int32_t flags) {
  uint32_t status = 0;
  for (const DeprecatedBit &bit : kDeprecatedBits)
    if ((flags & bit.flag) != 0) status |= bit.status;
  return status;
}

void report_no_memory(Context &ctx, const char *name) {
  ko_err_arg(ctx.err, KO_SEV_ERROR, KO_ERRCAT_MEMORY, 1, ctx.source, "s",
             name != nullptr ? name : "");
}

std::span<const uint32_t> members_of(uint32_t type) {
  const Entry *entry = entry_of(type);
  if (entry == nullptr) return {};
  std::size_t n = 0;
  while (n < entry->members.size() && entry->members[n] != 0) ++n;
  return {entry->members.data(), n};
}

int32_t current_code(const ko_db_builtin_entry *row, int32_t code) {
  for (int hop = 0; hop < kMaxCodeChanges; ++hop) {
    const ko_db_pair_rec *change = ko_db_builtin_codechange_lookup_old(row, code);
    if (change == nullptr || change->value == code) break;
    code = change->value;
  }
  return code;
}

void report_missing(Context &ctx, int32_t code) {
  report_code(ctx, 131, KO_ERRCAT_DBCONTENT, code);
}

void *build_part(uint32_t type, int32_t code, Context &ctx) {
  Found found = part_record(type, code);
  if (found.record == nullptr) {
    report_missing(ctx, code);
    return nullptr;
  }
  return build_record(found, KO_STATUS_CODE, code, 0, ctx);
}

bool stamp_part(void *obj, uint32_t type, int32_t code, Context &ctx) {
  Found found = part_record(type, code);
  if (found.record == nullptr) {
    report_missing(ctx, code);
    return false;
  }
  return stamp(obj, found, *kind_of(type), KO_STATUS_CODE | deprecated_bits(found), 0, ctx);
}

void *from_code(uint32_t type, int32_t code, ko_err *err, const char *source) {
  ko_err_clear(err);
  Context ctx{err, source};
  const Entry *entry = entry_of(type);
  if (entry == nullptr) {
    report_code(ctx, 521, KO_ERRCAT_DATABASE, static_cast<int32_t>(type));
    return nullptr;
  }
  if (code < 1) {
    report_code(ctx, 505, KO_ERRCAT_DATABASE, code);
    return nullptr;
  }
  Found found;
  for_each_member(*entry, [&](const ko_db_builtin_entry *row) {
    int32_t current = current_code(row, code);
    const void *rec = record_of_code(row, current);
    if (rec != nullptr) found = Found{row, rec, current};
    return rec;
  });
  if (found.record == nullptr) {
    report_unknown_code(*entry, code, ctx);
    return nullptr;
  }
  int32_t orig_code = found.code != code ? code : 0;
  return build_record(found, KO_STATUS_CODE, code, orig_code, ctx);
}

void *from_name(uint32_t type, const char *name, ko_err *err, const char *source) {
  ko_err_clear(err);
  Context ctx{err, source};
  const Entry *entry = entry_of(type);
  if (entry == nullptr) {
    report_code(ctx, 521, KO_ERRCAT_DATABASE, static_cast<int32_t>(type));
    return nullptr;
  }
  Found found = name != nullptr && *name != '\0' ? find_named(*entry, name) : Found{};
  if (found.record == nullptr) {
    report_name(ctx, 132, name);
    return nullptr;
  }
  return build_record(found, KO_STATUS_STRING, found.code, 0, ctx);
}

}  // namespace ko::factory
