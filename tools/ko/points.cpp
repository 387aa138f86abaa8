// Point input and output: lines or CSV rows read in blocks, each block's
// coordinates converted by one converter call, rows written back in order.
#include "points.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <optional>
#include <string>
#include <vector>

namespace ko::cli {

const std::string_view kPointsFormatText =
    "Input: one point per line, the two coordinates first (longitude and latitude in the "
    "angular unit of the geographic system, usually degrees, east and north positive; or "
    "x and y in the linear unit of the projected system), separated by spaces, tabs or a "
    "comma. Whatever follows them passes through to the output unchanged. Blank lines "
    "and lines that start with '#' are copied as they are.\n"
    "\n"
    "With --csv the input is CSV whose first line names the columns; that line is kept. "
    "The coordinates are read from the columns that the column options name (by default "
    "the columns called lon, long, longitude or lng; lat or latitude; x or easting; y or "
    "northing) and the results go into the columns named for the output, which are added "
    "at the end of every row when the header lacks them. All other columns pass through.\n"
    "\n"
    "Output: the converted coordinates with --precision decimals (by default 9 for "
    "angles, 3 for lengths), line for line in the order of the input. A line that cannot "
    "be read and a point that cannot be converted are reported on standard error with "
    "their line number; the line keeps its place in the output with '*' for each "
    "coordinate (in CSV, empty fields), all other lines are converted, and the exit "
    "status is 1.\n"
    "\n"
    "Points are converted in blocks of up to 4096 by one call of the library's point "
    "functions per block. When standard error is a terminal, a long input shows its "
    "progress there.";

namespace {

constexpr size_t kBlockRows = 4096;

enum PointOption {
  kInput = kPointOptionBase,
  kCsv,
  kDelimiter,
  kNoHeader,
  kLonColumn,
  kLatColumn,
  kXColumn,
  kYColumn,
  kPrecision,
};

constexpr option kPointLongOptions[] = {
    {"input", required_argument, nullptr, kInput},
    {"csv", no_argument, nullptr, kCsv},
    {"delimiter", required_argument, nullptr, kDelimiter},
    {"no-header", no_argument, nullptr, kNoHeader},
    {"lon-column", required_argument, nullptr, kLonColumn},
    {"lat-column", required_argument, nullptr, kLatColumn},
    {"x-column", required_argument, nullptr, kXColumn},
    {"y-column", required_argument, nullptr, kYColumn},
    {"precision", required_argument, nullptr, kPrecision},
};

constexpr OptionDoc kPointOptionDocs[] = {
    {"--input FILE", "Read the points from FILE instead of standard input (\"-\" is standard "
                     "input)."},
    {"--csv", "Read and write CSV. The first line names the columns (see --no-header); "
              "fields may be quoted with double quotes."},
    {"--delimiter CHAR", "The CSV field separator: one character, or \"tab\". Default: a "
                         "comma."},
    {"--no-header", "The CSV input has no header line: columns are named by number, the "
                    "coordinates are read from columns 1 and 2 unless the column options say "
                    "otherwise, and results are added at the end of each row."},
    {"--lon-column COLUMN", "The CSV column of longitudes, by name or by number (1 is the "
                            "first): read when the input is geographic, written when the "
                            "output is. Default: lon, long, longitude or lng; a new column "
                            "\"lon\" when the output needs one."},
    {"--lat-column COLUMN", "The CSV column of latitudes, like --lon-column. Default: lat or "
                            "latitude; a new column \"lat\"."},
    {"--x-column COLUMN", "The CSV column of eastings (x): read when the input is projected, "
                          "written when the output is. Default: x or easting; a new column "
                          "\"x\"."},
    {"--y-column COLUMN", "The CSV column of northings (y), like --x-column. Default: y or "
                          "northing; a new column \"y\"."},
    {"-p, --precision N", "Write N decimals (0 to 17) for every coordinate. Default: 9 for "
                          "angles, 3 for lengths and heights."},
};

// ---- Reading lines -------------------------------------------------------

// Lines from a file descriptor through its own buffer.  read(2) returns
// what is there, so that a block can end when the input has no more lines
// ready (a person typing, a slow pipe) instead of waiting for a full block.
class LineReader {
 public:
  explicit LineReader(int fd) : fd_(fd), buf_(size_t{1} << 16) {}

  // The next line without its end ("\n" or "\r\n"); nullopt at the end.
  // error() tells a read error from the end.
  bool next(std::string &line) {
    line.clear();
    for (;;) {
      if (begin_ < end_) {
        const char *start = buf_.data() + begin_;
        const auto *newline = static_cast<const char *>(std::memchr(start, '\n', end_ - begin_));
        if (newline != nullptr) {
          line.append(start, static_cast<size_t>(newline - start));
          begin_ += static_cast<size_t>(newline - start) + 1;
          if (!line.empty() && line.back() == '\r') line.pop_back();
          return true;
        }
        line.append(start, end_ - begin_);
        begin_ = end_;
      }
      if (at_end_ || !fill()) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        return !line.empty();
      }
    }
  }

  // A complete line is buffered, or the last read filled the buffer (a
  // file, or a pipe with more waiting).
  bool more_ready() const {
    if (at_end_) return begin_ < end_;
    return last_read_full_ || std::memchr(buf_.data() + begin_, '\n', end_ - begin_) != nullptr;
  }

  bool error() const { return error_ != 0; }
  int error_number() const { return error_; }
  uint64_t bytes_read() const { return bytes_; }

 private:
  bool fill() {
    ssize_t got = 0;
    do {
      got = ::read(fd_, buf_.data(), buf_.size());
    } while (got < 0 && errno == EINTR);
    if (got <= 0) {
      if (got < 0) error_ = errno;
      at_end_ = true;
      begin_ = end_ = 0;
      return false;
    }
    begin_ = 0;
    end_ = static_cast<size_t>(got);
    last_read_full_ = end_ == buf_.size();
    bytes_ += end_;
    return true;
  }

  int fd_;
  std::vector<char> buf_;
  size_t begin_ = 0;
  size_t end_ = 0;
  bool at_end_ = false;
  bool last_read_full_ = false;
  int error_ = 0;
  uint64_t bytes_ = 0;
};

// ---- Progress --------------------------------------------------------------

// A progress line on standard error, only when it is a terminal and only
// once the input has taken more than a second.
class Progress {
 public:
  explicit Progress(int input_fd) : enabled_(::isatty(STDERR_FILENO) != 0) {
    struct stat info {};
    if (::fstat(input_fd, &info) == 0 && S_ISREG(info.st_mode))
      total_ = static_cast<uint64_t>(info.st_size);
  }
  ~Progress() { finish(); }
  Progress(const Progress &) = delete;
  Progress &operator=(const Progress &) = delete;

  void update(long lines, uint64_t bytes) {
    if (!enabled_) return;
    const auto now = Clock::now();
    if (now - start_ < std::chrono::seconds(1) || now - last_ < std::chrono::milliseconds(200))
      return;
    last_ = now;
    if (total_ > 0)
      std::fprintf(stderr, "\rko: %ld lines (%d%%)", lines,
                   static_cast<int>(100.0 * static_cast<double>(bytes) /
                                    static_cast<double>(total_)));
    else
      std::fprintf(stderr, "\rko: %ld lines", lines);
    shown_ = true;
  }

  void finish() {
    if (shown_) std::fputs("\r\033[K", stderr);  // clear the progress line
    shown_ = false;
  }

 private:
  using Clock = std::chrono::steady_clock;
  bool enabled_;
  uint64_t total_ = 0;
  Clock::time_point start_ = Clock::now();
  Clock::time_point last_ = start_;
  bool shown_ = false;
};

// ---- Rows ------------------------------------------------------------------

struct Field {
  size_t begin = 0;
  size_t end = 0;
};

struct Row {
  std::string text;
  long number = 0;
  bool is_point = false;  // false: copied through unchanged
  bool has_height = false;
  Failure failure = Failure::kNone;
  const char *problem = nullptr;  // why an unreadable line could not be read
  size_t rest = std::string::npos;  // plain text: where the text after the coordinates starts
  std::vector<Field> fields;        // CSV: every field, quotes included
};

bool is_blank(char c) { return c == ' ' || c == '\t'; }

// Plain text: fields are runs of characters other than blanks and commas.
std::optional<Field> next_plain_field(const std::string &text, size_t &pos) {
  while (pos < text.size() && (is_blank(text[pos]) || text[pos] == ',')) ++pos;
  if (pos >= text.size()) return std::nullopt;
  Field field{pos, pos};
  while (field.end < text.size() && !is_blank(text[field.end]) && text[field.end] != ',')
    ++field.end;
  pos = field.end;
  return field;
}

// Where the next field starts (the separators before it are not kept).
size_t skip_separators(const std::string &text, size_t pos) {
  while (pos < text.size() && (is_blank(text[pos]) || text[pos] == ',')) ++pos;
  return pos;
}

std::string_view view(const std::string &text, Field field) {
  return std::string_view(text).substr(field.begin, field.end - field.begin);
}

// A CSV field's value: blanks around it and its quotes removed ("" inside
// quotes is one quote; coordinates never hold one, so it is left as is).
std::string_view csv_value(const std::string &text, Field field) {
  std::string_view value = view(text, field);
  while (!value.empty() && is_blank(value.front())) value.remove_prefix(1);
  while (!value.empty() && is_blank(value.back())) value.remove_suffix(1);
  if (value.size() >= 2 && value.front() == '"' && value.back() == '"')
    value = value.substr(1, value.size() - 2);
  return value;
}

// Splits a CSV line into fields; false when a quote is not closed.
bool split_csv(const std::string &text, char delimiter, std::vector<Field> &fields) {
  fields.clear();
  size_t pos = 0;
  for (;;) {
    Field field{pos, pos};
    size_t i = pos;
    while (i < text.size() && is_blank(text[i])) ++i;
    if (i < text.size() && text[i] == '"') {
      ++i;
      for (;;) {
        if (i >= text.size()) return false;
        if (text[i] == '"') {
          if (i + 1 < text.size() && text[i + 1] == '"') {
            i += 2;
            continue;
          }
          ++i;
          break;
        }
        ++i;
      }
    }
    while (i < text.size() && text[i] != delimiter) ++i;
    field.end = i;
    fields.push_back(field);
    if (i >= text.size()) return true;
    pos = i + 1;
  }
}

// ---- Columns -----------------------------------------------------------------

struct ColumnRole {
  const std::string *option;                  // what the user named
  std::span<const std::string_view> defaults;  // names looked for otherwise
  const char *flag;                           // the option's name, for messages
};

constexpr std::string_view kLonNames[] = {"lon", "long", "longitude", "lng"};
constexpr std::string_view kLatNames[] = {"lat", "latitude"};
constexpr std::string_view kXNames[] = {"x", "easting"};
constexpr std::string_view kYNames[] = {"y", "northing"};
constexpr std::string_view kHeightNames[] = {"h", "height", "z", "ellipsoidal_height"};

// Where the coordinates are read from and written to in CSV rows.
struct CsvColumns {
  int in_x = -1, in_y = -1, in_z = -1;     // 0-based input columns (-1: none)
  int out_x = -1, out_y = -1, out_z = -1;  // output columns; -1: appended
  std::vector<std::string> appended;       // names of the appended columns, in order
  size_t header_size = 0;
};

bool same_name(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (size_t i = 0; i < a.size(); ++i)
    if (std::tolower(static_cast<unsigned char>(a[i])) !=
        std::tolower(static_cast<unsigned char>(b[i])))
      return false;
  return true;
}

int find_header(const std::vector<std::string_view> &header, std::string_view name) {
  for (size_t i = 0; i < header.size(); ++i)
    if (same_name(header[i], name)) return static_cast<int>(i);
  return -1;
}

// The column that a role's option names (a 1-based number or a header
// name) or, without the option, the first of the usual names in the header.
std::optional<int> lookup_column(const ColumnRole &role,
                                 const std::vector<std::string_view> &header) {
  const std::string &named = *role.option;
  if (!named.empty()) {
    long number = 0;
    if (parse_integer(named, 1, 1000000, number)) return static_cast<int>(number - 1);
    const int found = find_header(header, named);
    return found >= 0 ? std::optional<int>(found) : std::nullopt;
  }
  for (std::string_view name : role.defaults)
    if (const int found = find_header(header, name); found >= 0) return found;
  return std::nullopt;
}

std::string list_names(std::span<const std::string_view> names) {
  std::string out;
  for (std::string_view name : names) {
    if (!out.empty()) out += ", ";
    out += name;
  }
  return out;
}

// An input column.  Without a header and without the option it is
// `fallback` (-1: none).  A column that must be there and is not, or one
// named and not found, is reported.
bool input_column(const ColumnRole &role, const std::vector<std::string_view> &header,
                  bool has_header, int fallback, bool required, int &column) {
  if (const std::optional<int> found = lookup_column(role, header)) {
    column = *found;
    return true;
  }
  column = -1;
  const std::string &named = *role.option;
  if (!named.empty()) {
    if (has_header)
      complain("%s %s: the CSV header has no such column", role.flag, named.c_str());
    else
      complain("%s %s: without a header, columns are named by number", role.flag,
               named.c_str());
    return false;
  }
  if (!has_header) column = fallback;
  if (column == -1 && required) {
    complain("the CSV header has no column called %s; name it with %s",
             list_names(role.defaults).c_str(), role.flag);
    return false;
  }
  return true;
}

// An output column: the one named or found, else a new one at the end of
// each row, called by the option or by the first usual name.
void output_column(const ColumnRole &role, const std::vector<std::string_view> &header,
                   CsvColumns &columns, int &column) {
  if (const std::optional<int> found = lookup_column(role, header)) {
    column = *found;
    return;
  }
  column = -1;
  columns.appended.emplace_back(role.option->empty() ? std::string(role.defaults.front())
                                                     : *role.option);
}

// ---- The run -----------------------------------------------------------------

class PointRun {
 public:
  PointRun(const PointsOptions &options, const Converter &convert)
      : options_(options), convert_(convert) {
    decimals_xy_ = options.precision >= 0 ? options.precision
                                          : (options.output_geographic ? 9 : 3);
    decimals_z_ = options.precision >= 0 ? options.precision : 3;
  }

  int run(int fd);

 private:
  bool read_block(LineReader &reader);
  void parse_plain(Row &row);
  void parse_csv(Row &row);
  bool set_up_csv(const Row &header_row);
  bool convert_block();
  bool block_has_failures() const;
  void write_block();
  void write_plain(const Row &row, size_t point);
  void write_csv(const Row &row, size_t point);
  void write_header(const Row &row);
  void add_point(Row &row, double x, double y, std::optional<double> z);

  const PointsOptions &options_;
  const Converter &convert_;
  int decimals_xy_ = 3;
  int decimals_z_ = 3;

  std::vector<Row> rows_ = std::vector<Row>(kBlockRows);
  size_t row_count_ = 0;
  long line_number_ = 0;
  bool header_pending_ = false;
  CsvColumns columns_;

  // The block's points: coordinates, heights, outcome and row.
  std::vector<double> xy_, z_;
  std::vector<Failure> failures_;
  std::vector<size_t> point_row_;
  bool block_has_heights_ = false;

  std::string out_;
  long failed_lines_ = 0;
};

void PointRun::add_point(Row &row, double x, double y, std::optional<double> z) {
  row.is_point = true;
  row.has_height = z.has_value();
  xy_.push_back(x);
  xy_.push_back(y);
  z_.push_back(z.value_or(0.0));
  block_has_heights_ = block_has_heights_ || z.has_value();
  failures_.push_back(Failure::kNone);
  point_row_.push_back(static_cast<size_t>(&row - rows_.data()));
}

void PointRun::parse_plain(Row &row) {
  const std::string &text = row.text;
  size_t start = 0;
  while (start < text.size() && is_blank(text[start])) ++start;
  if (start == text.size() || text[start] == '#') return;  // copied through

  size_t pos = start;
  const std::optional<Field> first = next_plain_field(text, pos);
  const std::optional<Field> second = next_plain_field(text, pos);
  double x = 0.0;
  double y = 0.0;
  if (!first || !second || !parse_number(view(text, *first), x) ||
      !parse_number(view(text, *second), y)) {
    row.failure = Failure::kUnreadable;
    row.problem = "expected two numbers";
    row.rest = skip_separators(text, pos);
    return;
  }
  std::optional<double> z;
  size_t after = pos;
  if (options_.read_heights) {
    size_t probe = pos;
    double height = 0.0;
    if (const std::optional<Field> third = next_plain_field(text, probe);
        third && parse_number(view(text, *third), height)) {
      z = height;
      after = probe;
    }
  }
  row.rest = skip_separators(text, after);
  add_point(row, x, y, z);
}

void PointRun::parse_csv(Row &row) {
  if (row.text.find_first_not_of(" \t") == std::string::npos) return;  // copied through
  if (!split_csv(row.text, options_.delimiter, row.fields)) {
    row.failure = Failure::kUnreadable;
    row.problem = "a quote is not closed";
    row.fields.assign(1, Field{0, row.text.size()});  // the row stays one piece
    return;
  }
  const int needed = std::max({columns_.in_x, columns_.in_y, columns_.in_z});
  if (options_.header && !columns_.appended.empty() &&
      row.fields.size() > columns_.header_size) {
    row.failure = Failure::kUnreadable;
    row.problem = "more fields than the header has";
    return;
  }
  if (static_cast<int>(row.fields.size()) <= needed) {
    row.failure = Failure::kUnreadable;
    row.problem = "too few fields";
    return;
  }
  double x = 0.0;
  double y = 0.0;
  if (!parse_number(csv_value(row.text, row.fields[columns_.in_x]), x) ||
      !parse_number(csv_value(row.text, row.fields[columns_.in_y]), y)) {
    row.failure = Failure::kUnreadable;
    row.problem = "a coordinate is not a number";
    return;
  }
  std::optional<double> z;
  if (columns_.in_z >= 0) {
    const std::string_view value = csv_value(row.text, row.fields[columns_.in_z]);
    double height = 0.0;
    if (parse_number(value, height)) {
      z = height;
    } else if (!value.empty()) {  // an empty height means none
      row.failure = Failure::kUnreadable;
      row.problem = "the height is not a number";
      return;
    }
  }
  add_point(row, x, y, z);
}

bool PointRun::set_up_csv(const Row &header_row) {
  std::vector<std::string_view> header;
  std::vector<Field> fields;
  if (options_.header) {
    if (!split_csv(header_row.text, options_.delimiter, fields)) {
      complain("line %ld: the CSV header has a quote that is not closed", header_row.number);
      return false;
    }
    // A byte-order mark before the first name is no part of it.
    constexpr std::string_view kBom = "\xEF\xBB\xBF";
    if (header_row.text.starts_with(kBom) && !fields.empty()) fields.front().begin += 3;
    for (Field field : fields) header.push_back(csv_value(header_row.text, field));
  }
  const bool has_header = options_.header;
  const ColumnRole lon{&options_.lon_column, kLonNames, "--lon-column"};
  const ColumnRole lat{&options_.lat_column, kLatNames, "--lat-column"};
  const ColumnRole x{&options_.x_column, kXNames, "--x-column"};
  const ColumnRole y{&options_.y_column, kYNames, "--y-column"};
  const ColumnRole z{&options_.height_column, kHeightNames, "--height-column"};
  const ColumnRole &in_x = options_.input_geographic ? lon : x;
  const ColumnRole &in_y = options_.input_geographic ? lat : y;
  const ColumnRole &out_x = options_.output_geographic ? lon : x;
  const ColumnRole &out_y = options_.output_geographic ? lat : y;

  CsvColumns &c = columns_;
  c.header_size = header.size();
  if (!input_column(in_x, header, has_header, 0, true, c.in_x) ||
      !input_column(in_y, header, has_header, 1, true, c.in_y))
    return false;
  if (options_.read_heights && !input_column(z, header, has_header, -1, false, c.in_z))
    return false;
  c.out_z = c.in_z;  // heights are written back where they were read
  output_column(out_x, header, c, c.out_x);
  output_column(out_y, header, c, c.out_y);
  // Appended columns follow the header (or each row, without one).
  int next = static_cast<int>(c.header_size);
  for (int *column : {&c.out_x, &c.out_y})
    if (*column == -1 && has_header) *column = next++;
  return true;
}

bool PointRun::read_block(LineReader &reader) {
  row_count_ = 0;
  xy_.clear();
  z_.clear();
  failures_.clear();
  point_row_.clear();
  block_has_heights_ = false;
  while (row_count_ < kBlockRows) {
    Row &row = rows_[row_count_];
    if (!reader.next(row.text)) break;
    ++row_count_;
    row.number = ++line_number_;
    row.is_point = false;
    row.has_height = false;
    row.failure = Failure::kNone;
    row.problem = nullptr;
    row.rest = std::string::npos;
    if (!options_.csv) {
      parse_plain(row);
    } else if (header_pending_) {
      header_pending_ = false;
      if (!set_up_csv(row)) return false;
    } else {
      parse_csv(row);
    }
    if (!reader.more_ready()) break;  // convert what is there without waiting
  }
  return true;
}

bool PointRun::convert_block() {
  if (xy_.empty()) return true;
  PointBlock block{xy_, block_has_heights_ ? std::span<double>(z_) : std::span<double>(),
                   failures_};
  if (!convert_(block)) return false;
  for (size_t p = 0; p < failures_.size(); ++p)
    rows_[point_row_[p]].failure = failures_[p];
  return true;
}

bool PointRun::block_has_failures() const {
  for (size_t r = 0; r < row_count_; ++r)
    if (rows_[r].failure != Failure::kNone) return true;
  return false;
}

const char *failure_text(Failure failure) {
  switch (failure) {
    case Failure::kNone: return "";
    case Failure::kUnreadable: return "cannot read";
    case Failure::kLatitude: return "latitude beyond the poles";
    case Failure::kProjection: return "outside the projection's domain";
    case Failure::kTransformation: return "outside what the transformation covers";
  }
  return "";
}

void PointRun::write_plain(const Row &row, size_t point) {
  const bool ok = row.failure == Failure::kNone;
  if (ok) {
    append_fixed(out_, xy_[2 * point], decimals_xy_);
    out_ += ' ';
    append_fixed(out_, xy_[2 * point + 1], decimals_xy_);
  } else {
    out_ += "* *";
  }
  if (row.has_height) {
    out_ += ' ';
    if (ok)
      append_fixed(out_, z_[point], decimals_z_);
    else
      out_ += '*';
  }
  if (row.rest < row.text.size()) {
    out_ += ' ';
    out_.append(row.text, row.rest);
  }
}

void PointRun::write_csv(const Row &row, size_t point) {
  const bool ok = row.failure == Failure::kNone;
  const CsvColumns &c = columns_;
  // Without a header the new columns follow each row's own fields.
  int out_x = c.out_x;
  int out_y = c.out_y;
  int next = static_cast<int>(row.fields.size());
  if (out_x < 0) out_x = next++;
  if (out_y < 0) out_y = next++;
  const int out_z = row.is_point && row.has_height ? c.out_z : -1;
  const int width = std::max({static_cast<int>(row.fields.size()), out_x + 1, out_y + 1});
  for (int i = 0; i < width; ++i) {
    if (i > 0) out_ += options_.delimiter;
    if (i == out_x || i == out_y || i == out_z) {
      if (!ok) continue;  // an empty field for a failed point
      const double value = i == out_z ? z_[point] : xy_[2 * point + (i == out_y ? 1 : 0)];
      append_fixed(out_, value, i == out_z ? decimals_z_ : decimals_xy_);
    } else if (i < static_cast<int>(row.fields.size())) {
      out_.append(view(row.text, row.fields[static_cast<size_t>(i)]));
    }
  }
}

void PointRun::write_header(const Row &row) {
  out_ += row.text;
  for (const std::string &name : columns_.appended) {
    out_ += options_.delimiter;
    out_ += name;
  }
}

void PointRun::write_block() {
  out_.clear();
  size_t point = 0;
  for (size_t r = 0; r < row_count_; ++r) {
    const Row &row = rows_[r];
    const size_t this_point = row.is_point ? point++ : 0;
    if (row.failure != Failure::kNone) {
      ++failed_lines_;
      const char *why = row.problem != nullptr ? row.problem : failure_text(row.failure);
      std::fprintf(stderr, "ko: line %ld: %s: %.120s\n", row.number, why, row.text.c_str());
    }
    const bool is_header = options_.csv && options_.header && row.number == 1;
    if (is_header) {
      write_header(row);
    } else if (!row.is_point && row.failure == Failure::kNone) {
      out_ += row.text;  // blank or comment line
    } else if (options_.csv) {
      write_csv(row, this_point);
    } else {
      write_plain(row, this_point);
    }
    out_ += '\n';
  }
  std::fwrite(out_.data(), 1, out_.size(), stdout);
  std::fflush(stdout);
}

int PointRun::run(int fd) {
  LineReader reader(fd);
  Progress progress(fd);
  header_pending_ = options_.csv && options_.header;
  if (options_.csv && !options_.header && !set_up_csv(Row{})) return kExitUsage;
  for (;;) {
    if (!read_block(reader)) return kExitUsage;
    if (row_count_ == 0) break;
    if (!convert_block()) {
      progress.finish();
      return kExitUsage;
    }
    if (block_has_failures()) progress.finish();  // reports must not mix with it
    write_block();
    progress.update(line_number_, reader.bytes_read());
  }
  progress.finish();
  if (reader.error()) {
    complain("cannot read the input: %s", std::strerror(reader.error_number()));
    return kExitUsage;
  }
  if (std::ferror(stdout) != 0) {
    complain("cannot write the output");
    return kExitUsage;
  }
  return failed_lines_ > 0 ? kExitSomeFailed : kExitOk;
}

}  // namespace

std::span<const OptionDoc> point_option_docs() { return kPointOptionDocs; }
std::vector<option> with_point_options(std::initializer_list<option> own) {
  std::vector<option> table(own);
  table.insert(table.end(), std::begin(kPointLongOptions), std::end(kPointLongOptions));
  return table;
}

OptionResult take_point_option(const CommandDoc &doc, int code, const char *argument,
                               PointsOptions &options) {
  switch (code) {
    case kInput: options.input_path = argument; return OptionResult::kTaken;
    case kCsv: options.csv = true; return OptionResult::kTaken;
    case kNoHeader: options.header = false; return OptionResult::kTaken;
    case kLonColumn: options.lon_column = argument; return OptionResult::kTaken;
    case kLatColumn: options.lat_column = argument; return OptionResult::kTaken;
    case kXColumn: options.x_column = argument; return OptionResult::kTaken;
    case kYColumn: options.y_column = argument; return OptionResult::kTaken;
    case kDelimiter: {
      const std::string_view text = argument;
      if (text == "tab" || text == "\\t") {
        options.delimiter = '\t';
      } else if (text.size() == 1 && text[0] != '"' && text[0] != '\n') {
        options.delimiter = text[0];
      } else {
        usage_error(doc, "--delimiter takes one character or \"tab\", not '%s'", argument);
        return OptionResult::kRefused;
      }
      return OptionResult::kTaken;
    }
    case 'p':
    case kPrecision: {
      long decimals = 0;
      if (!parse_integer(argument, 0, 17, decimals)) {
        usage_error(doc, "--precision takes a number of decimals from 0 to 17, not '%s'",
                    argument);
        return OptionResult::kRefused;
      }
      options.precision = static_cast<int>(decimals);
      return OptionResult::kTaken;
    }
    default: return OptionResult::kNotMine;
  }
}

bool take_input_operand(const CommandDoc &doc, std::string_view file, PointsOptions &options) {
  if (!options.input_path.empty()) {
    usage_error(doc, "give the input either as FILE or with --input");
    return false;
  }
  options.input_path = file;
  return true;
}

int convert_points(const PointsOptions &options, const Converter &convert) {
  int fd = STDIN_FILENO;
  const bool from_file = !options.input_path.empty() && options.input_path != "-";
  if (from_file) {
    fd = ::open(options.input_path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) {
      complain("cannot open %s: %s", options.input_path.c_str(), std::strerror(errno));
      return kExitUsage;
    }
  }
  PointRun run(options, convert);
  const int status = run.run(fd);
  if (from_file) ::close(fd);
  return status;
}

}  // namespace ko::cli
