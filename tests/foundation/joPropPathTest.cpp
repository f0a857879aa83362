#include "foundation/joPropPath.h"

#include "tests/foundation/FoundTestObjects.h"

#include <gtest/gtest.h>

#include <memory>

using namespace foundtest;

TEST(joPropPath, InheritsFromNameWalksTheAncestorsWithoutRegardToCase) {
  TCurrencyEdit edit(nullptr);
  EXPECT_TRUE(InheritsFromName(&edit, "TCurrencyEdit"));
  EXPECT_TRUE(InheritsFromName(&edit, "tcustomedit"));
  EXPECT_TRUE(InheritsFromName(&edit, "TComponent"));
  EXPECT_TRUE(InheritsFromName(&edit, "TObject"));
  EXPECT_FALSE(InheritsFromName(&edit, "TCustomCheckBox"));
  EXPECT_FALSE(InheritsFromName(nullptr, "TObject"));
}

TEST(joPropPath, TheFirstRowOfTheValueTableWins) {
  TCustomEdit edit(nullptr);
  TCustomNumEdit num(nullptr);
  TCurrencyEdit currency(nullptr);
  TCheckBox check(nullptr);
  TTestPlain plain(nullptr);
  EXPECT_EQ(GetValuePropName(&edit), "Text");
  // Also a TCustomEdit, but its own row comes earlier.
  EXPECT_EQ(GetValuePropName(&num), "Value");
  EXPECT_EQ(GetValuePropName(&currency), "Value");
  EXPECT_EQ(GetValuePropName(&check), "Checked");
  EXPECT_EQ(GetValuePropName(&plain), "");
  EXPECT_EQ(GetValuePropName(nullptr), "");
}

TEST(joPropPath, ResolvePropPathFollowsSubObjects) {
  TTestEditor editor(nullptr);
  TObject* owner = &editor;
  const TPropInfo* p = ResolvePropPath(owner, "FontEditor.Name");
  ASSERT_NE(p, nullptr);
  EXPECT_EQ(p->Name, "Name");
  EXPECT_EQ(owner, editor.FontEditor());
  owner = &editor;
  p = ResolvePropPath(owner, "treewidth");
  ASSERT_NE(p, nullptr);
  EXPECT_EQ(p->Name, "TreeWidth");
  EXPECT_EQ(owner, &editor);
  EXPECT_EQ(ResolvePropPath(owner, "FontEditor.Absent"), nullptr);
  EXPECT_EQ(ResolvePropPath(owner, "Absent.Name"), nullptr);
  EXPECT_EQ(ResolvePropPath(owner, "  "), nullptr);
  EXPECT_EQ(owner, &editor);
  TObject* none = nullptr;
  EXPECT_EQ(ResolvePropPath(none, "Name"), nullptr);
}

TEST(joPropPath, FindPropInfoChecksAccessAndKind) {
  TTestEditor editor(nullptr);
  TObject* owner = &editor;
  EXPECT_NE(FindPropInfo(owner, "Width", tkUnknown, false), nullptr);
  EXPECT_EQ(FindPropInfo(owner, "Width", tkUnknown, true), nullptr);
  EXPECT_NE(FindPropInfo(owner, "TreeWidth", tkInteger, true), nullptr);
  EXPECT_EQ(FindPropInfo(owner, "TreeWidth", tkLString, true), nullptr);
  EXPECT_NE(FindPropInfo(owner, "FontEditor.Name", tkLString, true), nullptr);
  EXPECT_EQ(owner, editor.FontEditor());
}

TEST(joPropPath, GetSubObjectTriesPropertyThenFieldThenOwnedComponent) {
  TTestForm form(nullptr);
  auto* panel = new TTestEditor(&form);
  panel->SetName("Panel");  // lands in the published field
  auto* editor1 = new TTestEditor(&form);
  editor1->SetName("Editor1");
  ASSERT_EQ(form.Panel, panel);
  EXPECT_EQ(GetSubObject(&form, "panel"), panel);
  EXPECT_EQ(GetSubObject(&form, "Editor1"), editor1);
  EXPECT_EQ(GetSubObject(&form, "Nothing"), nullptr);
  EXPECT_EQ(GetSubObject(panel, "FontEditor"), panel->FontEditor());
  EXPECT_EQ(GetSubObject(nullptr, "FontEditor"), nullptr);
  // A property that is not an object is no sub-object.
  EXPECT_EQ(GetSubObject(panel, "TreeWidth"), nullptr);
}

TEST(joPropPath, FontEditorNameSetsTheNameOfTheFontSubObject) {
  TTestEditor editor(nullptr);
  EXPECT_TRUE(SetValueByPath(&editor, "FontEditor.Name", Variant("Courier New")));
  EXPECT_EQ(editor.FontEditor()->FName, "Courier New");
  EXPECT_TRUE(SetValueByPath(&editor, "FontEditor.Size", Variant("10")));
  EXPECT_EQ(editor.FontEditor()->FSize, 10);
  EXPECT_TRUE(SetValueByPath(&editor, "FontEditor.CharSet", Variant("204")));
  EXPECT_EQ(editor.FontEditor()->FCharSet, 204);
  EXPECT_TRUE(SetValueByPath(&editor, "FontEditor.Style", Variant("[tsBold,tsUnderline]")));
  EXPECT_EQ(editor.FontEditor()->FStyle, (TTestStyles{tsBold, tsUnderline}));
}

TEST(joPropPath, APathThroughAnOwnedComponentReachesItsProperty) {
  TTestForm form(nullptr);
  auto* editor = new TTestEditor(&form);
  editor->SetName("Editor1");
  EXPECT_TRUE(SetValueByPath(&form, "Editor1.TreeWidth", Variant("180")));
  EXPECT_EQ(editor->FTreeWidth, 180);
  EXPECT_TRUE(SetValueByPath(&form, "Editor1.FontEditor.Name", Variant("Arial")));
  EXPECT_EQ(editor->FontEditor()->FName, "Arial");
  Variant v;
  EXPECT_TRUE(GetValueByPath(&form, "Editor1.TreeWidth", Variant(), v));
  EXPECT_EQ(v.VarType(), varInteger);
  EXPECT_EQ(v.AsInteger(), 180);
}

TEST(joPropPath, AnUnknownPathLeavesTheObjectUnchanged) {
  TTestEditor editor(nullptr);
  editor.SetName("Ed");
  EXPECT_FALSE(SetValueByPath(&editor, "Absent", Variant("1")));
  EXPECT_FALSE(SetValueByPath(&editor, "FontEditor.Absent", Variant("1")));
  EXPECT_FALSE(SetValueByPath(&editor, "Absent.Name", Variant("1")));
  EXPECT_EQ(editor.FSetCount, 0);
  EXPECT_EQ(editor.FontEditor()->FName, "MS Sans Serif");
  EXPECT_EQ(editor.Name(), "Ed");
}

TEST(joPropPath, TextConvertsToThePropertyType) {
  TTestEditor editor(nullptr);
  EXPECT_TRUE(SetValueByPath(&editor, "ReadOnly", Variant("0")));
  EXPECT_FALSE(editor.FReadOnly);
  EXPECT_TRUE(SetValueByPath(&editor, "ReadOnly", Variant("1")));
  EXPECT_TRUE(editor.FReadOnly);
  EXPECT_TRUE(SetValueByPath(&editor, "ReadOnly", Variant("False")));
  EXPECT_FALSE(editor.FReadOnly);
  EXPECT_TRUE(SetValueByPath(&editor, "Kind", Variant("tkFancy")));
  EXPECT_EQ(editor.FKind, tkFancy);
  EXPECT_TRUE(SetValueByPath(&editor, "Kind", Variant("2")));
  EXPECT_EQ(editor.FKind, tkOdd);
  EXPECT_TRUE(SetValueByPath(&editor, "Ratio", Variant("2.5")));
  EXPECT_DOUBLE_EQ(editor.FRatio, 2.5);
  EXPECT_TRUE(SetValueByPath(&editor, "Big", Variant("12345678901")));
  EXPECT_EQ(editor.FBig, 12345678901LL);
  EXPECT_TRUE(SetValueByPath(&editor, "Caption", Variant(42)));
  EXPECT_EQ(editor.FCaption, "42");
  EXPECT_TRUE(SetValueByPath(&editor, "Extra", Variant("anything")));
  EXPECT_EQ(VarToStr(editor.FExtra), "anything");
}

TEST(joPropPath, ValuesThatDoNotConvertArePassedOver) {
  TTestEditor editor(nullptr);
  EXPECT_FALSE(SetValueByPath(&editor, "TreeWidth", Variant("wide")));
  EXPECT_FALSE(SetValueByPath(&editor, "TreeWidth", Null()));
  EXPECT_FALSE(SetValueByPath(&editor, "Kind", Variant("tkNoSuch")));
  EXPECT_FALSE(SetValueByPath(&editor, "ReadOnly", Variant("maybe")));
  EXPECT_EQ(editor.FSetCount, 0);
  EXPECT_EQ(editor.FKind, tkPlain);
  EXPECT_TRUE(editor.FReadOnly);
  // Objects, events and read-only properties are not set from a value.
  EXPECT_FALSE(SetValueByPath(&editor, "FontEditor", Variant("x")));
  EXPECT_FALSE(SetValueByPath(&editor, "OnChange", Variant("x")));
  EXPECT_FALSE(SetValueByPath(&editor, "Width", Variant("5")));
  EXPECT_FALSE(SetValueByPath(nullptr, "TreeWidth", Variant("5")));
}

TEST(joPropPath, PublishedSetValueAndGetValueAnswerFirst) {
  TTestValues values(nullptr);
  EXPECT_TRUE(SetValueByPath(&values, "Any.Path", Variant("7")));
  EXPECT_EQ(values.Stored.Values("Any.Path"), "7");
  EXPECT_TRUE(SetValueByPath(&values, "Left", Variant("9")));
  EXPECT_EQ(values.FLeft, 0);  // the method took it
  Variant v;
  EXPECT_TRUE(GetValueByPath(&values, "Any.Path", Variant(), v));
  EXPECT_EQ(VarToStr(v), "7");
  // When the method says no, the property at the path is used.
  values.Refuse = true;
  EXPECT_TRUE(SetValueByPath(&values, "Left", Variant("9")));
  EXPECT_EQ(values.FLeft, 9);
  EXPECT_FALSE(SetValueByPath(&values, "Any.Path", Variant("8")));
  EXPECT_TRUE(GetValueByPath(&values, "Left", Variant(), v));
  EXPECT_EQ(v.AsInteger(), 9);
  EXPECT_FALSE(GetValueByPath(&values, "Any.Path", Variant("def"), v));
  EXPECT_EQ(VarToStr(v), "def");
}

TEST(joPropPath, ABlankPathSetsTheObjectAsAWhole) {
  TTestValues values(nullptr);
  EXPECT_TRUE(SetValueByPath(&values, "", Variant("whole")));
  EXPECT_EQ(values.WholeValue, "whole");
  TCustomNumEdit num(nullptr);
  EXPECT_TRUE(SetValueByPath(&num, " ", Variant("3.25")));
  EXPECT_DOUBLE_EQ(num.FValue, 3.25);
  EXPECT_EQ(num.FText, "");
  TCheckBox check(nullptr);
  EXPECT_TRUE(SetValueByPath(&check, "", Variant("1")));
  EXPECT_TRUE(check.FChecked);
  Variant v;
  EXPECT_TRUE(GetValueByPath(&check, "", Variant(), v));
  EXPECT_EQ(v.VarType(), varBoolean);
  EXPECT_TRUE(v.AsBoolean());
  TTestPlain plain(nullptr);
  EXPECT_FALSE(SetValueByPath(&plain, "", Variant("1")));
  EXPECT_FALSE(GetValueByPath(&plain, "", Variant(5), v));
  EXPECT_EQ(v.AsInteger(), 5);
}

TEST(joPropPath, GetValueByPathGivesVariantsOfThePropertyType) {
  TTestEditor editor(nullptr);
  editor.FKind = tkFancy;
  editor.FontEditor()->FName = "Tahoma";
  Variant v;
  EXPECT_TRUE(GetValueByPath(&editor, "Kind", Variant(), v));
  EXPECT_EQ(VarToStr(v), "tkFancy");
  EXPECT_TRUE(GetValueByPath(&editor, "FontEditor.Name", Variant(), v));
  EXPECT_EQ(v.VarType(), varString);
  EXPECT_EQ(VarToStr(v), "Tahoma");
  EXPECT_TRUE(GetValueByPath(&editor, "FontEditor.CharSet", Variant(), v));
  EXPECT_EQ(v.VarType(), varInteger);
  EXPECT_EQ(v.AsInteger(), 1);
  EXPECT_TRUE(GetValueByPath(&editor, "Width", Variant(), v));  // read-only is readable
  EXPECT_EQ(v.AsInteger(), 150);
  EXPECT_FALSE(GetValueByPath(&editor, "FontEditor", Variant("d"), v));
  EXPECT_EQ(VarToStr(v), "d");
  EXPECT_FALSE(GetValueByPath(&editor, "Nope", Variant(), v));
  EXPECT_TRUE(v.IsEmpty());
  EXPECT_FALSE(GetValueByPath(nullptr, "Kind", Variant(1), v));
  EXPECT_EQ(v.AsInteger(), 1);
}
