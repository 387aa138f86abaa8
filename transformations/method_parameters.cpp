// Defaults and validity checks of the transformation methods' parameters:
// which parameters each method reads, in which slot, and how serious the
// absence of each one is.
#include "transformations/method_parameters.h"

#include <cstring>
#include <span>

namespace ko {

namespace {

struct ParmRule {
  int32_t code;
  int32_t missing_severity;  // KO_SEV_ERROR: the method cannot run without it
};

constexpr int32_t kErr = KO_SEV_ERROR;
constexpr int32_t kWarn = KO_SEV_WARNING;

// Codes of the parameter list (ko_parmlist_tbl).
constexpr int32_t kTx = 100040, kTy = 100041, kTz = 100042;
constexpr int32_t kRx = 100043, kRy = 100044, kRz = 100045, kScale = 100046;
constexpr int32_t kDataset = KO_PARM_CODE_DATASET;
constexpr int32_t kOx = 100048, kOy = 100049, kOz = 100050;
constexpr int32_t kLonOffset = 100051, kLatOffset = 100052;
constexpr int32_t kTxRate = 100072, kTyRate = 100073, kTzRate = 100074;
constexpr int32_t kRxRate = 100075, kRyRate = 100076, kRzRate = 100077;
constexpr int32_t kScaleRate = 100078, kRefTime = 100079;

constexpr ParmRule kTranslation[] = {{kTx, kErr}, {kTy, kErr}, {kTz, kErr}};
constexpr ParmRule kSeven[] = {{kTx, kErr}, {kTy, kErr}, {kTz, kErr},   {kRx, kErr},
                               {kRy, kErr}, {kRz, kErr}, {kScale, kErr}};
constexpr ParmRule kBadekas[] = {{kTx, kErr}, {kTy, kErr}, {kTz, kErr}, {kRx, kErr},
                                 {kRy, kErr}, {kRz, kErr}, {kScale, kErr}, {kOx, kErr},
                                 {kOy, kErr}, {kOz, kErr}};
// Missing rates are taken as zero; the reference time is needed to apply
// any rate.
constexpr ParmRule kFifteen[] = {{kTx, kErr},        {kTy, kErr},         {kTz, kErr},
                                 {kRx, kErr},        {kRy, kErr},         {kRz, kErr},
                                 {kScale, kErr},     {kTxRate, kWarn},    {kTyRate, kWarn},
                                 {kTzRate, kWarn},   {kRxRate, kWarn},    {kRyRate, kWarn},
                                 {kRzRate, kWarn},   {kScaleRate, kWarn}, {kRefTime, kErr}};
// Either offset alone is a valid transformation; method_valid refuses only
// when both are missing.
constexpr ParmRule kOffsets[] = {{kLonOffset, kWarn}, {kLatOffset, kWarn}};
constexpr ParmRule kGridFile[] = {{kDataset, kErr}};

std::span<const ParmRule> rules_of(ParmSet set) {
  switch (set) {
    case ParmSet::kGeocentricTranslation:
    case ParmSet::kMolodensky:
      return kTranslation;
    case ParmSet::kSevenParameter:
      return kSeven;
    case ParmSet::kMolodenskyBadekas:
      return kBadekas;
    case ParmSet::kTimeBased:
      return kFifteen;
    case ParmSet::kOffset:
      return kOffsets;
    case ParmSet::kGrid:
      return kGridFile;
    case ParmSet::kNone:
      break;
  }
  return {};
}

int32_t slot_of(int32_t code) { return ko_parmlist_index_from_code(code); }

// A Dataset_ parameter must name a file after its prefix.
bool names_a_file(const ko_parameter *p) {
  const char *name = ko_header_get_name(p);
  return name != nullptr && std::strlen(name) > 8;
}

bool holds(ko_parameter *const *parms, const ParmRule &rule) {
  const ko_parameter *p = parms[slot_of(rule.code)];
  if (ko_header_get_code_internal(p) != rule.code) return false;
  return rule.code != kDataset || names_a_file(p);
}

const char *row_name(int32_t code) {
  const ko_parmlist_entry *row = ko_parmlist_from_code(code);
  return row != nullptr ? row->name : "";
}

}  // namespace

int method_defaults(ParmSet set, ko_parameter **parms) {
  if (parms == nullptr) return -1;
  const auto rules = rules_of(set);
  int made = 0;
  for (const ParmRule &rule : rules) {
    ko_parameter *p = ko_parmlist_parameter_from_code(rule.code, nullptr);
    if (p == nullptr) {
      // Leave the slots as they were given: all empty.
      for (const ParmRule &r : rules) parms[slot_of(r.code)] = ko_parameter_del(parms[slot_of(r.code)]);
      return -1;
    }
    ko_parameter_del(parms[slot_of(rule.code)]);
    parms[slot_of(rule.code)] = p;
    ++made;
  }
  return made;
}

int method_valid(ParmSet set, ko_parameter *const *parms, const char *name, ko_err *err) {
  const char *source = name != nullptr ? name : "";
  if (set == ParmSet::kNone) return 1;  // the no-op methods read nothing
  if (parms == nullptr) {
    ko_err_set(err, KO_SEV_ERROR, KO_ERRCAT_ARGUMENT, 330, source);
    return 0;
  }
  const auto rules = rules_of(set);
  bool valid = true;
  int present = 0;
  bool used[KO_PARM_COUNT] = {};
  for (const ParmRule &rule : rules) {
    const int32_t slot = slot_of(rule.code);
    if (holds(parms, rule)) {
      used[slot] = true;
      ++present;
      continue;
    }
    ko_err_arg(err, rule.missing_severity, KO_ERRCAT_ARGUMENT, 347, source, "s",
               row_name(rule.code));
    if (rule.missing_severity == KO_SEV_ERROR) valid = false;
  }
  if (set == ParmSet::kOffset && present == 0) {
    ko_err_arg(err, KO_SEV_ERROR, KO_ERRCAT_ARGUMENT, 347, source, "s", row_name(kLatOffset));
    valid = false;
  }
  // A parameter the method does not read is reported and ignored.
  for (int slot = 0; slot < KO_PARM_COUNT; ++slot) {
    if (used[slot] || !ko_parameter_p(parms[slot])) continue;
    ko_err_arg(err, KO_SEV_WARNING, KO_ERRCAT_ARGUMENT, 348, source, "s",
               ko_header_get_name(parms[slot]));
  }
  // A scale difference of -1 (minus a million ppm) or less leaves no scale.
  const ko_parameter *scale = parms[slot_of(kScale)];
  if (used[slot_of(kScale)] && !(ko_parameter_value_si(scale) > -1.0)) {
    ko_err_arg(err, KO_SEV_ERROR, KO_ERRCAT_ARGUMENT, 356, source, "s",
               ko_header_get_name(scale));
    valid = false;
  }
  return valid ? 1 : 0;
}

}  // namespace ko
