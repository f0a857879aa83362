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
// (end of live form texts)

// ---- Options, About box, base main form ----------------------------------------------------
// (end of foundation texts)

}  // namespace ResStr
