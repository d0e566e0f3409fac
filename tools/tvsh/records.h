// Memory for the structures of the interface.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstdint>

namespace tarvex::shell {

/// Room for the key or the parameters of any table and action, zeroed.
struct record_memory {
  alignas(8) std::array<std::uint8_t, 256> bytes{};

  std::uint8_t *data() { return bytes.data(); }
  const std::uint8_t *data() const { return bytes.data(); }
};

}  // namespace tarvex::shell
