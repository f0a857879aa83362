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
inline constexpr std::string_view SCloseEditor = "&Close Editor";
inline constexpr std::string_view SHideViewer = "&Hide Viewer";
inline constexpr std::string_view SMainWindowLine = "Main Window";
inline constexpr std::string_view SWindowListCaption = "  Window List";
inline constexpr std::string_view SWindowMenuItem = "&%s  %s%s%s";
inline constexpr std::string_view SWindowMenuSeparator = "  \xA4 ";
inline constexpr std::string_view SCloseAll = "Close &All";
inline constexpr std::string_view SSaveChanges = "Save changes?";
inline constexpr std::string_view SSaveFilter =
    "Delphi Form (*.DFM)|*.DFM|RC resource script (*.RC)|*.RC|Text file (*.TXT)|*.TXT|RTF file (*.RTF)|*.RTF|"
    "Any file (*.*)|*.*";
inline constexpr std::string_view SEditStrings = "Edit strings";
inline constexpr std::string_view SStringsResources = "Strings resources";
inline constexpr std::string_view SBadSetting = "The setting %s=%s in %s is not valid; its default is used.";
inline constexpr std::string_view SSettingsNotSaved = "The settings could not be saved: %s";
inline constexpr std::string_view SUnknownOption = "unknown option %s (see lumora --help)";
inline constexpr std::string_view SRelayNeedsFile = "--relay needs the name of a form file";
inline constexpr std::string_view SCommandLineHelp =
    "Usage: lumora [FILE]\n"
    "       lumora --relay FILE\n"
    "\n"
    "Views and edits Delphi form files (.dfm), binary or form text: as a live window\n"
    "built from the file, with an object inspector, or as form text in an editor.\n"
    "\n"
    "  FILE          a form file to open once the program has started (only the first\n"
    "                argument is looked at)\n"
    "  --relay FILE  hand FILE to the Lumora already running in this session, which\n"
    "                opens it and comes to the front\n"
    "  -h, --help    show this help and exit\n"
    "  -V, --version show the version and exit\n";
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
