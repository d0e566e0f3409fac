// The dynamic linker puts the driver in its place: what LD_PRELOAD names comes ahead of the program's own libraries.
//
// SPDX-License-Identifier: Apache-2.0
#include "driver_library.h"

#include <dlfcn.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <system_error>

#include "driver_functions.h"
#include "shell_error.h"

namespace tarvex::shell {

namespace {

constexpr const char *preload = "LD_PRELOAD";
constexpr const char *kept_preload = "TVSH_LD_PRELOAD";  // its value ahead of the second start

struct library_closer {
  void operator()(void *handle) const { dlclose(handle); }
};
using open_library = std::unique_ptr<void, library_closer>;

/// A driver may lack nothing: the stand-in behind it would answer in its place.
void check(const std::string &path)
{
  const open_library opened(dlopen(path.c_str(), RTLD_LAZY | RTLD_LOCAL));
  if (!opened) throw file_error(std::string("the driver cannot be loaded: ") + dlerror());
  std::string missing;
  for (const std::string_view name : names_of(driver::driver_functions{})) {
    if (dlsym(opened.get(), name.data()) == nullptr) (missing += missing.empty() ? "" : ", ") += name;
  }
  if (!missing.empty()) throw file_error(path + ": is no whole driver; it lacks " + missing);
}

std::string path_of(const std::string &library)
{
  std::error_code failed;
  const std::string path = std::filesystem::canonical(library, failed);
  if (failed) throw file_error(library + ": " + failed.message());
  if (path.find_first_of(" \t:") != std::string::npos) {
    throw file_error(path + ": the dynamic linker takes no path with blanks or colons; copy the driver elsewhere");
  }
  return path;
}

/// Of the tracing library, where it is in this process; else empty.
std::string tracing_library()
{
  Dl_info found{};
  const void *const control = dlsym(RTLD_DEFAULT, "tarvex_trace_next");
  if (control == nullptr || dladdr(control, &found) == 0 || found.dli_fname == nullptr) return {};
  return std::string(found.dli_fname) + ':';
}

const char *value_of(const char *variable)
{
  const char *const value = std::getenv(variable);
  return value != nullptr ? value : "";
}

}  // namespace

void drive_by(const std::string &library, char **arguments)
{
  const std::string path = path_of(library);
  if (const char *const before = std::getenv(kept_preload)) {
    const open_library loaded(dlopen(path.c_str(), RTLD_LAZY | RTLD_NOLOAD));
    if (!loaded) throw file_error(path + ": the dynamic linker did not load the driver ahead of the program");
    // What this process starts has no use for the driver.
    *before == 0 ? unsetenv(preload) : setenv(preload, before, 1);
    unsetenv(kept_preload);
    return;
  }
  check(path);
  const std::string before = value_of(preload);
  setenv(kept_preload, before.c_str(), 1);
  setenv(preload, (tracing_library() + path + (before.empty() ? "" : ':' + before)).c_str(), 1);
  execv("/proc/self/exe", arguments);
  throw file_error("the program cannot be started anew with the driver: " + std::system_category().message(errno));
}

}  // namespace tarvex::shell
