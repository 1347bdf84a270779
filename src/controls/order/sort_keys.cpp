#include "controls/order/sort_keys.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <string>

#include "controls/order/value_keys.h"
#include "platform/conversions.h"

namespace orvane::controls {

using platform::Value;

namespace {

constexpr std::uint64_t kSign = std::uint64_t{1} << 63;
constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();

/// Sorting was stopped. Thrown through what compares, as nothing else ends a sort.
struct SortStopped {};

void EndWhen(const std::atomic<bool>& bStop) {
  if (bStop.load(std::memory_order_relaxed)) throw SortStopped();
}

/// Sorts by what `compare` gives, equal keys as they stand, until it is stopped. As
/// std::stable_sort does, but the room for merging lies where the keys lie.
template <class Key, class Compare>
void SortStably(std::pmr::vector<Key>& keys, bool bAscending, const std::atomic<bool>& bStop,
                Compare compare) {
  const auto less = [&](const Key& one, const Key& other) {
    EndWhen(bStop);
    return bAscending ? compare(one, other) < 0 : compare(other, one) < 0;
  };
  constexpr std::size_t kRun = 1024;
  const std::size_t count = keys.size();
  const auto at = [count](auto& of, std::size_t place) {
    return of.begin() + static_cast<std::ptrdiff_t>(std::min(place, count));
  };
  for (std::size_t from = 0; from < count; from += kRun) {
    std::stable_sort(at(keys, from), at(keys, from + kRun), less);
  }
  if (count <= kRun) return;
  std::pmr::vector<Key> merged(count, keys.get_allocator());
  for (std::size_t run = kRun; run < count; run *= 2) {
    for (std::size_t from = 0; from < count; from += 2 * run) {
      const auto middle = at(keys, from + run);
      std::merge(at(keys, from), middle, middle, at(keys, from + 2 * run), at(merged, from), less);
    }
    keys.swap(merged);
  }
}

/// Ranks of mixed keys.
enum Rank : std::uint8_t {
  kBeforeRank,
  kNumberRank,
  kNoNumberRank,
  kDateRank,
  kTimeRank,
  kTextRank,
  kBytesRank
};

/// As unsigned numbers, both keys compare as what they were made from.
std::uint64_t KeyOf(std::int64_t ll) {
  return static_cast<std::uint64_t>(ll) ^ kSign;
}

std::uint64_t KeyOf(double d) {
  if (std::isnan(d)) return ~std::uint64_t{0};  // one of many forms, which are all the same
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
  if (const auto* t = vtValue.As<platform::WallTime>()) return t->time_since_epoch().count();
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
  TextKey key{0, 0, 0, m_places};
  key.offset = KeepText(sText, key.length);
  m_textKeys.push_back(key);
}

std::uint64_t SortKeys::Keep(std::string_view sText) {
  constexpr std::size_t kLeastPiece = std::size_t{64} << 10;
  constexpr std::size_t kMostPiece = std::size_t{64} << 20;
  if (m_texts.empty() || m_texts.back().capacity() - m_texts.back().size() < sText.size()) {
    const std::size_t usual = std::clamp(m_textBytes, kLeastPiece, kMostPiece);
    std::pmr::vector<char> piece(m_nulls.get_allocator().resource());
    piece.reserve(std::max(usual, sText.size()));
    m_texts.push_back(std::move(piece));
  }
  std::pmr::vector<char>& piece = m_texts.back();
  const std::uint64_t place = piece.size();
  piece.insert(piece.end(), sText.begin(), sText.end());
  m_textBytes += sText.size();
  return static_cast<std::uint64_t>(m_texts.size() - 1) << kPieceShift | place;
}

// What the text is put in order by.
std::uint64_t SortKeys::KeepText(std::string_view sText, std::uint32_t& length) {
  std::string sBeyond;
  if (m_order.texts == platform::TextOrder::BeyondValues) {
    sBeyond = BeyondKey(sText);
    sText = sBeyond;
  }
  if (m_order.texts == platform::TextOrder::TrailingBlanks) {
    sText = sText.substr(0, sText.find_last_not_of(' ') + 1);
  }
  length = static_cast<std::uint32_t>(sText.size());
  const std::uint64_t offset = Keep(sText);
  if (m_order.texts == platform::TextOrder::NoCase) {
    std::pmr::vector<char>& piece = m_texts.back();
    const auto from = piece.end() - static_cast<std::ptrdiff_t>(sText.size());
    std::transform(from, piece.end(), from, [](char ch) {
      return ch >= 'A' && ch <= 'Z' ? static_cast<char>(ch - 'A' + 'a') : ch;
    });
  }
  return offset;
}

void SortKeys::Append(const Value& vtValue) {
  const auto* d = vtValue.As<double>();
  if (vtValue.IsNull() || (d && std::isnan(*d) && !m_order.bNullIsLast)) {
    m_nulls.push_back(m_places);  // an engine that has no NaN keeps it as null
  } else if (d && Belongs(Family::Doubles)) {
    AppendWide(KeyOf(*d));
  } else if (const auto* text = vtValue.As<platform::Text>();
             text && m_order.texts != platform::TextOrder::BeyondValues && Belongs(Family::Texts)) {
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
    if (m_family == Family::Doubles && key.key == KeyOf(kNoNumber)) {
      mixed.rank = kNoNumberRank;
    } else if (m_family == Family::Doubles) {
      mixed.number = DoubleOf(key.key);
    } else {
      mixed.number = static_cast<long double>(IntegerOf(key.key));
    }
    if (m_family == Family::Dates) {
      AsDay(mixed, Value(platform::Date(std::chrono::days(IntegerOf(key.key)))), kDateRank);
    } else if (m_family == Family::Times) {
      AsDay(mixed, Value(platform::TimeOfDay(IntegerOf(key.key))), kTimeRank);
    }
    m_mixed.push_back(mixed);
  }
  for (const TextKey& key : m_textKeys) {
    m_mixed.push_back({0, key.offset, key.length, key.place, kTextRank});
  }
  // What they took is given back, which clear() would not.
  std::pmr::vector<WideKey>(m_wides.get_allocator()).swap(m_wides);
  std::pmr::vector<TextKey>(m_textKeys.get_allocator()).swap(m_textKeys);
  m_family = Family::Mixed;
}

// A source without types for them has them among its texts, and in the order of these.
void SortKeys::AsDay(MixedKey& key, const Value& vtValue, std::uint8_t rank) {
  key.rank = rank;
  if (m_order.texts == platform::TextOrder::BeyondValues) return;
  key.rank = kTextRank;
  key.number = 0;
  key.offset = KeepText(platform::ToText(vtValue), key.length);
}

void SortKeys::AppendMixed(const Value& vtValue) {
  MixedKey key{0, 0, 0, m_places, kNumberRank};
  const auto keep = [&](std::string_view sText, Rank rank) {
    key.rank = rank;
    key.length = static_cast<std::uint32_t>(sText.size());
    key.offset = Keep(sText);
  };
  if (const auto whole = WholeNumber(vtValue)) {
    key.number = static_cast<long double>(*whole);
  } else if (const auto* d = vtValue.As<double>()) {
    key.rank = std::isnan(*d) ? kNoNumberRank : kNumberRank;
    key.number = std::isnan(*d) ? 0 : *d;
  } else if (const auto* decimal = vtValue.As<platform::Decimal>()) {
    key.number = std::strtold(decimal->sDigits.c_str(), nullptr);
    keep(decimal->sDigits, kNumberRank);
  } else if (const auto* day = vtValue.As<platform::Date>()) {
    key.number = day->time_since_epoch().count();
    AsDay(key, vtValue, kDateRank);
  } else if (const auto* time = vtValue.As<platform::TimeOfDay>()) {
    key.number = static_cast<long double>(time->count());
    AsDay(key, vtValue, kTimeRank);
  } else if (const auto* text = vtValue.As<platform::Text>()) {
    const bool bBeyond = m_order.texts == platform::TextOrder::BeyondValues;
    key.rank = bBeyond && IsBeforeValues(*text) ? kBeforeRank : kTextRank;
    key.offset = KeepText(*text, key.length);
  } else if (vtValue.As<platform::Guid>() != nullptr) {
    key.rank = kTextRank;
    key.offset = KeepText(platform::ToText(vtValue), key.length);
  } else if (const auto* bytes = vtValue.As<platform::Bytes>()) {
    keep(ViewOf(*bytes), kBytesRank);
  }
  m_mixed.push_back(key);
}

// ---- sorting

void SortKeys::Sort(RowOrder::Numbers& rows, bool bAscending, const std::atomic<bool>& bStop) {
  try {
    SortWide(bAscending, bStop);
    SortTexts(bAscending, bStop);
    SortMixed(bAscending, bStop);
    RowOrder::Numbers sorted(rows.get_allocator());
    sorted.reserve(rows.size());
    const auto take = [&](std::uint32_t place) {
      EndWhen(bStop);
      sorted.push_back(rows[place]);
    };
    const auto takeNulls = [&] {
      for (const std::uint32_t place : m_nulls) take(place);
    };
    const bool bNullFirst = bAscending != m_order.bNullIsLast;
    if (bNullFirst) takeNulls();
    for (const WideKey& key : m_wides) take(key.place);
    for (const TextKey& key : m_textKeys) take(key.place);
    for (const MixedKey& key : m_mixed) take(key.place);
    if (!bNullFirst) takeNulls();
    rows.swap(sorted);
  } catch (const SortStopped&) {
    // The rows stand as they stood.
  }
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
    EndWhen(bStop);
    for (std::size_t n = 0; n < counts.size(); ++n) ++counts[n][key.key >> (8 * n) & 0xFF];
  }
  std::pmr::vector<WideKey> other(m_wides.size(), m_wides.get_allocator());
  for (std::size_t n = 0; n < counts.size(); ++n) {
    if (std::ranges::find(counts[n], m_wides.size()) != counts[n].end()) continue;
    std::array<std::size_t, kValues> begins{};
    for (std::size_t value = 1; value < kValues; ++value) {
      begins[value] = begins[value - 1] + counts[n][value - 1];
    }
    constexpr std::size_t kBetweenLooks = 1 << 16;
    for (std::size_t from = 0; from < m_wides.size(); from += kBetweenLooks) {
      EndWhen(bStop);
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
    EndWhen(bStop);
    skipped =
        std::min(skipped, CommonPrefix(sFirst.substr(0, skipped), TextAt(key.offset, key.length)));
  }
  for (TextKey& key : m_textKeys) {
    EndWhen(bStop);
    key.prefix = PrefixOf(TextAt(key.offset, key.length), skipped);
  }
  SortStably(m_textKeys, bAscending, bStop, [this, skipped](const auto& one, const auto& other) {
    if (one.prefix != other.prefix) return one.prefix < other.prefix ? -1 : 1;
    return TextAt(one.offset, one.length)
        .substr(skipped)
        .compare(TextAt(other.offset, other.length).substr(skipped));
  });
}

int SortKeys::Compare(const MixedKey& one, const MixedKey& other) const {
  if (one.rank != other.rank) return one.rank < other.rank ? -1 : 1;
  if (one.number != other.number) return one.number < other.number ? -1 : 1;
  // A number without digits has no text, and there may be no piece for it.
  const auto textOf = [this](const MixedKey& key) {
    return key.length == 0 ? std::string_view() : TextAt(key.offset, key.length);
  };
  const std::string_view sOne = textOf(one);
  const std::string_view sOther = textOf(other);
  if (one.rank != kNumberRank) return sOne.compare(sOther);
  // Decimals may differ where no floating-point number does.
  return sOne.empty() || sOther.empty() ? 0 : CompareDecimals(sOne, sOther);
}

void SortKeys::SortMixed(bool bAscending, const std::atomic<bool>& bStop) {
  if (m_mixed.empty()) return;
  SortStably(m_mixed, bAscending, bStop,
             [this](const auto& one, const auto& other) { return Compare(one, other); });
}

}  // namespace orvane::controls
