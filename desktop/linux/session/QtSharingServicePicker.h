// The share menu: the programs that open all of the files, e-mail, their paths, copies of them. Main thread.
//
// It is read together when it opens: what is installed then counts, and nothing is kept. The menu belongs to no window,
// so that it stays when the panel that it was opened on hides.
#pragma once

#include <QtCore/QtGlobal>
#include <memory>

#include "core/platform/Application.h"
#include "core/platform/Sharing.h"

#include "desktop/linux/session/CompositorWatch.h"
#include "desktop/linux/session/CopySaver.h"
#include "desktop/linux/session/ProgramStarter.h"

QT_BEGIN_NAMESPACE
class QMenu;
QT_END_NAMESPACE

namespace quenlio {

class QtSharingServicePicker final : public SharingServicePicker {
 public:
  // All outlive this.
  struct Dependencies {
    Scheduler& scheduler;
    FileManager& files;
    const Windows& windows;
    const Appearance& appearance;
    CompositorWatch& compositor;
    ProgramStarter& starter;
  };
  explicit QtSharingServicePicker(const Dependencies& dependencies);
  ~QtSharingServicePicker() override;

  void showRelativeToRect(const std::vector<FileURL>& items, const Rect<WindowContent>& rect, WindowID ofView,
                          RectEdge preferredEdge) override;

 private:
  void fill(QMenu& menu, const std::vector<FileURL>& items);

  Dependencies dependencies_;
  CopySaver saver_;
  std::unique_ptr<QMenu> menu_;  // the last one that was opened
  WeakOwner<QtSharingServicePicker> weak_{this};
};

}  // namespace quenlio
