/*
 * ko: coordinate reference systems and coordinate conversion.
 *
 * The whole public interface of libko, as a flat C99 API over opaque
 * object handles.  Conventions that hold for every function here:
 *
 *  - Every object starts with a common header; a pointer whose header does
 *    not carry the live magic is "no object".  Every function accepts null
 *    and stale pointers: getters then return 0, 0.0, an empty text or null,
 *    setters and deletes do nothing, equality gives 0.
 *  - The caller owns what it creates and frees it with the type's _del or
 *    with ko_object_del.  A composite object owns the sub-objects handed to
 *    its constructor; getters return borrowed pointers; setters take
 *    ownership and delete what they replace; clones are deep.  Every _del
 *    returns null so that callers can write  p = ko_x_del(p);
 *  - Operations that can fail have an _errext form taking a caller-owned
 *    ko_err record last; the record is cleared on entry and keeps the most
 *    severe report.  The plain form passes null.
 *  - Text writers return 0 when the text fits, otherwise they empty the
 *    buffer and return the length that was needed.
 *  - Point functions convert arrays in place and return the number of
 *    points converted, 0 when nothing could be done and -1 for invalid
 *    arguments.
 *  - Angles are radians and lengths metres inside the engine; units are
 *    applied only at the edges (object units, point functions).
 */
#ifndef KO_H
#define KO_H

#include <stdarg.h>
#include <stddef.h>
#include <stdint.h>

#if defined(__GNUC__)
#define KO_API __attribute__((visibility("default")))
#else
#define KO_API
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* ======================================================================
 * Opaque object types.  Every one begins with the common object header.
 * ====================================================================== */
typedef struct ko_header ko_header;
typedef struct ko_header_info ko_header_info;
typedef struct ko_authority ko_authority;
typedef struct ko_dispname ko_dispname;
typedef struct ko_remark ko_remark;
typedef struct ko_metadata ko_metadata;
typedef struct ko_linunit ko_linunit;
typedef struct ko_angunit ko_angunit;
typedef struct ko_scaleunit ko_scaleunit;
typedef struct ko_areaunit ko_areaunit;
typedef struct ko_unit ko_unit;
typedef struct ko_spheroid ko_spheroid;
typedef struct ko_primem ko_primem;
typedef struct ko_datum ko_datum;
typedef struct ko_vdatum ko_vdatum;
typedef struct ko_geogcs ko_geogcs;
typedef struct ko_projcs ko_projcs;
typedef struct ko_vertcs ko_vertcs;
typedef struct ko_gxyzcs ko_gxyzcs;
typedef struct ko_hvcoordsys ko_hvcoordsys;
typedef struct ko_axis ko_axis;
typedef struct ko_parameter ko_parameter;
typedef struct ko_projection ko_projection;
typedef struct ko_conversion ko_conversion;
typedef struct ko_method ko_method;
typedef struct ko_htmethod ko_htmethod;
typedef struct ko_vtmethod ko_vtmethod;
typedef struct ko_geogtran ko_geogtran;
typedef struct ko_verttran ko_verttran;
typedef struct ko_array ko_array;
typedef struct ko_epoch ko_epoch;
typedef struct ko_adjhcs ko_adjhcs;
typedef struct ko_constants ko_constants;
typedef struct ko_mutex ko_mutex;

/* UTF-16 code unit, used by display names, plurals and remarks. */
typedef uint16_t ko_uchar;

/* ======================================================================
 * Error reporting
 * ====================================================================== */

/* Severities, in rising order; a record keeps the most severe report. */
#define KO_SEV_NONE 0
#define KO_SEV_INFO 1
#define KO_SEV_WARNING 2
#define KO_SEV_ERROR 4

/* Categories: the area that reported. */
#define KO_ERRCAT_MEMORY 1      /* memory and locking */
#define KO_ERRCAT_OBJECT 2      /* objects from database entries, factory */
#define KO_ERRCAT_DBCONTENT 4   /* database contents */
#define KO_ERRCAT_ARGUMENT 8    /* arguments of constructors and operations */
#define KO_ERRCAT_PARSE 16      /* text parsing */
#define KO_ERRCAT_DATABASE 32   /* database registry, external databases */
#define KO_ERRCAT_PROJPROPS 64  /* projection properties */

#define KO_ERR_TEXT_SIZE 256

/* The caller-owned error record (524 bytes). */
typedef struct ko_err {
  int32_t severity;
  int32_t category;
  int32_t number;
  char source[KO_ERR_TEXT_SIZE];
  char message[KO_ERR_TEXT_SIZE];
} ko_err;

/* One message of a language table; an array ends with number -1, text null. */
typedef struct ko_errtbl_entry {
  int32_t number;
  const char *text;
} ko_errtbl_entry;

/* A language table (80 bytes). */
typedef struct ko_errtbl {
  char language[64];
  const ko_errtbl_entry *entries;
  int32_t count;
} ko_errtbl;

/* Message callback: user data and a read-only view of the new report. */
typedef void (*ko_msg_callback)(void *userdata, const ko_err *report);

KO_API extern const ko_errtbl ko_errtbl_en;
/* Null-terminated list of language tables; the first is the default. */
KO_API extern const ko_errtbl *const ko_msg_tbl_list[];

KO_API void ko_err_clear(ko_err *err);
KO_API void ko_err_str(ko_err *err, int severity, int category, int number,
                       const char *source, const char *message);
KO_API void ko_err_set(ko_err *err, int severity, int category, int number,
                       const char *source);
/* type is one of "s" (const char *), "d" (int), "x" (unsigned), "f" (double). */
KO_API void ko_err_arg(ko_err *err, int severity, int category, int number,
                       const char *source, const char *type, ...);
KO_API void ko_err_fmt(ko_err *err, int severity, int category, int number,
                       const char *source, const char *format, ...);
KO_API void ko_err_var(ko_err *err, int severity, int category, int number,
                       const char *source, const char *format, va_list args);
/* Renders one value by type letter into buf (at least 256 bytes). */
KO_API char *ko_err_buf(char *buf, int number, const char *type, ...);
/* Table text of number in the current language (digits when unknown). */
KO_API char *ko_err_num_to_str(char *buf, int number);
KO_API const ko_errtbl *ko_err_language_set(const char *name);
/* Copies the current language's name into buf (64 bytes). */
KO_API char *ko_err_language_get(char *buf);
KO_API void ko_msg_setrtn(void *userdata, int severity_mask, int category_mask,
                          ko_msg_callback callback);
KO_API void ko_msg_getrtn(void **userdata, int *severity_mask, int *category_mask,
                          ko_msg_callback *callback);

/* ======================================================================
 * Runtime services: memory, mutexes, strings, number text, environment
 * ====================================================================== */

/* A caller's allocator.  tag is the third argument of the _rtn calls. */
typedef void *(*ko_alloc_fn)(void *userdata, size_t size, const char *tag);
typedef void *(*ko_realloc_fn)(void *userdata, void *ptr, size_t size, const char *tag);
typedef void (*ko_free_fn)(void *userdata, void *ptr, const char *tag);

KO_API void *ko_allocate_rtn(size_t size, int flags, const char *tag);
KO_API void *ko_reallocate_rtn(void *ptr, size_t size, const char *tag);
KO_API void *ko_deallocate_rtn(void *ptr, int flags, const char *tag);
KO_API void *ko_memalloc(size_t size);
KO_API void *ko_memrealloc(void *ptr, size_t size);
KO_API void *ko_memdealloc(void *ptr);
/* Installs a caller's allocator: only when all three functions are given and
 * nothing has been allocated yet; otherwise it does nothing. */
KO_API void ko_memsetfunc(void *userdata, ko_alloc_fn alloc_fn,
                          ko_realloc_fn realloc_fn, ko_free_fn free_fn);
KO_API void *ko_sysmem_malloc(size_t size);
KO_API void *ko_sysmem_calloc(size_t count, size_t size);
KO_API void *ko_sysmem_realloc(void *ptr, size_t size);
KO_API void ko_sysmem_free(void *ptr);
KO_API char *ko_sysmem_strdup(const char *text);
KO_API void ko_mem_set_exitrtn(void (*exit_routine)(void));

KO_API ko_mutex *ko_mutex_create(void);
KO_API void ko_mutex_enter(ko_mutex *mutex);
KO_API void ko_mutex_leave(ko_mutex *mutex);
KO_API ko_mutex *ko_mutex_delete(ko_mutex *mutex);

/* Bounded copies: at most size - 1 units, always terminated; the result is
 * the number of units copied.  A null source counts as empty. */
KO_API int ko_strncpy(char *dst, const char *src, int size);
KO_API int ko_strncpy_u(ko_uchar *dst, const ko_uchar *src, int size);
KO_API int ko_strlen_u(const ko_uchar *text);
KO_API int ko_strcmp_u(const ko_uchar *a, const ko_uchar *b);
/* printf into buf: at most size - 1 characters, always terminated; returns
 * the length written, which is size - 1 when the text was cut. */
KO_API int ko_vsnprintf(char *buf, int size, const char *format, va_list args);
KO_API int ko_snprintf(char *buf, int size, const char *format, ...);
KO_API int ko_strcmp_i(const char *a, const char *b);
KO_API int ko_strncmp_i(const char *a, const char *b, int n);
KO_API int ko_strncmp_i1(const char *a, const char *b);
KO_API int ko_strncmp_i2(const char *a, const char *b);
/* Name comparison: ignores case, white space and ( ) - / \ _ . */
KO_API int ko_strncmp_ci(const char *a, const char *b, int n);
KO_API int ko_strcmp_ci(const char *a, const char *b);
KO_API int ko_strncmp_ci1(const char *a, const char *b);
KO_API int ko_strncmp_ci2(const char *a, const char *b);
KO_API char *ko_str_trim_buf(char *text);

/* UTF-8 / UTF-16 / ASCII conversions; size counts units of the destination,
 * the result is the number of units written without the terminating zero.
 * A character is never split at the end of the buffer; malformed input
 * becomes U+FFFD.  ko_str_asc_to_uni widens each byte (ISO 8859-1);
 * ko_str_uni_to_asc writes '?' for units outside ASCII. */
KO_API int ko_str_utf8_to_uni(ko_uchar *dst, const char *src, int size);
KO_API int ko_str_uni_to_utf8(char *dst, const ko_uchar *src, int size);
KO_API int ko_str_asc_to_uni(ko_uchar *dst, const char *src, int size);
KO_API int ko_str_uni_to_asc(char *dst, const ko_uchar *src, int size);

/* Flags of ko_str_names_to_buf and ko_object_uname_ext. */
#define KO_NAMES_NAME 1        /* the object's name */
#define KO_NAMES_DISPNAME 2    /* the display name */
#define KO_NAMES_BOTH 3        /* "name (display name)" when they differ */
/* Writes the names chosen by flags into buf (size UTF-16 units); an absent
 * display name falls back to the name.  Returns the units written. */
KO_API int ko_str_names_to_buf(ko_uchar *buf, int size, int flags,
                               const char *name, const ko_uchar *dispname);

/* Splits text in place at delimiter into tokens trimmed of white space;
 * returns the token count (0 for an empty text).  When there are more than
 * max tokens the last one keeps the rest of the text unsplit. */
KO_API int ko_str_tokenize(char *text, char delimiter, char **tokens, int max);
/* Wildcard match: '*' any run, '?' one (UTF-8) character; case-insensitive when
 * ignore_case is non-zero.  1 on a match. */
KO_API int ko_str_wildcard_match(const char *pattern, const char *text, int ignore_case);
/* Resolves the escapes \n \t \\ \" \' in place (other backslashes stay);
 * returns the new length. */
KO_API int ko_str_unescape(char *text);

KO_API char ko_get_decimal_point_char(void);
/* Number text with at most digits (1..17) significant digits; buf holds at
 * least 32 bytes.  ko_dtoa always writes ".", ko_dtoa_ld the locale's
 * decimal character; ko_strtod reads "." whatever the locale. */
KO_API char *ko_dtoa_ld(char *buf, int digits, double value);
KO_API char *ko_dtoa(char *buf, int digits, double value);
KO_API char *ko_enforce_dot_decimal(char *text);
KO_API double ko_strtod(const char *text, char **end);

KO_API const char *ko_getenv(const char *name);
/* Writes a formatted line to the platform's debug output (standard error). */
KO_API void ko_odprintf(const char *format, ...);
KO_API void *ko_path_fopen(const char *path, const char *mode);

/* The data directory that holds grid files: the value set here, else the
 * environment variable "KODATA", else empty.  Returns buf.  Setting null or
 * "" returns to "KODATA"; a path that is not a directory is refused (error
 * 127; 126 when longer than 4095 bytes), reported to the callback and log. */
KO_API char *ko_datadir_get(char *buf, int size);
KO_API void ko_datadir_set(const char *path);

KO_API const char *ko_version(void);

/* ======================================================================
 * Object header, type codes, status, generic operations
 * ====================================================================== */

#define KO_MAGIC_LIVE 0x11235813u
#define KO_MAGIC_DEAD 0xAABBCCDDu
#define KO_NAME_SIZE 80

#define KO_TYPE_GEOGCS 0x1u
#define KO_TYPE_PROJCS 0x2u
#define KO_TYPE_COORDSYS 0x3u
#define KO_TYPE_GXYZCS 0x4u
#define KO_TYPE_VERTCS 0x8u
#define KO_TYPE_HVCOORDSYS 0x10u
#define KO_TYPE_DATUM 0x20u
#define KO_TYPE_VDATUM 0x40u
#define KO_TYPE_HVDATUM 0x60u
#define KO_TYPE_GEOGTRAN 0x80u
#define KO_TYPE_LINUNIT 0x100u
#define KO_TYPE_ANGUNIT 0x200u
#define KO_TYPE_PRIMEM 0x400u
#define KO_TYPE_SPHEROID 0x800u
#define KO_TYPE_METHOD 0x1000u
#define KO_TYPE_HTMETHOD 0x2000u
#define KO_TYPE_PROJECTION 0x4000u
#define KO_TYPE_PARAMETER 0x8000u
#define KO_TYPE_AUTHORITY 0x10000u
#define KO_TYPE_ADJHCS 0x20000u
#define KO_TYPE_ARRAY 0x40000u
#define KO_TYPE_VERTTRAN 0x80000u
#define KO_TYPE_TRANSFORM 0x80080u
#define KO_TYPE_VTMETHOD 0x100000u
#define KO_TYPE_AXIS 0x200000u
#define KO_TYPE_SCALEUNIT 0x400000u
#define KO_TYPE_UNIT 0x400300u
#define KO_TYPE_DISPNAME 0x800000u
#define KO_TYPE_METADATA 0x1000000u
#define KO_TYPE_EXTENT 0x2000000u
#define KO_TYPE_AREAUNIT 0x4000000u
#define KO_TYPE_CONVERSION 0x8000000u
#define KO_TYPE_EPOCH 0x10000000u
#define KO_TYPE_REMARK 0x20000000u

#define KO_STATUS_NONE 0u
#define KO_STATUS_NEW 1u
#define KO_STATUS_STRING 2u
#define KO_STATUS_CODE 4u
#define KO_STATUS_USER 8u
#define KO_STATUS_CODECHANGE 16u
#define KO_STATUS_DISCONTINUED 32u
#define KO_STATUS_DEAD 64u
#define KO_STATUS_DONOTUSE 128u

/* Each type's operation table, exported as ko_<type>_objvec. */
typedef struct ko_objvec {
  uintptr_t type;
  void *(*clone)(const void *obj);
  void *(*del)(void *obj);
  int (*eq)(const void *a, const void *b);
} ko_objvec;

/* Geographic extent: a longitude/latitude box in degrees (west may exceed
 * east when the box crosses the antimeridian) and, for grids, the cell size
 * in degrees (0 for an area of use).  All zero is the empty extent. */
typedef struct ko_gcs_extent {
  double west;
  double south;
  double east;
  double north;
  double lon_step;
  double lat_step;
} ko_gcs_extent;

/* Vertical extent in metres; both zero is empty. */
typedef struct ko_vcs_extent {
  double low;
  double high;
} ko_vcs_extent;

/* Time extent in decimal years; both zero is empty. */
typedef struct ko_time_extent {
  double start;
  double end;
} ko_time_extent;

KO_API int ko_gcs_extent_empty(const ko_gcs_extent *e);
KO_API void ko_gcs_extent_clear(ko_gcs_extent *e);
KO_API void ko_gcs_extent_copy(ko_gcs_extent *dst, const ko_gcs_extent *src);
KO_API int ko_gcs_extent_eq(const ko_gcs_extent *a, const ko_gcs_extent *b);
/* 1 when the point (degrees) lies inside the box, antimeridian aware. */
KO_API int ko_gcs_extent_contains(const ko_gcs_extent *e, double lon, double lat);
KO_API int ko_vcs_extent_empty(const ko_vcs_extent *e);
KO_API void ko_vcs_extent_clear(ko_vcs_extent *e);
KO_API void ko_vcs_extent_copy(ko_vcs_extent *dst, const ko_vcs_extent *src);
KO_API int ko_vcs_extent_eq(const ko_vcs_extent *a, const ko_vcs_extent *b);
KO_API int ko_time_extent_empty(const ko_time_extent *e);
KO_API void ko_time_extent_clear(ko_time_extent *e);
KO_API void ko_time_extent_copy(ko_time_extent *dst, const ko_time_extent *src);
KO_API int ko_time_extent_eq(const ko_time_extent *a, const ko_time_extent *b);

/* Header operations; obj is any object (its header is its first member). */
KO_API void ko_header_init(void *obj, uint32_t type, const char *name);
KO_API ko_header *ko_header_get(const void *obj);
KO_API int ko_header_is_valid(const void *obj);
KO_API int ko_header_is_type(const void *obj, uint32_t mask);
KO_API uint32_t ko_header_get_type(const void *obj);
KO_API void ko_header_set_type(void *obj, uint32_t type);
KO_API uint32_t ko_header_get_status(const void *obj);
KO_API void ko_header_set_status(void *obj, uint32_t status);
KO_API uint32_t ko_header_get_dbid(const void *obj);
KO_API void ko_header_set_dbid(void *obj, uint32_t dbid);
KO_API int32_t ko_header_get_code_internal(const void *obj);
KO_API void ko_header_set_code_internal(void *obj, int32_t code);
KO_API int32_t ko_header_get_code_external(const void *obj);
KO_API void ko_header_set_code_external(void *obj, int32_t code);
KO_API int32_t ko_header_get_orig_code(const void *obj);
KO_API void ko_header_set_orig_code(void *obj, int32_t code);
KO_API int32_t ko_header_get_hidden(const void *obj);
KO_API void ko_header_set_hidden(void *obj, int32_t hidden);
KO_API int32_t ko_header_get_str_type(const void *obj);
KO_API void ko_header_set_str_type(void *obj, int32_t str_type);
KO_API const char *ko_header_get_name(const void *obj);
KO_API void ko_header_set_name(void *obj, const char *name);
KO_API const char *ko_header_get_orig_name(const void *obj);
KO_API void ko_header_set_orig_name(void *obj, const char *name);
KO_API const char *ko_header_get_auth_name(const void *obj);
KO_API void ko_header_set_auth_name(void *obj, const char *name);
KO_API const char *ko_header_get_auth_ver(const void *obj);
KO_API void ko_header_set_auth_ver(void *obj, const char *version);
/* Borrowed pointers.  The setters take ownership and delete what they
 * replace; a pointer that is neither null nor a live object of the right
 * type is ignored (and stays the caller's). */
KO_API ko_authority *ko_header_get_authority(const void *obj);
KO_API void ko_header_set_authority(void *obj, ko_authority *authority);
KO_API ko_dispname *ko_header_get_dispname(const void *obj);
KO_API void ko_header_set_dispname(void *obj, ko_dispname *dispname);
KO_API void ko_header_copy_int(void *dst, const void *src);
KO_API void ko_header_copy(void *dst, const void *src);
KO_API void ko_header_clear(void *obj);
KO_API void ko_header_del(void *obj);

KO_API const char *ko_type_to_name(uint32_t type);
KO_API const char *ko_type_to_abbr(uint32_t type);
KO_API uint32_t ko_name_to_type(const char *name);
KO_API uint32_t ko_abbr_to_type(const char *text);
KO_API const char *ko_status_to_macro(uint32_t status);
KO_API uint32_t ko_string_to_status(const char *text);

/* Generic operations on any object. */
KO_API int ko_object_p(const void *obj);
KO_API const ko_objvec *ko_object_vector(uint32_t type);
KO_API void *ko_object_clone(const void *obj);
KO_API void *ko_object_del(void *obj);
KO_API int ko_object_eq(const void *a, const void *b);
KO_API uint32_t ko_object_type(const void *obj);
KO_API uint32_t ko_object_status(const void *obj);
KO_API void ko_object_status_set(void *obj, uint32_t status);
KO_API uint32_t ko_object_dbid(const void *obj);
KO_API int32_t ko_object_code(const void *obj);
KO_API int32_t ko_object_code_external(const void *obj);
KO_API int32_t ko_object_code_internal(const void *obj);
KO_API int32_t ko_object_get_orig_code(const void *obj);
KO_API int32_t ko_object_is_hidden(const void *obj);
KO_API void ko_object_hidden_set(void *obj, int32_t hidden);
KO_API int32_t ko_object_string_type(const void *obj);
KO_API void ko_object_code_set(void *obj, int32_t internal_code, int32_t external_code,
                               int32_t orig_code, uint32_t dbid, const char *auth_name,
                               const char *auth_version);
/* buf holds at least 80 bytes. */
KO_API char *ko_object_name(const void *obj, char *buf);
KO_API ko_authority *ko_object_authority(void *obj);
KO_API const ko_authority *ko_object_authority_const(const void *obj);
KO_API void ko_object_authority_set(void *obj, ko_authority *authority);
KO_API ko_dispname *ko_object_dispname(const void *obj);
KO_API void ko_object_dispname_set(void *obj, ko_dispname *dispname);
/* buf holds at least 80 UTF-16 units. */
KO_API ko_uchar *ko_object_uname(const void *obj, ko_uchar *buf);
KO_API void ko_object_uname_set(void *obj, const ko_uchar *text);
/* Name and display name joined by ko_str_names_to_buf according to flags
 * (KO_NAMES_*); buf holds at least 80 UTF-16 units. */
KO_API ko_uchar *ko_object_uname_ext(const void *obj, int flags, ko_uchar *buf);

/* Every object type repeats the generic operations under its own prefix;
 * these forward to the ko_object_ functions above.  KO_DECLARE_TYPE_FORWARD
 * gives ko_<prefix>_type; KO_DECLARE_OBJECT_FORWARDS adds, for types whose
 * objects carry a name, _dbid, _status, _name, _code, _uname, _uname_ext,
 * _uname_set, _authority, _authority_set, _dispname and _dispname_set.
 * Used at file scope without a trailing semicolon. */
#define KO_DECLARE_TYPE_FORWARD(prefix, T) \
  KO_API uint32_t ko_##prefix##_type(const T *obj);
#define KO_DECLARE_OBJECT_FORWARDS(prefix, T)                                      \
  KO_DECLARE_TYPE_FORWARD(prefix, T)                                               \
  KO_API uint32_t ko_##prefix##_dbid(const T *obj);                                \
  KO_API uint32_t ko_##prefix##_status(const T *obj);                              \
  KO_API char *ko_##prefix##_name(const T *obj, char *buf);                        \
  KO_API int32_t ko_##prefix##_code(const T *obj);                                 \
  KO_API ko_uchar *ko_##prefix##_uname(const T *obj, ko_uchar *buf);               \
  KO_API ko_uchar *ko_##prefix##_uname_ext(const T *obj, int flags, ko_uchar *buf); \
  KO_API void ko_##prefix##_uname_set(T *obj, const ko_uchar *text);               \
  KO_API ko_authority *ko_##prefix##_authority(T *obj);                            \
  KO_API void ko_##prefix##_authority_set(T *obj, ko_authority *authority);        \
  KO_API ko_dispname *ko_##prefix##_dispname(const T *obj);                        \
  KO_API void ko_##prefix##_dispname_set(T *obj, ko_dispname *dispname);

/* Authority. */
KO_API ko_authority *ko_authority_ext_new_errext(const char *name, int32_t code,
                                                 const char *version, const char *citation,
                                                 const char *uri, ko_err *err);
KO_API ko_authority *ko_authority_ext_new(const char *name, int32_t code, const char *version,
                                          const char *citation, const char *uri);
KO_API ko_authority *ko_authority_new_errext(const char *name, int32_t code,
                                             const char *version, ko_err *err);
KO_API ko_authority *ko_authority_new(const char *name, int32_t code, const char *version);
KO_API int ko_authority_p(const void *obj);
KO_API ko_authority *ko_authority_clone(const ko_authority *a);
KO_API ko_authority *ko_authority_del(ko_authority *a);
KO_API int ko_authority_eq(const ko_authority *a, const ko_authority *b);
KO_API char *ko_authority_authname(const ko_authority *a, char *buf);   /* 80 bytes */
KO_API int32_t ko_authority_authcode(const ko_authority *a);
KO_API char *ko_authority_version(const ko_authority *a, char *buf);    /* 24 bytes */
KO_API char *ko_authority_citation(const ko_authority *a, char *buf);   /* 256 bytes */
KO_API char *ko_authority_uri(const ko_authority *a, char *buf);        /* 256 bytes */

/* Display name. */
KO_API ko_dispname *ko_dispname_new_errext_u(const ko_uchar *text, ko_err *err);
KO_API ko_dispname *ko_dispname_new_u(const ko_uchar *text);
KO_API ko_dispname *ko_dispname_new_errext(const char *utf8, ko_err *err);
KO_API ko_dispname *ko_dispname_new(const char *utf8);
KO_API int ko_dispname_p(const void *obj);
KO_API ko_dispname *ko_dispname_clone(const ko_dispname *d);
KO_API ko_dispname *ko_dispname_del(ko_dispname *d);
KO_API int ko_dispname_eq(const ko_dispname *a, const ko_dispname *b);
KO_API ko_uchar *ko_dispname_uname(const ko_dispname *d, ko_uchar *buf);   /* 80 units */
KO_API const ko_uchar *ko_dispname_uname_get(const ko_dispname *d);

/* Remark. */
KO_API ko_remark *ko_remark_new_errext(const char *utf8, ko_err *err);
KO_API ko_remark *ko_remark_new(const char *utf8);
KO_API int ko_remark_p(const void *obj);
KO_API ko_remark *ko_remark_clone(const ko_remark *r);
KO_API ko_remark *ko_remark_del(ko_remark *r);
KO_API int ko_remark_eq(const ko_remark *a, const ko_remark *b);
KO_API char *ko_remark_text(const ko_remark *r, char *buf);   /* 768 bytes, UTF-8 */

/* Metadata. */
KO_API ko_metadata *ko_metadata_ext_new_errext(const char *name, const char *scope,
                                               const ko_gcs_extent *gcs_extent,
                                               const ko_vcs_extent *vcs_extent,
                                               const ko_time_extent *time_extent,
                                               uint32_t area_code, ko_err *err);
KO_API ko_metadata *ko_metadata_ext_new(const char *name, const char *scope,
                                        const ko_gcs_extent *gcs_extent,
                                        const ko_vcs_extent *vcs_extent,
                                        const ko_time_extent *time_extent, uint32_t area_code);
KO_API ko_metadata *ko_metadata_new_errext(const char *name, const ko_gcs_extent *gcs_extent,
                                           uint32_t area_code, ko_err *err);
KO_API ko_metadata *ko_metadata_new(const char *name, const ko_gcs_extent *gcs_extent,
                                    uint32_t area_code);
KO_API int ko_metadata_p(const void *obj);
KO_API ko_metadata *ko_metadata_clone(const ko_metadata *m);
KO_API ko_metadata *ko_metadata_del(ko_metadata *m);
KO_API int ko_metadata_eq(const ko_metadata *a, const ko_metadata *b);
KO_API char *ko_metadata_scope(const ko_metadata *m, char *buf);   /* 256 bytes */
KO_API void ko_metadata_scope_set(ko_metadata *m, const char *scope);
KO_API uint32_t ko_metadata_areacode(const ko_metadata *m);
KO_API void ko_metadata_areaname_set(ko_metadata *m, const char *name);
KO_API ko_gcs_extent *ko_metadata_gcs_extent(const ko_metadata *m, ko_gcs_extent *out);
KO_API ko_vcs_extent *ko_metadata_vcs_extent(const ko_metadata *m, ko_vcs_extent *out);
KO_API ko_time_extent *ko_metadata_time_extent(const ko_metadata *m, ko_time_extent *out);
KO_API const ko_gcs_extent *ko_metadata_gcs_extent_ptr(const ko_metadata *m);
KO_API const ko_vcs_extent *ko_metadata_vcs_extent_ptr(const ko_metadata *m);
KO_API const ko_time_extent *ko_metadata_time_extent_ptr(const ko_metadata *m);
/* Null-terminated vectors of metadata objects, allocated by the library. */
KO_API ko_metadata **ko_metadata_vector_clone(ko_metadata *const *vec);
KO_API ko_metadata **ko_metadata_vector_del(ko_metadata **vec);

KO_API extern const ko_objvec ko_authority_objvec;
KO_API extern const ko_objvec ko_dispname_objvec;
KO_API extern const ko_objvec ko_remark_objvec;
KO_API extern const ko_objvec ko_metadata_objvec;

KO_DECLARE_TYPE_FORWARD(authority, ko_authority)
KO_DECLARE_TYPE_FORWARD(dispname, ko_dispname)
KO_DECLARE_TYPE_FORWARD(remark, ko_remark)
KO_DECLARE_OBJECT_FORWARDS(metadata, ko_metadata)

/* ======================================================================
 * Projection constants record (filled by a projection's constants function)
 * ====================================================================== */
KO_API ko_constants *ko_constants_new(void);
KO_API int ko_constants_p(const ko_constants *c);
KO_API ko_constants *ko_constants_del(ko_constants *c);
KO_API int32_t *ko_constants_ivals(const ko_constants *c);
KO_API void *ko_constants_fvals(const ko_constants *c);
KO_API double *ko_constants_dvals(const ko_constants *c);
KO_API void *ko_constants_data(const ko_constants *c);
KO_API ko_gcs_extent *ko_constants_extent(ko_constants *c);
/* The setters free the array held before and take ownership of the new one,
 * which must come from ko_allocate_rtn. */
KO_API void ko_constants_ivals_set(ko_constants *c, int32_t *ivals);
KO_API void ko_constants_fvals_set(ko_constants *c, void *fvals);
KO_API void ko_constants_dvals_set(ko_constants *c, double *dvals);
KO_API void ko_constants_data_set(ko_constants *c, void *data);
KO_API void ko_constants_extent_set(ko_constants *c, const ko_gcs_extent *extent);

/* Projection function slots.  sph is the spheroid pair (semi-major axis in
 * metres, first eccentricity squared); parms the 24-slot parameter array in
 * metres and radians; coords n (x/longitude, y/latitude) pairs converted in
 * place.  ivals and dvals are the cached constants, or null. */
typedef int (*ko_proj_fn)(const double *sph, const double *parms, int n, double *coords,
                          const int32_t *ivals, const double *dvals);
typedef int (*ko_proj_constfunc)(ko_constants *constants, const double *sph,
                                 const double *parms);
typedef int (*ko_proj_validfunc)(ko_parameter *const *parms, const char *name, ko_err *err);

/* ======================================================================
 * Units
 * ====================================================================== */

/* Five unit types share one layout: a name, a display name, a plural and an
 * abbreviation (UTF-16), the factor to the base unit (metres, radians,
 * square metres, or 1 for scale) and a reference code.  The generic unit
 * (ko_unit, type KO_TYPE_UNIT) is what a caller builds when the kind is not
 * known; its constructors return a linear, angular or scale unit (typed
 * KO_TYPE_LINUNIT, KO_TYPE_ANGUNIT or KO_TYPE_SCALEUNIT) whenever the name
 * and factor identify one of the unit tables' rows.  A ko_unit pointer may
 * therefore be any of the three kinds, and functions taking a ko_unit accept
 * linear, angular and scale units alike. */
#define KO_UNIT_DISPNAME_SIZE 80 /* UTF-16 units, display name and plural */
#define KO_UNIT_ABBR_SIZE 16     /* UTF-16 units, abbreviation */

/* A row of a unit table; a table ends with a row of code 0. */
typedef struct ko_unit_entry {
  int32_t code;
  const char *name;
  double factor;
} ko_unit_entry;

KO_API extern const ko_unit_entry ko_linunit_tbl[];   /* factor in metres */
KO_API extern const ko_unit_entry ko_angunit_tbl[];   /* factor in radians */
KO_API extern const ko_unit_entry ko_areaunit_tbl[];  /* factor in square metres */
KO_API extern const ko_unit_entry ko_scaleunit_tbl[]; /* factor as a ratio */

/* Rows of a unit table by code and by name (names compared by
 * ko_strcmp_ci; the first matching row wins).  Null when absent. */
KO_API const ko_unit_entry *ko_unit_tbl_from_code(const ko_unit_entry *tbl, int32_t code);
KO_API const ko_unit_entry *ko_unit_tbl_from_name(const ko_unit_entry *tbl, const char *name);
/* Rows before the end row. */
KO_API int ko_unit_tbl_count(const ko_unit_entry *tbl);

/* The operations every unit type has, for prefix linunit, angunit,
 * scaleunit, areaunit and unit:
 *   _ext_new_errext(name, display name, plural, abbreviation, factor, err)
 *       the three texts in UTF-8 (null counts as empty); _ext_new_errext_u
 *       takes them in UTF-16; _ext_new and _ext_new_u without the record.
 *       Name beyond 79 characters, display name or plural beyond 79 units,
 *       abbreviation beyond 15: warning 354, cut.  Factor <= 0: error 304,
 *       NaN or infinite: error 358 (message "name: factor").  Error 1 when
 *       memory runs out.
 *   _new_errext(name, factor, err), _new(name, factor): no texts.
 *   _new_code_errext(code, err), _new_code(code), _new_name_errext(name,
 *       err), _new_name(name): from the unit table (status KO_STATUS_CODE,
 *       internal and external code set; names also through the catalogue's
 *       synonyms, e.g. "metre"); an unknown code is error 212 (linear), 211
 *       (angular) or 210, an unknown name error 132.
 *   _p, _clone, _del, _eq: equal when both are units sharing a type bit,
 *       their names are equal by ko_strcmp_ci and their factors agree to
 *       the library's relative tolerance.
 *   _factor (0.0 for no unit), _display_name, _plural (80-unit buffers),
 *   _abbreviation (16-unit buffer), _refcode, _set_refcode, the generic
 *   forwards and the objvec ko_<prefix>_objvec. */
#define KO_DECLARE_UNIT_TYPE(prefix, T)                                                      \
  KO_API T *ko_##prefix##_ext_new_errext(const char *name, const char *dispname,            \
                                         const char *plural, const char *abbr, double factor, \
                                         ko_err *err);                                       \
  KO_API T *ko_##prefix##_ext_new(const char *name, const char *dispname, const char *plural, \
                                  const char *abbr, double factor);                          \
  KO_API T *ko_##prefix##_ext_new_errext_u(const char *name, const ko_uchar *dispname,      \
                                           const ko_uchar *plural, const ko_uchar *abbr,    \
                                           double factor, ko_err *err);                      \
  KO_API T *ko_##prefix##_ext_new_u(const char *name, const ko_uchar *dispname,             \
                                    const ko_uchar *plural, const ko_uchar *abbr,           \
                                    double factor);                                          \
  KO_API T *ko_##prefix##_new_errext(const char *name, double factor, ko_err *err);         \
  KO_API T *ko_##prefix##_new(const char *name, double factor);                             \
  KO_API T *ko_##prefix##_new_code_errext(int32_t code, ko_err *err);                       \
  KO_API T *ko_##prefix##_new_code(int32_t code);                                           \
  KO_API T *ko_##prefix##_new_name_errext(const char *name, ko_err *err);                   \
  KO_API T *ko_##prefix##_new_name(const char *name);                                       \
  KO_API int ko_##prefix##_p(const void *obj);                                              \
  KO_API T *ko_##prefix##_clone(const T *unit);                                             \
  KO_API T *ko_##prefix##_del(T *unit);                                                     \
  KO_API int ko_##prefix##_eq(const T *a, const T *b);                                      \
  KO_API double ko_##prefix##_factor(const T *unit);                                        \
  KO_API ko_uchar *ko_##prefix##_display_name(const T *unit, ko_uchar *buf);                \
  KO_API ko_uchar *ko_##prefix##_plural(const T *unit, ko_uchar *buf);                      \
  KO_API ko_uchar *ko_##prefix##_abbreviation(const T *unit, ko_uchar *buf);                \
  KO_API uint32_t ko_##prefix##_refcode(const T *unit);                                     \
  KO_API void ko_##prefix##_set_refcode(T *unit, uint32_t refcode);                         \
  KO_API extern const ko_objvec ko_##prefix##_objvec;                                       \
  KO_DECLARE_OBJECT_FORWARDS(prefix, T)

KO_DECLARE_UNIT_TYPE(linunit, ko_linunit)
KO_DECLARE_UNIT_TYPE(angunit, ko_angunit)
KO_DECLARE_UNIT_TYPE(scaleunit, ko_scaleunit)
KO_DECLARE_UNIT_TYPE(areaunit, ko_areaunit)
KO_DECLARE_UNIT_TYPE(unit, ko_unit)

/* ======================================================================
 * Geodetic objects: spheroids, prime meridians, datums, geographic systems
 * ====================================================================== */

/* Spheroid: semi-major axis in the length of its linear unit ("Meter" when
 * none is given), flattening 0 <= f <= 1 (0 a sphere).  The constructors
 * take ownership of the unit on success. */
KO_API ko_spheroid *ko_spheroid_ext_new_errext(const char *name, ko_linunit *unit, double axis,
                                               double flattening, ko_err *err);
KO_API ko_spheroid *ko_spheroid_ext_new(const char *name, ko_linunit *unit, double axis,
                                        double flattening);
KO_API ko_spheroid *ko_spheroid_new_errext(const char *name, double axis, double flattening,
                                           ko_err *err);
KO_API ko_spheroid *ko_spheroid_new(const char *name, double axis, double flattening);
KO_API int ko_spheroid_p(const void *obj);
KO_API ko_spheroid *ko_spheroid_clone(const ko_spheroid *s);
KO_API ko_spheroid *ko_spheroid_del(ko_spheroid *s);
KO_API int ko_spheroid_eq(const ko_spheroid *a, const ko_spheroid *b);
KO_API double ko_spheroid_axis(const ko_spheroid *s);            /* metres; 1.0 for no spheroid */
KO_API double ko_spheroid_flattening(const ko_spheroid *s);
KO_API double ko_spheroid_esquared(const ko_spheroid *s);        /* f (2 - f) */
KO_API double ko_spheroid_semiminor_axis(const ko_spheroid *s);  /* metres; 1.0 for no spheroid */
KO_API ko_linunit *ko_spheroid_unit(const ko_spheroid *s);
KO_API extern const ko_objvec ko_spheroid_objvec;
KO_DECLARE_OBJECT_FORWARDS(spheroid, ko_spheroid)

/* Prime meridian: longitude east of Greenwich, given in its angular unit
 * ("Degree" when none is given) and stored in degrees. */
KO_API ko_primem *ko_primem_ext_new_errext(const char *name, ko_angunit *unit, double longitude,
                                           ko_err *err);
KO_API ko_primem *ko_primem_ext_new(const char *name, ko_angunit *unit, double longitude);
KO_API ko_primem *ko_primem_new_errext(const char *name, double longitude, ko_err *err);
KO_API ko_primem *ko_primem_new(const char *name, double longitude);
KO_API int ko_primem_p(const void *obj);
KO_API ko_primem *ko_primem_clone(const ko_primem *p);
KO_API ko_primem *ko_primem_del(ko_primem *p);
KO_API int ko_primem_eq(const ko_primem *a, const ko_primem *b);
KO_API double ko_primem_longitude(const ko_primem *p);  /* degrees */
KO_API ko_angunit *ko_primem_unit(const ko_primem *p);
KO_API void ko_primem_unit_set(ko_primem *p, ko_angunit *unit);
KO_API extern const ko_objvec ko_primem_objvec;
KO_DECLARE_OBJECT_FORWARDS(primem, ko_primem)

/* Datum: a spheroid (owned), an anchor text and, for a dynamic reference
 * frame, the frame name and reference epoch (decimal year). */
#define KO_ANCHOR_SIZE 256
KO_API ko_datum *ko_datum_ext_new_errext(const char *name, ko_spheroid *spheroid,
                                         const char *anchor, ko_err *err);
KO_API ko_datum *ko_datum_ext_new(const char *name, ko_spheroid *spheroid, const char *anchor);
KO_API ko_datum *ko_datum_new_errext(const char *name, ko_spheroid *spheroid, ko_err *err);
KO_API ko_datum *ko_datum_new(const char *name, ko_spheroid *spheroid);
KO_API int ko_datum_p(const void *obj);
KO_API ko_datum *ko_datum_clone(const ko_datum *d);
KO_API ko_datum *ko_datum_del(ko_datum *d);
KO_API int ko_datum_eq(const ko_datum *a, const ko_datum *b);
KO_API ko_spheroid *ko_datum_spheroid(const ko_datum *d);
KO_API char *ko_datum_anchor(const ko_datum *d, char *buf);  /* KO_ANCHOR_SIZE bytes */
KO_API void ko_datum_set_dynamic(ko_datum *d, const char *frame_name, double epoch);
/* Copies the frame name into buf (80 bytes) when buf is non-null; returns
 * the epoch. */
KO_API double ko_datum_get_dynamic(const ko_datum *d, char *buf);
KO_API int ko_datum_is_dynamic(const ko_datum *d);
KO_API extern const ko_objvec ko_datum_objvec;
KO_DECLARE_OBJECT_FORWARDS(datum, ko_datum)

/* Axis of a coordinate system: name, abbreviation, direction, unit (owned,
 * any unit kind, may be null) and order (1-based position).  The order
 * check and the fill serve geographic (kind 1) and projected (kind 2)
 * systems. */
#define KO_AXIS_NONE 0
#define KO_AXIS_NORTH 1
#define KO_AXIS_SOUTH 2
#define KO_AXIS_EAST 3
#define KO_AXIS_WEST 4
#define KO_AXIS_UP 5
#define KO_AXIS_DOWN 6
#define KO_AXIS_OTHER 7
#define KO_AXIS_KIND_GEOGRAPHIC 1
#define KO_AXIS_KIND_PROJECTED 2
#define KO_AXIS_MAX 3            /* axes of one system */
#define KO_AXIS_ABBR_SIZE 16     /* bytes */
KO_API ko_axis *ko_axis_new_errext(const char *name, const char *abbr, int direction,
                                   ko_unit *unit, int order, ko_err *err);
KO_API ko_axis *ko_axis_new(const char *name, const char *abbr, int direction, ko_unit *unit,
                            int order);
KO_API int ko_axis_p(const void *obj);
KO_API ko_axis *ko_axis_clone(const ko_axis *a);
KO_API ko_axis *ko_axis_del(ko_axis *a);
KO_API int ko_axis_eq(const ko_axis *a, const ko_axis *b);
KO_API char *ko_axis_abbr(const ko_axis *a, char *buf);  /* KO_AXIS_ABBR_SIZE bytes */
KO_API int ko_axis_direction(const ko_axis *a);
KO_API int ko_axis_order(const ko_axis *a);
KO_API ko_unit *ko_axis_unit(const ko_axis *a);
KO_API void ko_axis_unit_set(ko_axis *a, ko_unit *unit);
/* "north", "south", "east", "west", "up", "down", "other"; "" for others. */
KO_API const char *ko_axis_direction_to_name(int direction);
KO_API int ko_axis_name_to_direction(const char *name);  /* KO_AXIS_NONE when unknown */
/* 0 when the first `dimension` axes suit a system of this kind, else the
 * error number: 488 dimension other than 2 or 3, 485 unknown kind or an
 * element that is not an axis, 478 missing axis, 484 unknown direction,
 * 486 direction unfit for its place, 476 two axes along one line, 482
 * order not matching the position, 487 unit of the wrong kind.  A null
 * array has nothing to check and gives 0 for a valid dimension. */
KO_API int ko_axis_check_order(ko_axis *const *axes, int dimension, int kind);
/* Builds the default axes of a system into out[0 .. dimension-1]: kind 1
 * "Longitude" (east), "Latitude" (north); kind 2 "(X)" (east), "(Y)"
 * (north); then "Ellipsoidal height" (up).  The horizontal axes get clones
 * of hunit, the third a clone of vunit ("Meter" when null).  Returns 1, or
 * 0 (nothing left behind) when memory runs out or an argument is bad. */
KO_API int ko_axis_fill(ko_axis **out, int dimension, int kind, const ko_unit *hunit,
                        const ko_unit *vunit);
KO_API extern const ko_objvec ko_axis_objvec;
KO_DECLARE_OBJECT_FORWARDS(axis, ko_axis)

/* Geographic coordinate system: datum, prime meridian ("Greenwich" when
 * none is given), angular unit, 2 or 3 axes, metadata, remark, and the
 * lazily built geodesic series constants. */
KO_API ko_geogcs *ko_geogcs_ext_new_errext(const char *name, ko_datum *datum, ko_primem *primem,
                                           int dimension, ko_axis **axes, ko_angunit *unit,
                                           ko_metadata **metadata, ko_remark *remark,
                                           ko_err *err);
KO_API ko_geogcs *ko_geogcs_ext_new(const char *name, ko_datum *datum, ko_primem *primem,
                                    int dimension, ko_axis **axes, ko_angunit *unit,
                                    ko_metadata **metadata, ko_remark *remark);
KO_API ko_geogcs *ko_geogcs_new_errext(const char *name, ko_datum *datum, ko_primem *primem,
                                       ko_angunit *unit, ko_err *err);
KO_API ko_geogcs *ko_geogcs_new(const char *name, ko_datum *datum, ko_primem *primem,
                                ko_angunit *unit);
KO_API int ko_geogcs_p(const void *obj);
KO_API ko_geogcs *ko_geogcs_clone(const ko_geogcs *g);
KO_API ko_geogcs *ko_geogcs_del(ko_geogcs *g);
KO_API int ko_geogcs_eq(const ko_geogcs *a, const ko_geogcs *b);
KO_API ko_datum *ko_geogcs_datum(const ko_geogcs *g);
KO_API ko_primem *ko_geogcs_primem(const ko_geogcs *g);
KO_API ko_angunit *ko_geogcs_unit(const ko_geogcs *g);
KO_API ko_linunit *ko_geogcs_vert_unit(const ko_geogcs *g);
KO_API int ko_geogcs_dimension(const ko_geogcs *g);
KO_API ko_axis *ko_geogcs_axis(const ko_geogcs *g, int index);  /* 0-based */
KO_API ko_metadata **ko_geogcs_metadata_vector(const ko_geogcs *g);
KO_API ko_remark *ko_geogcs_remark(const ko_geogcs *g);
KO_API ko_constants *ko_geogcs_constants(const ko_geogcs *g);
/* 1 when the geodesic constants are loaded or not needed (a sphere), 0
 * when loading failed (not retried until unloaded). */
KO_API int ko_geogcs_load_constants(ko_geogcs *g);
KO_API void ko_geogcs_unload_constants(ko_geogcs *g);
/* Gives a system without axes its default axes, built from its units and
 * dimension; the units then live on the axes.  flags is reserved (pass 0).
 * Returns 1 when the system has axes afterwards, else 0. */
KO_API int ko_geogcs_check_axes(ko_geogcs *g, int flags);
KO_API extern const ko_objvec ko_geogcs_objvec;
KO_DECLARE_OBJECT_FORWARDS(geogcs, ko_geogcs)

/* Coefficients of the geodesic series of Karney, "Algorithms for
 * geodesics" (J. Geodesy 87, 2013), for a spheroid of first eccentricity
 * squared e2 (0 <= e2 < 1), to order KO_GEODESIC_ORDER in the third
 * flattening n and the parameter eps.  The array (KO_GEODESIC_NCOEF doubles
 * from ko_allocate_rtn, the caller frees it) holds 33 rows of
 * KO_GEODESIC_ORDER + 1 doubles; element j of a row is the coefficient of
 * eps^j:
 *   row 0        A1 (1 - eps)        rows 1-6    C1[1..6]
 *   rows 7-12    C1'[1..6]           row 13      A2 / (1 - eps)
 *   rows 14-19   C2[1..6]            row 20      A3
 *   rows 21-26   C3[1..6]            rows 27-32  C4[0..5]
 * A1, C1, C1', A2 and C2 are complete to eps^6; A3, C3 and C4 to total
 * degree 5 in n and eps.  *order receives KO_GEODESIC_ORDER.  Null (and
 * order 0) for e2 outside [0, 1) or when memory runs out. */
#define KO_GEODESIC_ORDER 6
#define KO_GEODESIC_ROWS 33
#define KO_GEODESIC_NCOEF (KO_GEODESIC_ROWS * (KO_GEODESIC_ORDER + 1))
KO_API double *ko_geodesic_constants_array_new(double e2, int *order);

/* ======================================================================
 * Vertical, geocentric and compound systems; other object types
 * ====================================================================== */

/* Every constructor below takes ownership of the sub-objects, parameters,
 * metadata vector and remark handed to it when it succeeds; when it fails
 * they stay the caller's, untouched.  The _errext forms clear the record
 * first; a name over 79 characters is warning 354 and is cut.  Getters
 * return borrowed pointers, and null, 0 or an empty text for a null or
 * stale object. */

/* Vertical datum: a name (required: null or empty is error 321), an
 * anchor text (at most 255 characters, longer is warning 354 and cut), a
 * metadata vector, and for a dynamic frame its frame name and reference
 * epoch (decimal year; 0.0 for a static datum).  Equal when the names are
 * equal by ko_strcmp_ci: anchor, frame and metadata are not compared. */
KO_API ko_vdatum *ko_vdatum_ext_new_errext(const char *name, const char *anchor,
                                           ko_metadata **metadata, ko_err *err);
KO_API ko_vdatum *ko_vdatum_ext_new(const char *name, const char *anchor,
                                    ko_metadata **metadata);
KO_API ko_vdatum *ko_vdatum_new_errext(const char *name, ko_err *err);
KO_API ko_vdatum *ko_vdatum_new(const char *name);
KO_API int ko_vdatum_p(const void *obj);
KO_API ko_vdatum *ko_vdatum_clone(const ko_vdatum *d);
KO_API ko_vdatum *ko_vdatum_del(ko_vdatum *d);
KO_API int ko_vdatum_eq(const ko_vdatum *a, const ko_vdatum *b);
KO_API char *ko_vdatum_anchor(const ko_vdatum *d, char *buf);  /* KO_ANCHOR_SIZE bytes */
KO_API ko_metadata **ko_vdatum_metadata_vector(const ko_vdatum *d);
/* As ko_datum_set_dynamic, ko_datum_get_dynamic and ko_datum_is_dynamic. */
KO_API void ko_vdatum_set_dynamic(ko_vdatum *d, const char *frame_name, double epoch);
KO_API double ko_vdatum_get_dynamic(const ko_vdatum *d, char *buf);
KO_API int ko_vdatum_is_dynamic(const ko_vdatum *d);
KO_API extern const ko_objvec ko_vdatum_objvec;
KO_DECLARE_OBJECT_FORWARDS(vdatum, ko_vdatum)
/* 1 for a live datum or vertical datum (the hvdatum type test). */
KO_API int ko_hvdatum_p(const void *obj);

/* Vertical coordinate system: a name; a datum, which is a vertical datum
 * for gravity-related heights or depths, or a horizontal datum (ko_datum)
 * for ellipsoidal heights; up to 24 parameters by slot (only the vertical
 * system's parameters of the parameter list: Vertical_Shift, slot 0, a
 * length added to every height; Direction, slot 1, 1 for heights and -1
 * for depths); the linear unit of the heights ("Meter" when none is
 * given); an optional axis (direction up or down); metadata and remark.
 *
 * Checks, in order: a datum or vertical datum (337); a linear unit (323);
 * an axis (485) pointing up or down (486) whose unit, if any, is a linear
 * unit (487) equal to the unit argument when both are given (477); every
 * non-empty parameter slot holds a parameter of the vertical system in its
 * own slot (348, "%s: %s" with the system's and the parameter's names), a
 * Direction of exactly 1 or -1 (356) that agrees with the axis (486);
 * memory (1).  parms may be null (no parameters); otherwise the 24
 * pointers are copied.  The system keeps one unit: the argument, else a
 * clone of the axis's unit (which the axis then drops), else "Meter".
 *
 * Equal when the names are equal by ko_strcmp_ci, the datums are equal
 * (both vertical or both horizontal, by their own equality), the linear
 * units are equal, the directions agree and the vertical shifts in metres
 * agree to the library's relative tolerance.  Axis, metadata and remark
 * are not compared. */
#define KO_VERTCS_HEIGHT 1
#define KO_VERTCS_DEPTH (-1)
#define KO_PARM_CODE_VERTICAL_SHIFT 100006
#define KO_PARM_CODE_DIRECTION 100007
KO_API ko_vertcs *ko_vertcs_ext_new_errext(const char *name, void *hvdatum, ko_parameter **parms,
                                           ko_linunit *unit, ko_axis *axis,
                                           ko_metadata **metadata, ko_remark *remark,
                                           ko_err *err);
KO_API ko_vertcs *ko_vertcs_ext_new(const char *name, void *hvdatum, ko_parameter **parms,
                                    ko_linunit *unit, ko_axis *axis, ko_metadata **metadata,
                                    ko_remark *remark);
KO_API ko_vertcs *ko_vertcs_new_errext(const char *name, void *hvdatum, ko_parameter **parms,
                                       ko_linunit *unit, ko_err *err);
KO_API ko_vertcs *ko_vertcs_new(const char *name, void *hvdatum, ko_parameter **parms,
                                ko_linunit *unit);
KO_API int ko_vertcs_p(const void *obj);
KO_API ko_vertcs *ko_vertcs_clone(const ko_vertcs *v);
KO_API ko_vertcs *ko_vertcs_del(ko_vertcs *v);
KO_API int ko_vertcs_eq(const ko_vertcs *a, const ko_vertcs *b);
/* The datum as held (a ko_vdatum or a ko_datum), and typed views of it:
 * ko_vertcs_vdatum is null for an ellipsoidal system, ko_vertcs_datum
 * null for a gravity-related one. */
KO_API void *ko_vertcs_hvdatum(const ko_vertcs *v);
KO_API ko_vdatum *ko_vertcs_vdatum(const ko_vertcs *v);
KO_API ko_datum *ko_vertcs_datum(const ko_vertcs *v);
/* 1 when the heights are ellipsoidal (the datum is a horizontal datum). */
KO_API int ko_vertcs_is_ellipsoidal(const ko_vertcs *v);
KO_API ko_linunit *ko_vertcs_unit(const ko_vertcs *v);
KO_API ko_axis *ko_vertcs_axis(const ko_vertcs *v);
KO_API ko_parameter **ko_vertcs_parameters_ptr(ko_vertcs *v);
/* Copies the 24 parameter pointers (all null for no system). */
KO_API void ko_vertcs_parameters(const ko_vertcs *v, ko_parameter **out);
/* KO_VERTCS_HEIGHT or KO_VERTCS_DEPTH: the sign of the Direction
 * parameter, else the axis's (down is depth), else height; 0 for no
 * system. */
KO_API int ko_vertcs_direction(const ko_vertcs *v);
/* Vertical_Shift in metres (its value in base units), 0.0 when absent. */
KO_API double ko_vertcs_vertical_shift(const ko_vertcs *v);
KO_API ko_metadata **ko_vertcs_metadata_vector(const ko_vertcs *v);
KO_API ko_remark *ko_vertcs_remark(const ko_vertcs *v);
KO_API extern const ko_objvec ko_vertcs_objvec;
KO_DECLARE_OBJECT_FORWARDS(vertcs, ko_vertcs)

/* Geocentric coordinate system (earth-centred X, Y, Z): a name, a datum
 * (334), a prime meridian ("Greenwich" at 0 when none is given; 329 when
 * not one; one without a unit gets "Degree"), a linear unit ("Meter" when
 * none is given; 323 when not one), and optionally three axes X, Y and Z:
 * each a live axis (478 missing, 485 not an axis) whose order is its
 * position (482) and whose unit, if any, is linear (487) and equal to the
 * system's (477); the axes then drop their units.  Equal when the names
 * are equal by ko_strcmp_ci and the datums, prime meridians and linear
 * units are equal; axes, metadata and remark are not compared. */
KO_API ko_gxyzcs *ko_gxyzcs_ext_new_errext(const char *name, ko_datum *datum, ko_primem *primem,
                                           ko_linunit *unit, ko_axis **axes,
                                           ko_metadata **metadata, ko_remark *remark,
                                           ko_err *err);
KO_API ko_gxyzcs *ko_gxyzcs_ext_new(const char *name, ko_datum *datum, ko_primem *primem,
                                    ko_linunit *unit, ko_axis **axes, ko_metadata **metadata,
                                    ko_remark *remark);
KO_API ko_gxyzcs *ko_gxyzcs_new_errext(const char *name, ko_datum *datum, ko_primem *primem,
                                       ko_linunit *unit, ko_err *err);
KO_API ko_gxyzcs *ko_gxyzcs_new(const char *name, ko_datum *datum, ko_primem *primem,
                                ko_linunit *unit);
KO_API int ko_gxyzcs_p(const void *obj);
KO_API ko_gxyzcs *ko_gxyzcs_clone(const ko_gxyzcs *g);
KO_API ko_gxyzcs *ko_gxyzcs_del(ko_gxyzcs *g);
KO_API int ko_gxyzcs_eq(const ko_gxyzcs *a, const ko_gxyzcs *b);
KO_API ko_datum *ko_gxyzcs_datum(const ko_gxyzcs *g);
KO_API ko_primem *ko_gxyzcs_primem(const ko_gxyzcs *g);
KO_API ko_linunit *ko_gxyzcs_unit(const ko_gxyzcs *g);
KO_API ko_axis *ko_gxyzcs_axis(const ko_gxyzcs *g, int index);  /* 0-based; null without axes */
KO_API ko_metadata **ko_gxyzcs_metadata_vector(const ko_gxyzcs *g);
KO_API ko_remark *ko_gxyzcs_remark(const ko_gxyzcs *g);
KO_API extern const ko_objvec ko_gxyzcs_objvec;
KO_DECLARE_OBJECT_FORWARDS(gxyzcs, ko_gxyzcs)

/* Compound coordinate system: a name, a horizontal system (a geographic
 * or projected system) and a vertical system, metadata and remark.
 * Checks: neither system usable is 339; a horizontal system that is not
 * one is 338; a vertical system that is not one is 339 as well (the error
 * table has no number of its own for it).  Equal when the names are equal
 * by ko_strcmp_ci and both systems are equal by their own equality (a
 * geographic system never equals a projected one). */
KO_API ko_hvcoordsys *ko_hvcoordsys_ext_new_errext(const char *name, void *coordsys,
                                                   ko_vertcs *vertcs, ko_metadata **metadata,
                                                   ko_remark *remark, ko_err *err);
KO_API ko_hvcoordsys *ko_hvcoordsys_ext_new(const char *name, void *coordsys, ko_vertcs *vertcs,
                                            ko_metadata **metadata, ko_remark *remark);
KO_API ko_hvcoordsys *ko_hvcoordsys_new_errext(const char *name, void *coordsys,
                                               ko_vertcs *vertcs, ko_err *err);
KO_API ko_hvcoordsys *ko_hvcoordsys_new(const char *name, void *coordsys, ko_vertcs *vertcs);
KO_API int ko_hvcoordsys_p(const void *obj);
KO_API ko_hvcoordsys *ko_hvcoordsys_clone(const ko_hvcoordsys *c);
KO_API ko_hvcoordsys *ko_hvcoordsys_del(ko_hvcoordsys *c);
KO_API int ko_hvcoordsys_eq(const ko_hvcoordsys *a, const ko_hvcoordsys *b);
/* The horizontal system as held, and typed views of it (null when it is
 * of the other kind). */
KO_API void *ko_hvcoordsys_coordsys(const ko_hvcoordsys *c);
KO_API ko_geogcs *ko_hvcoordsys_geogcs(const ko_hvcoordsys *c);
KO_API ko_projcs *ko_hvcoordsys_projcs(const ko_hvcoordsys *c);
KO_API ko_vertcs *ko_hvcoordsys_vertcs(const ko_hvcoordsys *c);
KO_API ko_metadata **ko_hvcoordsys_metadata_vector(const ko_hvcoordsys *c);
KO_API ko_remark *ko_hvcoordsys_remark(const ko_hvcoordsys *c);
KO_API extern const ko_objvec ko_hvcoordsys_objvec;
KO_DECLARE_OBJECT_FORWARDS(hvcoordsys, ko_hvcoordsys)
/* 1 for a live geographic or projected system (the coordsys type test). */
KO_API int ko_coordsys_p(const void *obj);

/* Vertical transformation methods.  The list holds the seven methods the
 * catalogue's vertical transformations use, under the EPSG code of the
 * method family (each stands for the EPSG methods that differ only in
 * their grid file's format), and eight methods of the library's own
 * (codes 1097xx).  Flags tell what a method needs of its systems; the
 * parameters a method takes are listed by code, the first `required` of
 * them being mandatory.  The point mathematics is not part of the list. */
#define KO_VTM_NEEDS_FILE 0x1u          /* reads the grid or model named by Dataset_ */
#define KO_VTM_NO_OP 0x2u               /* leaves heights as they are */
#define KO_VTM_TIME_BASED 0x4u          /* the result depends on the coordinate epoch */
#define KO_VTM_POSITION 0x8u            /* needs the horizontal position of each point */
#define KO_VTM_ELLIPSOIDAL_SOURCE 0x10u /* vertcs1 holds ellipsoidal heights */
#define KO_VTM_ELLIPSOIDAL_TARGET 0x20u /* vertcs2 holds ellipsoidal heights */
#define KO_VTM_GRAVITY_TARGET 0x40u     /* vertcs2 holds gravity-related heights or depths */
#define KO_VTM_DEPTH_TARGET 0x80u       /* vertcs2 holds depths */
#define KO_VTM_REVERSES 0x100u          /* the two systems point opposite ways */
#define KO_VTM_MAX_PARMS 6
typedef struct ko_vtmethlist_entry {
  int32_t code;
  uint32_t flags;                     /* KO_VTM_* */
  const char *name;
  int32_t parms[KO_VTM_MAX_PARMS];    /* parameter codes taken, 0 after the last */
  int32_t required;                   /* the first `required` codes are mandatory */
} ko_vtmethlist_entry;
/* The 15 entries in code order, then an entry of code 0. */
KO_API extern const ko_vtmethlist_entry ko_vtmethlist_tbl[];
KO_API extern const int ko_vtmethlist_tbl_cnt;
/* Null for codes below 1 and unknown codes. */
KO_API const ko_vtmethlist_entry *ko_vtmethlist_from_code(int32_t code);
/* The name goes through the vtmethod synonyms first (EPSG's method names
 * find their family), then is compared ignoring case. */
KO_API const ko_vtmethlist_entry *ko_vtmethlist_from_name(const char *name);
KO_API const ko_vtmethlist_entry *ko_vtmethlist_from_indx(int index);
KO_API int ko_vtmethlist_count(void);
/* New method objects: status KO_STATUS_CODE from a code (unknown: error
 * 222, category 4, the code as message), KO_STATUS_STRING from a name
 * (unknown: error 307, category 8, the name as message). */
KO_API ko_vtmethod *ko_vtmethlist_vtmethod_from_code(int32_t code, ko_err *err);
KO_API ko_vtmethod *ko_vtmethlist_vtmethod_from_name(const char *name, ko_err *err);

/* Vertical method object: the header alone, named as the list entry, with
 * the entry's code as internal and external code.  ko_vtmethod_new_errext
 * of an unknown name is warning 307 and null.  Equal when the codes are
 * equal. */
KO_API ko_vtmethod *ko_vtmethod_new_vtmethlist(const ko_vtmethlist_entry *entry, ko_err *err);
KO_API ko_vtmethod *ko_vtmethod_new_errext(const char *name, ko_err *err);
KO_API ko_vtmethod *ko_vtmethod_new(const char *name);
KO_API int ko_vtmethod_p(const void *obj);
KO_API ko_vtmethod *ko_vtmethod_clone(const ko_vtmethod *m);
KO_API ko_vtmethod *ko_vtmethod_del(ko_vtmethod *m);
KO_API int ko_vtmethod_eq(const ko_vtmethod *a, const ko_vtmethod *b);
/* The list entry of the object's code, and its flags (0 when none). */
KO_API const ko_vtmethlist_entry *ko_vtmethod_entry(const ko_vtmethod *m);
KO_API uint32_t ko_vtmethod_flags(const ko_vtmethod *m);
/* Checks 24 parameters (by slot) for the method of code: null array 330;
 * code <= 0 valid; unknown code 351; a parameter the method does not take
 * or outside its slot 348; a mandatory one missing 347 (both "%s: %s" with
 * name and the parameter's name).  name is the transformation's. */
KO_API int ko_vtmethod_valid(ko_parameter *const *parms, const char *name, int32_t code,
                             ko_err *err);
KO_API extern const ko_objvec ko_vtmethod_objvec;
KO_DECLARE_OBJECT_FORWARDS(vtmethod, ko_vtmethod)

/* Horizontal adjustment methods (of ko_adjhcs): the two plane-to-plane
 * methods of the catalogue, EPSG 9621 "Similarity" (4 values) and 9624
 * "Affine" (6 values); see ko_adjhcs for the values' meaning. */
typedef struct ko_htmethlist_entry {
  int32_t code;
  uint32_t flags;                     /* reserved, 0 */
  const char *name;
  int32_t num_values;                 /* adjustment values the method takes */
} ko_htmethlist_entry;
KO_API extern const ko_htmethlist_entry ko_htmethlist_tbl[];  /* ends with code 0 */
KO_API extern const int ko_htmethlist_tbl_cnt;
KO_API const ko_htmethlist_entry *ko_htmethlist_from_code(int32_t code);
KO_API const ko_htmethlist_entry *ko_htmethlist_from_name(const char *name);
KO_API const ko_htmethlist_entry *ko_htmethlist_from_indx(int index);
KO_API int ko_htmethlist_count(void);
/* As the vertical ones, with errors 216 (code) and 306 (name). */
KO_API ko_htmethod *ko_htmethlist_htmethod_from_code(int32_t code, ko_err *err);
KO_API ko_htmethod *ko_htmethlist_htmethod_from_name(const char *name, ko_err *err);
KO_API ko_htmethod *ko_htmethod_new_htmethlist(const ko_htmethlist_entry *entry, ko_err *err);
/* An unknown name is warning 306 and null. */
KO_API ko_htmethod *ko_htmethod_new_errext(const char *name, ko_err *err);
KO_API ko_htmethod *ko_htmethod_new(const char *name);
KO_API int ko_htmethod_p(const void *obj);
KO_API ko_htmethod *ko_htmethod_clone(const ko_htmethod *m);
KO_API ko_htmethod *ko_htmethod_del(ko_htmethod *m);
KO_API int ko_htmethod_eq(const ko_htmethod *a, const ko_htmethod *b);  /* equal codes */
KO_API const ko_htmethlist_entry *ko_htmethod_entry(const ko_htmethod *m);
KO_API extern const ko_objvec ko_htmethod_objvec;
KO_DECLARE_OBJECT_FORWARDS(htmethod, ko_htmethod)

/* Vertical transformation: a name, an optional horizontal system (a
 * geographic or projected system in which the method reads the horizontal
 * position; null when none is needed or the caller supplies longitude and
 * latitude), the source and target vertical systems, the method, up to 24
 * parameters by slot (a parameter without a unit counts in base units:
 * metres, radians), metadata, remark, the operation version and the
 * accuracy in metres (999.0 when unknown).
 *
 * Checks, in order: the method (343); vertcs1 (341); vertcs2 (342); the
 * horizontal system when given (338); the parameter array (330, never
 * null: 24 null pointers mean no parameters); the accuracy (352 when
 * negative or infinite; NaN is kept as unknown); the systems against the
 * method's flags (115 "Invalid coordsys type for vtmethod": an ellipsoidal
 * source or target that is not ellipsoidal, a gravity-related target that
 * is ellipsoidal, a depth target that holds heights, a reversal between
 * systems of one direction); ko_vtmethod_valid (347, 348, 351); memory.
 *
 * Equal when the names are equal by ko_strcmp_ci, the method codes agree,
 * both vertical systems are equal, the horizontal systems are equal when
 * both are present (a missing one is not compared), and every parameter
 * slot either side fills is equal by ko_parameter_eq.  Accuracy, version,
 * metadata and remark are not compared. */
KO_API ko_verttran *ko_verttran_ext_new_errext(const char *name, void *coordsys,
                                               ko_vertcs *vertcs1, ko_vertcs *vertcs2,
                                               ko_vtmethod *method, ko_parameter **parms,
                                               ko_metadata **metadata, ko_remark *remark,
                                               ko_err *err, double accuracy);
KO_API ko_verttran *ko_verttran_ext_new(const char *name, void *coordsys, ko_vertcs *vertcs1,
                                        ko_vertcs *vertcs2, ko_vtmethod *method,
                                        ko_parameter **parms, ko_metadata **metadata,
                                        ko_remark *remark, double accuracy);
KO_API ko_verttran *ko_verttran_new_errext(const char *name, void *coordsys, ko_vertcs *vertcs1,
                                           ko_vertcs *vertcs2, ko_vtmethod *method,
                                           ko_parameter **parms, ko_err *err);
KO_API ko_verttran *ko_verttran_new(const char *name, void *coordsys, ko_vertcs *vertcs1,
                                    ko_vertcs *vertcs2, ko_vtmethod *method,
                                    ko_parameter **parms);
KO_API int ko_verttran_p(const void *obj);
KO_API ko_verttran *ko_verttran_clone(const ko_verttran *vt);
KO_API ko_verttran *ko_verttran_del(ko_verttran *vt);
KO_API int ko_verttran_eq(const ko_verttran *a, const ko_verttran *b);
KO_API void *ko_verttran_coordsys(const ko_verttran *vt);
KO_API ko_vertcs *ko_verttran_vertcs1(const ko_verttran *vt);
KO_API ko_vertcs *ko_verttran_vertcs2(const ko_verttran *vt);
KO_API ko_vtmethod *ko_verttran_vtmethod(const ko_verttran *vt);
KO_API ko_parameter **ko_verttran_parameters_ptr(ko_verttran *vt);
KO_API void ko_verttran_parameters(const ko_verttran *vt, ko_parameter **out);
/* Each slot's value in base units (ko_parameter_value_si), 0.0 for an
 * empty slot; all zero for no transformation. */
KO_API void ko_verttran_parm_array(const ko_verttran *vt, double *out);
KO_API double ko_verttran_accuracy(const ko_verttran *vt);  /* 999.0 for no transformation */
KO_API void ko_verttran_set_opversion(ko_verttran *vt, const char *version);
KO_API char *ko_verttran_get_opversion(const ko_verttran *vt, char *buf);  /* 80 bytes */
KO_API ko_metadata **ko_verttran_metadata_vector(const ko_verttran *vt);
KO_API ko_remark *ko_verttran_remark(const ko_verttran *vt);
KO_API extern const ko_objvec ko_verttran_objvec;
KO_DECLARE_OBJECT_FORWARDS(verttran, ko_verttran)

/* Array: a name (null counts as empty), num_values doubles (copied) and an
 * optional unit of any kind (owned; null for plain numbers).  Checks:
 * num_values from 1 to KO_ARRAY_MAX_VALUES (310, "%s: %d" with name and
 * count); values non-null (326); a unit that is not a unit (324); each
 * value finite (358, "%s: %f" with name and value).  Equal when the names
 * are equal by ko_strcmp_ci, the counts are equal, the units are both
 * absent or equal, and each value agrees to the relative tolerance. */
#define KO_ARRAY_MAX_VALUES 1048576
KO_API ko_array *ko_array_new_errext(const char *name, int num_values, const double *values,
                                     ko_unit *unit, ko_err *err);
KO_API ko_array *ko_array_new(const char *name, int num_values, const double *values,
                              ko_unit *unit);
KO_API int ko_array_p(const void *obj);
KO_API ko_array *ko_array_clone(const ko_array *a);
KO_API ko_array *ko_array_del(ko_array *a);
KO_API int ko_array_eq(const ko_array *a, const ko_array *b);
KO_API int ko_array_num_values(const ko_array *a);
KO_API const double *ko_array_values(const ko_array *a);
KO_API double ko_array_value(const ko_array *a, int index);  /* 0.0 outside the array */
KO_API ko_unit *ko_array_unit(const ko_array *a);
KO_API extern const ko_objvec ko_array_objvec;
KO_DECLARE_OBJECT_FORWARDS(array, ko_array)

/* Epoch: one decimal year (an object without name).  The year must lie in
 * [KO_EPOCH_MIN_YEAR, KO_EPOCH_MAX_YEAR], the years of four-digit calendar
 * dates; NaN, infinities and years outside are error 355 with the year as
 * message.  Equal when the years agree to the relative tolerance. */
#define KO_EPOCH_MIN_YEAR 0.0
#define KO_EPOCH_MAX_YEAR 9999.0
KO_API ko_epoch *ko_epoch_new_errext(double year, ko_err *err);
KO_API ko_epoch *ko_epoch_new(double year);
KO_API int ko_epoch_p(const void *obj);
KO_API ko_epoch *ko_epoch_clone(const ko_epoch *e);
KO_API ko_epoch *ko_epoch_del(ko_epoch *e);
KO_API int ko_epoch_eq(const ko_epoch *a, const ko_epoch *b);
KO_API double ko_epoch_year(const ko_epoch *e);  /* 0.0 for no epoch */
KO_API extern const ko_objvec ko_epoch_objvec;
KO_DECLARE_TYPE_FORWARD(epoch, ko_epoch)

/* Adjusted horizontal coordinate system: a horizontal system (geographic
 * or projected) whose coordinates are adjusted by a plane transformation,
 * given as an adjustment method (ko_htmethod) and an array of its values.
 * With (x, y) the system's coordinates and (x', y') the adjusted ones:
 *   Affine (9624), values A0 A1 A2 B0 B1 B2:
 *     x' = A0 + A1 x + A2 y,  y' = B0 + B1 x + B2 y;
 *   Similarity (9621), values X0 Y0 M*cos(t) M*sin(t) (scale M, rotation
 *     t of the source axes, IOGP guidance note 7-2):
 *     x' = X0 + M cos(t) x + M sin(t) y,  y' = Y0 - M sin(t) x + M cos(t) y.
 * The array's unit, if any, is that of the translations (A0, B0, X0, Y0):
 * linear for a projected system, angular for a geographic one; the other
 * values are plain ratios.
 * Checks: the horizontal system (338), the method (336), the array (325),
 * its count equal to the method's num_values (310), its unit of the
 * system's kind (477).  Equal when the names are equal by ko_strcmp_ci,
 * the systems are equal, the method codes agree and the arrays' values
 * are equal (by ko_array_eq without the names). */
KO_API ko_adjhcs *ko_adjhcs_ext_new_errext(const char *name, void *coordsys, ko_htmethod *method,
                                           ko_array *values, ko_metadata **metadata,
                                           ko_remark *remark, ko_err *err);
KO_API ko_adjhcs *ko_adjhcs_ext_new(const char *name, void *coordsys, ko_htmethod *method,
                                    ko_array *values, ko_metadata **metadata, ko_remark *remark);
KO_API ko_adjhcs *ko_adjhcs_new_errext(const char *name, void *coordsys, ko_htmethod *method,
                                       ko_array *values, ko_err *err);
KO_API ko_adjhcs *ko_adjhcs_new(const char *name, void *coordsys, ko_htmethod *method,
                                ko_array *values);
KO_API int ko_adjhcs_p(const void *obj);
KO_API ko_adjhcs *ko_adjhcs_clone(const ko_adjhcs *a);
KO_API ko_adjhcs *ko_adjhcs_del(ko_adjhcs *a);
KO_API int ko_adjhcs_eq(const ko_adjhcs *a, const ko_adjhcs *b);
KO_API void *ko_adjhcs_coordsys(const ko_adjhcs *a);
KO_API ko_htmethod *ko_adjhcs_htmethod(const ko_adjhcs *a);
KO_API ko_array *ko_adjhcs_array(const ko_adjhcs *a);
/* The adjustment in affine form: out[6] = A0 A1 A2 B0 B1 B2, translations
 * in the system's base unit (metres or radians).  1, or 0 (out untouched)
 * for no system. */
KO_API int ko_adjhcs_affine(const ko_adjhcs *a, double *out);
KO_API ko_metadata **ko_adjhcs_metadata_vector(const ko_adjhcs *a);
KO_API ko_remark *ko_adjhcs_remark(const ko_adjhcs *a);
KO_API extern const ko_objvec ko_adjhcs_objvec;
KO_DECLARE_OBJECT_FORWARDS(adjhcs, ko_adjhcs)

/* ======================================================================
 * Parameters and the parameter list
 * ====================================================================== */

/* Parameter-list row.  category: 2 projection, 8 vertical system, 128
 * geographic transformation, 524288 vertical transformation, 524416 both
 * transformation kinds.  unit_type: 0 none, 1 angle, 2 length, 3 scale. */
typedef struct ko_parmlist_entry {
  int32_t code;
  const char *name;
  double dflt;
  int32_t index;
  uint32_t category;
  uint32_t unit_type;
  uint32_t reserved;
} ko_parmlist_entry;

#define KO_PARM_COUNT 24 /* slots in a parameter array */

KO_API extern const ko_parmlist_entry ko_parmlist_tbl[];
KO_API extern const int ko_parmlist_tbl_cnt;
KO_API const ko_parmlist_entry *ko_parmlist_from_code(int32_t code);
KO_API const ko_parmlist_entry *ko_parmlist_from_name(const char *name);

/* Category bits and unit types of the parameter list. */
#define KO_PARM_CAT_PROJECTION 2u
#define KO_PARM_CAT_VERTCS 8u
#define KO_PARM_CAT_GEOGTRAN 128u
#define KO_PARM_CAT_VERTTRAN 524288u
#define KO_PARM_CAT_TRANSFORM 524416u /* geogtran and verttran */
#define KO_PARM_UNIT_NONE 0u
#define KO_PARM_UNIT_ANGLE 1u
#define KO_PARM_UNIT_LENGTH 2u
#define KO_PARM_UNIT_SCALE 3u
#define KO_PARM_CODE_DATASET 100047 /* "Dataset_<grid file>" */

/* Slot index, default (degrees for angles) and unit type of a code:
 * -1, 0.0 and 0 for unknown codes. */
KO_API int32_t ko_parmlist_index_from_code(int32_t code);
KO_API double ko_parmlist_default_from_code(int32_t code);
KO_API uint32_t ko_parmlist_unit_type_from_code(int32_t code);
/* Rows of the list, the end row not counted (ko_parmlist_tbl_cnt). */
KO_API int ko_parmlist_count(void);
/* A new parameter with the row's name and default (or value), no unit and
 * status KO_STATUS_CODE; an unknown code is error 218. */
KO_API ko_parameter *ko_parmlist_parameter_from_code(int32_t code, ko_err *err);
KO_API ko_parameter *ko_parmlist_parameter_from_code_value(int32_t code, ko_err *err,
                                                           double value);

/* Parameter: a value in its own unit (owned, null for plain numbers), the
 * list codes of its name in the header (-1 when the name is not listed),
 * and the default factor in which ko_parameter_value reports. */
KO_API ko_parameter *ko_parameter_ext_new_errext(const char *name, ko_unit *unit, double value,
                                                 ko_err *err);
KO_API ko_parameter *ko_parameter_ext_new(const char *name, ko_unit *unit, double value);
KO_API ko_parameter *ko_parameter_new_errext(const char *name, double value, ko_err *err);
KO_API ko_parameter *ko_parameter_new(const char *name, double value);
KO_API ko_parameter *ko_parameter_new_parmlist(const ko_parmlist_entry *row, const char *name,
                                               ko_unit *unit, double value, ko_err *err);
KO_API int ko_parameter_p(const void *obj);
KO_API ko_parameter *ko_parameter_clone(const ko_parameter *p);
KO_API ko_parameter *ko_parameter_del(ko_parameter *p);
KO_API int ko_parameter_eq(const ko_parameter *a, const ko_parameter *b);
/* The value in the default factor's unit. */
KO_API double ko_parameter_value(const ko_parameter *p);
/* The value in base units (metres, radians, ratio). */
KO_API double ko_parameter_value_si(const ko_parameter *p);
/* Both return 1, or 0 (nothing changed) for NaN, infinity or no parameter. */
KO_API int ko_parameter_value_set(ko_parameter *p, double value);
KO_API int ko_parameter_value_set_si(ko_parameter *p, double value);
KO_API ko_unit *ko_parameter_unit(const ko_parameter *p);
KO_API void ko_parameter_unit_set(ko_parameter *p, ko_unit *unit);
KO_API double ko_parameter_dflt_factor(const ko_parameter *p);
KO_API void ko_parameter_dflt_factor_set(ko_parameter *p, double factor);
KO_API uint32_t ko_parameter_unit_type(const ko_parameter *p);
KO_API extern const ko_objvec ko_parameter_objvec;
KO_DECLARE_OBJECT_FORWARDS(parameter, ko_parameter)

/* ======================================================================
 * Projection table and auxiliary functions
 * ====================================================================== */

/* A projection's vector: eight pointer-sized slots.  compfunc and parmfunc
 * are present only for the projections that need them. */
typedef int (*ko_proj_compfunc)(const double *sph, const double *parms1, const double *parms2);
typedef int (*ko_proj_parmfunc)(ko_parameter *const *parms, double *parm_array);
typedef struct ko_projlist_entry {
  int32_t code;
  const char *name;
  ko_proj_fn forward;
  ko_proj_fn inverse;
  ko_proj_constfunc constfunc;
  ko_proj_validfunc validfunc;
  ko_proj_compfunc compfunc;
  ko_proj_parmfunc parmfunc;
} ko_projlist_entry;

/* The Transverse Mercator family's vectors. */
KO_API extern const ko_projlist_entry ko_prj_gauss_kruger_vector;
KO_API extern const ko_projlist_entry ko_prj_transverse_mercator_vector;
KO_API extern const ko_projlist_entry ko_prj_transverse_mercator_complex_vector;
KO_API extern const ko_projlist_entry ko_prj_transverse_mercator_nga_2014_vector;

/* Every other projection's vector. */
KO_API extern const ko_projlist_entry ko_prj_plate_carree_vector;
KO_API extern const ko_projlist_entry ko_prj_equidistant_cylindrical_vector;
KO_API extern const ko_projlist_entry ko_prj_miller_cylindrical_vector;
KO_API extern const ko_projlist_entry ko_prj_mercator_vector;
KO_API extern const ko_projlist_entry ko_prj_albers_vector;
KO_API extern const ko_projlist_entry ko_prj_sinusoidal_vector;
KO_API extern const ko_projlist_entry ko_prj_mollweide_vector;
KO_API extern const ko_projlist_entry ko_prj_eckert_vi_vector;
KO_API extern const ko_projlist_entry ko_prj_eckert_v_vector;
KO_API extern const ko_projlist_entry ko_prj_eckert_iv_vector;
KO_API extern const ko_projlist_entry ko_prj_eckert_iii_vector;
KO_API extern const ko_projlist_entry ko_prj_eckert_ii_vector;
KO_API extern const ko_projlist_entry ko_prj_eckert_i_vector;
KO_API extern const ko_projlist_entry ko_prj_gall_stereographic_vector;
KO_API extern const ko_projlist_entry ko_prj_behrmann_vector;
KO_API extern const ko_projlist_entry ko_prj_winkel_i_vector;
KO_API extern const ko_projlist_entry ko_prj_winkel_ii_vector;
KO_API extern const ko_projlist_entry ko_prj_lambert_conformal_conic_vector;
KO_API extern const ko_projlist_entry ko_prj_polyconic_vector;
KO_API extern const ko_projlist_entry ko_prj_quartic_authalic_vector;
KO_API extern const ko_projlist_entry ko_prj_loximuthal_vector;
KO_API extern const ko_projlist_entry ko_prj_bonne_vector;
KO_API extern const ko_projlist_entry ko_prj_hotine_two_point_natorigin_vector;
KO_API extern const ko_projlist_entry ko_prj_stereographic_vector;
KO_API extern const ko_projlist_entry ko_prj_equidistant_conic_vector;
KO_API extern const ko_projlist_entry ko_prj_cassini_vector;
KO_API extern const ko_projlist_entry ko_prj_van_der_grinten_i_vector;
KO_API extern const ko_projlist_entry ko_prj_robinson_vector;
KO_API extern const ko_projlist_entry ko_prj_two_point_equidistant_vector;
KO_API extern const ko_projlist_entry ko_prj_azimuthal_equidistant_vector;
KO_API extern const ko_projlist_entry ko_prj_lambert_azimuthal_eqarea_vector;
KO_API extern const ko_projlist_entry ko_prj_cylindrical_eqarea_vector;
KO_API extern const ko_projlist_entry ko_prj_hotine_two_point_center_vector;
KO_API extern const ko_projlist_entry ko_prj_hotine_azimuth_natorigin_vector;
KO_API extern const ko_projlist_entry ko_prj_hotine_azimuth_center_vector;
KO_API extern const ko_projlist_entry ko_prj_double_stereographic_vector;
KO_API extern const ko_projlist_entry ko_prj_krovak_vector;
KO_API extern const ko_projlist_entry ko_prj_new_zealand_map_grid_vector;
KO_API extern const ko_projlist_entry ko_prj_orthographic_vector;
KO_API extern const ko_projlist_entry ko_prj_winkel_tripel_vector;
KO_API extern const ko_projlist_entry ko_prj_aitoff_vector;
KO_API extern const ko_projlist_entry ko_prj_hammer_aitoff_vector;
KO_API extern const ko_projlist_entry ko_prj_flat_polar_quartic_vector;
KO_API extern const ko_projlist_entry ko_prj_craster_parabolic_vector;
KO_API extern const ko_projlist_entry ko_prj_gnomonic_vector;
KO_API extern const ko_projlist_entry ko_prj_times_vector;
KO_API extern const ko_projlist_entry ko_prj_vertical_near_side_perspective_vector;
KO_API extern const ko_projlist_entry ko_prj_stereographic_north_pole_vector;
KO_API extern const ko_projlist_entry ko_prj_stereographic_south_pole_vector;
KO_API extern const ko_projlist_entry ko_prj_fuller_vector;
KO_API extern const ko_projlist_entry ko_prj_rso_natorigin_vector;
KO_API extern const ko_projlist_entry ko_prj_rso_center_vector;
KO_API extern const ko_projlist_entry ko_prj_cube_vector;
KO_API extern const ko_projlist_entry ko_prj_robinson_tessin_vector;
KO_API extern const ko_projlist_entry ko_prj_local_vector;
KO_API extern const ko_projlist_entry ko_prj_goode_homolosine_vector;
KO_API extern const ko_projlist_entry ko_prj_berghaus_star_vector;
KO_API extern const ko_projlist_entry ko_prj_equidistant_cylindrical_ellipsoidal_vector;
KO_API extern const ko_projlist_entry ko_prj_ney_vector;
KO_API extern const ko_projlist_entry ko_prj_laborde_vector;
KO_API extern const ko_projlist_entry ko_prj_igac_plano_cartesiano_vector;
KO_API extern const ko_projlist_entry ko_prj_gnomonic_ellipsoidal_vector;
KO_API extern const ko_projlist_entry ko_prj_polar_stereographic_variant_a_vector;
KO_API extern const ko_projlist_entry ko_prj_polar_stereographic_variant_b_vector;
KO_API extern const ko_projlist_entry ko_prj_polar_stereographic_variant_c_vector;
KO_API extern const ko_projlist_entry ko_prj_mercator_variant_a_vector;
KO_API extern const ko_projlist_entry ko_prj_mercator_variant_c_vector;
KO_API extern const ko_projlist_entry ko_prj_hammer_ellipsoidal_vector;
KO_API extern const ko_projlist_entry ko_prj_quartic_authalic_ellipsoidal_vector;
KO_API extern const ko_projlist_entry ko_prj_eckert_greifendorff_vector;
KO_API extern const ko_projlist_entry ko_prj_wagner_iv_vector;
KO_API extern const ko_projlist_entry ko_prj_wagner_v_vector;
KO_API extern const ko_projlist_entry ko_prj_wagner_vii_vector;
KO_API extern const ko_projlist_entry ko_prj_natural_earth_vector;
KO_API extern const ko_projlist_entry ko_prj_natural_earth_ii_vector;
KO_API extern const ko_projlist_entry ko_prj_patterson_vector;
KO_API extern const ko_projlist_entry ko_prj_compact_miller_vector;
KO_API extern const ko_projlist_entry ko_prj_transverse_cylindrical_eqarea_vector;
KO_API extern const ko_projlist_entry ko_prj_aspect_adaptive_cylindrical_vector;
KO_API extern const ko_projlist_entry ko_prj_geostationary_satellite_vector;
KO_API extern const ko_projlist_entry ko_prj_equal_earth_vector;
KO_API extern const ko_projlist_entry ko_prj_peirce_quincuncial_vector;
KO_API extern const ko_projlist_entry ko_prj_adams_square_ii_vector;
KO_API extern const ko_projlist_entry ko_prj_tobler_cylindrical_i_vector;
KO_API extern const ko_projlist_entry ko_prj_tobler_cylindrical_ii_vector;
KO_API extern const ko_projlist_entry ko_prj_perspective_cylindrical_vector;
KO_API extern const ko_projlist_entry ko_prj_lambert_conformal_conic_1sp_vector;
KO_API extern const ko_projlist_entry ko_prj_lambert_conformal_conic_2sp_vector;
KO_API extern const ko_projlist_entry ko_prj_plate_carree_oblique_vector;
KO_API extern const ko_projlist_entry ko_prj_equidistant_cylindrical_auxs_vector;
KO_API extern const ko_projlist_entry ko_prj_miller_cylindrical_auxs_vector;
KO_API extern const ko_projlist_entry ko_prj_mercator_auxs_vector;
KO_API extern const ko_projlist_entry ko_prj_mollweide_auxs_vector;
KO_API extern const ko_projlist_entry ko_prj_eckert_vi_auxs_vector;
KO_API extern const ko_projlist_entry ko_prj_eckert_iv_auxs_vector;
KO_API extern const ko_projlist_entry ko_prj_stereographic_auxs_vector;
KO_API extern const ko_projlist_entry ko_prj_van_der_grinten_i_auxs_vector;
KO_API extern const ko_projlist_entry ko_prj_azimuthal_equidistant_auxs_vector;
KO_API extern const ko_projlist_entry ko_prj_lambert_azimuthal_eqarea_auxs_vector;
KO_API extern const ko_projlist_entry ko_prj_orthographic_auxs_vector;
KO_API extern const ko_projlist_entry ko_prj_gnomonic_auxs_vector;
KO_API extern const ko_projlist_entry ko_prj_hotine_azimuth_center_old_vector;

/* The projection list: the 106 vectors in alphabetical order of their
 * vector names, then null. */
KO_API extern const ko_projlist_entry *const ko_projlist_tbl[];
KO_API extern const int ko_projlist_tbl_cnt;
/* Lookups: by code (null below 1 or unknown), by name (case-insensitive),
 * by index (null outside [0, count)). */
KO_API const ko_projlist_entry *ko_projlist_from_code(int32_t code);
KO_API const ko_projlist_entry *ko_projlist_from_name(const char *name);
KO_API const ko_projlist_entry *ko_projlist_from_indx(int index);
KO_API int ko_projlist_count(void);
/* Slots 2 to 7 of the vector of the projection object's code, or null. */
KO_API ko_proj_fn ko_projlist_get_forward(const ko_projection *projection);
KO_API ko_proj_fn ko_projlist_get_inverse(const ko_projection *projection);
KO_API ko_proj_constfunc ko_projlist_get_constfunc(const ko_projection *projection);
KO_API ko_proj_validfunc ko_projlist_get_validfunc(const ko_projection *projection);
KO_API ko_proj_compfunc ko_projlist_get_compfunc(const ko_projection *projection);
KO_API ko_proj_parmfunc ko_projlist_get_parmfunc(const ko_projection *projection);
/* A new projection object from the list: status KO_STATUS_CODE by code
 * (error 217 when unknown), KO_STATUS_STRING by name (error 309). */
KO_API ko_projection *ko_projlist_projection_from_code(int32_t code, ko_err *err);
KO_API ko_projection *ko_projlist_projection_from_name(const char *name, ko_err *err);

/* Projection object (type KO_TYPE_PROJECTION): code, name and the forward,
 * inverse and constants functions copied from its vector. */
KO_API int ko_projection_p(const void *obj);
KO_API ko_projection *ko_projection_clone(const ko_projection *projection);
KO_API ko_projection *ko_projection_del(ko_projection *projection);
/* Equal codes; Gauss_Kruger (43005) and Transverse_Mercator (43006) are
 * the same projection. */
KO_API int ko_projection_eq(const ko_projection *a, const ko_projection *b);
KO_API ko_proj_fn ko_projection_forward(const ko_projection *projection);
KO_API ko_proj_fn ko_projection_inverse(const ko_projection *projection);
KO_API ko_proj_constfunc ko_projection_constfunc(const ko_projection *projection);
/* Checks 24 parameters (by slot) for the projection of code: null array
 * error 330, code <= 0 valid, unknown code error 349, else the vector's
 * validfunc.  name is the source of the reports. */
KO_API int ko_projection_valid(ko_parameter *const *parms, const char *name, int32_t code,
                               ko_err *err);
/* Clears the 24 parameter slots (pointers set to null, nothing deleted) and
 * fills the projection's defaults; returns the number filled (0: none). */
KO_API int ko_projection_defaults(const ko_projection *projection, ko_parameter **parms);
KO_API extern const ko_objvec ko_projection_objvec;
KO_DECLARE_OBJECT_FORWARDS(projection, ko_projection)

/* Projection classes (ko_proj_class; 0 for an unknown code). */
#define KO_PROJ_CLASS_AZIMUTHAL 10
#define KO_PROJ_CLASS_MODIFIED_AZIMUTHAL 19
#define KO_PROJ_CLASS_CYLINDRIC 20
#define KO_PROJ_CLASS_PSEUDOCYLINDRIC 21
#define KO_PROJ_CLASS_MODIFIED_CYLINDRIC 29
#define KO_PROJ_CLASS_CONIC 30
#define KO_PROJ_CLASS_PSEUDOCONIC 31
#define KO_PROJ_CLASS_POLYCONIC 32
#define KO_PROJ_CLASS_MODIFIED_CONIC 39
#define KO_PROJ_CLASS_FACED 40

/* Projection property bits (ko_proj_props; 0 for an unknown code). */
#define KO_PROJ_PROPERTY_NONE 1u
#define KO_PROJ_PROPERTY_CONFORMAL 2u
#define KO_PROJ_PROPERTY_EQ_AREA 4u
#define KO_PROJ_PROPERTY_EQ_DIST_ONE_PT 8u
#define KO_PROJ_PROPERTY_EQ_DIST_TWO_PT 16u
#define KO_PROJ_PROPERTY_EQ_DIST_MERID 32u
#define KO_PROJ_PROPERTY_EQ_DIST_PARALLEL 64u
#define KO_PROJ_PROPERTY_EQ_DIST_OTHER 128u
#define KO_PROJ_PROPERTY_TRUE_DIRECTION_CENTER 256u
#define KO_PROJ_PROPERTY_TRUE_DIRECTION_LOXODROMES 512u
#define KO_PROJ_PROPERTY_STRAIGHT_LOXODROMES 1024u
#define KO_PROJ_PROPERTY_STRAIGHT_LOXODROMES_CENTER 2048u
#define KO_PROJ_PROPERTY_STRAIGHT_GREAT_CIRCLES 4096u
#define KO_PROJ_PROPERTY_STRAIGHT_GREAT_ELLIPTICS 8192u
#define KO_PROJ_PROPERTY_INTERRUPTED 16384u
#define KO_PROJ_PROPERTY_NOT_ENTIRE_WORLD 32768u
#define KO_PROJ_PROPERTY_ENTIRE_WORLD 65536u
#define KO_PROJ_PROPERTY_WORLD_APHYLACTIC 131072u
#define KO_PROJ_PROPERTY_PERSPECTIVE 262144u

/* A class or property: value, macro name, short name.  The two tables end
 * with a zero row. */
typedef struct ko_proj_attr_entry {
  uint32_t value;
  const char *macro;
  const char *short_name;
} ko_proj_attr_entry;
KO_API extern const ko_proj_attr_entry ko_proj_class_tbl[];
KO_API extern const ko_proj_attr_entry ko_proj_props_tbl[];
KO_API int ko_proj_class(int32_t code);
KO_API uint32_t ko_proj_props(int32_t code);

/* Longitude wrapping: into [-pi, pi], and into [c - pi, c + pi]. */
KO_API double ko_delta(double angle);
KO_API double ko_delta_center(double angle, double center);

/* Radii of a spheroid (a in metres, e2 the first eccentricity squared). */
KO_API double ko_auth_r(double a, double e2);
KO_API double ko_rect_r(double a, double e2);
KO_API double ko_q90(double a, double e2);

/* Auxiliary latitudes, all in radians: conformal (chi), authalic (beta),
 * rectifying (mu).  The _wconst forms take coefficients computed once for
 * the spheroid by the matching _constants function. */
#define KO_AUX_NCOEF 18
KO_API double ko_phi_to_chi(double e2, double phi);
KO_API double ko_chi_to_phi(double e2, double chi);
KO_API double ko_phi_to_beta(double e2, double phi);
KO_API double ko_beta_to_phi(double e2, double beta);
KO_API double ko_phi_to_mu(double e2, double phi);
KO_API double ko_mu_to_phi(double e2, double mu);
KO_API void ko_chi_conformal_constants(double e2, double *coef);   /* KO_AUX_NCOEF */
KO_API void ko_beta_authalic_constants(double e2, double *coef);   /* KO_AUX_NCOEF */
KO_API void ko_mu_rectifying_constants(double e2, double *coef);   /* KO_AUX_NCOEF */
KO_API double ko_phi_to_chi_wconst(const double *coef, double e2, double phi);
KO_API double ko_chi_to_phi_wconst(const double *coef, double e2, double chi);
KO_API double ko_phi_to_beta_wconst(const double *coef, double e2, double phi);
KO_API double ko_beta_to_phi_wconst(const double *coef, double e2, double beta);
KO_API double ko_phi_to_mu_wconst(const double *coef, double e2, double phi);
KO_API double ko_mu_to_phi_wconst(const double *coef, double e2, double mu);

/* Arithmetic-geometric mean sequence; returns the last index computed. */
KO_API int ko_agm(double *a, double *b, double *c, int n);
/* tan(pi/4 +- phi/2); the flags choose what a pole gives (see the source). */
KO_API double ko_tan_pid4_plus_phid2(int flag1, int flag2, double phi);
KO_API double ko_tan_pid4_minus_phid2(int flag1, int flag2, double phi);

/* Carlson's symmetric elliptic integrals and the complete integrals of the
 * first, second and third kind with parameter m (= e2); n is the
 * characteristic of the third kind. */
KO_API double ko_rf(double x, double y, double z);
KO_API double ko_rd(double x, double y, double z);
KO_API double ko_rc(double x, double y);
KO_API double ko_rj(double x, double y, double z, double p);
KO_API double ko_ellint1(double m);
KO_API double ko_ellint2(double m);
KO_API double ko_ellint3(double n, double m);

/* ======================================================================
 * Projected systems, conversions, point conversion
 * ====================================================================== */

/* Conversion (type KO_TYPE_CONVERSION): a projection and its parameters, one
 * per slot of the 24-slot parameter array (slot i holds the parameter whose
 * list index is i, or null).  The constructors take ownership of the
 * projection and of the parameters (the array itself stays the caller's)
 * on success only.  In order: a name beyond 79 characters is warning 354
 * (null counts as empty); a projection that is not live is error 328; a
 * null array error 330; the parameters must pass ko_projection_valid (its
 * reports, e.g. 347 for a missing parameter); error 1 when memory runs
 * out.  The short forms name the conversion after its projection. */
KO_API ko_conversion *ko_conversion_ext_new_errext(const char *name, ko_projection *projection,
                                                   ko_parameter **parms, ko_err *err);
KO_API ko_conversion *ko_conversion_ext_new(const char *name, ko_projection *projection,
                                            ko_parameter **parms);
KO_API ko_conversion *ko_conversion_new_errext(ko_projection *projection, ko_parameter **parms,
                                               ko_err *err);
KO_API ko_conversion *ko_conversion_new(ko_projection *projection, ko_parameter **parms);
KO_API int ko_conversion_p(const void *obj);
KO_API ko_conversion *ko_conversion_clone(const ko_conversion *c);
KO_API ko_conversion *ko_conversion_del(ko_conversion *c);
/* Names equal by ko_strcmp_ci, projections by ko_projection_eq, and slot
 * by slot parameters both absent or equal by ko_parameter_eq. */
KO_API int ko_conversion_eq(const ko_conversion *a, const ko_conversion *b);
/* Fills the 24-slot parameter array (metres, radians, ratios): each slot
 * from its parameter's ko_parameter_value_si (0.0 when empty), then the
 * projection's parameter function, then 1.0 in an empty scale-factor slot
 * (5), then an empty slot 4 takes slot 3 and an empty slot 3 with slot 4
 * present takes slot 4.  Returns 1, or 0 (out untouched) for no
 * conversion or a null array. */
KO_API int ko_conversion_parm_array(const ko_conversion *c, double *out);
KO_API ko_projection *ko_conversion_method(const ko_conversion *c);
/* Takes the new projection (a live one; anything else is ignored and stays
 * the caller's) and deletes the old. */
KO_API void ko_conversion_method_set(ko_conversion *c, ko_projection *projection);
/* The conversion's own array of KO_PARM_COUNT parameter pointers
 * (borrowed), or null. */
KO_API ko_parameter **ko_conversion_parameters_ptr(const ko_conversion *c);
KO_API extern const ko_objvec ko_conversion_objvec;
KO_DECLARE_OBJECT_FORWARDS(conversion, ko_conversion)

/* Projected coordinate system (type KO_TYPE_PROJCS): a geographic system
 * and a conversion (both owned), 2 or 3 axes, a linear unit, metadata and
 * remark, and the projection constants loaded on first use.
 *
 * ko_projcs_ext_new_errext checks, in order (errors of severity 4, category
 * 8, result null): a name beyond 79 characters (warning 354, construction
 * goes on); a live geographic system (331); a live conversion (328); a
 * dimension of 2 or 3 and not above the geographic system's (488); the axes
 * by ko_axis_check_order for a projected system (its number); a unit
 * argument that is not a linear unit (323); the units (477 "Mismatched
 * units": the given unit, the first axis's and, in three dimensions, the
 * third axis's must agree where present, and the geographic system's
 * vertical unit must agree with the system's); error 1 when memory runs out.
 * The system then keeps one linear unit (the given one, else a clone of
 * the axes' unit, else a new "Meter") and the axes' units are cleared --
 * except in three dimensions with axes of different units and no unit
 * given, where the axes keep theirs.  Finally ko_projcs_parameters_fix and
 * ko_projcs_special_cases run on the new system.  On failure the caller
 * keeps every argument, unchanged.  The short forms pass dimension 2 and no
 * axes, metadata or remark. */
KO_API ko_projcs *ko_projcs_ext_new_errext(const char *name, ko_geogcs *geogcs,
                                           ko_conversion *conversion, int dimension,
                                           ko_axis **axes, ko_linunit *unit,
                                           ko_metadata **metadata, ko_remark *remark,
                                           ko_err *err);
KO_API ko_projcs *ko_projcs_ext_new(const char *name, ko_geogcs *geogcs,
                                    ko_conversion *conversion, int dimension, ko_axis **axes,
                                    ko_linunit *unit, ko_metadata **metadata, ko_remark *remark);
KO_API ko_projcs *ko_projcs_new_errext(const char *name, ko_geogcs *geogcs,
                                       ko_conversion *conversion, ko_linunit *unit, ko_err *err);
KO_API ko_projcs *ko_projcs_new(const char *name, ko_geogcs *geogcs, ko_conversion *conversion,
                                ko_linunit *unit);
KO_API int ko_projcs_p(const void *obj);
KO_API ko_projcs *ko_projcs_clone(const ko_projcs *p);
/* Unloads the constants, then deletes the system with all it owns. */
KO_API ko_projcs *ko_projcs_del(ko_projcs *p);
/* Names equal by ko_strcmp_ci, then ko_projcs_eqnn. */
KO_API int ko_projcs_eq(const ko_projcs *a, const ko_projcs *b);
/* Equality without the systems' own names: geographic systems as
 * ko_geogcs_eq compares them but for their names, conversions as
 * ko_conversion_eq but for their names, dimensions, and the linear units
 * (ko_projcs_unit and ko_projcs_vert_unit). */
KO_API int ko_projcs_eqnn(const ko_projcs *a, const ko_projcs *b);
KO_API ko_geogcs *ko_projcs_geogcs(const ko_projcs *p);
KO_API ko_conversion *ko_projcs_conversion(const ko_projcs *p);
KO_API ko_projection *ko_projcs_projection(const ko_projcs *p);
/* The unit field (null when the axes carry the units). */
KO_API ko_linunit *ko_projcs_linunit(const ko_projcs *p);
/* The first axis's unit when it has one, else the unit field. */
KO_API ko_linunit *ko_projcs_unit(const ko_projcs *p);
/* In three dimensions the third axis's unit when it has one, else the unit
 * field; null in two dimensions. */
KO_API ko_linunit *ko_projcs_vert_unit(const ko_projcs *p);
KO_API int ko_projcs_dimension(const ko_projcs *p);
KO_API ko_axis *ko_projcs_axis(const ko_projcs *p, int index);  /* 0-based */
KO_API ko_metadata **ko_projcs_metadata_vector(const ko_projcs *p);
KO_API ko_remark *ko_projcs_remark(const ko_projcs *p);
KO_API ko_constants *ko_projcs_constants(const ko_projcs *p);
/* ko_conversion_parm_array of the system's conversion. */
KO_API int ko_projcs_parm_array(const ko_projcs *p, double *out);
/* Gives every parameter of the conversion a unit and a default factor so
 * that ko_parameter_value_si reads it in base units and ko_parameter_value
 * in the system's own units: an angular parameter without unit takes a
 * clone of the geographic system's angular unit (its values are read in
 * that unit, as in WKT1), a linear one a clone of the system's linear unit,
 * a scale one "Unity"; the default factor becomes the factor of the
 * geographic system's angular unit, of the system's linear unit, or 1.0.
 * Parameters that have a unit keep it; plain numbers are left alone.
 * Returns 1, or 0 when memory ran out (nothing is changed then) or p is not
 * a projected system. */
KO_API int ko_projcs_parameters_fix(ko_projcs *p);
/* Hotine_Oblique_Mercator_Azimuth_Center (43037) with an XY_Plane_Rotation
 * (slot 14) is Rectified_Skew_Orthomorphic_Center (43054): the projection
 * is replaced and the old one deleted.  Returns 1, or 0 when memory ran out
 * (nothing is changed) or p is not a projected system. */
KO_API int ko_projcs_special_cases(ko_projcs *p);
KO_API extern const ko_objvec ko_projcs_objvec;
KO_DECLARE_OBJECT_FORWARDS(projcs, ko_projcs)

/* Projection constants of a projected system, loaded on the first point
 * conversion and kept until unloaded or deleted.  ko_projcs_load_constants
 * returns 1 when the constants are loaded or the projection needs none,
 * 0 for no projected system or when loading failed (a failure is kept and
 * not retried until ko_projcs_unload_constants). */
KO_API int ko_projcs_load_constants(ko_projcs *p);
KO_API void ko_projcs_unload_constants(ko_projcs *p);

/* Point conversion between a projected system and its own geographic
 * system.  coords holds n (x, y) or (longitude, latitude) pairs, converted
 * in place; longitudes and latitudes are in the geographic system's
 * angular unit and relative to its prime meridian, x and y in the projected
 * system's linear unit, false origins included.  Latitudes beyond the poles
 * are clamped to them.  The result is the projection's count of converted
 * points; -1 for no projected system, null coords or negative n; 0 when
 * the projection has no function for the direction.  n = 0 asks the
 * projection whether it can run (the array is not touched).  After a failed
 * call (result below 1) the points are back in the caller's units. */
KO_API int ko_geog_to_proj(ko_projcs *p, int n, double *coords);
KO_API int ko_proj_to_geog(ko_projcs *p, int n, double *coords);
/* As ko_proj_to_geog, with the longitudes put into the range 360 degrees
 * wide (in the angular unit's measure) centred on center. */
KO_API int ko_proj_to_geog_center(ko_projcs *p, int n, double *coords, double center);

/* ======================================================================
 * Compiled-in catalogue
 * ====================================================================== */

/* The catalogue of predefined objects: constant tables compiled into the
 * library (derived from the EPSG Geodetic Parameter Dataset, see NOTICE),
 * one family of tables per object type, tied together by the registry
 * ko_db_builtin_registry.  Every lookup returns a pointer into the
 * constant tables, or null; nothing is allocated. */

/* Table headers: long (data and most other kinds, 32 bytes) and short
 * (names and synonyms, 16 bytes). */
typedef struct ko_db_tbl {
  const void *recs;
  int32_t count;
  int32_t size;         /* bytes per record */
  void *reserved[2];
} ko_db_tbl;
typedef struct ko_db_list {
  const void *recs;
  uint64_t count;
} ko_db_list;
typedef const ko_db_list *(*ko_db_synonym_rtn)(void);

/* Name table record: name hash (ko_str_hashcode) and code; sorted by the
 * hash as unsigned, no two hashes equal within a table. */
typedef struct ko_db_name_rec {
  uint32_t hash;
  int32_t code;
} ko_db_name_rec;

/* Data records, each sorted by code. */
typedef struct ko_db_geogcs_rec {       /* 32 bytes */
  const char *name;
  int32_t code, datum, primem, angunit;
  uint64_t reserved;
} ko_db_geogcs_rec;
typedef struct ko_db_projcs_rec {       /* 40 bytes */
  const char *name;
  int32_t code, geogcs, projection, linunit;
  int32_t reserved;
  int32_t parm_first, parm_count;       /* run in ko_obj_projcs_parms */
  int32_t reserved2;
} ko_db_projcs_rec;
typedef struct ko_db_vertcs_rec {       /* 32 bytes */
  const char *name;
  int32_t code, vdatum, linunit;
  int32_t direction;                    /* 1 up (heights), -1 down (depths) */
  uint64_t reserved;
} ko_db_vertcs_rec;
typedef struct ko_db_gxyzcs_rec {       /* 24 bytes */
  const char *name;
  int32_t code, datum, primem, linunit;
} ko_db_gxyzcs_rec;
typedef struct ko_db_hvcoordsys_rec {   /* 24 bytes */
  const char *name;
  int32_t code;
  int32_t hcs, vcs;                     /* horizontal and vertical system */
  int32_t hcs_type;                     /* KO_TYPE_GEOGCS or KO_TYPE_PROJCS */
} ko_db_hvcoordsys_rec;
typedef struct ko_db_datum_rec {        /* 272 bytes; datum and vdatum */
  const char *name;
  int32_t code;
  int32_t spheroid;                     /* 0 for a vertical datum */
  char anchor[256];                     /* anchor text, empty when EPSG gives none */
} ko_db_datum_rec;
typedef struct ko_db_geogtran_rec {     /* 48 bytes */
  const char *name;
  int32_t code, gcs1, gcs2, method;
  int32_t reserved, reserved2;
  double accuracy;                      /* metres; 999.0 when unknown */
  int32_t parm_first, parm_count;       /* run in ko_obj_geogtran_parms */
} ko_db_geogtran_rec;
typedef struct ko_db_verttran_rec {     /* 64 bytes */
  const char *name;
  int32_t code, vcs1, vcs2, method;     /* vcs1 may be a 3D geographic system */
  int32_t reserved, reserved2;
  double accuracy;
  int32_t parm_first, parm_count;       /* run in ko_obj_verttran_parms */
  int32_t interpolation;                /* system of a grid's coordinates, or 0 */
  int32_t reserved3;
  uint64_t reserved4;
} ko_db_verttran_rec;
typedef struct ko_db_angunit_rec {      /* 48 bytes; angunit and scaleunit */
  const char *name;
  int32_t code, reserved;
  const char *display, *plural, *abbreviation;
  double factor;
} ko_db_angunit_rec;
typedef struct ko_db_linunit_rec {      /* 56 bytes; linunit and areaunit */
  const char *name;
  int32_t code, reserved;
  const char *display, *plural, *abbreviation;
  double factor;
  int32_t related;                      /* the area unit of a length, the length of an area */
  int32_t reserved2;
} ko_db_linunit_rec;
typedef struct ko_db_primem_rec {       /* 24 bytes */
  const char *name;
  int32_t code, angunit;
  double longitude;                     /* in angunit */
} ko_db_primem_rec;
typedef struct ko_db_spheroid_rec {     /* 32 bytes */
  const char *name;
  int32_t code, linunit;
  double axis;                          /* semi-major axis in linunit */
  double flattening;                    /* not inverse; 0 for a sphere */
} ko_db_spheroid_rec;
typedef struct ko_db_method_rec {       /* 16 bytes; the method-like lists */
  const char *name;
  int32_t code;
  int32_t slot;                         /* parameters: slot in the parameter array */
} ko_db_method_rec;
typedef struct ko_db_extent_rec {       /* 48 bytes; areas of use */
  int32_t code, reserved;
  const char *name;
  double west, south, east, north;      /* degrees */
} ko_db_extent_rec;

/* Parameter pools: projected systems (angles in the unit of the geographic
 * system, lengths in the projected system's unit, scales as factors),
 * geographic transformations (translations in metres, rotations in
 * arc-seconds, scale difference in parts per million, rates per year,
 * offsets in arc-seconds) and vertical transformations.  aux is the EPSG
 * parameter code, or for Dataset_ the index of the grid file's name in
 * the pool's texts. */
typedef struct ko_db_parm_rec {         /* 16 bytes */
  int32_t code;
  int32_t aux;
  double value;
} ko_db_parm_rec;

/* Other kinds. */
typedef struct ko_db_synonym_rec {      /* 32 bytes; sorted by synonym */
  const char *synonym;
  const char *name;                     /* library name */
  const char *authority;                /* whose spelling: "EPSG", "PostGIS" */
  uint64_t reserved;
} ko_db_synonym_rec;
typedef struct ko_db_text_rec {         /* 16 bytes; description, defstring */
  int32_t code, reserved;
  const char *text;
} ko_db_text_rec;
typedef struct ko_db_version_rec {      /* 24 bytes */
  int32_t code, reserved;
  const char *authority, *version;
} ko_db_version_rec;
typedef struct ko_db_areacode_rec {     /* 12 bytes; one per area of use */
  int32_t code, area, sequence;
} ko_db_areacode_rec;
typedef struct ko_db_areainfo_rec {     /* 24 bytes; by area code */
  int32_t area, reserved;
  const char *path;                     /* "Europe/France" */
  const char *name;
} ko_db_areainfo_rec;
/* Pairs: deprecated (code, flags: 1 deprecated), codechange (old, new),
 * axis (code, EPSG coordinate system), exception (code, flags below). */
typedef struct ko_db_pair_rec {         /* 8 bytes */
  int32_t code, value;
} ko_db_pair_rec;
#define KO_DB_EXC_SYSTEM_REPLACED 1     /* a geocentric or compound end replaced */
#define KO_DB_EXC_ROTATIONS_NEGATED 2   /* position-vector rotations stored as frame */
#define KO_DB_EXC_HEIGHT_DROPPED 4      /* a height offset has no library parameter */
#define KO_DB_EXC_SCALE_UNIT_FIXED 8    /* scale difference labelled unity is ppm */
#define KO_DB_EXC_TIME_SPECIFIC 16      /* parameters valid at one epoch */
typedef struct ko_db_gcsvcs_rec {       /* 16 bytes; sorted by gcs */
  int32_t gcs, gcs3d, vcs, xyz;         /* 2D, 3D, vertical, geocentric */
} ko_db_gcsvcs_rec;
typedef struct ko_db_ensemble_rec {     /* 24 bytes; members in sequence */
  int32_t code, member, sequence, reserved;
  double accuracy;                      /* metres */
} ko_db_ensemble_rec;
typedef struct ko_db_epoch_rec {        /* 16 bytes; dynamic frames */
  int32_t code, reserved;
  double epoch;                         /* decimal year */
} ko_db_epoch_rec;

/* Code ranges per type; the records end with a zero record. */
typedef struct ko_db_range_rec {        /* 16 bytes */
  int32_t low, high;
  char authority[8];
} ko_db_range_rec;
typedef struct ko_db_ranges {           /* 24 bytes */
  uint32_t type;
  int32_t count;                        /* ranges in use */
  int32_t capacity;                     /* records, the zero record included */
  const ko_db_range_rec *recs;
} ko_db_ranges;

/* Registry row: type and fifteen tables (null when the type has none). */
typedef struct ko_db_builtin_entry {
  uint32_t type;
  const ko_db_tbl *deprecated;
  const ko_db_tbl *codechange;
  ko_db_synonym_rtn synonym;
  const ko_db_tbl *data;
  const ko_db_list *name;
  const ko_db_tbl *version;
  const ko_db_tbl *defstring;
  const ko_db_tbl *areainfo;
  const ko_db_tbl *areacode;
  const ko_db_tbl *description;
  const ko_db_tbl *exception;
  const ko_db_tbl *gcsvcs;
  const ko_db_tbl *axis;
  const ko_db_tbl *ensemble;
  const ko_db_tbl *epoch;
} ko_db_builtin_entry;

/* Where the catalogue comes from. */
typedef struct ko_db_source {
  const char *authority;                /* "EPSG" */
  const char *version;                  /* "v10.076" */
  const char *date;                     /* "2022-08-31" */
  const char *terms;                    /* terms of use */
} ko_db_source;

KO_API extern const ko_db_builtin_entry ko_db_builtin_registry[];
KO_API extern const ko_db_source ko_db_builtin_source;

#define KO_DB_TABLES(t)                                                      \
  KO_API extern const ko_db_tbl ko_obj_##t##_data_tbl, ko_obj_##t##_version_tbl, \
      ko_obj_##t##_defstring_tbl, ko_obj_##t##_description_tbl;             \
  KO_API extern const ko_db_list ko_obj_##t##_name_tbl, ko_obj_##t##_synonym_tbl; \
  KO_API const ko_db_list *ko_obj_##t##_synonym_tbl_rtn(void)
#define KO_DB_HISTORY(t) \
  KO_API extern const ko_db_tbl ko_obj_##t##_deprecated_tbl, ko_obj_##t##_codechange_tbl
KO_DB_TABLES(geogcs); KO_DB_TABLES(projcs); KO_DB_TABLES(vertcs); KO_DB_TABLES(gxyzcs);
KO_DB_TABLES(hvcoordsys); KO_DB_TABLES(datum); KO_DB_TABLES(vdatum); KO_DB_TABLES(geogtran);
KO_DB_TABLES(verttran); KO_DB_TABLES(angunit); KO_DB_TABLES(linunit); KO_DB_TABLES(scaleunit);
KO_DB_TABLES(areaunit); KO_DB_TABLES(primem); KO_DB_TABLES(spheroid); KO_DB_TABLES(htmethod);
KO_DB_TABLES(method); KO_DB_TABLES(vtmethod); KO_DB_TABLES(projection); KO_DB_TABLES(parameter);
KO_DB_HISTORY(geogcs); KO_DB_HISTORY(projcs); KO_DB_HISTORY(vertcs); KO_DB_HISTORY(gxyzcs);
KO_DB_HISTORY(hvcoordsys); KO_DB_HISTORY(datum); KO_DB_HISTORY(vdatum); KO_DB_HISTORY(geogtran);
KO_DB_HISTORY(verttran); KO_DB_HISTORY(angunit); KO_DB_HISTORY(linunit);
KO_DB_HISTORY(scaleunit); KO_DB_HISTORY(areaunit); KO_DB_HISTORY(primem);
KO_DB_HISTORY(spheroid);
KO_API extern const ko_db_tbl ko_obj_geogcs_areacode_tbl, ko_obj_projcs_areacode_tbl,
    ko_obj_vertcs_areacode_tbl, ko_obj_gxyzcs_areacode_tbl, ko_obj_hvcoordsys_areacode_tbl,
    ko_obj_geogtran_areacode_tbl, ko_obj_verttran_areacode_tbl;
KO_API extern const ko_db_tbl ko_obj_geogcs_areainfo_tbl, ko_obj_projcs_areainfo_tbl,
    ko_obj_vertcs_areainfo_tbl;
KO_API extern const ko_db_tbl ko_obj_geogcs_axis_tbl, ko_obj_projcs_axis_tbl,
    ko_obj_vertcs_axis_tbl, ko_obj_gxyzcs_axis_tbl;
KO_API extern const ko_db_tbl ko_obj_geogcs_gcsvcs_tbl, ko_obj_vertcs_gcsvcs_tbl,
    ko_obj_gxyzcs_gcsvcs_tbl;
KO_API extern const ko_db_tbl ko_obj_datum_ensemble_tbl, ko_obj_vdatum_ensemble_tbl,
    ko_obj_datum_epoch_tbl, ko_obj_vdatum_epoch_tbl;
KO_API extern const ko_db_tbl ko_obj_geogtran_exception_tbl, ko_obj_verttran_exception_tbl;
KO_API extern const ko_db_tbl ko_obj_extent_data_tbl;
KO_API extern const ko_db_parm_rec ko_obj_projcs_parms[], ko_obj_geogtran_parms[],
    ko_obj_verttran_parms[];
KO_API extern const int32_t ko_obj_projcs_parms_cnt, ko_obj_geogtran_parms_cnt,
    ko_obj_verttran_parms_cnt;
/* Grid file names of Dataset_ parameters, by the parameter's aux index. */
KO_API extern const char *const ko_obj_geogtran_parm_texts[];
KO_API extern const char *const ko_obj_verttran_parm_texts[];
KO_API extern const int32_t ko_obj_geogtran_parm_texts_cnt, ko_obj_verttran_parm_texts_cnt;
KO_API extern const ko_db_ranges ko_coderanges_tbl_geogcs, ko_coderanges_tbl_projcs,
    ko_coderanges_tbl_datum, ko_coderanges_tbl_geogtran, ko_coderanges_tbl_spheroid,
    ko_coderanges_tbl_linunit;

/* Name hash: hash * 65599 + lower-case character over the characters other
 * than white space and ( ) - / \ _, unsigned 32-bit; 0 for null or "". */
KO_API uint32_t ko_str_hashcode(const char *name);

/* Registry row of a type (exact type code), or null. */
KO_API const ko_db_builtin_entry *ko_db_builtin_data_find(uint32_t type);
/* Binary search of a data table by code; null outside the table's codes. */
KO_API const void *ko_db_builtin_data_lookup_code(const ko_db_tbl *data, int32_t code);
KO_API const ko_db_extent_rec *ko_db_builtin_extent_lookup_code(const ko_db_tbl *data,
                                                                int32_t code);
/* The data record of a name: through the name hash, else the first record
 * whose name equals it ignoring case. */
KO_API const void *ko_db_builtin_data_lookup_name(const ko_db_builtin_entry *row,
                                                  const char *name);
/* Synonyms: by synonym (compared as names are: ignoring case, white space
 * and ( ) - / \ _) and by library name; a null or empty authority
 * matches any, else it is compared ignoring case. */
KO_API const ko_db_synonym_rec *ko_db_builtin_synonym_s_lookup(const ko_db_builtin_entry *row,
                                                               const char *synonym,
                                                               const char *authority);
KO_API const ko_db_synonym_rec *ko_db_builtin_synonym_a_lookup(const ko_db_builtin_entry *row,
                                                               const char *name,
                                                               const char *authority);
KO_API const ko_db_pair_rec *ko_db_builtin_codechange_lookup_old(const ko_db_builtin_entry *row,
                                                                 int32_t old_code);
KO_API const ko_db_pair_rec *ko_db_builtin_codechange_lookup_new(const ko_db_builtin_entry *row,
                                                                 int32_t new_code);
KO_API const ko_db_text_rec *ko_db_builtin_description_lookup(const ko_db_builtin_entry *row,
                                                              int32_t code);
KO_API const ko_db_text_rec *ko_db_builtin_defstring_lookup_code(const ko_db_builtin_entry *row,
                                                                 int32_t code);
KO_API const ko_db_text_rec *ko_db_builtin_defstring_lookup_name(const ko_db_builtin_entry *row,
                                                                 const char *text);
/* First area of use of an object; its areainfo by area code. */
KO_API const ko_db_areacode_rec *ko_db_builtin_areacode_lookup(const ko_db_builtin_entry *row,
                                                               int32_t code);
KO_API const ko_db_areainfo_rec *ko_db_builtin_areainfo_lookup(const ko_db_builtin_entry *row,
                                                               int32_t area);
KO_API const ko_db_pair_rec *ko_db_builtin_deprecated_lookup(const ko_db_builtin_entry *row,
                                                             int32_t code);
KO_API const ko_db_pair_rec *ko_db_builtin_axis_lookup(const ko_db_builtin_entry *row,
                                                       int32_t code);
/* First member of an ensemble (the others follow in sequence). */
KO_API const ko_db_ensemble_rec *ko_db_builtin_ensemble_lookup(const ko_db_builtin_entry *row,
                                                               int32_t code);
KO_API const ko_db_epoch_rec *ko_db_builtin_epoch_lookup(const ko_db_builtin_entry *row,
                                                         int32_t code);
KO_API const ko_db_pair_rec *ko_db_builtin_exception_lookup(const ko_db_builtin_entry *row,
                                                            int32_t code);
KO_API const ko_db_version_rec *ko_db_builtin_version_lookup(const ko_db_builtin_entry *row,
                                                             int32_t code);
KO_API const ko_db_gcsvcs_rec *ko_db_builtin_gcsvcs_lookup_by_gcs(const ko_db_builtin_entry *row,
                                                                  int32_t code);
KO_API const ko_db_gcsvcs_rec *ko_db_builtin_gcsvcs_lookup_by_xyz(const ko_db_builtin_entry *row,
                                                                  int32_t code);
KO_API const ko_db_gcsvcs_rec *ko_db_builtin_gcsvcs_lookup_by_vcs(const ko_db_builtin_entry *row,
                                                                  int32_t code);
/* "EPSG Geodetic Parameter Dataset v10.076 (2022-08-31)"; returns buf. */
KO_API char *ko_db_builtin_version_info(char *buf, int size);

/* The object model's synonym lookups.  by_syn: the library name whose
 * synonym `name` is for `authority` (null or empty: any), else a copy of
 * name.  by_act: that authority's spelling of the library name, else a
 * copy.  out holds 80 bytes; both return out. */
KO_API char *ko_synonym_lookup_by_syn(uint32_t type, const char *name, const char *authority,
                                      char *out80);
KO_API char *ko_synonym_lookup_by_act(uint32_t type, const char *libname, const char *authority,
                                      char *out80);

/* The generic database record that searches fill. */
typedef struct ko_db_rec {
  uint32_t type;
  uint32_t kind;                        /* KO_DB_KIND_* of the table it came from */
  int32_t code;                         /* object code (old code of a code change) */
  int32_t codes[5];                     /* related codes, see ko_db_builtin_rec_copy */
  double values[6];                     /* numbers, see ko_db_builtin_rec_copy */
  int32_t parm_count;                   /* parameters placed */
  int32_t parm_codes[KO_PARM_COUNT];    /* parameter code by slot, 0 when empty */
  double parms[KO_PARM_COUNT];          /* value by slot, in the pool's units */
  char name[KO_NAME_SIZE];
  char text[256];                       /* description, defstring, synonym, path */
  char text2[KO_NAME_SIZE];             /* authority, version, area name, plural */
  char text3[KO_NAME_SIZE];             /* unit abbreviation */
  char dataset[256];                    /* grid file of a Dataset_ parameter */
} ko_db_rec;

/* Table kinds (bits of a database's table mask) and search modes. */
#define KO_DB_KIND_DATA 1
#define KO_DB_KIND_CODECHANGE 2
#define KO_DB_KIND_DEPRECATED 4
#define KO_DB_KIND_SYNONYM 8
#define KO_DB_KIND_VERSION 16
#define KO_DB_KIND_AXIS 32
#define KO_DB_KIND_DESCRIPTION 64
#define KO_DB_KIND_DEFSTRING 128
#define KO_DB_KIND_AREAINFO 256
#define KO_DB_KIND_AREACODE 512
#define KO_DB_KIND_EXCEPTION 1024
#define KO_DB_KIND_GCSVCS 2048
#define KO_DB_KIND_ENSEMBLE 4096
#define KO_DB_KIND_EPOCH 8192
#define KO_DB_KIND_ALL 16383
#define KO_DB_MODE_CODE 1
#define KO_DB_MODE_NAME 2
#define KO_DB_MODE_SYNONYM 4
#define KO_DB_MODE_LIBNAME 5
#define KO_DB_MODE_OLD_CODE 6
#define KO_DB_MODE_NEW_CODE 7
#define KO_DB_MODE_AREA 10
#define KO_DB_MODE_GCS 11
#define KO_DB_MODE_XYZ 12
#define KO_DB_MODE_VCS 13

/* A search key: the code, or the name (and the authority of synonyms). */
typedef struct ko_db_key {
  int32_t code;
  const char *name;
  const char *authority;
} ko_db_key;

/* A database of the database registry, with its error slot. */
typedef struct ko_db ko_db;
typedef struct ko_db_vector {
  int (*open)(ko_db *db, const char *path);
  int (*close)(ko_db *db);
  int (*create)(ko_db *db, const char *path);
  int (*del)(ko_db *db, const char *path);
  int (*flush)(ko_db *db);
  int (*addrec)(ko_db *db, uint32_t type, const ko_db_rec *rec);
  int (*updrec)(ko_db *db, uint32_t type, const ko_db_rec *rec);
  int (*delrec)(ko_db *db, uint32_t type, int32_t code);
  int (*count)(ko_db *db, uint32_t type);
  int (*index)(ko_db *db, uint32_t type, int32_t position, ko_db_rec *rec);
  int (*search)(ko_db *db, uint32_t type, uint32_t kind, const ko_db_key *key, int mode,
                ko_db_rec *result);
} ko_db_vector;
struct ko_db {
  uint32_t dbid;
  uint32_t type_mask;                   /* types the database answers */
  uint32_t table_mask;                  /* KO_DB_KIND_* it answers */
  int32_t reserved;
  const ko_db_vector *vector;
  void *handle;
  ko_err err;                           /* the last failure */
};

/* The compiled-in database's operations, in the order of the vector. */
KO_API extern const ko_db_vector ko_db_builtin_vector_tbl;
KO_API int ko_db_builtin_open(ko_db *db, const char *path);
KO_API int ko_db_builtin_close(ko_db *db);
/* The six writing operations record error 502 in db->err and return -1. */
KO_API int ko_db_builtin_create(ko_db *db, const char *path);
KO_API int ko_db_builtin_delete(ko_db *db, const char *path);
KO_API int ko_db_builtin_flush(ko_db *db);
KO_API int ko_db_builtin_addrec(ko_db *db, uint32_t type, const ko_db_rec *rec);
KO_API int ko_db_builtin_updrec(ko_db *db, uint32_t type, const ko_db_rec *rec);
KO_API int ko_db_builtin_delrec(ko_db *db, uint32_t type, int32_t code);
/* Records of a type (data records, or the names of the method-like
 * lists), -1 for an unknown type; the record at a position, 1 or 0. */
KO_API int ko_db_builtin_count(ko_db *db, uint32_t type);
KO_API int ko_db_builtin_index(ko_db *db, uint32_t type, int32_t position, ko_db_rec *rec);
/* 1 when found (result filled), 0 when not or not answered. */
KO_API int ko_db_builtin_search(ko_db *db, uint32_t type, uint32_t kind, const ko_db_key *key,
                                int mode, ko_db_rec *result);
/* Fill a generic record from a table record of the given kind; obj_copy
 * takes a data record and also places the parameters by slot.  1 on
 * success, 0 for null arguments or an unknown type or kind. */
KO_API int ko_db_builtin_rec_copy(uint32_t type, uint32_t kind, const void *record,
                                  ko_db_rec *out);
KO_API int ko_db_builtin_obj_copy(uint32_t type, const void *record, ko_db_rec *out);

/* ======================================================================
 * Factory
 * ====================================================================== */

/* Objects of the compiled-in catalogue, built from their code or name.
 *
 * By code: a code that the catalogue's code-change table has replaced
 * builds the replacing object, which reports the new code as its code and
 * the requested one as its original code (ko_object_get_orig_code) and has
 * the status bit KO_STATUS_CODECHANGE.  By name: the name hash, the names
 * compared the library's way (ko_strcmp_ci), then the synonyms of every
 * authority ("WGS 84", "metre", "Transverse_Mercator" ...), then, for datums
 * and geographic systems, the name with "D_" or "GCS_" put in front; a name
 * finds the object it names even when that object was replaced.
 *
 * Every object made has status KO_STATUS_CODE (from a code) or
 * KO_STATUS_STRING (from a name), its record's code as internal and
 * external code, the authority name and version of its record ("EPSG" and
 * the dataset version, or "KO" and "1" for the library's own objects), its
 * name, and for units and the method-like lists (projections, parameters,
 * methods) the display name the catalogue has.  A deprecated object adds
 * the status bits of its deprecated flags: flag 1 KO_STATUS_DISCONTINUED,
 * 2 KO_STATUS_DEAD, 4 KO_STATUS_DONOTUSE (the catalogue marks EPSG's
 * deprecations with flag 1; an object marked do-not-use is not built).
 * The parts of an object (a geographic system's datum, prime meridian and
 * unit, a datum's spheroid, a projected system's geographic system,
 * projection, parameters and unit ...) are built from the codes in its
 * record in the same way, each with its own header fields; geographic and
 * projected systems carry their area of use as metadata (see
 * ko_factory_extent_from_code).
 *
 * Reports (severity 4, source the _errext function called, message the
 * code or the name):
 *   505 (category 32) a code below 1;
 *   223 (category 2) a code the catalogue has for another type only;
 *   the type's number (category 2) for a code the catalogue lacks: 203
 *     geogcs, 204 projcs, 205 vertcs, 206 datum, 207 vdatum, 208 hvdatum,
 *     209 geogtran, 210 unit, scaleunit and areaunit, 211 angunit, 212
 *     linunit, 213 primem, 214 spheroid, 215 method, 216 htmethod, 217
 *     projection, 218 parameter, 219 coordsys, 222 vtmethod; for the types
 *     without a number of their own 201 when the code lies outside the
 *     type's codes, else 202;
 *   509 (category 32) a code marked do-not-use;
 *   132 (category 2) a name found nowhere (also for null or "");
 *   131 (category 4) a record naming a part the catalogue lacks;
 *   1 (category 1) out of memory.
 * Nothing is left behind when a call fails. */
#define KO_DECLARE_FACTORY(prefix, T)                                                 \
  KO_API T *ko_factory_##prefix##_from_code_errext(int32_t code, ko_err *err);        \
  KO_API T *ko_factory_##prefix##_from_code(int32_t code);                            \
  KO_API T *ko_factory_##prefix##_from_name_errext(const char *name, ko_err *err);    \
  KO_API T *ko_factory_##prefix##_from_name(const char *name);
KO_DECLARE_FACTORY(linunit, ko_linunit)
KO_DECLARE_FACTORY(angunit, ko_angunit)
KO_DECLARE_FACTORY(scaleunit, ko_scaleunit)
KO_DECLARE_FACTORY(areaunit, ko_areaunit)
/* Whichever linear, angular or scale unit has the code or name. */
KO_DECLARE_FACTORY(unit, ko_unit)
KO_DECLARE_FACTORY(spheroid, ko_spheroid)
KO_DECLARE_FACTORY(primem, ko_primem)
/* A datum with a reference epoch is dynamic (ko_datum_get_dynamic): the
 * frame name is EPSG's name of the datum. */
KO_DECLARE_FACTORY(datum, ko_datum)
/* 2D systems keep their angular unit; 3D systems (an ellipsoidal height
 * axis in EPSG's coordinate system) have three axes: longitude and
 * latitude in the angular unit, ellipsoidal height in "Meter"
 * (ko_geogcs_vert_unit). */
KO_DECLARE_FACTORY(geogcs, ko_geogcs)
KO_DECLARE_FACTORY(projection, ko_projection)
/* A parameter on its own holds the list's default; angles carry the unit
 * "Degree" (ko_parameter_value in degrees). */
KO_DECLARE_FACTORY(parameter, ko_parameter)
/* The conversion is named after its projection; the parameters sit in the
 * slots of their codes with the system's units (angles in the geographic
 * system's angular unit, lengths in the system's linear unit, scales
 * "Unity"), as ko_projcs_parameters_fix gives them. */
KO_DECLARE_FACTORY(projcs, ko_projcs)
KO_DECLARE_FACTORY(method, ko_method)
/* With its method, parameters (translations in "Meter", rotations in
 * "Arcsecond", scale differences in "Parts_Per_Million", a grid as the
 * parameter "Dataset_<file>"), accuracy, EPSG's remarks as remark, the
 * record's version as operation version and its area of use as metadata. */
KO_DECLARE_FACTORY(geogtran, ko_geogtran)
KO_DECLARE_FACTORY(vdatum, ko_vdatum)
/* With its Vertical_Shift (0) and Direction (1 heights, -1 depths)
 * parameters. */
KO_DECLARE_FACTORY(vertcs, ko_vertcs)
KO_DECLARE_FACTORY(gxyzcs, ko_gxyzcs)
KO_DECLARE_FACTORY(hvcoordsys, ko_hvcoordsys)
KO_DECLARE_FACTORY(htmethod, ko_htmethod)
KO_DECLARE_FACTORY(vtmethod, ko_vtmethod)
/* A geographic 3D system at either end stands for its ellipsoidal heights:
 * a vertical system on its datum in "Meter", named and coded as the
 * geographic system.  A grid's geographic system, when the record names
 * one, is the horizontal system (ko_verttran_coordsys).  Offsets are in "Meter" (unitless, the base unit),
 * inclinations in "Arcsecond", the evaluation point in "Degree"; a grid is
 * the parameter "Dataset_<file>". */
KO_DECLARE_FACTORY(verttran, ko_verttran)

/* An area of use as a metadata object: the area's name (cut to 79 bytes),
 * its longitude/latitude box and its code as area code and object code.
 * Unknown codes are error 131 (category 2), unknown names 132. */
KO_DECLARE_FACTORY(extent, ko_metadata)

/* Any type by its code (KO_TYPE_*, including KO_TYPE_COORDSYS,
 * KO_TYPE_HVDATUM, KO_TYPE_TRANSFORM, KO_TYPE_UNIT and KO_TYPE_EXTENT),
 * dispatched to the type's function above; err may be null.  A type the
 * factory does not build is error 521 (category 32). */
KO_API void *ko_factory_object_from_code(uint32_t type, int32_t code, ko_err *err);
KO_API void *ko_factory_object_from_name(uint32_t type, const char *name, ko_err *err);

/* Listing.  ko_factory_count: the catalogue objects of a type (a composite
 * type counts its members; KO_TYPE_EXTENT the areas of use), -1 for a type
 * the factory does not know.  ko_factory_code_at: the code at index in
 * ascending code order (0 <= index < count), 0 outside.
 * ko_factory_codes_in_extent: the codes, in ascending order, of the
 * objects whose area of use holds the point (degrees; longitudes are taken
 * modulo 360), deprecated ones included; at most max are written to out,
 * and the result is how many there are, or -1 for a type without areas of
 * use, a non-finite point, max below 0, a null out with max above 0, or
 * when memory runs out. */
KO_API int ko_factory_count(uint32_t type);
KO_API int32_t ko_factory_code_at(uint32_t type, int index);
KO_API int ko_factory_codes_in_extent(uint32_t type, double lon, double lat, int32_t *out,
                                      int max);

/* The catalogue's geographic transformations between two geographic
 * systems (codes as the factory takes them, code changes followed), in
 * either direction, whose area of use holds the point (degrees; a
 * non-finite longitude or latitude accepts every area).  Deprecated ones
 * are left out.  Ranked: known accuracy first, the most accurate first;
 * then the smaller area of use (the more specific); then the lower code.
 * At most max are written to out; the result is how many there are (0 for
 * unknown or equal systems), -1 for max below 0 or a null out with max
 * above 0. */
typedef struct ko_factory_candidate {
  int32_t code;       /* the transformation */
  int32_t direction;  /* 0: as stored (gcs1 is its GCS 1); 1: run inverse */
  double accuracy;    /* metres; 999.0 unknown */
} ko_factory_candidate;
KO_API int ko_factory_geogtran_candidates(int32_t gcs1, int32_t gcs2, double lon, double lat,
                                          ko_factory_candidate *out, int max);
/* A composite transformation (see ko_gtlist_entry) from gcs1 to gcs2 at the
 * point: the best-ranked candidate that builds and whose grid, if it needs
 * one, can be read (ko_geogtran_usable; the first 32 candidates are
 * tried).  Without one, two steps through WGS 84 (4326): the best usable
 * transformation gcs1 to WGS 84, then WGS 84 to gcs2, each chosen alone.
 * One system to itself gives one step by the "Null" method.  The entry's
 * rank is its number of steps, rank_primary the sum of the steps'
 * accuracies in millimetres (999 m counted for an unknown one),
 * rank_secondary the first step's code.  Unknown systems are error 203, no
 * path error 225 (message "<gcs1> to <gcs2>"); delete the entry with
 * ko_gtlist_entry_del. */
KO_API struct ko_gtlist_entry *ko_factory_gtlist_best(int32_t gcs1, int32_t gcs2, double lon,
                                                      double lat, ko_err *err);

/* ======================================================================
 * Geographic transformations and methods
 * ====================================================================== */

/* Codes of the builtin transformation methods. */
#define KO_METHOD_LONGITUDE_ROTATION 9601
#define KO_METHOD_GEOCENTRIC_TRANSLATION 9603
#define KO_METHOD_MOLODENSKY 9604
#define KO_METHOD_MOLODENSKY_ABRIDGED 9605
#define KO_METHOD_POSITION_VECTOR 9606
#define KO_METHOD_COORDINATE_FRAME 9607
#define KO_METHOD_NADCON 9613
#define KO_METHOD_NTV2 9615
#define KO_METHOD_GEOGRAPHIC_2D_OFFSET 9619
#define KO_METHOD_MOLODENSKY_BADEKAS 9636
#define KO_METHOD_NULL 109600
#define KO_METHOD_UNIT_CHANGE 109601
#define KO_METHOD_BURSA_WOLF 109607
#define KO_METHOD_HARN 109613
#define KO_METHOD_GEOCON 109614
#define KO_METHOD_NADCON5 109615
#define KO_METHOD_TIME_BASED_HELMERT_POSITION_VECTOR 109616
#define KO_METHOD_TIME_BASED_HELMERT_COORDINATE_FRAME 109617

/* The flag word of a method vector.  Its low byte is the return type:
 * ordinary (GCS 1 to GCS 2), time-based (the coordinate epoch comes through
 * the frame's extra pointer, see ko_geog_to_geog_ext) or working inside one
 * GCS (both sides are GCS 1).  A method is time-based when the return type
 * has bit 1 or bit 2 set. */
#define KO_MTH_RTN_MASK 0xFFu
#define KO_MTH_RTN_ORDINARY 1u
#define KO_MTH_RTN_TIME_BASED 2u
#define KO_MTH_RTN_ONE_GCS 4u
#define KO_MTH_NEEDS_FILE 0x100u    /* reads a grid file named by Dataset_ */
#define KO_MTH_HEIGHT_AWARE 0x400u  /* transforms ellipsoidal heights */
#define KO_MTH_IS_NO_OP 0x1000u     /* the frame's unit and meridian handling is all */

/* Interpolation of a method's grid (ko_geogtran_method_interp_type). */
#define KO_INTERP_NONE 0
#define KO_INTERP_BILINEAR 1

/* Function slots of a method vector.
 *  forward / inverse: gt the transformation; parms its 24 parameter values
 *    in metres, radians and ratios (by slot); extra the caller's opaque
 *    pointer; coord n (longitude, latitude) pairs in radians from
 *    Greenwich; z n ellipsoidal heights in metres or null.  Converted in
 *    place; returns the points converted (a point the method cannot convert
 *    is left as it was and not counted).
 *  constfunc: fills a new constants record from the 24 parameter objects;
 *    flag 1 asks for the whole grid, extent (degrees, may be null) limits
 *    what a grid loader reads.  1 loaded; 0 not now (tried again later);
 *    negative final until the constants are unloaded.
 *  unloadfunc: releases what constfunc left in the record's data.
 *  dfltsfunc: fills empty slots with the method's parameters at their
 *    defaults; the number made, or -1 when memory ran out.
 *  validfunc: 1 when the parameters suit the method, else 0 with the
 *    reasons in err (source: the transformation's name).
 *  usablefunc: 1 when the grid named by a Dataset_ parameter can be read.
 *  filefunc: the full paths of that grid's files, one per line, into buf
 *    (size bytes); the number of files, 0 for none, -1 when buf is small.
 *  interpfunc: the KO_INTERP_* of the method's grid. */
typedef int32_t (*ko_mth_fn)(const ko_geogtran *gt, const double *parms, void *extra,
                             int32_t n, double *coord, double *z);
typedef int (*ko_mth_constfunc)(ko_constants *constants, ko_parameter *const *parms, int flag,
                                const ko_gcs_extent *extent);
typedef void (*ko_mth_unloadfunc)(ko_constants *constants);
typedef int (*ko_mth_dfltsfunc)(ko_parameter **parms);
typedef int (*ko_mth_validfunc)(ko_parameter *const *parms, const char *name, ko_err *err);
typedef int (*ko_mth_usablefunc)(const char *dataset_name);
typedef int (*ko_mth_filefunc)(const char *dataset_name, char *buf, int size);
typedef int (*ko_mth_interpfunc)(ko_parameter *const *parms);

/* A method vector: eleven 8-byte slots, the first holding the code and the
 * flag word.  Empty slots are null. */
typedef struct ko_methlist_entry {
  int32_t code;
  uint32_t flags;
  const char *name;
  ko_mth_fn forward;
  ko_mth_fn inverse;
  ko_mth_constfunc constfunc;
  ko_mth_unloadfunc unloadfunc;
  ko_mth_dfltsfunc dfltsfunc;
  ko_mth_validfunc validfunc;
  ko_mth_usablefunc usablefunc;
  ko_mth_filefunc filefunc;
  ko_mth_interpfunc interpfunc;
} ko_methlist_entry;

KO_API extern const ko_methlist_entry ko_mth_bursa_wolf_vector;
KO_API extern const ko_methlist_entry ko_mth_coordinate_frame_vector;
KO_API extern const ko_methlist_entry ko_mth_geocon_vector;
KO_API extern const ko_methlist_entry ko_mth_geocentric_translation_vector;
KO_API extern const ko_methlist_entry ko_mth_geographic_2d_offset_vector;
KO_API extern const ko_methlist_entry ko_mth_harn_vector;
KO_API extern const ko_methlist_entry ko_mth_longitude_rotation_vector;
KO_API extern const ko_methlist_entry ko_mth_molodensky_vector;
KO_API extern const ko_methlist_entry ko_mth_molodensky_abridged_vector;
KO_API extern const ko_methlist_entry ko_mth_molodensky_badekas_vector;
KO_API extern const ko_methlist_entry ko_mth_nadcon_vector;
KO_API extern const ko_methlist_entry ko_mth_nadcon5_vector;
KO_API extern const ko_methlist_entry ko_mth_ntv2_vector;
KO_API extern const ko_methlist_entry ko_mth_null_vector;
KO_API extern const ko_methlist_entry ko_mth_position_vector_vector;
KO_API extern const ko_methlist_entry ko_mth_time_based_helmert_coordinate_frame_vector;
KO_API extern const ko_methlist_entry ko_mth_time_based_helmert_position_vector_vector;
KO_API extern const ko_methlist_entry ko_mth_unit_change_vector;

/* The method list: the 18 vectors above in this order, then null. */
KO_API extern const ko_methlist_entry *const ko_methlist_tbl[];
KO_API extern const int ko_methlist_tbl_cnt;

/* By code (null for codes below 1 and unknown codes); by name, mapped
 * through the method synonyms first and compared ignoring case; by index
 * (0 <= i < count). */
KO_API const ko_methlist_entry *ko_methlist_from_code(int32_t code);
KO_API const ko_methlist_entry *ko_methlist_from_name(const char *name);
KO_API const ko_methlist_entry *ko_methlist_from_indx(int i);
KO_API int ko_methlist_count(void);
/* A new method object: from a code (status KO_STATUS_CODE; an unknown code
 * is error 215) or a name (status KO_STATUS_STRING; an unknown name is
 * error 305). */
KO_API ko_method *ko_methlist_method_from_code(int32_t code, ko_err *err);
KO_API ko_method *ko_methlist_method_from_name(const char *name, ko_err *err);
/* The slots and flags of an entry; 0 or null for a null entry. */
KO_API int32_t ko_methlist_get_code(const ko_methlist_entry *e);
KO_API uint32_t ko_methlist_get_flags(const ko_methlist_entry *e);
KO_API const char *ko_methlist_get_name(const ko_methlist_entry *e);
KO_API ko_mth_fn ko_methlist_get_forward(const ko_methlist_entry *e);
KO_API ko_mth_fn ko_methlist_get_inverse(const ko_methlist_entry *e);
KO_API ko_mth_constfunc ko_methlist_get_constfunc(const ko_methlist_entry *e);
KO_API ko_mth_unloadfunc ko_methlist_get_unloadfunc(const ko_methlist_entry *e);
KO_API ko_mth_dfltsfunc ko_methlist_get_dfltsfunc(const ko_methlist_entry *e);
KO_API ko_mth_validfunc ko_methlist_get_validfunc(const ko_methlist_entry *e);
KO_API ko_mth_usablefunc ko_methlist_get_usablefunc(const ko_methlist_entry *e);
KO_API ko_mth_filefunc ko_methlist_get_filefunc(const ko_methlist_entry *e);
KO_API ko_mth_interpfunc ko_methlist_get_interpfunc(const ko_methlist_entry *e);
KO_API int ko_methlist_get_rtn_type(const ko_methlist_entry *e);
KO_API int ko_methlist_get_needs_file(const ko_methlist_entry *e);
KO_API int ko_methlist_get_height_aware(const ko_methlist_entry *e);
KO_API int ko_methlist_get_is_no_op(const ko_methlist_entry *e);
KO_API int ko_methlist_get_time_based(const ko_methlist_entry *e);

/* Method object: a named header whose internal and external codes are the
 * method's code.  Its slot getters look the entry up again by that code.
 * ko_method_new_errext: an unknown name is warning 305 and no object. */
KO_API ko_method *ko_method_new_errext(const char *name, ko_err *err);
KO_API ko_method *ko_method_new(const char *name);
KO_API ko_method *ko_method_new_methlist(const ko_methlist_entry *entry, ko_err *err);
KO_API int ko_method_p(const void *obj);
KO_API ko_method *ko_method_clone(const ko_method *m);
KO_API ko_method *ko_method_del(ko_method *m);
/* Equal when both are methods of the same code. */
KO_API int ko_method_eq(const ko_method *a, const ko_method *b);
KO_API ko_mth_fn ko_method_forward(const ko_method *m);
KO_API ko_mth_fn ko_method_inverse(const ko_method *m);
KO_API ko_mth_constfunc ko_method_constfunc(const ko_method *m);
KO_API ko_mth_unloadfunc ko_method_unloadfunc(const ko_method *m);
KO_API ko_mth_interpfunc ko_method_interpfunc(const ko_method *m);
KO_API int ko_method_rtn_type(const ko_method *m);
KO_API int ko_method_height_aware(const ko_method *m);
KO_API int ko_method_needs_file(const ko_method *m);
/* Sets all 24 slots of parms to null (without deleting what they held),
 * then lets the method fill in its parameters at their defaults; returns
 * what the defaults function returns, 0 when there is none. */
KO_API int ko_method_defaults(const ko_method *m, ko_parameter **parms);
/* The method's file names for a Dataset_ name (see the filefunc slot); 0
 * when the method has no file function. */
KO_API int ko_method_filenames(const ko_method *m, const char *dataset_name, char *buf,
                               int size);
/* 1 when the 24 parameters suit the method of this code.  Null parms:
 * error 330; code 0 or below: valid unchecked; unknown code: error 350;
 * else the method's own check (source: name).  Clears err first. */
KO_API int ko_method_valid(ko_parameter *const *parms, const char *name, int32_t code,
                           ko_err *err);
KO_API extern const ko_objvec ko_method_objvec;
KO_DECLARE_OBJECT_FORWARDS(method, ko_method)

/* Geographic transformation: GCS 1, GCS 2 (null: GCS 1 stands for it),
 * method, 24 parameter slots (by parameter-list index), metadata, remark,
 * operation version, accuracy in metres (999.0 unknown) and the lazily
 * loaded method constants (grids).  The constructors take ownership of
 * every object handed to them on success (each object at most once; the
 * same GCS as both sides is kept once); the parameter array itself stays
 * the caller's, and a slot that holds no live parameter counts as empty.
 * On failure the caller keeps everything, unchanged.  In order: name
 * longer than 79 characters warning 354; not a method 335; GCS 1 not a GCS
 * 332; GCS 2 not a GCS 333 (unless the method works inside one GCS); null
 * parameter array 330; the parameters' units are fixed
 * (ko_geogtran_parameters_fix), so that the method's validity check reads
 * unitless values in those units; the validity check; memory 1. */
#define KO_OPVERSION_SIZE 80
KO_API ko_geogtran *ko_geogtran_ext_new_errext(const char *name, ko_geogcs *gcs1,
                                               ko_geogcs *gcs2, ko_method *method,
                                               ko_parameter **parms, ko_metadata **metadata,
                                               ko_remark *remark, ko_err *err,
                                               double accuracy);
KO_API ko_geogtran *ko_geogtran_ext_new(const char *name, ko_geogcs *gcs1, ko_geogcs *gcs2,
                                        ko_method *method, ko_parameter **parms,
                                        ko_metadata **metadata, ko_remark *remark,
                                        double accuracy);
KO_API ko_geogtran *ko_geogtran_new_errext(const char *name, ko_geogcs *gcs1, ko_geogcs *gcs2,
                                           ko_method *method, ko_parameter **parms,
                                           ko_err *err);
KO_API ko_geogtran *ko_geogtran_new(const char *name, ko_geogcs *gcs1, ko_geogcs *gcs2,
                                    ko_method *method, ko_parameter **parms);
/* Gives every transformation parameter of the 24 slots its unit and default
 * factor by unit type: lengths "Meter" (1.0), scales "Parts_Per_Million"
 * (1e-6), unitless "Unity" (1.0), angles "Arcsecond"; a unit already there
 * is kept.  A unitless value is thus read in that unit.  1, or 0 when
 * memory ran out (nothing changed). */
KO_API int ko_geogtran_parameters_fix(ko_parameter **parms);
KO_API int ko_geogtran_p(const void *obj);
KO_API ko_geogtran *ko_geogtran_clone(const ko_geogtran *gt);
KO_API ko_geogtran *ko_geogtran_del(ko_geogtran *gt);
/* Both transformations; each slot holding a parameter on either side equal
 * by ko_parameter_eq; names equal ignoring case; GCS 1 equal; GCS 2 equal
 * when both have one; methods equal. */
KO_API int ko_geogtran_eq(const ko_geogtran *a, const ko_geogtran *b);
KO_API ko_geogcs *ko_geogtran_geogcs1(const ko_geogtran *gt);
KO_API ko_geogcs *ko_geogtran_geogcs2(const ko_geogtran *gt);  /* GCS 1 when none */
KO_API ko_method *ko_geogtran_method(const ko_geogtran *gt);
/* The 24 slots themselves.  Loaded constants are built from the parameters
 * and are not rebuilt when a parameter changes: unload them after a change. */
KO_API ko_parameter **ko_geogtran_parameters_ptr(ko_geogtran *gt);
/* Copies the 24 (borrowed) pointers into out; all null for no transformation. */
KO_API void ko_geogtran_parameters(const ko_geogtran *gt, ko_parameter **out);
/* Each slot's value in base units (ko_parameter_value_si), 0 when empty. */
KO_API void ko_geogtran_parm_array(ko_parameter *const *parms, double *out);
KO_API double ko_geogtran_accuracy(const ko_geogtran *gt);
KO_API void ko_geogtran_set_opversion(ko_geogtran *gt, const char *version);
KO_API char *ko_geogtran_get_opversion(const ko_geogtran *gt, char *buf); /* 80 bytes */
KO_API ko_metadata *ko_geogtran_metadata(const ko_geogtran *gt);
KO_API ko_metadata **ko_geogtran_metadata_vector(const ko_geogtran *gt);
/* Replaces the metadata vector; a non-null md (owned from now on) becomes
 * its only element.  0 when memory ran out (md stays the caller's). */
KO_API int ko_geogtran_metadata_set(ko_geogtran *gt, ko_metadata *md);
KO_API ko_remark *ko_geogtran_remark(const ko_geogtran *gt);
KO_API int ko_geogtran_transforms_heights(const ko_geogtran *gt);
KO_API int ko_geogtran_needs_file(const ko_geogtran *gt);
KO_API int ko_geogtran_method_rtn_type(const ko_geogtran *gt);
/* KO_INTERP_* of the method's grid; KO_INTERP_NONE without a grid. */
KO_API int ko_geogtran_method_interp_type(const ko_geogtran *gt);
/* The files of the transformation's grid (see the filefunc slot); 0 when
 * the method reads none. */
KO_API int ko_geogtran_filenames(const ko_geogtran *gt, char *buf, int size);
/* 1 when the method has no usability check, else the check's answer for
 * the Dataset_ parameter's name.  0 for no transformation. */
KO_API int ko_geogtran_usable(const ko_geogtran *gt);

/* Method constants.  Status: 0 not loaded, 1 loaded, 2 the method needs
 * none, negative a failure that stands until unloaded (-1 when the record
 * could not be allocated; else what the method's loader returned).
 * load_constants_with_extent: 1 when constants are loaded or not needed,
 * else 0; flag and extent are handed to the loader.  load_constants is
 * the same with flag 1 and no extent.  A failure that stands is reported
 * once to the message callback and the log (source
 * "ko_geogtran_load_constants_with_extent"): error 356 with the message
 * "<name>: cannot read grid <files>" for a grid method, error 1 when memory
 * ran out. */
KO_API int ko_geogtran_load_constants_with_extent(ko_geogtran *gt, int flag,
                                                  const ko_gcs_extent *extent);
KO_API int ko_geogtran_load_constants(ko_geogtran *gt);
KO_API void ko_geogtran_unload_constants(ko_geogtran *gt);
KO_API int ko_geogtran_isconstloaded(const ko_geogtran *gt);
KO_API int32_t ko_geogtran_constants_status(const ko_geogtran *gt);
KO_API ko_constants *ko_geogtran_constants(const ko_geogtran *gt);
KO_API extern const ko_objvec ko_geogtran_objvec;
KO_DECLARE_OBJECT_FORWARDS(geogtran, ko_geogtran)

/* Point conversion through a geographic transformation.  coord holds n
 * (longitude, latitude) pairs in the angular unit of the GCS on their side,
 * relative to its prime meridian; z n heights in that GCS's vertical unit
 * (metres when it has none) or null.  Converted in place.  direction 0 is
 * GCS 1 to GCS 2, 1 the reverse.  Latitudes are clamped to +-90 degrees
 * before the method runs.  Returns the method's count of converted points
 * (a point it could not convert comes back in the output units from its
 * unconverted value; only the count tells), 0 when the method's constants
 * could not be loaded, -1 for no transformation, null coord, negative n or
 * a direction other than 0 and 1.
 *
 * extra is handed to the method unchanged.  The time-based methods read it
 * as a pointer to one double, the coordinate epoch in decimal years; null
 * applies the parameters at their Reference_Time (a non-finite epoch
 * converts nothing).  convert_units 0 takes and gives radians from the
 * prime meridians and metres. */
KO_API int32_t ko_geog_to_geog_ext_internal(ko_geogtran *gt, void *extra, int convert_units,
                                            int32_t n, double *coord, double *z,
                                            int direction);
KO_API int32_t ko_geog_to_geog(ko_geogtran *gt, int32_t n, double *coord, double *z,
                               int direction);
KO_API int32_t ko_geog_to_geog_ext(ko_geogtran *gt, void *extra, int32_t n, double *coord,
                                   double *z, int direction);
KO_API int32_t ko_geog1_to_geog2(ko_geogtran *gt, int32_t n, double *coord, double *z);
KO_API int32_t ko_geog2_to_geog1(ko_geogtran *gt, int32_t n, double *coord, double *z);
/* ko_geog_to_geog, then the output longitudes moved into the 360-degree
 * range about center (in the output GCS's angular unit). */
KO_API int32_t ko_geog_to_geog_center(ko_geogtran *gt, int32_t n, double *coord, double *z,
                                      int direction, double center);

/* A composite transformation: steps run in order, each a transformation
 * (owned) in a direction (0 forward, 1 inverse).  The ranking fields are
 * set by the search that builds candidate paths.  A list of candidates is
 * an array of entries ended by one whose count is 0 or less. */
typedef struct ko_gtlist_step {
  ko_geogtran *gt;
  int32_t direction;
} ko_gtlist_step;
typedef struct ko_gtlist_entry {
  int32_t count;         /* steps */
  int32_t rank;          /* ranking fields of the path search */
  int64_t rank_primary;
  int64_t rank_secondary;
  ko_gtlist_step *steps; /* owned array of count steps */
} ko_gtlist_entry;

/* An entry with count empty steps (null transformations, direction 0);
 * null for count below 1 or when memory runs out.  _del deletes the steps'
 * transformations, the steps and the entry, and returns null. */
KO_API ko_gtlist_entry *ko_gtlist_entry_new(int32_t count);
KO_API ko_gtlist_entry *ko_gtlist_entry_del(ko_gtlist_entry *entry);
/* Entries inside a list: _init gives one count empty steps (1, or 0 when
 * count is below 1 or memory runs out); _clear deletes what it owns and
 * zeroes it. */
KO_API int ko_gtlist_entry_init(ko_gtlist_entry *entry, int32_t count);
KO_API void ko_gtlist_entry_clear(ko_gtlist_entry *entry);
/* Puts gt (owned from now on, replacing and deleting the step's previous
 * one) into step i with a direction; 1, or 0 for a bad index, direction or
 * object (which then stays the caller's). */
KO_API int ko_gtlist_entry_set_step(ko_gtlist_entry *entry, int32_t i, ko_geogtran *gt,
                                    int32_t direction);
/* A list of room for count entries, all empty, plus the end entry; fill
 * the entries in order with ko_gtlist_entry_init.  _del clears every entry
 * up to the end and frees the list; returns null. */
KO_API ko_gtlist_entry *ko_gtlist_new(int32_t count);
KO_API ko_gtlist_entry *ko_gtlist_del(ko_gtlist_entry *list);
/* Runs a composite: direction 0 runs the steps first to last in their own
 * directions, 1 last to first each reversed.  The count of the last step
 * run is returned (a point that failed earlier goes on as it stands); 0 for
 * n = 0 or no steps; -1 for a null entry or coord, n negative or above
 * INT32_MAX. */
KO_API int32_t ko_gtlist_geog_to_geog_internal(const ko_gtlist_entry *entry, int convert_units,
                                               int64_t n, double *coord, double *z,
                                               int direction);
KO_API int32_t ko_factory_gtlist_geog_to_geog(const ko_gtlist_entry *entry, int64_t n,
                                              double *coord, double *z, int direction);


/* ======================================================================
 * Text formats
 * ====================================================================== */

#ifdef __cplusplus
}
#endif

#endif /* KO_H */
