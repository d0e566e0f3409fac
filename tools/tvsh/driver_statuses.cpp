// Told, known or guessed.
//
// SPDX-License-Identifier: Apache-2.0
#include "driver_statuses.h"

#include "stand_in.h"

namespace tarvex::shell {

namespace {

driver_statuses known;

bool is(pd_status_t status, const std::optional<pd_status_t> &told, pd_status_t of_stand_in)
{
  if (status == BF_SUCCESS) return true;
  if (told) return status == *told;
  return stand_in() == nullptr || status == of_stand_in;
}

}  // namespace

void tell_driver_statuses(const driver_statuses &told) { known = told; }

bool ends_walk(pd_status_t status) { return is(status, known.walk_end, STANDIN_END); }

bool says_no_entry(pd_status_t status) { return is(status, known.no_entry, STANDIN_NO_ENTRY); }

bool says_gone(pd_status_t status)
{
  if (known.no_entry) return status == *known.no_entry;
  const bool none = status == STANDIN_NO_ENTRY || status == STANDIN_NO_MEMBER || status == STANDIN_NO_GROUP;
  return none && stand_in() != nullptr;
}

bool ends_cells(pd_status_t status)
{
  if (known.no_cell) return status == *known.no_cell;
  return status == STANDIN_BAD_INDEX && stand_in() != nullptr;
}

std::string hint_at_cells_end(pd_status_t status)
{
  if (known.no_cell || stand_in() != nullptr) return {};
  const std::string number = std::to_string(status);
  return "; if this driver means by " + number +
         " that there is no such cell, start with --end-of-cells-status=" + number +
         "; cells=0 reads only the cells that this shell wrote";
}

}  // namespace tarvex::shell
