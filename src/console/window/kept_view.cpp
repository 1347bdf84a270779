#include "console/window/kept_view.h"

#include <QAction>
#include <QMainWindow>
#include <QSplitter>
#include <QStatusBar>
#include <algorithm>
#include <map>
#include <vector>

#include "console/document/document_bag.h"
#include "console/document/document_seal.h"
#include "console/results/result_pane.h"
#include "console/window/toolbar_view.h"
#include "console/window/window_menus.h"
#include "widgets/window_place.h"

namespace orvane::console {

using platform::Text;

namespace {

constexpr std::string_view kGrid = "Grid.";
constexpr std::string_view kItem = "Item";
constexpr std::string_view kLayout = "Layout";
constexpr std::size_t kMarkLength = 16;

/// "Grid.9f0c5a7712e4b3d8_", from the place: so a layout that comes or goes renames no other.
/// Places may hold any bytes, which names of properties may not.
Text GridPart(const Text& sPlace) {
  return Text(kGrid) + SealOf(sPlace).substr(0, kMarkLength) + "_";
}

}  // namespace

void WriteLayouts(const KeptLayouts::Layouts& layouts, DocumentBag& bag) {
  for (const auto& [sPlace, sLayout] : layouts) {
    const Text sPart = GridPart(sPlace);
    bag.WriteProperty(sPart + Text(kItem), sPlace);
    bag.WriteProperty(sPart + Text(kLayout), sLayout);
  }
}

KeptLayouts::Layouts ReadLayouts(const DocumentBag& bag) {
  KeptLayouts::Layouts layouts;
  for (const auto& entry : bag.Entries()) {
    const auto* sPlace = std::get_if<Text>(&entry.value);
    const std::string_view sName = entry.sName;
    if (!sPlace || sPlace->empty() || !sName.starts_with(kGrid)) continue;
    // Earlier documents have them numbered: "Grid.Item1" and "Grid.Layout1".
    const std::size_t nItem = sName.find(kItem, kGrid.size());
    if (nItem == std::string_view::npos) continue;
    Text sLayoutName = entry.sName;
    const auto vtLayout =
        bag.ReadProperty(sLayoutName.replace(nItem, kItem.size(), kLayout), Text());
    const auto* sLayout = vtLayout.As<Text>();
    if (sLayout && !sLayout->empty()) layouts.emplace(*sPlace, *sLayout);
  }
  return layouts;
}

void WriteView(const ViewParts& parts, DocumentBag& bag) {
  bag.WriteProperty("Window.Geometry", parts.window.saveGeometry().toBase64().toStdString());
  bag.WriteProperty("Splitter.State", parts.splitter.saveState().toBase64().toStdString());
  bag.WriteProperty("Toolbar.Shown", parts.toolbar.Wanted());
  bag.WriteProperty("Toolbar.LargeIcons", parts.toolbar.Images() == ButtonImages::Large);
  bag.WriteProperty("StatusBar.Shown", parts.menus.actStatusBar->isChecked());
  bag.WriteProperty("List.Icons", parts.results.List().Style() == ListStyle::Icons);
  for (const auto& [sView, widths] : parts.results.ColumnWidths()) {
    QStringList texts;
    for (const int iWidth : widths) texts.append(QString::number(iWidth));
    bag.WriteProperty("List.Columns." + sView, texts.join(',').toStdString());
  }
}

bool ReadView(const ViewParts& parts, const DocumentBag& bag, const QByteArray& usualGeometry) {
  const auto bytes = [&](const char* sName) {
    const auto vtValue = bag.ReadProperty(sName, Text());
    const auto* sText = vtValue.As<Text>();
    return sText ? QByteArray::fromBase64(QByteArray::fromStdString(*sText)) : QByteArray();
  };
  const auto flag = [&](const char* sName, bool bDefault) {
    const auto vtValue = bag.ReadProperty(sName, bDefault);
    const auto* bValue = vtValue.As<bool>();
    return bValue ? *bValue : bDefault;
  };
  if (const auto geometry = bytes("Window.Geometry"); !geometry.isEmpty()) {
    parts.window.restoreGeometry(geometry);
  } else {
    parts.window.restoreGeometry(usualGeometry);
  }
  // It may have been another screen.
  widgets::KeepOnScreen(parts.window);
  const auto state = bytes("Splitter.State");
  if (!state.isEmpty()) {
    const int iHandle = parts.splitter.handleWidth();
    parts.splitter.restoreState(state);
    // Of all that such a state can say, only the shares are of this window.
    parts.splitter.setOrientation(Qt::Horizontal);
    parts.splitter.setHandleWidth(iHandle);
    parts.splitter.setChildrenCollapsible(false);
  }
  parts.menus.actToolbar->setChecked(flag("Toolbar.Shown", true));
  parts.toolbar.Wanted(parts.menus.actToolbar->isChecked());
  const bool bLarge = flag("Toolbar.LargeIcons", false);
  (bLarge ? parts.menus.actLargeImages : parts.menus.actSmallImages)->setChecked(true);
  parts.toolbar.Images(bLarge ? ButtonImages::Large : ButtonImages::Small);
  parts.menus.actStatusBar->setChecked(flag("StatusBar.Shown", true));
  parts.window.statusBar()->setVisible(parts.menus.actStatusBar->isChecked());
  parts.results.StatusBar(parts.menus.actStatusBar->isChecked() ? parts.window.statusBar()
                                                                : nullptr);
  const bool bIcons = flag("List.Icons", false);
  (bIcons ? parts.menus.actIcons : parts.menus.actDetails)->setChecked(true);
  parts.results.List().Style(bIcons ? ListStyle::Icons : ListStyle::Details);
  std::map<Text, std::vector<int>> columns;
  constexpr std::string_view kColumns = "List.Columns.";
  for (const auto& entry : bag.Entries()) {
    const auto* sWidths = std::get_if<Text>(&entry.value);
    if (!sWidths || !entry.sName.starts_with(kColumns)) continue;
    auto& widths = columns[entry.sName.substr(kColumns.size())];
    for (const auto& sWidth : QString::fromStdString(*sWidths).split(',')) {
      widths.push_back(std::clamp(sWidth.toInt(), 24, 4000));
    }
  }
  parts.results.ColumnWidths(std::move(columns));
  return !state.isEmpty();
}

}  // namespace orvane::console
