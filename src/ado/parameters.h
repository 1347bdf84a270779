// The parameters of a command: typed values for the "?" of its text, in order.
// Owned by the command; one thread at a time.
#pragma once

#include <vector>

#include "platform/ado/connection.h"

namespace orvane::ado {

class Parameter final : public platform::Parameter {
 public:
  /// Fails with failure::kTypeMismatch for an object, with kInvalidArgument for a text or bytes
  /// longer than the size, unless that is 0.
  Parameter(platform::Text sName, platform::DataType type, platform::Long lSize,
            const platform::Value& vtValue);

  const platform::Text& Name() const override { return m_sName; }
  platform::DataType Type() const override { return m_type; }
  platform::Value Value() const override { return m_vtValue; }
  /// Fails as the constructor does; then the parameter keeps its value.
  void Value(const platform::Value& vtValue) override;

 private:
  platform::Text m_sName;
  platform::DataType m_type;
  platform::Long m_lSize;
  platform::Value m_vtValue;
};

class Parameters final : public platform::Parameters {
 public:
  platform::Long Count() const override { return static_cast<platform::Long>(m_items.size()); }
  void Append(const platform::ParameterPtr& parameter) override;
  const platform::ParameterPtr& Item(const platform::Value& vtIndexName) const override;
  void Clear() override { m_items.clear(); }

  /// The values in order.
  std::vector<platform::Value> Values() const;

 private:
  std::vector<platform::ParameterPtr> m_items;
};

}  // namespace orvane::ado
