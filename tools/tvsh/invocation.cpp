// Words of a command, and its writes.
//
// SPDX-License-Identifier: Apache-2.0
#include "invocation.h"

#include "json_output.h"
#include "json_text.h"
#include "session.h"
#include "shell_error.h"

namespace tarvex::shell {

const target &invocation::where() const { return shell.where; }

const std::string &invocation::word(std::size_t at, std::string_view name) const
{
  if (at >= words.size()) throw argument_error(std::string(name) + " is missing");
  return words[at];
}

std::string invocation::path(const std::string &name) const { return shell.folder / name; }

void invocation::expect_at_most(std::size_t count) const
{
  if (words.size() > count) throw argument_error("'" + words[count] + "' is one word too many");
}

result_member::result_member(std::string_view name, std::string_view text) : name_(name)
{
  append_json_text(json_, text);
}

result_member::result_member(std::string_view name, std::span<const std::string_view> texts) : name_(name)
{
  for (const std::string_view each : texts) {
    json_ += json_.empty() ? '[' : ',';
    append_json_text(json_, each);
  }
  json_ += json_.empty() ? "[]" : "]";
}

change_queue::turn invocation::take_turn(const std::string &what) const
{
  return {shell.memory().changes, shell.client + " ('" + what + "')",
          [&](const std::string &holder) { out.note("waiting for " + holder + "; Ctrl-C ends the wait"); },
          [&] { shell.check_interrupt(); }};
}

bool invocation::only_checked(const std::string &what) const
{
  if (!chosen.dry_run) return false;
  if (chosen.json) {
    result({}, {{"done", false}, {"checked", what}});
  } else {
    out.note("checked, and nothing written: " + what);
  }
  return true;
}

void invocation::result(std::string_view text, std::initializer_list<result_member> members) const
{
  if (!chosen.json) {
    out.line(text);
    return;
  }
  std::string document;
  json_objects json(document);
  json.open();
  json.number("schema_version", schema_version);
  for (const result_member &each : members) json.plain(each.name(), each.json());
  json.close();
  out.line(document);
}

void invocation::made(std::string_view kind, std::uint32_t handle) const
{
  result(std::string(kind) + ' ' + std::to_string(handle), {{"done", true}, {kind, handle}});
}

bool invocation::carry_out(function_call &call, const std::string &what) const
{
  if (only_checked(what)) return false;
  call.must(what);
  return true;
}

}  // namespace tarvex::shell
