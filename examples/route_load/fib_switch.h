// What loading and checking routes needs of a switch.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "exit_status.h"
#include "fib_entries.h"
#include "lookup_key.h"

#include <optional>
#include <string>
#include <vector>

namespace tarvex::route_load {

using examples::driver_refused;

using entry_handle = std::uint32_t;

/// Every function throws driver_refused.
class fib_switch {
 public:
  virtual ~fib_switch() = default;

  virtual entry_handle add(const fib_entry &entry) = 0;

  /// Handles of all entries of the table, by walking it.
  virtual std::vector<entry_handle> walk(fib_table table) = 0;

  virtual fib_entry read(fib_table table, entry_handle handle) = 0;

  /// Whether the entry reads back as `expected` in every byte of its key and its parameters, and is found by that key:
  /// a mask with holes reads back as a prefix length.
  virtual bool reads_back_as(const fib_entry &expected, entry_handle handle) = 0;

  /// The entry that a packet of this key hits.
  virtual std::optional<entry_handle> lookup(fib_table table, const lookup_key &key) = 0;
};

}  // namespace tarvex::route_load
