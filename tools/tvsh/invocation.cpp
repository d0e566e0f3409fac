// Words of a command, and its writes.
//
// SPDX-License-Identifier: Apache-2.0
#include "invocation.h"

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

bool invocation::only_checked(const std::string &what) const
{
  if (chosen.dry_run) out.note("checked, and nothing written: " + what);
  return chosen.dry_run;
}

bool invocation::carry_out(function_call &call, const std::string &what) const
{
  if (only_checked(what)) return false;
  call.must(what);
  return true;
}

}  // namespace tarvex::shell
