#pragma once
// What an error says, for tests that check the texts users see.

#include <string>

namespace lumora::test {

// The text the runtime sees when nothing was raised.
inline constexpr const char* NothingRaised = "(nothing raised)";

// The message of the E that `f` raises, or NothingRaised. An error of another class
// escapes, so a test expecting one kind of error fails on any other.
template <class E, class F>
std::string MessageOf(F&& f) {
  try {
    f();
  } catch (const E& e) {
    return e.Message();
  }
  return NothingRaised;
}

}  // namespace lumora::test
