// The vectors of the projections whose mathematics is not written yet.
// Each converts nothing (forward and inverse return 0) and has no constants
// function; its validity check, compare and parameter functions are real.
// A family file that implements a projection defines that projection's
// vector itself and removes its line here.
#include "projections/projlist.h"

// One exported vector ko_prj_<id>_vector.
#define KO_PENDING_VECTOR(id, code, name, compfunc, parmfunc)                              \
  extern "C" constinit const ko_projlist_entry ko_prj_##id##_vector = {                    \
      code, name, ko::not_implemented, ko::not_implemented, nullptr, ko::validity<code>, \
      compfunc, parmfunc};

KO_PENDING_VECTOR(robinson, 43030, "Robinson", nullptr, nullptr)
KO_PENDING_VECTOR(fuller, 43052, "Fuller", nullptr, nullptr)
KO_PENDING_VECTOR(cube, 43055, "Cube", nullptr, nullptr)
KO_PENDING_VECTOR(robinson_tessin, 43057, "Robinson_TESSIN", nullptr, nullptr)
KO_PENDING_VECTOR(local, 43058, "Local", nullptr, nullptr)
KO_PENDING_VECTOR(berghaus_star, 43060, "Berghaus_Star", nullptr, nullptr)
KO_PENDING_VECTOR(ney, 43062, "Ney_Modified_Conic", ko::conic_compare, nullptr)
KO_PENDING_VECTOR(aspect_adaptive_cylindrical, 43083, "Aspect_Adaptive_Cylindrical", nullptr, nullptr)
KO_PENDING_VECTOR(tobler_cylindrical_i, 43088, "Tobler_Cylindrical_I", nullptr, nullptr)
KO_PENDING_VECTOR(tobler_cylindrical_ii, 43089, "Tobler_Cylindrical_II", nullptr, nullptr)
KO_PENDING_VECTOR(perspective_cylindrical, 43090, "Perspective_Cylindrical", nullptr, nullptr)
KO_PENDING_VECTOR(hotine_azimuth_center_old, 43237, "Hotine_Oblique_Mercator_Azimuth_Center_Old", nullptr, nullptr)
