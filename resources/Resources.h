#pragma once
// The program's own resources, built into it from the files of resources/: the layouts
// of its windows as form text, one per window class, named after the class
// (resources/TFrm_StrN_Edit.dfm is the layout of TFrm_StrN_Edit).

#include <string_view>
#include <vector>

struct TEmbeddedResource {
  std::string_view Name;
  std::string_view Data;
};

// Every resource, sorted by name.
const std::vector<TEmbeddedResource>& EmbeddedResources();

// The layout of the window class `className` (compared without regard to case), or an
// empty view when the class has none.
std::string_view FindLayout(std::string_view className);

// Tests give layouts to classes of their own; `text` must outlive its use.
void AddLayout(std::string_view className, std::string_view text);
