// SPDX-License-Identifier: Apache-2.0
#include "text_rows.h"

#include "profile_texts.h"

namespace tarvex::pd {

const profile_text *find_profile_text(std::uint32_t adt_hdl)
{
  for (const profile_text *profile : profile_texts)
    if (profile->handle == adt_hdl) return profile;
  return nullptr;
}

const action_text *find_action_text(const action_text *const *actions, std::size_t count, std::uint32_t action)
{
  if (action >= action_count) return nullptr;
  for (std::size_t i = 0; i < count; ++i)
    if (actions[i] == action_texts[action]) return actions[i];
  return nullptr;
}

}  // namespace tarvex::pd
