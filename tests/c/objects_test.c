/* The object functions from C: generic operations, per-type forwards and the
 * small object types, through the shared library only. */
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
  ko_gcs_extent box = {-16.1, 32.88, 40.18, 84.73, 0.0, 0.0};
  ko_metadata *m;
  ko_metadata *copy;
  ko_authority *a;
  ko_err err = {0};
  char name[KO_NAME_SIZE];

  a = ko_authority_new_errext("EPSG", 0, NULL, &err);
  CHECK(a == NULL);
  CHECK(err.number == 311 && err.severity == KO_SEV_ERROR && err.category == KO_ERRCAT_ARGUMENT);

  m = ko_metadata_new("Europe", &box, 1298);
  CHECK(ko_metadata_p(m));
  CHECK(ko_metadata_type(m) == KO_TYPE_METADATA);
  ko_object_code_set(m, -1, 1298, 0, 0, "EPSG", "");
  a = ko_metadata_authority(m);
  CHECK(ko_authority_authcode(a) == 1298);
  CHECK(ko_authority_type(a) == KO_TYPE_AUTHORITY);
  CHECK(strcmp(ko_metadata_name(m, name), "Europe") == 0);

  copy = (ko_metadata *)ko_object_clone(m);
  CHECK(ko_object_eq(copy, m));
  CHECK(ko_object_vector(KO_TYPE_METADATA) == &ko_metadata_objvec);
  CHECK(strcmp(ko_type_to_abbr(KO_TYPE_HVDATUM), "hvd") == 0);
  CHECK(ko_string_to_status("259") == 3);

  CHECK(ko_object_del(copy) == NULL);
  m = ko_metadata_del(m);
  CHECK(m == NULL);
  CHECK(ko_object_del(NULL) == NULL);

  if (failures == 0) printf("1 passed, 0 failed\n");
  return failures == 0 ? 0 : 1;
}
