// What the driver gets to make, delete and read snapshots.
//
// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "fields.h"
#include "recorder.h"

namespace tarvex::test {
namespace {

constexpr pd_status_t refused = 0x80000007;

class control : public testing::Test {
 protected:
  void SetUp() override { driver().reset(); }

  static std::vector<std::uint64_t> words()
  {
    std::vector<std::uint64_t> of;
    for (const recorded_argument &argument : driver().calls.back().arguments) of.push_back(argument.word);
    return of;
  }
};

TEST_F(control, create_cuts_pipe_and_stages_out)
{
  const struct {
    pd_dev_tgt_t target;
    std::uint32_t first, last, direction;
    std::uint64_t device, pipe;
  } cases[] = {
      {0xbeef'ffff'8000'0102, 0xffffff07, 0x10b, 0x8000'0001, 0x8000'0102, 0xffff},
      {0x0000'8003'0000'0000, 0, 0xff, 0, 0, 0x8003},
  };
  for (const auto &each : cases) {
    pd_snapshot_hdl_t hdl = 0;
    driver().answer = [](const recorded_call &call) {
      call.at<std::uint32_t>(5) = 0x1234'5676;
      return refused;
    };
    EXPECT_EQ(invoke("snapshot_create", each.target, each.first, each.last, each.direction, &hdl), refused);
    EXPECT_EQ(hdl, 0x1234'5676u);
    ASSERT_EQ(driver().calls.back().function, "bf_snapshot_create");
    EXPECT_EQ(words(), (std::vector<std::uint64_t>{each.device, each.pipe, each.first & 0xff, each.last & 0xff,
                                                   each.direction, reinterpret_cast<std::uint64_t>(&hdl)}));
  }
}

TEST_F(control, remove_hands_the_handle_on)
{
  driver().answer = [](const recorded_call &) { return refused; };
  EXPECT_EQ(invoke("snapshot_delete", 0xfedcba98), refused);
  ASSERT_EQ(driver().calls.size(), 1u);
  EXPECT_EQ(driver().calls[0].function, "bf_snapshot_delete");
  EXPECT_EQ(words(), std::vector<std::uint64_t>{0xfedcba98});
}

TEST_F(control, data_get_tells_the_record_and_counts)
{
  const std::size_t size = control_bytes + field_bytes;
  EXPECT_EQ(invoke("snapshot_trig_spec_size"), field_bytes);
  ASSERT_EQ(invoke("snapshot_capture_data_size"), capture_count * size);
  bytes area(capture_count * size, 0x5a);
  const bytes untouched = area;
  std::uint32_t count = 77;
  for (const bool counts : {false, true}) {
    driver().answer = [&](const recorded_call &call) {
      EXPECT_EQ(count, 0u);
      if (counts) call.at<std::uint32_t>(4) = 12;
      return refused;
    };
    count = 77;
    EXPECT_EQ(invoke("snapshot_capture_data_get", 6U, 0xabcd8001U, area.data(), &count), refused);
    EXPECT_EQ(count, counts ? 12u : 0u);
    const recorded_call &call = driver().calls.back();
    ASSERT_EQ(call.function, "bf_snapshot_capture_get");
    EXPECT_EQ(call.arguments[0].word, 6u);
    EXPECT_EQ(call.arguments[1].word, 0x8001u);
    EXPECT_EQ(call.arguments[2].word, reinterpret_cast<std::uint64_t>(area.data()));
    bytes sizes(24);
    sizes[0] = static_cast<std::uint8_t>(size), sizes[1] = static_cast<std::uint8_t>(size >> 8);
    sizes[16] = 0x50, sizes[17] = 0x0e;  // 3,664
    EXPECT_EQ(call.arguments[3].record, sizes);
    EXPECT_EQ(area, untouched);
  }
}

}  // namespace
}  // namespace tarvex::test
