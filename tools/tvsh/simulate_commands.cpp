// The command that does to the stand-in switch what packets, time and faults do to a real one.
//
// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <array>

#include "cells.h"
#include "commands.h"
#include "entry_rows.h"
#include "entry_search.h"
#include "pd_calls.h"
#include "session.h"
#include "snapshot_fields.h"
#include "stand_in.h"
#include "status_text.h"
#include "value_text.h"
#include "verbs.h"

namespace tarvex::shell {

namespace {

void device(const invocation &call)
{
  call.expect_at_most(3);
  const std::string &verb = call.word(1, "add|remove");
  const auto id = static_cast<std::uint32_t>(parse_number(call.word(2, "DEVICE"), "device", 32));
  if (verb == "add") {
    require_success(require_stand_in().device_add(id), "adding device " + std::to_string(id));
  } else if (verb == "remove") {
    require_success(require_stand_in().device_remove(id), "removing device " + std::to_string(id));
    call.shell.forget_device(id);
  } else {
    throw usage_error("'" + verb + "' is neither add nor remove");
  }
}

struct named_entry {
  const table_info &table;
  entry_words words;
  std::uint32_t handle;
};

/// The entry that the words behind the verb name; `others` may stand among them.
named_entry entry_of(const invocation &call, std::initializer_list<std::string_view> others)
{
  const table_info &table = table_named(call.word(1, "TABLE"));
  const auto naming = entry_name_words(table);
  std::vector<std::string_view> allowed(naming.begin(), naming.end());
  allowed.insert(allowed.end(), others);
  entry_words words = parse_entry_words(table, call.words.subspan(2), {}, allowed, source_of(call.chosen));
  const std::uint32_t handle = handle_of(table, words, call.where());
  return {table, std::move(words), handle};
}

/// Packets hit an entry, or a cell of an indirect counter.
void count(const invocation &call)
{
  static constexpr std::array kinds = {resource_kind::counter};
  const std::string &name = call.word(1, "TABLE|COUNTER");
  const bool cell = std::ranges::any_of(calls::resources, [&](const resource_info &each) {
    return each.name == name && each.kind == resource_kind::counter && !each.direct;
  });
  if (cell) {
    static constexpr std::array<std::string_view, 2> allowed = {"packets", "bytes"};
    const resource_info &counter = resource_named(name, kinds);
    const std::uint32_t index = parse_index(counter, call.word(2, "INDEX"), call.chosen);
    const own_words own = parse_own_words(call.words.subspan(3), allowed);
    require_success(
        require_stand_in().count_cell(call.where().device, counter.handle, index, own.number("packets", 64).value_or(1),
                                      own.number("bytes", 64).value_or(64)),
        "counting packets");
    return;
  }
  const named_entry entry = entry_of(call, {"packets", "bytes"});
  const std::uint64_t packets = entry.words.own.number("packets", 64).value_or(1);
  require_success(require_stand_in().count_packets(call.where().device, entry.table.handle, entry.handle, packets,
                                                   entry.words.own.number("bytes", 64).value_or(64 * packets)),
                  "counting packets of " + entry_name(entry.table, entry.words));
}

void age(const invocation &call)
{
  call.expect_at_most(2);
  const auto time = static_cast<std::uint32_t>(parse_number(call.word(1, "MILLISECONDS"), "time", 32));
  require_success(require_stand_in().idle_advance(time), "letting time pass");
}

/// A report of the digest: its MAC address, and what is given of its other fields, 1 for the rest.
void learn(const invocation &call)
{
  const calls::digest_info &digest = the_digest();
  const std::vector<shown_field> fields = digest_fields(digest);
  std::vector<std::string_view> allowed;
  for (const calls::digest_field_info &row : digest.fields) allowed.push_back(row.word);
  const auto address = std::ranges::find(fields, display_kind::mac, &shown_field::display);
  if (address == fields.end()) throw usage_error("the pipeline learns no MAC addresses");
  shown_field given = *address;
  given.name = "MAC";
  const wide_number mac = parse_value(given, call.word(1, "MAC"));
  const own_words own = parse_own_words(call.words.subspan(2), allowed);
  std::vector<std::uint8_t> entry(digest.entry_bytes);
  for (const shown_field &field : fields) {
    const auto row = std::ranges::find(digest.fields, field.full_name, &calls::digest_field_info::name);
    if (row != digest.fields.end()) write_value(field, own.number(row->word, field.bits).value_or(1), entry.data());
  }
  write_value(*address, mac, entry.data());
  require_success(require_stand_in().digest_deliver(call.where().device, digest.handle, entry.data(), 1),
                  "learning an address (does anyone listen? see 'digests on')");
}

/// A packet with the given fields passes a snapshot.
void capture(const invocation &call)
{
  const auto handle = static_cast<std::uint32_t>(parse_number(call.word(1, "SNAPSHOT"), "snapshot", 32));
  const bool egress = (handle & calls::pd::snapshot_egress_bit) != 0;
  std::array<std::uint8_t, STANDIN_SNAPSHOT_FIELD_BYTES> packet{};
  for (const std::string &word : call.words.subspan(2)) {
    const auto assignment = assignment_of(word);
    if (!assignment) throw usage_error("'" + word + "' is no FIELD=VALUE");
    const snapshot_value value = parse_snapshot_value(egress, assignment->first, assignment->second);
    require_success(require_stand_in().snapshot_field_set(egress ? STANDIN_SNAPSHOT_EGRESS : STANDIN_SNAPSHOT_INGRESS,
                                                          value.field->name, value.words.data(), packet.data()),
                    std::string("setting ") + value.field->name);
  }
  const pd_status_t status = require_stand_in().snapshot_packet(handle, 0, packet.data());
  if (status != STANDIN_NOT_TRIGGERED) require_success(status, "passing a packet");
  const bool captured = status == BF_SUCCESS;
  call.result(captured ? "captured" : "not captured", {{"captured", captured}});
}

void refuse(const invocation &call)
{
  call.expect_at_most(3);
  const auto nth = static_cast<std::uint32_t>(parse_number(call.word(1, "N"), "count of calls", 32));
  const auto status = static_cast<pd_status_t>(parse_number(call.word(2, "STATUS"), "status", 32));
  require_stand_in().refuse_call(nth, status);
}

/// The key bytes of a packet, in the order of the key's rows.
void lookup(const invocation &call)
{
  const table_info &table = table_named(call.word(1, "TABLE"));
  std::vector<std::uint8_t> key(table.key_bytes);
  std::uint32_t partition = 0;
  // A packet has bits that the table ignores.
  const entry_words words = parse_entry_words(table, call.words.subspan(2), {}, {}, value_source::read_back);
  for (const calls::field_info &row : table.fields) {
    const record_member member{row.member, row.member_size, row.companion, row.bits};
    const shown_field field{row.name, row.name, display_kind::number, row.match, row.bits, {member, record_member{}}};
    wide_number value = read_value(field, words.key.data());
    if (row.match == match_kind::partition) {
      partition = static_cast<std::uint32_t>(value);
      continue;
    }
    for (std::size_t i = row.key_size; i-- > 0; value >>= 8) key[row.key_at + i] = static_cast<std::uint8_t>(value);
  }
  std::uint32_t handle = STANDIN_NO_HANDLE;
  const pd_status_t status =
      require_stand_in().lookup(call.where().dev_tgt(), table.handle, key.data(), key.size(), partition, &handle);
  if (status != STANDIN_NO_ENTRY) require_success(status, std::string("looking up in ") + table.name);
  const bool hit = status == BF_SUCCESS;
  if (handle == STANDIN_NO_HANDLE) {
    call.result("a miss, and there is no default entry", {{"table", table.name}, {"hit", hit}});
    return;
  }
  entry_reader reader(table, call.where(), false);
  const table_entry &entry = reader.read(handle);
  entry_rows rows(call.out, call.chosen, table);
  rows.show(entry);
  rows.finish(report::flag{"hit", hit});
  if (!hit) call.out.note("a miss: this is the default entry");
}

void corrupt(const invocation &call)
{
  const named_entry entry = entry_of(call, {"bit"});
  const auto bit = static_cast<std::uint32_t>(entry.words.own.number("bit", 32).value_or(0));
  require_success(require_stand_in().corrupt_entry(call.where().device, entry.table.handle, entry.handle, bit),
                  "corrupting " + entry_name(entry.table, entry.words));
}

void lose(const invocation &call)
{
  const named_entry entry = entry_of(call, {});
  require_success(require_stand_in().lose_entry(call.where().device, entry.table.handle, entry.handle),
                  "losing " + entry_name(entry.table, entry.words));
}

constexpr plain_verb simulation_verbs[] = {{"device", device}, {"count", count},     {"age", age},
                                           {"learn", learn},   {"capture", capture}, {"refuse", refuse},
                                           {"lookup", lookup}, {"corrupt", corrupt}, {"lose", lose}};

}  // namespace

exit_code simulate(const invocation &call)
{
  require_stand_in();
  if (call.chosen.dry_run) throw usage_error("what is simulated cannot be tried with --dry-run");
  return run_verb(simulation_verbs, call, call.word(0, "VERB"));
}

}  // namespace tarvex::shell
