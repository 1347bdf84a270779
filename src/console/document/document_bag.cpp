#include "console/document/document_bag.h"

#include "platform/failure.h"
#include "platform/utf8.h"

namespace orvane::console {

using platform::Failure;
using platform::ObjectPtr;
using platform::PersistedObject;
using platform::Text;
using platform::Value;
namespace failure = platform::failure;

StoredValue ToStored(std::string_view sName, const Value& vtValue) {
  if (!platform::IsUtf8(sName)) {
    throw Failure(failure::kInvalidArgument,
                  "A property cannot be saved because its name is not UTF-8 text; rename or remove "
                  "the item that it belongs to.");
  }
  if (const bool* bValue = vtValue.As<bool>()) return *bValue;
  if (const auto* lValue = vtValue.As<platform::Long>()) return *lValue;
  if (const Text* sValue = vtValue.As<Text>()) return *sValue;
  if (const ObjectPtr* object = vtValue.As<ObjectPtr>()) {
    if (const auto persisted = std::dynamic_pointer_cast<PersistedObject>(*object)) {
      StoredObject stored{persisted->ProgId(), persisted->WriteState()};
      if (!platform::IsUtf8(stored.sProgId)) {
        throw Failure(failure::kInvalidArgument,
                      "The class name of the object to be saved as " + Text(sName) +
                          " is not UTF-8 text; register its component again and save then.");
      }
      return stored;
    }
  }
  throw Failure(failure::kTypeMismatch,
                "The value of " + Text(sName) +
                    " cannot be saved: a document holds Booleans, 32-bit integers, texts and "
                    "objects that can save themselves.");
}

void DocumentBag::WriteProperty(std::string_view sName, const Value& vtValue,
                                const std::optional<Value>& vtDefault) {
  StoredValue value = ToStored(sName, vtValue);
  const auto found = m_index.find(sName);
  if (vtDefault && vtValue == *vtDefault) {
    if (found != m_index.end()) {
      const auto entry = found->second;
      m_index.erase(found);
      m_entries.erase(entry);
    }
  } else if (found != m_index.end()) {
    found->second->value = std::move(value);
  } else {
    Add(Text(sName), std::move(value));
  }
}

Value DocumentBag::ReadProperty(std::string_view sName, const Value& vtDefault) const {
  const StoredValue* stored = Find(sName);
  if (!stored) return vtDefault;
  if (const bool* bValue = std::get_if<bool>(stored)) return *bValue;
  if (const auto* lValue = std::get_if<platform::Long>(stored)) return *lValue;
  if (const Text* sValue = std::get_if<Text>(stored)) return *sValue;
  const auto& object = std::get<StoredObject>(*stored);
  const auto created = std::dynamic_pointer_cast<PersistedObject>(
      m_creator ? m_creator(object.sProgId) : ObjectPtr());
  if (!created) {
    throw Failure(failure::kComponent,
                  "The document holds an object of the class " + object.sProgId + " under " +
                      Text(sName) +
                      ", which cannot be created here; register the component that provides it.");
  }
  created->ReadState(object.sState);
  return created;
}

bool DocumentBag::Add(Text sName, StoredValue value) {
  const auto entry = m_entries.insert(m_entries.end(), Entry{std::move(sName), std::move(value)});
  if (m_index.try_emplace(entry->sName, entry).second) return true;
  m_entries.erase(entry);
  return false;
}

const StoredValue* DocumentBag::Find(std::string_view sName) const {
  const auto found = m_index.find(sName);
  return found == m_index.end() ? nullptr : &found->second->value;
}

}  // namespace orvane::console
