#include "platform/streaming/FormFile.h"

#include "platform/streaming/PeImage.h"
#include "platform/streaming/ResHeader.h"
#include "platform/streaming/RtlConsts.h"
#include "platform/streaming/Streams.h"

#include <filesystem>

TFormFile::TFormFile(std::string bytes) : FBytes(std::move(bytes)), FFormat(DetectFormFileFormat(FBytes)) {
  if (FFormat == TFormFileFormat::Resource) {
    FStreamOffset = ReadResHeader(FBytes);
    FResourceName = ResHeaderName(FBytes);
  }
}

TFormFile TFormFile::Read(const std::string& fileName) {
  const TFormFileName name = SplitProgramFormName(fileName);
  std::string bytes = ReadFileToString(name.File);
  if (IsPeImage(bytes)) return FromProgram(bytes, name.Form, name.File);
  if (!name.Form.empty())
    throw EPeImageError(
        ::Format("%s: not a Windows program (.exe, .dll, .bpl), so it holds no form named %s", name.File, name.Form));
  return TFormFile(std::move(bytes));
}

TFormFile TFormFile::FromProgram(std::string_view image, std::string_view formName, const std::string& programName) {
  try {
    const TPeImage program(image);
    const TPeResource* form = nullptr;
    if (!formName.empty()) {
      form = &program.Form(formName);
    } else {
      const std::vector<const TPeResource*> forms = program.Forms();
      if (forms.empty()) throw EPeImageError("The program holds no forms");
      if (forms.size() > 1) {
        std::string names;
        for (const TPeResource* f : forms) names += (names.empty() ? "" : ", ") + f->Name.Text();
        throw EPeImageError(::Format("The program holds %u forms (%s); name one as %s:NAME", forms.size(), names,
                                   programName));
      }
      form = forms.front();
    }
    TFormFile file{std::string(form->Bytes())};
    file.FResourceName = form->Name.Text();
    file.FProgramName = programName;
    return file;
  } catch (const EPeImageError& e) {
    throw EPeImageError(::Format("%s: %s", programName, e.Message()));
  }
}

bool TFormFile::ListProgram(const std::string& fileName, std::vector<TProgramForm>& forms) {
  forms.clear();
  const std::string bytes = ReadFileToString(fileName);
  if (!IsPeImage(bytes)) return false;
  try {
    const TPeImage program(bytes);
    for (const TPeResource* resource : program.Forms()) {
      TProgramForm& form = forms.emplace_back();
      form.Resource = resource->Name.Text();
      if (resource->Damaged()) {
        form.Problem = resource->DamageText();
        continue;
      }
      try {
        form.ClassName = StreamRootClassName(resource->Data);
      } catch (const Exception& e) {
        form.Problem = e.Message();
      }
    }
  } catch (const EPeImageError& e) {
    forms.clear();
    throw EPeImageError(::Format("%s: %s", fileName, e.Message()));
  }
  return true;
}

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

TFormFileName SplitProgramFormName(const std::string& name) {
  namespace fs = std::filesystem;
  std::error_code ec;
  const std::size_t colon = name.rfind(':');
  if (colon == std::string::npos || colon == 0 || colon + 1 == name.size()) return {name, {}};
  const std::string form = name.substr(colon + 1);
  if (form.find('/') != std::string::npos || fs::exists(fs::symlink_status(name, ec))) return {name, {}};
  std::string file = name.substr(0, colon);
  if (!fs::exists(file, ec)) return {name, {}};
  return {std::move(file), form};
}
