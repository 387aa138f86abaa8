// The per-type text forwards (declared in ko.h by KO_DECLARE_STRING_FORWARDS):
// each reads only its own type and writes as the generic entry points do.
#include "ko.h"

#define KO_DEFINE_STRING_FORWARDS(prefix, T, TYPE)                                             \
  T *ko_##prefix##_from_string_errext(const char *text, ko_err *err) {                         \
    return static_cast<T *>(ko_object_from_string_auth_by_type_errext(TYPE, text, nullptr, err)); \
  }                                                                                            \
  T *ko_##prefix##_from_string_auth(const char *text, const char *authority) {                 \
    return static_cast<T *>(ko_object_from_string_auth_by_type_errext(TYPE, text, authority,  \
                                                                      nullptr));              \
  }                                                                                            \
  T *ko_##prefix##_from_string(const char *text) {                                             \
    return ko_##prefix##_from_string_errext(text, nullptr);                                    \
  }                                                                                            \
  int ko_##prefix##_to_string(const T *obj, char *buf) { return ko_object_to_string(obj, buf); } \
  int ko_##prefix##_to_string_auth(const T *obj, const char *authority, char *buf) {           \
    return ko_object_to_string_auth(obj, authority, buf);                                      \
  }                                                                                            \
  char *ko_##prefix##_to_string_ext(const T *obj, uint32_t options, char *buf) {               \
    return ko_object_to_string_ext(obj, options, buf);                                         \
  }                                                                                            \
  int ko_##prefix##_to_string_len(const T *obj, uint32_t options, int size, char *buf) {       \
    return ko_object_to_string_len(obj, options, size, buf);                                   \
  }

extern "C" {
KO_DEFINE_STRING_FORWARDS(geogcs, ko_geogcs, KO_TYPE_GEOGCS)
KO_DEFINE_STRING_FORWARDS(projcs, ko_projcs, KO_TYPE_PROJCS)
KO_DEFINE_STRING_FORWARDS(datum, ko_datum, KO_TYPE_DATUM)
KO_DEFINE_STRING_FORWARDS(spheroid, ko_spheroid, KO_TYPE_SPHEROID)
KO_DEFINE_STRING_FORWARDS(primem, ko_primem, KO_TYPE_PRIMEM)
KO_DEFINE_STRING_FORWARDS(unit, ko_unit, KO_TYPE_UNIT)
KO_DEFINE_STRING_FORWARDS(linunit, ko_linunit, KO_TYPE_LINUNIT)
KO_DEFINE_STRING_FORWARDS(angunit, ko_angunit, KO_TYPE_ANGUNIT)
KO_DEFINE_STRING_FORWARDS(scaleunit, ko_scaleunit, KO_TYPE_SCALEUNIT)
KO_DEFINE_STRING_FORWARDS(areaunit, ko_areaunit, KO_TYPE_AREAUNIT)
KO_DEFINE_STRING_FORWARDS(parameter, ko_parameter, KO_TYPE_PARAMETER)
KO_DEFINE_STRING_FORWARDS(projection, ko_projection, KO_TYPE_PROJECTION)
KO_DEFINE_STRING_FORWARDS(method, ko_method, KO_TYPE_METHOD)
KO_DEFINE_STRING_FORWARDS(geogtran, ko_geogtran, KO_TYPE_GEOGTRAN)
KO_DEFINE_STRING_FORWARDS(metadata, ko_metadata, KO_TYPE_METADATA)
KO_DEFINE_STRING_FORWARDS(authority, ko_authority, KO_TYPE_AUTHORITY)
KO_DEFINE_STRING_FORWARDS(dispname, ko_dispname, KO_TYPE_DISPNAME)
KO_DEFINE_STRING_FORWARDS(vdatum, ko_vdatum, KO_TYPE_VDATUM)
KO_DEFINE_STRING_FORWARDS(vertcs, ko_vertcs, KO_TYPE_VERTCS)
KO_DEFINE_STRING_FORWARDS(gxyzcs, ko_gxyzcs, KO_TYPE_GXYZCS)
KO_DEFINE_STRING_FORWARDS(hvcoordsys, ko_hvcoordsys, KO_TYPE_HVCOORDSYS)
KO_DEFINE_STRING_FORWARDS(verttran, ko_verttran, KO_TYPE_VERTTRAN)
KO_DEFINE_STRING_FORWARDS(vtmethod, ko_vtmethod, KO_TYPE_VTMETHOD)
KO_DEFINE_STRING_FORWARDS(htmethod, ko_htmethod, KO_TYPE_HTMETHOD)
KO_DEFINE_STRING_FORWARDS(array, ko_array, KO_TYPE_ARRAY)
KO_DEFINE_STRING_FORWARDS(epoch, ko_epoch, KO_TYPE_EPOCH)
KO_DEFINE_STRING_FORWARDS(adjhcs, ko_adjhcs, KO_TYPE_ADJHCS)
}  // extern "C"
