// The compiled-in catalogue as a database of the database registry: its
// operation vector, the search that dispatches on table kind and mode, and
// the copy of a found record into the generic database record.  The
// catalogue is constant, so every writing operation fails with 502.
#include "database/catalog.h"
#include "foundation/internal.h"

#include <cstring>
#include <initializer_list>

namespace {

using ko::catalog::parameter_slot;

void clear_rec(ko_db_rec *out, uint32_t type, uint32_t kind) {
  std::memset(out, 0, sizeof *out);
  out->type = type;
  out->kind = kind;
}

void set_text(char *field, std::size_t size, const char *text) {
  ko_strncpy(field, text != nullptr ? text : "", static_cast<int>(size));
}

template <std::size_t N>
void set_text(char (&field)[N], const char *text) {
  set_text(field, N, text);
}

// Places a run of a parameter pool by slot; a code without a slot is
// dropped.  Grid file names come from the pool's texts.
void place_parameters(ko_db_rec *out, const ko_db_parm_rec *pool, int32_t pool_count,
                      int32_t first, int32_t count, const char *const *texts,
                      int32_t text_count) {
  if (first < 0 || count <= 0 || first > pool_count - count) return;
  for (int32_t i = first; i < first + count; ++i) {
    const ko_db_parm_rec &p = pool[i];
    int slot = parameter_slot(p.code);
    if (slot < 0 || slot >= KO_PARM_COUNT) continue;
    out->parm_codes[slot] = p.code;
    out->parms[slot] = p.value;
    ++out->parm_count;
    if (texts != nullptr && p.code == 100047 && p.aux >= 0 && p.aux < text_count)
      set_text(out->dataset, texts[p.aux]);
  }
}

void copy_codes(ko_db_rec *out, std::initializer_list<int32_t> codes) {
  std::size_t i = 0;
  for (int32_t c : codes) out->codes[i++] = c;
}

// Casts a data record and copies the name and code it begins with.
template <class R>
const R *named(const void *record, ko_db_rec *out) {
  const auto *r = static_cast<const R *>(record);
  out->code = r->code;
  set_text(out->name, r->name);
  return r;
}

// The texts and factor that unit records share.
template <class R>
void copy_unit(ko_db_rec *out, const R *r) {
  set_text(out->text, r->display);
  set_text(out->text2, r->plural);
  set_text(out->text3, r->abbreviation);
  out->values[0] = r->factor;
}

bool copy_data(uint32_t type, const void *record, ko_db_rec *out) {
  switch (type) {
    case KO_TYPE_GEOGCS: {
      const auto *r = named<ko_db_geogcs_rec>(record, out);
      copy_codes(out, {r->datum, r->primem, r->angunit});
      return true;
    }
    case KO_TYPE_PROJCS: {
      const auto *r = named<ko_db_projcs_rec>(record, out);
      copy_codes(out, {r->geogcs, r->projection, r->linunit});
      place_parameters(out, ko_obj_projcs_parms, ko_obj_projcs_parms_cnt, r->parm_first,
                       r->parm_count, nullptr, 0);
      return true;
    }
    case KO_TYPE_VERTCS: {
      const auto *r = named<ko_db_vertcs_rec>(record, out);
      copy_codes(out, {r->vdatum, r->linunit, r->direction});
      return true;
    }
    case KO_TYPE_GXYZCS: {
      const auto *r = named<ko_db_gxyzcs_rec>(record, out);
      copy_codes(out, {r->datum, r->primem, r->linunit});
      return true;
    }
    case KO_TYPE_HVCOORDSYS: {
      const auto *r = named<ko_db_hvcoordsys_rec>(record, out);
      copy_codes(out, {r->hcs, r->vcs, r->hcs_type});
      return true;
    }
    case KO_TYPE_DATUM:
    case KO_TYPE_VDATUM: {
      const auto *r = named<ko_db_datum_rec>(record, out);
      copy_codes(out, {r->spheroid});
      set_text(out->text, sizeof out->text, r->anchor);
      return true;
    }
    case KO_TYPE_GEOGTRAN: {
      const auto *r = named<ko_db_geogtran_rec>(record, out);
      copy_codes(out, {r->gcs1, r->gcs2, r->method});
      out->values[0] = r->accuracy;
      place_parameters(out, ko_obj_geogtran_parms, ko_obj_geogtran_parms_cnt, r->parm_first,
                       r->parm_count, ko_obj_geogtran_parm_texts, ko_obj_geogtran_parm_texts_cnt);
      return true;
    }
    case KO_TYPE_VERTTRAN: {
      const auto *r = named<ko_db_verttran_rec>(record, out);
      copy_codes(out, {r->vcs1, r->vcs2, r->method, r->interpolation});
      out->values[0] = r->accuracy;
      place_parameters(out, ko_obj_verttran_parms, ko_obj_verttran_parms_cnt, r->parm_first,
                       r->parm_count, ko_obj_verttran_parm_texts, ko_obj_verttran_parm_texts_cnt);
      return true;
    }
    case KO_TYPE_ANGUNIT:
    case KO_TYPE_SCALEUNIT: {
      const auto *r = named<ko_db_angunit_rec>(record, out);
      copy_unit(out, r);
      return true;
    }
    case KO_TYPE_LINUNIT:
    case KO_TYPE_AREAUNIT: {
      const auto *r = named<ko_db_linunit_rec>(record, out);
      copy_unit(out, r);
      copy_codes(out, {r->related});
      return true;
    }
    case KO_TYPE_PRIMEM: {
      const auto *r = named<ko_db_primem_rec>(record, out);
      copy_codes(out, {r->angunit});
      out->values[0] = r->longitude;
      return true;
    }
    case KO_TYPE_SPHEROID: {
      const auto *r = named<ko_db_spheroid_rec>(record, out);
      copy_codes(out, {r->linunit});
      out->values[0] = r->axis;
      out->values[1] = r->flattening;
      return true;
    }
    case KO_TYPE_HTMETHOD:
    case KO_TYPE_METHOD:
    case KO_TYPE_VTMETHOD:
    case KO_TYPE_PROJECTION:
    case KO_TYPE_PARAMETER: {
      const auto *r = named<ko_db_method_rec>(record, out);
      copy_codes(out, {r->slot});
      return true;
    }
    case KO_TYPE_EXTENT: {
      const auto *r = named<ko_db_extent_rec>(record, out);
      out->values[0] = r->west;
      out->values[1] = r->south;
      out->values[2] = r->east;
      out->values[3] = r->north;
      return true;
    }
    default:
      return false;
  }
}

bool copy_other(uint32_t kind, const void *record, ko_db_rec *out) {
  switch (kind) {
    case KO_DB_KIND_CODECHANGE:
    case KO_DB_KIND_DEPRECATED:
    case KO_DB_KIND_AXIS:
    case KO_DB_KIND_EXCEPTION: {
      const auto *r = static_cast<const ko_db_pair_rec *>(record);
      out->code = r->code;
      out->codes[0] = r->value;
      return true;
    }
    case KO_DB_KIND_SYNONYM: {
      const auto *r = static_cast<const ko_db_synonym_rec *>(record);
      set_text(out->name, r->name);
      set_text(out->text, r->synonym);
      set_text(out->text2, r->authority);
      return true;
    }
    case KO_DB_KIND_VERSION: {
      const auto *r = static_cast<const ko_db_version_rec *>(record);
      out->code = r->code;
      set_text(out->text, r->version);
      set_text(out->text2, r->authority);
      return true;
    }
    case KO_DB_KIND_DESCRIPTION:
    case KO_DB_KIND_DEFSTRING: {
      const auto *r = static_cast<const ko_db_text_rec *>(record);
      out->code = r->code;
      set_text(out->text, r->text);
      return true;
    }
    case KO_DB_KIND_AREAINFO: {
      const auto *r = static_cast<const ko_db_areainfo_rec *>(record);
      out->code = r->area;
      set_text(out->text, r->path);
      set_text(out->text2, r->name);
      return true;
    }
    case KO_DB_KIND_AREACODE: {
      const auto *r = static_cast<const ko_db_areacode_rec *>(record);
      out->code = r->code;
      copy_codes(out, {r->area, r->sequence});
      return true;
    }
    case KO_DB_KIND_GCSVCS: {
      const auto *r = static_cast<const ko_db_gcsvcs_rec *>(record);
      out->code = r->gcs;
      copy_codes(out, {r->gcs3d, r->vcs, r->xyz});
      return true;
    }
    case KO_DB_KIND_ENSEMBLE: {
      const auto *r = static_cast<const ko_db_ensemble_rec *>(record);
      out->code = r->code;
      copy_codes(out, {r->member, r->sequence});
      out->values[0] = r->accuracy;
      return true;
    }
    case KO_DB_KIND_EPOCH: {
      const auto *r = static_cast<const ko_db_epoch_rec *>(record);
      out->code = r->code;
      out->values[0] = r->epoch;
      return true;
    }
    default:
      return false;
  }
}

const void *find_data(const ko_db_builtin_entry *row, const ko_db_key *key, int mode) {
  if (mode == KO_DB_MODE_CODE) {
    if (row->type == KO_TYPE_EXTENT) return ko_db_builtin_extent_lookup_code(row->data, key->code);
    return ko_db_builtin_data_lookup_code(row->data, key->code);
  }
  if (mode == KO_DB_MODE_NAME) return ko_db_builtin_data_lookup_name(row, key->name);
  return nullptr;
}

// The record a search finds, by table kind and mode; null when the kind
// does not know the mode.
const void *find_record(const ko_db_builtin_entry *row, uint32_t kind, const ko_db_key *key,
                        int mode) {
  const bool by_code = mode == KO_DB_MODE_CODE;
  switch (kind) {
    case KO_DB_KIND_DATA:
      return find_data(row, key, mode);
    case KO_DB_KIND_CODECHANGE:
      if (mode == KO_DB_MODE_OLD_CODE) return ko_db_builtin_codechange_lookup_old(row, key->code);
      if (mode == KO_DB_MODE_NEW_CODE) return ko_db_builtin_codechange_lookup_new(row, key->code);
      return nullptr;
    case KO_DB_KIND_SYNONYM:
      if (mode == KO_DB_MODE_SYNONYM)
        return ko_db_builtin_synonym_s_lookup(row, key->name, key->authority);
      if (mode == KO_DB_MODE_LIBNAME)
        return ko_db_builtin_synonym_a_lookup(row, key->name, key->authority);
      return nullptr;
    case KO_DB_KIND_DESCRIPTION:
      return by_code ? ko_db_builtin_description_lookup(row, key->code) : nullptr;
    case KO_DB_KIND_DEFSTRING:
      if (by_code) return ko_db_builtin_defstring_lookup_code(row, key->code);
      if (mode == KO_DB_MODE_NAME) return ko_db_builtin_defstring_lookup_name(row, key->name);
      return nullptr;
    case KO_DB_KIND_AREACODE:
      return mode == KO_DB_MODE_AREA ? ko_db_builtin_areacode_lookup(row, key->code) : nullptr;
    case KO_DB_KIND_AREAINFO:
      return mode == KO_DB_MODE_AREA ? ko_db_builtin_areainfo_lookup(row, key->code) : nullptr;
    case KO_DB_KIND_DEPRECATED:
      return by_code ? ko_db_builtin_deprecated_lookup(row, key->code) : nullptr;
    case KO_DB_KIND_VERSION:
      return by_code ? ko_db_builtin_version_lookup(row, key->code) : nullptr;
    case KO_DB_KIND_AXIS:
      return by_code ? ko_db_builtin_axis_lookup(row, key->code) : nullptr;
    case KO_DB_KIND_EXCEPTION:
      return by_code ? ko_db_builtin_exception_lookup(row, key->code) : nullptr;
    case KO_DB_KIND_ENSEMBLE:
      return by_code ? ko_db_builtin_ensemble_lookup(row, key->code) : nullptr;
    case KO_DB_KIND_EPOCH:
      return by_code ? ko_db_builtin_epoch_lookup(row, key->code) : nullptr;
    case KO_DB_KIND_GCSVCS:
      if (mode == KO_DB_MODE_GCS) return ko_db_builtin_gcsvcs_lookup_by_gcs(row, key->code);
      if (mode == KO_DB_MODE_XYZ) return ko_db_builtin_gcsvcs_lookup_by_xyz(row, key->code);
      if (mode == KO_DB_MODE_VCS) return ko_db_builtin_gcsvcs_lookup_by_vcs(row, key->code);
      return nullptr;
    default:
      return nullptr;
  }
}

int read_only(ko_db *db, const char *source) {
  if (db != nullptr) ko_err_set(&db->err, KO_SEV_ERROR, KO_ERRCAT_DATABASE, 502, source);
  return -1;
}

uint32_t all_types() {
  uint32_t mask = 0;
  for (const ko_db_builtin_entry *row = ko_db_builtin_registry; row->type != 0; ++row)
    mask |= row->type;
  return mask;
}

}  // namespace

extern "C" {

const ko_db_vector ko_db_builtin_vector_tbl = {
    ko_db_builtin_open,   ko_db_builtin_close,  ko_db_builtin_create, ko_db_builtin_delete,
    ko_db_builtin_flush,  ko_db_builtin_addrec, ko_db_builtin_updrec, ko_db_builtin_delrec,
    ko_db_builtin_count,  ko_db_builtin_index,  ko_db_builtin_search,
};

int ko_db_builtin_open(ko_db *db, const char * /*path*/) {
  if (db == nullptr) return -1;
  ko_err_clear(&db->err);
  db->type_mask = all_types();
  db->table_mask = KO_DB_KIND_ALL;
  db->vector = &ko_db_builtin_vector_tbl;
  db->handle = const_cast<ko_db_builtin_entry *>(ko_db_builtin_registry);
  return 0;
}

int ko_db_builtin_close(ko_db *db) {
  if (db == nullptr) return -1;
  db->handle = nullptr;
  return 0;
}

int ko_db_builtin_create(ko_db *db, const char * /*path*/) {
  return read_only(db, "ko_db_builtin_create");
}
int ko_db_builtin_delete(ko_db *db, const char * /*path*/) {
  return read_only(db, "ko_db_builtin_delete");
}
int ko_db_builtin_flush(ko_db *db) { return read_only(db, "ko_db_builtin_flush"); }
int ko_db_builtin_addrec(ko_db *db, uint32_t /*type*/, const ko_db_rec * /*rec*/) {
  return read_only(db, "ko_db_builtin_addrec");
}
int ko_db_builtin_updrec(ko_db *db, uint32_t /*type*/, const ko_db_rec * /*rec*/) {
  return read_only(db, "ko_db_builtin_updrec");
}
int ko_db_builtin_delrec(ko_db *db, uint32_t /*type*/, int32_t /*code*/) {
  return read_only(db, "ko_db_builtin_delrec");
}

int ko_db_builtin_count(ko_db * /*db*/, uint32_t type) {
  const ko_db_builtin_entry *row = ko_db_builtin_data_find(type);
  if (row == nullptr || row->data == nullptr) return -1;
  return row->data->count;
}

int ko_db_builtin_index(ko_db * /*db*/, uint32_t type, int32_t position, ko_db_rec *rec) {
  const ko_db_builtin_entry *row = ko_db_builtin_data_find(type);
  if (rec == nullptr || row == nullptr || row->data == nullptr) return 0;
  if (position < 0 || position >= row->data->count) return 0;
  const auto *base = static_cast<const unsigned char *>(row->data->recs);
  return ko_db_builtin_obj_copy(type, base + static_cast<std::size_t>(position) *
                                                 static_cast<std::size_t>(row->data->size),
                                rec);
}

int ko_db_builtin_search(ko_db *db, uint32_t type, uint32_t kind, const ko_db_key *key, int mode,
                         ko_db_rec *result) {
  if (db == nullptr || key == nullptr || result == nullptr) return 0;
  if ((db->type_mask & type) == 0 || (db->table_mask & kind) == 0) return 0;
  const ko_db_builtin_entry *row = ko_db_builtin_data_find(type);
  if (row == nullptr) return 0;
  const void *found = find_record(row, kind, key, mode);
  if (found == nullptr) return 0;
  return ko_db_builtin_rec_copy(type, kind, found, result);
}

int ko_db_builtin_rec_copy(uint32_t type, uint32_t kind, const void *record, ko_db_rec *out) {
  if (record == nullptr || out == nullptr) return 0;
  if (kind == KO_DB_KIND_DATA) return ko_db_builtin_obj_copy(type, record, out);
  clear_rec(out, type, kind);
  return copy_other(kind, record, out) ? 1 : 0;
}

int ko_db_builtin_obj_copy(uint32_t type, const void *record, ko_db_rec *out) {
  if (record == nullptr || out == nullptr) return 0;
  clear_rec(out, type, KO_DB_KIND_DATA);
  return copy_data(type, record, out) ? 1 : 0;
}

}  // extern "C"
