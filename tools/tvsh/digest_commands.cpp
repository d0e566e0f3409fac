// The command on learning reports.
//
// SPDX-License-Identifier: Apache-2.0
#include "catalogue.h"
#include "commands.h"
#include "fields.h"
#include "remembered_writes.h"
#include "report.h"
#include "session.h"
#include "value_text.h"
#include "verbs.h"

namespace tarvex::shell {

namespace {

void show(const invocation &call)
{
  call.expect_at_most(1);
  const calls::digest_info &digest = the_digest();
  const std::vector<shown_field> fields = digest_fields(digest);
  std::vector<column> columns = {{"device"}};
  for (const shown_field &field : fields) {
    columns.push_back({field.name});
    if (field.display == display_kind::mac) columns.back().width = 17;
  }
  report rows(call.out, call.chosen, "reports", columns, {{"digest", digest.name}});
  std::string text;
  for (const learned_entry &each : call.shell.digests().latest()) {
    rows.number(each.device);
    for (const shown_field &field : fields) {
      const wide_number value = read_value(field, each.bytes.data());
      if (field.display == display_kind::number) {
        rows.number(static_cast<std::uint64_t>(value));
        continue;
      }
      text.clear();
      append_value(text, field, value, call.chosen.raw);
      rows.cell(text);
    }
    rows.end_row();
  }
  rows.finish();
  if (!call.shell.digests().listening()) call.out.note("the shell is not listening; 'digests on' begins it");
}

void begin(const invocation &call)
{
  call.expect_at_most(1);
  if (!call.only_checked("asking for learning reports")) call.shell.digests().listen(call.where());
}

void end(const invocation &call)
{
  call.expect_at_most(1);
  if (!call.only_checked("ending the learning reports")) call.shell.digests().stop();
}

void set_timeout(const invocation &call)
{
  call.expect_at_most(2);
  const auto timeout = static_cast<std::uint32_t>(parse_number(call.word(1, "TIME"), "timeout", 32));
  if (!call.only_checked("setting the learning timeout")) set_learning_timeout(call, timeout);
}

constexpr plain_verb digest_verbs[] = {{"show", show}, {"on", begin}, {"off", end}, {"timeout", set_timeout}};

}  // namespace

exit_code digests(const invocation &call) { return run_verb(digest_verbs, call, call.has(0) ? call.words[0] : "show"); }

}  // namespace tarvex::shell
