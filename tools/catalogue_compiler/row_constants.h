// What the text rows of all tables and actions share: names of members, and live bits of wide ones. A row holds places
// in these instead of pointers.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <map>
#include <string>
#include <vector>

#include "generated_file.h"
#include "model.h"

namespace catalogue {

class row_constants {
 public:
  explicit row_constants(const model &m);

  std::size_t place_of_name(const std::string &name) const { return names_.at(name); }
  std::size_t place_of_live_bits(const field &f) const;

  /// Definitions, within namespace tarvex::pd.
  void define(generated_file &to) const;

 private:
  std::map<std::string, std::size_t> names_;
  std::vector<std::array<std::uint8_t, 16>> live_bits_;
};

}  // namespace catalogue
