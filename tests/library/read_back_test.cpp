// Reading entries back, in every form that a driver may answer in, and the decoders by themselves.
//
// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <random>

#include "reference.h"
#include "stopped.h"

namespace tarvex::test {

namespace {

using enum argument_kind;
using enum calls::family_id;

std::mt19937 random_source(19580901);

// What an entry may carry, as the driver tells it.
constexpr std::uint8_t member_and_group[] = {2, 4};
constexpr std::uint8_t not_data[] = {2, 4, 0, 3, 255};
constexpr std::uint8_t neither_member_nor_group[] = {0, 1, 3, 6, 255};

bytes random_bytes(std::size_t count)
{
  bytes result(count);
  for (std::uint8_t &byte : result) byte = static_cast<std::uint8_t>(random_source());
  return result;
}

// A mask of any bits, with zeros from some place on.
bytes random_mask(std::size_t count)
{
  bytes mask = random_bytes(count);
  for (std::size_t i = random_source() % (count + 1); i < count; ++i) mask[i] = 0;
  return mask;
}

// What the driver says of an entry.
struct reply {
  explicit reply(const calls::table_info &table)
      : value(random_bytes(table.key_bytes)), mask(random_mask(table.key_bytes))
  {
  }

  bytes value, mask, data = random_bytes(28);
  bool with_key = true;
  std::uint32_t partition_index = static_cast<std::uint32_t>(random_source());
  std::uint32_t priority = static_cast<std::uint32_t>(random_source());
  std::uint8_t act_kinds = 1;
  std::uint32_t action = 0;
  std::vector<drv_res_spec_t> resources;
  std::uint32_t res_count = 0;
  std::uint32_t status = 0;

  std::uint64_t operator()(const recorded_call &call) const
  {
    auto &key = call.at<drv_match_spec_t>(4);
    auto &record = call.at<drv_action_spec_t>(5);
    key.partition_index = partition_index;
    key.priority = priority;
    if (key.key_value != nullptr) {
      std::ranges::copy(value, key.key_value);
      std::ranges::copy(mask, key.key_mask);
    }
    if (!with_key) key.key_value = nullptr;
    record.act_kinds = act_kinds;
    record.mbr_hdl = 0x51000001;
    record.grp_hdl = 0x52000002;
    if (record.act_data.data != nullptr) std::ranges::copy(data, record.act_data.data);
    std::ranges::copy(resources, record.res);
    record.res_count = res_count;
    call.at<std::uint32_t>(6) = action;
    return status;
  }
};

drv_res_spec_t random_resource()
{
  drv_res_spec_t resource{};
  resource.res_hdl = calls::resources[random_source() % calls::resources.size()].handle;
  resource.res_index = static_cast<std::uint32_t>(random_source());
  resource.res_tag = static_cast<std::uint32_t>(random_source() % 4 % 3);
  return resource;
}

std::vector<pd_res_spec_t> attached(const std::vector<drv_res_spec_t> &resources)
{
  std::vector<pd_res_spec_t> list;
  for (const auto &resource : resources) {
    if (resource.res_tag == 1) list.push_back({resource.res_hdl, resource.res_index});
  }
  return list;
}

void expect_key(call &call, const reply &reply)
{
  const calls::table_info &table = *call.function().table;
  if (call.takes(no_key_out)) call.expect_number(no_key_out, reply.with_key ? 0 : 1, 1);
  if (call.takes(priority_out)) call.expect_number(priority_out, reply.priority, 4);
  if (call.takes(match_spec_out) && reply.with_key) {
    call.expect(match_spec_out, key_structure(table, reply.value, reply.mask, reply.partition_index, true));
  }
}

void expect_action(call &call, const reply &reply, const calls::action_info &action)
{
  if (call.value(action_name_out) != 0) {
    const std::string name = prefix() + action.name;
    call.expect(action_name_out, {reinterpret_cast<const std::uint8_t *>(name.c_str()), name.size() + 1});
  }
  if (call.value(action_enum_out) != 0) call.expect_number(action_enum_out, action.enum_value, 4);
  if (!action.params.empty()) {
    call.expect(any_action_spec_out, parameter_structure(action, reply.data, attached(reply.resources)));
  }
}

// Asks for an entry; what is wrong with status, driver call and blocks.
std::string read(call &call, const reply &reply, std::uint32_t status, unsigned blocks)
{
  driver().answer = reply;
  const std::uint64_t result = call.run();
  std::string wrong = difference(expected_calls(*operation_of(call.function()), call, 0), driver().calls);
  if (result != status) wrong += "\nstatus " + std::to_string(result) + " instead of " + std::to_string(status);
  if (driver().blocks_taken != blocks || driver().blocks_given_back != blocks) wrong += "\nblocks taken or left";
  return wrong;
}

std::vector<const exported_function *> functions_of(calls::family_id family)
{
  std::vector<const exported_function *> found;
  for (const exported_function &function : calls::functions) {
    if (function.family == family) found.push_back(&function);
  }
  return found;
}

TEST(read_back, entries_come_back_in_all_forms)
{
  for (const exported_function *function : functions_of(get_entry)) {
    for (const calls::use_info &use : function->table->actions) {
      for (unsigned round = 0; round < 24; ++round) {
        reply reply(*function->table);
        reply.with_key = round % 4 != 3;
        reply.action = use.handle;
        reply.res_count = round % 6;
        for (unsigned i = 0; i < std::min(reply.res_count, 4U); ++i) reply.resources.push_back(random_resource());
        // A count that the record has no room for.
        if (round == 5) reply.res_count = 0xffffffff;
        call call(*function);
        if (round % 3 == 1) call.give(action_name_out, 0);
        if (round % 3 != 0) call.give(action_enum_out, 0);
        driver().reset();
        const std::string wrong = read(call, reply, 0, reply.res_count == 0 ? 0 : 1);
        if (function->table->kind != calls::table_kind::keyless) expect_key(call, reply);
        expect_action(call, reply, *use.action);
        ASSERT_EQ(wrong + call.unexpected_bytes(), "") << function->name << ", " << use.action->name << ", " << round;
      }
    }
  }
}

TEST(read_back, indirect_entries_tell_member_or_group)
{
  for (const exported_function *function : functions_of(get_indirect_entry)) {
    reply reply(*function->table);
    reply.resources.push_back(random_resource());
    reply.res_count = 1;
    for (const std::uint8_t kinds : member_and_group) {
      for (const bool with_key : {true, false}) {
        reply.act_kinds = kinds;
        reply.with_key = with_key;
        call call(*function);
        driver().reset();
        const std::string wrong = read(call, reply, 0, 0);
        expect_key(call, reply);
        call.expect_number(is_member_out, kinds == 2 ? 1 : 0, 1);
        call.expect_number(is_group_out, kinds == 4 ? 1 : 0, 1);
        if (kinds == 2) call.expect_number(mbr_hdl_out, 0x51000001, 4);
        if (kinds == 4) call.expect_number(grp_hdl_out, 0x52000002, 4);
        EXPECT_EQ(wrong + call.unexpected_bytes(), "") << function->name;
      }
    }
    reply.status = 7;
    call call(*function);
    driver().reset();
    EXPECT_EQ(read(call, reply, 7, 0) + call.unexpected_bytes(), "") << function->name;
  }
}

TEST(read_back, contradictions_of_the_driver_stop_the_call)
{
  const auto expect_stop = [](const exported_function &function, const reply &reply) {
    call call(function);
    driver().reset();
    driver().answer = reply;
    const auto stop = stopped([&] { call.run(); });
    ASSERT_TRUE(stop) << function.name;
    EXPECT_EQ(stop->assertion, "((void *)0)") << function.name;
    EXPECT_EQ(stop->file, source_of("pd")) << function.name;
    EXPECT_EQ(stop->function, function.name);
  };
  for (const exported_function *function : functions_of(get_entry)) {
    reply reply(*function->table);
    for (const std::uint8_t kinds : not_data) {  // an orderly answer, as the record tells it
      reply.act_kinds = kinds;
      call call(*function);
      driver().reset();
      EXPECT_EQ(read(call, reply, PD_STATUS_UNEXPECTED_REPLY, 0) + call.unexpected_bytes(), "") << function->name;
    }
    reply.act_kinds = 1;
    for (const std::uint32_t action : {0U, 0x20ffffffU, function->table->actions.back().handle + 1}) {
      reply.action = action;
      expect_stop(*function, reply);
    }
  }
  for (const exported_function *function : functions_of(get_indirect_entry)) {
    reply reply(*function->table);
    for (const std::uint8_t kinds : neither_member_nor_group) {
      reply.act_kinds = kinds;
      expect_stop(*function, reply);
    }
  }
}

TEST(read_back, key_decoders_clear_and_fill_the_whole_structure)
{
  for (const exported_function &function : calls::functions) {
    const bool masks = function.family == unbuild_mask;
    if (function.family != unbuild_key && !masks) continue;
    const calls::table_info &table = *function.table;
    for (int round = 0; round < 20; ++round) {
      reply reply(table);
      call call(function);
      drv_match_spec_t key{};
      key.partition_index = reply.partition_index;
      key.key_value = reply.value.data();
      key.key_mask = reply.mask.data();
      call.fill(drv_match_spec, {reinterpret_cast<const std::uint8_t *>(&key), sizeof key});
      call.run();
      const bytes structure = key_structure(table, reply.value, reply.mask, reply.partition_index, masks);
      if (!masks) call.expect(match_spec_out, structure);
      for (const calls::field_info &field : table.fields) {
        if (!masks || (field.match != calls::match_kind::ternary && field.match != calls::match_kind::lpm)) continue;
        const std::size_t size = field.match == calls::match_kind::lpm ? 2 : field.member_size;
        call.expect(match_spec_out, std::span(structure).subspan(field.companion, size), field.companion);
      }
      ASSERT_EQ(call.unexpected_bytes(), "") << function.name;
    }
  }
}

TEST(read_back, action_decoders_clear_and_fill_the_whole_structure)
{
  for (const exported_function *function : functions_of(unbuild_action_spec)) {
    for (std::size_t count = 0; count < 12; ++count) {
      bytes data = random_bytes(28);
      std::vector<drv_res_spec_t> resources;
      for (std::size_t i = 0; i < count / 2; ++i) resources.push_back(random_resource());
      const auto list = attached(resources);
      call call(*function);
      drv_act_data_t act_data{};
      act_data.data = data.data();
      call.fill(drv_act_data, {reinterpret_cast<const std::uint8_t *>(&act_data), sizeof act_data});
      call.fill(res_list, {reinterpret_cast<const std::uint8_t *>(list.data()), list.size() * sizeof(pd_res_spec_t)});
      call.give(res_count, list.size());
      if (list.empty()) call.give(res_list, 0);
      call.run();
      call.expect(action_spec_out, parameter_structure(*function->action, data, list));
      ASSERT_EQ(call.unexpected_bytes(), "") << function->name;
    }
  }
}

}  // namespace

}  // namespace tarvex::test
