// The command line of the program orvane: what can be asked for, and what was.
// Read once by its main function.
#pragma once

#include <filesystem>
#include <functional>
#include <optional>

#include "tools/orvane/server_commands.h"

namespace CLI {
class App;
}

namespace orvane::tools {

enum class Command : std::uint8_t { Check, Seal, Tree, Options, Rows, Query, Sql, Structure };

struct Arguments {
  Command command = Command::Check;
  std::optional<std::filesystem::path> registry;
  platform::Text sDocument;
  bool bJson = false;
  platform::Text sServer;  ///< or the path of a table
  platform::Text sQuery;
  RowWishes rows;
  LogonOptions logon;
};

/// Has the line understand all commands; the arguments, which outlive it, are filled when it is
/// parsed, which fails for a range of time that means nothing.
void Describe(CLI::App& line, Arguments& arguments);

}  // namespace orvane::tools
