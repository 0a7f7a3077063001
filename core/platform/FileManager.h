// Files and folders. Any thread: the operations hold no state of the caller's.
//
// No operation here overwrites: a move or a copy onto something that exists fails and leaves both as they are.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>
#include <vector>

#include "core/base/Date.h"
#include "core/base/FileURL.h"
#include "core/platform/PlatformError.h"

namespace quenlio {

// Which file it is, wherever it is moved to. No other has the same, nor has one that is made after it has gone.
struct FileIdentity {
  std::uint64_t device = 0;
  std::uint64_t number = 0;  // given to another file once this one has gone
  Date birth{};
  bool operator==(const FileIdentity&) const = default;
};

struct FileAttributes {
  std::optional<Date> creationDate;  // none where the file system keeps none
  std::optional<std::int64_t> size;  // bytes
};

// One entry of a listing, with its values as far as they can be read. A picture that is still being
// written has none.
struct DirectoryEntry {
  FileURL url;
  std::optional<bool> isRegularFile;
  std::optional<Date> creationDate;
};

enum class HiddenFiles { skip, include };

class FileManager {
 public:
  virtual ~FileManager() = default;

  // Links are followed.
  [[nodiscard]] virtual bool fileExistsAtPath(const FileURL& url) const = 0;
  // What has that very name, be it a link that leads nowhere; nothing when the name is free.
  [[nodiscard]] virtual std::optional<FileIdentity> identityOfItemAtPath(const FileURL& url) const = 0;
  [[nodiscard]] virtual bool isDirectory(const FileURL& url) const = 0;
  [[nodiscard]] virtual bool isReadableFileAtPath(const FileURL& url) const = 0;
  [[nodiscard]] virtual PlatformResult<FileAttributes> attributesOfItemAtPath(const FileURL& url) const = 0;
  // The direct contents, in the order of the file system.
  [[nodiscard]] virtual PlatformResult<std::vector<DirectoryEntry>> contentsOfDirectoryAtURL(
      const FileURL& url, HiddenFiles hidden) const = 0;
  // Whether contentsOfDirectoryAtURL() would succeed, without the work of a whole listing.
  [[nodiscard]] virtual bool canListDirectoryAtURL(const FileURL& url) const = 0;
  // Everything below a folder, hidden files included, each folder before its contents; links are not followed. Stops
  // early and silently where something cannot be read. False when the folder itself cannot be.
  virtual bool enumerateAtURL(const FileURL& url,
                              const std::function<void(const FileURL&, bool isDirectory)>& visit) const = 0;
  // With the folders above it. One that exists is no error.
  virtual PlatformResult<Done> createDirectoryAtURL(const FileURL& url) = 0;
  // Also across file systems. The destination must not exist.
  virtual PlatformResult<Done> moveItemAtURL(const FileURL& from, const FileURL& to) = 0;
  // One file. The destination must not exist.
  virtual PlatformResult<Done> copyItemAtURL(const FileURL& from, const FileURL& to) = 0;
  virtual PlatformResult<Done> removeItemAtURL(const FileURL& url) = 0;
  // Moves it to the user's trash and tells where it lies there, if that is known. Moved back out of the trash, it
  // leaves nothing behind there.
  virtual PlatformResult<std::optional<FileURL>> trashItemAtURL(const FileURL& url) = 0;
};

// The contents of small files.
class FileContents {
 public:
  virtual ~FileContents() = default;
  [[nodiscard]] virtual PlatformResult<std::string> read(const FileURL& url) const = 0;
  // Whole or not at all: a reader sees the old file or the new one, and so does the next run after a crash.
  virtual PlatformResult<Done> writeAtomically(const FileURL& url, std::string_view data) = 0;
  // At the end of the file, which is made when it is not there.
  virtual PlatformResult<Done> append(const FileURL& url, std::string_view data) = 0;
};

// Where the user's folders are.
class StandardDirectories {
 public:
  virtual ~StandardDirectories() = default;
  [[nodiscard]] virtual FileURL homeDirectory() const = 0;
  [[nodiscard]] virtual FileURL temporaryDirectory() const = 0;
  // URLsForDirectory in the user domain; nothing when the desktop has none.
  [[nodiscard]] virtual std::optional<FileURL> applicationSupportDirectory() const = 0;
  [[nodiscard]] virtual std::optional<FileURL> desktopDirectory() const = 0;
};

}  // namespace quenlio
