// Writes small seeds for the program fuzzer: each real program shrunk to its headers and
// its resource section (the rest is code the reader never looks at), and hand-made
// images of what the real ones lack.
// Usage: make_pe_seeds <output folder> <program>...

#include "platform/streaming/PeImage.h"
#include "platform/streaming/SaveFile.h"
#include "platform/streaming/Streams.h"
#include "tests/support/PeBuilder.h"

#include <cstdio>
#include <cstring>
#include <filesystem>

namespace {

using lumora::test::pe_builder_detail::Put16;
using lumora::test::pe_builder_detail::Put32;

std::uint32_t Get(const std::string& s, std::size_t at, int bytes) {
  std::uint32_t v = 0;
  for (int i = bytes - 1; i >= 0; --i) v = v << 8 | static_cast<unsigned char>(s[at + i]);
  return v;
}

// The headers, one section table entry (the resource section's) and that section's data.
std::string Shrink(const std::string& program) {
  const TPeImage image(program);
  const std::size_t pe = Get(program, 0x3C, 4);
  const std::size_t table = pe + 24 + Get(program, pe + 20, 2);
  for (std::size_t i = 0; i < image.Sections().size(); ++i) {
    const TPeSection& s = image.Sections()[i];
    if (image.ResourceTableOffset() < s.RawOffset || image.ResourceTableOffset() >= std::uint64_t{s.RawOffset} + s.RawSize)
      continue;
    std::string seed = program.substr(0, table + 40);
    seed.replace(table, 40, program.substr(table + 40 * i, 40));
    Put16(seed, pe + 6, 1);
    Put32(seed, table + 20, static_cast<std::uint32_t>(seed.size()));
    seed += program.substr(s.RawOffset, s.RawSize);
    return seed;
  }
  return {};
}

std::string Form(const char* className) {
  // "object Form1: <class>" with one property, written as a binary stream by hand.
  std::string stream = "TPF0";
  stream += static_cast<char>(std::strlen(className));
  stream += className;
  stream += std::string_view("\x05" "Form1" "\x04" "Left" "\x02\x08" "\x00\x00", 15);
  return stream;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) {
    std::fprintf(stderr, "usage: make_pe_seeds <output folder> <program>...\n");
    return 2;
  }
  const std::filesystem::path out = argv[1];
  std::filesystem::create_directories(out);
  int written = 0;
  auto write = [&](const std::string& name, const std::string& bytes) {
    if (bytes.empty() || bytes.size() > 65536) return;
    SaveFile((out / name).string(), bytes);
    ++written;
  };
  for (int i = 2; i < argc; ++i) {
    try {
      write(std::filesystem::path(argv[i]).filename().string(), Shrink(ReadFileToString(argv[i])));
    } catch (const Exception& e) {
      std::fprintf(stderr, "make_pe_seeds: %s: %s\n", argv[i], e.Message().c_str());
    }
  }
  using lumora::test::BuildPeImage;
  using lumora::test::BuildVersionResource;
  write("pe32plus", BuildPeImage({{"#10", "TFORM1", 0, Form("TForm1")}, {"#10", "TABOUT", 0, Form("TAbout")}}, true).Bytes);
  write("numbered", BuildPeImage({{"#10", "#7", 0, Form("TForm7")}, {"TYPELIB", "#1", 0, "x"}}).Bytes);
  write("languages", BuildPeImage({{"#10", "TFORM1", 0x407, Form("TForm1")}, {"#10", "TFORM1", 0x409, Form("TForm1")}}).Bytes);
  write("empty", BuildPeImage({}).Bytes);
  write("version", BuildPeImage({{"#16", "#1", 0, BuildVersionResource({{0x409, 1252}}, {{"040904E4", {{"FileVersion", "1.0.0.0"}, {"ProductName", "Seed"}}}})}}).Bytes);
  std::printf("%d seeds\n", written);
  return written > 0 ? 0 : 1;
}
