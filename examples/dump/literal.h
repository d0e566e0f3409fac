// Reads the literals in which a switch's tables describe themselves: tuples, strings, numbers, None, True and False.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace tarvex::examples {

/// A text that is no literal, or not the one that was wanted.
struct literal_error : std::runtime_error {
  using std::runtime_error::runtime_error;
};

struct literal {
  enum class kind { none, truth, number, string, tuple };

  kind is = kind::none;
  bool truth = false;
  std::string text;            // of a string; a number as it is written, without its suffix
  std::vector<literal> items;  // of a tuple

  // All throw literal_error for a literal of another kind.
  const std::vector<literal> &tuple() const;
  const std::vector<literal> &tuple_of(std::size_t count) const;
  const std::string &string() const;
  /// Hexadecimal digits of a number without leading zeros, "0" for 0.
  std::string digits() const;
  /// The number where it has no more than 64 bits.
  std::uint64_t number() const;
};

/// A pair of parentheses around a single literal without a comma adds nothing.
literal parse_literal(std::string_view text);

}  // namespace tarvex::examples
