#include "tools/terminal/standard_files.h"

#include <fcntl.h>
#include <unistd.h>

#include <initializer_list>

namespace orvane::tools {

void HoldStandardFiles() {
  for (const int nFile : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (fcntl(nFile, F_GETFD) >= 0) continue;
    // The lowest number that is free is this one, as those before it are held.
    (void)!open("/dev/null", nFile == STDIN_FILENO ? O_WRONLY : O_RDONLY);
  }
}

}  // namespace orvane::tools
