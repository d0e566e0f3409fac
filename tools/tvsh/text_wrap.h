// Text in lines that a terminal of the usual width shows whole.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

namespace tarvex::shell {

inline constexpr std::size_t page_width = 80;

/// Words in lines of at most so many columns, all but the first begun with blanks. Line ends of the text are blanks; a
/// word that is longer than a line has one of its own. The blanks that the text begins with stay.
std::string wrapped(std::string_view text, std::size_t indent = 0, std::size_t width = page_width);

}  // namespace tarvex::shell
