// What is kept of the window: for each user how it looks with a document (its place, the panes'
// shares, which bars are shown, the widths of lists), in the document how grids are laid out.
// User-interface thread.
#pragma once

#include <QByteArray>

#include "console/session/kept_layouts.h"

class QMainWindow;
class QSplitter;

namespace orvane::console {

class DocumentBag;
class ResultPane;
class ToolbarView;
class WindowMenus;

struct ViewParts {
  QMainWindow& window;
  QSplitter& splitter;
  ToolbarView& toolbar;
  ResultPane& results;
  WindowMenus& menus;
};

/// How the window looks.
void WriteView(const ViewParts& parts, DocumentBag& bag);

/// What the bag does not hold is as it is in a new window, but for the window's place: that is the
/// usual one, as QWidget::saveGeometry gave it, if there is one. True where it holds the panes'
/// shares.
bool ReadView(const ViewParts& parts, const DocumentBag& bag, const QByteArray& usualGeometry);

/// How grids are laid out, each in a part of the bag that the place of its item gives the name.
void WriteLayouts(const KeptLayouts::Layouts& layouts, DocumentBag& bag);
KeptLayouts::Layouts ReadLayouts(const DocumentBag& bag);

}  // namespace orvane::console
