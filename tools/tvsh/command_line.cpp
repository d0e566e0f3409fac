// Words with quotes, options anywhere among them, filters behind bars.
//
// SPDX-License-Identifier: Apache-2.0
#include "command_line.h"

#include <array>
#include <cctype>

#include "nearest.h"
#include "shell_error.h"

namespace tarvex::shell {

namespace {

/// Whether the word is an option; sets it. Throws usage_error for an unknown one.
bool take_option(const std::string &word, options &chosen)
{
  if (word.size() < 2 || word[0] != '-' || std::isdigit(static_cast<unsigned char>(word[1]))) return false;
  if (word == "--replace" || word == "--strict") return false;  // words of load-routes
  if (word == "-j" || word == "--json") {
    chosen.json = true;
  } else if (word == "--raw") {
    chosen.raw = true;
  } else if (word == "--hw") {
    chosen.hardware = true;
  } else if (word == "--dry-run") {
    chosen.dry_run = true;
  } else if (word == "--force") {
    chosen.force = true;
  } else {
    throw usage_error(no_such("option", word, option_names()));
  }
  return true;
}

}  // namespace

std::span<const std::string_view> option_names()
{
  static constexpr std::array<std::string_view, 6> names = {"-j", "--json", "--raw", "--hw", "--dry-run", "--force"};
  return names;
}

std::vector<typed_word> split_words(std::string_view text)
{
  std::vector<typed_word> words;
  std::size_t at = 0;
  while (at < text.size()) {
    if (std::isspace(static_cast<unsigned char>(text[at]))) {
      ++at;
      continue;
    }
    if (text[at] == '#') break;
    if (text[at] == '|') {
      words.push_back({"|", true});
      ++at;
      continue;
    }
    std::string word;
    char quote = 0;
    for (; at < text.size(); ++at) {
      const char letter = text[at];
      if (quote != 0) {
        if (letter == quote) {
          quote = 0;
        } else {
          word += letter;
        }
      } else if (letter == '"' || letter == '\'') {
        quote = letter;
      } else if (std::isspace(static_cast<unsigned char>(letter)) || letter == '|') {
        break;
      } else {
        word += letter;
      }
    }
    if (quote != 0) throw usage_error(std::string("the quote ") + quote + " has no end");
    words.push_back({std::move(word), false});
  }
  return words;
}

bool asks_for_json(std::string_view text, const options &defaults)
{
  if (defaults.json) return true;
  try {
    for (const typed_word &each : split_words(text)) {
      if (each.bar) break;
      if (each.text == "-j" || each.text == "--json") return true;
    }
  } catch (const usage_error &) {
    // A quote without its end: nobody knows where the last word would have ended.
  }
  return false;
}

command_line parse_command_line(std::string_view text, const options &defaults)
{
  command_line line;
  line.chosen = defaults;
  const std::vector<typed_word> words = split_words(text);
  std::size_t at = 0;
  for (; at < words.size() && !words[at].bar; ++at) {
    if (!take_option(words[at].text, line.chosen)) line.words.push_back(words[at].text);
  }
  if (at == words.size()) return line;
  if (line.words.empty()) throw usage_error("ahead of '|' a command is missing");
  if (line.chosen.json) throw usage_error("filters go by lines of text: leave out either -j or '|'");
  std::vector<std::string> filter_words;
  for (++at; at <= words.size(); ++at) {
    if (at < words.size() && !words[at].bar) {
      filter_words.push_back(words[at].text);
    } else {
      line.filters.push_back(make_filter(filter_words));
      filter_words.clear();
    }
  }
  return line;
}

}  // namespace tarvex::shell
