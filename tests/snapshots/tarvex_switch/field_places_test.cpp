// Places of snapshot fields, some of them by hand.
//
// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

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

}  // namespace
}  // namespace tarvex::test
