#include "provider/engines/postgres/postgres_arrays.h"

#include <algorithm>
#include <array>
#include <bit>
#include <concepts>
#include <string_view>
#include <type_traits>
#include <utility>

#include "platform/conversions.h"
#include "provider/engines/postgres/postgres_types.h"

namespace orvane::provider::engines {

using platform::Text;
using platform::Value;

// Triggers see how many rows come at once, rules and policies are of whole statements, and a key
// that refers to its own table is looked at when the statement ends. A function of somebody's own
// in a default or a check may look for the rows before. A domain cuts what is cast to it, where it
// refuses what is given to it.
const char* const kTakesArrays =
    "WITH t AS (SELECT c.oid, c.relhasrules, c.relrowsecurity, c.relkind FROM pg_class AS c WHERE "
    "c.oid = to_regclass($1::text)), tree AS (SELECT oid FROM t UNION SELECT p.relid FROM t, "
    "pg_partition_tree(t.oid) AS p), y AS (SELECT u.n, pg_type.oid, pg_type.typtype FROM "
    "unnest($2::text::oid[]) WITH ORDINALITY AS u(type, n) LEFT JOIN pg_type ON pg_type.oid = "
    "u.type) SELECT format_type(y.oid, -1) FROM y WHERE EXISTS (SELECT FROM t WHERE relkind IN "
    "('r', 'p', 'f') AND NOT relhasrules AND NOT relrowsecurity) AND NOT EXISTS (SELECT FROM "
    "pg_trigger AS g JOIN tree ON g.tgrelid = tree.oid WHERE NOT g.tgisinternal) AND NOT EXISTS "
    "(SELECT FROM pg_constraint AS k WHERE k.contype = 'f' AND k.conrelid IN (SELECT oid FROM "
    "tree) AND k.confrelid IN (SELECT oid FROM tree)) AND NOT EXISTS (SELECT FROM pg_depend AS d "
    "LEFT JOIN pg_attrdef AS a ON d.classid = 'pg_attrdef'::regclass AND a.oid = d.objid LEFT JOIN "
    "pg_constraint AS k ON d.classid = 'pg_constraint'::regclass AND k.oid = d.objid WHERE "
    "d.refclassid = 'pg_proc'::regclass AND (a.adrelid IN (SELECT oid FROM tree) OR k.conrelid IN "
    "(SELECT oid FROM tree))) AND NOT EXISTS (SELECT FROM y WHERE typtype "
    "IS DISTINCT FROM 'b' AND typtype IS DISTINCT FROM 'e') ORDER BY y.n";

namespace {

constexpr Oid kText = static_cast<Oid>(PostgresType::Text);

// The array type of those elements that are sent in the server's own form.
constexpr std::array<std::pair<PostgresType, Oid>, 7> kArrays = {{
    {PostgresType::Bool, 1000},
    {PostgresType::Bytea, 1001},
    {PostgresType::Int4, 1007},
    {PostgresType::Text, 1009},
    {PostgresType::Int8, 1016},
    {PostgresType::Float8, 1022},
    {PostgresType::TimestampTz, 1185},
}};

Oid ArrayOf(Oid element) {
  const auto* const found = std::ranges::find_if(
      kArrays, [&](const auto& one) { return static_cast<Oid>(one.first) == element; });
  return found == kArrays.end() ? 0 : found->second;
}

// The higher bytes first.
template <std::unsigned_integral T>
void PutNumber(Text& sBytes, T number) {
  std::array<char, sizeof(T)> bytes;
  for (auto byte = bytes.rbegin(); byte != bytes.rend(); ++byte) {
    *byte = static_cast<char>(static_cast<unsigned char>(number));
    if constexpr (sizeof(T) > 1) number >>= 8;
  }
  sBytes.append(bytes.data(), bytes.size());
}

template <class T>
void PutElement(Text& sBytes, T content) {
  PutNumber(sBytes, static_cast<std::uint32_t>(sizeof(T)));
  if constexpr (std::is_same_v<T, double>) {
    PutNumber(sBytes, std::bit_cast<std::uint64_t>(content));
  } else {
    PutNumber(sBytes, static_cast<std::make_unsigned_t<T>>(content));
  }
}

void PutBytes(Text& sBytes, std::string_view sContent) {
  PutNumber(sBytes, static_cast<std::uint32_t>(sContent.size()));
  sBytes += sContent;
}

// What is not sent in the server's own form goes as a text and is cast there.
Oid ElementFor(Oid declared) {
  return ArrayOf(declared) == 0 ? kText : declared;
}

// False for a value of another type than its parameter.
bool Put(Text& sBytes, const Value& vtValue, Oid declared) {
  const auto isOf = [&](PostgresType type) { return static_cast<Oid>(type) == declared; };
  return std::visit(
      [&](const auto& content) {
        using T = std::decay_t<decltype(content)>;
        if constexpr (std::is_same_v<T, platform::Null>) {
          PutNumber(sBytes, ~std::uint32_t{0});
          return true;
        } else if constexpr (std::is_same_v<T, bool>) {
          PutElement(sBytes, static_cast<std::int8_t>(content));
          return isOf(PostgresType::Bool);
        } else if constexpr (std::is_same_v<T, std::int32_t>) {
          PutElement(sBytes, content);
          return isOf(PostgresType::Int4);
        } else if constexpr (std::is_same_v<T, std::int64_t>) {
          PutElement(sBytes, content);
          return isOf(PostgresType::Int8);
        } else if constexpr (std::is_same_v<T, double>) {
          PutElement(sBytes, content);
          return isOf(PostgresType::Float8);
        } else if constexpr (std::is_same_v<T, platform::Timestamp>) {
          // The server counts from the year 2000.
          constexpr platform::Timestamp kBegin = std::chrono::sys_days(std::chrono::days(10957));
          PutElement(sBytes, std::int64_t{(content - kBegin).count()});
          return isOf(PostgresType::TimestampTz);
        } else if constexpr (std::is_same_v<T, platform::Bytes>) {
          PutBytes(sBytes, {reinterpret_cast<const char*>(content.data()), content.size()});
          return isOf(PostgresType::Bytea);
        } else if constexpr (std::is_same_v<T, Text>) {
          PutBytes(sBytes, content);
          return isOf(PostgresType::Any) && content.find('\0') == Text::npos;
        } else if constexpr (std::is_same_v<T, platform::Decimal>) {
          PutBytes(sBytes, content.sDigits);
          return isOf(PostgresType::Numeric);
        } else if constexpr (std::is_same_v<T, platform::WallTime>) {
          PutBytes(sBytes, platform::ToText(content));
          return isOf(PostgresType::Timestamp);
        } else if constexpr (std::is_same_v<T, platform::Date>) {
          PutBytes(sBytes, platform::ToText(content));
          return isOf(PostgresType::Date);
        } else if constexpr (std::is_same_v<T, platform::TimeOfDay>) {
          PutBytes(sBytes, platform::ToText(content));
          return isOf(PostgresType::Time);
        } else if constexpr (std::is_same_v<T, platform::Guid>) {
          PutBytes(sBytes, platform::ToText(content));
          return isOf(PostgresType::Uuid);
        } else {
          return false;
        }
      },
      vtValue.Content());
}

// Goes over the words and names of a statement; what is not there is not passed over.
class InsertReader {
 public:
  explicit InsertReader(std::string_view sSql) : m_sSql(sSql) {}

  std::size_t Place() const { return m_nPlace; }
  std::string_view Rest() const { return m_sSql.substr(m_nPlace); }
  void Space() {
    while (m_nPlace < m_sSql.size() && (m_sSql[m_nPlace] == ' ' || m_sSql[m_nPlace] == '\n')) {
      ++m_nPlace;
    }
  }
  bool Word(std::string_view sWord) {
    Space();
    const std::string_view sThere = Rest().substr(0, sWord.size());
    const bool bSame = std::ranges::equal(sThere, sWord, [](char there, char word) {
      return (there >= 'a' && there <= 'z' ? there - 'a' + 'A' : there) == word;
    });
    if (bSame) m_nPlace += sWord.size();
    return bSame;
  }
  bool Name() {
    Space();
    const std::size_t nBegin = m_nPlace;
    if (Rest().starts_with('"')) {
      do {
        const auto nEnd = m_sSql.find('"', m_nPlace + 1);
        if (nEnd == std::string_view::npos) return false;
        m_nPlace = nEnd + 1;
      } while (Rest().starts_with('"'));
      return true;
    }
    const auto isOfName = [](char c) {
      return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
    };
    while (m_nPlace < m_sSql.size() && isOfName(m_sSql[m_nPlace])) ++m_nPlace;
    return m_nPlace > nBegin;
  }
  bool List(const auto& readOne) {
    if (!Word("(")) return false;
    do {
      if (!readOne()) return false;
    } while (Word(","));
    return Word(")");
  }

 private:
  std::string_view m_sSql;
  std::size_t m_nPlace = 0;
};

}  // namespace

std::optional<PostgresInsert> ReadInsert(const NumberedText& text) {
  InsertReader reader(text.sSql);
  if (!reader.Word("INSERT ") || !reader.Word("INTO ")) return std::nullopt;
  reader.Space();
  const std::size_t nTable = reader.Place();
  std::size_t nEnd = 0;
  do {
    if (!reader.Name()) return std::nullopt;
    nEnd = reader.Place();
  } while (reader.Word("."));
  const Text sTable = text.sSql.substr(nTable, nEnd - nTable);
  reader.Space();
  if (reader.Rest().starts_with('(') && !reader.List([&] { return reader.Name(); })) {
    return std::nullopt;
  }
  reader.Space();
  const std::size_t nValues = reader.Place();
  std::size_t nParameters = 0;
  const auto isNext = [&] { return reader.Word("$" + std::to_string(++nParameters)); };
  if (!reader.Word("VALUES") || !reader.List(isNext)) return std::nullopt;
  reader.Space();
  const Text sBehind(reader.Rest());
  if (nParameters != text.nParameters) return std::nullopt;
  if (!sBehind.empty()) {
    // What is computed there may look for the rows before.
    if (!reader.Word("ON CONFLICT ")) return std::nullopt;
    reader.List([&] { return reader.Name(); });
    if (!reader.Word("DO ") || reader.Rest().find('(') != std::string_view::npos) {
      return std::nullopt;
    }
  }
  return PostgresInsert{text.sSql.substr(0, nValues), sTable, sBehind};
}

Text PostgresArrays::Statement(const PostgresInsert& insert) const {
  // In the list of what is selected they go on side by side, and nothing is put aside.
  Text sValues;
  for (std::size_t n = 0; n < m_declared.size(); ++n) {
    sValues += (n == 0 ? "unnest($" : ", unnest($") + std::to_string(n + 1) + ")";
    if (ElementFor(m_declared[n]) == kText) sValues += "::" + m_names[n];
  }
  return insert.sBefore + "SELECT " + sValues + " " + insert.sBehind;
}

std::optional<std::vector<BinaryParameter>> PostgresArrays::Take(
    std::span<const std::vector<Value>> rows) const {
  std::vector<BinaryParameter> arrays;
  for (std::size_t nColumn = 0; nColumn < m_declared.size(); ++nColumn) {
    const Oid element = ElementFor(m_declared[nColumn]);
    Text sBytes;
    sBytes.reserve(rows.size() * 12 + 20);
    // One dimension, with nulls, of so many elements from 1.
    for (const auto number : {std::uint32_t{1}, std::uint32_t{1}, std::uint32_t{element},
                              static_cast<std::uint32_t>(rows.size()), std::uint32_t{1}}) {
      PutNumber(sBytes, number);
    }
    for (const auto& row : rows) {
      if (row.size() != m_declared.size() || !Put(sBytes, row[nColumn], m_declared[nColumn])) {
        return std::nullopt;
      }
    }
    arrays.push_back({ArrayOf(element), std::move(sBytes)});
  }
  return arrays;
}

}  // namespace orvane::provider::engines
