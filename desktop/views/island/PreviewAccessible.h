// What screen readers find of the large preview: a button, named by the file in it, that opens the preview window.
// Main thread.
#pragma once

namespace quenlio {

// From now on previews are found. Once is enough, more often does no harm.
void makePreviewAccessible();

}  // namespace quenlio
