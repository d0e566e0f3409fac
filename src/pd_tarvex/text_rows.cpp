// SPDX-License-Identifier: Apache-2.0
#include "text_rows.h"

namespace tarvex::pd {

const profile_text *find_profile_text(std::uint32_t adt_hdl)
{
  for (const profile_text *profile : profile_texts)
    if (profile->handle == adt_hdl) return profile;
  return nullptr;
}

}  // namespace tarvex::pd
