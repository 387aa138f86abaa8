// The compiled-in unit tables: well-known units with their codes and factors
// to the base unit.  Codes below 100000 are EPSG unit-of-measure codes; the
// 109xxx codes are the library's own.  Each table is searched linearly in
// this order and ends with a row of code 0.
#include "objects/units.h"

extern "C" {

// Factors in metres.  Several are exact ratios rounded once to double
// (the US survey foot is 1200/3937 m, the US survey mile 5280 of those
// feet); the historical feet, yards, chains and links follow the unit
// definitions of IOGP guidance note 7-2.  "Yard", "Chain", "Link",
// "Centimeter" and "Millimeter" appear twice: under their EPSG codes and
// again under the library's own codes 1090xx; lookups by name find the
// EPSG row first.
const ko_unit_entry ko_linunit_tbl[] = {
    {109031, "150_Kilometers", 150000.0},
    {109030, "50_Kilometers", 50000.0},
    {1033, "Centimeter", 0.01},
    {9097, "Chain", 20.1168},
    {9052, "Chain_Benoit_1895_A", 20.1167824},
    {9062, "Chain_Benoit_1895_B", 20.116782494375872},
    {9038, "Chain_Clarke", 20.1166195164},
    {9042, "Chain_Sears", 20.116765121552632},
    {9301, "Chain_Sears_1922_Truncated", 20.116756},
    {9033, "Chain_US", 20.11684023368047},
    {109005, "Decimeter", 0.1},
    {9014, "Fathom", 1.8288},
    {9002, "Foot", 0.3048},
    {9070, "Foot_1865", 0.30480083333333335},
    {9051, "Foot_Benoit_1895_A", 0.3047997333333333},
    {9061, "Foot_Benoit_1895_B", 0.30479973476327077},
    {9095, "Foot_British_1936", 0.3048007491},
    {9005, "Foot_Clarke", 0.3047972654},
    {9094, "Foot_Gold_Coast", 0.3047997101815088},
    {9080, "Foot_Indian", 0.30479951024814694},
    {9081, "Foot_Indian_1937", 0.30479841},
    {9082, "Foot_Indian_1962", 0.3047996},
    {9083, "Foot_Indian_1975", 0.3047995},
    {9041, "Foot_Sears", 0.3047994715386762},
    {9300, "Foot_Sears_1922_Truncated", 0.30479933333333337},
    {9003, "Foot_US", 0.30480060960121924},
    {109008, "Inch", 0.0254},
    {109009, "Inch_US", 0.025400050800101603},
    {9036, "Kilometer", 1000.0},
    {9098, "Link", 0.201168},
    {9053, "Link_Benoit_1895_A", 0.201167824},
    {9063, "Link_Benoit_1895_B", 0.2011678249437587},
    {9039, "Link_Clarke", 0.201166195164},
    {9043, "Link_Sears", 0.2011676512155263},
    {9302, "Link_Sears_1922_Truncated", 0.20116756},
    {9034, "Link_US", 0.2011684023368047},
    {9001, "Meter", 1.0},
    {9031, "Meter_German", 1.0000135965},
    {109017, "Micrometer", 1e-06},
    {9035, "Mile_US", 1609.3472186944375},
    {1025, "Millimeter", 0.001},
    {109018, "Nanometer", 1e-09},
    {9030, "Nautical_Mile", 1852.0},
    {109013, "Nautical_Mile_UK", 1853.184},
    {109012, "Nautical_Mile_US", 1853.248},
    {109016, "Point", 0.00035277777777777776},
    {109010, "Rod", 5.0292},
    {109011, "Rod_US", 5.029210058420118},
    {109014, "Smoot", 1.7018},
    {9093, "Statute_Mile", 1609.344},
    {109015, "Vara_TX", 0.8466683600033867},
    {9096, "Yard", 0.9144},
    {9050, "Yard_Benoit_1895_A", 0.9143992},
    {9060, "Yard_Benoit_1895_B", 0.9143992042898124},
    {9037, "Yard_Clarke", 0.9143917962},
    {9084, "Yard_Indian", 0.9143985307444408},
    {9085, "Yard_Indian_1937", 0.91439523},
    {9086, "Yard_Indian_1962", 0.9143988},
    {9087, "Yard_Indian_1975", 0.9143985},
    {9040, "Yard_Sears", 0.9143984146160287},
    {9099, "Yard_Sears_1922_Truncated", 0.914398},
    {109002, "Yard_US", 0.9144018288036576},
    {109001, "Yard", 0.9144},
    {109003, "Chain", 20.1168},
    {109004, "Link", 0.201168},
    {109006, "Centimeter", 0.01},
    {109007, "Millimeter", 0.001},
    {0, nullptr, 0.0},
};

// Factors in radians.
const ko_unit_entry ko_angunit_tbl[] = {
    {9103, "Arcminute", 0.0002908882086657216},
    {9104, "Arcsecond", 4.84813681109536e-06},
    {9102, "Degree", 0.017453292519943295},
    {9106, "Gon", 0.015707963267948967},
    {9105, "Grad", 0.015707963267948967},
    {9109, "Microradian", 1e-06},
    {9114, "Mil_6400", 0.0009817477042468104},
    {1031, "Milliarcsecond", 4.84813681109536e-09},
    {9112, "Minute_Centesimal", 0.00015707963267948965},
    {9101, "Radian", 1.0},
    {9113, "Second_Centesimal", 1.5707963267948967e-06},
    {0, nullptr, 0.0},
};

// Factors in square metres: the squares of the linear units, with acre,
// are and hectare.
const ko_unit_entry ko_areaunit_tbl[] = {
    {109402, "Acre", 4046.8564224},
    {109403, "Acre_US", 4046.872609874252},
    {109463, "Are", 100.0},
    {109401, "Hectare", 10000.0},
    {109461, "Square_150_Kilometers", 22500000000.0},
    {109460, "Square_50_Kilometers", 2500000000.0},
    {109451, "Square_Centimeter", 0.0001},
    {109444, "Square_Chain", 404.68564224000005},
    {109424, "Square_Chain_Benoit_1895_A", 404.6849341289498},
    {109428, "Square_Chain_Benoit_1895_B", 404.68493792602754},
    {109416, "Square_Chain_Clarke", 404.67838076760535},
    {109420, "Square_Chain_Sears", 404.68423895571647},
    {109448, "Square_Chain_Sears_1922_Truncated", 404.683871963536},
    {109411, "Square_Chain_US", 404.6872609874253},
    {109450, "Square_Decimeter", 0.010000000000000002},
    {109408, "Square_Fathom", 3.34450944},
    {109405, "Square_Foot", 0.09290304},
    {109430, "Square_Foot_1865", 0.09290354800069446},
    {109423, "Square_Foot_Benoit_1895_A", 0.0929028774400711},
    {109427, "Square_Foot_Benoit_1895_B", 0.09290287831176021},
    {109441, "Square_Foot_British_1936", 0.09290349665192114},
    {109407, "Square_Foot_Clarke", 0.09290137299531805},
    {109440, "Square_Foot_Gold_Coast", 0.09290286332673177},
    {109431, "Square_Foot_Indian", 0.09290274144751023},
    {109432, "Square_Foot_Indian_1937", 0.09290207073852812},
    {109433, "Square_Foot_Indian_1962", 0.09290279616016},
    {109434, "Square_Foot_Indian_1975", 0.09290273520025},
    {109419, "Square_Foot_Sears", 0.09290271785025629},
    {109447, "Square_Foot_Sears_1922_Truncated", 0.09290263360044447},
    {109406, "Square_Foot_US", 0.09290341161327487},
    {109453, "Square_Inch", 0.00064516},
    {109454, "Square_Inch_US", 0.0006451625806477421},
    {109414, "Square_Kilometer", 1000000.0},
    {109445, "Square_Link", 0.040468564224000005},
    {109425, "Square_Link_Benoit_1895_A", 0.040468493412894976},
    {109429, "Square_Link_Benoit_1895_B", 0.04046849379260275},
    {109417, "Square_Link_Clarke", 0.040467838076760534},
    {109421, "Square_Link_Sears", 0.04046842389557164},
    {109449, "Square_Link_Sears_1922_Truncated", 0.0404683871963536},
    {109412, "Square_Link_US", 0.040468726098742525},
    {109404, "Square_Meter", 1.0},
    {109410, "Square_Meter_German", 1.000027193184865},
    {109465, "Square_Micrometer", 1e-12},
    {109413, "Square_Mile_US", 2589998.4703195216},
    {109452, "Square_Millimeter", 1e-06},
    {109466, "Square_Nanometer", 1e-18},
    {109409, "Square_Nautical_Mile", 3429904.0},
    {109458, "Square_Nautical_Mile_UK", 3434290.937856},
    {109457, "Square_Nautical_Mile_US", 3434528.1495040003},
    {109464, "Square_Point", 1.2445216049382715e-07},
    {109455, "Square_Rod", 25.292852640000003},
    {109456, "Square_Rod_US", 25.29295381171408},
    {109459, "Square_Smoot", 2.89612324},
    {109439, "Square_Statute_Mile", 2589988.110336},
    {109462, "Square_Vara_TX", 0.7168473118308245},
    {109442, "Square_Yard", 0.83612736},
    {109422, "Square_Yard_Benoit_1895_A", 0.83612589696064},
    {109426, "Square_Yard_Benoit_1895_B", 0.836125904805842},
    {109415, "Square_Yard_Clarke", 0.8361123569578626},
    {109435, "Square_Yard_Indian", 0.836124673027592},
    {109436, "Square_Yard_Indian_1937", 0.8361186366467529},
    {109437, "Square_Yard_Indian_1962", 0.8361251654414399},
    {109438, "Square_Yard_Indian_1975", 0.83612461680225},
    {109418, "Square_Yard_Sears", 0.8361244606523066},
    {109446, "Square_Yard_Sears_1922_Truncated", 0.8361237024040001},
    {109443, "Square_Yard_US", 0.8361307045194736},
    {0, nullptr, 0.0},
};

// Dimensionless scale units: the EPSG units of measure of type "scale"
// that express a ratio (9201 unity, 9202 parts per million, 1028 parts per
// billion, 9203 coefficient).  EPSG's other scale-typed units are left out
// on purpose: 1024 "bin" counts grid cells rather than scaling a value, and
// 1030, 1036 and 1041 are rates (ratio per time) that belong with the time
// dependent transformation parameters, not with static scale factors.
const ko_unit_entry ko_scaleunit_tbl[] = {
    {9203, "Coefficient", 1.0},
    {1028, "Parts_Per_Billion", 1e-09},
    {9202, "Parts_Per_Million", 1e-06},
    {9201, "Unity", 1.0},
    {0, nullptr, 0.0},
};

const ko_unit_entry *ko_unit_tbl_from_code(const ko_unit_entry *tbl, int32_t code) {
  if (tbl == nullptr || code == 0) return nullptr;
  for (const ko_unit_entry *row = tbl; row->code != 0; ++row)
    if (row->code == code) return row;
  return nullptr;
}

const ko_unit_entry *ko_unit_tbl_from_name(const ko_unit_entry *tbl, const char *name) {
  if (tbl == nullptr || name == nullptr || *name == '\0') return nullptr;
  for (const ko_unit_entry *row = tbl; row->code != 0; ++row)
    if (ko_strcmp_ci(row->name, name) == 0) return row;
  return nullptr;
}

int ko_unit_tbl_count(const ko_unit_entry *tbl) {
  int count = 0;
  if (tbl != nullptr)
    while (tbl[count].code != 0) ++count;
  return count;
}

}  // extern "C"
