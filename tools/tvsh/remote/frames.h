// What goes over the socket between a shell that serves and one that is attached.
//
// Both sides send frames: four bytes with the length of the payload, the highest byte first; one byte with the kind;
// the payload. A connection goes so:
//
//   client          server
//   hello     ->              "tvsh 1", then lines of NAME=VALUE (hello.h)
//             <-    hello     likewise; or error, and the end, where the client is not taken
//   run       ->              a command line, of one line
//             <-    heading, lines, note, error, progress, as often as wanted; "lines" carries any part of the data,
//                   each line of it with its end, but a line may go on in the next frame
//             <-    end       "CODE", or "CODE ended" where the command ends the session
//   complete  ->              a command line that was begun
//             <-    words     candidates for its last word, a line each
//   interrupt ->              empty; at any time. Ends the command that runs, which answers with its end as ever
//
// A client sends the next run or complete when the last one is answered. Anything else is a mistake: the server
// interrupts the command that runs, and behind its end sends an error and closes. Who closes the connection has left:
// his command is interrupted. Who does not greet gives way when all places are taken and another wants in.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace tarvex::shell {

constexpr unsigned protocol_version = 1;
constexpr std::size_t most_request = 65536;   // bytes of a payload to the server
constexpr std::size_t most_answer = 1 << 20;  // and from it

enum class frame_kind : std::uint8_t {
  hello = 'h',
  run = 'r',
  complete = 'c',
  interrupt = 'i',
  heading = 't',
  lines = 'l',
  note = 'n',
  error = 'e',
  progress = 'p',
  end = 'x',
  words = 'w'
};

struct frame {
  frame_kind kind;
  std::string_view payload;
};

/// The other side does not keep to the protocol; the text tells how.
struct protocol_error : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// The frame as it is sent.
std::string encoded(frame_kind kind, std::string_view payload);

/// Takes bytes as they come and gives whole frames. Never holds more than the longest frame and what was added last.
class frame_decoder {
 public:
  explicit frame_decoder(std::size_t most_payload) : most_payload_(most_payload) {}

  void add(std::string_view bytes);
  /// The payload is good until the next add(). Throws protocol_error for a frame that is too long or of no kind.
  std::optional<frame> next();

 private:
  std::size_t most_payload_;
  std::string bytes_;
  std::size_t at_ = 0;
};

}  // namespace tarvex::shell
