// SPDX-License-Identifier: Apache-2.0
#include "generated_file.h"

#include <cerrno>
#include <charconv>
#include <cstring>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace catalogue {

namespace {

constexpr std::size_t width = 120;

}  // namespace

generated_file &generated_file::paragraph(std::string_view first, std::string_view next, std::string_view words)
{
  std::string current(first);
  bool empty = true;
  while (!words.empty()) {
    const std::size_t end = words.find(' ');
    const std::string_view word = words.substr(0, end);
    words.remove_prefix(end == std::string_view::npos ? words.size() : end + 1);
    if (!empty && current.size() + 1 + word.size() > width) {
      line(current);
      current = next;
      empty = true;
    }
    if (!empty) current += ' ';
    current += word;
    empty = false;
  }
  return line(current);
}

generated_file &generated_file::arguments(std::string head, const std::vector<std::string> &items,
                                          std::string_view tail)
{
  if (items.empty()) head += tail;
  for (std::size_t i = 0; i < items.size(); ++i) {
    const std::string item = items[i] + std::string(i + 1 < items.size() ? "," : tail);
    const bool behind_open = head.back() == '(' || head.back() == '<' || head.back() == ' ';
    if (head.size() + 1 + item.size() > width) {
      line(head);
      head = "    " + item;
    } else {
      head += (behind_open ? "" : " ") + item;
    }
  }
  return line(head);
}

void generated_file::write(const std::filesystem::path &path) const
{
  if (std::ifstream in(path, std::ios::binary); in) {
    const std::string there((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    if (there == text_) return;
  }
  std::filesystem::create_directories(path.parent_path());
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  out << text_;
  out.close();
  if (!out) throw std::runtime_error(path.string() + ": cannot be written: " + std::strerror(errno));
}

void begin_source(generated_file &to, std::string_view about)
{
  to.line("// ", about).line("//").line("// Generated from the catalogue; do not edit.").line("//");
  to.line("// SPDX-License-Identifier: Apache-2.0");
}

std::string hex(std::uint32_t value)
{
  char digits[16];
  const auto end = std::to_chars(digits, digits + sizeof digits, value, 16).ptr;
  return "0x" + std::string(digits, end);
}

}  // namespace catalogue
