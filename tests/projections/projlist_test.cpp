// The projection list, the projection object, classes and properties, and
// the table-driven validity checks.  The expected codes, names, vector names
// and classes are the published list of the library's projections, written
// out here independently of the source tables.
#include "ko.h"
#include "projections/projlist.h"
#include "support/failing_alloc.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstring>
#include <set>
#include <string>
#include <vector>

namespace {

struct Listed {
  int32_t code;
  const char *name;
  const ko_projlist_entry *vector;
  const char *symbol;
};

// Codes and names from the projection list, with each vector's symbol.
const Listed kListed[] = {
    {43001, "Plate_Carree", &ko_prj_plate_carree_vector, "ko_prj_plate_carree_vector"},
    {43002, "Equidistant_Cylindrical", &ko_prj_equidistant_cylindrical_vector, "ko_prj_equidistant_cylindrical_vector"},
    {43003, "Miller_Cylindrical", &ko_prj_miller_cylindrical_vector, "ko_prj_miller_cylindrical_vector"},
    {43004, "Mercator", &ko_prj_mercator_vector, "ko_prj_mercator_vector"},
    {43005, "Gauss_Kruger", &ko_prj_gauss_kruger_vector, "ko_prj_gauss_kruger_vector"},
    {43006, "Transverse_Mercator", &ko_prj_transverse_mercator_vector, "ko_prj_transverse_mercator_vector"},
    {43007, "Albers", &ko_prj_albers_vector, "ko_prj_albers_vector"},
    {43008, "Sinusoidal", &ko_prj_sinusoidal_vector, "ko_prj_sinusoidal_vector"},
    {43009, "Mollweide", &ko_prj_mollweide_vector, "ko_prj_mollweide_vector"},
    {43010, "Eckert_VI", &ko_prj_eckert_vi_vector, "ko_prj_eckert_vi_vector"},
    {43011, "Eckert_V", &ko_prj_eckert_v_vector, "ko_prj_eckert_v_vector"},
    {43012, "Eckert_IV", &ko_prj_eckert_iv_vector, "ko_prj_eckert_iv_vector"},
    {43013, "Eckert_III", &ko_prj_eckert_iii_vector, "ko_prj_eckert_iii_vector"},
    {43014, "Eckert_II", &ko_prj_eckert_ii_vector, "ko_prj_eckert_ii_vector"},
    {43015, "Eckert_I", &ko_prj_eckert_i_vector, "ko_prj_eckert_i_vector"},
    {43016, "Gall_Stereographic", &ko_prj_gall_stereographic_vector, "ko_prj_gall_stereographic_vector"},
    {43017, "Behrmann", &ko_prj_behrmann_vector, "ko_prj_behrmann_vector"},
    {43018, "Winkel_I", &ko_prj_winkel_i_vector, "ko_prj_winkel_i_vector"},
    {43019, "Winkel_II", &ko_prj_winkel_ii_vector, "ko_prj_winkel_ii_vector"},
    {43020, "Lambert_Conformal_Conic", &ko_prj_lambert_conformal_conic_vector, "ko_prj_lambert_conformal_conic_vector"},
    {43021, "Polyconic", &ko_prj_polyconic_vector, "ko_prj_polyconic_vector"},
    {43022, "Quartic_Authalic", &ko_prj_quartic_authalic_vector, "ko_prj_quartic_authalic_vector"},
    {43023, "Loximuthal", &ko_prj_loximuthal_vector, "ko_prj_loximuthal_vector"},
    {43024, "Bonne", &ko_prj_bonne_vector, "ko_prj_bonne_vector"},
    {43025, "Hotine_Oblique_Mercator_Two_Point_Natural_Origin", &ko_prj_hotine_two_point_natorigin_vector, "ko_prj_hotine_two_point_natorigin_vector"},
    {43026, "Stereographic", &ko_prj_stereographic_vector, "ko_prj_stereographic_vector"},
    {43027, "Equidistant_Conic", &ko_prj_equidistant_conic_vector, "ko_prj_equidistant_conic_vector"},
    {43028, "Cassini", &ko_prj_cassini_vector, "ko_prj_cassini_vector"},
    {43029, "Van_der_Grinten_I", &ko_prj_van_der_grinten_i_vector, "ko_prj_van_der_grinten_i_vector"},
    {43030, "Robinson", &ko_prj_robinson_vector, "ko_prj_robinson_vector"},
    {43031, "Two_Point_Equidistant", &ko_prj_two_point_equidistant_vector, "ko_prj_two_point_equidistant_vector"},
    {43032, "Azimuthal_Equidistant", &ko_prj_azimuthal_equidistant_vector, "ko_prj_azimuthal_equidistant_vector"},
    {43033, "Lambert_Azimuthal_Equal_Area", &ko_prj_lambert_azimuthal_eqarea_vector, "ko_prj_lambert_azimuthal_eqarea_vector"},
    {43034, "Cylindrical_Equal_Area", &ko_prj_cylindrical_eqarea_vector, "ko_prj_cylindrical_eqarea_vector"},
    {43035, "Hotine_Oblique_Mercator_Two_Point_Center", &ko_prj_hotine_two_point_center_vector, "ko_prj_hotine_two_point_center_vector"},
    {43036, "Hotine_Oblique_Mercator_Azimuth_Natural_Origin", &ko_prj_hotine_azimuth_natorigin_vector, "ko_prj_hotine_azimuth_natorigin_vector"},
    {43037, "Hotine_Oblique_Mercator_Azimuth_Center", &ko_prj_hotine_azimuth_center_vector, "ko_prj_hotine_azimuth_center_vector"},
    {43038, "Double_Stereographic", &ko_prj_double_stereographic_vector, "ko_prj_double_stereographic_vector"},
    {43039, "Krovak", &ko_prj_krovak_vector, "ko_prj_krovak_vector"},
    {43040, "New_Zealand_Map_Grid", &ko_prj_new_zealand_map_grid_vector, "ko_prj_new_zealand_map_grid_vector"},
    {43041, "Orthographic", &ko_prj_orthographic_vector, "ko_prj_orthographic_vector"},
    {43042, "Winkel_Tripel", &ko_prj_winkel_tripel_vector, "ko_prj_winkel_tripel_vector"},
    {43043, "Aitoff", &ko_prj_aitoff_vector, "ko_prj_aitoff_vector"},
    {43044, "Hammer_Aitoff", &ko_prj_hammer_aitoff_vector, "ko_prj_hammer_aitoff_vector"},
    {43045, "Flat_Polar_Quartic", &ko_prj_flat_polar_quartic_vector, "ko_prj_flat_polar_quartic_vector"},
    {43046, "Craster_Parabolic", &ko_prj_craster_parabolic_vector, "ko_prj_craster_parabolic_vector"},
    {43047, "Gnomonic", &ko_prj_gnomonic_vector, "ko_prj_gnomonic_vector"},
    {43048, "Times", &ko_prj_times_vector, "ko_prj_times_vector"},
    {43049, "Vertical_Near_Side_Perspective", &ko_prj_vertical_near_side_perspective_vector, "ko_prj_vertical_near_side_perspective_vector"},
    {43050, "Stereographic_North_Pole", &ko_prj_stereographic_north_pole_vector, "ko_prj_stereographic_north_pole_vector"},
    {43051, "Stereographic_South_Pole", &ko_prj_stereographic_south_pole_vector, "ko_prj_stereographic_south_pole_vector"},
    {43052, "Fuller", &ko_prj_fuller_vector, "ko_prj_fuller_vector"},
    {43053, "Rectified_Skew_Orthomorphic_Natural_Origin", &ko_prj_rso_natorigin_vector, "ko_prj_rso_natorigin_vector"},
    {43054, "Rectified_Skew_Orthomorphic_Center", &ko_prj_rso_center_vector, "ko_prj_rso_center_vector"},
    {43055, "Cube", &ko_prj_cube_vector, "ko_prj_cube_vector"},
    {43056, "Transverse_Mercator_Complex", &ko_prj_transverse_mercator_complex_vector, "ko_prj_transverse_mercator_complex_vector"},
    {43057, "Robinson_TESSIN", &ko_prj_robinson_tessin_vector, "ko_prj_robinson_tessin_vector"},
    {43058, "Local", &ko_prj_local_vector, "ko_prj_local_vector"},
    {43059, "Goode_Homolosine", &ko_prj_goode_homolosine_vector, "ko_prj_goode_homolosine_vector"},
    {43060, "Berghaus_Star", &ko_prj_berghaus_star_vector, "ko_prj_berghaus_star_vector"},
    {43061, "Equidistant_Cylindrical_Ellipsoidal", &ko_prj_equidistant_cylindrical_ellipsoidal_vector, "ko_prj_equidistant_cylindrical_ellipsoidal_vector"},
    {43062, "Ney_Modified_Conic", &ko_prj_ney_vector, "ko_prj_ney_vector"},
    {43063, "Laborde_Oblique_Mercator", &ko_prj_laborde_vector, "ko_prj_laborde_vector"},
    {43064, "IGAC_Plano_Cartesiano", &ko_prj_igac_plano_cartesiano_vector, "ko_prj_igac_plano_cartesiano_vector"},
    {43065, "Gnomonic_Ellipsoidal", &ko_prj_gnomonic_ellipsoidal_vector, "ko_prj_gnomonic_ellipsoidal_vector"},
    {43066, "Polar_Stereographic_Variant_A", &ko_prj_polar_stereographic_variant_a_vector, "ko_prj_polar_stereographic_variant_a_vector"},
    {43067, "Polar_Stereographic_Variant_B", &ko_prj_polar_stereographic_variant_b_vector, "ko_prj_polar_stereographic_variant_b_vector"},
    {43068, "Polar_Stereographic_Variant_C", &ko_prj_polar_stereographic_variant_c_vector, "ko_prj_polar_stereographic_variant_c_vector"},
    {43069, "Mercator_Variant_A", &ko_prj_mercator_variant_a_vector, "ko_prj_mercator_variant_a_vector"},
    {43070, "Mercator_Variant_C", &ko_prj_mercator_variant_c_vector, "ko_prj_mercator_variant_c_vector"},
    {43071, "Hammer_Ellipsoidal", &ko_prj_hammer_ellipsoidal_vector, "ko_prj_hammer_ellipsoidal_vector"},
    {43072, "Quartic_Authalic_Ellipsoidal", &ko_prj_quartic_authalic_ellipsoidal_vector, "ko_prj_quartic_authalic_ellipsoidal_vector"},
    {43073, "Eckert_Greifendorff", &ko_prj_eckert_greifendorff_vector, "ko_prj_eckert_greifendorff_vector"},
    {43074, "Wagner_IV", &ko_prj_wagner_iv_vector, "ko_prj_wagner_iv_vector"},
    {43075, "Wagner_V", &ko_prj_wagner_v_vector, "ko_prj_wagner_v_vector"},
    {43076, "Wagner_VII", &ko_prj_wagner_vii_vector, "ko_prj_wagner_vii_vector"},
    {43077, "Natural_Earth", &ko_prj_natural_earth_vector, "ko_prj_natural_earth_vector"},
    {43078, "Natural_Earth_II", &ko_prj_natural_earth_ii_vector, "ko_prj_natural_earth_ii_vector"},
    {43079, "Patterson", &ko_prj_patterson_vector, "ko_prj_patterson_vector"},
    {43080, "Compact_Miller", &ko_prj_compact_miller_vector, "ko_prj_compact_miller_vector"},
    {43081, "Transverse_Mercator_NGA_2014", &ko_prj_transverse_mercator_nga_2014_vector, "ko_prj_transverse_mercator_nga_2014_vector"},
    {43082, "Transverse_Cylindrical_Equal_Area", &ko_prj_transverse_cylindrical_eqarea_vector, "ko_prj_transverse_cylindrical_eqarea_vector"},
    {43083, "Aspect_Adaptive_Cylindrical", &ko_prj_aspect_adaptive_cylindrical_vector, "ko_prj_aspect_adaptive_cylindrical_vector"},
    {43084, "Geostationary_Satellite", &ko_prj_geostationary_satellite_vector, "ko_prj_geostationary_satellite_vector"},
    {43085, "Equal_Earth", &ko_prj_equal_earth_vector, "ko_prj_equal_earth_vector"},
    {43086, "Peirce_Quincuncial", &ko_prj_peirce_quincuncial_vector, "ko_prj_peirce_quincuncial_vector"},
    {43087, "Adams_Square_II", &ko_prj_adams_square_ii_vector, "ko_prj_adams_square_ii_vector"},
    {43088, "Tobler_Cylindrical_I", &ko_prj_tobler_cylindrical_i_vector, "ko_prj_tobler_cylindrical_i_vector"},
    {43089, "Tobler_Cylindrical_II", &ko_prj_tobler_cylindrical_ii_vector, "ko_prj_tobler_cylindrical_ii_vector"},
    {43090, "Perspective_Cylindrical", &ko_prj_perspective_cylindrical_vector, "ko_prj_perspective_cylindrical_vector"},
    {43091, "Lambert_Conformal_Conic_1SP", &ko_prj_lambert_conformal_conic_1sp_vector, "ko_prj_lambert_conformal_conic_1sp_vector"},
    {43092, "Lambert_Conformal_Conic_2SP", &ko_prj_lambert_conformal_conic_2sp_vector, "ko_prj_lambert_conformal_conic_2sp_vector"},
    {43093, "Plate_Carree_Oblique", &ko_prj_plate_carree_oblique_vector, "ko_prj_plate_carree_oblique_vector"},
    {43102, "Equidistant_Cylindrical_Auxiliary_Sphere", &ko_prj_equidistant_cylindrical_auxs_vector, "ko_prj_equidistant_cylindrical_auxs_vector"},
    {43103, "Miller_Cylindrical_Auxiliary_Sphere", &ko_prj_miller_cylindrical_auxs_vector, "ko_prj_miller_cylindrical_auxs_vector"},
    {43104, "Mercator_Auxiliary_Sphere", &ko_prj_mercator_auxs_vector, "ko_prj_mercator_auxs_vector"},
    {43109, "Mollweide_Auxiliary_Sphere", &ko_prj_mollweide_auxs_vector, "ko_prj_mollweide_auxs_vector"},
    {43110, "Eckert_VI_Auxiliary_Sphere", &ko_prj_eckert_vi_auxs_vector, "ko_prj_eckert_vi_auxs_vector"},
    {43112, "Eckert_IV_Auxiliary_Sphere", &ko_prj_eckert_iv_auxs_vector, "ko_prj_eckert_iv_auxs_vector"},
    {43126, "Stereographic_Auxiliary_Sphere", &ko_prj_stereographic_auxs_vector, "ko_prj_stereographic_auxs_vector"},
    {43129, "Van_der_Grinten_I_Auxiliary_Sphere", &ko_prj_van_der_grinten_i_auxs_vector, "ko_prj_van_der_grinten_i_auxs_vector"},
    {43132, "Azimuthal_Equidistant_Auxiliary_Sphere", &ko_prj_azimuthal_equidistant_auxs_vector, "ko_prj_azimuthal_equidistant_auxs_vector"},
    {43133, "Lambert_Azimuthal_Equal_Area_Auxiliary_Sphere", &ko_prj_lambert_azimuthal_eqarea_auxs_vector, "ko_prj_lambert_azimuthal_eqarea_auxs_vector"},
    {43141, "Orthographic_Auxiliary_Sphere", &ko_prj_orthographic_auxs_vector, "ko_prj_orthographic_auxs_vector"},
    {43147, "Gnomonic_Auxiliary_Sphere", &ko_prj_gnomonic_auxs_vector, "ko_prj_gnomonic_auxs_vector"},
    {43237, "Hotine_Oblique_Mercator_Azimuth_Center_Old", &ko_prj_hotine_azimuth_center_old_vector, "ko_prj_hotine_azimuth_center_old_vector"},
};

const std::set<int32_t> kTransverseMercatorFamily = {43005, 43006, 43056, 43081};

// The naming rule of the vectors: ko_prj_ + lower-case name + _vector, with
// the short forms of the list.
std::string vector_symbol(std::string name) {
  if (name == "Ney_Modified_Conic") return "ko_prj_ney_vector";
  if (name == "Laborde_Oblique_Mercator") return "ko_prj_laborde_vector";
  const std::pair<const char *, const char *> short_forms[] = {
      {"Auxiliary_Sphere", "auxs"},
      {"Equal_Area", "eqarea"},
      {"Natural_Origin", "natorigin"},
      {"Rectified_Skew_Orthomorphic", "rso"},
      {"Hotine_Oblique_Mercator", "hotine"},
  };
  for (auto [long_form, short_form] : short_forms) {
    auto at = name.find(long_form);
    if (at != std::string::npos) name.replace(at, std::strlen(long_form), short_form);
  }
  for (char &c : name) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return "ko_prj_" + name + "_vector";
}

TEST(ProjList, CountsAndIndexing) {
  EXPECT_EQ(std::size(kListed), 106u);
  EXPECT_EQ(ko_projlist_tbl_cnt, 106);
  EXPECT_EQ(ko_projlist_count(), 106);
  EXPECT_EQ(ko_projlist_tbl[106], nullptr);
  EXPECT_EQ(ko_projlist_from_indx(-1), nullptr);
  EXPECT_EQ(ko_projlist_from_indx(106), nullptr);
  for (int i = 0; i < 106; ++i) EXPECT_EQ(ko_projlist_from_indx(i), ko_projlist_tbl[i]);
}

TEST(ProjList, EveryListedProjectionHasItsVector) {
  for (const Listed &p : kListed) {
    EXPECT_EQ(p.vector->code, p.code) << p.name;
    EXPECT_STREQ(p.vector->name, p.name);
    EXPECT_EQ(vector_symbol(p.name), p.symbol);
    EXPECT_EQ(ko_projlist_from_code(p.code), p.vector) << p.name;
    EXPECT_EQ(ko_projlist_from_name(p.name), p.vector) << p.name;
  }
}

TEST(ProjList, TableIsInAlphabeticalOrderOfVectorNames) {
  std::vector<Listed> sorted(std::begin(kListed), std::end(kListed));
  std::sort(sorted.begin(), sorted.end(),
            [](const Listed &a, const Listed &b) { return std::strcmp(a.symbol, b.symbol) < 0; });
  for (size_t i = 0; i < sorted.size(); ++i) {
    EXPECT_EQ(ko_projlist_tbl[i], sorted[i].vector) << i << " should be " << sorted[i].symbol;
  }
}

TEST(ProjList, LookupEdgeCases) {
  EXPECT_EQ(ko_projlist_from_code(0), nullptr);
  EXPECT_EQ(ko_projlist_from_code(-43006), nullptr);
  EXPECT_EQ(ko_projlist_from_code(43100), nullptr);  // a gap in the codes
  EXPECT_EQ(ko_projlist_from_name(nullptr), nullptr);
  EXPECT_EQ(ko_projlist_from_name(""), nullptr);
  EXPECT_EQ(ko_projlist_from_name("No_Such_Projection"), nullptr);
  ASSERT_NE(ko_projlist_from_name("transverse_mercator"), nullptr);
  EXPECT_EQ(ko_projlist_from_name("transverse_mercator")->code, 43006);
  EXPECT_EQ(ko_projlist_from_name("LAMBERT_CONFORMAL_CONIC_2SP")->code, 43092);
  // Case only: not a different spelling.
  EXPECT_EQ(ko_projlist_from_name("Transverse Mercator"), nullptr);
}

TEST(ProjList, SlotsPresentAsListed) {
  const std::set<int32_t> no_constants = {
      43001, 43002, 43003, 43010, 43011, 43012, 43013, 43014, 43015, 43018, 43019,
      43022, 43023, 43029, 43031, 43040, 43043, 43044, 43052, 43055, 43057, 43060,
      43075, 43077, 43078, 43079, 43080, 43088, 43089, 43090};
  const std::set<std::string> with_compfunc = {
      "Albers", "Lambert_Conformal_Conic", "Equidistant_Conic", "Ney_Modified_Conic",
      "Lambert_Conformal_Conic_1SP", "Lambert_Conformal_Conic_2SP", "Mercator_Auxiliary_Sphere"};
  const std::set<std::string> with_parmfunc = {"Lambert_Conformal_Conic", "Krovak",
                                               "Lambert_Conformal_Conic_2SP"};
  for (const Listed &p : kListed) {
    const ko_projlist_entry *v = p.vector;
    EXPECT_NE(v->forward, nullptr) << p.name;
    EXPECT_NE(v->inverse, nullptr) << p.name;
    EXPECT_NE(v->validfunc, nullptr) << p.name;
    if (kTransverseMercatorFamily.count(p.code)) continue;  // its own files
    EXPECT_EQ(v->compfunc != nullptr, with_compfunc.count(p.name) == 1) << p.name;
    EXPECT_EQ(v->parmfunc != nullptr, with_parmfunc.count(p.name) == 1) << p.name;
    // Projections whose mathematics is still to come have no constants
    // function yet; those without one by design must never get one.
    if (no_constants.count(p.code)) {
      EXPECT_EQ(v->constfunc, nullptr) << p.name;
    }
  }
}

TEST(ProjList, PendingProjectionsConvertNothing) {
  const double sph[2] = {6378137.0, 0.0066943799901413165};
  double parms[KO_PARM_COUNT] = {};
  for (const Listed &p : kListed) {
    // The projections whose family files are written convert points.
    if (p.vector->forward != ko::not_implemented) continue;
    double coords[4] = {0.1, 0.2, -0.3, 0.4};
    EXPECT_EQ(p.vector->forward(sph, parms, 2, coords, nullptr, nullptr), 0) << p.name;
    EXPECT_EQ(p.vector->inverse(sph, parms, 2, coords, nullptr, nullptr), 0) << p.name;
    EXPECT_EQ(coords[0], 0.1);
    EXPECT_EQ(coords[3], 0.4);
  }
}

// ---------------------------------------------------------------------------
// Classes and properties

TEST(ProjClass, ClassOfEveryCode) {
  struct Row {
    int klass;
    std::vector<int32_t> codes;
  };
  auto range = [](int32_t a, int32_t b) {
    std::vector<int32_t> v;
    for (int32_t c = a; c <= b; ++c) v.push_back(c);
    return v;
  };
  auto join = [](std::vector<int32_t> a, std::initializer_list<int32_t> b) {
    a.insert(a.end(), b);
    return a;
  };
  const Row rows[] = {
      {10, {43026, 43032, 43033, 43038, 43041, 43047, 43049, 43050, 43051, 43058, 43065, 43066,
            43067, 43068, 43084, 43126, 43132, 43133, 43141, 43147}},
      {19, {43031, 43042, 43043, 43044, 43064, 43071, 43073, 43076, 43086, 43087}},
      {20, join(range(43001, 43006), {43016, 43017, 43025, 43028, 43034, 43035, 43036, 43037,
                                      43053, 43054, 43056, 43061, 43063, 43069, 43070, 43079,
                                      43080, 43081, 43082, 43083, 43088, 43089, 43090, 43093,
                                      43102, 43103, 43104, 43237})},
      {21, join(range(43008, 43015), {43018, 43019, 43022, 43023, 43030, 43045, 43046, 43048,
                                      43057, 43059, 43072, 43074, 43075, 43077, 43078, 43085,
                                      43109, 43110, 43112})},
      {29, {43040}},
      {30, {43007, 43020, 43027, 43039, 43091, 43092}},
      {31, {43024}},
      {32, {43021, 43029, 43129}},
      {39, {43062}},
      {40, {43052, 43055, 43060}},
  };
  size_t total = 0;
  for (const Row &row : rows) {
    for (int32_t code : row.codes) EXPECT_EQ(ko_proj_class(code), row.klass) << code;
    total += row.codes.size();
  }
  EXPECT_EQ(total, 106u);
  EXPECT_EQ(ko_proj_class(0), 0);
  EXPECT_EQ(ko_proj_class(43100), 0);
}

TEST(ProjClass, TablesOfClassesAndProperties) {
  const char *class_names[] = {"azimuthal",   "modified-azimuthal", "cylindric",
                               "pseudocylindric", "modified-cylindric", "conic",
                               "pseudoconic", "polyconic", "modified-conic", "faced"};
  const uint32_t class_values[] = {10, 19, 20, 21, 29, 30, 31, 32, 39, 40};
  for (int i = 0; i < 10; ++i) {
    EXPECT_EQ(ko_proj_class_tbl[i].value, class_values[i]);
    EXPECT_STREQ(ko_proj_class_tbl[i].short_name, class_names[i]);
    EXPECT_EQ(std::strncmp(ko_proj_class_tbl[i].macro, "KO_PROJ_CLASS_", 14), 0);
  }
  EXPECT_EQ(ko_proj_class_tbl[10].value, 0u);
  EXPECT_EQ(ko_proj_class_tbl[10].macro, nullptr);
  EXPECT_STREQ(ko_proj_class_tbl[0].macro, "KO_PROJ_CLASS_AZIMUTHAL");

  const char *prop_names[] = {"none", "conformal", "eq-area", "eq-dist-1p", "eq-dist-2p",
                              "eq-dist-merid", "eq-dist-parallel", "eq-dist-other",
                              "true-dir-center", "true-dir-loxodromes", "straight-loxodromes",
                              "straight-loxodromes-center", "straight-great-circles",
                              "straight-great-elliptics", "interrupted", "not-entire-world",
                              "entire-world", "world-aphylactic", "perspective"};
  for (int i = 0; i < 19; ++i) {
    EXPECT_EQ(ko_proj_props_tbl[i].value, 1u << i);
    EXPECT_STREQ(ko_proj_props_tbl[i].short_name, prop_names[i]);
  }
  EXPECT_STREQ(ko_proj_props_tbl[14].macro, "KO_PROJ_PROPERTY_INTERRUPTED");
  EXPECT_EQ(ko_proj_props_tbl[19].value, 0u);
}

TEST(ProjProps, ConsistentForEveryProjection) {
  for (const Listed &p : kListed) {
    uint32_t props = ko_proj_props(p.code);
    bool whole = props & KO_PROJ_PROPERTY_ENTIRE_WORLD;
    bool part = props & KO_PROJ_PROPERTY_NOT_ENTIRE_WORLD;
    EXPECT_NE(whole, part) << p.name << ": exactly one of entire / not entire world";
    // No map is both conformal and equal-area (Gauss's theorem).
    EXPECT_FALSE((props & KO_PROJ_PROPERTY_CONFORMAL) && (props & KO_PROJ_PROPERTY_EQ_AREA))
        << p.name;
    // Only bits of the table.
    EXPECT_EQ(props & ~((1u << 19) - 1), 0u) << p.name;
  }
  EXPECT_EQ(ko_proj_props(43100), 0u);
}

TEST(ProjProps, AgreeWithTheLiterature) {
  // Snyder (1987): the defining property of well-known projections.
  struct Case {
    int32_t code;
    uint32_t must_have;
  } const cases[] = {
      {43004, KO_PROJ_PROPERTY_CONFORMAL | KO_PROJ_PROPERTY_STRAIGHT_LOXODROMES},  // Mercator
      {43020, KO_PROJ_PROPERTY_CONFORMAL},                                         // LCC
      {43026, KO_PROJ_PROPERTY_CONFORMAL | KO_PROJ_PROPERTY_PERSPECTIVE},          // Stereographic
      {43007, KO_PROJ_PROPERTY_EQ_AREA},                                           // Albers
      {43009, KO_PROJ_PROPERTY_EQ_AREA},                                           // Mollweide
      {43033, KO_PROJ_PROPERTY_EQ_AREA | KO_PROJ_PROPERTY_TRUE_DIRECTION_CENTER},  // LAEA
      {43032, KO_PROJ_PROPERTY_EQ_DIST_ONE_PT},                                    // Az. equidistant
      {43031, KO_PROJ_PROPERTY_EQ_DIST_TWO_PT},                                    // Two-point eq.
      {43047, KO_PROJ_PROPERTY_STRAIGHT_GREAT_CIRCLES},                            // Gnomonic
      {43041, KO_PROJ_PROPERTY_PERSPECTIVE},                                       // Orthographic
      {43059, KO_PROJ_PROPERTY_EQ_AREA | KO_PROJ_PROPERTY_INTERRUPTED},            // Goode
      {43030, KO_PROJ_PROPERTY_WORLD_APHYLACTIC},                                  // Robinson
      {43008, KO_PROJ_PROPERTY_EQ_AREA | KO_PROJ_PROPERTY_EQ_DIST_PARALLEL},       // Sinusoidal
      {43023, KO_PROJ_PROPERTY_STRAIGHT_LOXODROMES_CENTER},                        // Loximuthal
  };
  for (const Case &c : cases) {
    EXPECT_EQ(ko_proj_props(c.code) & c.must_have, c.must_have) << c.code;
  }
  EXPECT_EQ(ko_proj_props(43030) & (KO_PROJ_PROPERTY_CONFORMAL | KO_PROJ_PROPERTY_EQ_AREA), 0u);
}

// ---------------------------------------------------------------------------
// Validity

struct Report {
  int severity, category, number;
  std::string source, message;
};

void collect(void *userdata, const ko_err *e) {
  static_cast<std::vector<Report> *>(userdata)->push_back(
      {e->severity, e->category, e->number, e->source, e->message});
}

// Captures every report made while it lives.
struct ReportLog {
  std::vector<Report> reports;
  ReportLog() { ko_msg_setrtn(&reports, 0xff, 0xff, collect); }
  ~ReportLog() { ko_msg_setrtn(nullptr, 0, 0, nullptr); }
};

// 24 parameter slots; `present` lists the parameter codes to fill.
struct ParmSet {
  ko_parameter *slots[KO_PARM_COUNT] = {};
  explicit ParmSet(std::initializer_list<int32_t> present) {
    for (int32_t code : present) {
      int slot = ko_parmlist_index_from_code(code);
      slots[slot] = ko_parmlist_parameter_from_code(code, nullptr);
    }
  }
  ~ParmSet() {
    for (ko_parameter *p : slots) ko_parameter_del(p);
  }
};

TEST(ProjValid, EverySetOfAllParametersIsValid) {
  // With every slot filled by some parameter, no projection reports.
  for (const Listed &p : kListed) {
    if (kTransverseMercatorFamily.count(p.code)) continue;
    ko_parameter *slots[KO_PARM_COUNT];
    for (auto &s : slots) s = ko_parmlist_parameter_from_code(100001, nullptr);
    ko_err err{};  // the check adds to a record; it does not clear it
    EXPECT_EQ(ko_projection_valid(slots, "full", p.code, &err), 1) << p.name;
    EXPECT_EQ(err.severity, KO_SEV_NONE) << p.name;
    for (auto &s : slots) ko_parameter_del(s);
  }
}

TEST(ProjValid, MissingParametersAreReportedByName) {
  struct Case {
    int32_t code;
    std::initializer_list<int32_t> present;
    int valid;
    std::vector<std::pair<int, std::string>> reports;  // severity, parameter name
  } const cases[] = {
      // Lambert_Conformal_Conic_2SP: both standard parallels are required.
      {43092, {100001, 100002, 100010, 100025, 100026, 100021}, 1, {}},
      {43092, {100010, 100026}, 0,
       {{2, "False_Easting"}, {2, "False_Northing"}, {4, "Standard_Parallel_1"},
        {2, "Latitude_Of_Origin"}}},
      // Lambert_Conformal_Conic: one parallel is enough (the parmfunc fills in).
      {43020, {100010, 100025}, 1,
       {{2, "False_Easting"}, {2, "False_Northing"}, {2, "Standard_Parallel_2"},
        {2, "Scale_Factor"}, {2, "Latitude_Of_Origin"}}},
      // Hotine azimuth form: the azimuth and the centre are required.
      {43036, {100001, 100002, 100003, 100012, 100022}, 0, {{4, "Azimuth"}}},
      // A world map needs only its central meridian.
      {43030, {100001, 100002}, 0, {{4, "Central_Meridian"}}},
      {43085, {100010}, 1, {{2, "False_Easting"}, {2, "False_Northing"}}},
      // Krovak: only the centre has no standard value.
      {43039, {100001, 100002, 100012, 100022}, 1,
       {{2, "Pseudo_Standard_Parallel_1"}, {2, "Scale_Factor"}, {2, "Azimuth"},
        {2, "X_Scale"}, {2, "Y_Scale"}, {2, "XY_Plane_Rotation"}}},
      // Two-point equidistant: both points.
      {43031, {100001, 100002, 100023, 100013}, 0,
       {{4, "Latitude_Of_2nd_Point"}, {4, "Longitude_Of_2nd_Point"}}},
  };
  for (const Case &c : cases) {
    ParmSet set(c.present);
    ReportLog log;
    ko_err err{};
    ko_err_clear(&err);
    EXPECT_EQ(ko_projection_valid(set.slots, "my conversion", c.code, &err), c.valid) << c.code;
    ASSERT_EQ(log.reports.size(), c.reports.size()) << c.code;
    for (size_t i = 0; i < c.reports.size(); ++i) {
      const Report &r = log.reports[i];
      EXPECT_EQ(r.number, 347);
      EXPECT_EQ(r.category, KO_ERRCAT_ARGUMENT);
      EXPECT_EQ(r.severity, c.reports[i].first) << c.code << " " << c.reports[i].second;
      EXPECT_EQ(r.message, c.reports[i].second) << c.code;
      EXPECT_EQ(r.source, "my conversion");
    }
    // The record keeps the most severe report.
    int worst = 0;
    for (auto &r : c.reports) worst = std::max(worst, r.first);
    EXPECT_EQ(err.severity, worst) << c.code;
  }
}

TEST(ProjValid, ArgumentsOfTheCheck) {
  ko_err err{};
  EXPECT_EQ(ko_projection_valid(nullptr, "x", 43001, &err), 0);
  EXPECT_EQ(err.number, 330);
  EXPECT_EQ(err.severity, KO_SEV_ERROR);
  ko_parameter *empty[KO_PARM_COUNT] = {};
  ko_err_clear(&err);
  EXPECT_EQ(ko_projection_valid(empty, "x", 0, &err), 1);
  EXPECT_EQ(ko_projection_valid(empty, "x", -5, &err), 1);
  EXPECT_EQ(err.severity, KO_SEV_NONE);
  EXPECT_EQ(ko_projection_valid(empty, "x", 43100, &err), 0);
  EXPECT_EQ(err.number, 349);
  EXPECT_STREQ(err.message, "x");
}

// ---------------------------------------------------------------------------
// Compare and parameter functions

TEST(ProjFunctions, ConicCompareAcceptsSwappedParallels) {
  const double sph[2] = {6378137, 0.0067};
  double a[KO_PARM_COUNT] = {}, b[KO_PARM_COUNT] = {};
  a[2] = b[2] = 0.1;
  a[3] = b[4] = 0.5;
  a[4] = b[3] = 0.8;
  auto compare = ko_prj_albers_vector.compfunc;
  EXPECT_EQ(compare(sph, a, b), 1);
  b[4] = 0.6;
  EXPECT_EQ(compare(sph, a, b), 0);
  b[4] = 0.5;
  b[0] = 1000;  // a different false easting
  EXPECT_EQ(compare(sph, a, b), 0);
  EXPECT_EQ(compare(sph, a, nullptr), 0);

  // A filled parameter array always carries a scale factor (slot 5).
  auto mercator = ko_prj_mercator_auxs_vector.compfunc;
  double m1[KO_PARM_COUNT] = {}, m2[KO_PARM_COUNT] = {};
  m1[5] = m2[5] = 1.0;
  m1[3] = 0.3;
  m2[3] = -0.3;
  EXPECT_EQ(mercator(sph, m1, m2), 1);
  m2[3] = 0.31;
  EXPECT_EQ(mercator(sph, m1, m2), 0);
}

TEST(ProjFunctions, LambertParmfuncMakesTheOneParallelForm) {
  ParmSet set({100010, 100021, 100003});
  double out[KO_PARM_COUNT] = {};
  out[6] = 0.7;
  EXPECT_EQ(ko_prj_lambert_conformal_conic_vector.parmfunc(set.slots, out), 1);
  EXPECT_EQ(out[3], 0.7);
  EXPECT_EQ(out[4], 0.7);
  // A given standard parallel is left alone.
  ParmSet two({100010, 100021, 100025});
  double out2[KO_PARM_COUNT] = {};
  out2[3] = 0.5;
  out2[6] = 0.7;
  ko_prj_lambert_conformal_conic_2sp_vector.parmfunc(two.slots, out2);
  EXPECT_EQ(out2[3], 0.5);
}

TEST(ProjFunctions, KrovakParmfuncFillsTheMethodConstants) {
  ParmSet set({100012, 100022});
  double out[KO_PARM_COUNT] = {};
  EXPECT_EQ(ko_prj_krovak_vector.parmfunc(set.slots, out), 1);
  const double deg = 0.017453292519943295;
  EXPECT_DOUBLE_EQ(out[3], 78.5 * deg);
  EXPECT_DOUBLE_EQ(out[7], 30.28813975277778 * deg);  // 30°17'17.30311"
  EXPECT_EQ(out[5], 0.9999);
  EXPECT_EQ(out[12], 1.0);
  EXPECT_EQ(out[13], 1.0);
  EXPECT_EQ(ko_prj_krovak_vector.parmfunc(set.slots, nullptr), 0);
}

// ---------------------------------------------------------------------------
// The projection object

TEST(ProjectionObject, FromCodeAndName) {
  ko_err err{};
  ko_projection *p = ko_projlist_projection_from_code(43092, &err);
  ASSERT_NE(p, nullptr);
  EXPECT_TRUE(ko_projection_p(p));
  EXPECT_EQ(ko_object_type(p), KO_TYPE_PROJECTION);
  EXPECT_EQ(ko_object_status(p), KO_STATUS_CODE);
  EXPECT_EQ(ko_projection_code(p), 43092);
  char buf[80];
  EXPECT_STREQ(ko_projection_name(p, buf), "Lambert_Conformal_Conic_2SP");
  EXPECT_EQ(ko_projection_forward(p), ko_prj_lambert_conformal_conic_2sp_vector.forward);
  EXPECT_EQ(ko_projection_inverse(p), ko_prj_lambert_conformal_conic_2sp_vector.inverse);
  EXPECT_EQ(ko_projection_constfunc(p), ko_prj_lambert_conformal_conic_2sp_vector.constfunc);
  EXPECT_EQ(ko_projlist_get_validfunc(p), ko_prj_lambert_conformal_conic_2sp_vector.validfunc);
  EXPECT_EQ(ko_projlist_get_compfunc(p), ko_prj_lambert_conformal_conic_2sp_vector.compfunc);
  EXPECT_EQ(ko_projlist_get_parmfunc(p), ko_prj_lambert_conformal_conic_2sp_vector.parmfunc);
  EXPECT_EQ(ko_projlist_get_forward(p), ko_prj_lambert_conformal_conic_2sp_vector.forward);

  ko_projection *q = ko_projlist_projection_from_name("lambert_conformal_conic_2sp", &err);
  ASSERT_NE(q, nullptr);
  EXPECT_EQ(ko_object_status(q), KO_STATUS_STRING);
  EXPECT_TRUE(ko_projection_eq(p, q));
  EXPECT_EQ(ko_projection_del(p), nullptr);
  EXPECT_EQ(ko_projection_del(q), nullptr);
}

TEST(ProjectionObject, UnknownCodeOrName) {
  ko_err err{};
  EXPECT_EQ(ko_projlist_projection_from_code(43100, &err), nullptr);
  EXPECT_EQ(err.number, 217);
  EXPECT_EQ(err.severity, KO_SEV_ERROR);
  EXPECT_EQ(err.category, KO_ERRCAT_OBJECT);
  EXPECT_STREQ(err.message, "ko_projlist_projection_from_code");
  EXPECT_EQ(ko_projlist_projection_from_name("Nowhere", &err), nullptr);
  EXPECT_EQ(err.number, 309);
  EXPECT_EQ(err.category, KO_ERRCAT_ARGUMENT);
  EXPECT_STREQ(err.message, "ko_projlist_projection_from_name");
  EXPECT_EQ(ko_projlist_projection_from_name(nullptr, nullptr), nullptr);
}

TEST(ProjectionObject, GaussKrugerEqualsTransverseMercator) {
  ko_projection *gk = ko_projlist_projection_from_code(43005, nullptr);
  ko_projection *tm = ko_projlist_projection_from_code(43006, nullptr);
  ko_projection *lcc = ko_projlist_projection_from_code(43020, nullptr);
  EXPECT_TRUE(ko_projection_eq(gk, tm));
  EXPECT_TRUE(ko_projection_eq(tm, gk));
  EXPECT_TRUE(ko_object_eq(tm, gk));
  EXPECT_FALSE(ko_projection_eq(gk, lcc));
  EXPECT_FALSE(ko_projection_eq(lcc, nullptr));
  ko_projection_del(gk);
  ko_projection_del(tm);
  ko_projection_del(lcc);
}

TEST(ProjectionObject, CloneDeleteAndStalePointers) {
  ko_projection *p = ko_projlist_projection_from_code(43039, nullptr);
  auto *c = static_cast<ko_projection *>(ko_object_clone(p));
  ASSERT_NE(c, nullptr);
  EXPECT_NE(c, p);
  EXPECT_TRUE(ko_projection_eq(p, c));
  EXPECT_EQ(ko_object_status(c), KO_STATUS_CODE);
  EXPECT_EQ(ko_projection_forward(c), ko_projection_forward(p));
  EXPECT_EQ(ko_object_del(c), nullptr);
  ko_projection_del(p);
  EXPECT_EQ(ko_projection_clone(nullptr), nullptr);
  EXPECT_EQ(ko_projection_forward(nullptr), nullptr);
  EXPECT_EQ(ko_projlist_get_forward(nullptr), nullptr);
  EXPECT_FALSE(ko_projection_p(nullptr));
  int not_an_object = 7;
  EXPECT_FALSE(ko_projection_p(&not_an_object));
  EXPECT_EQ(ko_object_vector(KO_TYPE_PROJECTION), &ko_projection_objvec);
}

TEST(ProjectionObject, DefaultsClearTheSlots) {
  ko_projection *p = ko_projlist_projection_from_code(43001, nullptr);
  ko_parameter *kept = ko_parmlist_parameter_from_code(100001, nullptr);
  ko_parameter *slots[KO_PARM_COUNT] = {};
  slots[0] = kept;
  EXPECT_EQ(ko_projection_defaults(p, slots), 0);
  EXPECT_EQ(slots[0], nullptr);
  EXPECT_EQ(ko_projection_defaults(p, nullptr), 0);
  ko_parameter_del(kept);
  ko_projection_del(p);
}

TEST(ProjectionObject, FailedAllocationsLeakNothing) {
  ASSERT_TRUE(ko::test::installed());
  long made = ko::test::sweep_failures([] {
    ko_err err{};
    ko_projection *p = ko_projlist_projection_from_code(43033, &err);
    if (p == nullptr) {
      EXPECT_EQ(err.number, 1);
      return false;
    }
    ko_projection_del(p);
    return true;
  });
  EXPECT_GT(made, 0);
  ko_projection *src = ko_projlist_projection_from_code(43033, nullptr);
  long cloned = ko::test::sweep_failures([src] {
    ko_projection *c = ko_projection_clone(src);
    if (c == nullptr) return false;
    ko_projection_del(c);
    return true;
  });
  EXPECT_GT(cloned, 0);
  ko_projection_del(src);
}

}  // namespace
