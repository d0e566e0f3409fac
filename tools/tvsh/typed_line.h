// Lines typed at the prompt: what a terminal, an editor or a pasted text put into them that cannot be seen.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

namespace tarvex::shell {

/// What is wrong with a line, with a pointer to its first character that is not ASCII; empty where nothing is. A
/// no-break space looks like a blank and would become a part of a word. Within quotes and comments such characters are
/// meant.
std::string character_fault(std::string_view line);

}  // namespace tarvex::shell
