// Any bytes read as a Windows program give its resources or a clear error, never a
// crash or a hang. Every resource's data lies inside the input, and every form found
// converts to text or gives the converter's error.

#include "platform/streaming/ObjectText.h"
#include "platform/streaming/PeImage.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace {

void Fail(const char* why) {
  std::fprintf(stderr, "%s\n", why);
  std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  try {
    const TPeImage image(input);
    for (const TPeResource& r : image.Resources()) {
      if (r.Damaged() ? !r.Data.empty() : r.Data.size() != r.Size) Fail("damage and data disagree");
      if (r.Damaged() && r.DamageText().empty()) Fail("a damaged resource without a message");
      if (!r.Data.empty() && (r.Data.data() < input.data() || r.Data.data() + r.Data.size() > input.data() + input.size()))
        Fail("resource data outside the input");
    }
    for (const TPeResource* form : image.Forms()) {
      if (!image.Form(form->Name.Text()).Name.Matches(form->Name.Text())) Fail("a form not found by its own name");
      try {
        ObjectBinaryToText(form->Bytes());
      } catch (const Exception& e) {
        if (e.Message().empty()) Fail("an error without a message");
      }
    }
    if (const TPeResource* version = image.FirstResource(RT_VERSION)) {
      try {
        const TVersionStrings strings(version->Bytes());
        std::string value;
        strings.Find("FileVersion", value);
      } catch (const EPeImageError& e) {
        if (e.Message().empty()) Fail("an error without a message");
      }
    }
  } catch (const EPeImageError& e) {
    if (e.Message().empty()) Fail("an error without a message");
  }
  return 0;
}
