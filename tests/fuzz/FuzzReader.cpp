// Reads any bytes as a form into live components of the test classes.
// Any bytes read as a form into live components give components or a runtime error,
// never a crash or a hang; whatever was read writes out and reads back.

#include "platform/rtti/Classes.h"
#include "platform/streaming/ResHeader.h"
#include "tests/platform/rtti/TestClasses.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const bool registered = [] {
    for (TClass c : TestClasses()) RegisterClass(c);
    RegisterTestColorNames();
    return true;
  }();
  (void)registered;
  std::string_view input(reinterpret_cast<const char*>(data), size);
  if (!input.empty() && static_cast<unsigned char>(input[0]) == 0xFF) {
    try {
      input.remove_prefix(ReadResHeader(input));
    } catch (const Exception&) {
      return 0;
    }
  }
  auto accept = [](TReader& r) {
    r.OnError = [](TReader*, const std::string&, bool& handled) { handled = true; };
  };
  TTestForm form(nullptr);
  try {
    ReadComponentFromBinary(&form, input, accept);
  } catch (const Exception&) {
    return 0;
  }
  std::string written;
  try {
    written = WriteComponentToBinary(&form);
  } catch (const EWriteError&) {
    return 0;  // a name longer than 255 bytes cannot be written
  }
  TTestForm again(nullptr);
  try {
    ReadComponentFromBinary(&again, written, accept);
  } catch (const Exception& e) {
    std::fprintf(stderr, "a stream we wrote does not read: %s\n", e.Message().c_str());
    std::abort();
  }
  return 0;
}
