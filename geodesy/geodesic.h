// Geodesics on an ellipsoid of revolution, used by the projections that need
// them (the azimuthal equidistant): the direct and the inverse problem after
// C. F. F. Karney, "Algorithms for geodesics", J. Geodesy 87, 43-55 (2013),
// with the series coefficients of ko_geodesic_constants_array_new.  Angles
// in radians, lengths in metres.  A plain record, so that it can live in a
// projection's constants.
#pragma once

#include "ko.h"

namespace ko::geodesy {

struct Geodesic {
  double a, f, f1, e2, ep2, n, b;
  // Series rows of Karney (2013) at this spheroid's n, each a polynomial in
  // eps of degree KO_GEODESIC_ORDER (rows as ko_geodesic_constants_array_new).
  double coef[KO_GEODESIC_NCOEF];

  // False when the spheroid pair is not usable or memory runs out.
  bool init(double a_, double e2_);

  // From (lat1, azi1) along the geodesic for s12 metres: lat2 and the
  // longitude difference lon12 (not reduced).
  void direct(double lat1, double azi1, double s12, double &lat2, double &lon12) const;

  // The same, with the reduced length m12 (metres) and the geodesic scale
  // M12 of the end point (Karney 2013, eqs. 38 and 39), for the ellipsoidal
  // gnomonic.
  void direct(double lat1, double azi1, double s12, double &lat2, double &lon12, double &m12,
              double &M12) const;

  // The shortest geodesic from (lat1, 0) to (lat2, lon12): its length s12
  // and the azimuth azi1 at the first point.  False when the iteration did
  // not converge (which does not happen for finite input).
  bool inverse(double lat1, double lat2, double lon12, double &s12, double &azi1) const;
};

}  // namespace ko::geodesy
