// The frame of an example program: --help and --version, the result line, and the exit status however it ends.
//
// SPDX-License-Identifier: Apache-2.0
#include "program.h"

#include <tarvex_pd/version.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <new>
#include <string_view>
#include <system_error>

namespace tarvex::examples {
namespace {

constexpr std::array<const char *, 8> meanings = {
    "done, and as expected",
    "wrong use",
    "the driver refused",
    "differences found",
    "a file, a socket or the output failed",
    "bad input, nothing was done",
    "done in part",
    "out of memory",
};

std::string exit_statuses(const program_info &about)
{
  std::vector<exit_status> all = about.statuses;
  all.insert(all.end(), {all_well, wrong_use, refused_by_driver, file_failed, out_of_memory});
  std::ranges::sort(all);
  std::string text = "Exit status:\n";
  for (const exit_status each : all)
    text += "  " + std::to_string(each) + "  " + meanings[static_cast<std::size_t>(each)] + '\n';
  return text;
}

/// Whether an option stands among the arguments, before one that says that no options follow.
bool asks_for(program_arguments arguments, std::string_view option)
{
  const auto end =
      std::ranges::find(arguments, std::string_view("--"), [](const char *a) { return std::string_view(a); });
  return std::find(arguments.begin(), end, option) != end;
}

/// Reports output that was lost: what a full disk refuses may only show here.
exit_status finish_output(const char *name, exit_status status)
{
  if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0) return status;
  std::fprintf(stderr, "%s: standard output cannot be written; is its disk full?\n", name);
  return status == all_well ? file_failed : status;
}

exit_status guarded(const program_info &about, const std::function<exit_status()> &run)
try {
  return run();
} catch (const usage_error &error) {
  std::fprintf(stderr, "%s: %s\n%s", about.name, error.what(), about.usage);
  return wrong_use;
} catch (const file_error &error) {
  std::fprintf(stderr, "%s: %s\n", about.name, error.what());
  return file_failed;
} catch (const driver_refused &error) {
  std::fprintf(stderr, "%s: %s\n", about.name, error.what());
  std::puts("result: the driver refused");
  return refused_by_driver;
} catch (const std::bad_alloc &) {
  std::fprintf(stderr, "%s: out of memory\n", about.name);
  return out_of_memory;
} catch (const std::system_error &error) {
  std::fprintf(stderr, "%s: no thread can be started: %s\n", about.name, error.what());
  return out_of_memory;
}

}  // namespace

int run_program(const program_info &about, int argc, char **argv,
                const std::function<exit_status(program_arguments)> &run)
{
  std::setvbuf(stdout, nullptr, _IOLBF, 0);  // in step with standard error where both go to one file
  const program_arguments arguments{argv + 1, static_cast<std::size_t>(argc > 0 ? argc - 1 : 0)};
  const exit_status status = guarded(about, [&] {
    if (asks_for(arguments, "--help") || asks_for(arguments, "-h")) {
      std::printf("%s\n%s", about.usage, exit_statuses(about).c_str());
      return all_well;
    }
    if (asks_for(arguments, "--version")) {
      std::printf("%s (tarvex_pd) %s\n", about.name, TARVEX_VERSION);
      return all_well;
    }
    return run(arguments);
  });
  return finish_output(about.name, status);
}

int run_comparison(const program_info &about, int argc, char **argv,
                   const std::function<std::string(program_arguments, tally &compared)> &run)
{
  program_info comparing = about;
  comparing.statuses.push_back(differences_found);
  return run_program(comparing, argc, argv, [&](program_arguments arguments) {
    tally compared;
    const std::string done = run(arguments, compared);
    const bool same = compared.different() == 0;
    std::printf("result: %s: %s, %s, %s\n", same ? "good" : "DIFFERENT", done.c_str(),
                counted(compared.compared(), "comparison").c_str(),
                counted(compared.different(), "difference").c_str());
    return same ? all_well : differences_found;
  });
}

std::optional<std::string> only_argument(program_arguments arguments)
{
  bool options_end = false;
  std::optional<std::string> found;
  for (const std::string argument : arguments) {
    if (!options_end && argument == "--") {
      options_end = true;
      continue;
    }
    if (!options_end && argument.size() > 1 && argument.starts_with('-')) {
      throw usage_error("there is no option '" + argument + '\'');
    }
    if (found) throw usage_error("one argument at most; '" + argument + "' is a second one");
    found = argument;
  }
  return found;
}

std::string counted(std::uint64_t count, const std::string &one, const std::string &several)
{
  return std::to_string(count) + ' ' + (count == 1 ? one : several.empty() ? one + 's' : several);
}

}  // namespace tarvex::examples
