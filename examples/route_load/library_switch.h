// A device of the stand-in switch, programmed and read through the library, and looked up in directly.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "fib_switch.h"

namespace tarvex::route_load {

/// The device lives as long as the object; there can be one at a time.
class library_switch final : public fib_switch {
 public:
  library_switch();
  library_switch(const library_switch &) = delete;
  library_switch &operator=(const library_switch &) = delete;
  ~library_switch() override;

  entry_handle add(const fib_entry &entry) override;
  std::vector<entry_handle> walk(fib_table table) override;
  fib_entry read(fib_table table, entry_handle handle) override;
  bool reads_back_as(const fib_entry &expected, entry_handle handle) override;
  std::optional<entry_handle> lookup(fib_table table, const lookup_key &key) override;
};

}  // namespace tarvex::route_load
