// A property bag in memory that remembers the order of writing and fails where it is told to.
#pragma once

#include <algorithm>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/failure.h"
#include "platform/property_bag.h"

namespace orvane::fakes {

class FakePropertyBag : public platform::PropertyBag {
 public:
  using Create = std::function<std::shared_ptr<platform::PersistedObject>()>;

  /// Makes empty objects of a progid when a stored one is read.
  void Creates(const platform::Text& sProgId, Create create) {
    m_creators[sProgId] = std::move(create);
  }
  /// Reading or writing that name fails from now on.
  void FailAt(const platform::Text& sName) { m_sFailing = sName; }

  void WriteProperty(std::string_view sName, const platform::Value& vtValue,
                     const std::optional<platform::Value>& vtDefault) override {
    FailIfTold(sName);
    if (vtDefault) ++nDefaultsPassed;
    Stored stored{vtValue, {}};
    if (const auto* object = vtValue.As<platform::ObjectPtr>()) {
      const auto persisted = std::dynamic_pointer_cast<platform::PersistedObject>(*object);
      if (!persisted) throw platform::Failure(13, "Only objects with a state can be stored.");
      stored = {platform::Value(), {persisted->ProgId(), persisted->WriteState()}};
    } else if (vtValue.Kind() != platform::ValueKind::Boolean &&
               vtValue.Kind() != platform::ValueKind::Long &&
               vtValue.Kind() != platform::ValueKind::Text) {
      throw platform::Failure(13, "This kind of value cannot be stored.");
    }
    order.emplace_back(sName);
    m_values.insert_or_assign(platform::Text(sName), std::move(stored));
  }

  platform::Value ReadProperty(std::string_view sName,
                               const platform::Value& vtDefault) const override {
    FailIfTold(sName);
    const auto entry = m_values.find(sName);
    if (entry == m_values.end()) return vtDefault;
    const auto& [vtValue, object] = entry->second;
    if (object.first.empty()) return vtValue;
    const auto creator = m_creators.find(object.first);
    if (creator == m_creators.end()) throw platform::Failure(3809, "Unknown class.");
    const auto persisted = creator->second();
    persisted->ReadState(object.second);
    return persisted;
  }

  bool Has(const platform::Text& sName) const { return m_values.contains(sName); }
  std::size_t Size() const { return m_values.size(); }
  void Erase(const platform::Text& sName) { m_values.erase(sName); }
  /// The stored value without creating objects; Null when absent.
  platform::Value At(const platform::Text& sName) const {
    return ReadProperty(sName, platform::Value());
  }

  std::vector<platform::Text> order;  ///< names in the order of writing
  int nDefaultsPassed = 0;

 private:
  struct Stored {
    platform::Value vtValue;
    std::pair<platform::Text, platform::Text> object;  ///< progid and state
  };

  void FailIfTold(std::string_view sName) const {
    if (m_sFailing == sName) {
      throw platform::Failure(platform::failure::kDocument, "The document cannot be used.");
    }
  }

  std::map<platform::Text, Stored, std::less<>> m_values;
  std::map<platform::Text, Create> m_creators;
  std::optional<platform::Text> m_sFailing;
};

}  // namespace orvane::fakes
