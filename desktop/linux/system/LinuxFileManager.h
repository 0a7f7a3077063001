// Files and folders through the kernel's own calls. Any thread.
//
// What is put somewhere is noted as our own before it can be seen there. The listing asks whether each picture is
// finished, and remembers the answer for as long as the file stays as it is, so that listing thousands of files again
// opens none of them.
#pragma once

#include <cstdint>
#include <mutex>
#include <optional>
#include <unordered_map>

#include "core/platform/FileManager.h"
#include "core/platform/Scheduler.h"

#include "desktop/linux/system/OwnFiles.h"
#include "desktop/linux/system/RegularFile.h"

namespace quenlio {

class LinuxFileManager final : public FileManager {
 public:
  // The clock is the one that file times are taken from; the directories tell where the trash is. All outlive this
  // object.
  LinuxFileManager(OwnFiles& own, const Clock& clock, const StandardDirectories& directories)
      : own_(own), clock_(clock), directories_(directories) {}

  // True also where the answer is not for us to know.
  [[nodiscard]] bool fileExistsAtPath(const FileURL& url) const override;
  [[nodiscard]] std::optional<FileIdentity> identityOfItemAtPath(const FileURL& url) const override;
  [[nodiscard]] bool isDirectory(const FileURL& url) const override;
  [[nodiscard]] bool isReadableFileAtPath(const FileURL& url) const override;
  [[nodiscard]] PlatformResult<FileAttributes> attributesOfItemAtPath(const FileURL& url) const override;
  // A link is listed as what it is, no regular file, wherever it leads.
  [[nodiscard]] PlatformResult<std::vector<DirectoryEntry>> contentsOfDirectoryAtURL(const FileURL& url,
                                                                                     HiddenFiles hidden) const override;
  [[nodiscard]] bool canListDirectoryAtURL(const FileURL& url) const override;
  bool enumerateAtURL(const FileURL& url,
                      const std::function<void(const FileURL&, bool isDirectory)>& visit) const override;
  PlatformResult<Done> createDirectoryAtURL(const FileURL& url) override;
  // Folders move within their file system only. What is moved out of a trash is no longer noted there.
  PlatformResult<Done> moveItemAtURL(const FileURL& from, const FileURL& to) override;
  // A link becomes a link to the same place, whatever is there.
  PlatformResult<Done> copyItemAtURL(const FileURL& from, const FileURL& to) override;
  // A folder with all that is in it; a link itself.
  PlatformResult<Done> removeItemAtURL(const FileURL& url) override;
  PlatformResult<std::optional<FileURL>> trashItemAtURL(const FileURL& url) override;

 private:
  struct Known {
    FileStamp stamp;
    std::optional<Date> creationDate;
  };
  struct FileKey {
    std::uint64_t device;
    std::uint64_t inode;
    bool operator==(const FileKey&) const = default;
  };
  struct FileKeyHash {
    std::size_t operator()(const FileKey& key) const noexcept {
      return std::hash<std::uint64_t>{}(key.inode ^ key.device << 40U);
    }
  };

  void fillIn(DirectoryEntry& entry, int folder, const char* name, Date now) const;
  [[nodiscard]] std::optional<Known> known(const FileStamp& stamp) const;
  void remember(const Known& file) const;

  OwnFiles& own_;
  const Clock& clock_;
  const StandardDirectories& directories_;
  mutable std::mutex mutex_;
  mutable std::unordered_map<FileKey, Known, FileKeyHash> finished_;  // guarded by mutex_
};

}  // namespace quenlio
