// Asks which columns of a grid are to be seen: a list with check boxes, which can be narrowed down
// by a part of the names. Deletes itself when it is closed; user-interface thread.
#pragma once

#include <QDialog>
#include <vector>

class QDialogButtonBox;
class QStandardItemModel;

namespace orvane::controls {

struct ColumnChoice {
  int nColumn = 0;
  QString sName;
  bool bShown = true;
};

class ColumnsDialog final : public QDialog {
 public:
  ColumnsDialog(const std::vector<ColumnChoice>& choices, QWidget* parent);

  /// As they are checked now, in the order in which they were given.
  std::vector<ColumnChoice> Choices() const;

 private:
  void CheckAll();
  void OfferOk();

  std::vector<ColumnChoice> m_choices;
  QStandardItemModel* m_model;
  QDialogButtonBox* m_buttons;
};

}  // namespace orvane::controls
