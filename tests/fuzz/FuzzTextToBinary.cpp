// Form text to binary: any bytes give a parser error or a stream; a stream we wrote
// always reads back, and its text converts to the same stream.

#include "platform/streaming/ObjectText.h"

#include <cstdio>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  std::string binary;
  try {
    binary = ObjectTextToBinary(input);
  } catch (const EParserError&) {
    return 0;
  }
  // Everything below must succeed: the stream is our own.
  const std::string text = ObjectBinaryToText(binary);
  if (ObjectTextToBinary(text, binary) != binary) {
    std::fprintf(stderr, "binary -> text -> binary differs\n");
    std::abort();
  }
  if (ObjectBinaryToText(ObjectTextToBinary(text)) != text) {
    std::fprintf(stderr, "text is not stable\n");
    std::abort();
  }
  return 0;
}
