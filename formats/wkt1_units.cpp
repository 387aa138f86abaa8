// WKT1 of the units: UNIT["name", factor] with, on request, the display
// name, plural and abbreviation as three quoted texts.  Linear, angular and
// scale units and the generic unit are all written with the keyword UNIT
// (a linear unit inside a coordinate system becomes LINUNIT by its
// writer's prefix); area units, which are never plain units, with AREAUNIT.
#include "formats/wkt1.h"
#include "objects/units.h"

#include <cmath>

namespace {

using ko::text::TextOut;
using namespace ko::wkt1;

// How one unit kind reads and writes.
struct UnitWkt {
  uint32_t type;
  const char *keyword;       // read keyword
  const char *alt;           // its alternate, or null
  const char *write_keyword;
  ko_unit *(*make)(const char *, const char *, const char *, const char *, double, ko_err *);
};

template <class T, T *(*Make)(const char *, const char *, const char *, const char *, double,
                              ko_err *)>
ko_unit *make_as_unit(const char *name, const char *d, const char *p, const char *a, double f,
                      ko_err *err) {
  return reinterpret_cast<ko_unit *>(Make(name, d, p, a, f, err));
}

constexpr UnitWkt kLinear{KO_TYPE_LINUNIT, "LINUNIT", "UNIT", "UNIT",
                          make_as_unit<ko_linunit, ko_linunit_ext_new_errext>};
constexpr UnitWkt kAngular{KO_TYPE_ANGUNIT, "ANGUNIT", "UNIT", "UNIT",
                           make_as_unit<ko_angunit, ko_angunit_ext_new_errext>};
constexpr UnitWkt kScale{KO_TYPE_SCALEUNIT, "SCALEUNIT", "UNIT", "UNIT",
                         make_as_unit<ko_scaleunit, ko_scaleunit_ext_new_errext>};
constexpr UnitWkt kArea{KO_TYPE_AREAUNIT, "AREAUNIT", nullptr, "AREAUNIT",
                        make_as_unit<ko_areaunit, ko_areaunit_ext_new_errext>};
constexpr UnitWkt kGeneric{KO_TYPE_UNIT, "UNIT", nullptr, "UNIT",
                           make_as_unit<ko_unit, ko_unit_ext_new_errext>};

void put_units_text(TextOut &out, const ko_uchar *text) {
  char utf8[KO_UNIT_DISPNAME_SIZE * 3];
  ko_str_uni_to_utf8(utf8, text, static_cast<int>(sizeof utf8));
  put_quoted(out, utf8);
}

// A unit of exactly this kind (the generic writer takes any plain unit).
int write_unit(const UnitWkt &kind, const void *obj, const char *authority, uint32_t options,
               int size, char *buf) {
  TextOut out(buf, size);
  if (!begin_node(out, obj, kind.type, kind.write_keyword, authority, options)) return out.finish();
  const ko_unit *u = ko::unit_of(obj);
  put_number(out, u->factor, options);
  if ((options & KO_STR_UNIT_NAMES) != 0) {
    put_units_text(out, u->display_name);
    put_units_text(out, u->plural);
    put_units_text(out, u->abbreviation);
  }
  put_tail(out, obj, nullptr, authority, options);
  return out.finish();
}

// UNIT["name", factor, "display", "plural", "abbreviation"]: error 455
// without a factor, 422 for a factor that is not above 0.
ko_unit *read_unit(const UnitWkt &kind, const ko_wkt_tokens *tokens, const char *authority,
                   int index, int *end_index, ko_err *err) {
  NodeRead n(tokens, authority, err);
  double factor = 0.0;
  if (!n.open(index, kind.keyword, kind.alt) || !value_number(n.r, n.node, n.c, 0, 455, factor))
    return nullptr;
  if (!(factor > 0.0) && !std::isnan(factor)) {
    report(err, 422, n.node.keyword, value_text(n.r, n.c, 0));
    return nullptr;
  }
  if (!n.read_extras()) return nullptr;
  char name[KO_NAME_SIZE];
  n.name(kind.type, name);
  return n.done(construct(n.r,
                          [&](ko_err *e) {
                            return kind.make(name, value_text(n.r, n.c, 1), value_text(n.r, n.c, 2),
                                             value_text(n.r, n.c, 3), factor, e);
                          }),
                end_index);
}

}  // namespace

#define KO_WKT1_UNIT_FUNCTIONS(prefix, T, kind)                                                 \
  int ko_wkt_##prefix##_to_str(const T *obj, const char *authority, uint32_t options, int size, \
                               char *buf) {                                                     \
    return write_unit(kind, obj, authority, options, size, buf);                                \
  }                                                                                             \
  T *ko_wkt_##prefix##_from_tokens(const ko_wkt_tokens *tokens, const char *authority,          \
                                   int index, int *end_index, ko_err *err) {                    \
    return reinterpret_cast<T *>(read_unit(kind, tokens, authority, index, end_index, err));    \
  }                                                                                             \
  KO_WKT1_DEFINE_FROM_STR(prefix, T, kind.keyword, kind.alt)

extern "C" {
KO_WKT1_UNIT_FUNCTIONS(linunit, ko_linunit, kLinear)
KO_WKT1_UNIT_FUNCTIONS(angunit, ko_angunit, kAngular)
KO_WKT1_UNIT_FUNCTIONS(scaleunit, ko_scaleunit, kScale)
KO_WKT1_UNIT_FUNCTIONS(areaunit, ko_areaunit, kArea)
KO_WKT1_UNIT_FUNCTIONS(unit, ko_unit, kGeneric)
}  // extern "C"
