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
  if (double accuracy = ko_geogtran_accuracy(gt); accuracy != kUnknownAccuracy) {
    char number[32];
    ko_dtoa(number, (options & KO_STR_FULL_PRECISION) != 0 ? 17 : 16, accuracy);
    out.put(",OPERATIONACCURACY[");
    out.put(number);
    out.put(']');
  }
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
  std::size_t systems = 0;
  for (int k = 0; k < c.repeat_count; ++k) {
    if (c.repeats[k].kind != kGeogcs) continue;
    if (systems == gcs.size()) {
      report(err, 406, n.node.keyword, n.node.name);
      return nullptr;
    }
    if (!read_child(n.r, c.repeats[k].at, ko_wkt_geogcs_from_tokens, gcs[systems])) return nullptr;
    if (gcs[systems] != nullptr) ++systems;
  }
  double accuracy = kUnknownAccuracy;
  if (const int at = c.first[kAccuracy]; at >= 0) {
    if (at + 1 >= n.node.end || tokens->tokens[at + 1].depth <= tokens->tokens[at].depth) {
      report(err, 475, n.node.keyword, "OPERATIONACCURACY");
      return nullptr;
    }
    if (!parse_number(n.r, tokens->tokens[at + 1].text, n.node, accuracy)) return nullptr;
  }
  if (!read_parameters(n.r, n.node, c, kParameter, KO_PARM_CAT_GEOGTRAN, parms) ||
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
  for (auto &g : gcs) g.release();
  method.release();
  parms.release();
  metadata.release();
  return n.done(gt, end_index);
}

KO_WKT1_DEFINE_FROM_STR(geogtran, ko_geogtran, "GEOGTRAN", nullptr)

}  // extern "C"
