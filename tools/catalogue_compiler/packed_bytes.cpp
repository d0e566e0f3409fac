// Checks of values in whole bytes.
//
// SPDX-License-Identifier: Apache-2.0
#include "packed_bytes.h"

#include <algorithm>

namespace catalogue {

namespace {

struct display_width {
  std::string_view display;
  unsigned bits;
};

/// Display kinds that are made for one width. A MAC address is shown by halves.
constexpr display_width display_widths[] = {{"mac", 24}, {"v4addr", 32}, {"v6addr", 128}};

}  // namespace

void packed_bytes::check_width(const subject &s, unsigned bits, storage type, const std::string &display) const
{
  const std::string width = std::to_string(bits) + " bits";
  if (bits == 0 || (bits > 32 && bits != 128)) {
    s.error("bits", "'bits' is " + std::to_string(bits) + "; it must be 1 to 32, or 128 for an address");
  } else if (const unsigned room = 8 * storage_size(type); bits > room) {
    s.error("type", "'type' holds " + std::to_string(room) + " bits, too few for " + width);
  } else if (type == storage::bytes16 && bits != 128) {
    s.error("type", "'type' is for an address of 128 bits, not for " + width);
  }
  const auto made_for = std::find_if(std::begin(display_widths), std::end(display_widths),
                                     [&](const display_width &d) { return d.display == display; });
  if (made_for != std::end(display_widths) && made_for->bits != bits) {
    s.error("display", "'" + display + "' shows " + std::to_string(made_for->bits) + " bits, not " + width);
  }
}

void packed_bytes::place(const subject &s, unsigned bits, const byte_range &range)
{
  const unsigned needed = (bits + 7) / 8;
  const unsigned first = range.partition ? next_ : range.first;
  if (first != next_) {
    s.error(range_key_, std::string(first > next_ ? "a gap" : "an overlap") + ": it starts at byte " +
                            std::to_string(first) + ", but " + std::to_string(next_) + " is the next free one");
  } else if (range.count != needed) {
    s.error(range_key_, "it has " + std::to_string(range.count) + " bytes, but " + std::to_string(bits) +
                            " bits take " + std::to_string(needed));
  }
  // The next value is measured against this one as it stands, so that one slip is one error.
  next_ = first + range.count;
  bits_ += bits;
  bytes_ += needed;
}

void check_sum(const subject &s, std::string_view key, unsigned stated, unsigned found, std::string_view rows)
{
  if (stated == found) return;
  s.error(key, "'" + std::string(key) + "' is " + std::to_string(stated) + ", but the " + std::string(rows) + " make " +
                   std::to_string(found));
}

}  // namespace catalogue
