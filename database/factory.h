// The factory: objects of the compiled-in catalogue built from their
// records.  The core (factory.cpp) resolves codes and names to records,
// reports failures and stamps each new object's header; one file per family
// of types turns a record into an object.  Internal: not installed.
#pragma once

#include "database/catalog.h"
#include "objects/object.h"

#include <array>
#include <cstdint>
#include <memory>
#include <span>

namespace ko::factory {

// Where a build reports: the caller's record and the public function that
// was called (the source of every report).
struct Context {
  ko_err *err;
  const char *source;
};

// A data record of the catalogue and the registry row it belongs to.
struct Found {
  const ko_db_builtin_entry *row = nullptr;
  const void *record = nullptr;
  int32_t code = 0;
};

// Turns a found data record into a new object.  The name comes from the
// record; codes, status, authority and display name are stamped by the
// core afterwards.  On failure the builder has reported (through ctx) and
// left nothing behind.
using Builder = void *(*)(const Found &found, Context &ctx);

// What the factory knows about one catalogue type.
struct Kind {
  uint32_t type;
  Builder build;
  const char *name_prefix;  // names may be given without it ("D_", "GCS_"), or null
  // The display name the catalogue has for a record, or null.
  const char *(*display)(const Found &found);
};

// The kind of a catalogue type code, or null when the factory builds no
// object of it.
const Kind *kind_of(uint32_t type);

// The builders, one family per file.
void *build_linunit(const Found &found, Context &ctx);
void *build_angunit(const Found &found, Context &ctx);
void *build_scaleunit(const Found &found, Context &ctx);
void *build_areaunit(const Found &found, Context &ctx);
void *build_spheroid(const Found &found, Context &ctx);
void *build_primem(const Found &found, Context &ctx);
void *build_datum(const Found &found, Context &ctx);
void *build_geogcs(const Found &found, Context &ctx);
void *build_projection(const Found &found, Context &ctx);
void *build_parameter(const Found &found, Context &ctx);
void *build_projcs(const Found &found, Context &ctx);
void *build_method(const Found &found, Context &ctx);
void *build_geogtran(const Found &found, Context &ctx);
void *build_vdatum(const Found &found, Context &ctx);
void *build_vertcs(const Found &found, Context &ctx);
void *build_gxyzcs(const Found &found, Context &ctx);
void *build_hvcoordsys(const Found &found, Context &ctx);
void *build_htmethod(const Found &found, Context &ctx);
void *build_vtmethod(const Found &found, Context &ctx);
void *build_verttran(const Found &found, Context &ctx);

// A part of a record (a system's datum, unit, projection ...): the object
// of exactly this code, without following code changes, with its own
// header fields.  A code the catalogue lacks is error 131 (category 4:
// the catalogue contradicts itself).
void *build_part(uint32_t type, int32_t code, Context &ctx);
template <class T>
T *build_part_as(uint32_t type, int32_t code, Context &ctx) {
  return static_cast<T *>(build_part(type, code, ctx));
}

// Gives an object made elsewhere (by a list's own constructor) the header
// fields of the catalogue record of `code`, as a part has them.  False
// after a report (131 when the record is missing).
bool stamp_part(void *obj, uint32_t type, int32_t code, Context &ctx);

// A parameter of the list with a value as the record stores it, without
// unit (the owning object gives it its unit); null after a report.
ko_parameter *build_bare_parameter(int32_t code, double value, Context &ctx);

// A record's run of a parameter pool; `texts` names the grid files of
// Dataset_ parameters (null for the projcs pool).
struct ParmRun {
  const ko_db_parm_rec *pool;
  int32_t pool_count;
  int32_t first;
  int32_t count;
  const char *const *texts;
  int32_t text_count;
};

// The 24 parameter slots of a run, each a bare parameter in the slot of
// its code.  False after a report (slots then emptied).
bool build_pool_parameters(const ParmRun &run, ko_parameter **slots, Context &ctx);
void delete_parameters(ko_parameter **slots);

// A null-terminated metadata vector owned until released.
struct MetadataVectorDeleter {
  void operator()(ko_metadata **vec) const { ko_metadata_vector_del(vec); }
};
using UniqueMetadata = std::unique_ptr<ko_metadata *, MetadataVectorDeleter>;

// The area of use of an object as a one-element metadata vector (name: the
// area's name, cut to 79 bytes; extent: its box; area code).  Null with ok
// = true when the object has none; null with ok = false after a report
// (out of memory).
UniqueMetadata area_metadata(const ko_db_builtin_entry *row, int32_t code, bool &ok,
                             Context &ctx);
// What a transformation's record gives besides its systems and method: its
// area of use, EPSG's remarks as a remark and its parameters.  Whatever is
// still held when the parts go is deleted; handed_over() lets go of all.
struct OperationParts {
  UniqueMetadata metadata;
  ko::Unique<ko_remark> remark;
  std::array<ko_parameter *, KO_PARM_COUNT> parms{};

  OperationParts() = default;
  OperationParts(const OperationParts &) = delete;
  OperationParts &operator=(const OperationParts &) = delete;
  ~OperationParts() { delete_parameters(parms.data()); }
  void handed_over() {
    static_cast<void>(metadata.release());
    static_cast<void>(remark.release());
    parms.fill(nullptr);
  }
};
bool operation_parts(const Found &found, const ParmRun &run, OperationParts &out, Context &ctx);

// The reference epoch of a dynamic datum record and its frame name (EPSG's
// name of the datum, else the record's name); false for a static datum.
struct Frame {
  const char *name;
  double epoch;
};
bool dynamic_frame(const Found &found, const char *record_name, Frame &out);

// The extent record of an area code, or null.
const ko_db_extent_rec *extent_record(int32_t area);
// A text cut to at most `size - 1` bytes without splitting a UTF-8
// character; returns out.
char *cut_utf8(char *out, std::size_t size, const char *text);

void report_no_memory(Context &ctx, const char *name);
// Error 131 (category 4): a record refers to a code the catalogue lacks.
void report_missing(Context &ctx, int32_t code);

// The code that replaced an old code through the row's code-change table
// (followed to its end), or the code itself.
int32_t current_code(const ko_db_builtin_entry *row, int32_t code);

// The catalogue types a type code stands for (one, or the members of a
// composite code such as KO_TYPE_UNIT); empty for a type the factory does
// not know.
std::span<const uint32_t> members_of(uint32_t type);

// Builds the object of a found record and stamps its header with status
// (plus the record's deprecated bits, and KO_STATUS_CODECHANGE when
// orig_code is not 0).  A record marked do-not-use is refused with 509,
// reported with the code the caller asked for.  Null after a report.
void *build_record(const Found &found, uint32_t status, int32_t requested, int32_t orig_code,
                   Context &ctx);

// The public paths: by code (following code changes) and by name.
void *from_code(uint32_t type, int32_t code, ko_err *err, const char *source);
void *from_name(uint32_t type, const char *name, ko_err *err, const char *source);

// The KO_STATUS_* bits of a deprecated record's flags.
uint32_t deprecated_status(int32_t flags);

}  // namespace ko::factory

// The four public functions of a type: by code and by name, each with an
// _errext form.  Use at file scope, without a trailing semicolon.
#define KO_DEFINE_FACTORY(prefix, T, type)                                               \
  extern "C" {                                                                           \
  T *ko_factory_##prefix##_from_code_errext(int32_t code, ko_err *err) {                 \
    return static_cast<T *>(                                                             \
        ko::factory::from_code(type, code, err, "ko_factory_" #prefix "_from_code_errext")); \
  }                                                                                      \
  T *ko_factory_##prefix##_from_code(int32_t code) {                                     \
    return ko_factory_##prefix##_from_code_errext(code, nullptr);                        \
  }                                                                                      \
  T *ko_factory_##prefix##_from_name_errext(const char *name, ko_err *err) {             \
    return static_cast<T *>(                                                             \
        ko::factory::from_name(type, name, err, "ko_factory_" #prefix "_from_name_errext")); \
  }                                                                                      \
  T *ko_factory_##prefix##_from_name(const char *name) {                                 \
    return ko_factory_##prefix##_from_name_errext(name, nullptr);                        \
  }                                                                                      \
  }
