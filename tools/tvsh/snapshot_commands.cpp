// The command on snapshots: what a packet held when it met a trigger.
//
// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <array>

#include "commands.h"
#include "entry_words.h"
#include "pd_calls.h"
#include "report.h"
#include "session.h"
#include "snapshot_fields.h"
#include "status_text.h"
#include "text_pattern.h"
#include "value_text.h"
#include "verbs.h"

namespace tarvex::shell {

namespace {

void show_fields(const invocation &call)
{
  call.expect_at_most(3);
  const bool egress = parse_direction(call.word(1, "ingress|egress"));
  const auto fields = matching(snapshot_fields(egress), call.has(2) ? call.words[2] : "", "field",
                               "'snapshot fields " + call.words[1] + "' lists all");
  report rows(call.out, call.chosen, "fields", {{"field", 44}, {"bytes"}}, {{"direction", call.words[1]}});
  for (const snapshot_field *const field : fields) rows.cell(field->name).number(field->bytes).end_row();
  rows.finish();
}

void arm(const invocation &call)
{
  const bool egress = parse_direction(call.word(1, "ingress|egress"));
  std::uint32_t first_stage = 0;
  std::uint32_t last_stage = 11;
  std::vector<snapshot_value> values;
  for (const std::string &word : call.words.subspan(2)) {
    const auto assignment = assignment_of(word);
    if (!assignment) throw usage_error("'" + word + "' is no FIELD=VALUE");
    if (assignment->first == "first-stage") {
      first_stage = static_cast<std::uint32_t>(parse_number(assignment->second, "stage", 8));
    } else if (assignment->first == "last-stage") {
      last_stage = static_cast<std::uint32_t>(parse_number(assignment->second, "stage", 8));
    } else {
      values.push_back(parse_snapshot_value(egress, assignment->first, assignment->second));
    }
  }
  if (values.empty()) throw argument_error("FIELD=VALUE is missing: a trigger asks for one field at least");
  if (call.only_checked("arming a snapshot")) return;
  std::uint32_t handle = 0;
  require_success(calls::pd::snapshot_create(call.where().dev_tgt(), first_stage, last_stage, egress ? 1 : 0, &handle),
                  "creating a snapshot");
  snap_trig_spec_t wanted{};
  snap_trig_spec_t mask{};
  for (const snapshot_value &value : values) {
    calls::pd::snapshot_capture_trigger_add(handle, &wanted, &mask, value.field->name, value.words.data());
  }
  const pd_status_t status = calls::pd::snapshot_capture_trigger_set(handle, &wanted, &mask);
  if (status != BF_SUCCESS) {
    calls::pd::snapshot_delete(handle);
    throw refused_error(status, "arming the snapshot");
  }
  call.shell.written()->snapshots[handle] = {egress};
  call.made("snapshot", handle);
}

std::uint32_t handle_word(const invocation &call)
{
  return static_cast<std::uint32_t>(parse_number(call.word(1, "SNAPSHOT"), "snapshot", 32));
}

void list_snapshots(const invocation &call)
{
  report rows(call.out, call.chosen, "snapshots", {{"snapshot", 10}, {"direction"}});
  const own_writes now = *call.shell.written();
  for (const auto &[handle, trigger] : now.snapshots) {
    rows.number(handle).cell(trigger.egress ? "egress" : "ingress").end_row();
  }
  rows.finish();
}

void show_captures(const invocation &call)
{
  call.expect_at_most(2);
  if (!call.has(1)) {
    list_snapshots(call);
    return;
  }
  const std::uint32_t handle = handle_word(call);
  std::vector<std::uint8_t> area(calls::pd::snapshot_capture_area_bytes);
  std::uint32_t count = 0;
  require_success(calls::pd::snapshot_capture_data_get(handle, call.where().pipe, area.data(), &count),
                  "fetching the captures of snapshot " + std::to_string(handle));
  const bool egress = (handle & calls::pd::snapshot_egress_bit) != 0;
  report rows(call.out, call.chosen, "captures", {{"capture"}, {"field", 44}, {"value"}});
  for (std::uint32_t i = 0; i < std::min<std::uint32_t>(count, calls::pd::snapshot_captures); ++i) {
    for (const captured_field &field : captured_fields(handle, egress, area, i)) {
      rows.number(i).cell(field.name).cell(field.value).end_row();
    }
  }
  rows.finish();
  if (count == 0) call.out.note("no packet has met the trigger yet");
}

void remove(const invocation &call)
{
  call.expect_at_most(2);
  const std::uint32_t handle = handle_word(call);
  const std::string what = "deleting snapshot " + std::to_string(handle);
  if (call.only_checked(what)) return;
  require_success(calls::pd::snapshot_delete(handle), what);
  call.shell.written()->snapshots.erase(handle);
}

constexpr plain_verb snapshot_verbs[] = {
    {"fields", show_fields}, {"arm", arm}, {"show", show_captures}, {"delete", remove}};

}  // namespace

exit_code snapshot(const invocation &call) { return run_verb(snapshot_verbs, call, call.word(0, "VERB")); }

}  // namespace tarvex::shell
