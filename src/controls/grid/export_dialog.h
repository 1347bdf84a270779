// Asks which rows of a grid are to be exported, and in which form. It writes nothing.
// Shown by a grid's export; user-interface thread.
#pragma once

#include <QDialog>
#include <cstdint>

#include "exports/row_writer.h"

class QCheckBox;
class QComboBox;
class QRadioButton;

namespace orvane::controls {

enum class ExportRows : std::uint8_t {
  Shown,     ///< as they are here, in their order
  Selected,  ///< of these those with a selected cell, and of them the selected columns
  All,       ///< fetched anew, without the row limit
};

/// What there is to be exported.
struct ExportOffer {
  platform::RowIndex shown = 0;
  platform::RowIndex selected = 0;  ///< more than one cell must be selected to count
  bool bAll = false;                ///< the server can be asked
};

struct ExportChoice {
  ExportRows rows = ExportRows::Shown;
  exports::WriterOptions writer;  ///< zone and table are the caller's
};

class ExportDialog : public QDialog {
 public:
  /// Starts from the choice before, as far as it is offered.
  ExportDialog(QWidget* parent, const ExportOffer& offer, const ExportChoice& before);

  ExportChoice Choice() const;

 private:
  void FollowForm();

  QRadioButton* m_shown;
  QRadioButton* m_selected;
  QRadioButton* m_all;
  QComboBox* m_form;
  QComboBox* m_separator;
  QCheckBox* m_names;
};

/// What a file of the form ends in, with its point.
QString SuffixOf(exports::Form form);
/// A file name of the text, which may hold anything; never empty.
QString FileNameOf(const QString& sText, exports::Form form);

}  // namespace orvane::controls
