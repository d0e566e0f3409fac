// A device of the stand-in switch for as long as an example runs, and what becomes of a call that the driver refuses.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <tarvex_pd/tarvex_pd.h>
#include <tarvex_standin/standin.h>

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <string>
#include <type_traits>
#include <vector>

#include "exit_status.h"

namespace tarvex::examples {

inline constexpr pd_sess_hdl_t session = 1;
inline constexpr pd_dev_id_t device_id = 0;
inline constexpr pd_dev_tgt_t all_pipes = pd_dev_tgt_t{PD_ALL_PIPES} << 32 | device_id;

/// A status as a user can read it.
std::string to_text(pd_status_t status);

[[noreturn]] void refuse(pd_status_t status, const std::string &what);

/// Throws driver_refused for a status that is not 0. `what` names what was done, as a text or as a function that makes
/// one when it is wanted.
template <typename What>
void must(pd_status_t status, What &&what)
{
  if (status == BF_SUCCESS) return;
  if constexpr (std::is_invocable_v<What>) {
    refuse(status, what());
  } else {
    refuse(status, std::forward<What>(what));
  }
}

/// Adds the device and starts the library; there can be one at a time.
class switch_device {
 public:
  switch_device();
  switch_device(const switch_device &) = delete;
  switch_device &operator=(const switch_device &) = delete;
  ~switch_device();
};

/// All handles of a walk: `first` gives one handle, `next` those behind one, as many as its array has room for.
template <typename First, typename Next>
std::vector<std::uint32_t> walk(const std::string &what, First first, Next next)
{
  std::vector<std::uint32_t> handles;
  std::vector<std::uint32_t> batch(100, STANDIN_NO_HANDLE);
  pd_status_t status = first(batch.data());
  while (status != STANDIN_END) {
    must(status, [&] { return "walking " + what; });
    const std::size_t before = handles.size();
    std::ranges::remove_copy(batch, std::back_inserter(handles), STANDIN_NO_HANDLE);
    if (handles.size() == before) break;
    status = next(handles.back(), static_cast<std::uint32_t>(batch.size()), batch.data());
  }
  return handles;
}

}  // namespace tarvex::examples
