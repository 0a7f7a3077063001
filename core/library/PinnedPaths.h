// The pinned files and pinned.json, which keeps them. Main thread. Part of ScreenshotStore.
#pragma once

#include <set>
#include <string>

#include "core/base/FileURL.h"

namespace quenlio {

class FileContents;
class FileManager;
class SystemLog;

class PinnedPaths {
 public:
  PinnedPaths(FileURL file, const FileManager& files, FileContents& contents, SystemLog& log)
      : file_(std::move(file)), files_(files), contents_(contents), log_(log) {}

  // Takes the pinned paths that have a file now. A file that is missing or damaged, be it in one record, counts as
  // empty.
  void load();
  // Writes the file, whole or not at all. A failure is logged and leaves the paths as they are.
  void persist();

  [[nodiscard]] bool contains(const FileURL& url) const { return paths_.contains(url.path()); }
  void insert(const FileURL& url) { paths_.insert(url.path()); }
  void remove(const FileURL& url) { paths_.erase(url.path()); }
  void replaceAll(std::set<std::string> paths) { paths_ = std::move(paths); }

 private:
  FileURL file_;
  const FileManager& files_;
  FileContents& contents_;
  SystemLog& log_;
  std::set<std::string> paths_;
};

}  // namespace quenlio
