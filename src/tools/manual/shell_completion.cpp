#include "tools/manual/shell_completion.h"

#include <algorithm>
#include <functional>
#include <string_view>

namespace orvane::tools {

namespace {

/// Between single quotes, as every shell but fish takes them.
std::string Quoted(std::string_view sText) {
  std::string sQuoted = "'";
  for (const char c : sText) sQuoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return sQuoted + "'";
}

/// The same for fish, which knows a backslash between them.
std::string QuotedInFish(std::string_view sText) {
  std::string sQuoted = "'";
  for (const char c : sText) {
    if (c == '\'' || c == '\\') sQuoted += '\\';
    sQuoted += c;
  }
  return sQuoted + "'";
}

/// "'name:what it is'" with what parts the two escaped, as zsh describes things.
std::string Pair(std::string_view sName, std::string_view sWhat) {
  std::string sPair;
  for (const char c : sName) sPair += c == ':' ? std::string("\\:") : std::string(1, c);
  return Quoted(sPair.append(":").append(sWhat));
}

std::string FunctionOf(const DescribedProgram& program) {
  std::string sFunction = "_" + program.line.sName;
  std::ranges::replace(sFunction, '-', '_');
  return sFunction;
}

using Visit = std::function<void(const std::string& sPlace, const DescribedCommand& command)>;

/// Every command with the words that lead to it, each behind a blank; the line itself has none.
void ForEach(const std::string& sPlace, const DescribedCommand& command, const Visit& visit) {
  visit(sPlace, command);
  for (const auto& beneath : command.commands)
    ForEach(sPlace + " " + beneath.sName, beneath, visit);
}

/// The places that a word of the line leads to, as a pattern of case.
std::string Places(const DescribedProgram& program) {
  std::string sPlaces;
  ForEach({}, program.line, [&](const std::string& sPlace, const DescribedCommand&) {
    if (sPlace.empty()) return;
    if (!sPlaces.empty()) sPlaces += " | ";
    sPlaces += Quoted(sPlace);
  });
  return sPlaces.empty() ? "''" : sPlaces;
}

}  // namespace

std::string BashCompletion(const DescribedProgram& program) {
  const std::string sFunction = FunctionOf(program);
  std::string sScript = "# bash completion for " + program.line.sName + "\n" + sFunction +
                        "() {\n"
                        "  local current=${COMP_WORDS[COMP_CWORD]} place= options= commands= i\n"
                        "  for ((i = 1; i < COMP_CWORD; ++i)); do\n"
                        "    case \"$place ${COMP_WORDS[i]}\" in\n"
                        "      " +
                        Places(program) +
                        ") place=\"$place ${COMP_WORDS[i]}\" ;;\n"
                        "    esac\n"
                        "  done\n"
                        "  case $place in\n";
  ForEach({}, program.line, [&](const std::string& sPlace, const DescribedCommand& command) {
    std::string sOptions;
    for (const auto& option : command.options) {
      for (const auto& sName : option.names) sOptions += (sOptions.empty() ? "" : " ") + sName;
    }
    std::string sCommands;
    for (const auto& beneath : command.commands) {
      sCommands += (sCommands.empty() ? "" : " ") + beneath.sName;
    }
    sScript += "    " + Quoted(sPlace) + ")\n      options=" + Quoted(sOptions) +
               "\n      commands=" + Quoted(sCommands) + "\n      ;;\n";
  });
  sScript +=
      "  esac\n"
      "  COMPREPLY=()\n"
      "  if [[ $current == -* ]]; then\n"
      "    mapfile -t COMPREPLY < <(compgen -W \"$options\" -- \"$current\")\n"
      "    return\n"
      "  fi\n"
      "  mapfile -t COMPREPLY < <(compgen -W \"$commands\" -- \"$current\")\n"
      "  if ((${#COMPREPLY[@]} == 0)); then\n"
      "    compopt -o filenames 2> /dev/null\n"
      "    mapfile -t COMPREPLY < <(compgen -f -- \"$current\")\n"
      "  fi\n"
      "}\n";
  return sScript + "complete -F " + sFunction + " " + program.line.sName + "\n";
}

std::string ZshCompletion(const DescribedProgram& program) {
  const std::string sFunction = FunctionOf(program);
  std::string sScript = "#compdef " + program.line.sName + "\n" + sFunction +
                        "() {\n"
                        "  local place= word\n"
                        "  local -a options commands\n"
                        "  for word in \"${(@)words[2,CURRENT-1]}\"; do\n"
                        "    case \"$place $word\" in\n"
                        "      (" +
                        Places(program) +
                        ") place=\"$place $word\" ;;\n"
                        "    esac\n"
                        "  done\n"
                        "  case $place in\n";
  ForEach({}, program.line, [&](const std::string& sPlace, const DescribedCommand& command) {
    sScript += "    (" + Quoted(sPlace) + ")\n      options=(";
    for (const auto& option : command.options) {
      for (const auto& sName : option.names) sScript += "\n        " + Pair(sName, option.sWhat);
    }
    sScript += ")\n      commands=(";
    for (const auto& beneath : command.commands) {
      sScript += "\n        " + Pair(beneath.sName, beneath.sWhat);
    }
    sScript += ")\n      ;;\n";
  });
  sScript +=
      "  esac\n"
      "  if [[ $PREFIX == -* ]]; then\n"
      "    _describe option options\n"
      "    return\n"
      "  fi\n"
      "  (( ${#commands} )) && _describe command commands && return\n"
      "  _files\n"
      "}\n";
  return sScript + sFunction + " \"$@\"\n";
}

std::string FishCompletion(const DescribedProgram& program) {
  const std::string sProgram = program.line.sName;
  std::string sScript = "# fish completion for " + sProgram + "\n";
  const std::function<void(const std::string&, const DescribedCommand&)> append =
      [&](const std::string& sSeen, const DescribedCommand& command) {
        std::string sNone = sSeen;
        if (!command.commands.empty()) {
          sNone += std::string(sSeen.empty() ? "" : "; and ") + "not __fish_seen_subcommand_from";
          for (const auto& beneath : command.commands) sNone += " " + beneath.sName;
        }
        const std::string sWhen = sNone.empty() ? "" : " -n " + QuotedInFish(sNone);
        for (const auto& option : command.options) {
          sScript += "complete -c " + sProgram + sWhen;
          for (const std::string_view sName : option.names) {
            const bool bLong = sName.starts_with("--");
            sScript.append(bLong ? " -l " : " -s ").append(sName.substr(bLong ? 2 : 1));
          }
          sScript +=
              (option.sValue.empty() ? " -d " : " -r -d ") + QuotedInFish(option.sWhat) + "\n";
        }
        for (const auto& beneath : command.commands) {
          sScript += "complete -c " + sProgram + sWhen + " -a " + beneath.sName + " -d " +
                     QuotedInFish(beneath.sWhat) + "\n";
          append(std::string(sSeen.empty() ? "" : sSeen + "; and ") +
                     "__fish_seen_subcommand_from " + beneath.sName,
                 beneath);
        }
      };
  append({}, program.line);
  return sScript;
}

}  // namespace orvane::tools
