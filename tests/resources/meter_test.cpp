// The four meters and the WRED block, by name and by handle.
//
// SPDX-License-Identifier: Apache-2.0
#include <cstring>

#include "resource_test.h"

namespace tarvex::resource_tests {
namespace {

constexpr pd_meter_spec_t rates{0xffffffff, 2, 0x80000000, 4, PD_METER_TYPE_COLOR_UNAWARE};
constexpr pd_meter_spec_t aware{5, 6, 7, 8, PD_METER_TYPE_COLOR_AWARE};
constexpr pd_meter_spec_t unknown{5, 6, 7, 8, 2};

template <class Value>
bool same(const Value &a, const Value &b)
{
  return std::memcmp(&a, &b, sizeof a) == 0;
}

class Meters : public ResourceTest {};

TEST_F(Meters, OfAnIndexByNameAndByHandle)
{
  constexpr std::uint32_t index = 12;
  std::size_t meters = 0;
  for (const auto *row : resources_of(calls::resource_kind::meter)) {
    if (row->direct) continue;
    SCOPED_TRACE(row->name);
    ++meters;
    const auto set = like(p4_pd_tarvex_switch_meter_set_pdpMeter, *row);
    const auto read = like(p4_pd_tarvex_switch_meter_read_pdpMeter, *row);
    const auto expect = [&](const pd_meter_spec_t &wanted, std::uint32_t unit) {
      for (const auto read_by_handle : {p4_pd_tarvex_switch_bytes_meter_read, p4_pd_tarvex_switch_packets_meter_read}) {
        pd_meter_spec_t got{};
        ok(read_by_handle(session, target, row->handle, index, &got));
        EXPECT_TRUE(same(got, wanted));
      }
      pd_meter_spec_t got{};
      ok(read(session, target, index, &got));
      EXPECT_TRUE(same(got, wanted));
      drv_meter_spec_t held{};
      ok(pipe_mgr_meter_read_entry_idx(session, device, row->handle, index, &held));
      EXPECT_EQ(held.first_rate, wanted.cir);
      EXPECT_EQ(held.second_rate, wanted.pir);
      EXPECT_EQ(std::make_pair(held.first_unit_kind, held.second_unit_kind), std::make_pair(unit, unit));
    };
    ok(set(session, target, index, &rates));
    expect(rates, DRV_METER_UNIT_BYTES);
    ok(p4_pd_tarvex_switch_packets_meter_set(session, target, row->handle, index, &aware, 1));
    expect(aware, DRV_METER_UNIT_PACKETS);
    for (const auto *bad : {&aware, &unknown})
      EXPECT_EQ(set(session, target, index, bad), pd_status_t{PD_STATUS_INVALID_ARG});
    for (const auto by_handle : {p4_pd_tarvex_switch_bytes_meter_set, p4_pd_tarvex_switch_packets_meter_set}) {
      EXPECT_EQ(by_handle(session, target, row->handle, index, &aware, 0x100), pd_status_t{PD_STATUS_INVALID_ARG});
      EXPECT_EQ(by_handle(session, target, row->handle, index, &unknown, 1), pd_status_t{PD_STATUS_INVALID_ARG});
    }
    expect(aware, DRV_METER_UNIT_PACKETS);
    ok(p4_pd_tarvex_switch_bytes_meter_set(session, target, row->handle, index, &rates, 0));
    expect(rates, DRV_METER_UNIT_BYTES);
    pd_meter_spec_t kept = aware;
    standin_refuse_call(1, refused);
    EXPECT_EQ(read(session, target, index, &kept), refused);
    EXPECT_TRUE(same(kept, aware));
  }
  EXPECT_EQ(meters, 3u);
}

TEST_F(Meters, OfAnEntry)
{
  const auto expect = [](pd_entry_hdl_t entry, const pd_meter_spec_t &wanted) {
    pd_meter_spec_t got{};
    ok(p4_pd_tarvex_switch_meter_read_stormControlMeter(session, target, entry, &got));
    EXPECT_TRUE(same(got, wanted));
  };
  p4_pd_tarvex_switch_l2LookupMiss_match_spec_t key{};
  pd_entry_hdl_t entry = 0, other = 0, fallback = 0;
  const pd_meter_spec_t first{1, 2, 3, 4, PD_METER_TYPE_COLOR_UNAWARE};
  ok(p4_pd_tarvex_switch_l2LookupMiss_table_add_with_l2LookupBcastHit(session, target, &key, 1, &first, &entry));
  ok(p4_pd_tarvex_switch_l2LookupMiss_table_add_with_l2LookupBcastHit(session, target, &key, 2, &first, &other));
  ok(p4_pd_tarvex_switch_meter_set_stormControlMeter(session, target, entry, &rates));
  expect(entry, rates);
  expect(other, first);
  ok(p4_pd_tarvex_switch_l2LookupMiss_table_modify_with_l2LookupUnknownUcastAction(session, device, entry, nullptr));
  expect(entry, rates);
  ok(p4_pd_tarvex_switch_l2LookupMiss_table_modify_with_l2LookupUnknownUcastAction(session, device, entry, &first));
  expect(entry, first);
  for (const auto *bad : {&aware, &unknown})
    EXPECT_EQ(p4_pd_tarvex_switch_meter_set_stormControlMeter(session, target, entry, bad),
              pd_status_t{PD_STATUS_INVALID_ARG});
  ok(p4_pd_tarvex_switch_l2LookupMiss_set_default_action_l2LookupBcastHit(session, target, nullptr, &fallback));
  pd_meter_spec_t kept = rates;
  EXPECT_EQ(p4_pd_tarvex_switch_meter_read_stormControlMeter(session, target, fallback, &kept),
            pd_status_t{STANDIN_BAD_RESOURCE});
  EXPECT_TRUE(same(kept, rates));
  expect(entry, first);
}

TEST_F(Meters, WredKeepsEveryBit)
{
  pd_wred_spec_t odd{};
  const std::uint32_t bits[] = {0x7f800001, 0xffffffff, 0x80000000, 0xffc12345};  // a signalling and a quiet NaN
  static_assert(sizeof bits == sizeof odd);
  std::memcpy(&odd, bits, sizeof odd);
  const pd_wred_spec_t even{0.5f, 10, 20, 0.25f};
  const auto expect = [](std::uint32_t index, const pd_wred_spec_t &wanted) {
    pd_wred_spec_t got{};
    ok(p4_pd_tarvex_switch_wred_read_wredBlock(session, target, index, &got));
    EXPECT_TRUE(same(got, wanted));
  };
  ok(p4_pd_tarvex_switch_wred_set_wredBlock(session, target, 5, &odd));
  ok(p4_pd_tarvex_switch_wred_set(session, target, 0x5000001, 6, &even));
  expect(5, odd);
  expect(6, even);
  EXPECT_EQ(p4_pd_tarvex_switch_wred_set(session, target, 0x5000002, 6, &odd), pd_status_t{STANDIN_NO_OBJECT});
  pd_wred_spec_t kept = even;
  standin_refuse_call(1, refused);
  EXPECT_EQ(p4_pd_tarvex_switch_wred_read_wredBlock(session, target, 5, &kept), refused);
  EXPECT_TRUE(same(kept, even));
}

}  // namespace
}  // namespace tarvex::resource_tests
