// What the program hands its window: how components are made, what they are handed, and where
// settings lie. User-interface thread.
#pragma once

#include <functional>
#include <vector>

#include "console/document/document_content.h"
#include "console/session/console_session.h"
#include "platform/services.h"

class QSettings;

namespace orvane::console {

class MessageBoxes;

struct WindowParts {
  ConsoleSession::Creator create;
  /// Makes the objects that lie in a document; those of create when there is none.
  DocumentBag::ObjectCreator createStored;
  platform::Services services;    ///< without the console
  MessageBoxes* boxes = nullptr;  ///< those behind services.ui, to be silenced; or null
  /// Called with a document as it was read or made, before the snap-in sees it; or none.
  std::function<void(const DocumentContent&)> documentOpened;
  /// Texts that the connections opened so far add to what is saved.
  std::function<std::vector<platform::Text>()> optionTexts;
  /// Called when the snap-in has done with an event, a document's reading included; or none.
  std::function<void()> eventEnded;
  QSettings* settings = nullptr;  ///< outlives the window
  platform::Text sSnapInProgId = platform::kSnapInProgId;
};

}  // namespace orvane::console
