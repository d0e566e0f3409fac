/*
 * SPDX-License-Identifier: Apache-2.0
 */
#include "basket.h"

#include <stdio.h>
#include <string.h>

#include "hand_written.h"
#include "null_driver.h"

enum { SESSION = 7, DEVICE = 3, MEMBER = 0x123, NAME_ROOM = 96 };

static struct {
  p4_pd_tarvex_switch_ipv4Host_match_spec_t ipv4_host;
  p4_pd_tarvex_switch_ipv6Host_match_spec_t ipv6_host;
  p4_pd_tarvex_switch_ipv4Partition_match_spec_t partition;
  p4_pd_tarvex_switch_ipv4FinalResolve_match_spec_t resolve;
  p4_pd_tarvex_switch_ipv4ShortMaskLpm_match_spec_t short_mask;
  p4_pd_tarvex_switch_finalDropControl_match_spec_t drop;
  p4_pd_tarvex_switch_ecmpGroup_match_spec_t group;
  p4_pd_tarvex_switch_setNextHop_action_spec_t next_hop;
  p4_pd_tarvex_switch_setIpv4PrtIdxEcmp_action_spec_t partition_ecmp;
  p4_pd_tarvex_switch_setNextHopDetails_action_spec_t details;
  pd_dev_tgt_t target;
  pd_entry_hdl_t entry;
  uint32_t host_action, drop_action;
} in;

static struct {
  pd_status_t status;
  pd_entry_hdl_t entry;
  p4_pd_tarvex_switch_ipv4Host_match_spec_t ipv4_host;
  p4_pd_tarvex_switch_finalDropControl_match_spec_t drop;
  pd_counter_value_t counter;
  uint32_t priority, action_enum, action_spec;
  char name[NAME_ROOM];
  uint8_t no_key;
} out;

/* Each call both ways. */

static void library_ipv4_host(void)
{
  out.status = p4_pd_tarvex_switch_ipv4Host_table_add_with_setNextHop(SESSION, in.target, &in.ipv4_host, &in.next_hop,
                                                                      60, &out.entry);
}
static void by_hand_ipv4_host(void)
{
  out.status = hand_written_ipv4Host_add(SESSION, in.target, &in.ipv4_host, &in.next_hop, 60, &out.entry);
}

static void library_drop(void)
{
  out.status =
      p4_pd_tarvex_switch_finalDropControl_table_add_with_dropCount(SESSION, in.target, &in.drop, 11, &out.entry);
}
static void by_hand_drop(void)
{
  out.status = hand_written_finalDropControl_add(SESSION, in.target, &in.drop, 11, &out.entry);
}

static void library_partition(void)
{
  out.status = p4_pd_tarvex_switch_ipv4Partition_table_add_with_setIpv4PrtIdxEcmp(SESSION, in.target, &in.partition,
                                                                                  &in.partition_ecmp, &out.entry);
}
static void by_hand_partition(void)
{
  out.status = hand_written_ipv4Partition_add(SESSION, in.target, &in.partition, &in.partition_ecmp, &out.entry);
}

static void library_resolve(void)
{
  out.status = p4_pd_tarvex_switch_ipv4FinalResolve_table_add_with_setNextHop(SESSION, in.target, &in.resolve,
                                                                              &in.next_hop, &out.entry);
}
static void by_hand_resolve(void)
{
  out.status = hand_written_ipv4FinalResolve_add(SESSION, in.target, &in.resolve, &in.next_hop, &out.entry);
}

static void library_ipv6_host(void)
{
  out.status = p4_pd_tarvex_switch_ipv6Host_table_add_with_setNextHop(SESSION, in.target, &in.ipv6_host, &in.next_hop,
                                                                      60, &out.entry);
}
static void by_hand_ipv6_host(void)
{
  out.status = hand_written_ipv6Host_add(SESSION, in.target, &in.ipv6_host, &in.next_hop, 60, &out.entry);
}

static void library_modify(void)
{
  out.status = p4_pd_tarvex_switch_nextHop_table_modify_with_setNextHopDetails(SESSION, DEVICE, in.entry, &in.details);
}
static void by_hand_modify(void) { out.status = hand_written_nextHop_modify(SESSION, DEVICE, in.entry, &in.details); }

static void library_delete(void)
{
  out.status = p4_pd_tarvex_switch_ipv4ShortMaskLpm_table_delete_by_match_spec(SESSION, in.target, &in.short_mask);
}
static void by_hand_delete(void)
{
  out.status = hand_written_ipv4ShortMaskLpm_delete(SESSION, in.target, &in.short_mask);
}

static void library_default(void)
{
  out.status = p4_pd_tarvex_switch_ipv4Partition_set_default_action_setIpv4PrtIdxEcmp(SESSION, in.target,
                                                                                      &in.partition_ecmp, &out.entry);
}
static void by_hand_default(void)
{
  out.status = hand_written_ipv4Partition_default(SESSION, in.target, &in.partition_ecmp, &out.entry);
}

static void library_indirect(void)
{
  out.status = p4_pd_tarvex_switch_ecmpGroup_add_entry(SESSION, in.target, &in.group, MEMBER, &out.entry);
}
static void by_hand_indirect(void)
{
  out.status = hand_written_ecmpGroup_add(SESSION, in.target, &in.group, MEMBER, &out.entry);
}

static void library_counter(void)
{
  out.status = p4_pd_tarvex_switch_counter_read_haloCount(SESSION, in.target, in.entry, 0, &out.counter);
}
static void by_hand_counter(void)
{
  out.status = hand_written_haloCount_read(SESSION, in.target, in.entry, 0, &out.counter);
}

static void library_read_host(void)
{
  null_driver_read_action = in.host_action;
  out.status = p4_pd_tarvex_switch_ipv4Host_get_entry(SESSION, DEVICE, in.entry, 1, &out.ipv4_host, out.name,
                                                      &out.action_spec, &out.action_enum, &out.no_key);
}
static void by_hand_read_host(void)
{
  null_driver_read_action = in.host_action;
  out.status = hand_written_ipv4Host_get_entry(SESSION, DEVICE, in.entry, 1, &out.ipv4_host, out.name, &out.action_spec,
                                               &out.action_enum, &out.no_key);
}

static void library_read_drop(void)
{
  null_driver_read_action = in.drop_action;
  out.status =
      p4_pd_tarvex_switch_finalDropControl_get_entry(SESSION, DEVICE, in.entry, 1, &out.drop, &out.priority, out.name,
                                                     &out.action_spec, &out.action_enum, &out.no_key);
}
static void by_hand_read_drop(void)
{
  null_driver_read_action = in.drop_action;
  out.status = hand_written_finalDropControl_get_entry(SESSION, DEVICE, in.entry, 1, &out.drop, &out.priority, out.name,
                                                       &out.action_spec, &out.action_enum, &out.no_key);
}

const struct basket_call basket[BASKET_CALLS] = {
    {"add, exact key", "p4_pd_tarvex_switch_ipv4Host_table_add_with_setNextHop", "hand_written_ipv4Host_add",
     library_ipv4_host, by_hand_ipv4_host},
    {"add, 22 ternary fields", "p4_pd_tarvex_switch_finalDropControl_table_add_with_dropCount",
     "hand_written_finalDropControl_add", library_drop, by_hand_drop},
    {"add, lpm", "p4_pd_tarvex_switch_ipv4Partition_table_add_with_setIpv4PrtIdxEcmp", "hand_written_ipv4Partition_add",
     library_partition, by_hand_partition},
    {"add, partitioned lpm", "p4_pd_tarvex_switch_ipv4FinalResolve_table_add_with_setNextHop",
     "hand_written_ipv4FinalResolve_add", library_resolve, by_hand_resolve},
    {"add, 128-bit key", "p4_pd_tarvex_switch_ipv6Host_table_add_with_setNextHop", "hand_written_ipv6Host_add",
     library_ipv6_host, by_hand_ipv6_host},
    {"modify", "p4_pd_tarvex_switch_nextHop_table_modify_with_setNextHopDetails", "hand_written_nextHop_modify",
     library_modify, by_hand_modify},
    {"delete by key", "p4_pd_tarvex_switch_ipv4ShortMaskLpm_table_delete_by_match_spec",
     "hand_written_ipv4ShortMaskLpm_delete", library_delete, by_hand_delete},
    {"default action", "p4_pd_tarvex_switch_ipv4Partition_set_default_action_setIpv4PrtIdxEcmp",
     "hand_written_ipv4Partition_default", library_default, by_hand_default},
    {"indirect entry", "p4_pd_tarvex_switch_ecmpGroup_add_entry", "hand_written_ecmpGroup_add", library_indirect,
     by_hand_indirect},
    {"counter read", "p4_pd_tarvex_switch_counter_read_haloCount", "hand_written_haloCount_read", library_counter,
     by_hand_counter},
    {"read, exact key", "p4_pd_tarvex_switch_ipv4Host_get_entry", "hand_written_ipv4Host_get_entry", library_read_host,
     by_hand_read_host},
    {"read, 22 ternary fields", "p4_pd_tarvex_switch_finalDropControl_get_entry",
     "hand_written_finalDropControl_get_entry", library_read_drop, by_hand_read_drop},
};

void basket_start(void)
{
  basket_arguments(0);
  p4_pd_tarvex_switch_init();
  /* The library's own question tells which state is the profile's. */
  library_indirect();
  hand_written_start(null_driver_state);
}

void basket_arguments(unsigned n)
{
  static const uint32_t host_actions[] = {0x2000007b, 0x2000007e, 0x20000081, 0x20000084, 0x20000086};
  static const uint32_t drop_actions[] = {0x20000406, 0x20000408, 0x2000040b, 0x2000040e, 0x20000410};
  const uint32_t mixed = 0x9e3779b1u * (n + 1);
  const uint16_t prefix = (uint16_t)(n % 34); /* one of them too long */
  in.target = pd_dev_tgt(DEVICE, PD_ALL_PIPES) | 0xabcdull << 48;
  in.entry = mixed;
  in.host_action = host_actions[n % 5];
  in.drop_action = drop_actions[n % 5];
  in.ipv4_host.l3Info_vrfId = in.ipv6_host.l3Info_vrfId = (uint16_t)mixed;
  in.partition.l3Info_vrfId = in.short_mask.l3Info_vrfId = (uint16_t)~mixed;
  in.ipv4_host.ingIpv4_dip = in.partition.ingIpv4_dipAndVrf = mixed;
  in.resolve.ingIpv4_dip = in.short_mask.ingIpv4_dip = ~mixed;
  in.resolve.ingIpv4_fibPartitionIndex = (uint16_t)(mixed >> 7);
  in.partition.ingIpv4_dipAndVrf_prefix_length = in.resolve.ingIpv4_dip_prefix_length = prefix;
  in.short_mask.ingIpv4_dip_prefix_length = prefix;
  in.group.l3_ecmpGroup = (uint16_t)(mixed >> 3);
  in.next_hop.action_nextHop = mixed >> 5;
  in.partition_ecmp.action_partitionIndex = (uint16_t)mixed;
  in.partition_ecmp.action_ecmpGroup = (uint16_t)(mixed >> 16);
  in.details.action_dmacOui = mixed;
  in.details.action_dmacStation = ~mixed;
  in.details.action_domain = (uint16_t)(mixed >> 9);
  for (unsigned i = 0; i < 16; ++i) in.ipv6_host.ingIpv6_dip[i] = (uint8_t)(mixed >> i);
  unsigned char *const drop = (unsigned char *)&in.drop;
  for (size_t i = 0; i < sizeof in.drop; ++i) drop[i] = (unsigned char)(mixed >> (i % 24)) ^ (unsigned char)i;
}

int basket_same(const struct basket_call *c)
{
  static struct null_driver_call seen;
  static unsigned char outputs[sizeof out];
  null_driver_watches = 1;
  memset(&null_driver_seen, 0, sizeof null_driver_seen);
  memset(&out, 0xa5, sizeof out);
  c->call_by_hand();
  memcpy(outputs, &out, sizeof out);
  seen = null_driver_seen;
  memset(&out, 0xa5, sizeof out);
  c->call_library();
  null_driver_watches = 0;
  if (seen.function == NULL || memcmp(&seen, &null_driver_seen, sizeof seen) != 0)
    fprintf(stderr, "%s: the library's records are not those written by hand\n", c->what);
  else if (memcmp(outputs, &out, sizeof out) != 0)
    fprintf(stderr, "%s: the library's results are not those by hand\n", c->what);
  else
    return 1;
  return 0;
}
