/*
 * A control plane that is started again while the switch goes on forwarding: what the library knows of members and
 * groups comes back by the driver's replay of its tables.
 *
 * SPDX-License-Identifier: Apache-2.0
 */
#include "page.h"

/** Points a number at the group: the library has to know the group's action for it. */
static pd_status_t point(uint16_t number, pd_grp_hdl_t group)
{
  const p4_pd_tarvex_switch_ecmpGroup_match_spec_t key = {.l3_ecmpGroup = number};
  pd_entry_hdl_t entry;
  return p4_pd_tarvex_switch_ecmpGroup_add_entry_with_selector(session, all_pipes(), &key, group, &entry);
}

static uint32_t entries(void)
{
  uint32_t count;
  must(p4_pd_tarvex_switch_ecmpGroup_get_entry_count(session, all_pipes(), &count), "counting the entries");
  return count;
}

int main(void)
{
  begin();

  const p4_pd_tarvex_switch_setEcmpNextHop_action_spec_t next_hop = {.action_nextHop = 7};
  pd_grp_hdl_t group;
  pd_mbr_hdl_t member;
  must(p4_pd_tarvex_switch_ecmpMemberActionProfile_create_group(session, all_pipes(), 16, &group), "creating a group");
  must(p4_pd_tarvex_switch_ecmpMemberActionProfile_add_member_with_setEcmpNextHop(session, all_pipes(), &next_hop,
                                                                                  &member),
       "adding a member");
  must(p4_pd_tarvex_switch_ecmpMemberActionProfile_add_member_to_group(session, device, group, member),
       "adding it to the group");
  must(point(1, group), "adding an entry");
  printf("built: %u entry refers to the group\n", (unsigned)entries());

  /* The library loses all that it knows of the device; the switch loses nothing. */
  must(p4_pd_tarvex_switch_dev_remove(device), "forgetting the device");
  const pd_status_t status = point(2, group);
  printf(
      "restarted: the library knows no group yet, so a new entry is refused, as it should be (%s);\n"
      "           the switch forwards by its %u entry all the while\n",
      standin_status_name(status), (unsigned)entries());

  /* The driver reports every member, group and membership, and the library notes them. */
  must(p4_pd_tarvex_switch_restore_virtual_dev_state(session, device, 0, 0, 0), "restoring");
  must(point(2, group), "adding an entry after the restart");
  printf("restored: a new entry is accepted, and %u entries refer to the group\n", (unsigned)entries());

  end();
  return 0;
}
