// Bounded reading of binary grid files: every read names its offset and
// length and fails, rather than reading short, when it would pass the end of
// the file.  Internal to transformations/.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>

namespace ko {

class GridFile {
 public:
  explicit GridFile(const char *path);
  bool ok() const { return file_ != nullptr; }
  uint64_t size() const { return size_; }
  // Reads exactly len bytes at offset; false when they are not all in the file.
  bool read(uint64_t offset, void *buf, std::size_t len);

 private:
  struct Closer {
    void operator()(std::FILE *f) const { std::fclose(f); }
  };
  std::unique_ptr<std::FILE, Closer> file_;
  uint64_t size_ = 0;
};

// True when the path names a regular file that can be opened for reading.
bool grid_file_readable(const char *path);

// Values stored in either byte order.
uint32_t load_u32(const unsigned char *p, bool big_endian);
inline int32_t load_i32(const unsigned char *p, bool big_endian) {
  return static_cast<int32_t>(load_u32(p, big_endian));
}
float load_f32(const unsigned char *p, bool big_endian);
double load_f64(const unsigned char *p, bool big_endian);

}  // namespace ko
