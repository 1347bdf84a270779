// What several commands of the program orvane have in common on their lines.
// Used where its command line is described.
#pragma once

#include <CLI/CLI.hpp>

#include "tools/orvane/command_line.h"

namespace orvane::tools {

/// A command on a document.
CLI::App* AddCommand(CLI::App& line, Arguments& arguments, Command command, const char* sName,
                     const char* sWhat);
void AddJson(CLI::App* command, Arguments& arguments);
/// The user and where the password comes from.
void AddLogon(CLI::App* command, Arguments& arguments);
/// The form of rows and how they are fetched, with the logon.
void AddRows(CLI::App* command, Arguments& arguments);
/// That a statement may change data.
void AddChange(CLI::App* command, Arguments& arguments);
/// A range of time, which the command's callback checks.
void AddRange(CLI::App* app, Arguments& arguments, Command command);
/// A text that has something in it.
CLI::Validator NotEmpty();

}  // namespace orvane::tools
