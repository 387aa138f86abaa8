// The factory's projections, parameters and projected systems.  A
// projected system's record names its geographic system, projection and
// linear unit, and a run of the projcs parameter pool whose values are in
// the geographic system's angular unit (angles) and the system's linear
// unit (lengths); the parameters are placed by slot without units, and the
// projected system gives each its unit and default factor.
#include "database/factory.h"

#include <array>

namespace ko::factory {

namespace {

constexpr int32_t kDegree = 9102;
constexpr int32_t kDatasetCode = KO_PARM_CODE_DATASET;

}  // namespace

void *build_projection(const Found &found, Context &ctx) {
  return ko_projlist_projection_from_code(found.code, ctx.err);
}

ko_parameter *build_bare_parameter(int32_t code, double value, Context &ctx) {
  ko::Unique<ko_parameter> p(ko_parmlist_parameter_from_code_value(code, ctx.err, value));
  if (p == nullptr || !stamp_part(p.get(), KO_TYPE_PARAMETER, code, ctx)) return nullptr;
  return p.release();
}

// A parameter on its own holds the list's default; an angle's default is
// in degrees, so it carries the unit "Degree" and reports in degrees.
void *build_parameter(const Found &found, Context &ctx) {
  const ko_parmlist_entry *row = ko_parmlist_from_code(found.code);
  if (row == nullptr) {
    report_missing(ctx, found.code);
    return nullptr;
  }
  ko::Unique<ko_parameter> p(ko_parmlist_parameter_from_code_value(found.code, ctx.err, row->dflt));
  if (p == nullptr) return nullptr;
  if (row->unit_type == KO_PARM_UNIT_ANGLE) {
    auto *degree = build_part_as<ko_unit>(KO_TYPE_ANGUNIT, kDegree, ctx);
    if (degree == nullptr) return nullptr;
    ko_parameter_unit_set(p.get(), degree);
    ko_parameter_dflt_factor_set(p.get(), ko_unit_factor(degree));
  }
  return p.release();
}

void delete_parameters(ko_parameter **slots) {
  for (int i = 0; i < KO_PARM_COUNT; ++i) slots[i] = ko_parameter_del(slots[i]);
}

// Codes without a slot in the parameter array are dropped, as the
// catalogue's record copy drops them; a Dataset_ parameter is named after
// its grid file.
bool build_pool_parameters(const ParmRun &run, ko_parameter **slots, Context &ctx) {
  if (run.count <= 0) return true;
  if (run.first < 0 || run.first > run.pool_count - run.count) {
    report_missing(ctx, run.first);
    return false;
  }
  for (const ko_db_parm_rec &rec :
       std::span(run.pool + run.first, static_cast<std::size_t>(run.count))) {
    int32_t slot = ko_parmlist_index_from_code(rec.code);
    if (slot < 0 || slot >= KO_PARM_COUNT || slots[slot] != nullptr) continue;
    slots[slot] = build_bare_parameter(rec.code, rec.value, ctx);
    if (slots[slot] == nullptr) {
      delete_parameters(slots);
      return false;
    }
    if (rec.code == kDatasetCode && run.texts != nullptr && rec.aux >= 0 &&
        rec.aux < run.text_count) {
      char name[KO_NAME_SIZE];
      ko_snprintf(name, KO_NAME_SIZE, "Dataset_%s", run.texts[rec.aux]);
      ko_header_set_name(slots[slot], name);
    }
  }
  return true;
}

bool operation_parts(const Found &found, const ParmRun &run, OperationParts &out, Context &ctx) {
  bool ok = true;
  out.metadata = area_metadata(found.row, found.code, ok, ctx);
  if (!ok) return false;
  if (const ko_db_text_rec *text = ko_db_builtin_description_lookup(found.row, found.code)) {
    out.remark.reset(ko_remark_new_errext(text->text, ctx.err));
    if (out.remark == nullptr) return false;
  }
  return build_pool_parameters(run, out.parms.data(), ctx);
}

// The conversion is named after its projection; the projected system
// fixes its parameters' units on construction (angles in its geographic
// system's angular unit, lengths in its own linear unit).
void *build_projcs(const Found &found, Context &ctx) {
  const auto *r = static_cast<const ko_db_projcs_rec *>(found.record);
  ko::Unique<ko_geogcs> geogcs(build_part_as<ko_geogcs>(KO_TYPE_GEOGCS, r->geogcs, ctx));
  if (geogcs == nullptr) return nullptr;
  ko::Unique<ko_linunit> unit(build_part_as<ko_linunit>(KO_TYPE_LINUNIT, r->linunit, ctx));
  if (unit == nullptr) return nullptr;
  ko::Unique<ko_projection> projection(
      build_part_as<ko_projection>(KO_TYPE_PROJECTION, r->projection, ctx));
  if (projection == nullptr) return nullptr;
  std::array<ko_parameter *, KO_PARM_COUNT> parms{};
  const ParmRun run{ko_obj_projcs_parms, ko_obj_projcs_parms_cnt, r->parm_first, r->parm_count,
                    nullptr, 0};
  if (!build_pool_parameters(run, parms.data(), ctx)) return nullptr;
  ko::Unique<ko_conversion> conversion(
      ko_conversion_new_errext(projection.get(), parms.data(), ctx.err));
  if (conversion == nullptr) {
    delete_parameters(parms.data());
    return nullptr;
  }
  projection.release();  // the conversion owns the projection and parameters
  bool ok = true;
  UniqueMetadata metadata = area_metadata(found.row, found.code, ok, ctx);
  if (!ok) return nullptr;
  ko_projcs *p = ko_projcs_ext_new_errext(r->name, geogcs.get(), conversion.get(), 2, nullptr,
                                          unit.get(), metadata.get(), nullptr, ctx.err);
  if (p == nullptr) return nullptr;
  geogcs.release();
  conversion.release();
  unit.release();
  metadata.release();
  return p;
}

}  // namespace ko::factory

KO_DEFINE_FACTORY(projcs, ko_projcs, KO_TYPE_PROJCS)
KO_DEFINE_FACTORY(projection, ko_projection, KO_TYPE_PROJECTION)
KO_DEFINE_FACTORY(parameter, ko_parameter, KO_TYPE_PARAMETER)
