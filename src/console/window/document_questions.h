// What the window asks and says about the document: which file, whether unsaved work is dropped,
// whether another program's changes are replaced. They decide nothing and write nothing.
// User-interface thread; each runs until the user has answered.
#pragma once

#include <cstdint>
#include <optional>

#include "console/document/document.h"
#include "platform/types.h"

class QWidget;

namespace orvane::console {

enum class UnsavedAnswer : std::uint8_t { Save, Discard, Cancel };

/// The file to open, or none when the user cancelled. Begins in the folder of the open document.
std::optional<platform::Text> AskForFileToOpen(const Document& document, QWidget* window);

/// The file to save the document in, or none when the user cancelled. The dialog itself asks before
/// a file that exists is replaced.
std::optional<platform::Text> AskForFileToSave(const Document& document, QWidget* window);

UnsavedAnswer AskAboutUnsavedWork(const Document& document, QWidget* window);

/// True when a document that can be read, but is not as a console saved it, is to be opened.
bool AskToOpenDoubtful(const platform::Text& sPath, DocumentDoubt doubt, QWidget* window);

/// True when a document that another program has changed is to be replaced.
bool AskToReplaceChanged(const Document& document, QWidget* window);

/// Shows one sentence.
void ShowFailureBox(const platform::Text& sSentence, QWidget* window);

}  // namespace orvane::console
