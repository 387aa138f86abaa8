// Axes of geographic and projected coordinate systems: name, abbreviation,
// direction, unit and order, the check that a set of axes suits a system,
// and the default axes a system gets when it is given none.
#include "objects/geodetic.h"

#include <array>

namespace {

constexpr const char *kSource = "ko_axis_new_errext";

constexpr std::array<const char *, 8> kDirectionNames = {
    "", "north", "south", "east", "west", "up", "down", "other",
};

bool valid_direction(int direction) { return direction >= KO_AXIS_NORTH && direction <= KO_AXIS_OTHER; }

bool east_west(int direction) { return direction == KO_AXIS_EAST || direction == KO_AXIS_WEST; }
bool north_south(int direction) { return direction == KO_AXIS_NORTH || direction == KO_AXIS_SOUTH; }
bool vertical(int direction) { return direction == KO_AXIS_UP || direction == KO_AXIS_DOWN; }

// Whether a direction may stand at a place of a system of this kind:
// horizontal places take the four compass directions (and, in a projected
// system, "other" for grids whose axes follow meridians away from the
// pole); the third place is the height.
bool direction_fits(int direction, int place, int kind) {
  if (place == 2) return vertical(direction);
  if (east_west(direction) || north_south(direction)) return true;
  return kind == KO_AXIS_KIND_PROJECTED && direction == KO_AXIS_OTHER;
}

// Angles on the horizontal axes of a geographic system, lengths elsewhere.
bool unit_fits(const ko_unit *unit, int place, int kind) {
  if (unit == nullptr) return true;
  bool angular = kind == KO_AXIS_KIND_GEOGRAPHIC && place < 2;
  return ko::live_unit(unit, angular ? KO_TYPE_ANGUNIT : KO_TYPE_LINUNIT) != nullptr;
}

// The checks of one axis at its place; 0 when it fits.
int check_axis(const ko_axis *const given, int place, int kind) {
  if (given == nullptr) return 478;
  const ko_axis *axis = ko::live_axis(given);
  if (axis == nullptr) return 485;
  if (!valid_direction(axis->direction)) return 484;
  if (!direction_fits(axis->direction, place, kind)) return 486;
  if (axis->order != 0 && axis->order != place + 1) return 482;
  if (!unit_fits(axis->unit, place, kind)) return 487;
  return 0;
}

struct AxisTemplate {
  const char *name;
  const char *abbr;
  int direction;
};

constexpr AxisTemplate kGeographicAxes[] = {
    {"Longitude", "Lon", KO_AXIS_EAST},
    {"Latitude", "Lat", KO_AXIS_NORTH},
    {"Ellipsoidal height", "h", KO_AXIS_UP},
};
constexpr AxisTemplate kProjectedAxes[] = {
    {"(X)", "X", KO_AXIS_EAST},
    {"(Y)", "Y", KO_AXIS_NORTH},
    {"Ellipsoidal height", "h", KO_AXIS_UP},
};

// A clone of the given unit, or the default when none is given.
ko_unit *unit_or_default(const ko_unit *given, bool angular) {
  if (given != nullptr) return ko::unit_clone(given);
  return angular ? reinterpret_cast<ko_unit *>(ko::new_degree())
                 : reinterpret_cast<ko_unit *>(ko::new_meter());
}

}  // namespace

extern "C" {

ko_axis *ko_axis_new_errext(const char *name, const char *abbr, int direction, ko_unit *unit,
                            int order, ko_err *err) {
  if (name == nullptr) name = "";
  if (abbr == nullptr) abbr = "";
  ko::errext_prologue(err, kSource, name);
  if (!ko::fits<KO_AXIS_ABBR_SIZE>(abbr)) ko::report_too_long(err, kSource, abbr);
  if (!valid_direction(direction)) {
    ko::report_bad_argument(err, 484, kSource, name);
    return nullptr;
  }
  if (unit != nullptr && ko::live_unit(unit, KO_TYPE_UNIT) == nullptr) {
    ko::report_bad_argument(err, 324, kSource, name);
    return nullptr;
  }
  auto *axis = ko::make_object<ko_axis>(KO_TYPE_AXIS, name);
  if (axis == nullptr) {
    ko::report_no_memory(err, kSource, name);
    return nullptr;
  }
  ko::copy_field(axis->abbr, abbr);
  axis->direction = direction;
  axis->order = order;
  axis->unit = unit;
  return axis;
}

ko_axis *ko_axis_new(const char *name, const char *abbr, int direction, ko_unit *unit,
                     int order) {
  return ko_axis_new_errext(name, abbr, direction, unit, order, nullptr);
}

int ko_axis_p(const void *obj) { return ko::live_axis(obj) != nullptr; }

ko_axis *ko_axis_clone(const ko_axis *a) {
  const ko_axis *src = ko::live_axis(a);
  ko::Unique<ko_unit> unit;
  if (src == nullptr || !ko::clone_part(src->unit, unit, ko_unit_clone)) return nullptr;
  ko_axis *copy = ko_axis_new_errext(ko_header_get_name(src), src->abbr, src->direction,
                                     unit.get(), src->order, nullptr);
  if (copy != nullptr) unit.release();
  return ko::with_header_of(copy, src, ko_axis_del);
}

ko_axis *ko_axis_del(ko_axis *a) {
  a = ko::live_axis(a);
  if (a == nullptr) return nullptr;
  ko_unit_del(a->unit);
  return ko::release_object(a);
}

// Equal names (ko_strcmp_ci), directions, orders and units (both absent,
// or equal by ko_unit_eq); the abbreviation is not compared.
int ko_axis_eq(const ko_axis *a, const ko_axis *b) {
  const ko_axis *xa = ko::live_axis(a);
  const ko_axis *xb = ko::live_axis(b);
  if (xa == nullptr || xb == nullptr) return 0;
  if (ko_strcmp_ci(ko_header_get_name(xa), ko_header_get_name(xb)) != 0) return 0;
  if (xa->direction != xb->direction || xa->order != xb->order) return 0;
  if (xa->unit == nullptr || xb->unit == nullptr) return xa->unit == xb->unit ? 1 : 0;
  return ko_unit_eq(xa->unit, xb->unit);
}

char *ko_axis_abbr(const ko_axis *a, char *buf) {
  if (buf == nullptr) return nullptr;
  buf[0] = '\0';
  if (const ko_axis *axis = ko::live_axis(a)) ko_strncpy(buf, axis->abbr, KO_AXIS_ABBR_SIZE);
  return buf;
}

int ko_axis_direction(const ko_axis *a) {
  return ko::field_or(a, ko::live_axis, &ko_axis::direction, KO_AXIS_NONE);
}

int ko_axis_order(const ko_axis *a) { return ko::field_or(a, ko::live_axis, &ko_axis::order, 0); }

ko_unit *ko_axis_unit(const ko_axis *a) {
  return ko::field_or(a, ko::live_axis, &ko_axis::unit, nullptr);
}

// Takes the new unit (a unit or null) and deletes the old one.
void ko_axis_unit_set(ko_axis *a, ko_unit *unit) {
  ko_axis *axis = ko::live_axis(a);
  if (axis == nullptr || axis->unit == unit) return;
  if (unit != nullptr && ko::live_unit(unit, KO_TYPE_UNIT) == nullptr) return;
  ko_unit_del(axis->unit);
  axis->unit = unit;
}

const char *ko_axis_direction_to_name(int direction) {
  return valid_direction(direction) ? kDirectionNames[static_cast<std::size_t>(direction)] : "";
}

int ko_axis_name_to_direction(const char *name) {
  if (name == nullptr || *name == '\0') return KO_AXIS_NONE;
  for (int d = KO_AXIS_NORTH; d <= KO_AXIS_OTHER; ++d)
    if (ko_strcmp_i(kDirectionNames[static_cast<std::size_t>(d)], name) == 0) return d;
  return KO_AXIS_NONE;
}

// Checks, in order: the kind (485) and dimension (488); then each axis at
// its place (missing 478, not an axis 485, unknown direction 484, direction
// unfit for the place 486, order other than the place 482, unit of the
// wrong kind 487; an order of 0 means "not stated" and passes); then that
// the two horizontal axes do not lie along the same line (476).
int ko_axis_check_order(ko_axis *const *axes, int dimension, int kind) {
  if (kind != KO_AXIS_KIND_GEOGRAPHIC && kind != KO_AXIS_KIND_PROJECTED) return 485;
  if (dimension != 2 && dimension != 3) return 488;
  if (axes == nullptr) return 0;
  for (int place = 0; place < dimension; ++place)
    if (int number = check_axis(axes[place], place, kind); number != 0) return number;
  int first = axes[0]->direction;
  int second = axes[1]->direction;
  bool same_line = (east_west(first) && east_west(second)) ||
                   (north_south(first) && north_south(second));
  return same_line ? 476 : 0;
}

int ko_axis_fill(ko_axis **out, int dimension, int kind, const ko_unit *hunit,
                 const ko_unit *vunit) {
  if (out == nullptr || (dimension != 2 && dimension != 3)) return 0;
  if (kind != KO_AXIS_KIND_GEOGRAPHIC && kind != KO_AXIS_KIND_PROJECTED) return 0;
  const AxisTemplate *templates =
      kind == KO_AXIS_KIND_GEOGRAPHIC ? kGeographicAxes : kProjectedAxes;
  std::array<ko::Unique<ko_axis>, KO_AXIS_MAX> made;
  for (int place = 0; place < dimension; ++place) {
    bool angular = kind == KO_AXIS_KIND_GEOGRAPHIC && place < 2;
    ko::Unique<ko_unit> unit(unit_or_default(place < 2 ? hunit : vunit, angular));
    if (unit == nullptr) return 0;
    const AxisTemplate &t = templates[place];
    made[static_cast<std::size_t>(place)].reset(
        ko_axis_new(t.name, t.abbr, t.direction, unit.get(), place + 1));
    if (made[static_cast<std::size_t>(place)] == nullptr) return 0;
    unit.release();
  }
  for (int place = 0; place < dimension; ++place)
    out[place] = made[static_cast<std::size_t>(place)].release();
  return 1;
}

const ko_objvec ko_axis_objvec =
    ko::make_objvec<ko_axis, ko_axis_clone, ko_axis_del, ko_axis_eq>(KO_TYPE_AXIS);

}  // extern "C"

KO_DEFINE_OBJECT_FORWARDS(axis, ko_axis)
