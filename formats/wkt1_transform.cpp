// WKT1 of geographic transformations: GEOGTRAN with its two GEOGCS, its
// METHOD, PARAMETERs and OPERATIONACCURACY.
#include "formats/wkt1.h"

namespace {

using ko::text::TextOut;
using namespace ko::wkt1;

constexpr double kUnknownAccuracy = 999.0;

}  // namespace

extern "C" {

// --- METHOD ------------------------------------------------------------------

int ko_wkt_method_to_str(const ko_method *m, const char *authority, uint32_t options, int size,
                         char *buf) {
  return write_name_only(m, KO_TYPE_METHOD, "METHOD", authority, options, size, buf);
}

// METHOD["name"]: a name the method list does not know is error 305.
ko_method *ko_wkt_method_from_tokens(const ko_wkt_tokens *tokens, const char *authority, int index,
                                     int *end_index, ko_err *err) {
  return read_name_only<ko_method>(tokens, authority, index, end_index, err, "METHOD", KO_TYPE_METHOD,
                                   ko_methlist_method_from_name);
}

KO_WKT1_DEFINE_FROM_STR(method, ko_method, "METHOD", nullptr)

// --- GEOGTRAN ----------------------------------------------------------------

// The accuracy is left out when it is unknown (999.0); a NaN accuracy is
// written as such.
int ko_wkt_geogtran_to_str(const ko_geogtran *gt, const char *authority, uint32_t options, int size,
                           char *buf) {
  TextOut out(buf, size);
  if (!begin_node(out, gt, KO_TYPE_GEOGTRAN, "GEOGTRAN", authority, options)) return out.finish();
  uint32_t child = level_of(options).child_options;
  put_child(out, ko_wkt_geogcs_to_str, ko_geogtran_geogcs1(gt), authority, child);
  put_child(out, ko_wkt_geogcs_to_str, ko_geogtran_geogcs2(gt), authority, child);
  put_child(out, ko_wkt_method_to_str, ko_geogtran_method(gt), authority, child);
  ko_parameter *parms[KO_PARM_COUNT];
  ko_geogtran_parameters(gt, parms);
  put_parameters(out, parms, authority, child);
  put_accuracy(out, ko_geogtran_accuracy(gt), options);
  put_tail(out, gt, ko_geogtran_metadata_vector(gt), authority, options);
  return out.finish();
}

// GEOGTRAN["name", GEOGCS (from), GEOGCS (to), METHOD, PARAMETER...,
// OPERATIONACCURACY[metres]]: errors 434, 435 and 439 without the first
// or second system or the method, 406 for a third system, 410 for a second
// method, 352 for a second accuracy.  Parameter values are in the units
// the transformation gives its parameters: metres, arc-seconds, parts per
// million.
ko_geogtran *ko_wkt_geogtran_from_tokens(const ko_wkt_tokens *tokens, const char *authority,
                                         int index, int *end_index, ko_err *err) {
  enum { kMethod, kAccuracy, kGeogcs, kParameter };
  static constexpr ChildKind kChildren[] = {{"METHOD", nullptr, 410},
                                         {"OPERATIONACCURACY", nullptr, 352},
                                         {"GEOGCS", nullptr, 0},
                                         {"PARAMETER", nullptr, 0}};
  NodeRead n(tokens, authority, err);
  const Children &c = n.c;
  ko::Unique<ko_method> method;
  std::array<ko::Unique<ko_geogcs>, 2> gcs;
  ParameterSlots parms;
  ko_metadata **metadata_ptr = nullptr;
  if (!n.open(index, "GEOGTRAN", nullptr, kChildren) ||
      !read_child(n.r, c.first[kMethod], ko_wkt_method_from_tokens, method))
    return nullptr;
  if (!read_pair(n, kGeogcs, ko_wkt_geogcs_from_tokens, gcs, 406)) return nullptr;
  double accuracy = kUnknownAccuracy;
  if (!read_accuracy(n, c.first[kAccuracy], accuracy) ||
      !read_parameters(n.r, n.node, c, kParameter, KO_PARM_CAT_GEOGTRAN, parms) ||
      !read_metadata(n.r, c, metadata_ptr))
    return nullptr;
  UniqueMetadata metadata(metadata_ptr);
  if (!n.read_extras()) return nullptr;
  const bool one_gcs = ko_method_rtn_type(method.get()) == static_cast<int>(KO_MTH_RTN_ONE_GCS);
  const int missing = gcs[0] == nullptr                 ? 434
                      : gcs[1] == nullptr && !one_gcs    ? 435
                      : method == nullptr                ? 439
                                                         : 0;
  if (missing != 0) {
    report(err, missing, n.node.keyword, n.node.name);
    return nullptr;
  }
  char name[KO_NAME_SIZE];
  n.name(KO_TYPE_GEOGTRAN, name);
  ko_geogtran *gt = construct(n.r, [&](ko_err *e) {
    return ko_geogtran_ext_new_errext(name, gcs[0].get(), gcs[1].get(), method.get(), parms.ptrs.data(),
                                      metadata.get(), nullptr, e, accuracy);
  });
  if (gt == nullptr) return nullptr;
  release_all(gcs, method, parms, metadata);
  return n.done(gt, end_index);
}

KO_WKT1_DEFINE_FROM_STR(geogtran, ko_geogtran, "GEOGTRAN", nullptr)

}  // extern "C"

extern "C" {

// --- VTMETHOD ----------------------------------------------------------------

int ko_wkt_vtmethod_to_str(const ko_vtmethod *m, const char *authority, uint32_t options, int size,
                           char *buf) {
  return write_name_only(m, KO_TYPE_VTMETHOD, "VTMETHOD", authority, options, size, buf);
}

// VTMETHOD["name"]: a name the vertical method list does not know is
// error 307.
ko_vtmethod *ko_wkt_vtmethod_from_tokens(const ko_wkt_tokens *tokens, const char *authority,
                                         int index, int *end_index, ko_err *err) {
  return read_name_only<ko_vtmethod>(tokens, authority, index, end_index, err, "VTMETHOD",
                                     KO_TYPE_VTMETHOD, ko_vtmethlist_vtmethod_from_name);
}

KO_WKT1_DEFINE_FROM_STR(vtmethod, ko_vtmethod, "VTMETHOD", nullptr)

// --- VERTTRAN ----------------------------------------------------------------

int ko_wkt_verttran_to_str(const ko_verttran *vt, const char *authority, uint32_t options, int size,
                           char *buf) {
  TextOut out(buf, size);
  if (!begin_node(out, vt, KO_TYPE_VERTTRAN, "VERTTRAN", authority, options)) return out.finish();
  uint32_t child = level_of(options).child_options;
  put_child<void>(out, ko_wkt_coordsys_to_str, ko_verttran_coordsys(vt), authority, child);
  put_child(out, ko_wkt_vertcs_to_str, ko_verttran_vertcs1(vt), authority, child);
  put_child(out, ko_wkt_vertcs_to_str, ko_verttran_vertcs2(vt), authority, child);
  put_child(out, ko_wkt_vtmethod_to_str, ko_verttran_vtmethod(vt), authority, child);
  ko_parameter *parms[KO_PARM_COUNT];
  ko_verttran_parameters(vt, parms);
  put_parameters(out, parms, authority, child, ko_parameter_value_si);
  put_accuracy(out, ko_verttran_accuracy(vt), options);
  put_tail(out, vt, ko_verttran_metadata_vector(vt), authority, options);
  return out.finish();
}

// VERTTRAN["name", GEOGCS or PROJCS, VERTCS (from), VERTCS (to), VTMETHOD,
// PARAMETER..., OPERATIONACCURACY[metres]]: the horizontal system is
// optional; errors 443, 444 and 445 without the first or second vertical
// system or the method; 404, 418, 417 and 352 for a second horizontal
// system, a third vertical one, a second method or accuracy.  Parameter
// values are in metres and radians (as a vertical transformation counts
// parameters without unit), and so they are written.
ko_verttran *ko_wkt_verttran_from_tokens(const ko_wkt_tokens *tokens, const char *authority,
                                         int index, int *end_index, ko_err *err) {
  enum { kMethod, kAccuracy, kGeogcs, kProjcs, kVertcs, kParameter };
  static constexpr ChildKind kChildren[] = {{"VTMETHOD", nullptr, 417}, {"OPERATIONACCURACY", nullptr, 352},
                                            {"GEOGCS", nullptr, 0},    {"PROJCS", nullptr, 0},
                                            {"VERTCS", "VERT_CS", 0},  {"PARAMETER", nullptr, 0}};
  NodeRead n(tokens, authority, err);
  ko::Unique<void> horizontal;
  std::array<ko::Unique<ko_vertcs>, 2> vertical;
  ko::Unique<ko_vtmethod> method;
  ParameterSlots parms;
  double accuracy = kUnknownAccuracy;
  ko_metadata **metadata_ptr = nullptr;
  if (!n.open(index, "VERTTRAN", nullptr, kChildren) || !read_coordsys(n, kGeogcs, kProjcs, horizontal) ||
      !read_child(n.r, n.c.first[kMethod], ko_wkt_vtmethod_from_tokens, method))
    return nullptr;
  if (!read_pair(n, kVertcs, ko_wkt_vertcs_from_tokens, vertical, 418) ||
      !read_accuracy(n, n.c.first[kAccuracy], accuracy) ||
      !read_parameters(n.r, n.node, n.c, kParameter, KO_PARM_CAT_VERTTRAN, parms) ||
      !read_metadata(n.r, n.c, metadata_ptr))
    return nullptr;
  UniqueMetadata metadata(metadata_ptr);
  if (!n.read_extras()) return nullptr;
  const int missing = vertical[0] == nullptr ? 443 : vertical[1] == nullptr ? 444 : method == nullptr ? 445 : 0;
  if (missing != 0) {
    report(err, missing, n.node.keyword, n.node.name);
    return nullptr;
  }
  char name[KO_NAME_SIZE];
  n.name(KO_TYPE_VERTTRAN, name);
  ko_verttran *vt = construct(n.r, [&](ko_err *e) {
    return ko_verttran_ext_new_errext(name, horizontal.get(), vertical[0].get(), vertical[1].get(),
                                      method.get(), parms.ptrs.data(), metadata.get(), nullptr, e,
                                      accuracy);
  });
  if (vt == nullptr) return nullptr;
  release_all(horizontal, vertical, method, parms, metadata);
  return n.done(vt, end_index);
}

KO_WKT1_DEFINE_FROM_STR(verttran, ko_verttran, "VERTTRAN", nullptr)

}  // extern "C"
