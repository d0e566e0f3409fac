// The command on learning reports.
//
// SPDX-License-Identifier: Apache-2.0
#include <array>

#include "commands.h"
#include "fields.h"
#include "nearest.h"
#include "report.h"
#include "session.h"
#include "status_text.h"
#include "tarvex_pd/learning_digest.h"
#include "value_text.h"

namespace tarvex::shell {

namespace {

void show(const invocation &call)
{
  shown_field address;
  address.display = display_kind::mac;
  report rows(call.out, call.chosen, "reports", {{"device"}, {"mac", 17}, {"l2_domain"}, {"l2_interface"}},
              {{"digest", "macLearningDigest"}});
  std::string text;
  for (const learned_address &each : call.shell.digests.latest()) {
    text.clear();
    append_value(text, address, each.mac, call.chosen.raw);
    rows.number(each.device).cell(text).number(each.l2_domain).number(each.l2_interface).end_row();
  }
  rows.finish();
  if (!call.shell.digests.listening()) call.out.note("the shell is not listening; 'digests on' begins it");
}

void set_timeout(const invocation &call)
{
  const auto timeout = static_cast<std::uint32_t>(parse_number(call.word(1, "TIME"), "timeout", 32));
  require_success(p4_pd_tarvex_switch_set_learning_timeout(call.where().session, call.where().device, timeout),
                  "setting the learning timeout");
  call.shell.written.learning_timeout = timeout;
}

}  // namespace

exit_code digests(const invocation &call)
{
  static constexpr std::array<std::string_view, 4> verbs = {"show", "on", "off", "timeout"};
  const std::string verb = call.has(0) ? call.words[0] : "show";
  call.expect_at_most(verb == "timeout" ? 2 : 1);
  if (verb == "show") {
    show(call);
  } else if (verb == "on") {
    call.shell.digests.listen(call.where());
  } else if (verb == "off") {
    call.shell.digests.stop();
  } else if (verb == "timeout") {
    set_timeout(call);
  } else {
    throw usage_error(no_such("verb", verb, verbs));
  }
  return exit_code::ok;
}

}  // namespace tarvex::shell
