// Saved states: JSON of sections, each with lists by the name of what they are of.
//
//   {"schema_version":1,
//   "members":{"ecmpMemberActionProfile":[
//   {"id":1,"action":"setEcmpNextHop","parameters":{"nextHop":7}}
//   ]},
//   "entries":{"ipv4Host":[ ...
//
// What is promised: a reader takes files of every version up to its own, and refuses a newer one by its number before it
// writes anything. Version 1 is what all releases so far have written. Whatever changes the meaning of a file, or adds
// what an older reader would have to obey, raises the version.
//
// An element has a line, and values are written as the commands take them. Files are written and read as streams: what
// is held does not grow with the entries.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>
#include <map>
#include <string>

#include "entry_contents.h"
#include "file_place.h"
#include "json_text.h"
#include "replaced_file.h"
#include "state_counts.h"

namespace tarvex::shell {

inline constexpr int state_file_version = 1;

/// Members and groups get running numbers of the file's own. Counts what it writes.
class state_file_writer : public state_counter {
 public:
  explicit state_file_writer(replaced_file &file);

  void member(const profile_info &profile, const profile_member &state) override;
  void group(const profile_info &profile, const profile_group &state) override;
  void fallback(const profile_info &profile, std::uint32_t member) override;
  void idle(const table_info &table, const idle_setting &setting) override;
  void default_entry(const table_info &table, const entry_state &state) override;
  void entry(const table_info &table, const entry_state &state) override;
  void cell(const resource_info &resource, const cell_state &state) override;
  void hash(const hash_info &hash, const hash_state &state) override;
  void value_set(const value_set_entry &entry) override;
  void learning_timeout(std::uint32_t timeout) override;

  /// Behind the last part.
  void finish();

 private:
  struct numbers {
    std::map<std::uint32_t, std::uint32_t> members;
    std::map<std::uint32_t, std::uint32_t> groups;
  };

  void begin(std::string_view section, std::string_view owner);
  void end();
  void close_list();
  void meter(const pd_meter_spec_t &value);
  void counter(const pd_counter_value_t &value);
  void entry_body(const table_info &table, const entry_state &state);

  replaced_file &file_;
  std::string line_;
  json_objects json_{line_};
  entry_json contents_{json_};
  std::string section_;
  std::string owner_;
  std::map<const profile_info *, numbers> numbers_;
};

/// Called now and then with the bytes read, of how many; may throw.
using reading_progress = std::function<void(std::uint64_t, std::uint64_t)>;

/// Hands the state of a file to a visitor, each part checked against the rows and against what it refers to. Throws
/// file_error that names file, line, section and table. `at` tells where the reader is, for a visitor that throws.
void read_state_file(const std::string &name, state_visitor &to, file_place &at, const reading_progress &progress);

}  // namespace tarvex::shell
