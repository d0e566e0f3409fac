// SPDX-License-Identifier: Apache-2.0
#include "literal.h"

#include <algorithm>
#include <cctype>

namespace tarvex::examples {
namespace {

class parser {
 public:
  explicit parser(std::string_view text) : text_(text) {}

  literal whole()
  {
    literal read = value();
    skip_blanks();
    if (at_ != text_.size()) fail("the end");
    return read;
  }

 private:
  [[noreturn]] void fail(const std::string &wanted) const
  {
    const std::string rest(text_.substr(at_, 20));
    throw literal_error("character " + std::to_string(at_ + 1) + ": " + wanted + " is wanted, not " +
                        (rest.empty() ? "the end" : '\'' + rest + '\''));
  }
  void skip_blanks()
  {
    while (at_ < text_.size() && text_[at_] == ' ') ++at_;
  }
  bool take(char c)
  {
    skip_blanks();
    if (at_ == text_.size() || text_[at_] != c) return false;
    ++at_;
    return true;
  }

  literal value()
  {
    if (take('(')) return parenthesized();
    if (take('\'')) return string();
    const std::string word = this->word();
    literal read;
    if (word == "None") return read;
    read.is = literal::kind::truth;
    read.truth = word == "True";
    if (read.truth || word == "False") return read;
    return number(word);
  }

  literal parenthesized()
  {
    literal read{.is = literal::kind::tuple, .text = {}, .items = {}};
    for (bool comma = false; !take(')'); comma = true) {
      if (!read.items.empty() && !comma) fail("','");
      read.items.push_back(value());
      if (take(',')) continue;
      if (!take(')')) fail("',' or ')'");
      if (read.items.size() > 1) return read;
      literal only = std::move(read.items.front());
      return only;
    }
    return read;
  }

  literal string()
  {
    const std::size_t end = text_.find('\'', at_);
    if (end == std::string_view::npos) fail("a string with an end");
    literal read{.is = literal::kind::string, .text = std::string(text_.substr(at_, end - at_)), .items = {}};
    at_ = end + 1;
    return read;
  }

  std::string word()
  {
    const std::size_t begin = at_;
    while (at_ < text_.size() && (std::isalnum(static_cast<unsigned char>(text_[at_])) != 0 || text_[at_] == '-'))
      ++at_;
    return std::string(text_.substr(begin, at_ - begin));
  }

  literal number(std::string word)
  {
    const std::size_t size = word.size();
    if (word.ends_with('L')) word.pop_back();
    std::string_view digits = word;
    const bool hexadecimal = digits.starts_with("0x");
    digits.remove_prefix(hexadecimal ? 2 : digits.starts_with('-') ? 1 : 0);
    const auto is_digit = [&](unsigned char c) { return (hexadecimal ? std::isxdigit(c) : std::isdigit(c)) != 0; };
    if (digits.empty() || !std::ranges::all_of(digits, is_digit)) {
      at_ -= size;
      fail("a literal");
    }
    return {.is = literal::kind::number, .text = std::move(word), .items = {}};
  }

  std::string_view text_;
  std::size_t at_ = 0;
};

void must_be(const literal &read, literal::kind kind, const char *name)
{
  if (read.is != kind) throw literal_error(std::string(name) + " is wanted where something else stands");
}

}  // namespace

const std::vector<literal> &literal::tuple() const
{
  must_be(*this, kind::tuple, "a tuple");
  return items;
}

const std::vector<literal> &literal::tuple_of(std::size_t count) const
{
  if (tuple().size() == count) return items;
  throw literal_error("a tuple of " + std::to_string(count) + " is wanted, not one of " + std::to_string(items.size()));
}

const std::string &literal::string() const
{
  must_be(*this, kind::string, "a string");
  return text;
}

std::string literal::digits() const
{
  must_be(*this, kind::number, "a number");
  std::string all = text.starts_with("0x") ? text.substr(2) : text;
  all.erase(0, std::min(all.find_first_not_of('0'), all.size() - 1));
  std::ranges::transform(all, all.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return all;
}

std::uint64_t literal::number() const
{
  if (digits().size() > 16) throw literal_error("a number of 64 bits at most is wanted, not " + text);
  return std::stoull(text, nullptr, 0);
}

literal parse_literal(std::string_view text) { return parser(text).whole(); }

}  // namespace tarvex::examples
