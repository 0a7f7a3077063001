// Files and folders in memory. Works like a file system as far as the program can tell, and fails where a test says so.
#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>

#include "core/platform/FileManager.h"
#include "core/platform/Scheduler.h"

#include "tests/fakes/CallLog.h"

namespace quenlio {

class FakeFileSystem final : public FileManager, public FileContents {
 public:
  // New files are created at the clock's time. The log may be shared with other fakes.
  FakeFileSystem(const Clock& clock, CallLog& log) : clock_(clock), log_(log) {}

  // --- what a test arranges

  // A file, with the folders above it. An existing one gets the new content and keeps its creation date.
  void write(const std::string& path, std::string content = "content");
  void makeFolder(const std::string& path);
  // A link that leads nowhere: the name is taken, and there is no file.
  void makeDanglingLink(const std::string& path);
  void setCreationDate(const std::string& path, std::optional<Date> date) { nodes_.at(path).created = date; }
  // A file that is still being written: it is there, and a listing has no values for it.
  void setUnfinished(const std::string& path, bool unfinished) { nodes_.at(path).isUnfinished = unfinished; }
  void setSizeUnreadable(const std::string& path, bool unreadable) { nodes_.at(path).isSizeUnreadable = unreadable; }
  void setUnreadable(const std::string& path, bool unreadable) { nodes_.at(path).isUnreadable = unreadable; }
  // isReadableFileAtPath says yes, and a listing fails all the same.
  void setUnlistable(const std::string& path, bool unlistable) { nodes_.at(path).isUnlistable = unlistable; }
  // Nothing can be made, changed or removed at or below this path.
  void setReadOnly(const std::string& path) { readOnly_.insert(path); }
  void remove(const std::string& path);
  // A trash that does not tell where it puts things.
  bool trashTellsPlaces = true;
  static constexpr const char* kTrash = "/home/user/trash";
  [[nodiscard]] std::optional<std::string> content(const std::string& path) const;
  // Called before a listing answers: what happens to the folder at just that moment.
  std::function<void(const FileURL&, HiddenFiles)> duringListing;
  // Called before a move looks at its destination: what appears there at just that moment.
  std::function<void(const FileURL& from, const FileURL& to)> duringMove;
  // Told of each file that the program has written or added to, with the bytes that it wrote, once they are there.
  std::function<void(const FileURL&, std::string_view)> afterWriting;
  [[nodiscard]] int readCount() const { return readCount_; }

  // --- FileManager
  [[nodiscard]] bool fileExistsAtPath(const FileURL& url) const override;
  [[nodiscard]] std::optional<FileIdentity> identityOfItemAtPath(const FileURL& url) const override;
  [[nodiscard]] bool isDirectory(const FileURL& url) const override;
  [[nodiscard]] bool isReadableFileAtPath(const FileURL& url) const override;
  [[nodiscard]] PlatformResult<FileAttributes> attributesOfItemAtPath(const FileURL& url) const override;
  [[nodiscard]] PlatformResult<std::vector<DirectoryEntry>> contentsOfDirectoryAtURL(const FileURL& url,
                                                                                     HiddenFiles hidden) const override;
  [[nodiscard]] bool canListDirectoryAtURL(const FileURL& url) const override;
  bool enumerateAtURL(const FileURL& url,
                      const std::function<void(const FileURL&, bool isDirectory)>& visit) const override;
  PlatformResult<Done> createDirectoryAtURL(const FileURL& url) override;
  PlatformResult<Done> moveItemAtURL(const FileURL& from, const FileURL& to) override;
  PlatformResult<Done> copyItemAtURL(const FileURL& from, const FileURL& to) override;
  PlatformResult<Done> removeItemAtURL(const FileURL& url) override;
  PlatformResult<std::optional<FileURL>> trashItemAtURL(const FileURL& url) override;

  // --- FileContents
  [[nodiscard]] PlatformResult<std::string> read(const FileURL& url) const override;
  PlatformResult<Done> writeAtomically(const FileURL& url, std::string_view data) override;
  PlatformResult<Done> append(const FileURL& url, std::string_view data) override;

 private:
  struct Node {
    bool isFolder = false;
    std::string content;
    std::optional<Date> created;
    std::uint64_t order = 0;   // of a listing
    std::uint64_t number = 0;  // its identity; no other ever has it
    bool isDanglingLink = false;
    bool isUnfinished = false;
    bool isSizeUnreadable = false;
    bool isUnreadable = false;
    bool isUnlistable = false;
  };

  [[nodiscard]] const Node* find(const FileURL& url) const;
  // The same, with links that lead nowhere.
  [[nodiscard]] const Node* findItself(const FileURL& url) const;
  [[nodiscard]] bool isWritable(const FileURL& url) const;
  void insert(const std::string& path, Node node);
  void rename(const std::string& from, const std::string& to);

  const Clock& clock_;
  CallLog& log_;
  std::map<std::string, Node> nodes_;
  std::set<std::string> readOnly_;
  std::uint64_t lastOrder_ = 0;
  mutable int readCount_ = 0;
};

}  // namespace quenlio
