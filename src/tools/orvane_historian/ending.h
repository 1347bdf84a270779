// How the program ends, whatever happened: a status and a sentence.
// Used by its main function.
#pragma once

#include <functional>
#include <ostream>

namespace orvane::tools {

/// Does the work and gives its status; of what it throws, a sentence goes to the errors. Status 1,
/// or 2 where nothing was generated because the catalog is another's.
int EndingTold(std::ostream& errors, const std::function<int()>& work);

}  // namespace orvane::tools
