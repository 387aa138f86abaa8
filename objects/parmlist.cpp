// The parameter list: every parameter of projections, vertical systems and
// transformations with its code, canonical name, default, slot in the
// 24-slot parameter array, category and unit type.
#include "objects/parameter.h"

namespace {

constexpr uint32_t kPrj = KO_PARM_CAT_PROJECTION;
constexpr uint32_t kVcs = KO_PARM_CAT_VERTCS;
constexpr uint32_t kGtf = KO_PARM_CAT_GEOGTRAN;
constexpr uint32_t kVtf = KO_PARM_CAT_VERTTRAN;
constexpr uint32_t kTfm = KO_PARM_CAT_TRANSFORM;
constexpr uint32_t kNone = KO_PARM_UNIT_NONE;
constexpr uint32_t kAngle = KO_PARM_UNIT_ANGLE;
constexpr uint32_t kLength = KO_PARM_UNIT_LENGTH;
constexpr uint32_t kScale = KO_PARM_UNIT_SCALE;

}  // namespace

extern "C" {

// Defaults of angles are in degrees.  Several parameters share a slot
// (Central_Meridian and Longitude_Of_Origin 2; Central_Parallel and
// Latitude_Of_Origin 6; Standard_Parallel_1, Latitude_Of_1st_Point and
// Pseudo_Standard_Parallel_1 3; Standard_Parallel_2 and
// Latitude_Of_2nd_Point 4), and projection slots overlap transformation
// slots: one parameter array always belongs to one object.
const ko_parmlist_entry ko_parmlist_tbl[] = {
    {100001, "False_Easting", 0.0, 0, kPrj, kLength, 0},
    {100002, "False_Northing", 0.0, 1, kPrj, kLength, 0},
    {100003, "Scale_Factor", 1.0, 5, kPrj, kScale, 0},
    {100004, "Azimuth", 45.0, 7, kPrj, kAngle, 0},
    {100005, "Height", 0.0, 14, kPrj, kLength, 0},
    {100006, "Vertical_Shift", 0.0, 0, kVcs, kLength, 0},
    {100007, "Direction", 1.0, 1, kVcs, kNone, 0},
    {100010, "Central_Meridian", 0.0, 2, kPrj, kAngle, 0},
    {100011, "Longitude_Of_Origin", 0.0, 2, kPrj, kAngle, 0},
    {100012, "Longitude_Of_Center", -75.0, 10, kPrj, kAngle, 0},
    {100013, "Longitude_Of_1st_Point", 0.0, 8, kPrj, kAngle, 0},
    {100014, "Longitude_Of_2nd_Point", 60.0, 9, kPrj, kAngle, 0},
    {100020, "Central_Parallel", 0.0, 6, kPrj, kAngle, 0},
    {100021, "Latitude_Of_Origin", 0.0, 6, kPrj, kAngle, 0},
    {100022, "Latitude_Of_Center", 40.0, 11, kPrj, kAngle, 0},
    {100023, "Latitude_Of_1st_Point", 0.0, 3, kPrj, kAngle, 0},
    {100024, "Latitude_Of_2nd_Point", 60.0, 4, kPrj, kAngle, 0},
    {100025, "Standard_Parallel_1", 60.0, 3, kPrj, kAngle, 0},
    {100026, "Standard_Parallel_2", 60.0, 4, kPrj, kAngle, 0},
    {100027, "Pseudo_Standard_Parallel_1", 60.0, 3, kPrj, kAngle, 0},
    {100035, "Auxiliary_Sphere_Type", 0.0, 12, kPrj, kNone, 0},
    {100036, "Option", 0.0, 15, kPrj, kNone, 0},
    {100037, "X_Scale", 1.0, 12, kPrj, kScale, 0},
    {100038, "Y_Scale", 1.0, 13, kPrj, kScale, 0},
    {100039, "XY_Plane_Rotation", 0.0, 14, kPrj, kAngle, 0},
    {100040, "X_Axis_Translation", 0.0, 0, kGtf, kLength, 0},
    {100041, "Y_Axis_Translation", 0.0, 1, kGtf, kLength, 0},
    {100042, "Z_Axis_Translation", 0.0, 2, kGtf, kLength, 0},
    {100043, "X_Axis_Rotation", 0.0, 3, kGtf, kAngle, 0},
    {100044, "Y_Axis_Rotation", 0.0, 4, kGtf, kAngle, 0},
    {100045, "Z_Axis_Rotation", 0.0, 5, kGtf, kAngle, 0},
    {100046, "Scale_Difference", 0.0, 6, kGtf, kScale, 0},
    {100047, "Dataset_", 0.0, 15, kTfm, kNone, 0},
    {100048, "X_Coordinate_of_Rotation_Origin", 0.0, 7, kGtf, kLength, 0},
    {100049, "Y_Coordinate_of_Rotation_Origin", 0.0, 8, kGtf, kLength, 0},
    {100050, "Z_Coordinate_of_Rotation_Origin", 0.0, 9, kGtf, kLength, 0},
    {100051, "Longitude_Offset", 0.0, 10, kGtf, kAngle, 0},
    {100052, "Latitude_Offset", 0.0, 11, kGtf, kAngle, 0},
    {100060, "Vertical_Offset", 0.0, 0, kVtf, kLength, 0},
    {100061, "Latitude_Of_Evaluation", 0.0, 6, kVtf, kAngle, 0},
    {100062, "Longitude_Of_Evaluation", 0.0, 2, kVtf, kAngle, 0},
    {100063, "Inclination_North", 0.0, 13, kVtf, kAngle, 0},
    {100064, "Inclination_East", 0.0, 14, kVtf, kAngle, 0},
    {100065, "Interpolation_Type", 0.0, 12, kTfm, kNone, 0},
    {100070, "Aspect_Ratio", 0.6, 5, kPrj, kNone, 0},
    {100071, "Perspective_Ratio", 1.0, 16, kPrj, kNone, 0},
    {100072, "X_Axis_Translation_Rate", 0.0, 7, kGtf, kLength, 0},
    {100073, "Y_Axis_Translation_Rate", 0.0, 8, kGtf, kLength, 0},
    {100074, "Z_Axis_Translation_Rate", 0.0, 9, kGtf, kLength, 0},
    {100075, "X_Axis_Rotation_Rate", 0.0, 10, kGtf, kAngle, 0},
    {100076, "Y_Axis_Rotation_Rate", 0.0, 11, kGtf, kAngle, 0},
    {100077, "Z_Axis_Rotation_Rate", 0.0, 12, kGtf, kAngle, 0},
    {100078, "Scale_Difference_Rate", 0.0, 13, kGtf, kScale, 0},
    {100079, "Reference_Time", 0.0, 14, kGtf, kNone, 0},
    {0, "None", 0.0, 0, 0, 0, 0},
};

// Rows before the end row.
const int ko_parmlist_tbl_cnt = static_cast<int>(sizeof ko_parmlist_tbl / sizeof ko_parmlist_tbl[0]) - 1;

}  // extern "C"

namespace {

const ko_parmlist_entry *row_named(const char *name) {
  for (const ko_parmlist_entry *row = ko_parmlist_tbl; row->code != 0; ++row)
    if (ko_strcmp_ci(row->name, name) == 0) return row;
  return nullptr;
}

}  // namespace

extern "C" {

const ko_parmlist_entry *ko_parmlist_from_code(int32_t code) {
  if (code < 1) return nullptr;
  for (const ko_parmlist_entry *row = ko_parmlist_tbl; row->code != 0; ++row)
    if (row->code == code) return row;
  return nullptr;
}

// Rows are compared with ko_strcmp_ci: first the name as given, so that a
// listed name always finds its own row even where another authority uses
// the same words for a different parameter (EPSG's "Longitude of origin"
// is this list's Central_Meridian, not its Longitude_Of_Origin); then the
// name mapped through the catalogue's synonyms of parameters.  Any other
// name starting with "Dataset_" (any case) names a grid file: the row of
// the grid-file parameter.
const ko_parmlist_entry *ko_parmlist_from_name(const char *name) {
  if (name == nullptr || *name == '\0') return nullptr;
  if (const ko_parmlist_entry *row = row_named(name)) return row;
  char listed[KO_NAME_SIZE];
  ko_synonym_lookup_by_syn(KO_TYPE_PARAMETER, name, nullptr, listed);
  if (const ko_parmlist_entry *row = row_named(listed)) return row;
  if (ko_strncmp_i2(name, "dataset_") == 0) return ko_parmlist_from_code(KO_PARM_CODE_DATASET);
  return nullptr;
}

int32_t ko_parmlist_index_from_code(int32_t code) {
  const ko_parmlist_entry *row = ko_parmlist_from_code(code);
  return row != nullptr ? row->index : -1;
}

double ko_parmlist_default_from_code(int32_t code) {
  const ko_parmlist_entry *row = ko_parmlist_from_code(code);
  return row != nullptr ? row->dflt : 0.0;
}

uint32_t ko_parmlist_unit_type_from_code(int32_t code) {
  const ko_parmlist_entry *row = ko_parmlist_from_code(code);
  return row != nullptr ? row->unit_type : KO_PARM_UNIT_NONE;
}

int ko_parmlist_count(void) { return ko_parmlist_tbl_cnt; }

ko_parameter *ko_parmlist_parameter_from_code_value(int32_t code, ko_err *err, double value) {
  constexpr const char *kSource = "ko_parmlist_parameter_from_code";
  ko_err_clear(err);
  const ko_parmlist_entry *row = ko_parmlist_from_code(code);
  if (row == nullptr) {
    ko_err_arg(err, KO_SEV_ERROR, KO_ERRCAT_DBCONTENT, 218, kSource, "d", static_cast<int>(code));
    return nullptr;
  }
  ko_parameter *p = ko_parameter_new_parmlist(row, row->name, nullptr, value, err);
  if (p != nullptr) ko_object_status_set(p, KO_STATUS_CODE);
  return p;
}

ko_parameter *ko_parmlist_parameter_from_code(int32_t code, ko_err *err) {
  const ko_parmlist_entry *row = ko_parmlist_from_code(code);
  return ko_parmlist_parameter_from_code_value(code, err, row != nullptr ? row->dflt : 0.0);
}

}  // extern "C"
