// Requests in, frames out.
//
// SPDX-License-Identifier: Apache-2.0
#include "served_client.h"

#include <sys/socket.h>

#include <array>
#include <cerrno>

#include "connection.h"

namespace tarvex::shell {

served_client::served_client(descriptor socket, const target &where, std::shared_ptr<switch_memory> memory,
                             std::function<void()> when_done)
    : socket_(std::move(socket)),
      session_(where, std::move(memory)),
      output_(socket_.get()),
      when_done_(std::move(when_done)),
      thread_([this] { work(); })
{
}

void served_client::name_session()
{
  ucred peer{};
  socklen_t size = sizeof peer;
  if (getsockopt(socket_.get(), SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0) {
    session_.client = "process " + std::to_string(peer.pid);
  }
}

served_client::~served_client()
{
  leave();
  thread_.join();
}

void served_client::leave()
{
  session_.interrupt();
  {
    const std::lock_guard lock(mutex_);
    leaving_ = true;
  }
  changed_.notify_one();
  shutdown(socket_.get(), SHUT_RDWR);  // wakes a thread that waits for the reader
}

void served_client::readable()
{
  std::array<char, 16384> bytes;
  const ssize_t got = recv(socket_.get(), bytes.data(), bytes.size(), MSG_DONTWAIT);
  if (got < 0 && (errno == EAGAIN || errno == EINTR)) return;
  if (got <= 0) {
    leave();
    return;
  }
  requests_.add({bytes.data(), static_cast<std::size_t>(got)});
  try {
    while (const std::optional<frame> each = requests_.next()) take(*each);
  } catch (const protocol_error &error) {
    send_away(error.what());
  }
}

void served_client::take(const frame &asked)
{
  switch (asked.kind) {
    case frame_kind::hello: greet(requests_.greeting()); return;
    case frame_kind::interrupt: session_.interrupt(); return;
    default:
      if (post(asked.kind, asked.payload)) return;
      throw protocol_error("a request came ahead of the answer to the one before");
  }
}

void served_client::greet(const client_hello &hello)
{
  session_.defaults = hello.defaults;
  session_.folder = hello.folder;
  name_session();
  if (hello.device) session_.where.device = *hello.device;
  post(frame_kind::hello, written(server_hello{session_.where.device, static_cast<std::uint32_t>(getpid())}));
}

bool served_client::post(frame_kind kind, std::string_view text)
{
  {
    const std::lock_guard lock(mutex_);
    if (busy_) return false;
    busy_ = true;
    session_.clear_interrupt();
    pending_ = request{kind, std::string(text)};
  }
  changed_.notify_one();
  return true;
}

void served_client::send_away(const std::string &why)
{
  session_.interrupt();
  {
    const std::lock_guard lock(mutex_);
    last_word_ = why;
    leaving_ = true;
  }
  changed_.notify_one();
}

std::optional<served_client::request> served_client::next_request()
{
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [this] { return pending_ || leaving_; });
  return std::exchange(pending_, std::nullopt);
}

void served_client::work()
{
  try {
    while (const std::optional<request> next = next_request()) answer(*next);
    if (!last_word_.empty()) output_.send(frame_kind::error, last_word_);  // written ahead of leaving_, and no more
  } catch (const connection_lost &) {
    // Whatever is left to do for him has no reader.
  }
  leaving_ = true;
  shutdown(socket_.get(), SHUT_RDWR);
  done_ = true;
  when_done_();
}

void served_client::answer(const request &what)
{
  switch (what.kind) {
    case frame_kind::run: {
      const exit_code code = session_.run(what.text, output_);
      end_request(frame_kind::end, std::to_string(static_cast<int>(code)) + (session_.ended ? " ended" : ""));
      session_.ended = false;
      break;
    }
    case frame_kind::complete: {
      std::string words;
      for (const std::string &word : session_.completions(what.text)) words += word + '\n';
      end_request(frame_kind::words, words);
      break;
    }
    default: end_request(what.kind, what.text);
  }
}

void served_client::end_request(frame_kind kind, std::string_view text)
{
  output_.flush();
  {
    // Ahead of the answer, as the next request may follow at once.
    const std::lock_guard lock(mutex_);
    busy_ = false;
  }
  output_.send(kind, text);
}

}  // namespace tarvex::shell
