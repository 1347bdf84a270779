#include "component/class_file.h"

#include <cstdint>
#include <cstdio>
#include <nlohmann/json.hpp>

#include "platform/case_folding.h"
#include "platform/failure.h"

namespace orvane::component {
namespace {

using nlohmann::json;
using platform::Failure;
using platform::Text;

constexpr int kFormat = 1;
// Leaves room for the extension and for the ending of a temporary file in 255 bytes.
constexpr std::size_t kLongestName = 200;
constexpr std::size_t kKeptOfLongName = 150;

[[noreturn]] void FailDamaged(const std::filesystem::path& file, const Text& sWhat) {
  throw Failure(platform::failure::kComponent,
                "The registration file \"" + file.string() + "\" " + sWhat +
                    "; register its component again with orvane-regsvr.",
                "component");
}

bool IsPlain(char c) {
  return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '-' || c == '_' || c == '.';
}

Text Hash(std::string_view sText) {
  std::uint64_t hash = 0xCBF29CE484222325U;
  for (const char c : sText) {
    hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001B3U;
  }
  char buffer[17];
  std::snprintf(buffer, sizeof buffer, "%016llx", static_cast<unsigned long long>(hash));
  return buffer;
}

Text TextOf(const json& object, const char* sName, const std::filesystem::path& file) {
  const auto found = object.find(sName);
  if (found == object.end()) return {};
  if (!found->is_string()) FailDamaged(file, "is damaged at \"" + Text(sName) + "\"");
  return found->get<Text>();
}

}  // namespace

Text ClassFileName(std::string_view sProgId) {
  static constexpr char kDigits[] = "0123456789ABCDEF";
  Text sName;
  for (const char c : platform::FoldCase(sProgId)) {
    const bool bHidden = c == '.' && sName.empty();
    if (IsPlain(c) && !bHidden) {
      sName += c;
    } else {
      const auto byte = static_cast<unsigned char>(c);
      sName += {'%', kDigits[byte >> 4U], kDigits[byte & 0x0FU]};
    }
  }
  // "%%" cannot come out of the escaping, so a shortened name is never that of another progid.
  if (sName.size() > kLongestName) sName = sName.substr(0, kKeptOfLongName) + "%%" + Hash(sName);
  return sName + ".json";
}

Text WriteClassFile(const RegisteredClass& registered) {
  const auto& description = registered.description;
  if (description.sProgId.empty()) {
    throw Failure(platform::failure::kComponent,
                  "The library \"" + registered.library.string() +
                      "\" registers a class without a name; ask its maker for a corrected one.",
                  "component");
  }
  try {
    nlohmann::ordered_json object;
    object["format"] = kFormat;
    object["progid"] = description.sProgId;
    object["guid"] = description.sGuid;
    object["kind"] = description.sKind;
    object["displayName"] = description.sDisplayName;
    object["description"] = description.sDescription;
    object["version"] = description.sVersion;
    object["maker"] = description.sProvider;
    object["library"] = registered.library.string();
    return object.dump(2) + "\n";
  } catch (const json::exception&) {
    throw Failure(platform::failure::kComponent,
                  "The library \"" + registered.library.string() +
                      "\" registers a class with a text that is not UTF-8; rename the file, or ask "
                      "its maker for a corrected one.",
                  "component");
  }
}

RegisteredClass ReadClassFile(std::string_view sContent, const std::filesystem::path& file) {
  const json object = json::parse(sContent, nullptr, false);
  if (!object.is_object()) FailDamaged(file, "is damaged");
  const auto format = object.find("format");
  if (format == object.end() || !format->is_number_integer()) FailDamaged(file, "is damaged");
  if (*format != kFormat) FailDamaged(file, "was written by another version of the program");
  RegisteredClass registered;
  auto& description = registered.description;
  description.sProgId = TextOf(object, "progid", file);
  description.sGuid = TextOf(object, "guid", file);
  description.sKind = TextOf(object, "kind", file);
  description.sDisplayName = TextOf(object, "displayName", file);
  description.sDescription = TextOf(object, "description", file);
  description.sVersion = TextOf(object, "version", file);
  description.sProvider = TextOf(object, "maker", file);
  const Text sLibrary = TextOf(object, "library", file);
  if (description.sProgId.empty() || sLibrary.empty() || sLibrary.find('\0') != Text::npos) {
    FailDamaged(file, "is damaged");
  }
  if (file.filename() != ClassFileName(description.sProgId)) {
    FailDamaged(file, "does not belong to the class \"" + description.sProgId + "\" that it names");
  }
  registered.library = (file.parent_path() / sLibrary).lexically_normal();
  return registered;
}

}  // namespace orvane::component
