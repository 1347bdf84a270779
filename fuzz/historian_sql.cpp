// Any text may be run as a statement: it is translated, or refused with a sentence. The result
// has as many parameters as it has places for them.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "platform/failure.h"
#include "provider/dialect/catalog_statement.h"
#include "provider/dialect/lexer.h"
#include "provider/dialect/translator.h"

namespace {

using namespace orvane;
using namespace orvane::provider::dialect;

// A catalog "Plant1" with a table "Data", and a read-only one.
class Schema final : public SchemaSource {
 public:
  std::optional<KnownCatalog> FindCatalog(const platform::Text& sName) override {
    if (SameName(sName, "Plant1")) return KnownCatalog{"Plant1", ""};
    if (SameName(sName, "Functions")) return KnownCatalog{"Functions", "leave it as it is"};
    return {};
  }
  std::optional<KnownTable> FindTable(const KnownCatalog&, const platform::Text& sTable) override {
    if (!SameName(sTable, "Data")) return {};
    return KnownTable{"Data", {{"Tag"}, {"Timestamp", Content::Time}, {"Value"}}};
  }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view sStatement(reinterpret_cast<const char*>(data), size);
  Schema schema;
  TranslationSettings settings{orvane::zones::TimeZone("UTC"),
                               platform::Timestamp(std::chrono::seconds(1700000000))};
  settings.bPrefixes = size % 2 == 1;
  settings.bTimeAsDouble = size % 3 == 1;
  try {
    StatementWork work(provider::Deadline({}, {}));
    auto tokens = ReadTokens(sStatement, work);
    for (const auto& token : tokens) {
      if (token.position > size || token.length > size - token.position) std::abort();
    }
    if (ReadCatalogStatement(sStatement, tokens)) return 0;
    const auto translation = Translate(sStatement, std::move(tokens), schema, settings, work);
    const auto nPlaces = std::count(translation.sSql.begin(), translation.sSql.end(), '?');
    // A question mark may also stand in a text or a name.
    if (static_cast<std::size_t>(nPlaces) < translation.parameters.size()) std::abort();
  } catch (const platform::Failure& failure) {
    if (failure.Number() != platform::failure::kSqlError || failure.Description().empty()) {
      std::abort();
    }
  }
  return 0;
}
