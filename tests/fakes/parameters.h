// Parameters of a command that stands in for one: what was appended, to be looked at.
#pragma once

#include <utility>
#include <vector>

#include "platform/ado/connection.h"
#include "platform/conversions.h"

namespace orvane::fakes {

class FakeParameter : public platform::Parameter {
 public:
  FakeParameter(platform::Text sName, platform::DataType type, platform::Value vtValue)
      : m_sName(std::move(sName)), m_type(type), m_vtValue(std::move(vtValue)) {}
  const platform::Text& Name() const override { return m_sName; }
  platform::DataType Type() const override { return m_type; }
  platform::Value Value() const override { return m_vtValue; }
  void Value(const platform::Value& vtValue) override { m_vtValue = vtValue; }

 private:
  platform::Text m_sName;
  platform::DataType m_type;
  platform::Value m_vtValue;
};

class FakeParameters : public platform::Parameters {
 public:
  platform::Long Count() const override { return static_cast<platform::Long>(m_items.size()); }
  void Append(const platform::ParameterPtr& parameter) override { m_items.push_back(parameter); }
  const platform::ParameterPtr& Item(const platform::Value& vtIndexName) const override {
    return m_items.at(static_cast<std::size_t>(platform::ToLong(vtIndexName)));
  }
  void Clear() override { m_items.clear(); }

 private:
  std::vector<platform::ParameterPtr> m_items;
};

}  // namespace orvane::fakes
