#include "platform/streaming/ResHeader.h"
#include "platform/streaming/SysUtils.h"

#include "tests/support/Errors.h"

#include <gtest/gtest.h>

using lumora::test::MessageOf;

namespace {

TEST(ResHeader, ReadsTheExactRule) {
  const std::string header = MakeResHeader("TForm1", 100);
  EXPECT_EQ(header, std::string("\xFF\x0A\x00TFORM1\x00\x30\x10\x64\x00\x00\x00", 16));
  EXPECT_EQ(ReadResHeader(header + "TPF0"), 16u);
  // Flags and size are not checked.
  std::string odd = header;
  odd[odd.size() - 1] = '\x7F';
  odd[10] = '\x00';
  EXPECT_EQ(ReadResHeader(odd + "TPF0"), 16u);
}

TEST(ResHeader, NoHeaderIsInvalidStreamFormat) {
  for (std::string_view data : {std::string_view("TPF0"), std::string_view(""), std::string_view("\xFF\x0B\x00", 3),
                                std::string_view("\xFF\x0A\x01", 3), std::string_view("object")}) {
    EXPECT_EQ(MessageOf<EInvalidImage>([&] { ReadResHeader(data); }), "Invalid stream format");
  }
}

TEST(ResHeader, ANameRunningPastTheProbeEndsThere) {
  // A name without its zero byte within the first 79 bytes: the rule stops at byte 79.
  std::string data = std::string("\xFF\x0A\x00", 3) + std::string(200, 'A');
  EXPECT_EQ(ReadResHeader(data), 76u + 10u);
  // A header cut short never points beyond the data.
  EXPECT_EQ(ReadResHeader(std::string_view("\xFF\x0A\x00" "AB", 5)), 5u);
}

}  // namespace
