// Cloning the axes, metadata vector and remark of a coordinate system.
#include "objects/system_parts.h"

namespace ko {

SystemPartsClone::SystemPartsClone(ko_axis *const *axes, int dimension,
                                   ko_metadata *const *metadata, const ko_remark *remark) {
  if (remark != nullptr) {
    remark_.reset(ko_remark_clone(remark));
    ok_ = remark_ != nullptr;
  }
  has_axes_ = axes != nullptr && axes[0] != nullptr;
  for (int i = 0; ok_ && has_axes_ && i < dimension && i < KO_AXIS_MAX; ++i) {
    axes_[i].reset(ko_axis_clone(axes[i]));
    axis_ptrs_[i] = axes_[i].get();
    ok_ = axes_[i] != nullptr;
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
