// The names that come nearest to a mistyped one.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tarvex::shell {

/// At most three, the nearest first; none where nothing is near.
std::vector<std::string_view> nearest(std::string_view wanted, std::span<const std::string_view> names);

/// "there is no table 'ipv4host'; did you mean ipv4Host or ipv6Host?", or all of the names where none is near and they
/// are few.
std::string no_such(std::string_view what, std::string_view wanted, std::span<const std::string_view> names);

}  // namespace tarvex::shell
