// The grid methods' constants loading, usability check and file names over
// the data directory, shared by every grid format.
#include "transformations/grid_methods.h"

#include "transformations/grid_file.h"

#include <cstdio>
#include <cstring>

namespace ko {

const char *dataset_file(const char *dataset_name) {
  if (dataset_name == nullptr) return nullptr;
  static constexpr char kPrefix[] = "Dataset_";
  constexpr int kLen = static_cast<int>(sizeof kPrefix) - 1;
  const char *file = ko_strncmp_i(dataset_name, kPrefix, kLen) == 0 ? dataset_name + kLen
                                                                     : dataset_name;
  return *file != '\0' ? file : nullptr;
}

bool join_path(const char *dir, const char *name, char (&out)[kGridPathSize]) {
  // std::snprintf reports the length it needed, so a cut path shows.
  const int len = (dir == nullptr || *dir == '\0')
                      ? std::snprintf(out, kGridPathSize, "%s", name)
                      : std::snprintf(out, kGridPathSize, "%s/%s", dir, name);
  return len >= 0 && len < kGridPathSize;
}

bool grid_files(const GridFormatSpec &format, const char *dataset_name, GridFiles &files) {
  files = GridFiles{};
  const char *file = dataset_file(dataset_name);
  if (file == nullptr) return false;
  char dir[kGridPathSize] = "";
  if (file[0] != '/') {
    char root[kGridPathSize];
    ko_datadir_get(root, kGridPathSize);
    if (root[0] == '\0' || !join_path(root, format.subdir, dir)) return false;
  }
  return format.name_files(file, dir, files);
}

int grid_load(const GridFormatSpec &format, ko_constants *constants, ko_parameter *const *parms,
              int /*flag*/, const ko_gcs_extent *extent) {
  if (!ko_constants_p(constants) || parms == nullptr) return -1;
  const ko_parameter *dataset = parms[kSlotDataset];
  if (ko_header_get_code_internal(dataset) != KO_PARM_CODE_DATASET) return -1;
  GridFiles files;
  if (!grid_files(format, ko_header_get_name(dataset), files)) return -1;
  GridSet *set = format.read(files, extent);
  if (set == nullptr) return -1;
  ko_constants_data_set(constants, set);
  ko_constants_extent_set(constants, &set->extent);
  return 1;
}

void grid_unload(ko_constants *constants) {
  if (!ko_constants_p(constants)) return;
  grid_set_free(static_cast<GridSet *>(ko_constants_data(constants)));
  ko_constants_data_set(constants, nullptr);
}

int grid_usable(const GridFormatSpec &format, const char *dataset_name) {
  GridFiles files;
  if (!grid_files(format, dataset_name, files)) return 0;
  for (int i = 0; i < files.required; ++i)
    if (!grid_file_readable(files.path[i])) return 0;
  return 1;
}

int grid_filenames(const GridFormatSpec &format, const char *dataset_name, char *buf,
                   int size) {
  if (buf == nullptr || size <= 0) return -1;
  buf[0] = '\0';
  GridFiles files;
  if (!grid_files(format, dataset_name, files)) return 0;
  int used = 0;
  for (int i = 0; i < files.count; ++i) {
    const int len = std::snprintf(buf + used, static_cast<std::size_t>(size - used),
                                  i == 0 ? "%s" : "\n%s", files.path[i]);
    if (len < 0 || len >= size - used) {
      buf[0] = '\0';
      return -1;
    }
    used += len;
  }
  return files.count;
}

}  // namespace ko
