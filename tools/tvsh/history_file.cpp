// The state folder is XDG_STATE_HOME, or ~/.local/state.
//
// SPDX-License-Identifier: Apache-2.0
#include "history_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

namespace tarvex::shell {

std::string history_file()
{
  const char *const state = std::getenv("XDG_STATE_HOME");
  const char *const home = std::getenv("HOME");
  std::filesystem::path folder;
  if (state != nullptr && *state == '/') {
    folder = state;
  } else if (home != nullptr && *home == '/') {
    folder = std::filesystem::path(home) / ".local" / "state";
  } else {
    return {};
  }
  folder /= "tvsh";
  std::error_code failed;
  std::filesystem::create_directories(folder, failed);
  const std::string file = folder / "history";
  // Made ahead of the one who writes it, so that it is never open to others.
  const int descriptor = open(file.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR);
  if (descriptor < 0) return {};
  fchmod(descriptor, S_IRUSR | S_IWUSR);
  close(descriptor);
  return file;
}

}  // namespace tarvex::shell
