// Where screenshots go when they leave the library: a clipboard that holds what was written, a share menu, a workspace,
// windows, drags and a preview window that tests look at. Each tells the call log what it was asked to do.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "core/platform/Dragging.h"
#include "core/platform/Pasteboard.h"
#include "core/platform/PreviewPanel.h"
#include "core/platform/Sharing.h"
#include "core/platform/Windows.h"

#include "tests/fakes/CallLog.h"

namespace quenlio {

class FakePasteboard final : public Pasteboard {
 public:
  explicit FakePasteboard(CallLog& log) : log_(log) {}
  void clearContents() override {
    log_.add("clearContents");
    contents.reset();
  }
  void writeObjects(const PasteboardObjects& objects) override {
    log_.add("writeObjects");
    contents = objects;
  }
  std::optional<PasteboardObjects> contents;

 private:
  CallLog& log_;
};

// Every file is a picture unless a test says that it is not.
class FakeImages final : public Images {
 public:
  class Picture final : public Image {
   public:
    explicit Picture(FileURL file) : url(std::move(file)) {}
    [[nodiscard]] Size size() const override { return {16, 9}; }
    FileURL url;
  };
  [[nodiscard]] ImageRef imageWithContentsOfFile(const FileURL& url) const override {
    return unreadable.contains(url) ? nullptr : std::make_shared<Picture>(url);
  }
  std::set<FileURL> unreadable;
};

class FakeSharingServicePicker final : public SharingServicePicker {
 public:
  struct Shown {
    std::vector<FileURL> items;
    Rect<WindowContent> rect;
    WindowID window = 0;
    RectEdge edge = RectEdge::minX;
  };
  void showRelativeToRect(const std::vector<FileURL>& items, const Rect<WindowContent>& rect, WindowID ofView,
                          RectEdge preferredEdge) override {
    shown.push_back({items, rect, ofView, preferredEdge});
  }
  std::vector<Shown> shown;
};

class FakeWorkspace final : public Workspace {
 public:
  void activateFileViewerSelectingURLs(const std::vector<FileURL>& urls) override { revealed.push_back(urls); }
  std::vector<std::vector<FileURL>> revealed;
};

class FakeWindows final : public Windows {
 public:
  [[nodiscard]] std::vector<WindowInfo> visibleWindows() const override { return list; }
  [[nodiscard]] std::optional<PointerEvent> currentEvent() const override { return event; }
  [[nodiscard]] ModifierFlags modifierFlags() const override { return flags; }
  [[nodiscard]] Seconds systemUptime() const override { return uptime; }

  std::vector<WindowInfo> list;
  std::optional<PointerEvent> event;
  ModifierFlags flags = 0;
  Seconds uptime{1000};
};

class FakeDraggingSessions final : public DraggingSessions {
 public:
  DraggingSessionID beginDraggingSession(const DraggingRequest& request,
                                         std::function<void(DraggingSessionID)> ended) override {
    requests.push_back(request);
    const DraggingSessionID id = requests.size();
    running[id] = std::move(ended);
    return id;
  }
  // The user lets go of the drag, or gives it up.
  void end(DraggingSessionID id) {
    const auto ended = std::move(running.at(id));
    running.erase(id);
    ended(id);
  }
  std::vector<DraggingRequest> requests;
  std::map<DraggingSessionID, std::function<void(DraggingSessionID)>> running;
};

class FakePreviewPanel final : public PreviewPanel {
 public:
  explicit FakePreviewPanel(CallLog& log) : log_(log) {}
  [[nodiscard]] bool sharedPreviewPanelExists() const override { return exists_; }
  [[nodiscard]] bool sharedPreviewPanel() override {
    exists_ = canExist;
    return exists_;
  }
  [[nodiscard]] bool isVisible() const override { return isVisible_; }
  void setDataSource(const PreviewPanelDataSource& source) override {
    log_.add("preview setDataSource");
    source_ = &source;
  }
  void prepareItem(const FileURL& url) override {
    log_.add("preview prepareItem " + url.lastPathComponent());
    if (!isVisible_) {
      prepared = url;
    }
  }
  void dropPreparedItem() override {
    log_.add("preview dropPreparedItem");
    prepared.reset();
  }
  void makeKeyAndOrderFront() override {
    log_.add("preview makeKeyAndOrderFront");
    isVisible_ = true;
    prepared.reset();
  }
  void orderOut() override {
    log_.add("preview orderOut");
    isVisible_ = false;
    prepared.reset();
  }
  void setCurrentPreviewItemIndex(std::size_t index) override {
    log_.add("preview setCurrentPreviewItemIndex " + std::to_string(index));
    index_ = index;
  }
  void reloadData() override {
    log_.add("preview reloadData");
    files.clear();
    for (std::size_t index = 0; index < source_->numberOfPreviewItems(); ++index) {
      files.push_back(source_->previewItemAtIndex(index));
    }
  }
  // The file that the user sees, while the panel is up.
  [[nodiscard]] std::optional<FileURL> shownFile() const {
    return isVisible_ && index_ < files.size() ? std::optional(files[index_]) : std::nullopt;
  }

  bool canExist = true;
  std::vector<FileURL> files;       // as of the last reload
  std::optional<FileURL> prepared;  // while it is not up

 private:
  CallLog& log_;
  bool exists_ = false;
  bool isVisible_ = false;
  const PreviewPanelDataSource* source_ = nullptr;
  std::size_t index_ = 0;
};

}  // namespace quenlio
