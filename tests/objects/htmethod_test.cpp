// The adjustment method list: agreement with the catalogue, lookups, the
// method object and its errors.
#include "ko.h"
#include "objects/systems_support.h"
#include "support/failing_alloc.h"

#include <gtest/gtest.h>

namespace {

using ko::test::expect_no_report;
using ko::test::expect_report;
using ko::test::name_of;
using ko::test::Report;

TEST(Htmethlist, TwoMethodsAlignedWithTheCatalogue) {
  ASSERT_EQ(ko_htmethlist_count(), 2);
  EXPECT_EQ(ko_htmethlist_tbl[2].code, 0);
  const auto *recs = static_cast<const ko_db_method_rec *>(ko_obj_htmethod_data_tbl.recs);
  ASSERT_EQ(ko_obj_htmethod_data_tbl.count, 2);
  for (int i = 0; i < 2; ++i) {
    const ko_htmethlist_entry *e = ko_htmethlist_from_code(recs[i].code);
    ASSERT_NE(e, nullptr);
    EXPECT_STREQ(e->name, recs[i].name);
    EXPECT_EQ(ko_htmethlist_from_indx(i), &ko_htmethlist_tbl[i]);
  }
  // Values of the plane transformations (IOGP guidance note 7-2): the
  // similarity has two translations, a scale and a rotation; the affine
  // transformation six coefficients.
  EXPECT_EQ(ko_htmethlist_from_code(9621)->num_values, 4);
  EXPECT_EQ(ko_htmethlist_from_code(9624)->num_values, 6);
  EXPECT_EQ(ko_htmethlist_from_indx(2), nullptr);
  EXPECT_EQ(ko_htmethlist_from_code(0), nullptr);
}

TEST(Htmethlist, LookupsByName) {
  EXPECT_EQ(ko_htmethlist_from_name("affine"), ko_htmethlist_from_code(9624));
  EXPECT_EQ(ko_htmethlist_from_name("Affine parametric transformation"),
            ko_htmethlist_from_code(9624));
  EXPECT_EQ(ko_htmethlist_from_name("SIMILARITY"), ko_htmethlist_from_code(9621));
  EXPECT_EQ(ko_htmethlist_from_name("Helmert"), nullptr);
  EXPECT_EQ(ko_htmethlist_from_name(nullptr), nullptr);
}

TEST(Htmethod, ObjectsAndErrors) {
  ko_err err = ko::test::stale_record();
  ko_htmethod *a = ko_htmethlist_htmethod_from_code(9624, &err);
  ASSERT_NE(a, nullptr);
  expect_no_report(err);
  EXPECT_EQ(name_of(a), "Affine");
  EXPECT_EQ(ko_htmethod_code(a), 9624);
  EXPECT_EQ(ko_htmethod_status(a), KO_STATUS_CODE);
  EXPECT_EQ(ko_htmethod_entry(a), ko_htmethlist_from_code(9624));
  ko_htmethod *b = ko_htmethlist_htmethod_from_name("Affine parametric transformation", &err);
  ASSERT_NE(b, nullptr);
  EXPECT_EQ(ko_htmethod_status(b), KO_STATUS_STRING);
  ko_htmethod *s = ko_htmethod_new("Similarity");
  EXPECT_EQ(ko_htmethod_eq(a, b), 1);
  EXPECT_EQ(ko_htmethod_eq(a, s), 0);
  ko_htmethod *c = static_cast<ko_htmethod *>(ko_object_clone(s));
  EXPECT_EQ(ko_object_eq(c, s), 1);
  EXPECT_EQ(ko_htmethod_status(c), KO_STATUS_NEW);

  EXPECT_EQ(ko_htmethlist_htmethod_from_code(9603, &err), nullptr);
  expect_report(err, Report{4, 4, 216, "ko_htmethlist_htmethod_from_code", "9603"});
  EXPECT_EQ(ko_htmethlist_htmethod_from_name("Helmert", &err), nullptr);
  expect_report(err, Report{4, 8, 306, "ko_htmethlist_htmethod_from_name", "Helmert"});
  EXPECT_EQ(ko_htmethod_new_errext("Helmert", &err), nullptr);
  expect_report(err, Report{2, 8, 306, "ko_htmethod_new_errext", "Helmert"});
  EXPECT_EQ(ko_htmethod_new_htmethlist(nullptr, &err), nullptr);
  expect_report(err, Report{4, 8, 336, "ko_htmethod_new_htmethlist",
                            "Null or invalid htmethod object argument"});
  for (ko_htmethod *m : {a, b, s, c}) ko_htmethod_del(m);
}

TEST(HtmethodNoObject, NullAndStalePointers) {
  ko::test::Ghost ghost;
  for (void *p : {static_cast<void *>(nullptr), ghost.ptr()}) {
    auto *m = static_cast<ko_htmethod *>(p);
    EXPECT_EQ(ko_htmethod_p(m), 0);
    EXPECT_EQ(ko_htmethod_entry(m), nullptr);
    EXPECT_EQ(ko_htmethod_clone(m), nullptr);
    EXPECT_EQ(ko_htmethod_eq(m, m), 0);
    EXPECT_EQ(ko_htmethod_del(m), nullptr);
  }
  EXPECT_TRUE(ghost.untouched());
  EXPECT_EQ(ko_object_vector(KO_TYPE_HTMETHOD), &ko_htmethod_objvec);
}

TEST(HtmethodMemory, ConstructorsAndCloneCleanUp) {
  ASSERT_TRUE(ko::test::installed());
  EXPECT_GE(ko::test::sweep_failures([] {
              ko_err err{};
              ko_htmethod *m = ko_htmethlist_htmethod_from_name("affine", &err);
              if (m == nullptr) {
                expect_report(err, Report{4, 1, 1, "ko_htmethlist_htmethod_from_name", "Affine"});
                return false;
              }
              ko_htmethod_del(m);
              return true;
            }),
            1);
  ko_htmethod *src = ko_htmethod_new("Affine");
  ko_object_authority_set(src, ko_authority_new("EPSG", 9624, ""));
  EXPECT_GE(ko::test::clone_sweep(src, ko_htmethod_clone, ko_htmethod_del), 2);
  ko_htmethod_del(src);
}

}  // namespace
