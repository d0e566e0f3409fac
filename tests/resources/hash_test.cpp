// The eight hash calculations: every choice of input fields through both interfaces, and what is refused.
//
// SPDX-License-Identifier: Apache-2.0
#include <algorithm>

#include "resource_test.h"

namespace tarvex::resource_tests {
namespace {

using attributes = std::vector<hash_calc_attr_t>;

constexpr std::uint32_t not_written = 0xeeee;

struct calculation {
  explicit calculation(const calls::hash_info &its_row) : row(its_row) {}

  std::uint32_t fields() const { return static_cast<std::uint32_t>(row.common.size()); }

  pd_status_t set(const attributes &wanted, std::uint32_t input = 0) const
  {
    return like(p4_pd_tarvex_switch_hash_calc_hashInnerEthHdr_input_field_attribute_set, row)(
        session, device, input, static_cast<std::uint32_t>(wanted.size()), wanted.data());
  }
  pd_status_t set_by_name(const attributes &wanted) const
  {
    return p4_pd_tarvex_switch_hash_calc_input_field_attribute_set(
        session, device, row.name, static_cast<std::uint32_t>(wanted.size()), wanted.data());
  }

  /// Cuts what was read to the count that was told.
  pd_status_t get(attributes &read, std::uint32_t input = 0) const
  {
    return cut(read, [&](std::uint32_t max, hash_calc_attr_t *to, std::uint32_t *count) {
      return like(p4_pd_tarvex_switch_hash_calc_hashInnerEthHdr_input_field_attribute_get, row)(session, device, input,
                                                                                                max, to, count);
    });
  }
  pd_status_t get_by_name(attributes &read) const
  {
    return cut(read, [&](std::uint32_t max, hash_calc_attr_t *to, std::uint32_t *count) {
      return p4_pd_tarvex_switch_hash_calc_input_field_attribute_get(session, device, row.name, max, to, count);
    });
  }
  template <class Get>
  static pd_status_t cut(attributes &read, Get get)
  {
    std::uint32_t count = not_written;
    const pd_status_t status = get(static_cast<std::uint32_t>(read.size()), read.data(), &count);
    EXPECT_LE(count, read.size());
    read.resize(std::min<std::size_t>(count, read.size()));
    return status;
  }

  /// What the driver holds.
  std::uint32_t input() const
  {
    std::uint32_t handle = 0;
    ok(pipe_mgr_hash_calc_input_get(session, device, row.handle, &handle));
    return handle;
  }

  /// A record for every field, own or common number, with value 0 for those of the subset.
  attributes choice(std::uint32_t subset, bool by_common_number) const
  {
    attributes records;
    for (std::uint32_t i = 0; i < fields(); ++i)
      records.push_back({by_common_number ? row.common[i] : i, 0, (subset >> i & 1) != 0 ? 0u : 1u});
    return records;
  }

  const calls::hash_info &row;
};

/// Records as a read gives them into `records`, whose attr_type it leaves alone.
std::string text_of(const attributes &records)
{
  std::string text;
  for (const auto &each : records)
    text += std::to_string(each.field) + ':' + std::to_string(each.attr_type) + ':' + std::to_string(each.value) + ' ';
  return text;
}

class Hashes : public ResourceTest {
 protected:
  template <class Body>
  static void for_each(Body body)
  {
    ASSERT_EQ(calls::hashes.size(), 8u);
    for (const auto &row : calls::hashes) {
      SCOPED_TRACE(row.name);
      body(calculation(row));
    }
  }
};

TEST_F(Hashes, EverySubsetThroughBothInterfaces)
{
  for_each([](const calculation &calc) {
    const std::uint32_t n = calc.fields(), all = (1u << n) - 1;
    std::uint32_t count = 0;
    ok(p4_pd_tarvex_switch_hash_calc_input_field_attribute_count_get(session, device, calc.row.name, &count));
    ASSERT_EQ(count, n);
    for (std::uint32_t subset = 1; subset <= all; ++subset) {
      std::uint32_t mirrored = 0;  // the field lists count the last field first
      for (std::uint32_t i = 0; i < n; ++i) mirrored |= (subset >> i & 1) << (n - 1 - i);
      const std::uint32_t handle = calc.row.first_input + (subset == all ? 0 : mirrored);
      for (const bool by_name : {false, true}) {
        ok(calc.set(calc.choice(subset == all ? 1 : all, false)));  // another one first
        auto wanted = calc.choice(subset, by_name);
        std::ranges::reverse(wanted);
        ok(by_name ? calc.set_by_name(wanted) : calc.set(wanted));
        ASSERT_EQ(calc.input(), handle) << subset;
        for (const bool read_by_name : {false, true}) {
          attributes read(n);
          ok(read_by_name ? calc.get_by_name(read) : calc.get(read));
          ASSERT_EQ(text_of(read), text_of(calc.choice(subset, read_by_name))) << subset;
        }
      }
      std::uint32_t number = 9;
      ok(like(p4_pd_tarvex_switch_hash_calc_hashInnerEthHdr_input_get, calc.row)(session, device, &number));
      EXPECT_EQ(number, 0u);
    }
    ok(p4_pd_tarvex_switch_hash_calc_input_set(session, device, calc.row.name));
    EXPECT_EQ(calc.input(), calc.row.first_input);
  });
}

TEST_F(Hashes, UnnamedAndOddRecordsSelectNothing)
{
  for_each([](const calculation &calc) {
    const std::uint32_t last = calc.fields() - 1;
    const std::uint32_t only_last = calc.row.first_input + 1, last_and_first = only_last + (1u << last);
    const struct {
      attributes records;
      std::uint32_t handle;
    } cases[] = {
        {{{last, 0, 0}}, only_last},
        {{{last, 0, 0}, {0, 1, 0}}, only_last},           // another kind of attribute
        {{{last, 0, 0}, {0, 0, 1ull << 63}}, only_last},  // a value in all of its bits
        {{{last, 0, 1}, {last, 0, 0}}, only_last},        // named twice, selected once
        {{{0, 0, 0}, {last, 0, 0}}, last_and_first},
    };
    for (const auto &each : cases) {
      ok(calc.set(each.records));
      EXPECT_EQ(calc.input(), each.handle) << text_of(each.records);
    }
  });
}

TEST_F(Hashes, Refusals)
{
  for_each([](const calculation &calc) {
    const std::uint32_t n = calc.fields(), all = (1u << n) - 1;
    const auto whole = calc.choice(all, false);
    const pd_status_t invalid = PD_STATUS_INVALID_ARG;
    ok(calc.set(calc.choice(1, false)));
    const std::uint32_t before = calc.input();
    std::uint32_t gap = 0;  // a common number that no field has
    while (std::ranges::count(calc.row.common, gap) != 0) ++gap;

    EXPECT_EQ(calc.set({}), invalid);
    EXPECT_EQ(calc.set(whole, 1), invalid);
    EXPECT_EQ(calc.set({whole.begin(), whole.end() - 1}), invalid);  // not the last field
    EXPECT_EQ(calc.set({{n - 1, 0, 0}, {n, 0, 0}}), invalid);
    EXPECT_EQ(calc.set_by_name({}), invalid);
    EXPECT_EQ(calc.set_by_name({{calc.row.common[n - 1], 0, 0}, {gap, 0, 0}}), invalid);
    EXPECT_EQ(calc.set(calc.choice(0, false)), pd_status_t{STANDIN_BAD_ARGUMENT});  // no list without fields
    EXPECT_EQ(calc.set_by_name(calc.choice(0, true)), pd_status_t{STANDIN_BAD_ARGUMENT});
    for (const bool by_name : {false, true})
      EXPECT_EQ(refuse_in_turn(
                    [&] {
                      const auto same = calc.choice(1, by_name);
                      return by_name ? calc.set_by_name(same) : calc.set(same);
                    },
                    [](pd_status_t status) { EXPECT_EQ(status, refused); }),
                2u);
    EXPECT_EQ(calc.input(), before);

    attributes read(n);
    EXPECT_EQ(calc.get(read, 1), invalid);
    EXPECT_EQ(read.size(), 0u);
    for (const bool by_name : {false, true}) {
      const auto get = [&](attributes &to) { return by_name ? calc.get_by_name(to) : calc.get(to); };
      read.assign(n - 1, {});
      EXPECT_EQ(get(read), invalid);
      auto fitting = calc.choice(1, by_name);
      fitting.pop_back();
      EXPECT_EQ(text_of(read), text_of(fitting));
      read.assign(n, {});
      standin_refuse_call(1, refused);
      EXPECT_EQ(get(read), invalid);
      EXPECT_EQ(read.size(), 0u);
    }
  });

  const hash_calc_attr_t record{};
  hash_calc_attr_t room{};
  std::uint32_t count = not_written;
  for (const char *name : {"", "hashOuterIpv4Hd", "hashOuterIpv4HdrX", "HashOuterIpv4Hdr"}) {
    SCOPED_TRACE(name);
    const pd_status_t statuses[] = {
        p4_pd_tarvex_switch_hash_calc_input_set(session, device, name),
        p4_pd_tarvex_switch_hash_calc_input_field_attribute_count_get(session, device, name, &count),
        p4_pd_tarvex_switch_hash_calc_input_field_attribute_set(session, device, name, 1, &record),
        p4_pd_tarvex_switch_hash_calc_input_field_attribute_get(session, device, name, 1, &room, &count)};
    for (const pd_status_t status : statuses) EXPECT_EQ(status, pd_status_t{PD_STATUS_INVALID_ARG});
    EXPECT_EQ(count, not_written);
  }
}

TEST_F(Hashes, SeedAndAlgorithm)
{
  std::uint64_t seed = 0x8000'0000'0000'0001;
  for_each([&](const calculation &calc) {
    const auto set_seed = like(p4_pd_tarvex_switch_hash_calc_hashInnerEthHdr_seed_set, calc.row);
    ok(set_seed(session, device, seed++));
    const auto set_algorithm = like(p4_pd_tarvex_switch_hash_calc_hashInnerEthHdr_algorithm_set, calc.row);
    const auto get_algorithm = like(p4_pd_tarvex_switch_hash_calc_hashInnerEthHdr_algorithm_get, calc.row);
    std::uint32_t number = 9;
    ok(set_algorithm(session, device, 0));
    EXPECT_EQ(set_algorithm(session, device, 1), pd_status_t{STANDIN_BAD_ARGUMENT});
    standin_refuse_call(1, refused);
    EXPECT_EQ(get_algorithm(session, device, &number), pd_status_t{PD_STATUS_INVALID_ARG});
    EXPECT_EQ(number, 9u);
    ok(get_algorithm(session, device, &number));
    EXPECT_EQ(number, 0u);
  });
  seed = 0x8000'0000'0000'0001;
  for_each([&](const calculation &calc) {
    std::uint64_t read = 0;
    ok(like(p4_pd_tarvex_switch_hash_calc_hashInnerEthHdr_seed_get, calc.row)(session, device, &read));
    EXPECT_EQ(read, seed++);
  });
}

}  // namespace
}  // namespace tarvex::resource_tests
