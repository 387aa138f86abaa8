// Parameter checks, compare functions and parameter functions shared by the
// projection vectors (declared in projections/projlist.h).
#include "projections/projlist.h"

#include "foundation/internal.h"

#include <cmath>

namespace ko {

int check_parameters(std::span<const ParmRule> rules, ko_parameter *const *parms,
                     const char *name, ko_err *err) {
  const char *source = name != nullptr ? name : "";
  if (parms == nullptr) {
    ko_err_arg(err, KO_SEV_ERROR, KO_ERRCAT_ARGUMENT, 330, source, "s", source);
    return 0;
  }
  int valid = 1;
  for (const ParmRule &rule : rules) {
    if (ko_parameter_p(parms[rule.slot])) continue;
    const ko_parmlist_entry *row = ko_parmlist_from_code(rule.code);
    ko_err_arg(err, rule.severity, KO_ERRCAT_ARGUMENT, 347, source, "s",
               row != nullptr ? row->name : "");
    if (rule.severity >= KO_SEV_ERROR) valid = 0;
  }
  return valid;
}

int not_implemented(const double *, const double *, int, double *, const int32_t *,
                    const double *) {
  return 0;
}

namespace {

constexpr int kSlotParallel1 = 3;
constexpr int kSlotParallel2 = 4;
constexpr int kSlotScale = 5;
constexpr int kSlotOrigin = 6;
constexpr int kSlotAzimuth = 7;
constexpr int kSlotXScale = 12;
constexpr int kSlotYScale = 13;

bool slots_equal(const double *a, const double *b, int skip1, int skip2) {
  for (int i = 0; i < KO_PARM_COUNT; ++i) {
    if (i == skip1 || i == skip2) continue;
    if (!rel_eq(a[i], b[i])) return false;
  }
  return true;
}

bool given(ko_parameter *const *parms, int slot) {
  return parms != nullptr && ko_parameter_p(parms[slot]);
}

}  // namespace

int conic_compare(const double *, const double *parms1, const double *parms2) {
  if (parms1 == nullptr || parms2 == nullptr) return 0;
  if (!slots_equal(parms1, parms2, kSlotParallel1, kSlotParallel2)) return 0;
  const double a1 = parms1[kSlotParallel1], a2 = parms1[kSlotParallel2];
  const double b1 = parms2[kSlotParallel1], b2 = parms2[kSlotParallel2];
  return (rel_eq(a1, b1) && rel_eq(a2, b2)) || (rel_eq(a1, b2) && rel_eq(a2, b1));
}

int mercator_auxs_compare(const double *, const double *parms1, const double *parms2) {
  if (parms1 == nullptr || parms2 == nullptr) return 0;
  if (!slots_equal(parms1, parms2, kSlotParallel1, -1)) return 0;
  return rel_eq(std::fabs(parms1[kSlotParallel1]), std::fabs(parms2[kSlotParallel1]));
}

int lambert_conic_parms(ko_parameter *const *parms, double *parm_array) {
  if (parm_array == nullptr) return 0;
  if (!given(parms, kSlotParallel1) && !given(parms, kSlotParallel2) && given(parms, kSlotOrigin)) {
    parm_array[kSlotParallel1] = parm_array[kSlotOrigin];
    parm_array[kSlotParallel2] = parm_array[kSlotOrigin];
  }
  return 1;
}

int krovak_parms(ko_parameter *const *parms, double *parm_array) {
  if (parm_array == nullptr) return 0;
  // IOGP 373-7-2, Krovak (EPSG 9819): phi_p = 78°30'00" N, alpha_c = 30°17'17.30311".
  constexpr double kPseudoParallel = 78.5 * kDegree;
  constexpr double kConeAzimuth = (30 + 17.0 / 60 + 17.30311 / 3600) * kDegree;
  if (!given(parms, kSlotParallel1)) parm_array[kSlotParallel1] = kPseudoParallel;
  if (!given(parms, kSlotAzimuth)) parm_array[kSlotAzimuth] = kConeAzimuth;
  if (!given(parms, kSlotScale)) parm_array[kSlotScale] = 0.9999;
  if (!given(parms, kSlotXScale)) parm_array[kSlotXScale] = 1;
  if (!given(parms, kSlotYScale)) parm_array[kSlotYScale] = 1;
  return 1;
}

}  // namespace ko
