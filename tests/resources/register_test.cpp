// The four registers: order of the values read, what a write makes of a value, ranges, and reads that fail.
//
// SPDX-License-Identifier: Apache-2.0
#include "resource_test.h"

namespace tarvex::resource_tests {
namespace {

using bytes = std::vector<std::uint8_t>;

constexpr std::uint32_t limit = 10;

class Registers : public ResourceTest {
 protected:
  /// Every register in turn, a cell of two rows of three values each, the last cell at limit - 1.
  template <class Body>
  static void for_each(Body body)
  {
    const auto rows = resources_of(calls::resource_kind::register_);
    ASSERT_EQ(rows.size(), 4u);
    for (const auto *row : rows) {
      SCOPED_TRACE(row->name);
      ok(standin_register_shape(device, row->handle, 2, 3));
      ok(standin_size_limit(device, row->handle, limit));
      body(*row);
    }
  }

  /// Values of cells, from those of the range read.
  static bytes read_range(const calls::resource_info &row, std::uint32_t first, std::int32_t count,
                          std::uint32_t cells_expected)
  {
    bytes values(64, 0xee);
    std::uint32_t cells = 99, read = 99;
    ok(like(p4_pd_tarvex_switch_register_range_read_ingStpCheckData, row)(session, target, first, count, 1, &cells,
                                                                          values.data(), &read));
    EXPECT_EQ(cells, cells_expected);
    EXPECT_EQ(read, 6 * cells_expected);
    EXPECT_EQ(values[read], 0xee);
    values.resize(read);
    return values;
  }
};

TEST_F(Registers, ReadPositionByPosition)
{
  for_each([](const calls::resource_info &row) {
    for (const std::uint32_t index : {8u, 9u})
      for (std::uint32_t r = 0; r < 2; ++r)
        for (std::uint32_t position = 0; position < 3; ++position)
          ok(standin_register_value(device, row.handle, index, r, position,
                                    static_cast<std::uint8_t>(100 * (index - 8) + 10 * r + position)));
    const bytes cell_8{0, 10, 1, 11, 2, 12},
        cells_7_to_9{0, 0, 0, 0, 0, 0, 0, 10, 1, 11, 2, 12, 100, 110, 101, 111, 102, 112};
    bytes values(6);
    std::uint32_t count = 99;
    ok(like(p4_pd_tarvex_switch_register_read_ingStpCheckData, row)(session, target, 8, 0, values.data(), &count));
    EXPECT_EQ(values, cell_8);
    EXPECT_EQ(count, 6u);
    EXPECT_EQ(read_range(row, 7, 3, 3), cells_7_to_9);
    EXPECT_EQ(read_range(row, 7, 5, 3), cells_7_to_9);  // the register ends first
    for (const std::int32_t none : {0, -1}) EXPECT_EQ(read_range(row, 7, none, 0), bytes());
  });
}

TEST_F(Registers, WriteOnesAndZeros)
{
  for_each([](const calls::resource_info &row) {
    const std::uint8_t set = 0x80, clear = 0;
    const auto state = [&] {  // first value of the cells 0 to 9
      const bytes values = read_range(row, 0, limit, limit);
      std::string text;
      for (std::size_t cell = 0; cell < limit; ++cell) text += std::to_string(values[6 * cell + 5]);
      return text;
    };
    ok(like(p4_pd_tarvex_switch_register_write_ingStpCheckData, row)(session, target, 3, &set));
    EXPECT_EQ(state(), "0001000000");
    ok(like(p4_pd_tarvex_switch_register_write_all_ingStpCheckData, row)(session, target, &set));
    ok(like(p4_pd_tarvex_switch_register_write_ingStpCheckData, row)(session, target, 1, &clear));
    EXPECT_EQ(state(), "1011111111");
    ok(like(p4_pd_tarvex_switch_register_range_reset_ingStpCheckData, row)(session, target, 4, 3));
    EXPECT_EQ(state(), "1011000111");
    ok(like(p4_pd_tarvex_switch_register_reset_all_ingStpCheckData, row)(session, target));
    EXPECT_EQ(state(), "0000000000");
    EXPECT_EQ(like(p4_pd_tarvex_switch_register_write_ingStpCheckData, row)(session, target, limit, &set),
              pd_status_t{STANDIN_BAD_INDEX});
    std::uint32_t told = 0;
    ok(like(p4_pd_tarvex_switch_register_hw_sync_ingStpCheckData, row)(
        session, target, reinterpret_cast<pd_callback_t>(note_handle), &told));
    EXPECT_EQ(told, row.handle);

    // By handle nothing is converted.
    drv_stful_spec_t raw{{0x80, 1, 2, 3, 4, 5, 6, 7}};
    ok(p4_pd_tarvex_switch_register_write_indirect(session, target, row.handle, 2, &raw));
    drv_stful_spec_t slots[2][3]{};
    drv_stful_spec_t *rows[2]{slots[0], slots[1]};
    drv_stful_query_t query{0, 0, rows};
    ok(p4_pd_tarvex_switch_register_read_indirect(session, target, row.handle, 2, 1, &query));
    EXPECT_EQ(std::make_pair(query.row_count, query.values_per_row), std::make_pair(2, 3));
    EXPECT_EQ(slots[1][2].bytes[0], 0x80);
  });
}

TEST_F(Registers, FailedReadsLeaveNothingBehind)
{
  for_each([](const calls::resource_info &row) {
    bytes values(64, 0xee);
    std::uint32_t count = 99, cells = 0;
    const auto untouched = [&] {
      EXPECT_EQ(values, bytes(64, 0xee));
      EXPECT_EQ(count, 99u);
      EXPECT_EQ(standin_live_blocks(), 0u);
    };
    const auto read = [&] {
      return like(p4_pd_tarvex_switch_register_read_ingStpCheckData, row)(session, target, 1, 1, values.data(), &count);
    };
    const auto read_range = [&] {
      return like(p4_pd_tarvex_switch_register_range_read_ingStpCheckData, row)(session, target, 1, 2, 1, &cells,
                                                                                values.data(), &count);
    };
    for (std::uint32_t nth = 1; nth <= 3; ++nth) {  // two rows and their pointers; queries, pointers and slots
      standin_fail_calloc(nth);
      EXPECT_EQ(read(), pd_status_t{PD_STATUS_NO_MEMORY});
      standin_fail_calloc(nth);
      EXPECT_EQ(read_range(), pd_status_t{PD_STATUS_NO_MEMORY});
      untouched();
    }
    const auto check = [&](pd_status_t status) {
      EXPECT_EQ(status, refused);
      untouched();
    };
    EXPECT_EQ(refuse_in_turn(read, check), 2u);
    values.assign(64, 0xee);
    count = 99;
    EXPECT_EQ(refuse_in_turn(read_range, check), 2u);
  });
}

}  // namespace
}  // namespace tarvex::resource_tests
