#include "tools/orvane_historian/generate.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "tools/orvane_historian/catalog_database.h"
#include "tools/orvane_historian/server_rows.h"

namespace orvane::tools {
namespace {

using namespace std::chrono;
using platform::Text;
using platform::Timestamp;
using platform::Value;

struct Signal {
  const char* sTag;
  const char* sDescription;
  const char* sUnit;
  double dMean;
  double dSwing;   ///< of the slow wave
  double dPeriod;  ///< of the slow wave, in seconds
  double dNoise;
};

constexpr Signal kSignals[] = {
    {"FIC101.PV", "Feed flow (generated)", "m3/h", 42.0, 3.5, 5400, 0.4},
    {"FIC101.SP", "Feed flow set point (generated)", "m3/h", 42.0, 0.0, 1, 0.0},
    {"TIC201.PV", "Reactor temperature (generated)",
     "\xC2\xB0"
     "C",
     182.0, 4.0, 14400, 0.3},
    {"PI202.PV", "Reactor pressure (generated)", "bar", 6.2, 0.35, 7200, 0.02},
    {"LI301.PV", "Product tank level (generated)", "%", 55.0, 30.0, 28800, 0.2},
    {"AI302.PV", "Product purity (generated)", "%", 99.2, 0.3, 21600, 0.03},
    {"SI401.PV", "Mixer speed (generated)", "1/min", 1480.0, 12.0, 3600, 3.0},
    {"EI402.PV", "Mixer power (generated)", "kW", 37.5, 2.5, 3600, 0.5},
};

constexpr const char* kCatalogDescription = "Invented plant (generated)";

constexpr const char* kBatchTag = "BATCH501.STATE";
constexpr const char* kBatchDescription = "State of the batch (generated)";
constexpr const char* kBatchStates[] = {"Charging", "Heating", "Reacting", "Cooling", "Emptying"};

// A number from -1 to 1 that only tag and time decide.
double Noise(std::size_t signal, std::int64_t llSecond) {
  auto bits = static_cast<std::uint64_t>(llSecond) * 0x9E3779B97F4A7C15ULL +
              (signal + 1) * 0xBF58476D1CE4E5B9ULL;
  bits = (bits ^ (bits >> 30U)) * 0xBF58476D1CE4E5B9ULL;
  bits = (bits ^ (bits >> 27U)) * 0x94D049BB133111EBULL;
  bits ^= bits >> 31U;
  return static_cast<double>(bits >> 11U) / 4503599627370496.0 - 1.0;
}

double ValueAt(std::size_t number, std::int64_t llSecond) {
  const Signal& signal = kSignals[number];
  const double dPhase = static_cast<double>(number);
  const double dWave =
      std::sin(2.0 * std::numbers::pi * static_cast<double>(llSecond) / signal.dPeriod + dPhase);
  const double dValue =
      signal.dMean + signal.dSwing * dWave + signal.dNoise * Noise(number, llSecond);
  // As many digits as an instrument would give.
  return std::round(dValue * 1000.0) / 1000.0;
}

void WriteTags(CatalogDatabase& database) {
  PreparedStatement insert(database,
                           "INSERT INTO Tags (Tag, Description, Unit, Type) VALUES (?, ?, ?, ?) "
                           "ON CONFLICT (Tag) DO NOTHING");
  for (const auto& signal : kSignals) {
    insert << Text(signal.sTag) << Text(signal.sDescription) << Text(signal.sUnit)
           << Text("number");
    insert.Run();
  }
  insert << Text(kBatchTag) << Text(kBatchDescription) << Value() << Text("text");
  insert.Run();
}

bool HasTables(CatalogDatabase& database) {
  return PreparedStatement(
             database,
             "SELECT count(*) FROM sqlite_schema WHERE type = 'table' AND lower(name) IN "
             "('tags', 'data', 'data2') HAVING count(*) = 3")
      .Run();
}

// Tags of the signals as they are described here, and nowhere else.
class OwnTags {
 public:
  explicit OwnTags(CatalogDatabase& database)
      : m_find(database, "SELECT 1 FROM Tags WHERE Tag = ? AND Description = ?") {}

  bool Has(const char* sTag, const char* sDescription) {
    m_find << Text(sTag) << Text(sDescription);
    return m_find.Run();
  }
  bool HasAny() {
    return std::ranges::any_of(
        kSignals, [this](const Signal& signal) { return Has(signal.sTag, signal.sDescription); });
  }

 private:
  PreparedStatement m_find;
};

Timestamp At(std::int64_t llSecond) {
  return Timestamp(seconds(llSecond));
}

constexpr std::int64_t kStateSeconds = 900;

void WriteStates(CatalogDatabase& database, std::int64_t llFirst, std::int64_t llLast) {
  PreparedStatement texts(database,
                          "INSERT OR IGNORE INTO Data2 (Tag, Timestamp, Value) VALUES (?, ?, ?)");
  for (std::int64_t llSecond = llFirst / kStateSeconds * kStateSeconds; llSecond <= llLast;
       llSecond += kStateSeconds) {
    const auto state = static_cast<std::size_t>(llSecond / kStateSeconds) % std::size(kBatchStates);
    texts << kBatchTag << Value(At(llSecond)) << kBatchStates[state];
    texts.Run();
  }
}

[[noreturn]] void FailNotGenerated(const Text& sCatalog) {
  throw NotGenerated(platform::failure::kInvalidArgument,
                     "The catalog \"" + sCatalog +
                         "\" holds no generated signals, so none were written into it; name "
                         "another one, such as \"orvane-historian generate --catalog "
                         "Invented\".");
}

// Of the signals that are described in the catalog as they are here, the numbers.
std::vector<std::size_t> OwnSignals(ServerCatalog& catalog) {
  std::vector<std::size_t> own;
  for (const char* const sTable : {"Tags", "Data", "Data2"}) {
    if (!catalog.Has(sTable)) return own;
  }
  for (std::size_t signal = 0; signal < std::size(kSignals); ++signal) {
    const auto rs = catalog.Ask(
        "SELECT 1 FROM " + catalog.Named("Tags") + " WHERE \"Tag\" = ? AND \"Description\" = ?",
        {Value(kSignals[signal].sTag), Value(kSignals[signal].sDescription)});
    if (rs->RecordCount() != 0) own.push_back(signal);
  }
  return own;
}

void WriteTags(ServerCatalog& catalog) {
  std::size_t signal = 0;
  catalog.Run(
      "INSERT INTO " + catalog.Named("Tags") +
          " (\"Tag\", \"Description\", \"Unit\", \"Type\") VALUES (?, ?, ?, ?) ON "
          "CONFLICT DO NOTHING",
      [&](std::vector<Value>& values) {
        if (signal > std::size(kSignals)) return false;
        if (signal == std::size(kSignals)) {
          values = {Value(kBatchTag), Value(kBatchDescription), Value(), Value("text")};
        } else {
          const Signal& one = kSignals[signal];
          values = {Value(one.sTag), Value(one.sDescription), Value(one.sUnit), Value("number")};
        }
        ++signal;
        return true;
      });
}

Text InsertValues(const ServerCatalog& catalog, const char* sTable) {
  return "INSERT INTO " + catalog.Named(sTable) +
         " (\"Tag\", \"Timestamp\", \"Value\") VALUES (?, ?, ?) ON CONFLICT DO NOTHING";
}

}  // namespace

std::int64_t GenerateOnServer(ServerCatalog& catalog, const GenerateOrder& order) {
  if (!catalog.IsNew() && OwnSignals(catalog).empty()) FailNotGenerated(catalog.Name());
  WriteTags(catalog);
  const auto own = OwnSignals(catalog);
  const std::int64_t llStep = order.step.count();
  const std::int64_t llNow = floor<seconds>(order.now).time_since_epoch().count();
  const std::int64_t llFirst =
      (llNow - duration_cast<seconds>(order.span).count()) / llStep * llStep;
  std::size_t n = 0;
  std::int64_t llSecond = llFirst;
  std::int64_t llNew = catalog.Run(InsertValues(catalog, "Data"), [&](std::vector<Value>& values) {
    if (llSecond > llNow) {
      llSecond = llFirst;
      ++n;
    }
    if (n >= own.size()) return false;
    values = {Value(kSignals[own[n]].sTag), Value(At(llSecond)), Value(ValueAt(own[n], llSecond))};
    llSecond += llStep;
    return true;
  });
  llSecond = llFirst / kStateSeconds * kStateSeconds;
  llNew += catalog.Run(InsertValues(catalog, "Data2"), [&](std::vector<Value>& values) {
    if (llSecond > llNow) return false;
    const auto state = static_cast<std::size_t>(llSecond / kStateSeconds) % std::size(kBatchStates);
    values = {Value(kBatchTag), Value(At(llSecond)), Value(kBatchStates[state])};
    llSecond += kStateSeconds;
    return true;
  });
  return llNew;
}

std::int64_t Generate(const ServerPlace& place, const GenerateOrder& order) {
  // By its description one is known that was made and, after a crash, never filled.
  const auto record = FindOrMakeCatalog(place, order.sCatalog, kCatalogDescription);
  CatalogDatabase database(record);
  if (!HasTables(database)) FailNotGenerated(record.sName);
  OwnTags own(database);
  const std::int64_t llStep = order.step.count();
  const std::int64_t llNow = floor<seconds>(order.now).time_since_epoch().count();
  // On the same beat whenever it is called.
  const std::int64_t llFirst =
      (llNow - duration_cast<seconds>(order.span).count()) / llStep * llStep;
  std::int64_t llNew = 0;
  database.InTransaction([&] {
    if (record.sDescription != kCatalogDescription && !own.HasAny()) FailNotGenerated(record.sName);
    WriteTags(database);
    const auto before = sqlite3_total_changes64(database.Handle());
    PreparedStatement numbers(
        database, "INSERT OR IGNORE INTO Data (Tag, Timestamp, Value) VALUES (?, ?, ?)");
    for (std::size_t signal = 0; signal < std::size(kSignals); ++signal) {
      if (!own.Has(kSignals[signal].sTag, kSignals[signal].sDescription)) continue;
      for (std::int64_t llSecond = llFirst; llSecond <= llNow; llSecond += llStep) {
        numbers << kSignals[signal].sTag << Value(At(llSecond)) << ValueAt(signal, llSecond);
        numbers.Run();
      }
    }
    if (own.Has(kBatchTag, kBatchDescription)) WriteStates(database, llFirst, llNow);
    llNew = sqlite3_total_changes64(database.Handle()) - before;
  });
  return llNew;
}

}  // namespace orvane::tools
