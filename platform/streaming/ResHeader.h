#pragma once
// The 16-bit Windows resource header in front of a binary form stream on disk:
// 0xFF, 0x000A (RCDATA by number), the zero-terminated resource name, a flags word,
// the 4-byte size of the stream, then the stream.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

// How many bytes the header rule looks at.
inline constexpr std::size_t ResHeaderProbeSize = 79;
// The memory flags the writer puts into a header.
inline constexpr std::uint16_t ResHeaderFlags = 0x1030;

// Length of the header at the start of `probe` (its first ResHeaderProbeSize bytes are
// enough): the name's length + 10. Raises EInvalidImage "Invalid stream format" when
// `probe` does not start with 0xFF 0x0A 0x00. The flags and size fields are not checked.
std::size_t ResHeaderLength(std::string_view probe);

// Whether `data` starts with a resource header as the rule above reads it (0xFF 0x0A
// 0x00; a file that ends after 0xFF 0x0A reads its third byte as zero).
bool HasResHeader(std::string_view data);

// The resource name of the header at the start of `data` ("TFORM1"), as far as the
// rule reads it; raises like ResHeaderLength.
std::string ResHeaderName(std::string_view data);

// Offset of the stream after the resource header at the start of `data`, never beyond
// data.size(); raises EInvalidImage "Invalid stream format" when there is no header.
std::size_t ReadResHeader(std::string_view data);

// A resource header for a stream of `streamSize` bytes, named after `className` in upper case.
std::string MakeResHeader(std::string_view className, std::uint32_t streamSize);
