// Geographic transformation: two geographic systems, a method, the method's
// parameters by slot, metadata, remark, operation version and accuracy, and
// the method constants (grids) loaded on first use.
#include "transformations/geogtran.h"

#include "objects/units.h"

#include <algorithm>
#include <array>

namespace {

constexpr const char *kSource = "ko_geogtran_ext_new_errext";

ko_geogtran *geogtran_clone(const ko_geogtran *gt);
ko_geogtran *geogtran_del(ko_geogtran *gt);
int geogtran_eq(const ko_geogtran *a, const ko_geogtran *b);

// The unit a transformation parameter is read in when it has none, and the
// default factor in which it reports, by the parameter list's unit type.
struct UnitRule {
  uint32_t type;
  const char *name;
  double factor;
};

constexpr double kArcsecond = 4.84813681109536e-06;

const UnitRule *unit_rule(uint32_t unit_type) {
  static constexpr UnitRule kLength{KO_TYPE_LINUNIT, "Meter", 1.0};
  static constexpr UnitRule kScale{KO_TYPE_SCALEUNIT, "Parts_Per_Million", 1e-06};
  static constexpr UnitRule kUnity{KO_TYPE_SCALEUNIT, "Unity", 1.0};
  static constexpr UnitRule kAngle{KO_TYPE_ANGUNIT, "Arcsecond", kArcsecond};
  switch (unit_type) {
    case KO_PARM_UNIT_LENGTH:
      return &kLength;
    case KO_PARM_UNIT_SCALE:
      return &kScale;
    case KO_PARM_UNIT_NONE:
      return &kUnity;
    case KO_PARM_UNIT_ANGLE:
      return &kAngle;
    default:
      return nullptr;
  }
}

// The rule for a slot's parameter: transformation parameters only (list
// category 128 or more).
const UnitRule *rule_for(const ko_parameter *p) {
  if (!ko_parameter_p(p)) return nullptr;
  const ko_parmlist_entry *row = ko_parmlist_from_code(ko_header_get_code_internal(p));
  if (row == nullptr || row->category < KO_PARM_CAT_GEOGTRAN) return nullptr;
  return unit_rule(row->unit_type);
}

// The parameters a constructor takes: the live parameters of the caller's
// 24 slots (anything else counts as an empty slot and stays the caller's).
std::array<ko_parameter *, KO_PARM_COUNT> taken_parameters(ko_parameter *const *parms) {
  std::array<ko_parameter *, KO_PARM_COUNT> slots{};
  for (int i = 0; i < KO_PARM_COUNT; ++i)
    slots[i] = ko_parameter_p(parms[i]) ? parms[i] : nullptr;
  return slots;
}

// Gives the transformation parameters their units and default factors
// (ko_geogtran_parameters_fix), remembering enough to take it back.  Every
// unit is made before any is attached, so running out of memory changes
// nothing.
class UnitFix {
 public:
  bool apply(ko_parameter **parms) {
    if (parms == nullptr) return false;
    std::array<ko::Unique<ko_unit>, KO_PARM_COUNT> made;
    for (int i = 0; i < KO_PARM_COUNT; ++i) {
      const UnitRule *rule = rule_for(parms[i]);
      if (rule == nullptr || ko_parameter_unit(parms[i]) != nullptr) continue;
      made[i].reset(ko::unit_build(rule->type, rule->name, rule->factor, kSource, nullptr));
      if (made[i] == nullptr) return false;
    }
    for (int i = 0; i < KO_PARM_COUNT; ++i) {
      const UnitRule *rule = rule_for(parms[i]);
      if (rule == nullptr) continue;
      old_factor_[i] = ko_parameter_dflt_factor(parms[i]);
      attached_[i] = made[i] != nullptr;
      if (attached_[i]) ko_parameter_unit_set(parms[i], made[i].release());
      ko_parameter_dflt_factor_set(parms[i], rule->factor);
      changed_[i] = true;
    }
    return true;
  }
  // Restores the parameters as they were before apply.
  void undo(ko_parameter **parms) const {
    for (int i = 0; i < KO_PARM_COUNT; ++i) {
      if (!changed_[i]) continue;
      if (attached_[i]) ko_parameter_unit_set(parms[i], nullptr);
      ko_parameter_dflt_factor_set(parms[i], old_factor_[i]);
    }
  }

 private:
  std::array<bool, KO_PARM_COUNT> changed_{};
  std::array<bool, KO_PARM_COUNT> attached_{};
  std::array<double, KO_PARM_COUNT> old_factor_{};
};

const char *dataset_name(const ko_geogtran &gt) {
  const ko_parameter *dataset = gt.parms[ko::kSlotDataset];
  return ko_parameter_p(dataset) ? ko_header_get_name(dataset) : nullptr;
}

// A failed constants load is final, so it is reported once, to the message
// callback and the log: a grid method names the files it could not read.
void report_load_failure(const ko_geogtran &g, bool no_record) {
  constexpr const char *kLoadSource = "ko_geogtran_load_constants_with_extent";
  const char *name = ko_header_get_name(&g);
  if (no_record) {
    ko::report_no_memory(nullptr, kLoadSource, name);
    return;
  }
  char files[3 * 1024 + 16];
  if (ko_geogtran_filenames(&g, files, static_cast<int>(sizeof files)) > 0) {
    for (char &c : files)
      if (c == '\n') c = ' ';
    ko_err_fmt(nullptr, KO_SEV_ERROR, KO_ERRCAT_ARGUMENT, 356, kLoadSource,
               "%s: cannot read grid %s", name, files);
    return;
  }
  ko_err_fmt(nullptr, KO_SEV_ERROR, KO_ERRCAT_ARGUMENT, 356, kLoadSource,
             "%s: the method's constants cannot be built from its parameters", name);
}

}  // namespace

extern "C" {

int ko_geogtran_parameters_fix(ko_parameter **parms) {
  UnitFix fix;
  return fix.apply(parms) ? 1 : 0;
}

// In order: the name (warning 354); a method (335); GCS 1 (332); GCS 2
// (333) unless the method works inside one GCS; the parameter array (330);
// the parameters' units; the method's validity check; memory (1).  The
// caller's objects become the transformation's only when it exists, and
// are left as they were when it does not.
ko_geogtran *ko_geogtran_ext_new_errext(const char *name, ko_geogcs *gcs1, ko_geogcs *gcs2,
                                        ko_method *method, ko_parameter **parms,
                                        ko_metadata **metadata, ko_remark *remark, ko_err *err,
                                        double accuracy) {
  if (name == nullptr) name = "";
  const auto cut = ko::errext_prologue(err, kSource, name);
  if (ko::live_method(method) == nullptr) {
    ko::report_bad_argument(err, 335, kSource, name);
    return nullptr;
  }
  if (!ko_geogcs_p(gcs1)) {
    ko::report_bad_argument(err, 332, kSource, name);
    return nullptr;
  }
  const bool one_gcs = ko_method_rtn_type(method) == static_cast<int>(KO_MTH_RTN_ONE_GCS);
  if (!one_gcs && !ko_geogcs_p(gcs2)) {
    ko::report_bad_argument(err, 333, kSource, name);
    return nullptr;
  }
  if (parms == nullptr) {
    ko::report_bad_argument(err, 330, kSource, name);
    return nullptr;
  }
  // The units are fixed before the method's check, so that it sees a
  // unitless value in the unit the transformation will read it in (a scale
  // difference of -20 is -20 ppm, not -20); a refusal takes the fix back.
  auto slots = taken_parameters(parms);
  UnitFix fix;
  if (!fix.apply(slots.data())) {
    ko::report_no_memory(err, kSource, name);
    return nullptr;
  }
  if (ko::method_valid(slots.data(), name, ko_header_get_code_internal(method), err) == 0) {
    fix.undo(slots.data());
    return nullptr;
  }
  auto *gt = ko::make_object<ko_geogtran>(KO_TYPE_GEOGTRAN, cut.text);
  if (gt == nullptr) {
    fix.undo(slots.data());
    ko::report_no_memory(err, kSource, name);
    return nullptr;
  }
  gt->gcs1 = gcs1;
  // The same system on both sides is kept once; GCS 1 then stands for both.
  gt->gcs2 = (gcs2 != gcs1 && ko_geogcs_p(gcs2)) ? gcs2 : nullptr;
  gt->method = method;
  std::copy(slots.begin(), slots.end(), gt->parms);
  gt->metadata = metadata;
  gt->remark = ko_remark_p(remark) ? remark : nullptr;
  gt->opversion[0] = '\0';
  gt->constants = nullptr;
  gt->constants_status = kGtConstantsNotLoaded;
  gt->accuracy = accuracy;
  return gt;
}

ko_geogtran *ko_geogtran_ext_new(const char *name, ko_geogcs *gcs1, ko_geogcs *gcs2,
                                 ko_method *method, ko_parameter **parms,
                                 ko_metadata **metadata, ko_remark *remark, double accuracy) {
  return ko_geogtran_ext_new_errext(name, gcs1, gcs2, method, parms, metadata, remark, nullptr,
                                    accuracy);
}

ko_geogtran *ko_geogtran_new_errext(const char *name, ko_geogcs *gcs1, ko_geogcs *gcs2,
                                    ko_method *method, ko_parameter **parms, ko_err *err) {
  return ko_geogtran_ext_new_errext(name, gcs1, gcs2, method, parms, nullptr, nullptr, err,
                                    ko::kUnknownAccuracy);
}

ko_geogtran *ko_geogtran_new(const char *name, ko_geogcs *gcs1, ko_geogcs *gcs2,
                             ko_method *method, ko_parameter **parms) {
  return ko_geogtran_new_errext(name, gcs1, gcs2, method, parms, nullptr);
}

int ko_geogtran_p(const void *obj) { return ko::live_geogtran(obj) != nullptr; }
ko_geogtran *ko_geogtran_clone(const ko_geogtran *gt) { return geogtran_clone(gt); }
ko_geogtran *ko_geogtran_del(ko_geogtran *gt) { return geogtran_del(gt); }
int ko_geogtran_eq(const ko_geogtran *a, const ko_geogtran *b) { return geogtran_eq(a, b); }

ko_geogcs *ko_geogtran_geogcs1(const ko_geogtran *gt) {
  const ko_geogtran *g = ko::live_geogtran(gt);
  return g != nullptr ? g->gcs1 : nullptr;
}

ko_geogcs *ko_geogtran_geogcs2(const ko_geogtran *gt) {
  const ko_geogtran *g = ko::live_geogtran(gt);
  return g != nullptr ? ko::gcs_of_side(*g, 1) : nullptr;
}

ko_method *ko_geogtran_method(const ko_geogtran *gt) {
  const ko_geogtran *g = ko::live_geogtran(gt);
  return g != nullptr ? g->method : nullptr;
}

ko_parameter **ko_geogtran_parameters_ptr(ko_geogtran *gt) {
  ko_geogtran *g = ko::live_geogtran(gt);
  return g != nullptr ? g->parms : nullptr;
}

void ko_geogtran_parameters(const ko_geogtran *gt, ko_parameter **out) {
  if (out == nullptr) return;
  const ko_geogtran *g = ko::live_geogtran(gt);
  for (int i = 0; i < KO_PARM_COUNT; ++i) out[i] = g != nullptr ? g->parms[i] : nullptr;
}

void ko_geogtran_parm_array(ko_parameter *const *parms, double *out) {
  if (out == nullptr) return;
  for (int i = 0; i < KO_PARM_COUNT; ++i)
    out[i] = parms != nullptr && parms[i] != nullptr ? ko_parameter_value_si(parms[i]) : 0.0;
}

double ko_geogtran_accuracy(const ko_geogtran *gt) {
  const ko_geogtran *g = ko::live_geogtran(gt);
  return g != nullptr ? g->accuracy : ko::kUnknownAccuracy;
}

void ko_geogtran_set_opversion(ko_geogtran *gt, const char *version) {
  ko_geogtran *g = ko::live_geogtran(gt);
  if (g != nullptr) ko::copy_field(g->opversion, version);
}

char *ko_geogtran_get_opversion(const ko_geogtran *gt, char *buf) {
  if (buf == nullptr) return nullptr;
  const ko_geogtran *g = ko::live_geogtran(gt);
  ko_strncpy(buf, g != nullptr ? g->opversion : "", KO_OPVERSION_SIZE);
  return buf;
}

ko_metadata *ko_geogtran_metadata(const ko_geogtran *gt) {
  ko_metadata **vec = ko_geogtran_metadata_vector(gt);
  return vec != nullptr ? vec[0] : nullptr;
}

ko_metadata **ko_geogtran_metadata_vector(const ko_geogtran *gt) {
  const ko_geogtran *g = ko::live_geogtran(gt);
  return g != nullptr ? g->metadata : nullptr;
}

int ko_geogtran_metadata_set(ko_geogtran *gt, ko_metadata *md) {
  ko_geogtran *g = ko::live_geogtran(gt);
  if (g == nullptr) return 0;
  ko_metadata **vec = nullptr;
  if (ko_metadata_p(md)) {
    vec = ko::alloc_array<ko_metadata *>(2, "ko_metadata vector");
    if (vec == nullptr) return 0;
    vec[0] = md;
  }
  ko_metadata_vector_del(g->metadata);
  g->metadata = vec;
  return 1;
}

ko_remark *ko_geogtran_remark(const ko_geogtran *gt) {
  const ko_geogtran *g = ko::live_geogtran(gt);
  return g != nullptr ? g->remark : nullptr;
}

int ko_geogtran_transforms_heights(const ko_geogtran *gt) {
  return ko_method_height_aware(ko_geogtran_method(gt));
}

int ko_geogtran_needs_file(const ko_geogtran *gt) {
  return ko_method_needs_file(ko_geogtran_method(gt));
}

int ko_geogtran_method_rtn_type(const ko_geogtran *gt) {
  return ko_method_rtn_type(ko_geogtran_method(gt));
}

int ko_geogtran_method_interp_type(const ko_geogtran *gt) {
  const ko_geogtran *g = ko::live_geogtran(gt);
  ko_mth_interpfunc interp = g != nullptr ? ko_method_interpfunc(g->method) : nullptr;
  return interp != nullptr ? interp(g->parms) : KO_INTERP_NONE;
}

int ko_geogtran_filenames(const ko_geogtran *gt, char *buf, int size) {
  if (buf != nullptr && size > 0) buf[0] = '\0';
  const ko_geogtran *g = ko::live_geogtran(gt);
  if (g == nullptr) return 0;
  return ko_method_filenames(g->method, dataset_name(*g), buf, size);
}

int ko_geogtran_usable(const ko_geogtran *gt) {
  const ko_geogtran *g = ko::live_geogtran(gt);
  if (g == nullptr) return 0;
  ko_mth_usablefunc usable = ko_methlist_get_usablefunc(ko::method_entry(g->method));
  return usable != nullptr ? usable(dataset_name(*g)) : 1;
}

// A negative status is final until the constants are unloaded (and is
// reported once); a loader result of 0 leaves the status at 0, so that the
// next call tries again.
int ko_geogtran_load_constants_with_extent(ko_geogtran *gt, int flag,
                                           const ko_gcs_extent *extent) {
  ko_geogtran *g = ko::live_geogtran(gt);
  if (g == nullptr || g->constants_status < 0) return 0;
  if (g->constants_status == kGtConstantsLoaded || g->constants_status == kGtConstantsNotNeeded)
    return 1;
  ko_mth_constfunc loader = ko_method_constfunc(g->method);
  if (loader == nullptr) {
    g->constants_status = kGtConstantsNotNeeded;
    return 1;
  }
  ko_constants *constants = ko_constants_new();
  if (constants == nullptr) {
    g->constants_status = kGtConstantsNoRecord;
    report_load_failure(*g, true);
    return 0;
  }
  g->constants_status = loader(constants, g->parms, flag, extent);
  if (g->constants_status == kGtConstantsLoaded) {
    g->constants = constants;
    return 1;
  }
  ko_constants_del(constants);
  if (g->constants_status < 0) report_load_failure(*g, false);
  return 0;
}

int ko_geogtran_load_constants(ko_geogtran *gt) {
  return ko_geogtran_load_constants_with_extent(gt, 1, nullptr);
}

void ko_geogtran_unload_constants(ko_geogtran *gt) {
  ko_geogtran *g = ko::live_geogtran(gt);
  if (g == nullptr) return;
  if (g->constants != nullptr) {
    if (ko_mth_unloadfunc unload = ko_method_unloadfunc(g->method)) unload(g->constants);
    g->constants = ko_constants_del(g->constants);
  }
  g->constants_status = kGtConstantsNotLoaded;
}

int ko_geogtran_isconstloaded(const ko_geogtran *gt) {
  return ko_geogtran_constants(gt) != nullptr ? 1 : 0;
}

int32_t ko_geogtran_constants_status(const ko_geogtran *gt) {
  const ko_geogtran *g = ko::live_geogtran(gt);
  return g != nullptr ? g->constants_status : kGtConstantsNotLoaded;
}

ko_constants *ko_geogtran_constants(const ko_geogtran *gt) {
  const ko_geogtran *g = ko::live_geogtran(gt);
  return g != nullptr ? g->constants : nullptr;
}

constinit const ko_objvec ko_geogtran_objvec =
    ko::make_objvec<ko_geogtran, geogtran_clone, geogtran_del, geogtran_eq>(KO_TYPE_GEOGTRAN);

}  // extern "C"

KO_DEFINE_OBJECT_FORWARDS(geogtran, ko_geogtran)

namespace {

// Deep copies of everything the transformation owns, built through the
// constructor; the header and the operation version are copied across.
// Constants are not copied: the clone loads its own.
ko_geogtran *geogtran_clone(const ko_geogtran *gt) {
  const ko_geogtran *src = ko::live_geogtran(gt);
  if (src == nullptr) return nullptr;
  ko::Unique<ko_geogcs> gcs1(ko_geogcs_clone(src->gcs1));
  ko::Unique<ko_geogcs> gcs2(src->gcs2 != nullptr ? ko_geogcs_clone(src->gcs2) : nullptr);
  ko::Unique<ko_method> method(ko_method_clone(src->method));
  ko::Unique<ko_remark> remark(src->remark != nullptr ? ko_remark_clone(src->remark) : nullptr);
  std::array<ko::Unique<ko_parameter>, KO_PARM_COUNT> parms;
  bool ok = gcs1 != nullptr && (src->gcs2 == nullptr || gcs2 != nullptr) && method != nullptr &&
            (src->remark == nullptr || remark != nullptr);
  for (int i = 0; ok && i < KO_PARM_COUNT; ++i) {
    if (src->parms[i] == nullptr) continue;
    parms[i].reset(ko_parameter_clone(src->parms[i]));
    ok = parms[i] != nullptr;
  }
  ko_metadata **metadata = nullptr;
  if (ok && src->metadata != nullptr) {
    metadata = ko_metadata_vector_clone(src->metadata);
    ok = metadata != nullptr;
  }
  if (!ok) return nullptr;
  std::array<ko_parameter *, KO_PARM_COUNT> slots{};
  for (int i = 0; i < KO_PARM_COUNT; ++i) slots[i] = parms[i].get();
  ko_geogtran *copy = ko_geogtran_ext_new_errext(ko_header_get_name(src), gcs1.get(),
                                                 gcs2.get(), method.get(), slots.data(),
                                                 metadata, remark.get(), nullptr, src->accuracy);
  if (copy == nullptr) {
    ko_metadata_vector_del(metadata);
    return nullptr;
  }
  gcs1.release();
  gcs2.release();
  method.release();
  remark.release();
  for (auto &p : parms) p.release();
  ko::copy_field(copy->opversion, src->opversion);
  if (!ko::header_copy_checked(copy, src)) return geogtran_del(copy);
  return copy;
}

ko_geogtran *geogtran_del(ko_geogtran *gt) {
  ko_geogtran *g = ko::live_geogtran(gt);
  if (g == nullptr) return nullptr;
  ko_geogtran_unload_constants(g);
  ko_geogcs_del(g->gcs1);
  ko_geogcs_del(g->gcs2);
  ko_method_del(g->method);
  ko_metadata_vector_del(g->metadata);
  ko_remark_del(g->remark);
  for (ko_parameter *p : g->parms) ko_parameter_del(p);
  return ko::release_object(g);
}

int geogtran_eq(const ko_geogtran *a, const ko_geogtran *b) {
  const ko_geogtran *ga = ko::live_geogtran(a);
  const ko_geogtran *gb = ko::live_geogtran(b);
  if (ga == nullptr || gb == nullptr) return 0;
  for (int i = 0; i < KO_PARM_COUNT; ++i) {
    if (ga->parms[i] == nullptr && gb->parms[i] == nullptr) continue;
    if (ko_parameter_eq(ga->parms[i], gb->parms[i]) == 0) return 0;
  }
  if (ko_strcmp_i(ko_header_get_name(ga), ko_header_get_name(gb)) != 0) return 0;
  if (ko_geogcs_eq(ga->gcs1, gb->gcs1) == 0) return 0;
  if (ga->gcs2 != nullptr && gb->gcs2 != nullptr && ko_geogcs_eq(ga->gcs2, gb->gcs2) == 0)
    return 0;
  return ko_method_eq(ga->method, gb->method);
}

}  // namespace
