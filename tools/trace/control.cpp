// The control functions, and what the environment of a program asks for at its start.
//
// SPDX-License-Identifier: Apache-2.0
#include <dlfcn.h>
#include <pthread.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <string>

#include "call_trace.h"
#include "catalogue_names.h"
#include "interposed.h"
#include "tarvex_trace/tarvex_trace.h"

namespace tarvex::trace {

namespace {

void *find_next(const char *name)
{
  // The call must return to here, and not as a tail call to our caller: behind whom to look goes by that.
  void *volatile found = dlsym(RTLD_NEXT, name);
  return found;
}

}  // namespace

void *require_next(std::string_view name)
{
  void *const found = find_next(std::string(name).c_str());
  if (found == nullptr) {
    std::fprintf(stderr, "libtarvex_trace: no library behind it defines %s: link or preload it ahead of the driver\n",
                 std::string(name).c_str());
    std::abort();
  }
  return found;
}

namespace {

template <auto... Functions>
void turn_all(bool on, function_list<Functions...>)
{
  (interposed<Functions>::turn(on), ...);
}

/// Guards the beginning and the end of traces against each other.
std::mutex &control()
{
  static std::mutex *const mutex = new std::mutex;
  return *mutex;
}

int begin(std::unique_ptr<trace_sink> sink, std::uint32_t flags)
{
  if (!the_trace().start(std::move(sink), (flags & TARVEX_TRACE_AS_JSON) != 0)) return EBUSY;
  turn_all(true, driver_functions{});
  return 0;
}

bool is_set(const char *variable)
{
  const char *const value = std::getenv(variable);
  return value != nullptr && *value != 0;
}

[[gnu::constructor]] void begin_as_the_environment_says()
{
  pthread_atfork([] { the_trace().before_fork(); }, [] { the_trace().after_fork(); }, [] { the_trace().after_fork(); });
  if (!is_set("TARVEX_TRACE")) return;
  const char *const path = std::getenv("TARVEX_TRACE");
  const std::uint32_t flags = is_set("TARVEX_TRACE_JSON") ? std::uint32_t{TARVEX_TRACE_AS_JSON} : 0;
  if (const int error = tarvex_trace_to_file(path, flags); error != 0) {
    std::fprintf(
        stderr, "libtarvex_trace: %s: %s; nothing is traced\n", path,
        error == ENXIO ? "a trace goes to a plain file, and to no pipe, socket or terminal" : std::strerror(error));
  }
}

[[gnu::destructor]] void end_with_the_process()
{
  const std::string file = the_trace().file();
  if (const int error = tarvex_trace_stop(); error != 0) {
    std::fprintf(stderr, "libtarvex_trace: %s: %s; the trace is not whole\n", file.c_str(), std::strerror(error));
  }
}

}  // namespace
}  // namespace tarvex::trace

using namespace tarvex::trace;

int tarvex_trace_to_file(const char *path, std::uint32_t flags)
{
  if (the_trace().running() != 0) return EBUSY;  // without a new file
  int error = 0;
  std::unique_ptr<file_sink> sink = file_sink::open(path, error);  // ahead of the lock: a file system may take its time
  if (sink == nullptr) return error;
  const std::lock_guard lock(control());
  if (the_trace().running() != 0) return EBUSY;  // ahead of what empties the file
  error = sink->make_anew();
  return error != 0 ? error : begin(std::move(sink), flags);
}

int tarvex_trace_to_function(tarvex_trace_line_fn line, void *cookie, std::uint32_t flags)
{
  const std::lock_guard lock(control());
  return begin(std::make_unique<function_sink>(line, cookie), flags);
}

int tarvex_trace_stop()
{
  const std::lock_guard lock(control());
  turn_all(false, driver_functions{});
  return the_trace().stop();
}

std::size_t tarvex_trace_file(char *name, std::size_t size)
{
  const std::string file = the_trace().file();
  if (size != 0) {
    const std::size_t copied = std::min(file.size(), size - 1);
    std::memcpy(name, file.data(), copied);
    name[copied] = 0;
  }
  return file.size();
}

int tarvex_trace_runs() { return the_trace().running() != 0 ? 1 : 0; }

std::uint64_t tarvex_trace_calls() { return the_trace().calls(); }

void *tarvex_trace_next(const char *driver_function)
{
  constexpr auto names = tarvex::driver::names_of(driver_functions{});
  return std::ranges::find(names, driver_function) != names.end() ? find_next(driver_function) : nullptr;
}

ms_state *tarvex_trace_state(std::uint32_t profile) { return state_of(profile); }
