// An island's root view over a real library, on fakes and virtual time, without a display.
#pragma once

#include <QtGui/QImage>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QWidget>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "core/island/IslandOverlayPresentationState.h"

#include "desktop/render/QtImage.h"
#include "desktop/views/island/IslandOverlayRootView.h"

#include "tests/harness/TestLibrary.h"

namespace quenlio {

class Island : public TestLibrary {
 public:
  Island();

  // A capture arrives; its thumbnail stays away until giveThumbnails().
  void ingest(const std::string& name);
  // Gives every item a thumbnail of this many pixels, so many to a point, with a picture wholly of this colour in the
  // middle, of files whose pictures are so large.
  void giveThumbnails(const QColor& colour, const QSize& canvas = {280, 220}, const QSize& picture = {280, 158},
                      double density = 1, Size ownSize = {1600, 900});
  [[nodiscard]] const ScreenshotItem& item(const std::string& name) const;
  void setSize(IslandSize size);
  [[nodiscard]] IslandOverlayRoot& root() const { return view->root(); }
  // Runs all that is due, on the main queue and in Qt's.
  void settle();

  // The texts and accessible names of all that is shown, in the order of the tree.
  [[nodiscard]] std::vector<std::string> words() const;
  [[nodiscard]] bool says(const std::string& words) const;
  [[nodiscard]] QAbstractButton* button(const std::string& name) const;
  // What is painted, as it stands, with so many pixels a point.
  [[nodiscard]] QImage picture(double scale = 1);

  struct Request {
    FileURL url;
    QSize pixels;
    std::function<void(const ImageRef&)> completion;
    bool isEnded = false;
  };

  CompositorWatch compositor;  // without a display one counts as there, until a test says otherwise
  IslandOverlayPresentationState state;
  std::vector<bool> hovers;
  int pointerReleases = 0;
  std::vector<std::pair<Size, bool>> drags;
  std::vector<std::string> quickLooks;  // file names
  std::optional<std::string> prepared;  // to be opened so
  std::vector<std::string> editors;
  std::vector<bool> itemDrags;
  int closes = 0;
  int folderRequests = 0;
  std::vector<PanelSurface> surfaces;
  std::vector<Request> requests;  // for sharper renditions
  std::unique_ptr<IslandOverlayRootView> view;
};

// Of one colour.
[[nodiscard]] ImageRef plainImage(const QSize& pixels, const QColor& colour);

}  // namespace quenlio
