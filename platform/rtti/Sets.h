#pragma once
// A set of an enumeration, as the form streams and the published properties know it:
// up to 32 elements, held as bits (element n is bit n).

#include <cstdint>
#include <initializer_list>

template <class E>
class TSet {
public:
  using Element = E;

  constexpr TSet() = default;
  constexpr TSet(std::initializer_list<E> items) {
    for (E e : items) Include(e);
  }
  // The set whose bits are `bits`.
  static constexpr TSet FromBits(std::uint32_t bits) {
    TSet s;
    s.FBits = bits;
    return s;
  }
  constexpr std::uint32_t Bits() const { return FBits; }

  constexpr bool Contains(E e) const { return (FBits & Bit(e)) != 0; }
  constexpr TSet& Include(E e) {
    FBits |= Bit(e);
    return *this;
  }
  constexpr TSet& Exclude(E e) {
    FBits &= ~Bit(e);
    return *this;
  }
  constexpr bool Empty() const { return FBits == 0; }

  friend constexpr TSet operator+(TSet a, TSet b) { return FromBits(a.FBits | b.FBits); }
  friend constexpr TSet operator-(TSet a, TSet b) { return FromBits(a.FBits & ~b.FBits); }
  friend constexpr TSet operator*(TSet a, TSet b) { return FromBits(a.FBits & b.FBits); }
  friend constexpr TSet operator+(TSet a, E e) { return a.Include(e); }
  friend constexpr TSet operator-(TSet a, E e) { return a.Exclude(e); }
  constexpr TSet& operator+=(TSet b) { return *this = *this + b; }
  constexpr TSet& operator-=(TSet b) { return *this = *this - b; }
  constexpr TSet& operator*=(TSet b) { return *this = *this * b; }
  constexpr TSet& operator+=(E e) { return Include(e); }
  constexpr TSet& operator-=(E e) { return Exclude(e); }
  friend constexpr bool operator==(TSet a, TSet b) { return a.FBits == b.FBits; }
  // Subset and superset, as Delphi's <= and >= on sets.
  friend constexpr bool operator<=(TSet a, TSet b) { return (a.FBits & ~b.FBits) == 0; }
  friend constexpr bool operator>=(TSet a, TSet b) { return b <= a; }

private:
  static constexpr std::uint32_t Bit(E e) {
    const auto v = static_cast<unsigned>(e);
    return v < 32 ? (std::uint32_t{1} << v) : 0;
  }
  std::uint32_t FBits = 0;
};
