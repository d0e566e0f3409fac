// One thread listens and reads for all clients; each client has one that works.
//
// SPDX-License-Identifier: Apache-2.0
#include "server.h"

#include <poll.h>
#include <signal.h>
#include <sys/eventfd.h>
#include <sys/socket.h>

#include <algorithm>
#include <cerrno>
#include <ranges>
#include <system_error>
#include <vector>

#include "connection.h"
#include "shell_error.h"

namespace tarvex::shell {

namespace {

/// Threads that are made while this lives get no signal.
class blocked_signals {
 public:
  blocked_signals()
  {
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before_);
  }
  blocked_signals(const blocked_signals &) = delete;
  blocked_signals &operator=(const blocked_signals &) = delete;
  ~blocked_signals() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

 private:
  sigset_t before_{};
};

}  // namespace

server::server(const std::string &path, const target &where, std::shared_ptr<switch_memory> memory)
    : where_(where), memory_(std::move(memory)), listener_(path), wake_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
{
  if (!wake_) throw file_error(system_error_text(path, "no descriptor is left to serve it"));
  const blocked_signals quiet;
  try {
    thread_ = std::thread([this] { serve(); });
  } catch (const std::system_error &error) {
    throw file_error(path + ": no thread can be made to serve it: " + error.what());
  }
}

server::~server()
{
  stopping_ = true;
  wake();
  thread_.join();
}

void server::wake() const
{
  const eventfd_t one = 1;
  eventfd_write(wake_.get(), one);
}

void server::serve()
{
  constexpr int pause = 100;  // milliseconds
  std::vector<pollfd> polled;
  std::vector<served_client *> readers;
  while (!stopping_) {
    polled = {{wake_.get(), POLLIN, 0}, {paused_ ? -1 : listener_.get(), POLLIN, 0}};
    readers.clear();
    for (served_client &each : clients_) {
      if (each.leaving()) continue;
      polled.push_back({each.socket(), POLLIN, 0});
      readers.push_back(&each);
    }
    if (poll(polled.data(), polled.size(), paused_ ? pause : -1) < 0) continue;
    paused_ = false;
    if (polled[0].revents != 0) {
      eventfd_t count = 0;
      eventfd_read(wake_.get(), &count);
    }
    for (std::size_t i = 0; i < readers.size(); ++i) {
      if (polled[i + 2].revents != 0) readers[i]->readable();
    }
    drop_done();
    if (polled[1].revents != 0) accept_client();
  }
  for (served_client &each : clients_) each.leave();  // all first, so that none is waited for ahead of another's end
  clients_.clear();
}

void server::drop_done()
{
  clients_.remove_if([](const served_client &each) { return each.done(); });
}

std::string server::refusal(int socket) const
{
  ucred peer{};
  socklen_t size = sizeof peer;
  if (getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &peer, &size) != 0) return "the user behind the socket is not known";
  if (peer.uid != geteuid() && peer.uid != 0) {
    return "user " + std::to_string(peer.uid) + " may not use this shell; user " + std::to_string(geteuid()) +
           " and root may";
  }
  if (clients_.size() >= most_clients) {
    return "there are " + std::to_string(most_clients) + " clients already, which is the most; try again later";
  }
  return {};
}

bool server::place_soon()
{
  constexpr std::chrono::seconds patience(2);
  if (clients_.size() < most_clients) return false;
  const auto now = std::chrono::steady_clock::now();
  const auto leaves = [](const served_client &each) { return each.leaving(); };
  if (!waits_until_) waits_until_ = now + patience;
  if (now < *waits_until_ && std::ranges::any_of(clients_, leaves)) return true;
  for (served_client &each : clients_ | std::views::filter(leaves)) each.leave();  // who does not read his last word
  const auto silent = std::ranges::find_if(clients_, [](auto &each) { return !each.greeted() && !each.leaving(); });
  if (silent == clients_.end()) return false;
  silent->send_away("no greeting came, and another client wants the place");
  waits_until_ = now + patience;
  return true;
}

void server::accept_client()
{
  if (place_soon()) {
    paused_ = true;
    return;
  }
  waits_until_.reset();
  descriptor accepted(accept4(listener_.get(), nullptr, nullptr, SOCK_CLOEXEC));
  if (!accepted) {
    paused_ = errno == EMFILE || errno == ENFILE || errno == ENOBUFS || errno == ENOMEM;
    return;
  }
  std::string why = refusal(accepted.get());
  if (why.empty()) {
    try {
      clients_.emplace_back(std::move(accepted), where_, memory_, [this] { wake(); });
      return;
    } catch (const std::exception &error) {
      why = std::string("the shell is short of means: ") + error.what();
    }
  }
  const std::string last = encoded(frame_kind::error, why);
  send(accepted.get(), last.data(), last.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
}

}  // namespace tarvex::shell
