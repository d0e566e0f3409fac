// The command line of route_load.
//
// SPDX-License-Identifier: Apache-2.0
#include "options.h"

#include <charconv>
#include <string_view>

namespace tarvex::route_load {
namespace {

std::uint64_t parse_count(std::string_view option, std::string_view text)
{
  std::uint64_t value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size()) {
    throw usage_error(std::string(option) + " takes a number from 0 up to 64 bits, not '" + std::string(text) + "'");
  }
  return value;
}

}  // namespace

const char *const usage_text =
    R"(usage: route_load [--strict] [--explain] [--seed N] [--resolve N] FILE

Programs the routes of FILE into the forwarding tables of a stand-in switch, reads all entries back, resolves
addresses through the tables, and compares both with the file.

FILE holds lines 'prefix, blank or tab, origin AS number', plain or gzip; ';' and '#' begin a comment. '-' is standard
input. Of a prefix given twice the later line counts. The next hop of a route is made from its AS number. Where the
tables have no partition index left for a block of addresses, its routes are reported as not loaded and left out of the
comparison. With routes left out or bad lines the result is 'incomplete', with an exit status of its own.

  --strict      a bad line ends the run before anything is loaded (otherwise it is reported and skipped)
  --explain     says what each table holds, where next hops come from, and shows three lookups step by step
  --seed N      picks other addresses to resolve (default 1)
  --resolve N   how many (default 100000)
  --help        this text
  --version     the version
  --            what follows is a file, whatever it begins with
)";

options parse_options(std::span<const char *const> arguments)
{
  options result;
  bool file_given = false;
  bool options_end = false;
  const auto take_file = [&](std::string_view name) {
    if (file_given) throw usage_error("one file at a time; '" + std::string(name) + "' is a second one");
    // Only as an argument of its own, and not after '--', does it stand for standard input.
    result.file = name == "-" && options_end ? "./-" : name;
    file_given = true;
  };
  for (auto at = arguments.begin(); at != arguments.end(); ++at) {
    const std::string_view argument = *at;
    const auto number = [&] {
      if (++at == arguments.end()) throw usage_error(std::string(argument) + " takes a number");
      return parse_count(argument, *at);
    };
    if (options_end) {
      take_file(argument);
    } else if (argument == "--") {
      options_end = true;
    } else if (argument == "--strict") {
      result.strict = true;
    } else if (argument == "--explain") {
      result.explain = true;
    } else if (argument == "--seed") {
      result.seed = number();
    } else if (argument == "--resolve") {
      result.resolve = number();
    } else if (argument.starts_with('-') && argument != "-") {
      throw usage_error("there is no option '" + std::string(argument) + "'");
    } else {
      take_file(argument);
    }
  }
  if (!file_given) throw usage_error("no file given");
  return result;
}

}  // namespace tarvex::route_load
