// Metadata: the area of use of an object (named geographic, vertical and
// time extents), with a scope text and an area code.
#include "objects/object.h"

struct ko_metadata {
  ko_header header;  // record name: the metadata (area) name
  ko_gcs_extent gcs_extent;
  ko_vcs_extent vcs_extent;
  ko_time_extent time_extent;
  char scope[256];
  uint32_t area_code;
};

namespace {

constexpr char kSource[] = "ko_metadata_new_errext";

const ko_metadata *live(const ko_metadata *m) {
  return ko::as<const ko_metadata>(m, KO_TYPE_METADATA);
}

// An empty extent (as its type judges it) is kept in its cleared form.
template <class Extent>
void store_extent(Extent &dst, const Extent *src, int (*is_empty)(const Extent *),
                  void (*copy)(Extent *, const Extent *)) {
  copy(&dst, is_empty(src) ? nullptr : src);
}

ko_metadata *make_metadata(const char *name, const char *scope, const ko_gcs_extent *gcs,
                           const ko_vcs_extent *vcs, const ko_time_extent *time,
                           uint32_t area_code, ko_err *err) {
  auto *m = ko::make_object<ko_metadata>(KO_TYPE_METADATA, name);
  if (m == nullptr) {
    ko::report_no_memory(err, kSource, name);
    return nullptr;
  }
  store_extent(m->gcs_extent, gcs, ko_gcs_extent_empty, ko_gcs_extent_copy);
  store_extent(m->vcs_extent, vcs, ko_vcs_extent_empty, ko_vcs_extent_copy);
  store_extent(m->time_extent, time, ko_time_extent_empty, ko_time_extent_copy);
  ko::copy_field(m->scope, scope);
  m->area_code = area_code;
  return m;
}

}  // namespace

extern "C" {

// A name or scope that does not fit is refused with warning 354.
ko_metadata *ko_metadata_ext_new_errext(const char *name, const char *scope,
                                        const ko_gcs_extent *gcs_extent,
                                        const ko_vcs_extent *vcs_extent,
                                        const ko_time_extent *time_extent, uint32_t area_code,
                                        ko_err *err) {
  ko_err_clear(err);
  if (name == nullptr) name = "";
  bool fits = true;
  if (!ko::fits<KO_NAME_SIZE>(name)) {
    ko::report_too_long(err, kSource, name);
    fits = false;
  }
  if (!ko::fits<sizeof(ko_metadata::scope)>(scope)) {
    ko::report_too_long(err, kSource, scope);
    fits = false;
  }
  if (!fits) return nullptr;
  return make_metadata(name, scope, gcs_extent, vcs_extent, time_extent, area_code, err);
}

ko_metadata *ko_metadata_ext_new(const char *name, const char *scope,
                                 const ko_gcs_extent *gcs_extent,
                                 const ko_vcs_extent *vcs_extent,
                                 const ko_time_extent *time_extent, uint32_t area_code) {
  return ko_metadata_ext_new_errext(name, scope, gcs_extent, vcs_extent, time_extent, area_code,
                                    nullptr);
}

ko_metadata *ko_metadata_new_errext(const char *name, const ko_gcs_extent *gcs_extent,
                                    uint32_t area_code, ko_err *err) {
  return ko_metadata_ext_new_errext(name, nullptr, gcs_extent, nullptr, nullptr, area_code, err);
}

ko_metadata *ko_metadata_new(const char *name, const ko_gcs_extent *gcs_extent,
                             uint32_t area_code) {
  return ko_metadata_ext_new_errext(name, nullptr, gcs_extent, nullptr, nullptr, area_code,
                                    nullptr);
}

int ko_metadata_p(const void *obj) {
  return ko::as<const ko_metadata>(obj, KO_TYPE_METADATA) != nullptr;
}

ko_metadata *ko_metadata_clone(const ko_metadata *m) {
  if (live(m) == nullptr) return nullptr;
  ko::Unique<ko_metadata> copy(make_metadata(ko_header_get_name(m), m->scope, &m->gcs_extent,
                                             &m->vcs_extent, &m->time_extent, m->area_code,
                                             nullptr));
  if (copy == nullptr || !ko::header_copy_checked(copy.get(), m)) return nullptr;
  return copy.release();
}

ko_metadata *ko_metadata_del(ko_metadata *m) {
  return ko::release_object(ko::as<ko_metadata>(m, KO_TYPE_METADATA));
}

// Same name (the library's name comparison) and equal extents; scope and
// area code do not matter.
int ko_metadata_eq(const ko_metadata *a, const ko_metadata *b) {
  if (live(a) == nullptr || live(b) == nullptr) return 0;
  return ko_strcmp_ci(ko_header_get_name(a), ko_header_get_name(b)) == 0 &&
         ko_gcs_extent_eq(&a->gcs_extent, &b->gcs_extent) &&
         ko_vcs_extent_eq(&a->vcs_extent, &b->vcs_extent) &&
         ko_time_extent_eq(&a->time_extent, &b->time_extent);
}

char *ko_metadata_scope(const ko_metadata *m, char *buf) {
  if (buf == nullptr) return nullptr;
  buf[0] = '\0';
  if (live(m) != nullptr) ko_strncpy(buf, m->scope, static_cast<int>(sizeof m->scope));
  return buf;
}

void ko_metadata_scope_set(ko_metadata *m, const char *scope) {
  if (live(m) != nullptr) ko::copy_field(m->scope, scope);
}

uint32_t ko_metadata_areacode(const ko_metadata *m) {
  return live(m) != nullptr ? m->area_code : 0;
}

void ko_metadata_areaname_set(ko_metadata *m, const char *name) {
  if (live(m) != nullptr) ko_header_set_name(m, name);
}

// The copying getters fill `out` (cleared when there is no metadata) and
// return it.
ko_gcs_extent *ko_metadata_gcs_extent(const ko_metadata *m, ko_gcs_extent *out) {
  ko_gcs_extent_copy(out, live(m) != nullptr ? &m->gcs_extent : nullptr);
  return out;
}

ko_vcs_extent *ko_metadata_vcs_extent(const ko_metadata *m, ko_vcs_extent *out) {
  ko_vcs_extent_copy(out, live(m) != nullptr ? &m->vcs_extent : nullptr);
  return out;
}

ko_time_extent *ko_metadata_time_extent(const ko_metadata *m, ko_time_extent *out) {
  ko_time_extent_copy(out, live(m) != nullptr ? &m->time_extent : nullptr);
  return out;
}

const ko_gcs_extent *ko_metadata_gcs_extent_ptr(const ko_metadata *m) {
  return live(m) != nullptr ? &m->gcs_extent : nullptr;
}

const ko_vcs_extent *ko_metadata_vcs_extent_ptr(const ko_metadata *m) {
  return live(m) != nullptr ? &m->vcs_extent : nullptr;
}

const ko_time_extent *ko_metadata_time_extent_ptr(const ko_metadata *m) {
  return live(m) != nullptr ? &m->time_extent : nullptr;
}

// Copies a null-terminated list, skipping entries that are not metadata.
// All or nothing: when an allocation fails, nothing is left behind.
ko_metadata **ko_metadata_vector_clone(ko_metadata *const *vec) {
  if (vec == nullptr) return nullptr;
  std::size_t count = 0;
  while (vec[count] != nullptr) ++count;
  auto **copy = ko::alloc_array<ko_metadata *>(count + 1, "ko_metadata vector");
  if (copy == nullptr) return nullptr;
  std::size_t kept = 0;
  for (std::size_t i = 0; i < count; ++i) {
    if (live(vec[i]) == nullptr) continue;
    copy[kept] = ko_metadata_clone(vec[i]);
    if (copy[kept] == nullptr) return ko_metadata_vector_del(copy);
    ++kept;
  }
  return copy;
}

ko_metadata **ko_metadata_vector_del(ko_metadata **vec) {
  if (vec == nullptr) return nullptr;
  for (ko_metadata **entry = vec; *entry != nullptr; ++entry) ko_metadata_del(*entry);
  ko::free_object(vec, "ko_metadata vector");
  return nullptr;
}

constinit const ko_objvec ko_metadata_objvec =
    ko::make_objvec<ko_metadata, ko_metadata_clone, ko_metadata_del, ko_metadata_eq>(
        KO_TYPE_METADATA);

}  // extern "C"

KO_DEFINE_OBJECT_FORWARDS(metadata, ko_metadata)
