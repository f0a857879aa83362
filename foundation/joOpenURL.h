#pragma once
// Asking the desktop to open things: an address in its web browser, a "mailto:" address
// in the user's mail program. The desktop's URL opener stands in for the shell.

#include <string>

// Asks the desktop to open Text (a URL); true when it took the request.
bool OpenURL(const std::string& Text);
// Opens the user's mail program on a new message to Address ("mailto:" and the address).
bool MailTo(const std::string& Address);
