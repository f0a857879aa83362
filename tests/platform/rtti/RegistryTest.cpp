#include "platform/rtti/Classes.h"
#include "tests/platform/rtti/TestClasses.h"

#include <gtest/gtest.h>

namespace {

class TOtherButton : public TComponent {
  LUMORA_CLASS(TOtherButton, TComponent)
public:
  explicit TOtherButton(TComponent* owner) : TComponent(owner) {}
};
LUMORA_CLASS_IMPL(TOtherButton) {}

// A second class that calls itself TTestButton, as a second package might.
class TTestButtonAgain : public TComponent {
  LUMORA_CLASS(TTestButtonAgain, TComponent)
public:
  explicit TTestButtonAgain(TComponent* owner) : TComponent(owner) {}
};
}  // namespace

TClass TTestButtonAgain::StaticClass() {
  static const TClassDesc desc{::rtti_detail::TDescTag<TTestButtonAgain>{}, "TTestButton"};
  return &desc;
}
void TTestButtonAgain::DescribeClass(TClassBuilder<TTestButtonAgain>&) {}

namespace {

struct RegistryTest : ::testing::Test {
  void SetUp() override { Clean(); }
  void TearDown() override { Clean(); }
  static void Clean() {
    for (TClass c : RegisteredClasses()) UnRegisterClass(c);
    SetCurrentModule(MainInstance);
  }
};

std::string Message(const std::function<void()>& f) {
  try {
    f();
  } catch (const Exception& e) {
    return e.Message();
  }
  return "(nothing raised)";
}

}  // namespace

TEST_F(RegistryTest, EmptyRegistryKnowsNothing) {
  EXPECT_EQ(GetClass("TTestButton"), nullptr);
  EXPECT_EQ(Message([] { FindClass("TTestButton"); }), "Class TTestButton not found");
  try {
    FindClass("TFoo");
    FAIL();
  } catch (const EClassNotFound& e) {
    EXPECT_EQ(e.Message(), "Class TFoo not found");
  }
}

TEST_F(RegistryTest, RegisteringAClassRegistersItsAncestorsUpToTPersistent) {
  RegisterClass(TTestButton::StaticClass());
  EXPECT_EQ(GetClass("TTestButton"), TTestButton::StaticClass());
  EXPECT_EQ(GetClass("ttestbutton"), TTestButton::StaticClass());
  EXPECT_EQ(FindClass("TTESTBUTTON"), TTestButton::StaticClass());
  EXPECT_EQ(GetClass("TTestControl"), TTestControl::StaticClass());
  EXPECT_EQ(GetClass("TComponent"), TComponent::StaticClass());
  EXPECT_EQ(GetClass("TPersistent"), TPersistent::StaticClass());
  EXPECT_EQ(GetClass("TObject"), nullptr);
  EXPECT_EQ(GetClass("TTestTimer"), nullptr);
  EXPECT_EQ(RegisteredClasses().front(), TTestButton::StaticClass());
  RegisterClass(TTestButton::StaticClass());  // again: nothing happens
  EXPECT_EQ(RegisteredClasses().size(), 4u);
}

TEST_F(RegistryTest, ASecondClassOfTheSameNameIsRefused) {
  RegisterClass(TTestButton::StaticClass());
  EXPECT_EQ(TTestButtonAgain::StaticClass()->ClassName(), "TTestButton");
  EXPECT_EQ(Message([] { RegisterClass(TTestButtonAgain::StaticClass()); }), "A class named TTestButton already exists");
  try {
    RegisterClass(TTestButtonAgain::StaticClass());
  } catch (const EFilerError&) {
    SUCCEED();
  }
  EXPECT_EQ(GetClass("TTestButton"), TTestButton::StaticClass());
}

TEST_F(RegistryTest, RegisterClassesAndUnregister) {
  RegisterClasses({TTestButton::StaticClass(), TTestTimer::StaticClass(), TOtherButton::StaticClass()});
  EXPECT_EQ(GetClass("TOtherButton"), TOtherButton::StaticClass());
  UnRegisterClass(TTestButton::StaticClass());
  EXPECT_EQ(GetClass("TTestButton"), nullptr);
  EXPECT_EQ(GetClass("TTestControl"), TTestControl::StaticClass());
  UnRegisterClasses({TTestTimer::StaticClass(), TOtherButton::StaticClass()});
  EXPECT_EQ(GetClass("TTestTimer"), nullptr);
  EXPECT_EQ(GetClass("TOtherButton"), nullptr);
}

TEST_F(RegistryTest, EachRegistrationRemembersItsModule) {
  const HMODULE package = 0x1234;
  EXPECT_EQ(CurrentModule(), MainInstance);
  RegisterClass(TTestTimer::StaticClass());
  {
    TModuleScope scope(package);
    EXPECT_EQ(CurrentModule(), package);
    RegisterClass(TTestButton::StaticClass());
  }
  EXPECT_EQ(CurrentModule(), MainInstance);
  EXPECT_EQ(FindClassHInstance("TTestButton"), package);
  EXPECT_EQ(TTestButton::StaticClass()->Module(), package);
  EXPECT_EQ(FindClassHInstance("TTestTimer"), MainInstance);
  // The ancestors the timer registered stay with the program.
  EXPECT_EQ(FindClassHInstance("TComponent"), MainInstance);
  EXPECT_EQ(FindClassHInstance("TTestControl"), package);

  UnRegisterModuleClasses(package);
  EXPECT_EQ(GetClass("TTestButton"), nullptr);
  EXPECT_EQ(GetClass("TTestControl"), nullptr);
  EXPECT_EQ(GetClass("TTestTimer"), TTestTimer::StaticClass());
  EXPECT_EQ(GetClass("TComponent"), TComponent::StaticClass());
  EXPECT_EQ(TTestButton::StaticClass()->Module(), MainInstance);

  const HMODULE previous = SetCurrentModule(package);
  EXPECT_EQ(previous, MainInstance);
  RegisterClass(TTestButton::StaticClass());
  SetCurrentModule(previous);
  EXPECT_EQ(FindClassHInstance("TTestButton"), package);
}

TEST_F(RegistryTest, Aliases) {
  RegisterClassAlias(TTestButton::StaticClass(), "TOldButton");
  EXPECT_EQ(GetClass("toldbutton"), TTestButton::StaticClass());
  EXPECT_EQ(GetClass("TTestButton"), nullptr);
  UnRegisterClass(TTestButton::StaticClass());
  EXPECT_EQ(GetClass("TOldButton"), nullptr);
}

TEST_F(RegistryTest, AnAncestorAnotherModuleStillNeedsStaysRegistered) {
  const HMODULE first = 0x1000, second = 0x2000;
  {
    TModuleScope scope(first);
    RegisterClass(TTestButton::StaticClass());  // and TTestControl, TComponent, TPersistent
  }
  {
    TModuleScope scope(second);
    RegisterClass(TTestForm::StaticClass());  // its ancestors are registered already
  }
  UnRegisterModuleClasses(first);
  EXPECT_EQ(GetClass("TTestButton"), nullptr);
  EXPECT_EQ(GetClass("TTestForm"), TTestForm::StaticClass());
  EXPECT_EQ(GetClass("TTestControl"), TTestControl::StaticClass());
  EXPECT_EQ(FindClassHInstance("TTestControl"), second);
  EXPECT_EQ(FindClassHInstance("TComponent"), second);
  UnRegisterModuleClasses(second);
  EXPECT_TRUE(RegisteredClasses().empty());
}

TEST_F(RegistryTest, UnloadProceduresAreToldBeforeAModulesClassesLeave) {
  const HMODULE package = 0x1234;
  {
    TModuleScope scope(package);
    RegisterClass(TTestButton::StaticClass());
  }
  std::vector<std::string> told;
  const int id = AddModuleUnloadProc([&](HMODULE m) {
    told.push_back(std::to_string(m) + (GetClass("TTestButton") ? " registered" : " gone") + " " +
                   std::to_string(TTestButton::StaticClass()->Module()));
  });
  UnRegisterModuleClasses(package);
  // A module without registrations tells nobody.
  UnRegisterModuleClasses(package);
  UnRegisterModuleClasses(0x9999);
  RemoveModuleUnloadProc(id);
  {
    TModuleScope scope(package);
    RegisterClass(TTestButton::StaticClass());
  }
  UnRegisterModuleClasses(package);
  EXPECT_EQ(told, std::vector<std::string>{"4660 registered 4660"});
}
