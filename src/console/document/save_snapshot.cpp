#include "console/document/save_snapshot.h"

#include <algorithm>
#include <bit>

namespace orvane::console {

using platform::Text;
using platform::Value;

namespace {

/// Stands for a value that is not written; no value's own mark is that.
constexpr std::uint64_t kForgotten = 0;

std::uint64_t MarkOf(std::string_view sText) {
  return std::hash<std::string_view>{}(sText);
}

std::uint64_t Joined(std::uint64_t uFirst, std::uint64_t uSecond) {
  constexpr std::uint64_t kOdd = 0x9E3779B97F4A7C15;
  return (std::rotl(uFirst * kOdd, 31) ^ uSecond) * kOdd + 1;
}

std::uint64_t MarkOfValue(const StoredValue& value) {
  std::uint64_t uMark = 0;
  if (const bool* bValue = std::get_if<bool>(&value)) {
    uMark = Joined(1, *bValue ? 1 : 0);
  } else if (const auto* lValue = std::get_if<platform::Long>(&value)) {
    uMark = Joined(2, static_cast<std::uint32_t>(*lValue));
  } else if (const auto* object = std::get_if<StoredObject>(&value)) {
    uMark = Joined(Joined(3, MarkOf(object->sProgId)), MarkOf(object->sState));
  }
  return uMark == kForgotten ? 1 : uMark;
}

}  // namespace

SaveSnapshot::SaveSnapshot(const DocumentBag& bag) {
  m_marks.reserve(bag.Count());
  for (const DocumentBag::Entry& entry : bag.Entries()) Take(entry.sName, entry.value);
}

void SaveSnapshot::WriteProperty(std::string_view sName, const Value& vtValue,
                                 const std::optional<Value>& vtDefault) {
  StoredValue value = ToStored(sName, vtValue);
  if (vtDefault && vtValue == *vtDefault) {
    Forget(sName);
  } else {
    Take(sName, std::move(value));
  }
}

Value SaveSnapshot::ReadProperty(std::string_view, const Value& vtDefault) const {
  return vtDefault;
}

void SaveSnapshot::Take(std::string_view sName, StoredValue value) {
  if (auto* sText = std::get_if<Text>(&value)) {
    Forget(sName);
    m_texts.insert_or_assign(Text(sName), std::move(*sText));
    return;
  }
  if (const auto text = m_texts.find(sName); text != m_texts.end()) m_texts.erase(text);
  m_marks.emplace_back(MarkOf(sName), MarkOfValue(value));
  m_bOrdered = false;
}

void SaveSnapshot::Forget(std::string_view sName) {
  if (const auto text = m_texts.find(sName); text != m_texts.end()) m_texts.erase(text);
  m_marks.emplace_back(MarkOf(sName), kForgotten);
  m_bOrdered = false;
}

const std::vector<SaveSnapshot::Mark>& SaveSnapshot::Marks() const {
  if (m_bOrdered) return m_marks;
  std::ranges::stable_sort(m_marks, {}, &Mark::first);
  // Of the marks of one name only the last is kept, unless it says that there is nothing.
  auto end = m_marks.begin();
  for (auto mark = m_marks.begin(); mark != m_marks.end(); ++mark) {
    const auto next = mark + 1;
    const bool bLast = next == m_marks.end() || next->first != mark->first;
    if (bLast && mark->second != kForgotten) *end++ = *mark;
  }
  m_marks.erase(end, m_marks.end());
  m_bOrdered = true;
  return m_marks;
}

}  // namespace orvane::console
