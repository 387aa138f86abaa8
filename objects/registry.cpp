// The objvec registry: every object type's operation table, through which
// the generic clone, delete and equal dispatch.
#include "objects/object.h"

namespace {

// Null-terminated and searched in order.  Each new object type adds its
// objvec line here, keeping alphabetical order of the type names.  The
// composite codes (coordsys, hvdatum, transform) and extents have none.
constexpr const ko_objvec *kRegistry[] = {
    &ko_adjhcs_objvec,
    &ko_angunit_objvec,
    &ko_areaunit_objvec,
    &ko_array_objvec,
    &ko_authority_objvec,
    &ko_axis_objvec,
    &ko_conversion_objvec,
    &ko_datum_objvec,
    &ko_dispname_objvec,
    &ko_epoch_objvec,
    &ko_geogcs_objvec,
    &ko_geogtran_objvec,
    &ko_gxyzcs_objvec,
    &ko_htmethod_objvec,
    &ko_hvcoordsys_objvec,
    &ko_linunit_objvec,
    &ko_metadata_objvec,
    &ko_method_objvec,
    &ko_parameter_objvec,
    &ko_primem_objvec,
    &ko_projcs_objvec,
    &ko_projection_objvec,
    &ko_remark_objvec,
    &ko_scaleunit_objvec,
    &ko_spheroid_objvec,
    &ko_unit_objvec,
    &ko_vdatum_objvec,
    &ko_vertcs_objvec,
    &ko_verttran_objvec,
    &ko_vtmethod_objvec,
    nullptr,
};

}  // namespace

extern "C" const ko_objvec *ko_object_vector(uint32_t type) {
  for (const ko_objvec *const *entry = kRegistry; *entry != nullptr; ++entry)
    if ((*entry)->type == type) return *entry;
  return nullptr;
}
