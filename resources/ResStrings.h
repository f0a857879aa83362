#pragma once
// The program's table of user-visible texts: captions set by code, questions, messages
// and filters. Window layouts (resources/*.dfm) carry their own captions. Texts are used
// exactly as they stand; keep each group's texts together under its heading.

#include <string_view>

namespace ResStr {

// ---- Main window, open and save commands, window list -------------------------------
inline constexpr std::string_view SAppTitle = "Lumora";
inline constexpr std::string_view SMainFormInstanceTwice = "Cannot have more than one instance '%s' per application";
inline constexpr std::string_view SRelayNoLumora = "No Lumora is running to take the file";
inline constexpr std::string_view SRelayNotTaken = "The running Lumora did not take the file name";
inline constexpr std::string_view SRelayNoAnswer = "The running Lumora did not answer";
inline constexpr std::string_view SRelayTaken = "Another Lumora of this session receives file names already";
// (end of main window texts)

// ---- Form-text editor, rich edit, strings editor ---------------------------------------
// (end of editor texts)

// ---- Design packages and packages dialog -------------------------------------------------
// (end of package texts)

// ---- Live form, designer and object inspector --------------------------------------------
// (end of live form texts)

// ---- Options, About box, base main form ----------------------------------------------------
inline constexpr std::string_view SNoHelpSystem = "Sorry!!!\rHelp system in work...";
inline constexpr std::string_view SHotKeyNone = "(None)";
// (end of foundation texts)

}  // namespace ResStr
