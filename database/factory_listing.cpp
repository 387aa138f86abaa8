// The factory's listings and areas of use: how many catalogue objects a
// type has and their codes in order, the objects whose area of use holds a
// point, areas of use as metadata objects, and the generic by-code and
// by-name functions that dispatch on a type code.
#include "database/factory.h"

#include <array>
#include <cmath>

namespace ko::factory {

namespace {

constexpr const char *kExtentCodeSource = "ko_factory_extent_from_code_errext";
constexpr const char *kExtentNameSource = "ko_factory_extent_from_name_errext";

std::span<const ko_db_extent_rec> extent_records() {
  return ko::catalog::records<ko_db_extent_rec>(&ko_obj_extent_data_tbl);
}

// A position in one table of records sorted by code; a merged walk over
// several of them visits the codes of all in ascending order.
struct Cursor {
  const ko_db_tbl *tbl = nullptr;
  std::size_t pos = 0;
  std::size_t code_offset = 0;  // of the code inside a record

  bool done() const { return tbl == nullptr || pos >= static_cast<std::size_t>(tbl->count); }
  const unsigned char *record() const {
    return static_cast<const unsigned char *>(tbl->recs) + pos * static_cast<std::size_t>(tbl->size);
  }
  int32_t code() const { return code_at(pos); }
  int32_t code_at(std::size_t i) const {
    int32_t c;
    std::memcpy(&c, static_cast<const unsigned char *>(tbl->recs) +
                        i * static_cast<std::size_t>(tbl->size) + code_offset,
                sizeof c);
    return c;
  }
  std::size_t size() const { return tbl != nullptr ? static_cast<std::size_t>(tbl->count) : 0; }
  // Records whose code is at most v.
  std::size_t count_at_most(int32_t v) const {
    std::size_t lo = 0;
    std::size_t hi = size();
    while (lo < hi) {
      std::size_t mid = lo + (hi - lo) / 2;
      if (code_at(mid) <= v)
        lo = mid + 1;
      else
        hi = mid;
    }
    return lo;
  }
};

// Calls visit(cursor) for every record of the tables in ascending code
// order until it returns false.
template <std::size_t N, class Visit>
void walk_merged(std::array<Cursor, N> &cursors, Visit visit) {
  for (;;) {
    Cursor *next = nullptr;
    for (Cursor &c : cursors)
      if (!c.done() && (next == nullptr || c.code() < next->code())) next = &c;
    if (next == nullptr || !visit(*next)) return;
    ++next->pos;
  }
}

constexpr std::size_t kMaxMembers = 3;

// Cursors over one table kind of each member of a type (data tables, or
// areacode tables); false when no member has such a table.
bool member_cursors(uint32_t type, bool areas, std::array<Cursor, kMaxMembers> &cursors) {
  std::span<const uint32_t> members = members_of(type);
  bool any = false;
  for (std::size_t i = 0; i < members.size() && i < kMaxMembers; ++i) {
    const ko_db_builtin_entry *row = ko::catalog::row_of(members[i]);
    if (row == nullptr) continue;
    cursors[i].tbl = areas ? row->areacode : row->data;
    cursors[i].code_offset = areas ? offsetof(ko_db_areacode_rec, code) : kDataCodeOffset;
    any = any || cursors[i].tbl != nullptr;
  }
  return any;
}

ko_gcs_extent box_of(const ko_db_extent_rec &rec) {
  ko_gcs_extent e{};
  e.west = rec.west;
  e.south = rec.south;
  e.east = rec.east;
  e.north = rec.north;
  return e;
}

// An area of use as a metadata object with the area's code in its header.
ko_metadata *area_object(const ko_db_extent_rec &rec, Context &ctx) {
  char name[KO_NAME_SIZE];
  cut_utf8(name, sizeof name, rec.name);
  ko_gcs_extent box = box_of(rec);
  ko_metadata *m = ko_metadata_ext_new_errext(name, nullptr, &box, nullptr, nullptr,
                                              static_cast<uint32_t>(rec.code), ctx.err);
  if (m == nullptr) return nullptr;
  ko_object_code_set(m, rec.code, rec.code, 0, 0, ko_db_builtin_source.authority, "");
  ko_object_status_set(m, KO_STATUS_CODE);
  return m;
}

ko_metadata *extent_by_code(int32_t code, ko_err *err) {
  ko_err_clear(err);
  Context ctx{err, kExtentCodeSource};
  if (code < 1) {
    ko_err_arg(err, KO_SEV_ERROR, KO_ERRCAT_DATABASE, 505, ctx.source, "d", static_cast<int>(code));
    return nullptr;
  }
  const ko_db_extent_rec *rec = extent_record(code);
  if (rec == nullptr) {
    ko_err_arg(err, KO_SEV_ERROR, KO_ERRCAT_OBJECT, 131, ctx.source, "d", static_cast<int>(code));
    return nullptr;
  }
  return area_object(*rec, ctx);
}

// Area names have no name table; they are few and looked up rarely.
ko_metadata *extent_by_name(const char *name, ko_err *err) {
  ko_err_clear(err);
  Context ctx{err, kExtentNameSource};
  if (name != nullptr && *name != '\0') {
    for (const ko_db_extent_rec &rec : extent_records())
      if (ko_strcmp_ci(rec.name, name) == 0) return area_object(rec, ctx);
  }
  ko_err_arg(err, KO_SEV_ERROR, KO_ERRCAT_OBJECT, 132, ctx.source, "s", name != nullptr ? name : "");
  return nullptr;
}

// Which areas of use hold a point, flagged by area code in one pass over
// the areas, so that each object's area is then a look-up, not a search.
class AreasHolding {
 public:
  AreasHolding(double lon, double lat) {
    auto recs = extent_records();
    if (recs.empty()) return;
    first_ = recs.front().code;
    span_ = static_cast<std::size_t>(recs.back().code - first_) + 1;
    flags_.reset(ko::alloc_array<uint8_t>(span_, "ko_factory areas"));
    if (flags_ == nullptr) return;
    for (const ko_db_extent_rec &rec : recs) {
      ko_gcs_extent box = box_of(rec);
      flags_.get()[static_cast<std::size_t>(rec.code - first_)] =
          ko_gcs_extent_contains(&box, lon, lat) != 0 ? 1 : 0;
    }
  }
  bool ready() const { return flags_ != nullptr; }
  bool holds(int32_t area) const {
    if (area < first_) return false;
    auto at = static_cast<std::size_t>(area - first_);
    return at < span_ && flags_.get()[at] != 0;
  }

 private:
  ko::Owned<uint8_t> flags_;
  int32_t first_ = 0;
  std::size_t span_ = 0;
};

}  // namespace

const ko_db_extent_rec *extent_record(int32_t area) {
  return ko_db_builtin_extent_lookup_code(&ko_obj_extent_data_tbl, area);
}

char *cut_utf8(char *out, std::size_t size, const char *text) {
  if (out == nullptr || size == 0) return out;
  if (text == nullptr) text = "";
  std::size_t n = std::min(std::strlen(text), size - 1);
  // Back off over continuation bytes so that no character is split.
  if (text[n] != '\0')
    while (n > 0 && (static_cast<unsigned char>(text[n]) & 0xC0u) == 0x80u) --n;
  std::memcpy(out, text, n);
  out[n] = '\0';
  return out;
}

UniqueMetadata area_metadata(const ko_db_builtin_entry *row, int32_t code, bool &ok,
                             Context &ctx) {
  ok = true;
  const ko_db_areacode_rec *area = ko_db_builtin_areacode_lookup(row, code);
  const ko_db_extent_rec *rec = area != nullptr ? extent_record(area->area) : nullptr;
  if (rec == nullptr) return nullptr;
  ko::Unique<ko_metadata> m(area_object(*rec, ctx));
  UniqueMetadata vec(m != nullptr ? ko::alloc_array<ko_metadata *>(2, "ko_metadata vector")
                                  : nullptr);
  if (vec == nullptr) {
    if (m != nullptr) report_no_memory(ctx, ko_header_get_name(m.get()));
    ok = false;
    return nullptr;
  }
  vec.get()[0] = m.release();
  return vec;
}

namespace {

int count(uint32_t type) {
  if (type == KO_TYPE_EXTENT) return static_cast<int>(extent_records().size());
  std::array<Cursor, kMaxMembers> cursors;
  if (!member_cursors(type, false, cursors)) return -1;
  int n = 0;
  for (const Cursor &c : cursors)
    if (c.tbl != nullptr) n += c.tbl->count;
  return n;
}

int32_t code_at(uint32_t type, int index) {
  if (index < 0) return 0;
  if (type == KO_TYPE_EXTENT) {
    auto recs = extent_records();
    return static_cast<std::size_t>(index) < recs.size() ? recs[static_cast<std::size_t>(index)].code
                                                         : 0;
  }
  std::array<Cursor, kMaxMembers> cursors;
  if (!member_cursors(type, false, cursors)) return 0;
  // The smallest code with more than `index` codes of all the members at
  // or below it, found by bisecting the codes.
  auto k = static_cast<std::size_t>(index);
  std::size_t total = 0;
  int64_t lo = INT32_MAX;
  int64_t hi = INT32_MIN;
  for (const Cursor &c : cursors) {
    if (c.size() == 0) continue;
    total += c.size();
    lo = std::min<int64_t>(lo, c.code_at(0));
    hi = std::max<int64_t>(hi, c.code_at(c.size() - 1));
  }
  if (k >= total) return 0;
  while (lo < hi) {
    int64_t mid = lo + (hi - lo) / 2;
    std::size_t at_most = 0;
    for (const Cursor &c : cursors) at_most += c.count_at_most(static_cast<int32_t>(mid));
    if (at_most > k)
      hi = mid;
    else
      lo = mid + 1;
  }
  return static_cast<int32_t>(lo);
}

// An object whose area record comes twice (several areas of use) is
// listed once.
int codes_in_extent(uint32_t type, double lon, double lat, int32_t *out, int max) {
  if (!std::isfinite(lon) || !std::isfinite(lat) || max < 0 || (out == nullptr && max > 0))
    return -1;
  std::array<Cursor, kMaxMembers> cursors;
  if (!member_cursors(type, true, cursors)) return -1;
  AreasHolding areas(std::remainder(lon, 360.0), lat);
  if (!areas.ready()) return -1;
  int found = 0;
  int32_t last = 0;
  walk_merged(cursors, [&](const Cursor &c) {
    int32_t code = c.code();
    if (code == last) return true;
    const auto *area = reinterpret_cast<const ko_db_areacode_rec *>(c.record());
    if (areas.holds(area->area)) {
      if (found < max) out[found] = code;
      ++found;
      last = code;
    }
    return true;
  });
  return found;
}

}  // namespace

}  // namespace ko::factory

namespace {

// The generic functions' table: a type code and its by-code and by-name
// functions.  Composite codes (coordsys, hvdatum, transform) have no
// functions of their own and report under the generic names.
struct Dispatch {
  uint32_t type;
  void *(*by_code)(int32_t code, ko_err *err);
  void *(*by_name)(const char *name, ko_err *err);
};

template <auto F>
void *erase_by_code(int32_t code, ko_err *err) {
  return F(code, err);
}
template <auto F>
void *erase_by_name(const char *name, ko_err *err) {
  return F(name, err);
}
template <uint32_t Type>
void *composite_by_code(int32_t code, ko_err *err) {
  return ko::factory::from_code(Type, code, err, "ko_factory_object_from_code");
}
template <uint32_t Type>
void *composite_by_name(const char *name, ko_err *err) {
  return ko::factory::from_name(Type, name, err, "ko_factory_object_from_name");
}

#define KO_DISPATCH(prefix, type)                                   \
  Dispatch {                                                        \
    type, erase_by_code<ko_factory_##prefix##_from_code_errext>,    \
        erase_by_name<ko_factory_##prefix##_from_name_errext>       \
  }
#define KO_DISPATCH_COMPOSITE(type) \
  Dispatch { type, composite_by_code<type>, composite_by_name<type> }

constexpr Dispatch kDispatch[] = {
    KO_DISPATCH(geogcs, KO_TYPE_GEOGCS),
    KO_DISPATCH_COMPOSITE(KO_TYPE_COORDSYS),
    KO_DISPATCH_COMPOSITE(KO_TYPE_HVDATUM),
    KO_DISPATCH_COMPOSITE(KO_TYPE_TRANSFORM),
    KO_DISPATCH(datum, KO_TYPE_DATUM),
    KO_DISPATCH(linunit, KO_TYPE_LINUNIT),
    KO_DISPATCH(angunit, KO_TYPE_ANGUNIT),
    KO_DISPATCH(scaleunit, KO_TYPE_SCALEUNIT),
    KO_DISPATCH(areaunit, KO_TYPE_AREAUNIT),
    KO_DISPATCH(unit, KO_TYPE_UNIT),
    KO_DISPATCH(primem, KO_TYPE_PRIMEM),
    KO_DISPATCH(spheroid, KO_TYPE_SPHEROID),
    KO_DISPATCH(projection, KO_TYPE_PROJECTION),
    KO_DISPATCH(parameter, KO_TYPE_PARAMETER),
    KO_DISPATCH(projcs, KO_TYPE_PROJCS),
    KO_DISPATCH(method, KO_TYPE_METHOD),
    KO_DISPATCH(geogtran, KO_TYPE_GEOGTRAN),
    KO_DISPATCH(vdatum, KO_TYPE_VDATUM),
    KO_DISPATCH(vertcs, KO_TYPE_VERTCS),
    KO_DISPATCH(gxyzcs, KO_TYPE_GXYZCS),
    KO_DISPATCH(hvcoordsys, KO_TYPE_HVCOORDSYS),
    KO_DISPATCH(htmethod, KO_TYPE_HTMETHOD),
    KO_DISPATCH(vtmethod, KO_TYPE_VTMETHOD),
    KO_DISPATCH(verttran, KO_TYPE_VERTTRAN),
    KO_DISPATCH(extent, KO_TYPE_EXTENT),
};

const Dispatch *dispatch_of(uint32_t type) {
  for (const Dispatch &d : kDispatch)
    if (d.type == type) return &d;
  return nullptr;
}

void report_unknown_type(ko_err *err, const char *source, uint32_t type) {
  ko_err_clear(err);
  ko_err_arg(err, KO_SEV_ERROR, KO_ERRCAT_DATABASE, 521, source, "x", static_cast<unsigned>(type));
}

}  // namespace

extern "C" {

ko_metadata *ko_factory_extent_from_code_errext(int32_t code, ko_err *err) {
  return ko::factory::extent_by_code(code, err);
}
ko_metadata *ko_factory_extent_from_code(int32_t code) {
  return ko::factory::extent_by_code(code, nullptr);
}
ko_metadata *ko_factory_extent_from_name_errext(const char *name, ko_err *err) {
  return ko::factory::extent_by_name(name, err);
}
ko_metadata *ko_factory_extent_from_name(const char *name) {
  return ko::factory::extent_by_name(name, nullptr);
}

void *ko_factory_object_from_code(uint32_t type, int32_t code, ko_err *err) {
  const Dispatch *d = dispatch_of(type);
  if (d == nullptr) {
    report_unknown_type(err, "ko_factory_object_from_code", type);
    return nullptr;
  }
  return d->by_code(code, err);
}

void *ko_factory_object_from_name(uint32_t type, const char *name, ko_err *err) {
  const Dispatch *d = dispatch_of(type);
  if (d == nullptr) {
    report_unknown_type(err, "ko_factory_object_from_name", type);
    return nullptr;
  }
  return d->by_name(name, err);
}

int ko_factory_count(uint32_t type) { return ko::factory::count(type); }

int32_t ko_factory_code_at(uint32_t type, int index) { return ko::factory::code_at(type, index); }

int ko_factory_codes_in_extent(uint32_t type, double lon, double lat, int32_t *out, int max) {
  return ko::factory::codes_in_extent(type, lon, lat, out, max);
}

}  // extern "C"
