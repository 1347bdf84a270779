#include "ado/connection_properties.h"

#include <algorithm>

#include "platform/case_folding.h"
#include "platform/conversions.h"
#include "platform/failure.h"

namespace orvane::ado {

using platform::Failure;
using platform::Long;
using platform::Text;
using platform::Value;
namespace failure = platform::failure;

namespace {

// Values of "Prompt" by the numbers that data access publishes: always, complete, complete with
// what is required, never.
constexpr Long kPromptNever = 4;

}  // namespace

class ConnectionProperties::Entry final : public platform::Property {
 public:
  enum class Kind : std::uint8_t { Prompt, BeforeOpen, ReadOnly, Providers };

  Entry(const ConnectionProperties& owner, Kind kind, Text sName, platform::Value vtValue)
      : m_owner(owner),
        m_kind(kind),
        m_sName(std::move(sName)),
        m_sKey(platform::FoldCase(m_sName)),
        m_vtValue(std::move(vtValue)) {}

  const Text& Name() const override { return m_sName; }

  platform::Value Value() const override {
    if (m_kind == Kind::Providers && m_owner.m_session != nullptr) {
      return m_owner.m_session->PropertyValue(m_sName);
    }
    return m_vtValue;
  }

  void Value(const platform::Value& vtValue) override {
    switch (m_kind) {
      case Kind::Prompt:
        m_vtValue = CheckedPrompt(vtValue);
        return;
      case Kind::BeforeOpen:
        if (m_owner.m_session != nullptr) {
          throw Failure(failure::kObjectOpen, "The property \"" + m_sName +
                                                  "\" cannot be set while the connection is open: "
                                                  "close it first.");
        }
        m_vtValue = platform::ToText(vtValue);
        return;
      case Kind::ReadOnly:
        throw Failure(
            failure::kNotSupported,
            "The property \"" + m_sName + "\" can be read, but not set; leave it as it is.");
      case Kind::Providers:
        break;
    }
    if (m_owner.m_session != nullptr) {
      m_owner.m_session->PropertyValue(m_sName, vtValue);
    } else {
      m_vtValue = vtValue;
      m_bSetByHand = true;
    }
  }

  const Text& Key() const { return m_sKey; }
  Kind KindOf() const { return m_kind; }
  bool SetByHand() const { return m_bSetByHand; }
  void Put(const platform::Value& vtValue) {
    m_vtValue = vtValue;
    m_bSetByHand = false;
  }

 private:
  static platform::Value CheckedPrompt(const platform::Value& vtValue) {
    const Long lPrompt = platform::ToLong(vtValue);
    if (lPrompt < platform::kPromptAlways || lPrompt > kPromptNever) {
      throw Failure(failure::kTypeMismatch,
                    "The property \"Prompt\" takes a number from 1 to 4, not " +
                        std::to_string(lPrompt) + ".");
    }
    return lPrompt;
  }

  const ConnectionProperties& m_owner;
  Kind m_kind;
  Text m_sName;
  Text m_sKey;
  platform::Value m_vtValue;
  bool m_bSetByHand = false;
};

ConnectionProperties::ConnectionProperties() {
  using Kind = Entry::Kind;
  const auto add = [this](Kind kind, const char* sName, const Value& vtValue) {
    m_entries.push_back(std::make_unique<Entry>(*this, kind, sName, vtValue));
  };
  add(Kind::Prompt, kPrompt, kPromptNever);
  add(Kind::BeforeOpen, platform::kDataSource, Text());
  add(Kind::BeforeOpen, kUserId, Text());
  add(Kind::ReadOnly, kProviderName, Text());
}

ConnectionProperties::~ConnectionProperties() = default;

platform::Property& ConnectionProperties::Item(const Value& vtIndexName) {
  if (const Text* sName = vtIndexName.As<Text>()) {
    if (Entry* entry = Find(*sName)) return *entry;
    throw Failure(failure::kItemNotFound, "The connection has no property \"" + *sName +
                                              "\"; check its name and the provider.");
  }
  const Long lIndex = platform::ToLong(vtIndexName);
  if (lIndex < 0 || lIndex >= Count()) {
    throw Failure(failure::kItemNotFound,
                  "The connection has no property number " + std::to_string(lIndex) + ": it has " +
                      std::to_string(Count()) + " of them, counted from 0.");
  }
  return *m_entries[static_cast<std::size_t>(lIndex)];
}

void ConnectionProperties::Describe(const ConnectionSettings& settings, const Provider* provider) {
  std::vector<std::unique_ptr<Entry>> entries;
  std::vector<std::unique_ptr<Entry>> before;
  for (auto& entry : m_entries) {
    (entry->KindOf() == Entry::Kind::Providers ? before : entries).push_back(std::move(entry));
  }
  if (provider != nullptr) {
    for (PropertyDescription& description : provider->Properties()) {
      const Text sKey = platform::FoldCase(description.sName);
      const auto isIt = [&](const auto& entry) { return entry && entry->Key() == sKey; };
      // A provider that also lists a general property means that one.
      if (std::ranges::any_of(entries, isIt)) continue;
      const auto known = std::ranges::find_if(before, isIt);
      if (known == before.end()) {
        entries.push_back(std::make_unique<Entry>(*this, Entry::Kind::Providers,
                                                  std::move(description.sName),
                                                  std::move(description.vtInitial)));
        continue;
      }
      // What an earlier connection string said does not outlive that string.
      if (!(*known)->SetByHand()) (*known)->Put(description.vtInitial);
      entries.push_back(std::move(*known));
    }
  }
  for (auto& entry : before) {
    if (entry) m_retired.push_back(std::move(entry));
  }
  m_entries = std::move(entries);

  for (const auto& entry : m_entries) {
    const bool bNamed = entry->KindOf() != Entry::Kind::ReadOnly;
    if (const auto sValue = settings.Find(entry->Name()); sValue && bNamed) {
      entry->KindOf() == Entry::Kind::Prompt ? entry->Value(*sValue) : entry->Put(*sValue);
    }
  }
}

void ConnectionProperties::AddValuesSet(ConnectionSettings& settings) const {
  for (const auto& entry : m_entries) {
    if (entry->SetByHand()) settings.Set(entry->Name(), platform::ToText(entry->Value()));
  }
}

Value ConnectionProperties::Get(const char* sName) const {
  return Find(sName)->Value();
}

void ConnectionProperties::Put(const char* sName, const Value& vtValue) {
  Find(sName)->Put(vtValue);
}

ConnectionProperties::Entry* ConnectionProperties::Find(const Text& sName) const {
  const Text sKey = platform::FoldCase(sName);
  const auto found =
      std::ranges::find_if(m_entries, [&](const auto& entry) { return entry->Key() == sKey; });
  return found == m_entries.end() ? nullptr : found->get();
}

}  // namespace orvane::ado
