// Declared once: for parsing, the manual page and the completions of other shells.
//
// SPDX-License-Identifier: Apache-2.0
#include "program_options.h"

#include <memory>
#include <sstream>

#include "tarvex_pd/version.h"
#include "text_wrap.h"

namespace tarvex::shell {

namespace {

std::string joined(const std::vector<std::string> &words)
{
  std::string line;
  for (const std::string &word : words) line += (line.empty() ? "" : " ") + word;
  return line;
}

}  // namespace

namespace {

constexpr std::size_t option_column = 30;  // where the descriptions of options begin

/// Help in lines of the usual width.
class wrapped_help : public CLI::Formatter {
 public:
  wrapped_help() { column_width(option_column); }

  std::string make_help(const CLI::App *app, std::string name, CLI::AppFormatMode mode) const override
  {
    std::istringstream lines(Formatter::make_help(app, name, mode));
    std::string all;
    for (std::string line; std::getline(lines, line);)
      all += wrapped(line, line.starts_with(' ') ? option_column : 0) + '\n';
    return all;
  }
};

}  // namespace

argument_parser::argument_parser()
    : app_(
          "A shell for the switch: reads and writes its tables by name. Words behind the options are one command, "
          "which "
          "may have options of its own; without one, and without -c and -f, it asks for commands.")
{
  app_.set_version_flag("--version", "tvsh (tarvex_pd) " TARVEX_VERSION, "print the version, and end");
  app_.formatter(std::make_shared<wrapped_help>());
  app_.prefix_command();  // what follows the options is a command with options of its own
  auto *const command =
      app_.add_option("-c,--command", wanted_.commands,
                      "run one command, and end; several are run one behind the other, to the first error")
          ->type_name("COMMAND")
          ->allow_extra_args(false);
  app_.add_option("-f,--file", wanted_.script, "run the commands of a file ('-': of standard input) to the first error")
      ->type_name("FILE")
      ->excludes(command);
  auto *const serve = app_.add_option("--serve", wanted_.served,
                                      "serve a Unix socket for --attach until SIGTERM or Ctrl-C; -c or -f run ahead")
                          ->type_name("SOCKET");
  auto *const attach =
      app_.add_option("--attach", wanted_.attached, "work on the switch of a program that serves the socket")
          ->type_name("SOCKET")
          ->excludes(serve);
  app_.add_flag("-j,--json", wanted_.defaults.json, "commands answer in JSON, errors too");
  app_.add_flag("--raw", wanted_.defaults.raw, "numbers and addresses in hexadecimal");
  app_.add_flag("--hw", wanted_.defaults.hardware, "read the hardware, not the driver's copy");
  app_.add_option("--device", wanted_.device, "the device to work on (attached: the server's)")
      ->check(CLI::Range(0, 255))
      ->capture_default_str();
  app_.add_option("--session", wanted_.session, "the session with the driver")->capture_default_str()->excludes(attach);
  auto *const driver =
      app_.add_option("--driver", wanted_.driver, "a driver library to use instead of the stand-in switch")
          ->type_name("FILE")
          ->excludes(attach);
  app_.add_option("--end-status", wanted_.statuses.walk_end,
                  "the driver's status behind the last entry of a walk; else every status that comes with no handle")
      ->type_name("STATUS")
      ->needs(driver);
  app_.add_option("--none-status", wanted_.statuses.no_entry,
                  "the driver's status where a table has no default entry; else every status without a handle")
      ->type_name("STATUS")
      ->needs(driver);
  app_.add_option("--end-of-cells-status", wanted_.statuses.no_cell,
                  "the driver's status beyond the last cell of a counter, meter or register; else every refusal is an "
                  "error")
      ->type_name("STATUS")
      ->needs(driver);
  app_.add_option("--color", wanted_.colour, "colours: auto (on a terminal, and not with NO_COLOR), always, never")
      ->check(CLI::IsMember({"auto", "always", "never"}))
      ->capture_default_str();
  // Only what is installed with the program uses these: its pages are made by one, its completions ask the other.
  app_.add_option("--page", wanted_.page)->check(CLI::IsMember({"man", "bash", "zsh"}))->group("");
  app_.add_option("--complete", wanted_.begun)->group("");
}

program_options argument_parser::parse(int argc, char **argv)
{
  app_.parse(argc, argv);
  wanted_.device_given = app_.count("--device") != 0;
  const std::vector<std::string> words = app_.remaining();
  if (words.empty()) return wanted_;
  if (words[0].starts_with('-')) throw CLI::ExtrasError(words);
  const std::string line = joined(words);
  const auto refuse = [&line](const std::string &why) { throw CLI::ArgumentMismatch("'" + line + "' " + why); };
  if (!wanted_.commands.empty()) {
    refuse("is one word too many; quote the command: -c '" + wanted_.commands.back() + ' ' + line + "'");
  }
  if (wanted_.script) refuse("cannot stand beside -f; the file has the commands");
  if (wanted_.served) refuse("does not run ahead of --serve so; write -c '" + line + "'");
  wanted_.commands = {line};
  return wanted_;
}

std::vector<program_option> argument_parser::shown_options() const
{
  std::vector<program_option> shown;
  for (const CLI::Option *const option : app_.get_options()) {
    if (option->get_group().empty()) continue;
    program_option each;
    for (const std::string &name : option->get_snames()) each.names.push_back('-' + name);
    for (const std::string &name : option->get_lnames()) each.names.push_back("--" + name);
    each.description = option->get_description();
    if (option->get_type_size() != 0) {
      const std::string type = option->get_type_name();  // "TEXT:{auto,always,never}", where words are checked
      each.argument = type.substr(0, type.find(':'));
      if (const std::size_t open = type.find('{'); open != std::string::npos) {
        each.choices = CLI::detail::split(type.substr(open + 1, type.find('}') - open - 1), ',');
      }
    }
    shown.push_back(std::move(each));
  }
  return shown;
}

}  // namespace tarvex::shell
