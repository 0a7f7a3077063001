// A user with captures and a trash, and what one looks at in a trash.
#pragma once

#include <algorithm>
#include <gtest/gtest.h>
#include <map>
#include <string>
#include <vector>

#include "desktop/linux/system/LinuxClock.h"
#include "desktop/linux/system/LinuxFileManager.h"
#include "desktop/linux/system/OwnFiles.h"

#include "tests/desktop/system/TemporaryFolder.h"
#include "tests/fakes/FakeDesktop.h"

namespace quenlio {

inline std::vector<std::string> namesIn(const FileURL& folder) {
  std::vector<std::string> names;
  std::error_code missing;
  for (const auto& entry : std::filesystem::directory_iterator(folder.path(), missing)) {
    names.push_back(entry.path().filename().string());
  }
  std::ranges::sort(names);
  return names;
}

// The trash's files by name. Fails the test unless each has its note and each note its file.
inline std::vector<std::string> wholeTrash(const FileURL& trash) {
  const std::vector<std::string> files = namesIn(trash / "files");
  std::vector<std::string> notes;
  for (const std::string& file : files) {
    notes.push_back(file + ".trashinfo");
  }
  std::ranges::sort(notes);
  EXPECT_EQ(namesIn(trash / "info"), notes) << trash.path();
  return files;
}

// The line of a note that begins so, without its beginning.
inline std::string noted(const FileURL& trash, const std::string& file, const std::string& key) {
  const std::string text = contents(trash / "info" / (file + ".trashinfo"));
  const std::size_t begin = text.find("\n" + key + "=");
  if (begin == std::string::npos) {
    return "(nothing)";
  }
  const std::size_t value = begin + key.size() + 2;
  return text.substr(value, text.find('\n', value) - value);
}

// The trash in the user's data folder.
class TrashUser {
 public:
  explicit TrashUser(const FileURL& data) { directories.applicationSupport = data; }

  [[nodiscard]] FileURL trash() const { return directories.applicationSupport->appending("Trash"); }
  // Where the file is now; an empty path when it could not be put there, which fails the test.
  FileURL put(const FileURL& url) {
    const auto trashed = files.trashItemAtURL(url);
    EXPECT_TRUE(trashed && trashed.value()) << (trashed ? "" : trashed.error().localizedDescription);
    return trashed && trashed.value() ? *trashed.value() : FileURL();
  }
  // Why it could not be put there.
  std::string refusal(const FileURL& url) {
    const auto trashed = files.trashItemAtURL(url);
    return trashed ? "(it was)" : trashed.error().localizedDescription;
  }

  OwnFiles own;
  LinuxClock clock;
  FakeDirectories directories;
  LinuxFileManager files{own, clock, directories};
};

}  // namespace quenlio
