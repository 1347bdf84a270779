// The window's toolbar: shows what the snap-in attached to the control bar, and takes no room when
// there is nothing. It lies in the result pane, so that it moves nothing in the tree: the second
// click of a double click must meet what the first one met.
// User-interface thread.
#pragma once

#include <QToolBar>

namespace orvane::console {

class ConsoleSession;
class ImageList;

enum class ButtonImages : std::uint8_t { Small, Large };

class ToolbarView final : public QToolBar {
  Q_OBJECT

 public:
  /// The images outlive the toolbar.
  explicit ToolbarView(const ImageList& images, QWidget* parent = nullptr);

  /// Follows the session until another one, or null, takes its place.
  void Follow(ConsoleSession* session);
  /// Whether the user wants the toolbar where there is one.
  void Wanted(bool bWanted);
  bool Wanted() const noexcept { return m_bWanted; }
  /// The size of the buttons' images, which also grows with the font. Small to begin with.
  void Images(ButtonImages images);
  ButtonImages Images() const noexcept { return m_size; }

 protected:
  void changeEvent(QEvent* event) override;

 private:
  void Sync();
  void RemoveButtons();
  void SizeImages();
  bool ShowsSameButtons() const;
  void Rebuild();

  const ImageList& m_images;
  ConsoleSession* m_session = nullptr;
  bool m_bWanted = true;
  ButtonImages m_size = ButtonImages::Small;
};

}  // namespace orvane::console
