#include "platform/rtti/Classes.h"
#include "tests/platform/rtti/TestClasses.h"

#include "tests/support/Errors.h"

#include <gtest/gtest.h>

#include <memory>

using lumora::test::MessageOf;

namespace {

// Records what it hears.
class TListener : public TComponent {
  LUMORA_CLASS(TListener, TComponent)
public:
  explicit TListener(TComponent* owner) : TComponent(owner) {}
  ~TListener() override { Destroying(); }
  void Notification(TComponent* component, TOperation operation) override {
    TComponent::Notification(component, operation);
    const std::string line = (operation == opInsert ? "insert " : "remove ") + component->Name();
    Heard.push_back(line);
    if (Log) Log->push_back(Name() + ": " + line);
  }
  std::vector<std::string> Heard;
  std::vector<std::string>* Log = nullptr;
};
LUMORA_CLASS_IMPL(TListener) {}

// Counts its destructions.
class TCounted : public TComponent {
  LUMORA_CLASS(TCounted, TComponent)
public:
  TCounted(TComponent* owner, int* counter) : TComponent(owner), FCounter(counter) {}
  ~TCounted() override { ++*FCounter; }

private:
  int* FCounter;
};
LUMORA_CLASS_IMPL(TCounted) {}

}  // namespace

TEST(ComponentTest, TheOwnerKeepsAndFreesWhatItOwns) {
  int freed = 0;
  auto* owner = new TComponent(nullptr);
  auto* a = new TCounted(owner, &freed);
  auto* b = new TCounted(owner, &freed);
  new TCounted(b, &freed);
  EXPECT_EQ(owner->ComponentCount(), 2);
  EXPECT_EQ(owner->Components(0), a);
  EXPECT_EQ(owner->Components(1), b);
  EXPECT_EQ(a->Owner(), owner);
  EXPECT_EQ(a->ComponentIndex(), 0);
  EXPECT_EQ(b->ComponentIndex(), 1);
  EXPECT_EQ(owner->ComponentIndex(), -1);
  EXPECT_EQ(MessageOf<EListError>([&] { owner->Components(2); }), "List index out of bounds (2)");
  EXPECT_EQ(MessageOf<EListError>([&] { owner->Components(-1); }), "List index out of bounds (-1)");
  delete owner;
  EXPECT_EQ(freed, 3);
}

TEST(ComponentTest, AFreedComponentLeavesItsOwner) {
  TComponent owner(nullptr);
  auto* a = new TComponent(&owner);
  auto* b = new TComponent(&owner);
  delete a;
  EXPECT_EQ(owner.ComponentCount(), 1);
  EXPECT_EQ(owner.Components(0), b);
}

TEST(ComponentTest, NamesAreIdentifiersUniqueInAnyCase) {
  TComponent owner(nullptr);
  auto* a = new TComponent(&owner);
  auto* b = new TComponent(&owner);
  a->SetName("Button1");
  EXPECT_EQ(owner.FindComponent("button1"), a);
  EXPECT_EQ(owner.FindComponent(""), nullptr);
  EXPECT_EQ(owner.FindComponent("Button2"), nullptr);
  EXPECT_EQ(MessageOf<EComponentError>([&] { b->SetName("BUTTON1"); }), "A component named BUTTON1 already exists");
  EXPECT_EQ(b->Name(), "");
  EXPECT_EQ(MessageOf<EComponentError>([&] { b->SetName("1Button"); }), "'1Button' is not a valid component name");
  EXPECT_EQ(MessageOf<EComponentError>([&] { b->SetName("Button 2"); }), "'Button 2' is not a valid component name");
  EXPECT_EQ(MessageOf<EComponentError>([&] { b->SetName("Ok.Cancel"); }), "'Ok.Cancel' is not a valid component name");
  b->SetName("_Button2");
  a->SetName("BUTTON1");  // the same name in another case is no clash
  EXPECT_EQ(a->Name(), "BUTTON1");
  a->SetName("");
  b->SetName("");  // several unnamed components are fine
  EXPECT_TRUE(IsValidIdent("a1_"));
  EXPECT_FALSE(IsValidIdent(""));
  EXPECT_FALSE(IsValidIdent("\xE9t\xE9"));
}

TEST(ComponentTest, InsertingADuplicateNameIsRefused) {
  TComponent owner(nullptr);
  auto* a = new TComponent(&owner);
  a->SetName("Edit1");
  TComponent other(nullptr);
  auto* b = new TComponent(&other);
  b->SetName("edit1");
  EXPECT_EQ(MessageOf<EComponentError>([&] { owner.InsertComponent(b); }), "A component named edit1 already exists");
  EXPECT_EQ(b->Owner(), &other);
  b->SetName("Edit2");
  owner.InsertComponent(b);
  EXPECT_EQ(b->Owner(), &owner);
  EXPECT_EQ(other.ComponentCount(), 0);
  owner.RemoveComponent(b);
  EXPECT_EQ(b->Owner(), nullptr);
  EXPECT_EQ(owner.ComponentCount(), 1);
  delete b;
}

TEST(ComponentTest, ComponentIndexMovesWithinTheOwner) {
  TComponent owner(nullptr);
  auto* a = new TComponent(&owner);
  auto* b = new TComponent(&owner);
  auto* c = new TComponent(&owner);
  c->SetComponentIndex(0);
  EXPECT_EQ(owner.Components(0), c);
  EXPECT_EQ(owner.Components(1), a);
  a->SetComponentIndex(99);
  EXPECT_EQ(owner.Components(2), a);
  EXPECT_EQ(b->ComponentIndex(), 1);
}

TEST(ComponentTest, AComponentNamedLikeAFieldOfItsOwnerIsStoredThere) {
  TTestForm form(nullptr);
  auto* button = new TTestButton(&form);
  EXPECT_EQ(form.Button1, nullptr);
  button->SetName("Button1");
  EXPECT_EQ(form.Button1, button);
  button->SetName("OkButton");
  EXPECT_EQ(form.Button1, nullptr);
  button->SetName("button1");
  EXPECT_EQ(form.Button1, button);
  // A component of the wrong class leaves the field alone.
  auto* timer = new TTestTimer(&form);
  timer->SetName("Label1");
  EXPECT_EQ(form.Label1, nullptr);
  delete button;
  EXPECT_EQ(form.Button1, nullptr);
  // Joining through InsertComponent sets it too.
  auto* label = new TTestControl(nullptr);
  label->SetName("Timer1");
  EXPECT_EQ(MessageOf<EComponentError>([&] { form.InsertComponent(label); }), "(nothing raised)");
  EXPECT_EQ(form.Timer1, nullptr);  // wrong class again
  auto* timer2 = new TTestTimer(nullptr);
  label->SetName("Label2");
  timer2->SetName("Timer1");
  form.InsertComponent(timer2);
  EXPECT_EQ(form.Timer1, timer2);
  form.RemoveComponent(timer2);
  EXPECT_EQ(form.Timer1, nullptr);
  delete timer2;
}

TEST(ComponentTest, WhoeverAskedHearsOfADestruction) {
  TListener listener(nullptr);
  listener.SetName("Listener");
  auto* watched = new TComponent(nullptr);
  watched->SetName("Watched");
  watched->FreeNotification(&listener);
  EXPECT_TRUE(watched->ComponentState().Contains(csFreeNotification));
  delete watched;
  ASSERT_EQ(listener.Heard.size(), 1u);
  EXPECT_EQ(listener.Heard[0], "remove Watched");

  // Both ways: the watched component hears of the listener too.
  auto* second = new TListener(nullptr);
  second->SetName("Second");
  auto* third = new TListener(nullptr);
  third->SetName("Third");
  second->FreeNotification(third);
  delete third;
  ASSERT_EQ(second->Heard.size(), 1u);
  EXPECT_EQ(second->Heard[0], "remove Third");
  delete second;

  // After RemoveFreeNotification nobody is told.
  auto* quiet = new TComponent(nullptr);
  quiet->SetName("Quiet");
  quiet->FreeNotification(&listener);
  quiet->RemoveFreeNotification(&listener);
  delete quiet;
  EXPECT_EQ(listener.Heard.size(), 1u);
}

TEST(ComponentTest, ReferencesAcrossOwnersAreCleared) {
  TTestControl a(nullptr);
  auto* b = new TTestControl(nullptr);
  a.SetBuddy(b);
  delete b;
  EXPECT_EQ(a.Buddy(), nullptr);
  auto* c = new TTestControl(nullptr);
  c->SetBuddy(&a);
  delete c;  // a's list must not keep c
  TTestControl d(nullptr);
  d.SetBuddy(&a);
}

TEST(ComponentTest, TheOwnerPassesNewsToEverythingItOwns) {
  TComponent owner(nullptr);
  auto* listener = new TListener(&owner);
  auto* a = new TComponent(nullptr);
  a->SetName("A");
  owner.InsertComponent(a);
  ASSERT_EQ(listener->Heard.size(), 1u);
  EXPECT_EQ(listener->Heard[0], "insert A");
  delete a;
  ASSERT_EQ(listener->Heard.size(), 2u);
  EXPECT_EQ(listener->Heard[1], "remove A");
  auto* b = new TComponent(&owner);
  b->SetName("B");
  owner.DestroyComponents();
  EXPECT_EQ(owner.ComponentCount(), 0);
}

TEST(ComponentTest, DestroyComponentsFreesLastFirstAndTellsTheRest) {
  std::vector<std::string> log;
  int freed = 0;
  TComponent owner(nullptr);
  auto* listener = new TListener(&owner);
  listener->SetName("L");
  listener->Log = &log;
  auto* a = new TCounted(&owner, &freed);
  a->SetName("A");
  auto* b = new TCounted(&owner, &freed);
  b->SetName("B");
  EXPECT_EQ(log, (std::vector<std::string>{"L: insert ", "L: insert "}));  // unnamed when they joined
  log.clear();
  owner.DestroyComponents();
  EXPECT_EQ(owner.ComponentCount(), 0);
  EXPECT_EQ(freed, 2);
  EXPECT_EQ(log, (std::vector<std::string>{"L: remove B", "L: remove A", "L: remove L"}));
}

TEST(ComponentTest, ADestroyingOwnerDoesNotBroadcast) {
  std::vector<std::string> log;
  auto* owner = new TComponent(nullptr);
  auto* listener = new TListener(owner);
  listener->SetName("L");
  listener->Log = &log;
  (new TComponent(owner))->SetName("A");
  log.clear();
  delete owner;
  EXPECT_TRUE(log.empty());
}

TEST(ComponentTest, StateFlags) {
  TComponent owner(nullptr);
  auto* child = new TComponent(&owner);
  auto* grandchild = new TComponent(child);
  owner.SetDesigning(true);
  EXPECT_TRUE(child->ComponentState().Contains(csDesigning));
  EXPECT_TRUE(grandchild->ComponentState().Contains(csDesigning));
  auto* late = new TComponent(&owner);
  EXPECT_TRUE(late->ComponentState().Contains(csDesigning));  // joins a designing owner
  owner.SetDesigning(false, false);
  EXPECT_FALSE(owner.ComponentState().Contains(csDesigning));
  EXPECT_TRUE(child->ComponentState().Contains(csDesigning));
  owner.SetDesigning(false);
  EXPECT_FALSE(grandchild->ComponentState().Contains(csDesigning));

  owner.IncludeState(csLoading);
  EXPECT_TRUE(owner.ComponentState().Contains(csLoading));
  owner.Loaded();
  EXPECT_FALSE(owner.ComponentState().Contains(csLoading));
  owner.Updating();
  EXPECT_TRUE(owner.ComponentState().Contains(csUpdating));
  owner.Updated();
  EXPECT_FALSE(owner.ComponentState().Contains(csUpdating));
  owner.SetAncestor(true);
  EXPECT_TRUE(grandchild->ComponentState().Contains(csAncestor));
  owner.SetInline(true);
  EXPECT_TRUE(owner.ComponentState().Contains(csInline));
  owner.Destroying();
  EXPECT_TRUE(grandchild->ComponentState().Contains(csDestroying));
}

TEST(ComponentTest, TagNameAndDesignInfoArePublishedOrKept) {
  TComponent c(nullptr);
  SetOrdProp(&c, "Tag", 17);
  EXPECT_EQ(c.Tag(), 17);
  SetStrProp(&c, "Name", "Comp1");
  EXPECT_EQ(c.Name(), "Comp1");
  EXPECT_EQ(MessageOf<EComponentError>([&] { SetStrProp(&c, "Name", "no good"); }), "'no good' is not a valid component name");
  EXPECT_FALSE(IsStoredProp(&c, "Name"));
  EXPECT_EQ(GetPropInfo(&c, "Tag")->Default, 0);
  c.SetDesignInfo((20 << 16) | 10);
  EXPECT_EQ(c.DesignInfo() & 0xFFFF, 10);
  EXPECT_EQ(c.DesignInfo() >> 16, 20);
  EXPECT_EQ(c.GetNamePath(), "Comp1");
  EXPECT_EQ(c.GetOwner(), nullptr);
}

TEST(ComponentTest, ParentHooksOfThePlainComponent) {
  TComponent c(nullptr);
  EXPECT_FALSE(c.HasParent());
  EXPECT_EQ(c.GetParentComponent(), nullptr);
  EXPECT_EQ(c.GetChildOwner(), nullptr);
  EXPECT_EQ(c.GetChildParent(), &c);
  int children = 0;
  c.GetChildren([&](TComponent*) { ++children; }, &c);
  EXPECT_EQ(children, 0);
}
