// Keys and actions computed by hand, one for each kind of field, through the public header as a caller would write
// them.
//
// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <sstream>
#include <string>
#include <type_traits>

#include "caller.h"
#include "recorder.h"
#include "tarvex_pd/tarvex_pd.h"

namespace tarvex::test {

namespace {

constexpr pd_dev_tgt_t target = 0x0001'0000'0002;
pd_entry_hdl_t handle;

// The record of the last call that carries one at `argument`.
template <typename Record>
Record record_at(std::size_t argument, bytes &behind)
{
  Record record{};
  const bytes &copy = driver().calls.at(driver().calls.size() - 1).arguments.at(argument).record;
  std::memcpy(&record, copy.data(), sizeof record);
  behind.assign(copy.begin() + sizeof record, copy.end());
  return record;
}

// Calls of functions with the same arguments, made from the structures as a caller would write them.
template <typename Record>
std::function<void()> with_record(pd_status_t (*function)(pd_sess_hdl_t, pd_dev_tgt_t, const Record *,
                                                          pd_entry_hdl_t *),
                                  std::type_identity_t<Record> record)
{
  return [=] { function(1, target, &record, &handle); };
}

template <typename Key>
std::function<void()> with_record(pd_status_t (*function)(pd_sess_hdl_t, pd_dev_tgt_t, const Key *, std::uint32_t,
                                                          pd_entry_hdl_t *),
                                  std::type_identity_t<Key> key, std::uint32_t priority)
{
  return [=] { function(1, target, &key, priority, &handle); };
}

template <typename Key, typename Action>
std::function<void()> adding(pd_status_t (*function)(pd_sess_hdl_t, pd_dev_tgt_t, const Key *, const Action *,
                                                     pd_entry_hdl_t *),
                             std::type_identity_t<Key> key, std::type_identity_t<Action> action)
{
  return [=] { function(1, target, &key, &action, &handle); };
}

template <typename Action>
std::function<void()> modifying(pd_status_t (*function)(pd_sess_hdl_t, pd_dev_id_t, pd_entry_hdl_t, const Action *),
                                std::type_identity_t<Action> action)
{
  return [=] { function(1, 2, 3, &action); };
}

struct worked_key {
  const char *name;
  std::function<void()> add;
  unsigned bits, byte_count;
  const char *value, *mask;
  std::uint32_t priority, partition_index;
};

std::function<void()> ipv4_partition(std::uint16_t prefix)
{
  return with_record(p4_pd_tarvex_switch_ipv4Partition_match_spec_to_entry_hdl, {7, 0x0a0b0c0d, prefix});
}

std::function<void()> ipv4_final(std::uint16_t prefix)
{
  return with_record(p4_pd_tarvex_switch_ipv4FinalResolve_match_spec_to_entry_hdl, {0x1234, 0x0a0b0c0d, prefix});
}

p4_pd_tarvex_switch_tunnelTermination_match_spec_t termination()
{
  p4_pd_tarvex_switch_tunnelTermination_match_spec_t key;
  std::memset(&key, 0xee, sizeof key);
  key.outerEthHdr_dmacOui = 0x010203, key.outerEthHdr_dmacOui_mask = 0xffffff;
  key.outerEthHdr_dmacStation = 0x040506, key.outerEthHdr_dmacStation_mask = 0;
  key.outerIpv4Hdr_dip = 0x0a0b0c0d, key.outerIpv4Hdr_dip_mask = 0xffff0000;
  key.ingMd_tunnelType = 0xff, key.ingMd_tunnelType_mask = 0xff;
  key.outerIpv6Hdr_valid = 1;
  return key;
}

p4_pd_tarvex_switch_lagHashSelection_match_spec_t all_ones()
{
  p4_pd_tarvex_switch_lagHashSelection_match_spec_t key;
  std::memset(&key, 0xff, sizeof key);
  return key;
}

p4_pd_tarvex_switch_setEcmpNextHop_action_spec_t with_room_filled()
{
  p4_pd_tarvex_switch_setEcmpNextHop_action_spec_t action;
  std::memset(&action, 0xee, sizeof action);
  action.action_nextHop = 0xabcd1234;
  return action;
}

const worked_key keys[] = {
    {"exact of 9 bits", with_record(p4_pd_tarvex_switch_ingressPortMapping_match_spec_to_entry_hdl, {0x1a5}), 9, 2,
     "01 a5", "ff ff", 0, 0},
    {"exact, wider than its 9 bits",
     with_record(p4_pd_tarvex_switch_ingressPortMapping_match_spec_to_entry_hdl, {0xffff}), 9, 2, "ff ff", "ff ff", 0,
     0},
    {"exact of 20 bits, overwide",
     with_record(p4_pd_tarvex_switch_mplsLabelResolution_match_spec_to_entry_hdl, {0xabfabcde}), 20, 3, "fa bc de",
     "ff ff ff", 0, 0},
    {"eight bits, ternary and overwide",
     with_record(p4_pd_tarvex_switch_lagHashSelection_match_spec_to_entry_hdl, all_ones(), 5), 8, 8,
     "ff ff ff ff ff ff ff ff", "01 01 01 01 01 01 01 01", 5, 0},
    {"ternary",
     with_record(p4_pd_tarvex_switch_l2LookupMiss_match_spec_to_entry_hdl,
                 {0x1a5, 0xff00, 0x112233, 0xfff000, 0x445566, 0xffffff}, 10),
     57, 8, "01 00 11 20 00 44 55 66", "01 00 ff f0 00 ff ff ff", 10, 0},
    {"exact fields of a ternary table, and a ternary one of 12 bits with a mask beyond it",
     with_record(p4_pd_tarvex_switch_l2DomainLookup_match_spec_to_entry_hdl, {0xff, 0xffff, 1, 0xabcd, 0xf0ff},
                 0xfedcba98),
     28, 6, "ff ff ff 01 a0 cd", "01 3f ff 01 00 ff", 0xfedcba98, 0},
    {"members in another order than the key",
     with_record(p4_pd_tarvex_switch_tunnelTermination_match_spec_to_entry_hdl, termination(), 0), 84, 12,
     "01 02 03 00 00 00 0a 0b 00 00 ff 01", "ff ff ff 00 00 00 ff ff 00 00 07 01", 0, 0},
    {"indirect, exact", with_record(p4_pd_tarvex_switch_ecmpGroup_match_spec_to_entry_hdl, {0x7fff}), 16, 2, "7f ff",
     "ff ff", 0, 0},
    {"indirect, ternary", with_record(p4_pd_tarvex_switch_lagGroup_match_spec_to_entry_hdl, {0x7fff, 0xfffff}, 3), 20,
     3, "00 7f ff", "0f ff ff", 3, 0},
    {"prefix of 20", ipv4_partition(20), 40, 5, "07 0a 0b 00 00", "ff ff ff f0 00", 12, 0},
    {"prefix of 0", ipv4_partition(0), 40, 5, "07 00 00 00 00", "ff 00 00 00 00", 32, 0},
    {"prefix of 32", ipv4_partition(32), 40, 5, "07 0a 0b 0c 0d", "ff ff ff ff ff", 0, 0},
    {"prefix of 33", ipv4_partition(33), 40, 5, "07 0a 0b 0c 0d", "ff ff ff ff ff", 41, 0},
    {"prefix of 65535", ipv4_partition(0xffff), 40, 5, "07 0a 0b 0c 0d", "ff ff ff ff ff", 41, 0},
    {"partition, prefix of 24", ipv4_final(24), 48, 6, "00 00 0a 0b 0c 00", "00 00 ff ff ff 00", 8, 0x1234},
    {"partition, prefix of 40", ipv4_final(40), 48, 6, "00 00 0a 0b 0c 0d", "ff ff ff ff ff ff", 49, 0x1234},
    {"prefix within 16 bytes",
     with_record(p4_pd_tarvex_switch_ipv6ShortMaskLpm_match_spec_to_entry_hdl,
                 {1, {32, 33, 34, 35, 36, 37, 38, 39, 40, 41, 42, 43, 44, 45, 46, 47}, 68}),
     136, 17, "01 20 21 22 23 24 25 26 27 20 00 00 00 00 00 00 00",
     "ff ff ff ff ff ff ff ff ff f0 00 00 00 00 00 00 00", 60, 0},
};

TEST(worked_bytes, keys)
{
  for (const worked_key &expected : keys) {
    driver().reset();
    expected.add();
    bytes behind;
    const auto key = record_at<drv_match_spec_t>(3, behind);
    EXPECT_EQ(key.key_bits, expected.bits) << expected.name;
    EXPECT_EQ(key.key_bytes, expected.byte_count) << expected.name;
    EXPECT_EQ(hex(behind), std::string(expected.value) + ' ' + expected.mask) << expected.name;
    EXPECT_EQ(key.priority, expected.priority) << expected.name;
    EXPECT_EQ(key.partition_index, expected.partition_index) << expected.name;
  }
}

struct worked_action {
  const char *name;
  std::function<void()> write;
  std::size_t argument;  // where the driver gets the record
  const char *record;
};

// The whole record: "bits: data", then each resource as "handle index tag".
const worked_action actions[] = {
    {"each member its own width",
     adding(p4_pd_tarvex_switch_ingressPortMapping_table_add_with_setPhase0, {1}, {0x1234, 0xabc, 1, 2}), 5,
     "29: 12 34 0a bc 01 02"},
    {"24 bits", modifying(p4_pd_tarvex_switch_nextHop_table_modify_with_setNextHopDetails, {0x001122, 0x334455, 0x123}),
     5, "60: 00 11 22 33 44 55 01 23"},
    {"index of a WRED block", with_record(p4_pd_tarvex_switch_wredQueueSelect_set_default_action_runWred, {7, 1}), 4,
     "33: 00 00 00 00 01, 5000001 7 1"},
    {"index of a counter and of a meter", modifying(p4_pd_tarvex_switch_pdpPolicy_table_modify_with_pdpPolice, {5}), 5,
     "32: 00 00 00 00, 4000003 5 1, 5000002 5 1"},
    {"index of a counter, meter not attached",
     modifying(p4_pd_tarvex_switch_pdpPolicy_table_modify_with_setPdpClassCount, {5}), 5,
     "32: 00 00 00 00, 4000003 5 1, 5000002 0 2"},
    {"register of a keyless table",
     [] { p4_pd_tarvex_switch_ingVlanCheck_set_default_action_ingVlanAction(1, target, &handle); }, 4,
     "0: , 6000001 0 1"},
    {"no resource", [] { p4_pd_tarvex_switch_routedMartian_set_default_action_setRoutedMartian(1, target, &handle); },
     4, "0: "},
    {"default without its meter",
     [] { p4_pd_tarvex_switch_l2LookupMiss_set_default_action_l2LookupBcastHit(1, target, nullptr, &handle); }, 4,
     "0: , 5000003 0 2"},
    {"modify without its meter",
     [] { p4_pd_tarvex_switch_l2LookupMiss_table_modify_with_l2LookupBcastHit(1, 2, 3, nullptr); }, 5,
     "0: , 5000003 0 0"},
    {"member, wider than its 9 bits",
     with_record(p4_pd_tarvex_switch_lagPortActionProfile_add_member_with_setLagPort, {0xf1ff}), 4, "9: f1 ff"},
    {"member of 3 and 4 bytes",
     with_record(p4_pd_tarvex_switch_tunnelMember_add_member_with_setTunnelEgressInfo, {0xfffff, 0x7fff}), 4,
     "52: 0f ff ff 00 00 7f ff"},
    {"member with room ahead of its parameter",
     with_record(p4_pd_tarvex_switch_ecmpMemberActionProfile_add_member_with_setEcmpNextHop, with_room_filled()), 4,
     "16: 12 34"},
};

std::string text_of(const drv_action_spec_t &action, const bytes &data)
{
  std::ostringstream text;
  text << action.act_data.data_bits << ": " << hex(data) << std::hex;
  for (unsigned i = 0; i < action.res_count; ++i) {
    text << ", " << action.res[i].res_hdl << ' ' << action.res[i].res_index << ' ' << action.res[i].res_tag;
  }
  return text.str();
}

TEST(worked_bytes, actions)
{
  for (const worked_action &expected : actions) {
    driver().reset();
    driver().answer = [&](const recorded_call &call) { return call.arguments.size() > expected.argument ? 1 : 0; };
    expected.write();
    bytes data;
    const auto action = record_at<drv_action_spec_t>(expected.argument, data);
    EXPECT_EQ(action.act_data.data_bytes, data.size()) << expected.name;
    EXPECT_EQ(text_of(action, data), expected.record) << expected.name;
  }
}

// The one value that an entry write carries.
TEST(worked_bytes, direct_meter)
{
  const p4_pd_tarvex_switch_l2LookupMiss_match_spec_t key = {};
  const pd_meter_spec_t meter = {0xffffffff, 0x80000001, 0x12345678, 9, PD_METER_TYPE_COLOR_UNAWARE};
  driver().reset();
  p4_pd_tarvex_switch_l2LookupMiss_table_add_with_l2LookupBcastHit(1, target, &key, 1, &meter, &handle);
  bytes data;
  const auto action = record_at<drv_action_spec_t>(5, data);
  EXPECT_EQ(action.res[0].res_tag, 1u);
  EXPECT_EQ(hex(action.res[0].res_value.bytes),
            "01 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 ff ff ff ff 00 00 00 00 01 00 00 80 00 00 00 00 "
            "00 00 00 00 00 00 00 00 78 56 34 12 00 00 00 00 09 00 00 00 00 00 00 00");
}

// Masks back to prefix lengths, and values as they stand.
TEST(worked_bytes, keys_read_back)
{
  const auto prefix_of = [](bytes mask) {
    bytes value(5);
    drv_match_spec_t key{};
    key.key_value = value.data();
    key.key_mask = mask.data();
    p4_pd_tarvex_switch_ipv4Partition_match_spec_t structure;
    unbuild_key_ipv4Partition(&key, &structure);
    unbuild_mask_ipv4Partition(&key, &structure);
    return structure.ingIpv4_dipAndVrf_prefix_length;
  };
  EXPECT_EQ(prefix_of({0xff, 0xff, 0xff, 0xf0, 0}), 20);
  EXPECT_EQ(prefix_of({0xff, 0, 0, 0, 0}), 0);
  EXPECT_EQ(prefix_of({0xff, 0xff, 0xff, 0xff, 0xff}), 32);
  EXPECT_EQ(prefix_of({0xff, 0xff, 0, 0xff, 0}), 24);
  EXPECT_EQ(prefix_of({0xff, 0, 0, 0, 1}), 32);

  bytes value = {1, 0, 0x11, 0x20, 0, 0x44, 0x55, 0x66}, mask = {1, 0, 0xff, 0xf0, 0, 0xff, 0xff, 0xff};
  drv_match_spec_t key{};
  key.key_value = value.data();
  key.key_mask = mask.data();
  p4_pd_tarvex_switch_l2LookupMiss_match_spec_t miss;
  unbuild_key_l2LookupMiss(&key, &miss);
  unbuild_mask_l2LookupMiss(&key, &miss);
  const p4_pd_tarvex_switch_l2LookupMiss_match_spec_t expected = {0x100, 0x100, 0x112000, 0xfff000, 0x445566, 0xffffff};
  EXPECT_EQ(std::memcmp(&miss, &expected, sizeof miss), 0);
}

}  // namespace

}  // namespace tarvex::test
