// Binary stream (or resource file) to text: any bytes give a runtime error or a text,
// and a text that parses again comes back as itself.

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
  // Our own binary always reads, and its text is the text we started from.
  if (ObjectBinaryToText(binary) != text) {
    std::fprintf(stderr, "text does not come back as itself\n");
    std::abort();
  }
  return 0;
}
