// A program's command line as it is told to people and shells: read from what parses it, so that
// help, manual and completion never differ.
// Used by the makers of manual pages and completions; plain values.
#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace orvane::tools {

struct DescribedOption {
  std::vector<std::string> names;  ///< "-u", "--unregister"
  std::string sValue;              ///< what follows it, such as "DIR"; empty for a flag
  std::string sWhat;
};

struct DescribedArgument {
  std::string sName;
  std::string sWhat;
  bool bRequired = false;
};

struct DescribedCommand {
  std::string sName;
  std::string sWhat;
  std::vector<DescribedArgument> arguments;
  std::vector<DescribedOption> options;
  std::vector<DescribedCommand> commands;
};

struct DescribedProgram {
  DescribedCommand line;
  std::string sVersion;
  std::string sNotes;  ///< what stands behind the help, a paragraph a line
};

/// What the line understands.
DescribedCommand CommandOf(const CLI::App& line);

}  // namespace orvane::tools
