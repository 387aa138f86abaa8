// Version text of the library.
#include "foundation/internal.h"

#ifndef KO_VERSION_TEXT
#define KO_VERSION_TEXT "0.1.0"
#endif

extern "C" const char *ko_version(void) { return KO_VERSION_TEXT; }
