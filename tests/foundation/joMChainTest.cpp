#include "foundation/joMChain.h"

#include "platform/rtti/ClassBuilder.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace {

std::vector<std::string> Log;

class TTarget : public TComponent {
  LUMORA_CLASS(TTarget, TComponent)
public:
  explicit TTarget(TComponent* owner, std::string tag = "") : TComponent(owner), FTag(std::move(tag)) {}
  void Tick(std::intptr_t param) { Log.push_back(FTag + ":" + std::to_string(param)); }
  void Tock(std::intptr_t param) { Log.push_back(FTag + " tock:" + std::to_string(param)); }
  std::string FTag;
};

// A chain that counts its changes.
class TCountingChain : public TCustomMethodChain {
public:
  using TCustomMethodChain::TCustomMethodChain;
  int Changes = 0;

protected:
  void ChainChanged() override { ++Changes; }
};

void Plain(std::intptr_t param) {
  Log.push_back("plain:" + std::to_string(param));
}

TMethodCode TickCode() { return MethodCode<&TTarget::Tick>(); }
TMethodCode TockCode() { return MethodCode<&TTarget::Tock>(); }

void Run(const TCustomMethodChain& chain, int index) {
  TEvent<void(std::intptr_t)>(chain.GetMethod(index))(chain.GetParam(index));
}

std::vector<std::string> RunAll(const TCustomMethodChain& chain) {
  Log.clear();
  for (int i = 0; i < chain.Count(); ++i) Run(chain, i);
  return Log;
}

std::string ErrorText(const std::function<void()>& f) {
  try {
    f();
  } catch (const Exception& e) {
    return e.Message();
  }
  return "(no error)";
}

}  // namespace

LUMORA_CLASS_IMPL(TTarget) {}

TEST(joMChain, AStartingChainIsActiveAndEmpty) {
  TCustomMethodChain chain(nullptr);
  EXPECT_TRUE(chain.Active());
  EXPECT_EQ(chain.Count(), 0);
  EXPECT_EQ(chain.Items(), nullptr);
  EXPECT_EQ(chain.GetParam(3), 0);
  TMethod bad = chain.GetMethod(0);
  EXPECT_EQ(bad.Data, nullptr);
  EXPECT_EQ(ErrorText([&] { TEvent<void(std::intptr_t)>{bad}(0); }), "Calling BadMethod !!!");
}

TEST(joMChain, TheSameEntryTwiceIsCountedNotRepeated) {
  TTarget a(nullptr, "a");
  TCustomMethodChain chain(nullptr);
  EXPECT_TRUE(chain.Add(&a, TickCode(), 7, 0));
  EXPECT_TRUE(chain.Add(&a, TickCode(), 7, 0));
  ASSERT_EQ(chain.Count(), 1);
  EXPECT_EQ(chain.Entry(0).RefCount, 2);
  EXPECT_TRUE(chain.Remove(&a, TickCode(), 7));
  ASSERT_EQ(chain.Count(), 1);
  EXPECT_EQ(chain.Entry(0).RefCount, 1);
  EXPECT_TRUE(chain.Remove(&a, TickCode(), 7));
  EXPECT_EQ(chain.Count(), 0);
  EXPECT_EQ(chain.Items(), nullptr);  // freed with the last entry
  EXPECT_FALSE(chain.Remove(&a, TickCode(), 7));
}

TEST(joMChain, HigherPrioritiesComeFirstAndEqualOnesInTheirOrder) {
  TTarget a(nullptr, "a"), b(nullptr, "b"), c(nullptr, "c");
  TCustomMethodChain chain(nullptr);
  chain.Add(&a, TickCode(), 1, 0);
  chain.Add(&b, TickCode(), 2, 5);
  chain.Add(&c, TickCode(), 3, 0);
  EXPECT_EQ(RunAll(chain), (std::vector<std::string>{"b:2", "a:1", "c:3"}));
  EXPECT_EQ(chain.Entry(0).Priority, 5);
  // Raised: moves up past every entry of lower priority.
  chain.Add(&c, TickCode(), 3, 9);
  EXPECT_EQ(RunAll(chain), (std::vector<std::string>{"c:3", "b:2", "a:1"}));
  // Lowered: moves down past every entry whose priority is not below, so it comes last among equals.
  chain.Add(&c, TickCode(), 3, 0);
  EXPECT_EQ(RunAll(chain), (std::vector<std::string>{"b:2", "a:1", "c:3"}));
  chain.Add(&b, TickCode(), 2, -3);
  EXPECT_EQ(RunAll(chain), (std::vector<std::string>{"a:1", "c:3", "b:2"}));
  EXPECT_EQ(chain.Entry(2).Priority, -3);
  EXPECT_EQ(chain.Entry(2).RefCount, 2);
  // The same priority again: the entry stays where it is.
  chain.Add(&a, TickCode(), 1, 0);
  EXPECT_EQ(RunAll(chain), (std::vector<std::string>{"a:1", "c:3", "b:2"}));
}

TEST(joMChain, ZeroParamAndNoneArgumentsMatchEveryEntry) {
  TTarget a(nullptr, "a"), b(nullptr, "b");
  TCustomMethodChain chain(nullptr);
  chain.Add(&a, TickCode(), 1, 0);
  chain.Add(&a, TickCode(), 2, 0);
  chain.Add(&a, TockCode(), 3, 0);
  chain.Add(&b, TickCode(), 4, 0);
  // Remove with a zero parameter takes the matching entries of every parameter.
  EXPECT_TRUE(chain.Remove(&a, TickCode(), 0));
  EXPECT_EQ(RunAll(chain), (std::vector<std::string>{"a tock:3", "b:4"}));
  // No object: every object's entry of that routine.
  chain.Add(&a, TickCode(), 5, 0);
  EXPECT_TRUE(chain.Remove(static_cast<void*>(nullptr), TickCode(), 0));
  EXPECT_EQ(RunAll(chain), (std::vector<std::string>{"a tock:3"}));
  // Re-joining with wildcards counts on every matching entry instead of adding one.
  chain.Add(&a, TickCode(), 6, 0);
  chain.Add(&a, static_cast<TMethodCode>(nullptr), 0, 2);
  ASSERT_EQ(chain.Count(), 2);
  EXPECT_EQ(chain.Entry(0).RefCount, 2);
  EXPECT_EQ(chain.Entry(1).RefCount, 2);
  EXPECT_EQ(chain.Entry(0).Priority, 2);
  EXPECT_EQ(chain.Entry(1).Priority, 2);
  EXPECT_EQ(RunAll(chain), (std::vector<std::string>{"a tock:3", "a:6"}));
}

TEST(joMChain, RemoveObjectTakesEveryEntryOfTheObject) {
  TTarget a(nullptr, "a"), b(nullptr, "b");
  TCustomMethodChain chain(nullptr);
  chain.Add(&a, TickCode(), 1, 0);
  chain.Add(&a, TickCode(), 1, 0);
  chain.Add(&b, TickCode(), 2, 0);
  chain.Add(&a, TockCode(), 3, 0);
  EXPECT_TRUE(chain.RemoveObject(&a));
  EXPECT_EQ(RunAll(chain), (std::vector<std::string>{"b:2"}));
  EXPECT_FALSE(chain.RemoveObject(&a));
  EXPECT_TRUE(chain.RemoveObject(&b));
  EXPECT_EQ(chain.Items(), nullptr);
}

TEST(joMChain, ADestroyedComponentLeavesTheChain) {
  TCustomMethodChain chain(nullptr);
  auto* a = new TTarget(nullptr, "a");
  auto* b = new TTarget(nullptr, "b");
  chain.AddMethod<&TTarget::Tick>(a, 1, 0);
  chain.Add(static_cast<TObject*>(b), TickCode(), 2, 0);
  ASSERT_EQ(chain.Count(), 2);
  delete a;
  EXPECT_EQ(RunAll(chain), (std::vector<std::string>{"b:2"}));
  delete b;
  EXPECT_EQ(chain.Count(), 0);
}

TEST(joMChain, AChainDestroyedBeforeItsComponentsLeavesNothingBehind) {
  TTarget a(nullptr, "a");
  {
    TCustomMethodChain chain(nullptr);
    chain.AddMethod<&TTarget::Tick>(&a, 1, 0);
  }
  a.SetName("StillFine");
  EXPECT_EQ(a.Name(), "StillFine");
}

TEST(joMChain, PlainRoutinesAndBoundLambdasRun) {
  TCustomMethodChain chain(nullptr);
  chain.Add(MakeProc<&Plain>().Method(), 4, 0);
  {
    auto counter = std::make_shared<int>(0);
    TEvent<void(std::intptr_t)> lambda([counter](std::intptr_t p) { Log.push_back("lambda:" + std::to_string(*counter += int(p))); });
    chain.Add(lambda.Method(), 10, 1);
  }
  // The chain keeps the lambda alive after the event that made it is gone.
  EXPECT_EQ(RunAll(chain), (std::vector<std::string>{"lambda:10", "plain:4"}));
  EXPECT_EQ(RunAll(chain), (std::vector<std::string>{"lambda:20", "plain:4"}));
  TMethod m = chain.GetMethod(0);
  EXPECT_TRUE(chain.Remove(m, 10));
  EXPECT_EQ(RunAll(chain), (std::vector<std::string>{"plain:4"}));
}

TEST(joMChain, ClearEmptiesAndDeactivates) {
  TTarget a(nullptr, "a");
  TCustomMethodChain chain(nullptr);
  chain.Add(&a, TickCode(), 1, 0);
  chain.Clear();
  EXPECT_FALSE(chain.Active());
  EXPECT_EQ(chain.Count(), 0);
  EXPECT_EQ(chain.Items(), nullptr);
  chain.SetActive(true);
  EXPECT_TRUE(chain.Active());
}

TEST(joMChain, ABadIndexIsTheArrayIndexError) {
  TTarget a(nullptr, "a");
  TCustomMethodChain chain(nullptr);
  chain.Add(&a, TickCode(), 1, 0);
  EXPECT_EQ(ErrorText([&] { chain.GetMethod(1); }), "TjoArrSlots: List index [1] out of bounds...");
  EXPECT_EQ(ErrorText([&] { chain.GetParam(-1); }), "TjoArrSlots: List index [-1] out of bounds...");
}

TEST(joMChain, EveryChangeIsReported) {
  TTarget a(nullptr, "a");
  TCountingChain chain(nullptr);
  chain.Add(&a, TickCode(), 1, 0);
  chain.Add(&a, TickCode(), 1, 0);
  chain.Remove(&a, TickCode(), 1);
  chain.Remove(&a, TickCode(), 99);  // nothing matched, nothing changed
  chain.RemoveObject(&a);
  EXPECT_EQ(chain.Changes, 4);
}
