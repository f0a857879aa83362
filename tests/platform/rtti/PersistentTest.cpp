#include "platform/rtti/Classes.h"
#include "tests/platform/rtti/TestClasses.h"

#include <gtest/gtest.h>

namespace {
template <class F>
std::string ConvertMessage(F&& f) {
  try {
    f();
  } catch (const EConvertError& e) {
    return e.Message();
  }
  return "(nothing raised)";
}
}  // namespace

TEST(PersistentTest, AssignBetweenStrangersFailsNamingBothClasses) {
  TTestFont font;
  TStringList list;
  EXPECT_EQ(ConvertMessage([&] { font.Assign(&list); }), "Cannot assign a TStringList to a TTestFont");
  EXPECT_EQ(ConvertMessage([&] { list.Assign(&font); }), "Cannot assign a TTestFont to a TStringList");
  EXPECT_EQ(ConvertMessage([&] { font.Assign(nullptr); }), "Cannot assign a nil to a TTestFont");
  EXPECT_EQ(ConvertMessage([&] { font.AssignTo(&list); }), "Cannot assign a TTestFont to a TStringList");
  EXPECT_EQ(ConvertMessage([&] { font.AssignTo(nullptr); }), "Cannot assign a TTestFont to a nil");
}

TEST(PersistentTest, AssignCopiesWhenTheClassesKnowEachOther) {
  TTestFont a, b;
  a.FName = "Courier New";
  a.FStyle = {tfsBold};
  b.Assign(&a);
  EXPECT_EQ(b.FName, "Courier New");
  EXPECT_EQ(b.FStyle, TTestFontStyles{tfsBold});
}

namespace {
// A class that knows how to copy itself into a string list (AssignTo), as a document
// turns itself into form text.
class TLines : public TPersistent {
  LUMORA_CLASS(TLines, TPersistent)
public:
  void AssignTo(TPersistent* dest) override {
    if (auto* list = dynamic_cast<TStrings*>(dest)) {
      list->SetText("one\r\ntwo\r\n");
      return;
    }
    TPersistent::AssignTo(dest);
  }
};
LUMORA_CLASS_IMPL(TLines) {}
}  // namespace

TEST(PersistentTest, AssignAsksTheSource) {
  TLines lines;
  TStringList list;
  list.Assign(&lines);
  EXPECT_EQ(list.Count(), 2);
  EXPECT_EQ(list[1], "two");
  TTestFont font;
  EXPECT_EQ(ConvertMessage([&] { font.Assign(&lines); }), "Cannot assign a TLines to a TTestFont");
}

TEST(PersistentTest, NamePaths) {
  TTestFont font;
  EXPECT_EQ(font.GetNamePath(), "TTestFont");
  EXPECT_EQ(font.GetOwner(), nullptr);
  TComponent owner(nullptr);
  owner.SetName("Form1");
  EXPECT_EQ(owner.GetNamePath(), "Form1");
}
