#include "platform/rtti/Classes.h"
#include "tests/platform/rtti/TestClasses.h"

#include "tests/support/Errors.h"

#include <gtest/gtest.h>

#include <memory>

using lumora::test::MessageOf;

namespace {

struct Fixture : ::testing::Test {
  std::unique_ptr<TTestForm> form = std::make_unique<TTestForm>(nullptr);
  TTestControl* control = new TTestControl(form.get());
};

}  // namespace

TEST(ClassDescTest, NameParentAndInheritance) {
  TClass c = TTestButton::StaticClass();
  EXPECT_EQ(c->ClassName(), "TTestButton");
  EXPECT_EQ(c->ClassParent(), TTestControl::StaticClass());
  EXPECT_TRUE(c->InheritsFrom(TComponent::StaticClass()));
  EXPECT_TRUE(c->InheritsFrom(TObject::StaticClass()));
  EXPECT_FALSE(TTestControl::StaticClass()->InheritsFrom(c));
  EXPECT_EQ(c->TypeInfo()->Kind, tkClass);
  EXPECT_EQ(c->TypeInfo()->ClassType(), c);
  EXPECT_EQ(TObject::StaticClass()->ClassParent(), nullptr);
  EXPECT_EQ(TObject::StaticClass()->ClassName(), "TObject");

  TTestButton button(nullptr);
  TObject* o = &button;
  EXPECT_EQ(o->ClassType(), c);
  EXPECT_EQ(o->ClassName(), "TTestButton");
  EXPECT_EQ(o->ClassParent(), TTestControl::StaticClass());
  EXPECT_TRUE(o->InheritsFrom(TPersistent::StaticClass()));
  EXPECT_TRUE(o->ClassNameIs("ttestbutton"));
}

TEST(ClassDescTest, FactoriesByKindOfClass) {
  TComponent owner(nullptr);
  TComponent* made = TTestButton::StaticClass()->CreateComponent(&owner);
  EXPECT_EQ(made->ClassName(), "TTestButton");
  EXPECT_EQ(made->Owner(), &owner);
  EXPECT_EQ(owner.ComponentCount(), 1);

  TTestColumns columns(nullptr);
  TCollectionItem* item = TTestColumn::StaticClass()->CreateItem(&columns);
  EXPECT_EQ(item->Collection(), &columns);

  std::unique_ptr<TObject> list(TStringList::StaticClass()->CreateObject());
  EXPECT_EQ(list->ClassName(), "TStringList");

  EXPECT_FALSE(TStrings::StaticClass()->CanCreateObject());
  EXPECT_EQ(MessageOf<EInvalidOperation>([] { TStrings::StaticClass()->CreateObject(); }),
            "Cannot create an instance of class TStrings");
  EXPECT_EQ(MessageOf<EInvalidOperation>([&] { TStringList::StaticClass()->CreateComponent(&owner); }),
            "Cannot create an instance of class TStringList");
}

TEST(ClassDescTest, PropertiesInheritedFirstInDeclarationOrder) {
  const auto& props = TTestButton::StaticClass()->Properties();
  ASSERT_GE(props.size(), 5u);
  EXPECT_EQ(props[0]->Name, "Name");
  EXPECT_EQ(props[1]->Name, "Tag");
  EXPECT_EQ(props[2]->Name, "Left");
  EXPECT_EQ(props[3]->Name, "Top");
  EXPECT_EQ(props[4]->Name, "Width");
  EXPECT_EQ(props.back()->Name, "Default");
  for (std::size_t i = 0; i < props.size(); ++i) EXPECT_EQ(props[i]->NameIndex, static_cast<int>(i)) << props[i]->Name;
}

TEST(ClassDescTest, RepublishedPropertyKeepsItsPlaceWithANewDefault) {
  const TPropInfo* base = GetPropInfo(TTestControl::StaticClass(), "Width");
  const TPropInfo* button = GetPropInfo(TTestButton::StaticClass(), "width");
  ASSERT_TRUE(base && button);
  EXPECT_NE(base, button);
  EXPECT_EQ(base->Default, 100);
  EXPECT_EQ(button->Default, 75);
  EXPECT_EQ(button->NameIndex, base->NameIndex);
  EXPECT_EQ(button->Declarer, TTestButton::StaticClass());
  EXPECT_EQ(base->Declarer, TTestControl::StaticClass());

  TTestButton b(nullptr);
  EXPECT_TRUE(IsDefaultPropValue(&b, button));
  SetOrdProp(&b, "Width", 100);
  EXPECT_FALSE(IsDefaultPropValue(&b, button));
}

TEST(ClassDescTest, KindsFollowTheCppTypes) {
  TClass c = TTestControl::StaticClass();
  auto kind = [&](const char* name) { return GetPropInfo(c, name)->Kind(); };
  EXPECT_EQ(kind("Left"), tkInteger);
  EXPECT_EQ(kind("Small"), tkInteger);
  EXPECT_EQ(kind("Letter"), tkChar);
  EXPECT_EQ(kind("WideLetter"), tkWChar);
  EXPECT_EQ(kind("Align"), tkEnumeration);
  EXPECT_EQ(kind("Visible"), tkEnumeration);
  EXPECT_EQ(kind("Anchors"), tkSet);
  EXPECT_EQ(kind("Ratio"), tkFloat);
  EXPECT_EQ(kind("Caption"), tkLString);
  EXPECT_EQ(kind("Short"), tkString);
  EXPECT_EQ(kind("Count64"), tkInt64);
  EXPECT_EQ(kind("Data"), tkVariant);
  EXPECT_EQ(kind("Font"), tkClass);
  EXPECT_EQ(kind("OnClick"), tkMethod);

  EXPECT_EQ(GetPropInfo(c, "Ratio")->PropType()->FloatType, ftSingle);
  EXPECT_EQ(GetPropInfo(c, "Scale")->PropType()->FloatType, ftDouble);
  EXPECT_EQ(GetPropInfo(c, "Precise")->PropType()->FloatType, ftExtended);
  EXPECT_EQ(GetPropInfo(c, "Price")->PropType()->FloatType, ftCurr);
  EXPECT_EQ(GetPropInfo(c, "Big")->PropType()->FloatType, ftComp);
  EXPECT_EQ(GetPropInfo(c, "Stamp")->PropType()->Name, "TDateTime");
  EXPECT_EQ(GetPropInfo(c, "Visible")->PropType()->Name, "Boolean");
  EXPECT_EQ(GetPropInfo(c, "Anchors")->PropType()->Name, "TTestAnchors");
  EXPECT_EQ(GetPropInfo(c, "Anchors")->PropType()->CompType()->Name, "TTestAnchorKind");
  EXPECT_EQ(GetPropInfo(c, "Font")->PropType()->ClassType(), TTestFont::StaticClass());
  EXPECT_EQ(GetPropInfo(c, "OnClick")->PropType()->Name, "TNotifyEvent");
  EXPECT_EQ(GetPropInfo(c, "OnKeyDown")->PropType()->Name, "TKeyEvent");
  EXPECT_EQ(GetPropInfo(c, "Small")->PropType()->Name, "Byte");
}

TEST(TypeInfoTest, BuiltInTypes) {
  EXPECT_EQ(TypeInfo<int>()->Name, "Integer");
  EXPECT_EQ(TypeInfo<int>()->MinValue, -2147483648LL);
  EXPECT_EQ(TypeInfo<unsigned short>()->Name, "Word");
  EXPECT_EQ(TypeInfo<std::int64_t>()->Kind, tkInt64);
  EXPECT_EQ(TypeInfo<std::string>()->Kind, tkLString);
  EXPECT_EQ(TypeInfo<Variant>()->Kind, tkVariant);
  EXPECT_EQ(TypeInfo<bool>()->EnumNames, (std::vector<std::string>{"False", "True"}));
  EXPECT_EQ(TypeInfo<TTestAlign>()->EnumNames.size(), 6u);
  EXPECT_EQ(TypeInfo<TTestAlign>()->MaxValue, 5);
  EXPECT_EQ(TypeInfo<TShiftState>()->Name, "TShiftState");
  EXPECT_EQ(TypeInfo<TSet<TTestAlign>>()->Kind, tkSet);
  EXPECT_EQ(TypeInfo<TSet<TTestAlign>>()->CompType(), TypeInfo<TTestAlign>());
}

TEST(TypeInfoTest, EnumNamesAndValues) {
  const TTypeInfo* align = TypeInfo<TTestAlign>();
  EXPECT_EQ(GetEnumName(align, 0), "taNone");
  EXPECT_EQ(GetEnumName(align, 5), "taClient");
  EXPECT_EQ(GetEnumName(align, 6), "");
  EXPECT_EQ(GetEnumName(align, -1), "");
  EXPECT_EQ(GetEnumValue(align, "taClient"), 5);
  EXPECT_EQ(GetEnumValue(align, "TACLIENT"), 5);
  EXPECT_EQ(GetEnumValue(align, "taMiddle"), -1);
  EXPECT_EQ(GetEnumValue(TypeInfo<bool>(), "true"), 1);
}

TEST(TypeInfoTest, SetText) {
  const TTypeInfo* anchors = TypeInfo<TTestAnchors>();
  EXPECT_EQ(SetToString(anchors, 0b1011, true), "[akLeft,akTop,akBottom]");
  EXPECT_EQ(SetToString(anchors, 0b0011), "akLeft,akTop");
  EXPECT_EQ(SetToString(anchors, 0, true), "[]");
  EXPECT_EQ(StringToSet(anchors, "[akRight, akbottom]"), 0b1100);
  EXPECT_EQ(StringToSet(anchors, "akLeft"), 0b0001);
  EXPECT_EQ(StringToSet(anchors, "[]"), 0);
  EXPECT_EQ(StringToSet(anchors, ""), 0);
  EXPECT_EQ(MessageOf<EPropertyError>([&] { StringToSet(anchors, "[akLeft,akMiddle]"); }), "Invalid property element: akMiddle");
}

TEST_F(Fixture, OrdinalsThroughFieldsAndMethods) {
  SetOrdProp(control, "Left", 12);
  EXPECT_EQ(control->FLeft, 12);
  EXPECT_EQ(GetOrdProp(control, "Left"), 12);
  SetOrdProp(control, "Top", -7);
  EXPECT_EQ(control->FTop, -7);
  EXPECT_EQ(control->TopWrites, 1);
  EXPECT_EQ(GetOrdProp(control, "top"), -7);
  SetOrdProp(control, "Letter", 'Z');
  EXPECT_EQ(control->FLetter, 'Z');
  SetOrdProp(control, "Letter", 0xE9);
  EXPECT_EQ(GetOrdProp(control, "Letter"), 0xE9);
  SetOrdProp(control, "WideLetter", 0x263A);
  EXPECT_EQ(control->FWideLetter, u'\u263A');
  SetOrdProp(control, "Small", 200);
  EXPECT_EQ(control->FSmall, 200);
  EXPECT_EQ(MessageOf<EPropertyError>([&] { SetOrdProp(control, "Small", 256); }), "Invalid property value");
  EXPECT_EQ(MessageOf<EPropertyError>([&] { SetOrdProp(control, "Left", 1LL << 40); }), "Invalid property value");
  EXPECT_EQ(control->FSmall, 200);
}

TEST_F(Fixture, EnumerationsAndBooleansByName) {
  SetEnumProp(control, "Align", "taClient");
  EXPECT_EQ(control->FAlign, taClient);
  EXPECT_EQ(GetEnumProp(control, "Align"), "taClient");
  SetEnumProp(control, "Align", "TALEFT");
  EXPECT_EQ(control->FAlign, taLeft);
  EXPECT_EQ(MessageOf<EPropertyError>([&] { SetEnumProp(control, "Align", "taMiddle"); }), "Invalid property element: taMiddle");
  EXPECT_EQ(control->FAlign, taLeft);
  EXPECT_EQ(MessageOf<EPropertyError>([&] { SetOrdProp(control, "Align", 6); }), "Invalid property value");

  EXPECT_EQ(GetEnumProp(control, "Visible"), "True");
  SetEnumProp(control, "Visible", "False");
  EXPECT_FALSE(control->FVisible);
  SetOrdProp(control, "Visible", 1);
  EXPECT_TRUE(control->FVisible);
}

TEST_F(Fixture, SetsAsText) {
  EXPECT_EQ(GetSetProp(control, "Anchors"), "[akLeft,akTop]");
  EXPECT_EQ(GetSetProp(control, "Anchors", false), "akLeft,akTop");
  SetSetProp(control, "Anchors", "[akRight,akBottom]");
  EXPECT_EQ(control->FAnchors, (TTestAnchors{akRight, akBottom}));
  EXPECT_EQ(GetOrdProp(control, "Anchors"), 0b1100);
  SetOrdProp(control, "Anchors", 0);
  EXPECT_TRUE(control->FAnchors.Empty());
  EXPECT_EQ(MessageOf<EPropertyError>([&] { SetOrdProp(control, "Anchors", 0b10000); }), "Invalid property value");
  EXPECT_EQ(MessageOf<EPropertyError>([&] { SetSetProp(control, "Anchors", "[akUp]"); }), "Invalid property element: akUp");
}

TEST_F(Fixture, FloatsOfEveryType) {
  SetFloatProp(control, "Ratio", 2.7L);
  EXPECT_EQ(control->FRatio, 2.7f);
  EXPECT_EQ(GetFloatProp(control, "Ratio"), static_cast<long double>(2.7f));
  SetFloatProp(control, "Scale", 0.1L);
  EXPECT_EQ(control->FScale, 0.1);
  const long double precise = 1.0L / 3.0L;
  SetFloatProp(control, "Precise", precise);
  EXPECT_EQ(control->FPrecise, precise);
  SetFloatProp(control, "Price", 12.34565L);
  EXPECT_EQ(control->FPrice.Scaled, 123456);
  EXPECT_EQ(GetFloatProp(control, "Price"), 12.3456L);
  SetFloatProp(control, "Stamp", 36526.5L);
  EXPECT_EQ(control->FStamp.Value, 36526.5);
  SetFloatProp(control, "Big", 1e15L);
  EXPECT_EQ(control->FBig.Value, 1000000000000000LL);
}

TEST_F(Fixture, StringsInt64AndVariants) {
  SetStrProp(control, "Caption", "Hello");
  EXPECT_EQ(control->FCaption, "Hello");
  EXPECT_EQ(GetStrProp(control, "Caption"), "Hello");
  SetStrProp(control, "Short", std::string(300, 'x'));
  EXPECT_EQ(control->FShort.Value.size(), 255u);
  SetInt64Prop(control, "Count64", -(1LL << 50));
  EXPECT_EQ(GetInt64Prop(control, "Count64"), -(1LL << 50));
  SetVariantProp(control, "Data", Variant(3.5));
  EXPECT_EQ(GetVariantProp(control, "Data"), Variant(3.5));
}

TEST_F(Fixture, ObjectsAreAssignedThroughTheSetter) {
  TTestFont font;
  font.FName = "Arial";
  font.FSize = 12;
  EXPECT_EQ(GetObjectProp(control, "Font"), control->Font());
  EXPECT_EQ(GetObjectProp(control, "Font", TTestFont::StaticClass()), control->Font());
  EXPECT_EQ(GetObjectProp(control, "Font", TComponent::StaticClass()), nullptr);
  SetObjectProp(control, "Font", &font);
  EXPECT_EQ(control->Font()->FName, "Arial");
  EXPECT_EQ(control->Font()->FSize, 12);
  TStringList wrong;
  EXPECT_EQ(MessageOf<EPropertyError>([&] { SetObjectProp(control, "Font", &wrong); }), "Invalid property value");
  EXPECT_EQ(control->Font()->FName, "Arial");

  TTestControl other(nullptr);
  SetObjectProp(control, "Buddy", &other);
  EXPECT_EQ(control->Buddy(), &other);
  SetObjectProp(control, "Buddy", nullptr);
  EXPECT_EQ(control->Buddy(), nullptr);
}

TEST_F(Fixture, MethodsBindByNameAndCompareByCodeAndData) {
  const TMethodInfo* m = TTestForm::StaticClass()->FindMethod("button1click");
  ASSERT_NE(m, nullptr);
  EXPECT_EQ(m->Name, "Button1Click");
  EXPECT_EQ(*m->Signature, typeid(TNotifyEvent::Signature));
  EXPECT_EQ(form->MethodAddress("Button1Click"), m->Code);
  EXPECT_EQ(form->MethodName(m->Code), "Button1Click");
  EXPECT_EQ(form->MethodAddress("Nothing"), nullptr);
  EXPECT_EQ(form->MethodName(nullptr), "");

  TMethod byName{m->Code, form.get(), nullptr};
  SetMethodProp(control, "OnClick", byName);
  EXPECT_TRUE(control->OnClick.Assigned());
  EXPECT_EQ(control->OnClick, MakeMethod<&TTestForm::Button1Click>(form.get()));
  EXPECT_EQ(GetMethodProp(control, "OnClick"), byName);
  control->SetName("Clicker");
  control->OnClick(control);
  ASSERT_EQ(form->Log.size(), 1u);
  EXPECT_EQ(form->Log[0], "click Clicker");

  TTestForm other(nullptr);
  EXPECT_NE(control->OnClick, MakeMethod<&TTestForm::Button1Click>(&other));
  EXPECT_NE(control->OnClick, MakeMethod<&TTestForm::TimerFired>(form.get()));

  SetMethodProp(control, "OnClick", TMethod{});
  EXPECT_FALSE(control->OnClick.Assigned());
  control->OnClick(control);
  EXPECT_EQ(form->Log.size(), 1u);
}

TEST_F(Fixture, EventsWithVarParameters) {
  control->OnKeyDown = MakeMethod<&TTestForm::FormKeyDown>(form.get());
  Word key = 65;
  control->OnKeyDown(control, key, TShiftState{ssCtrl});
  EXPECT_EQ(key, 0);
  ASSERT_EQ(form->Log.size(), 1u);
  EXPECT_EQ(form->Log[0], "key 65 ctrl");
}

TEST(EventTest, LambdasAreMethodsOfTheirOwn) {
  int calls = 0;
  TNotifyEvent a = [&](TObject*) { ++calls; };
  TNotifyEvent copy = a;
  TNotifyEvent b = [&](TObject*) { ++calls; };
  EXPECT_TRUE(a.Assigned());
  EXPECT_EQ(a, copy);
  EXPECT_NE(a, b);
  a(nullptr);
  copy(nullptr);
  EXPECT_EQ(calls, 2);
  TNotifyEvent none;
  EXPECT_FALSE(none.Assigned());
  EXPECT_TRUE(none == nullptr);
  none(nullptr);
  EXPECT_EQ(calls, 2);

  // A lambda survives the event it was bound to through the method's closure.
  TMethod kept;
  {
    TNotifyEvent temp = [&](TObject*) { calls += 10; };
    kept = temp.Method();
  }
  TNotifyEvent restored(kept);
  restored(nullptr);
  EXPECT_EQ(calls, 12);
}

namespace {
int gProcCalls = 0;
void CountProc(TObject*) { ++gProcCalls; }
}  // namespace

TEST(EventTest, PlainRoutinesHaveNoData) {
  TNotifyEvent e = MakeProc<&CountProc>();
  EXPECT_TRUE(e.Assigned());
  EXPECT_EQ(e.Data(), nullptr);
  EXPECT_EQ(e, MakeProc<&CountProc>());
  e(nullptr);
  EXPECT_EQ(gProcCalls, 1);
}

TEST(EventTest, ReturnValuesAndUnsetEvents) {
  TEvent<int(int)> twice = [](int x) { return 2 * x; };
  EXPECT_EQ(twice(21), 42);
  TEvent<int(int)> none;
  EXPECT_EQ(none(21), 0);
}

TEST_F(Fixture, ReadOnlyAndUnknownProperties) {
  const TPropInfo* p = GetPropInfo(control, "ReadOnlyValue");
  ASSERT_NE(p, nullptr);
  EXPECT_TRUE(p->CanRead());
  EXPECT_FALSE(p->CanWrite());
  EXPECT_EQ(GetOrdProp(control, p), 42);
  EXPECT_EQ(MessageOf<EPropertyError>([&] { SetOrdProp(control, p, 1); }), "Property is read-only");
  EXPECT_EQ(MessageOf<EPropertyError>([&] { GetOrdProp(control, "Foo"); }), "Property Foo does not exist");
  EXPECT_EQ(MessageOf<EPropertyError>([&] { GetStrProp(control, "Left"); }), "Invalid property type: Integer");
  EXPECT_EQ(MessageOf<EPropertyError>([&] { GetOrdProp(control, "Caption"); }), "Invalid property type: string");
  EXPECT_EQ(MessageOf<EPropertyError>([&] { GetPropValue(control, "Font"); }), "Invalid property type: TTestFont");
  EXPECT_FALSE(IsPublishedProp(control, "Foo"));
  EXPECT_TRUE(IsPublishedProp(control, "FONT"));
  EXPECT_TRUE(PropIsType(control, "Font", tkClass));
  EXPECT_EQ(PropType(control, "Visible"), tkEnumeration);
  EXPECT_EQ(GetPropInfo(control, "Left", TTypeKinds{tkString}), nullptr);
}

TEST_F(Fixture, StoredAndDefaults) {
  EXPECT_FALSE(IsStoredProp(control, "Hidden"));
  EXPECT_TRUE(IsStoredProp(control, "Left"));
  EXPECT_FALSE(IsStoredProp(control, "Name"));
  control->SetName("Edit1");
  control->FCaption = "Edit1";
  EXPECT_FALSE(IsStoredProp(control, "Caption"));
  control->FCaption = "Other";
  EXPECT_TRUE(IsStoredProp(control, "Caption"));

  auto isDefault = [&](const char* name) { return IsDefaultPropValue(control, GetPropInfo(control, name)); };
  EXPECT_FALSE(isDefault("Left"));  // no default: always written
  EXPECT_FALSE(GetPropInfo(control, "Left")->HasDefault());
  EXPECT_TRUE(isDefault("Width"));
  EXPECT_TRUE(isDefault("Visible"));
  EXPECT_TRUE(isDefault("Anchors"));
  EXPECT_TRUE(isDefault("Scale"));
  EXPECT_TRUE(isDefault("Short"));
  EXPECT_TRUE(isDefault("Count64"));
  EXPECT_TRUE(isDefault("Data"));
  EXPECT_TRUE(isDefault("OnClick"));
  EXPECT_TRUE(isDefault("Buddy"));
  control->FVisible = false;
  control->FScale = 1;
  control->FAnchors = {};
  EXPECT_FALSE(isDefault("Visible"));
  EXPECT_FALSE(isDefault("Scale"));
  EXPECT_FALSE(isDefault("Anchors"));
}

TEST_F(Fixture, PropertyValuesAsVariants) {
  SetPropValue(control, "Visible", Variant("0"));
  EXPECT_FALSE(control->FVisible);
  SetPropValue(control, "Visible", Variant("1"));
  EXPECT_TRUE(control->FVisible);
  SetPropValue(control, "Visible", Variant("False"));
  EXPECT_FALSE(control->FVisible);
  SetPropValue(control, "Visible", Variant(true));
  EXPECT_TRUE(control->FVisible);
  EXPECT_EQ(GetPropValue(control, "Visible").VarType(), varBoolean);

  SetPropValue(control, "Width", Variant("180"));
  EXPECT_EQ(control->FWidth, 180);
  EXPECT_EQ(GetPropValue(control, "Width"), Variant(180));
  SetPropValue(control, "Align", Variant("taRight"));
  EXPECT_EQ(control->FAlign, taRight);
  SetPropValue(control, "Align", Variant("2"));
  EXPECT_EQ(control->FAlign, taBottom);
  EXPECT_EQ(GetPropValue(control, "Align"), Variant("taBottom"));
  EXPECT_EQ(GetPropValue(control, "Align", false), Variant(2));
  SetPropValue(control, "Anchors", Variant("[akTop]"));
  EXPECT_EQ(control->FAnchors, TTestAnchors{akTop});
  EXPECT_EQ(GetPropValue(control, "Anchors"), Variant("akTop"));
  SetPropValue(control, "Scale", Variant("2.5"));
  EXPECT_EQ(control->FScale, 2.5);
  SetPropValue(control, "Stamp", Variant("2000-01-01 12:00"));
  EXPECT_EQ(control->FStamp.Value, 36526.5);
  EXPECT_EQ(GetPropValue(control, "Stamp").VarType(), varDate);
  SetPropValue(control, "Price", Variant("1.25"));
  EXPECT_EQ(control->FPrice.Scaled, 12500);
  EXPECT_EQ(GetPropValue(control, "Price").VarType(), varCurrency);
  SetPropValue(control, "Caption", Variant(12));
  EXPECT_EQ(control->FCaption, "12");
  SetPropValue(control, "Letter", Variant("q"));
  EXPECT_EQ(control->FLetter, 'q');
  SetPropValue(control, "Count64", Variant("-5"));
  EXPECT_EQ(control->FCount64, -5);

  EXPECT_EQ(MessageOf<EVariantError>([&] { SetPropValue(control, "Width", Variant("wide")); }), "Invalid variant type conversion");
  EXPECT_EQ(MessageOf<EVariantError>([&] { SetPropValue(control, "Visible", Variant("maybe")); }), "Invalid variant type conversion");
  EXPECT_EQ(MessageOf<EVariantError>([&] { SetPropValue(control, "Small", Variant(300)); }), "Invalid variant type conversion");
  EXPECT_EQ(MessageOf<EPropertyError>([&] { SetPropValue(control, "Align", Variant("taUp")); }), "Invalid property element: taUp");
  EXPECT_EQ(MessageOf<EPropertyError>([&] { SetPropValue(control, "Align", Variant(9)); }), "Invalid property element: 9");
  EXPECT_EQ(control->FWidth, 180);
  EXPECT_EQ(control->FAlign, taBottom);
}

TEST(ClassDescTest, PublishedFields) {
  TClass form = TTestForm::StaticClass();
  const TFieldInfo* f = form->FindField("label1");
  ASSERT_NE(f, nullptr);
  EXPECT_EQ(f->Name, "Label1");
  EXPECT_EQ(f->FieldClass(), TTestControl::StaticClass());
  EXPECT_EQ(form->FindField("Nothing"), nullptr);
  EXPECT_EQ(form->FindFieldClass("ttestbutton"), TTestButton::StaticClass());
  EXPECT_EQ(form->FindFieldClass("TTestTimer"), TTestTimer::StaticClass());
  EXPECT_EQ(form->FindFieldClass("TTestForm"), nullptr);

  TTestForm instance(nullptr);
  TTestButton button(nullptr);
  EXPECT_TRUE(form->FindField("Button1")->Set(&instance, &button));
  EXPECT_EQ(instance.Button1, &button);
  TTestTimer timer(nullptr);
  EXPECT_FALSE(form->FindField("Button1")->Set(&instance, &timer));
  EXPECT_EQ(instance.Button1, &button);
  EXPECT_EQ(form->FindField("Button1")->Get(&instance), &button);
}

TEST(ClassDescTest, PropertyLists) {
  auto all = GetPropList(TTestControl::StaticClass());
  EXPECT_EQ(all.size(), TTestControl::StaticClass()->Properties().size());
  auto methods = GetPropList(TTestControl::StaticClass(), tkMethods);
  ASSERT_EQ(methods.size(), 2u);
  EXPECT_EQ(methods[0]->Name, "OnClick");
  auto props = GetPropList(TTestControl::StaticClass(), tkProperties);
  EXPECT_EQ(props.size(), all.size() - 2);
  auto sorted = GetPropList(TTestControl::StaticClass(), tkAny, true);
  EXPECT_EQ(sorted.front()->Name, "Align");
  for (std::size_t i = 1; i < sorted.size(); ++i) EXPECT_LT(CompareText(sorted[i - 1]->Name, sorted[i]->Name), 0);
}
