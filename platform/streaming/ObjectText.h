#pragma once
// Conversions between the binary form stream ("TPF0" ...), the resource file that
// holds it on disk (resource header + stream) and the form text ("object ... end").
// Binary to text and back gives the same bytes for every stream Delphi writes.
// Errors: EReadError / EInvalidImage for binary input, EParserError "<what> on line N"
// for text input.

#include "platform/streaming/Streams.h"
#include "platform/streaming/SysUtils.h"

#include <string>
#include <string_view>

// Binary stream (starting with "TPF0") to form text with CR LF line ends.
std::string ObjectBinaryToText(std::string_view stream);
// Reads a binary stream through as ObjectBinaryToText does and raises the same errors,
// without making the text: whether the stream can be converted.
void CheckObjectBinary(std::string_view stream);
// Form text to a binary stream starting with "TPF0".
std::string ObjectTextToBinary(std::string_view text);
// The same, keeping the exact bytes that `reference` (the stream the text was made
// from) has for each property whose value reads as the same text. The notation does
// not tell every value type apart (1.0 as a float is "1", an empty wide string is
// "''"), so this gives back the very same stream after binary -> text -> binary.
std::string ObjectTextToBinary(std::string_view text, std::string_view reference);
// Form text to a resource file: header named after the root's class, then the stream.
std::string ObjectTextToResource(std::string_view text);
// Resource file (header + stream) to form text.
std::string ObjectResourceToText(std::string_view resource);

// The same conversions on streams: read `input` from its position to its end,
// write the result at `output`'s position.
void ObjectBinaryToText(TStream& input, TStream& output);
void ObjectTextToBinary(TStream& input, TStream& output);
void ObjectTextToResource(TStream& input, TStream& output);
void ObjectResourceToText(TStream& input, TStream& output);

// What a form file holds, judged from its content only.
enum class TFormFileFormat {
  Unknown,   // none of the below
  Resource,  // resource header (0xFF 0x0A 0x00 ...) in front of a binary stream
  Stream,    // a bare binary stream starting with "TPF0"
  Text,      // form text starting with object / inherited / inline (any case, after blanks)
};

// Tells the format of a form file from its first bytes.
TFormFileFormat DetectFormFileFormat(std::string_view data);

// The class name of the root component of a binary stream ("TForm1"); raises like
// ObjectBinaryToText when the stream is damaged before the name.
std::string StreamRootClassName(std::string_view stream);
// The root component's name and class ("Form1", "TForm1"), read as StreamRootClassName.
struct TStreamRoot {
  std::string Name;
  std::string ClassName;
};
TStreamRoot StreamRoot(std::string_view stream);
