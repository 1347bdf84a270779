// What the tests of the translator share: a schema of two catalogs, and statements as they come
// out.
#pragma once

#include <gtest/gtest.h>

#include "platform/conversions.h"
#include "platform/failure.h"
#include "provider/dialect/translator.h"

namespace orvane::provider::dialect {

// Two catalogs of the usual tables, and the two that the historian keeps.
class TwoPlants final : public SchemaSource {
 public:
  std::optional<KnownCatalog> FindCatalog(const platform::Text& sName) override {
    if (SameName(sName, "{0A}")) return KnownCatalog{"Plant1", {}};
    for (const char* const sKnown : {"Plant1", "Plant 2"}) {
      if (SameName(sName, sKnown) || SameName(sName, platform::Text(kIdentifierPrefix) + sKnown)) {
        return KnownCatalog{sKnown, {}};
      }
    }
    if (SameName(sName, "Functions")) return KnownCatalog{"Functions", "change another one"};
    return std::nullopt;
  }
  std::optional<KnownTable> FindTable(const KnownCatalog&, const platform::Text& sTable) override {
    if (SameName(sTable, "Data")) {
      return KnownTable{"Data", {{"Tag"}, {"Timestamp", Content::Time}, {"Value"}, {"Status"}}};
    }
    if (SameName(sTable, "Tags")) {
      return KnownTable{"Tags",
                        {{"Tag"}, {"Description"}, {"Orv_Odd"}, {"Created", Content::Time}}};
    }
    return std::nullopt;
  }
};

struct Options {
  bool bPrefixes = false;
  bool bTimeAsDouble = false;
};

inline Translation Translated(std::string_view sStatement, Options options = {}) {
  static constexpr std::string_view kRefused[] = {"LOAD_EXTENSION", "PRAGMA_*"};
  TwoPlants schema;
  const TranslationSettings settings{
      zones::TimeZone("UTC"),
      std::chrono::sys_days(std::chrono::year{2024} / 5 / 15) + std::chrono::hours(12),
      options.bPrefixes, options.bTimeAsDouble, kRefused};
  StatementWork work(Deadline({}, {}));
  return Translate(sStatement, ReadTokens(sStatement, work), schema, settings, work);
}

// The SQL with its parameters behind it.
inline platform::Text Sql(std::string_view sStatement, Options options = {}) {
  try {
    const auto translation = Translated(sStatement, options);
    platform::Text sText = translation.sSql;
    for (const auto& parameter : translation.parameters) {
      sText += " | " + platform::ToText(parameter);
    }
    return sText;
  } catch (const platform::Failure& failure) {
    EXPECT_EQ(failure.Number(), platform::failure::kSqlError) << failure.Description();
    return failure.Description();
  }
}

}  // namespace orvane::provider::dialect
