// Persisted objects for the tests of documents.
#pragma once

#include <memory>

#include "console/document/document_bag.h"
#include "platform/failure.h"

namespace orvane::console {

/// An object whose state is one text; "refused" is no state of it.
class FakeObject : public platform::PersistedObject {
 public:
  explicit FakeObject(platform::Text sState = {}) : m_sState(std::move(sState)) {}

  platform::Text ProgId() const override { return "Test.Object"; }
  platform::Text WriteState() const override { return m_sState; }
  void ReadState(const platform::Text& sState) override {
    if (sState == "refused") {
      throw platform::Failure(platform::failure::kTypeMismatch, "That is no state.");
    }
    m_sState = sState;
  }

 private:
  platform::Text m_sState;
};

inline platform::ObjectPtr CreateFakeObject(const platform::Text& sProgId) {
  return sProgId == "Test.Object" ? std::make_shared<FakeObject>() : nullptr;
}

/// The state of the object stored under the name.
inline platform::Text StateOf(const DocumentBag& bag, std::string_view sName) {
  const platform::Value vtValue = bag.ReadProperty(sName, {});
  const auto* object = vtValue.As<platform::ObjectPtr>();
  return object ? dynamic_cast<const FakeObject&>(**object).WriteState() : "no object";
}

/// The description of the failure that the call raises; empty when it raises none.
template <class F>
platform::Text SentenceOf(F&& call) {
  try {
    call();
  } catch (const platform::Failure& failure) {
    return failure.Description();
  }
  return {};
}

/// The number of the failure that the call raises; 0 when it raises none.
template <class F>
platform::Long NumberOf(F&& call) {
  try {
    call();
  } catch (const platform::Failure& failure) {
    return failure.Number();
  }
  return 0;
}

}  // namespace orvane::console
