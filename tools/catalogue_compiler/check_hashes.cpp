// Checks of hash calculations.
//
// SPDX-License-Identifier: Apache-2.0
#include <set>

#include "checks.h"
#include "generated_file.h"

namespace catalogue {

namespace {

/// The bitmap of fields that a control-plane program hands over has 32 bits, and there is a list for each subset.
constexpr unsigned most_fields = 16;

void check_common_numbers(const hash_calculation &h, const subject &s)
{
  if (h.common.size() != h.fields)
    return s.error("common", "there are " + std::to_string(h.common.size()) + " common numbers for " +
                                 std::to_string(h.fields) + " fields");
  std::set<std::uint32_t> seen;
  for (const std::uint32_t number : h.common)
    if (number > 0xff)
      s.error("common", "common number " + std::to_string(number) + " is above 255");
    else if (!seen.insert(number).second)
      s.error("common", "common number " + std::to_string(number) + " stands for two fields");
}

void check_algorithms(const hash_calculation &h, const subject &s)
{
  if (h.algorithms.empty()) s.error("algorithms", "a calculation has an algorithm");
  std::set<std::uint32_t> seen;
  for (const std::uint32_t algorithm : h.algorithms)
    if (algorithm >> 24 != 0x23)
      s.error("algorithms",
              "handle " + hex(algorithm) + " is of another kind; it must lie between 0x23000001 and 0x23ffffff");
    else if (!seen.insert(algorithm).second)
      s.error("algorithms", "handle " + hex(algorithm) + " stands there twice");
}

}  // namespace

void check_hashes(const model &m, diagnostics &diag)
{
  std::uint32_t free_input = 0x21000001;
  for (const hash_calculation &h : m.hashes) {
    if (!h.sound) continue;
    const subject s(diag, "hash_calculation", h);
    if (h.fields < 1 || h.fields > most_fields) {
      s.error("fields", "a calculation has 1 to " + std::to_string(most_fields) + " fields");
      continue;
    }
    if (h.first_input < free_input)
      s.error("first_input", "input handle " + hex(h.first_input) +
                                 " lies among those of the calculation before; from " + hex(free_input) +
                                 " on they are free");
    free_input = h.first_input + (1u << h.fields) - 1;
    check_common_numbers(h, s);
    check_algorithms(h, s);
  }
  for (const digest &d : m.digests)
    for (const hash_calculation &h : m.hashes)
      if (d.sound && h.sound && h.fields <= most_fields && d.handle - h.first_input < (1u << h.fields) - 1)
        subject(diag, "digest", d).error("handle", "handle " + hex(d.handle) + " is an input of '" + h.name + "'");
}

}  // namespace catalogue
