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
  ko_err err = {0};
  char text[KO_ERR_TEXT_SIZE];

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

  /* Error reporting from C: the error outranks the earlier warning. */
  ko_err_clear(&err);
  ko_err_arg(&err, KO_SEV_WARNING, KO_ERRCAT_ARGUMENT, 354, "c_test", "s", "long name");
  CHECK(err.number == 354 && strcmp(err.message, "long name") == 0);
  ko_err_set(&err, KO_SEV_ERROR, KO_ERRCAT_ARGUMENT, 334, "c_test");
  CHECK(err.severity == KO_SEV_ERROR && err.number == 334);
  CHECK(strcmp(err.message, "Null or invalid datum object argument") == 0);
  ko_err_fmt(&err, KO_SEV_ERROR, KO_ERRCAT_PARSE, 463, "c_test", "at %d", 12);
  CHECK(err.number == 334);
  CHECK(strcmp(ko_err_num_to_str(text, 354), "Name too long") == 0);
  CHECK(ko_errtbl_en.count == 262 && ko_msg_tbl_list[0] == &ko_errtbl_en);

  if (failures == 0) printf("1 passed, 0 failed\n");
  return failures == 0 ? 0 : 1;
}
