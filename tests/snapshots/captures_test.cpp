// What is shown of triggers and captures, and how a capture record comes apart.
//
// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <algorithm>

#include "fields.h"

namespace tarvex::test {
namespace {

TEST(captures, a_field_shows_if_any_byte_of_its_slot_is_set)
{
  for (const pd_snapshot_hdl_t hdl : {ingress, egress}) {
    for (const listed_field &field : list_fields(hdl)) {
      SCOPED_TRACE(field.name);
      const std::size_t last = field.slot() - 1;  // of a field of 3 bytes the one after them
      snap_trig_spec_t value{}, mask{};
      mask.fields[field.offset + last] = 0x40;
      bytes content(field.size);
      if (last < field.size) content[last] = 0x40;

      shown.clear();
      EXPECT_EQ(show_trigger(5, hdl, value, mask), 5u);
      EXPECT_EQ(shown, (std::vector<shown_field>{{field.name, bytes(field.size), content, nullptr}}));
      shown.clear();
      EXPECT_EQ(show_fields(6, hdl, mask.fields), 6u);
      ASSERT_EQ(shown, (std::vector<shown_field>{{field.name, content, {}, nullptr}}));
      EXPECT_EQ(shown[0].value_at, mask.fields + field.offset);
    }
  }
}

TEST(captures, walks_give_what_the_last_call_gave)
{
  snap_trig_spec_t zeros{}, ones, numbered;
  for (std::size_t i = 0; i < sizeof ones.fields; ++i) {
    ones.fields[i] = 0xff;
    numbered.fields[i] = static_cast<std::uint8_t>(1 + i % 251);
  }
  for (const pd_snapshot_hdl_t hdl : {ingress, egress}) {
    const auto fields = static_cast<std::uint32_t>(list_fields(hdl).size());
    shown.clear();
    EXPECT_EQ(show_trigger(8, hdl, ones, zeros), 0u);
    EXPECT_EQ(show_fields(8, hdl, zeros.fields), 0u);
    EXPECT_TRUE(shown.empty());
    EXPECT_EQ(show_trigger(8, hdl, zeros, ones), 7 + fields);
    shown.clear();
    EXPECT_EQ(show_fields(8, hdl, numbered.fields), 7 + fields);

    // Captured bytes come as they stand, each field's from its own place.
    const std::vector<listed_field> list = list_fields(hdl);
    ASSERT_EQ(shown.size(), list.size());
    for (std::size_t i = 0; i < list.size(); ++i) {
      EXPECT_EQ(shown[i].name, list[i].name);
      EXPECT_EQ(shown[i].value_at, numbered.fields + list[i].offset) << list[i].name;
      EXPECT_EQ(shown[i].value.size(), list[i].size);
    }
  }
}

TEST(captures, a_record_comes_apart)
{
  const std::size_t size = control_bytes + field_bytes;
  bytes area(capture_count * size);
  for (std::size_t i = 0; i < area.size(); ++i) area[i] = static_cast<std::uint8_t>(i * 167 / 100 + i / size * 29);
  for (const int index : {0, 1, 11}) {
    for (const std::uint32_t is_egress : {0u, 1u, 0x100u}) {
      const auto start = area.begin() + index * static_cast<std::ptrdiff_t>(size);
      const bytes record(start, start + static_cast<std::ptrdiff_t>(size));
      std::uint32_t first_byte = 0xffffffff;
      // One byte more than what is written.
      bytes ctrl(control_bytes + 1, 0xc7), fields(field_bytes + 1, 0xd8), expected_ctrl = ctrl,
                                                                          expected_fields = fields;
      EXPECT_EQ(invoke("snapshot_capture_data_single_get", index, is_egress, area.data(), &first_byte, ctrl.data(),
                       fields.data()),
                record[1]);
      EXPECT_EQ(first_byte, record[0]);
      std::copy_n(record.begin(), control_bytes, expected_ctrl.begin());
      std::copy_n(record.begin() + control_bytes, is_egress != 0 ? end_of_fields(egress) + after_fields : field_bytes,
                  expected_fields.begin());
      EXPECT_EQ(ctrl, expected_ctrl);
      EXPECT_EQ(fields, expected_fields);
    }
  }
}

}  // namespace
}  // namespace tarvex::test
