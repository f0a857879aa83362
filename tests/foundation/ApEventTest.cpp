#include "foundation/ApEvent.h"

#include "platform/rtti/ClassBuilder.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

namespace {

std::vector<std::string> Log;

class TIdleTarget : public TComponent {
  LUMORA_CLASS(TIdleTarget, TComponent)
public:
  explicit TIdleTarget(TComponent* owner, std::string tag = "") : TComponent(owner), FTag(std::move(tag)) {}
  void Idle(std::intptr_t param) { Log.push_back(FTag + ":" + std::to_string(param)); }
  std::string FTag;
};

// Every test starts from a program that has neither idle chain nor queued errors.
class ApEventTest : public ::testing::Test {
protected:
  void SetUp() override {
    FinalizeApEvent();
    ShowErrorHook = nullptr;
    FSavedBox = DefaultErrorBox;
    DefaultErrorBox = nullptr;
    Log.clear();
  }
  void TearDown() override {
    FinalizeApEvent();
    ShowErrorHook = nullptr;
    DefaultErrorBox = FSavedBox;
  }
  // The texts shown, one per report.
  std::vector<std::string> Shown;
  void CatchReports() {
    ShowErrorHook = [this](const std::string& text) { Shown.push_back(text); };
  }

private:
  TShowErrorProc FSavedBox;
};

}  // namespace

LUMORA_CLASS_IMPL(TIdleTarget) {}

TEST_F(ApEventTest, DoIdleRunsOneEntryPerCallAndAnEmptyStepPerRound) {
  TIdleTarget a(nullptr, "a"), b(nullptr, "b"), c(nullptr, "c");
  TjoOnIdleChain chain(nullptr);
  EXPECT_EQ(chain.Current(), -1);
  chain.AddMethod<&TIdleTarget::Idle>(&a, 0, 0);
  chain.AddMethod<&TIdleTarget::Idle>(&b, 1, 0);
  chain.AddMethod<&TIdleTarget::Idle>(&c, 2, 0);
  std::vector<std::string> steps;
  for (int i = 0; i < 6; ++i) {
    Log.clear();
    chain.DoIdle();
    steps.push_back(Log.empty() ? "nothing" : Log[0]);
    EXPECT_LE(Log.size(), 1u);
  }
  EXPECT_EQ(steps, (std::vector<std::string>{"a:0", "b:1", "c:2", "nothing", "a:0", "b:1"}));
}

TEST_F(ApEventTest, PrioritiesZeroFiveZeroRunFiveFirst) {
  TIdleTarget a(nullptr, "first0"), b(nullptr, "five"), c(nullptr, "second0");
  RegisterIdle<&TIdleTarget::Idle>(&a, 0, 0);
  RegisterIdle<&TIdleTarget::Idle>(&b, 5, 0);
  RegisterIdle<&TIdleTarget::Idle>(&c, 0, 0);
  for (int i = 0; i < 4; ++i) DoApplicationIdle();
  EXPECT_EQ(Log, (std::vector<std::string>{"five:0", "first0:0", "second0:0"}));
}

TEST_F(ApEventTest, RegisterAndUnregisterTheApplicationsIdleRoutines) {
  EXPECT_EQ(ApplicationIdleChain(), nullptr);
  TIdleTarget a(nullptr, "a");
  UnregisterIdle<&TIdleTarget::Idle>(&a, 0);  // no chain yet: nothing happens
  DoApplicationIdle();
  EXPECT_EQ(ApplicationIdleChain(), nullptr);
  RegisterIdle<&TIdleTarget::Idle>(&a, 0, 42);
  ASSERT_NE(ApplicationIdleChain(), nullptr);
  DoApplicationIdle();
  EXPECT_EQ(Log, (std::vector<std::string>{"a:42"}));
  UnregisterIdle<&TIdleTarget::Idle>(&a, 42);
  EXPECT_EQ(ApplicationIdleChain()->Count(), 0);
  // A priority beyond 8 bits is taken as a signed 8-bit value.
  RegisterIdle(MakeMethod<&TIdleTarget::Idle>(&a), 300, 1);
  EXPECT_EQ(ApplicationIdleChain()->Entry(0).Priority, 44);
}

TEST_F(ApEventTest, AnIdleComponentLeavesWhenItIsDestroyed) {
  auto* a = new TIdleTarget(nullptr, "a");
  RegisterIdle<&TIdleTarget::Idle>(a, 0, 0);
  delete a;
  EXPECT_EQ(ApplicationIdleChain()->Count(), 0);
  DoApplicationIdle();
  EXPECT_TRUE(Log.empty());
}

TEST_F(ApEventTest, AnEntryMayLeaveWhileItRuns) {
  int runs = 0;
  TjoIdleProc self;
  self = TjoIdleProc([&](std::intptr_t) {
    ++runs;
    UnregisterIdle(self, 0);
  });
  RegisterIdle(self, 0, 0);
  DoApplicationIdle();
  DoApplicationIdle();
  DoApplicationIdle();
  EXPECT_EQ(runs, 1);
  EXPECT_EQ(ApplicationIdleChain()->Count(), 0);
}

TEST_F(ApEventTest, ErrorsOfAnIdleRoutineReachTheCaller) {
  RegisterIdle(TjoIdleProc([](std::intptr_t) { throw EReadError("broken"); }), 0, 0);
  EXPECT_THROW(DoApplicationIdle(), EReadError);
}

TEST_F(ApEventTest, IdenticalTextsAreQueuedOnce) {
  CatchReports();
  EXPECT_EQ(DeferError("Class TButton not found"), 0);
  EXPECT_EQ(DeferError("Class TButton not found"), 0);
  ASSERT_NE(DeferredErrors(), nullptr);
  EXPECT_EQ(DeferredErrors()->Count(), 1);
  EXPECT_EQ(reinterpret_cast<std::intptr_t>(DeferredErrors()->Objects(0)), 2);
  // The report joined the idle chain with priority 0 and parameter 0.
  ASSERT_EQ(ApplicationIdleChain()->Count(), 1);
  EXPECT_EQ(ApplicationIdleChain()->Entry(0).Priority, 0);
  EXPECT_EQ(ApplicationIdleChain()->GetParam(0), 0);
  DoApplicationIdle();
  EXPECT_EQ(Shown, (std::vector<std::string>{"Class TButton not found"}));
  EXPECT_EQ(DeferredErrors()->Count(), 0);
}

TEST_F(ApEventTest, DifferentTextsMakeOneBoxWithOneLineEach) {
  CatchReports();
  DeferError("first");
  DeferError("second");
  EXPECT_EQ(DeferError("third"), 2);
  DeferError("second");
  DoApplicationIdle();
  EXPECT_EQ(Shown, (std::vector<std::string>{"first\nsecond\nthird"}));
  // Nothing queued: the next round shows nothing.
  DoApplicationIdle();
  DoApplicationIdle();
  EXPECT_EQ(Shown.size(), 1u);
  // A text shown before may come again at the next report.
  DeferError("first");
  DoApplicationIdle();
  DoApplicationIdle();
  EXPECT_EQ(Shown, (std::vector<std::string>{"first\nsecond\nthird", "first"}));
}

TEST_F(ApEventTest, TheQueueIsEmptiedBeforeTheTextIsShown) {
  ShowErrorHook = [this](const std::string& text) {
    Shown.push_back(text);
    EXPECT_EQ(DeferredErrors()->Count(), 0);
    if (Shown.size() == 1) DeferError("while showing");
  };
  DeferError("one");
  DoApplicationIdle();
  DoApplicationIdle();  // the empty step of the round
  DoApplicationIdle();
  EXPECT_EQ(Shown, (std::vector<std::string>{"one", "while showing"}));
}

TEST_F(ApEventTest, WithoutAReplacementTheDefaultBoxShowsTheText) {
  std::vector<std::string> boxed;
  DefaultErrorBox = [&](const std::string& text) { boxed.push_back(text); };
  DeferError("a");
  DeferError("b");
  DoApplicationIdle();
  EXPECT_EQ(boxed, (std::vector<std::string>{"a\nb"}));
  // The replacement, once installed, takes precedence.
  CatchReports();
  DeferError("c");
  DoApplicationIdle();
  DoApplicationIdle();
  EXPECT_EQ(boxed.size(), 1u);
  EXPECT_EQ(Shown, (std::vector<std::string>{"c"}));
}

TEST_F(ApEventTest, WithoutAnyDisplayTheTextGoesToStandardError) {
  DeferError("nobody listens");
  testing::internal::CaptureStderr();
  DoApplicationIdle();
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "Error: nobody listens\n");
}

TEST_F(ApEventTest, ExceptionsAreQueuedByTheirMessage) {
  CatchReports();
  DeferException(std::make_exception_ptr(EClassNotFound("Class TFoo not found")));
  DeferException(std::make_exception_ptr(std::runtime_error("plain failure")));
  DeferException(std::make_exception_ptr(42));
  DeferException(std::exception_ptr());
  DeferException(EReadError("Error reading Form1.Caption"));
  DoApplicationIdle();
  EXPECT_EQ(Shown, (std::vector<std::string>{
                       "Class TFoo not found\nplain failure\nUnknown error\nError reading Form1.Caption"}));
}

TEST_F(ApEventTest, FinalizingLeavesNothing) {
  DeferError("x");
  RegisterIdle(MakeProc<&ShowDeferredErrors>(), 3, 0);
  FinalizeApEvent();
  EXPECT_EQ(DeferredErrors(), nullptr);
  EXPECT_EQ(ApplicationIdleChain(), nullptr);
  DoApplicationIdle();  // harmless
  ShowDeferredErrors(0);
}

TEST_F(ApEventTest, AQueueChangedFromOutsideStillKeepsEachTextOnce) {
  CatchReports();
  DeferError("a");
  DeferError("b");
  DeferredErrors()->Delete(0);
  EXPECT_EQ(DeferError("b"), 0);
  EXPECT_EQ(DeferError("a"), 1);
  DeferredErrors()->Clear();
  EXPECT_EQ(DeferError("b"), 0);
  for (int i = 0; i < 5000; ++i) DeferError("error " + std::to_string(i % 2500));
  EXPECT_EQ(DeferredErrors()->Count(), 2501);
  DoApplicationIdle();
  ASSERT_EQ(Shown.size(), 1u);
  EXPECT_EQ(Shown[0].substr(0, 10), "b\nerror 0\n");
}
