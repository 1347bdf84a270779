#include "provider/engines/postgres/postgres_parameters.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <type_traits>

#include "platform/conversions.h"
#include "platform/failure.h"
#include "provider/engines/postgres/postgres_types.h"

namespace orvane::provider::engines {

using platform::Failure;
using platform::Text;
using platform::Value;
namespace failure = platform::failure;

namespace {

bool IsWordByte(char character) {
  const auto byte = static_cast<unsigned char>(character);
  return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') ||
         (byte >= '0' && byte <= '9') || byte == '_' || byte == '$' || byte >= 0x80;
}

// Goes over a text piece by piece, the pieces in which a "?" is no parameter as a whole. The rules
// are those of PostgreSQL's lexical structure, with standard_conforming_strings on.
class Pieces {
 public:
  explicit Pieces(std::string_view sSql) : m_sSql(sSql) {}

  /// Where the piece that begins at the place ends, behind it.
  std::size_t EndOf(std::size_t nPlace) const {
    const char first = m_sSql[nPlace];
    const char second = At(nPlace + 1);
    if (first == '\'' || first == '"') return BehindQuotes(nPlace, false);
    if ((first == 'e' || first == 'E') && second == '\'') return BehindQuotes(nPlace + 1, true);
    if (first == '-' && second == '-') return std::min(m_sSql.find('\n', nPlace), m_sSql.size());
    if (first == '/' && second == '*') return BehindComment(nPlace);
    if (first == '$') return BehindDollars(nPlace);
    if (IsWordByte(first)) {
      while (nPlace < m_sSql.size() && IsWordByte(m_sSql[nPlace])) ++nPlace;
      return nPlace;
    }
    return nPlace + 1;
  }

 private:
  char At(std::size_t nPlace) const { return nPlace < m_sSql.size() ? m_sSql[nPlace] : '\0'; }

  std::size_t BehindQuotes(std::size_t nPlace, bool bBackslashes) const {
    const char quote = m_sSql[nPlace++];
    while (nPlace < m_sSql.size()) {
      if (bBackslashes && m_sSql[nPlace] == '\\') {
        nPlace += 2;
        continue;
      }
      if (m_sSql[nPlace++] != quote) continue;
      if (At(nPlace) != quote) return nPlace;
      ++nPlace;
    }
    return m_sSql.size();
  }

  // Comments of this kind nest.
  std::size_t BehindComment(std::size_t nPlace) const {
    std::size_t nDepth = 0;
    while (nPlace < m_sSql.size()) {
      const std::string_view sTwo = m_sSql.substr(nPlace, 2);
      if (sTwo == "/*") {
        ++nDepth;
        nPlace += 2;
      } else if (sTwo == "*/") {
        nPlace += 2;
        if (--nDepth == 0) return nPlace;
      } else {
        ++nPlace;
      }
    }
    return m_sSql.size();
  }

  // "$tag$ ... $tag$", otherwise the dollar alone.
  std::size_t BehindDollars(std::size_t nPlace) const {
    std::size_t nEnd = nPlace + 1;
    while (IsWordByte(At(nEnd)) && At(nEnd) != '$') ++nEnd;
    const bool bDigit = At(nPlace + 1) >= '0' && At(nPlace + 1) <= '9';
    if (At(nEnd) != '$' || bDigit) return nPlace + 1;
    const std::string_view sTag = m_sSql.substr(nPlace, nEnd + 1 - nPlace);
    const auto nClose = m_sSql.find(sTag, nEnd + 1);
    return nClose == std::string_view::npos ? m_sSql.size() : nClose + sTag.size();
  }

  std::string_view m_sSql;
};

}  // namespace

std::size_t NumberedText::PlaceBefore(std::size_t nPlace) const {
  std::size_t nLonger = 0;
  for (std::size_t n = 0; n < places.size() && places[n] < nPlace; ++n) {
    nLonger += std::to_string(n + 1).size();
  }
  return nPlace - std::min(nPlace, nLonger);
}

NumberedText NumberParameters(const Text& sSql, bool bParameters) {
  if (!bParameters) return {sSql, 0, {}};
  NumberedText text;
  const Pieces pieces(sSql);
  for (std::size_t nPlace = 0; nPlace < sSql.size();) {
    const std::size_t nEnd = pieces.EndOf(nPlace);
    if (sSql[nPlace] == '?') {
      text.places.push_back(text.sSql.size());
      text.sSql += '$' + std::to_string(++text.nParameters);
    } else {
      text.sSql.append(sSql, nPlace, nEnd - nPlace);
    }
    nPlace = nEnd;
  }
  return text;
}

void PostgresParameters::Add(Oid type, Text sContent, bool bBinary) {
  m_texts.push_back(std::move(sContent));
  m_types.push_back(type);
  m_values.push_back(m_texts.back().c_str());
  m_lengths.push_back(static_cast<int>(m_texts.back().size()));
  m_formats.push_back(bBinary ? 1 : 0);
}

PostgresParameters::PostgresParameters(std::vector<BinaryParameter> values) {
  m_texts.reserve(values.size());
  for (BinaryParameter& value : values) Add(value.type, std::move(value.sBytes), true);
}

PostgresParameters::PostgresParameters(std::span<const Value> values) {
  m_texts.reserve(values.size());
  for (const Value& vtValue : values) {
    const auto add = [&](PostgresType type, Text sText, bool bBinary = false) {
      Add(static_cast<Oid>(type), std::move(sText), bBinary);
    };
    std::visit(
        [&](const auto& content) {
          using T = std::decay_t<decltype(content)>;
          if constexpr (std::is_same_v<T, platform::Null>) {
            add(PostgresType::Any, {});
            m_values.back() = nullptr;
          } else if constexpr (std::is_same_v<T, bool>) {
            add(PostgresType::Bool, content ? "t" : "f");
          } else if constexpr (std::is_same_v<T, std::int32_t>) {
            add(PostgresType::Int4, std::to_string(content));
          } else if constexpr (std::is_same_v<T, std::int64_t>) {
            add(PostgresType::Int8, std::to_string(content));
          } else if constexpr (std::is_same_v<T, double>) {
            // The server reads the shortest form that reads back equal, and these two words.
            add(PostgresType::Float8, std::isnan(content) ? Text("NaN")
                                      : std::isinf(content)
                                          ? Text(content < 0 ? "-Infinity" : "Infinity")
                                          : platform::ToText(content));
          } else if constexpr (std::is_same_v<T, platform::Decimal>) {
            add(PostgresType::Numeric, content.sDigits);
          } else if constexpr (std::is_same_v<T, Text>) {
            if (content.find('\0') != Text::npos) {
              throw Failure(failure::kTypeMismatch,
                            "The server keeps no text with a character of number 0: take it out.",
                            "PostgreSQL");
            }
            add(PostgresType::Any, content);
          } else if constexpr (std::is_same_v<T, platform::Timestamp>) {
            add(PostgresType::TimestampTz, platform::ToText(content) + "+00");
          } else if constexpr (std::is_same_v<T, platform::WallTime>) {
            add(PostgresType::Timestamp, platform::ToText(content));
          } else if constexpr (std::is_same_v<T, platform::Date>) {
            add(PostgresType::Date, platform::ToText(content));
          } else if constexpr (std::is_same_v<T, platform::TimeOfDay>) {
            add(PostgresType::Time, platform::ToText(content));
          } else if constexpr (std::is_same_v<T, platform::Bytes>) {
            add(PostgresType::Bytea,
                Text(reinterpret_cast<const char*>(content.data()), content.size()), true);
          } else if constexpr (std::is_same_v<T, platform::Guid>) {
            add(PostgresType::Uuid, platform::ToText(content));
          } else {
            static_assert(std::is_same_v<T, platform::ObjectPtr>);
            throw Failure(failure::kTypeMismatch,
                          fmt::format("Parameter {} is an object, which no database can hold: give "
                                      "a plain value.",
                                      m_types.size() + 1),
                          "PostgreSQL");
          }
        },
        vtValue.Content());
  }
}

bool PostgresParameters::Fit(std::span<const Oid> prepared) const {
  if (prepared.size() != m_types.size() || prepared.empty()) return false;
  for (std::size_t n = 0; n < prepared.size(); ++n) {
    // Null is of every type.
    if (m_values[n] != nullptr && m_types[n] != prepared[n]) return false;
  }
  return true;
}

void PostgresParameters::TypeNulls(std::span<const Oid> prepared) {
  if (prepared.size() != m_types.size()) return;
  for (std::size_t n = 0; n < prepared.size(); ++n) {
    if (m_values[n] == nullptr) m_types[n] = prepared[n];
  }
}

}  // namespace orvane::provider::engines
