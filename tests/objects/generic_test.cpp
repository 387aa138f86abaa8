// Generic object operations: dispatch through the objvec registry, header
// fields through the object functions, the lazily made authority, display
// names, and clones that keep every header field.
#include "ko.h"
#include "objects/object_support.h"
#include "support/failing_alloc.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using ko::test::Ghost;
using ko::test::units;
using ko::test::uc;

const ko_gcs_extent kBox{-10.0, 40.0, 20.0, 60.0, 0.0, 0.0};

TEST(ObjectRegistry, FindsEachRegisteredTypeByExactCode) {
  struct Case {
    uint32_t type;
    const ko_objvec *vec;
  } const cases[] = {
      {KO_TYPE_AUTHORITY, &ko_authority_objvec},
      {KO_TYPE_DISPNAME, &ko_dispname_objvec},
      {KO_TYPE_METADATA, &ko_metadata_objvec},
      {KO_TYPE_REMARK, &ko_remark_objvec},
  };
  for (const Case &c : cases) {
    EXPECT_EQ(ko_object_vector(c.type), c.vec);
    EXPECT_EQ(c.vec->type, c.type);
  }
  // Composite codes and extents have no operation table; neither does a
  // union of two registered codes.
  for (uint32_t type : {0u, KO_TYPE_COORDSYS, KO_TYPE_HVDATUM, KO_TYPE_TRANSFORM, KO_TYPE_EXTENT,
                        KO_TYPE_AUTHORITY | KO_TYPE_REMARK})
    EXPECT_EQ(ko_object_vector(type), nullptr) << std::hex << type;
}

TEST(ObjectDispatch, CloneDeleteAndEqualGoThroughTheObjvec) {
  ko_authority *a = ko_authority_new("EPSG", 4326, nullptr);
  ko_metadata *m = ko_metadata_new("World", &kBox, 1262);
  ASSERT_TRUE(ko_object_p(a));
  ASSERT_TRUE(ko_object_p(m));
  auto *a2 = static_cast<ko_authority *>(ko_object_clone(a));
  auto *m2 = static_cast<ko_metadata *>(ko_object_clone(m));
  EXPECT_TRUE(ko_authority_p(a2));
  EXPECT_TRUE(ko_metadata_p(m2));
  EXPECT_TRUE(ko_object_eq(a, a2));
  EXPECT_TRUE(ko_object_eq(m2, m));
  EXPECT_FALSE(ko_object_eq(a, m));  // no common type bit
  EXPECT_FALSE(ko_object_eq(m, a));
  long before = ko::test::live_allocations();
  EXPECT_EQ(ko_object_del(m2), nullptr);
  EXPECT_LT(ko::test::live_allocations(), before);
  for (void *obj : {static_cast<void *>(a), static_cast<void *>(a2), static_cast<void *>(m)})
    ko_object_del(obj);
}

TEST(ObjectDispatch, NullAndStalePointersAreNoObjects) {
  Ghost ghost;
  ko_authority *a = ko_authority_new("EPSG", 4326, nullptr);
  for (void *obj : {static_cast<void *>(nullptr), ghost.ptr()}) {
    EXPECT_FALSE(ko_object_p(obj));
    EXPECT_EQ(ko_object_clone(obj), nullptr);
    EXPECT_EQ(ko_object_del(obj), nullptr);
    EXPECT_FALSE(ko_object_eq(obj, a));
    EXPECT_FALSE(ko_object_eq(a, obj));
    EXPECT_FALSE(ko_object_eq(obj, obj));
    EXPECT_EQ(ko_object_type(obj), 0u);
    EXPECT_EQ(ko_object_status(obj), 0u);
    EXPECT_EQ(ko_object_dbid(obj), 0u);
    EXPECT_EQ(ko_object_code(obj), 0);
    EXPECT_EQ(ko_object_code_internal(obj), 0);
    EXPECT_EQ(ko_object_get_orig_code(obj), 0);
    EXPECT_EQ(ko_object_is_hidden(obj), 0);
    EXPECT_EQ(ko_object_string_type(obj), 0);
    EXPECT_EQ(ko_object_authority(obj), nullptr);  // the ghost has EPSG 4326 in its record
    EXPECT_EQ(ko_object_authority_const(obj), nullptr);
    EXPECT_EQ(ko_object_dispname(obj), nullptr);
    ko_object_status_set(obj, 8);
    ko_object_hidden_set(obj, 0);
    ko_object_code_set(obj, 1, 2, 3, 4, "X", "Y");
    ko_object_authority_set(obj, nullptr);
    ko_object_dispname_set(obj, nullptr);
    ko_object_uname_set(obj, uc(u"shown"));
    char name[KO_NAME_SIZE] = "junk";
    EXPECT_STREQ(ko_object_name(obj, name), "");
    ko_uchar uname[KO_NAME_SIZE] = {'j', 0};
    EXPECT_EQ(units(ko_object_uname(obj, uname)), u"");
    uname[0] = 'j';
    EXPECT_EQ(units(ko_object_uname_ext(obj, KO_NAMES_BOTH, uname)), u"");
  }
  EXPECT_TRUE(ghost.untouched());
  EXPECT_EQ(ko_object_name(a, nullptr), nullptr);
  EXPECT_EQ(ko_object_uname(a, nullptr), nullptr);
  ko_authority_del(a);
}

TEST(ObjectFields, CodeSetSetsAllSixAndGettersReadThemBack) {
  ko_metadata *m = ko_metadata_new("Area", nullptr, 0);
  ko_object_code_set(m, 1262, 2000, 1999, 5, "EPSG", "9.8");
  ko_object_status_set(m, KO_STATUS_USER);
  ko_object_hidden_set(m, 1);
  EXPECT_EQ(ko_object_code_internal(m), 1262);
  EXPECT_EQ(ko_object_code_external(m), 2000);
  EXPECT_EQ(ko_object_code(m), 2000);
  EXPECT_EQ(ko_object_get_orig_code(m), 1999);
  EXPECT_EQ(ko_object_dbid(m), 5u);
  EXPECT_STREQ(ko_header_get_auth_name(m), "EPSG");
  EXPECT_STREQ(ko_header_get_auth_ver(m), "9.8");
  EXPECT_EQ(ko_object_status(m), KO_STATUS_USER);
  EXPECT_EQ(ko_object_is_hidden(m), 1);
  EXPECT_EQ(ko_object_type(m), KO_TYPE_METADATA);
  ko_metadata_del(m);
}

TEST(ObjectFields, NamePrefersTheOriginalName) {
  ko_metadata *m = ko_metadata_new("Current", nullptr, 0);
  char buf[KO_NAME_SIZE];
  EXPECT_STREQ(ko_object_name(m, buf), "Current");  // original name empty
  ko_header_set_orig_name(m, "As first given");
  EXPECT_STREQ(ko_object_name(m, buf), "As first given");
  ko_metadata_del(m);
}

TEST(ObjectAuthority, IsMadeOnFirstUseFromTheHeaderCodes) {
  struct Case {
    int32_t code;
    const char *auth_name;
    const char *version;
    bool made;
  } const cases[] = {
      {4326, "EPSG", "10.1", true},
      {1, "ESRI", "", true},
      {0, "EPSG", "", false},     // no external code
      {-1, "EPSG", "", false},
      {4326, "", "", false},      // no authority name
  };
  for (const Case &c : cases) {
    ko_metadata *m = ko_metadata_new("Area", nullptr, 0);
    ko_object_code_set(m, -1, c.code, 0, 0, c.auth_name, c.version);
    EXPECT_EQ(ko_object_authority_const(m), nullptr);
    ko_authority *a = ko_object_authority(m);
    EXPECT_EQ(a != nullptr, c.made) << c.code << " " << c.auth_name;
    if (a != nullptr) {
      char buf[256];
      EXPECT_STREQ(ko_authority_authname(a, buf), c.auth_name);
      EXPECT_EQ(ko_authority_authcode(a), c.code);
      EXPECT_STREQ(ko_authority_version(a, buf), c.version);
      EXPECT_EQ(ko_object_authority(m), a);        // made once, then held
      EXPECT_EQ(ko_object_authority_const(m), a);
    }
    ko_metadata_del(m);  // owns the authority
  }
}

TEST(ObjectAuthority, SetReplacesTheHeldAuthority) {
  ko_metadata *m = ko_metadata_new("Area", nullptr, 0);
  ko_object_code_set(m, -1, 4326, 0, 0, "EPSG", "");
  ko_authority *mine = ko_authority_new("ESRI", 102100, nullptr);
  ko_object_authority_set(m, mine);
  EXPECT_EQ(ko_object_authority(m), mine);  // held: the codes are not consulted
  ko_metadata_del(m);
}

TEST(ObjectDisplayName, UnameFallsBackToTheWidenedName) {
  ko_metadata *m = ko_metadata_new("Zürich area", nullptr, 0);
  ko_uchar buf[KO_NAME_SIZE];
  EXPECT_EQ(units(ko_object_uname(m, buf)), u"Zürich area");
  ko_object_uname_set(m, uc(u"Zürichsee"));
  ASSERT_NE(ko_object_dispname(m), nullptr);
  EXPECT_EQ(units(ko_object_uname(m, buf)), u"Zürichsee");
  ko_object_uname_set(m, uc(u""));  // empty text: the display name goes
  EXPECT_EQ(ko_object_dispname(m), nullptr);
  ko_object_dispname_set(m, ko_dispname_new("Lake"));
  EXPECT_EQ(units(ko_object_uname(m, buf)), u"Lake");
  ko_object_uname_set(m, nullptr);
  EXPECT_EQ(ko_object_dispname(m), nullptr);
  ko_metadata_del(m);
}

TEST(ObjectDisplayName, UnameExtJoinsNameAndDisplayNameByFlags) {
  ko_metadata *m = ko_metadata_new("Lake_Zurich", nullptr, 0);
  ko_object_uname_set(m, uc(u"Zürichsee"));
  ko_uchar buf[KO_NAME_SIZE];
  EXPECT_EQ(units(ko_object_uname_ext(m, KO_NAMES_NAME, buf)), u"Lake_Zurich");
  EXPECT_EQ(units(ko_object_uname_ext(m, KO_NAMES_DISPNAME, buf)), u"Zürichsee");
  std::u16string both = units(ko_object_uname_ext(m, KO_NAMES_BOTH, buf));
  EXPECT_NE(both.find(u"Lake_Zurich"), std::u16string::npos);
  EXPECT_NE(both.find(u"Zürichsee"), std::u16string::npos);
  ko_metadata_del(m);
}

// A metadata object with every header field set away from its default.
ko_metadata *fully_dressed_metadata() {
  ko_metadata *m = ko_metadata_new("World", &kBox, 1262);
  ko_object_code_set(m, 777, 1262, 1261, 4, "EPSG", "10.0");
  ko_object_status_set(m, KO_STATUS_CODE | KO_STATUS_DISCONTINUED);
  ko_object_hidden_set(m, 1);
  ko_header_set_str_type(m, 4);
  ko_header_set_orig_name(m, "World (original)");
  ko_object_authority(m);  // made from the codes
  ko_object_uname_set(m, uc(u"Welt"));
  return m;
}

TEST(ObjectClone, KeepsEveryHeaderField) {
  ko_metadata *m = fully_dressed_metadata();
  auto *c = static_cast<ko_metadata *>(ko_object_clone(m));
  ASSERT_NE(c, nullptr);
  EXPECT_EQ(ko_object_type(c), KO_TYPE_METADATA);
  EXPECT_EQ(ko_object_status(c), KO_STATUS_CODE | KO_STATUS_DISCONTINUED);
  EXPECT_EQ(ko_object_dbid(c), 4u);
  EXPECT_EQ(ko_object_code_internal(c), 777);
  EXPECT_EQ(ko_object_code_external(c), 1262);
  EXPECT_EQ(ko_object_get_orig_code(c), 1261);
  EXPECT_EQ(ko_object_is_hidden(c), 1);
  EXPECT_EQ(ko_object_string_type(c), 4);
  EXPECT_STREQ(ko_header_get_name(c), "World");
  EXPECT_STREQ(ko_header_get_orig_name(c), "World (original)");
  EXPECT_STREQ(ko_header_get_auth_name(c), "EPSG");
  EXPECT_STREQ(ko_header_get_auth_ver(c), "10.0");
  ASSERT_NE(ko_object_authority_const(c), nullptr);
  EXPECT_NE(ko_object_authority_const(c), ko_object_authority_const(m));
  EXPECT_TRUE(ko_authority_eq(ko_object_authority_const(c), ko_object_authority_const(m)));
  ASSERT_NE(ko_object_dispname(c), nullptr);
  EXPECT_NE(ko_object_dispname(c), ko_object_dispname(m));
  EXPECT_TRUE(ko_dispname_eq(ko_object_dispname(c), ko_object_dispname(m)));
  ko_object_del(c);
  ko_object_del(m);
}

TEST(ObjectForwards, PerTypeOperationsMatchTheGenericOnes) {
  ko_metadata *m = fully_dressed_metadata();
  char a[KO_NAME_SIZE], b[KO_NAME_SIZE];
  ko_uchar ua[KO_NAME_SIZE], ub[KO_NAME_SIZE];
  EXPECT_EQ(ko_metadata_type(m), KO_TYPE_METADATA);
  EXPECT_EQ(ko_metadata_dbid(m), 4u);
  EXPECT_EQ(ko_metadata_status(m), ko_object_status(m));
  EXPECT_EQ(ko_metadata_code(m), 1262);
  EXPECT_STREQ(ko_metadata_name(m, a), ko_object_name(m, b));
  EXPECT_EQ(units(ko_metadata_uname(m, ua)), units(ko_object_uname(m, ub)));
  EXPECT_EQ(units(ko_metadata_uname_ext(m, KO_NAMES_NAME, ua)), u"World");
  EXPECT_EQ(ko_metadata_authority(m), ko_object_authority_const(m));
  EXPECT_EQ(ko_metadata_dispname(m), ko_object_dispname(m));
  ko_metadata_dispname_set(m, nullptr);
  EXPECT_EQ(ko_object_dispname(m), nullptr);
  ko_metadata_uname_set(m, uc(u"Monde"));
  EXPECT_EQ(units(ko_dispname_uname_get(ko_object_dispname(m))), u"Monde");
  ko_metadata_authority_set(m, nullptr);
  EXPECT_EQ(ko_object_authority_const(m), nullptr);
  // The record-less types have the type forward only.
  ko_remark *r = ko_remark_new("note");
  ko_authority *auth = ko_authority_new("EPSG", 1, nullptr);
  ko_dispname *d = ko_dispname_new("shown");
  EXPECT_EQ(ko_remark_type(r), KO_TYPE_REMARK);
  EXPECT_EQ(ko_authority_type(auth), KO_TYPE_AUTHORITY);
  EXPECT_EQ(ko_dispname_type(d), KO_TYPE_DISPNAME);
  EXPECT_EQ(ko_remark_type(nullptr), 0u);
  ko_remark_del(r);
  ko_authority_del(auth);
  ko_dispname_del(d);
  ko_metadata_del(m);
}

TEST(ObjectAllocation, LazyAuthorityAndUnameSetSurviveFailedAllocations) {
  EXPECT_GT(ko::test::sweep_failures([] {
              ko_metadata *m = ko_metadata_new("Area", nullptr, 0);
              if (m == nullptr) return false;
              ko_object_code_set(m, -1, 4326, 0, 0, "EPSG", "");
              ko_object_uname_set(m, uc(u"shown"));
              bool ok = ko_object_authority(m) != nullptr && ko_object_dispname(m) != nullptr;
              ko_metadata_del(m);
              return ok;
            }),
            0);
}

}  // namespace
