// What a save would write, taken down small: a property bag that keeps of each value only what
// tells it from another. For finding out whether there is unsaved work in a document of any size,
// where another whole copy would cost more than the answer is worth. User-interface thread.
#pragma once

#include <cstdint>
#include <map>
#include <utility>
#include <vector>

#include "console/document/document_bag.h"

namespace orvane::console {

class SaveSnapshot final : public platform::PropertyBag {
 public:
  /// Of a name and of its value.
  using Mark = std::pair<std::uint64_t, std::uint64_t>;
  using TextsByName = std::map<platform::Text, platform::Text, std::less<>>;

  SaveSnapshot() = default;
  /// The snapshot of a bag that was read or written.
  SaveSnapshot(const DocumentBag& bag);  // NOLINT(google-explicit-constructor): it is one as well

  /// Refuses what a DocumentBag refuses.
  void WriteProperty(std::string_view sName, const platform::Value& vtValue,
                     const std::optional<platform::Value>& vtDefault = std::nullopt) override;
  /// Gives the default: nothing can be read back.
  platform::Value ReadProperty(std::string_view sName,
                               const platform::Value& vtDefault) const override;

  /// The texts by their names; they are few, and are compared by more than their marks.
  const TextsByName& Texts() const { return m_texts; }
  /// The marks of everything else, in an order of their own.
  const std::vector<Mark>& Marks() const;

 private:
  void Take(std::string_view sName, StoredValue value);
  void Forget(std::string_view sName);

  TextsByName m_texts;
  // In the order of writing until they are asked for; a later mark of a name counts.
  mutable std::vector<Mark> m_marks;
  mutable bool m_bOrdered = true;
};

}  // namespace orvane::console
