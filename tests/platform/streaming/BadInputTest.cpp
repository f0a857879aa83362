// Damaged input of every kind: cut short at every byte, bytes flipped at random,
// lengths made absurd. Each gives a runtime error with a clear message or a good read,
// never a crash, a hang or an allocation out of proportion to the input.

#include "platform/streaming/ObjectText.h"
#include "platform/streaming/ResHeader.h"
#include "tests/support/Corpus.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <cstring>
#include <map>
#include <new>
#include <random>

// The largest single allocation since the last reset, to check that no length field
// read from the input makes the converters allocate beyond a small multiple of it.
static std::atomic<std::size_t> LargestAllocation{0};

#if defined(__GNUC__) && !defined(__clang__)
// The replacements below pair malloc with free; the compiler cannot see that.
#pragma GCC diagnostic ignored "-Wmismatched-new-delete"
#endif

void* operator new(std::size_t size) {
  std::size_t seen = LargestAllocation.load(std::memory_order_relaxed);
  while (size > seen && !LargestAllocation.compare_exchange_weak(seen, size, std::memory_order_relaxed)) {
  }
  if (void* p = std::malloc(size ? size : 1)) return p;
  throw std::bad_alloc();
}
void* operator new[](std::size_t size) { return ::operator new(size); }
void operator delete(void* p) noexcept { std::free(p); }
void operator delete[](void* p) noexcept { std::free(p); }
void operator delete(void* p, std::size_t) noexcept { std::free(p); }
void operator delete[](void* p, std::size_t) noexcept { std::free(p); }

namespace {

using lumora::test::CorpusFiles;
using lumora::test::ReadFileBytes;

enum class TOutcome { Converted, RuntimeError, OtherError };

// Converts `data` in the direction its content says; records how it ended.
TOutcome Convert(std::string_view data, std::string* message = nullptr) {
  try {
    switch (DetectFormFileFormat(data)) {
      case TFormFileFormat::Resource: ObjectResourceToText(data); break;
      case TFormFileFormat::Stream: ObjectBinaryToText(data); break;
      case TFormFileFormat::Text: ObjectTextToBinary(data); break;
      case TFormFileFormat::Unknown: ObjectTextToBinary(data); break;
    }
  } catch (const Exception& e) {
    if (message) *message = e.Message();
    return e.Message().empty() ? TOutcome::OtherError : TOutcome::RuntimeError;
  } catch (const std::exception& e) {
    if (message) *message = e.what();
    return TOutcome::OtherError;
  }
  return TOutcome::Converted;
}

// How many conversions of an input of `size` bytes fit a budget of bytes converted,
// within [least, most]: big files get sampled, small ones covered whole.
std::size_t Budgeted(std::size_t size, std::size_t budget, std::size_t least, std::size_t most) {
  const std::size_t n = budget / (size ? size : 1);
  return std::clamp(n, least, most);
}

// Offsets to cut at: every one for small inputs, about `samples` spread over big ones.
std::vector<std::size_t> CutOffsets(std::size_t size, std::size_t samples) {
  std::vector<std::size_t> offsets;
  if (size <= samples) {
    for (std::size_t i = 0; i < size; ++i) offsets.push_back(i);
  } else {
    for (std::size_t i = 0; i < samples; ++i) offsets.push_back(i * size / samples);
    for (std::size_t i = size - 64; i < size; ++i) offsets.push_back(i);  // the very end too
  }
  return offsets;
}

// A few files of each kind: the smallest, a middle one, the largest.
std::vector<std::filesystem::path> SomeFiles(const std::string& folder, const std::string& suffix) {
  std::vector<std::filesystem::path> files = CorpusFiles(folder, suffix);
  std::sort(files.begin(), files.end(), [](const auto& a, const auto& b) {
    return std::filesystem::file_size(a) < std::filesystem::file_size(b);
  });
  std::vector<std::filesystem::path> some;
  if (files.empty()) return some;
  for (std::size_t i : {std::size_t{0}, files.size() / 3, files.size() / 2, files.size() * 3 / 4, files.size() - 1})
    some.push_back(files[i]);
  return some;
}

TEST(BadInput, EveryPrefixOfABinaryFileIsAReadError) {
  LUMORA_REQUIRE_CORPUS();
  int cuts = 0;
  for (const auto& file : SomeFiles("bin", ".dfm")) {
    const std::string data = ReadFileBytes(file);
    for (std::size_t cut : CutOffsets(data.size(), Budgeted(data.size() / 2, 60000000, 100, 3000))) {
      std::string message;
      const TOutcome outcome = Convert(std::string_view(data).substr(0, cut), &message);
      // The stream's last byte ends the root, so nothing shorter can be read.
      ASSERT_NE(outcome, TOutcome::Converted) << file << " cut at " << cut;
      ASSERT_EQ(outcome, TOutcome::RuntimeError) << file << " cut at " << cut << ": " << message;
      ++cuts;
    }
  }
  EXPECT_GT(cuts, 2000);
}

TEST(BadInput, EveryPrefixOfATextFileIsAParserErrorUntilTheLastEnd) {
  LUMORA_REQUIRE_CORPUS();
  int cuts = 0;
  for (const auto& file : SomeFiles("text", ".dfm")) {
    const std::string data = ReadFileBytes(file);
    const std::size_t lastEnd = data.rfind("end");
    ASSERT_NE(lastEnd, std::string::npos);
    for (std::size_t cut : CutOffsets(data.size(), Budgeted(data.size() / 2, 60000000, 100, 3000))) {
      std::string message;
      const std::string_view prefix = std::string_view(data).substr(0, cut);
      TOutcome outcome;
      try {
        ObjectTextToBinary(prefix);
        outcome = TOutcome::Converted;
      } catch (const EParserError& e) {
        message = e.Message();
        outcome = TOutcome::RuntimeError;
        ASSERT_NE(message.find(" on line "), std::string::npos) << message;
      } catch (const std::exception& e) {
        FAIL() << file << " cut at " << cut << ": not a parser error: " << e.what();
      }
      if (cut < lastEnd + 3)
        ASSERT_EQ(outcome, TOutcome::RuntimeError) << file << " cut at " << cut;
      else
        ASSERT_EQ(outcome, TOutcome::Converted) << file << " cut at " << cut << ": " << message;
      ++cuts;
    }
  }
  EXPECT_GT(cuts, 2000);
}

TEST(BadInput, RandomByteFlipsGiveRuntimeErrorsOrGoodReads) {
  LUMORA_REQUIRE_CORPUS();
  std::mt19937 random(20240601);
  std::map<TOutcome, int> outcomes;
  for (const std::string folder : {"bin", "text"}) {
    for (const auto& file : SomeFiles(folder, ".dfm")) {
      const std::string original = ReadFileBytes(file);
      const int rounds = static_cast<int>(Budgeted(original.size(), 30000000, 20, 300));
      for (int round = 0; round < rounds; ++round) {
        std::string data = original;
        const int flips = 1 + static_cast<int>(random() % 8);
        for (int i = 0; i < flips; ++i) {
          const std::size_t at = random() % data.size();
          data[at] = static_cast<char>(random() & 0xFF);
        }
        std::string message;
        const TOutcome outcome = Convert(data, &message);
        ASSERT_NE(outcome, TOutcome::OtherError) << file << " round " << round << ": " << message;
        ++outcomes[outcome];
      }
    }
  }
  EXPECT_GT(outcomes[TOutcome::RuntimeError], 100);
  EXPECT_GT(outcomes[TOutcome::Converted], 100);
}

// Offsets of every 4-byte length field (binary data, long, wide and UTF-8 strings) in a stream.
void FindLengthFields(std::string_view stream, std::vector<std::size_t>& fields) {
  // A plain scan is enough: every type byte followed by a length that fits is a candidate.
  for (std::size_t i = 0; i + 5 <= stream.size(); ++i) {
    const unsigned char type = static_cast<unsigned char>(stream[i]);
    if (type != 10 && type != 12 && type != 18 && type != 20) continue;
    std::uint32_t length;
    std::memcpy(&length, stream.data() + i + 1, 4);
    const std::uint64_t bytes = type == 18 ? std::uint64_t{length} * 2 : length;
    if (bytes > 0 && i + 5 + bytes <= stream.size()) fields.push_back(i + 1);
  }
}

TEST(BadInput, AbsurdLengthsFailAtOnceWithoutAllocating) {
  LUMORA_REQUIRE_CORPUS();
  int tried = 0;
  for (const auto& file : SomeFiles("bin", ".dfm")) {
    const std::string data = ReadFileBytes(file);
    std::vector<std::size_t> fields;
    FindLengthFields(data, fields);
    for (std::size_t field : fields) {
      for (std::uint32_t absurd : {0xFFFFFFFFu, 0x80000000u, 0x7FFFFFFFu, static_cast<std::uint32_t>(data.size())}) {
        std::string damaged = data;
        std::memcpy(damaged.data() + field, &absurd, 4);
        LargestAllocation = 0;
        std::string message;
        const TOutcome outcome = Convert(damaged, &message);
        ASSERT_NE(outcome, TOutcome::OtherError) << file << " field at " << field << ": " << message;
        ASSERT_LE(LargestAllocation.load(), 4 * damaged.size() + 65536) << file << " field at " << field;
        ++tried;
      }
    }
  }
  EXPECT_GT(tried, 10);
}

TEST(BadInput, DamagedCorpusFilesAllocateInProportion) {
  LUMORA_REQUIRE_CORPUS();
  for (const auto& file : CorpusFiles("broken")) {
    const std::string data = ReadFileBytes(file);
    LargestAllocation = 0;
    const TOutcome outcome = Convert(data);
    EXPECT_NE(outcome, TOutcome::OtherError) << file;
    EXPECT_LE(LargestAllocation.load(), 4 * data.size() + 65536) << file;
  }
}

TEST(BadInput, HandMadeAbsurdities) {
  // A 4 GB binary value in a tiny stream.
  std::string stream("TPF0\x06TForm1\x05" "Form1\x04" "Data\x0A\xFF\xFF\xFF\xFF", 27);
  LargestAllocation = 0;
  std::string message;
  EXPECT_EQ(Convert(stream, &message), TOutcome::RuntimeError);
  EXPECT_EQ(message, "Stream read error at byte 27 (Form1.Data)");
  EXPECT_LT(LargestAllocation.load(), 65536u);
  // A resource header whose size field claims 4 GB: the field is not trusted.
  const std::string body = ObjectTextToBinary("object A: TA end");
  std::string resource = MakeResHeader("TA", 0xFFFFFFFFu) + body;
  EXPECT_EQ(Convert(resource), TOutcome::Converted);
  // Deep nesting of every kind.
  EXPECT_EQ(Convert("object A: TA\n  X = " + std::string(100000, '(')), TOutcome::RuntimeError);
  EXPECT_EQ(Convert("TPF0\x06TForm1\x05" "Form1\x01X" + std::string(100000, '\x01')), TOutcome::RuntimeError);
  std::string deep = "TPF0";
  for (int i = 0; i < 100000; ++i) deep += std::string("\x01T\x00\x00", 4);
  EXPECT_EQ(Convert(deep), TOutcome::RuntimeError);
  // Nothing but a header, a signature, zeros, high bytes.
  EXPECT_EQ(Convert(MakeResHeader("X", 0)), TOutcome::RuntimeError);
  EXPECT_EQ(Convert("TPF0"), TOutcome::RuntimeError);
  EXPECT_EQ(Convert(std::string(1000, '\0')), TOutcome::RuntimeError);
  EXPECT_EQ(Convert("TPF0" + std::string(1000, '\xFF')), TOutcome::RuntimeError);
  EXPECT_EQ(Convert(std::string(1000, '\xFF')), TOutcome::RuntimeError);
}

}  // namespace
