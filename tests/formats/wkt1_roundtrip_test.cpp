// Round trips: every object the library can build is written, read back
// into an equal object, and written again into the same text, byte for
// byte: objects made by the constructors (catalog_objects.h builds the
// catalogue's records with them) and every object of the factory.
#include "ko.h"
#include "formats/round_trip.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <string>

namespace {

using ko::test::Obj;
using ko::test::read_text;
using ko::test::round_trip;
using ko::test::write_text;
using ko::test::round_trip_catalog;

TEST(Wkt1RoundTrip, UnitTables) {
  struct Table {
    const ko_unit_entry *rows;
    void *(*make)(int32_t);
  } const tables[] = {
      {ko_linunit_tbl, [](int32_t c) -> void * { return ko_linunit_new_code(c); }},
      {ko_angunit_tbl, [](int32_t c) -> void * { return ko_angunit_new_code(c); }},
      {ko_scaleunit_tbl, [](int32_t c) -> void * { return ko_scaleunit_new_code(c); }},
      {ko_areaunit_tbl, [](int32_t c) -> void * { return ko_areaunit_new_code(c); }},
  };
  for (const Table &t : tables) {
    for (const ko_unit_entry *row = t.rows; row->code != 0; ++row) {
      Obj unit(t.make(row->code));
      ASSERT_NE(unit, nullptr) << row->name;
      EXPECT_TRUE(round_trip(unit.get())) << row->name;
      EXPECT_TRUE(round_trip(unit.get(), KO_STR_UNIT_NAMES | KO_STR_FULL_PRECISION)) << row->name;
      // A unit read back without its type keeps its kind.
      auto untyped = read_text(write_text(unit.get()));
      ASSERT_NE(untyped.obj, nullptr) << row->name;
      EXPECT_EQ(ko_object_type(untyped.obj.get()), ko_object_type(unit.get())) << row->name;
    }
  }
}

TEST(Wkt1RoundTrip, CatalogueGeodeticObjects) {
  round_trip_catalog(KO_TYPE_SPHEROID, [](int32_t c) -> void * { return ko::test::spheroid_from_catalog(c); });
  round_trip_catalog(KO_TYPE_PRIMEM, [](int32_t c) -> void * { return ko::test::primem_from_catalog(c); });
  round_trip_catalog(KO_TYPE_DATUM, [](int32_t c) -> void * { return ko::test::datum_from_catalog(c); });
}

TEST(Wkt1RoundTrip, CatalogueGeographicSystemsWithEveryOption) {
  auto make = [](int32_t c) -> void * { return ko::test::geogcs_from_catalog(c); };
  round_trip_catalog(KO_TYPE_GEOGCS, make);
  round_trip_catalog(KO_TYPE_GEOGCS, make, KO_STR_CANONICAL_NAMES | KO_STR_UNIT_NAMES);
  round_trip_catalog(KO_TYPE_GEOGCS, make, 0, "EPSG");
  round_trip_catalog(KO_TYPE_GEOGCS, make, 0, "PostGIS");
}

// True when a name in the text holds a double quote: the writers put names
// between quotes as they are, so such a text does not read back (names of
// the catalogue's areas of use have them: 15°51'30"N).
bool has_quote_in_name(const std::string &text) {
  for (std::size_t i = 1; i + 1 < text.size(); ++i)
    if (text[i] == '"' && text[i - 1] != '[' && text[i - 1] != ',' && text[i + 1] != ',' && text[i + 1] != ']')
      return true;
  return false;
}

// True when the text is beyond what the reader takes: 4095 characters or
// 256 tokens (every level's AUTHORITY and DISPNAME make long texts).
bool beyond_reader_limits(const std::string &text) {
  auto list = std::make_unique<ko_wkt_tokens>();
  int result = ko_wkt_str_to_tokens(list.get(), text.c_str(), nullptr, nullptr);
  return result == 467 || result == 468;
}

// Every object the factory builds, of every type with a WKT1 form, written
// plainly and with the header fields (authorities with their versions,
// display names; areas of use are METADATA in both).
TEST(Wkt1RoundTrip, EveryFactoryObject) {
  const uint32_t types[] = {KO_TYPE_LINUNIT,  KO_TYPE_ANGUNIT,   KO_TYPE_SCALEUNIT, KO_TYPE_AREAUNIT,
                            KO_TYPE_SPHEROID, KO_TYPE_PRIMEM,    KO_TYPE_DATUM,     KO_TYPE_VDATUM,
                            KO_TYPE_GEOGCS,   KO_TYPE_PROJCS,    KO_TYPE_VERTCS,    KO_TYPE_GXYZCS,
                            KO_TYPE_HVCOORDSYS, KO_TYPE_GEOGTRAN, KO_TYPE_VERTTRAN, KO_TYPE_PROJECTION,
                            KO_TYPE_PARAMETER, KO_TYPE_METHOD,   KO_TYPE_VTMETHOD,  KO_TYPE_HTMETHOD};
  const uint32_t header_fields = KO_STR_AUTH_ALL | KO_STR_AUTH_VERSION | KO_STR_DISP_ALL;
  int quoted = 0;
  int too_long = 0;
  int tried = 0;
  for (uint32_t type : types) {
    SCOPED_TRACE(ko_type_to_name(type));
    const int count = ko_factory_count(type);
    ASSERT_GT(count, 0);
    int built = 0;
    int failed = 0;
    for (int i = 0; i < count && failed < 5; ++i) {
      const int32_t code = ko_factory_code_at(type, i);
      Obj obj(ko_factory_object_from_code(type, code, nullptr));
      if (obj == nullptr) continue;  // records marked do-not-use are not built
      ++built;
      std::string plain = write_text(obj.get());
      if (has_quote_in_name(plain)) {
        ++quoted;
        continue;
      }
      bool ok = round_trip(obj.get());
      ++tried;
      if (beyond_reader_limits(write_text(obj.get(), header_fields)))
        ++too_long;
      else
        ok = round_trip(obj.get(), header_fields) && ok;
      if (!ok) {
        ADD_FAILURE() << "code " << code;
        ++failed;
      }
    }
    EXPECT_GE(built * 10, count * 9);
  }
  // Those two kinds stay exceptions.
  EXPECT_LT(quoted * 100, tried);
  EXPECT_LT(too_long * 20, tried);
  std::printf("factory round trips: %d objects, %d left out for a quote in a name, %d with header fields "
              "beyond the reader's limits\n",
              tried, quoted, too_long);
}

TEST(Wkt1RoundTrip, ThreeDimensionalGeographicSystem) {
  ko_geogcs *g2 = ko::test::geogcs_from_catalog(4326);
  ASSERT_NE(g2, nullptr);
  ko_axis *axes[3] = {};
  ko_linunit *foot = ko_linunit_new_code(9002);
  ASSERT_EQ(ko_axis_fill(axes, 3, KO_AXIS_KIND_GEOGRAPHIC, reinterpret_cast<ko_unit *>(ko_geogcs_unit(g2)),
                         reinterpret_cast<ko_unit *>(foot)),
            1);
  ko_linunit_del(foot);
  Obj g3(ko_geogcs_ext_new("GCS_WGS_1984_3D", ko_datum_clone(ko_geogcs_datum(g2)),
                           ko_primem_clone(ko_geogcs_primem(g2)), 3, axes, nullptr, nullptr, nullptr));
  ko_geogcs_del(g2);
  ASSERT_NE(g3, nullptr);
  EXPECT_TRUE(round_trip(g3.get()));
  EXPECT_NE(write_text(g3.get()).find(R"(LINUNIT["Foot",0.3048])"), std::string::npos);
}

TEST(Wkt1RoundTrip, ParametersProjectionsAndSmallNodes) {
  for (int i = 0; i < ko_parmlist_tbl_cnt; ++i) {
    const ko_parmlist_entry &row = ko_parmlist_tbl[i];
    Obj p(ko_parameter_new(row.name, row.dflt + 0.125 * i));
    ASSERT_NE(p, nullptr) << row.name;
    EXPECT_TRUE(round_trip(p.get())) << row.name;
  }
  for (int i = 0; i < ko_projlist_count(); ++i) {
    Obj p(ko_projlist_projection_from_code(ko_projlist_from_indx(i)->code, nullptr));
    ASSERT_NE(p, nullptr) << i;
    EXPECT_TRUE(round_trip(p.get())) << ko_projlist_from_indx(i)->name;
  }
  ko_gcs_extent box{170.25, -55.5, -170.75, -30.0, 0.5, 0.25};
  Obj md(ko_metadata_new("Across the antimeridian", &box, 4242));
  ko_object_dispname_set(md.get(), ko_dispname_new("Pacific \xE2\x80\x94 south"));
  ko_object_authority_set(md.get(), ko_authority_new("EPSG", 3852, "10.0"));
  EXPECT_TRUE(round_trip(md.get(), KO_STR_AUTH_ALL | KO_STR_DISP_ALL | KO_STR_AUTH_VERSION));
  Obj a(ko_authority_new("Velor", 37001, "1.2"));
  EXPECT_TRUE(round_trip(a.get(), KO_STR_AUTH_VERSION));
  Obj d(ko_dispname_new("Grad \xC3\xA0 la fran\xC3\xA7" "aise"));
  EXPECT_TRUE(round_trip(d.get()));
}

}  // namespace
