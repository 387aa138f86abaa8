// Records of the vertical, geocentric and compound systems, the vertical
// transformation, the two method objects of the vertical and adjustment
// lists, arrays, epochs and adjusted systems, with the helpers they share:
// parameter slots, owned metadata and remark, and the horizontal systems
// they hold through the generic object operations.  Internal.
#pragma once

#include "objects/geodetic.h"
#include "objects/parameter.h"

#include <array>

struct ko_vdatum {
  ko_header header;
  char anchor[KO_ANCHOR_SIZE];
  char frame_name[KO_NAME_SIZE];  // empty for a static datum
  double epoch;                   // reference epoch of a dynamic frame, else 0.0
  ko_metadata **metadata;         // owned null-terminated vector, or null
};

struct ko_vertcs {
  ko_header header;
  void *datum;                         // owned ko_vdatum, or ko_datum for ellipsoidal heights
  ko_parameter *parms[KO_PARM_COUNT];  // owned, by slot
  ko_linunit *unit;                    // owned, never null
  ko_axis *axis;                       // owned or null
  ko_metadata **metadata;              // owned or null
  ko_remark *remark;                   // owned or null
};

struct ko_gxyzcs {
  ko_header header;
  ko_datum *datum;             // owned, never null
  ko_primem *primem;           // owned, never null
  ko_linunit *unit;            // owned, never null
  ko_axis *axes[KO_AXIS_MAX];  // owned X, Y, Z, or all null
  ko_metadata **metadata;
  ko_remark *remark;
};

struct ko_hvcoordsys {
  ko_header header;
  void *coordsys;     // owned ko_geogcs or ko_projcs
  ko_vertcs *vertcs;  // owned
  ko_metadata **metadata;
  ko_remark *remark;
};

// The method objects of the two small lists: a header whose codes are the
// list code.
struct ko_vtmethod {
  ko_header header;
};
struct ko_htmethod {
  ko_header header;
};

struct ko_verttran {
  ko_header header;
  void *coordsys;                      // owned horizontal system, or null
  ko_vertcs *vertcs1;                  // owned
  ko_vertcs *vertcs2;                  // owned
  ko_vtmethod *method;                 // owned
  ko_parameter *parms[KO_PARM_COUNT];  // owned, by slot
  ko_metadata **metadata;
  ko_remark *remark;
  char opversion[KO_NAME_SIZE];
  double accuracy;  // metres; 999.0 unknown
};

struct ko_array {
  ko_header header;
  int32_t count;
  double *values;  // owned, `count` values from the library allocator
  ko_unit *unit;   // owned or null
};

struct ko_epoch {
  ko_header header;  // no record: an epoch has no name
  double year;
};

struct ko_adjhcs {
  ko_header header;
  void *coordsys;       // owned ko_geogcs or ko_projcs
  ko_htmethod *method;  // owned
  ko_array *values;     // owned
  ko_metadata **metadata;
  ko_remark *remark;
};

namespace ko {

inline ko_vdatum *live_vdatum(const void *o) { return as<ko_vdatum>(o, KO_TYPE_VDATUM); }
inline ko_vertcs *live_vertcs(const void *o) { return as<ko_vertcs>(o, KO_TYPE_VERTCS); }
inline ko_gxyzcs *live_gxyzcs(const void *o) { return as<ko_gxyzcs>(o, KO_TYPE_GXYZCS); }
inline ko_hvcoordsys *live_hvcoordsys(const void *o) {
  return as<ko_hvcoordsys>(o, KO_TYPE_HVCOORDSYS);
}
inline ko_vtmethod *live_vtmethod(const void *o) { return as<ko_vtmethod>(o, KO_TYPE_VTMETHOD); }
inline ko_htmethod *live_htmethod(const void *o) { return as<ko_htmethod>(o, KO_TYPE_HTMETHOD); }
inline ko_verttran *live_verttran(const void *o) { return as<ko_verttran>(o, KO_TYPE_VERTTRAN); }
inline ko_array *live_array(const void *o) { return as<ko_array>(o, KO_TYPE_ARRAY); }
inline ko_epoch *live_epoch(const void *o) { return as<ko_epoch>(o, KO_TYPE_EPOCH); }
inline ko_adjhcs *live_adjhcs(const void *o) { return as<ko_adjhcs>(o, KO_TYPE_ADJHCS); }

// A live geographic or projected system, or null.
inline void *live_coordsys(const void *o) { return as<void>(o, KO_TYPE_COORDSYS); }

// Both absent, or both present and equal by the generic equality (which
// never finds a geographic system equal to a projected one).
bool optional_objects_equal(const void *a, const void *b);

// ---------------------------------------------------------------------------
// 24 owned parameter slots.

using ParmSlots = std::array<Unique<ko_parameter>, KO_PARM_COUNT>;

// Deep copies of the filled slots; false when a copy failed (the copies
// made so far are released with `out`).
bool clone_slots(ko_parameter *const *src, ParmSlots &out);

// Moves the copies into a slot array (which then owns them).
void release_slots(ParmSlots &from, ko_parameter **to);

// Deletes every filled slot.
void delete_slots(ko_parameter **slots);

// Every slot that either side fills holds equal parameters.
bool slots_equal(ko_parameter *const *a, ko_parameter *const *b);

// Two live arrays with equal counts, units and values (names aside).
bool arrays_hold_equal_values(const void *a, const void *b);

// The parameters against the vertical method of `code` (ko_vtmethod_valid
// without clearing the record, reporting under `source`): 1 or 0.
int vtmethod_check(ko_parameter *const *parms, const char *name, int32_t code, const char *source,
                   ko_err *err);

// ---------------------------------------------------------------------------
// The optional metadata vector and remark that systems own.

struct Annotations {
  ko_metadata **metadata = nullptr;
  Unique<ko_remark> remark;
  ~Annotations() { ko_metadata_vector_del(metadata); }
  Annotations() = default;
  Annotations(const Annotations &) = delete;
  Annotations &operator=(const Annotations &) = delete;
  // Hands the metadata vector over (the remark is taken with release()).
  ko_metadata **take_metadata() {
    ko_metadata **m = metadata;
    metadata = nullptr;
    return m;
  }
};

// Deep copies of a metadata vector and a remark; false when a copy failed.
bool clone_annotations(ko_metadata *const *metadata, const ko_remark *remark, Annotations &out);

}  // namespace ko
