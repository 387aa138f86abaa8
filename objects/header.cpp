// The object header: magic, type code and the header record with names,
// codes, status, authority and display name.  Every accessor first checks
// the live magic (and, for record fields, that the record exists), so null
// and stale pointers read as "no object".
#include "objects/object.h"

namespace {

// Getters return these when there is no live record to read from.
constexpr char kNoText[] = "";

ko_header *header_or_null(const void *obj) { return ko::live_header(obj); }
ko_header_info *info_or_null(const void *obj) { return ko::live_info(obj); }

// Record fields through pointers to members: a getter gives 0 (or an empty
// text) without a live record, a setter then does nothing.  Text setters
// copy cut to the field, null counting as empty.
template <auto Field>
auto number_field(const void *obj) {
  const ko_header_info *info = info_or_null(obj);
  return info != nullptr ? info->*Field : 0;
}

template <auto Field, class V>
void set_number_field(void *obj, V value) {
  if (ko_header_info *info = info_or_null(obj)) info->*Field = value;
}

template <auto Field>
const char *text_field(const void *obj) {
  const ko_header_info *info = info_or_null(obj);
  return info != nullptr ? info->*Field : kNoText;
}

template <auto Field>
void set_text_field(void *obj, const char *text) {
  if (ko_header_info *info = info_or_null(obj)) ko::copy_field(info->*Field, text);
}

// Drops the authority and display name a record owns.
void drop_owned(ko_header_info *info) {
  info->authority = ko_authority_del(info->authority);
  info->dispname = ko_dispname_del(info->dispname);
}

// Resets the code fields the way ko_header_clear documents it.
void clear_info(ko_header_info *info) {
  drop_owned(info);
  info->code_external = -1;
  info->code_internal = -1;
  info->orig_code = 0;
  info->str_type = 0;
  info->auth_name[0] = '\0';
  info->auth_version[0] = '\0';
}

// Copies the plain fields of a record (not authority and display name).
void copy_plain_fields(ko_header_info *dst, const ko_header_info *src) {
  dst->status = src->status;
  dst->dbid = src->dbid;
  dst->code_external = src->code_external;
  dst->code_internal = src->code_internal;
  dst->orig_code = src->orig_code;
  dst->hidden = src->hidden;
  dst->str_type = src->str_type;
  ko::copy_field(dst->name, src->name);
  ko::copy_field(dst->orig_name, src->orig_name);
  ko::copy_field(dst->auth_name, src->auth_name);
  ko::copy_field(dst->auth_version, src->auth_version);
}

// Copies magic, type and the record's plain fields.  False only when the
// destination needed a record and could not get one.
bool copy_int(void *dst, const void *src) {
  const ko_header *s = header_or_null(src);
  ko_header *d = header_or_null(dst);
  if (s == nullptr || d == nullptr || d == s) return true;
  d->magic = s->magic;
  d->type = s->type;
  if (s->info == nullptr) return true;
  if (d->info == nullptr) {
    d->info = ko::alloc_object<ko_header_info>("ko_header_info");
    if (d->info == nullptr) return false;
    ko::header_info_init(d->info, nullptr);
  }
  copy_plain_fields(d->info, s->info);
  return true;
}

}  // namespace

namespace ko {

void header_info_init(ko_header_info *info, const char *name) {
  *info = ko_header_info{};
  info->status = KO_STATUS_NEW;
  info->code_external = -1;
  info->code_internal = -1;
  copy_field(info->name, name);
}

bool header_copy_checked(void *dst, const void *src) {
  if (!copy_int(dst, src)) return false;
  ko_header_info *d = info_or_null(dst);
  const ko_header_info *s = info_or_null(src);
  if (d == nullptr || s == nullptr || d == s) return true;
  drop_owned(d);
  if (s->authority != nullptr) {
    d->authority = ko_authority_clone(s->authority);
    if (d->authority == nullptr) return false;
  }
  if (s->dispname != nullptr) {
    d->dispname = ko_dispname_clone(s->dispname);
    if (d->dispname == nullptr) return false;
  }
  return true;
}

}  // namespace ko

extern "C" {

void ko_header_init(void *obj, uint32_t type, const char *name) {
  auto *h = static_cast<ko_header *>(obj);
  if (h == nullptr) return;
  h->magic = KO_MAGIC_LIVE;
  h->type = type;
  h->info = nullptr;
  if (name == nullptr) return;
  // Without memory the object simply has no record; constructors check.
  h->info = ko::alloc_object<ko_header_info>("ko_header_info");
  if (h->info != nullptr) ko::header_info_init(h->info, name);
}

ko_header *ko_header_get(const void *obj) { return header_or_null(obj); }

int ko_header_is_valid(const void *obj) { return header_or_null(obj) != nullptr; }

int ko_header_is_type(const void *obj, uint32_t mask) {
  const ko_header *h = header_or_null(obj);
  return h != nullptr && (h->type & mask) != 0;
}

uint32_t ko_header_get_type(const void *obj) {
  const ko_header *h = header_or_null(obj);
  return h != nullptr ? h->type : 0;
}

void ko_header_set_type(void *obj, uint32_t type) {
  if (ko_header *h = header_or_null(obj)) h->type = type;
}

uint32_t ko_header_get_status(const void *obj) { return number_field<&ko_header_info::status>(obj); }
void ko_header_set_status(void *obj, uint32_t v) { set_number_field<&ko_header_info::status>(obj, v); }
uint32_t ko_header_get_dbid(const void *obj) { return number_field<&ko_header_info::dbid>(obj); }
void ko_header_set_dbid(void *obj, uint32_t v) { set_number_field<&ko_header_info::dbid>(obj, v); }

int32_t ko_header_get_code_internal(const void *obj) {
  return number_field<&ko_header_info::code_internal>(obj);
}
void ko_header_set_code_internal(void *obj, int32_t v) {
  set_number_field<&ko_header_info::code_internal>(obj, v);
}
int32_t ko_header_get_code_external(const void *obj) {
  return number_field<&ko_header_info::code_external>(obj);
}
void ko_header_set_code_external(void *obj, int32_t v) {
  set_number_field<&ko_header_info::code_external>(obj, v);
}
int32_t ko_header_get_orig_code(const void *obj) {
  return number_field<&ko_header_info::orig_code>(obj);
}
void ko_header_set_orig_code(void *obj, int32_t v) {
  set_number_field<&ko_header_info::orig_code>(obj, v);
}
int32_t ko_header_get_hidden(const void *obj) { return number_field<&ko_header_info::hidden>(obj); }
void ko_header_set_hidden(void *obj, int32_t v) { set_number_field<&ko_header_info::hidden>(obj, v); }
int32_t ko_header_get_str_type(const void *obj) {
  return number_field<&ko_header_info::str_type>(obj);
}
void ko_header_set_str_type(void *obj, int32_t v) {
  set_number_field<&ko_header_info::str_type>(obj, v);
}

const char *ko_header_get_name(const void *obj) { return text_field<&ko_header_info::name>(obj); }
void ko_header_set_name(void *obj, const char *t) { set_text_field<&ko_header_info::name>(obj, t); }
const char *ko_header_get_orig_name(const void *obj) {
  return text_field<&ko_header_info::orig_name>(obj);
}
void ko_header_set_orig_name(void *obj, const char *t) {
  set_text_field<&ko_header_info::orig_name>(obj, t);
}
const char *ko_header_get_auth_name(const void *obj) {
  return text_field<&ko_header_info::auth_name>(obj);
}
void ko_header_set_auth_name(void *obj, const char *t) {
  set_text_field<&ko_header_info::auth_name>(obj, t);
}
const char *ko_header_get_auth_ver(const void *obj) {
  return text_field<&ko_header_info::auth_version>(obj);
}
void ko_header_set_auth_ver(void *obj, const char *t) {
  set_text_field<&ko_header_info::auth_version>(obj, t);
}

ko_authority *ko_header_get_authority(const void *obj) {
  const ko_header_info *info = info_or_null(obj);
  return info != nullptr ? info->authority : nullptr;
}

ko_dispname *ko_header_get_dispname(const void *obj) {
  const ko_header_info *info = info_or_null(obj);
  return info != nullptr ? info->dispname : nullptr;
}

// The two owning setters take the new object only when it is null or a live
// object of the right type; anything else (and the object already held) is
// left alone, so that a caller's mistake cannot free memory twice.
void ko_header_set_authority(void *obj, ko_authority *authority) {
  ko_header_info *info = info_or_null(obj);
  if (info == nullptr || info->authority == authority) return;
  if (authority != nullptr && !ko_authority_p(authority)) return;
  ko_authority_del(info->authority);
  info->authority = authority;
}

void ko_header_set_dispname(void *obj, ko_dispname *dispname) {
  ko_header_info *info = info_or_null(obj);
  if (info == nullptr || info->dispname == dispname) return;
  if (dispname != nullptr && !ko_dispname_p(dispname)) return;
  ko_dispname_del(info->dispname);
  info->dispname = dispname;
}

void ko_header_copy_int(void *dst, const void *src) { copy_int(dst, src); }

void ko_header_copy(void *dst, const void *src) { ko::header_copy_checked(dst, src); }

void ko_header_clear(void *obj) {
  if (ko_header_info *info = info_or_null(obj)) clear_info(info);
}

void ko_header_del(void *obj) {
  ko_header *h = header_or_null(obj);
  if (h == nullptr) return;
  h->magic = KO_MAGIC_DEAD;
  if (h->info != nullptr) {
    clear_info(h->info);
    ko::free_object(h->info, "ko_header_info");
    h->info = nullptr;
  }
}

}  // extern "C"
