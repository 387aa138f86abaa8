// WKT2 row of the formatter table.  The WKT2 reader and writer are not
// written yet: until they are, this row reads nothing and writes nothing,
// so that the formatter table falls through to WKT1 for bracketed text.
#include "ko.h"

extern "C" {

int ko_wkt2_object_to_str(const void *, const char *, uint32_t, int size, char *buf) {
  if (buf != nullptr && size > 0) buf[0] = '\0';
  return 0;
}

void *ko_wkt2_str_to_object(uint32_t, const char *, const char *, ko_err *) { return nullptr; }

uint32_t ko_wkt2_object_type(const char *) { return 0; }

}  // extern "C"
