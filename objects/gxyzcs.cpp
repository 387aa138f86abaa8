// Geocentric coordinate system: earth-centred, earth-fixed X, Y and Z on a
// datum, with the prime meridian through which X points and the linear
// unit of the three coordinates.
#include "objects/systems.h"

namespace {

constexpr const char *kSource = "ko_gxyzcs_ext_new_errext";

// The three axes, when given: live axes in positions 1, 2, 3 whose units,
// where they carry one, are linear and equal to the unit argument and to
// each other.  0 or the error number.
int axes_problem(ko_axis *const *axes, const ko_linunit *unit) {
  if (axes == nullptr) return 0;
  const ko_linunit *reference = unit;
  for (int i = 0; i < KO_AXIS_MAX; ++i) {
    if (axes[i] == nullptr) return 478;
    if (ko::live_axis(axes[i]) == nullptr) return 485;
    if (ko_axis_order(axes[i]) != i + 1) return 482;
    const ko_unit *axis_unit = ko_axis_unit(axes[i]);
    if (axis_unit == nullptr) continue;
    if (ko::live_unit(axis_unit, KO_TYPE_LINUNIT) == nullptr) return 487;
    const auto *linear = reinterpret_cast<const ko_linunit *>(axis_unit);
    if (reference == nullptr) reference = linear;
    if (ko_linunit_eq(reference, linear) == 0) return 477;
  }
  return 0;
}

// The first unit the axes carry, or null.
const ko_unit *first_axis_unit(ko_axis *const *axes) {
  for (int i = 0; axes != nullptr && i < KO_AXIS_MAX; ++i)
    if (const ko_unit *u = ko_axis_unit(axes[i])) return u;
  return nullptr;
}

}  // namespace

extern "C" {

// In order: the name (warning 354); the datum (334); the prime meridian
// (329); the unit (323); the axes (478, 485, 482, 487, 477, and 477 when
// their units disagree among themselves); memory (1).  Without a unit the
// system takes the axes' common unit, else "Meter"; a prime meridian
// without unit gets "Degree"; none at all is "Greenwich".  The caller's
// objects are changed only once the system exists.
ko_gxyzcs *ko_gxyzcs_ext_new_errext(const char *name, ko_datum *datum, ko_primem *primem,
                                    ko_linunit *unit, ko_axis **axes, ko_metadata **metadata,
                                    ko_remark *remark, ko_err *err) {
  if (name == nullptr) name = "";
  ko::errext_prologue(err, kSource, name);
  int number = ko::live_datum(datum) == nullptr                          ? 334
               : primem != nullptr && ko::live_primem(primem) == nullptr ? 329
               : unit != nullptr && ko::live_unit(unit, KO_TYPE_LINUNIT) == nullptr
                   ? 323
                   : axes_problem(axes, unit);
  if (number != 0) {
    ko::report_bad_argument(err, number, kSource, name);
    return nullptr;
  }
  const ko_unit *axis_unit = first_axis_unit(axes);
  ko::Unique<ko_linunit> made_unit;
  if (unit == nullptr)
    made_unit.reset(axis_unit != nullptr ? reinterpret_cast<ko_linunit *>(ko::unit_clone(axis_unit))
                                         : ko::new_meter());
  ko::Unique<ko_primem> made_primem;
  ko::Unique<ko_angunit> meridian_unit;
  if (primem == nullptr)
    made_primem.reset(ko_primem_new("Greenwich", 0.0));
  else if (ko_primem_unit(primem) == nullptr)
    meridian_unit.reset(ko::new_degree());
  bool out_of_memory =
      (unit == nullptr && made_unit == nullptr) || (primem == nullptr && made_primem == nullptr) ||
      (primem != nullptr && ko_primem_unit(primem) == nullptr && meridian_unit == nullptr);
  auto *g = out_of_memory ? nullptr : ko::make_object<ko_gxyzcs>(KO_TYPE_GXYZCS, name);
  if (g == nullptr) {
    ko::report_no_memory(err, kSource, name);
    return nullptr;
  }
  if (meridian_unit != nullptr) ko_primem_unit_set(primem, meridian_unit.release());
  g->datum = datum;
  g->primem = primem != nullptr ? primem : made_primem.release();
  g->unit = unit != nullptr ? unit : made_unit.release();
  for (int i = 0; axes != nullptr && i < KO_AXIS_MAX; ++i) {
    g->axes[i] = axes[i];
    ko_axis_unit_set(axes[i], nullptr);
  }
  g->metadata = metadata;
  g->remark = remark;
  return g;
}

ko_gxyzcs *ko_gxyzcs_ext_new(const char *name, ko_datum *datum, ko_primem *primem, ko_linunit *unit,
                             ko_axis **axes, ko_metadata **metadata, ko_remark *remark) {
  return ko_gxyzcs_ext_new_errext(name, datum, primem, unit, axes, metadata, remark, nullptr);
}

ko_gxyzcs *ko_gxyzcs_new_errext(const char *name, ko_datum *datum, ko_primem *primem,
                                ko_linunit *unit, ko_err *err) {
  return ko_gxyzcs_ext_new_errext(name, datum, primem, unit, nullptr, nullptr, nullptr, err);
}

ko_gxyzcs *ko_gxyzcs_new(const char *name, ko_datum *datum, ko_primem *primem, ko_linunit *unit) {
  return ko_gxyzcs_ext_new_errext(name, datum, primem, unit, nullptr, nullptr, nullptr, nullptr);
}

int ko_gxyzcs_p(const void *obj) { return ko::live_gxyzcs(obj) != nullptr; }

ko_gxyzcs *ko_gxyzcs_clone(const ko_gxyzcs *g) {
  const ko_gxyzcs *src = ko::live_gxyzcs(g);
  if (src == nullptr) return nullptr;
  ko::Unique<ko_datum> datum;
  ko::Unique<ko_primem> primem;
  ko::Unique<ko_linunit> unit;
  std::array<ko::Unique<ko_axis>, KO_AXIS_MAX> axes;
  ko::Annotations parts;
  bool ok = ko::clone_part(src->datum, datum, ko_datum_clone) &&
            ko::clone_part(src->primem, primem, ko_primem_clone) &&
            ko::clone_part(src->unit, unit, ko_linunit_clone) &&
            ko::clone_annotations(src->metadata, src->remark, parts);
  for (int i = 0; ok && i < KO_AXIS_MAX; ++i)
    ok = ko::clone_part(src->axes[i], axes[i], ko_axis_clone);
  if (!ok) return nullptr;
  std::array<ko_axis *, KO_AXIS_MAX> axis_ptrs = {axes[0].get(), axes[1].get(), axes[2].get()};
  ko_gxyzcs *copy =
      ko_gxyzcs_ext_new_errext(ko_header_get_name(src), datum.get(), primem.get(), unit.get(),
                               src->axes[0] != nullptr ? axis_ptrs.data() : nullptr, parts.metadata,
                               parts.remark.get(), nullptr);
  if (copy == nullptr) return nullptr;
  datum.release();  // every part now belongs to the copy
  primem.release();
  unit.release();
  for (auto &axis : axes) axis.release();
  parts.take_metadata();
  parts.remark.release();
  return ko::with_header_of(copy, src, ko_gxyzcs_del);
}

ko_gxyzcs *ko_gxyzcs_del(ko_gxyzcs *g) {
  g = ko::live_gxyzcs(g);
  if (g == nullptr) return nullptr;
  for (ko_axis *axis : g->axes) ko_axis_del(axis);
  ko_datum_del(g->datum);
  ko_primem_del(g->primem);
  ko_linunit_del(g->unit);
  ko_metadata_vector_del(g->metadata);
  ko_remark_del(g->remark);
  return ko::release_object(g);
}

// Names (ko_strcmp_ci), datums, prime meridians and linear units; axes,
// metadata and remark are not compared.
int ko_gxyzcs_eq(const ko_gxyzcs *a, const ko_gxyzcs *b) {
  const ko_gxyzcs *ga = ko::live_gxyzcs(a);
  const ko_gxyzcs *gb = ko::live_gxyzcs(b);
  if (ga == nullptr || gb == nullptr) return 0;
  return ko_strcmp_ci(ko_header_get_name(ga), ko_header_get_name(gb)) == 0 &&
                 ko_datum_eq(ga->datum, gb->datum) != 0 &&
                 ko_primem_eq(ga->primem, gb->primem) != 0 && ko_linunit_eq(ga->unit, gb->unit) != 0
             ? 1
             : 0;
}

ko_datum *ko_gxyzcs_datum(const ko_gxyzcs *g) {
  return ko::field_or(g, ko::live_gxyzcs, &ko_gxyzcs::datum, nullptr);
}

ko_primem *ko_gxyzcs_primem(const ko_gxyzcs *g) {
  return ko::field_or(g, ko::live_gxyzcs, &ko_gxyzcs::primem, nullptr);
}

ko_linunit *ko_gxyzcs_unit(const ko_gxyzcs *g) {
  return ko::field_or(g, ko::live_gxyzcs, &ko_gxyzcs::unit, nullptr);
}

ko_axis *ko_gxyzcs_axis(const ko_gxyzcs *g, int index) {
  const ko_gxyzcs *gp = ko::live_gxyzcs(g);
  if (gp == nullptr || index < 0 || index >= KO_AXIS_MAX) return nullptr;
  return gp->axes[index];
}

ko_metadata **ko_gxyzcs_metadata_vector(const ko_gxyzcs *g) {
  return ko::field_or(g, ko::live_gxyzcs, &ko_gxyzcs::metadata, nullptr);
}

ko_remark *ko_gxyzcs_remark(const ko_gxyzcs *g) {
  return ko::field_or(g, ko::live_gxyzcs, &ko_gxyzcs::remark, nullptr);
}

constinit const ko_objvec ko_gxyzcs_objvec =
    ko::make_objvec<ko_gxyzcs, ko_gxyzcs_clone, ko_gxyzcs_del, ko_gxyzcs_eq>(KO_TYPE_GXYZCS);

}  // extern "C"

KO_DEFINE_OBJECT_FORWARDS(gxyzcs, ko_gxyzcs)
