#pragma once
// A form file as the program opens it: read whole, its kind told from its content
// (resource file, bare binary stream, form text) and never from its name, and the
// binary form stream it holds. A form inside a Windows program (.exe, .dll, .bpl, also
// told by content) is opened as PROGRAM:NAME, NAME being its resource. Every reader of
// form files starts here.

#include "platform/streaming/ObjectText.h"

#include <string>
#include <string_view>
#include <vector>

// One form inside a program, as a list of the program's forms shows it.
struct TProgramForm {
  std::string Resource;   // its resource's name ("TFORM1"), as PROGRAM:NAME takes it
  std::string ClassName;  // its root component's class ("TForm1"); empty when Problem says why
  std::string Problem;    // why the form cannot be read (its resource or stream is damaged)
};

class TFormFile {
public:
  // An empty file, of unknown kind.
  TFormFile() = default;
  // Takes a file's bytes and tells their kind.
  explicit TFormFile(std::string bytes);

  // Reads `fileName` whole; raises EFOpenError "Cannot open file %s". A program gives
  // the form named after its colon (see SplitProgramFormName), or its only form when
  // no name follows; EPeImageError, naming the file, when it has no such form, holds
  // several and none is named, or is no program although a form name follows.
  static TFormFile Read(const std::string& fileName);
  // The form `formName` of the program `image` (its only form when `formName` is
  // empty); `programName` names the program in errors. The image may go afterwards.
  static TFormFile FromProgram(std::string_view image, std::string_view formName, const std::string& programName);
  // Reads `fileName` whole (EFOpenError as Read); false when it is no Windows program.
  // A program's forms go into `forms`, in the order of its resources; EPeImageError,
  // naming the file, when its headers or resource tree are damaged.
  static bool ListProgram(const std::string& fileName, std::vector<TProgramForm>& forms);

  TFormFileFormat Format() const { return FFormat; }
  bool HasResourceHeader() const { return FFormat == TFormFileFormat::Resource; }
  bool IsText() const { return FFormat == TFormFileFormat::Text; }
  // The file's bytes as they are.
  const std::string& Bytes() const { return FBytes; }
  // The resource header's name ("TFORM1"), or the name of the form's resource in a
  // program; empty for other files.
  const std::string& ResourceName() const { return FResourceName; }
  // The program the form was taken from; empty for a form file.
  const std::string& ProgramName() const { return FProgramName; }

  // The binary form stream: what follows the resource header, a bare stream as it is, or
  // form text converted (EParserError "... on line N"). Anything else raises EInvalidImage
  // "Invalid stream format". The stream is not checked further here.
  std::string_view Stream();

private:
  std::string FBytes;
  TFormFileFormat FFormat = TFormFileFormat::Unknown;
  std::string FResourceName;
  std::string FProgramName;
  std::size_t FStreamOffset = 0;
  std::string FConverted;  // the stream made from form text
  bool FHasConverted = false;
};

// A name given for a form file, split: PROGRAM:NAME when no file has the whole name,
// the part before the last colon is a file and the part after it is a plain name.
struct TFormFileName {
  std::string File;
  std::string Form;  // the form's resource name; empty for the whole file
};
TFormFileName SplitProgramFormName(const std::string& name);
