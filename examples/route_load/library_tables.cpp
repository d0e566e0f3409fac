// The functions of the ten forwarding tables.
//
// SPDX-License-Identifier: Apache-2.0
#include "table_access.h"

namespace tarvex::route_load {
namespace {

constexpr std::array<const char *, 4> hop_actions{"p4_pd_tarvex_switch_setNextHop", "p4_pd_tarvex_switch_setNextHop2",
                                                  "p4_pd_tarvex_switch_setNextHop3", "p4_pd_tarvex_switch_setEcmp"};

const typed_table_access ipv4_host(fib_table::ipv4_host, p4_pd_tarvex_switch_ipv4Host_get_mat_table_handle,
                                   p4_pd_tarvex_switch_ipv4Host_get_first_entry_handle,
                                   p4_pd_tarvex_switch_ipv4Host_get_next_entry_handles,
                                   p4_pd_tarvex_switch_ipv4Host_match_spec_to_entry_hdl,
                                   p4_pd_tarvex_switch_ipv4Host_get_entry, hop_actions,
                                   std::make_tuple(p4_pd_tarvex_switch_ipv4Host_table_add_with_setNextHop,
                                                   p4_pd_tarvex_switch_ipv4Host_table_add_with_setNextHop2,
                                                   p4_pd_tarvex_switch_ipv4Host_table_add_with_setNextHop3,
                                                   p4_pd_tarvex_switch_ipv4Host_table_add_with_setEcmp));

const typed_table_access ipv6_host(fib_table::ipv6_host, p4_pd_tarvex_switch_ipv6Host_get_mat_table_handle,
                                   p4_pd_tarvex_switch_ipv6Host_get_first_entry_handle,
                                   p4_pd_tarvex_switch_ipv6Host_get_next_entry_handles,
                                   p4_pd_tarvex_switch_ipv6Host_match_spec_to_entry_hdl,
                                   p4_pd_tarvex_switch_ipv6Host_get_entry, hop_actions,
                                   std::make_tuple(p4_pd_tarvex_switch_ipv6Host_table_add_with_setNextHop,
                                                   p4_pd_tarvex_switch_ipv6Host_table_add_with_setNextHop2,
                                                   p4_pd_tarvex_switch_ipv6Host_table_add_with_setNextHop3,
                                                   p4_pd_tarvex_switch_ipv6Host_table_add_with_setEcmp));

const typed_table_access ipv4_partition(
    fib_table::ipv4_partition, p4_pd_tarvex_switch_ipv4Partition_get_mat_table_handle,
    p4_pd_tarvex_switch_ipv4Partition_get_first_entry_handle, p4_pd_tarvex_switch_ipv4Partition_get_next_entry_handles,
    p4_pd_tarvex_switch_ipv4Partition_match_spec_to_entry_hdl, p4_pd_tarvex_switch_ipv4Partition_get_entry,
    {{"p4_pd_tarvex_switch_setIpv4PrtIdxNextHop", "p4_pd_tarvex_switch_setIpv4PrtIdxNextHop2",
      "p4_pd_tarvex_switch_setIpv4PrtIdxNextHop3", "p4_pd_tarvex_switch_setIpv4PrtIdxEcmp",
      "p4_pd_tarvex_switch_setIpv4PartIdx"}},
    std::make_tuple(p4_pd_tarvex_switch_ipv4Partition_table_add_with_setIpv4PrtIdxNextHop,
                    p4_pd_tarvex_switch_ipv4Partition_table_add_with_setIpv4PrtIdxNextHop2,
                    p4_pd_tarvex_switch_ipv4Partition_table_add_with_setIpv4PrtIdxNextHop3,
                    p4_pd_tarvex_switch_ipv4Partition_table_add_with_setIpv4PrtIdxEcmp,
                    p4_pd_tarvex_switch_ipv4Partition_table_add_with_setIpv4PartIdx));

const typed_table_access ipv6_partition(
    fib_table::ipv6_partition, p4_pd_tarvex_switch_ipv6Partition_get_mat_table_handle,
    p4_pd_tarvex_switch_ipv6Partition_get_first_entry_handle, p4_pd_tarvex_switch_ipv6Partition_get_next_entry_handles,
    p4_pd_tarvex_switch_ipv6Partition_match_spec_to_entry_hdl, p4_pd_tarvex_switch_ipv6Partition_get_entry,
    {{"p4_pd_tarvex_switch_setIpv6PrtIdxNextHop", "p4_pd_tarvex_switch_setIpv6PrtIdxNextHop2",
      "p4_pd_tarvex_switch_setIpv6PrtIdxNextHop3", "p4_pd_tarvex_switch_setIpv6PrtIdxEcmp"}},
    std::make_tuple(p4_pd_tarvex_switch_ipv6Partition_table_add_with_setIpv6PrtIdxNextHop,
                    p4_pd_tarvex_switch_ipv6Partition_table_add_with_setIpv6PrtIdxNextHop2,
                    p4_pd_tarvex_switch_ipv6Partition_table_add_with_setIpv6PrtIdxNextHop3,
                    p4_pd_tarvex_switch_ipv6Partition_table_add_with_setIpv6PrtIdxEcmp));

const typed_table_access ipv6_lg_mask_partition(
    fib_table::ipv6_lg_mask_partition, p4_pd_tarvex_switch_ipv6LgMaskPartition_get_mat_table_handle,
    p4_pd_tarvex_switch_ipv6LgMaskPartition_get_first_entry_handle,
    p4_pd_tarvex_switch_ipv6LgMaskPartition_get_next_entry_handles,
    p4_pd_tarvex_switch_ipv6LgMaskPartition_match_spec_to_entry_hdl, p4_pd_tarvex_switch_ipv6LgMaskPartition_get_entry,
    {{"p4_pd_tarvex_switch_setIpv6LgMaskPrtIdxNextHop", "p4_pd_tarvex_switch_setIpv6LgMaskPrtIdxNextHop2",
      "p4_pd_tarvex_switch_setIpv6LgMaskPrtIdxNextHop3", "p4_pd_tarvex_switch_setIpv6LgMaskPrtIdxEcmp"}},
    std::make_tuple(p4_pd_tarvex_switch_ipv6LgMaskPartition_table_add_with_setIpv6LgMaskPrtIdxNextHop,
                    p4_pd_tarvex_switch_ipv6LgMaskPartition_table_add_with_setIpv6LgMaskPrtIdxNextHop2,
                    p4_pd_tarvex_switch_ipv6LgMaskPartition_table_add_with_setIpv6LgMaskPrtIdxNextHop3,
                    p4_pd_tarvex_switch_ipv6LgMaskPartition_table_add_with_setIpv6LgMaskPrtIdxEcmp));

const typed_table_access ipv4_final_resolve(
    fib_table::ipv4_final_resolve, p4_pd_tarvex_switch_ipv4FinalResolve_get_mat_table_handle,
    p4_pd_tarvex_switch_ipv4FinalResolve_get_first_entry_handle,
    p4_pd_tarvex_switch_ipv4FinalResolve_get_next_entry_handles,
    p4_pd_tarvex_switch_ipv4FinalResolve_match_spec_to_entry_hdl, p4_pd_tarvex_switch_ipv4FinalResolve_get_entry,
    hop_actions,
    std::make_tuple(p4_pd_tarvex_switch_ipv4FinalResolve_table_add_with_setNextHop,
                    p4_pd_tarvex_switch_ipv4FinalResolve_table_add_with_setNextHop2,
                    p4_pd_tarvex_switch_ipv4FinalResolve_table_add_with_setNextHop3,
                    p4_pd_tarvex_switch_ipv4FinalResolve_table_add_with_setEcmp));

const typed_table_access ipv6_lg_mask_final_resolve(
    fib_table::ipv6_lg_mask_final_resolve, p4_pd_tarvex_switch_ipv6LgMaskFinalResolve_get_mat_table_handle,
    p4_pd_tarvex_switch_ipv6LgMaskFinalResolve_get_first_entry_handle,
    p4_pd_tarvex_switch_ipv6LgMaskFinalResolve_get_next_entry_handles,
    p4_pd_tarvex_switch_ipv6LgMaskFinalResolve_match_spec_to_entry_hdl,
    p4_pd_tarvex_switch_ipv6LgMaskFinalResolve_get_entry, hop_actions,
    std::make_tuple(p4_pd_tarvex_switch_ipv6LgMaskFinalResolve_table_add_with_setNextHop,
                    p4_pd_tarvex_switch_ipv6LgMaskFinalResolve_table_add_with_setNextHop2,
                    p4_pd_tarvex_switch_ipv6LgMaskFinalResolve_table_add_with_setNextHop3,
                    p4_pd_tarvex_switch_ipv6LgMaskFinalResolve_table_add_with_setEcmp));

const typed_table_access ipv6_final_resolve(
    fib_table::ipv6_final_resolve, p4_pd_tarvex_switch_ipv6FinalResolve_get_mat_table_handle,
    p4_pd_tarvex_switch_ipv6FinalResolve_get_first_entry_handle,
    p4_pd_tarvex_switch_ipv6FinalResolve_get_next_entry_handles,
    p4_pd_tarvex_switch_ipv6FinalResolve_match_spec_to_entry_hdl, p4_pd_tarvex_switch_ipv6FinalResolve_get_entry,
    hop_actions,
    std::make_tuple(p4_pd_tarvex_switch_ipv6FinalResolve_table_add_with_setNextHop,
                    p4_pd_tarvex_switch_ipv6FinalResolve_table_add_with_setNextHop2,
                    p4_pd_tarvex_switch_ipv6FinalResolve_table_add_with_setNextHop3,
                    p4_pd_tarvex_switch_ipv6FinalResolve_table_add_with_setEcmp));

const typed_table_access ipv4_short_mask_lpm(
    fib_table::ipv4_short_mask_lpm, p4_pd_tarvex_switch_ipv4ShortMaskLpm_get_mat_table_handle,
    p4_pd_tarvex_switch_ipv4ShortMaskLpm_get_first_entry_handle,
    p4_pd_tarvex_switch_ipv4ShortMaskLpm_get_next_entry_handles,
    p4_pd_tarvex_switch_ipv4ShortMaskLpm_match_spec_to_entry_hdl, p4_pd_tarvex_switch_ipv4ShortMaskLpm_get_entry,
    hop_actions,
    std::make_tuple(p4_pd_tarvex_switch_ipv4ShortMaskLpm_table_add_with_setNextHop,
                    p4_pd_tarvex_switch_ipv4ShortMaskLpm_table_add_with_setNextHop2,
                    p4_pd_tarvex_switch_ipv4ShortMaskLpm_table_add_with_setNextHop3,
                    p4_pd_tarvex_switch_ipv4ShortMaskLpm_table_add_with_setEcmp));

const typed_table_access ipv6_short_mask_lpm(
    fib_table::ipv6_short_mask_lpm, p4_pd_tarvex_switch_ipv6ShortMaskLpm_get_mat_table_handle,
    p4_pd_tarvex_switch_ipv6ShortMaskLpm_get_first_entry_handle,
    p4_pd_tarvex_switch_ipv6ShortMaskLpm_get_next_entry_handles,
    p4_pd_tarvex_switch_ipv6ShortMaskLpm_match_spec_to_entry_hdl, p4_pd_tarvex_switch_ipv6ShortMaskLpm_get_entry,
    hop_actions,
    std::make_tuple(p4_pd_tarvex_switch_ipv6ShortMaskLpm_table_add_with_setNextHop,
                    p4_pd_tarvex_switch_ipv6ShortMaskLpm_table_add_with_setNextHop2,
                    p4_pd_tarvex_switch_ipv6ShortMaskLpm_table_add_with_setNextHop3,
                    p4_pd_tarvex_switch_ipv6ShortMaskLpm_table_add_with_setEcmp));

}  // namespace

const table_access &access_to(fib_table table)
{
  static constexpr std::array<const table_access *, fib_table_count> tables{&ipv4_host,
                                                                            &ipv6_host,
                                                                            &ipv4_partition,
                                                                            &ipv6_partition,
                                                                            &ipv6_lg_mask_partition,
                                                                            &ipv4_final_resolve,
                                                                            &ipv6_lg_mask_final_resolve,
                                                                            &ipv6_final_resolve,
                                                                            &ipv4_short_mask_lpm,
                                                                            &ipv6_short_mask_lpm};
  return *tables[static_cast<std::size_t>(table)];
}

}  // namespace tarvex::route_load
