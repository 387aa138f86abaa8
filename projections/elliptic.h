// Extended-precision forms of Carlson's RF and RD, for the closed forms that
// need a result correctly rounded to double (the rectifying latitude).
#pragma once

namespace ko {

// Finite arguments >= 0 with at most one zero (and z > 0 for RD).
long double rf_extended(long double x, long double y, long double z);
long double rd_extended(long double x, long double y, long double z);

}  // namespace ko
