// Filling a branch of the scope tree with ten thousand and with a hundred thousand items, against
// the toolkit's own item model given the same names. What an item costs must not grow with their
// number.
#include "console/session/scope_tree.h"

#include <QStandardItemModel>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <string>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

constexpr int kRuns = 5;

template <class Work>
double NanosecondsEach(int iItems, Work&& work) {
  const auto begin = Clock::now();
  work();
  return std::chrono::duration<double, std::nano>(Clock::now() - begin).count() / iItems;
}

double Median(std::vector<double> times) {
  std::sort(times.begin(), times.end());
  return times[times.size() / 2];
}

double FillTree(int iItems) {
  orvane::console::ScopeTree tree(nullptr);
  orvane::platform::SnapInDescription description;
  description.sStaticNodeType = "Servers";
  description.nodeTypes.push_back({"Servers", "{0}", "Servers", 0, {}});
  description.nodeTypes.push_back({"Server", "{1}", "Server", 0, {}});
  tree.Reset(description);
  const auto root = tree.StaticItem();
  return NanosecondsEach(iItems, [&] {
    tree.BeginExpansion(*root);
    for (int i = 0; i < iItems; ++i) {
      const auto sName = std::to_string(i);
      const auto item = tree.Add("Server", sName, root->ScopeNode(), false);
      item->DisplayName(sName);
      item->ListSubItems().Add(1, "Name", sName);
    }
    tree.EndExpansion(*root, false);
  });
}

double FillRaw(int iItems) {
  QStandardItemModel model;
  return NanosecondsEach(iItems, [&] {
    QList<QStandardItem*> items;
    items.reserve(iItems);
    for (int i = 0; i < iItems; ++i) items.append(new QStandardItem(QString::number(i)));
    model.invisibleRootItem()->appendRows(items);
  });
}

}  // namespace

int main() {
  for (const int iItems : {10'000, 100'000}) {
    std::vector<double> tree;
    std::vector<double> raw;
    for (int i = 0; i < kRuns; ++i) {
      tree.push_back(FillTree(iItems));
      raw.push_back(FillRaw(iItems));
    }
    std::printf("%7d items: %7.0f ns each, raw %7.0f ns: %.2f times the raw model\n", iItems,
                Median(tree), Median(raw), Median(tree) / Median(raw));
  }
}
