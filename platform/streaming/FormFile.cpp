#include "platform/streaming/FormFile.h"

#include "platform/streaming/ResHeader.h"
#include "platform/streaming/RtlConsts.h"
#include "platform/streaming/Streams.h"

TFormFile::TFormFile(std::string bytes) : FBytes(std::move(bytes)), FFormat(DetectFormFileFormat(FBytes)) {
  if (FFormat == TFormFileFormat::Resource) {
    FStreamOffset = ReadResHeader(FBytes);
    FResourceName = ResHeaderName(FBytes);
  }
}

TFormFile TFormFile::Read(const std::string& fileName) { return TFormFile(ReadFileToString(fileName)); }

std::string_view TFormFile::Stream() {
  switch (FFormat) {
    case TFormFileFormat::Resource:
    case TFormFileFormat::Stream: return std::string_view(FBytes).substr(FStreamOffset);
    case TFormFileFormat::Text:
      if (!FHasConverted) {
        FConverted = ObjectTextToBinary(FBytes);
        FHasConverted = true;
      }
      return FConverted;
    case TFormFileFormat::Unknown: break;
  }
  throw EInvalidImage(RtlConsts::SInvalidImage);
}
