// Reads a routing table from a file.
//
// SPDX-License-Identifier: Apache-2.0
#include "route_file.h"

#include <arpa/inet.h>

#include <algorithm>
#include <charconv>
#include <limits>
#include <optional>

namespace tarvex::route_load {
namespace {

constexpr std::string_view blanks = " \t\r";

/// Text of the file for a message: short, and nothing in it that a terminal would act on.
std::string quoted(std::string_view text)
{
  constexpr std::size_t longest = 60;
  std::string result = "'";
  for (const char c : text.substr(0, longest)) {
    result += c >= ' ' && c <= '~' ? c : '?';
  }
  return result + (text.size() > longest ? "...'" : "'");
}

/// A decimal number as it is written normally: digits alone, no leading zero.
std::optional<std::uint64_t> parse_number(std::string_view text)
{
  std::uint64_t value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (end != text.data() + text.size() || error == std::errc::invalid_argument ||
      (text.size() > 1 && text.front() == '0')) {
    return std::nullopt;
  }
  return error == std::errc::result_out_of_range ? std::numeric_limits<std::uint64_t>::max() : value;
}

std::variant<prefix, std::string> parse_prefix(std::string_view text)
{
  const auto slash = text.find('/');
  if (slash == std::string_view::npos) {
    return "no prefix length in " + quoted(text) + "; a prefix is written address/length";
  }
  const auto address_text = text.substr(0, slash);
  const auto length_text = text.substr(slash + 1);

  const family f = address_text.find(':') == std::string_view::npos ? family::ipv4 : family::ipv6;
  const char *family_name = f == family::ipv4 ? "IPv4" : "IPv6";
  char terminated[INET6_ADDRSTRLEN] = {};
  std::optional<address> addr;
  if (address_text.size() < sizeof terminated && address_text.find('\0') == std::string_view::npos) {
    std::ranges::copy(address_text, terminated);
    addr = parse_address(terminated, f);
  }
  if (!addr) {
    return quoted(address_text) + " is no " + family_name + " address";
  }

  const auto length = parse_number(length_text);
  if (!length) {
    return quoted(length_text) + " is no prefix length";
  }
  if (*length > address_bits(f)) {
    return "prefix length " + std::string(length_text.substr(0, 20)) + " is beyond the " +
           std::to_string(address_bits(f)) + " bits of an " + family_name + " address";
  }

  prefix result{f, top_bits(*addr, static_cast<unsigned>(*length)), static_cast<std::uint8_t>(*length)};
  if (result.addr != *addr) {
    return quoted(text) + " has host bits set below its prefix length; the network is " + to_string(result);
  }
  return result;
}

}  // namespace

parsed_line parse_line(std::string_view line)
{
  line = line.substr(0, line.find_first_of(";#"));
  const auto begin = line.find_first_not_of(blanks);
  if (begin == std::string_view::npos) {
    return std::monostate{};
  }
  line = line.substr(begin, line.find_last_not_of(blanks) + 1 - begin);

  const auto prefix_end = std::min(line.find_first_of(blanks), line.size());
  auto destination = parse_prefix(line.substr(0, prefix_end));
  if (auto *reason = std::get_if<std::string>(&destination)) {
    return std::move(*reason);
  }
  if (prefix_end == line.size()) {
    return "no AS number behind " + quoted(line);
  }
  const auto as_text = line.substr(line.find_first_not_of(blanks, prefix_end));
  const auto as_number = parse_number(as_text);
  if (!as_number) {
    return quoted(as_text) + " is no AS number";
  }
  if (*as_number > std::numeric_limits<std::uint32_t>::max()) {
    return "AS number " + quoted(as_text) + " is beyond 32 bits";
  }
  return route{std::get<prefix>(destination), static_cast<std::uint32_t>(*as_number), 0};
}

route_list read_route_file(const std::string &path, const progress_report &progress)
{
  route_list list;
  line_reader reader(path);
  const auto refuse = [&](std::string reason) { list.bad_lines.add({reader.line_number(), std::move(reason)}); };

  std::string_view line;
  for (auto got = reader.next(line); got != line_reader::result::end; got = reader.next(line)) {
    if (progress && reader.line_number() % 4096 == 0) progress(reader.bytes_read(), reader.bytes_total());
    if (got == line_reader::result::too_long) {
      refuse("the line is longer than " + std::to_string(line_reader::longest_line) + " bytes");
      continue;
    }
    auto parsed = parse_line(line);
    if (auto *found = std::get_if<route>(&parsed)) {
      found->line = reader.line_number();
      list.routes.push_back(*found);
    } else if (auto *reason = std::get_if<std::string>(&parsed)) {
      refuse(std::move(*reason));
    }
  }
  list.lines = reader.line_number();

  // Of equal prefixes the later line comes first and is the one that stays.
  std::ranges::sort(list.routes, [](const route &a, const route &b) {
    const auto order = a.destination <=> b.destination;
    return order != 0 ? order < 0 : a.line > b.line;
  });
  const auto repeated = std::unique(list.routes.begin(), list.routes.end(),
                                    [](const route &a, const route &b) { return a.destination == b.destination; });
  list.duplicates = static_cast<std::uint64_t>(list.routes.end() - repeated);
  list.routes.erase(repeated, list.routes.end());
  return list;
}

}  // namespace tarvex::route_load
