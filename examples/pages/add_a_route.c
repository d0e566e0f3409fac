/*
 * Adds a host route, reads it back, points it elsewhere, and deletes it.
 *
 * SPDX-License-Identifier: Apache-2.0
 */
#include "page.h"

static void show(pd_entry_hdl_t entry)
{
  p4_pd_tarvex_switch_ipv4Host_match_spec_t key;
  p4_pd_tarvex_switch_setNextHop_action_spec_t action;
  char name[P4_PD_TARVEX_SWITCH_ACTION_NAME_SIZE];
  uint8_t no_key;
  must(p4_pd_tarvex_switch_ipv4Host_get_entry(session, device, entry, 0, &key, name, &action, NULL, &no_key),
       "reading the route");
  char address[IPV4_TEXT_SIZE];
  printf("entry %u: VRF %u, address %s -> %s, next hop %u\n", (unsigned)entry, key.l3Info_vrfId,
         ipv4_text(key.ingIpv4_dip, address), name, (unsigned)action.action_nextHop);
}

int main(void)
{
  begin();

  /* A key and an action are plain structures in host order: 10.0.0.1 in VRF 1 goes to next hop 7. */
  const p4_pd_tarvex_switch_ipv4Host_match_spec_t key = {.l3Info_vrfId = 1, .ingIpv4_dip = 0x0a000001};
  p4_pd_tarvex_switch_setNextHop_action_spec_t action = {.action_nextHop = 7};
  pd_entry_hdl_t entry;
  must(p4_pd_tarvex_switch_ipv4Host_table_add_with_setNextHop(session, all_pipes(), &key, &action, 0, &entry),
       "adding the route");
  show(entry);

  /* The same key a second time: the driver refuses, and the library hands its status through. */
  const pd_status_t again =
      p4_pd_tarvex_switch_ipv4Host_table_add_with_setNextHop(session, all_pipes(), &key, &action, 0, &entry);
  printf("the same key again: %s\n", standin_status_name(again));

  action.action_nextHop = 8;
  must(p4_pd_tarvex_switch_ipv4Host_table_modify_with_setNextHop_by_match_spec(session, all_pipes(), &key, &action),
       "changing the route");
  must(p4_pd_tarvex_switch_ipv4Host_match_spec_to_entry_hdl(session, all_pipes(), &key, &entry), "finding the route");
  show(entry);

  uint32_t count;
  must(p4_pd_tarvex_switch_ipv4Host_table_delete(session, device, entry), "deleting the route");
  must(p4_pd_tarvex_switch_ipv4Host_get_entry_count(session, all_pipes(), &count), "counting the routes");
  printf("deleted, %u left\n", (unsigned)count);

  end();
  return 0;
}
