#include "controls/view/selection_bands.h"

#include <algorithm>
#include <optional>

namespace orvane::controls {

namespace {

using Span = std::pair<int, int>;

/// Without overlap, in order.
std::vector<Span> Merged(std::vector<Span> spans) {
  std::ranges::sort(spans);
  std::vector<Span> merged;
  for (const Span& span : spans) {
    if (!merged.empty() && span.first <= merged.back().second + 1) {
      merged.back().second = std::max(merged.back().second, span.second);
    } else {
      merged.push_back(span);
    }
  }
  return merged;
}

/// A piece of a selection that begins at a row, or has ended before it.
struct Edge {
  int nRow;
  int nChange;  ///< 1 or -1
  const QItemSelectionRange* range;
};

std::vector<Edge> EdgesOf(const QItemSelection& selection) {
  std::vector<Edge> edges;
  for (const QItemSelectionRange& range : selection) {
    edges.push_back({range.top(), 1, &range});
    edges.push_back({range.bottom() + 1, -1, &range});
  }
  std::ranges::sort(edges, {}, &Edge::nRow);
  return edges;
}

}  // namespace

std::vector<int> SelectedColumns(const QItemSelection& selection) {
  std::vector<Span> spans;
  for (const QItemSelectionRange& range : selection) {
    const Span span(range.left(), range.right());
    // The pieces of one selection mostly have the same columns.
    if (spans.empty() || spans.back() != span) spans.push_back(span);
  }
  std::vector<int> columns;
  for (const auto& [nLeft, nRight] : Merged(std::move(spans))) {
    for (int n = nLeft; n <= nRight; ++n) columns.push_back(n);
  }
  return columns;
}

std::vector<Span> RowSpans(const QItemSelection& selection) {
  std::vector<Span> spans;
  for (const QItemSelectionRange& range : selection) {
    spans.emplace_back(range.top(), range.bottom());
  }
  return Merged(std::move(spans));
}

platform::RowIndex SelectedRows(const QItemSelection& selection) {
  platform::RowIndex rows = 0;
  for (const auto& [nFirst, nLast] : RowSpans(selection)) rows += nLast - nFirst + 1;
  return rows;
}

std::vector<RowBand> BandsOf(const QItemSelection& selection, const std::vector<int>& columns) {
  // Where each column stands among those that are asked for, in the order of the columns.
  std::vector<std::pair<int, std::size_t>> standing;
  for (std::size_t n = 0; n < columns.size(); ++n) standing.emplace_back(columns[n], n);
  std::ranges::sort(standing);
  std::vector<int> pieces(columns.size());  // that have the column, in the row that is looked at
  std::size_t nSelected = 0;                // columns that one has
  const auto enter = [&](const Edge& edge) {
    auto at = std::ranges::lower_bound(standing, edge.range->left(), {},
                                       &std::pair<int, std::size_t>::first);
    for (; at != standing.end() && at->first <= edge.range->right(); ++at) {
      int& nPieces = pieces[at->second];
      if (nPieces == 0) ++nSelected;
      nPieces += edge.nChange;
      if (nPieces == 0) --nSelected;
    }
  };
  std::vector<RowBand> bands;
  const std::vector<Edge> edges = EdgesOf(selection);
  for (std::size_t n = 0; n < edges.size();) {
    const int nRow = edges[n].nRow;
    for (; n < edges.size() && edges[n].nRow == nRow; ++n) enter(edges[n]);
    if (nSelected == 0) continue;
    std::vector<bool> selected(columns.size());
    for (std::size_t column = 0; column < pieces.size(); ++column) {
      selected[column] = pieces[column] > 0;
    }
    // The last edge ends a piece, so that there is another one here.
    RowBand band{nRow, edges[n].nRow - 1, nullptr};
    const bool bAsBefore = !bands.empty() && *bands.back().selected == selected;
    band.selected = bAsBefore ? bands.back().selected
                              : std::make_shared<const std::vector<bool>>(std::move(selected));
    bands.push_back(std::move(band));
  }
  return bands;
}

}  // namespace orvane::controls
