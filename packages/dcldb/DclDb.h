#pragma once
// Every class of the data package, by palette page, and a way to register them all at
// once (the package's Register procedure does it through the loader's hooks).

#include "platform/rtti/Classes.h"

#include <string>
#include <vector>

struct TPalettePage {
  std::string Page;  // '' for classes without an icon (fields, actions)
  std::vector<TClass> Classes;
};

// The data package's classes as it registers them.
std::vector<TPalettePage> DbPalette();

// Hands every class to RegisterComponents / RegisterNoIcon.
void RegisterDbClasses();
