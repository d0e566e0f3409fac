// Whole snapshots on the stand-in switch: armed by field name, met by packets, fetched and shown.
//
// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <map>

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
    ASSERT_EQ(invoke("snapshot_create", pd_dev_tgt(device, PD_ALL_PIPES), 0U, 11U, GetParam(), &hdl_), BF_SUCCESS);
  }
  void TearDown() override
  {
    EXPECT_EQ(invoke("snapshot_delete", hdl_), BF_SUCCESS);
    standin_reset();
  }

  void ask_for(const std::string &field, const field_words &words)
  {
    EXPECT_EQ(add_trigger(hdl_, &value_, &mask_, field.c_str(), words.data()), 1u);
  }
  void arm() { EXPECT_EQ(invoke("snapshot_capture_trigger_set", hdl_, &value_, &mask_), BF_SUCCESS); }
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

/// The first field of a size.
listed_field field_of(pd_snapshot_hdl_t hdl, std::uint32_t size)
{
  const std::vector<listed_field> list = list_fields(hdl);
  return *std::ranges::find(list, size, &listed_field::size);
}

TEST_P(snapshot_job, captures_are_fetched_and_shown)
{
  const listed_field station = field_of(hdl_, 3), address = field_of(hdl_, 4), port = field_of(hdl_, 2);
  const std::uint32_t destination = 0x0a000102, number = 0x0035;
  ask_for(station.name, {0x00a1b2c3});
  ask_for(address.name, {destination});
  arm();
  bytes packet(STANDIN_SNAPSHOT_FIELD_BYTES);
  for (const auto &[field, word] : {std::pair{&address, &destination}, std::pair{&port, &number}})
    ASSERT_EQ(standin_snapshot_field_set(GetParam(), field->name.c_str(), word, packet.data()), BF_SUCCESS);
  EXPECT_EQ(pass(packet, station.name, {0x00a1b2c4}, 1), STANDIN_NOT_TRIGGERED);
  EXPECT_EQ(pass(packet, station.name, {0x00a1b2c3}, 1), BF_SUCCESS);
  EXPECT_EQ(pass(packet, station.name, {0x00a1b2c3}, 3), BF_SUCCESS);

  bytes area(invoke("snapshot_capture_data_size")), ctrl(control_bytes), fields(field_bytes);
  std::uint32_t captures = 0, pipe = 0;
  ASSERT_EQ(invoke("snapshot_capture_data_get", hdl_, std::uint32_t{PD_ALL_PIPES}, area.data(), &captures), BF_SUCCESS);
  ASSERT_EQ(captures, 2u);
  EXPECT_EQ(invoke("snapshot_capture_data_single_get", 1, GetParam(), area.data(), &pipe, ctrl.data(), fields.data()),
            2u);
  EXPECT_EQ(pipe, 3u);
  shown.clear();
  EXPECT_EQ(show_fields(40, hdl_, fields.data()), 42u);
  std::map<std::size_t, shown_field> by_place = {
      {station.offset, {station.name, {0xc3, 0xb2, 0xa1}, {}, nullptr}},
      {address.offset, {address.name, {0x0a, 0x00, 0x01, 0x02}, {}, nullptr}},
      {port.offset, {port.name, {0x35, 0x00}, {}, nullptr}}};
  std::vector<shown_field> expected;
  for (const auto &[place, field] : by_place) expected.push_back(field);
  EXPECT_EQ(shown, expected);
}

INSTANTIATE_TEST_SUITE_P(directions, snapshot_job, testing::Values(STANDIN_SNAPSHOT_INGRESS, STANDIN_SNAPSHOT_EGRESS),
                         [](const auto &direction) { return direction.param == 0 ? "ingress" : "egress"; });

}  // namespace
}  // namespace tarvex::test
