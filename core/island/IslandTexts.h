// The island's words and the symbols that go with them; those of the name row's title are in MetaRowText. Keys are
// written with their glyphs: who shows a help text puts it into the desktop's own wording. Pure; any thread.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace quenlio {

// A control that is known by a drawing.
struct ControlText {
  std::string_view symbol;
  std::string_view name;  // for who does not see the drawing; where it has words of its own, they
  std::string_view help;  // what its tooltip says

  bool operator==(const ControlText&) const = default;
};

struct IslandTexts {
  static constexpr std::string_view kIsland = "Island";
  static constexpr std::string_view kScreenshots = "Screenshots";  // the strip

  // The preview, by the name of the file in it.
  [[nodiscard]] static std::string previewName(const std::optional<std::string>& fileName);
  static constexpr std::string_view kEmptyPreviewSymbol = "photo";
  static constexpr std::string_view kEmptyLibrary =
      "Take a screenshot to see it here, then rename, edit, copy, save, or share it.";

  static constexpr ControlText kRename{"pencil", "Rename", "Rename (↩)"};
  static constexpr std::string_view kFilename = "Filename";  // the field's label
  static constexpr ControlText kSaveFilename{"checkmark", "Save filename", "Save filename (↩)"};
  static constexpr ControlText kCancelRename{"xmark", "Cancel rename", "Cancel rename (Esc)"};
  // Why a name was refused.
  static constexpr std::string_view kNoName = "Enter a name";
  static constexpr std::string_view kNameTooLong = "That name is too long";
  static constexpr std::string_view kNotRenamed = "The file could not be renamed";

  static constexpr std::string_view kFolderAccessSymbol = "lock.shield";
  static constexpr std::string_view kFolderAccessTitle = "Folder Access Needed";
  static constexpr std::string_view kFolderAccessText =
      "Allow access to your screenshot folder so the island can display captures.";
  static constexpr ControlText kAllowAccess{"arrow.up.right.square", "Allow Access",
                                            "Open Privacy settings and re-check folder access"};
};

}  // namespace quenlio
