// Epoch: one point in time as a decimal year (2010.5 is the middle of
// 2010), the coordinate epoch of dynamic reference frames.
#include "objects/systems.h"

#include <cmath>

namespace {

constexpr const char *kSource = "ko_epoch_new_errext";

}  // namespace

extern "C" {

// NaN, infinities and years outside the four-digit calendar years are
// error 355 with the year (16 significant digits) as message.
ko_epoch *ko_epoch_new_errext(double year, ko_err *err) {
  ko_err_clear(err);
  if (!(year >= KO_EPOCH_MIN_YEAR && year <= KO_EPOCH_MAX_YEAR)) {
    ko_err_arg(err, KO_SEV_ERROR, KO_ERRCAT_ARGUMENT, 355, kSource, "f", year);
    return nullptr;
  }
  auto *e = ko::make_object<ko_epoch>(KO_TYPE_EPOCH, nullptr);
  if (e == nullptr) {
    ko::report_no_memory(err, kSource, "");
    return nullptr;
  }
  e->year = year;
  return e;
}

ko_epoch *ko_epoch_new(double year) { return ko_epoch_new_errext(year, nullptr); }

int ko_epoch_p(const void *obj) { return ko::live_epoch(obj) != nullptr; }

ko_epoch *ko_epoch_clone(const ko_epoch *e) {
  const ko_epoch *src = ko::live_epoch(e);
  if (src == nullptr) return nullptr;
  ko_epoch *copy = ko_epoch_new_errext(src->year, nullptr);
  if (copy != nullptr) ko_header_copy_int(copy, src);
  return copy;
}

ko_epoch *ko_epoch_del(ko_epoch *e) { return ko::release_object(ko::live_epoch(e)); }

int ko_epoch_eq(const ko_epoch *a, const ko_epoch *b) {
  const ko_epoch *ea = ko::live_epoch(a);
  const ko_epoch *eb = ko::live_epoch(b);
  return ea != nullptr && eb != nullptr && ko::rel_eq(ea->year, eb->year) ? 1 : 0;
}

double ko_epoch_year(const ko_epoch *e) {
  return ko::field_or(e, ko::live_epoch, &ko_epoch::year, 0.0);
}

constinit const ko_objvec ko_epoch_objvec =
    ko::make_objvec<ko_epoch, ko_epoch_clone, ko_epoch_del, ko_epoch_eq>(KO_TYPE_EPOCH);

}  // extern "C"

KO_DEFINE_TYPE_FORWARD(epoch, ko_epoch)
