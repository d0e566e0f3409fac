/*
 * Adds the prefix 10.1.0.0/16, replaces its next hop and removes it, and resolves an address after each step as the
 * switch does.
 *
 * A prefix of 13 to 31 bits lives in two tables: an entry of ipv4Partition covers the block that its first 12 bits
 * name, here 10.0.0.0/12, and gives the block an index; an entry of ipv4FinalResolve matches that index and the other
 * bits. Shorter prefixes go into ipv4ShortMaskLpm, /32 into ipv4Host.
 *
 * SPDX-License-Identifier: Apache-2.0
 */
#include "page.h"

/* 0 is what a packet carries that no block matched; the table looks at 15 bits of the index. */
enum { vrf = 1, block_index = 1 };

/** Looks up a key as the switch makes it from a packet: VRF or nothing, then the address, the highest byte first. */
static pd_entry_hdl_t looked_up(uint32_t table, const uint8_t *key, size_t size, uint32_t partition_index)
{
  pd_entry_hdl_t entry;
  const pd_status_t status = standin_lookup(all_pipes(), table, key, size, partition_index, &entry);
  if (status == STANDIN_NO_ENTRY) return STANDIN_NO_HANDLE;
  must(status, "looking an address up");
  return entry;
}

/** Takes an address through the tables and prints what becomes of it. The action's name is left out: it is setNextHop
 * or setIpv4PartIdx here. */
static void resolve(uint32_t address)
{
  char text[IPV4_TEXT_SIZE];
  const uint8_t bytes[4] = {(uint8_t)(address >> 24), (uint8_t)(address >> 16), (uint8_t)(address >> 8),
                            (uint8_t)address};
  const uint8_t in_vrf[5] = {vrf, bytes[0], bytes[1], bytes[2], bytes[3]};
  const uint8_t in_block[6] = {0, 0, bytes[0], bytes[1], bytes[2], bytes[3]};
  uint32_t partitions, finals;
  must(p4_pd_tarvex_switch_ipv4Partition_get_mat_table_handle(&partitions), "asking for the table's handle");
  must(p4_pd_tarvex_switch_ipv4FinalResolve_get_mat_table_handle(&finals), "asking for the table's handle");
  printf("  %s:", ipv4_text(address, text));

  const pd_entry_hdl_t block = looked_up(partitions, in_vrf, sizeof in_vrf, 0);
  if (block == STANDIN_NO_HANDLE) {
    printf(" in no block, no route\n");
    return;
  }
  p4_pd_tarvex_switch_ipv4Partition_match_spec_t block_key;
  p4_pd_tarvex_switch_setIpv4PartIdx_action_spec_t index;
  uint8_t no_key;
  must(p4_pd_tarvex_switch_ipv4Partition_get_entry(session, device, block, 0, &block_key, NULL, &index, NULL, &no_key),
       "reading the block");
  printf(" block %s/%u has index %u,", ipv4_text(block_key.ingIpv4_dipAndVrf, text),
         block_key.ingIpv4_dipAndVrf_prefix_length, index.action_partitionIndex);

  const pd_entry_hdl_t route = looked_up(finals, in_block, sizeof in_block, index.action_partitionIndex);
  if (route == STANDIN_NO_HANDLE) {
    printf(" no route\n");
    return;
  }
  p4_pd_tarvex_switch_ipv4FinalResolve_match_spec_t key;
  p4_pd_tarvex_switch_setNextHop_action_spec_t action;
  must(p4_pd_tarvex_switch_ipv4FinalResolve_get_entry(session, device, route, 0, &key, NULL, &action, NULL, &no_key),
       "reading the route");
  printf(" route %s/%u, next hop %u\n", ipv4_text(key.ingIpv4_dip, text), key.ingIpv4_dip_prefix_length,
         (unsigned)action.action_nextHop);
}

int main(void)
{
  const uint32_t inside = 0x0a010203, outside = 0x0a020304; /* 10.1.2.3 and 10.2.3.4 */
  pd_entry_hdl_t entry;
  begin();

  /* The route before its block: until the block's entry is there, no packet looks at it. */
  const p4_pd_tarvex_switch_ipv4FinalResolve_match_spec_t key = {
      .ingIpv4_fibPartitionIndex = block_index, .ingIpv4_dip = 0x0a010000, .ingIpv4_dip_prefix_length = 16};
  p4_pd_tarvex_switch_setNextHop_action_spec_t action = {.action_nextHop = 7};
  must(p4_pd_tarvex_switch_ipv4FinalResolve_table_add_with_setNextHop(session, all_pipes(), &key, &action, &entry),
       "adding the route");
  printf("the route alone\n");
  resolve(inside);

  /* Only the first route of a block adds it. If a shorter route covered the block, 10.0.0.0/8 for instance, the block
   * would carry its result too (setIpv4PrtIdxNextHop), for addresses that no route of the block matches. */
  const p4_pd_tarvex_switch_ipv4Partition_match_spec_t block = {
      .l3Info_vrfId = vrf, .ingIpv4_dipAndVrf = 0x0a000000, .ingIpv4_dipAndVrf_prefix_length = 12};
  const p4_pd_tarvex_switch_setIpv4PartIdx_action_spec_t index = {.action_partitionIndex = block_index};
  must(p4_pd_tarvex_switch_ipv4Partition_table_add_with_setIpv4PartIdx(session, all_pipes(), &block, &index, &entry),
       "adding its block");
  printf("with its block\n");
  resolve(inside);
  resolve(outside);

  action.action_nextHop = 8;
  must(p4_pd_tarvex_switch_ipv4FinalResolve_table_modify_with_setNextHop_by_match_spec(session, all_pipes(), &key,
                                                                                       &action),
       "replacing the route");
  printf("replaced\n");
  resolve(inside);

  /* The last route of a block takes the block along, so that its index is free again. */
  must(p4_pd_tarvex_switch_ipv4FinalResolve_table_delete_by_match_spec(session, all_pipes(), &key),
       "removing the route");
  must(p4_pd_tarvex_switch_ipv4Partition_table_delete_by_match_spec(session, all_pipes(), &block),
       "removing the block");
  printf("removed\n");
  resolve(inside);

  end();
  return 0;
}
