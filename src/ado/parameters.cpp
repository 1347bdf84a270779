#include "ado/parameters.h"

#include <algorithm>

#include "ado/column.h"
#include "platform/case_folding.h"
#include "platform/conversions.h"
#include "platform/failure.h"

namespace orvane::ado {

using platform::Failure;
using platform::Long;
using platform::ParameterPtr;
using platform::Text;
namespace failure = platform::failure;

Parameter::Parameter(Text sName, platform::DataType type, Long lSize,
                     const platform::Value& vtValue)
    : m_sName(std::move(sName)), m_type(type), m_lSize(lSize) {
  Value(vtValue);
}

void Parameter::Value(const platform::Value& vtValue) {
  if (vtValue.Kind() == platform::ValueKind::Object) {
    throw Failure(failure::kTypeMismatch,
                  "A parameter cannot hold an object: give it a plain value.");
  }
  if (m_lSize > 0 && TextBytes(vtValue) > static_cast<std::size_t>(m_lSize)) {
    throw Failure(failure::kInvalidArgument, "The value of the parameter \"" + m_sName +
                                                 "\" is longer than " + std::to_string(m_lSize) +
                                                 " bytes: shorten it.");
  }
  m_vtValue = vtValue;
}

void Parameters::Append(const ParameterPtr& parameter) {
  if (std::dynamic_pointer_cast<Parameter>(parameter) == nullptr) {
    throw Failure(failure::kInvalidArgument,
                  "The command cannot take this parameter; give it one that a command of this "
                  "program has created.");
  }
  m_items.push_back(parameter);
}

const ParameterPtr& Parameters::Item(const platform::Value& vtIndexName) const {
  if (const auto* sName = vtIndexName.As<Text>()) {
    const Text sFolded = platform::FoldCase(*sName);
    const auto found = std::ranges::find_if(m_items, [&](const ParameterPtr& item) {
      return platform::FoldCase(item->Name()) == sFolded;
    });
    if (found != m_items.end()) return *found;
    throw Failure(failure::kItemNotFound,
                  "The command has no parameter \"" + *sName + "\"; name one of its parameters.");
  }
  const Long lIndex = platform::ToLong(vtIndexName);
  if (lIndex < 0 || lIndex >= Count()) {
    throw Failure(failure::kItemNotFound,
                  "The command has no parameter number " + std::to_string(lIndex) + ": it has " +
                      std::to_string(Count()) + " of them, counted from 0.");
  }
  return m_items[static_cast<std::size_t>(lIndex)];
}

std::vector<platform::Value> Parameters::Values() const {
  std::vector<platform::Value> values;
  values.reserve(m_items.size());
  for (const ParameterPtr& item : m_items) values.push_back(item->Value());
  return values;
}

}  // namespace orvane::ado
