// Which of the program's symbols is seen in a part of a picture, whatever its size, its place and its colour.
#pragma once

#include <QtGui/QImage>
#include <string>

namespace quenlio {

// The symbol whose drawing is nearest to what differs from the ground there; empty when nothing does.
[[nodiscard]] std::string symbolIn(const QImage& picture, const QRect& part);

}  // namespace quenlio
