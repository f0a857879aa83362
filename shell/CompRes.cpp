#include "shell/CompRes.h"

#include "foundation/ApEvent.h"
#include "platform/rtti/ClassBuilder.h"
#include "platform/rtti/Writer.h"
#include "platform/streaming/FormFile.h"
#include "platform/streaming/ObjectText.h"
#include "platform/streaming/RtlConsts.h"

#include <filesystem>

namespace {

// One scratch stream for the text conversions of every document; any document's
// destructor frees it, the next conversion makes it again.
std::unique_ptr<TMemoryStream> ScratchStream;

TMemoryStream& Scratch() {
  if (!ScratchStream) ScratchStream = std::make_unique<TMemoryStream>();
  return *ScratchStream;
}

// Empties the scratch stream and rewinds the document's data however the work ends.
class TConversionScope {
public:
  explicit TConversionScope(TMemoryStream* data) : FData(data) {}
  ~TConversionScope() {
    if (ScratchStream) ScratchStream->Clear();
    if (FData) FData->SetPosition(0);
  }

private:
  TMemoryStream* FData;
};

}  // namespace

LUMORA_CLASS_IMPL(TjoComponentResource) {
  c.Property("OnChange", &TjoComponentResource::OnChange, &TjoComponentResource::OnChange);
}

TjoComponentResource::TjoComponentResource(TComponent* AOwner) : TComponent(AOwner) {
  SetOnReadError(nullptr);
  SetOnFindMethod(nullptr);
}

TjoComponentResource::~TjoComponentResource() {
  try {
    Clear();
  } catch (...) {
    // A change handler failed while the document goes; nothing can be done about it here.
  }
  FData.reset();
  ScratchStream.reset();
}

TMemoryStream& TjoComponentResource::NeedData() {
  if (!FData) FData = std::make_unique<TMemoryStream>();
  return *FData;
}

bool TjoComponentResource::IsEmpty() const {
  return !FData || FData->Size() == 0;
}

std::string_view TjoComponentResource::Data() const {
  return FData ? FData->View() : std::string_view();
}

void TjoComponentResource::Clear() {
  if (IsEmpty()) return;
  FData->Clear();
  Changed();
}

void TjoComponentResource::Changed() {
  if (!FUpdating && OnChange) OnChange(this);
}

bool TjoComponentResource::LoadFromFile(const std::string& FileName) {
  std::error_code ec;
  const std::string path = SplitProgramFormName(FileName).File;
  if (path.empty() || !std::filesystem::exists(path, ec) || std::filesystem::is_directory(path, ec)) return false;
  TFormFile file = TFormFile::Read(FileName);
  const bool wasEmpty = IsEmpty();
  NeedData().Clear();
  // Only a binary form file with its resource header, or a form inside a program, is
  // taken; form text comes in through Assign.
  if (!file.HasResourceHeader() && file.ProgramName().empty()) throw EInvalidImage(RtlConsts::SInvalidImage);
  return TakeStream(file.Stream(), wasEmpty);
}

bool TjoComponentResource::LoadFromStream(TStream& Stream, bool HasHeader) {
  const bool wasEmpty = IsEmpty();
  NeedData().Clear();
  if (HasHeader) Stream.ReadResHeader();
  return TakeStream(Stream.ReadRest(), wasEmpty);
}

bool TjoComponentResource::TakeStream(std::string_view Stream, bool WasEmpty) {
  TMemoryStream& data = NeedData();
  data.Clear();
  data.WriteBuffer(Stream);
  data.SetPosition(0);
  const bool ok = data.Size() >= 4 && data.View().substr(0, 4) == "TPF0";
  if (!ok) data.Clear();
  if (!(WasEmpty && IsEmpty())) Changed();
  return ok;
}

void TjoComponentResource::AssignTo(TPersistent* Dest) {
  if (auto* list = dynamic_cast<TStrings*>(Dest)) {
    list->Clear();
    if (IsEmpty()) return;
    TConversionScope scope(FData.get());
    TMemoryStream& scratch = Scratch();
    scratch.Clear();
    FData->SetPosition(0);
    ObjectBinaryToText(*FData, scratch);
    scratch.SetPosition(0);
    FData->SetPosition(0);
    list->LoadFromStream(scratch);
    return;
  }
  if (auto* component = dynamic_cast<TComponent*>(Dest)) {
    component->DestroyComponents();
    if (IsEmpty()) return;
    TConversionScope scope(FData.get());
    FData->SetPosition(0);
    TReader reader(*FData);
    reader.OnFindMethod = FOnFindMethod;
    reader.OnError = FOnReadError;
    reader.ReadRootComponent(component);
    return;
  }
  TComponent::AssignTo(Dest);
}

void TjoComponentResource::Assign(TPersistent* Source) {
  auto* list = dynamic_cast<TStrings*>(Source);
  auto* component = list ? nullptr : dynamic_cast<TComponent*>(Source);
  if (!list && !component) return;  // anything else is ignored, deliberately
  FUpdating = true;
  try {
    // The stream held so far tells the types of the values the text leaves open, so
    // that what the text did not change comes back byte for byte.
    const std::string reference(list ? Data() : std::string_view());
    Clear();
    TMemoryStream& data = NeedData();
    if (list) {
      TConversionScope scope(&data);
      TMemoryStream& scratch = Scratch();
      scratch.Clear();
      list->SaveToStream(scratch);
      scratch.SetPosition(0);
      if (reference.empty()) {
        ObjectTextToBinary(scratch, data);
      } else {
        data.WriteBuffer(ObjectTextToBinary(scratch.View(), reference));
      }
    } else {
      WriteComponent(data, component);
    }
    data.SetPosition(0);
  } catch (...) {
    // Whatever was written before the failure is no form stream.
    if (FData) FData->Clear();
    FUpdating = false;
    throw;
  }
  FUpdating = false;
  Changed();
}

void TjoComponentResource::SetOnReadError(const TReaderError& Value) {
  FOnReadError = Value ? Value : MakeMethod<&TjoComponentResource::DefaultReadError>(this);
}

void TjoComponentResource::SetOnFindMethod(const TFindMethodEvent& Value) {
  FOnFindMethod = Value ? Value : MakeMethod<&TjoComponentResource::DefaultFindMethod>(this);
}

void TjoComponentResource::DefaultReadError(TReader*, const std::string& Message, bool& Handled) {
  Handled = true;
  DeferError(Message);
}

void TjoComponentResource::DefaultFindMethod(TReader*, const std::string&, TMethod& Method, bool& Error) {
  Method = TMethod();
  Error = false;
}
