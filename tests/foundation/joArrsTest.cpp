#include "foundation/joArrs.h"

#include "platform/streaming/SysUtils.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace {

std::string ErrorText(const std::function<void()>& f) {
  try {
    f();
  } catch (const Exception& e) {
    return e.Message();
  }
  return "(no error)";
}

struct TItem {
  std::string Name;
  std::shared_ptr<int> Value;
  int Number = 0;
};

// A slot array of four-byte integers.
int& IntAt(TjoCustomArray& a, int i) { return *static_cast<int*>(a.ItemPtr(i)); }
TItem& ItemAt(TjoCustomArray& a, int i) { return *static_cast<TItem*>(a.ItemPtr(i)); }

// The bare storage level, with a fixed slot size.
class TPlainArray : public TjoCustomArray {
public:
  ~TPlainArray() override { ClearQuietly(); }
  int ItemSize() const override { return 8; }
};

}  // namespace

TEST(joArrs, CapacityGrowsBy4Then16ThenAQuarter) {
  TjoArrSlots a(4);
  EXPECT_EQ(a.Count(), 0);
  EXPECT_EQ(a.Capacity(), 0);
  EXPECT_EQ(a.Data(), nullptr);
  std::vector<int> seen;
  for (int i = 0; i < 95; ++i) {
    EXPECT_EQ(a.Add(), i);
    if (seen.empty() || seen.back() != a.Capacity()) seen.push_back(a.Capacity());
  }
  EXPECT_EQ(seen, (std::vector<int>{4, 8, 12, 28, 44, 60, 76, 95}));
  a.Add();
  EXPECT_EQ(a.Capacity(), 95 + 95 / 4);
}

TEST(joArrs, ItemPtrOfCountRaisesAndCheckIndexDoesNot) {
  TjoArrSlots a(4);
  for (int i = 0; i < 3; ++i) IntAt(a, a.Add()) = i * 10;
  EXPECT_FALSE(a.CheckIndex(3, false));
  EXPECT_FALSE(a.CheckIndex(-1, false));
  EXPECT_TRUE(a.CheckIndex(2, false));
  EXPECT_EQ(ErrorText([&] { a.ItemPtr(3); }), "TjoArrSlots: List index [3] out of bounds...");
  EXPECT_EQ(ErrorText([&] { a.CheckIndex(-1, true); }), "TjoArrSlots: List index [-1] out of bounds...");
  EXPECT_EQ(IntAt(a, 2), 20);
}

TEST(joArrs, BadIndexFiveNamesTheClass) {
  TjoArrSlots a(4);
  for (int i = 0; i < 3; ++i) a.Add();
  EXPECT_EQ(ErrorText([&] { a.Delete(5); }), "TjoArrSlots: List index [5] out of bounds...");
  EXPECT_EQ(ErrorText([&] { a.Exchange(0, 5); }), "TjoArrSlots: List index [5] out of bounds...");
  EXPECT_EQ(a.Count(), 3);
  TjoCustomArrSlots c(4);
  EXPECT_EQ(ErrorText([&] { c.ItemPtr(0); }), "TjoCustomArrSlots: List index [0] out of bounds...");
}

TEST(joArrs, ErrorWithoutAnArrayIsTheBareMessage) {
  EXPECT_EQ(ErrorText([] { joArrError(nullptr, "plain"); }), "plain");
  TjoArrSlots a(4);
  EXPECT_EQ(ErrorText([&] { a.Error("own text"); }), "TjoArrSlots: own text");
}

TEST(joArrs, InstalledErrorProcedureReceivesTheMessageInsteadOfARaise) {
  static std::vector<std::string> got;
  got.clear();
  joArrErrorProc = [](const std::string& msg) { got.push_back(msg); };
  TjoArrSlots a(4);
  a.Add();
  EXPECT_EQ(a.ItemPtr(7), nullptr);
  a.Delete(9);
  a.SetCapacity(0);
  joArrErrorProc = nullptr;
  EXPECT_EQ(got, (std::vector<std::string>{"TjoArrSlots: List index [7] out of bounds...",
                                           "TjoArrSlots: List index [9] out of bounds...",
                                           "TjoArrSlots: List index [0] out of bounds..."}));
  EXPECT_EQ(a.Count(), 1);
}

TEST(joArrs, IndexOfItemFindsTheSlotContainingAnAddress) {
  TjoArrSlots a(8);
  for (int i = 0; i < 4; ++i) a.Add();
  auto* base = static_cast<unsigned char*>(a.Data());
  EXPECT_EQ(a.IndexOfItem(base), 0);
  EXPECT_EQ(a.IndexOfItem(base + 8), 1);
  EXPECT_EQ(a.IndexOfItem(base + 8 * 2 + 5), 2);
  EXPECT_EQ(a.IndexOfItem(base + 8 * 3 + 7), 3);
  EXPECT_EQ(a.IndexOfItem(base + 8 * 4), -1);
  EXPECT_EQ(a.IndexOfItem(nullptr), -1);
  EXPECT_EQ(a.IndexOfItem(base - 8), -1);
  // The quotient is truncated, so an address just before the block still counts as slot 0.
  EXPECT_EQ(a.IndexOfItem(base - 3), 0);
}

TEST(joArrs, ShrinkingWithOnlyOnFinalizeItemFinalisesOneSlotMore) {
  std::vector<int> finalized;  // outlives the array, whose destructor finalises too
  TjoArrSlots a(4);
  a.OnFinalizeItem = [&](TjoArrSlots* sender, void* p, int size) {
    EXPECT_EQ(sender, &a);
    EXPECT_EQ(size, 4);
    finalized.push_back(*static_cast<int*>(p));
  };
  for (int i = 0; i < 6; ++i) IntAt(a, a.Add()) = 100 + i;  // capacity 8
  // Slot 6 is unused but held a value before: it is finalised and cleared as well.
  a.Add();
  IntAt(a, 6) = 106;
  a.Delete(6);
  finalized.clear();
  a.SetCount(3);
  EXPECT_EQ(a.Count(), 3);
  EXPECT_EQ(finalized, (std::vector<int>{103, 104, 105, 106}));
  a.Add();
  EXPECT_EQ(IntAt(a, 3), 0);  // cleared by the finaliser loop
  // A full block: the extra slot is past the capacity and the array survives it.
  int calls = 0;
  TjoArrSlots full(4);
  full.OnFinalizeItem = [&](TjoArrSlots*, void*, int) { ++calls; };
  for (int i = 0; i < 4; ++i) full.Add();
  ASSERT_EQ(full.Capacity(), 4);
  full.Clear();
  EXPECT_EQ(calls, 5);
  EXPECT_EQ(full.Count(), 0);
  EXPECT_EQ(full.Capacity(), 0);
}

TEST(joArrs, DestroyingFinalisesTheUsedSlots) {
  int calls = 0;
  {
    TjoArrSlots a(4);
    a.OnFinalizeItem = [&](TjoArrSlots*, void*, int) { ++calls; };
    for (int i = 0; i < 3; ++i) a.Add();
  }
  EXPECT_EQ(calls, 4);
}

TEST(joArrs, NewSlotWithoutInitHandlersKeepsWhatTheBlockHeld) {
  TjoArrSlots a(4);
  a.Add();
  IntAt(a, a.Add()) = 0x5A5A1234;
  a.Delete(1);
  EXPECT_EQ(a.Count(), 1);
  EXPECT_EQ(a.Add(), 1);
  EXPECT_EQ(IntAt(a, 1), 0x5A5A1234);
}

TEST(joArrs, InitHandlersAreDelegatedAsDescribed) {
  std::vector<std::string> calls;
  TjoArrSlots a(4);
  a.OnInitItem = [&](TjoArrSlots*, void* p, int size) {
    calls.push_back("item " + std::to_string(size));
    *static_cast<int*>(p) = 7;
  };
  a.Add();
  EXPECT_EQ(IntAt(a, 0), 7);
  // InitItems with only the per-slot handler zero-fills without calling it.
  int block[3] = {1, 2, 3};
  a.InitItems(block, 4, 3);
  EXPECT_EQ(block[0] | block[1] | block[2], 0);
  EXPECT_EQ(calls, (std::vector<std::string>{"item 4"}));

  TjoArrSlots b(4);
  b.OnInitItems = [&](TjoArrSlots*, void* p, int n, int size) {
    calls.push_back("items " + std::to_string(n) + " " + std::to_string(size));
    for (int i = 0; i < n; ++i) static_cast<int*>(p)[i] = 9;
  };
  calls.clear();
  b.Add();
  EXPECT_EQ(IntAt(b, 0), 9);
  int two[2] = {1, 1};
  b.InitItems(two, 4, 2);
  EXPECT_EQ(calls, (std::vector<std::string>{"items 1 4", "items 2 4"}));

  TjoArrSlots none(4);
  int untouched[2] = {5, 6};
  none.InitItems(untouched, 4, 2);
  none.InitItem(untouched, 4);
  EXPECT_EQ(untouched[0], 5);
  EXPECT_EQ(untouched[1], 6);
}

TEST(joArrs, FinalizeHandlersAreDelegatedAsDescribed) {
  std::vector<std::string> calls;
  TjoArrSlots a(4);
  a.OnFinalizeItems = [&](TjoArrSlots*, void* p, int n, int size) {
    calls.push_back(std::to_string(*static_cast<int*>(p)) + " x" + std::to_string(n) + " " + std::to_string(size));
  };
  for (int i = 0; i < 5; ++i) IntAt(a, a.Add()) = i;
  a.Delete(1);  // FinalizeItem falls back to the many-slot handler with one slot
  a.SetCount(1);  // exactly the removed slots, no extra one
  EXPECT_EQ(calls, (std::vector<std::string>{"1 x1 4", "2 x3 4"}));
  EXPECT_EQ(a.Count(), 1);
  EXPECT_EQ(IntAt(a, 0), 0);
}

TEST(joArrs, CopyItemCopiesFirstToSecondOrCallsTheHandler) {
  TjoArrSlots a(4);
  IntAt(a, a.Add()) = 1;
  IntAt(a, a.Add()) = 2;
  a.CopyItem(a.ItemPtr(0), a.ItemPtr(1));
  EXPECT_EQ(IntAt(a, 1), 1);
  int seen = 0;
  a.OnCopyItem = [&](TjoArrSlots*, void* src, void* dst) {
    seen = *static_cast<int*>(src);
    *static_cast<int*>(dst) = 42;
  };
  IntAt(a, 0) = 3;
  a.CopyItem(a.ItemPtr(0), a.ItemPtr(1));
  EXPECT_EQ(seen, 3);
  EXPECT_EQ(IntAt(a, 1), 42);
}

TEST(joArrs, SetCountGrowingRaisesTheErrorOfTheOldCount) {
  TjoArrSlots a(4);
  IntAt(a, a.Add()) = 11;
  IntAt(a, a.Add()) = 22;
  EXPECT_EQ(ErrorText([&] { a.SetCount(5); }), "TjoArrSlots: List index [2] out of bounds...");
  EXPECT_EQ(a.Count(), 2);
  EXPECT_EQ(a.Capacity(), 5);  // the capacity was raised before the check
  EXPECT_EQ(IntAt(a, 1), 22);
  EXPECT_EQ(ErrorText([&] { a.SetCount(-1); }), "TjoArrSlots: List index [-1] out of bounds...");
  a.SetCount(2);  // same count: nothing happens
  EXPECT_EQ(a.Count(), 2);
}

TEST(joArrs, SetCapacityBelowCountOrAtTheLimitIsAnIndexError) {
  TjoArrSlots a(4);
  for (int i = 0; i < 3; ++i) IntAt(a, a.Add()) = i;
  EXPECT_EQ(ErrorText([&] { a.SetCapacity(2); }), "TjoArrSlots: List index [2] out of bounds...");
  EXPECT_EQ(ErrorText([&] { a.SetCapacity(2147483647); }),
            "TjoArrSlots: List index [2147483647] out of bounds...");
  EXPECT_EQ(a.Capacity(), 4);
  a.SetCapacity(3);
  EXPECT_EQ(a.Capacity(), 3);
  EXPECT_EQ(IntAt(a, 2), 2);
  a.SetCapacity(10);
  EXPECT_EQ(a.Capacity(), 10);
  EXPECT_EQ(IntAt(a, 0), 0);
  EXPECT_EQ(IntAt(a, 2), 2);
}

TEST(joArrs, StorageLevelSetCountZeroFillsAndChecksTheRange) {
  TPlainArray a;
  a.SetCount(3);
  EXPECT_EQ(a.Count(), 3);
  EXPECT_EQ(a.Capacity(), 3);
  for (int i = 0; i < 3; ++i) EXPECT_EQ(*static_cast<long long*>(a.ItemPtr(i)), 0);
  *static_cast<long long*>(a.ItemPtr(2)) = 99;
  a.SetCount(1);
  a.SetCount(3);
  EXPECT_EQ(*static_cast<long long*>(a.ItemPtr(2)), 0);
  EXPECT_EQ(ErrorText([&] { a.SetCount(134217728); }), "TjoCustomArray: List index [134217728] out of bounds...");
  EXPECT_EQ(ErrorText([&] { a.SetCount(-2); }), "TjoCustomArray: List index [-2] out of bounds...");
  EXPECT_EQ(a.Count(), 3);
}

TEST(joArrs, AddItemDeleteAndDeleteSlots) {
  TjoArrSlots a(4);
  for (int i = 0; i < 6; ++i) *static_cast<int*>(a.AddItem()) = i;
  a.Delete(0);
  a.DeleteSlots(2, 2);  // no finaliser runs here
  ASSERT_EQ(a.Count(), 3);
  EXPECT_EQ(IntAt(a, 0), 1);
  EXPECT_EQ(IntAt(a, 1), 2);
  EXPECT_EQ(IntAt(a, 2), 5);
  a.DeleteSlots(2, 1);  // the last slot: nothing to move
  EXPECT_EQ(a.Count(), 2);
  EXPECT_EQ(ErrorText([&] { a.DeleteSlots(1, 2); }), "TjoArrSlots: List index [2] out of bounds...");
  EXPECT_EQ(a.Count(), 2);
}

TEST(joArrs, ExchangeSwapsTheBytesOfTwoSlots) {
  TjoArrSlots small(4);
  IntAt(small, small.Add()) = 1;
  IntAt(small, small.Add()) = 2;
  int copies = 0;
  small.OnCopyItem = [&](TjoArrSlots*, void*, void*) { ++copies; };
  small.Exchange(0, 1);
  EXPECT_EQ(IntAt(small, 0), 2);
  EXPECT_EQ(IntAt(small, 1), 1);
  EXPECT_EQ(copies, 0);
  // A larger slot makes the shared scratch block grow.
  TjoArrSlots big(64);
  std::memset(big.AddItem(), 'a', 64);
  std::memset(big.AddItem(), 'b', 64);
  big.Exchange(1, 0);
  EXPECT_EQ(std::string(static_cast<char*>(big.ItemPtr(0)), 64), std::string(64, 'b'));
  EXPECT_EQ(std::string(static_cast<char*>(big.ItemPtr(1)), 64), std::string(64, 'a'));
  small.Exchange(1, 1);
  EXPECT_EQ(IntAt(small, 1), 1);
}

TEST(joArrs, ChangingTheSlotSizeClearsTheArray) {
  int calls = 0;
  TjoArrSlots a(4);
  a.OnFinalizeItem = [&](TjoArrSlots*, void*, int) { ++calls; };
  a.Add();
  a.Add();
  a.SetItemSize(4);
  EXPECT_EQ(a.Count(), 2);
  EXPECT_EQ(calls, 0);
  a.SetItemSize(16);
  EXPECT_EQ(a.Count(), 0);
  EXPECT_EQ(a.Capacity(), 0);
  EXPECT_EQ(a.ItemSize(), 16);
  EXPECT_EQ(calls, 3);
}

TEST(joArrs, RecordsOfAnythingButARecordCannotBeCreated) {
  EXPECT_EQ(ErrorText([] { TjoArrRecords r(TypeInfoOf<int>()); }),
            "TjoArrRecords: Can't create array of kh-kh...");
  EXPECT_EQ(ErrorText([] { TjoArrNamedRecords r(TypeInfoOf<double>()); }),
            "TjoArrNamedRecords: Can't create array of kh-kh...");
  EXPECT_EQ(ErrorText([] { TjoArrRecords r(nullptr); }), "TjoArrRecords: Can't create array of kh-kh...");
  static const TjoTypeInfo empty{TjoTypeKind::Record, "TEmpty", 0, nullptr, nullptr, nullptr, nullptr};
  EXPECT_EQ(ErrorText([] { TjoArrRecords r(&empty); }), "TjoArrRecords: Can't create array of kh-kh...");
  TjoArrRecords ok(TypeInfoOf<TItem>());
  EXPECT_EQ(ok.ItemSize(), int(sizeof(TItem)));
  EXPECT_EQ(ok.TypeInfo(), TypeInfoOf<TItem>());
}

TEST(joArrs, RecordsWithStringsAndSmartPointersSurviveGrowthDeletionAndExchange) {
  auto shared = std::make_shared<int>(5);
  {
    TjoArrRecords a(TypeInfoOf<TItem>());
    for (int i = 0; i < 200; ++i) {
      TItem& item = ItemAt(a, a.Add());
      EXPECT_TRUE(item.Name.empty());
      EXPECT_EQ(item.Value, nullptr);
      // Short names sit inside the string object, long ones on the heap: both must move well.
      item.Name = i % 2 ? "n" + std::to_string(i) : std::string(40, char('a' + i % 26)) + std::to_string(i);
      item.Value = shared;
      item.Number = i;
    }
    EXPECT_EQ(shared.use_count(), 201);
    a.Delete(0);
    a.Delete(50);
    a.Exchange(0, 197);
    EXPECT_EQ(a.Count(), 198);
    EXPECT_EQ(shared.use_count(), 199);
    EXPECT_EQ(ItemAt(a, 0).Number, 199);
    EXPECT_EQ(ItemAt(a, 0).Name, "n199");
    EXPECT_EQ(ItemAt(a, 197).Number, 1);
    EXPECT_EQ(ItemAt(a, 197).Name, "n1");
    EXPECT_EQ(ItemAt(a, 50).Number, 52);
    EXPECT_EQ(ItemAt(a, 50).Name, std::string(40, char('a' + 52 % 26)) + "52");
    a.SetCount(10);
    EXPECT_EQ(shared.use_count(), 11);
    a.SetCapacity(10);
    EXPECT_EQ(ItemAt(a, 9).Number, 10);
  }
  EXPECT_EQ(shared.use_count(), 1);
}

TEST(joArrs, RecordsHoldingMoveOnlyMembersWork) {
  struct TOwned {
    std::string Name;
    std::unique_ptr<std::string> Text;
  };
  TjoArrRecords a(TypeInfoOf<TOwned>("TOwned"));
  for (int i = 0; i < 20; ++i) {
    auto* p = static_cast<TOwned*>(a.AddItem());
    p->Text = std::make_unique<std::string>("text " + std::to_string(i));
  }
  a.Delete(3);
  EXPECT_EQ(*static_cast<TOwned*>(a.ItemPtr(3))->Text, "text 4");
  EXPECT_EQ(ErrorText([&] { a.CopyItem(a.ItemPtr(0), a.ItemPtr(1)); }),
            "TjoArrRecords: Records of TOwned cannot be copied");
}

TEST(joArrs, RecordHandlersRunInTheDescribedOrder) {
  std::vector<std::string> calls;
  TjoArrRecords a(TypeInfoOf<TItem>());
  a.OnInitItem = [&](TjoArrRecords* sender, void* p) {
    EXPECT_EQ(sender, &a);
    auto* item = static_cast<TItem*>(p);
    EXPECT_TRUE(item->Name.empty());  // already set up
    item->Name = "init" + std::to_string(a.IndexOfItem(p));
    calls.push_back(item->Name);
  };
  a.OnFinalizeItem = [&](TjoArrRecords*, void* p) {
    calls.push_back("fin " + static_cast<TItem*>(p)->Name);  // still readable
  };
  for (int i = 0; i < 4; ++i) a.Add();
  a.Delete(1);
  a.SetCount(1);  // exactly the removed records
  EXPECT_EQ(calls, (std::vector<std::string>{"init0", "init1", "init2", "init3", "fin init1", "fin init2",
                                             "fin init3"}));
  // InitItems on raw memory: all set up first, then the handler for each.
  calls.clear();
  alignas(TItem) unsigned char raw[3 * sizeof(TItem)];
  std::memset(raw, 0xEE, sizeof raw);
  a.OnInitItem = [&](TjoArrRecords*, void* p) { calls.push_back(static_cast<TItem*>(p)->Name.empty() ? "set" : "?"); };
  a.InitItems(raw, sizeof(TItem), 3);
  EXPECT_EQ(calls, (std::vector<std::string>{"set", "set", "set"}));
  a.OnFinalizeItem = nullptr;
  a.FinalizeItems(raw, sizeof(TItem), 3);
}

TEST(joArrs, RecordCopyItemCopiesSecondIntoFirst) {
  TjoArrRecords a(TypeInfoOf<TItem>());
  ItemAt(a, a.Add()).Name = "first";
  ItemAt(a, a.Add()).Name = "second";
  a.CopyItem(a.ItemPtr(0), a.ItemPtr(1));
  EXPECT_EQ(ItemAt(a, 0).Name, "second");
  EXPECT_EQ(ItemAt(a, 1).Name, "second");
  std::string order;
  a.OnCopyItem = [&](TjoArrRecords*, void* first, void* second) {
    order = static_cast<TItem*>(first)->Name + "<" + static_cast<TItem*>(second)->Name;
  };
  ItemAt(a, 0).Name = "x";
  a.CopyItem(a.ItemPtr(0), a.ItemPtr(1));
  EXPECT_EQ(order, "x<second");
  EXPECT_EQ(ItemAt(a, 0).Name, "x");
}

TEST(joArrs, NamedRecordsAreFoundWithoutRegardToCase) {
  TjoArrNamedRecords a(TypeInfoOf<TItem>());
  static_cast<TItem*>(a.AddItem())->Name = "other";
  auto* main = static_cast<TItem*>(a.FindName("MAIN", true));
  ASSERT_NE(main, nullptr);
  EXPECT_EQ(main->Name, "MAIN");
  EXPECT_EQ(a.Count(), 2);
  EXPECT_EQ(a.IndexOfName("main"), 1);
  EXPECT_EQ(a.FindName("Main", true), main);
  EXPECT_EQ(a.Count(), 2);
  EXPECT_EQ(a.FindName("absent", false), nullptr);
  EXPECT_EQ(a.IndexOfName("absent"), -1);
  EXPECT_EQ(a.IndexOfName("mai"), -1);
  // Letters beyond ASCII compare without regard to case too.
  a.FindName("/home/Ärger/École.dfm", true);
  EXPECT_EQ(a.IndexOfName("/HOME/ärger/école.DFM"), 2);
  EXPECT_EQ(a.IndexOfName("/home/arger/ecole.dfm"), -1);
  // The first of two equal names wins.
  static_cast<TItem*>(a.AddItem())->Name = "OTHER";
  EXPECT_EQ(a.IndexOfName("Other"), 0);
}

TEST(joArrs, QueryItemStartsTrueAndTheHandlerMayChangeIt) {
  TjoArrNamedRecords a(TypeInfoOf<TItem>());
  void* item = a.AddItem();
  EXPECT_TRUE(a.QueryItem(item, 3));
  std::intptr_t seen = 0;
  a.OnQueryItem = [&](TjoArrNamedRecords* sender, void* p, std::intptr_t param, bool& result) {
    EXPECT_EQ(sender, &a);
    EXPECT_EQ(p, item);
    EXPECT_TRUE(result);
    seen = param;
    result = false;
  };
  EXPECT_FALSE(a.QueryItem(item, 3));
  EXPECT_EQ(seen, 3);
}

TEST(joArrs, SameTextHandlesDamagedUtf8) {
  EXPECT_TRUE(joAnsiSameText("abc", "ABC"));
  EXPECT_FALSE(joAnsiSameText("abc", "abcd"));
  EXPECT_TRUE(joAnsiSameText("\xC3", "\xC3"));
  EXPECT_FALSE(joAnsiSameText("\xC3", "\xC3\xA9"));
  EXPECT_TRUE(joAnsiSameText("\xE2\x82", "\xE2\x82"));
  EXPECT_TRUE(joAnsiSameText("", ""));
}
