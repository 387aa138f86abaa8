// The factory's methods and geographic transformations, and the search for
// the catalogue's transformations between two geographic systems at a
// point: ranked candidates, and a composite of the best usable one (or of
// two steps through WGS 84 when there is no direct one).
#include "database/factory.h"

#include <array>
#include <cmath>

namespace ko::factory {

namespace {

constexpr int32_t kWgs84 = 4326;
constexpr int32_t kNullMethod = 109600;
constexpr double kUnknownAccuracy = 999.0;
// Candidates built while looking for a usable one (grids present).
constexpr int kCandidatesTried = 32;

constexpr const char *kBestSource = "ko_factory_gtlist_best";

// A transformation record with what ranks it.
struct Ranked {
  const ko_db_geogtran_rec *rec;
  int32_t direction;
  double area;  // square degrees of its area of use
};

bool accuracy_known(double accuracy) {
  return std::isfinite(accuracy) && accuracy > 0.0 && accuracy < kUnknownAccuracy;
}

// Size of a box in square degrees, across the antimeridian when west
// exceeds east.
double box_area(const ko_db_extent_rec &e) {
  double width = e.east >= e.west ? e.east - e.west : e.east - e.west + 360.0;
  return width * (e.north - e.south);
}

const ko_db_extent_rec *area_of(const ko_db_builtin_entry *row, int32_t code) {
  const ko_db_areacode_rec *area = ko_db_builtin_areacode_lookup(row, code);
  return area != nullptr ? extent_record(area->area) : nullptr;
}

// Most accurate first, unknown accuracy last; then the smaller area of use
// (the more specific transformation); then the lower code.
bool ranks_before(const Ranked &a, const Ranked &b) {
  bool ka = accuracy_known(a.rec->accuracy);
  bool kb = accuracy_known(b.rec->accuracy);
  if (ka != kb) return ka;
  if (ka && a.rec->accuracy != b.rec->accuracy) return a.rec->accuracy < b.rec->accuracy;
  if (a.area != b.area) return a.area < b.area;
  return a.rec->code < b.rec->code;
}

// The geographic system a code names now (after code changes), or 0.
int32_t current_geogcs(int32_t code) {
  const ko_db_builtin_entry *row = ko::catalog::row_of(KO_TYPE_GEOGCS);
  if (row == nullptr) return 0;
  code = current_code(row, code);
  return ko_db_builtin_data_lookup_code(row->data, code) != nullptr ? code : 0;
}

// Visits every live transformation between the two systems (either
// direction) whose area of use holds the point; a non-finite point skips
// the area test.
template <class Visit>
void for_each_candidate(int32_t gcs1, int32_t gcs2, double lon, double lat, Visit visit) {
  const ko_db_builtin_entry *row = ko::catalog::row_of(KO_TYPE_GEOGTRAN);
  bool anywhere = !std::isfinite(lon) || !std::isfinite(lat);
  if (!anywhere) lon = std::remainder(lon, 360.0);
  for (const ko_db_geogtran_rec &rec : ko::catalog::records<ko_db_geogtran_rec>(row->data)) {
    int32_t direction;
    if (rec.gcs1 == gcs1 && rec.gcs2 == gcs2)
      direction = 0;
    else if (rec.gcs1 == gcs2 && rec.gcs2 == gcs1)
      direction = 1;
    else
      continue;
    if (ko_db_builtin_deprecated_lookup(row, rec.code) != nullptr) continue;
    const ko_db_extent_rec *area = area_of(row, rec.code);
    if (!anywhere && area != nullptr) {
      ko_gcs_extent box{area->west, area->south, area->east, area->north, 0.0, 0.0};
      if (ko_gcs_extent_contains(&box, lon, lat) == 0) continue;
    }
    visit(Ranked{&rec, direction, area != nullptr ? box_area(*area) : 360.0 * 180.0});
  }
}

// Keeps out[0 .. kept-1] ranked by `less` while items arrive: the new
// item goes to its place when it ranks within the first max.
template <class T, class Less>
void insert_ranked(T *out, int kept, int max, const T &item, Less less) {
  int at = kept;
  while (at > 0 && less(item, out[at - 1])) --at;
  if (at >= max) return;
  for (int i = std::min(kept, max - 1); i > at; --i) out[i] = out[i - 1];
  out[at] = item;
}

// The candidates ranked into out[0 .. max-1] (no memory is taken); returns
// how many there are in all.
template <class T, class Make, class Less>
int rank_candidates(int32_t gcs1, int32_t gcs2, double lon, double lat, T *out, int max,
                    Make make, Less less) {
  int total = 0;
  for_each_candidate(gcs1, gcs2, lon, lat, [&](const Ranked &r) {
    insert_ranked(out, std::min(total, max), max, make(r), less);
    ++total;
  });
  return total;
}

int rank_records(int32_t gcs1, int32_t gcs2, double lon, double lat, Ranked *out, int max) {
  return rank_candidates(gcs1, gcs2, lon, lat, out, max, [](const Ranked &r) { return r; },
                         ranks_before);
}

// A public candidate ranked again from its record.
Ranked ranked_of(const ko_factory_candidate &c) {
  const ko_db_builtin_entry *row = ko::catalog::row_of(KO_TYPE_GEOGTRAN);
  const auto *rec =
      static_cast<const ko_db_geogtran_rec *>(ko_db_builtin_data_lookup_code(row->data, c.code));
  const ko_db_extent_rec *area = area_of(row, c.code);
  return Ranked{rec, c.direction, area != nullptr ? box_area(*area) : 360.0 * 180.0};
}

int rank_public(int32_t gcs1, int32_t gcs2, double lon, double lat, ko_factory_candidate *out,
                int max) {
  return rank_candidates(
      gcs1, gcs2, lon, lat, out, max,
      [](const Ranked &r) {
        return ko_factory_candidate{r.rec->code, r.direction, r.rec->accuracy};
      },
      [](const ko_factory_candidate &a, const ko_factory_candidate &b) {
        return ranks_before(ranked_of(a), ranked_of(b));
      });
}

// The best candidate that builds and whose grid (if any) can be read, as
// a new transformation; null when there is none.
ko_geogtran *best_usable(int32_t gcs1, int32_t gcs2, double lon, double lat, int32_t &direction,
                         Context &ctx) {
  std::array<Ranked, kCandidatesTried> ranked{};
  int n = std::min(rank_records(gcs1, gcs2, lon, lat, ranked.data(), kCandidatesTried),
                   kCandidatesTried);
  for (int i = 0; i < n; ++i) {
    ko::Unique<ko_geogtran> gt(
        build_part_as<ko_geogtran>(KO_TYPE_GEOGTRAN, ranked[static_cast<std::size_t>(i)].rec->code,
                                   ctx));
    if (gt != nullptr && ko_geogtran_usable(gt.get()) != 0) {
      ko_err_clear(ctx.err);
      direction = ranked[static_cast<std::size_t>(i)].direction;
      return gt.release();
    }
  }
  ko_err_clear(ctx.err);
  return nullptr;
}

struct Step {
  ko::Unique<ko_geogtran> gt;
  int32_t direction = 0;
};

// rank: the number of steps; rank_primary: the sum of the steps'
// accuracies in millimetres (999 m for an unknown one); rank_secondary:
// the code of the first step.
ko_gtlist_entry *composite_of(std::span<Step> steps, Context &ctx) {
  ko_gtlist_entry *entry = ko_gtlist_entry_new(static_cast<int32_t>(steps.size()));
  if (entry == nullptr) {
    report_no_memory(ctx, "ko_gtlist_entry");
    return nullptr;
  }
  double accuracy = 0.0;
  for (std::size_t i = 0; i < steps.size(); ++i) {
    double a = ko_geogtran_accuracy(steps[i].gt.get());
    accuracy += accuracy_known(a) ? a : kUnknownAccuracy;
    ko_gtlist_entry_set_step(entry, static_cast<int32_t>(i), steps[i].gt.release(),
                             steps[i].direction);
  }
  entry->rank = static_cast<int32_t>(steps.size());
  entry->rank_primary = std::llround(accuracy * 1000.0);
  entry->rank_secondary = ko_object_code(entry->steps[0].gt);
  return entry;
}

// One system to itself: a transformation by the Null method.
ko_gtlist_entry *identity(int32_t gcs, Context &ctx) {
  ko::Unique<ko_geogcs> g(build_part_as<ko_geogcs>(KO_TYPE_GEOGCS, gcs, ctx));
  if (g == nullptr) return nullptr;
  ko::Unique<ko_method> method(build_part_as<ko_method>(KO_TYPE_METHOD, kNullMethod, ctx));
  if (method == nullptr) return nullptr;
  std::array<ko_parameter *, KO_PARM_COUNT> parms{};
  std::array<Step, 1> steps;
  steps[0].gt.reset(ko_geogtran_new_errext("Null", g.get(), g.get(), method.get(), parms.data(),
                                           ctx.err));
  if (steps[0].gt == nullptr) return nullptr;
  g.release();
  method.release();
  return composite_of(steps, ctx);
}

ko_gtlist_entry *best_path(int32_t gcs1, int32_t gcs2, double lon, double lat, Context &ctx) {
  std::array<Step, 2> steps;
  steps[0].gt.reset(best_usable(gcs1, gcs2, lon, lat, steps[0].direction, ctx));
  if (steps[0].gt != nullptr) return composite_of(std::span(steps.data(), 1), ctx);
  if (gcs1 != kWgs84 && gcs2 != kWgs84) {
    steps[0].gt.reset(best_usable(gcs1, kWgs84, lon, lat, steps[0].direction, ctx));
    steps[1].gt.reset(best_usable(kWgs84, gcs2, lon, lat, steps[1].direction, ctx));
    if (steps[0].gt != nullptr && steps[1].gt != nullptr) return composite_of(steps, ctx);
  }
  ko_err_fmt(ctx.err, KO_SEV_ERROR, KO_ERRCAT_OBJECT, 225, ctx.source, "%d to %d", gcs1, gcs2);
  return nullptr;
}

}  // namespace

void *build_method(const Found &found, Context &ctx) {
  return ko_methlist_method_from_code(found.code, ctx.err);
}

// Parameters in the units of the geographic transformation pool (metres,
// arc-seconds, parts per million), which the transformation's constructor
// gives them; the EPSG remarks become the remark, the record's version the
// operation version.
void *build_geogtran(const Found &found, Context &ctx) {
  const auto *r = static_cast<const ko_db_geogtran_rec *>(found.record);
  ko::Unique<ko_geogcs> gcs1(build_part_as<ko_geogcs>(KO_TYPE_GEOGCS, r->gcs1, ctx));
  if (gcs1 == nullptr) return nullptr;
  ko::Unique<ko_geogcs> gcs2(build_part_as<ko_geogcs>(KO_TYPE_GEOGCS, r->gcs2, ctx));
  if (gcs2 == nullptr) return nullptr;
  ko::Unique<ko_method> method(build_part_as<ko_method>(KO_TYPE_METHOD, r->method, ctx));
  if (method == nullptr) return nullptr;
  const ParmRun run{ko_obj_geogtran_parms, ko_obj_geogtran_parms_cnt, r->parm_first,
                    r->parm_count, ko_obj_geogtran_parm_texts, ko_obj_geogtran_parm_texts_cnt};
  OperationParts parts;
  if (!operation_parts(found, run, parts, ctx)) return nullptr;
  ko_geogtran *gt = ko_geogtran_ext_new_errext(r->name, gcs1.get(), gcs2.get(), method.get(),
                                               parts.parms.data(), parts.metadata.get(),
                                               parts.remark.get(), ctx.err, r->accuracy);
  if (gt == nullptr) return nullptr;
  gcs1.release();  // the transformation owns its parts now
  gcs2.release();
  method.release();
  parts.handed_over();
  if (const ko_db_version_rec *version = ko_db_builtin_version_lookup(found.row, found.code))
    ko_geogtran_set_opversion(gt, version->version);
  return gt;
}

}  // namespace ko::factory

KO_DEFINE_FACTORY(method, ko_method, KO_TYPE_METHOD)
KO_DEFINE_FACTORY(geogtran, ko_geogtran, KO_TYPE_GEOGTRAN)

extern "C" {

int ko_factory_geogtran_candidates(int32_t gcs1, int32_t gcs2, double lon, double lat,
                                   ko_factory_candidate *out, int max) {
  if (max < 0 || (out == nullptr && max > 0)) return -1;
  int32_t from = ko::factory::current_geogcs(gcs1);
  int32_t to = ko::factory::current_geogcs(gcs2);
  if (from == 0 || to == 0 || from == to) return 0;
  return ko::factory::rank_public(from, to, lon, lat, out, max);
}

ko_gtlist_entry *ko_factory_gtlist_best(int32_t gcs1, int32_t gcs2, double lon, double lat,
                                        ko_err *err) {
  ko_err_clear(err);
  ko::factory::Context ctx{err, ko::factory::kBestSource};
  int32_t from = ko::factory::current_geogcs(gcs1);
  int32_t to = ko::factory::current_geogcs(gcs2);
  if (from == 0 || to == 0) {
    ko_err_arg(err, KO_SEV_ERROR, KO_ERRCAT_OBJECT, 203, ctx.source, "d",
               static_cast<int>(from == 0 ? gcs1 : gcs2));
    return nullptr;
  }
  if (from == to) return ko::factory::identity(from, ctx);
  return ko::factory::best_path(from, to, lon, lat, ctx);
}

}  // extern "C"
