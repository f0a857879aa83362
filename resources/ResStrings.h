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
