// Compound coordinate system: a horizontal system (geographic or
// projected) and a vertical system used together.  The horizontal part is
// held through the generic object operations, so either kind works the
// same way.
#include "objects/systems.h"

namespace {

constexpr const char *kSource = "ko_hvcoordsys_ext_new_errext";

}  // namespace

extern "C" {

// In order: the name (warning 354); neither system usable (339); the
// horizontal system (338); the vertical system (339); memory (1).
ko_hvcoordsys *ko_hvcoordsys_ext_new_errext(const char *name, void *coordsys, ko_vertcs *vertcs,
                                            ko_metadata **metadata, ko_remark *remark,
                                            ko_err *err) {
  if (name == nullptr) name = "";
  ko::errext_prologue(err, kSource, name);
  const bool horizontal = ko::live_coordsys(coordsys) != nullptr;
  const bool vertical = ko::live_vertcs(vertcs) != nullptr;
  if (!horizontal || !vertical) {
    ko::report_bad_argument(err, !horizontal && vertical ? 338 : 339, kSource, name);
    return nullptr;
  }
  auto *c = ko::make_object<ko_hvcoordsys>(KO_TYPE_HVCOORDSYS, name);
  if (c == nullptr) {
    ko::report_no_memory(err, kSource, name);
    return nullptr;
  }
  c->coordsys = coordsys;
  c->vertcs = vertcs;
  c->metadata = metadata;
  c->remark = remark;
  return c;
}

ko_hvcoordsys *ko_hvcoordsys_ext_new(const char *name, void *coordsys, ko_vertcs *vertcs,
                                     ko_metadata **metadata, ko_remark *remark) {
  return ko_hvcoordsys_ext_new_errext(name, coordsys, vertcs, metadata, remark, nullptr);
}

ko_hvcoordsys *ko_hvcoordsys_new_errext(const char *name, void *coordsys, ko_vertcs *vertcs,
                                        ko_err *err) {
  return ko_hvcoordsys_ext_new_errext(name, coordsys, vertcs, nullptr, nullptr, err);
}

ko_hvcoordsys *ko_hvcoordsys_new(const char *name, void *coordsys, ko_vertcs *vertcs) {
  return ko_hvcoordsys_ext_new_errext(name, coordsys, vertcs, nullptr, nullptr, nullptr);
}

int ko_hvcoordsys_p(const void *obj) { return ko::live_hvcoordsys(obj) != nullptr; }

ko_hvcoordsys *ko_hvcoordsys_clone(const ko_hvcoordsys *c) {
  const ko_hvcoordsys *src = ko::live_hvcoordsys(c);
  if (src == nullptr) return nullptr;
  ko::Unique<void> coordsys(ko_object_clone(src->coordsys));
  ko::Unique<ko_vertcs> vertcs;
  ko::Annotations parts;
  if (coordsys == nullptr || !ko::clone_part(src->vertcs, vertcs, ko_vertcs_clone) ||
      !ko::clone_annotations(src->metadata, src->remark, parts))
    return nullptr;
  ko_hvcoordsys *copy =
      ko_hvcoordsys_ext_new_errext(ko_header_get_name(src), coordsys.get(), vertcs.get(),
                                   parts.metadata, parts.remark.get(), nullptr);
  if (copy == nullptr) return nullptr;
  coordsys.release();  // every part now belongs to the copy
  vertcs.release();
  parts.take_metadata();
  parts.remark.release();
  return ko::with_header_of(copy, src, ko_hvcoordsys_del);
}

ko_hvcoordsys *ko_hvcoordsys_del(ko_hvcoordsys *c) {
  c = ko::live_hvcoordsys(c);
  if (c == nullptr) return nullptr;
  ko_object_del(c->coordsys);
  ko_vertcs_del(c->vertcs);
  ko_metadata_vector_del(c->metadata);
  ko_remark_del(c->remark);
  return ko::release_object(c);
}

// Names (ko_strcmp_ci), then both systems by their own equality.
int ko_hvcoordsys_eq(const ko_hvcoordsys *a, const ko_hvcoordsys *b) {
  const ko_hvcoordsys *ca = ko::live_hvcoordsys(a);
  const ko_hvcoordsys *cb = ko::live_hvcoordsys(b);
  if (ca == nullptr || cb == nullptr) return 0;
  return ko_strcmp_ci(ko_header_get_name(ca), ko_header_get_name(cb)) == 0 &&
                 ko_object_eq(ca->coordsys, cb->coordsys) != 0 &&
                 ko_vertcs_eq(ca->vertcs, cb->vertcs) != 0
             ? 1
             : 0;
}

void *ko_hvcoordsys_coordsys(const ko_hvcoordsys *c) {
  return ko::field_or(c, ko::live_hvcoordsys, &ko_hvcoordsys::coordsys, nullptr);
}

ko_geogcs *ko_hvcoordsys_geogcs(const ko_hvcoordsys *c) {
  return ko::live_geogcs(ko_hvcoordsys_coordsys(c));
}

ko_projcs *ko_hvcoordsys_projcs(const ko_hvcoordsys *c) {
  return ko::as<ko_projcs>(ko_hvcoordsys_coordsys(c), KO_TYPE_PROJCS);
}

ko_vertcs *ko_hvcoordsys_vertcs(const ko_hvcoordsys *c) {
  return ko::field_or(c, ko::live_hvcoordsys, &ko_hvcoordsys::vertcs, nullptr);
}

ko_metadata **ko_hvcoordsys_metadata_vector(const ko_hvcoordsys *c) {
  return ko::field_or(c, ko::live_hvcoordsys, &ko_hvcoordsys::metadata, nullptr);
}

ko_remark *ko_hvcoordsys_remark(const ko_hvcoordsys *c) {
  return ko::field_or(c, ko::live_hvcoordsys, &ko_hvcoordsys::remark, nullptr);
}

constinit const ko_objvec ko_hvcoordsys_objvec =
    ko::make_objvec<ko_hvcoordsys, ko_hvcoordsys_clone, ko_hvcoordsys_del, ko_hvcoordsys_eq>(
        KO_TYPE_HVCOORDSYS);

}  // extern "C"

KO_DEFINE_OBJECT_FORWARDS(hvcoordsys, ko_hvcoordsys)
