#include "desktop/render/ColorProfile.h"

namespace quenlio {

QColorSpace colorSpaceOfProfile(const QByteArray& iccProfile) {
  return iccProfile.isEmpty() ? QColorSpace() : QColorSpace::fromIccProfile(iccProfile);
}

QImage convertedToSRgb(QImage image, const QColorSpace& space) {
  const QColorSpace screen(QColorSpace::SRgb);
  if (!image.isNull() && space.isValid() && space != screen) {
    image.setColorSpace(space);
    image.convertToColorSpace(screen);
  }
  image.setColorSpace(QColorSpace());
  return image;
}

}  // namespace quenlio
