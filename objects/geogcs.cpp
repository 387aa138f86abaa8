// Geographic coordinate system: datum, prime meridian, angular unit, axes,
// metadata and remark, with the geodesic series constants built on first
// use.
#include "objects/geodetic.h"

#include <array>

namespace {

constexpr const char *kSource = "ko_geogcs_ext_new_errext";

ko_unit *first_axis_unit(ko_axis *const *axes) {
  return axes != nullptr ? ko_axis_unit(axes[0]) : nullptr;
}

// The unit field a new system keeps (see ko_geogcs_ext_new_errext); made
// tells whether it was created here.  Null with made set: out of memory.
ko_angunit *choose_unit(ko_angunit *given, ko_axis *const *axes, int dimension, bool &made) {
  made = false;
  if (given != nullptr || dimension == 3) return given;
  made = true;
  if (ko_unit *axis_unit = first_axis_unit(axes))
    return reinterpret_cast<ko_angunit *>(ko::unit_clone(axis_unit));
  return ko::new_degree();
}

// The unit a prime meridian without one receives: a clone of the system's
// unit, else of the first axis's, else a new degree.
ko_angunit *meridian_unit_for(const ko_angunit *system_unit, ko_axis *const *axes) {
  const void *source = system_unit != nullptr ? static_cast<const void *>(system_unit)
                                              : first_axis_unit(axes);
  if (source != nullptr) return reinterpret_cast<ko_angunit *>(ko::unit_clone(source));
  return ko::new_degree();
}

// Both absent, or equal by the given equality.
template <class T>
bool units_match(const T *a, const T *b, int (*eq)(const T *, const T *)) {
  if (a == nullptr || b == nullptr) return a == b;
  return eq(a, b) != 0;
}

struct ConstantsDeleter {
  void operator()(ko_constants *c) const { ko_constants_del(c); }
};
using UniqueConstants = std::unique_ptr<ko_constants, ConstantsDeleter>;

void release_constants(ko_geogcs &g) {
  g.constants = ko_constants_del(g.constants);
  g.constants_state = kConstantsNotLoaded;
}

}  // namespace

extern "C" {

// In order: the name (warning 354); a live datum (334); the axes against the
// dimension (the axis check's number); an angular unit argument equal to
// the first axis's unit when both are given (477); then the units.  With two
// axes the system keeps one unit (the argument, else a clone of the first
// axis's unit, else a new degree) and the axes' own units are dropped; with
// three the axes keep their units and the argument is kept as given (it may
// be null).  A prime meridian without unit gets a clone of the system's;
// none at all gives "Greenwich" at 0.  The caller's objects are touched only
// once the system exists, so a failed call leaves them as they were.
ko_geogcs *ko_geogcs_ext_new_errext(const char *name, ko_datum *datum, ko_primem *primem,
                                    int dimension, ko_axis **axes, ko_angunit *unit,
                                    ko_metadata **metadata, ko_remark *remark, ko_err *err) {
  if (name == nullptr) name = "";
  ko::errext_prologue(err, kSource, name);
  if (ko::live_datum(datum) == nullptr) {
    ko::report_bad_argument(err, 334, kSource, name);
    return nullptr;
  }
  if (int number = ko_axis_check_order(axes, dimension, KO_AXIS_KIND_GEOGRAPHIC); number != 0) {
    ko::report_bad_argument(err, number, kSource, name);
    return nullptr;
  }
  if (unit != nullptr && ko::live_unit(unit, KO_TYPE_ANGUNIT) == nullptr) {
    ko::report_bad_argument(err, 322, kSource, name);
    return nullptr;
  }
  if (primem != nullptr && ko::live_primem(primem) == nullptr) {
    ko::report_bad_argument(err, 329, kSource, name);
    return nullptr;
  }
  ko_unit *axis_unit = first_axis_unit(axes);
  if (unit != nullptr && axis_unit != nullptr &&
      ko_angunit_eq(unit, reinterpret_cast<ko_angunit *>(axis_unit)) == 0) {
    ko::report_bad_argument(err, 477, kSource, name);
    return nullptr;
  }

  bool unit_made = false;
  ko_angunit *system_unit = choose_unit(unit, axes, dimension, unit_made);
  ko::Unique<ko_angunit> made_unit(unit_made ? system_unit : nullptr);
  ko::Unique<ko_angunit> meridian_unit;
  ko::Unique<ko_primem> made_primem;
  if (primem == nullptr) {
    made_primem.reset(ko_primem_new("Greenwich", 0.0));
  } else if (ko_primem_unit(primem) == nullptr) {
    meridian_unit.reset(meridian_unit_for(system_unit, axes));
  }
  bool out_of_memory = (unit_made && system_unit == nullptr) ||
                       (primem == nullptr && made_primem == nullptr) ||
                       (primem != nullptr && ko_primem_unit(primem) == nullptr &&
                        meridian_unit == nullptr);
  auto *g = out_of_memory ? nullptr : ko::make_object<ko_geogcs>(KO_TYPE_GEOGCS, name);
  if (g == nullptr) {
    ko::report_no_memory(err, kSource, name);
    return nullptr;
  }

  made_unit.release();
  if (meridian_unit != nullptr) ko_primem_unit_set(primem, meridian_unit.release());
  g->datum = datum;
  g->primem = primem != nullptr ? primem : made_primem.release();
  g->unit = system_unit;
  g->dimension = dimension;
  for (int i = 0; axes != nullptr && i < dimension; ++i) {
    g->axes[i] = axes[i];
    if (dimension == 2) ko_axis_unit_set(axes[i], nullptr);
  }
  g->metadata = metadata;
  g->remark = remark;
  g->constants = nullptr;
  g->constants_state = kConstantsNotLoaded;
  return g;
}

ko_geogcs *ko_geogcs_ext_new(const char *name, ko_datum *datum, ko_primem *primem, int dimension,
                             ko_axis **axes, ko_angunit *unit, ko_metadata **metadata,
                             ko_remark *remark) {
  return ko_geogcs_ext_new_errext(name, datum, primem, dimension, axes, unit, metadata, remark,
                                  nullptr);
}

ko_geogcs *ko_geogcs_new_errext(const char *name, ko_datum *datum, ko_primem *primem,
                                ko_angunit *unit, ko_err *err) {
  if (ko::live_primem(primem) != nullptr && ko_primem_unit(primem) == nullptr) {
    ko_angunit *degree = ko::new_degree();
    if (degree == nullptr) {
      ko_err_clear(err);
      ko::report_no_memory(err, kSource, name);
      return nullptr;
    }
    ko_primem_unit_set(primem, degree);
  }
  return ko_geogcs_ext_new_errext(name, datum, primem, 2, nullptr, unit, nullptr, nullptr, err);
}

ko_geogcs *ko_geogcs_new(const char *name, ko_datum *datum, ko_primem *primem, ko_angunit *unit) {
  return ko_geogcs_new_errext(name, datum, primem, unit, nullptr);
}

int ko_geogcs_p(const void *obj) { return ko::live_geogcs(obj) != nullptr; }

ko_geogcs *ko_geogcs_clone(const ko_geogcs *g) {
  const ko_geogcs *src = ko::live_geogcs(g);
  if (src == nullptr) return nullptr;
  ko::Unique<ko_datum> datum;
  ko::Unique<ko_primem> primem;
  ko::Unique<ko_angunit> unit;
  ko::Unique<ko_remark> remark;
  std::array<ko::Unique<ko_axis>, KO_AXIS_MAX> axes;
  bool ok = ko::clone_part(src->datum, datum, ko_datum_clone) &&
            ko::clone_part(src->primem, primem, ko_primem_clone) &&
            ko::clone_part(src->unit, unit, ko_angunit_clone) &&
            ko::clone_part(src->remark, remark, ko_remark_clone);
  for (int i = 0; ok && i < src->dimension; ++i)
    ok = ko::clone_part(src->axes[i], axes[i], ko_axis_clone);
  ko_metadata **metadata = ok ? ko_metadata_vector_clone(src->metadata) : nullptr;
  if (!ok || (src->metadata != nullptr && metadata == nullptr)) return nullptr;
  std::array<ko_axis *, KO_AXIS_MAX> axis_ptrs = {axes[0].get(), axes[1].get(), axes[2].get()};
  ko_geogcs *copy = ko_geogcs_ext_new_errext(
      ko_header_get_name(src), datum.get(), primem.get(), src->dimension,
      src->axes[0] != nullptr ? axis_ptrs.data() : nullptr, unit.get(), metadata, remark.get(),
      nullptr);
  if (copy == nullptr) {
    ko_metadata_vector_del(metadata);
    return nullptr;
  }
  datum.release();  // each part now belongs to the copy
  primem.release();
  unit.release();
  remark.release();
  for (auto &axis : axes) axis.release();
  return ko::with_header_of(copy, src, ko_geogcs_del);
}

ko_geogcs *ko_geogcs_del(ko_geogcs *g) {
  g = ko::live_geogcs(g);
  if (g == nullptr) return nullptr;
  release_constants(*g);
  for (int i = 0; i < g->dimension && i < KO_AXIS_MAX; ++i) ko_axis_del(g->axes[i]);
  ko_datum_del(g->datum);
  ko_primem_del(g->primem);
  ko_angunit_del(g->unit);
  ko_metadata_vector_del(g->metadata);
  ko_remark_del(g->remark);
  return ko::release_object(g);
}

// Names equal by ko_strcmp_ci once a leading "GCS_" (any case) is dropped
// from each; then datums, prime meridians, angular units (as
// ko_geogcs_unit answers), dimensions and, in three dimensions, vertical
// units.  Axis order, metadata and remark are not compared.
int ko_geogcs_eq(const ko_geogcs *a, const ko_geogcs *b) {
  const ko_geogcs *ga = ko::live_geogcs(a);
  const ko_geogcs *gb = ko::live_geogcs(b);
  if (ga == nullptr || gb == nullptr) return 0;
  if (!ko::names_equal_skipping(ko_header_get_name(ga), ko_header_get_name(gb), "GCS_")) return 0;
  if (ko_datum_eq(ga->datum, gb->datum) == 0) return 0;
  if (ko_primem_eq(ga->primem, gb->primem) == 0) return 0;
  if (!units_match<ko_angunit>(ko_geogcs_unit(ga), ko_geogcs_unit(gb), ko_angunit_eq)) return 0;
  if (ga->dimension != gb->dimension) return 0;
  if (ga->dimension == 3 &&
      !units_match<ko_linunit>(ko_geogcs_vert_unit(ga), ko_geogcs_vert_unit(gb), ko_linunit_eq))
    return 0;
  return 1;
}

ko_datum *ko_geogcs_datum(const ko_geogcs *g) {
  return ko::field_or(g, ko::live_geogcs, &ko_geogcs::datum, nullptr);
}

ko_primem *ko_geogcs_primem(const ko_geogcs *g) {
  return ko::field_or(g, ko::live_geogcs, &ko_geogcs::primem, nullptr);
}

// The first axis's unit when it has one, else the system's unit field.
ko_angunit *ko_geogcs_unit(const ko_geogcs *g) {
  const ko_geogcs *gp = ko::live_geogcs(g);
  if (gp == nullptr) return nullptr;
  if (ko_unit *axis_unit = ko_axis_unit(gp->axes[0]))
    return reinterpret_cast<ko_angunit *>(axis_unit);
  return gp->unit;
}

// The third axis's unit in three dimensions, else null.
ko_linunit *ko_geogcs_vert_unit(const ko_geogcs *g) {
  const ko_geogcs *gp = ko::live_geogcs(g);
  if (gp == nullptr || gp->dimension != 3) return nullptr;
  return reinterpret_cast<ko_linunit *>(ko_axis_unit(gp->axes[2]));
}

int ko_geogcs_dimension(const ko_geogcs *g) {
  return ko::field_or(g, ko::live_geogcs, &ko_geogcs::dimension, 0);
}

ko_axis *ko_geogcs_axis(const ko_geogcs *g, int index) {
  const ko_geogcs *gp = ko::live_geogcs(g);
  if (gp == nullptr || index < 0 || index >= gp->dimension) return nullptr;
  return gp->axes[index];
}

ko_metadata **ko_geogcs_metadata_vector(const ko_geogcs *g) {
  return ko::field_or(g, ko::live_geogcs, &ko_geogcs::metadata, nullptr);
}

ko_remark *ko_geogcs_remark(const ko_geogcs *g) {
  return ko::field_or(g, ko::live_geogcs, &ko_geogcs::remark, nullptr);
}

ko_constants *ko_geogcs_constants(const ko_geogcs *g) {
  return ko::field_or(g, ko::live_geogcs, &ko_geogcs::constants, nullptr);
}

// Loads the geodesic series constants once: integer values {2, series
// order}, doubles from ko_geodesic_constants_array_new.  A sphere
// (e² below 2^-48) needs none.  A failure is remembered and not retried
// until the constants are unloaded.
int ko_geogcs_load_constants(ko_geogcs *g) {
  ko_geogcs *gp = ko::live_geogcs(g);
  if (gp == nullptr) return 0;
  switch (gp->constants_state) {
    case kConstantsFailed:
      return 0;
    case kConstantsLoaded:
    case kConstantsSphere:
      return 1;
    default:
      break;
  }
  double e2 = ko_spheroid_esquared(ko_datum_spheroid(gp->datum));
  if (e2 < ko::kTol) {
    gp->constants_state = kConstantsSphere;
    return 1;
  }
  UniqueConstants constants(ko_constants_new());
  ko::Owned<int32_t> ivals(ko::alloc_array<int32_t>(2, "ko_geogcs constants"));
  int order = 0;
  ko::Owned<double> dvals(ko_geodesic_constants_array_new(e2, &order));
  if (constants == nullptr || ivals == nullptr || dvals == nullptr) {
    gp->constants_state = kConstantsFailed;
    return 0;
  }
  ivals.get()[0] = 2;
  ivals.get()[1] = order;
  ko_constants_ivals_set(constants.get(), ivals.release());
  ko_constants_dvals_set(constants.get(), dvals.release());
  gp->constants = constants.release();
  gp->constants_state = kConstantsLoaded;
  return 1;
}

void ko_geogcs_unload_constants(ko_geogcs *g) {
  if (ko_geogcs *gp = ko::live_geogcs(g)) release_constants(*gp);
}

int ko_geogcs_check_axes(ko_geogcs *g, int /*flags*/) {
  ko_geogcs *gp = ko::live_geogcs(g);
  if (gp == nullptr) return 0;
  if (gp->axes[0] != nullptr) return 1;
  if (ko_axis_fill(gp->axes, gp->dimension, KO_AXIS_KIND_GEOGRAPHIC,
                   reinterpret_cast<const ko_unit *>(gp->unit), nullptr) == 0)
    return 0;
  gp->unit = ko_angunit_del(gp->unit);
  return 1;
}

const ko_objvec ko_geogcs_objvec =
    ko::make_objvec<ko_geogcs, ko_geogcs_clone, ko_geogcs_del, ko_geogcs_eq>(KO_TYPE_GEOGCS);

}  // extern "C"

KO_DEFINE_OBJECT_FORWARDS(geogcs, ko_geogcs)
