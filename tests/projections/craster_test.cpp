// Craster parabolic on the sphere of radius a: agreement with PROJ's crast,
// equal area checked numerically, and the edges of the map.
#include "tests/projections/world_maps_support.h"

#include <gtest/gtest.h>

namespace {

using namespace ko::test;

const WorldCase kCraster{"Craster_Parabolic", &ko_prj_craster_parabolic_vector, "crast"};

#ifdef KO_HAVE_PROJ
TEST(Craster, AgreesWithProj) { check_world_against_proj(kCraster, 1e-6, 1e-9); }
#endif

TEST(Craster, IsEqualArea) { check_equal_area(kCraster); }

TEST(Craster, EdgesOfTheMap) { check_world_edges(kCraster); }

}  // namespace
