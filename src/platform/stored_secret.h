// The one rule for secrets in texts that are stored or shown: connection strings, data sources,
// extended options and what is made of them. Nobody else decides what looks like a password.
// Used by the connection layer, the provider and the programs; pure functions, any thread.
#pragma once

#include <string_view>

namespace orvane::platform {

/// True when the text gives a password: as an item whose name says so, in any case and with
/// anything between its letters (Password, User Password, PWD, passwd, pass, secret), wherever in
/// the text that item stands; or as the user:secret@ of an address. What is written with percent
/// signs is read as what it stands for. An item without a value counts as well.
bool HoldsSecret(std::string_view sText);

/// True when the text has a word for a secret anywhere, so that a sentence had better not repeat
/// it.
bool MentionsSecret(std::string_view sText);

}  // namespace orvane::platform
