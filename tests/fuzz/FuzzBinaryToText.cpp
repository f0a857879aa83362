// Binary stream (or resource file) to text: any bytes give a runtime error or a text.
// When that text parses, the stream it gives comes back exactly through text. Checking
// a stream without making its text fails exactly when the conversion fails.

#include "platform/streaming/FormFile.h"
#include "platform/streaming/ObjectText.h"

#include <cstdio>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  TFormFile file{std::string(input)};
  const std::string_view stream = file.HasResourceHeader() ? file.Stream() : input;
  std::string checkError = "(none)";
  try {
    CheckObjectBinary(stream);
  } catch (const Exception& e) {
    checkError = e.Message();
  }
  std::string text;
  try {
    text = ObjectBinaryToText(stream);
  } catch (const Exception& e) {
    if (e.Message() != checkError) {
      std::fprintf(stderr, "the check says \"%s\", the conversion \"%s\"\n", checkError.c_str(), e.Message().c_str());
      std::abort();
    }
    return 0;
  }
  if (checkError != "(none)") {
    std::fprintf(stderr, "the check fails a stream that converts: %s\n", checkError.c_str());
    std::abort();
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
