// tvsh: a shell for the switch. The library and the stand-in switch are in this process, or in another that serves a
// socket.
//
// SPDX-License-Identifier: Apache-2.0
#include <signal.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <new>
#include <string>

#include "driver_library.h"
#include "interrupt_handling.h"
#include "json_output.h"
#include "pd_calls.h"
#include "program_options.h"
#include "prompt.h"
#include "remote_session.h"
#include "server.h"
#include "session.h"
#include "stand_in.h"
#include "status_text.h"
#include "stream_output.h"

namespace {

using namespace tarvex::shell;

/// What the standard stream still keeps is written; its failure is an error like any other.
int end_of(std::ostream &stream)
{
  if (!stream.flush()) throw file_error("standard output cannot be written; is its disk full?");
  return 0;
}

int write_page(const std::string &kind, const argument_parser &arguments)
{
  const std::vector<program_option> options = arguments.shown_options();
  std::cout << (kind == "man"    ? manual_page(options)
                : kind == "bash" ? bash_completion(options)
                                 : zsh_completion(options));
  return end_of(std::cout);
}

int write_completions(const std::string &begun)
{
  for (const std::string &word : session::complete(begun)) std::cout << word << '\n';
  return end_of(std::cout);
}

bool in_colour(const std::string &choice, int descriptor)
{
  const char *const none = std::getenv("NO_COLOR");
  const char *const terminal = std::getenv("TERM");
  const bool plain = (none != nullptr && *none != 0) || terminal == nullptr || std::string_view(terminal) == "dumb";
  return choice == "always" || (choice == "auto" && !plain && isatty(descriptor) != 0);
}

/// The library between its start and its end. The stand-in switch is given its device; another driver has its own.
class running_library {
 public:
  explicit running_library(std::uint32_t device)
  {
    if (const stand_in_control *const control = stand_in()) {
      require_success(control->device_add(device), "adding device " + std::to_string(device));
    }
    require_success(tarvex::calls::pd::init(), "starting the library");
  }
  running_library(const running_library &) = delete;
  running_library &operator=(const running_library &) = delete;
  ~running_library() { tarvex::calls::pd::cleanup(); }
};

std::string read_all(const std::string &name)
{
  std::ifstream file;
  errno = 0;
  if (name != "-") file.open(name, std::ios::binary);
  std::istream &from = name == "-" ? std::cin : file;
  std::string text;
  std::array<char, 65536> part;
  while (from.read(part.data(), part.size()) || from.gcount() > 0)
    text.append(part.data(), static_cast<std::size_t>(from.gcount()));
  // A folder can be opened, and not read.
  if (from.bad() || (name != "-" && !file.is_open())) {
    throw file_error(name + ": cannot be read" + (errno == 0 ? "" : std::string(": ") + std::strerror(errno)));
  }
  return text;
}

/// The commands or the script that the arguments have.
exit_code run_given(const program_options &wanted, interpreter &shell, output &out)
{
  const bool commands = !wanted.commands.empty();
  const std::string script = commands ? "" : read_all(wanted.script.value_or("-"));
  const interrupt_handling signals(shell, interrupts::script);
  if (!commands) return shell.run_script(script, wanted.script.value_or("-"), out);
  exit_code code = exit_code::ok;
  for (const std::string &command : wanted.commands) {
    if (shell.stop_code() != exit_code::ok) return shell.stop_code();
    code = shell.ended_by(shell.run(command, out));
    if (code != exit_code::ok || shell.ended) break;
  }
  return code;
}

exit_code run_all(const program_options &wanted, interpreter &shell, stream_output &out)
{
  if (!wanted.commands.empty() || wanted.script || isatty(STDIN_FILENO) == 0) return run_given(wanted, shell, out);
  return run_prompt(shell, out);
}

/// Until a signal ends it. The signals are blocked ahead of the first thread, so that one waits for them.
exit_code serve(const program_options &wanted, session &shell, stream_output &out)
{
  signal(SIGPIPE, SIG_IGN);
  sigset_t ends;
  sigemptyset(&ends);
  for (const int each : {SIGINT, SIGTERM, SIGHUP}) sigaddset(&ends, each);
  if (!wanted.commands.empty() || wanted.script) {
    const exit_code code = run_given(wanted, shell, out);
    out.flush();
    if (code != exit_code::ok) return code;
  }
  pthread_sigmask(SIG_BLOCK, &ends, nullptr);
  const server serving(*wanted.served, shell.where, shell.shared_memory());
  out.note("tvsh: serving " + serving.path() + "; 'tvsh --attach' gets there, SIGTERM or Ctrl-C ends it");
  int got = 0;
  sigwait(&ends, &got);
  out.note("tvsh: ending");
  return exit_code::ok;
}

exit_code attach(const program_options &wanted, stream_output &out)
{
  client_hello hello{{}, wanted.defaults, std::filesystem::current_path()};
  if (wanted.device_given) hello.device = wanted.device;
  remote_session shell(*wanted.attached, hello);
  const bool asks = wanted.commands.empty() && !wanted.script && isatty(STDIN_FILENO) != 0;
  if (asks) {
    const server_hello &server = shell.server();
    out.note("tvsh: attached to process " + std::to_string(server.process) + ", device " +
             std::to_string(server.device));
    return run_all(wanted, shell, out);
  }
  return run_all(wanted, shell, out);
}

exit_code run(const program_options &wanted)
{
  stream_output out(STDOUT_FILENO, STDERR_FILENO, in_colour(wanted.colour, STDOUT_FILENO),
                    in_colour(wanted.colour, STDERR_FILENO));
  const auto finished = [&out](exit_code code) {
    out.flush();  // here, as an output that cannot be written is an error too
    return code;
  };
  if (wanted.attached) return finished(attach(wanted, out));
  const running_library library(wanted.device);
  session shell({wanted.session, wanted.device, 0xffff});
  shell.defaults = wanted.defaults;
  return finished(wanted.served ? serve(wanted, shell, out) : run_all(wanted, shell, out));
}

/// An error that is no command's: as text, or with -j as JSON where the answers of commands are.
int fail(const shell_error &error, bool json)
{
  if (!json || !(std::cout << error_document(error.code(), error.what()) << std::endl)) {
    std::cerr << "tvsh: " << error.what() << '\n';
  }
  return static_cast<int>(error.code());
}

}  // namespace

int main(int argc, char **argv)
try {
  argument_parser arguments;
  program_options wanted;
  try {
    wanted = arguments.parse(argc, argv);
  } catch (const CLI::ParseError &error) {
    return arguments.tell(error) == 0 ? end_of(std::cout) : static_cast<int>(exit_code::usage);
  }
  try {
    if (wanted.page) return write_page(*wanted.page, arguments);
    if (wanted.begun) return write_completions(*wanted.begun);
    if (wanted.driver) {
      drive_by(*wanted.driver, argv);
      tell_driver_statuses(wanted.statuses);
    }
    return static_cast<int>(run(wanted));
  } catch (const shell_error &error) {
    return fail(error, wanted.defaults.json);
  }
} catch (const shell_error &error) {
  return fail(error, false);
} catch (const std::bad_alloc &) {
  std::cerr << "tvsh: out of memory\n";
  return static_cast<int>(exit_code::out_of_memory);
}
