#include "frames/pngfile.h"

#include <cstring>

#include <QImage>
#include <QImageReader>

#include "frames/wholefile.h"

namespace ffc::frames {

Result<SContent> CPngFile::Read(const QString &strPath) const
{
  QImageReader reader(strPath, "png");
  QImage image;
  if (!reader.read(&image)) {
    return Failure("cannot be read: " + reader.errorString().toStdString() + ".");
  }
  if (image.format() != QImage::Format_Grayscale8 && image.format() != QImage::Format_Grayscale16) {
    return Failure("is not a grey picture of 8 or 16 bit.");
  }
  SContent stContent;
  stContent.stLayout = {static_cast<uint32_t>(image.width()), static_cast<uint32_t>(image.height()),
                        image.format() == QImage::Format_Grayscale8 ? 1U : 2U};
  const std::size_t nLine = stContent.stLayout.GetLineSize();
  std::vector<uint8_t> listFrame(stContent.stLayout.GetFrameSize());
  // Without the padding that a picture's lines may end with.
  for (int nY = 0; nY < image.height(); ++nY) {
    std::memcpy(listFrame.data() + nLine * static_cast<std::size_t>(nY), image.constScanLine(nY), nLine);
  }
  stContent.listFrames.push_back(std::move(listFrame));
  return stContent;
}

Result<> CPngFile::Write(const QString &strPath, const SLayout &stLayout, const void *pFrame) const
{
  QImage image(static_cast<int>(stLayout.nWidth), static_cast<int>(stLayout.nHeight),
               stLayout.nBytesPerSample == 1 ? QImage::Format_Grayscale8 : QImage::Format_Grayscale16);
  const std::size_t nLine = stLayout.GetLineSize();
  const char *pLine = static_cast<const char *>(pFrame);
  for (int nY = 0; nY < image.height(); ++nY, pLine += nLine) {
    std::memcpy(image.scanLine(nY), pLine, nLine);
  }
  return SaveWholePicture(strPath, image);
}

} // namespace ffc::frames
