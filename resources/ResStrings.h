#pragma once
// The program's table of user-visible texts: captions set by code, questions, messages
// and filters. Window layouts (resources/*.dfm) carry their own captions. Texts are used
// exactly as they stand; keep each group's texts together under its heading.

#include <string_view>

namespace ResStr {

// ---- Main window, open and save commands, window list -------------------------------
inline constexpr std::string_view SAppTitle = "Lumora";
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
// (end of foundation texts)

}  // namespace ResStr
