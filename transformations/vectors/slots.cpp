// Shared slots of the method vectors: the kernels' arguments taken from a
// transformation, the Helmert family's cached similarities and the no-op
// methods.
#include "transformations/vectors/slots.h"

#include <cstring>

namespace ko {

namespace {

void spheroid_pair(const ko_geogcs *gcs, double (&sph)[2]) {
  const ko_spheroid *s = ko_datum_spheroid(ko_geogcs_datum(gcs));
  sph[0] = ko_spheroid_axis(s);
  sph[1] = ko_spheroid_esquared(s);
}

// Layout of a Helmert constants record: ivals {kHelmertTag, kHelmertDoubles},
// dvals four similarities of 12 doubles (matrix row by row, then the
// translation): position vector forward and inverse, then coordinate frame
// forward and inverse.  The tag tells these records from any other method's.
constexpr int32_t kHelmertTag = 0x484C4D54;  // "HLMT"
constexpr int kAffineDoubles = 12;
constexpr int kHelmertDoubles = 4 * kAffineDoubles;
static_assert(sizeof(Affine) == kAffineDoubles * sizeof(double));

int affine_index(Rotation rotation, bool inverse) {
  return (rotation == Rotation::kCoordinateFrame ? 2 : 0) + (inverse ? 1 : 0);
}

void store_affine(double *dvals, int index, const Affine &f) {
  std::memcpy(dvals + index * kAffineDoubles, &f, sizeof f);
}

// The cached similarity of a transformation, when its constants are a
// Helmert record.
bool cached_affine(const ko_geogtran &gt, Rotation rotation, bool inverse, Affine &f) {
  const int32_t *ivals = ko_constants_ivals(gt.constants);
  const double *dvals = ko_constants_dvals(gt.constants);
  if (ivals == nullptr || dvals == nullptr || ivals[0] != kHelmertTag) return false;
  std::memcpy(&f, dvals + affine_index(rotation, inverse) * kAffineDoubles, sizeof f);
  return true;
}

// Builds the four similarities exactly as helmert_transform does (the
// coordinate frame convention negates the rotations, IOGP guidance note
// 7-2, §4.4.3.2) and stores them in the record.
int store_similarities(ko_constants *constants, ko_parameter *const *parms, bool about_origin) {
  if (!ko_constants_p(constants) || parms == nullptr) return -1;
  double v[KO_PARM_COUNT];
  ko_geogtran_parm_array(parms, v);
  const double t[3] = {v[kSlotTx], v[kSlotTy], v[kSlotTz]};
  const double pivot[3] = {v[kSlotOriginX], v[kSlotOriginY], v[kSlotOriginZ]};
  const double *origin = about_origin ? pivot : nullptr;
  Owned<int32_t> ivals(alloc_array<int32_t>(2));
  Owned<double> dvals(alloc_array<double>(kHelmertDoubles));
  if (ivals == nullptr || dvals == nullptr) return 0;
  for (Rotation rotation : {Rotation::kPositionVector, Rotation::kCoordinateFrame}) {
    const double sign = rotation == Rotation::kPositionVector ? 1.0 : -1.0;
    const Affine forward = helmert_affine(t, sign * v[kSlotRx], sign * v[kSlotRy],
                                          sign * v[kSlotRz], v[kSlotScale], origin);
    Affine inverse;
    if (!invert_affine(forward, inverse)) return -1;
    store_affine(dvals.get(), affine_index(rotation, false), forward);
    store_affine(dvals.get(), affine_index(rotation, true), inverse);
  }
  ivals.get()[0] = kHelmertTag;
  ivals.get()[1] = kHelmertDoubles;
  ko_constants_ivals_set(constants, ivals.release());
  ko_constants_dvals_set(constants, dvals.release());
  return 1;
}

}  // namespace

MethodCall::MethodCall(const ko_geogtran *gt, const double *parms, const void *extra) {
  args_.parms = parms;
  args_.extra = extra;
  const ko_geogtran *g = live_geogtran(gt);
  if (g == nullptr) return;
  spheroid_pair(gcs_of_side(*g, 0), sph1_);
  spheroid_pair(gcs_of_side(*g, 1), sph2_);
  args_.sph1 = sph1_;
  args_.sph2 = sph2_;
  args_.data = ko_constants_data(g->constants);
}

int helmert_constants(ko_constants *constants, ko_parameter *const *parms, int /*flag*/,
                      const ko_gcs_extent * /*extent*/) {
  return store_similarities(constants, parms, false);
}

int badekas_constants(ko_constants *constants, ko_parameter *const *parms, int /*flag*/,
                      const ko_gcs_extent * /*extent*/) {
  return store_similarities(constants, parms, true);
}

int32_t helmert_apply(const ko_geogtran *gt, const double *parms, void *extra, int32_t n,
                      double *coord, double *z, Rotation rotation, bool inverse, bool time_based,
                      MethodKernel kernel) {
  const MethodCall call(gt, parms, extra);
  const ko_geogtran *g = live_geogtran(gt);
  Affine f;
  if (g == nullptr || (time_based && extra != nullptr) || !cached_affine(*g, rotation, inverse, f))
    return kernel(call.args(), n, coord, z);
  const MethodArgs &a = call.args();
  return inverse ? transform_through_geocentric(a.sph2, a.sph1, f, n, coord, z)
                 : transform_through_geocentric(a.sph1, a.sph2, f, n, coord, z);
}

int32_t noop_convert(const ko_geogtran * /*gt*/, const double * /*parms*/, void * /*extra*/,
                     int32_t n, double * /*coord*/, double * /*z*/) {
  return n;
}

int noop_defaults(ko_parameter ** /*parms*/) { return 0; }

int noop_valid(ko_parameter *const * /*parms*/, const char * /*name*/, ko_err * /*err*/) {
  return 1;
}

int bilinear_interpolation(ko_parameter *const * /*parms*/) { return KO_INTERP_BILINEAR; }

}  // namespace ko
