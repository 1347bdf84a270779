// From historian SQL to the plain SQL of an engine: names become catalog.table in quotes, what
// meets a stored time becomes a time, and what may not be done is refused.
// Used by the session, once for each statement.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "platform/value.h"
#include "provider/dialect/given_values.h"
#include "provider/dialect/lexer.h"
#include "provider/dialect/statement_work.h"
#include "provider/engines/engine.h"
#include "zones/time_zone.h"

namespace orvane::provider::dialect {

/// A catalog as the historian knows it.
struct KnownCatalog {
  platform::Text sName;            ///< its own name, whichever one the statement used
  platform::Text sReadOnlyAdvice;  ///< empty when it can be changed, else what to do instead
};

/// What stands in a column or an expression, as far as the dialect tells.
enum class Content : std::uint8_t {
  Other,
  Null,   ///< nothing but null
  Time,   ///< times, and null
  Mixed,  ///< of SELECTs that are joined, some put out times here and others something else
  Day,    ///< of a column: dates, and null
  Clock,  ///< of a column: times of day, and null
};

struct KnownColumn {
  platform::Text sName;
  Content content = Content::Other;
  std::optional<platform::Text> sDefault{};  ///< what a row gets that names no value, as SQL
  bool bGenerated = false;                   ///< computed; takes no value
  bool bText = false;                        ///< keeps numbers as texts
  bool bRounds = false;                      ///< see engines::ColumnSchema
  bool bWithoutZone = false;                 ///< times as clocks somewhere show them
  bool bAsGiven = false;                     ///< keeps values of every kind as they are
};

struct KnownTable {
  platform::Text sName;
  std::vector<KnownColumn> columns;
  bool bView = false;
  platform::Text sDefinition{};  ///< the statement that made it, where it computes columns or holds
                                 ///< times or dates
  platform::Text sQuery{};  ///< stands in the place of its name where the engine has no such table
  platform::Text sConflictRules{};  ///< see engines::TableSchema
};

/// Tells the translator what there is.
class SchemaSource {
 public:
  SchemaSource() = default;
  SchemaSource(const SchemaSource&) = delete;
  SchemaSource& operator=(const SchemaSource&) = delete;
  virtual ~SchemaSource() = default;

  /// The catalog under the name by which statements know it, or none.
  virtual std::optional<KnownCatalog> FindCatalog(const platform::Text& sName) = 0;
  /// The table or view of that name, ASCII letters without regard to case, or none.
  virtual std::optional<KnownTable> FindTable(const KnownCatalog& catalog,
                                              const platform::Text& sTable) = 0;
};

struct TranslationSettings {
  zones::TimeZone zone;
  platform::Timestamp now;                  ///< what "*" is, the same in the whole statement
  platform::Boolean bPrefixes = false;      ///< "Orv_" may stand before every name
  platform::Boolean bTimeAsDouble = false;  ///< numbers of days compare with time columns
  std::span<const std::string_view> refusedNames{};  ///< see engines::Abilities
  const engines::SqlForm* form = nullptr;            ///< the same
  /// A row that conflicts with others is refused, also where the table would give one of them up.
  platform::Boolean bOthersStay = false;
};

struct Translation {
  platform::Text sSql;
  std::vector<platform::Value> parameters;  ///< one for each "?" in order
  std::vector<platform::Text> catalogs;     ///< those that must be within reach
  std::optional<platform::Text> changedCatalog;
  /// What each column of the result holds; empty when that is not known.
  std::vector<Content> columns;
  std::vector<engines::StatementFunction> functions;  ///< that the text calls
  platform::RowSource source;                         ///< whose rows the statement gives
  /// Of which the values are taken for times.
  std::vector<engines::TimeColumn> storedTimes;
  /// See engines::WrittenStatement.
  std::vector<std::pair<std::size_t, std::size_t>> places;
  /// What is expected of the values of a statement that runs once for each row of them.
  std::vector<GivenValue> given;
};

/// The prefix that the option "Identifier Prefixes" puts before names.
constexpr std::string_view kIdentifierPrefix = "Orv_";

/// The name without the prefix, if it has it in any case and something behind it.
platform::Text WithoutPrefix(const platform::Text& sName);

/// Translates one statement from its tokens; the parameters are those that GiveParameters gave
/// them. Fails with failure::kSqlError for what the statement
/// cannot mean: unknown catalogs and tables, tables without a catalog, texts that are no time
/// expressions, and stored times that meet anything else; with kStorage when the memory does not
/// suffice; and when the work is to end.
Translation Translate(std::string_view sStatement, std::vector<Token> tokens, SchemaSource& schema,
                      const TranslationSettings& settings, StatementWork& work,
                      std::span<const platform::Value> parameters = {});

}  // namespace orvane::provider::dialect
