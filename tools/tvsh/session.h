// The command engine: takes command lines, writes to an output, and keeps what lives between commands. It touches no
// terminal and no environment, and only the files that a command names.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <atomic>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "command_line.h"
#include "device_memory.h"
#include "function_call.h"
#include "interpreter.h"
#include "output.h"
#include "shell_error.h"
#include "trace_view.h"

namespace tarvex::shell {

class session : public interpreter {
 public:
  /// Sessions of one process are given one memory.
  explicit session(const target &on = {}, std::shared_ptr<switch_memory> memory = std::make_shared<switch_memory>())
      : where(on), memory_(std::move(memory))
  {
  }

  exit_code run(std::string_view line, output &out) override { return run_with(line, defaults, out); }
  /// Runs a command for another one, which takes its errors as text whatever the session's defaults are.
  exit_code run_plainly(std::string_view line, output &out) { return run_with(line, {}, out); }

  /// Words that can stand where the line ends; the last word of the line may have been begun. Relative names of files
  /// begin from the folder.
  static std::vector<std::string> complete(std::string_view line, const std::filesystem::path &folder = {});
  std::vector<std::string> completions(std::string_view line) override { return complete(line, folder); }

  void interrupt() noexcept override { interrupted_ = true; }
  void clear_interrupt() noexcept override { interrupted_ = false; }
  bool interrupted() const { return interrupted_.load(std::memory_order_relaxed); }
  /// Throws shell_error after an interrupt; long work asks now and then.
  void check_interrupt() const
  {
    if (interrupted()) throw shell_error(exit_code::interrupted, "interrupted");
  }

  const std::shared_ptr<switch_memory> &shared_memory() const { return memory_; }
  device_memory &memory() const { return memory_->of(where.device); }
  /// The lock is held while the result lives: one expression, or a copy.
  locked<own_writes> written() const { return memory().written.lock(); }
  digest_log &digests() const { return memory().digests; }

  /// The calls that were traced since the last time, as notes.
  void show_trace(output &out);

  /// What is remembered of a device that is gone.
  void forget_device(std::uint32_t device)
  {
    device_memory &memory = memory_->of(device);
    *memory.written.lock() = {};
    memory.digests.forget();
    memory.updates.forget();
    memory.meant.end(memory.updates);
  }

  /// Throws usage_error for what cannot be a name.
  static void require_name(std::string_view name);

  target where;
  std::map<std::string, std::uint32_t, std::less<>> names;  // of members and groups; $NAME stands for the handle
  std::unique_ptr<trace_view> traced;                       // while the session shows the trace
  std::string client = "this shell";                        // how others are told who has his turn
  std::filesystem::path folder;  // that relative names of files begin from; empty for the process's own

 private:
  exit_code run_with(std::string_view line, const options &chosen, output &out);

  std::shared_ptr<switch_memory> memory_;
  std::atomic<bool> interrupted_ = false;
};

}  // namespace tarvex::shell
