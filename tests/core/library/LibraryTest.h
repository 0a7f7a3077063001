// The library alone on a fake platform, with diagnostics on.
#pragma once

#include <gtest/gtest.h>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "core/base/Json.h"
#include "core/diagnostics/QuenlioReleaseTestDiagnostics.h"
#include "core/identity/AppPaths.h"
#include "core/library/ScreenshotStore.h"
#include "core/settings/AppSettings.h"

#include "tests/harness/TestPlatform.h"

namespace quenlio {

class LibraryRig {
 public:
  static constexpr const char* kPinnedFile = "/home/user/support/Quenlio/pinned.json";

  LibraryRig() { platform.enableDiagnostics(); }
  explicit LibraryRig(std::uint32_t seed) : platform(seed) { platform.enableDiagnostics(); }

  // Makes the library; what lies on disk by then is what it finds.
  ScreenshotStore& open() {
    store.reset();
    diagnostics = std::make_unique<QuenlioReleaseTestDiagnostics>(platform.configuration, platform.time, platform.time,
                                                                  platform.files, platform.files);
    store = std::make_unique<ScreenshotStore>(dependencies(platform.time, platform.thumbnails));
    return *store;
  }
  [[nodiscard]] ScreenshotStore::Dependencies dependencies(Scheduler& scheduler, ThumbnailRenderer& thumbnails) {
    return {.settings = settings,
            .diagnostics = *diagnostics,
            .analytics = platform.analytics,
            .paths = paths,
            .files = platform.files,
            .contents = platform.files,
            .clock = platform.time,
            .scheduler = scheduler,
            .thumbnails = thumbnails,
            .handOut = handOut,
            .log = platform.systemLog};
  }

  // A file of that name in the screenshot folder, created so many seconds after the start of the test.
  FileURL file(const std::string& name, int createdAt = 0) {
    const std::string path = "/shots/" + name;
    platform.files.write(path);
    platform.files.setCreationDate(path, start + std::chrono::seconds(createdAt));
    return FileURL(path);
  }
  // The same, and into the library with it. Its identity is the answer.
  Uuid add(const std::string& name, int createdAt = 0) {
    store->ingestScreenshot(file(name, createdAt), std::nullopt);
    return item(name).id;
  }
  // pinned.json with these names, each of which has a file.
  void pin(const std::vector<std::string>& names) {
    json::Value records = json::Value::array();
    for (const std::string& name : names) {
      records.push_back({{"path", file(name).path()}, {"isPinned", true}});
    }
    platform.files.write(kPinnedFile, records.dump());
  }

  [[nodiscard]] std::vector<std::string> names() const {
    std::vector<std::string> listed;
    for (const ScreenshotItem& item : store->items.get()) {
      listed.push_back(item.fileURL.lastPathComponent());
    }
    return listed;
  }
  [[nodiscard]] const ScreenshotItem& item(const std::string& name) const {
    for (const ScreenshotItem& item : store->items.get()) {
      if (item.fileURL.lastPathComponent() == name) {
        return item;
      }
    }
    throw std::out_of_range(name + " is not in the library");
  }
  // The selection by names without extensions: "primary | all in list order | anchor", with a dash for none and a
  // question mark for what is not listed.
  [[nodiscard]] std::string selection() const {
    const auto nameOf = [&](const std::optional<Uuid>& id) -> std::string {
      for (const ScreenshotItem& item : store->items.get()) {
        if (item.id == id) {
          return item.fileURL.stem();
        }
      }
      return id ? "?" : "-";
    };
    std::set<Uuid> strangers = store->selectedItemIDs.get();
    std::string all;
    for (const ScreenshotItem& item : store->items.get()) {
      all += strangers.erase(item.id) != 0 ? item.fileURL.stem() + " " : "";
    }
    for (std::size_t stranger = 0; stranger < strangers.size(); ++stranger) {
      all += "? ";
    }
    return nameOf(store->selectedItemID.get()) + " | " + (all.empty() ? "- " : all) + "| " +
           nameOf(store->selectionAnchorID);
  }
  // The names that pinned.json holds now.
  [[nodiscard]] std::set<std::string> pinnedOnDisk() const {
    std::set<std::string> names;
    const json::Value records = json::read(platform.files.content(kPinnedFile).value()).value();
    for (const json::Value& record : records) {
      names.insert(FileURL(record.at("path").get<std::string>()).lastPathComponent());
    }
    return names;
  }
  [[nodiscard]] std::ptrdiff_t pinnedWrites() const {
    return platform.log.count(std::string("writeAtomically ") + kPinnedFile);
  }
  [[nodiscard]] std::ptrdiff_t stateWrites() const { return platform.log.count("writeAtomically /run/state.json"); }

  TestPlatform platform;
  const Date start = platform.time.now();
  AppPaths paths{platform.configuration, platform.files, platform.directories};
  AppSettings settings{platform.settingsDependencies()};
  ItemHandOut handOut{platform.handOutDependencies()};
  std::unique_ptr<QuenlioReleaseTestDiagnostics> diagnostics;
  std::unique_ptr<ScreenshotStore> store;
};

class LibraryTest : public testing::Test, public LibraryRig {
 protected:
  using Names = std::vector<std::string>;
};

// Every announcement of the three observable fields from now on, as a word each with what is announced.
class Announcements {
 public:
  explicit Announcements(ScreenshotStore& store)
      : items_(store.items.subscribe([this](const std::vector<ScreenshotItem>& items) {
          std::string text = "items";
          for (const ScreenshotItem& item : items) {
            text += " " + item.fileURL.lastPathComponent();
          }
          list.push_back(text);
        })),
        primary_(store.selectedItemID.subscribe(
            [this](const std::optional<Uuid>& id) { list.push_back(id ? "primary " + id->string() : "primary"); })),
        selected_(store.selectedItemIDs.subscribe(
            [this](const std::set<Uuid>& ids) { list.push_back("selected " + std::to_string(ids.size())); })) {
    list.clear();
  }
  std::vector<std::string> list;

 private:
  Subscription items_;
  Subscription primary_;
  Subscription selected_;
};

// The same by names, among what the fakes are asked to do: the order in which everything happens.
class AnnouncementsInTheLog {
 public:
  explicit AnnouncementsInTheLog(LibraryRig& rig)
      : items_(rig.store->items.subscribe([this, &log = rig.platform.log](const std::vector<ScreenshotItem>& items) {
          std::string text = "items";
          for (const ScreenshotItem& item : items) {
            names_[item.id] = item.fileURL.lastPathComponent();
            text += " " + names_[item.id];
          }
          log.add(text);
        })),
        primary_(rig.store->selectedItemID.subscribe([this, &log = rig.platform.log](const std::optional<Uuid>& id) {
          log.add(id ? "primary " + names_[*id] : "primary");
        })),
        selected_(rig.store->selectedItemIDs.subscribe([this, &log = rig.platform.log](const std::set<Uuid>& ids) {
          std::set<std::string> sorted;
          for (const Uuid& id : ids) {
            sorted.insert(names_[id]);
          }
          std::string text = "selected";
          for (const std::string& name : sorted) {
            text += " " + name;
          }
          log.add(text);
        })) {
    rig.platform.log.clear();
  }

 private:
  std::map<Uuid, std::string> names_;
  Subscription items_;
  Subscription primary_;
  Subscription selected_;
};

}  // namespace quenlio
