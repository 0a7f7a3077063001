#include "desktop/linux/system/FileURI.h"

namespace quenlio {
namespace {

constexpr std::string_view kPlain = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~/";

}  // namespace

std::string percentEncoded(std::string_view path) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  std::string result;
  for (const char byte : path) {
    if (kPlain.find(byte) != std::string_view::npos) {
      result += byte;
    } else {
      const auto value = static_cast<unsigned char>(byte);
      result += {'%', digits[value >> 4U], digits[value & 0xfU]};
    }
  }
  return result;
}

std::string fileURI(const FileURL& url) {
  return "file://" + percentEncoded(url.path());
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
