/* Project a point to UTM zone 33N, and move one from ED50 to WGS 84. */
#include <stdio.h>

#include "ko.h"

int main(void) {
  ko_err err;
  double berlin[2] = {13.4, 52.52}; /* longitude, latitude in degrees */
  double paris[2] = {2.35, 48.85};
  ko_projcs *utm = ko_factory_projcs_from_code_errext(32633, &err);
  ko_gtlist_entry *shift;

  if (utm == NULL) {
    fprintf(stderr, "32633: %s\n", err.message);
    return 1;
  }
  if (ko_geog_to_proj(utm, 1, berlin) == 1)
    printf("Berlin, UTM zone 33N: %.3f %.3f\n", berlin[0], berlin[1]);
  ko_projcs_del(utm);

  /* The most accurate ED50 to WGS 84 transformation at that point. */
  shift = ko_factory_gtlist_best(4230, 4326, paris[0], paris[1], &err);
  if (shift == NULL) {
    fprintf(stderr, "ED50 to WGS 84: %s\n", err.message);
    return 1;
  }
  if (ko_factory_gtlist_geog_to_geog(shift, 1, paris, NULL, 0) == 1)
    printf("Paris, ED50 to WGS 84: %.9f %.9f\n", paris[0], paris[1]);
  ko_gtlist_entry_del(shift);
  return 0;
}
