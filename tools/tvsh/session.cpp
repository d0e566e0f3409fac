// From a command line to a command, and what goes wrong on the way.
//
// SPDX-License-Identifier: Apache-2.0
#include "session.h"

#include <algorithm>
#include <cctype>
#include <memory>
#include <new>

#include "command.h"
#include "counted.h"
#include "json_output.h"
#include "status_text.h"

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

bool begins_name(char letter) { return std::isalpha(static_cast<unsigned char>(letter)) != 0; }

/// The handle for a word or a value that is $NAME.
void put_handles_for_names(const session &shell, std::vector<std::string> &words)
{
  for (std::string &word : words) {
    const std::size_t dollar = word.starts_with('$') ? 0 : word.find("=$") + 1;
    if (dollar + 1 >= word.size() || word[dollar] != '$' || !begins_name(word[dollar + 1])) continue;
    const auto found = shell.names.find(std::string_view(word).substr(dollar + 1));
    if (found == shell.names.end()) {
      throw usage_error("no handle has the name " + word.substr(dollar) + "; 'let' and as= give names");
    }
    word.replace(dollar, std::string::npos, std::to_string(found->second));
  }
}

exit_code run_words(session &shell, command_line &line, output &out)
{
  std::string_view name;
  const auto report = [&](const char *text) {
    out.error(name.empty() ? std::string(text) : std::string(name) + ": " + text);
  };
  try {
    ask_for_help(line.words);
    put_handles_for_names(shell, line.words);
    const command &what = command_named(line.words.front());
    name = what.name;
    filter_chain filters(line.filters, out);
    const invocation call{shell, filters.first(), line.chosen, std::span(line.words).subspan(1)};
    try {
      const exit_code code = what.run(call);
      filters.finish();
      return code;
    } catch (const argument_error &error) {
      report(error.what());
      out.error(usage_of(what));
      return error.code();
    }
  } catch (const shell_error &error) {
    if (error.code() == exit_code::interrupted) name = {};
    report(error.what());
    if (const auto *const refused = dynamic_cast<const refused_error *>(&error)) out.refused_with(refused->status());
    return error.code();
  } catch (const std::bad_alloc &) {
    // This command is over, the session goes on.
    report("out of memory");
    return exit_code::out_of_memory;
  } catch (const std::exception &error) {
    report(error.what());
    return exit_code::refused;
  }
}

}  // namespace

void session::require_name(std::string_view name)
{
  const bool good = !name.empty() && begins_name(name[0]) && std::ranges::all_of(name, [](char letter) {
    return std::isalnum(static_cast<unsigned char>(letter)) != 0 || letter == '_' || letter == '.';
  });
  if (!good) throw usage_error("'" + std::string(name) + "' is no name: letters, digits, '_' and '.', a letter first");
}

void session::show_trace(output &out)
{
  if (!traced) return;
  const trace_view::piece piece = traced->take();
  if (piece.missed != 0)
    out.note(counted(piece.missed, "earlier call is", "earlier calls are") + " not kept; a file keeps all");
  for (const std::string &line : piece.lines) out.note(line);
}

exit_code session::run_with(std::string_view text, const options &chosen, output &out)
{
  command_line line;
  try {
    line = parse_command_line(text, chosen);
  } catch (const shell_error &error) {
    if (asks_for_json(text, chosen)) {
      out.line(error_document(error.code(), error.what()));
    } else {
      out.error(error.what());
    }
    return error.code();
  }
  if (line.words.empty()) return exit_code::ok;
  exit_code code = exit_code::ok;
  if (line.chosen.json) {
    json_output json(out);
    code = run_words(*this, line, json);
    show_trace(json);
    json.finish(code);
  } else {
    code = run_words(*this, line, out);
    show_trace(out);
  }
  return code;
}

}  // namespace tarvex::shell
