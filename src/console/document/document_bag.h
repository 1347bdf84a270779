// A flat store of named values as a console document keeps it: the property bag handed to a
// snap-in, and the host's own bag for the view. User-interface thread.
#pragma once

#include <functional>
#include <list>
#include <string_view>
#include <unordered_map>
#include <variant>

#include "platform/property_bag.h"

namespace orvane::console {

/// A persisted object as it lies in a document.
struct StoredObject {
  platform::Text sProgId;
  platform::Text sState;
  friend bool operator==(const StoredObject&, const StoredObject&) = default;
};

using StoredValue = std::variant<bool, platform::Long, platform::Text, StoredObject>;

/// The value as a document stores it under that name. Fails with 5 for a name or a progid that is
/// not UTF-8, with 13 for a value that no document holds.
StoredValue ToStored(std::string_view sName, const platform::Value& vtValue);

class DocumentBag : public platform::PropertyBag {
 public:
  /// Makes an empty object of the class of that progid; fails when it cannot.
  using ObjectCreator = std::function<platform::ObjectPtr(const platform::Text& sProgId)>;

  struct Entry {
    platform::Text sName;
    StoredValue value;
  };

  explicit DocumentBag(ObjectCreator creator = {}) : m_creator(std::move(creator)) {}

  /// As promised by PropertyBag. Fails with 5 for a name or a progid that is not UTF-8; a text or
  /// a state may be any bytes.
  void WriteProperty(std::string_view sName, const platform::Value& vtValue,
                     const std::optional<platform::Value>& vtDefault = std::nullopt) override;
  platform::Value ReadProperty(std::string_view sName,
                               const platform::Value& vtDefault) const override;

  /// Files a value under a new name; false, changing nothing, when the name is taken.
  bool Add(platform::Text sName, StoredValue value);
  /// The value of that name as it is stored, or null. Owned by the bag.
  const StoredValue* Find(std::string_view sName) const;
  /// All entries in the order in which they were first written.
  const std::list<Entry>& Entries() const noexcept { return m_entries; }
  std::size_t Count() const noexcept { return m_entries.size(); }

 private:
  ObjectCreator m_creator;
  std::list<Entry> m_entries;
  // The keys point into the entries, which never move.
  std::unordered_map<std::string_view, std::list<Entry>::iterator> m_index;
};

}  // namespace orvane::console
