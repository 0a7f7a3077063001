// What this process was given.
#pragma once

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

// The bundle is a folder NAME.app that holds the program, somewhere below it, and an Info.json with the strings of the
// Info dictionary. A program that lies in none has no such strings.
class LinuxMainBundle final : public MainBundle {
 public:
  // The program's own path, links resolved.
  explicit LinuxMainBundle(const FileURL& program);

  // The running program's path.
  [[nodiscard]] static FileURL executableURL();

  [[nodiscard]] FileURL bundleURL() const override { return bundleURL_; }
  [[nodiscard]] std::optional<std::string> infoString(std::string_view key) const override;

 private:
  FileURL bundleURL_;
  std::map<std::string, std::string, std::less<>> info_;
};

}  // namespace quenlio
