#pragma once
// The system clipboard, with its text as the 8-bit text the rest of the program uses.

#include <string>

class TClipboard {
public:
  // The clipboard's text in the default ANSI code page; empty when it holds none.
  std::string AsText() const;
  void SetAsText(const std::string& text);
  // Whether the clipboard holds text.
  bool HasText() const;
  void Clear();
};

// The clipboard of the process.
TClipboard* Clipboard();
