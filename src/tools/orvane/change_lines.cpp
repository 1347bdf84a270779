#include "tools/orvane/change_lines.h"

#include <limits>

#include "tools/orvane/line_parts.h"

namespace orvane::tools {

namespace {

CLI::App& AddGroup(CLI::App& line, const char* sName, const char* sWhat) {
  CLI::App* const group = line.add_subcommand(sName, sWhat);
  group->require_subcommand(1);
  group->fallthrough();
  return *group;
}

void AddName(CLI::App* command, platform::Text& sName, const char* sMeta, const char* sWhat) {
  command->add_option(sMeta, sName, sWhat)->required()->check(NotEmpty());
}

void AddYes(CLI::App* command, Arguments& arguments) {
  command->add_flag("--yes", arguments.bConfirmed, "remove without a question on the terminal");
}

/// A verb for something of a server.
CLI::App* AddVerb(CLI::App& group, Arguments& arguments, Command command, const char* sName,
                  const char* sWhat) {
  CLI::App* const verb = AddCommand(group, arguments, command, sName, sWhat);
  AddName(verb, arguments.sServer, "SERVER", "the server");
  return verb;
}

void DescribeServers(CLI::App& line, Arguments& arguments) {
  CLI::App& group = AddGroup(line, "server", "add a server to a document, or remove one");
  auto* const add = AddVerb(group, arguments, Command::AddServer, "add",
                            "connect to a server and add it to the document");
  AddLogon(add, arguments);
  auto* const remove = AddVerb(group, arguments, Command::RemoveServer, "remove",
                               "remove a server, with its queries, from the document");
  AddYes(remove, arguments);
}

void DescribeCatalogs(CLI::App& line, Arguments& arguments) {
  CLI::App& group = AddGroup(line, "catalog", "make a catalog on a server, or remove one");
  const auto verb = [&](Command command, const char* sName, const char* sWhat) {
    CLI::App* const added = AddVerb(group, arguments, command, sName, sWhat);
    AddName(added, arguments.sName, "NAME", "the catalog");
    AddLogon(added, arguments);
    return added;
  };
  auto* const create = verb(Command::CreateCatalog, "create", "make a catalog");
  auto* const path =
      create
          ->add_option("--path", arguments.sPath, "the folder of its file (default: the server's)")
          ->type_name("DIR");
  create->add_option("--size", arguments.lSize, "so many kilobytes at most")
      ->type_name("N")
      ->check(CLI::Range(1, std::numeric_limits<platform::Long>::max()))
      ->excludes(path);
  auto* const attach = verb(Command::AttachCatalog, "attach",
                            "take a catalog's file in, such as one that was detached");
  AddName(attach, arguments.sFile, "FILE", "its file, which stays where it is");
  auto* const remove = verb(Command::RemoveCatalog, "remove",
                            "drop a catalog on the server, with all that it holds");
  AddYes(remove, arguments);
}

void DescribeQueries(CLI::App& line, Arguments& arguments) {
  CLI::App& group = AddGroup(line, "query", "add, change or remove a server's queries");
  const auto verb = [&](Command command, const platform::Text& sName, const char* sWhat) {
    CLI::App* const added = AddVerb(group, arguments, command, sName.c_str(), sWhat);
    AddName(added, arguments.sName, "NAME", "the query");
    return added;
  };
  const auto& sVerbs = QueryVerbs();
  verb(Command::AddQuery, sVerbs[0], "add a query with the SQL statement on the standard input");
  verb(Command::EditQuery, sVerbs[1],
       "give a query the SQL statement on the standard input instead of its own");
  auto* const rename = verb(Command::RenameQuery, sVerbs[2], "give a query another name");
  AddName(rename, arguments.sNewName, "NEW", "the new name");
  AddYes(verb(Command::RemoveQuery, sVerbs[3], "remove a query"), arguments);
}

}  // namespace

const std::array<platform::Text, 4>& QueryVerbs() {
  static const std::array<platform::Text, 4> sVerbs = {"add", "edit", "rename", "remove"};
  return sVerbs;
}

void DescribeChanges(CLI::App& line, Arguments& arguments, bool bQueryVerbs) {
  DescribeServers(line, arguments);
  DescribeCatalogs(line, arguments);
  if (bQueryVerbs) DescribeQueries(line, arguments);
}

}  // namespace orvane::tools
