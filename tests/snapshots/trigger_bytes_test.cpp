// Bytes of a trigger on their way: in the caller's records, at the driver, and shown again. They were computed by hand.
//
// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <algorithm>

#include "fields.h"
#include "recorder.h"

namespace tarvex::test {
namespace {

constexpr std::size_t record_size = field_bytes;

/// Records as the driver receives them.
struct received {
  bytes value, mask;
};

received set_trigger(pd_snapshot_hdl_t hdl, const snap_trig_spec_t &value, const snap_trig_spec_t &mask)
{
  received got;
  driver().reset();
  driver().answer = [&](const recorded_call &call) {
    EXPECT_EQ(call.function, "bf_snapshot_capture_trigger_set");
    EXPECT_EQ(call.arguments[0].word, hdl);
    const auto *first = &call.at<std::uint8_t>(1), *second = &call.at<std::uint8_t>(2);
    got = {bytes(first, first + record_size), bytes(second, second + record_size)};
    return 0x80000009u;
  };
  EXPECT_EQ(invoke("snapshot_capture_trigger_set", hdl, &value, &mask), 0x80000009u);
  EXPECT_EQ(driver().calls.size(), 1u);
  return got;
}

snap_trig_spec_t filled_with(std::uint8_t byte)
{
  snap_trig_spec_t record;
  std::fill(std::begin(record.fields), std::end(record.fields), byte);
  return record;
}

bytes bytes_of(const snap_trig_spec_t &record) { return {std::begin(record.fields), std::end(record.fields)}; }

/// A record of one byte throughout, but for some of its bytes.
bytes with(std::uint8_t background, std::size_t offset, const bytes &content)
{
  bytes record(record_size, background);
  std::copy(content.begin(), content.end(), record.begin() + static_cast<std::ptrdiff_t>(offset));
  return record;
}

const bytes address = {0x01, 0x12, 0x23, 0x34, 0x45, 0x56, 0x67, 0x78, 0x89, 0x9a, 0xab, 0xbc, 0xcd, 0xde, 0xef, 0xf0};
const bytes ones1(1, 0xff), ones2(2, 0xff), ones3(3, 0xff), ones4(4, 0xff), ones16(16, 0xff);

// What becomes of the word 0x11223344, or of the address.
struct sized_bytes {
  bytes value, mask;                // in the caller's records
  bytes driver_value, driver_mask;  // at the driver
  bytes shown, shown_mask;
};
const sized_bytes of_1 = {{0x44}, ones1, {0x44}, ones1, {0x44}, ones1};
const sized_bytes of_2 = {{0x33, 0x44}, ones2, {0x44, 0x33}, ones2, {0x44, 0x33}, ones2};
const sized_bytes of_3 = {{0x11, 0x22, 0x33, 0x44}, {0xff, 0xff, 0xff, 0}, {0x44, 0x33, 0x22, 0x11},
                          {0, 0xff, 0xff, 0xff},    {0x44, 0x33, 0x22},    ones3};
const sized_bytes of_4 = {{0x44, 0x33, 0x22, 0x11}, ones4, {0x11, 0x22, 0x33, 0x44}, ones4,
                          {0x44, 0x33, 0x22, 0x11}, ones4};
const sized_bytes of_16 = {address, ones16, address, ones16, address, ones16};

const sized_bytes &of_size(std::size_t size)
{
  switch (size) {
    case 1: return of_1;
    case 2: return of_2;
    case 3: return of_3;
    case 4: return of_4;
    default: return of_16;
  }
}

void expect_bytes(pd_snapshot_hdl_t hdl, const std::string &name, std::size_t offset, const sized_bytes &to)
{
  SCOPED_TRACE(name);
  std::uint32_t words[16] = {0x11223344};
  if (to.value.size() == 16)
    for (std::size_t i = 0; i < 16; ++i) words[i] = 0xfedcba00u | address[i];
  // In the background nothing but the field changes, and what it held before is gone.
  snap_trig_spec_t value = filled_with(0xa5), mask = filled_with(0x96);
  EXPECT_EQ(add_trigger(hdl, &value, &mask, name.c_str(), words), 1u);
  EXPECT_EQ(bytes_of(value), with(0xa5, offset, to.value));
  EXPECT_EQ(bytes_of(mask), with(0x96, offset, to.mask));

  value = mask = filled_with(0);
  EXPECT_EQ(add_trigger(hdl, &value, &mask, name.c_str(), words), 1u);
  for (int time = 0; time < 2; ++time) {
    const received got = set_trigger(hdl, value, mask);
    EXPECT_EQ(got.value, with(0, offset, to.driver_value));
    EXPECT_EQ(got.mask, with(0, offset, to.driver_mask));
  }
  EXPECT_EQ(bytes_of(value), with(0, offset, to.value));
  EXPECT_EQ(bytes_of(mask), with(0, offset, to.mask));

  shown.clear();
  EXPECT_EQ(show_trigger(9, hdl, value, mask), 9u);
  EXPECT_EQ(shown, (std::vector<shown_field>{{name, to.shown, to.shown_mask, nullptr}}));
}

TEST(trigger_bytes, of_each_size)
{
  for (const pd_snapshot_hdl_t hdl : {ingress, egress}) {
    for (const listed_field &field : list_fields(hdl)) expect_bytes(hdl, field.name, field.offset, of_size(field.size));
  }
}

TEST(trigger_bytes, every_field_has_bytes_of_its_own)
{
  for (const pd_snapshot_hdl_t hdl : {ingress, egress}) {
    snap_trig_spec_t value = filled_with(0), mask = value;
    std::vector<shown_field> added;
    for (const listed_field &field : list_fields(hdl)) {
      std::uint32_t words[16];
      for (std::uint32_t i = 0; i < 16; ++i) words[i] = 0x04030201u + 0x10101010u * (i % 3) + 5 * i;
      words[0] += static_cast<std::uint32_t>(field.offset) * 0x01050301u;
      bytes expected;
      for (std::uint32_t i = 0; i < field.size; ++i)
        expected.push_back(static_cast<std::uint8_t>(field.size == 16 ? words[i] : words[0] >> 8 * i));
      added.push_back({field.name, expected, bytes(field.size, 0xff), nullptr});

      snap_trig_spec_t alone = filled_with(0), alone_mask = alone;
      for (snap_trig_spec_t *to : {&value, &alone})
        ASSERT_EQ(add_trigger(hdl, to, to == &value ? &mask : &alone_mask, field.name.c_str(), words), 1u);
      EXPECT_EQ(bytes_of(alone_mask), with(0, field.offset, bytes(field.size, 0xff))) << field.name;
    }
    shown.clear();
    EXPECT_EQ(show_trigger(1000, hdl, value, mask), 999 + added.size());
    EXPECT_EQ(shown, added);
  }
}

}  // namespace
}  // namespace tarvex::test
