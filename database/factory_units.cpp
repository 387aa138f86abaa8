// The factory's units: linear, angular, scale and area units from their
// catalogue records (name, display name, plural, abbreviation, factor), and
// the generic unit, which is whichever of the linear, angular and scale
// units has the code or name.
#include "database/factory.h"

namespace ko::factory {

namespace {

using UnitConstructor = void *(*)(const char *name, const char *display, const char *plural,
                                  const char *abbr, double factor, ko_err *err);

template <auto Constructor>
void *erase_unit_constructor(const char *name, const char *display, const char *plural,
                             const char *abbr, double factor, ko_err *err) {
  return Constructor(name, display, plural, abbr, factor, err);
}

// Angular and scale records share one layout, linear and area records
// another; both begin with the same fields.
template <class Record>
void *build_unit(const Found &found, Context &ctx, UnitConstructor construct) {
  const auto *r = static_cast<const Record *>(found.record);
  return construct(r->name, r->display, r->plural, r->abbreviation, r->factor, ctx.err);
}

}  // namespace

void *build_linunit(const Found &found, Context &ctx) {
  return build_unit<ko_db_linunit_rec>(found, ctx,
                                       erase_unit_constructor<ko_linunit_ext_new_errext>);
}

void *build_angunit(const Found &found, Context &ctx) {
  return build_unit<ko_db_angunit_rec>(found, ctx,
                                       erase_unit_constructor<ko_angunit_ext_new_errext>);
}

void *build_scaleunit(const Found &found, Context &ctx) {
  return build_unit<ko_db_angunit_rec>(found, ctx,
                                       erase_unit_constructor<ko_scaleunit_ext_new_errext>);
}

void *build_areaunit(const Found &found, Context &ctx) {
  return build_unit<ko_db_linunit_rec>(found, ctx,
                                       erase_unit_constructor<ko_areaunit_ext_new_errext>);
}

}  // namespace ko::factory

KO_DEFINE_FACTORY(linunit, ko_linunit, KO_TYPE_LINUNIT)
KO_DEFINE_FACTORY(angunit, ko_angunit, KO_TYPE_ANGUNIT)
KO_DEFINE_FACTORY(scaleunit, ko_scaleunit, KO_TYPE_SCALEUNIT)
KO_DEFINE_FACTORY(areaunit, ko_areaunit, KO_TYPE_AREAUNIT)
KO_DEFINE_FACTORY(unit, ko_unit, KO_TYPE_UNIT)
