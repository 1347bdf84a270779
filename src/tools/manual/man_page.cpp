#include "tools/manual/man_page.h"

#include <algorithm>
#include <cctype>
#include <string_view>

namespace orvane::tools {

namespace {

/// The text as it stands, whatever it is made of.
std::string Plain(std::string_view sText) {
  std::string sPlain;
  if (sText.starts_with('.') || sText.starts_with('\'')) sPlain = "\\&";
  for (const char c : sText) {
    if (c == '\\') {
      sPlain += "\\e";
    } else if (c == '-') {
      sPlain += "\\-";
    } else {
      sPlain += c;
    }
  }
  return sPlain;
}

std::string Bold(std::string_view sText) {
  return "\\fB" + Plain(sText) + "\\fR";
}

std::string Italic(std::string_view sText) {
  return "\\fI" + Plain(sText) + "\\fR";
}

std::string Upper(std::string sText) {
  std::ranges::transform(sText, sText.begin(),
                         [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
  return sText;
}

/// A sentence: with a capital at its begin and a point at its end.
std::string Sentence(std::string sText) {
  if (sText.empty()) return sText;
  sText.front() = Upper(sText.substr(0, 1)).front();
  if (!sText.ends_with('.')) sText += '.';
  return Plain(sText);
}

/// The same as it stands behind a name and a dash.
std::string Phrase(std::string sText) {
  if (sText.ends_with('.')) sText.pop_back();
  if (!sText.empty()) {
    sText.front() = static_cast<char>(std::tolower(static_cast<unsigned char>(sText.front())));
  }
  return Plain(sText);
}

std::string Usage(const std::string& sCall, const DescribedCommand& command) {
  std::string sUsage = Bold(sCall);
  if (!command.options.empty()) sUsage += " [" + Italic("OPTION") + "]...";
  for (const auto& argument : command.arguments) {
    const std::string sName = Italic(argument.sName);
    sUsage += argument.bRequired ? " " + sName : " [" + sName + "]";
  }
  return sUsage;
}

void AppendItems(std::string& sPage, const DescribedCommand& command) {
  for (const auto& argument : command.arguments) {
    sPage += ".TP\n" + Italic(argument.sName) + "\n" + Sentence(argument.sWhat) + "\n";
  }
  for (const auto& option : command.options) {
    sPage += ".TP\n";
    const char* sComma = "";
    for (const auto& sName : option.names) {
      sPage += sComma + Bold(sName);
      sComma = ", ";
    }
    if (!option.sValue.empty()) sPage += " " + Italic(option.sValue);
    sPage += "\n" + Sentence(option.sWhat) + "\n";
  }
}

void AppendCommands(std::string& sPage, const std::string& sCall, const DescribedCommand& above) {
  for (const auto& command : above.commands) {
    const std::string sName = sCall + " " + command.sName;
    // One that has only others beneath it is told by those.
    if (command.commands.empty() || !command.arguments.empty()) {
      sPage += ".SS " + Bold(sName) + "\n" + Usage(sName, command) + "\n.PP\n" +
               Sentence(command.sWhat) + "\n";
      AppendItems(sPage, command);
    }
    AppendCommands(sPage, sName, command);
  }
}

}  // namespace

std::string ManPage(const DescribedProgram& program) {
  const DescribedCommand& line = program.line;
  std::string sPage = ".TH " + Upper(Plain(line.sName)) + " 1 \"\" \"" + Plain(line.sName) + " " +
                      program.sVersion + "\" \"ORVANE Console\"\n";
  sPage += ".SH NAME\n" + Plain(line.sName) + " \\- " + Phrase(line.sWhat) + "\n";
  sPage += ".SH SYNOPSIS\n" + Usage(line.sName, line);
  if (!line.commands.empty()) sPage += " " + Italic("COMMAND") + " ...";
  sPage += "\n.SH DESCRIPTION\n" + Sentence(line.sWhat) + "\n.SH OPTIONS\n";
  AppendItems(sPage, line);
  if (!line.commands.empty()) {
    sPage += ".SH COMMANDS\n";
    AppendCommands(sPage, line.sName, line);
  }
  if (!program.sNotes.empty()) {
    sPage += ".SH NOTES\n";
    std::string_view sLeft = program.sNotes;
    while (!sLeft.empty()) {
      const auto nEnd = std::min(sLeft.find('\n'), sLeft.size());
      sPage += ".PP\n" + Plain(sLeft.substr(0, nEnd)) + "\n";
      sLeft.remove_prefix(std::min(nEnd + 1, sLeft.size()));
    }
  }
  return sPage;
}

}  // namespace orvane::tools
