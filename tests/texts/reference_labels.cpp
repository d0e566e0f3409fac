// Counter labels, piece by piece.
//
// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cstring>

#include "reference.h"

namespace tarvex::test {

namespace {

using word = std::uint32_t;
using piece = label_piece;

/// The whole member of a record, its dead bits included.
record member(const std::vector<text_row> &rows, const record &key, const std::string &name)
{
  const text_row &row = *std::ranges::find(rows, name, &text_row::name);
  const auto from = key.begin() + static_cast<std::ptrdiff_t>(row.member);
  return {from, from + static_cast<std::ptrdiff_t>(row.size)};
}

word number(const record &bytes)
{
  word value = 0;
  std::memcpy(&value, bytes.data(), std::min(bytes.size(), sizeof value));
  return value;
}

}  // namespace

std::map<std::string, std::vector<label_piece>> &told_labels()
{
  static std::map<std::string, std::vector<label_piece>> told;
  return told;
}

std::string counter_label(const calls::table_info &table, const record &key)
{
  const auto rows = rows_of(table);
  std::string label;
  for (const piece &piece : told_labels().at(table.name)) {
    const record field = member(rows, key, piece.field);
    const word value = number(field) & piece.cut;
    if (piece.when == piece::address) {
      label += piece.format;
      const record mask = member(rows, key, std::string(piece.field) + "_mask");
      for (std::size_t i = 0; i < field.size(); ++i) label += formatted("%02x", field[i] & mask[i]);
      label += " ";
    } else if (piece.when == piece::flag) {
      if ((value & number(member(rows, key, std::string(piece.field) + "_mask"))) != 0) label += piece.format;
    } else if (piece.when == piece::always || piece.wanted(value)) {
      // Where a piece has no number, formatted output is given one too many, which it does not mind.
      label += formatted(piece.format, value);
    }
  }
  return label;
}

}  // namespace tarvex::test
