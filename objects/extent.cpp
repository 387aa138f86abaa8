// Extents: the geographic box, vertical range and time span that metadata
// (areas of use) and grid constants carry.
#include "foundation/internal.h"

extern "C" {

int ko_gcs_extent_empty(const ko_gcs_extent *e) {
  return e == nullptr ||
         (e->west == 0.0 && e->south == 0.0 && e->east == 0.0 && e->north == 0.0);
}

void ko_gcs_extent_clear(ko_gcs_extent *e) {
  if (e != nullptr) *e = ko_gcs_extent{};
}

void ko_gcs_extent_copy(ko_gcs_extent *dst, const ko_gcs_extent *src) {
  if (dst == nullptr) return;
  if (src == nullptr) {
    ko_gcs_extent_clear(dst);
  } else {
    *dst = *src;
  }
}

int ko_gcs_extent_eq(const ko_gcs_extent *a, const ko_gcs_extent *b) {
  if (ko_gcs_extent_empty(a) || ko_gcs_extent_empty(b))
    return ko_gcs_extent_empty(a) && ko_gcs_extent_empty(b);
  return ko::rel_eq(a->west, b->west) && ko::rel_eq(a->south, b->south) &&
         ko::rel_eq(a->east, b->east) && ko::rel_eq(a->north, b->north) &&
         ko::rel_eq(a->lon_step, b->lon_step) && ko::rel_eq(a->lat_step, b->lat_step);
}

int ko_gcs_extent_contains(const ko_gcs_extent *e, double lon, double lat) {
  if (ko_gcs_extent_empty(e) || !(lat >= e->south && lat <= e->north)) return 0;
  if (e->west <= e->east) return lon >= e->west && lon <= e->east;
  // The box crosses the antimeridian: west of 180 or east of -180.
  return lon >= e->west || lon <= e->east;
}

int ko_vcs_extent_empty(const ko_vcs_extent *e) {
  return e == nullptr || (e->low == 0.0 && e->high == 0.0);
}

void ko_vcs_extent_clear(ko_vcs_extent *e) {
  if (e != nullptr) *e = ko_vcs_extent{};
}

void ko_vcs_extent_copy(ko_vcs_extent *dst, const ko_vcs_extent *src) {
  if (dst == nullptr) return;
  if (src == nullptr) {
    ko_vcs_extent_clear(dst);
  } else {
    *dst = *src;
  }
}

int ko_vcs_extent_eq(const ko_vcs_extent *a, const ko_vcs_extent *b) {
  if (ko_vcs_extent_empty(a) || ko_vcs_extent_empty(b))
    return ko_vcs_extent_empty(a) && ko_vcs_extent_empty(b);
  return ko::rel_eq(a->low, b->low) && ko::rel_eq(a->high, b->high);
}

int ko_time_extent_empty(const ko_time_extent *e) {
  return e == nullptr || (e->start == 0.0 && e->end == 0.0);
}

void ko_time_extent_clear(ko_time_extent *e) {
  if (e != nullptr) *e = ko_time_extent{};
}

void ko_time_extent_copy(ko_time_extent *dst, const ko_time_extent *src) {
  if (dst == nullptr) return;
  if (src == nullptr) {
    ko_time_extent_clear(dst);
  } else {
    *dst = *src;
  }
}

int ko_time_extent_eq(const ko_time_extent *a, const ko_time_extent *b) {
  if (ko_time_extent_empty(a) || ko_time_extent_empty(b))
    return ko_time_extent_empty(a) && ko_time_extent_empty(b);
  return ko::rel_eq(a->start, b->start) && ko::rel_eq(a->end, b->end);
}

}  // extern "C"
