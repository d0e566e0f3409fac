// Reads of registers, of one index and of a range: order of the values, and drivers that answer more
// than there is room for.
//
// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "reference.h"

namespace tarvex::test {

namespace {

using enum argument_kind;

constexpr std::uint32_t refused = 0x80000005;
constexpr std::uint8_t untouched = 0xee;
constexpr std::uint32_t untouched_count = 0xeeeeeeee;

struct shape {
  std::int32_t rows;
  std::int32_t values;

  std::size_t size() const { return static_cast<std::size_t>(rows) * static_cast<std::size_t>(values); }
};
using shapes = std::vector<shape>;

// Each slot of each index has a value of its own.
std::uint8_t value_of(std::size_t index, std::int32_t row, std::int32_t at)
{
  return static_cast<std::uint8_t>(1 + index * 83 + static_cast<std::size_t>(row) * 17 + static_cast<std::size_t>(at));
}

// What the driver does with a query; the library's own memory is under it.
using meddling = std::function<void(drv_stful_query_t *queries, std::uint32_t &count_read)>;

// A read of one function under given answers, and what came of it. A count of indices makes it a range.
struct reading {
  const exported_function &function;
  shape sizes;
  shapes answered;  // an index each
  std::int32_t count = 1;
  std::size_t failing_call = 9;
  std::uint32_t flags = 1;
  meddling meddle = nullptr;
  unsigned refused_block = 0;

  std::uint32_t status = 0;
  bytes values = {};  // the caller's room, and a margin behind it
  std::uint32_t value_count = untouched_count;
  std::uint32_t count_read = untouched_count;
  std::string wrong = {};

  bool is_range() const { return function.family == calls::family_id::register_range_read; }
  void run();
  std::uint64_t answer(const recorded_call &recorded);
};

std::uint64_t reading::answer(const recorded_call &recorded)
{
  const std::size_t nth = driver().calls.size() - 1;
  if (nth == 0) {
    recorded.at<std::int32_t>(3) = sizes.rows;
    recorded.at<std::int32_t>(4) = sizes.values;
    return nth == failing_call ? refused : 0;
  }
  auto *queries = &recorded.at<drv_stful_query_t>(is_range() ? 5 : 4);
  for (std::size_t index = 0; index < answered.size(); ++index) {
    drv_stful_query_t &query = queries[index];
    if (is_range() && (query.row_count != sizes.rows || query.values_per_row != sizes.values)) wrong += "\nnot preset";
    query.row_count = answered[index].rows;
    query.values_per_row = answered[index].values;
    for (std::int32_t row = 0; row < query.row_count; ++row) {
      for (std::int32_t at = 0; at < query.values_per_row; ++at) {
        std::ranges::fill(query.rows[row][at].bytes, untouched);  // all but the first carry nothing
        query.rows[row][at].bytes[0] = value_of(index, row, at);
      }
    }
  }
  auto told = static_cast<std::uint32_t>(answered.size());
  if (meddle) meddle(queries, told);
  if (is_range()) recorded.at<std::uint32_t>(6) = told;
  return nth == failing_call ? refused : 0;
}

void reading::run()
{
  call call(function);
  std::size_t room = 0;
  if (sizes.rows > 0 && sizes.values > 0 && count > 0) room = sizes.size() * static_cast<std::size_t>(count);
  constexpr std::size_t margin = 64, most = 4096;  // a shape beyond that finds no memory
  values.assign(std::min(room, most) + margin, untouched);
  call.give(register_values_out, reinterpret_cast<std::uint64_t>(values.data()));
  call.give(register_value_count_out, reinterpret_cast<std::uint64_t>(&value_count));
  call.give(read_flags, flags);
  if (is_range()) {
    call.give(signed_range_count, static_cast<std::uint32_t>(count));
    call.give(range_count_read_out, reinterpret_cast<std::uint64_t>(&count_read));
  }
  driver().reset();
  driver().refused_block = refused_block;
  driver().answer = [this](const recorded_call &recorded) { return answer(recorded); };
  status = static_cast<std::uint32_t>(call.run());
  if (driver().blocks_taken != driver().blocks_given_back) wrong += "\nblocks are left";
  wrong += call.unexpected_bytes();

  auto expected = expected_calls(*operation_of(function), call, 0);
  const std::size_t made = driver().calls.size();
  if (made < expected.size()) expected.resize(made);  // a test tells how many there must be
  wrong += difference(expected, driver().calls);
}

bool is_all_untouched(const bytes &values, std::size_t from = 0)
{
  return std::all_of(values.begin() + static_cast<std::ptrdiff_t>(from), values.end(),
                     [](std::uint8_t value) { return value == untouched; });
}

// All values at position 0 of their row, then all at position 1, and so on, index after index.
bytes packed(const shapes &answered)
{
  bytes all;
  for (std::size_t index = 0; index < answered.size(); ++index) {
    for (std::int32_t at = 0; at < answered[index].values; ++at) {
      for (std::int32_t row = 0; row < answered[index].rows; ++row) all.push_back(value_of(index, row, at));
    }
  }
  return all;
}

template <typename Body>
void for_each_read(Body body)
{
  std::size_t functions = 0;
  for (const exported_function &function : calls::functions) {
    const bool is_range = function.family == calls::family_id::register_range_read;
    if (!is_range && function.family != calls::family_id::register_read) continue;
    ++functions;
    SCOPED_TRACE(function.name);
    body(function, is_range);
  }
  EXPECT_EQ(functions, 2 * count_of(per::register_));
}

TEST(registers, values_come_position_by_position)
{
  struct example {
    shape sizes;
    shapes answered;
    std::int32_t count;
  };
  const example examples[] = {
      {{2, 3}, {{2, 3}}, 1},
      {{1, 1}, {{1, 1}}, 1},
      {{1, 4}, {{1, 4}}, 1},
      {{4, 1}, {{4, 1}}, 1},
      {{5, 7}, {{5, 7}}, 1},
      {{3, 4}, {{2, 3}}, 1},  // the driver answers less than it told
      {{3, 4}, {{0, 4}}, 1},
      {{3, 4}, {{3, 0}}, 1},
      {{0, 0}, {{0, 0}}, 1},
      {{2, 3}, {{2, 3}, {2, 3}}, 2},
      {{2, 3}, {{2, 3}, {2, 3}}, 3},  // an index less than asked for
      {{2, 3}, {}, 3},
      {{3, 2}, {{3, 2}, {1, 2}, {3, 1}, {3, 2}}, 4},
      {{0, 3}, {{0, 3}, {0, 3}}, 2},
  };
  for_each_read([&](const exported_function &function, bool is_range) {
    for (const example &example : examples) {
      if (!is_range && example.answered.size() != 1) continue;
      for (const std::uint32_t flags : {0U, 1U, 2U, 3U}) {
        reading read{function, example.sizes, example.answered, example.count};
        read.flags = flags;
        read.run();
        const bytes expected = packed(example.answered);
        EXPECT_EQ(read.wrong, "");
        EXPECT_EQ(read.status, 0u);
        EXPECT_EQ(driver().calls.size(), 2u);
        EXPECT_EQ(read.value_count, expected.size());
        if (is_range) {
          EXPECT_EQ(read.count_read, example.answered.size());
        }
        EXPECT_EQ(hex({read.values.data(), expected.size()}), hex(expected));
        EXPECT_TRUE(is_all_untouched(read.values, expected.size()));
      }
    }
  });
}

struct block_size {
  std::size_t count, size;
  bool operator==(const block_size &) const = default;
};

void PrintTo(const block_size &block, std::ostream *to) { *to << block.count << " of " << block.size; }

// Rows go back in their order, then the array of pointers to them; the blocks of a range as they were had.
TEST(registers, blocks_are_of_the_sizes_needed_and_go_back_in_order)
{
  for_each_read([](const exported_function &function, bool is_range) {
    for (const shape &sizes : {shape{2, 3}, shape{40, 2}, shape{0, 3}, shape{2, 0}}) {
      const auto rows = static_cast<std::size_t>(sizes.rows);
      const auto values = static_cast<std::size_t>(sizes.values);
      std::vector<block_size> needed = {{rows, 8}};
      needed.insert(needed.end(), rows, {values, 8});
      if (is_range) needed = {{2, 16}, {2 * rows, 8}, {2 * rows * values, 8}};
      for (std::size_t refused_block = 0; refused_block <= needed.size(); ++refused_block) {
        SCOPED_TRACE(testing::Message() << rows << " rows of " << values << ", without block " << refused_block);
        reading read{function, sizes, shapes(is_range ? 2 : 1, sizes), is_range ? 2 : 1};
        read.refused_block = static_cast<unsigned>(refused_block);
        read.run();
        EXPECT_EQ(read.wrong, "");
        EXPECT_EQ(read.status, refused_block == 0 ? 0u : std::uint32_t{PD_STATUS_NO_MEMORY});
        std::vector<block_size> asked;
        std::vector<const void *> in_order;
        for (const asked_block &block : driver().asked_blocks) {
          asked.push_back({block.count, block.size});
          if (block.address != nullptr) in_order.push_back(block.address);
        }
        std::vector<block_size> expected = needed;
        if (!is_range && refused_block != 0) expected.erase(expected.begin() + read.refused_block, expected.end());
        EXPECT_EQ(asked, expected);
        if (!is_range && !in_order.empty()) std::ranges::rotate(in_order, in_order.begin() + 1);
        EXPECT_EQ(driver().returned_blocks, in_order);
      }
    }
  });
}

// Of rows that the driver has put others in place of, the library reads and frees its own.
TEST(registers, replaced_rows_are_neither_read_nor_freed)
{
  static drv_stful_spec_t foreign[2] = {};
  for_each_read([](const exported_function &function, bool is_range) {
    for (const shape &sizes : {shape{3, 2}, shape{33, 2}}) {
      for (drv_stful_spec_t *const other : {foreign, static_cast<drv_stful_spec_t *>(nullptr)}) {
        const shapes answered(is_range ? 2 : 1, sizes);
        reading read{function, sizes, answered, is_range ? 2 : 1};
        read.meddle = [&](drv_stful_query_t *queries, std::uint32_t &) {
          queries[0].rows[0] = other;
          std::swap(queries[0].rows[1], queries[0].rows[sizes.rows - 1]);
        };
        read.run();
        EXPECT_EQ(read.wrong, "");
        EXPECT_EQ(read.status, 0u);
        const bytes expected = packed(answered);
        EXPECT_EQ(read.value_count, expected.size());
        EXPECT_EQ(hex({read.values.data(), expected.size()}), hex(expected));
      }
    }
  });
}

// No value beyond what the caller gave room for, read or told of, and nothing lost.
void expect_orderly(reading &read, std::size_t room)
{
  read.run();
  EXPECT_EQ(read.wrong, "");
  EXPECT_TRUE(is_all_untouched(read.values, room));
  if (read.status == 0) {
    EXPECT_LE(read.value_count, room);
    EXPECT_TRUE(is_all_untouched(read.values, read.value_count));
  } else {
    EXPECT_EQ(read.value_count, untouched_count);
    EXPECT_TRUE(is_all_untouched(read.values));
  }
}

TEST(registers, odd_answers_stay_within_the_blocks)
{
  constexpr std::int32_t most = 0x7fffffff, least = -most - 1;
  const shape odd_shapes[] = {{4, 2},  {3, 3},  {most, most}, {0x10000, 0x10000}, {most, 1},  {1, most},
                              {-1, 2}, {3, -1}, {-1, -1},     {least, least},     {least, 1}, {6, 1}};
  static drv_stful_spec_t *foreign_rows[1] = {nullptr};  // no room for anything
  std::vector<meddling> odd_answers;
  for (const shape &odd : odd_shapes) {
    odd_answers.push_back([odd](drv_stful_query_t *queries, std::uint32_t &) {
      queries[0].row_count = odd.rows;
      queries[0].values_per_row = odd.values;
    });
  }
  for (drv_stful_spec_t **rows : {static_cast<drv_stful_spec_t **>(nullptr), foreign_rows}) {
    odd_answers.push_back([rows](drv_stful_query_t *queries, std::uint32_t &) { queries[0].rows = rows; });
  }
  for_each_read([&](const exported_function &function, bool is_range) {
    const std::int32_t count = is_range ? 2 : 1;
    for (std::size_t i = 0; i < odd_answers.size(); ++i) {
      SCOPED_TRACE(i);
      reading read{function, {3, 2}, shapes(static_cast<std::size_t>(count), {3, 2}), count};
      read.meddle = odd_answers[i];
      expect_orderly(read, 6 * static_cast<std::size_t>(count));
    }
    for (const shape &sizes : {shape{-1, 2}, shape{3, -1}, shape{-1, -1}, shape{least, least}, shape{most, 1}}) {
      reading read{function, sizes, {}, count};
      expect_orderly(read, 0);
    }
    if (!is_range) return;
    reading beyond_all_memory{function, {most, most}, {}, most};
    expect_orderly(beyond_all_memory, 0);
    EXPECT_EQ(beyond_all_memory.status, PD_STATUS_NO_MEMORY);
    for (const std::uint32_t told : {3U, 4U, 0x80000000U, 0xffffffffU}) {
      reading read{function, {3, 2}, {{3, 2}, {3, 2}}, 2};
      read.meddle = [told](drv_stful_query_t *, std::uint32_t &count_read) { count_read = told; };
      expect_orderly(read, 12);
    }
  });
}

TEST(registers, ranges_of_nothing_hold_nothing)
{
  for_each_read([&](const exported_function &function, bool is_range) {
    for (const std::int32_t none : {0, -1, -0x7fffffff - 1}) {
      if (!is_range) continue;
      for (const std::uint32_t told : {0U, 1U, 0xffffffffU}) {
        reading read{function, {2, 3}, {}, none};
        read.meddle = [told](drv_stful_query_t *, std::uint32_t &count_read) { count_read = told; };
        expect_orderly(read, 0);
        EXPECT_EQ(read.status, 0u);
        EXPECT_EQ(read.value_count, 0u);
        if (told == 0) {
          EXPECT_EQ(read.count_read, 0u);
        }
      }
      reading read{function, {2, 3}, {}, none, 0};
      read.run();
      EXPECT_EQ(read.status, refused) << "the sizes are asked for first";
    }
  });
}

}  // namespace

}  // namespace tarvex::test
