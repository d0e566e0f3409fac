// How entries age.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "device.h"

namespace tarvex::standin {

/// Whether an entry of the table can have the ttl: 0 alone without idle time, else what the table's setting allows.
inline pd_status_t check_ttl(const match_table &table, std::uint32_t ttl)
{
  if (!table.row().idle_time) return require(ttl == 0, STANDIN_NOT_ENABLED);
  return require(table.idle.largest_ttl == 0 || ttl <= table.idle.largest_ttl, STANDIN_BAD_ARGUMENT);
}

/// A packet hits an entry of a table with idle time.
inline void hit(entry_view entry)
{
  entry.head().hit = 1;
  entry.idle().left = entry.idle().ttl;
}

/// Lets time pass for a table, leaving callbacks for entries whose ttl runs out.
void age(device &dev, match_table &table, std::uint32_t milliseconds);

}  // namespace tarvex::standin
