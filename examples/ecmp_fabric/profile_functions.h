// The library's functions of one action profile, and of one action of its members. Their names hold the names of
// profile and action, so it takes macros to put them together.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <tarvex_pd/tarvex_pd.h>

namespace tarvex::examples {

struct profile_functions {
  const char *name;
  pd_status_t (*get_member)(pd_sess_hdl_t, pd_dev_id_t, pd_mbr_hdl_t, pd_flag8_t, plcmt_action_t *);
  pd_status_t (*del_member)(pd_sess_hdl_t, pd_dev_id_t, pd_mbr_hdl_t);
  pd_status_t (*get_member_count)(pd_sess_hdl_t, pd_dev_tgt_t, std::uint32_t *);
  pd_status_t (*get_first_member)(pd_sess_hdl_t, pd_dev_tgt_t, pd_mbr_hdl_t *);
  pd_status_t (*get_next_members)(pd_sess_hdl_t, pd_dev_tgt_t, pd_mbr_hdl_t, std::uint32_t, pd_mbr_hdl_t *);

  pd_status_t (*create_group)(pd_sess_hdl_t, pd_dev_tgt_t, std::uint32_t, pd_grp_hdl_t *);
  pd_status_t (*get_group_count)(pd_sess_hdl_t, pd_dev_tgt_t, std::uint32_t *);
  pd_status_t (*get_first_group)(pd_sess_hdl_t, pd_dev_tgt_t, pd_grp_hdl_t *);
  pd_status_t (*get_next_groups)(pd_sess_hdl_t, pd_dev_tgt_t, pd_grp_hdl_t, std::uint32_t, pd_grp_hdl_t *);

  pd_status_t (*add_member_to_group)(pd_sess_hdl_t, pd_dev_id_t, pd_grp_hdl_t, pd_mbr_hdl_t);
  pd_status_t (*del_member_from_group)(pd_sess_hdl_t, pd_dev_id_t, pd_grp_hdl_t, pd_mbr_hdl_t);
  pd_status_t (*group_member_state_set)(pd_sess_hdl_t, pd_dev_id_t, pd_grp_hdl_t, pd_mbr_hdl_t, std::uint32_t);
  pd_status_t (*group_member_state_get)(pd_sess_hdl_t, pd_dev_id_t, pd_grp_hdl_t, pd_mbr_hdl_t, std::uint32_t *);
  pd_status_t (*get_first_group_member)(pd_sess_hdl_t, pd_dev_id_t, pd_grp_hdl_t, pd_mbr_hdl_t *);
  pd_status_t (*get_next_group_members)(pd_sess_hdl_t, pd_dev_id_t, pd_grp_hdl_t, pd_mbr_hdl_t, std::uint32_t,
                                        pd_mbr_hdl_t *);
  pd_status_t (*set_fallback_member)(pd_sess_hdl_t, pd_dev_tgt_t, pd_mbr_hdl_t);
  pd_status_t (*reset_fallback_member)(pd_sess_hdl_t, pd_dev_tgt_t);
};

/// `Parameters` is the action's structure, or nothing.
template <typename... Parameters>
struct member_functions {
  const char *action;
  pd_status_t (*add)(pd_sess_hdl_t, pd_dev_tgt_t, const Parameters *..., pd_mbr_hdl_t *);
  pd_status_t (*modify)(pd_sess_hdl_t, pd_dev_id_t, pd_mbr_hdl_t, const Parameters *...);
};

}  // namespace tarvex::examples

#define PD_PROFILE(profile)                                                                                            \
  ::tarvex::examples::profile_functions                                                                                \
  {                                                                                                                    \
#profile, p4_pd_tarvex_switch_##profile##_get_member, p4_pd_tarvex_switch_##profile##_del_member,                  \
        p4_pd_tarvex_switch_##profile##_get_act_prof_entry_count, p4_pd_tarvex_switch_##profile##_get_first_member,    \
        p4_pd_tarvex_switch_##profile##_get_next_members, p4_pd_tarvex_switch_##profile##_create_group,                \
        p4_pd_tarvex_switch_##profile##_get_selector_group_count, p4_pd_tarvex_switch_##profile##_get_first_group,     \
        p4_pd_tarvex_switch_##profile##_get_next_groups, p4_pd_tarvex_switch_##profile##_add_member_to_group,          \
        p4_pd_tarvex_switch_##profile##_del_member_from_group, p4_pd_tarvex_switch_##profile##_group_member_state_set, \
        p4_pd_tarvex_switch_##profile##_group_member_state_get,                                                        \
        p4_pd_tarvex_switch_##profile##_get_first_group_member,                                                        \
        p4_pd_tarvex_switch_##profile##_get_next_group_members,                                                        \
        p4_pd_tarvex_switch_##profile##_set_dynamic_action_selection_fallback_member,                                  \
        p4_pd_tarvex_switch_##profile##_reset_dynamic_action_selection_fallback_member,                                \
  }

#define PD_MEMBER(profile, action)                                                            \
  {                                                                                           \
    "p4_pd_tarvex_switch_" #action, p4_pd_tarvex_switch_##profile##_add_member_with_##action, \
        p4_pd_tarvex_switch_##profile##_modify_member_with_##action                           \
  }
