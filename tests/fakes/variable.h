// A variable of the environment for one test.
#pragma once

#include <cstdlib>
#include <optional>
#include <string>

namespace orvane::fakes {

/// Has the value while this lives; null takes it away.
class Variable {
 public:
  Variable(const char* sName, const char* sValue) : m_sName(sName) {
    if (const char* const sOld = std::getenv(sName)) m_sOld = sOld;
    Set(sValue);
  }
  Variable(const Variable&) = delete;
  Variable& operator=(const Variable&) = delete;
  ~Variable() { Set(m_sOld ? m_sOld->c_str() : nullptr); }

 private:
  void Set(const char* sValue) const {
    if (sValue == nullptr) {
      unsetenv(m_sName);
    } else {
      setenv(m_sName, sValue, 1);
    }
  }

  const char* m_sName;
  std::optional<std::string> m_sOld;
};

}  // namespace orvane::fakes
