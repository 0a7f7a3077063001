// Files and folders as they are, with another program about that may act just before a move or a copy does: after the
// names have been looked at, and before anything is done. Any thread that the files underneath allow.
#pragma once

#include <functional>
#include <utility>

#include "core/platform/FileManager.h"

namespace quenlio {

class ContestedFiles final : public FileManager {
 public:
  // The files outlive this.
  ContestedFiles(FileManager& files, std::function<void(const FileURL& to)> before)
      : files_(files), before_(std::move(before)) {}

  [[nodiscard]] bool fileExistsAtPath(const FileURL& url) const override { return files_.fileExistsAtPath(url); }
  [[nodiscard]] std::optional<FileIdentity> identityOfItemAtPath(const FileURL& url) const override {
    return files_.identityOfItemAtPath(url);
  }
  [[nodiscard]] bool isDirectory(const FileURL& url) const override { return files_.isDirectory(url); }
  [[nodiscard]] bool isReadableFileAtPath(const FileURL& url) const override {
    return files_.isReadableFileAtPath(url);
  }
  [[nodiscard]] PlatformResult<FileAttributes> attributesOfItemAtPath(const FileURL& url) const override {
    return files_.attributesOfItemAtPath(url);
  }
  [[nodiscard]] PlatformResult<std::vector<DirectoryEntry>> contentsOfDirectoryAtURL(
      const FileURL& url, HiddenFiles hidden) const override {
    return files_.contentsOfDirectoryAtURL(url, hidden);
  }
  [[nodiscard]] bool canListDirectoryAtURL(const FileURL& url) const override {
    return files_.canListDirectoryAtURL(url);
  }
  bool enumerateAtURL(const FileURL& url,
                      const std::function<void(const FileURL&, bool isDirectory)>& visit) const override {
    return files_.enumerateAtURL(url, visit);
  }
  PlatformResult<Done> createDirectoryAtURL(const FileURL& url) override { return files_.createDirectoryAtURL(url); }
  PlatformResult<Done> moveItemAtURL(const FileURL& from, const FileURL& to) override {
    before_(to);
    return files_.moveItemAtURL(from, to);
  }
  PlatformResult<Done> copyItemAtURL(const FileURL& from, const FileURL& to) override {
    before_(to);
    return files_.copyItemAtURL(from, to);
  }
  PlatformResult<Done> removeItemAtURL(const FileURL& url) override { return files_.removeItemAtURL(url); }
  PlatformResult<std::optional<FileURL>> trashItemAtURL(const FileURL& url) override {
    return files_.trashItemAtURL(url);
  }

 private:
  FileManager& files_;
  std::function<void(const FileURL& to)> before_;
};

}  // namespace quenlio
