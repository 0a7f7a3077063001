#include <QBuffer>
#include <QPainter>
#include <QPdfDocument>
#include <algorithm>
#include <cmath>

#include "desktop/decoder/Decoders.h"
#include "desktop/render/PictureSink.h"

namespace quenlio::decoder {
namespace {

QImage onPaper(const QImage& page) {
  QImage paper(page.size(), QImage::Format_ARGB32_Premultiplied);
  if (!paper.isNull()) {
    paper.fill(Qt::white);
    QPainter(&paper).drawImage(0, 0, page);
  }
  return paper;
}

}  // namespace

std::optional<DecodedImage> decodePdf(const QByteArray& file, const Fit& fit) {
  QBuffer buffer;
  buffer.setData(file);
  buffer.open(QIODevice::ReadOnly);
  QPdfDocument document;
  document.load(&buffer);
  if (document.status() != QPdfDocument::Status::Ready || document.pageCount() < 1) {
    return std::nullopt;
  }
  const QSizeF points = document.pagePointSize(0);
  if (!isReasonable(points.width(), points.height())) {
    return std::nullopt;
  }
  // A page has no pixels of its own: it is placed as if a point were one, and painted at twice the size that is wanted,
  // so that what falls between two pixels is averaged.
  const QSize nominal(std::max(1, static_cast<int>(std::lround(points.width()))),
                      std::max(1, static_cast<int>(std::lround(points.height()))));
  const Placement placement = placed(nominal, fit);
  const QSize painted(static_cast<int>(std::ceil(placement.picture.width() * 2)),
                      static_cast<int>(std::ceil(placement.picture.height() * 2)));
  if (!isReasonable(painted)) {
    return std::nullopt;
  }
  const QImage image = placedImage(onPaper(document.render(0, painted)), placement);
  return DecodedImage{image, points};
}

}  // namespace quenlio::decoder
