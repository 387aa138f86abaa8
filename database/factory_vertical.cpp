// The factory's vertical and other systems: vertical datums and systems,
// geocentric systems, compound (horizontal + vertical) systems, the
// vertical and adjustment methods, and vertical transformations.
#include "database/factory.h"

#include <array>

namespace ko::factory {

namespace {

constexpr int32_t kMetre = 9001;
constexpr int32_t kDegree = 9102;
constexpr int32_t kArcsecond = 9104;
constexpr int32_t kVerticalShift = KO_PARM_CODE_VERTICAL_SHIFT;
constexpr int32_t kDirection = KO_PARM_CODE_DIRECTION;

// The angles of the vertical transformation pool are stored in these
// units (EPSG's own); lengths are metres, the base unit.
struct PoolUnit {
  int32_t parameter;
  int32_t unit;
};
constexpr PoolUnit kVerttranUnits[] = {
    {100061, kDegree},     // Latitude_Of_Evaluation
    {100062, kDegree},     // Longitude_Of_Evaluation
    {100063, kArcsecond},  // Inclination_North
    {100064, kArcsecond},  // Inclination_East
};

// Gives the stored angles of a vertical transformation their units, so
// that their values read in base units and report as stored.
bool give_verttran_units(ko_parameter **slots, Context &ctx) {
  for (int i = 0; i < KO_PARM_COUNT; ++i) {
    if (slots[i] == nullptr) continue;
    for (const PoolUnit &u : kVerttranUnits) {
      if (ko_object_code(slots[i]) != u.parameter) continue;
      auto *unit = build_part_as<ko_unit>(KO_TYPE_ANGUNIT, u.unit, ctx);
      if (unit == nullptr) return false;
      ko_parameter_unit_set(slots[i], unit);
      ko_parameter_dflt_factor_set(slots[i], ko_unit_factor(unit));
    }
  }
  return true;
}

// A geographic 3D system standing as the vertical system of its
// ellipsoidal heights: its datum, metres, and the system's own codes.
ko_vertcs *ellipsoidal_heights(int32_t geogcs, Context &ctx) {
  const auto *g = static_cast<const ko_db_geogcs_rec *>(
      ko_db_builtin_data_lookup_code(ko::catalog::row_of(KO_TYPE_GEOGCS)->data, geogcs));
  if (g == nullptr) {
    report_missing(ctx, geogcs);
    return nullptr;
  }
  ko::Unique<ko_datum> datum(build_part_as<ko_datum>(KO_TYPE_DATUM, g->datum, ctx));
  if (datum == nullptr) return nullptr;
  ko::Unique<ko_linunit> metre(build_part_as<ko_linunit>(KO_TYPE_LINUNIT, kMetre, ctx));
  if (metre == nullptr) return nullptr;
  ko::Unique<ko_vertcs> v(ko_vertcs_ext_new_errext(g->name, datum.get(), nullptr, metre.get(),
                                                   nullptr, nullptr, nullptr, ctx.err));
  if (v == nullptr) return nullptr;
  datum.release();
  metre.release();
  if (!stamp_part(v.get(), KO_TYPE_GEOGCS, geogcs, ctx)) return nullptr;
  return v.release();
}

// A vertical transformation's end: a vertical system, or a geographic 3D
// system for ellipsoidal heights.
ko_vertcs *vertical_end(int32_t code, Context &ctx) {
  const ko_db_builtin_entry *vertcs = ko::catalog::row_of(KO_TYPE_VERTCS);
  if (ko_db_builtin_data_lookup_code(vertcs->data, code) != nullptr)
    return build_part_as<ko_vertcs>(KO_TYPE_VERTCS, code, ctx);
  return ellipsoidal_heights(code, ctx);
}

}  // namespace

void *build_vdatum(const Found &found, Context &ctx) {
  const auto *r = static_cast<const ko_db_datum_rec *>(found.record);
  ko_vdatum *d = ko_vdatum_ext_new_errext(r->name, r->anchor, nullptr, ctx.err);
  if (Frame frame{}; d != nullptr && dynamic_frame(found, r->name, frame))
    ko_vdatum_set_dynamic(d, frame.name, frame.epoch);
  return d;
}

// The system carries its Vertical_Shift (0) and its Direction (1 for
// heights, -1 for depths) as parameters.
void *build_vertcs(const Found &found, Context &ctx) {
  const auto *r = static_cast<const ko_db_vertcs_rec *>(found.record);
  ko::Unique<ko_vdatum> datum(build_part_as<ko_vdatum>(KO_TYPE_VDATUM, r->vdatum, ctx));
  if (datum == nullptr) return nullptr;
  ko::Unique<ko_linunit> unit(build_part_as<ko_linunit>(KO_TYPE_LINUNIT, r->linunit, ctx));
  if (unit == nullptr) return nullptr;
  std::array<ko_parameter *, KO_PARM_COUNT> parms{};
  auto place = [&](int32_t code, double value) {
    ko_parameter *p = build_bare_parameter(code, value, ctx);
    if (p != nullptr) parms[static_cast<std::size_t>(ko_parmlist_index_from_code(code))] = p;
    return p != nullptr;
  };
  if (!place(kVerticalShift, 0.0) || !place(kDirection, r->direction)) {
    delete_parameters(parms.data());
    return nullptr;
  }
  bool ok = true;
  UniqueMetadata metadata = area_metadata(found.row, found.code, ok, ctx);
  ko_vertcs *v = ok ? ko_vertcs_ext_new_errext(r->name, datum.get(), parms.data(), unit.get(),
                                               nullptr, metadata.get(), nullptr, ctx.err)
                    : nullptr;
  if (v == nullptr) {
    delete_parameters(parms.data());
    return nullptr;
  }
  datum.release();  // the system owns its parts now
  unit.release();
  metadata.release();
  return v;
}

void *build_gxyzcs(const Found &found, Context &ctx) {
  const auto *r = static_cast<const ko_db_gxyzcs_rec *>(found.record);
  ko::Unique<ko_datum> datum(build_part_as<ko_datum>(KO_TYPE_DATUM, r->datum, ctx));
  if (datum == nullptr) return nullptr;
  ko::Unique<ko_primem> primem(build_part_as<ko_primem>(KO_TYPE_PRIMEM, r->primem, ctx));
  if (primem == nullptr) return nullptr;
  ko::Unique<ko_linunit> unit(build_part_as<ko_linunit>(KO_TYPE_LINUNIT, r->linunit, ctx));
  if (unit == nullptr) return nullptr;
  bool ok = true;
  UniqueMetadata metadata = area_metadata(found.row, found.code, ok, ctx);
  if (!ok) return nullptr;
  ko_gxyzcs *g = ko_gxyzcs_ext_new_errext(r->name, datum.get(), primem.get(), unit.get(), nullptr,
                                          metadata.get(), nullptr, ctx.err);
  if (g == nullptr) return nullptr;
  datum.release();
  primem.release();
  unit.release();
  metadata.release();
  return g;
}

void *build_hvcoordsys(const Found &found, Context &ctx) {
  const auto *r = static_cast<const ko_db_hvcoordsys_rec *>(found.record);
  uint32_t horizontal = r->hcs_type == static_cast<int32_t>(KO_TYPE_PROJCS) ? KO_TYPE_PROJCS
                                                                              : KO_TYPE_GEOGCS;
  ko::Unique<void> hcs(build_part(horizontal, r->hcs, ctx));
  if (hcs == nullptr) return nullptr;
  ko::Unique<ko_vertcs> vcs(build_part_as<ko_vertcs>(KO_TYPE_VERTCS, r->vcs, ctx));
  if (vcs == nullptr) return nullptr;
  bool ok = true;
  UniqueMetadata metadata = area_metadata(found.row, found.code, ok, ctx);
  if (!ok) return nullptr;
  ko_hvcoordsys *c = ko_hvcoordsys_ext_new_errext(r->name, hcs.get(), vcs.get(), metadata.get(),
                                                  nullptr, ctx.err);
  if (c == nullptr) return nullptr;
  hcs.release();
  vcs.release();
  metadata.release();
  return c;
}

void *build_htmethod(const Found &found, Context &ctx) {
  return ko_htmethlist_htmethod_from_code(found.code, ctx.err);
}

void *build_vtmethod(const Found &found, Context &ctx) {
  return ko_vtmethlist_vtmethod_from_code(found.code, ctx.err);
}

// Offsets in metres, inclinations in arc-seconds and the evaluation point
// in degrees, as the pool stores them; a grid as "Dataset_<file>".
void *build_verttran(const Found &found, Context &ctx) {
  const auto *r = static_cast<const ko_db_verttran_rec *>(found.record);
  ko::Unique<ko_vertcs> vcs1(vertical_end(r->vcs1, ctx));
  if (vcs1 == nullptr) return nullptr;
  ko::Unique<ko_vertcs> vcs2(vertical_end(r->vcs2, ctx));
  if (vcs2 == nullptr) return nullptr;
  ko::Unique<ko_vtmethod> method(build_part_as<ko_vtmethod>(KO_TYPE_VTMETHOD, r->method, ctx));
  if (method == nullptr) return nullptr;
  ko::Unique<void> horizontal;
  if (r->interpolation != 0) {
    horizontal.reset(build_part(KO_TYPE_GEOGCS, r->interpolation, ctx));
    if (horizontal == nullptr) return nullptr;
  }
  const ParmRun run{ko_obj_verttran_parms, ko_obj_verttran_parms_cnt, r->parm_first,
                    r->parm_count, ko_obj_verttran_parm_texts, ko_obj_verttran_parm_texts_cnt};
  OperationParts parts;
  if (!operation_parts(found, run, parts, ctx) || !give_verttran_units(parts.parms.data(), ctx))
    return nullptr;
  ko_verttran *vt = ko_verttran_ext_new_errext(r->name, horizontal.get(), vcs1.get(), vcs2.get(),
                                               method.get(), parts.parms.data(),
                                               parts.metadata.get(), parts.remark.get(), ctx.err,
                                               r->accuracy);
  if (vt == nullptr) return nullptr;
  vcs1.release();  // the transformation owns its parts now
  vcs2.release();
  method.release();
  horizontal.release();
  parts.handed_over();
  if (const ko_db_version_rec *version = ko_db_builtin_version_lookup(found.row, found.code))
    ko_verttran_set_opversion(vt, version->version);
  return vt;
}

}  // namespace ko::factory

KO_DEFINE_FACTORY(vdatum, ko_vdatum, KO_TYPE_VDATUM)
KO_DEFINE_FACTORY(vertcs, ko_vertcs, KO_TYPE_VERTCS)
KO_DEFINE_FACTORY(gxyzcs, ko_gxyzcs, KO_TYPE_GXYZCS)
KO_DEFINE_FACTORY(hvcoordsys, ko_hvcoordsys, KO_TYPE_HVCOORDSYS)
KO_DEFINE_FACTORY(htmethod, ko_htmethod, KO_TYPE_HTMETHOD)
KO_DEFINE_FACTORY(vtmethod, ko_vtmethod, KO_TYPE_VTMETHOD)
KO_DEFINE_FACTORY(verttran, ko_verttran, KO_TYPE_VERTTRAN)
