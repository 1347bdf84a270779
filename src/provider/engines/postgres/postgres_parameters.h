// A statement's parameters on their way to PostgreSQL: "?" by place becomes "$1", "$2" and so on,
// and a value becomes what libpq sends. Used by the engine on PostgreSQL; pure functions, any
// thread.
#pragma once

#include <libpq-fe.h>

#include <span>
#include <vector>

#include "platform/value.h"

namespace orvane::provider::engines {

/// A statement's text as PostgreSQL takes it.
struct NumberedText {
  platform::Text sSql;
  std::size_t nParameters = 0;
  std::vector<std::size_t> places;  ///< where in sSql each "$n" stands

  /// The byte in the text it was made of for a byte of sSql.
  std::size_t PlaceBefore(std::size_t nPlace) const;
};

/// Each "?" outside of texts, quoted names and comments becomes a number. Nothing is changed when
/// bParameters is false: then "?" is an operator.
NumberedText NumberParameters(const platform::Text& sSql, bool bParameters);

/// A parameter in the server's own form.
struct BinaryParameter {
  Oid type;
  platform::Text sBytes;
};

/// Values as arrays for libpq, which point into this object.
class PostgresParameters {
 public:
  /// Fails with failure::kTypeMismatch for an object, and for a text with a character of number 0,
  /// which PostgreSQL keeps nowhere.
  explicit PostgresParameters(std::span<const platform::Value> values);
  explicit PostgresParameters(std::vector<BinaryParameter> values);
  PostgresParameters(const PostgresParameters&) = delete;
  PostgresParameters& operator=(const PostgresParameters&) = delete;
  ~PostgresParameters() = default;

  int Count() const { return static_cast<int>(m_types.size()); }
  const Oid* Types() const { return m_types.data(); }
  const char* const* Values() const { return m_values.data(); }
  const int* Lengths() const { return m_lengths.data(); }
  const int* Formats() const { return m_formats.data(); }
  /// True when a statement that was prepared with these types takes the values as well.
  bool Fit(std::span<const Oid> prepared) const;
  /// A null becomes one of the type that another row had there; nothing for another number of
  /// types.
  void TypeNulls(std::span<const Oid> prepared);

 private:
  // There is room for all of them already.
  void Add(Oid type, platform::Text sContent, bool bBinary);

  std::vector<Oid> m_types;
  std::vector<platform::Text> m_texts;
  std::vector<const char*> m_values;
  std::vector<int> m_lengths;
  std::vector<int> m_formats;
};

}  // namespace orvane::provider::engines
