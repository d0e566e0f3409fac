// Frames of the server, handed to an output.
//
// SPDX-License-Identifier: Apache-2.0
#include "remote_session.h"

#include <signal.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <deque>

#include "command_line.h"
#include "connection.h"
#include "json_output.h"

namespace tarvex::shell {

namespace {

/// A number at the start of the text, which is taken off with the blank behind it.
std::uint64_t take_number(std::string_view &text)
{
  std::uint64_t value = 0;
  const char *const end = std::from_chars(text.data(), text.data() + text.size(), value).ptr;
  if (end == text.data()) throw protocol_error("a number is missing");
  text.remove_prefix(static_cast<std::size_t>(end - text.data()));
  if (text.starts_with(' ')) text.remove_prefix(1);
  return value;
}

/// Gives an output whole lines of data that comes in parts.
class line_joiner {
 public:
  explicit line_joiner(output &out) : out_(out) {}

  void add(std::string_view data)
  {
    for (;;) {
      const std::size_t end = data.find('\n');
      if (end == std::string_view::npos) break;
      out_.line(begun_.empty() ? data.substr(0, end) : std::string_view(begun_.append(data.substr(0, end))));
      begun_.clear();
      data.remove_prefix(end + 1);
    }
    begun_ += data;
  }

 private:
  output &out_;
  std::string begun_;
};

constexpr std::size_t most_batch = 16384;  // small enough that both sides have something to do

/// Whole lines from the beginning of a script, as many as a frame takes; empty where the first cannot be sent.
std::string_view next_batch(std::string_view text)
{
  std::string_view sendable = text.substr(0, most_request);
  sendable = sendable.substr(0, sendable.find('\0'));
  if (sendable.size() == text.size() && text.size() <= most_batch) return text;
  std::size_t end = sendable.substr(0, most_batch).rfind('\n');
  if (end == std::string_view::npos) end = sendable.find('\n');
  return end == std::string_view::npos ? std::string_view() : text.substr(0, end + 1);
}

bool can_be_sent(std::string_view line)
{
  return line.size() <= most_request && line.find_first_of(std::string_view("\n\0", 2)) == std::string_view::npos;
}

void show_progress(std::string_view text, output &out)
{
  const std::uint64_t done = take_number(text);
  const std::uint64_t total = take_number(text);
  out.progress(text, done, total);
}

}  // namespace

remote_session::remote_session(const std::string &path, const client_hello &hello)
    : path_(path), socket_(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0))
{
  defaults = hello.defaults;
  const sockaddr_un address = socket_address(path);
  if (!socket_ || connect(socket_.get(), reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0) {
    const std::string hint = errno == ENOENT || errno == ECONNREFUSED ? "; 'tvsh --serve' begins to serve one" : "";
    throw file_error(system_error_text(path, "cannot be attached to") + hint);
  }
  try {
    send(frame_kind::hello, written(hello));
  } catch (const shell_error &) {
    // A server that takes no more clients closes at once; why, can still be read.
  }
  const frame answer = next();
  if (answer.kind != frame_kind::hello) fail("it does not greet");
  try {
    server_ = parse_server_hello(answer.payload);
    greeted_ = true;
  } catch (const protocol_error &error) {
    fail(error.what());
  }
}

void remote_session::fail(const std::string &why) const { throw file_error(path_ + ": " + why); }

void remote_session::send(frame_kind kind, std::string_view payload)
{
  // No interrupt may get into the middle of a frame.
  sigset_t interrupt;
  sigset_t before;
  sigemptyset(&interrupt);
  sigaddset(&interrupt, SIGINT);
  sigaddset(&interrupt, SIGTERM);
  pthread_sigmask(SIG_BLOCK, &interrupt, &before);
  bool lost = false;
  try {
    send_all(socket_.get(), encoded(kind, payload));
  } catch (const connection_lost &) {
    lost = true;
  }
  pthread_sigmask(SIG_SETMASK, &before, nullptr);
  if (lost) fail("the server has gone away");
}

frame remote_session::next()
{
  std::array<char, 65536> bytes;
  for (;;) {
    try {
      if (const auto whole = decoder_.next()) {
        if (whole->kind == frame_kind::error && !greeted_) fail(std::string(whole->payload));
        return *whole;
      }
    } catch (const protocol_error &error) {
      fail(std::string("is no shell's socket: ") + error.what());
    }
    const ssize_t got = recv(socket_.get(), bytes.data(), bytes.size(), 0);
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) fail("the server has gone away");
    decoder_.add({bytes.data(), static_cast<std::size_t>(got)});
  }
}

void remote_session::interrupt() noexcept
{
  // From a signal handler: nothing but a system call. The frame is five bytes, which go whole or not at all.
  static constexpr std::array<char, 5> frame = {0, 0, 0, 0, static_cast<char>(frame_kind::interrupt)};
  ::send(socket_.get(), frame.data(), frame.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
}

std::string remote_session::read_answer(bool as_json, output &out)
{
  json_output json(out);
  line_joiner lines(as_json ? json : out);
  const auto complete = [&](const char *why) {
    if (json.open()) json.finish_with(exit_code::file, why);
  };
  try {
    for (;;) {
      const frame each = next();
      switch (each.kind) {
        case frame_kind::heading: out.heading(each.payload); break;
        case frame_kind::lines:
          lines.add(each.payload);
          out.flush();
          break;
        case frame_kind::note: out.note(each.payload); break;
        case frame_kind::error: out.error(each.payload); break;
        case frame_kind::progress: show_progress(each.payload, out); break;
        case frame_kind::end: return std::string(each.payload);
        default: throw protocol_error("a frame is none that answers a command");
      }
    }
  } catch (const protocol_error &error) {
    complete(error.what());
    fail(error.what());
  } catch (const file_error &error) {
    complete(error.what());
    throw;
  }
}

script_end remote_session::read_end(std::string_view text, bool of_script)
{
  script_end end;
  try {
    const std::uint64_t code = take_number(text);
    if (code > 255) throw protocol_error("an exit code is too large");
    end.code = static_cast<exit_code>(code);
    if (of_script) {
      end.line = take_number(text);
      end.begun = take_number(text) != 0;
    }
  } catch (const protocol_error &error) {
    fail(error.what());
  }
  if (text == "ended") ended = true;
  return end;
}

exit_code remote_session::run(std::string_view line, output &out)
{
  const bool as_json = asks_for_json(line, defaults);
  if (!can_be_sent(line)) {
    const std::string why = "a command is one line of at most " + std::to_string(most_request) + " bytes";
    if (as_json) {
      out.line(error_document(exit_code::usage, why));
    } else {
      out.error(why);
    }
    return exit_code::usage;
  }
  send(frame_kind::run, line);
  return read_end(read_answer(as_json, out), false).code;
}

script_end remote_session::run_lines(std::string_view text, output &out)
{
  if (server_.batches == 0) return interpreter::run_lines(text, out);
  const bool as_json = defaults.json || text.find("-j") != std::string_view::npos;
  std::deque<std::size_t> sent;  // number of the first line of each frame that has no answer yet
  std::size_t line = 1;          // that `text` begins with
  frame_kind kind = frame_kind::script;
  for (;;) {
    while (sent.size() < server_.batches && stop_code() == exit_code::ok) {
      const std::string_view part = next_batch(text);
      if (part.empty()) break;
      send(kind, part);
      kind = frame_kind::more;
      sent.push_back(line);
      line += static_cast<std::size_t>(std::ranges::count(part, '\n'));
      text.remove_prefix(part.size());
    }
    if (sent.empty()) {
      if (text.empty()) return {};
      if (stop_code() != exit_code::ok) return {stop_code(), line, false};
      // A line that is too long to go with others, or to go at all.
      const std::size_t size = std::min(text.find('\n'), text.size());
      const exit_code code = run(text.substr(0, size), out);
      if (code != exit_code::ok || ended) return {code, line};
      text.remove_prefix(std::min(size + 1, text.size()));
      ++line;
      kind = frame_kind::script;
      continue;
    }
    script_end end = read_end(read_answer(as_json, out), true);
    end.line += sent.front() - 1;
    sent.pop_front();
    if (end.code == exit_code::ok && !ended) continue;
    // The server runs nothing of what was sent after the line that failed.
    for (; !sent.empty(); sent.pop_front()) read_answer(as_json, out);
    return end;
  }
}

std::vector<std::string> remote_session::completions(std::string_view line)
{
  if (line.size() > most_request || line.find('\n') != std::string_view::npos) return {};
  send(frame_kind::complete, line);
  const frame answer = next();
  if (answer.kind != frame_kind::words) fail("a frame is none that answers a request for words");
  std::vector<std::string> words;
  for (std::string_view rest = answer.payload; !rest.empty();) {
    const std::size_t end = rest.find('\n');
    words.emplace_back(rest.substr(0, end));
    rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
  }
  return words;
}

}  // namespace tarvex::shell
