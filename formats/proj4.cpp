// PROJ.4 row of the formatter table.  The PROJ.4 string reader and writer
// are not written yet: until they are, this row reads nothing and writes
// nothing (a '+' text then fails in the formatter with error 463).
#include "ko.h"

extern "C" {

int ko_proj4_object_to_str(const void *, const char *, uint32_t, int size, char *buf) {
  if (buf != nullptr && size > 0) buf[0] = '\0';
  return 0;
}

void *ko_proj4_str_to_object(uint32_t, const char *, const char *, ko_err *) { return nullptr; }

uint32_t ko_proj4_object_type(const char *) { return 0; }

}  // extern "C"
