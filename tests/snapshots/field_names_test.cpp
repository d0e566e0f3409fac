// The names of the fields: which there are, where they stand, and names that there are not.
//
// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <cstring>
#include <set>
#include <string>

#include "fields.h"

namespace tarvex::test {
namespace {

struct list_calls {
  std::uint32_t count = 0;
  std::uint32_t layout = 0;
};

std::uint32_t count_listed(std::uint32_t ctx, const char *, std::uint32_t layout, std::uint32_t, void *cookie)
{
  auto &calls = *static_cast<list_calls *>(cookie);
  EXPECT_EQ(ctx, 0xfedcba98u);
  EXPECT_EQ(layout, calls.layout);
  return 0x80000000u + ++calls.count;
}

TEST(field_names, the_last_call_decides_what_a_list_gives)
{
  for (const std::uint32_t layout : {0u, 1u}) {
    const pd_snapshot_hdl_t hdl = layout == 0 ? ingress : egress;
    list_calls calls{0, layout};
    const std::uint32_t last =
        invoke("snapshot_capture_trigger_list", 0xfedcba98U, hdl, &count_listed, static_cast<void *>(&calls));
    EXPECT_EQ(last, 0x80000000u + calls.count);
    EXPECT_EQ(calls.count, list_fields(hdl).size());
  }
}

TEST(field_names, an_unknown_name_leaves_the_records_alone)
{
  snap_trig_spec_t value, mask, before;
  std::memset(before.fields, 0x6b, sizeof before.fields);
  value = mask = before;
  std::set<std::string> known[2];
  for (const pd_snapshot_hdl_t hdl : {ingress, egress})
    for (const listed_field &field : list_fields(hdl)) known[hdl == egress].insert(field.name);
  for (const pd_snapshot_hdl_t hdl : {ingress, egress}) {
    std::vector<std::string> names = {"", " ", "~", "\xff"};  // before all names, and after them
    for (const auto &some : known)
      for (const std::string &name : some)
        names.insert(names.end(), {name, name.substr(0, name.size() - 1), name + " ", "X" + name.substr(1)});
    for (const std::string &name : names) {
      if (known[hdl == egress].contains(name)) continue;  // else of the other direction, or of none
      EXPECT_EQ(add_trigger(hdl, &value, &mask, name.c_str(), nullptr), 0u) << name;
    }
    EXPECT_EQ(add_trigger(hdl, &value, &mask, nullptr, nullptr), 0u);
  }
  EXPECT_EQ(std::memcmp(&value, &before, sizeof value), 0);
  EXPECT_EQ(std::memcmp(&mask, &before, sizeof mask), 0);
}

}  // namespace
}  // namespace tarvex::test
