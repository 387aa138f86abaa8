// The factory's geodetic objects: spheroids, prime meridians, datums
// (dynamic ones with their frame name and reference epoch) and geographic
// systems (2D, and 3D with an ellipsoidal height axis), each part built
// from its own catalogue record.
#include "database/factory.h"

#include <algorithm>
#include <array>

namespace ko::factory {

namespace {

// EPSG ellipsoidal coordinate systems that have an ellipsoidal height
// axis; every one measures heights in metres (EPSG unit 9001).
constexpr int32_t kEllipsoidal3D[] = {6401, 6413, 6423, 6426, 6430, 6431};
constexpr int32_t kMetre = 9001;

int dimension_of(const Found &found) {
  const ko_db_pair_rec *cs = ko_db_builtin_axis_lookup(found.row, found.code);
  if (cs == nullptr) return 2;
  return std::find(std::begin(kEllipsoidal3D), std::end(kEllipsoidal3D), cs->value) !=
                 std::end(kEllipsoidal3D)
             ? 3
             : 2;
}

// The three axes of a 3D system: longitude and latitude in the system's
// angular unit, ellipsoidal height in metres.  False after a report.
bool height_axes(ko_angunit *unit, std::array<ko::Unique<ko_axis>, 3> &axes, Context &ctx) {
  ko::Unique<ko_linunit> metre(build_part_as<ko_linunit>(KO_TYPE_LINUNIT, kMetre, ctx));
  if (metre == nullptr) return false;
  std::array<ko_axis *, 3> made{};
  if (ko_axis_fill(made.data(), 3, KO_AXIS_KIND_GEOGRAPHIC, reinterpret_cast<ko_unit *>(unit),
                   reinterpret_cast<ko_unit *>(metre.get())) == 0) {
    report_no_memory(ctx, "Ellipsoidal height");
    return false;
  }
  for (std::size_t i = 0; i < axes.size(); ++i) axes[i].reset(made[i]);
  return true;
}

}  // namespace

void *build_spheroid(const Found &found, Context &ctx) {
  const auto *r = static_cast<const ko_db_spheroid_rec *>(found.record);
  ko::Unique<ko_linunit> unit(build_part_as<ko_linunit>(KO_TYPE_LINUNIT, r->linunit, ctx));
  if (unit == nullptr) return nullptr;
  ko_spheroid *s = ko_spheroid_ext_new_errext(r->name, unit.get(), r->axis, r->flattening, ctx.err);
  if (s != nullptr) unit.release();
  return s;
}

void *build_primem(const Found &found, Context &ctx) {
  const auto *r = static_cast<const ko_db_primem_rec *>(found.record);
  ko::Unique<ko_angunit> unit(build_part_as<ko_angunit>(KO_TYPE_ANGUNIT, r->angunit, ctx));
  if (unit == nullptr) return nullptr;
  ko_primem *p = ko_primem_ext_new_errext(r->name, unit.get(), r->longitude, ctx.err);
  if (p != nullptr) unit.release();
  return p;
}

bool dynamic_frame(const Found &found, const char *record_name, Frame &out) {
  const ko_db_epoch_rec *epoch = ko_db_builtin_epoch_lookup(found.row, found.code);
  if (epoch == nullptr) return false;
  const ko_db_text_rec *frame = ko_db_builtin_description_lookup(found.row, found.code);
  out = Frame{frame != nullptr ? frame->text : record_name, epoch->epoch};
  return true;
}

// A datum with a reference epoch is a dynamic frame.
void *build_datum(const Found &found, Context &ctx) {
  const auto *r = static_cast<const ko_db_datum_rec *>(found.record);
  ko::Unique<ko_spheroid> spheroid(build_part_as<ko_spheroid>(KO_TYPE_SPHEROID, r->spheroid, ctx));
  if (spheroid == nullptr) return nullptr;
  ko_datum *d = ko_datum_ext_new_errext(r->name, spheroid.get(), r->anchor, ctx.err);
  if (d == nullptr) return nullptr;
  spheroid.release();
  if (Frame frame{}; dynamic_frame(found, r->name, frame))
    ko_datum_set_dynamic(d, frame.name, frame.epoch);
  return d;
}

// A 2D system keeps its angular unit; a 3D one carries the units on its
// axes (longitude, latitude, ellipsoidal height in metres).
void *build_geogcs(const Found &found, Context &ctx) {
  const auto *r = static_cast<const ko_db_geogcs_rec *>(found.record);
  ko::Unique<ko_datum> datum(build_part_as<ko_datum>(KO_TYPE_DATUM, r->datum, ctx));
  if (datum == nullptr) return nullptr;
  ko::Unique<ko_primem> primem(build_part_as<ko_primem>(KO_TYPE_PRIMEM, r->primem, ctx));
  if (primem == nullptr) return nullptr;
  ko::Unique<ko_angunit> unit(build_part_as<ko_angunit>(KO_TYPE_ANGUNIT, r->angunit, ctx));
  if (unit == nullptr) return nullptr;
  int dimension = dimension_of(found);
  std::array<ko::Unique<ko_axis>, 3> axes;
  if (dimension == 3) {
    if (!height_axes(unit.get(), axes, ctx)) return nullptr;
    unit.reset();
  }
  bool ok = true;
  UniqueMetadata metadata = area_metadata(found.row, found.code, ok, ctx);
  if (!ok) return nullptr;
  std::array<ko_axis *, 3> axis_ptrs = {axes[0].get(), axes[1].get(), axes[2].get()};
  ko_geogcs *g = ko_geogcs_ext_new_errext(r->name, datum.get(), primem.get(), dimension,
                                          dimension == 3 ? axis_ptrs.data() : nullptr,
                                          unit.get(), metadata.get(), nullptr, ctx.err);
  if (g == nullptr) return nullptr;
  datum.release();  // the system owns its parts now
  primem.release();
  unit.release();
  metadata.release();
  for (auto &axis : axes) axis.release();
  return g;
}

}  // namespace ko::factory

KO_DEFINE_FACTORY(spheroid, ko_spheroid, KO_TYPE_SPHEROID)
KO_DEFINE_FACTORY(primem, ko_primem, KO_TYPE_PRIMEM)
KO_DEFINE_FACTORY(datum, ko_datum, KO_TYPE_DATUM)
KO_DEFINE_FACTORY(geogcs, ko_geogcs, KO_TYPE_GEOGCS)
