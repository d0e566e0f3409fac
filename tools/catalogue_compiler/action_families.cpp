// Families over actions, whatever tables use them.
//
// SPDX-License-Identifier: Apache-2.0
#include "family_builder.h"

namespace catalogue {

void add_action_families(std::vector<exported_function> &to, const action &a)
{
  if (a.params.empty()) return;
  to.push_back(
      function_builder("unbuild_action_spec", "unbuild_action_spec_" + a.name)
          .action_row(a)
          .brief("Turns action data of " + a.name + " into its parameter structure.")
          .details(a.index_resources.empty()
                       ? ""
                       : "The resource index comes from the list, not from the data: 0xffffffff with an empty list, 0 "
                         "with a list of other resources only, else the index of the last element that has the "
                         "action's resource.")
          .result(result_kind::none, {})
          .calls("unbuild_action", {{"drv_act_data"}, {"res_list"}, {"res_count"}, {"action_spec_out"}}));
}

}  // namespace catalogue
