#include "controls/order/column_layout.h"

#include <QByteArray>
#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <nlohmann/json.hpp>
#include <numeric>
#include <utility>

#include "platform/json_text.h"
#include "platform/utf8.h"

namespace orvane::controls {

using nlohmann::json;
using platform::Text;

namespace {

constexpr int kLayoutVersion = 1;

bool IsChanged(const LaidOutColumn& column) {
  return column.nWidth > 0 || column.bHidden || column.nPlace >= 0;
}

int WholeWithin(const json& object, const char* sMember, int nLeast, int nMost, int nElse) {
  const auto found = object.find(sMember);
  if (found == object.end() || !found->is_number()) return nElse;
  const auto number = found->get<double>();
  if (!std::isfinite(number) || number < 0) return nElse;
  return static_cast<int>(std::clamp<double>(number, nLeast, nMost));
}

/// A name that is no UTF-8, out of an old database, is kept as its bytes.
Text NameOf(const json& column) {
  if (const auto name = column.find("name"); name != column.end() && name->is_string()) {
    return name->get<Text>();
  }
  const auto bytes = column.find("bytes");
  if (bytes == column.end() || !bytes->is_string()) return {};
  return QByteArray::fromBase64(QByteArray::fromStdString(bytes->get_ref<const Text&>()))
      .toStdString();
}

void AppendColumn(Text& sTo, const LaidOutColumn& column) {
  if (platform::IsUtf8(column.sName)) {
    sTo += "{\"name\":";
    platform::AppendJsonString(sTo, column.sName);
  } else {
    sTo += "{\"bytes\":\"" + QByteArray::fromStdString(column.sName).toBase64().toStdString() + '"';
  }
  if (column.nWidth > 0) sTo += ",\"width\":" + std::to_string(column.nWidth);
  if (column.bHidden) sTo += ",\"hidden\":true";
  if (column.nPlace >= 0) sTo += ",\"place\":" + std::to_string(column.nPlace);
  sTo += '}';
}

/// For each name the number of the layout's column that it is, or -1.
std::vector<int> Matched(const ColumnLayout& layout, const std::vector<Text>& names) {
  std::map<Text, std::vector<int>> known;
  for (std::size_t n = layout.columns.size(); n > 0; --n) {
    known[layout.columns[n - 1].sName].push_back(static_cast<int>(n - 1));
  }
  std::vector<int> matched;
  for (const Text& sName : names) {
    const auto found = known.find(sName);
    const bool bKnown = found != known.end() && !found->second.empty();
    matched.push_back(bKnown ? found->second.back() : -1);
    if (bKnown) found->second.pop_back();
  }
  return matched;
}

}  // namespace

bool ColumnLayout::IsNone() const {
  return nFrozen == 0 && std::ranges::none_of(columns, IsChanged);
}

FittedLayout LayoutFor(const ColumnLayout& layout, const std::vector<Text>& names) {
  FittedLayout fitted;
  int nLast = -1;
  bool bSameOrder = true;
  const std::vector<int> matched = Matched(layout, names);
  for (std::size_t n = 0; n < names.size(); ++n) {
    LaidOutColumn column;
    if (matched[n] >= 0) column = layout.columns[static_cast<std::size_t>(matched[n])];
    column.sName = names[n];
    if (column.nPlace >= 0) {
      bSameOrder = bSameOrder && matched[n] > nLast;
      nLast = matched[n];
    }
    fitted.columns.push_back(std::move(column));
  }
  const bool bAllHidden = std::ranges::all_of(fitted.columns, &LaidOutColumn::bHidden);
  for (LaidOutColumn& column : fitted.columns) {
    if (bAllHidden) column.bHidden = false;
    if (!bSameOrder) column.nPlace = -1;
  }
  fitted.order.resize(names.size());
  std::iota(fitted.order.begin(), fitted.order.end(), 0);
  std::ranges::stable_sort(fitted.order, {}, [&](int n) {
    const int nPlace = fitted.columns[static_cast<std::size_t>(n)].nPlace;
    return nPlace >= 0 ? nPlace : std::numeric_limits<int>::max();
  });
  return fitted;
}

ColumnLayout WithColumns(const ColumnLayout& before, std::vector<LaidOutColumn> columns) {
  std::vector<Text> names;
  for (const LaidOutColumn& column : columns) names.push_back(column.sName);
  std::vector<bool> here(before.columns.size());
  for (const int n : Matched(before, names)) {
    if (n >= 0) here[static_cast<std::size_t>(n)] = true;
  }
  ColumnLayout layout{std::move(columns), before.nFrozen};
  for (std::size_t n = 0; n < before.columns.size(); ++n) {
    if (here[n] || layout.columns.size() >= ColumnLayout::kMostColumns) continue;
    LaidOutColumn away = before.columns[n];
    // Places are among the columns that are here; it comes back at their end.
    away.nPlace = -1;
    if (IsChanged(away)) layout.columns.push_back(std::move(away));
  }
  return layout;
}

Text WrittenLayout(const ColumnLayout& layout) {
  if (layout.IsNone()) return {};
  Text sLayout = "{\"version\":" + std::to_string(kLayoutVersion);
  sLayout += ",\"frozen\":" + std::to_string(layout.nFrozen) + ",\"columns\":[";
  for (std::size_t n = 0; n < layout.columns.size(); ++n) {
    if (n > 0) sLayout += ',';
    AppendColumn(sLayout, layout.columns[n]);
  }
  return sLayout + "]}";
}

ColumnLayout ReadLayout(const Text& sLayout) {
  const json state = json::parse(sLayout, nullptr, false);
  if (!state.is_object()) return {};
  if (WholeWithin(state, "version", 0, kLayoutVersion + 1, 0) != kLayoutVersion) return {};
  const auto columns = state.find("columns");
  if (columns == state.end() || !columns->is_array()) return {};
  ColumnLayout layout;
  layout.nFrozen = WholeWithin(state, "frozen", 0, ColumnLayout::kMostFrozen, 0);
  for (const json& column : *columns) {
    if (layout.columns.size() >= ColumnLayout::kMostColumns) break;
    if (!column.is_object()) continue;
    LaidOutColumn& read = layout.columns.emplace_back();
    read.sName = NameOf(column);
    const int nWidth = WholeWithin(column, "width", 0, ColumnLayout::kMostWidth, 0);
    read.nWidth = nWidth > 0 ? std::max(nWidth, ColumnLayout::kLeastWidth) : 0;
    const auto hidden = column.find("hidden");
    read.bHidden = hidden != column.end() && hidden->is_boolean() && hidden->get<bool>();
    read.nPlace = WholeWithin(column, "place", 0, std::numeric_limits<int>::max() - 1, -1);
  }
  return layout;
}

}  // namespace orvane::controls
