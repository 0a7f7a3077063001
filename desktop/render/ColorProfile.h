// Colours as a picture's file means them, and as the screen wants them (sRGB). Any thread.
#pragma once

#include <QByteArray>
#include <QColorSpace>
#include <QImage>

namespace quenlio {

// The profile, or an invalid space when it is none that can be applied.
[[nodiscard]] QColorSpace colorSpaceOfProfile(const QByteArray& iccProfile);

// The image's colours, told in the given space, become sRGB. An invalid space counts as sRGB.
[[nodiscard]] QImage convertedToSRgb(QImage image, const QColorSpace& space);

}  // namespace quenlio
