// The layout of a learning digest, by name.
//
// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "caller.h"

namespace tarvex::test {

namespace {

using enum argument_kind;

void give(call &call, argument_kind kind, const char *text)
{
  call.give(kind, reinterpret_cast<std::uint64_t>(text));
}

/// Names that are almost the given one.
std::vector<std::string> near_misses(const std::string &name)
{
  return {"", name.substr(0, name.size() - 1), name + "2", name + " ", "X" + name.substr(1)};
}

TEST(digest, an_entry_has_a_size)
{
  for (const calls::digest_info &digest : calls::digests) {
    call call(function_named(prefix() + "get_digest_entry_size"));
    give(call, digest_name, digest.name);
    EXPECT_EQ(call.run(), digest.entry_bytes);
    std::vector<std::string> others = near_misses(digest.name);
    others.emplace_back(digest.fields[0].name);
    for (const std::string &name : others) {
      give(call, digest_name, name.c_str());
      EXPECT_EQ(call.run(), 0u) << name;
    }
  }
}

TEST(digest, fields_follow_each_other_without_gaps)
{
  const std::uint64_t unreadable = 0x10;  // the entry itself is not touched
  for (const calls::digest_info &digest : calls::digests) {
    call call(function_named(prefix() + "get_digest_entry_field"));
    call.give(digest_entry, unreadable);
    const auto expect = [&](const std::string &of, const std::string &name, std::uint64_t at, std::uint32_t size) {
      give(call, digest_name, of.c_str());
      give(call, digest_field_name, name.c_str());
      EXPECT_EQ(call.run(), at) << of << ", " << name;
      call.expect_number(digest_field_size_out, size, 4);
      EXPECT_EQ(call.unexpected_bytes(), "") << of << ", " << name;
    };
    std::uint64_t at = unreadable;
    for (const calls::digest_field_info &field : digest.fields) {
      expect(digest.name, field.name, at, field.size);
      at += field.size;
      for (const std::string &name : near_misses(field.name)) expect(digest.name, name, 0, 0);
      for (const std::string &name : near_misses(digest.name)) expect(name, field.name, 0, 0);
    }
    EXPECT_EQ(at, unreadable + digest.entry_bytes);
  }
}

}  // namespace

}  // namespace tarvex::test
