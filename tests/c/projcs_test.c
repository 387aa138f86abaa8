/* A projected system built from C through the shared library: the British
 * National Grid (Transverse Mercator on Airy 1830) and the worked example
 * of IOGP guidance note 7-2 (method 9807): 50°30'N 0°30'E is
 * E 577274.99 m, N 69740.50 m.  That example works the USGS series, which
 * here differs from the exact mapping by under a centimetre (the exact
 * values are 577274.984 m and 69740.492 m), so the check allows 1.5 cm. */
#include "ko.h"

#include <math.h>
#include <stdio.h>

static int failures = 0;

#define CHECK(cond)                                                             \
  do {                                                                          \
    if (!(cond)) {                                                              \
      fprintf(stderr, "%s:%d: check failed: %s\n", __FILE__, __LINE__, #cond); \
      failures++;                                                               \
    }                                                                           \
  } while (0)

static ko_parameter *parm(ko_parameter **slots, const char *name, double value) {
  ko_parameter *p = ko_parameter_new(name, value);
  int slot = ko_parmlist_index_from_code(ko_parameter_code(p));
  if (slot >= 0) slots[slot] = p;
  return p;
}

int main(void) {
  ko_parameter *slots[KO_PARM_COUNT] = {0};
  ko_geogcs *osgb;
  ko_conversion *conv;
  ko_projcs *bng;
  ko_err err;
  double pt[2] = {0.5, 50.5};
  double out[KO_PARM_COUNT];

  osgb = ko_geogcs_new("GCS_OSGB_1936",
                       ko_datum_new("D_OSGB_1936",
                                    ko_spheroid_new("Airy_1830", 6377563.396,
                                                    1.0 / 299.3249646)),
                       NULL, NULL);
  parm(slots, "False_Easting", 400000.0);
  parm(slots, "False_Northing", -100000.0);
  parm(slots, "Central_Meridian", -2.0);
  parm(slots, "Scale_Factor", 0.9996012717);
  parm(slots, "Latitude_Of_Origin", 49.0);
  conv = ko_conversion_ext_new_errext("British National Grid",
                                      ko_projlist_projection_from_code(43006, NULL), slots, &err);
  CHECK(conv != NULL && err.severity == KO_SEV_NONE);
  bng = ko_projcs_new_errext("British_National_Grid", osgb, conv, NULL, &err);
  CHECK(bng != NULL && err.severity == KO_SEV_NONE);
  CHECK(ko_object_vector(KO_TYPE_PROJCS) == &ko_projcs_objvec);
  CHECK(ko_projcs_type(bng) == KO_TYPE_PROJCS);

  /* Unitless angles were given the geographic system's degree. */
  CHECK(ko_projcs_parm_array(bng, out) == 1);
  CHECK(fabs(out[6] - 49.0 * 0.017453292519943295) < 1e-15);

  CHECK(ko_geog_to_proj(bng, 1, pt) == 1);
  CHECK(fabs(pt[0] - 577274.99) < 0.015);
  CHECK(fabs(pt[1] - 69740.50) < 0.015);
  CHECK(ko_proj_to_geog(bng, 1, pt) == 1);
  CHECK(fabs(pt[0] - 0.5) < 1e-11);
  CHECK(fabs(pt[1] - 50.5) < 1e-11);
  CHECK(ko_projcs_constants(bng) != NULL);

  CHECK(ko_geog_to_proj(NULL, 1, pt) == -1);
  bng = ko_projcs_del(bng);
  CHECK(bng == NULL);

  if (failures == 0) printf("1 passed, 0 failed\n");
  return failures == 0 ? 0 : 1;
}
