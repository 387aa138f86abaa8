/* The public header is plain C99: this program includes it, links the shared
 * library and calls into it the way a C caller would. */
#include "ko.h"

#include <stdio.h>
#include <string.h>

static int failures = 0;

#define CHECK(cond)                                                  \
  do {                                                               \
    if (!(cond)) {                                                   \
      fprintf(stderr, "%s:%d: check failed: %s\n", __FILE__, __LINE__, #cond); \
      failures++;                                                    \
    }                                                                \
  } while (0)

int main(void) {
  ko_constants *c;
  double *d;
  ko_gcs_extent box = {-10.0, 40.0, 20.0, 60.0, 0.0, 0.0};

  CHECK(strlen(ko_version()) > 0);
  CHECK(sizeof(ko_err) == 524);
  CHECK(sizeof(ko_errtbl) == 80);

  c = ko_constants_new();
  CHECK(ko_constants_p(c));
  d = (double *)ko_allocate_rtn(2 * sizeof(double), 0, "c-test");
  CHECK(d != NULL);
  d[0] = 1.5;
  ko_constants_dvals_set(c, d);
  CHECK(ko_constants_dvals(c)[0] == 1.5);
  c = ko_constants_del(c);
  CHECK(c == NULL);

  CHECK(ko_gcs_extent_contains(&box, 0.0, 50.0) == 1);
  CHECK(ko_gcs_extent_contains(&box, 30.0, 50.0) == 0);

  if (failures == 0) printf("1 passed, 0 failed\n");
  return failures == 0 ? 0 : 1;
}
