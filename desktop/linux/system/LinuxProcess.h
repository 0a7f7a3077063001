// What this process was given.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "core/platform/ProcessInfo.h"

namespace quenlio {

class LinuxProcessInfo final : public ProcessInfo {
 public:
  explicit LinuxProcessInfo(std::vector<std::string> arguments) : arguments_(std::move(arguments)) {}

  [[nodiscard]] std::optional<std::string> environment(std::string_view name) const override;
  [[nodiscard]] const std::vector<std::string>& arguments() const override { return arguments_; }

 private:
  std::vector<std::string> arguments_;
};

// The bundle is the nearest folder NAME.app that holds the program, somewhere below it, and an Info.json with the
// strings of the Info dictionary: one without that file is a folder that is called so by chance. A program that lies in
// none has no such strings, and neither has one whose Info.json is damaged.
class LinuxMainBundle final : public MainBundle {
 public:
  // The program's own path, links resolved.
  explicit LinuxMainBundle(const FileURL& program);

  // The running program's path.
  [[nodiscard]] static FileURL executableURL();

  [[nodiscard]] FileURL bundleURL() const override { return bundleURL_; }
  [[nodiscard]] std::optional<std::string> infoString(std::string_view key) const override;

 private:
  void readInfo(const std::string& text);

  FileURL bundleURL_;
  std::map<std::string, std::string, std::less<>> info_;
};

}  // namespace quenlio
