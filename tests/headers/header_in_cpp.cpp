// The umbrella header, alone and first, in a C++ program that works a profile and a callback.
//
// SPDX-License-Identifier: Apache-2.0
#include <tarvex_pd/tarvex_pd.h>

#include <tarvex_platform/driver.h>
#include <tarvex_standin/standin.h>

pd_status_t add_member_to_new_group(pd_sess_hdl_t session, pd_callback_t callback);

pd_status_t add_member_to_new_group(pd_sess_hdl_t session, pd_callback_t callback)
{
  p4_pd_tarvex_switch_setLagPort_action_spec_t action{};
  pd_mbr_hdl_t member = 0;
  pd_grp_hdl_t group = 0;
  const pd_dev_tgt_t target = pd_dev_tgt(0, PD_ALL_PIPES);
  p4_pd_tarvex_switch_lagPortActionProfile_register_callback(session, 0, callback, nullptr);
  p4_pd_tarvex_switch_lagPortActionProfile_add_member_with_setLagPort(session, target, &action, &member);
  p4_pd_tarvex_switch_lagPortActionProfile_create_group(session, target, 8, &group);
  return p4_pd_tarvex_switch_lagPortActionProfile_add_member_to_group(session, 0, group, member);
}
