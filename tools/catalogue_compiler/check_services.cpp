// Checks of digests and value sets, and of the halves of MAC addresses.
//
// SPDX-License-Identifier: Apache-2.0
#include <algorithm>

#include "checks.h"
#include "packed_bytes.h"

namespace catalogue {

namespace {

template <class Row>
void check_one_at_most(const std::vector<Row> &rows, std::string_view kind, diagnostics &diag)
{
  for (std::size_t i = 1; i < rows.size(); ++i)
    subject(diag, kind, rows[i]).error("name", "a pipeline has one " + std::string(kind) + " at most");
}

void check_fields(const digest &d, const subject &about)
{
  unsigned bytes = 0;
  for (const digest_field &f : d.fields) {
    const subject s(about, "field", f);
    bytes += f.bytes;
    if (f.bytes != 1 && f.bytes != 2 && f.bytes != 4) s.error("bytes", "a field has 1, 2 or 4 bytes");
    if (f.bits == 0 || f.bits > 8 * f.bytes)
      s.error("bits", "the field's bytes have no room for so many bits, or there are none");
  }
  check_sum(about, "entry_bytes", d.entry_bytes, bytes, "fields");
}

/// Each half has at most 32 bits, and is the half of one address.
template <class Row, class Fits>
void check_halves_of(const std::vector<Row> &rows, std::string_view kind, const subject &about, Fits fits)
{
  for (const Row &high : rows) {
    if (high.low_half.empty()) continue;
    const subject s(about, kind, high);
    const auto low = std::find_if(rows.begin(), rows.end(), [&](const Row &r) { return r.name == high.low_half; });
    if (low == rows.end()) {
      s.error("low_half", "there is no " + std::string(kind) + " '" + high.low_half + "'");
    } else if (&*low == &high || !low->low_half.empty() || !fits(high, *low)) {
      s.error("low_half",
              "both halves of a MAC address are shown as 'mac' and match alike, and one of them is the lower");
    }
  }
}

}  // namespace

void check_services(const model &m, diagnostics &diag)
{
  check_one_at_most(m.digests, "digest", diag);
  check_one_at_most(m.value_sets, "value_set", diag);
  for (const digest &d : m.digests)
    if (all_sound(d, d.fields)) check_fields(d, subject(diag, "digest", d));
}

void check_halves(const model &m, diagnostics &diag)
{
  const auto both_mac = [](const auto &high, const auto &low) { return high.display == "mac" && low.display == "mac"; };
  for (const table &t : m.tables)
    if (all_sound(t, t.fields))
      check_halves_of(t.fields, "field", subject(diag, "table", t), [&](const field &high, const field &low) {
        return both_mac(high, low) && high.match == low.match;
      });
  for (const action &a : m.actions)
    if (all_sound(a, a.params)) check_halves_of(a.params, "parameter", subject(diag, "action", a), both_mac);
  for (const digest &d : m.digests)
    if (all_sound(d, d.fields))
      check_halves_of(d.fields, "field", subject(diag, "digest", d), [](auto &, auto &) { return true; });
}

}  // namespace catalogue
