// Checks of handles: order in the files, kind, uniqueness, and the rise of action handles.
//
// SPDX-License-Identifier: Apache-2.0
#include <map>

#include "checks.h"
#include "generated_file.h"
#include "used_actions.h"

namespace catalogue {

namespace {

/// The top byte of a handle.
enum class handle_kind : std::uint32_t {
  match_table = 0x01,
  action_data_table = 0x02,
  selector_table = 0x03,
  counter = 0x04,
  meter = 0x05,
  register_ = 0x06,
  action = 0x20,
  digest = 0x21,
  hash_calculation = 0x22,
};

handle_kind kind_of(const resource &r)
{
  switch (r.kind) {
    case resource_kind::counter: return handle_kind::counter;
    case resource_kind::register_: return handle_kind::register_;
    default: return handle_kind::meter;
  }
}

/// Handles that must stand in their order, one row behind the other.
class rising_handles {
 public:
  void next(const subject &s, std::string_view key, std::uint32_t handle)
  {
    if (handle < last_) s.error(key, "handle " + hex(handle) + " stands behind " + hex(last_) + "; rows go by handle");
    // One row out of place is one error, not one for each row behind it.
    last_ = handle;
  }

 private:
  std::uint32_t last_ = 0;
};

class handle_space {
 public:
  void add(const subject &s, std::string_view key, std::uint32_t handle, handle_kind kind, std::string owner)
  {
    const auto top = static_cast<std::uint32_t>(kind);
    if (handle >> 24 != top) {
      s.error(key, "handle " + hex(handle) + " is of another kind; it must lie between " + hex(top << 24 | 1) +
                       " and " + hex(top << 24 | 0xffffff));
    }
    const auto [taken, is_new] = owners_.emplace(handle, std::move(owner));
    if (!is_new) s.error(key, "handle " + hex(handle) + " is that of " + taken->second + " already");
  }

 private:
  std::map<std::uint32_t, std::string> owners_;
};

}  // namespace

void check_file_order(const model &m, diagnostics &diag)
{
  std::map<std::string, rising_handles> tables, profiles, hashes;
  std::map<std::pair<std::string, resource_kind>, rising_handles> resources;
  for (const table &t : m.tables) {
    if (t.sound) tables[t.at.file].next(subject(diag, "table", t), "handle", t.handle);
  }
  for (const profile &p : m.profiles) {
    if (p.sound) profiles[p.at.file].next(subject(diag, "profile", p), "action_data_table", p.action_data_table);
  }
  for (const hash_calculation &h : m.hashes) {
    if (h.sound) hashes[h.at.file].next(subject(diag, "hash_calculation", h), "handle", h.handle);
  }
  for (const resource &r : m.resources) {
    if (r.sound) resources[{r.at.file, r.kind}].next(subject(diag, word_of(r.kind), r), "handle", r.handle);
  }
}

void check_handles(const model &m, diagnostics &diag)
{
  handle_space handles;
  const auto quoted = [](std::string_view kind, const std::string &name) {
    return std::string(kind) + " '" + name + "'";
  };
  for (const table &t : m.tables) {
    if (!t.sound) continue;
    handles.add(subject(diag, "table", t), "handle", t.handle, handle_kind::match_table, quoted("table", t.name));
  }
  for (const profile &p : m.profiles) {
    if (!p.sound) continue;
    const subject s(diag, "profile", p);
    handles.add(s, "action_data_table", p.action_data_table, handle_kind::action_data_table, quoted("profile", p.name));
    handles.add(s, "selector_table", p.selector_table, handle_kind::selector_table, quoted("profile", p.name));
  }
  for (const resource &r : m.resources) {
    if (!r.sound) continue;
    handles.add(subject(diag, word_of(r.kind), r), "handle", r.handle, kind_of(r), quoted(word_of(r.kind), r.name));
  }
  for (const hash_calculation &h : m.hashes) {
    if (!h.sound) continue;
    handles.add(subject(diag, "hash_calculation", h), "handle", h.handle, handle_kind::hash_calculation,
                quoted("hash_calculation", h.name));
  }
  for (const digest &d : m.digests) {
    if (d.sound)
      handles.add(subject(diag, "digest", d), "handle", d.handle, handle_kind::digest, quoted("digest", d.name));
  }
  for (const used_action &u : used_actions(m)) {
    if (!u.use->sound) continue;
    const std::string &owner = u.by_table != nullptr ? u.by_table->name : u.by_profile->name;
    handles.add(u.about(diag), "handle", u.use->handle, handle_kind::action,
                quoted("action", u.use->name) + " of '" + owner + "'");
  }
}

void check_action_order(const model &m, diagnostics &diag)
{
  rising_handles actions;
  for (const used_action &u : used_actions(m)) {
    if (u.use->sound) actions.next(u.about(diag), "handle", u.use->handle);
  }
}

}  // namespace catalogue
