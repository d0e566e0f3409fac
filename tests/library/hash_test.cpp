// Input fields of the hash calculations, by number and by name, against the choice of lists written out.
//
// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <optional>
#include <string>

#include "reference.h"
#include "stopped.h"
#include "tarvex_pd/tarvex_pd.h"

namespace tarvex::test {

namespace {

using enum argument_kind;
using attributes = std::vector<hash_calc_attr_t>;

constexpr std::uint32_t device = 0xfe;
constexpr std::uint32_t refused_status = 0x80000005;
constexpr std::uint32_t invalid = PD_STATUS_INVALID_ARG;
constexpr std::uint64_t beyond_32_bits = 0x1'0000'0000;

// The driver's side of one calculation.
struct hash_unit {
  std::uint32_t list = 0;
  std::uint32_t get_status = 0;
  std::uint32_t set_status = 0;

  void attach()
  {
    driver().reset();
    driver().answer = [this](const recorded_call &call) -> std::uint64_t {
      if (call.function.ends_with("_set")) return set_status;
      if (get_status == 0) call.at<std::uint32_t>(3) = list;
      return get_status;
    };
  }
};

// The exported functions of a calculation, or with `by_name` those that take its name.
struct hash_functions {
  const calculation &calc;
  bool by_name = false;
  std::string name = calc.name;

  std::uint32_t n() const { return static_cast<std::uint32_t>(calc.common.size()); }
  std::uint32_t all() const { return (1u << n()) - 1; }
  std::uint32_t number(std::uint32_t own) const { return by_name ? calc.common[own] : own; }

  call prepared(const std::string &operation, std::uint32_t input = 0) const
  {
    call call(function_named("p4_pd_tarvex_switch_hash_calc_" + (by_name ? "" : name + "_") + operation));
    call.give(dev_id, 0xabcdef00 | device);
    if (by_name) call.give(calc_name, reinterpret_cast<std::uint64_t>(name.c_str()));
    if (!by_name && call.takes(hash_number)) call.give(hash_number, input);
    return call;
  }

  std::uint64_t set(const attributes &attrs, std::uint32_t input = 0) const
  {
    call call = prepared("input_field_attribute_set", input);
    call.give(hash_attr_count, attrs.size());
    call.give(hash_attrs, reinterpret_cast<std::uint64_t>(attrs.data()));
    return call.run();
  }

  // What must be there after a get, or nothing for a name that is not known.
  std::string get(std::uint32_t status, std::optional<attributes> expected, std::uint32_t max = 9,
                  std::uint32_t input = 0) const
  {
    call call = prepared("input_field_attribute_get", input);
    call.give(hash_attr_max, max);
    const std::uint64_t result = call.run();
    if (expected) call.expect_number(hash_attr_count_out, expected->size(), 4);
    for (std::size_t i = 0; expected && i < expected->size(); ++i) {
      const hash_calc_attr_t &attr = (*expected)[i];
      std::uint8_t raw[16];
      std::memcpy(raw, &attr, sizeof raw);
      call.expect(hash_attrs_out, {raw, 4}, 16 * i);
      call.expect(hash_attrs_out, {raw + 8, 8}, 16 * i + 8);  // attr_type is left alone
    }
    return (result == status ? "" : "status " + std::to_string(result)) + call.unexpected_bytes();
  }
};

template <typename Body>
void for_each_calculation(Body body)
{
  ASSERT_EQ(calls::hashes.size(), calculations.size());
  for (const calculation &calc : calculations) {
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
    if (row == wanted) return hash.calc.first + k;
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

// Driver calls by the end of their names, with the handle of those that set one.
void expect_calls(const hash_functions &hash, const std::vector<std::pair<std::string, std::uint64_t>> &made)
{
  const std::uint64_t session = hash.prepared("input_set").value(sess_hdl);
  std::vector<recorded_call> expected;
  for (const auto &[name, handle] : made) {
    expected.push_back(
        {"pipe_mgr_hash_calc_" + name, {{session, {}}, {device, {}}, {hash.calc.handle, {}}, {handle, {}}}});
  }
  EXPECT_EQ(difference(expected, driver().calls), "");
}

const std::pair<std::string, std::uint64_t> current_list = {"input_get", anywhere};

TEST(hash, every_choice_of_fields_has_its_list)
{
  for_each_calculation([](const hash_functions &hash) {
    for (std::uint32_t chosen = 0; chosen <= hash.all(); ++chosen) {
      SCOPED_TRACE(chosen);
      for (const bool backwards : {false, true}) {
        for (const std::uint32_t status : {0U, refused_status}) {
          hash_unit unit{list_of(hash, chosen ^ hash.all()), 0, status};
          if (unit.list == 0) unit.list = hash.calc.first;
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

TEST(hash, lists_by_hand)
{
  struct example {
    std::size_t calc;
    attributes attrs;
    std::uint32_t list;
    bool by_name = false;
  };
  const example examples[] = {
      {3, {{0, 0, 0}, {1, 0, 0}, {2, 0, 0}}, 0x2100003c},
      {3, {{0, 0, 1}, {1, 0, 1}, {2, 0, 0}}, 0x2100003d},
      {3, {{2, 0, 0}}, 0x2100003d},
      {3, {{0, 0, 0}, {1, 0, 1}, {2, 0, 1}}, 0x21000040},
      {7, {{0, 0, 0}, {4, 0, 1}}, 0x21000074},
      {3, {{0, 1, 0}, {2, 0, 0}}, 0x2100003d},               // of a type that selects nothing
      {3, {{0, 0, beyond_32_bits}, {2, 0, 0}}, 0x2100003d},  // all 64 bits count
      {3, {{2, 0, 1}, {2, 0, 0}, {2, 0, 1}}, 0x2100003d},    // named thrice
      {3, {{32, 0, 0}, {0xffffffe2, 0, 1}}, 0x21000040},     // fields count modulo 32
      {1, {{5, 0, 0}, {2, 0, 0}, {0, 0, 0}, {1, 0, 0}}, 0x2100000c, true},
      {1, {{1, 9, beyond_32_bits}}, 0x2100000d, true},  // by name the low 32 bits count, and no type
  };
  for (const example &example : examples) {
    const hash_functions hash{calculations[example.calc], example.by_name};
    SCOPED_TRACE(&example - examples);
    hash_unit unit{hash.calc.first};
    unit.attach();
    EXPECT_EQ(hash.set(example.attrs), 0u);
    expect_calls(hash, {current_list, {"input_set", example.list}});
  }
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
        hash_unit unit{hash.calc.first, status};
        unit.attach();
        EXPECT_EQ(hash.set(attrs), status == 0 ? invalid : refused_status) << attrs.size() << " records";
        expect_calls(hash, {current_list});
      }
    }
    for (const std::uint32_t input : {1U, 0x100U, 0x80000000U}) {
      if (hash.by_name) break;
      hash_unit unit{hash.calc.first};
      unit.attach();
      EXPECT_EQ(hash.set(good, input), invalid);
      expect_calls(hash, {current_list});
      EXPECT_EQ(hash.get(invalid, attributes{}, 9, input), "");
      unit = {hash.calc.first, refused_status};
      EXPECT_EQ(hash.set(none, input), refused_status);
    }
    // Lists of another calculation, and none at all.
    const std::uint32_t other = calculations[hash.calc.handle == 0x22000004 ? 1 : 0].first;
    for (const std::uint32_t list : {0U, hash.calc.first - 1, hash.calc.first + hash.all(), other, 0xffffffffU}) {
      hash_unit unit{list};
      unit.attach();
      EXPECT_EQ(hash.set(good), invalid) << list;
      expect_calls(hash, {current_list});
      EXPECT_EQ(hash.get(invalid, attributes{}), "") << list;
    }
    hash_unit unit{hash.calc.first, refused_status};
    unit.attach();
    EXPECT_EQ(hash.set(good), refused_status);
    expect_calls(hash, {current_list});
    EXPECT_EQ(hash.get(invalid, attributes{}), "");
    if (!hash.by_name) return;

    // The most records that are not taken for a mistake, and one more.
    hash_unit whole{hash.calc.first};
    whole.attach();
    EXPECT_EQ(hash.get(0, read_back(hash, hash.all()), 0xff'ffff), "");
    EXPECT_EQ(hash.get(invalid, {}, 0x100'0000), "");

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
  for (const char *name : {"", "hashOuterEthHd", "hashOuterEthHdr2", "hashOuterEthHdr ", "HashOuterEthHdr", "hash"}) {
    const hash_functions hash{calculations[7], true, name};
    SCOPED_TRACE(name);
    driver().reset();
    EXPECT_EQ(hash.prepared("input_set").run(), invalid);
    call count = hash.prepared("input_field_attribute_count_get");
    EXPECT_EQ(count.run(), invalid);
    EXPECT_EQ(count.unexpected_bytes(), "");
    EXPECT_EQ(hash.set({{4, 0, 0}}), invalid);
    EXPECT_EQ(hash.get(invalid, {}), "");
    EXPECT_TRUE(driver().calls.empty());
  }
  for (const calculation &calc : calculations) {
    const hash_functions hash{calc, true};
    for (const std::uint32_t status : {0U, refused_status}) {
      hash_unit unit{0, 0, status};
      unit.attach();
      EXPECT_EQ(hash.prepared("input_set").run(), status);
      expect_calls(hash, {{"input_set", calc.first}});
    }
  }
}

// Any list of the calculation's is input 0, and its one algorithm is algorithm 0.
TEST(hash, driver_handles_come_back_as_0)
{
  for (const calculation &calc : calculations) {
    const hash_functions hash{calc};
    const std::uint32_t end = calc.first + hash.all();
    for (const bool algorithm : {false, true}) {
      const std::string operation = algorithm ? "algorithm_get" : "input_get";
      std::vector<std::uint32_t> handles = {0, calc.first - 1, end, 1, hash_algorithm, hash_algorithm + 1, 0xffffffff};
      for (std::uint32_t list = calc.first; list < end; ++list) handles.push_back(list);
      for (const std::uint32_t handle : handles) {
        for (const std::uint32_t status : {0U, refused_status}) {
          const bool own = algorithm ? handle == hash_algorithm : handle >= calc.first && handle < end;
          hash_unit unit{handle, status};
          unit.attach();
          call call = hash.prepared(operation);
          EXPECT_EQ(call.run(), own && status == 0 ? 0 : invalid) << calc.name << ", " << handle;
          if (own && status == 0) call.expect_number(hash_number_out, 0, 4);
          EXPECT_EQ(call.unexpected_bytes(), "") << calc.name << ", " << handle;
          expect_calls(hash, {{operation, anywhere}});
        }
      }
    }
  }
}

TEST(hash, fields_have_common_numbers)
{
  for (const calculation &calc : calculations) {
    const std::string prefix = std::string("p4_pd_tarvex_switch_") + calc.name;
    call common(function_named(prefix + "_cmn_field_enum")), own(function_named(prefix + "_p4_field_enum"));
    for (const std::uint32_t number : {0U, 1U, 2U, 3U, 4U, 5U, 6U, 31U, 32U, 256U, 0x80000000U, 0xffffffffU}) {
      const auto found = std::ranges::find(calc.common, number);
      own.give(hash_field, number);
      EXPECT_EQ(own.run(), found == calc.common.end() ? 0xffffffff : found - calc.common.begin()) << prefix << number;
      common.give(hash_field, number);
      if (number < calc.common.size()) {
        EXPECT_EQ(common.run(), calc.common[number]) << prefix << number;
        continue;
      }
      const auto stop = stopped([&] { common.run(); });
      ASSERT_TRUE(stop) << prefix << number;
      EXPECT_EQ(stop->assertion, "0");
      EXPECT_EQ(stop->file, "bf_tarvex_switch_mpls_baremetal/src/pd_tarvex");
      EXPECT_EQ(stop->function, prefix + "_cmn_field_enum");
    }
  }
}

}  // namespace

}  // namespace tarvex::test
