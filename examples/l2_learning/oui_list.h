// Organisationally unique identifiers: the first halves of MAC addresses.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <iosfwd>
#include <string>
#include <vector>

namespace tarvex::l2_learning {

struct oui_list {
  std::vector<std::uint32_t> ouis;
  std::string origin;
};

/// The assignments of a registry file: lines that begin "MA-L,", six hexadecimal digits and a comma. Whatever else is
/// there is passed over, identifiers of group addresses too.
std::vector<std::uint32_t> read_ouis(std::istream &file);

/// The identifiers of the registry file that Debian's ieee-data installs, or some of local administration where it is
/// not installed.
oui_list find_ouis();

}  // namespace tarvex::l2_learning
