#include "desktop/linux/session/WorkArea.h"

#include <algorithm>

namespace quenlio {
namespace {

QRect rectOf(const Strut& strut, const QSize& desktop) {
  const int length = strut.end - strut.begin + 1;
  switch (strut.edge) {
    case Strut::Edge::left:
      return {0, strut.begin, strut.thickness, length};
    case Strut::Edge::right:
      return {desktop.width() - strut.thickness, strut.begin, strut.thickness, length};
    case Strut::Edge::top:
      return {strut.begin, 0, length, strut.thickness};
    case Strut::Edge::bottom:
      return {strut.begin, desktop.height() - strut.thickness, length, strut.thickness};
  }
  return {};
}

}  // namespace

QRect workArea(const QRect& screen, const QSize& desktop, const std::vector<Strut>& struts) {
  QRect area = screen;
  for (const Strut& strut : struts) {
    const QRect taken = rectOf(strut, desktop) & screen;
    const bool isUpright = strut.edge == Strut::Edge::left || strut.edge == Strut::Edge::right;
    const bool isAcross = isUpright ? taken.width() == screen.width() : taken.height() == screen.height();
    if (strut.thickness <= 0 || taken.isEmpty() || isAcross) {
      continue;
    }
    switch (strut.edge) {
      case Strut::Edge::left:
        area.setLeft(std::max(area.left(), taken.right() + 1));
        break;
      case Strut::Edge::right:
        area.setRight(std::min(area.right(), taken.left() - 1));
        break;
      case Strut::Edge::top:
        area.setTop(std::max(area.top(), taken.bottom() + 1));
        break;
      case Strut::Edge::bottom:
        area.setBottom(std::min(area.bottom(), taken.top() - 1));
        break;
    }
  }
  return area.isEmpty() ? screen : area;
}

}  // namespace quenlio
