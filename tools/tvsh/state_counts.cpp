// SPDX-License-Identifier: Apache-2.0
#include "state_counts.h"

#include "counted.h"

namespace tarvex::shell {

std::string state_counts::text() const
{
  std::string all;
  const auto add = [&all](const std::string &part) { all += (all.empty() ? "" : ", ") + part; };
  if (members != 0) add(counted(members, "member"));
  if (groups != 0) add(counted(groups, "group"));
  add(counted(entries, "entry", "entries"));
  if (defaults != 0) add(counted(defaults, "default entry", "default entries"));
  if (cells != 0) add(counted(cells, "cell"));
  if (settings != 0) add(counted(settings, "setting"));
  return all;
}

}  // namespace tarvex::shell
