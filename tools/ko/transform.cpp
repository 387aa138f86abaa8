// "ko transform": points from one geographic or projected system to
// another: unproject, transform between the datums, project.
#include "commands.h"
#include "points.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

namespace ko::cli {
namespace {

constexpr std::string_view kSynopsis[] = {
    "ko transform --from CRS --to CRS [--via GEOGTRAN]... [options] [FILE]",
};

enum TransformOption {
  kFrom = 'f',
  kTo = 't',
  kVia = kPointOptionBase + 100,
  kHeightColumn,
};

constexpr OptionDoc kOptions[] = {
    {"-f, --from CRS",
     "The system of the input points: a geographic or projected system, by code, name, WKT "
     "or WKT file. Required."},
    {"-t, --to CRS", "The system of the output points, like --from. Required."},
    {"--via GEOGTRAN",
     "Transform between the datums with this catalogue transformation (code, name, WKT or "
     "file) instead of the one the tool would choose; it is run in whichever direction "
     "joins the two systems. Repeat the option to chain transformations through other "
     "datums, in order."},
    {"--height-column COLUMN",
     "The CSV column of heights in metres (default: h, height, z or "
     "ellipsoidal_height when the header has one). Heights take part in the datum "
     "transformation and are written back into the same column, as described above."},
};

constexpr ExampleDoc kExamples[] = {
    {"A point from NAD27 to NAD83 longitude and latitude:",
     "echo -100 40 | ko transform --from 4267 --to 4269"},
    {"From ED50 / UTM zone 31N to WGS 84 / UTM zone 31N, with a height:",
     "echo 500000 5500000 100 | ko transform -f 23031 -t 32631"},
    {"From the British National Grid to WGS 84, with OSGB36 to WGS 84 (6):",
     "ko transform -f 27700 -t 4326 --via 1314 --csv --x-column E --y-column N points.csv"},
};

constexpr std::string_view kDescription =
    "Converts points from the system given with --from to the system given with --to. "
    "Either may be geographic or projected: projected input is first converted to its "
    "geographic system, projected output is projected from its own, so that the datum "
    "step always works on longitudes and latitudes. When the two geographic systems have "
    "the same datum, only units, prime meridians and projections change.\n"
    "\n"
    "When the datums differ, the transformation is the one named with --via or else the "
    "best one that the catalogue has between the two geographic systems: the most "
    "accurate whose area of use holds the first point of the input and whose grid file, "
    "if it needs one, is there (see KODATA); without a direct one, the best to WGS 84 and "
    "the best from WGS 84. It is chosen once, at the first point, kept for every other "
    "point, and named on standard error, for example \"using EPSG:1188 "
    "NAD_1983_To_WGS_1984_1 (accuracy 4 m)\".\n"
    "\n"
    "A third number after the two coordinates is a height in metres. The datum "
    "transformation uses it as the ellipsoidal height of the point, and it is written "
    "after the point unchanged, unless both systems are three-dimensional (have an "
    "ellipsoidal height axis): then the height converted to the output datum is written. "
    "A point that a transformation cannot convert (outside its grid, for instance) is "
    "reported like a line that cannot be read.";

constexpr std::string_view kExitStatus =
    "0 when every point was converted; 1 when some lines could not be read or converted "
    "(each is reported on standard error with its line number, and the others are "
    "converted); 2 for a usage error, an unknown system or transformation, text that is "
    "not valid WKT, an unreadable input file or no transformation between the two "
    "datums.";

// One end of the conversion: a geographic system, or a projected system
// and its geographic system.
struct End {
  Object<void> crs;
  ko_projcs *pcs = nullptr;  // borrowed from crs; null for a geographic system
  ko_geogcs *gcs = nullptr;  // borrowed from crs
  double angular = 0.0;      // radians in one angular unit
  double meridian = 0.0;     // the prime meridian, radians east of Greenwich
};

struct Step {
  ko_geogtran *gt;
  int direction;
  double meridian_in;   // prime meridians of the step's input and output
  double meridian_out;  // systems, radians east of Greenwich
};

constexpr double kDegree = 0.017453292519943295;

double meridian_of(const ko_geogcs *gcs) {
  return ko_primem_longitude(ko_geogcs_primem(gcs)) * kDegree;
}

bool same_datum(const ko_geogcs *a, const ko_geogcs *b) {
  const ko_datum *da = ko_geogcs_datum(a);
  const ko_datum *db = ko_geogcs_datum(b);
  const int32_t ca = ko_object_code(da);
  const int32_t cb = ko_object_code(db);
  if (ca > 0 && cb > 0) return ca == cb;
  return ko_datum_eq(da, db) != 0;
}

bool load_end(std::string_view what, End &end) {
  constexpr uint32_t kTypes[] = {KO_TYPE_PROJCS, KO_TYPE_GEOGCS};
  end.crs = load_object(what, kTypes, nullptr);
  if (!end.crs) return false;
  if (ko_object_type(end.crs.get()) == KO_TYPE_PROJCS) {
    end.pcs = static_cast<ko_projcs *>(end.crs.get());
    end.gcs = ko_projcs_geogcs(end.pcs);
  } else {
    end.gcs = static_cast<ko_geogcs *>(end.crs.get());
  }
  end.angular = angular_factor(end.gcs);
  end.meridian = meridian_of(end.gcs);
  return true;
}

// The catalogue code of a geographic system, found by name when the
// system carries none (WKT without AUTHORITY); 0 when there is none.
int32_t catalogue_code(const ko_geogcs *gcs) {
  if (const int32_t code = ko_object_code(gcs); code > 0) return code;
  const Object<ko_geogcs> found(ko_factory_geogcs_from_name(object_name(gcs).c_str()));
  return found && same_datum(found.get(), gcs) ? ko_object_code(found.get()) : 0;
}

// The code under which the catalogue's transformations know a system:
// theirs are stated between 2D systems, so a 3D system is looked up
// through its 2D form (same datum).
int32_t search_code(const ko_geogcs *gcs) {
  const int32_t code = catalogue_code(gcs);
  if (code == 0 || ko_geogcs_dimension(gcs) != 3) return code;
  const ko_db_tbl &table = ko_obj_geogcs_gcsvcs_tbl;
  const auto *records = static_cast<const ko_db_gcsvcs_rec *>(table.recs);
  for (int32_t i = 0; i < table.count; ++i)
    if (records[i].gcs3d == code) return records[i].gcs;
  return code;
}

std::string step_text(const Step &step) {
  std::string text = authority_code(step.gt);
  append_item(text, " ", object_name(step.gt));
  if (step.direction == 1) text += " inverse";
  const double accuracy = ko_geogtran_accuracy(step.gt);
  char buf[64];
  if (accuracy >= 999.0)
    std::snprintf(buf, sizeof buf, " (accuracy unknown)");
  else
    std::snprintf(buf, sizeof buf, " (accuracy %g m)", accuracy);
  return text + buf;
}

class Transformer {
 public:
  Transformer(End &from, End &to) : from_(from), to_(to) {}

  // Chains the transformations named with --via; false after saying why.
  bool use_via(std::span<const std::string_view> names);
  // Checks, before any input is read, that a transformation can be looked
  // for; false after saying why.
  bool prepare();
  bool operator()(PointBlock &block);

 private:
  void add_step(ko_geogtran *gt, int direction);
  bool choose(double lon, double lat);
  void announce() const;
  void run_step(const Step &step, PointBlock &block);
  void to_greenwich_radians(PointBlock &block) const;
  void from_greenwich_radians(PointBlock &block) const;

  End &from_;
  End &to_;
  // A 2D system's third coordinate need not be an ellipsoidal height (it
  // is often a height above the geoid): it then goes out as it came in.
  bool converts_heights_ =
      ko_geogcs_dimension(from_.gcs) == 3 && ko_geogcs_dimension(to_.gcs) == 3;
  bool chosen_ = false;
  std::vector<Object<ko_geogtran>> via_;
  std::unique_ptr<ko_gtlist_entry, ko_gtlist_entry *(*)(ko_gtlist_entry *)> best_{
      nullptr, ko_gtlist_entry_del};
  std::vector<Step> steps_;
  std::vector<double> saved_xy_, saved_z_, heights_;
};

void Transformer::add_step(ko_geogtran *gt, int direction) {
  const ko_geogcs *in = direction == 0 ? ko_geogtran_geogcs1(gt) : ko_geogtran_geogcs2(gt);
  const ko_geogcs *out = direction == 0 ? ko_geogtran_geogcs2(gt) : ko_geogtran_geogcs1(gt);
  steps_.push_back({gt, direction, meridian_of(in), meridian_of(out)});
}

bool Transformer::use_via(std::span<const std::string_view> names) {
  constexpr uint32_t kTypes[] = {KO_TYPE_GEOGTRAN};
  const ko_geogcs *at = from_.gcs;
  for (std::string_view name : names) {
    Object<void> obj = load_object(name, kTypes, nullptr);
    if (!obj) return false;
    auto *gt = static_cast<ko_geogtran *>(obj.get());
    via_.emplace_back(static_cast<ko_geogtran *>(obj.release()));
    int direction = 0;
    if (same_datum(ko_geogtran_geogcs1(gt), at)) {
      at = ko_geogtran_geogcs2(gt);
    } else if (same_datum(ko_geogtran_geogcs2(gt), at)) {
      direction = 1;
      at = ko_geogtran_geogcs1(gt);
    } else {
      complain("%s joins %s and %s: neither has the datum of %s", object_name(gt).c_str(),
               object_name(ko_geogtran_geogcs1(gt)).c_str(),
               object_name(ko_geogtran_geogcs2(gt)).c_str(), object_name(at).c_str());
      return false;
    }
    if (ko_geogtran_usable(gt) == 0) {
      complain("%s needs a grid file that is not there (see KODATA)", object_name(gt).c_str());
      return false;
    }
    add_step(gt, direction);
  }
  if (!same_datum(at, to_.gcs)) {
    complain("the transformations end at %s, not at the datum of %s", object_name(at).c_str(),
             object_name(to_.gcs).c_str());
    return false;
  }
  chosen_ = true;
  announce();
  return true;
}

bool Transformer::prepare() {
  if (chosen_ || same_datum(from_.gcs, to_.gcs)) {
    chosen_ = true;
    return true;
  }
  for (const ko_geogcs *gcs : {from_.gcs, to_.gcs}) {
    if (catalogue_code(gcs) == 0) {
      complain("%s is not in the catalogue, so no transformation can be looked up for it; "
               "name one with --via",
               object_name(gcs).c_str());
      return false;
    }
  }
  return true;
}

void Transformer::announce() const {
  if (steps_.empty()) return;
  std::string text;
  for (const Step &step : steps_) append_item(text, ", then ", step_text(step));
  complain("using %s", text.c_str());
}

bool Transformer::choose(double lon, double lat) {
  const int32_t code1 = search_code(from_.gcs);
  const int32_t code2 = search_code(to_.gcs);
  ko_err err{};
  const double lon_degrees = ko_delta(lon) / kDegree;
  best_.reset(ko_factory_gtlist_best(code1, code2, lon_degrees, lat / kDegree, &err));
  if (!best_) {
    report(err);
    complain("no transformation from %s to %s at the first point; name one with --via",
             object_name(from_.gcs).c_str(), object_name(to_.gcs).c_str());
    return false;
  }
  for (int32_t i = 0; i < best_->count; ++i)
    add_step(best_->steps[i].gt, best_->steps[i].direction);
  chosen_ = true;
  announce();
  return true;
}

void Transformer::to_greenwich_radians(PointBlock &block) const {
  const double angular = from_.angular;
  const double meridian = from_.meridian;
  double *xy = block.xy.data();
  const size_t n = block.failures.size();
  for (size_t i = 0; i < n; ++i) {
    xy[2 * i] = xy[2 * i] * angular + meridian;
    xy[2 * i + 1] *= angular;
  }
}

void Transformer::from_greenwich_radians(PointBlock &block) const {
  const double angular = to_.angular;
  const double meridian = to_.meridian;
  double *xy = block.xy.data();
  const size_t n = block.failures.size();
  for (size_t i = 0; i < n; ++i) {
    xy[2 * i] = ko_delta(xy[2 * i] - meridian) / angular;
    xy[2 * i + 1] /= angular;
  }
}

// One transformation over the block.  The frame takes longitudes relative
// to the prime meridian of the step's input system; a point the method
// cannot convert is left alone and only the count says so, so a short count
// sends the block through again point by point to find which ones.
void Transformer::run_step(const Step &step, PointBlock &block) {
  const auto n = static_cast<int32_t>(block.failures.size());
  double *xy = block.xy.data();
  double *z = block.z.empty() ? nullptr : block.z.data();
  for (int32_t i = 0; i < n; ++i) xy[2 * i] -= step.meridian_in;
  saved_xy_.assign(block.xy.begin(), block.xy.end());
  saved_z_.assign(block.z.begin(), block.z.end());
  const int32_t converted =
      ko_geog_to_geog_ext_internal(step.gt, nullptr, 0, n, xy, z, step.direction);
  if (converted < n) {
    for (int32_t i = 0; i < n; ++i) {
      xy[2 * i] = saved_xy_[2 * i];
      xy[2 * i + 1] = saved_xy_[2 * i + 1];
      if (z != nullptr) z[i] = saved_z_[i];
      const int32_t one = ko_geog_to_geog_ext_internal(
          step.gt, nullptr, 0, 1, xy + 2 * i, z != nullptr ? z + i : nullptr, step.direction);
      if (one != 1 && block.failures[i] == Failure::kNone)
        block.failures[i] = Failure::kTransformation;
    }
  }
  for (int32_t i = 0; i < n; ++i) xy[2 * i] += step.meridian_out;
}

bool Transformer::operator()(PointBlock &block) {
  if (from_.pcs != nullptr)
    project_block(from_.pcs, block, true);
  else
    reject_beyond_poles(block, from_.angular);
  to_greenwich_radians(block);
  for (size_t i = 0; i < block.failures.size(); ++i) {
    if (block.failures[i] != Failure::kNone) {
      block.xy[2 * i] = 0.0;  // carried through as a harmless point
      block.xy[2 * i + 1] = 0.0;
    } else if (!chosen_ && !choose(block.xy[2 * i], block.xy[2 * i + 1])) {
      return false;
    }
  }
  if (!converts_heights_) heights_.assign(block.z.begin(), block.z.end());
  for (const Step &step : steps_) run_step(step, block);
  if (!converts_heights_) std::copy(heights_.begin(), heights_.end(), block.z.begin());
  from_greenwich_radians(block);
  if (to_.pcs != nullptr) project_block(to_.pcs, block, false);
  return true;
}

}  // namespace

const CommandDoc kTransformDoc = {
    "transform", "convert points between two geographic or projected systems",
    kSynopsis, kDescription, kPointsFormatText, kOptions, point_option_docs(), kExamples,
    kExitStatus,
};

int run_transform(int argc, char **argv) {
  PointsOptions options;
  options.read_heights = true;
  std::string_view from_name;
  std::string_view to_name;
  std::vector<std::string_view> via_names;
  const std::vector<option> table = with_point_options({
      {"from", required_argument, nullptr, kFrom},
      {"to", required_argument, nullptr, kTo},
      {"via", required_argument, nullptr, kVia},
      {"height-column", required_argument, nullptr, kHeightColumn},
  });
  const ParsedOptions parsed = parse_options(
      argc, argv, kTransformDoc, table, "f:t:p:", [&](int code, const char *argument) {
        switch (code) {
          case kFrom: from_name = argument; return true;
          case kTo: to_name = argument; return true;
          case kVia: via_names.emplace_back(argument); return true;
          case kHeightColumn: options.height_column = argument; return true;
          default:
            return take_point_option(kTransformDoc, code, argument, options) ==
                   OptionResult::kTaken;
        }
      });
  if (parsed.finished()) return parsed.exit_status();
  if (from_name.empty() || to_name.empty())
    return usage_error(kTransformDoc, "needs both --from and --to");
  if (parsed.operands.size() > 1)
    return usage_error(kTransformDoc, "expects at most one input file");
  if (parsed.operands.size() == 1 &&
      !take_input_operand(kTransformDoc, parsed.operands[0], options))
    return kExitUsage;

  End from;
  End to;
  if (!load_end(from_name, from) || !load_end(to_name, to)) return kExitUsage;
  Transformer transformer(from, to);
  if (!via_names.empty() && !transformer.use_via(via_names)) return kExitUsage;
  if (!transformer.prepare()) return kExitUsage;

  options.input_geographic = from.pcs == nullptr;
  options.output_geographic = to.pcs == nullptr;
  return convert_points(options, [&](PointBlock &block) { return transformer(block); });
}

}  // namespace ko::cli
