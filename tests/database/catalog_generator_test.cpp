// The generated catalogue sources are reproducible: running the generator
// again on the same EPSG dataset writes the committed files byte for byte.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

namespace {

namespace fs = std::filesystem;

const char *const kProjDb = "/usr/share/proj/proj.db";

std::string slurp(const fs::path &path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

TEST(CatalogGenerator, RegeneratesTheCommittedSourcesByteForByte) {
  if (!fs::exists(kProjDb)) GTEST_SKIP() << "no " << kProjDb;
  fs::path committed = fs::path(KO_SOURCE_DIR) / "database" / "generated";
  fs::path out = fs::path(KO_BINARY_DIR) / "catalog_regenerated";
  fs::remove_all(out);
  std::string command = "python3 \"" + (fs::path(KO_SOURCE_DIR) / "tools/catalog/generate.py").string() +
                        "\" --db " + kProjDb + " --out \"" + out.string() + "\" 2>/dev/null";
  ASSERT_EQ(std::system(command.c_str()), 0) << command;

  int compared = 0;
  for (const auto &entry : fs::directory_iterator(committed)) {
    fs::path fresh = out / entry.path().filename();
    ASSERT_TRUE(fs::exists(fresh)) << fresh << " not written";
    EXPECT_TRUE(slurp(entry.path()) == slurp(fresh)) << entry.path().filename() << " differs";
    ++compared;
  }
  int written = 0;
  for (const auto &entry : fs::directory_iterator(out)) {
    EXPECT_TRUE(fs::exists(committed / entry.path().filename()))
        << entry.path().filename() << " is not committed";
    ++written;
  }
  EXPECT_EQ(compared, written);
  EXPECT_GE(compared, 9);
  fs::remove_all(out);
}

}  // namespace
