// A callback that the shell puts in the place of the one that the process has registered. The process misses nothing:
// it is called in its turn, and has its place back in the end.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <mutex>

#include "tarvex_pd/types.h"

namespace tarvex::shell {

struct registered_callback {
  pd_callback_t function = nullptr;  // null where there is none
  void *cookie = nullptr;
  pd_sess_hdl_t session = 0;  // of the digest's
};

/// Of the stand-in switch alone, as no other driver tells who is registered.
class borrowed_callback {
 public:
  /// `handle`: of the table or the digest that calls.
  borrowed_callback(std::uint32_t handle, pd_callback_t own, void *cookie) : handle_(handle), own_{own, cookie, 0} {}
  borrowed_callback(const borrowed_callback &) = delete;
  borrowed_callback &operator=(const borrowed_callback &) = delete;

  /// Whether the driver calls this one. Throws refused_error.
  bool in_place(std::uint32_t device) const { return is_own(registered(device)); }
  /// Has `place` register this one, where it is not in place. Throws refused_error.
  template <typename Place>
  void take_place(std::uint32_t device, Place place)
  {
    const registered_callback found = registered(device);
    if (is_own(found)) return;
    keep(found);
    place(own_);
  }
  /// Has `place` register who was there ahead of it. Nothing is done where another has taken the place meanwhile.
  template <typename Place>
  void give_back(std::uint32_t device, Place place) const
  {
    if (in_place(device)) place(earlier());
  }
  /// Who was there ahead of it; without a function where nobody was. Kept after the place was given back, as calls may
  /// be on their way.
  registered_callback earlier() const;

 private:
  registered_callback registered(std::uint32_t device) const;
  bool is_own(const registered_callback &callback) const
  {
    return callback.function == own_.function && callback.cookie == own_.cookie;
  }
  void keep(const registered_callback &callback);

  const std::uint32_t handle_;
  const registered_callback own_;
  mutable std::mutex mutex_;
  registered_callback earlier_{};
};

}  // namespace tarvex::shell
