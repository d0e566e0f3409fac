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
  const struct {
    pd_snapshot_hdl_t hdl;
    const char *name;
    std::size_t offset, byte, size;
  } cases[] = {
      {ingress, "ingMd_ingL2Aintf", 370, 3, 3},  // the byte behind its three
      {egress, "outerEthHdr_smacOui", 35, 3, 3},
      {ingress, "ingIpv6_dip", 502, 15, 16},
      {egress, "innerIpv6Hdr_dip", 268, 15, 16},
      {egress, "egrMd_tunnelInfo", 339, 0, 4},
      {ingress, "_selector_FLOW_LRN_DIGEST_RCVR", 689, 0, 1},
  };
  for (const auto &each : cases) {
    SCOPED_TRACE(each.name);
    snap_trig_spec_t value{}, mask{};
    mask.fields[each.offset + each.byte] = 0x40;
    bytes content(each.size);
    if (each.byte < each.size) content[each.byte] = 0x40;

    shown.clear();
    EXPECT_EQ(p4_pd_tarvex_switch_snapshot_capture_trigger_show(5, each.hdl, &value, &mask, keep_shown), 5u);
    EXPECT_EQ(shown, (std::vector<shown_field>{{each.name, bytes(each.size), content, nullptr}}));
    shown.clear();
    EXPECT_EQ(p4_pd_tarvex_switch_snapshot_capture_field_show(6, each.hdl, mask.fields, keep_shown), 6u);
    ASSERT_EQ(shown, (std::vector<shown_field>{{each.name, content, {}, nullptr}}));
    EXPECT_EQ(shown[0].value_at, mask.fields + each.offset);
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
    const std::uint32_t fields = hdl == ingress ? 361 : 206;
    shown.clear();
    EXPECT_EQ(p4_pd_tarvex_switch_snapshot_capture_trigger_show(8, hdl, &ones, &zeros, keep_shown), 0u);
    EXPECT_EQ(p4_pd_tarvex_switch_snapshot_capture_field_show(8, hdl, zeros.fields, keep_shown), 0u);
    EXPECT_TRUE(shown.empty());
    EXPECT_EQ(p4_pd_tarvex_switch_snapshot_capture_trigger_show(8, hdl, &zeros, &ones, keep_shown), 7 + fields);
    shown.clear();
    EXPECT_EQ(p4_pd_tarvex_switch_snapshot_capture_field_show(8, hdl, numbered.fields, keep_shown), 7 + fields);

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
  bytes area(52512);
  for (std::size_t i = 0; i < area.size(); ++i) area[i] = static_cast<std::uint8_t>(i * 167 / 100 + i / 4376 * 29);
  for (const int index : {0, 1, 11}) {
    for (const std::uint32_t is_egress : {0u, 1u, 0x100u}) {
      const bytes record(area.begin() + index * 4376, area.begin() + (index + 1) * 4376);
      std::uint32_t first_byte = 0xffffffff;
      // One byte more than what is written.
      bytes ctrl(3665, 0xc7), fields(713, 0xd8), expected_ctrl = ctrl, expected_fields = fields;
      EXPECT_EQ(p4_pd_tarvex_switch_snapshot_capture_data_single_get(index, is_egress, area.data(), &first_byte,
                                                                     ctrl.data(), fields.data()),
                record[1]);
      EXPECT_EQ(first_byte, record[0]);
      std::copy_n(record.begin(), 3664, expected_ctrl.begin());
      std::copy_n(record.begin() + 3664, is_egress != 0 ? 459 : 712, expected_fields.begin());
      EXPECT_EQ(ctrl, expected_ctrl);
      EXPECT_EQ(fields, expected_fields);
    }
  }
}

}  // namespace
}  // namespace tarvex::test
