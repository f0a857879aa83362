#pragma once
// Growable arrays whose elements live by value, one after another, in a single block.
// Each level of the family adds one thing: storage and index checks, the fixed slot
// size with per-slot hooks, the public operations, hooks as event handlers, records
// with managed members, and records looked up by name.

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>
#include <new>
#include <string>
#include <type_traits>
#include <utility>

inline constexpr const char* SjoListIndexError = "List index [%d] out of bounds...";
inline constexpr const char* SjoCantCreateArray = "Can't create array of kh-kh...";

// When set, array errors are handed to this procedure instead of being raised.
// Nothing in the program installs one.
using TjoArrErrorProc = void (*)(const std::string& Msg);
extern TjoArrErrorProc joArrErrorProc;

class TjoCustomArray;

// Raises Msg prefixed with the array's class name and ": " (only Msg when Sender is none).
void joArrError(const TjoCustomArray* Sender, const std::string& Msg);

// Kind codes of a type description; records are 14.
enum class TjoTypeKind : std::uint8_t {
  Unknown = 0,
  Integer = 1,
  Char = 2,
  Enumeration = 3,
  Float = 4,
  Class = 7,
  Record = 14,
  Int64 = 16,
};

// Run-time description of the type held in each slot of a TjoArrRecords: its size and
// how to set up, release, copy and move records whose members manage memory.
struct TjoTypeInfo {
  TjoTypeKind Kind;
  const char* Name;
  int Size;
  // Zero-filled memory of Count records -> Count live records.
  void (*Initialize)(void* P, int Count);
  // Count live records -> released memory.
  void (*Finalize)(void* P, int Count);
  // Dest := Source, both live; none when the type cannot be copied.
  void (*Copy)(void* Dest, const void* Source);
  // Count live records at Source become live at Dest (released memory before); Source is
  // released. Goes from the first record up, so Dest below Source may overlap.
  void (*Relocate)(void* Dest, void* Source, int Count);
};

namespace joarrs_detail {
template <class T>
void InitializeRecords(void* P, int Count) {
  auto* p = static_cast<unsigned char*>(P);
  for (int i = 0; i < Count; ++i) new (p + std::size_t(i) * sizeof(T)) T();
}
template <class T>
void FinalizeRecords(void* P, int Count) {
  auto* p = static_cast<unsigned char*>(P);
  for (int i = 0; i < Count; ++i) std::launder(reinterpret_cast<T*>(p + std::size_t(i) * sizeof(T)))->~T();
}
template <class T>
void CopyRecord(void* Dest, const void* Source) {
  *std::launder(static_cast<T*>(Dest)) = *std::launder(static_cast<const T*>(Source));
}
template <class T>
void RelocateRecords(void* Dest, void* Source, int Count) {
  auto* d = static_cast<unsigned char*>(Dest);
  auto* s = static_cast<unsigned char*>(Source);
  if constexpr (std::is_trivially_copyable_v<T>) {
    std::memmove(d, s, std::size_t(Count) * sizeof(T));
  } else {
    for (int i = 0; i < Count; ++i) {
      T* from = std::launder(reinterpret_cast<T*>(s + std::size_t(i) * sizeof(T)));
      new (d + std::size_t(i) * sizeof(T)) T(std::move(*from));
      from->~T();
    }
  }
}
template <class T>
constexpr TjoTypeKind KindOf() {
  if constexpr (std::is_class_v<T>) return TjoTypeKind::Record;
  else if constexpr (std::is_same_v<T, char>) return TjoTypeKind::Char;
  else if constexpr (std::is_enum_v<T>) return TjoTypeKind::Enumeration;
  else if constexpr (std::is_integral_v<T> && sizeof(T) == 8) return TjoTypeKind::Int64;
  else if constexpr (std::is_integral_v<T>) return TjoTypeKind::Integer;
  else if constexpr (std::is_floating_point_v<T>) return TjoTypeKind::Float;
  else if constexpr (std::is_pointer_v<T>) return TjoTypeKind::Class;
  else return TjoTypeKind::Unknown;
}
}  // namespace joarrs_detail

// The description of T; a class or struct is described as a record.
template <class T>
const TjoTypeInfo* TypeInfoOf(const char* Name = "") {
  static_assert(std::is_default_constructible_v<T> && std::is_move_constructible_v<T>,
                "array records must be default- and move-constructible");
  static_assert(alignof(T) <= alignof(std::max_align_t), "array records cannot be over-aligned");
  void (*copy)(void*, const void*) = nullptr;
  if constexpr (std::is_copy_assignable_v<T>) copy = &joarrs_detail::CopyRecord<T>;
  static const TjoTypeInfo info{joarrs_detail::KindOf<T>(), Name, int(sizeof(T)),
                                &joarrs_detail::InitializeRecords<T>,
                                &joarrs_detail::FinalizeRecords<T>, copy,
                                &joarrs_detail::RelocateRecords<T>};
  return &info;
}

// Block, count, capacity, growth, index checks and errors.
class TjoCustomArray {
public:
  TjoCustomArray() = default;
  TjoCustomArray(const TjoCustomArray&) = delete;
  TjoCustomArray& operator=(const TjoCustomArray&) = delete;
  virtual ~TjoCustomArray();

  virtual const char* ClassName() const { return "TjoCustomArray"; }

  void* Data() const { return FData; }
  int Count() const { return FCount; }
  int Capacity() const { return FCapacity; }

  // Virtual operations, in their original order.
  virtual void Error(const std::string& Msg);
  virtual void IndexError(int Index);
  virtual void SetCount(int N);
  virtual int ItemSize() const = 0;

  // True when 0 <= Index < Count; a bad index raises when RaiseIfBad is set.
  bool CheckIndex(int Index, bool RaiseIfBad);
  // Data + Index * slot size, for a used slot only (raises otherwise).
  void* ItemPtr(int Index);

  void SetCapacity(int NewCapacity, int Size = 0);
  void Grow();
  int AddSlot();
  void DeleteSlots(int Index, int N);
  void Clear();

protected:
  // Moves N slots of bytes within or between blocks; records override it so that
  // members pointing into themselves survive the move.
  virtual void MoveSlots(void* Dest, void* Source, int N);
  // Clears the array from a destructor, where nothing may escape.
  void ClearQuietly() noexcept;
  // Stores a new count without touching the slots.
  void StoreCount(int N) { FCount = N; }

private:
  unsigned char* FData = nullptr;
  int FCount = 0;
  int FCapacity = 0;
};

// The fixed slot size and the per-slot life-cycle hooks.
class TjoCustomArrSlotsFSS : public TjoCustomArray {
public:
  explicit TjoCustomArrSlotsFSS(int ItemSize) : FItemSize(ItemSize) {}
  ~TjoCustomArrSlotsFSS() override;

  const char* ClassName() const override { return "TjoCustomArrSlotsFSS"; }

  void SetCount(int N) override;
  int ItemSize() const override { return FItemSize; }
  // A different size clears the array first.
  void SetItemSize(int Value);

  virtual void InitItem(void* P, int Size);
  virtual void InitItems(void* P, int Size, int N);
  virtual void FinalizeItem(void* P, int Size);
  // Finalises and clears N + 1 slots: the slot just past the range as well.
  virtual void FinalizeItems(void* P, int Size, int N);
  virtual void CopyItem(void* Src, void* Dst);
  virtual int IndexOfItem(const void* P) const;

protected:
  int FItemSize;
};

// The public operations.
class TjoCustomArrSlots : public TjoCustomArrSlotsFSS {
public:
  using TjoCustomArrSlotsFSS::TjoCustomArrSlotsFSS;
  ~TjoCustomArrSlots() override;

  const char* ClassName() const override { return "TjoCustomArrSlots"; }

  int Add();
  void* AddItem();
  void Delete(int Index);
  void Exchange(int I, int J);
};

// Life-cycle hooks delegated to event handlers.
class TjoArrSlots : public TjoCustomArrSlots {
public:
  using TSlotEvent = std::function<void(TjoArrSlots* Sender, void* P, int Size)>;
  using TSlotsEvent = std::function<void(TjoArrSlots* Sender, void* P, int N, int Size)>;
  using TCopyEvent = std::function<void(TjoArrSlots* Sender, void* Src, void* Dst)>;

  explicit TjoArrSlots(int ItemSize) : TjoCustomArrSlots(ItemSize) {}
  ~TjoArrSlots() override;

  const char* ClassName() const override { return "TjoArrSlots"; }

  void InitItem(void* P, int Size) override;
  void InitItems(void* P, int Size, int N) override;
  void FinalizeItem(void* P, int Size) override;
  void FinalizeItems(void* P, int Size, int N) override;
  void CopyItem(void* Src, void* Dst) override;

  TSlotEvent OnFinalizeItem;
  TSlotsEvent OnFinalizeItems;
  TSlotEvent OnInitItem;
  TSlotsEvent OnInitItems;
  TCopyEvent OnCopyItem;
};

// Slots that are records with managed members, described by a type description.
class TjoArrRecords : public TjoCustomArrSlots {
public:
  using TRecordEvent = std::function<void(TjoArrRecords* Sender, void* P)>;
  using TRecordCopyEvent = std::function<void(TjoArrRecords* Sender, void* First, void* Second)>;

  explicit TjoArrRecords(const TjoTypeInfo* ATypeInfo);
  ~TjoArrRecords() override;

  const char* ClassName() const override { return "TjoArrRecords"; }

  const TjoTypeInfo* TypeInfo() const { return FTypeInfo; }

  void InitItem(void* P, int Size) override;
  void InitItems(void* P, int Size, int N) override;
  void FinalizeItem(void* P, int Size) override;
  void FinalizeItems(void* P, int Size, int N) override;
  // First is the destination, Second the source.
  void CopyItem(void* First, void* Second) override;

  TRecordCopyEvent OnCopyItem;
  TRecordEvent OnFinalizeItem;
  TRecordEvent OnInitItem;

protected:
  // Derived classes pass their own name for the construction error.
  TjoArrRecords(const TjoTypeInfo* ATypeInfo, const char* AClassName);
  void MoveSlots(void* Dest, void* Source, int N) override;

private:
  const TjoTypeInfo* FTypeInfo = nullptr;
};

// Records whose first member is a std::string, the element's name.
class TjoArrNamedRecords : public TjoArrRecords {
public:
  using TQueryEvent =
      std::function<void(TjoArrNamedRecords* Sender, void* Item, std::intptr_t Param, bool& Result)>;

  explicit TjoArrNamedRecords(const TjoTypeInfo* ATypeInfo) : TjoArrRecords(ATypeInfo, "TjoArrNamedRecords") {}
  ~TjoArrNamedRecords() override;

  const char* ClassName() const override { return "TjoArrNamedRecords"; }

  // A question for the owner of the array: True unless OnQueryItem says otherwise.
  virtual bool QueryItem(void* Item, std::intptr_t Param);

  // First slot whose name equals Name without regard to case; -1 when none.
  int IndexOfName(const std::string& Name);
  // The slot of IndexOfName; when missing and CreateIfMissing, a new record named Name.
  void* FindName(const std::string& Name, bool CreateIfMissing);

  // The name member of the record at P.
  static std::string& NameOf(void* P) { return *std::launder(static_cast<std::string*>(P)); }

  TQueryEvent OnQueryItem;
};

// Case-insensitive comparison of two texts that knows letters beyond ASCII.
bool joAnsiSameText(const std::string& A, const std::string& B);
