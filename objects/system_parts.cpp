// Cloning the axes, metadata vector and remark of a coordinate system.
#include "objects/system_parts.h"

#include "objects/composite.h"

namespace ko {

SystemPartsClone::SystemPartsClone(ko_axis *const *axes, int dimension,
                                   ko_metadata *const *metadata, const ko_remark *remark) {
  ok_ = clone_part(remark, remark_, ko_remark_clone);
  has_axes_ = axes != nullptr && axes[0] != nullptr;
  for (int i = 0; ok_ && has_axes_ && i < dimension && i < KO_AXIS_MAX; ++i) {
    ok_ = clone_part(axes[i], axes_[i], ko_axis_clone);
    axis_ptrs_[i] = axes_[i].get();
  }
  if (ok_ && metadata != nullptr) {
    metadata_ = ko_metadata_vector_clone(metadata);
    ok_ = metadata_ != nullptr;
  }
}

SystemPartsClone::~SystemPartsClone() { ko_metadata_vector_del(metadata_); }

void SystemPartsClone::release() {
  for (auto &axis : axes_) axis.release();
  metadata_ = nullptr;
  remark_.release();
}

}  // namespace ko
