// `orkrule completion`: what a shell reads to complete the tool's command lines. The shell asks the
// tool itself what may follow, so that what it shows is what the tool takes.
#include "Commands.h"
#include "CompleteLine.h"

#include <memory>

namespace ORKTOOL {
namespace {

struct ShellRow {
  const char* name;
  const char* script;
};

// "=" and ":" end words of that shell, but not those of the tool: they are joined again, and what
// stands before them is not given back. A candidate begins behind the quote that is open.
constexpr const char* kBashScript = R"(# bash completion for orkrule
_orkrule() {
  local raw=${COMP_WORDS[COMP_CWORD]} tool=${1/#\~\//$HOME/}
  local -a words=() lines=()
  local i word glue='' head quote='' line
  for ((i = 1; i <= COMP_CWORD; i++)); do
    word=${COMP_WORDS[i]}
    if [[ ${#words[@]} -gt 0 && $word =~ ^[=:]+$ ]]; then
      words[-1]+=$word
      glue=yes
    elif [[ -n $glue ]]; then
      words[-1]+=$word
      glue=''
    else
      words+=("$word")
    fi
  done
  [[ $raw =~ ^[=:]+$ ]] && raw=''
  head=${words[-1]%"$raw"}
  [[ $raw == [\"\']* ]] && quote=${raw:0:1}
  mapfile -t lines < <("$tool" complete-line "${words[@]}" 2>/dev/null)
  COMPREPLY=()
  case ${lines[0]-} in
    files) compopt -o default; return ;;
    parts) compopt -o nospace ;;
  esac
  for line in "${lines[@]:1}"; do
    line=${line%%$'\t'*}
    line=${line#"$head"}
    case $quote in
      '') printf -v line %q "$line"; line=${line//\\,/,} ;;
      \")
        line=${line//\\/\\\\}
        line=${line//\"/\\\"}
        line=${line//\$/\\\$}
        line=${line//\`/\\\`}
        ;;
    esac
    COMPREPLY+=("$line")
  done
}
complete -F _orkrule orkrule
)";

constexpr const char* kZshScript = R"(#compdef orkrule
_orkrule() {
  local tool=${words[1]/#\~\//$HOME/} line kind
  local -a lines candidates shown suffix
  lines=("${(@f)$("$tool" complete-line "${(@)words[2,CURRENT]}" 2>/dev/null)}")
  kind=${lines[1]}
  shift lines
  if [[ $kind == files ]]; then
    compset -P '--*='
    _files
    return
  fi
  [[ $kind == parts ]] && suffix=(-S '')
  for line in "${lines[@]}"; do
    [[ -n $line ]] || continue
    candidates+=("${line%%$'\t'*}")
    if [[ $line == *$'\t'* ]]; then
      line="${line%%$'\t'*}  -- ${line#*$'\t'}"
      shown+=("${line[1,COLUMNS-1]}")
    else
      shown+=("$line")
    fi
  done
  compadd "${suffix[@]}" -M 'm:{[:lower:][:upper:]}={[:upper:][:lower:]}' -l -d shown -a -- candidates
}
if [[ ${funcstack[1]-} == _orkrule ]]; then
  _orkrule "$@"
else
  compdef _orkrule orkrule
fi
)";

// clang-format off
constexpr ShellRow kShells[] = {
    {"bash", kBashScript},
    {"zsh",  kZshScript},
};
// clang-format on

std::vector<std::string> ShellNames() {
  std::vector<std::string> names;
  for (const ShellRow& shell : kShells) names.emplace_back(shell.name);
  return names;
}

void PrintScript(const std::string& name) {
  for (const ShellRow& shell : kShells) {
    if (name == shell.name) Print(shell.script);
  }
}

}  // namespace

void AddCompletionCommand(CLI::App& tool) {
  CLI::App* const command =
      tool.add_subcommand("completion", "Print what a shell needs to complete command lines");
  const auto shell = std::make_shared<std::string>();
  command->add_option("SHELL", *shell, "bash or zsh")
      ->required()
      ->check(CLI::IsMember(ShellNames()));
  command->footer(
      "The tool's installation puts it where both shells look for it. Without that:\n\n"
      "Example:\n  source <(orkrule completion bash)");
  command->callback([shell] { PrintScript(*shell); });
}

}  // namespace ORKTOOL
