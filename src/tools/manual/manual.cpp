#include "tools/manual/manual.h"

#include <iostream>
#include <string_view>
#include <utility>

#include "tools/manual/man_page.h"
#include "tools/manual/shell_completion.h"

namespace orvane::tools {

std::optional<int> ToldManual(int argc, const char* const* argv,
                              const std::function<DescribedProgram()>& describe) {
  if (argc != 3 || std::string_view(argv[1]) != "--manual") return std::nullopt;
  constexpr std::pair<std::string_view, std::string (*)(const DescribedProgram&)> kForms[] = {
      {"man", ManPage}, {"bash", BashCompletion}, {"zsh", ZshCompletion}, {"fish", FishCompletion}};
  for (const auto& [sForm, make] : kForms) {
    if (sForm != argv[2]) continue;
    std::cout << make(describe()) << std::flush;
    return std::cout ? 0 : 1;
  }
  return std::nullopt;
}

}  // namespace orvane::tools
