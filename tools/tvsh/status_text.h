// Statuses of the driver in words.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "driver_statuses.h"
#include "shell_error.h"
#include "tarvex_pd/types.h"

namespace tarvex::shell {

/// The driver, or the library in its place, refused an operation.
class refused_error : public shell_error {
 public:
  refused_error(pd_status_t status, const std::string &what, const std::string &hint = {});
  pd_status_t status() const { return status_; }

 private:
  pd_status_t status_;
};

/// "no entry (STANDIN_NO_ENTRY, status 68)"
std::string status_text(pd_status_t status);

/// Throws refused_error, its text beginning with `what`, for any status but 0.
void require_success(pd_status_t status, const std::string &what);

/// Whether a call found its entry, member or group: others write to a living switch, and what has gone since a walk met
/// it is passed over. Throws refused_error, its text beginning with what `what` makes, for any other refusal.
template <typename What>
bool found_there(pd_status_t status, What what)
{
  if (status == BF_SUCCESS) return true;
  if (!says_gone(status)) throw refused_error(status, what());
  return false;
}

}  // namespace tarvex::shell
