// The manual page and the completions, out of the program's options and the table of commands.
//
// SPDX-License-Identifier: Apache-2.0
#include "pages.h"

#include <array>

#include "command.h"

namespace tarvex::shell {

namespace {

std::string joined(const std::vector<std::string> &words, std::string_view between)
{
  std::string text;
  for (const std::string &word : words) text.append(text.empty() ? "" : between).append(word);
  return text;
}

std::string replaced(std::string_view text, std::string_view characters, std::string_view ahead)
{
  std::string result;
  for (const char each : text) {
    if (characters.find(each) != std::string_view::npos) result += ahead;
    result += each;
  }
  return result;
}

/// Text of a manual page: hyphens that stay hyphens, and no line that looks like a request.
std::string roff(std::string_view text)
{
  std::string result;
  for (const char each : text) {
    const bool at_start = result.empty() || result.back() == '\n';
    if (at_start && (each == '.' || each == '\'')) result += "\\&";
    switch (each) {
      case '\\': result += "\\e"; break;
      case '-': result += "\\-"; break;
      case '\'': result += "\\(aq"; break;
      case '^': result += "\\(ha"; break;
      case '~': result += "\\(ti"; break;
      default: result += each;
    }
  }
  return result;
}

std::string without_indents(std::string_view text)
{
  std::string result;
  for (const char each : text) {
    if (each == '\n') {
      result += ' ';
    } else if (each != ' ' || result.empty() || result.back() != ' ') {
      result += each;
    }
  }
  return result;
}

void describe(std::string &page, const command &what)
{
  page += ".TP\n.B " + roff(what.name) + "\n";
  if (!what.arguments.empty()) page += roff(without_indents(what.arguments)) + "\n.br\n";
  page += roff(what.summary) + ".\n";
  if (!what.details.empty()) page += roff(what.details) + "\n";
  for (const std::string_view example : what.examples) page += ".br\n.RI \"\\ \\ \" \"" + roff(example) + "\"\n";
}

constexpr std::string_view page_head = R"(.TH TVSH 1 "@release_date@" "tarvex @PROJECT_VERSION@" "Switch control"
.SH NAME
tvsh \- a shell for the switch
.SH SYNOPSIS
.B tvsh
.RI [ OPTION "]... [" COMMAND ...]
.SH DESCRIPTION
.B tvsh
reads and writes the tables, action profiles, counters, meters and registers of the switch by name.
Words behind the options are one command.
Without one it asks for commands on a terminal, and completes what is begun;
else it runs the commands that come on its input, to the first that does not end well.
.SH OPTIONS
)";

constexpr std::string_view page_tail = R"(.SH JSON
With
.B \-j
each command writes one document to standard output, also where it fails, is interrupted, or only writes to the switch;
.B monitor
and
.B trace follow
write an object a line.
A document has
.BR schema_version ,
which is 2.
What was written has
.BR done ;
an error is
.BR \(dqerror\(dq:{\(dqmessage\(dq,\(dqexit_code\(dq,\(dqstatus\(dq} ,
where
.B status
is the driver's.
A list that broke off is closed, and the error comes after it.
Handles are numbers, counters of packets and bytes are decimal text, and remarks are objects on standard error.
.SH EXIT STATUS
.TP
0
done, and as expected
.TP
1
wrong use
.TP
2
the driver refused
.TP
3
differences found
.TP
4
a file, a socket or the output failed
.TP
5
bad input, nothing was done
.TP
6
done in part
.TP
7
out of memory
.TP
130
interrupted
.TP
143
terminated
.SH ENVIRONMENT
.TP
.B NO_COLOR
where it is set to anything, no colours are written
.SH SEE ALSO
.BR tarvex_pd (7)
)";

std::string names_of_options(const std::vector<program_option> &options)
{
  std::string all;
  for (const program_option &option : options) all.append(all.empty() ? "" : " ").append(joined(option.names, " "));
  return all;
}

constexpr std::string_view bash_words = R"(
# What can follow a command line that was begun: the first word is a command, of others the shell for the switch knows.
_tvsh_follow() {
  case $1 in
    *' '*) mapfile -t COMPREPLY < <("${COMP_WORDS[0]}" --complete "$1" 2>/dev/null) ;;
    *) mapfile -t COMPREPLY < <(compgen -W "$_tvsh_commands" -- "$1") ;;
  esac
}

# Words of a command line within quotes are one word of bash's.
_tvsh_words() {
  local ahead=
  [[ $1 != *' '* ]] || ahead="${1% *} "
  _tvsh_follow "$1"
  local at
  for at in "${!COMPREPLY[@]}"; do COMPREPLY[at]=$ahead${COMPREPLY[at]}; done
}

# Where the command begins that stands behind the options; bash breaks words at = and :.
_tvsh_begin() {
  local at=1
  while ((at < COMP_CWORD)); do
    case ${COMP_WORDS[at]} in
      @taking@) at=$((at + 2)) ;;
      -*) at=$((at + 1)) ;;
      *) break ;;
    esac
    [[ ${COMP_WORDS[at - 1]} != = ]] || at=$((at + 1))
  done
  printf '%d' "$at"
}

# A command that needs no quotes: words of bash's, from number $1 on.
_tvsh_command() {
  local at line=
  for ((at = $1; at < COMP_CWORD; ++at)); do
    [[ -z $line || $line == *[=:] || ${COMP_WORDS[at]} == [=:]* ]] || line+=' '
    line+=${COMP_WORDS[at]}
  done
  [[ ${COMP_WORDS[COMP_CWORD]} != [=:]* && $line != *[=:] ]] || return
  _tvsh_follow "${line:+$line }${COMP_WORDS[COMP_CWORD]}"
  [[ ${COMPREPLY[*]-} == *[=/] ]] || compopt +o nospace 2>/dev/null
}

_tvsh() {
  local word=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
  [[ $word != = ]] || word=
  [[ $previous != = ]] || previous=${COMP_WORDS[COMP_CWORD - 2]}
  COMPREPLY=()
  compopt -o nospace 2>/dev/null
  case $previous in
)";

constexpr std::string_view bash_tail = R"(  esac
  local begin
  begin=$(_tvsh_begin)
  if ((begin < COMP_CWORD)) || [[ $begin == "$COMP_CWORD" && $word != -* ]]; then
    _tvsh_command "$begin"
    return
  fi
  compopt +o nospace 2>/dev/null
  mapfile -t COMPREPLY < <(compgen -W "$_tvsh_options" -- "$word")
}

complete -F _tvsh tvsh
)";

constexpr std::string_view zsh_words = R"zsh(
# What can follow a command line that was begun; each word with the text of $2 ahead of it, and $3 behind it.
_tvsh_follow() {
  local line=$1 ahead=$2
  local -a words
  if [[ $line == *' '* ]]; then
    words=(${(f)"$(${service:-tvsh} --complete $line 2>/dev/null)"})
    compadd -S "$3" -- ${ahead}${^words:#*[=/]}
    compadd -S '' -- ${ahead}${^${(M)words:#*[=/]}}
    return
  fi
  words=(
@commands@  )
  _describe command words
}

# Within quotes a command is one word of zsh's.
_tvsh_quoted() {
  local line=${(Q)PREFIX} ahead=
  [[ $line != *' '* ]] || ahead="${line% *} "
  _tvsh_follow "$line" "$ahead" ''
}

_tvsh_command() {
  local line="${(j: :)${(Q)words[1,CURRENT-1]}}"
  _tvsh_follow "${line:+$line }${(Q)PREFIX}" '' ' '
}

_arguments -s -A '-*' \
)zsh";

}  // namespace

std::string manual_page(const std::vector<program_option> &options)
{
  static constexpr std::array<std::string_view, 5> titles = {"reading", "writing", "operating", "simulating",
                                                             "the shell itself"};
  std::string page(page_head);
  for (const program_option &option : options) {
    page += ".TP\n.BR \"" + roff(joined(option.names, ", ")) + "\"";
    if (!option.argument.empty()) page += " \" \\fI" + roff(option.argument) + "\\fR\"";
    page += "\n" + roff(option.description) + "\n";
    if (!option.choices.empty()) page += "(" + roff(joined(option.choices, ", ")) + ")\n";
  }
  page += ".SH COMMANDS\n";
  page += "Every command takes\n.B \\-j\n(JSON),\n.B \\-\\-raw\n(hexadecimal),\n.B \\-\\-hw\n";
  page += "(read the hardware),\n.B \\-\\-dry\\-run\n(check only) and\n.B \\-\\-force\n";
  page += "(write what is refused as not meant), and ends in\n.BR \"| include\" ,\n";
  page += ".B | exclude\nor\n.BR \"| count\" .\n";
  for (std::size_t group = 0; group < titles.size(); ++group) {
    page += ".SS Commands: " + std::string(titles[group]) + "\n";
    for (const command &each : commands()) {
      if (each.group == static_cast<command_group>(group)) describe(page, each);
    }
  }
  return page.append(page_tail);
}

std::string bash_completion(const std::vector<program_option> &options)
{
  std::string script = "# bash completion for tvsh, out of its options and its table of commands\n\n_tvsh_commands='";
  for (const command &each : commands()) script.append(each.name).append(" ");
  script.back() = '\'';
  script += "\n_tvsh_options='" + names_of_options(options) + "'\n";
  std::string taking;
  for (const program_option &option : options) {
    if (!option.argument.empty()) taking.append(taking.empty() ? "" : " | ").append(joined(option.names, " | "));
  }
  static constexpr std::string_view place = "@taking@";
  script += bash_words;
  script.replace(script.find(place), place.size(), taking);
  for (const program_option &option : options) {
    if (option.argument.empty()) continue;
    script += "    " + joined(option.names, " | ") + ")";
    if (!option.choices.empty()) {
      script += " mapfile -t COMPREPLY < <(compgen -W '" + joined(option.choices, " ") + "' -- \"$word\"); return ;;\n";
    } else if (option.argument == "COMMAND") {
      script += " _tvsh_words \"${word#[\\'\\\"]}\"; return ;;\n";
    } else {
      script += " compopt -o default 2>/dev/null; return ;;\n";
    }
  }
  return script.append(bash_tail);
}

std::string zsh_completion(const std::vector<program_option> &options)
{
  std::string script = "#compdef tvsh\n# zsh completion for tvsh, out of its options and its table of commands\n\n";
  script += zsh_words;
  std::string commands_told;
  for (const command &each : commands()) {
    commands_told += "    '" + std::string(each.name) + ":" + replaced(each.summary, "'", "'\\'") + "'\n";
  }
  static constexpr std::string_view place = "@commands@";
  script.replace(script.find(place), place.size(), commands_told);
  for (const program_option &option : options) {
    const bool twice = option.names.size() > 1;
    std::string names;
    for (const std::string &name : option.names) {
      if (!names.empty()) names += ',';
      names += name;
      if (name.starts_with("--") && !option.argument.empty()) names += '=';  // or a blank
    }
    script += twice ? "  '(" + joined(option.names, " ") + ")'{" + names + "}'" : "  '" + names;
    script += "[" + replaced(replaced(option.description, "[]:", "\\"), "'", "'\\'") + "]";
    if (!option.argument.empty()) {
      script += ":" + option.argument + ":";
      if (!option.choices.empty()) {
        script += "(" + joined(option.choices, " ") + ")";
      } else if (option.argument == "COMMAND") {
        script += "_tvsh_quoted";
      } else if (option.argument == "FILE" || option.argument == "SOCKET") {
        script += "_files";
      }
    }
    script += "' \\\n";
  }
  return script.append("  '*:::command:_tvsh_command'\n");
}

}  // namespace tarvex::shell
