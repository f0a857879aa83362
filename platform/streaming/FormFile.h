#pragma once
// A form file as the program opens it: read whole, its kind told from its content
// (resource file, bare binary stream, form text) and never from its name, and the
// binary form stream it holds. Every reader of form files starts here.

#include "platform/streaming/ObjectText.h"

#include <string>
#include <string_view>

class TFormFile {
public:
  // An empty file, of unknown kind.
  TFormFile() = default;
  // Takes a file's bytes and tells their kind.
  explicit TFormFile(std::string bytes);

  // Reads `fileName` whole; raises EFOpenError "Cannot open file %s".
  static TFormFile Read(const std::string& fileName);

  TFormFileFormat Format() const { return FFormat; }
  bool HasResourceHeader() const { return FFormat == TFormFileFormat::Resource; }
  bool IsText() const { return FFormat == TFormFileFormat::Text; }
  // The file's bytes as they are.
  const std::string& Bytes() const { return FBytes; }
  // The resource header's name ("TFORM1"); empty without a header.
  const std::string& ResourceName() const { return FResourceName; }

  // The binary form stream: what follows the resource header, a bare stream as it is, or
  // form text converted (EParserError "... on line N"). Anything else raises EInvalidImage
  // "Invalid stream format". The stream is not checked further here.
  std::string_view Stream();

private:
  std::string FBytes;
  TFormFileFormat FFormat = TFormFileFormat::Unknown;
  std::string FResourceName;
  std::size_t FStreamOffset = 0;
  std::string FConverted;  // the stream made from form text
  bool FHasConverted = false;
};
