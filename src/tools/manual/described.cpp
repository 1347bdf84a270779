#include "tools/manual/described.h"

#include <CLI/CLI.hpp>

namespace orvane::tools {

namespace {

/// The name of a value, without what is checked about it.
std::string ValueOf(const CLI::Option& option) {
  if (option.get_expected_min() == 0) return {};
  const std::string sType = option.get_type_name();
  return sType.substr(0, sType.find(':'));
}

DescribedOption OptionOf(const CLI::Option& option) {
  DescribedOption described{{}, ValueOf(option), option.get_description()};
  for (const auto& sName : option.get_snames()) described.names.push_back("-" + sName);
  for (const auto& sName : option.get_lnames()) described.names.push_back("--" + sName);
  return described;
}

}  // namespace

DescribedCommand CommandOf(const CLI::App& line) {
  DescribedCommand described;
  described.sName = line.get_name();
  described.sWhat = line.get_description();
  for (const CLI::Option* const option : line.get_options()) {
    if (option->get_positional()) {
      described.arguments.push_back(
          {option->get_name(true, false), option->get_description(), option->get_required()});
    } else {
      described.options.push_back(OptionOf(*option));
    }
  }
  for (const CLI::App* const command : line.get_subcommands({})) {
    described.commands.push_back(CommandOf(*command));
  }
  return described;
}

}  // namespace orvane::tools
