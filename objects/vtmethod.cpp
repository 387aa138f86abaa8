// The vertical transformation methods: the constant list, its lookups, the
// method object, and the check of a transformation's parameters against
// its method.
#include "objects/listed_method.h"
#include "objects/systems.h"

#include <iterator>

namespace {

// Parameter codes of the vertical transformations (the parameter list).
constexpr int32_t kOffset = 100060;     // Vertical_Offset
constexpr int32_t kLatEval = 100061;    // Latitude_Of_Evaluation
constexpr int32_t kLonEval = 100062;    // Longitude_Of_Evaluation
constexpr int32_t kInclNorth = 100063;  // Inclination_North
constexpr int32_t kInclEast = 100064;   // Inclination_East
constexpr int32_t kDataset = KO_PARM_CODE_DATASET;
constexpr int32_t kInterpolation = 100065;  // Interpolation_Type

constexpr uint32_t kGrid = KO_VTM_NEEDS_FILE | KO_VTM_POSITION;
constexpr uint32_t kGeoid = kGrid | KO_VTM_ELLIPSOIDAL_SOURCE | KO_VTM_GRAVITY_TARGET;

}  // namespace

extern "C" {

// In code order.  The first seven are the method families of the
// catalogue's vertical transformations, under the EPSG code of the family
// (IOGP guidance note 7-2 gives their formulas); the others are the
// library's own.  File-based methods take the file as Dataset_ and may
// choose their interpolation with Interpolation_Type.
const ko_vtmethlist_entry ko_vtmethlist_tbl[] = {
    // Offset at an evaluation point plus a plane inclined north and east.
    {1046,
     KO_VTM_POSITION,
     "Vertical_Offset_And_Slope",
     {kOffset, kLatEval, kLonEval, kInclNorth, kInclEast, 0},
     5},
    // Heights become depths and back: the sign changes.
    {1068, KO_VTM_REVERSES, "Height_Depth_Reversal", {0}, 0},
    // Only the linear unit changes.
    {1069, 0, "Change_Of_Vertical_Unit", {0}, 0},
    // Offset interpolated in a grid of height differences.
    {1084, kGrid, "Vertical_Offset_By_Grid", {kDataset, kInterpolation, 0}, 1},
    // Ellipsoidal height to depth below a geoid grid.
    {1109, kGeoid | KO_VTM_DEPTH_TARGET, "Geoid_Depth_By_Grid", {kDataset, kInterpolation, 0}, 1},
    // A constant offset.
    {9616, 0, "Vertical_Offset", {kOffset, 0}, 1},
    // Ellipsoidal height to gravity-related height through a geoid grid.
    {9665, kGeoid, "Geoid_Height_By_Grid", {kDataset, kInterpolation, 0}, 1},
    // Two systems of one vertical reference: nothing to compute.
    {109700, KO_VTM_NO_OP, "Null", {0}, 0},
    // Geoid undulation summed from a spherical-harmonic geopotential model
    // (coefficient file), to heights or to depths.
    {109701, kGeoid, "Geoid_Height_By_Geopotential_Model", {kDataset, 0}, 1},
    {109702, kGeoid | KO_VTM_DEPTH_TARGET, "Geoid_Depth_By_Geopotential_Model", {kDataset, 0}, 1},
    // A geoid grid with a velocity layer: undulation at the coordinate epoch.
    {109703,
     kGeoid | KO_VTM_TIME_BASED,
     "Geoid_Height_By_Time_Based_Grid",
     {kDataset, kInterpolation, 0},
     1},
    // Offsets and undulations interpolated in a triangulated network.
    {109704, kGrid, "Vertical_Offset_By_Triangulation", {kDataset, 0}, 1},
    {109705, kGeoid, "Geoid_Height_By_Triangulation", {kDataset, 0}, 1},
    // Offset rates in a grid, scaled by the time from the reference epoch.
    {109706,
     kGrid | KO_VTM_TIME_BASED,
     "Vertical_Offset_By_Velocity_Grid",
     {kDataset, kInterpolation, 0},
     1},
    // Ellipsoidal height differences between two realisations, by grid.
    {109707,
     kGrid | KO_VTM_ELLIPSOIDAL_SOURCE | KO_VTM_ELLIPSOIDAL_TARGET,
     "Ellipsoidal_Height_Offset_By_Grid",
     {kDataset, kInterpolation, 0},
     1},
    {0, 0, nullptr, {0}, 0},
};

const int ko_vtmethlist_tbl_cnt = static_cast<int>(std::size(ko_vtmethlist_tbl)) - 1;

}  // extern "C"

namespace {

constexpr const char *kSource = "ko_vtmethod_new_errext";

const ko::MethodList<ko_vtmethlist_entry> kList{
    {ko_vtmethlist_tbl, std::size(ko_vtmethlist_tbl) - 1},
    KO_TYPE_VTMETHOD,
    "ko_vtmethlist_vtmethod_from_code",
    "ko_vtmethlist_vtmethod_from_name",
    222,
    307,
};

bool takes(const ko_vtmethlist_entry &e, int32_t code) {
  if (code <= 0) return false;
  for (int32_t c : e.parms)
    if (c == code) return true;
  return false;
}

void report_parameter(ko_err *err, int number, const char *source, const char *name,
                      const char *parameter) {
  ko_err_fmt(err, KO_SEV_ERROR, KO_ERRCAT_ARGUMENT, number, source, "%s: %s", name, parameter);
}

// Each filled slot holds a parameter the method takes, in its own slot
// (348); each mandatory parameter is present (347).
bool parameters_suit(const ko_vtmethlist_entry &e, ko_parameter *const *parms, const char *name,
                     const char *source, ko_err *err) {
  for (int slot = 0; slot < KO_PARM_COUNT; ++slot) {
    const ko_parameter *p = parms[slot];
    if (p == nullptr) continue;
    int32_t code = ko::live_parameter(p) != nullptr ? ko_header_get_code_internal(p) : 0;
    if (!takes(e, code) || ko_parmlist_index_from_code(code) != slot) {
      report_parameter(err, 348, source, name, ko_header_get_name(p));
      return false;
    }
  }
  for (int i = 0; i < e.required; ++i) {
    int32_t slot = ko_parmlist_index_from_code(e.parms[i]);
    const ko_parameter *p = parms[slot];
    if (p == nullptr || ko_header_get_code_internal(p) != e.parms[i]) {
      report_parameter(err, 347, source, name, ko_parmlist_from_code(e.parms[i])->name);
      return false;
    }
  }
  return true;
}

ko_vtmethod *vtmethod_del(ko_vtmethod *m) { return ko::release_object(ko::live_vtmethod(m)); }
int vtmethod_eq(const ko_vtmethod *a, const ko_vtmethod *b) {
  return ko::method_eq(a, b, KO_TYPE_VTMETHOD);
}
ko_vtmethod *vtmethod_clone(const ko_vtmethod *m) {
  return ko::method_clone(m, KO_TYPE_VTMETHOD, vtmethod_del);
}

}  // namespace

namespace ko {

int vtmethod_check(ko_parameter *const *parms, const char *name, int32_t code, const char *source,
                   ko_err *err) {
  if (name == nullptr) name = "";
  if (parms == nullptr) {
    report_bad_argument(err, 330, source, name);
    return 0;
  }
  if (code <= 0) return 1;
  const ko_vtmethlist_entry *e = entry_from_code(kList, code);
  if (e == nullptr) {
    ko_err_arg(err, KO_SEV_ERROR, KO_ERRCAT_ARGUMENT, 351, source, "d", code);
    return 0;
  }
  return parameters_suit(*e, parms, name, source, err) ? 1 : 0;
}

}  // namespace ko

extern "C" {

const ko_vtmethlist_entry *ko_vtmethlist_from_code(int32_t code) {
  return ko::entry_from_code(kList, code);
}

const ko_vtmethlist_entry *ko_vtmethlist_from_name(const char *name) {
  return ko::entry_from_name(kList, name);
}

const ko_vtmethlist_entry *ko_vtmethlist_from_indx(int index) {
  return ko::entry_from_index(kList, index);
}

int ko_vtmethlist_count(void) { return ko_vtmethlist_tbl_cnt; }

ko_vtmethod *ko_vtmethlist_vtmethod_from_code(int32_t code, ko_err *err) {
  return ko::method_from_code<ko_vtmethod>(kList, code, 343, err);
}

ko_vtmethod *ko_vtmethlist_vtmethod_from_name(const char *name, ko_err *err) {
  return ko::method_from_name<ko_vtmethod>(kList, name, 343, err);
}

ko_vtmethod *ko_vtmethod_new_vtmethlist(const ko_vtmethlist_entry *entry, ko_err *err) {
  return ko::method_new<ko_vtmethod>(kList, entry, 343, "ko_vtmethod_new_vtmethlist", err);
}

ko_vtmethod *ko_vtmethod_new_errext(const char *name, ko_err *err) {
  return ko::method_by_name<ko_vtmethod>(kList, name, 343, kSource, err);
}

ko_vtmethod *ko_vtmethod_new(const char *name) { return ko_vtmethod_new_errext(name, nullptr); }

int ko_vtmethod_p(const void *obj) { return ko::live_vtmethod(obj) != nullptr; }
ko_vtmethod *ko_vtmethod_clone(const ko_vtmethod *m) { return vtmethod_clone(m); }
ko_vtmethod *ko_vtmethod_del(ko_vtmethod *m) { return vtmethod_del(m); }
int ko_vtmethod_eq(const ko_vtmethod *a, const ko_vtmethod *b) { return vtmethod_eq(a, b); }

const ko_vtmethlist_entry *ko_vtmethod_entry(const ko_vtmethod *m) {
  return ko::method_entry(kList, m);
}

uint32_t ko_vtmethod_flags(const ko_vtmethod *m) {
  const ko_vtmethlist_entry *e = ko_vtmethod_entry(m);
  return e != nullptr ? e->flags : 0;
}

int ko_vtmethod_valid(ko_parameter *const *parms, const char *name, int32_t code, ko_err *err) {
  ko_err_clear(err);
  return ko::vtmethod_check(parms, name, code, "ko_vtmethod_valid", err);
}

constinit const ko_objvec ko_vtmethod_objvec =
    ko::make_objvec<ko_vtmethod, vtmethod_clone, vtmethod_del, vtmethod_eq>(KO_TYPE_VTMETHOD);

}  // extern "C"

KO_DEFINE_OBJECT_FORWARDS(vtmethod, ko_vtmethod)
