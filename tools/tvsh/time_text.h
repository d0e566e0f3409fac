// Points of time as text.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <chrono>
#include <string>

namespace tarvex::shell {

/// "2024-02-29T12:00:00.125Z"
std::string time_text(std::chrono::system_clock::time_point time);

}  // namespace tarvex::shell
