// The objvec registry: every object type's operation table, through which
// the generic clone, delete and equal dispatch.
#include "objects/object.h"

namespace {

// Null-terminated and searched in order.  Each new object type adds its
// objvec line here, keeping alphabetical order of the type names.  The
// composite codes (coordsys, hvdatum, transform) and extents have none.
constexpr const ko_objvec *kRegistry[] = {
    &ko_authority_objvec,
    &ko_dispname_objvec,
    &ko_metadata_objvec,
    &ko_remark_objvec,
    nullptr,
};

}  // namespace

extern "C" const ko_objvec *ko_object_vector(uint32_t type) {
  for (const ko_objvec *const *entry = kRegistry; *entry != nullptr; ++entry)
    if ((*entry)->type == type) return *entry;
  return nullptr;
}
