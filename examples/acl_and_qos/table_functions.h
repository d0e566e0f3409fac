// The library's functions of one table, and of one action in it. Their names hold the names of table and action, so it
// takes macros to put them together: PD_ACTION(trapToCpu, noOp) has p4_pd_tarvex_switch_trapToCpu_table_add_with_noOp.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <tarvex_pd/tarvex_pd.h>

namespace tarvex::examples {

/// `Priority` is std::uint32_t for a ternary table and nothing for an exact one.
template <typename Key, typename... Priority>
struct table_functions {
  const char *name;
  pd_status_t (*get_mat_table_handle)(std::uint32_t *);
  pd_status_t (*match_spec_to_entry_hdl)(pd_sess_hdl_t, pd_dev_tgt_t, const Key *, Priority..., pd_entry_hdl_t *);
  pd_status_t (*table_delete)(pd_sess_hdl_t, pd_dev_id_t, pd_entry_hdl_t);
  pd_status_t (*table_delete_by_match_spec)(pd_sess_hdl_t, pd_dev_tgt_t, const Key *, Priority...);
  pd_status_t (*get_entry)(pd_sess_hdl_t, pd_dev_id_t, pd_entry_hdl_t, pd_flag8_t, Key *, Priority *..., char *, void *,
                           std::uint32_t *, std::uint8_t *);
  pd_status_t (*get_entry_count)(pd_sess_hdl_t, pd_dev_tgt_t, std::uint32_t *);
  pd_status_t (*get_first_entry_handle)(pd_sess_hdl_t, pd_dev_tgt_t, pd_entry_hdl_t *);
  pd_status_t (*get_next_entry_handles)(pd_sess_hdl_t, pd_dev_tgt_t, pd_entry_hdl_t, std::uint32_t, pd_entry_hdl_t *);
  pd_status_t (*get_default_entry_handle)(pd_sess_hdl_t, pd_dev_tgt_t, pd_entry_hdl_t *);
  pd_status_t (*reset_default_entry)(pd_sess_hdl_t, pd_dev_tgt_t);
};

template <typename Add, typename Modify, typename ModifyByKey>
struct action_functions {
  const char *name;
  Add add;
  Modify modify;
  ModifyByKey modify_by_key;
};

template <typename SetDefault>
struct default_function {
  const char *action;
  SetDefault set;
};

}  // namespace tarvex::examples

#define PD_TABLE(table, ...)                                                                                           \
  ::tarvex::examples::table_functions<p4_pd_tarvex_switch_##table##_match_spec_t __VA_OPT__(, ) __VA_ARGS__>           \
  {                                                                                                                    \
#table, p4_pd_tarvex_switch_##table##_get_mat_table_handle, p4_pd_tarvex_switch_##table##_match_spec_to_entry_hdl, \
        p4_pd_tarvex_switch_##table##_table_delete, p4_pd_tarvex_switch_##table##_table_delete_by_match_spec,          \
        p4_pd_tarvex_switch_##table##_get_entry, p4_pd_tarvex_switch_##table##_get_entry_count,                        \
        p4_pd_tarvex_switch_##table##_get_first_entry_handle, p4_pd_tarvex_switch_##table##_get_next_entry_handles,    \
        p4_pd_tarvex_switch_##table##_table_get_default_entry_handle,                                                  \
        p4_pd_tarvex_switch_##table##_table_reset_default_entry                                                        \
  }

#define PD_EXACT_TABLE(table) PD_TABLE(table)
#define PD_TERNARY_TABLE(table) PD_TABLE(table, std::uint32_t)

#define PD_ACTION(table, action)                                                           \
  ::tarvex::examples::action_functions                                                     \
  {                                                                                        \
    "p4_pd_tarvex_switch_" #action, p4_pd_tarvex_switch_##table##_table_add_with_##action, \
        p4_pd_tarvex_switch_##table##_table_modify_with_##action,                          \
        p4_pd_tarvex_switch_##table##_table_modify_with_##action##_by_match_spec           \
  }

#define PD_DEFAULT(table, action)                                                             \
  ::tarvex::examples::default_function                                                        \
  {                                                                                           \
    "p4_pd_tarvex_switch_" #action, p4_pd_tarvex_switch_##table##_set_default_action_##action \
  }
