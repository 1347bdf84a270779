// Widgets one after the other, in as many lines as the width needs: nothing goes out of sight in a
// narrow window. Used by the bar of times; user-interface thread.
#pragma once

#include <QLayout>
#include <memory>
#include <vector>

namespace orvane::controls {

class FlowLayout final : public QLayout {
 public:
  explicit FlowLayout(QWidget* parent) : QLayout(parent) {}
  ~FlowLayout() override;
  FlowLayout(const FlowLayout&) = delete;
  FlowLayout& operator=(const FlowLayout&) = delete;

  void addItem(QLayoutItem* item) override { m_items.emplace_back(item); }
  int count() const override { return static_cast<int>(m_items.size()); }
  QLayoutItem* itemAt(int n) const override;
  QLayoutItem* takeAt(int n) override;
  bool hasHeightForWidth() const override { return true; }
  int heightForWidth(int nWidth) const override { return Lay({0, 0, nWidth, 0}, false); }
  Qt::Orientations expandingDirections() const override { return {}; }
  void setGeometry(const QRect& rect) override;
  /// All in one line.
  QSize sizeHint() const override;
  /// As wide as the widest.
  QSize minimumSize() const override;

 private:
  /// Gives the height of the lines, which are laid out with bMove.
  int Lay(const QRect& rect, bool bMove) const;

  std::vector<std::unique_ptr<QLayoutItem>> m_items;
};

}  // namespace orvane::controls
