#include "controls/order/sort_keys.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdlib>
#include <cstring>

namespace orvane::controls {

using platform::Value;

namespace {

constexpr std::uint64_t kSign = std::uint64_t{1} << 63;

/// Sorting was stopped. Thrown through what compares, as nothing else ends a sort.
struct SortStopped {};

/// A comparison that ends the sort when it is stopped.
template <class Less>
auto Until(const std::atomic<bool>& bStop, Less less) {
  return [&bStop, less](const auto& one, const auto& other) {
    if (bStop.load(std::memory_order_relaxed)) throw SortStopped();
    return less(one, other);
  };
}

/// Ranks of mixed keys.
enum Rank : std::uint8_t { kNumberRank, kDateRank, kTimeRank, kTextRank, kGuidRank, kBytesRank };

/// As unsigned numbers, both keys compare as what they were made from.
std::uint64_t KeyOf(std::int64_t ll) {
  return static_cast<std::uint64_t>(ll) ^ kSign;
}

std::uint64_t KeyOf(double d) {
  const auto bits = std::bit_cast<std::uint64_t>(d == 0 ? 0.0 : d);  // -0 equals 0
  return (bits & kSign) != 0 ? ~bits : bits | kSign;
}

double DoubleOf(std::uint64_t key) {
  return std::bit_cast<double>((key & kSign) != 0 ? key & ~kSign : ~key);
}

std::int64_t IntegerOf(std::uint64_t key) {
  return static_cast<std::int64_t>(key ^ kSign);
}

std::optional<std::int64_t> WholeNumber(const Value& vtValue) {
  if (const auto* ll = vtValue.As<std::int64_t>()) return *ll;
  if (const auto* l = vtValue.As<std::int32_t>()) return *l;
  if (const auto* b = vtValue.As<bool>()) return *b ? 1 : 0;
  if (const auto* t = vtValue.As<platform::Timestamp>()) return t->time_since_epoch().count();
  return std::nullopt;
}

/// The eight bytes behind the first ones as a number that compares as they do.
std::uint64_t PrefixOf(std::string_view sText, std::size_t skipped) {
  sText.remove_prefix(std::min(skipped, sText.size()));
  std::array<unsigned char, 8> bytes{};
  std::memcpy(bytes.data(), sText.data(), std::min(sText.size(), bytes.size()));
  std::uint64_t prefix = 0;
  for (const unsigned char c : bytes) prefix = prefix << 8 | c;
  return prefix;
}

std::size_t CommonPrefix(std::string_view sOne, std::string_view sOther) {
  const auto differ = std::ranges::mismatch(sOne, sOther);
  return static_cast<std::size_t>(differ.in1 - sOne.begin());
}

std::string_view ViewOf(std::span<const std::byte> bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

}  // namespace

int CompareDecimals(std::string_view sOne, std::string_view sOther) {
  const bool bNegative = sOne.starts_with('-');
  if (bNegative != sOther.starts_with('-')) return bNegative ? -1 : 1;
  if (bNegative) return CompareDecimals(sOther.substr(1), sOne.substr(1));
  const auto split = [](std::string_view sDigits) {
    const std::size_t point = std::min(sDigits.find('.'), sDigits.size());
    std::string_view sWhole = sDigits.substr(0, point);
    std::string_view sPart = sDigits.substr(std::min(point + 1, sDigits.size()));
    sWhole.remove_prefix(std::min(sWhole.find_first_not_of('0'), sWhole.size()));
    sPart = sPart.substr(0, sPart.find_last_not_of('0') + 1);
    return std::pair(sWhole, sPart);
  };
  const auto [sWholeOne, sPartOne] = split(sOne);
  const auto [sWholeOther, sPartOther] = split(sOther);
  if (sWholeOne.size() != sWholeOther.size()) {
    return sWholeOne.size() < sWholeOther.size() ? -1 : 1;
  }
  const int nWhole = sWholeOne.compare(sWholeOther);
  const int nOrder = nWhole != 0 ? nWhole : sPartOne.compare(sPartOther);
  return nOrder < 0 ? -1 : nOrder > 0 ? 1 : 0;
}

// ---- filling

bool SortKeys::Belongs(Family family) {
  if (m_family == family) return true;
  if (m_family != Family::None) {
    if (m_family != Family::Mixed) BecomeMixed();
    return false;
  }
  m_family = family;
  if (family == Family::Texts) {
    m_textKeys.reserve(m_expected);
  } else {
    m_wides.reserve(m_expected);
  }
  return true;
}

void SortKeys::AppendWide(std::uint64_t key) {
  m_wides.push_back({key, m_places});
}

void SortKeys::AppendText(std::string_view sText) {
  const std::size_t offset = m_texts.size();
  m_textKeys.push_back({0, offset, static_cast<std::uint32_t>(KeepText(sText)), m_places});
}

// What the text is put in order by; gives its bytes.
std::size_t SortKeys::KeepText(std::string_view sText) {
  const std::size_t offset = m_texts.size();
  if (m_order == platform::TextOrder::TrailingBlanks) {
    sText = sText.substr(0, sText.find_last_not_of(' ') + 1);
  }
  m_texts += sText;
  if (m_order == platform::TextOrder::NoCase) {
    std::transform(m_texts.begin() + static_cast<std::ptrdiff_t>(offset), m_texts.end(),
                   m_texts.begin() + static_cast<std::ptrdiff_t>(offset), [](char c) {
                     return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
                   });
  }
  return sText.size();
}

void SortKeys::Append(const Value& vtValue) {
  if (!HaveRoom()) return;
  const auto* d = vtValue.As<double>();
  if (vtValue.IsNull() || (d && std::isnan(*d))) {
    m_nulls.push_back(m_places);  // an engine that has no NaN keeps it as null
  } else if (d && Belongs(Family::Doubles)) {
    AppendWide(KeyOf(*d));
  } else if (const auto* text = vtValue.As<platform::Text>(); text && Belongs(Family::Texts)) {
    AppendText(*text);
  } else if (const auto whole = WholeNumber(vtValue); whole && Belongs(Family::Numbers)) {
    AppendWide(KeyOf(*whole));
  } else if (const auto* day = vtValue.As<platform::Date>(); day && Belongs(Family::Dates)) {
    AppendWide(KeyOf(std::int64_t{day->time_since_epoch().count()}));
  } else if (const auto* time = vtValue.As<platform::TimeOfDay>(); time && Belongs(Family::Times)) {
    AppendWide(KeyOf(std::int64_t{time->count()}));
  } else {
    if (m_family != Family::Mixed) BecomeMixed();
    AppendMixed(vtValue);
  }
  ++m_places;
}

void SortKeys::BecomeMixed() {
  m_mixed.reserve(m_expected);
  for (const WideKey& key : m_wides) {
    MixedKey mixed{0, 0, 0, key.place, kNumberRank};
    if (m_family == Family::Doubles) {
      mixed.number = DoubleOf(key.key);
    } else {
      mixed.number = static_cast<long double>(IntegerOf(key.key));
    }
    if (m_family == Family::Dates) mixed.rank = kDateRank;
    if (m_family == Family::Times) mixed.rank = kTimeRank;
    m_mixed.push_back(mixed);
  }
  for (const TextKey& key : m_textKeys) {
    m_mixed.push_back({0, key.offset, key.length, key.place, kTextRank});
  }
  m_wides = {};
  m_textKeys = {};
  m_family = Family::Mixed;
}

void SortKeys::AppendMixed(const Value& vtValue) {
  MixedKey key{0, m_texts.size(), 0, m_places, kNumberRank};
  const auto keep = [&](std::string_view sText, Rank rank) {
    key.rank = rank;
    key.length = static_cast<std::uint32_t>(sText.size());
    m_texts += sText;
  };
  if (const auto whole = WholeNumber(vtValue)) {
    key.number = static_cast<long double>(*whole);
  } else if (const auto* d = vtValue.As<double>()) {
    key.number = *d;
  } else if (const auto* decimal = vtValue.As<platform::Decimal>()) {
    key.number = std::strtold(decimal->sDigits.c_str(), nullptr);
    keep(decimal->sDigits, kNumberRank);
  } else if (const auto* day = vtValue.As<platform::Date>()) {
    key.number = day->time_since_epoch().count();
    key.rank = kDateRank;
  } else if (const auto* time = vtValue.As<platform::TimeOfDay>()) {
    key.number = static_cast<long double>(time->count());
    key.rank = kTimeRank;
  } else if (const auto* text = vtValue.As<platform::Text>()) {
    key.rank = kTextRank;
    key.length = static_cast<std::uint32_t>(KeepText(*text));
  } else if (const auto* guid = vtValue.As<platform::Guid>()) {
    keep(ViewOf(std::as_bytes(std::span(guid->bytes))), kGuidRank);
  } else if (const auto* bytes = vtValue.As<platform::Bytes>()) {
    keep(ViewOf(*bytes), kBytesRank);
  }
  m_mixed.push_back(key);
}

// ---- sorting

void SortKeys::Sort(std::vector<RowOrder::Number>& rows, bool bAscending,
                    const std::atomic<bool>& bStop) {
  try {
    SortWide(bAscending, bStop);
    SortTexts(bAscending, bStop);
    SortMixed(bAscending, bStop);
  } catch (const SortStopped&) {
    return;
  }
  if (bStop) return;
  std::vector<RowOrder::Number> sorted;
  sorted.reserve(rows.size());
  const auto takeNulls = [&] {
    for (const std::uint32_t place : m_nulls) sorted.push_back(rows[place]);
  };
  if (bAscending) takeNulls();
  for (const WideKey& key : m_wides) sorted.push_back(rows[key.place]);
  for (const TextKey& key : m_textKeys) sorted.push_back(rows[key.place]);
  for (const MixedKey& key : m_mixed) sorted.push_back(rows[key.place]);
  if (!bAscending) takeNulls();
  rows = std::move(sorted);
}

void SortKeys::SortWide(bool bAscending, const std::atomic<bool>& bStop) {
  if (m_wides.empty()) return;
  if (!bAscending) {
    for (WideKey& key : m_wides) key.key = ~key.key;
  }
  // Byte by byte from the last one, each pass stable; bytes that are all the same need none.
  constexpr std::size_t kValues = 256;
  std::array<std::array<std::size_t, kValues>, 8> counts{};
  for (const WideKey& key : m_wides) {
    for (std::size_t n = 0; n < counts.size(); ++n) ++counts[n][key.key >> (8 * n) & 0xFF];
  }
  std::vector<WideKey> other(m_wides.size());
  for (std::size_t n = 0; n < counts.size() && !bStop; ++n) {
    if (std::ranges::find(counts[n], m_wides.size()) != counts[n].end()) continue;
    std::array<std::size_t, kValues> begins{};
    for (std::size_t value = 1; value < kValues; ++value) {
      begins[value] = begins[value - 1] + counts[n][value - 1];
    }
    constexpr std::size_t kBetweenLooks = 1 << 16;
    for (std::size_t from = 0; from < m_wides.size() && !bStop; from += kBetweenLooks) {
      const std::size_t to = std::min(from + kBetweenLooks, m_wides.size());
      for (std::size_t i = from; i < to; ++i) {
        other[begins[m_wides[i].key >> (8 * n) & 0xFF]++] = m_wides[i];
      }
    }
    m_wides.swap(other);
  }
}

void SortKeys::SortTexts(bool bAscending, const std::atomic<bool>& bStop) {
  if (m_textKeys.empty()) return;
  // What all texts begin with says nothing about their order.
  const std::string_view sFirst = TextAt(m_textKeys.front().offset, m_textKeys.front().length);
  std::size_t skipped = sFirst.size();
  for (const TextKey& key : m_textKeys) {
    skipped =
        std::min(skipped, CommonPrefix(sFirst.substr(0, skipped), TextAt(key.offset, key.length)));
  }
  for (TextKey& key : m_textKeys) key.prefix = PrefixOf(TextAt(key.offset, key.length), skipped);
  const auto less = [this, skipped](const TextKey& one, const TextKey& other) {
    if (one.prefix != other.prefix) return one.prefix < other.prefix;
    return TextAt(one.offset, one.length).substr(skipped) <
           TextAt(other.offset, other.length).substr(skipped);
  };
  if (bStop) return;
  if (bAscending) {
    std::ranges::stable_sort(m_textKeys, Until(bStop, less));
  } else {
    std::ranges::stable_sort(m_textKeys, Until(bStop, [less](const auto& one, const auto& other) {
                               return less(other, one);
                             }));
  }
}

int SortKeys::Compare(const MixedKey& one, const MixedKey& other) const {
  if (one.rank != other.rank) return one.rank < other.rank ? -1 : 1;
  if (one.number != other.number) return one.number < other.number ? -1 : 1;
  const std::string_view sOne = TextAt(one.offset, one.length);
  const std::string_view sOther = TextAt(other.offset, other.length);
  if (one.rank != kNumberRank) return sOne.compare(sOther);
  // Decimals may differ where no floating-point number does.
  return sOne.empty() || sOther.empty() ? 0 : CompareDecimals(sOne, sOther);
}

void SortKeys::SortMixed(bool bAscending, const std::atomic<bool>& bStop) {
  if (m_mixed.empty() || bStop) return;
  const auto less = [this, bAscending](const MixedKey& one, const MixedKey& other) {
    return bAscending ? Compare(one, other) < 0 : Compare(other, one) < 0;
  };
  std::ranges::stable_sort(m_mixed, Until(bStop, less));
}

}  // namespace orvane::controls
