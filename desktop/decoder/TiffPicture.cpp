#include <QBuffer>
#include <QImageReader>

#include "desktop/decoder/Decoders.h"
#include "desktop/render/ColorProfile.h"
#include "desktop/render/PictureSink.h"

namespace quenlio::decoder {

std::optional<DecodedImage> decodeTiff(const QByteArray& file, const Fit& fit) {
  QBuffer buffer;
  buffer.setData(file);
  buffer.open(QIODevice::ReadOnly);
  QImageReader reader(&buffer, "tiff");
  reader.setDecideFormatFromContent(false);
  reader.setAutoTransform(true);
  QImageReader::setAllocationLimit(0);  // the process as a whole has a limit
  if (!isReasonable(reader.size())) {
    return std::nullopt;
  }
  QImage whole;
  if (!reader.read(&whole) || !isReasonable(whole.size())) {
    return std::nullopt;
  }
  const QSizeF points = inPoints(whole.size(), pixelsAPointOfMetre(whole.dotsPerMeterX()));
  const QColorSpace space = whole.colorSpace();
  return DecodedImage{convertedToSRgb(placedImage(whole, placed(whole.size(), fit)), space), points};
}

}  // namespace quenlio::decoder
