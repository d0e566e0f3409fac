// The names of the fields: which there are, where they stand, and names that there are not.
//
// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <cstring>
#include <set>

#include "fields.h"

namespace tarvex::test {
namespace {

TEST(field_names, both_layouts_are_listed)
{
  const struct {
    pd_snapshot_hdl_t hdl;
    std::size_t fields, end;
    std::vector<std::pair<std::string, std::size_t>> places;
  } layouts[] = {
      {ingress,
       361,
       690,
       {{"ig_intr_md_resubmit_flag", 0},
        {"innerEthHdr_dmacOui", 45},
        {"vlanHdr_0__priority", 63},
        {"vlanHdr_1__priority", 69},
        {"innerIpv6Hdr_sip", 143},
        {"greHdr_C", 313},
        {"greHdr_s", 317},
        {"ingMd_dmacOui", 350},
        {"egrMd_tunnelInfo", 441},
        {"l3_ecmpGroup", 531},
        {"haloResultRow1_bestResult", 585},
        {"__md_ingress___init_1", 606},
        {"_selector_FLOW_LRN_DIGEST_RCVR", 689}}},
      {egress,
       206,
       437,
       {{"arpHdr_hwType", 0},
        {"vlanHdr_1__priority", 45},
        {"vlanHdr_0__priority", 51},
        {"mplsHdr_0__exp", 61},
        {"vxlanHdr_vniReserved", 215},
        {"innerIpv6Hdr_dip", 268},
        {"egrMd_tunnelDipv4", 357},
        {"eg_intr_md_deq_qdepth", 419},
        {"__md_egress___init_3", 435},
        {"_selector_CLONE_E2E_DIGEST_RCVR", 436}}},
  };
  std::set<std::string> names[2];
  for (const auto &layout : layouts) {
    const std::vector<listed_field> list = list_fields(layout.hdl);
    ASSERT_EQ(list.size(), layout.fields);
    EXPECT_EQ(list.back().offset + list.back().slot(), layout.end);
    std::vector<std::pair<std::string, std::size_t>> found;
    for (const listed_field &field : list) {
      names[layout.hdl == egress].insert(field.name);
      for (const auto &[name, offset] : layout.places)
        if (name == field.name) found.emplace_back(name, field.offset);
    }
    EXPECT_EQ(found, layout.places);
  }
  EXPECT_EQ(names[0].size(), 361u);
  EXPECT_EQ(names[1].size(), 206u);
  names[0].merge(names[1]);
  EXPECT_EQ(names[1].size(), 160u);  // those in both
}

struct list_calls {
  std::uint32_t count = 0;
  std::uint32_t layout = 0;
};

std::uint32_t count_listed(std::uint32_t ctx, const char *, std::uint32_t layout, std::uint32_t, void *cookie)
{
  auto &calls = *static_cast<list_calls *>(cookie);
  EXPECT_EQ(ctx, 0xfedcba98u);
  EXPECT_EQ(layout, calls.layout);
  return 0x80000000u + ++calls.count;
}

TEST(field_names, the_last_call_decides_what_a_list_gives)
{
  for (const std::uint32_t layout : {0u, 1u}) {
    list_calls calls{0, layout};
    const std::uint32_t last = p4_pd_tarvex_switch_snapshot_capture_trigger_list(
        0xfedcba98, layout == 0 ? ingress : egress, count_listed, &calls);
    EXPECT_EQ(last, 0x80000000u + calls.count);
    EXPECT_EQ(calls.count, layout == 0 ? 361u : 206u);
  }
}

TEST(field_names, an_unknown_name_leaves_the_records_alone)
{
  snap_trig_spec_t value, mask, before;
  std::memset(before.fields, 0x6b, sizeof before.fields);
  value = mask = before;
  const struct {
    pd_snapshot_hdl_t hdl;
    const char *name;
  } cases[] = {
      {ingress, ""},
      {ingress, nullptr},
      {ingress, "egrMd_subIntf"},  // of the other direction, here and below
      {egress, "ig_intr_md_ingress_port"},
      {ingress, "outerIpv4Hdr_si"},
      {ingress, "outerIpv4Hdr_sip "},
      {ingress, "OuterIpv4Hdr_sip"},
      {ingress, " "},  // ahead of all names, and behind them
      {egress, "~"},
      {egress, "\xff"},
  };
  for (const auto &[hdl, name] : cases) {
    EXPECT_EQ(p4_pd_tarvex_switch_snapshot_capture_trigger_add(hdl, &value, &mask, name, nullptr), 0u) << name;
    EXPECT_EQ(std::memcmp(&value, &before, sizeof value), 0) << name;
    EXPECT_EQ(std::memcmp(&mask, &before, sizeof mask), 0) << name;
  }
}

}  // namespace
}  // namespace tarvex::test
