// Organisationally unique identifiers: the first halves of MAC addresses.
//
// SPDX-License-Identifier: Apache-2.0
#include "oui_list.h"

#include <charconv>
#include <fstream>
#include <istream>
#include <string_view>

#include "station.h"

namespace tarvex::l2_learning {
namespace {

constexpr char registry_file[] = "/usr/share/ieee-data/oui.csv";

std::vector<std::uint32_t> local_ouis()
{
  constexpr std::uint32_t locally_administered = 0x020000, count = 256;
  std::vector<std::uint32_t> ouis;
  for (std::uint32_t i = 0; i < count; ++i) ouis.push_back(locally_administered | i * 0x0101);
  return ouis;
}

}  // namespace

std::vector<std::uint32_t> read_ouis(std::istream &file)
{
  constexpr std::string_view mark = "MA-L,";
  constexpr std::size_t digits = 6;
  std::vector<std::uint32_t> ouis;
  for (std::string line; std::getline(file, line);) {
    if (!line.starts_with(mark) || line.size() <= mark.size() + digits || line[mark.size() + digits] != ',') continue;
    const char *const begin = line.data() + mark.size();
    std::uint32_t oui = 0;
    const auto [end, error] = std::from_chars(begin, begin + digits, oui, 16);
    if (error == std::errc() && end == begin + digits && (oui & group_bit) == 0) ouis.push_back(oui);
  }
  return ouis;
}

oui_list find_ouis()
{
  std::ifstream file(registry_file);
  if (auto ouis = read_ouis(file); !ouis.empty()) return {std::move(ouis), registry_file};
  return {local_ouis(), "local administration"};
}

}  // namespace tarvex::l2_learning
