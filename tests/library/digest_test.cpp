// The layout of a learning digest, by name.
//
// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "caller.h"

namespace tarvex::test {

namespace {

using enum argument_kind;

const std::string digest = "macLearningDigest";
const std::string near_misses[] = {
    "", "macLearningDiges", "macLearningDigest2", "macLearningDigest ", "MacLearningDigest", "ingMd_smacOui"};

void give(call &call, argument_kind kind, const std::string &text)
{
  call.give(kind, reinterpret_cast<std::uint64_t>(text.c_str()));
}

TEST(digest, an_entry_has_a_size)
{
  call call(function_named("p4_pd_tarvex_switch_get_digest_entry_size"));
  give(call, digest_name, digest);
  EXPECT_EQ(call.run(), 14u);
  for (const std::string &name : near_misses) {
    give(call, digest_name, name);
    EXPECT_EQ(call.run(), 0u) << name;
  }
}

TEST(digest, fields_follow_each_other_without_gaps)
{
  struct field {
    std::string digest, name;
    std::uint32_t size;  // 0 where there is none
  };
  std::vector<field> fields = {{digest, "ingMd_smacStation", 4},
                               {digest, "ingMd_ingL2Domain", 2},
                               {digest, "ingMd_ingL2Aintf", 4},
                               {digest, "ingMd_smacOui", 4}};
  for (const std::string &name : near_misses) fields.push_back({name, "ingMd_smacOui", 0});
  for (const char *name : {"", "ingMd_smacOu", "ingMd_smacOui2", "ingMd_smac", "ingmd_smacOui", "macLearningDigest"}) {
    fields.push_back({digest, name, 0});
  }
  call call(function_named("p4_pd_tarvex_switch_get_digest_entry_field"));
  const std::uint64_t unreadable = 0x10;  // the entry itself is not touched
  call.give(digest_entry, unreadable);
  std::uint64_t at = unreadable;
  for (const field &field : fields) {
    give(call, digest_name, field.digest);
    give(call, digest_field_name, field.name);
    EXPECT_EQ(call.run(), field.size == 0 ? 0 : at) << field.digest << ", " << field.name;
    call.expect_number(digest_field_size_out, field.size, 4);
    EXPECT_EQ(call.unexpected_bytes(), "") << field.digest << ", " << field.name;
    at += field.size;
  }
  EXPECT_EQ(at, unreadable + 14);
}

}  // namespace

}  // namespace tarvex::test
