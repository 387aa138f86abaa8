// The constants record: precomputed values of one projection (or method),
// built once by its constants function and cached in the object using it.
#include "foundation/internal.h"

struct ko_constants {
  uint32_t magic;
  int32_t *ivals;
  void *fvals;
  double *dvals;
  void *data;
  ko_gcs_extent extent;
};

namespace {

ko_constants *live(const ko_constants *c) {
  return (c != nullptr && c->magic == KO_MAGIC_LIVE) ? const_cast<ko_constants *>(c) : nullptr;
}

template <class T>
void replace_owned(T *&slot, T *value) {
  if (slot != nullptr) ko_deallocate_rtn(slot, 0, "ko_constants");
  slot = value;
}

}  // namespace

extern "C" {

ko_constants *ko_constants_new(void) {
  ko_constants *c = ko::alloc_object<ko_constants>("ko_constants");
  if (c == nullptr) return nullptr;
  c->magic = KO_MAGIC_LIVE;
  ko_gcs_extent_clear(&c->extent);
  return c;
}

int ko_constants_p(const ko_constants *c) { return live(c) != nullptr; }

ko_constants *ko_constants_del(ko_constants *c) {
  c = live(c);
  if (c == nullptr) return nullptr;
  c->magic = KO_MAGIC_DEAD;
  replace_owned(c->ivals, static_cast<int32_t *>(nullptr));
  replace_owned(c->fvals, static_cast<void *>(nullptr));
  replace_owned(c->dvals, static_cast<double *>(nullptr));
  c->data = nullptr;  // private data of the projection: not ours to free
  ko_deallocate_rtn(c, 0, "ko_constants");
  return nullptr;
}

int32_t *ko_constants_ivals(const ko_constants *c) { return live(c) ? c->ivals : nullptr; }
void *ko_constants_fvals(const ko_constants *c) { return live(c) ? c->fvals : nullptr; }
double *ko_constants_dvals(const ko_constants *c) { return live(c) ? c->dvals : nullptr; }
void *ko_constants_data(const ko_constants *c) { return live(c) ? c->data : nullptr; }
ko_gcs_extent *ko_constants_extent(ko_constants *c) { return live(c) ? &c->extent : nullptr; }

void ko_constants_ivals_set(ko_constants *c, int32_t *ivals) {
  if (live(c)) replace_owned(c->ivals, ivals);
}
void ko_constants_fvals_set(ko_constants *c, void *fvals) {
  if (live(c)) replace_owned(c->fvals, fvals);
}
void ko_constants_dvals_set(ko_constants *c, double *dvals) {
  if (live(c)) replace_owned(c->dvals, dvals);
}
void ko_constants_data_set(ko_constants *c, void *data) {
  if (live(c)) c->data = data;
}
void ko_constants_extent_set(ko_constants *c, const ko_gcs_extent *extent) {
  if (live(c)) ko_gcs_extent_copy(&c->extent, extent);
}

}  // extern "C"
