// How entries age.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>

#include "device.h"

namespace tarvex::standin {

/// Whether an entry of the table can have the ttl: 0 alone without idle time, else what the table's setting allows.
inline pd_status_t check_ttl(const match_table &table, std::uint32_t ttl)
{
  if (!table.row().idle_time) return require(ttl == 0, STANDIN_NOT_ENABLED);
  return require(table.idle.largest_ttl == 0 || ttl <= table.idle.largest_ttl, STANDIN_BAD_ARGUMENT);
}

/// Starts an entry's ttl anew. The time that waits for the next ageing is not the entry's, so it is added beforehand.
inline void start_ttl(const match_table &table, entry_view entry, std::uint32_t ttl)
{
  const std::uint32_t waiting = ttl == 0 ? 0 : table.idle.waiting;
  entry.idle() = {ttl, ttl + std::min(waiting, 0xffffffff - ttl)};
}

/// What is left of it now, though the entry may not have been aged yet.
inline std::uint32_t ttl_left(const match_table &table, entry_view entry)
{
  return entry.idle().left - std::min(entry.idle().left, table.idle.waiting);
}

/// A packet hits an entry of a table with idle time.
inline void hit(const match_table &table, entry_view entry)
{
  entry.head().hit = 1;
  start_ttl(table, entry, entry.idle().ttl);
}

/// Lets time pass for a table, leaving callbacks for entries whose ttl runs out.
void age(device &dev, match_table &table, std::uint32_t milliseconds);

}  // namespace tarvex::standin
