// Binary stream (or resource file) to text: any bytes give a runtime error or a text.
// When that text parses, the stream it gives comes back exactly through text.

#include "platform/streaming/ObjectText.h"

#include <cstdio>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  std::string text;
  try {
    text = DetectFormFileFormat(input) == TFormFileFormat::Resource ? ObjectResourceToText(input)
                                                                     : ObjectBinaryToText(input);
  } catch (const Exception&) {
    return 0;
  }
  std::string binary;
  try {
    binary = ObjectTextToBinary(text);
  } catch (const EParserError&) {
    return 0;  // names holding blanks or line ends cannot be written as text
  }
  // A stream we wrote always reads, and comes back through its text: with the stream
  // as reference to the byte, without it to the same text.
  const std::string again = ObjectBinaryToText(binary);
  if (ObjectTextToBinary(again, binary) != binary) {
    std::fprintf(stderr, "binary -> text -> binary differs\n");
    std::abort();
  }
  if (ObjectBinaryToText(ObjectTextToBinary(again)) != again) {
    std::fprintf(stderr, "text is not stable\n");
    std::abort();
  }
  return 0;
}
