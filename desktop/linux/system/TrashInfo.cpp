#include "desktop/linux/system/TrashInfo.h"

#include <array>
#include <chrono>
#include <ctime>
#include <mutex>
#include <unistd.h>

#include "core/base/Text.h"
#include "core/base/Uuid.h"

#include "desktop/linux/system/FileURI.h"

namespace quenlio {
namespace {

// Past it, counting on would ask the folder about each of the thousands of files of the same name that may be there.
constexpr int kLastNumber = 20;

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
  return std::string(beginning(fileName, longest - end.size())) + end;
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
