// Who may change the state of a device as a whole: one session at a time, in the order in which they came. The queue is
// in the process that has the switch, so that clients of any release take their turns.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <chrono>
#include <condition_variable>
#include <list>
#include <mutex>
#include <string>

namespace tarvex::shell {

class change_queue {
 public:
  /// The turn of a session, from its construction on.
  class turn {
   public:
    /// Waits until all that came before have had their turn. `waits(holder)` is called once where there is anybody to
    /// wait for; `check()` now and then meanwhile. Either may throw, which leaves the queue.
    template <typename Waits, typename Check>
    turn(change_queue &queue, const std::string &name, Waits waits, Check check)
        : queue_(queue), place_(queue.enter(name))
    {
      try {
        if (const std::string holder = queue.holder_before(place_); !holder.empty()) waits(holder);
        while (!queue.wait_for(place_)) check();
      } catch (...) {
        queue.leave(place_);
        throw;
      }
    }
    turn(const turn &) = delete;
    turn &operator=(const turn &) = delete;
    ~turn() { queue_.leave(place_); }

   private:
    change_queue &queue_;
    std::list<std::string>::iterator place_;
  };

 private:
  using place = std::list<std::string>::iterator;

  place enter(const std::string &name)
  {
    const std::lock_guard lock(mutex_);
    return names_.insert(names_.end(), name);
  }
  /// Empty for the one whose turn it is.
  std::string holder_before(place of)
  {
    const std::lock_guard lock(mutex_);
    return of == names_.begin() ? "" : names_.front();
  }
  /// Whether it is this one's turn; waits a moment for it.
  bool wait_for(place of)
  {
    std::unique_lock lock(mutex_);
    return left_.wait_for(lock, std::chrono::milliseconds(50), [&] { return of == names_.begin(); });
  }
  void leave(place of)
  {
    {
      const std::lock_guard lock(mutex_);
      names_.erase(of);
    }
    left_.notify_all();
  }

  std::mutex mutex_;
  std::condition_variable left_;
  std::list<std::string> names_;  // the first has its turn
};

}  // namespace tarvex::shell
