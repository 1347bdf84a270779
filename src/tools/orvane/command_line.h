// The command line of the program orvane: what can be asked for, and what was.
// Read once by its main function.
#pragma once

#include <filesystem>
#include <optional>
#include <vector>

#include "tools/orvane/row_commands.h"

namespace CLI {
class App;
}

namespace orvane::tools {

enum class Command : std::uint8_t {
  Check,
  Seal,
  Tree,
  Options,
  Rows,
  Query,
  Sql,
  Structure,
  Export,
  Watch,
  AddServer,
  RemoveServer,
  CreateCatalog,
  AttachCatalog,
  RemoveCatalog,
  AddQuery,
  EditQuery,
  RenameQuery,
  RemoveQuery,
};

struct Arguments {
  Command command = Command::Check;
  std::optional<std::filesystem::path> registry;
  platform::Text sDocument;
  bool bJson = false;
  platform::Text sServer;  ///< or the path of a table
  std::optional<platform::Text> query;
  platform::Text sName;  ///< of a query or a catalog
  platform::Text sNewName;
  platform::Text sFile;
  platform::Text sPath;
  platform::Long lSize = 0;
  bool bConfirmed = false;
  std::optional<exports::Form> form;
  RowWishes rows;
  Repetition repetition;
  LogonOptions logon;
};

/// Has the line understand all commands; the arguments, which outlive it, are filled when it is
/// parsed, which fails for a range of time that means nothing. "query" is a command of its own, and
/// with a verb behind it one of those that change queries: the line understands either.
void Describe(CLI::App& line, Arguments& arguments, bool bQueryVerbs);
/// Whether what the program was called with has a verb behind "query".
bool HasQueryVerb(const std::vector<platform::Text>& line);

}  // namespace orvane::tools
