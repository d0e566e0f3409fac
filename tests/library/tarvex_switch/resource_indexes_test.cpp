// Indexes of resources with expectations written out.
//
// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include "reference.h"

namespace tarvex::test {

namespace {

using enum argument_kind;

const calls::action_info &action_named(const char *name)
{
  return *std::ranges::find_if(calls::actions, [&](const auto &action) { return std::strcmp(action.name, name) == 0; });
}

TEST(read_back, resource_indexes)
{
  struct example {
    const char *action;
    std::vector<pd_res_spec_t> list;
    std::uint32_t index;
  };
  const example examples[] = {
      {"setIngressMirrorColor", {}, 0xffffffff},
      {"setIngressMirrorColor", {{0x5000004, 77}}, 77},
      {"setIngressMirrorColor", {{0x5000005, 77}}, 0},
      {"setEgressMirrorColor", {{0x5000005, 1}, {0x5000005, 2}, {0x4000003, 3}}, 2},
      {"pdpPolice", {{0x4000003, 5}, {0x5000002, 9}}, 9},
      {"pdpPolice", {{0x5000002, 9}, {0x4000003, 5}}, 9},
      {"pdpPolice", {{0x4000003, 5}}, 5},
      {"setPdpClassCount", {{0x4000003, 5}, {0x5000002, 9}}, 5},
      {"runWred", {{0x5000001, 12}}, 12},
  };
  for (const example &example : examples) {
    call call(function_named(std::string("unbuild_action_spec_") + example.action));
    bytes data(28, 0xee);
    drv_act_data_t act_data{};
    act_data.data = data.data();
    call.fill(drv_act_data, {reinterpret_cast<const std::uint8_t *>(&act_data), sizeof act_data});
    call.give(res_list, reinterpret_cast<std::uint64_t>(example.list.data()));
    call.give(res_count, example.list.size());
    call.run();
    EXPECT_EQ(number_at(call.memory(action_spec_out), 0, 4), example.index) << example.action;
    EXPECT_TRUE(action_named(example.action).params[0].resource_index) << example.action;
  }
}

}  // namespace

}  // namespace tarvex::test
