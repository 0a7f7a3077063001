// The name row while it renames: a field for the name, the extension after it, and the two buttons that end it. Owned
// by the name row, which decides what comes of what is typed. Main thread.
//
// As long as something here has the keyboard, keys mean the text and not the screenshot.
#pragma once

#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <functional>
#include <optional>
#include <string>

#include "core/base/WeakOwner.h"
#include "core/island/IslandLayoutMetrics.h"
#include "core/island/IslandThemeTokens.h"

#include "desktop/views/common/AppTooltipModifier.h"
#include "desktop/views/island/RowButton.h"

namespace quenlio {

class RenameEditor final : public QWidget {
 public:
  struct Callbacks {
    std::function<void(std::string draftName)> onEdit;
    std::function<void()> onCommit;
    std::function<void()> onCancel;
  };
  // Tooltips and clock outlive the view.
  RenameEditor(QWidget* row, AppTooltipHostModifier& tooltips, const Clock& clock, Callbacks callbacks);
  ~RenameEditor() override;

  void apply(const IslandThemeTokens& tokens, const IslandLayoutMetrics& metrics);
  // Shows the field with the whole draft selected and gives it the keyboard.
  void open(const std::string& draftName, const std::string& extension);
  void takeKeyboard();
  // Gives the keyboard back to the island.
  void close();
  // Why the draft was refused, beside the field for as long as that holds; nothing: it was not.
  void showRefusal(const std::optional<std::string>& reason);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  class Field;
  class Button;

  void connectControls();
  void layOut();
  void placeRefusal();

  WeakOwner<RenameEditor> weak_{this};  // first: its members are given callbacks while it is being made
  Callbacks callbacks_;
  IslandThemeTokens tokens_;
  IslandLayoutMetrics metrics_;
  Field* field_;  // children
  QLabel* extension_;
  Button* confirm_;
  Button* cancel_;
  AppTooltipModifier confirmHelp_;
  AppTooltipModifier cancelHelp_;
  AppTooltipHostModifier& tooltips_;
  Uuid refusalID_ = Uuid::random();  // that of the refusal among the tooltips
  QString wholeExtension_;
  QRect box_;  // around field and extension
  std::optional<std::string> refusal_;
};

}  // namespace quenlio
