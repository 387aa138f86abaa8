// The machinery every WKT1 reader and writer shares (see formats/wkt1.h).
#include "formats/wkt1.h"

#include <cstdio>

namespace ko::wkt1 {

namespace {

bool keyword_is(const char *text, const char *keyword) {
  return keyword != nullptr && ko_strcmp_i(text, keyword) == 0;
}

bool is_keyword(const ko_wkt_token &t) { return (t.flags & KO_WKT_TOKEN_KEYWORD) != 0; }

// Index of the child kind a keyword belongs to, or -1.
int kind_of(std::span<const ChildKind> kinds, const char *keyword) {
  for (std::size_t k = 0; k < kinds.size(); ++k)
    if (keyword_is(keyword, kinds[k].keyword) || keyword_is(keyword, kinds[k].alt))
      return static_cast<int>(k);
  return -1;
}

// Remembers a single-valued child; a second one is its duplicate error.
bool note_single(const Reader &r, const Node &node, int &slot, int index, int duplicate_error) {
  if (slot >= 0) {
    report(r.err, duplicate_error, node.keyword, node.name);
    return false;
  }
  slot = index;
  return true;
}

// Name comparisons: exact (ignoring case only) or the library's way
// (ignoring case, white space and ( ) - / \ _ too).
using NameCompare = int (*)(const char *, const char *);

// The first of count names (at(i) gives the i-th) equal to name.
template <class At>
const char *own_in_list(int count, At at, const char *name, NameCompare same) {
  for (int i = 0; i < count; ++i)
    if (const char *own = at(i); same(own, name) == 0) return own;
  return nullptr;
}

// The library's own spelling of a name of the type, when the name is one
// of the library's names under the comparison: the method-like types'
// lists, else the catalogue's data records.
const char *own_name(uint32_t type, const char *name, NameCompare same) {
  switch (type) {
    case KO_TYPE_PARAMETER:
      return own_in_list(ko_parmlist_count(), [](int i) { return ko_parmlist_tbl[i].name; }, name, same);
    case KO_TYPE_PROJECTION:
      return own_in_list(ko_projlist_count(), [](int i) { return ko_projlist_from_indx(i)->name; }, name, same);
    case KO_TYPE_METHOD:
      return own_in_list(ko_methlist_count(), [](int i) { return ko_methlist_from_indx(i)->name; }, name, same);
    case KO_TYPE_VTMETHOD:
      return own_in_list(ko_vtmethlist_count(), [](int i) { return ko_vtmethlist_from_indx(i)->name; }, name, same);
    case KO_TYPE_HTMETHOD:
      return own_in_list(ko_htmethlist_count(), [](int i) { return ko_htmethlist_from_indx(i)->name; }, name, same);
    default:
      break;
  }
  for (const ko_db_builtin_entry *row = ko_db_builtin_registry; row->type != 0; ++row) {
    if ((row->type & type) != row->type || row->data == nullptr) continue;
    // Every data record starts with its name.
    auto *record = static_cast<const char *const *>(ko_db_builtin_data_lookup_name(row, name));
    if (record != nullptr && same(*record, name) == 0) return *record;
  }
  return nullptr;
}

}  // namespace

void report(ko_err *err, int number, const char *source, const char *message, int severity) {
  ko_err_str(err, severity, KO_ERRCAT_PARSE, number, source, message);
}

void report_tokens(ko_err *err, const ko_wkt_tokens &list, const char *keyword) {
  if (list.err_number == 0) return;
  const char *message = list.err_message[0] != '\0' ? list.err_message : nullptr;
  ko_err_str(err, list.err_severity, KO_ERRCAT_PARSE, list.err_number, keyword, message);
}

int subtree_end(const ko_wkt_tokens &list, int index) {
  int depth = list.tokens[index].depth;
  int j = index + 1;
  while (j < list.count && list.tokens[j].depth > depth) ++j;
  return j;
}

bool open_node(const Reader &r, int index, const char *keyword, const char *alt, Node &node) {
  const ko_wkt_tokens &list = *r.list;
  node.keyword = keyword;
  if (index < 0 || index >= list.count) {
    char text[16];
    std::snprintf(text, sizeof text, "%d", index);
    report(r.err, 462, keyword, text);
    return false;
  }
  const ko_wkt_token &head = list.tokens[index];
  node.at = index;
  node.depth = head.depth;
  node.end = subtree_end(list, index);
  if (node.end - index < 2) {
    report(r.err, 459, keyword, head.text);
    return false;
  }
  if (!is_keyword(head) || !(keyword_is(head.text, keyword) || keyword_is(head.text, alt))) {
    report(r.err, 466, keyword, head.text);
    return false;
  }
  const ko_wkt_token &name = list.tokens[index + 1];
  if (is_keyword(name) || name.depth != head.depth + 1) {
    report(r.err, 465, keyword, name.text);
    return false;
  }
  node.name = name.text;
  return true;
}

bool scan_children(const Reader &r, const Node &node, std::span<const ChildKind> kinds,
                   Children &out) {
  const ko_wkt_tokens &list = *r.list;
  out.first.fill(-1);
  for (int i = node.at + 2; i < node.end;) {
    const ko_wkt_token &t = list.tokens[i];
    if (t.depth != node.depth + 1) {
      report(r.err, 460, node.keyword, t.text);
      return false;
    }
    int next = subtree_end(list, i);
    if (!is_keyword(t)) {
      out.values[out.value_count++] = i;
    } else if (int k = kind_of(kinds, t.text); k >= 0) {
      if (kinds[k].duplicate_error == 0) {
        out.repeats[out.repeat_count++] = Repeat{k, i};
      } else if (!note_single(r, node, out.first[k], i, kinds[k].duplicate_error)) {
        return false;
      }
    } else if (keyword_is(t.text, "AUTHORITY") || keyword_is(t.text, "ID")) {
      if (!note_single(r, node, out.authority, i, 403)) return false;
    } else if (keyword_is(t.text, "DISPNAME")) {
      if (!note_single(r, node, out.dispname, i, 470)) return false;
    } else if (keyword_is(t.text, "METADATA")) {
      out.metadata[out.metadata_count++] = i;
    } else if (keyword_is(t.text, "AUTOGENERATED")) {
      out.hidden = true;
    }
    i = next;
  }
  return true;
}

bool parse_number(const Reader &r, const char *text, const Node &node, double &value) {
  char *end = nullptr;
  double v = ko_strtod(text, &end);
  if (end == nullptr || end == text || *end != '\0') {
    report(r.err, 475, node.keyword, text);
    return false;
  }
  value = v;
  return true;
}

const char *value_text(const Reader &r, const Children &c, int k) {
  return k < c.value_count ? r.list->tokens[c.values[k]].text : nullptr;
}

bool value_number(const Reader &r, const Node &node, const Children &c, int k, int missing,
                  double &value) {
  const char *text = value_text(r, c, k);
  if (text == nullptr) {
    if (missing == 0) return true;
    report(r.err, missing, node.keyword, node.name);
    return false;
  }
  return parse_number(r, text, node, value);
}

void library_name(const Reader &r, uint32_t type, const Node &node, char (&out)[KO_NAME_SIZE]) {
  if (!fits<KO_NAME_SIZE>(node.name)) report_too_long(r.err, node.keyword, node.name);
  bool any_authority = r.authority == nullptr || r.authority[0] == '\0';
  const char *own = own_name(type, node.name, ko_strcmp_i);
  if (own == nullptr && any_authority) own = own_name(type, node.name, ko_strcmp_ci);
  if (own != nullptr)
    ko_strncpy(out, own, KO_NAME_SIZE);
  else
    ko_synonym_lookup_by_syn(type, node.name, r.authority, out);
}

bool read_metadata(const Reader &r, const Children &c, ko_metadata **&out) {
  out = nullptr;
  if (c.metadata_count == 0) return true;
  UniqueMetadata vec(alloc_array<ko_metadata *>(static_cast<std::size_t>(c.metadata_count) + 1,
                                                "ko_metadata vector"));
  if (vec == nullptr) {
    report_no_memory(r.err, "METADATA", "");
    return false;
  }
  int kept = 0;
  for (int k = 0; k < c.metadata_count; ++k) {
    Unique<ko_metadata> m;
    if (!read_child(r, c.metadata[k], ko_wkt_metadata_from_tokens, m)) return false;
    if (m != nullptr) vec.get()[kept++] = m.release();
  }
  if (kept > 0) out = vec.release();
  return true;
}

bool read_parameters(const Reader &r, const Node &node, const Children &c, int kind,
                     uint32_t categories, ParameterSlots &slots) {
  for (int k = 0; k < c.repeat_count; ++k) {
    if (c.repeats[k].kind != kind) continue;
    Unique<ko_parameter> p;
    if (!read_child(r, c.repeats[k].at, ko_wkt_parameter_from_tokens, p)) return false;
    if (p == nullptr) continue;
    const ko_parmlist_entry *row = ko_parmlist_from_code(ko_object_code_internal(p.get()));
    const char *name = ko_header_get_orig_name(p.get());
    if (row == nullptr) {
      report(r.err, 423, node.keyword, name);
      return false;
    }
    if ((row->category & categories) == 0) {
      report(r.err, 424, node.keyword, name);
      return false;
    }
    auto slot = static_cast<std::size_t>(row->index);
    if (slots.owned[slot] != nullptr) {
      report(r.err, 411, node.keyword, name);
      return false;
    }
    slots.ptrs[slot] = p.get();
    slots.owned[slot] = std::move(p);
  }
  return true;
}

bool read_coordsys(NodeRead &n, int geogcs_kind, int projcs_kind, Unique<void> &out) {
  int found = 0;
  for (int k = 0; k < n.c.repeat_count; ++k) {
    const Repeat &child = n.c.repeats[k];
    if (child.kind != geogcs_kind && child.kind != projcs_kind) continue;
    if (++found > 1) {
      report(n.r.err, 404, n.node.keyword, n.node.name);
      return false;
    }
    void *sys = child.kind == geogcs_kind
                    ? static_cast<void *>(ko_wkt_geogcs_from_tokens(n.r.list, n.r.authority, child.at, nullptr, n.r.err))
                    : static_cast<void *>(ko_wkt_projcs_from_tokens(n.r.list, n.r.authority, child.at, nullptr, n.r.err));
    if (sys == nullptr && n.r.err != nullptr) return false;
    out.reset(sys);
  }
  return true;
}

bool read_datum_and_primem(NodeRead &n, int datum_kind, int primem_kind, Unique<ko_datum> &datum,
                           Unique<ko_primem> &primem) {
  if (!read_child(n.r, n.c.first[datum_kind], ko_wkt_datum_from_tokens, datum) ||
      !read_child(n.r, n.c.first[primem_kind], ko_wkt_primem_from_tokens, primem))
    return false;
  if (datum != nullptr) return true;
  report(n.r.err, 431, n.node.keyword, n.node.name);
  return false;
}

bool read_accuracy(NodeRead &n, int at, double &accuracy) {
  if (at < 0) return true;
  const ko_wkt_tokens &list = *n.r.list;
  if (at + 1 >= n.node.end || list.tokens[at + 1].depth <= list.tokens[at].depth) {
    report(n.r.err, 475, n.node.keyword, "OPERATIONACCURACY");
    return false;
  }
  return parse_number(n.r, list.tokens[at + 1].text, n.node, accuracy);
}

bool read_extras(const Reader &r, const Children &c, Extras &extras) {
  extras.hidden = c.hidden;
  return read_child(r, c.authority, ko_wkt_authority_from_tokens, extras.authority) &&
         read_child(r, c.dispname, ko_wkt_dispname_from_tokens, extras.dispname);
}

void *finish_object(void *obj, const Node &node, Extras &extras) {
  if (live_info(obj) == nullptr) return obj;
  ko_header_set_status(obj, KO_STATUS_STRING);
  ko_header_set_str_type(obj, static_cast<int32_t>(KO_STR_FMT_WKT1));
  // A name too long for the field is not kept as read: cut, it might no
  // longer name what it named (the object keeps the name it was built
  // with, which the writers then use).
  if (fits<KO_NAME_SIZE>(node.name)) ko_header_set_orig_name(obj, node.name);
  if (extras.authority != nullptr) ko_header_set_authority(obj, extras.authority.release());
  if (extras.dispname != nullptr) ko_header_set_dispname(obj, extras.dispname.release());
  if (extras.hidden) ko_header_set_hidden(obj, 1);
  return obj;
}

// ---------------------------------------------------------------------------
// Writing.

bool has_name(const void *obj, const char *name) {
  char mapped[KO_NAME_SIZE];
  ko_synonym_lookup_by_syn(ko_header_get_type(obj), name, nullptr, mapped);
  const char *own = ko_header_get_name(obj);
  return ko_strcmp_ci(own, name) == 0 || ko_strcmp_ci(own, mapped) == 0 ||
         ko_strcmp_ci(ko_header_get_orig_name(obj), name) == 0;
}

Level level_of(uint32_t options) {
  Level level;
  level.child_options = options & ~KO_STR_SUBOBJECT;
  uint32_t auth = options & (KO_STR_AUTH_TOP | KO_STR_AUTH_ALL);
  uint32_t disp = options & (KO_STR_DISP_TOP | KO_STR_DISP_ALL);
  level.authority = auth == KO_STR_AUTH_TOP || auth == KO_STR_AUTH_ALL;
  level.dispname = disp == KO_STR_DISP_TOP || disp == KO_STR_DISP_ALL;
  if (auth == KO_STR_AUTH_TOP) level.child_options &= ~(KO_STR_AUTH_TOP | KO_STR_AUTH_ALL);
  if (disp == KO_STR_DISP_TOP) level.child_options &= ~(KO_STR_DISP_TOP | KO_STR_DISP_ALL);
  return level;
}

bool skip_object(const void *obj, uint32_t type, uint32_t options) {
  if (ko_header_is_type(obj, type) == 0) return true;
  return ko_header_get_hidden(obj) != 0 && (options & KO_STR_HIDDEN) == 0;
}

const char *choose_name(const void *obj, const char *authority, uint32_t options,
                        char (&out)[KO_NAME_SIZE]) {
  const char *name = ko_header_get_name(obj);
  const char *orig = ko_header_get_orig_name(obj);
  if ((options & KO_STR_CANONICAL_NAMES) != 0) {
    ko_strncpy(out, name, KO_NAME_SIZE);
  } else if (authority != nullptr && authority[0] != '\0') {
    ko_synonym_lookup_by_act(ko_header_get_type(obj), name, authority, out);
  } else {
    ko_strncpy(out, orig[0] != '\0' ? orig : name, KO_NAME_SIZE);
  }
  return out;
}

void put_header(text::TextOut &out, const char *keyword, const char *name) {
  out.put(keyword);
  out.put("[\"");
  out.put(name);
  out.put('"');
}

bool begin_node(text::TextOut &out, const void *obj, uint32_t type, const char *keyword,
                const char *authority, uint32_t options) {
  if (skip_object(obj, type, options)) return false;
  char name[KO_NAME_SIZE];
  put_header(out, keyword, choose_name(obj, authority, options, name));
  return true;
}

int write_name_only(const void *obj, uint32_t type, const char *keyword, const char *authority,
                    uint32_t options, int size, char *buf) {
  text::TextOut out(buf, size);
  if (begin_node(out, obj, type, keyword, authority, options)) put_tail(out, obj, nullptr, authority, options);
  return out.finish();
}

void put_number(text::TextOut &out, double value, uint32_t options) {
  char text[32];
  ko_dtoa(text, (options & KO_STR_FULL_PRECISION) != 0 ? 17 : 16, value);
  out.put(',');
  out.put(text);
}

void put_integer(text::TextOut &out, long long value) {
  char text[32];
  std::snprintf(text, sizeof text, ",%lld", value);
  out.put(text);
}

void put_quoted(text::TextOut &out, const char *text) {
  out.put(",\"");
  out.put(text);
  out.put('"');
}

void put_accuracy(text::TextOut &out, double accuracy, uint32_t options) {
  if (accuracy == 999.0) return;  // unknown
  char number[32];
  ko_dtoa(number, (options & KO_STR_FULL_PRECISION) != 0 ? 17 : 16, accuracy);
  out.put(",OPERATIONACCURACY[");
  out.put(number);
  out.put(']');
}

void put_parameters(text::TextOut &out, ko_parameter *const *parms, const char *authority,
                    uint32_t options, double (*value_of)(const ko_parameter *)) {
  if (parms == nullptr) return;
  for (int i = 0; i < KO_PARM_COUNT; ++i) {
    if (parms[i] == nullptr) continue;
    out.put_piece(",", [&](char *dst, int room) {
      return write_parameter(parms[i], value_of(parms[i]), authority, options, room, dst);
    });
  }
}

void put_tail(text::TextOut &out, const void *obj, ko_metadata *const *metadata,
              const char *authority, uint32_t options) {
  Level level = level_of(options);
  if (metadata != nullptr && (options & KO_STR_NO_METADATA) == 0) {
    for (ko_metadata *const *m = metadata; *m != nullptr; ++m)
      put_child(out, ko_wkt_metadata_to_str, *m, authority, level.child_options);
  }
  uint32_t own = options | KO_STR_SUBOBJECT;
  if (level.dispname) put_child(out, ko_wkt_dispname_to_str, ko_header_get_dispname(obj), authority, own);
  if (level.authority) put_authority_of(out, obj, own);
  if (ko_header_get_hidden(obj) != 0 && (options & KO_STR_HIDDEN) != 0) out.put(",AUTOGENERATED[]");
  out.put(']');
}

}  // namespace ko::wkt1
