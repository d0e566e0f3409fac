// SPDX-License-Identifier: Apache-2.0
#include "schema_text.h"

#include "text_writer.h"

namespace tarvex::pd {

namespace {

/// What stands for the actions of every indirect table. Its blanks are part of the interface.
constexpr std::string_view member_or_group =
    "( ('setMbrHdl',(('mbrHdl',None,32,None),)),( 'setGrpHdl', ( ( 'grpHdl', None, 32, None ), ) ) )";

/// The writer goes in and out by value, so that its position stays in a register.
[[gnu::always_inline]] inline text_writer actions_behind(text_writer to, const action_text *const *actions,
                                                         std::size_t count)
{
  to.character('(');
  for (std::size_t i = 0; i < count; ++i) to.short_text(actions[i]->schema).character(',');
  return to.character(')');
}

}  // namespace

std::int32_t table_schema(const table_text &table, char *buf)
{
  text_writer to(buf);
  to.text("( ('").short_text(table.name).text("','mat',(").text(table.indirect ? "True" : "False").text(",)),");
  to.text(table.keyed ? table.key_schema : "()").character(',');
  if (table.indirect)
    to.text(member_or_group);
  else
    to = actions_behind(to, table.actions, table.action_count);
  return static_cast<std::int32_t>(to.character(')').end());
}

std::int32_t profile_schema(const profile_text &profile, char *buf)
{
  return static_cast<std::int32_t>(actions_behind(text_writer(buf), profile.actions, profile.action_count).end());
}

}  // namespace tarvex::pd
