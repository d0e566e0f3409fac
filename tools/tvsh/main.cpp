// tvsh: a shell for the switch, with the library and the stand-in switch in this process.
//
// SPDX-License-Identifier: Apache-2.0
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <iterator>
#include <optional>
#include <string>

#include "prompt.h"
#include "session.h"
#include "stand_in.h"
#include "status_text.h"
#include "stream_output.h"
#include "tarvex_pd/lifecycle.h"

namespace {

using namespace tarvex::shell;

struct program_options {
  std::optional<std::string> command;
  std::optional<std::string> script;
  std::string colour = "auto";
  options defaults;
  std::uint32_t device = 0;
};

void declare(CLI::App &app, program_options &wanted)
{
  auto *const command =
      app.add_option("-c,--command", wanted.command, "run one command, and end")->type_name("COMMAND");
  app.add_option("-f,--file", wanted.script, "run the commands of a file ('-': of standard input) to the first error")
      ->type_name("FILE")
      ->excludes(command);
  app.add_flag("-j,--json", wanted.defaults.json, "reading commands write JSON");
  app.add_flag("--raw", wanted.defaults.raw, "numbers and addresses in hexadecimal");
  app.add_flag("--hw", wanted.defaults.hardware, "read the hardware, not the driver's copy");
  app.add_option("--device", wanted.device, "the device to work on")->check(CLI::Range(0, 255))->capture_default_str();
  app.add_option("--color", wanted.colour, "colours: auto (on a terminal, and not with NO_COLOR), always, never")
      ->check(CLI::IsMember({"auto", "always", "never"}))
      ->capture_default_str();
}

bool in_colour(const std::string &choice, int descriptor)
{
  const char *const none = std::getenv("NO_COLOR");
  const char *const terminal = std::getenv("TERM");
  const bool plain = (none != nullptr && *none != 0) || terminal == nullptr || std::string_view(terminal) == "dumb";
  return choice == "always" || (choice == "auto" && !plain && isatty(descriptor) != 0);
}

/// The library between its start and its end, on a device of the stand-in switch.
class running_library {
 public:
  explicit running_library(std::uint32_t device)
  {
    require_success(require_stand_in().device_add(device), "adding device " + std::to_string(device));
    require_success(p4_pd_tarvex_switch_init(), "starting the library");
  }
  running_library(const running_library &) = delete;
  running_library &operator=(const running_library &) = delete;
  ~running_library() { p4_pd_tarvex_switch_cleanup(); }
};

std::string read_all(const std::string &name)
{
  if (name == "-") return {std::istreambuf_iterator<char>(std::cin), {}};
  std::ifstream file(name, std::ios::binary);
  std::string text{std::istreambuf_iterator<char>(file), {}};
  if (!file) throw file_error(name + ": cannot be read");
  return text;
}

exit_code run(const program_options &wanted)
{
  const running_library library(wanted.device);
  session shell({1, wanted.device, 0xffff});
  shell.defaults = wanted.defaults;
  stream_output out(STDOUT_FILENO, STDERR_FILENO, in_colour(wanted.colour, STDOUT_FILENO),
                    in_colour(wanted.colour, STDERR_FILENO));
  if (wanted.command) return shell.run(*wanted.command, out);
  if (wanted.script) return shell.run_script(read_all(*wanted.script), *wanted.script, out);
  if (isatty(STDIN_FILENO) == 0) return shell.run_script(read_all("-"), "-", out);
  return run_prompt(shell, out);
}

}  // namespace

int main(int argc, char **argv)
try {
  CLI::App app("A shell for the switch: reads and writes its tables by name. Without -c and -f it asks for commands.");
  program_options wanted;
  declare(app, wanted);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError &error) {
    return app.exit(error) == 0 ? 0 : static_cast<int>(exit_code::usage);
  }
  return static_cast<int>(run(wanted));
} catch (const shell_error &error) {
  std::cerr << "tvsh: " << error.what() << '\n';
  return static_cast<int>(error.code());
}
