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
inline constexpr std::string_view SWindowMenuSeparator = "  \xC2\xA4 ";
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
// Forms inside programs: the caption of the list of a program's forms (the program's
// file name), a program without forms, a form that cannot be read, a save onto the program.
inline constexpr std::string_view SProgramFormsCaption = "Forms of %s";
inline constexpr std::string_view SProgramWithoutForms = "%s holds no forms: none of its resources is a Delphi form.";
inline constexpr std::string_view SProgramFormUnreadable = "%s:%s cannot be opened: %s";
inline constexpr std::string_view SProgramNotWritten =
    "%s is the program the form was taken from and is never written; save the form under another name.";
// (end of main window texts)

// ---- Form-text editor, rich edit, strings editor ---------------------------------------
// The rich edit's context menu.
inline constexpr std::string_view SRichEditUndo = "&Undo";
inline constexpr std::string_view SRichEditCut = "Cu&t";
inline constexpr std::string_view SRichEditCopy = "&Copy";
inline constexpr std::string_view SRichEditPaste = "&Paste";
inline constexpr std::string_view SRichEditDelete = "&Delete";
inline constexpr std::string_view SRichEditSelectAll = "Se&lect All";
inline constexpr std::string_view SRichEditFind = "&Find";
inline constexpr std::string_view SRichEditReplace = "&Replace";
inline constexpr std::string_view SRichEditSearchAgain = "&Search Again";
// A search that found nothing (the text searched for).
inline constexpr std::string_view SSearchNotFound = "Search string '%s' not found";
// The form-text editor's own menu items.
inline constexpr std::string_view SEditorCompile = "Compile";
inline constexpr std::string_view SEditorFont = "&Font";
// Its status bar.
inline constexpr std::string_view SEditorProcessing = "Processing ...";
inline constexpr std::string_view SEditorModified = "Modified";
inline constexpr std::string_view SEditorReadOnly = "Read only";
// One-based line and column of the caret.
inline constexpr std::string_view SEditorCursorPos = "%6d: %3d";
// (end of editor texts)

// ---- Design packages and packages dialog -------------------------------------------------
// A package that cannot be loaded: prefix + file name + suffix (the reason follows on its own lines).
inline constexpr std::string_view SCannotLoadPackagePrefix = "Cannot load package \"";
inline constexpr std::string_view SCannotLoadPackageSuffix = "\" !!!";
inline constexpr std::string_view SOneInstanceOnly = "Cannot have more than one instance '%s' per application";
inline constexpr std::string_view SUninstallDependants =
    "Package(s) %s will also be uninstalled because they require package \"%s\". Continue uninstall?";
inline constexpr std::string_view SRemovePackage = "Remove \"%s\" from the design package list ?";
inline constexpr std::string_view SPackageFilter = "Package library (*.%s)|*.%s";
inline constexpr std::string_view SPackageExt = "so";
// (end of package texts)

// ---- Live form, designer and object inspector --------------------------------------------
// Items of a live form's system menu.
inline constexpr std::string_view SLiveForm = "Live Form";
inline constexpr std::string_view SDeadForm = "Dead Form";
inline constexpr std::string_view SViewAsText = "View As Text";
inline constexpr std::string_view SShowObjectInspector = "Show Object Inspector";
// (end of live form texts)

// ---- Options, About box, base main form ----------------------------------------------------
inline constexpr std::string_view SNoHelpSystem = "Sorry!!!\rHelp system in work...";
inline constexpr std::string_view SHotKeyNone = "(None)";
// (end of foundation texts)

}  // namespace ResStr
