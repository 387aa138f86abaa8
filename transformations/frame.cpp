// The point frame of geographic transformations: the sides of a direction,
// units and prime meridians at the edges, latitude clamping, the cached
// method constants, then one call of the method's forward or inverse
// function on the whole array.  Also the recentring wrapper and composite
// transformations (a chain of steps).
#include "transformations/geogtran.h"

#include <cmath>
#include <cstdint>

namespace {

// What the frame needs of the GCS on one side.
struct Side {
  double meridian;  // prime meridian, radians east of Greenwich
  double angular;   // radians per angular unit
  double vertical;  // metres per vertical unit
};

bool same_units(const Side &a, const Side &b) {
  return a.meridian == b.meridian && a.angular == b.angular && a.vertical == b.vertical;
}

// A GCS without an angular unit (three axes that carry none) is taken in
// degrees, the unit a GCS gets when none is given.
Side side_of(const ko_geogcs *gcs) {
  Side s{};
  s.meridian = ko_primem_longitude(ko_geogcs_primem(gcs)) * ko::kDegree;
  s.angular = ko_angunit_factor(ko_geogcs_unit(gcs));
  if (!(s.angular > 0.0)) s.angular = ko::kDegree;
  const ko_linunit *vunit = ko_geogcs_vert_unit(gcs);
  s.vertical = vunit != nullptr ? ko_linunit_factor(vunit) : 1.0;
  return s;
}

// Two one-sided clamps, which compile to min and max instructions: a NaN
// latitude passes through unchanged.
inline double clamp_latitude(double lat) {
  lat = lat > ko::kHalfPi ? ko::kHalfPi : lat;
  return lat < -ko::kHalfPi ? -ko::kHalfPi : lat;
}

// ko_delta folds a longitude outside [-pi, pi] and leaves the others as they
// are; the test keeps the call out of the common case.
inline double fold_longitude(double lon) {
  return (lon >= -ko::kPi && lon <= ko::kPi) ? lon : ko_delta(lon);
}

// Into the method's terms: radians from Greenwich, latitudes clamped,
// metres.  Without unit conversion the values are already radians and
// metres (multiplying by 1.0 changes nothing).  One pass over the points.
void enter_method(const Side &in, bool convert_units, int32_t n, double *coord, double *z) {
  const double f = convert_units ? in.angular : 1.0;
  const double pm = in.meridian;
  for (int32_t i = 0; i < n; ++i) {
    const double lon = coord[2 * i] * f + pm;
    const double lat = coord[2 * i + 1] * f;
    coord[2 * i] = fold_longitude(lon);
    coord[2 * i + 1] = clamp_latitude(lat);
  }
  if (z != nullptr && convert_units) {
    const double v = in.vertical;
    for (int32_t i = 0; i < n; ++i) z[i] *= v;
  }
}

// Out of the method's terms.  The output meridian is subtracted (and the
// longitude folded) only when it is not zero: with a Greenwich output the
// longitude stays as the method left it.  That differs from the way in,
// which always folds, on purpose.  Dividing by 1.0 changes nothing.
void leave_method(const Side &out, bool convert_units, int32_t n, double *coord, double *z) {
  const bool shift = !(out.meridian == 0.0);
  const double pm = out.meridian;
  const double f = convert_units ? out.angular : 1.0;
  for (int32_t i = 0; i < n; ++i) {
    double lon = coord[2 * i];
    if (shift) lon = fold_longitude(lon - pm);
    coord[2 * i] = lon / f;
    coord[2 * i + 1] = clamp_latitude(coord[2 * i + 1]) / f;
  }
  if (z != nullptr && convert_units) {
    const double v = out.vertical;
    for (int32_t i = 0; i < n; ++i) z[i] /= v;
  }
}

}  // namespace

extern "C" {

int32_t ko_geog_to_geog_ext_internal(ko_geogtran *gt, void *extra, int convert_units, int32_t n,
                                     double *coord, double *z, int direction) {
  ko_geogtran *g = ko::live_geogtran(gt);
  if (g == nullptr || coord == nullptr || n < 0 || (direction != 0 && direction != 1)) return -1;
  const ko_methlist_entry *entry = ko::method_entry(g->method);
  ko_mth_fn convert = direction == 0 ? ko_methlist_get_forward(entry)
                                     : ko_methlist_get_inverse(entry);
  if (convert == nullptr) return 0;

  // A method working inside one GCS has GCS 1 on both sides.
  const bool one_gcs = ko_methlist_get_rtn_type(entry) == static_cast<int>(KO_MTH_RTN_ONE_GCS);
  const int in_side = one_gcs ? 0 : direction;
  const int out_side = one_gcs ? 0 : 1 - direction;
  const Side in = side_of(ko::gcs_of_side(*g, in_side));
  const Side out = side_of(ko::gcs_of_side(*g, out_side));
  if (ko_methlist_get_is_no_op(entry) != 0 && same_units(in, out)) return n;

  double parms[KO_PARM_COUNT];
  ko_geogtran_parm_array(g->parms, parms);
  const int whole_grid = parms[ko::kSlotDataset] == 0.0 ? 1 : 0;
  if (ko_geogtran_load_constants_with_extent(g, whole_grid, nullptr) == 0) return 0;
  if (n == 0) return convert(g, parms, extra, 0, coord, z);

  const bool units = convert_units != 0;
  enter_method(in, units, n, coord, z);
  const int32_t count = convert(g, parms, extra, n, coord, z);
  leave_method(out, units, n, coord, z);
  return count;
}

int32_t ko_geog_to_geog(ko_geogtran *gt, int32_t n, double *coord, double *z, int direction) {
  return ko_geog_to_geog_ext_internal(gt, nullptr, 1, n, coord, z, direction);
}

int32_t ko_geog_to_geog_ext(ko_geogtran *gt, void *extra, int32_t n, double *coord, double *z,
                            int direction) {
  return ko_geog_to_geog_ext_internal(gt, extra, 1, n, coord, z, direction);
}

int32_t ko_geog1_to_geog2(ko_geogtran *gt, int32_t n, double *coord, double *z) {
  return ko_geog_to_geog(gt, n, coord, z, 0);
}

int32_t ko_geog2_to_geog1(ko_geogtran *gt, int32_t n, double *coord, double *z) {
  return ko_geog_to_geog(gt, n, coord, z, 1);
}

// The centre is in the output GCS's angular unit, as are the longitudes;
// both are taken to radians for ko_delta_center and back.
int32_t ko_geog_to_geog_center(ko_geogtran *gt, int32_t n, double *coord, double *z,
                               int direction, double center) {
  const int32_t count = ko_geog_to_geog(gt, n, coord, z, direction);
  if (count < 0 || !(center != 0.0 && std::fabs(center) > ko::kTol)) return count;
  const ko_geogcs *out = direction == 0 ? ko_geogtran_geogcs2(gt) : ko_geogtran_geogcs1(gt);
  const double f = side_of(out).angular;
  const double c = center * f;
  for (int32_t i = 0; i < n; ++i) coord[2 * i] = ko_delta_center(coord[2 * i] * f, c) / f;
  return count;
}

// ---------------------------------------------------------------------------
// Composite transformations.

int32_t ko_gtlist_geog_to_geog_internal(const ko_gtlist_entry *entry, int convert_units,
                                        int64_t n, double *coord, double *z, int direction) {
  if (entry == nullptr || coord == nullptr || n < 0 || n > INT32_MAX ||
      (direction != 0 && direction != 1))
    return -1;
  if (n == 0 || entry->count <= 0 || entry->steps == nullptr) return 0;
  const auto count = static_cast<int32_t>(n);
  // The count of the last step run is the answer; a point that failed in an
  // earlier step goes on through the rest as it stands.
  int32_t converted = 0;
  if (direction == 0) {
    for (int32_t i = 0; i < entry->count; ++i) {
      const ko_gtlist_step &step = entry->steps[i];
      converted = ko_geog_to_geog_ext_internal(step.gt, nullptr, convert_units, count, coord, z,
                                               step.direction);
    }
  } else {
    for (int32_t i = entry->count - 1; i >= 0; --i) {
      const ko_gtlist_step &step = entry->steps[i];
      converted = ko_geog_to_geog_ext_internal(step.gt, nullptr, convert_units, count, coord, z,
                                               1 - step.direction);
    }
  }
  return converted;
}

int32_t ko_factory_gtlist_geog_to_geog(const ko_gtlist_entry *entry, int64_t n, double *coord,
                                       double *z, int direction) {
  return ko_gtlist_geog_to_geog_internal(entry, 1, n, coord, z, direction);
}

int ko_gtlist_entry_init(ko_gtlist_entry *entry, int32_t count) {
  if (entry == nullptr || count < 1) return 0;
  *entry = ko_gtlist_entry{};
  const auto steps = static_cast<std::size_t>(count);
  entry->steps = ko::alloc_array<ko_gtlist_step>(steps, "ko_gtlist steps");
  if (entry->steps == nullptr) return 0;
  entry->count = count;
  return 1;
}

void ko_gtlist_entry_clear(ko_gtlist_entry *entry) {
  if (entry == nullptr) return;
  for (int32_t i = 0; entry->steps != nullptr && i < entry->count; ++i)
    ko_geogtran_del(entry->steps[i].gt);
  ko::free_object(entry->steps, "ko_gtlist steps");
  *entry = ko_gtlist_entry{};
}

ko_gtlist_entry *ko_gtlist_entry_new(int32_t count) {
  if (count < 1) return nullptr;
  ko::Owned<ko_gtlist_entry> entry(ko::alloc_object<ko_gtlist_entry>("ko_gtlist entry"));
  if (entry == nullptr || ko_gtlist_entry_init(entry.get(), count) == 0) return nullptr;
  return entry.release();
}

ko_gtlist_entry *ko_gtlist_entry_del(ko_gtlist_entry *entry) {
  ko_gtlist_entry_clear(entry);
  ko::free_object(entry, "ko_gtlist entry");
  return nullptr;
}

int ko_gtlist_entry_set_step(ko_gtlist_entry *entry, int32_t i, ko_geogtran *gt,
                             int32_t direction) {
  if (entry == nullptr || entry->steps == nullptr || i < 0 || i >= entry->count ||
      (direction != 0 && direction != 1) || !ko_geogtran_p(gt))
    return 0;
  ko_gtlist_step &step = entry->steps[i];
  if (step.gt != gt) ko_geogtran_del(step.gt);
  step.gt = gt;
  step.direction = direction;
  return 1;
}

ko_gtlist_entry *ko_gtlist_new(int32_t count) {
  if (count < 0) return nullptr;
  return ko::alloc_array<ko_gtlist_entry>(static_cast<std::size_t>(count) + 1, "ko_gtlist");
}

ko_gtlist_entry *ko_gtlist_del(ko_gtlist_entry *list) {
  if (list == nullptr) return nullptr;
  for (ko_gtlist_entry *entry = list; entry->count > 0; ++entry) ko_gtlist_entry_clear(entry);
  ko::free_object(list, "ko_gtlist");
  return nullptr;
}

}  // extern "C"
