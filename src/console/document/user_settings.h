// The file in which the toolkit keeps the user's settings: names of documents are in it, so it is
// the user's alone. Called once at the start; user-interface thread.
#pragma once

class QSettings;

namespace orvane::console {

/// Makes the file when there is none, so that nobody else may read it, whatever the umask, and
/// takes it from everybody else where it is the user's and there already; the toolkit keeps the
/// rights of a file that is there. Where that fails nobody is stopped by it.
void KeepToUser(const QSettings& settings);

}  // namespace orvane::console
