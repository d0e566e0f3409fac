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
//   script    ->              lines of a script, whole ones; the first of the script
//   more      ->              more lines of the script
//             <-    ...       to each of these: what its commands show, as above
//             <-    end       "CODE LINE BEGUN" with the line, from 1 on, that the script stopped at and whether it was
//                   begun (1) or an interrupt came first (0); "0 0 1" where all went well; " ended" behind it as above
//   complete  ->              a command line that was begun
//             <-    words     candidates for its last word, a line each
//   interrupt ->              empty; at any time. Ends the command or the script that runs, which answers with its end
//                   as ever
//
// A client sends the next request when the last one is answered. Only lines of a script may follow each other without
// that: as many frames as the server's greeting allows (batches=N) may lack their answer. Where a script stops, the
// server runs nothing of the frames that follow, up to the next script: it answers them with "0 0 1" at once. Anything
// else is a mistake: the server interrupts the command that runs, and after its end sends an error and closes. A client
// that closes the connection has left: its command is interrupted. One that does not greet gives way when all places
// are taken and another wants in.
//
// Both sides of version 1 work with each other, whatever release they are of: a server whose greeting has no "batches"
// takes no scripts and is sent them as one run after the other; a client that knows no scripts sends none. Names in a
// greeting that are not known are ignored. Another version is refused with an error that names both.
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
constexpr std::size_t most_batches = 4;       // frames of a script that the server keeps for a client

enum class frame_kind : std::uint8_t {
  hello = 'h',
  run = 'r',
  script = 's',
  more = 'm',
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
