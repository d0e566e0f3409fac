// What a client, or something that takes itself for a server, may send over the shell's socket: any bytes, in pieces.
//
// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <string>
#include <vector>

#include "request_reader.h"
#include "require.h"
#include "session.h"

namespace tarvex::fuzz {

namespace {

using namespace tarvex::shell;

struct kept_frame {
  frame_kind kind;
  std::string payload;
  bool operator==(const kept_frame &) const = default;
};

struct reading {
  std::vector<kept_frame> frames;
  std::string refused;  // why, where it was
  bool operator==(const reading &) const = default;
};

template <typename Reader>
reading read_in_pieces(Reader reader, std::string_view bytes, std::size_t piece)
{
  reading result;
  try {
    for (; !bytes.empty(); bytes.remove_prefix(std::min(piece, bytes.size()))) {
      reader.add(bytes.substr(0, piece));
      while (const auto each = reader.next()) result.frames.push_back({each->kind, std::string(each->payload)});
    }
  } catch (const protocol_error &error) {
    result.refused = error.what();
    require(!result.refused.empty(), "a refusal says why");
  }
  return result;
}

void check_requests(const reading &all)
{
  for (std::size_t i = 0; i < all.frames.size(); ++i) {
    const auto &[kind, payload] = all.frames[i];
    require((kind == frame_kind::hello) == (i == 0), "there is one greeting, and it is the first");
    require(payload.size() <= most_request, "no request is longer than the longest");
    if (kind == frame_kind::run || kind == frame_kind::complete) {
      require(payload.find_first_of(std::string_view("\n\0", 2)) == std::string::npos, "a command is one line");
      session::complete(payload);
    }
  }
}

/// What was let through means the same when it is sent anew.
void check_round_trip(const reading &all)
{
  std::string again;
  for (const auto &[kind, payload] : all.frames) again += encoded(kind, payload);
  const reading second = read_in_pieces(request_reader(), again, again.size() + 1);
  require(second.frames == all.frames && second.refused.empty(), "frames are the same when sent again");
  if (all.frames.empty()) return;
  const client_hello hello = parse_client_hello(all.frames[0].payload);
  const client_hello told = parse_client_hello(written(hello));
  require(told.device == hello.device && told.folder == hello.folder, "a greeting is the same when written anew");
}

}  // namespace

}  // namespace tarvex::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
  using namespace tarvex::fuzz;
  if (size == 0) return 0;
  const std::string_view bytes(reinterpret_cast<const char *>(data), size);
  const reading whole = read_in_pieces(request_reader(), bytes, size);
  require(read_in_pieces(request_reader(), bytes, 1 + data[size - 1] % 7U) == whole, "pieces make no difference");
  check_requests(whole);
  check_round_trip(whole);

  // The other side reads frames of any kind.
  const reading answers = read_in_pieces(frame_decoder(most_answer), bytes, size);
  require(answers == read_in_pieces(frame_decoder(most_answer), bytes, 1), "pieces make no difference to a client");
  for (const auto &[kind, payload] : answers.frames) {
    if (kind != frame_kind::hello) continue;
    try {
      parse_server_hello(payload);
    } catch (const protocol_error &) {
      continue;
    }
  }
  return 0;
}
