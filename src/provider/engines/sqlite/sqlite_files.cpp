#include "provider/engines/sqlite/sqlite_files.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include <filesystem>

#include "platform/failure.h"

namespace orvane::provider::engines {

using platform::Failure;
using platform::Text;
namespace failure = platform::failure;

Text SubjectOf(const Catalog& catalog) {
  if (!catalog.sName.empty()) return fmt::format("The catalog \"{}\"", catalog.sName);
  if (!catalog.sPlace.empty()) return fmt::format("The database \"{}\"", catalog.sPlace);
  return "The database";
}

void CheckFile(const Catalog& catalog) {
  std::error_code error;
  const auto status = std::filesystem::status(catalog.sPlace, error);
  const auto fail = [&](platform::Long lNumber, std::string_view sWhat) {
    throw Failure(lNumber,
                  fmt::format("{} cannot be opened: {}.", SubjectOf(catalog),
                              fmt::format(fmt::runtime(sWhat), catalog.sPlace)),
                  "SQLite", error.value());
  };
  if (error == std::errc::permission_denied) {
    fail(failure::kNoRights,
         "you have no right to the folder of its file \"{}\"; ask its owner for it");
  }
  if (status.type() == std::filesystem::file_type::not_found) {
    fail(failure::kServerNotFound, "there is no file \"{}\"; restore it from a copy");
  }
  if (status.type() != std::filesystem::file_type::regular) {
    fail(failure::kNotADatabase,
         "\"{}\" is no file; move it away and restore the file from a copy");
  }
  if (::faccessat(AT_FDCWD, catalog.sPlace.c_str(), R_OK, AT_EACCESS) != 0) {
    error.assign(errno, std::generic_category());
    fail(failure::kNoRights, "you have no right to read its file \"{}\"; ask its owner for it");
  }
}

Text UriOf(const Catalog& catalog) {
  Text sUri = "file://";
  for (const char character : std::filesystem::absolute(catalog.sPlace).string()) {
    switch (character) {
      case '%':
        sUri += "%25";
        break;
      case '?':
        sUri += "%3f";
        break;
      case '#':
        sUri += "%23";
        break;
      default:
        sUri += character;
    }
  }
  return sUri + (catalog.bReadOnly ? "?mode=ro" : "?mode=rw");
}

}  // namespace orvane::provider::engines
