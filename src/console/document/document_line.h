// One line of a document as it is read: a flat JSON object of Booleans, integers and texts.
// Used by the reader of the format; a plain value.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>
#include <utility>
#include <variant>

#include "platform/types.h"

namespace orvane::console {

class DocumentLine {
 public:
  /// Takes the line apart; false when it is something else, which Problem tells. It can be looked
  /// into all the same, as far as it was read.
  bool Read(std::string_view sLine);

  /// Whether there is a member of that name, of whatever kind.
  bool Has(std::string_view sName) const { return FindMember(sName) != nullptr; }
  /// The value of the member when it is of that kind, else null. Owned by the line.
  template <class T>
  const T* Find(std::string_view sName) const {
    const Member* member = FindMember(sName);
    return member ? std::get_if<T>(&member->value) : nullptr;
  }
  template <class T>
  T* Find(std::string_view sName) {
    return const_cast<T*>(std::as_const(*this).template Find<T>(sName));
  }
  std::size_t Count() const noexcept { return m_nMembers; }
  /// What is wrong with the line, as a sentence about it goes on; null when nothing is.
  const char* Problem() const noexcept { return m_sProblem; }

 private:
  class Taker;
  static constexpr std::size_t kMaximum = 4;

  struct Member {
    platform::Text sName;
    std::variant<std::monostate, bool, std::int64_t, platform::Text> value;
  };

  const Member* FindMember(std::string_view sName) const;

  std::array<Member, kMaximum> m_members;
  std::size_t m_nMembers = 0;
  const char* m_sProblem = nullptr;
};

}  // namespace orvane::console
