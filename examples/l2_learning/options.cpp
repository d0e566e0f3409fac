// The command line of l2_learning.
//
// SPDX-License-Identifier: Apache-2.0
#include "options.h"

#include <charconv>
#include <string>
#include <string_view>

#include "program.h"
#include "switch_device.h"

namespace tarvex::l2_learning {
namespace {

std::uint64_t parse_number(const std::string &option, std::string_view text)
{
  std::uint64_t value = 0;
  const auto [end, error] = std::from_chars(text.begin(), text.end(), value);
  if (error == std::errc() && end == text.end()) return value;
  throw examples::usage_error(option + " takes a number, not '" + std::string(text) + '\'');
}

}  // namespace

const char *const usage_text =
    R"(usage: l2_learning [--addresses N] [--seed N]

Plays a bridge on a stand-in switch. Stations announce themselves; the switch reports their addresses by the learning
digest; the control plane learns them, with a ttl, into the tables where frames look for their source and for their
destination, and acknowledges each message. While the clock runs, some stations stay by sending, some move, the rest
age. At the end entries, counters and storm-control meters are read back and compared with what was planned.

The addresses begin with identifiers of the registry file of Debian's package ieee-data where that is installed, else
with some of local administration.

  --addresses N   how many stations, 1 to 1000000 (default 10000)
  --seed N        other stations, other traffic (default 1)
  --help          this text
  --version       the version
)";

options parse_options(std::span<const char *const> arguments)
{
  options result;
  for (auto at = arguments.begin(); at != arguments.end(); ++at) {
    const std::string argument = *at;
    const auto number = [&] {
      if (++at == arguments.end()) throw examples::usage_error(argument + " takes a number");
      return parse_number(argument, *at);
    };
    if (argument == "--addresses") {
      result.addresses = number();
    } else if (argument == "--seed") {
      result.seed = number();
    } else {
      throw examples::usage_error("there is no option '" + argument + '\'');
    }
  }
  if (result.addresses == 0 || result.addresses > most_addresses) {
    throw examples::usage_error("--addresses takes 1 to " + std::to_string(most_addresses));
  }
  return result;
}

}  // namespace tarvex::l2_learning
