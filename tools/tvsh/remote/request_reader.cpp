// The rules that a client keeps to.
//
// SPDX-License-Identifier: Apache-2.0
#include "request_reader.h"

namespace tarvex::shell {

std::optional<frame> request_reader::next()
{
  const std::optional<frame> request = decoder_.next();
  if (request) check(*request);
  return request;
}

void request_reader::check(const frame &request)
{
  if (!greeted_) {
    if (request.kind != frame_kind::hello) throw protocol_error("the first frame is no greeting");
    greeting_ = parse_client_hello(request.payload);
    greeted_ = true;
    return;
  }
  switch (request.kind) {
    case frame_kind::run:
    case frame_kind::complete:
      if (request.payload.find_first_of(std::string_view("\n\0", 2)) != std::string_view::npos) {
        throw protocol_error("a command line holds an end of line or a zero");
      }
      return;
    case frame_kind::script:
    case frame_kind::more:
      if (request.payload.find('\0') != std::string_view::npos) throw protocol_error("a script holds a zero");
      return;
    case frame_kind::interrupt: return;
    default: throw protocol_error("a frame is none that a client sends");
  }
}

}  // namespace tarvex::shell
