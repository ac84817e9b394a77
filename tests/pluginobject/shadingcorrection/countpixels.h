/// \file
/// What colours a picture has.
#pragma once

#include <QColor>
#include <QImage>

namespace ffc::test {

/// The pixels of a picture that are nearly the given colour.
inline int CountPixels(const QImage &image, const QColor &colour)
{
  int nCount = 0;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      const QColor pixel = image.pixelColor(x, y);
      nCount += qAbs(pixel.red() - colour.red()) < 24 && qAbs(pixel.green() - colour.green()) < 24 &&
                qAbs(pixel.blue() - colour.blue()) < 24;
    }
  }
  return nCount;
}

} // namespace ffc::test
