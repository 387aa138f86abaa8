// Builders shared by the tests of the method list, the transformation object
// and the point frame: geographic systems from a spheroid, a prime meridian
// and a unit; parameter slots from (name, value) pairs; transformations; a
// data directory in a temporary folder.
#pragma once

#include "ko.h"
#include "objects/object.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <initializer_list>
#include <string>

namespace ko::test {

// A library object that the test owns until it hands it on.
template <class T>
using Obj = ko::Unique<T>;

struct GcsSpec {
  const char *name = "GCS";
  double axis = 6378137.0;
  double inv_flattening = 298.257223563;
  double pm_degrees = 0.0;                   // in pm_unit_factor units below
  const char *unit = "Degree";
  double unit_factor = 0.017453292519943295;  // radians per unit
};

inline double flattening(double inv_f) { return inv_f == 0.0 ? 0.0 : 1.0 / inv_f; }

// A two-dimensional GCS.  The prime meridian is given in the GCS's unit.
inline ko_geogcs *make_gcs(const GcsSpec &s) {
  ko_spheroid *sph = ko_spheroid_new("Spheroid", s.axis, flattening(s.inv_flattening));
  ko_datum *datum = ko_datum_new("Datum", sph);
  ko_primem *pm = ko_primem_ext_new(s.pm_degrees == 0.0 ? "Greenwich" : "Meridian",
                                    ko_angunit_new(s.unit, s.unit_factor), s.pm_degrees);
  return ko_geogcs_new(s.name, datum, pm, ko_angunit_new(s.unit, s.unit_factor));
}

// A three-dimensional GCS whose heights are in the given linear unit.
inline ko_geogcs *make_gcs3(const GcsSpec &s, const char *vunit, double vfactor) {
  ko_spheroid *sph = ko_spheroid_new("Spheroid", s.axis, flattening(s.inv_flattening));
  ko_datum *datum = ko_datum_new("Datum", sph);
  ko_angunit *hunit = ko_angunit_new(s.unit, s.unit_factor);
  ko_linunit *v = ko_linunit_new(vunit, vfactor);
  ko_axis *axes[3] = {};
  EXPECT_EQ(ko_axis_fill(axes, 3, KO_AXIS_KIND_GEOGRAPHIC, reinterpret_cast<ko_unit *>(hunit),
                         reinterpret_cast<ko_unit *>(v)),
            1);
  ko_linunit_del(v);
  return ko_geogcs_ext_new(s.name, datum, nullptr, 3, axes, hunit, nullptr, nullptr);
}

inline GcsSpec wgs84() { return GcsSpec{"GCS_WGS_1984", 6378137.0, 298.257223563}; }

using Slots = std::array<ko_parameter *, KO_PARM_COUNT>;

struct ParmSpec {
  const char *name;
  double value;
};

// Parameters placed in the slots their list rows give (unitless values are
// read by the transformation in its default units: metres, arc-seconds,
// parts per million).
inline Slots make_slots(std::initializer_list<ParmSpec> specs) {
  Slots slots{};
  for (const ParmSpec &p : specs) {
    ko_parameter *parm = ko_parameter_new(p.name, p.value);
    const ko_parmlist_entry *row = ko_parmlist_from_name(p.name);
    EXPECT_NE(row, nullptr) << p.name;
    if (row == nullptr) {
      ko_parameter_del(parm);
      continue;
    }
    EXPECT_EQ(slots[row->index], nullptr) << p.name << " shares its slot";
    ko_parameter_del(slots[row->index]);
    slots[row->index] = parm;
  }
  return slots;
}

inline void delete_slots(Slots &slots) {
  for (ko_parameter *&p : slots) p = ko_parameter_del(p);
}

// A transformation between two fresh GCSs by a method name.
inline ko_geogtran *make_gt(const char *name, const GcsSpec &g1, const GcsSpec &g2,
                            const char *method, std::initializer_list<ParmSpec> parms) {
  Slots slots = make_slots(parms);
  ko_geogtran *gt = ko_geogtran_new(name, make_gcs(g1), make_gcs(g2), ko_method_new(method),
                                    slots.data());
  EXPECT_NE(gt, nullptr) << name;
  return gt;
}

inline std::initializer_list<ParmSpec> no_parameters() { return {}; }

// A temporary data directory with the given grid files linked into the
// format's subdirectory; the data directory is set to it while the object
// lives.
class DataDir {
 public:
  DataDir() {
    char tmpl[] = "/tmp/ko_frame_XXXXXX";
    const char *made = mkdtemp(tmpl);
    EXPECT_NE(made, nullptr);
    root_ = made != nullptr ? made : "/tmp";
    ko_datadir_set(root_.c_str());
  }
  ~DataDir() {
    ko_datadir_set(nullptr);
    std::error_code ec;
    std::filesystem::remove_all(root_, ec);
  }
  DataDir(const DataDir &) = delete;
  DataDir &operator=(const DataDir &) = delete;

  std::string path(const std::string &subdir, const std::string &file) const {
    return root_ + "/" + subdir + "/" + file;
  }
  // Links an existing file into subdir under the given name.
  void link(const std::string &subdir, const std::string &target, const std::string &name) const {
    std::filesystem::create_directories(root_ + "/" + subdir);
    std::filesystem::create_symlink(target, path(subdir, name));
  }
  // Writes bytes as a file into subdir.
  void write(const std::string &subdir, const std::string &name, const std::string &bytes) const {
    std::filesystem::create_directories(root_ + "/" + subdir);
    std::FILE *f = std::fopen(path(subdir, name).c_str(), "wb");
    ASSERT_NE(f, nullptr);
    std::fwrite(bytes.data(), 1, bytes.size(), f);
    std::fclose(f);
  }

 private:
  std::string root_;
};

inline const char *kNtfGrid = "/usr/share/proj/ntf_r93.gsb";

inline bool file_exists(const char *path) { return std::filesystem::exists(path); }

}  // namespace ko::test
