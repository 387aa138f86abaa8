// Datum: a spheroid with an optional anchor text; a dynamic reference frame
// also carries its frame name and reference epoch.
#include "objects/geodetic.h"

namespace {

constexpr const char *kSource = "ko_datum_ext_new_errext";

}  // namespace

namespace ko {

bool names_equal_skipping(const char *a, const char *b, const char *prefix) {
  auto skip = [prefix](const char *name) {
    int n = static_cast<int>(std::strlen(prefix));
    return ko_strncmp_i(name, prefix, n) == 0 ? name + n : name;
  };
  return ko_strcmp_ci(skip(a), skip(b)) == 0;
}

}  // namespace ko

extern "C" {

ko_datum *ko_datum_ext_new_errext(const char *name, ko_spheroid *spheroid, const char *anchor,
                                  ko_err *err) {
  if (name == nullptr) name = "";
  if (anchor == nullptr) anchor = "";
  ko::errext_prologue(err, kSource, name);
  if (!ko::fits<KO_ANCHOR_SIZE>(anchor)) ko::report_too_long(err, kSource, anchor);
  if (ko::live_spheroid(spheroid) == nullptr) {
    ko::report_bad_argument(err, 327, kSource, name);
    return nullptr;
  }
  auto *d = ko::make_object<ko_datum>(KO_TYPE_DATUM, name);
  if (d == nullptr) {
    ko::report_no_memory(err, kSource, name);
    return nullptr;
  }
  d->spheroid = spheroid;
  ko::copy_field(d->anchor, anchor);
  d->frame_name[0] = '\0';
  d->epoch = 0.0;
  return d;
}

ko_datum *ko_datum_ext_new(const char *name, ko_spheroid *spheroid, const char *anchor) {
  return ko_datum_ext_new_errext(name, spheroid, anchor, nullptr);
}

ko_datum *ko_datum_new_errext(const char *name, ko_spheroid *spheroid, ko_err *err) {
  return ko_datum_ext_new_errext(name, spheroid, nullptr, err);
}

ko_datum *ko_datum_new(const char *name, ko_spheroid *spheroid) {
  return ko_datum_ext_new_errext(name, spheroid, nullptr, nullptr);
}

int ko_datum_p(const void *obj) { return ko::live_datum(obj) != nullptr; }

ko_datum *ko_datum_clone(const ko_datum *d) {
  const ko_datum *src = ko::live_datum(d);
  ko::Unique<ko_spheroid> spheroid;
  if (src == nullptr || !ko::clone_part(src->spheroid, spheroid, ko_spheroid_clone)) return nullptr;
  ko_datum *copy =
      ko_datum_ext_new_errext(ko_header_get_name(src), spheroid.get(), src->anchor, nullptr);
  if (copy == nullptr) return nullptr;
  spheroid.release();
  ko::copy_field(copy->frame_name, src->frame_name);
  copy->epoch = src->epoch;
  return ko::with_header_of(copy, src, ko_datum_del);
}

ko_datum *ko_datum_del(ko_datum *d) {
  d = ko::live_datum(d);
  if (d == nullptr) return nullptr;
  ko_spheroid_del(d->spheroid);
  return ko::release_object(d);
}

// Names equal by ko_strcmp_ci once a leading "D_" (either case) is dropped
// from each, so "D_WGS_1984" and "WGS_1984" name one datum; then the
// spheroids decide.  Anchor and dynamic frame are not compared.
int ko_datum_eq(const ko_datum *a, const ko_datum *b) {
  const ko_datum *da = ko::live_datum(a);
  const ko_datum *db = ko::live_datum(b);
  if (da == nullptr || db == nullptr) return 0;
  if (!ko::names_equal_skipping(ko_header_get_name(da), ko_header_get_name(db), "D_")) return 0;
  return ko_spheroid_eq(da->spheroid, db->spheroid);
}

ko_spheroid *ko_datum_spheroid(const ko_datum *d) {
  return ko::field_or(d, ko::live_datum, &ko_datum::spheroid, nullptr);
}

char *ko_datum_anchor(const ko_datum *d, char *buf) {
  if (buf == nullptr) return nullptr;
  buf[0] = '\0';
  if (const ko_datum *dp = ko::live_datum(d)) ko_strncpy(buf, dp->anchor, KO_ANCHOR_SIZE);
  return buf;
}

void ko_datum_set_dynamic(ko_datum *d, const char *frame_name, double epoch) {
  ko_datum *dp = ko::live_datum(d);
  if (dp == nullptr) return;
  ko::copy_field(dp->frame_name, frame_name);
  dp->epoch = epoch;
}

double ko_datum_get_dynamic(const ko_datum *d, char *buf) {
  const ko_datum *dp = ko::live_datum(d);
  if (buf != nullptr) buf[0] = '\0';
  if (dp == nullptr) return 0.0;
  if (buf != nullptr) ko_strncpy(buf, dp->frame_name, KO_NAME_SIZE);
  return dp->epoch;
}

// Dynamic when the epoch is anything but exactly 0.0; a NaN epoch counts as
// dynamic.
int ko_datum_is_dynamic(const ko_datum *d) {
  const ko_datum *dp = ko::live_datum(d);
  return dp != nullptr && !(dp->epoch == 0.0) ? 1 : 0;
}

const ko_objvec ko_datum_objvec =
    ko::make_objvec<ko_datum, ko_datum_clone, ko_datum_del, ko_datum_eq>(KO_TYPE_DATUM);

}  // extern "C"

KO_DEFINE_OBJECT_FORWARDS(datum, ko_datum)
