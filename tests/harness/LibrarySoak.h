// A long day of the library: arrivals, deletions, undos, renames and selections in a random order, on whatever disk it
// is given. Another program is about, which now and then takes a name just before the library does.
//
// The day itself keeps no more memory at its end than it had at its beginning.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "core/diagnostics/QuenlioReleaseTestDiagnostics.h"
#include "core/identity/AppPaths.h"
#include "core/library/ItemHandOut.h"
#include "core/library/ScreenshotStore.h"
#include "core/settings/AppSettings.h"

#include "tests/harness/ContestedFiles.h"
#include "tests/harness/TestPlatform.h"

namespace quenlio {

// What the library works with, and how its user looks after it: by plain operations that are not those under test.
struct SoakDisk {
  FileManager& files;
  FileContents& contents;
  const StandardDirectories& directories;
  const Clock& clock;
  FileURL captures;  // a folder that is there
  std::function<void(const std::string& path, const std::string& bytes)> write;
  std::function<void(const std::string& path)> remove;
  std::function<std::optional<std::string>(const std::string& path)> read;  // nothing when there is no such file
  std::function<std::vector<std::string>()> trashed;                        // the paths of all files in the trash
};

class LibrarySoak {
 public:
  static constexpr int kOperations = 2000;
  static constexpr std::int64_t kMaxHistory = 40;

  // What has been done so far.
  struct Day {
    std::size_t arrived = 0;
    std::size_t foreign = 0;  // files of the other program
    std::ptrdiff_t deleted = 0;
    int undone = 0;
    int renamed = 0;
    std::size_t vanished = 0;  // files that the user has deleted for good, outside of the library
    std::size_t failed = 0;    // operations that the disk refused
  };

  // The platform outlives this, and serves for all that the disk does not.
  LibrarySoak(TestPlatform& platform, SoakDisk disk, std::uint32_t seed);
  LibrarySoak(const LibrarySoak&) = delete;
  LibrarySoak& operator=(const LibrarySoak&) = delete;

  // One of them, whichever comes.
  void operate();
  // Captures arrive until the library is full, and their thumbnails are made.
  void fillUp();
  // What is not as it has to be, or an empty text. Every item has a file of its own, unless that has vanished; every
  // other file that ever arrived is, byte for byte, either at its last path or in the trash; and the other program's
  // files are as it has left them.
  [[nodiscard]] std::string problem();

  [[nodiscard]] const Day& day() const { return day_; }
  [[nodiscard]] std::size_t thumbnails() const { return thumbnails_.alive(); }

 private:
  // Counts the thumbnails that somebody still keeps.
  class Thumbnails final : public ThumbnailRenderer {
   public:
    [[nodiscard]] ImageRef render(const FileURL& url, Size canvas) override;
    [[nodiscard]] std::optional<ImageRef> renderHere(const FileURL& url, Size canvas) override {
      return render(url, canvas);
    }
    [[nodiscard]] std::size_t alive() const { return static_cast<std::size_t>(counted_.use_count() - 1); }

   private:
    std::shared_ptr<const bool> counted_ = std::make_shared<const bool>(true);
  };

  [[nodiscard]] ScreenshotStore::Dependencies storeDependencies();
  std::size_t below(std::size_t end) { return std::uniform_int_distribution<std::size_t>(0, end - 1)(random_); }
  bool isOneIn(std::size_t count) { return below(count) == 0; }
  [[nodiscard]] const ScreenshotItem& anyItem() { return store_.items.get()[below(store_.items.get().size())]; }
  [[nodiscard]] std::string anyStem();
  void arrive();
  void vanish();
  [[nodiscard]] bool isVanished(const std::string& path) const;
  void operateOnSelection();
  void takeName(const FileURL& url);
  void count();
  [[nodiscard]] std::string followItems();
  [[nodiscard]] std::string problemOfCaptures();

  TestPlatform& platform_;
  SoakDisk disk_;
  std::mt19937 random_;
  Day day_;
  std::size_t nextName_ = 0;
  // By number. The last path outside of the trash; all the room that is ever needed is there from the beginning.
  std::vector<std::string> captures_;
  std::vector<char> isGone_;  // vanished from its last path
  std::vector<std::string> foreign_;
  std::vector<int> found_;
  Thumbnails thumbnails_;
  ContestedFiles files_{disk_.files, [this](const FileURL& to) { takeName(to); }};
  AppPaths paths_{platform_.configuration, disk_.files, disk_.directories};
  AppSettings settings_{platform_.settingsDependencies()};
  ItemHandOut handOut_{platform_.handOutDependencies()};
  QuenlioReleaseTestDiagnostics diagnostics_{platform_.configuration, platform_.time, platform_.time, platform_.files,
                                             platform_.files};
  ScreenshotStore store_{storeDependencies()};
};

}  // namespace quenlio
