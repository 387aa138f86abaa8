// The object header: initial values, field access, the copy and clear
// rules, deletion, and "no object" answers for null and stale pointers.
#include "ko.h"
#include "objects/object_support.h"
#include "support/failing_alloc.h"

#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <string>

namespace {

using ko::test::Ghost;
using ko::test::Probe;

// A probe object with a header record that releases itself.
struct NamedProbe {
  Probe p{};
  explicit NamedProbe(const char *name, uint32_t type = KO_TYPE_DATUM) {
    ko_header_init(&p, type, name);
  }
  ~NamedProbe() { ko_header_del(&p); }
  void *obj() { return &p; }
};

TEST(Header, NamedObjectStartsWithTheDocumentedValues) {
  NamedProbe probe("D_WGS_1984");
  void *obj = probe.obj();
  EXPECT_EQ(probe.p.header.magic, KO_MAGIC_LIVE);
  EXPECT_EQ(ko_header_get_type(obj), KO_TYPE_DATUM);
  EXPECT_EQ(ko_header_get_status(obj), KO_STATUS_NEW);
  EXPECT_EQ(ko_header_get_dbid(obj), 0u);
  EXPECT_EQ(ko_header_get_code_external(obj), -1);
  EXPECT_EQ(ko_header_get_code_internal(obj), -1);
  EXPECT_EQ(ko_header_get_orig_code(obj), 0);
  EXPECT_EQ(ko_header_get_hidden(obj), 0);
  EXPECT_EQ(ko_header_get_str_type(obj), 0);
  EXPECT_STREQ(ko_header_get_name(obj), "D_WGS_1984");
  EXPECT_STREQ(ko_header_get_orig_name(obj), "");
  EXPECT_STREQ(ko_header_get_auth_name(obj), "");
  EXPECT_STREQ(ko_header_get_auth_ver(obj), "");
  EXPECT_EQ(ko_header_get_authority(obj), nullptr);
  EXPECT_EQ(ko_header_get_dispname(obj), nullptr);
  EXPECT_EQ(ko_header_get(obj), &probe.p.header);
}

TEST(Header, NameIsCutTo79Characters) {
  const std::string long_name(100, 'n');
  NamedProbe probe(long_name.c_str());
  EXPECT_EQ(std::string(ko_header_get_name(probe.obj())), long_name.substr(0, 79));
  ko_header_set_orig_name(probe.obj(), long_name.c_str());
  EXPECT_EQ(std::strlen(ko_header_get_orig_name(probe.obj())), 79u);
  ko_header_set_auth_ver(probe.obj(), long_name.c_str());
  EXPECT_EQ(std::strlen(ko_header_get_auth_ver(probe.obj())), 27u);
  ko_header_set_auth_name(probe.obj(), nullptr);
  EXPECT_STREQ(ko_header_get_auth_name(probe.obj()), "");
}

TEST(Header, ObjectWithoutNameHasNoRecord) {
  Probe p{};
  ko_header_init(&p, KO_TYPE_AUTHORITY, nullptr);
  EXPECT_TRUE(ko_header_is_valid(&p));
  EXPECT_EQ(p.header.info, nullptr);
  ko_header_set_status(&p, KO_STATUS_USER);
  ko_header_set_name(&p, "ignored");
  EXPECT_EQ(ko_header_get_status(&p), 0u);
  EXPECT_EQ(ko_header_get_code_external(&p), 0);
  EXPECT_STREQ(ko_header_get_name(&p), "");
  ko_header_del(&p);
  EXPECT_EQ(p.header.magic, KO_MAGIC_DEAD);
}

TEST(Header, NameGivenButNoMemoryLeavesObjectWithoutRecord) {
  Probe p{};
  ko::test::fail_after(0);
  ko_header_init(&p, KO_TYPE_DATUM, "D_WGS_1984");
  ko::test::never_fail();
  EXPECT_TRUE(ko_header_is_valid(&p));
  EXPECT_EQ(p.header.info, nullptr);
  ko_header_del(&p);
}

struct NumberField {
  const char *name;
  std::function<void(void *, int64_t)> set;
  std::function<int64_t(const void *)> get;
};

const NumberField kNumberFields[] = {
    {"status", [](void *o, int64_t v) { ko_header_set_status(o, static_cast<uint32_t>(v)); },
     [](const void *o) { return int64_t{ko_header_get_status(o)}; }},
    {"dbid", [](void *o, int64_t v) { ko_header_set_dbid(o, static_cast<uint32_t>(v)); },
     [](const void *o) { return int64_t{ko_header_get_dbid(o)}; }},
    {"internal code", [](void *o, int64_t v) { ko_header_set_code_internal(o, static_cast<int32_t>(v)); },
     [](const void *o) { return int64_t{ko_header_get_code_internal(o)}; }},
    {"external code", [](void *o, int64_t v) { ko_header_set_code_external(o, static_cast<int32_t>(v)); },
     [](const void *o) { return int64_t{ko_header_get_code_external(o)}; }},
    {"original code", [](void *o, int64_t v) { ko_header_set_orig_code(o, static_cast<int32_t>(v)); },
     [](const void *o) { return int64_t{ko_header_get_orig_code(o)}; }},
    {"hidden", [](void *o, int64_t v) { ko_header_set_hidden(o, static_cast<int32_t>(v)); },
     [](const void *o) { return int64_t{ko_header_get_hidden(o)}; }},
    {"string type", [](void *o, int64_t v) { ko_header_set_str_type(o, static_cast<int32_t>(v)); },
     [](const void *o) { return int64_t{ko_header_get_str_type(o)}; }},
};

TEST(Header, EachNumberFieldKeepsItsOwnValue) {
  NamedProbe probe("probe");
  // Distinct values per field: a setter that wrote the wrong field shows.
  int64_t value = 101;
  for (const NumberField &f : kNumberFields) f.set(probe.obj(), value++);
  value = 101;
  for (const NumberField &f : kNumberFields) EXPECT_EQ(f.get(probe.obj()), value++) << f.name;
}

TEST(Header, NullAndStalePointersReadAsNoObject) {
  Ghost ghost;
  for (void *obj : {static_cast<void *>(nullptr), ghost.ptr()}) {
    for (const NumberField &f : kNumberFields) {
      f.set(obj, 55);
      EXPECT_EQ(f.get(obj), 0) << f.name;
    }
    EXPECT_EQ(ko_header_get(obj), nullptr);
    EXPECT_FALSE(ko_header_is_valid(obj));
    EXPECT_FALSE(ko_header_is_type(obj, 0xFFFFFFFFu));
    EXPECT_EQ(ko_header_get_type(obj), 0u);
    ko_header_set_type(obj, KO_TYPE_GEOGCS);
    ko_header_set_name(obj, "x");
    ko_header_set_auth_name(obj, "x");
    EXPECT_STREQ(ko_header_get_name(obj), "");
    EXPECT_STREQ(ko_header_get_orig_name(obj), "");
    EXPECT_STREQ(ko_header_get_auth_name(obj), "");
    EXPECT_STREQ(ko_header_get_auth_ver(obj), "");
    EXPECT_EQ(ko_header_get_authority(obj), nullptr);
    EXPECT_EQ(ko_header_get_dispname(obj), nullptr);
    ko_header_set_authority(obj, nullptr);
    ko_header_set_dispname(obj, nullptr);
    ko_header_clear(obj);
    ko_header_copy(obj, nullptr);
    NamedProbe live_source("live");
    ko_header_copy_int(obj, live_source.obj());
    ko_header_copy(obj, live_source.obj());
    ko_header_del(obj);  // must not release the ghost's record
  }
  EXPECT_TRUE(ghost.untouched());
}

TEST(Header, TypeTestsAreBitTests) {
  struct Case {
    uint32_t type, mask;
    int expected;
  } const cases[] = {
      {KO_TYPE_GEOGCS, KO_TYPE_COORDSYS, 1},   {KO_TYPE_PROJCS, KO_TYPE_COORDSYS, 1},
      {KO_TYPE_VERTCS, KO_TYPE_COORDSYS, 0},   {KO_TYPE_VDATUM, KO_TYPE_HVDATUM, 1},
      {KO_TYPE_VERTTRAN, KO_TYPE_TRANSFORM, 1}, {KO_TYPE_SCALEUNIT, KO_TYPE_UNIT, 1},
      {KO_TYPE_AREAUNIT, KO_TYPE_UNIT, 0},     {KO_TYPE_DATUM, KO_TYPE_SPHEROID, 0},
  };
  for (const Case &c : cases) {
    Probe p{};
    ko_header_init(&p, c.type, nullptr);
    EXPECT_EQ(ko_header_is_type(&p, c.mask), c.expected) << std::hex << c.type << " " << c.mask;
    ko_header_del(&p);
  }
}

// A source with every field set, an authority and a display name.
struct FullSource : NamedProbe {
  FullSource() : NamedProbe("GCS_Source", KO_TYPE_GEOGCS) {
    ko_object_code_set(obj(), 7001, 4326, 4322, 3, "EPSG", "10.0");
    ko_header_set_status(obj(), KO_STATUS_CODE | KO_STATUS_CODECHANGE);
    ko_header_set_hidden(obj(), 1);
    ko_header_set_str_type(obj(), 4);
    ko_header_set_orig_name(obj(), "Source Original");
    ko_header_set_authority(obj(), ko_authority_new("EPSG", 4326, "10.0"));
    ko_header_set_dispname(obj(), ko_dispname_new("Source shown"));
  }
};

void expect_same_plain_fields(const void *a, const void *b) {
  EXPECT_EQ(ko_header_get_type(a), ko_header_get_type(b));
  for (const NumberField &f : kNumberFields) EXPECT_EQ(f.get(a), f.get(b)) << f.name;
  EXPECT_STREQ(ko_header_get_name(a), ko_header_get_name(b));
  EXPECT_STREQ(ko_header_get_orig_name(a), ko_header_get_orig_name(b));
  EXPECT_STREQ(ko_header_get_auth_name(a), ko_header_get_auth_name(b));
  EXPECT_STREQ(ko_header_get_auth_ver(a), ko_header_get_auth_ver(b));
}

TEST(HeaderCopy, CopyIntBringsPlainFieldsAndARecordButNotOwnedObjects) {
  FullSource src;
  Probe dst{};
  ko_header_init(&dst, KO_TYPE_DATUM, nullptr);
  ko_header_copy_int(&dst, src.obj());
  ASSERT_NE(dst.header.info, nullptr);
  expect_same_plain_fields(&dst, src.obj());
  EXPECT_EQ(ko_header_get_authority(&dst), nullptr);
  EXPECT_EQ(ko_header_get_dispname(&dst), nullptr);
  ko_header_del(&dst);
}

TEST(HeaderCopy, CopyIntWithoutMemoryCopiesOnlyMagicAndType) {
  FullSource src;
  Probe dst{};
  ko_header_init(&dst, KO_TYPE_DATUM, nullptr);
  ko::test::fail_after(0);
  ko_header_copy_int(&dst, src.obj());
  ko::test::never_fail();
  EXPECT_EQ(ko_header_get_type(&dst), KO_TYPE_GEOGCS);
  EXPECT_EQ(dst.header.info, nullptr);
  ko_header_del(&dst);
}

TEST(HeaderCopy, CopyReplacesAuthorityAndDisplayNameWithClones) {
  FullSource src;
  NamedProbe dst("destination");
  ko_header_set_authority(dst.obj(), ko_authority_new("OTHER", 1, nullptr));
  ko_header_copy(dst.obj(), src.obj());
  expect_same_plain_fields(dst.obj(), src.obj());
  const ko_authority *a = ko_header_get_authority(dst.obj());
  const ko_dispname *d = ko_header_get_dispname(dst.obj());
  ASSERT_NE(a, nullptr);
  ASSERT_NE(d, nullptr);
  EXPECT_NE(a, ko_header_get_authority(src.obj()));  // deep: its own copy
  EXPECT_NE(d, ko_header_get_dispname(src.obj()));
  EXPECT_TRUE(ko_authority_eq(a, ko_header_get_authority(src.obj())));
  EXPECT_TRUE(ko_dispname_eq(d, ko_header_get_dispname(src.obj())));
}

TEST(HeaderCopy, CheckedCopyReportsEveryFailedAllocation) {
  FullSource src;
  // Record, authority clone and display-name clone: every failure point
  // must be reported, and the destination must stay deletable.
  long allocations = ko::test::sweep_failures([&] {
    Probe dst{};
    ko_header_init(&dst, KO_TYPE_DATUM, nullptr);
    bool ok = ko::header_copy_checked(&dst, src.obj());
    ko_header_del(&dst);
    return ok;
  });
  EXPECT_EQ(allocations, 3);
}

TEST(HeaderClear, ResetsCodesAndDropsOwnedObjectsButKeepsIdentity) {
  FullSource src;
  long before = ko::test::live_allocations();
  ko_header_clear(src.obj());
  EXPECT_EQ(ko::test::live_allocations(), before - 2);  // authority and display name freed
  EXPECT_EQ(ko_header_get_authority(src.obj()), nullptr);
  EXPECT_EQ(ko_header_get_dispname(src.obj()), nullptr);
  EXPECT_EQ(ko_header_get_code_external(src.obj()), -1);
  EXPECT_EQ(ko_header_get_code_internal(src.obj()), -1);
  EXPECT_EQ(ko_header_get_orig_code(src.obj()), 0);
  EXPECT_EQ(ko_header_get_str_type(src.obj()), 0);
  EXPECT_STREQ(ko_header_get_auth_name(src.obj()), "");
  EXPECT_STREQ(ko_header_get_auth_ver(src.obj()), "");
  // What stays.
  EXPECT_EQ(ko_header_get_status(src.obj()), KO_STATUS_CODE | KO_STATUS_CODECHANGE);
  EXPECT_EQ(ko_header_get_dbid(src.obj()), 3u);
  EXPECT_EQ(ko_header_get_hidden(src.obj()), 1);
  EXPECT_STREQ(ko_header_get_name(src.obj()), "GCS_Source");
  EXPECT_STREQ(ko_header_get_orig_name(src.obj()), "Source Original");
}

TEST(HeaderDel, MarksDeadAndReleasesRecordAndOwnedObjects) {
  long before = ko::test::live_allocations();
  Probe p{};
  ko_header_init(&p, KO_TYPE_DATUM, "D");
  ko_header_set_authority(&p, ko_authority_new("EPSG", 6326, nullptr));
  ko_header_set_dispname(&p, ko_dispname_new("D"));
  EXPECT_EQ(ko::test::live_allocations(), before + 3);
  ko_header_del(&p);
  EXPECT_EQ(p.header.magic, KO_MAGIC_DEAD);
  EXPECT_EQ(ko::test::live_allocations(), before);
  EXPECT_FALSE(ko_header_is_valid(&p));
}

TEST(HeaderOwnership, SettersReplaceButRefuseForeignObjects) {
  NamedProbe probe("probe");
  ko_authority *first = ko_authority_new("EPSG", 1, nullptr);
  ko_header_set_authority(probe.obj(), first);
  ko_header_set_authority(probe.obj(), first);  // same object again: kept, not freed
  EXPECT_EQ(ko_header_get_authority(probe.obj()), first);
  EXPECT_EQ(ko_authority_authcode(first), 1);
  // A display name is no authority: ignored, and still the caller's.
  ko_dispname *d = ko_dispname_new("shown");
  ko_header_set_authority(probe.obj(), reinterpret_cast<ko_authority *>(d));
  EXPECT_EQ(ko_header_get_authority(probe.obj()), first);
  ko_header_set_dispname(probe.obj(), d);
  EXPECT_EQ(ko_header_get_dispname(probe.obj()), d);
  // Null drops the authority held.
  long before = ko::test::live_allocations();
  ko_header_set_authority(probe.obj(), nullptr);
  EXPECT_EQ(ko_header_get_authority(probe.obj()), nullptr);
  EXPECT_EQ(ko::test::live_allocations(), before - 1);
}

// The prologue that later object types' constructors start with.
TEST(ErrextPrologue, ClearsTheRecordAndWarnsAboutLongNames) {
  using ko::test::Report;
  const std::string n79(79, 'n'), n80(80, 'n'), n300(300, 'n');
  struct Case {
    const char *what;
    const char *name;
    std::string kept;
    bool warned;
  } const cases[] = {
      {"null", nullptr, "", false},
      {"79 characters", n79.c_str(), n79, false},
      {"80 characters", n80.c_str(), n79, true},
      {"300 characters", n300.c_str(), n79, true},
  };
  for (const Case &c : cases) {
    ko_err err = ko::test::stale_record();
    auto name = ko::errext_prologue(&err, "ko_probe_new_errext", c.name);
    EXPECT_EQ(std::string(name.text), c.kept) << c.what;
    EXPECT_EQ(name.was_cut, c.warned) << c.what;
    if (c.warned) {
      // The message holds the name as given, cut only to the record's 255.
      std::string given(c.name);
      ko::test::expect_report(err, Report{2, 8, 354, "ko_probe_new_errext",
                                          given.substr(0, 255).c_str()});
    } else {
      ko::test::expect_no_report(err);
    }
  }
  // Other field sizes, e.g. a 24-byte version.
  ko_err err{};
  auto version = ko::errext_prologue<24>(&err, "ko_probe_new_errext", "123456789012345678901234");
  EXPECT_STREQ(version.text, "12345678901234567890123");
  EXPECT_EQ(err.number, 354);
}

}  // namespace
