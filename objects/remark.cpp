// Remark: a free text attached to an object, kept in UTF-16.
#include "objects/object.h"

struct ko_remark {
  ko_header header;  // no header record
  ko_uchar text[256];
};

namespace {

constexpr char kSource[] = "ko_remark_new_errext";

// Longest text accepted, in UTF-16 units; what is accepted is kept to the
// first 255 units.
constexpr int kMaxUnits = 767;

// Room to convert a refused text far enough to see that it is too long,
// even when the converter stops before a surrogate pair at the limit.
constexpr int kProbeUnits = kMaxUnits + 3;

const ko_remark *live(const ko_remark *r) { return ko::as<const ko_remark>(r, KO_TYPE_REMARK); }

ko_remark *make_remark(const ko_uchar *text, const char *text_utf8, ko_err *err) {
  auto *r = ko::make_object<ko_remark>(KO_TYPE_REMARK, nullptr);
  if (r == nullptr) {
    ko::report_no_memory(err, kSource, text_utf8);
    return nullptr;
  }
  ko::copy_units(r->text, text);
  return r;
}

}  // namespace

extern "C" {

ko_remark *ko_remark_new_errext(const char *utf8, ko_err *err) {
  ko_err_clear(err);
  if (utf8 == nullptr) utf8 = "";
  ko_uchar units[kProbeUnits];
  if (ko_str_utf8_to_uni(units, utf8, kProbeUnits) > kMaxUnits) {
    ko_err_set(err, KO_SEV_ERROR, KO_ERRCAT_ARGUMENT, 357, kSource);
    return nullptr;
  }
  return make_remark(units, utf8, err);
}

ko_remark *ko_remark_new(const char *utf8) { return ko_remark_new_errext(utf8, nullptr); }

int ko_remark_p(const void *obj) { return ko::as<const ko_remark>(obj, KO_TYPE_REMARK) != nullptr; }

ko_remark *ko_remark_clone(const ko_remark *r) {
  if (live(r) == nullptr) return nullptr;
  ko_remark *copy = make_remark(r->text, "", nullptr);
  if (copy != nullptr) ko_header_copy_int(copy, r);
  return copy;
}

ko_remark *ko_remark_del(ko_remark *r) {
  return ko::release_object(ko::as<ko_remark>(r, KO_TYPE_REMARK));
}

int ko_remark_eq(const ko_remark *a, const ko_remark *b) {
  if (live(a) == nullptr || live(b) == nullptr) return 0;
  return ko_strcmp_u(a->text, b->text) == 0;
}

// buf holds at least 768 bytes: 255 units of UTF-16 need at most 765 bytes
// of UTF-8.
char *ko_remark_text(const ko_remark *r, char *buf) {
  if (buf == nullptr) return nullptr;
  buf[0] = '\0';
  if (live(r) != nullptr) ko_str_uni_to_utf8(buf, r->text, kMaxUnits + 1);
  return buf;
}

constinit const ko_objvec ko_remark_objvec =
    ko::make_objvec<ko_remark, ko_remark_clone, ko_remark_del, ko_remark_eq>(KO_TYPE_REMARK);

}  // extern "C"

KO_DEFINE_TYPE_FORWARD(remark, ko_remark)
