// Helpers shared by the vertical, geocentric, compound and adjusted
// systems and the vertical transformation: parameter slots, metadata and
// remark, optional sub-objects, and the coordsys and hvdatum type tests.
#include "objects/systems.h"

namespace ko {

bool optional_objects_equal(const void *a, const void *b) {
  if (a == nullptr || b == nullptr) return a == b;
  return ko_object_eq(a, b) != 0;
}

bool clone_slots(ko_parameter *const *src, ParmSlots &out) {
  for (int i = 0; i < KO_PARM_COUNT; ++i)
    if (!clone_part<ko_parameter>(src[i], out[i], ko_parameter_clone)) return false;
  return true;
}

void release_slots(ParmSlots &from, ko_parameter **to) {
  for (int i = 0; i < KO_PARM_COUNT; ++i) to[i] = from[i].release();
}

void delete_slots(ko_parameter **slots) {
  for (int i = 0; i < KO_PARM_COUNT; ++i) slots[i] = ko_parameter_del(slots[i]);
}

bool slots_equal(ko_parameter *const *a, ko_parameter *const *b) {
  for (int i = 0; i < KO_PARM_COUNT; ++i) {
    if (a[i] == nullptr && b[i] == nullptr) continue;
    if (ko_parameter_eq(a[i], b[i]) == 0) return false;
  }
  return true;
}

bool clone_annotations(ko_metadata *const *metadata, const ko_remark *remark, Annotations &out) {
  if (!clone_part(remark, out.remark, ko_remark_clone)) return false;
  if (metadata == nullptr) return true;
  out.metadata = ko_metadata_vector_clone(metadata);
  return out.metadata != nullptr;
}

}  // namespace ko

extern "C" {

int ko_coordsys_p(const void *obj) { return ko::live_coordsys(obj) != nullptr; }

int ko_hvdatum_p(const void *obj) { return ko::as<void>(obj, KO_TYPE_HVDATUM) != nullptr; }

}  // extern "C"
