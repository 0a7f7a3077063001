#include "desktop/linux/system/FileURI.h"

#include <string_view>

namespace quenlio {
namespace {

constexpr std::string_view kPlain = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~/";

}  // namespace

std::string fileURI(const FileURL& url) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  std::string result = "file://";
  for (const char byte : url.path()) {
    if (kPlain.find(byte) != std::string_view::npos) {
      result += byte;
    } else {
      const auto value = static_cast<unsigned char>(byte);
      result += {'%', digits[value >> 4U], digits[value & 0xfU]};
    }
  }
  return result;
}

std::string uriList(const std::vector<FileURL>& urls) {
  std::string list;
  for (const FileURL& url : urls) {
    list += fileURI(url) + "\r\n";
  }
  return list;
}

std::string pathLines(const std::vector<FileURL>& urls) {
  std::string lines;
  for (const FileURL& url : urls) {
    lines += (lines.empty() ? "" : "\n") + url.path();
  }
  return lines;
}

}  // namespace quenlio
