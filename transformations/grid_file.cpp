// Bounded reading of binary grid files.
#include "transformations/grid_file.h"

#include "ko.h"

#include <sys/stat.h>

#include <bit>
#include <climits>
#include <cstring>

namespace ko {

GridFile::GridFile(const char *path) {
  if (path == nullptr || *path == '\0') return;
  struct stat st {};
  if (::stat(path, &st) != 0 || !S_ISREG(st.st_mode)) return;
  file_.reset(static_cast<std::FILE *>(ko_path_fopen(path, "rb")));
  if (file_ == nullptr) return;
  if (std::fseek(file_.get(), 0, SEEK_END) != 0) {
    file_.reset();
    return;
  }
  const long end = std::ftell(file_.get());
  if (end < 0) {
    file_.reset();
    return;
  }
  size_ = static_cast<uint64_t>(end);
}

bool GridFile::read(uint64_t offset, void *buf, std::size_t len) {
  if (file_ == nullptr || offset > size_ || len > size_ - offset) return false;
  if (len == 0) return true;
  if (offset > static_cast<uint64_t>(LONG_MAX)) return false;
  if (std::fseek(file_.get(), static_cast<long>(offset), SEEK_SET) != 0) return false;
  return std::fread(buf, 1, len, file_.get()) == len;
}

bool grid_file_readable(const char *path) { return GridFile(path).ok(); }

uint32_t load_u32(const unsigned char *p, bool big_endian) {
  uint32_t v;
  std::memcpy(&v, p, sizeof v);
  const bool swap = big_endian != (std::endian::native == std::endian::big);
  return swap ? __builtin_bswap32(v) : v;
}

float load_f32(const unsigned char *p, bool big_endian) {
  return std::bit_cast<float>(load_u32(p, big_endian));
}

double load_f64(const unsigned char *p, bool big_endian) {
  uint64_t v;
  std::memcpy(&v, p, sizeof v);
  const bool swap = big_endian != (std::endian::native == std::endian::big);
  return std::bit_cast<double>(swap ? __builtin_bswap64(v) : v);
}

}  // namespace ko
