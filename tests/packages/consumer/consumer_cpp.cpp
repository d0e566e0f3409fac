// A user's program in C++: an entry with a mask, and a refusal.
//
// SPDX-License-Identifier: Apache-2.0
#include <tarvex_pd/tarvex_pd.h>
#include <tarvex_standin/standin.h>

#include <iostream>

int main()
{
  if (standin_device_add(0) != BF_SUCCESS || p4_pd_tarvex_switch_init() != BF_SUCCESS) return 1;
  const p4_pd_tarvex_switch_l2SmacCheck_match_spec_t key{.outerEthHdr_smacOui = 0x001c73,
                                                         .outerEthHdr_smacOui_mask = 0xffffff,
                                                         .outerEthHdr_smacStation = 0,
                                                         .outerEthHdr_smacStation_mask = 0};
  for (int time = 0; time < 2; ++time) {
    pd_entry_hdl_t entry = 0;
    const pd_status_t status =
        p4_pd_tarvex_switch_l2SmacCheck_table_add_with_setIllegalSmac(1, pd_dev_tgt(0, PD_ALL_PIPES), &key, 10, &entry);
    std::cout << "C++: " << standin_status_name(status) << '\n';
  }
  return p4_pd_tarvex_switch_cleanup() != BF_SUCCESS ? 1 : 0;
}
