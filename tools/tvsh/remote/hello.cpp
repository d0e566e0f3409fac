// Lines of NAME=VALUE behind the version.
//
// SPDX-License-Identifier: Apache-2.0
#include "hello.h"

#include <charconv>

#include "frames.h"

namespace tarvex::shell {

namespace {

constexpr std::string_view name_of_protocol = "tvsh ";

std::string first_line() { return std::string(name_of_protocol) + std::to_string(protocol_version) + '\n'; }

std::uint32_t number_of(std::string_view text)
{
  std::uint32_t value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size() || text.empty()) {
    throw protocol_error("a number in the greeting is none");
  }
  return value;
}

/// Calls `take(name, value)` for each line behind the first.
template <typename Take>
void read_lines(std::string_view text, Take take)
{
  const auto next_line = [&text] {
    const std::size_t end = text.find('\n');
    if (end == std::string_view::npos) throw protocol_error("the greeting is cut off");
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(end + 1);
    return line;
  };
  if (!text.starts_with(name_of_protocol)) throw protocol_error("the first frame is no greeting of a shell");
  const std::uint32_t version = number_of(next_line().substr(name_of_protocol.size()));
  if (version != protocol_version) {
    throw protocol_error("this shell speaks version " + std::to_string(protocol_version) + ", the other one " +
                         std::to_string(version) + ": take both of one release");
  }
  while (!text.empty()) {
    const std::string_view line = next_line();
    const std::size_t equals = line.find('=');
    if (equals == std::string_view::npos) throw protocol_error("a line of the greeting is no NAME=VALUE");
    take(line.substr(0, equals), line.substr(equals + 1));
  }
}

}  // namespace

std::string written(const client_hello &hello)
{
  std::string text = first_line();
  if (hello.device) text += "device=" + std::to_string(*hello.device) + '\n';
  if (hello.defaults.json) text += "json=1\n";
  if (hello.defaults.raw) text += "raw=1\n";
  if (hello.defaults.hardware) text += "hardware=1\n";
  if (hello.folder.find('\n') == std::string::npos) text += "folder=" + hello.folder + '\n';
  return text;
}

std::string written(const server_hello &hello)
{
  return first_line() + "device=" + std::to_string(hello.device) + "\nprocess=" + std::to_string(hello.process) +
         "\nbatches=" + std::to_string(hello.batches) + '\n';
}

client_hello parse_client_hello(std::string_view text)
{
  client_hello hello;
  read_lines(text, [&](std::string_view name, std::string_view value) {
    if (name == "device") {
      hello.device = number_of(value);
      if (*hello.device > 255) throw protocol_error("devices are numbered from 0 to 255");
    }
    if (name == "json") hello.defaults.json = number_of(value) != 0;
    if (name == "raw") hello.defaults.raw = number_of(value) != 0;
    if (name == "hardware") hello.defaults.hardware = number_of(value) != 0;
    if (name == "folder") hello.folder = value;
  });
  return hello;
}

server_hello parse_server_hello(std::string_view text)
{
  server_hello hello;
  read_lines(text, [&](std::string_view name, std::string_view value) {
    if (name == "device") hello.device = number_of(value);
    if (name == "process") hello.process = number_of(value);
    if (name == "batches") hello.batches = number_of(value);
  });
  return hello;
}

}  // namespace tarvex::shell
