#include "platform/streaming/ResHeader.h"

#include "platform/streaming/RtlConsts.h"
#include "platform/streaming/SysUtils.h"

#include <algorithm>
#include <cstring>

std::size_t ResHeaderLength(std::string_view probe) {
  // The rule reads a fixed-size block into a zeroed buffer, so a name that runs past
  // the block ends at the block's end, and a short file reads as zeros.
  unsigned char buffer[ResHeaderProbeSize + 1] = {};
  const std::size_t n = probe.size() < ResHeaderProbeSize ? probe.size() : ResHeaderProbeSize;
  std::memcpy(buffer, probe.data(), n);
  if (buffer[0] != 0xFF || buffer[1] != 0x0A || buffer[2] != 0x00) throw EInvalidImage(RtlConsts::SInvalidImage);
  return std::strlen(reinterpret_cast<const char*>(buffer + 3)) + 10;
}

bool HasResHeader(std::string_view data) {
  return data.size() >= 2 && static_cast<unsigned char>(data[0]) == 0xFF && data[1] == 0x0A &&
         (data.size() == 2 || data[2] == 0x00);
}

std::string ResHeaderName(std::string_view data) {
  const std::size_t length = ResHeaderLength(data.substr(0, ResHeaderProbeSize)) - 10;
  return std::string(data.substr(std::min<std::size_t>(3, data.size()), length));
}

std::size_t ReadResHeader(std::string_view data) {
  const std::size_t offset = ResHeaderLength(data.substr(0, ResHeaderProbeSize));
  return offset < data.size() ? offset : data.size();
}

std::string MakeResHeader(std::string_view className, std::uint32_t streamSize) {
  std::string header;
  header.reserve(className.size() + 10);
  header.push_back(static_cast<char>(0xFF));
  header.push_back(static_cast<char>(0x0A));
  header.push_back(static_cast<char>(0x00));
  // A zero byte inside the name would end it early; the name stops there as a reader sees it.
  const std::string upper = UpperCase(className.substr(0, std::min(className.find('\0'), className.size())));
  header.append(upper);
  header.push_back('\0');
  header.push_back(static_cast<char>(ResHeaderFlags & 0xFF));
  header.push_back(static_cast<char>(ResHeaderFlags >> 8));
  for (int i = 0; i < 4; ++i) header.push_back(static_cast<char>((streamSize >> (8 * i)) & 0xFF));
  return header;
}
