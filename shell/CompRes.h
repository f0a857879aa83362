#pragma once
// The form resource document: one form held as a binary form stream ("TPF0" ...), turned
// on demand into form text in a string list, into a live component tree, and back from
// either. It tells whoever shows it when its content changes.

#include "platform/rtti/Classes.h"
#include "platform/rtti/Reader.h"
#include "platform/streaming/Streams.h"

#include <memory>
#include <string>
#include <string_view>

class TjoComponentResource : public TComponent {
  LUMORA_CLASS(TjoComponentResource, TComponent)
public:
  explicit TjoComponentResource(TComponent* AOwner);
  ~TjoComponentResource() override;

  // True when nothing is loaded.
  bool IsEmpty() const;
  // Empties the document; the change event is raised when it held something.
  void Clear();
  // False when the file does not exist; otherwise the file must be a binary form file
  // with its resource header (EInvalidImage "Invalid stream format" when it has none), or
  // name a form inside a program as PROGRAM:NAME (EPeImageError when it has no such form).
  bool LoadFromFile(const std::string& FileName);
  // Takes the stream from its position to its end; with HasHeader the resource header is
  // read first. False (and an empty document) when what follows is no "TPF0" stream.
  bool LoadFromStream(TStream& Stream, bool HasHeader);

  // From a string list (form text; EParserError when it does not parse) or a component.
  // Form text keeps the bytes of the stream held before for every value it still has
  // (the text does not tell every value type apart), so a text taken from the document
  // and given back unchanged gives the same stream. Anything else is ignored.
  void Assign(TPersistent* Source) override;
  // To a string list (form text) or a component (its owned components are replaced by
  // the form's); anything else is the usual cannot-assign error.
  void AssignTo(TPersistent* Dest) override;

  // The binary form stream, without resource header (empty when nothing is loaded).
  std::string_view Data() const;

  // Raised after the content changed.
  TNotifyEvent OnChange;

  // Given to the reader when a component tree is built. Never empty: setting an empty
  // event installs the default again (errors deferred, reading goes on).
  const TReaderError& OnReadError() const { return FOnReadError; }
  void SetOnReadError(const TReaderError& Value);
  // Given to the reader. Never empty: the default drops event bindings without an error.
  const TFindMethodEvent& OnFindMethod() const { return FOnFindMethod; }
  void SetOnFindMethod(const TFindMethodEvent& Value);

  // The defaults.
  void DefaultReadError(TReader* Reader, const std::string& Message, bool& Handled);
  void DefaultFindMethod(TReader* Reader, const std::string& MethodName, TMethod& Method, bool& Error);

protected:
  // Raises OnChange unless Assign is running.
  void Changed();

private:
  TMemoryStream& NeedData();
  // Takes `Stream` as the content when it starts with "TPF0" (else empties it) and
  // raises OnChange unless the document was and stays empty.
  bool TakeStream(std::string_view Stream, bool WasEmpty);

  std::unique_ptr<TMemoryStream> FData;
  bool FUpdating = false;
  TReaderError FOnReadError;
  TFindMethodEvent FOnFindMethod;
};
