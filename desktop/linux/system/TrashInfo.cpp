#include "desktop/linux/system/TrashInfo.h"

#include <array>
#include <chrono>
#include <ctime>
#include <mutex>
#include <unistd.h>

#include "core/base/Uuid.h"

namespace quenlio {
namespace {

// Past it, counting on would ask the folder about each of the thousands of files of the same name that may be there.
constexpr int kLastNumber = 20;

bool isPlain(char byte) {
  return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') || (byte >= '0' && byte <= '9') ||
         std::string_view("-_.~/").find(byte) != std::string_view::npos;
}

// Line ends too, so that a path cannot add lines of its own.
std::string percentEncoded(std::string_view path) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  std::string text;
  for (const char byte : path) {
    if (isPlain(byte)) {
      text += byte;
    } else {
      const auto value = static_cast<unsigned char>(byte);
      text += {'%', digits[value >> 4U], digits[value & 0xFU]};
    }
  }
  return text;
}

std::string localTime(Date date) {
  const std::time_t seconds = std::chrono::floor<std::chrono::seconds>(date).time_since_epoch().count();
  // The system's library has a lock of its own there, of which the thread sanitizer knows nothing.
  static std::mutex zone;
  const std::scoped_lock lock(zone);
  ::tzset();  // the user may have travelled since the start
  std::tm time{};
  std::array<char, 32> text{};
  if (::localtime_r(&seconds, &time) == nullptr) {
    return {};
  }
  return {text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%S", &time)};
}

bool isContinuation(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

// At most that many bytes; a UTF-8 character at the end is whole or left out. What is no UTF-8 is cut anywhere.
std::string_view shortened(std::string_view text, std::size_t longest) {
  if (text.size() <= longest) {
    return text;
  }
  constexpr std::size_t longestCharacter = 4;
  std::size_t end = longest;
  while (end > 0 && longest - end < longestCharacter && isContinuation(text[end])) {
    --end;
  }
  return text.substr(0, isContinuation(text[end]) ? longest : end);
}

}  // namespace

std::string trashInfoText(std::string_view path, Date deleted) {
  return "[Trash Info]\nPath=" + percentEncoded(path) + "\nDeletionDate=" + localTime(deleted) + "\n";
}

std::string nameInTrash(std::string_view fileName, int attempt, std::size_t longest) {
  std::string end;
  if (attempt > 1) {
    end = "." + (attempt <= kLastNumber ? std::to_string(attempt) : Uuid::random().string());
  }
  const std::string_view extension = extensionOf(fileName);
  // An extension that takes most of the name is none that a program could know the file by.
  if (!extension.empty() && extension.size() < longest / 2) {
    end.append(".").append(extension);
    fileName.remove_suffix(extension.size() + 1);
  }
  return std::string(shortened(fileName, longest - end.size())) + end;
}

std::optional<FileURL> trashInfoOf(const FileURL& trashed) {
  const FileURL files = trashed.parent();
  const FileURL trash = files.parent();
  const std::string name = trash.lastPathComponent();
  const std::string user = std::to_string(::geteuid());
  const bool isTrash =
      name == "Trash" || name == ".Trash-" + user || (name == user && trash.parent().lastPathComponent() == ".Trash");
  if (!isTrash || files.lastPathComponent() != "files") {
    return std::nullopt;
  }
  return trash.appending("info").appending(trashed.lastPathComponent().append(kTrashInfoExtension));
}

}  // namespace quenlio
