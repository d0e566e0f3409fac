// The command on learning reports.
//
// SPDX-License-Identifier: Apache-2.0
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
  shown_field address;
  address.display = display_kind::mac;
  report rows(call.out, call.chosen, "reports", {{"device"}, {"mac", 17}, {"l2_domain"}, {"l2_interface"}},
              {{"digest", "macLearningDigest"}});
  std::string text;
  for (const learned_address &each : call.shell.digests().latest()) {
    text.clear();
    append_value(text, address, each.mac, call.chosen.raw);
    rows.number(each.device).cell(text).number(each.l2_domain).number(each.l2_interface).end_row();
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
