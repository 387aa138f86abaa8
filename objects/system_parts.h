// Cloning the parts that every coordinate system owns besides its own
// sub-objects: axes, metadata vector and remark.  Internal.
#pragma once

#include "objects/geodetic.h"

#include <array>

namespace ko {

// Deep copies of a system's axes (the first `dimension`, or none when the
// system has none), metadata vector and remark.  ok() is false when any
// copy failed.  The copies are deleted with this record unless release()
// says that a new system has taken them.
class SystemPartsClone {
 public:
  SystemPartsClone(ko_axis *const *axes, int dimension, ko_metadata *const *metadata,
                   const ko_remark *remark);
  ~SystemPartsClone();
  SystemPartsClone(const SystemPartsClone &) = delete;
  SystemPartsClone &operator=(const SystemPartsClone &) = delete;

  bool ok() const { return ok_; }
  // The axes array for a system constructor: null when the source had none.
  ko_axis **axes() { return has_axes_ ? axis_ptrs_.data() : nullptr; }
  ko_metadata **metadata() const { return metadata_; }
  ko_remark *remark() const { return remark_.get(); }
  void release();

 private:
  std::array<Unique<ko_axis>, KO_AXIS_MAX> axes_;
  std::array<ko_axis *, KO_AXIS_MAX> axis_ptrs_{};
  ko_metadata **metadata_ = nullptr;
  Unique<ko_remark> remark_;
  bool has_axes_ = false;
  bool ok_ = true;
};

}  // namespace ko
