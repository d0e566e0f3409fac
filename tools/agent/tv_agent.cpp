// The agent: one server of the shell in a process.
//
// SPDX-License-Identifier: Apache-2.0
#include "tarvex_agent/tv_agent.h"

#include <unistd.h>

#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <system_error>

#include "driver_statuses.h"
#include "server.h"
#include "shell_error.h"

namespace {

using namespace tarvex::shell;

thread_local std::string last_error;

tv_agent_status_t failed(tv_agent_status_t status, const std::string &why)
{
  last_error = why;
  return status;
}

std::optional<pd_status_t> status_of(int64_t told)
{
  return told == TV_AGENT_STATUS_UNKNOWN ? std::nullopt : std::optional(static_cast<pd_status_t>(told));
}

class agent {
 public:
  agent() = default;
  agent(const agent &) = delete;
  agent &operator=(const agent &) = delete;
  ~agent() { stop(); }

  tv_agent_status_t start(const tv_agent_settings_t &settings)
  {
    const std::lock_guard lock(mutex_);
    drop_inherited();
    if (server_ != nullptr) {
      return failed(TV_AGENT_RUNNING, "the agent runs already, at " + server_->path());
    }
    tell_driver_statuses(
        {status_of(settings.end_status), status_of(settings.none_status), status_of(end_of_cells_status_)});
    server_ = std::make_unique<server>(settings.path, target{settings.sess_hdl, settings.dev_id, 0xffff});
    process_ = getpid();
    return TV_AGENT_OK;
  }

  void set_end_of_cells_status(int64_t status)
  {
    const std::lock_guard lock(mutex_);
    end_of_cells_status_ = status;
  }

  /// Whether it ran. At the program's end, too, when what belongs to threads is gone.
  bool stop()
  {
    const std::lock_guard lock(mutex_);
    drop_inherited();
    const bool ran = server_ != nullptr;
    server_.reset();
    return ran;
  }

  bool running()
  {
    const std::lock_guard lock(mutex_);
    return server_ != nullptr && process_ == getpid();
  }

 private:
  /// The threads and the socket of a server that a fork copied are the parent's.
  void drop_inherited()
  {
    if (server_ != nullptr && process_ != getpid()) static_cast<void>(server_.release());
  }

  std::mutex mutex_;
  std::unique_ptr<server> server_;
  pid_t process_ = 0;
  int64_t end_of_cells_status_ = TV_AGENT_STATUS_UNKNOWN;
};

/// Stopped at the latest when the program ends in good order.
agent the_agent;

/// No exception leaves for the program.
template <typename Work>
tv_agent_status_t guarded_call(Work work)
try {
  last_error.clear();
  return work();
} catch (const file_error &error) {
  return failed(TV_AGENT_SOCKET, error.what());
} catch (const std::exception &error) {
  return failed(TV_AGENT_NO_MEANS, error.what());
}

}  // namespace

void tv_agent_default_settings(tv_agent_settings_t *settings)
{
  if (settings != nullptr) *settings = {nullptr, 1, 0, TV_AGENT_STATUS_UNKNOWN, TV_AGENT_STATUS_UNKNOWN};
}

tv_agent_status_t tv_agent_start(const char *path)
{
  tv_agent_settings_t settings;
  tv_agent_default_settings(&settings);
  settings.path = path;
  return tv_agent_start_with(&settings);
}

tv_agent_status_t tv_agent_start_with(const tv_agent_settings_t *settings)
{
  return guarded_call([settings] {
    if (settings == nullptr || settings->path == nullptr || *settings->path == 0) {
      return failed(TV_AGENT_BAD_ARGUMENT, "the path of the socket is missing");
    }
    if (settings->dev_id > 255) return failed(TV_AGENT_BAD_ARGUMENT, "devices are numbered from 0 to 255");
    return the_agent.start(*settings);
  });
}

void tv_agent_set_end_of_cells_status(int64_t status) { the_agent.set_end_of_cells_status(status); }

tv_agent_status_t tv_agent_stop(void)
{
  return guarded_call(
      [] { return the_agent.stop() ? TV_AGENT_OK : failed(TV_AGENT_NOT_RUNNING, "the agent does not run"); });
}

int tv_agent_running(void) { return the_agent.running() ? 1 : 0; }

const char *tv_agent_error(void) { return last_error.c_str(); }
