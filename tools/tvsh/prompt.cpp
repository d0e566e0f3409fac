// The prompt: edited lines by libedit, plain lines on a terminal that cannot move its cursor.
//
// SPDX-License-Identifier: Apache-2.0
#include "prompt.h"

#include <histedit.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <clocale>
#include <cstdlib>
#include <cwctype>
#include <iostream>
#include <memory>
#include <optional>
#include <utility>

#include "history_file.h"
#include "interrupt_handling.h"
#include "typed_line.h"

namespace tarvex::shell {

namespace {

constexpr const char *prompt_text = "tvsh> ";
constexpr int most_history = 1000;

class line_source {
 public:
  line_source() = default;
  line_source(const line_source &) = delete;
  line_source &operator=(const line_source &) = delete;
  virtual ~line_source() = default;
  /// Nothing at the end of the input; an empty line where Ctrl-C dropped one.
  virtual std::optional<std::string> next() = 0;
};

/// One byte after the other, so that nothing is read ahead of its line.
class plain_lines : public line_source {
 public:
  std::optional<std::string> next() override
  {
    std::cout << prompt_text << std::flush;
    std::string line;
    for (char letter = 0;;) {
      const ssize_t got = ::read(STDIN_FILENO, &letter, 1);
      if (got < 0 && errno == EINTR) {
        std::cout << '\n';
        return "";
      }
      if (got <= 0) return line.empty() ? std::nullopt : std::optional(line);
      if (letter == '\n') return line;
      line += letter;
    }
  }
};

/// A byte of the terminal; a number below 0 where there is none, with errno, and 256 at the end of the input.
int next_byte()
{
  unsigned char byte = 0;
  const ssize_t got = ::read(STDIN_FILENO, &byte, 1);
  return got < 0 ? -1 : got == 0 ? 256 : byte;
}

/// The editor by itself passes over bytes that are no character, and over characters that it has no key for: the rest
/// of the line would be run as if it had been meant. Here each of them stays, so that the line can be refused.
int next_character(EditLine *, wchar_t *to)
{
  constexpr wchar_t replacement = 0xfffd;
  static int kept = -1;  // the byte behind a character that was cut off
  const int first = kept >= 0 ? std::exchange(kept, -1) : next_byte();
  if (first < 0 || first > 0xff) return first < 0 ? -1 : 0;
  *to = static_cast<wchar_t>(first);
  if (first < 0x80) return 1;
  const int length = first >= 0xf0 ? 4 : first >= 0xe0 ? 3 : 2;
  wchar_t code = first < 0xc2 || first > 0xf4 ? replacement : first & (0x7f >> length);
  for (int at = 1; at < length && code != replacement; ++at) {
    const int byte = next_byte();
    if (byte < 0) return -1;
    if ((byte & 0xc0) == 0x80 && byte < 0x100) {
      code = code << 6 | (byte & 0x3f);
    } else {
      kept = byte;
      code = replacement;
    }
  }
  constexpr wchar_t keys = 0x100;  // below it, what is no letter is a key of the editor
  *to = code < keys && iswprint(static_cast<wint_t>(code)) == 0 ? replacement : code;
  return 1;
}

const char *prompt_of(EditLine *) { return prompt_text; }

void print_candidates(const std::vector<std::string> &candidates)
{
  std::string text = "\n";
  for (const std::string &each : candidates) text += each + (&each == &candidates.back() ? "\n" : "  ");
  std::cout << text << std::flush;
}

/// What all candidates begin with.
std::string common_beginning(const std::vector<std::string> &candidates)
{
  std::string_view common = candidates.front();
  for (const std::string &each : candidates) {
    const auto end = std::ranges::mismatch(common, each).in1;
    common = common.substr(0, static_cast<std::size_t>(end - common.begin()));
  }
  return std::string(common);
}

unsigned char complete_line(EditLine *editor, wint_t)
{
  const LineInfo *const info = el_line(editor);
  const std::string_view line(info->buffer, static_cast<std::size_t>(info->cursor - info->buffer));
  std::vector<std::string> candidates;
  try {
    interpreter *shell = nullptr;
    el_get(editor, EL_CLIENTDATA, &shell);
    candidates = shell->completions(line);
  } catch (const shell_error &) {
    return CC_ERROR;  // the next command tells what is wrong
  }
  if (candidates.empty()) return CC_REFRESH_BEEP;
  const std::size_t blank = line.find_last_of(" \t|");
  const std::size_t begun = line.size() - (blank == std::string_view::npos ? 0 : blank + 1);
  std::string more = common_beginning(candidates).substr(begun);
  if (candidates.size() == 1 && !candidates[0].ends_with('=') && !candidates[0].ends_with('/')) more += ' ';
  if (more.empty()) {
    print_candidates(candidates);
    return CC_REDISPLAY;
  }
  return el_insertstr(editor, more.c_str()) == 0 ? CC_REFRESH : CC_REFRESH_BEEP;
}

class edited_lines : public line_source {
 public:
  explicit edited_lines(interpreter &shell)
      : editor_(el_init("tvsh", stdin, stdout, stderr)), history_(history_init()), file_(history_file())
  {
    HistEvent event{};
    history(history_, &event, H_SETSIZE, most_history);
    history(history_, &event, H_SETUNIQUE, 1);
    if (!file_.empty()) history(history_, &event, H_LOAD, file_.c_str());
    el_set(editor_, EL_CLIENTDATA, &shell);
    el_set(editor_, EL_PROMPT, &prompt_of);
    el_set(editor_, EL_EDITOR, "emacs");
    el_set(editor_, EL_HIST, &history, history_);
    el_set(editor_, EL_SIGNAL, 0);
    el_wset(editor_, EL_GETCFN, &next_character);
    // Wide: of narrow names the editor keeps copies that it never gives back.
    el_wset(editor_, EL_ADDFN, L"complete", L"completes the word", &complete_line);
    el_set(editor_, EL_BIND, "^I", "complete", nullptr);
  }
  ~edited_lines() override
  {
    HistEvent event{};
    if (!file_.empty()) history(history_, &event, H_SAVE, file_.c_str());
    history_end(history_);
    el_end(editor_);
  }

  std::optional<std::string> next() override
  {
    int length = 0;
    errno = 0;
    const char *const got = el_gets(editor_, &length);
    if (got == nullptr || length <= 0) {
      if (errno != EINTR) {
        std::cout << '\n' << std::flush;
        return std::nullopt;
      }
      el_reset(editor_);
      std::cout << "^C\n" << std::flush;
      return "";
    }
    std::string line(got, static_cast<std::size_t>(length));
    line.erase(line.find_last_not_of("\r\n") + 1);
    HistEvent event{};
    if (!line.empty()) history(history_, &event, H_ENTER, line.c_str());
    return line;
  }

 private:
  EditLine *editor_;
  History *history_;
  std::string file_;
};

std::unique_ptr<line_source> make_lines(interpreter &shell)
{
  const char *const terminal = std::getenv("TERM");
  const bool can_edit =
      terminal != nullptr && *terminal != 0 && std::string_view(terminal) != "dumb" && isatty(STDOUT_FILENO) != 0;
  // Whatever the user's own language is: the editor drops characters that its locale has no code for.
  if (can_edit && std::setlocale(LC_CTYPE, "C.UTF-8") != nullptr) return std::make_unique<edited_lines>(shell);
  return std::make_unique<plain_lines>();
}

}  // namespace

exit_code run_prompt(interpreter &shell, stream_output &out)
{
  const interrupt_handling ctrl_c(shell, interrupts::command);
  out.note("tvsh: 'help' lists the commands, the tab key completes, 'exit' ends");
  const std::unique_ptr<line_source> lines = make_lines(shell);
  while (!shell.ended) {
    const std::optional<std::string> line = lines->next();
    if (!line) break;
    shell.clear_interrupt();
    if (const std::string fault = character_fault(*line); fault.empty()) {
      shell.run(*line, out);
    } else {
      out.error(fault);
    }
    out.flush();
  }
  return exit_code::ok;
}

}  // namespace tarvex::shell
