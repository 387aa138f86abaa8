// Generic operations on any object: type test, clone, delete and equal
// through the type's objvec, and the header fields, names, authority and
// display name every named object shares.
#include "objects/object.h"

namespace {

const ko_objvec *vector_of(const void *obj) {
  const ko_header *h = ko::live_header(obj);
  return h != nullptr ? ko_object_vector(h->type) : nullptr;
}

}  // namespace

extern "C" {

int ko_object_p(const void *obj) { return ko::live_header(obj) != nullptr; }

void *ko_object_clone(const void *obj) {
  const ko_objvec *vec = vector_of(obj);
  return vec != nullptr ? vec->clone(obj) : nullptr;
}

void *ko_object_del(void *obj) {
  if (const ko_objvec *vec = vector_of(obj)) vec->del(obj);
  return nullptr;
}

// Objects of types without a common bit are never equal; otherwise the
// first object's type decides (so a geographic system never equals a
// projected one, while the unit types compare through their own rules).
int ko_object_eq(const void *a, const void *b) {
  const ko_header *ha = ko::live_header(a);
  const ko_header *hb = ko::live_header(b);
  if (ha == nullptr || hb == nullptr || (ha->type & hb->type) == 0) return 0;
  const ko_objvec *vec = ko_object_vector(ha->type);
  return vec != nullptr ? vec->eq(a, b) : 0;
}

uint32_t ko_object_type(const void *obj) { return ko_header_get_type(obj); }
uint32_t ko_object_status(const void *obj) { return ko_header_get_status(obj); }
void ko_object_status_set(void *obj, uint32_t status) { ko_header_set_status(obj, status); }
uint32_t ko_object_dbid(const void *obj) { return ko_header_get_dbid(obj); }
int32_t ko_object_code(const void *obj) { return ko_header_get_code_external(obj); }
int32_t ko_object_code_external(const void *obj) { return ko_header_get_code_external(obj); }
int32_t ko_object_code_internal(const void *obj) { return ko_header_get_code_internal(obj); }
int32_t ko_object_get_orig_code(const void *obj) { return ko_header_get_orig_code(obj); }
int32_t ko_object_is_hidden(const void *obj) { return ko_header_get_hidden(obj); }
void ko_object_hidden_set(void *obj, int32_t hidden) { ko_header_set_hidden(obj, hidden); }
int32_t ko_object_string_type(const void *obj) { return ko_header_get_str_type(obj); }

void ko_object_code_set(void *obj, int32_t internal_code, int32_t external_code,
                        int32_t orig_code, uint32_t dbid, const char *auth_name,
                        const char *auth_version) {
  if (ko::live_info(obj) == nullptr) return;
  ko_header_set_code_internal(obj, internal_code);
  ko_header_set_code_external(obj, external_code);
  ko_header_set_orig_code(obj, orig_code);
  ko_header_set_dbid(obj, dbid);
  ko_header_set_auth_name(obj, auth_name);
  ko_header_set_auth_ver(obj, auth_version);
}

// The name as first given when there is one, else the current name.
char *ko_object_name(const void *obj, char *buf) {
  if (buf == nullptr) return nullptr;
  buf[0] = '\0';
  const ko_header_info *info = ko::live_info(obj);
  if (info == nullptr) return buf;
  ko_strncpy(buf, info->orig_name[0] != '\0' ? info->orig_name : info->name, KO_NAME_SIZE);
  return buf;
}

// The authority held, or one made on first use from the authority name,
// external code and version of the header (which then owns it).  This is
// why even a getter writes to the object.
ko_authority *ko_object_authority(void *obj) {
  ko_header_info *info = ko::live_info(obj);
  if (info == nullptr) return nullptr;
  if (info->authority == nullptr && info->code_external >= 1 && info->auth_name[0] != '\0')
    info->authority = ko_authority_new(info->auth_name, info->code_external, info->auth_version);
  return info->authority;
}

const ko_authority *ko_object_authority_const(const void *obj) {
  return ko_header_get_authority(obj);
}

void ko_object_authority_set(void *obj, ko_authority *authority) {
  ko_header_set_authority(obj, authority);
}

ko_dispname *ko_object_dispname(const void *obj) { return ko_header_get_dispname(obj); }

void ko_object_dispname_set(void *obj, ko_dispname *dispname) {
  ko_header_set_dispname(obj, dispname);
}

ko_uchar *ko_object_uname(const void *obj, ko_uchar *buf) {
  if (buf == nullptr) return nullptr;
  buf[0] = 0;
  const ko_header_info *info = ko::live_info(obj);
  if (info == nullptr) return buf;
  if (info->dispname != nullptr) return ko_dispname_uname(info->dispname, buf);
  ko_str_utf8_to_uni(buf, info->name, KO_NAME_SIZE);
  return buf;
}

void ko_object_uname_set(void *obj, const ko_uchar *text) {
  if (ko::live_info(obj) == nullptr) return;
  ko_header_set_dispname(obj, nullptr);
  if (text != nullptr && text[0] != 0) ko_header_set_dispname(obj, ko_dispname_new_u(text));
}

ko_uchar *ko_object_uname_ext(const void *obj, int flags, ko_uchar *buf) {
  if (buf == nullptr) return nullptr;
  buf[0] = 0;
  const ko_header_info *info = ko::live_info(obj);
  if (info == nullptr) return buf;
  const char *name = info->name[0] != '\0' ? info->name : nullptr;
  ko_str_names_to_buf(buf, KO_NAME_SIZE, flags, name, ko_dispname_uname_get(info->dispname));
  return buf;
}

}  // extern "C"
