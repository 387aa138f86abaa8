// Vertical datum: the reference of gravity-related heights and depths,
// known by its name, with an anchor text, metadata and, for a dynamic
// vertical frame, its frame name and reference epoch.
#include "objects/systems.h"

namespace {

constexpr const char *kSource = "ko_vdatum_ext_new_errext";

}  // namespace

extern "C" {

// In order: a name (null or empty: 321; too long: warning 354, cut); an
// anchor that does not fit (warning 354, cut); memory (1).
ko_vdatum *ko_vdatum_ext_new_errext(const char *name, const char *anchor, ko_metadata **metadata,
                                    ko_err *err) {
  ko_err_clear(err);
  if (name == nullptr || *name == '\0') {
    ko::report_bad_argument(err, 321, kSource, name);
    return nullptr;
  }
  ko::errext_prologue(err, kSource, name);
  if (!ko::fits<KO_ANCHOR_SIZE>(anchor)) ko::report_too_long(err, kSource, anchor);
  auto *d = ko::make_object<ko_vdatum>(KO_TYPE_VDATUM, name);
  if (d == nullptr) {
    ko::report_no_memory(err, kSource, name);
    return nullptr;
  }
  ko::copy_field(d->anchor, anchor);
  d->metadata = metadata;
  return d;
}

ko_vdatum *ko_vdatum_ext_new(const char *name, const char *anchor, ko_metadata **metadata) {
  return ko_vdatum_ext_new_errext(name, anchor, metadata, nullptr);
}

ko_vdatum *ko_vdatum_new_errext(const char *name, ko_err *err) {
  return ko_vdatum_ext_new_errext(name, nullptr, nullptr, err);
}

ko_vdatum *ko_vdatum_new(const char *name) {
  return ko_vdatum_ext_new_errext(name, nullptr, nullptr, nullptr);
}

int ko_vdatum_p(const void *obj) { return ko::live_vdatum(obj) != nullptr; }

ko_vdatum *ko_vdatum_clone(const ko_vdatum *d) {
  const ko_vdatum *src = ko::live_vdatum(d);
  ko::Annotations parts;
  if (src == nullptr || !ko::clone_annotations(src->metadata, nullptr, parts)) return nullptr;
  ko_vdatum *copy =
      ko_vdatum_ext_new_errext(ko_header_get_name(src), src->anchor, parts.metadata, nullptr);
  if (copy == nullptr) return nullptr;
  parts.take_metadata();
  ko::copy_field(copy->frame_name, src->frame_name);
  copy->epoch = src->epoch;
  return ko::with_header_of(copy, src, ko_vdatum_del);
}

ko_vdatum *ko_vdatum_del(ko_vdatum *d) {
  d = ko::live_vdatum(d);
  if (d == nullptr) return nullptr;
  ko_metadata_vector_del(d->metadata);
  return ko::release_object(d);
}

// A vertical datum is defined by its name alone: anchor, dynamic frame and
// metadata describe it but do not make two datums different.
int ko_vdatum_eq(const ko_vdatum *a, const ko_vdatum *b) {
  const ko_vdatum *da = ko::live_vdatum(a);
  const ko_vdatum *db = ko::live_vdatum(b);
  if (da == nullptr || db == nullptr) return 0;
  return ko_strcmp_ci(ko_header_get_name(da), ko_header_get_name(db)) == 0 ? 1 : 0;
}

char *ko_vdatum_anchor(const ko_vdatum *d, char *buf) {
  if (buf == nullptr) return nullptr;
  buf[0] = '\0';
  if (const ko_vdatum *dp = ko::live_vdatum(d)) ko_strncpy(buf, dp->anchor, KO_ANCHOR_SIZE);
  return buf;
}

ko_metadata **ko_vdatum_metadata_vector(const ko_vdatum *d) {
  return ko::field_or(d, ko::live_vdatum, &ko_vdatum::metadata, nullptr);
}

void ko_vdatum_set_dynamic(ko_vdatum *d, const char *frame_name, double epoch) {
  ko_vdatum *dp = ko::live_vdatum(d);
  if (dp == nullptr) return;
  ko::copy_field(dp->frame_name, frame_name);
  dp->epoch = epoch;
}

double ko_vdatum_get_dynamic(const ko_vdatum *d, char *buf) {
  const ko_vdatum *dp = ko::live_vdatum(d);
  if (buf != nullptr) buf[0] = '\0';
  if (dp == nullptr) return 0.0;
  if (buf != nullptr) ko_strncpy(buf, dp->frame_name, KO_NAME_SIZE);
  return dp->epoch;
}

// Dynamic when the epoch is anything but exactly 0.0 (NaN included).
int ko_vdatum_is_dynamic(const ko_vdatum *d) {
  const ko_vdatum *dp = ko::live_vdatum(d);
  return dp != nullptr && !(dp->epoch == 0.0) ? 1 : 0;
}

constinit const ko_objvec ko_vdatum_objvec =
    ko::make_objvec<ko_vdatum, ko_vdatum_clone, ko_vdatum_del, ko_vdatum_eq>(KO_TYPE_VDATUM);

}  // extern "C"

KO_DEFINE_OBJECT_FORWARDS(vdatum, ko_vdatum)
