// The row under the preview that names what is selected, and where its name can be changed. Owned by the root view.
// Main thread.
#pragma once

#include <QtWidgets/QWidget>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>

#include "core/base/WeakOwner.h"
#include "core/island/IslandLayoutMetrics.h"
#include "core/island/IslandThemeTokens.h"
#include "core/island/RenameSession.h"
#include "core/library/ScreenshotItem.h"

#include "desktop/views/common/AppTooltipModifier.h"
#include "desktop/views/island/RenameEditor.h"
#include "desktop/views/island/RowButton.h"

namespace quenlio {

class MetaRow final : public QWidget {
 public:
  // Tooltips and clock outlive the view.
  MetaRow(QWidget* parent, AppTooltipHostModifier& tooltips, const Clock& clock, RenameSession::OnRename onRename);
  ~MetaRow() override;

  struct Contents {
    const ScreenshotItem* selectedItem = nullptr;
    std::size_t selectedCount = 0;  // 1 also where an item is shown that nobody has selected
    std::span<const ScreenshotItem> items{};
    std::int64_t renameRequestToken = 0;
  };
  void apply(const IslandThemeTokens& tokens, IslandSize size);
  // Another token than the last asks for the name to be changed.
  void show(const Contents& contents);

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void enterEvent(QEnterEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  class Name;

  [[nodiscard]] RenameSession::Selection selection() const;
  void beginRename();
  void commit();
  void endRename();
  void layOut();

  WeakOwner<MetaRow> weak_{this};  // first: its members are given callbacks while it is being made
  RenameSession session_;
  IslandLayoutMetrics metrics_;
  std::optional<ScreenshotItem> selectedItem_;
  std::size_t selectedCount_ = 0;
  std::optional<std::int64_t> renameRequestToken_;
  Name* name_;  // children
  RowButton pencil_;
  RenameEditor editor_;
  AppTooltipModifier nameHelp_;
  AppTooltipModifier pencilHelp_;
};

}  // namespace quenlio
