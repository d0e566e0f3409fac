// Frames from bytes, and back.
//
// SPDX-License-Identifier: Apache-2.0
#include "frames.h"

namespace tarvex::shell {

namespace {

constexpr std::size_t head_size = 5;
constexpr std::string_view kinds = "hrsmcitlnepxw";

}  // namespace

std::string encoded(frame_kind kind, std::string_view payload)
{
  std::string bytes;
  bytes.reserve(head_size + payload.size());
  for (unsigned shift = 32; shift > 0; shift -= 8) bytes += static_cast<char>(payload.size() >> (shift - 8) & 0xff);
  bytes += static_cast<char>(kind);
  return bytes += payload;
}

void frame_decoder::add(std::string_view bytes)
{
  bytes_.erase(0, at_);
  at_ = 0;
  bytes_ += bytes;
}

std::optional<frame> frame_decoder::next()
{
  const std::string_view rest = std::string_view(bytes_).substr(at_);
  if (rest.size() < head_size) return std::nullopt;
  std::size_t size = 0;
  for (std::size_t i = 0; i < head_size - 1; ++i) size = size << 8 | static_cast<unsigned char>(rest[i]);
  const char kind = rest[head_size - 1];
  if (kinds.find(kind) == std::string_view::npos) throw protocol_error("a frame is of no known kind");
  if (size > most_payload_) {
    throw protocol_error("a frame of " + std::to_string(size) + " bytes is too long; the longest has " +
                         std::to_string(most_payload_));
  }
  if (rest.size() < head_size + size) return std::nullopt;
  at_ += head_size + size;
  return frame{static_cast<frame_kind>(kind), rest.substr(head_size, size)};
}

}  // namespace tarvex::shell
