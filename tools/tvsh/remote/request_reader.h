// What a client asks for, out of the bytes that he sends.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "frames.h"
#include "hello.h"

namespace tarvex::shell {

/// Lets through what a client may send: a greeting first, then command lines and interrupts.
class request_reader {
 public:
  void add(std::string_view bytes) { decoder_.add(bytes); }
  /// The payload is good until the next add(). Throws protocol_error; what comes behind is worth nothing then.
  std::optional<frame> next();

  bool greeted() const { return greeted_; }
  /// After a request of kind hello.
  const client_hello &greeting() const { return greeting_; }

 private:
  void check(const frame &request);

  frame_decoder decoder_{most_request};
  client_hello greeting_;
  bool greeted_ = false;
};

}  // namespace tarvex::shell
