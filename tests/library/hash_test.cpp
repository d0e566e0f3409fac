// Input fields of the hash calculations, by number and by name, against the choice of lists written out.
//
// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>
#include <sys/mman.h>

#include <algorithm>
#include <string>

#include "hash_functions.h"
#include "stopped.h"

namespace tarvex::test {

namespace {

using enum argument_kind;

template <typename Body>
void for_each_calculation(Body body)
{
  for (const calls::hash_info &calc : calls::hashes) {
    for (const bool by_name : {false, true}) {
      SCOPED_TRACE(std::string(calc.name) + (by_name ? " by name" : ""));
      body(hash_functions{calc, by_name});
    }
  }
}

// Lists as they stand in the pipeline: the whole one, then bit j of k at position j of the k-th. Field 0 is last.
std::uint32_t list_of(const hash_functions &hash, std::uint32_t chosen)
{
  std::string wanted(hash.n(), '0');
  for (std::uint32_t field = 0; field < hash.n(); ++field) wanted[hash.n() - 1 - field] = "01"[chosen >> field & 1];
  for (std::uint32_t k = 0; k < hash.all(); ++k) {
    std::string row(hash.n(), '1');
    for (std::uint32_t j = 0; j < hash.n() && k != 0; ++j) row[j] = "01"[k >> j & 1];
    if (row == wanted) return hash.calc.first_input + k;
  }
  return 0;
}

// One record for each field, in order or backwards; the other value is one that a narrow reading would take for 0.
attributes choice(const hash_functions &hash, std::uint32_t chosen, bool backwards = false)
{
  attributes attrs;
  for (std::uint32_t field = 0; field < hash.n(); ++field) {
    const bool in = (chosen >> field & 1) != 0;
    attrs.push_back({hash.number(field), hash.by_name ? 7u : 0u, in ? 0u : 0x80000000u});
  }
  if (backwards) std::ranges::reverse(attrs);
  return attrs;
}

attributes read_back(const hash_functions &hash, std::uint32_t chosen)
{
  attributes attrs;
  for (std::uint32_t field = 0; field < hash.n(); ++field) {
    attrs.push_back({hash.number(field), 0, (chosen >> field & 1) != 0 ? 0u : 1u});
  }
  return attrs;
}

TEST(hash, every_choice_of_fields_has_its_list)
{
  for_each_calculation([](const hash_functions &hash) {
    for (std::uint32_t chosen = 0; chosen <= hash.all(); ++chosen) {
      SCOPED_TRACE(chosen);
      for (const bool backwards : {false, true}) {
        for (const std::uint32_t status : {0U, refused_status}) {
          hash_unit unit{list_of(hash, chosen ^ hash.all()), 0, status};
          if (unit.list == 0) unit.list = hash.calc.first_input;
          unit.attach();
          EXPECT_EQ(hash.set(choice(hash, chosen, backwards)), status);
          expect_calls(hash, {current_list, {"input_set", list_of(hash, chosen)}});
        }
      }
      if (chosen == 0) continue;
      hash_unit unit{list_of(hash, chosen)};
      unit.attach();
      EXPECT_EQ(hash.get(0, read_back(hash, chosen)), "");
      for (std::uint32_t max = 0; max <= hash.n(); ++max) {
        attributes fitting = read_back(hash, chosen);
        fitting.resize(max);
        EXPECT_EQ(hash.get(max < hash.n() ? invalid : 0, fitting, max), "");
      }
    }
  });
}

TEST(hash, sets_are_refused_in_order)
{
  for_each_calculation([](const hash_functions &hash) {
    const auto last = hash.n() - 1;
    const attributes good = choice(hash, 1), without_last = choice(hash, 0, true);
    const attributes above = {{hash.n(), 0, 0}}, none = {};
    std::vector<attributes> bad = {none};
    bad.push_back({without_last.begin() + 1, without_last.end()});
    if (!hash.by_name) {
      bad.push_back(above);
      for (std::uint32_t field = hash.n(); field < 32; ++field) bad.push_back({{last, 0, 0}, {field, 0, 0}});
    }
    for (const attributes &attrs : bad) {
      for (const std::uint32_t status : {0U, refused_status}) {
        hash_unit unit{hash.calc.first_input, status};
        unit.attach();
        EXPECT_EQ(hash.set(attrs), status == 0 ? invalid : refused_status) << attrs.size() << " records";
        expect_calls(hash, {current_list});
      }
    }
    for (const std::uint32_t input : {1U, 0x100U, 0x80000000U}) {
      if (hash.by_name) break;
      hash_unit unit{hash.calc.first_input};
      unit.attach();
      EXPECT_EQ(hash.set(good, input), invalid);
      expect_calls(hash, {current_list});
      EXPECT_EQ(hash.get(invalid, attributes{}, 9, input), "");
      unit = {hash.calc.first_input, refused_status};
      EXPECT_EQ(hash.set(none, input), refused_status);
    }
    // Lists next to the calculation's own, and none at all.
    for (const std::uint32_t list : {0U, hash.calc.first_input - 1, hash.calc.first_input + hash.all(), 0xffffffffU}) {
      hash_unit unit{list};
      unit.attach();
      EXPECT_EQ(hash.set(good), invalid) << list;
      expect_calls(hash, {current_list});
      EXPECT_EQ(hash.get(invalid, attributes{}), "") << list;
    }
    hash_unit unit{hash.calc.first_input, refused_status};
    unit.attach();
    EXPECT_EQ(hash.set(good), refused_status);
    expect_calls(hash, {current_list});
    EXPECT_EQ(hash.get(invalid, attributes{}), "");
    if (!hash.by_name) return;

    // Room for any number of records, of which no more are touched than there are fields.
    hash_unit whole{hash.calc.first_input};
    whole.attach();
    EXPECT_EQ(hash.get(0, read_back(hash, hash.all()), 0xffff'ffff), "");

    // A common number that is unknown comes ahead of the driver.
    for (std::uint32_t common = 0; common < 40; ++common) {
      if (std::ranges::find(hash.calc.common, common) != hash.calc.common.end()) continue;
      attributes attrs = good;
      attrs.push_back({common == 39 ? 0xffffffff : common, 0, 0});
      unit.attach();
      EXPECT_EQ(hash.set(attrs), invalid) << common;
      EXPECT_TRUE(driver().calls.empty()) << common;
    }
  });
}

// Memory that nobody has written to is a list of the field with the common number 0.
TEST(hash, any_number_of_records_is_taken)
{
  const auto calc = std::ranges::find_if(calls::hashes, [](const auto &each) { return each.common.back() == 0; });
  if (calc == calls::hashes.end()) GTEST_SKIP() << "no calculation's last field has the common number 0";
  constexpr std::size_t count = 0x100'0001;
  void *const records =
      mmap(nullptr, count * sizeof(hash_calc_attr_t), PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
  ASSERT_NE(records, MAP_FAILED);
  const hash_functions hash{*calc, true};
  hash_unit unit{hash.calc.first_input};
  unit.attach();
  call call = hash.prepared("input_field_attribute_set");
  call.give(hash_attr_count, count);
  call.give(hash_attrs, reinterpret_cast<std::uint64_t>(records));
  EXPECT_EQ(call.run(), 0u);
  expect_calls(hash, {current_list, {"input_set", list_of(hash, 1u << (hash.n() - 1))}});
  munmap(records, count * sizeof(hash_calc_attr_t));
}

TEST(hash, fields_are_counted_without_the_driver)
{
  for_each_calculation([](const hash_functions &hash) {
    for (const std::uint32_t input : {0U, 1U, 0x100U, 0x80000000U}) {
      driver().reset();
      call call = hash.prepared("input_field_attribute_count_get", input);
      const bool known = hash.by_name || input == 0;
      EXPECT_EQ(call.run(), known ? 0 : invalid);
      call.expect_number(hash_attr_count_out, known ? hash.n() : 0, 4);
      EXPECT_EQ(call.unexpected_bytes(), "");
      EXPECT_TRUE(driver().calls.empty());
    }
  });
}

TEST(hash, names_are_compared_whole)
{
  const std::string whole = calls::hashes.back().name;
  for (const std::string &name : {std::string(), whole.substr(0, whole.size() - 1), whole + "2", whole + " ",
                                  "X" + whole.substr(1), whole.substr(0, 4)}) {
    const hash_functions hash{calls::hashes.back(), true, name};
    SCOPED_TRACE(name);
    driver().reset();
    EXPECT_EQ(hash.prepared("input_set").run(), invalid);
    call count = hash.prepared("input_field_attribute_count_get");
    EXPECT_EQ(count.run(), invalid);
    EXPECT_EQ(count.unexpected_bytes(), "");
    EXPECT_EQ(hash.set({{0, 0, 0}}), invalid);
    EXPECT_EQ(hash.get(invalid, {}), "");
    EXPECT_TRUE(driver().calls.empty());
  }
  for (const calls::hash_info &calc : calls::hashes) {
    const hash_functions hash{calc, true};
    for (const std::uint32_t status : {0U, refused_status}) {
      hash_unit unit{0, 0, status};
      unit.attach();
      EXPECT_EQ(hash.prepared("input_set").run(), status);
      expect_calls(hash, {{"input_set", calc.first_input}});
    }
  }
}

// Any list of the calculation's is input 0, and an algorithm is the number of its place.
TEST(hash, driver_handles_come_back_as_numbers)
{
  for (const calls::hash_info &calc : calls::hashes) {
    const hash_functions hash{calc};
    const std::uint32_t end = calc.first_input + hash.all();
    for (const bool algorithm : {false, true}) {
      const std::string operation = algorithm ? "algorithm_get" : "input_get";
      std::vector<std::uint32_t> handles = {0, calc.first_input - 1, end, 1, 0xffffffff};
      for (const std::uint32_t own : calc.algorithms) handles.insert(handles.end(), {own, own + 1, own - 1});
      for (std::uint32_t list = calc.first_input; list < end; ++list) handles.push_back(list);
      for (const std::uint32_t handle : handles) {
        for (const std::uint32_t status : {0U, refused_status}) {
          const auto place = std::ranges::find(calc.algorithms, handle) - calc.algorithms.begin();
          const bool own = algorithm ? static_cast<std::size_t>(place) < calc.algorithms.size()
                                     : handle >= calc.first_input && handle < end;
          const auto number = static_cast<std::uint64_t>(algorithm ? place : 0);
          hash_unit unit{handle, status};
          unit.attach();
          call call = hash.prepared(operation);
          EXPECT_EQ(call.run(), own && status == 0 ? 0 : invalid) << calc.name << ", " << handle;
          if (own && status == 0) call.expect_number(hash_number_out, number, 4);
          EXPECT_EQ(call.unexpected_bytes(), "") << calc.name << ", " << handle;
          expect_calls(hash, {{operation, anywhere}});
        }
      }
    }
  }
}

TEST(hash, fields_have_common_numbers)
{
  for (const calls::hash_info &calc : calls::hashes) {
    const std::string name = prefix() + calc.name;
    call common(function_named(name + "_cmn_field_enum")), own(function_named(name + "_p4_field_enum"));
    for (const std::uint32_t number : {0U, 1U, 2U, 3U, 4U, 5U, 6U, 31U, 32U, 256U, 0x80000000U, 0xffffffffU}) {
      const auto found = std::ranges::find(calc.common, number);
      own.give(hash_field, number);
      EXPECT_EQ(own.run(), found == calc.common.end() ? 0xffffffff : found - calc.common.begin()) << name << number;
      common.give(hash_field, number);
      if (number < calc.common.size()) {
        EXPECT_EQ(common.run(), calc.common[number]) << name << number;
        continue;
      }
      const auto stop = stopped([&] { common.run(); });
      ASSERT_TRUE(stop) << name << number;
      EXPECT_EQ(stop->assertion, "0");
      EXPECT_EQ(stop->file, source_of("pd_tarvex"));
      EXPECT_EQ(stop->function, name + "_cmn_field_enum");
    }
  }
}

}  // namespace

}  // namespace tarvex::test
