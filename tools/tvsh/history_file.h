// Where the prompt keeps what was typed.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

namespace tarvex::shell {

/// tvsh/history in the user's state folder, made with mode 0600 where it is not there; empty where it cannot be.
std::string history_file();

}  // namespace tarvex::shell
