#include "core/island/IslandKeys.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <string_view>

#include "core/base/Text.h"
#include "core/island/IslandOverlayPresentationState.h"
#include "core/island/KeyboardToContent.h"
#include "core/library/QuickLookPreviewController.h"
#include "core/library/ScreenshotStore.h"
#include "core/platform/PreviewPanel.h"

namespace quenlio {
namespace {

constexpr std::uint16_t kReturn = 36;
constexpr std::uint16_t kKeypadEnter = 76;
constexpr std::uint16_t kSpace = 49;
constexpr std::uint16_t kLeftArrow = 123;
constexpr std::uint16_t kRightArrow = 124;
constexpr std::uint16_t kBackspace = 51;
constexpr std::uint16_t kForwardDelete = 117;

constexpr ModifierFlags kCapsLock = 0x10000;
constexpr ModifierFlags kNumericPad = 0x200000;
constexpr ModifierFlags kFunction = 0x800000;  // held by the keyboard itself on arrow keys and forward delete
// Those that tell one shortcut from another: all that any keyboard has, without the two locks.
constexpr ModifierFlags kTelling = 0xffff0000 & ~(kCapsLock | kNumericPad);

using Modifiers = std::array<ModifierFlags, 4>;
constexpr Modifiers kNone{};
constexpr Modifiers kCommand{kModifierCommand, kModifierCommand, kModifierCommand, kModifierCommand};
constexpr ModifierFlags kBoth = kModifierCommand | kModifierShift;
constexpr Modifiers kCommandShift{kBoth, kBoth, kBoth, kBoth};
constexpr Modifiers kNoneOrFunction{0, kFunction, kFunction, kFunction};
constexpr Modifiers kArrowModifiers{0, kModifierShift, kFunction, kFunction | kModifierShift};

}  // namespace

// A key, by its code or by its character, with the modifiers that it is pressed with.
struct IslandKeys::Row {
  std::array<std::uint16_t, 2> keyCodes{};  // either of the two; used when there are no characters
  std::string_view characters{};
  Modifiers modifiers{};         // exactly one of these
  bool takesAnyCommand = false;  // Command, whatever else is held, in place of modifiers
  Command command;

  [[nodiscard]] bool matches(const KeyEvent& event) const {
    const bool modifiersMatch = takesAnyCommand
                                    ? (event.modifierFlags & kModifierCommand) != 0
                                    : std::ranges::find(modifiers, event.modifierFlags & kTelling) != modifiers.end();
    if (!modifiersMatch) {
      return false;
    }
    return characters.empty()
               ? std::ranges::find(keyCodes, event.keyCode) != keyCodes.end()
               : event.charactersIgnoringModifiers && lowercased(*event.charactersIgnoringModifiers) == characters;
  }
};

// Walked in this order; the first row that matches decides. Escape is not among them: it does not close the island.
const IslandKeys::Row IslandKeys::kTable[] = {
    {.keyCodes = {kReturn, kKeypadEnter}, .modifiers = kNone, .command = Command::rename},
    {.keyCodes = {kSpace, kSpace}, .modifiers = kNone, .command = Command::quickLook},
    {.characters = "z", .takesAnyCommand = true, .command = Command::undo},
    {.characters = "s", .modifiers = kCommandShift, .command = Command::share},
    {.characters = "c", .modifiers = kCommand, .command = Command::copy},
    {.characters = "e", .modifiers = kCommand, .command = Command::edit},
    {.characters = "o", .modifiers = kCommand, .command = Command::reveal},
    {.keyCodes = {kLeftArrow, kRightArrow}, .modifiers = kArrowModifiers, .command = Command::arrow},
    {.keyCodes = {kBackspace, kForwardDelete}, .modifiers = kNoneOrFunction, .command = Command::trash},
};

bool IslandKeys::handleKeyEvent(const KeyEvent& event) {
  const FirstResponder responder = dependencies_.panel.firstResponder();
  if (responder == FirstResponder::textView || responder == FirstResponder::textField) {
    return false;
  }
  const auto* row = std::ranges::find_if(kTable, [&](const Row& candidate) { return candidate.matches(event); });
  if (row == std::end(kTable)) {
    return false;
  }
  // A key that is held down goes on along the strip. Everything else happens once a press: what toggles would flicker,
  // and one press may not empty the library.
  const bool isDone = event.isARepeat && row->command != Command::arrow;
  return isDone || perform(row->command, event);
}

bool IslandKeys::perform(Command command, const KeyEvent& event) {
  switch (command) {
    case Command::rename:
      return handleRenameShortcut();
    case Command::quickLook:
      return handleQuickLookShortcut();
    case Command::undo:
      return handleUndoShortcut();
    case Command::share:
      return onSelection(&ScreenshotStore::shareSelection);
    case Command::copy:
      return onSelection(&ScreenshotStore::copySelection);
    case Command::edit:
      return handleEditShortcut();
    case Command::reveal:
      return onSelection(&ScreenshotStore::revealSelectionInFinder);
    case Command::arrow:
      return handleArrowShortcut(event.keyCode == kRightArrow ? 1 : -1, (event.modifierFlags & kModifierShift) != 0);
    case Command::trash:
      return onSelection(&ScreenshotStore::moveSelectedToTrash);
  }
  return false;
}

bool IslandKeys::onSelection(void (ScreenshotStore::*operation)()) {
  if (dependencies_.store.selectedItems().empty()) {
    return false;
  }
  (dependencies_.store.*operation)();
  dependencies_.scheduleHideIfNeeded();
  return true;
}

bool IslandKeys::handleRenameShortcut() {
  if (!isOneSelected() || dependencies_.panel.firstResponder() == FirstResponder::textView) {
    return false;
  }
  auto& token = dependencies_.presentationState.renameRequestToken;
  token.set(token.get() + 1);
  return true;
}

bool IslandKeys::handleQuickLookShortcut() {
  if (isPreviewVisible()) {
    dependencies_.previewPanel.orderOut();
    dependencies_.panel.makeKeyWindow();
    giveKeyboardToContent(dependencies_.panel);
    return true;
  }
  const ScreenshotItem* selected = dependencies_.store.selectedItem();
  if (selected == nullptr) {
    return false;
  }
  openQuickLook(*selected);
  return true;
}

bool IslandKeys::handleUndoShortcut() {
  if (!dependencies_.store.undoLastDeletion()) {
    return false;
  }
  if (dependencies_.panel.isVisible()) {
    dependencies_.panel.orderFrontRegardless();
    dependencies_.scheduleHideIfNeeded();
    return true;
  }
  const ScreenshotItem* restored = dependencies_.store.selectedItem();
  const auto display = restored != nullptr ? restored->sourceDisplayID : std::nullopt;
  dependencies_.show(display ? display : ScreenUtilities::activeDisplayID(dependencies_.screens));
  return true;
}

bool IslandKeys::handleEditShortcut() {
  if (!isOneSelected()) {
    return false;
  }
  dependencies_.openEditor(*dependencies_.store.selectedItem());
  dependencies_.scheduleHideIfNeeded();
  return true;
}

bool IslandKeys::handleArrowShortcut(int step, bool extendSelection) {
  if (!dependencies_.store.moveSelection(step, extendSelection)) {
    return false;
  }
  if (const ScreenshotItem* selected = dependencies_.store.selectedItem(); selected != nullptr && isPreviewVisible()) {
    dependencies_.quickLook.syncSelection(selected->fileURL, allFileURLs());
  }
  dependencies_.scheduleHideIfNeeded();
  return true;
}

void IslandKeys::openQuickLook(const ScreenshotItem& item) {
  dependencies_.quickLook.preview(item.fileURL, allFileURLs());
}

bool IslandKeys::isOneSelected() const {
  return dependencies_.store.selectedItems().size() == 1;
}

bool IslandKeys::isPreviewVisible() const {
  return dependencies_.previewPanel.sharedPreviewPanelExists() && dependencies_.previewPanel.isVisible();
}

std::vector<FileURL> IslandKeys::allFileURLs() const {
  std::vector<FileURL> urls;
  std::ranges::transform(dependencies_.store.items.get(), std::back_inserter(urls), &ScreenshotItem::fileURL);
  return urls;
}

}  // namespace quenlio
