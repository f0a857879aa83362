// Windows of the program read their layouts: components from the window's published
// fields, handlers bound by name, an ancestor's layout first and the inherited one over it.

#include "foundation/joLayout.h"
#include "platform/rtti/ClassBuilder.h"
#include "platform/rtti/Classes.h"
#include "resources/Resources.h"
#include "tests/support/Errors.h"

#include <gtest/gtest.h>

namespace {

class TLayoutPart : public TComponent {
  LUMORA_CLASS(TLayoutPart, TComponent)
public:
  explicit TLayoutPart(TComponent* owner) : TComponent(owner) {}
  std::string FCaption;
  int FTag2 = 0;
  TNotifyEvent OnClick;
};

class TLayoutBase : public TComponent {
  LUMORA_CLASS(TLayoutBase, TComponent)
public:
  explicit TLayoutBase(TComponent* owner) : TComponent(owner) {}
  void PartClick(TObject*) { ++Clicks; }
  TLayoutPart* Part1 = nullptr;
  int Clicks = 0;
};

class TLayoutDerived : public TLayoutBase {
  LUMORA_CLASS(TLayoutDerived, TLayoutBase)
public:
  explicit TLayoutDerived(TComponent* owner) : TLayoutBase(owner) {}
  void ExtraClick(TObject*) { Clicks += 10; }
  TLayoutPart* Part2 = nullptr;
};

class TLayoutNone : public TComponent {
  LUMORA_CLASS(TLayoutNone, TComponent)
public:
  explicit TLayoutNone(TComponent* owner) : TComponent(owner) {}
};

class TLayoutBroken : public TComponent {
  LUMORA_CLASS(TLayoutBroken, TComponent)
public:
  explicit TLayoutBroken(TComponent* owner) : TComponent(owner) {}
  TLayoutPart* Part1 = nullptr;
};

}  // namespace

LUMORA_CLASS_IMPL(TLayoutPart) {
  c.Property("Caption", &TLayoutPart::FCaption, &TLayoutPart::FCaption);
  c.Property("Tag2", &TLayoutPart::FTag2, &TLayoutPart::FTag2).Default(0);
  c.Property("OnClick", &TLayoutPart::OnClick, &TLayoutPart::OnClick);
}
LUMORA_CLASS_IMPL(TLayoutBase) {
  c.Field("Part1", &TLayoutBase::Part1);
  c.Method<&TLayoutBase::PartClick>("PartClick");
}
LUMORA_CLASS_IMPL(TLayoutDerived) {
  c.Field("Part2", &TLayoutDerived::Part2);
  c.Method<&TLayoutDerived::ExtraClick>("ExtraClick");
}
LUMORA_CLASS_IMPL(TLayoutNone) {}
LUMORA_CLASS_IMPL(TLayoutBroken) { c.Field("Part1", &TLayoutBroken::Part1); }

namespace {

struct LayoutTest : ::testing::Test {
  static void SetUpTestSuite() {
    AddLayout("TLayoutBase",
              "object LayoutBase: TLayoutBase\n"
              "  object Part1: TLayoutPart\n"
              "    Caption = 'First'\n"
              "    OnClick = PartClick\n"
              "  end\n"
              "end\n");
    AddLayout("TLayoutDerived",
              "inherited LayoutDerived: TLayoutDerived\n"
              "  inherited Part1: TLayoutPart\n"
              "    Tag2 = 7\n"
              "  end\n"
              "  object Part2: TLayoutPart\n"
              "    Caption = 'Second'\n"
              "    OnClick = ExtraClick\n"
              "  end\n"
              "end\n");
    AddLayout("TLayoutBroken",
              "object LayoutBroken: TLayoutBroken\n"
              "  object Part1: TLayoutPart\n"
              "    OnClick = NoSuchHandler\n"
              "  end\n"
              "end\n");
  }
};

TEST_F(LayoutTest, ReadsComponentsFromFieldsAndBindsHandlers) {
  TLayoutBase form(nullptr);
  EXPECT_EQ(ReadLayouts(&form), 1);
  ASSERT_NE(form.Part1, nullptr);
  EXPECT_EQ(form.Part1->FCaption, "First");
  EXPECT_EQ(form.Name(), "LayoutBase");
  ASSERT_TRUE(form.Part1->OnClick);
  form.Part1->OnClick(form.Part1);
  EXPECT_EQ(form.Clicks, 1);
}

TEST_F(LayoutTest, InheritedLayoutReadsOverItsAncestors) {
  TLayoutDerived form(nullptr);
  EXPECT_EQ(ReadLayouts(&form), 2);
  EXPECT_EQ(form.ComponentCount(), 2);
  ASSERT_NE(form.Part1, nullptr);
  ASSERT_NE(form.Part2, nullptr);
  EXPECT_EQ(form.Part1->FCaption, "First");
  EXPECT_EQ(form.Part1->FTag2, 7);
  EXPECT_EQ(form.Part2->FCaption, "Second");
  form.Part1->OnClick(form.Part1);
  form.Part2->OnClick(form.Part2);
  EXPECT_EQ(form.Clicks, 11);
  EXPECT_EQ(form.Name(), "LayoutDerived");
}

TEST_F(LayoutTest, ClassWithoutLayoutReadsNothing) {
  TLayoutNone form(nullptr);
  EXPECT_EQ(ReadLayouts(&form), 0);
  EXPECT_EQ(form.ComponentCount(), 0);
}

TEST_F(LayoutTest, MissingHandlerIsAnError) {
  TLayoutBroken form(nullptr);
  EXPECT_EQ(lumora::test::MessageOf<Exception>([&] { ReadLayouts(&form); }), "Error reading Part1.OnClick: Method NoSuchHandler not found");
}

}  // namespace
