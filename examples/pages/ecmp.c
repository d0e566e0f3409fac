/*
 * Spreads the packets of one route over four next hops, takes one of them down and up, and shows the group.
 *
 * SPDX-License-Identifier: Apache-2.0
 */
#include "page.h"

enum { paths = 4, ecmp_group = 9 };

static void show(pd_grp_hdl_t group, const pd_mbr_hdl_t *members)
{
  printf("group %u:", (unsigned)group);
  for (int i = 0; i < paths; ++i) {
    uint32_t state;
    must(p4_pd_tarvex_switch_ecmpMemberActionProfile_group_member_state_get(session, device, group, members[i], &state),
         "asking for a member's state");
    printf(" %u %s", (unsigned)members[i], state == P4_PD_GRP_MBR_STATE_ACTIVE ? "up" : "down");
  }
  printf("\n");
}

int main(void)
{
  begin();

  /* Members are actions with their parameters, here a next hop each; a group is a choice of them. */
  pd_grp_hdl_t group;
  pd_mbr_hdl_t members[paths];
  must(p4_pd_tarvex_switch_ecmpMemberActionProfile_create_group(session, all_pipes(), paths, &group),
       "creating the group");
  for (uint32_t i = 0; i < paths; ++i) {
    const p4_pd_tarvex_switch_setEcmpNextHop_action_spec_t next_hop = {.action_nextHop = 100 + i};
    must(p4_pd_tarvex_switch_ecmpMemberActionProfile_add_member_with_setEcmpNextHop(session, all_pipes(), &next_hop,
                                                                                    &members[i]),
         "adding a member");
    must(p4_pd_tarvex_switch_ecmpMemberActionProfile_add_member_to_group(session, device, group, members[i]),
         "adding the member to the group");
  }

  /* The indirect table's entry refers to the group, and the route to the entry. */
  const p4_pd_tarvex_switch_ecmpGroup_match_spec_t number = {.l3_ecmpGroup = ecmp_group};
  pd_entry_hdl_t entry;
  must(p4_pd_tarvex_switch_ecmpGroup_add_entry_with_selector(session, all_pipes(), &number, group, &entry),
       "adding the entry of the group");
  const p4_pd_tarvex_switch_ipv4Host_match_spec_t key = {.l3Info_vrfId = 1, .ingIpv4_dip = 0x0a000001};
  const p4_pd_tarvex_switch_setEcmp_action_spec_t action = {.action_ecmpGroup = ecmp_group};
  pd_entry_hdl_t route;
  must(p4_pd_tarvex_switch_ipv4Host_table_add_with_setEcmp(session, all_pipes(), &key, &action, 0, &route),
       "adding the route");
  show(group, members);

  /* A path that is down stays a member, and no packet takes it. */
  must(p4_pd_tarvex_switch_ecmpMemberActionProfile_group_member_state_set(session, device, group, members[1],
                                                                          P4_PD_GRP_MBR_STATE_INACTIVE),
       "taking a path down");
  show(group, members);
  must(p4_pd_tarvex_switch_ecmpMemberActionProfile_group_member_state_set(session, device, group, members[1],
                                                                          P4_PD_GRP_MBR_STATE_ACTIVE),
       "taking it up again");
  show(group, members);

  end();
  return 0;
}
