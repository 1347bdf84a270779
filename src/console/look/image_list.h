// The pictures behind the snap-in's image numbers: its folder lists and its toolbar's list.
// The pictures are drawings, so that one serves every size and screen. User-interface thread.
#pragma once

#include <QIcon>
#include <array>

#include "platform/file_version.h"
#include "platform/types.h"

namespace orvane::console {

class ImageList {
 public:
  /// Numbers of the folder lists, from 1.
  static constexpr platform::Long kFolderImages = 8;
  static constexpr platform::Long kButtons = 7;

  /// How many numbers of the toolbar's list go to each of its buttons, as the snap-in counts them
  /// for the console that these functions tell of: one, or in an older console two, of which it
  /// takes the second. Without the functions the console is an older one.
  static platform::Long ImagesAButton(platform::FileVersion* functions);

  explicit ImageList(platform::Long lImagesAButton = 2);

  /// An empty icon for a number outside the list.
  QIcon Folder(platform::Long lImage) const;
  /// The folder image with the mark of a failure.
  QIcon FailedFolder(platform::Long lImage) const;
  /// The folder image with the mark of a server that is connected.
  QIcon ConnectedFolder(platform::Long lImage) const;
  QIcon Button(platform::Long lImage) const;

  /// The program's own drawings, by name; their colours follow the ground.
  static QIcon Named(const char* sName);
  /// The same for drawings that bring their own ground and look alike everywhere: the program's
  /// picture and the mark of a failure.
  static QIcon Badge(const char* sName);

 private:
  std::array<QIcon, kFolderImages> m_folders;
  std::array<QIcon, kFolderImages> m_failedFolders;
  std::array<QIcon, kFolderImages> m_connectedFolders;
  std::array<QIcon, kButtons> m_imlButtons;
  platform::Long m_lImagesAButton;
};

}  // namespace orvane::console
