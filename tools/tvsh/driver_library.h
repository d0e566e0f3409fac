// Another driver than the stand-in switch under the program.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

namespace tarvex::shell {

/// Sees to it that this process has the shared library as its driver: looks whether it defines all that is asked of a
/// driver, and starts the program anew with it loaded ahead of the stand-in, but behind the tracing library. In the
/// program that was started so, it returns. Throws file_error, with the names of what is missing.
void drive_by(const std::string &library, char **arguments);

}  // namespace tarvex::shell
