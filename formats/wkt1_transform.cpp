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
  TextOut out(buf, size);
  if (skip_object(m, KO_TYPE_METHOD, options)) return out.finish();
  char name[KO_NAME_SIZE];
  put_header(out, "METHOD", choose_name(m, authority, options, name));
  put_tail(out, m, nullptr, authority, options);
  return out.finish();
}

// METHOD["name"]: a name the method list does not know is error 305.
ko_method *ko_wkt_method_from_tokens(const ko_wkt_tokens *tokens, const char *authority, int index,
                                     int *end_index, ko_err *err) {
  Reader r{tokens, authority, err};
  Node node;
  Children c;
  Extras extras;
  if (tokens == nullptr || !open_node(r, index, "METHOD", nullptr, node) ||
      !scan_children(r, node, {}, c) || !read_extras(r, c, extras))
    return nullptr;
  char name[KO_NAME_SIZE];
  library_name(r, KO_TYPE_METHOD, node, name);
  ko_method *m = construct(r, [&](ko_err *e) { return ko_methlist_method_from_name(name, e); });
  if (m == nullptr) return nullptr;
  set_end(end_index, node);
  return static_cast<ko_method *>(finish_object(m, node, extras));
}

ko_method *ko_wkt_method_from_str(const char *text, const char *authority, ko_err *err) {
  return read_text(text, authority, err, "METHOD", nullptr, ko_wkt_method_from_tokens);
}

// --- GEOGTRAN ----------------------------------------------------------------

// The accuracy is left out when it is unknown (999.0); a NaN accuracy is
// written as such.
int ko_wkt_geogtran_to_str(const ko_geogtran *gt, const char *authority, uint32_t options, int size,
                           char *buf) {
  TextOut out(buf, size);
  if (skip_object(gt, KO_TYPE_GEOGTRAN, options)) return out.finish();
  char name[KO_NAME_SIZE];
  put_header(out, "GEOGTRAN", choose_name(gt, authority, options, name));
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
  static constexpr ChildSpec kSpecs[] = {{"METHOD", nullptr, 410},
                                         {"OPERATIONACCURACY", nullptr, 352},
                                         {"GEOGCS", nullptr, 0},
                                         {"PARAMETER", nullptr, 0}};
  Reader r{tokens, authority, err};
  Node node;
  Children c;
  Extras extras;
  ko::Unique<ko_method> method;
  std::array<ko::Unique<ko_geogcs>, 2> gcs;
  ParameterSlots parms;
  ko_metadata **metadata_ptr = nullptr;
  if (tokens == nullptr || !open_node(r, index, "GEOGTRAN", nullptr, node) ||
      !scan_children(r, node, kSpecs, c) ||
      !read_child(r, c.first[kMethod], ko_wkt_method_from_tokens, method))
    return nullptr;
  std::size_t systems = 0;
  for (int k = 0; k < c.repeat_count; ++k) {
    if (c.repeats[k].kind != kGeogcs) continue;
    if (systems == gcs.size()) {
      report(err, 406, node.keyword, node.name);
      return nullptr;
    }
    if (!read_child(r, c.repeats[k].at, ko_wkt_geogcs_from_tokens, gcs[systems])) return nullptr;
    if (gcs[systems] != nullptr) ++systems;
  }
  double accuracy = kUnknownAccuracy;
  if (const int at = c.first[kAccuracy]; at >= 0) {
    if (at + 1 >= node.end || tokens->tokens[at + 1].depth <= tokens->tokens[at].depth) {
      report(err, 475, node.keyword, "OPERATIONACCURACY");
      return nullptr;
    }
    if (!parse_number(r, tokens->tokens[at + 1].text, node, accuracy)) return nullptr;
  }
  if (!read_parameters(r, node, c, kParameter, KO_PARM_CAT_GEOGTRAN, parms) ||
      !read_metadata(r, c, metadata_ptr))
    return nullptr;
  UniqueMetadata metadata(metadata_ptr);
  if (!read_extras(r, c, extras)) return nullptr;
  const bool one_gcs = ko_method_rtn_type(method.get()) == static_cast<int>(KO_MTH_RTN_ONE_GCS);
  const int missing = gcs[0] == nullptr                 ? 434
                      : gcs[1] == nullptr && !one_gcs    ? 435
                      : method == nullptr                ? 439
                                                         : 0;
  if (missing != 0) {
    report(err, missing, node.keyword, node.name);
    return nullptr;
  }
  char name[KO_NAME_SIZE];
  library_name(r, KO_TYPE_GEOGTRAN, node, name);
  ko_geogtran *gt = construct(r, [&](ko_err *e) {
    return ko_geogtran_ext_new_errext(name, gcs[0].get(), gcs[1].get(), method.get(), parms.ptrs.data(),
                                      metadata.get(), nullptr, e, accuracy);
  });
  if (gt == nullptr) return nullptr;
  for (auto &g : gcs) g.release();
  method.release();
  parms.release();
  metadata.release();
  set_end(end_index, node);
  return static_cast<ko_geogtran *>(finish_object(gt, node, extras));
}

ko_geogtran *ko_wkt_geogtran_from_str(const char *text, const char *authority, ko_err *err) {
  return read_text(text, authority, err, "GEOGTRAN", nullptr, ko_wkt_geogtran_from_tokens);
}

}  // extern "C"
