// Whole snapshots on the stand-in switch: armed by field name, met by packets, fetched and shown.
//
// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <array>

#include "fields.h"
#include "tarvex_standin/standin.h"

namespace tarvex::test {
namespace {

constexpr std::uint32_t device = 2;

using field_words = std::array<std::uint32_t, 16>;

class snapshot_job : public testing::TestWithParam<std::uint32_t> {
 protected:
  void SetUp() override
  {
    standin_reset();
    ASSERT_EQ(standin_device_add(device), BF_SUCCESS);
    ASSERT_EQ(p4_pd_tarvex_switch_snapshot_create(pd_dev_tgt(device, PD_ALL_PIPES), 0, 11, GetParam(), &hdl_),
              BF_SUCCESS);
  }
  void TearDown() override
  {
    EXPECT_EQ(p4_pd_tarvex_switch_snapshot_delete(hdl_), BF_SUCCESS);
    standin_reset();
  }

  void ask_for(const std::string &field, const field_words &words)
  {
    EXPECT_EQ(p4_pd_tarvex_switch_snapshot_capture_trigger_add(hdl_, &value_, &mask_, field.c_str(), words.data()), 1u);
  }
  void arm() { EXPECT_EQ(p4_pd_tarvex_switch_snapshot_capture_trigger_set(hdl_, &value_, &mask_), BF_SUCCESS); }
  void disarm() { value_ = mask_ = {}; }

  pd_status_t pass(bytes packet, const std::string &field, const field_words &words, std::uint32_t pipe = 0)
  {
    EXPECT_EQ(standin_snapshot_field_set(GetParam(), field.c_str(), words.data(), packet.data()), BF_SUCCESS);
    return standin_snapshot_packet(hdl_, pipe, packet.data());
  }

  pd_snapshot_hdl_t hdl_ = 0;
  snap_trig_spec_t value_{}, mask_{};
};

TEST_P(snapshot_job, every_field_triggers_on_all_its_bits)
{
  for (const listed_field &field : list_fields(hdl_)) {
    field_words words;
    for (std::uint32_t i = 0; i < 16; ++i) words[i] = 0x11 * (i + 1);
    if (field.size < 16) words[0] = 0x1c2d3e4f & 0xffffffffu >> (32 - 8 * field.size);
    disarm();
    ask_for(field.name, words);
    arm();
    const bytes packet(STANDIN_SNAPSHOT_FIELD_BYTES, 0x5a);
    EXPECT_EQ(pass(packet, field.name, words), BF_SUCCESS) << field.name;
    for (std::uint32_t byte = 0; byte < field.size; ++byte) {
      field_words other = words;
      (field.size == 16 ? other[byte] : other[0]) ^= 0x80u << (field.size == 16 ? 0 : 8 * byte);
      EXPECT_EQ(pass(packet, field.name, other), STANDIN_NOT_TRIGGERED) << field.name << " byte " << byte;
    }
  }
}

TEST_P(snapshot_job, captures_are_fetched_and_shown)
{
  ask_for("outerEthHdr_dmacStation", {0x00a1b2c3});
  ask_for("outerIpv4Hdr_dip", {0x0a000102});
  arm();
  bytes packet(STANDIN_SNAPSHOT_FIELD_BYTES);
  const std::uint32_t destination = 0x0a000102, port = 0x0035;
  for (const auto &[name, word] : {std::pair{"outerIpv4Hdr_dip", &destination}, std::pair{"l4PortHdr_dstPort", &port}})
    ASSERT_EQ(standin_snapshot_field_set(GetParam(), name, word, packet.data()), BF_SUCCESS);
  EXPECT_EQ(pass(packet, "outerEthHdr_dmacStation", {0x00a1b2c4}, 1), STANDIN_NOT_TRIGGERED);
  EXPECT_EQ(pass(packet, "outerEthHdr_dmacStation", {0x00a1b2c3}, 1), BF_SUCCESS);
  EXPECT_EQ(pass(packet, "outerEthHdr_dmacStation", {0x00a1b2c3}, 3), BF_SUCCESS);

  bytes area(p4_pd_tarvex_switch_snapshot_capture_data_size()), ctrl(3664), fields(712);
  std::uint32_t captures = 0, pipe = 0;
  ASSERT_EQ(p4_pd_tarvex_switch_snapshot_capture_data_get(hdl_, PD_ALL_PIPES, area.data(), &captures), BF_SUCCESS);
  ASSERT_EQ(captures, 2u);
  EXPECT_EQ(p4_pd_tarvex_switch_snapshot_capture_data_single_get(1, GetParam(), area.data(), &pipe, ctrl.data(),
                                                                 fields.data()),
            2u);
  EXPECT_EQ(pipe, 3u);
  shown.clear();
  EXPECT_EQ(p4_pd_tarvex_switch_snapshot_capture_field_show(40, hdl_, fields.data(), keep_shown), 42u);
  const std::vector<shown_field> expected = {{"outerEthHdr_dmacStation", {0xc3, 0xb2, 0xa1}, {}, nullptr},
                                             {"outerIpv4Hdr_dip", {0x0a, 0x00, 0x01, 0x02}, {}, nullptr},
                                             {"l4PortHdr_dstPort", {0x35, 0x00}, {}, nullptr}};
  EXPECT_EQ(shown, expected);
}

INSTANTIATE_TEST_SUITE_P(directions, snapshot_job, testing::Values(STANDIN_SNAPSHOT_INGRESS, STANDIN_SNAPSHOT_EGRESS),
                         [](const auto &direction) { return direction.param == 0 ? "ingress" : "egress"; });

}  // namespace
}  // namespace tarvex::test
