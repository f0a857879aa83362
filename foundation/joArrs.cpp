#include "foundation/joArrs.h"

#include "platform/streaming/SysUtils.h"

#include <clocale>
#include <cstdlib>
#include <cwctype>
#include <locale.h>

TjoArrErrorProc joArrErrorProc = nullptr;

void joArrError(const TjoCustomArray* Sender, const std::string& Msg) {
  std::string text = Sender ? std::string(Sender->ClassName()) + ": " + Msg : Msg;
  if (joArrErrorProc) {
    joArrErrorProc(text);
    return;
  }
  throw Exception(text);
}

namespace {

// One scratch block shared by every Exchange; freed when the program ends.
struct TExchangeBlock {
  unsigned char* P = nullptr;
  int Size = 0;
  ~TExchangeBlock() { std::free(P); }
} ExchangeBlock;

// The block always has room for one slot past its capacity: FinalizeItems finalises
// and clears the slot just past its range, which may be the last slot of the block.
std::size_t BlockBytes(int Capacity, int Size) {
  return (std::size_t(Capacity) + 1) * std::size_t(Size > 0 ? Size : 1);
}

}  // namespace

// ---- TjoCustomArray -------------------------------------------------------------

TjoCustomArray::~TjoCustomArray() {
  std::free(FData);
}

void TjoCustomArray::ClearQuietly() noexcept {
  try {
    Clear();
  } catch (...) {
    // A handler failed while the array is being destroyed; the block goes anyway.
  }
  std::free(FData);
  FData = nullptr;
  FCount = 0;
  FCapacity = 0;
}

void TjoCustomArray::Error(const std::string& Msg) {
  joArrError(this, Msg);
}

void TjoCustomArray::IndexError(int Index) {
  Error(Format(SjoListIndexError, Index));
}

bool TjoCustomArray::CheckIndex(int Index, bool RaiseIfBad) {
  bool ok = Index >= 0 && Index < FCount;
  if (!ok && RaiseIfBad) IndexError(Index);
  return ok;
}

void* TjoCustomArray::ItemPtr(int Index) {
  if (!CheckIndex(Index, true)) return nullptr;  // only reached with an error procedure installed
  return FData + std::size_t(Index) * std::size_t(ItemSize());
}

void TjoCustomArray::SetCapacity(int NewCapacity, int Size) {
  if (NewCapacity < FCount || NewCapacity >= 2147483647) {
    IndexError(NewCapacity);
    return;
  }
  if (NewCapacity == FCapacity) return;
  if (Size <= 0) Size = ItemSize();
  // Room for the largest of the two sizes, so a caller's smaller size cannot shrink a slot.
  int slot = Size > ItemSize() ? Size : ItemSize();
  unsigned char* block = nullptr;
  if (NewCapacity > 0) {
    block = static_cast<unsigned char*>(std::malloc(BlockBytes(NewCapacity, slot)));
    if (!block) {
      Error(Format("Out of memory for %d slots of %d bytes", NewCapacity, slot));
      return;
    }
  }
  if (FCount > 0) {
    if (Size == ItemSize())
      MoveSlots(block, FData, FCount);
    else
      std::memcpy(block, FData, std::size_t(FCount) * std::size_t(Size));
  }
  std::free(FData);
  FData = block;
  FCapacity = NewCapacity;
}

void TjoCustomArray::Grow() {
  int delta;
  if (FCapacity > 64)
    delta = FCapacity / 4;
  else if (FCapacity > 8)
    delta = 16;
  else
    delta = 4;
  SetCapacity(FCapacity + delta);
}

int TjoCustomArray::AddSlot() {
  if (FCount == FCapacity) {
    Grow();
    if (FCount == FCapacity) return -1;  // only reached with an error procedure installed
  }
  return FCount++;
}

void TjoCustomArray::DeleteSlots(int Index, int N) {
  if (Index < 0 || N < 0 || Index > FCount - N) {
    IndexError(Index < 0 || Index >= FCount ? Index : Index + N - 1);
    return;
  }
  if (FCount - N > Index) {
    std::size_t size = std::size_t(ItemSize());
    MoveSlots(FData + std::size_t(Index) * size, FData + std::size_t(Index + N) * size,
              FCount - Index - N);
  }
  FCount -= N;
}

void TjoCustomArray::Clear() {
  SetCount(0);
  SetCapacity(0);
}

void TjoCustomArray::SetCount(int N) {
  if (N >= 0 && N < 0x8000000) {
    if (N > FCount) {
      if (N > FCapacity) {
        SetCapacity(N);
        if (N > FCapacity) return;
      }
      std::size_t size = std::size_t(ItemSize());
      std::memset(FData + std::size_t(FCount) * size, 0, std::size_t(N - FCount) * size);
    }
    FCount = N;
  } else {
    IndexError(N);
  }
}

void TjoCustomArray::MoveSlots(void* Dest, void* Source, int N) {
  std::memmove(Dest, Source, std::size_t(N) * std::size_t(ItemSize()));
}

// ---- TjoCustomArrSlotsFSS -------------------------------------------------------

TjoCustomArrSlotsFSS::~TjoCustomArrSlotsFSS() {
  ClearQuietly();
}

void TjoCustomArrSlotsFSS::SetItemSize(int Value) {
  if (Value == FItemSize) return;
  Clear();
  FItemSize = Value;
}

void TjoCustomArrSlotsFSS::SetCount(int N) {
  if (N == Count()) return;
  if (N > Capacity()) {
    SetCapacity(N);
    if (N > Capacity()) return;
  }
  if (N < Count()) {
    void* p = ItemPtr(N);
    if (!p) return;
    FinalizeItems(p, ItemSize(), Count() - N);
  } else {
    // Raises the index error for the old count: growth goes through Add.
    void* p = ItemPtr(Count());
    if (!p) return;
    InitItems(p, ItemSize(), N - Count());
  }
  StoreCount(N);
}

void TjoCustomArrSlotsFSS::InitItem(void* P, int Size) {
  std::memset(P, 0, std::size_t(Size));
}

void TjoCustomArrSlotsFSS::InitItems(void* P, int Size, int N) {
  std::memset(P, 0, std::size_t(Size) * std::size_t(N));
}

void TjoCustomArrSlotsFSS::FinalizeItem(void*, int) {}

void TjoCustomArrSlotsFSS::FinalizeItems(void* P, int Size, int N) {
  auto* p = static_cast<unsigned char*>(P);
  for (int i = 0; i <= N; ++i) {
    FinalizeItem(p, Size);
    std::memset(p, 0, std::size_t(Size));
    p += Size;
  }
}

void TjoCustomArrSlotsFSS::CopyItem(void* Src, void* Dst) {
  std::memmove(Dst, Src, std::size_t(ItemSize()));
}

int TjoCustomArrSlotsFSS::IndexOfItem(const void* P) const {
  if (!P || ItemSize() <= 0) return -1;
  std::intptr_t diff = reinterpret_cast<std::intptr_t>(P) - reinterpret_cast<std::intptr_t>(Data());
  std::intptr_t index = diff / ItemSize();  // truncates towards zero
  if (index < 0 || index >= Count()) return -1;
  return int(index);
}

// ---- TjoCustomArrSlots ----------------------------------------------------------

TjoCustomArrSlots::~TjoCustomArrSlots() {
  ClearQuietly();
}

int TjoCustomArrSlots::Add() {
  int index = AddSlot();
  if (index < 0) return index;
  InitItem(ItemPtr(index), ItemSize());
  return index;
}

void* TjoCustomArrSlots::AddItem() {
  int index = Add();
  return index < 0 ? nullptr : ItemPtr(index);
}

void TjoCustomArrSlots::Delete(int Index) {
  if (!CheckIndex(Index, true)) return;
  FinalizeItem(ItemPtr(Index), ItemSize());
  DeleteSlots(Index, 1);
}

void TjoCustomArrSlots::Exchange(int I, int J) {
  void* pi = ItemPtr(I);
  void* pj = ItemPtr(J);
  if (!pi || !pj || I == J) return;
  int size = ItemSize();
  if (size > ExchangeBlock.Size) {
    auto* block = static_cast<unsigned char*>(std::malloc(std::size_t(size)));
    if (!block) {
      Error(Format("Out of memory for %d slots of %d bytes", 1, size));
      return;
    }
    std::free(ExchangeBlock.P);
    ExchangeBlock.P = block;
    ExchangeBlock.Size = size;
  }
  MoveSlots(ExchangeBlock.P, pi, 1);
  MoveSlots(pi, pj, 1);
  MoveSlots(pj, ExchangeBlock.P, 1);
}

// ---- TjoArrSlots ----------------------------------------------------------------

TjoArrSlots::~TjoArrSlots() {
  ClearQuietly();
}

void TjoArrSlots::InitItem(void* P, int Size) {
  if (OnInitItem)
    OnInitItem(this, P, Size);
  else if (OnInitItems)
    OnInitItems(this, P, 1, Size);
}

void TjoArrSlots::InitItems(void* P, int Size, int N) {
  if (OnInitItems)
    OnInitItems(this, P, N, Size);
  else if (OnInitItem)
    TjoCustomArrSlots::InitItems(P, Size, N);
}

void TjoArrSlots::FinalizeItem(void* P, int Size) {
  if (OnFinalizeItem)
    OnFinalizeItem(this, P, Size);
  else if (OnFinalizeItems)
    OnFinalizeItems(this, P, 1, Size);
}

void TjoArrSlots::FinalizeItems(void* P, int Size, int N) {
  if (OnFinalizeItems)
    OnFinalizeItems(this, P, N, Size);
  else if (OnFinalizeItem)
    TjoCustomArrSlots::FinalizeItems(P, Size, N);
}

void TjoArrSlots::CopyItem(void* Src, void* Dst) {
  if (OnCopyItem)
    OnCopyItem(this, Src, Dst);
  else
    TjoCustomArrSlots::CopyItem(Src, Dst);
}

// ---- TjoArrRecords --------------------------------------------------------------

namespace {
int RecordSize(const TjoTypeInfo* Info) {
  if (!Info || Info->Kind != TjoTypeKind::Record) return 0;
  return Info->Size;
}
}  // namespace

TjoArrRecords::TjoArrRecords(const TjoTypeInfo* ATypeInfo) : TjoArrRecords(ATypeInfo, "TjoArrRecords") {}

TjoArrRecords::TjoArrRecords(const TjoTypeInfo* ATypeInfo, const char* AClassName) : TjoCustomArrSlots(0) {
  int size = RecordSize(ATypeInfo);
  if (size < 1) {
    // Virtual calls do not reach the class being built yet, so its name is passed in.
    std::string text = std::string(AClassName) + ": " + SjoCantCreateArray;
    if (joArrErrorProc) {
      joArrErrorProc(text);
      return;
    }
    throw Exception(text);
  }
  SetItemSize(size);
  FTypeInfo = ATypeInfo;
}

TjoArrRecords::~TjoArrRecords() {
  ClearQuietly();
}

void TjoArrRecords::InitItem(void* P, int Size) {
  std::memset(P, 0, std::size_t(Size));
  if (FTypeInfo && FTypeInfo->Initialize) FTypeInfo->Initialize(P, 1);
  if (OnInitItem) OnInitItem(this, P);
}

void TjoArrRecords::InitItems(void* P, int Size, int N) {
  std::memset(P, 0, std::size_t(Size) * std::size_t(N));
  if (FTypeInfo && FTypeInfo->Initialize) FTypeInfo->Initialize(P, N);
  if (OnInitItem) {
    auto* p = static_cast<unsigned char*>(P);
    for (int i = 0; i < N; ++i) OnInitItem(this, p + std::size_t(i) * std::size_t(Size));
  }
}

void TjoArrRecords::FinalizeItem(void* P, int) {
  if (OnFinalizeItem) OnFinalizeItem(this, P);
  if (FTypeInfo && FTypeInfo->Finalize) FTypeInfo->Finalize(P, 1);
}

void TjoArrRecords::FinalizeItems(void* P, int Size, int N) {
  if (OnFinalizeItem) {
    auto* p = static_cast<unsigned char*>(P);
    for (int i = 0; i < N; ++i) OnFinalizeItem(this, p + std::size_t(i) * std::size_t(Size));
  }
  if (FTypeInfo && FTypeInfo->Finalize) FTypeInfo->Finalize(P, N);
}

void TjoArrRecords::CopyItem(void* First, void* Second) {
  if (OnCopyItem) {
    OnCopyItem(this, First, Second);
    return;
  }
  if (!FTypeInfo || !FTypeInfo->Copy) {
    Error(Format("Records of %s cannot be copied", FTypeInfo && *FTypeInfo->Name ? FTypeInfo->Name : "this type"));
    return;
  }
  if (First != Second) FTypeInfo->Copy(First, Second);
}

void TjoArrRecords::MoveSlots(void* Dest, void* Source, int N) {
  if (FTypeInfo && FTypeInfo->Relocate)
    FTypeInfo->Relocate(Dest, Source, N);
  else
    TjoCustomArrSlots::MoveSlots(Dest, Source, N);
}

// ---- TjoArrNamedRecords ---------------------------------------------------------

TjoArrNamedRecords::~TjoArrNamedRecords() {
  ClearQuietly();
}

bool TjoArrNamedRecords::QueryItem(void* Item, std::intptr_t Param) {
  bool result = true;
  if (OnQueryItem) OnQueryItem(this, Item, Param, result);
  return result;
}

int TjoArrNamedRecords::IndexOfName(const std::string& Name) {
  for (int i = 0; i < Count(); ++i)
    if (joAnsiSameText(NameOf(ItemPtr(i)), Name)) return i;
  return -1;
}

void* TjoArrNamedRecords::FindName(const std::string& Name, bool CreateIfMissing) {
  int index = IndexOfName(Name);
  if (index >= 0) return ItemPtr(index);
  if (!CreateIfMissing) return nullptr;
  void* p = AddItem();
  if (p) NameOf(p) = Name;
  return p;
}

// ---- text comparison ------------------------------------------------------------

namespace {

// Next character of a UTF-8 text; a byte that does not start a valid sequence stands for itself.
char32_t NextChar(const std::string& s, std::size_t& i) {
  auto b = static_cast<unsigned char>(s[i]);
  int extra = b >= 0xC2 && b <= 0xDF ? 1 : b >= 0xE0 && b <= 0xEF ? 2 : b >= 0xF0 && b <= 0xF4 ? 3 : 0;
  if (extra == 0 || i + extra >= s.size()) {
    ++i;
    return b;
  }
  char32_t c = b & (0x3F >> extra);
  for (int k = 1; k <= extra; ++k) {
    auto n = static_cast<unsigned char>(s[i + k]);
    if ((n & 0xC0) != 0x80) {
      ++i;
      return b;
    }
    c = (c << 6) | (n & 0x3F);
  }
  i += extra + 1;
  return c;
}

locale_t UnicodeLocale() {
  static locale_t loc = newlocale(LC_CTYPE_MASK, "C.UTF-8", locale_t(0));
  return loc;
}

char32_t FoldCase(char32_t c) {
  if (c < 0x80) return c >= 'a' && c <= 'z' ? c - 32 : c;
  if (locale_t loc = UnicodeLocale()) return char32_t(towupper_l(wint_t(c), loc));
  return char32_t(std::towupper(wint_t(c)));
}

}  // namespace

bool joAnsiSameText(const std::string& A, const std::string& B) {
  std::size_t i = 0, j = 0;
  while (i < A.size() && j < B.size()) {
    if (FoldCase(NextChar(A, i)) != FoldCase(NextChar(B, j))) return false;
  }
  return i == A.size() && j == B.size();
}
