// Geographic transformations through the whole point frame, on 1,000,000
// points in degrees, ko against PROJ in the same process:
//  - a seven-parameter Position_Vector transformation (EPSG 1314, OSGB36 to
//    WGS 84): ko_geog_to_geog on a transformation object against PROJ's
//    operation EPSG:1314 from its database (degrees, latitude first);
//  - an NTv2 shift (BETA2007.gsb, DHDN to ETRS89): ko_geog_to_geog against
//    PROJ's hgridshift between degree conversions.
// Each side converts units, loads its cached constants or grid, and runs
// its point loop; bench/bench_transformations.cpp measures the kernels
// alone.  A summary after the runs gives ns per point and PROJ's time over
// ko's.
#include "ko.h"

#include "bench/rival.h"

#include <array>
#include <cstdio>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr int kPoints = 1000000;
const char *const kGrid = "/usr/share/proj/BETA2007.gsb";

// Interleaved (longitude, latitude) in degrees over a box, and the same
// points as separate latitude and longitude arrays for PROJ.
struct Points {
  std::vector<double> lonlat, lat, lon;
};

Points make_points(double west, double south, double east, double north) {
  Points p;
  std::mt19937_64 rng(42);
  std::uniform_real_distribution<double> lon(west, east), lat(south, north);
  for (int i = 0; i < kPoints; ++i) {
    const double x = lon(rng), y = lat(rng);
    p.lonlat.push_back(x);
    p.lonlat.push_back(y);
    p.lon.push_back(x);
    p.lat.push_back(y);
  }
  return p;
}

const Points &uk() {
  static const Points p = make_points(-7.5, 50.0, 1.5, 60.0);
  return p;
}
const Points &germany() {
  static const Points p = make_points(6.0, 47.5, 15.0, 55.0);
  return p;
}

ko_geogcs *gcs(const char *name, double a, double inv_f) {
  return ko_geogcs_new(name, ko_datum_new("Datum", ko_spheroid_new("Spheroid", a, 1.0 / inv_f)),
                       nullptr, ko_angunit_new("Degree", 0.017453292519943295));
}

struct Transformation {
  ko_geogtran *gt = nullptr;
  Transformation(const char *name, ko_geogcs *from, ko_geogcs *to, const char *method,
                 std::initializer_list<std::pair<const char *, double>> parms) {
    ko_parameter *slots[KO_PARM_COUNT] = {};
    for (const auto &[parm, value] : parms)
      slots[ko_parmlist_from_name(parm)->index] = ko_parameter_new(parm, value);
    gt = ko_geogtran_new(name, from, to, ko_method_new(method), slots);
  }
  ~Transformation() { ko_geogtran_del(gt); }
};

void run_ko(benchmark::State &state, ko_geogtran *gt, const Points &points) {
  if (gt == nullptr) {
    state.SkipWithError("ko could not build the transformation");
    return;
  }
  ko::bench::time_on_copies(state, points.lonlat, kPoints, [gt](std::vector<double> &coord) {
    return ko_geog_to_geog(gt, kPoints, coord.data(), nullptr, 0);
  });
}

// first/second: the arrays in the operation's axis order.
void run_proj(benchmark::State &state, PJ *op, const std::vector<double> &first,
              const std::vector<double> &second) {
  if (op == nullptr) {
    state.SkipWithError("PROJ could not build the operation");
    return;
  }
  const std::array<std::vector<double>, 2> input{first, second};
  ko::bench::time_on_copies(state, input, kPoints, [op](std::array<std::vector<double>, 2> &c) {
    return ko::bench::proj_run(op, PJ_FWD, c[0], c[1]);
  });
}

void BM_ko_position_vector(benchmark::State &state) {
  Transformation t("OSGB36 to WGS 84 (6)", gcs("GCS_OSGB_1936", 6377563.396, 299.3249646),
                   gcs("GCS_WGS_1984", 6378137.0, 298.257223563), "Position_Vector",
                   {{"X_Axis_Translation", 446.448},
                    {"Y_Axis_Translation", -125.157},
                    {"Z_Axis_Translation", 542.06},
                    {"X_Axis_Rotation", 0.15},
                    {"Y_Axis_Rotation", 0.247},
                    {"Z_Axis_Rotation", 0.842},
                    {"Scale_Difference", -20.489}});
  run_ko(state, t.gt, uk());
}

void BM_proj_position_vector(benchmark::State &state) {
  const ko::bench::ProjContextPtr ctx = ko::bench::proj_quiet_context();
  const ko::bench::ProjPtr op(proj_create_from_database(
      ctx.get(), "EPSG", "1314", PJ_CATEGORY_COORDINATE_OPERATION, 0, nullptr));
  run_proj(state, op.get(), uk().lat, uk().lon);
}

void BM_ko_ntv2(benchmark::State &state) {
  Transformation t("DHDN to ETRS89 (8)", gcs("GCS_Deutsches_Hauptdreiecksnetz", 6377397.155,
                                             299.1528128),
                   gcs("GCS_ETRS_1989", 6378137.0, 298.257222101), "NTv2",
                   {{(std::string("Dataset_") + kGrid).c_str(), 0.0}});
  run_ko(state, t.gt, germany());
}

void BM_proj_ntv2(benchmark::State &state) {
  const ko::bench::ProjContextPtr ctx = ko::bench::proj_quiet_context();
  const std::string def = std::string(
                              "+proj=pipeline +step +proj=unitconvert +xy_in=deg +xy_out=rad "
                              "+step +proj=hgridshift +grids=") +
                          kGrid + " +step +proj=unitconvert +xy_in=rad +xy_out=deg";
  const ko::bench::ProjPtr op(proj_create(ctx.get(), def.c_str()));
  run_proj(state, op.get(), germany().lon, germany().lat);
}

BENCHMARK(BM_ko_position_vector)->Unit(benchmark::kMillisecond)->MinTime(2.0);
BENCHMARK(BM_proj_position_vector)->Unit(benchmark::kMillisecond)->MinTime(2.0);
BENCHMARK(BM_ko_ntv2)->Unit(benchmark::kMillisecond)->MinTime(2.0);
BENCHMARK(BM_proj_ntv2)->Unit(benchmark::kMillisecond)->MinTime(2.0);

}  // namespace

int main(int argc, char **argv) {
  benchmark::Initialize(&argc, argv);
  ko::bench::SummaryReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  std::printf("\n");
  ko::bench::print_ratio(reporter, "Position_Vector", "BM_ko_position_vector", "BM_proj_position_vector");
  ko::bench::print_ratio(reporter, "NTv2", "BM_ko_ntv2", "BM_proj_ntv2");
  benchmark::Shutdown();
  return 0;
}
