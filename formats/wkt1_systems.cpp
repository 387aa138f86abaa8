// WKT1 of the vertical, geocentric, compound and adjusted systems: VDATUM
// (also read as VERT_DATUM), VERTCS (also read as VERT_CS), GXYZCS,
// HVCOORDSYS (also read as COMPD_CS) and ADJHCS.
#include "formats/wkt1.h"

namespace {

using ko::text::TextOut;
using namespace ko::wkt1;

template <class T>
using Unique = ko::Unique<T>;

// The horizontal systems a compound or adjusted system reads.
constexpr ChildKind kGeogcsChild{"GEOGCS", nullptr, 0};
constexpr ChildKind kProjcsChild{"PROJCS", nullptr, 0};

// Lengths among a vertical system's parameters are in the system's unit,
// as a projected system's are: each gets a clone of the unit, in which it
// also reports.  False when memory ran out.
bool lengths_in_unit(ParameterSlots &parms, const ko_linunit *unit) {
  for (ko_parameter *p : parms.ptrs) {
    if (p == nullptr || unit == nullptr || ko_parameter_unit(p) != nullptr ||
        ko_parameter_unit_type(p) != KO_PARM_UNIT_LENGTH)
      continue;
    auto *clone = reinterpret_cast<ko_unit *>(ko_linunit_clone(unit));
    if (clone == nullptr) return false;
    ko_parameter_unit_set(p, clone);
    ko_parameter_dflt_factor_set(p, ko_linunit_factor(unit));
  }
  return true;
}

}  // namespace

extern "C" {

// --- VDATUM ------------------------------------------------------------------

int ko_wkt_vdatum_to_str(const ko_vdatum *d, const char *authority, uint32_t options, int size,
                         char *buf) {
  TextOut out(buf, size);
  if (begin_node(out, d, KO_TYPE_VDATUM, "VDATUM", authority, options))
    put_tail(out, d, ko_vdatum_metadata_vector(d), authority, options);
  return out.finish();
}

// VDATUM["name"]: values after the name (the datum type of other writers)
// are skipped.
ko_vdatum *ko_wkt_vdatum_from_tokens(const ko_wkt_tokens *tokens, const char *authority, int index,
                                     int *end_index, ko_err *err) {
  NodeRead n(tokens, authority, err);
  ko_metadata **metadata_ptr = nullptr;
  if (!n.open(index, "VDATUM", "VERT_DATUM") || !read_metadata(n.r, n.c, metadata_ptr)) return nullptr;
  UniqueMetadata metadata(metadata_ptr);
  if (!n.read_extras()) return nullptr;
  char name[KO_NAME_SIZE];
  n.name(KO_TYPE_VDATUM, name);
  ko_vdatum *d = construct(n.r, [&](ko_err *e) {
    return ko_vdatum_ext_new_errext(name, nullptr, metadata.get(), e);
  });
  if (d != nullptr) metadata.release();
  return n.done(d, end_index);
}

KO_WKT1_DEFINE_FROM_STR(vdatum, ko_vdatum, "VDATUM", "VERT_DATUM")

// --- VERTCS ------------------------------------------------------------------

int ko_wkt_vertcs_to_str(const ko_vertcs *v, const char *authority, uint32_t options, int size,
                         char *buf) {
  TextOut out(buf, size);
  if (!begin_node(out, v, KO_TYPE_VERTCS, "VERTCS", authority, options)) return out.finish();
  uint32_t child = level_of(options).child_options;
  put_child<void>(out, ko_wkt_hvdatum_to_str, ko_vertcs_hvdatum(v), authority, child);
  ko_parameter *parms[KO_PARM_COUNT];
  ko_vertcs_parameters(v, parms);
  put_parameters(out, parms, authority, child);
  put_child(out, ko_wkt_linunit_to_str, ko_vertcs_unit(v), authority, child);
  put_tail(out, v, ko_vertcs_metadata_vector(v), authority, options);
  return out.finish();
}

// VERTCS["name", VDATUM or DATUM, PARAMETER..., UNIT]: error 437 without a
// datum, 408 for a second one, 409 for a second UNIT.  A DATUM (a
// horizontal one) makes a system of ellipsoidal heights.  The parameters
// are the vertical system's (Vertical_Shift, Direction), lengths in the
// system's unit (the UNIT's; metres without one).
ko_vertcs *ko_wkt_vertcs_from_tokens(const ko_wkt_tokens *tokens, const char *authority, int index,
                                     int *end_index, ko_err *err) {
  enum { kDatum, kVdatum, kUnit, kParameter };
  static constexpr ChildKind kChildren[] = {{"DATUM", nullptr, 0},
                                            {"VDATUM", "VERT_DATUM", 0},
                                            {"UNIT", nullptr, 409},
                                            {"PARAMETER", nullptr, 0}};
  NodeRead n(tokens, authority, err);
  Unique<void> datum;
  Unique<ko_linunit> unit;
  ParameterSlots parms;
  ko_metadata **metadata_ptr = nullptr;
  if (!n.open(index, "VERTCS", "VERT_CS", kChildren) ||
      !read_child(n.r, n.c.first[kUnit], ko_wkt_linunit_from_tokens, unit))
    return nullptr;
  for (int k = 0; k < n.c.repeat_count; ++k) {
    const Repeat &child = n.c.repeats[k];
    if (child.kind != kDatum && child.kind != kVdatum) continue;
    if (datum != nullptr) {
      report(err, 408, n.node.keyword, n.node.name);
      return nullptr;
    }
    void *d = child.kind == kDatum
                  ? static_cast<void *>(ko_wkt_datum_from_tokens(tokens, authority, child.at, nullptr, err))
                  : static_cast<void *>(ko_wkt_vdatum_from_tokens(tokens, authority, child.at, nullptr, err));
    if (d == nullptr && err != nullptr) return nullptr;
    datum.reset(d);
  }
  if (!read_parameters(n.r, n.node, n.c, kParameter, KO_PARM_CAT_VERTCS, parms) ||
      !read_metadata(n.r, n.c, metadata_ptr))
    return nullptr;
  UniqueMetadata metadata(metadata_ptr);
  if (!n.read_extras()) return nullptr;
  if (datum == nullptr) {
    report(err, 437, n.node.keyword, n.node.name);
    return nullptr;
  }
  if (!lengths_in_unit(parms, unit.get())) {
    ko::report_no_memory(err, n.node.keyword, n.node.name);
    return nullptr;
  }
  char name[KO_NAME_SIZE];
  n.name(KO_TYPE_VERTCS, name);
  ko_vertcs *v = construct(n.r, [&](ko_err *e) {
    return ko_vertcs_ext_new_errext(name, datum.get(), parms.ptrs.data(), unit.get(), nullptr,
                                    metadata.get(), nullptr, e);
  });
  if (v == nullptr) return nullptr;
  release_all(datum, parms, unit, metadata);
  return n.done(v, end_index);
}

KO_WKT1_DEFINE_FROM_STR(vertcs, ko_vertcs, "VERTCS", "VERT_CS")

// --- GXYZCS ------------------------------------------------------------------

int ko_wkt_gxyzcs_to_str(const ko_gxyzcs *g, const char *authority, uint32_t options, int size,
                         char *buf) {
  TextOut out(buf, size);
  if (!begin_node(out, g, KO_TYPE_GXYZCS, "GXYZCS", authority, options)) return out.finish();
  uint32_t child = level_of(options).child_options;
  put_child(out, ko_wkt_datum_to_str, ko_gxyzcs_datum(g), authority, child);
  put_child(out, ko_wkt_primem_to_str, ko_gxyzcs_primem(g), authority, child);
  put_child(out, ko_wkt_linunit_to_str, ko_gxyzcs_unit(g), authority, child);
  put_tail(out, g, ko_gxyzcs_metadata_vector(g), authority, options);
  return out.finish();
}

// GXYZCS["name", DATUM, PRIMEM, UNIT]: error 431 without the datum; 405,
// 412 and 409 for a second datum, meridian or unit.
ko_gxyzcs *ko_wkt_gxyzcs_from_tokens(const ko_wkt_tokens *tokens, const char *authority, int index,
                                     int *end_index, ko_err *err) {
  enum { kDatum, kPrimem, kUnit };
  static constexpr ChildKind kChildren[] = {
      {"DATUM", nullptr, 405}, {"PRIMEM", nullptr, 412}, {"UNIT", nullptr, 409}};
  NodeRead n(tokens, authority, err);
  Unique<ko_datum> datum;
  Unique<ko_primem> primem;
  Unique<ko_linunit> unit;
  ko_metadata **metadata_ptr = nullptr;
  if (!n.open(index, "GXYZCS", nullptr, kChildren) ||
      !read_datum_and_primem(n, kDatum, kPrimem, datum, primem) ||
      !read_child(n.r, n.c.first[kUnit], ko_wkt_linunit_from_tokens, unit) ||
      !read_metadata(n.r, n.c, metadata_ptr))
    return nullptr;
  UniqueMetadata metadata(metadata_ptr);
  if (!n.read_extras()) return nullptr;
  char name[KO_NAME_SIZE];
  n.name(KO_TYPE_GXYZCS, name);
  ko_gxyzcs *g = construct(n.r, [&](ko_err *e) {
    return ko_gxyzcs_ext_new_errext(name, datum.get(), primem.get(), unit.get(), nullptr,
                                    metadata.get(), nullptr, e);
  });
  if (g == nullptr) return nullptr;
  release_all(datum, primem, unit, metadata);
  return n.done(g, end_index);
}

KO_WKT1_DEFINE_FROM_STR(gxyzcs, ko_gxyzcs, "GXYZCS", nullptr)

// --- HVCOORDSYS --------------------------------------------------------------

int ko_wkt_hvcoordsys_to_str(const ko_hvcoordsys *c, const char *authority, uint32_t options,
                             int size, char *buf) {
  TextOut out(buf, size);
  if (!begin_node(out, c, KO_TYPE_HVCOORDSYS, "HVCOORDSYS", authority, options)) return out.finish();
  uint32_t child = level_of(options).child_options;
  put_child<void>(out, ko_wkt_coordsys_to_str, ko_hvcoordsys_coordsys(c), authority, child);
  put_child(out, ko_wkt_vertcs_to_str, ko_hvcoordsys_vertcs(c), authority, child);
  put_tail(out, c, ko_hvcoordsys_metadata_vector(c), authority, options);
  return out.finish();
}

// HVCOORDSYS["name", GEOGCS or PROJCS, VERTCS]: error 430 without either
// system, 429 without the horizontal one, 443 without the vertical one;
// 404 and 418 for a second one.
ko_hvcoordsys *ko_wkt_hvcoordsys_from_tokens(const ko_wkt_tokens *tokens, const char *authority,
                                             int index, int *end_index, ko_err *err) {
  enum { kGeogcs, kProjcs, kVertcs };
  static constexpr ChildKind kChildren[] = {kGeogcsChild, kProjcsChild, {"VERTCS", "VERT_CS", 418}};
  NodeRead n(tokens, authority, err);
  Unique<void> horizontal;
  Unique<ko_vertcs> vertical;
  ko_metadata **metadata_ptr = nullptr;
  if (!n.open(index, "HVCOORDSYS", "COMPD_CS", kChildren) ||
      !read_coordsys(n, kGeogcs, kProjcs, horizontal) ||
      !read_child(n.r, n.c.first[kVertcs], ko_wkt_vertcs_from_tokens, vertical) ||
      !read_metadata(n.r, n.c, metadata_ptr))
    return nullptr;
  UniqueMetadata metadata(metadata_ptr);
  if (!n.read_extras()) return nullptr;
  const int missing = horizontal == nullptr && vertical == nullptr ? 430
                      : horizontal == nullptr                      ? 429
                      : vertical == nullptr                        ? 443
                                                                   : 0;
  if (missing != 0) {
    report(err, missing, n.node.keyword, n.node.name);
    return nullptr;
  }
  char name[KO_NAME_SIZE];
  n.name(KO_TYPE_HVCOORDSYS, name);
  ko_hvcoordsys *c = construct(n.r, [&](ko_err *e) {
    return ko_hvcoordsys_ext_new_errext(name, horizontal.get(), vertical.get(), metadata.get(),
                                        nullptr, e);
  });
  if (c == nullptr) return nullptr;
  release_all(horizontal, vertical, metadata);
  return n.done(c, end_index);
}

KO_WKT1_DEFINE_FROM_STR(hvcoordsys, ko_hvcoordsys, "HVCOORDSYS", "COMPD_CS")

// --- ADJHCS ------------------------------------------------------------------

int ko_wkt_adjhcs_to_str(const ko_adjhcs *a, const char *authority, uint32_t options, int size,
                         char *buf) {
  TextOut out(buf, size);
  if (!begin_node(out, a, KO_TYPE_ADJHCS, "ADJHCS", authority, options)) return out.finish();
  uint32_t child = level_of(options).child_options;
  put_child<void>(out, ko_wkt_coordsys_to_str, ko_adjhcs_coordsys(a), authority, child);
  put_child(out, ko_wkt_htmethod_to_str, ko_adjhcs_htmethod(a), authority, child);
  put_child(out, ko_wkt_array_to_str, ko_adjhcs_array(a), authority, child);
  put_tail(out, a, ko_adjhcs_metadata_vector(a), authority, options);
  return out.finish();
}

// ADJHCS["name", GEOGCS or PROJCS, HTMETHOD, ARRAY]: errors 429, 436 and
// 428 without the system, the method or the values; 404, 407 and 402 for
// a second one.
ko_adjhcs *ko_wkt_adjhcs_from_tokens(const ko_wkt_tokens *tokens, const char *authority, int index,
                                     int *end_index, ko_err *err) {
  enum { kGeogcs, kProjcs, kMethod, kArray };
  static constexpr ChildKind kChildren[] = {
      kGeogcsChild, kProjcsChild, {"HTMETHOD", nullptr, 407}, {"ARRAY", nullptr, 402}};
  NodeRead n(tokens, authority, err);
  Unique<void> horizontal;
  Unique<ko_htmethod> method;
  Unique<ko_array> values;
  ko_metadata **metadata_ptr = nullptr;
  if (!n.open(index, "ADJHCS", nullptr, kChildren) || !read_coordsys(n, kGeogcs, kProjcs, horizontal) ||
      !read_child(n.r, n.c.first[kMethod], ko_wkt_htmethod_from_tokens, method) ||
      !read_child(n.r, n.c.first[kArray], ko_wkt_array_from_tokens, values) ||
      !read_metadata(n.r, n.c, metadata_ptr))
    return nullptr;
  UniqueMetadata metadata(metadata_ptr);
  if (!n.read_extras()) return nullptr;
  const int missing = horizontal == nullptr ? 429 : method == nullptr ? 436 : values == nullptr ? 428 : 0;
  if (missing != 0) {
    report(err, missing, n.node.keyword, n.node.name);
    return nullptr;
  }
  char name[KO_NAME_SIZE];
  n.name(KO_TYPE_ADJHCS, name);
  ko_adjhcs *a = construct(n.r, [&](ko_err *e) {
    return ko_adjhcs_ext_new_errext(name, horizontal.get(), method.get(), values.get(),
                                    metadata.get(), nullptr, e);
  });
  if (a == nullptr) return nullptr;
  release_all(horizontal, method, values, metadata);
  return n.done(a, end_index);
}

KO_WKT1_DEFINE_FROM_STR(adjhcs, ko_adjhcs, "ADJHCS", nullptr)

}  // extern "C"
