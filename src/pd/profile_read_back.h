// Reads members of an action profile back, counts and walks members and groups, and gives out the tables' handles.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "action_marshalling.h"
#include "call_conventions.h"
#include "profile_states.h"
#include "tarvex_pd/actions.h"

namespace tarvex::pd {

/// Resources recorded for a member; the list stays the service's.
struct member_resources {
  pd_res_spec_t *list = nullptr;
  std::uint32_t count = 0;
};

template <const profile_row &P>
inline member_resources resources_of_member(std::uint32_t device, pd_mbr_hdl_t mbr_hdl)
{
  member_resources found;
  p4_pd_ms_mbr_get_res(state_of<P>(), device, mbr_hdl, &found.count, &found.list);
  return found;
}

/// Delivers one use if the handle names it. Resources are asked for only where an action has parameters to take them.
template <const action_use_row &U, class Ask>
inline bool deliver_member_if(std::uint32_t act_hdl, const drv_act_data_t &data, plcmt_action_t *action, Ask &ask)
{
  constexpr const action_row &a = *U.action;
  if (act_hdl != U.handle) return false;
  action->action = a.enum_value;
  if constexpr (a.param_count > 0) {
    const member_resources resources = ask();
    unbuild_action<a>(&data, resources.list, resources.count, action->parameters);
  }
  return true;
}

template <const profile_row &P, class Ask>
inline void deliver_member(const char *function, std::uint32_t act_hdl, const drv_act_data_t &data,
                           plcmt_action_t *action, Ask ask)
{
  const bool known = [&]<std::size_t... I>(std::index_sequence<I...>)
  {
    return (deliver_member_if<*P.actions[I]>(act_hdl, data, action, ask) || ...);
  }
  (std::make_index_sequence<P.action_count>{});
  if (!known) stop_on_broken_reply(function);
}

template <const profile_row &P>
inline pd_status_t get_member(const char *function, pd_sess_hdl_t, pd_dev_id_t dev_id, pd_mbr_hdl_t mbr_hdl,
                              pd_flag8_t read_from_hw, plcmt_action_t *action)
{
  std::uint8_t bytes[read_data_bytes]{};
  drv_act_data_t data{};
  data.data_bytes = read_data_bytes;
  data.data = bytes;
  std::uint32_t act_hdl = 0;
  const pd_status_t status = pipe_mgr_get_action_data_entry(P.action_data_table, low_byte(dev_id), mbr_hdl, &data,
                                                            &act_hdl, low_byte(read_from_hw));
  if (status != BF_SUCCESS) return status;
  if (data.data == nullptr) data.data = bytes;
  deliver_member<P>(function, act_hdl, data, action, [&] { return resources_of_member<P>(low_byte(dev_id), mbr_hdl); });
  return BF_SUCCESS;
}

template <const profile_row &P, class Ask>
inline pd_status_t member_from_placement(const char *function, const void *plcmt_data, plcmt_action_t *action, Ask ask)
{
  std::uint8_t bytes[read_data_bytes]{};
  drv_act_data_t data{};
  data.data = bytes;
  std::uint32_t act_hdl = 0;
  const pd_status_t status = pipe_mgr_plcmt_adt_data_get_entry(plcmt_data, &data, &act_hdl);
  if (status != BF_SUCCESS) return status;
  if (data.data == nullptr) data.data = bytes;
  deliver_member<P>(function, act_hdl, data, action, ask);
  return BF_SUCCESS;
}

template <const profile_row &P>
inline pd_status_t get_member_from_plcmt_data(const char *function, const void *plcmt_data, plcmt_action_t *action)
{
  return member_from_placement<P>(function, plcmt_data, action, [] { return member_resources{}; });
}

/// Works without a started library too: then nobody knows the member's resources.
template <const profile_row &P>
inline pd_status_t get_full_member_info_from_plcmt_data(const char *function, pd_dev_id_t dev_id, pd_mbr_hdl_t mbr_hdl,
                                                        const void *plcmt_data, plcmt_action_t *action)
{
  return member_from_placement<P>(function, plcmt_data, action, [&] {
    return state_of<P>() == nullptr ? member_resources{} : resources_of_member<P>(low_byte(dev_id), mbr_hdl);
  });
}

/// Which of a profile's two tables an operation walks or counts.
enum class profile_table { action_data, selector };

template <const profile_row &P, profile_table Which>
constexpr std::uint32_t profile_table_handle()
{
  return Which == profile_table::action_data ? P.action_data_table : P.selector_table;
}

template <const profile_row &P, profile_table Which>
inline pd_status_t get_profile_count(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, std::uint32_t *count)
{
  return pipe_mgr_get_entry_count(sess_hdl, whole_target(dev_tgt), profile_table_handle<P, Which>(), 0, count);
}

template <const profile_row &P, profile_table Which>
inline pd_status_t get_first_of_profile(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, std::uint32_t *hdl)
{
  return pipe_mgr_get_first_entry_handle(sess_hdl, profile_table_handle<P, Which>(), whole_target(dev_tgt), hdl);
}

template <const profile_row &P, profile_table Which>
inline pd_status_t get_next_of_profile(pd_sess_hdl_t sess_hdl, pd_dev_tgt_t dev_tgt, std::uint32_t hdl, std::uint32_t n,
                                       std::uint32_t *next_hdls)
{
  return pipe_mgr_get_next_entry_handles(sess_hdl, profile_table_handle<P, Which>(), whole_target(dev_tgt), hdl, n,
                                         next_hdls);
}

template <const profile_row &P>
inline pd_status_t get_first_group_member(pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id, pd_grp_hdl_t grp_hdl,
                                          pd_mbr_hdl_t *mbr_hdl)
{
  return pipe_mgr_get_first_group_member(sess_hdl, P.selector_table, low_byte(dev_id), grp_hdl, mbr_hdl);
}

template <const profile_row &P>
inline pd_status_t get_next_group_members(pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id, pd_grp_hdl_t grp_hdl,
                                          pd_mbr_hdl_t mbr_hdl, std::uint32_t n, pd_mbr_hdl_t *next_hdls)
{
  return pipe_mgr_get_next_group_members(sess_hdl, P.selector_table, low_byte(dev_id), grp_hdl, mbr_hdl, n, next_hdls);
}

/// The device goes through with all its 32 bits.
template <const profile_row &P, profile_table Which>
inline pd_status_t register_profile_update_cb(pd_sess_hdl_t sess_hdl, std::uint32_t dev_id, pd_callback_t cb,
                                              void *cookie)
{
  if constexpr (Which == profile_table::action_data)
    return pipe_register_adt_update_cb(sess_hdl, dev_id, P.action_data_table, cb, cookie);
  else
    return pipe_register_sel_update_cb(sess_hdl, dev_id, P.selector_table, cb, cookie);
}

template <const profile_row &P, profile_table Which>
inline pd_status_t get_profile_table_handle(std::uint32_t *tbl_hdl)
{
  if (tbl_hdl != nullptr) *tbl_hdl = profile_table_handle<P, Which>();
  return BF_SUCCESS;
}

}  // namespace tarvex::pd
