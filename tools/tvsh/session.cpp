// From a command line to a command, and what goes wrong on the way.
//
// SPDX-License-Identifier: Apache-2.0
#include "session.h"

#include <memory>

#include "command.h"

namespace tarvex::shell {

namespace {

/// Filters one behind the other, the last writing to the command's output.
class filter_chain {
 public:
  filter_chain(const std::vector<filter> &filters, output &last)
  {
    outputs_.resize(filters.size());
    output *next = &last;
    for (std::size_t i = filters.size(); i-- > 0;) {
      outputs_[i] = std::make_unique<filtered_output>(filters[i], *next);
      next = outputs_[i].get();
    }
    first_ = next;
  }

  output &first() { return *first_; }
  void finish()
  {
    for (const auto &each : outputs_) each->finish();
  }

 private:
  std::vector<std::unique_ptr<filtered_output>> outputs_;
  output *first_;
};

/// `help NAME` for `NAME ?` and `? NAME`.
void ask_for_help(std::vector<std::string> &words)
{
  if (words.back() == "?" && words.size() > 1) {
    words = {"help", words.front()};
  } else if (words.front() == "?") {
    words.front() = "help";
  }
}

exit_code run_words(session &shell, command_line &line, output &out)
{
  ask_for_help(line.words);
  const command &what = command_named(line.words.front());
  filter_chain filters(line.filters, out);
  const invocation call{shell, filters.first(), line.chosen, std::span(line.words).subspan(1)};
  try {
    const exit_code code = what.run(call);
    filters.finish();
    return code;
  } catch (const argument_error &error) {
    out.error(std::string(what.name) + ": " + error.what());
    out.error(usage_of(what));
    return error.code();
  } catch (const shell_error &error) {
    if (error.code() == exit_code::interrupted) throw;
    out.error(std::string(what.name) + ": " + error.what());
    return error.code();
  }
}

}  // namespace

exit_code session::run(std::string_view text, output &out)
{
  interrupted_ = false;
  try {
    command_line line = parse_command_line(text, defaults);
    return line.words.empty() ? exit_code::ok : run_words(*this, line, out);
  } catch (const shell_error &error) {
    out.error(error.what());
    return error.code();
  }
}

exit_code session::run_script(std::string_view text, std::string_view name, output &out)
{
  std::size_t number = 0;
  while (!text.empty() && !ended) {
    const std::size_t end = text.find('\n');
    std::string_view line = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    if (line.ends_with('\r')) line.remove_suffix(1);
    ++number;
    const exit_code code = run(line, out);
    if (code != exit_code::ok) {
      out.error(std::string(name) + ':' + std::to_string(number) + ": stopped at: " + std::string(line));
      return code;
    }
  }
  return exit_code::ok;
}

}  // namespace tarvex::shell
