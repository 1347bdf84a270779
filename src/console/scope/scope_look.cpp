#include "console/scope/scope_look.h"

#include <QColor>
#include <QCoreApplication>
#include <QFont>
#include <QGuiApplication>
#include <QIcon>
#include <QPalette>

#include "console/look/contrast.h"
#include "console/look/image_list.h"
#include "console/session/scope_tree_item.h"
#include "widgets/tool_tip.h"

namespace orvane::console {

namespace {

struct Texts {
  Q_DECLARE_TR_FUNCTIONS(ScopeLook)
};

QVariant TipOf(const ScopeTreeItem& item) {
  if (item.State() != NodeState::Failed) {
    if (item.Server() == ServerState::None) return {};
    return item.Server() == ServerState::Connected ? Texts::tr("Connected")
                                                   : Texts::tr("Not connected");
  }
  return widgets::ToolTipOf(Texts::tr("%1 could not be opened. Double-click it to try again.")
                                .arg(QString::fromStdString(item.Name())));
}

QVariant FontOf(const ScopeTreeItem& item) {
  if (item.State() != NodeState::Loading) return {};
  QFont font;
  font.setItalic(true);
  return font;
}

/// Red that can be read on the tree's ground.
QColor FailedColor() {
  const QColor onLight(0xB3, 0x26, 0x1E);
  const QColor onDark(0xF2, 0x9B, 0x94);
  const QColor ground = QGuiApplication::palette().color(QPalette::Base);
  return Contrast(onLight, ground) >= Contrast(onDark, ground) ? onLight : onDark;
}

QVariant ColorOf(const ScopeTreeItem& item) {
  if (item.State() == NodeState::Loading) {
    return QGuiApplication::palette().brush(QPalette::Disabled, QPalette::Text);
  }
  if (item.State() == NodeState::Failed) return FailedColor();
  return {};
}

}  // namespace

QVariant ScopeLook::OfItem(const ScopeTreeItem& item, int iRole) const {
  switch (iRole) {
    case Qt::DecorationRole:
      return PictureOf(item);
    case Qt::ToolTipRole:
      return TipOf(item);
    case Qt::FontRole:
      return FontOf(item);
    case Qt::ForegroundRole:
      return ColorOf(item);
    default:
      return {};
  }
}

QIcon ScopeLook::PictureOf(const ScopeTreeItem& item) const {
  if (item.State() == NodeState::Failed) return m_images.FailedFolder(item.Image());
  if (item.Server() == ServerState::Connected) return m_images.ConnectedFolder(item.Image());
  return m_images.Folder(item.Image());
}

QVariant ScopeLook::Picture(platform::Long lImage) const {
  return m_images.Folder(lImage);
}

QVariant ScopeLook::ToolTip(const QString& sText) const {
  return widgets::ToolTipOf(sText);
}

}  // namespace orvane::console
