// What screen readers find of the strip: a list, and in it an item for each screenshot, named by its file, that can be
// pressed and tells whether it is selected. Main thread.
#pragma once

namespace quenlio {

class ThumbnailCell;

// From now on the strip and its cells are found. Once is enough, more often does no harm.
void makeThumbnailsAccessible();

// The cell has been selected, or is so no longer.
void tellSelectionOf(ThumbnailCell& cell);
// The strip has the keyboard, and this is the cell that its keys start from.
void tellFocusOf(ThumbnailCell& cell);

}  // namespace quenlio
