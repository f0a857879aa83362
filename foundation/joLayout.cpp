#include "foundation/joLayout.h"

#include "platform/rtti/Classes.h"
#include "resources/Resources.h"

#include <string_view>
#include <vector>

int ReadLayouts(TComponent* root) {
  std::vector<std::string_view> layouts;
  for (TClass cls = root->ClassType(); cls; cls = cls->ClassParent()) {
    std::string_view text = FindLayout(cls->ClassName());
    if (!text.empty()) layouts.push_back(text);
  }
  for (auto it = layouts.rbegin(); it != layouts.rend(); ++it) ReadComponentFromText(root, *it);
  return static_cast<int>(layouts.size());
}
