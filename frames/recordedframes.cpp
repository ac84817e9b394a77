#include "frames/recordedframes.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QImageReader>

namespace {

constexpr int MIN_FRAMES = 2; ///< of each kind: one to acquire, one to measure

/// Reads the files of one recording; the first one sets what all others must be.
class CRecordingReader {
public:
  CRecordingReader(const QDir &dir, std::string strPixelFormat)
    : m_dir(dir), m_strPixelFormat(std::move(strPixelFormat))
  {
  }

  std::string ReadAll(SRecordedFrames *pstFrames)
  {
    std::string strError = ReadKind("dark", &m_stFrames.listDark);
    if (strError.empty()) {
      strError = ReadKind("bright", &m_stFrames.listBright);
    }
    if (strError.empty()) {
      *pstFrames = std::move(m_stFrames);
    }
    return strError;
  }

private:
  std::string ReadKind(const char *pKind, std::vector<std::vector<uint8_t>> *plistFrames)
  {
    const QString strPattern = QString("%1_*.png").arg(pKind);
    const QStringList listNames = m_dir.entryList({strPattern}, QDir::Files, QDir::Name);
    if (listNames.size() < MIN_FRAMES) {
      return "The folder \"" + m_dir.path().toStdString() + "\" has " + std::to_string(listNames.size()) + " \"" +
             strPattern.toStdString() + "\" files; at least " + std::to_string(MIN_FRAMES) + " are needed.";
    }
    for (const QString &strName : listNames) {
      std::vector<uint8_t> listFrame;
      const std::string strError = ReadFile(strName, &listFrame);
      if (!strError.empty()) {
        return "The file \"" + m_dir.filePath(strName).toStdString() + "\" " + strError;
      }
      plistFrames->push_back(std::move(listFrame));
    }
    return {};
  }

  /// The messages go on from the file's name.
  std::string ReadFile(const QString &strName, std::vector<uint8_t> *plistFrame)
  {
    QImageReader reader(m_dir.filePath(strName), "png");
    QImage image;
    if (!reader.read(&image)) {
      return "cannot be read: " + reader.errorString().toStdString() + ".";
    }
    if (image.format() != QImage::Format_Grayscale8 && image.format() != QImage::Format_Grayscale16) {
      return "is not a grey picture of 8 or 16 bit.";
    }
    std::string strError = m_stFrames.nWidth == 0 ? SetUp(image) : CheckLikeFirst(image);
    if (!strError.empty()) {
      return strError;
    }
    *plistFrame = Pack(image);
    return CheckValues(*plistFrame);
  }

  static uint32_t GetBytesPerPixel(const QImage &image) { return image.format() == QImage::Format_Grayscale8 ? 1 : 2; }

  std::string SetUp(const QImage &image)
  {
    const uint32_t nBytes = GetBytesPerPixel(image);
    const std::string strName = !m_strPixelFormat.empty() ? m_strPixelFormat : nBytes == 1 ? "Mono8" : "Mono16";
    const SSensorFormat *pFormat = FindSensorFormat(strName);
    if (pFormat == nullptr) {
      return "cannot be played: there is no pixel format \"" + strName + "\".";
    }
    if (pFormat->GetBytesPerPixel() != nBytes) {
      return "has " + std::to_string(8 * nBytes) + " bits per pixel, which the pixel format " + strName +
             " does not have.";
    }
    m_stFrames.stFormat = *pFormat;
    m_stFrames.nWidth = static_cast<uint32_t>(image.width());
    m_stFrames.nHeight = static_cast<uint32_t>(image.height());
    return {};
  }

  std::string CheckLikeFirst(const QImage &image) const
  {
    const bool bSameSize =
      image.width() == static_cast<int>(m_stFrames.nWidth) && image.height() == static_cast<int>(m_stFrames.nHeight);
    if (!bSameSize || GetBytesPerPixel(image) != m_stFrames.stFormat.GetBytesPerPixel()) {
      return "is " + std::to_string(image.width()) + " x " + std::to_string(image.height()) + " with " +
             std::to_string(8 * GetBytesPerPixel(image)) +
             " bits per pixel, unlike the first one: " + std::to_string(m_stFrames.nWidth) + " x " +
             std::to_string(m_stFrames.nHeight) + " with " +
             std::to_string(8 * m_stFrames.stFormat.GetBytesPerPixel()) + ".";
    }
    return {};
  }

  /// Without the padding that a picture's lines may end with.
  static std::vector<uint8_t> Pack(const QImage &image)
  {
    const std::size_t nLine = static_cast<std::size_t>(image.width()) * GetBytesPerPixel(image);
    std::vector<uint8_t> listFrame(nLine * static_cast<std::size_t>(image.height()));
    for (int nY = 0; nY < image.height(); ++nY) {
      std::memcpy(listFrame.data() + nLine * static_cast<std::size_t>(nY), image.constScanLine(nY), nLine);
    }
    return listFrame;
  }

  std::string CheckValues(const std::vector<uint8_t> &listFrame) const
  {
    const SSensorFormat &stFormat = m_stFrames.stFormat;
    if (stFormat.nBitDepth == 8 || stFormat.nBitDepth == 16) {
      return {};
    }
    const auto *pSamples = reinterpret_cast<const uint16_t *>(listFrame.data());
    const uint16_t nLargest = *std::max_element(pSamples, pSamples + listFrame.size() / sizeof(uint16_t));
    if (nLargest > stFormat.GetMaxValue()) {
      return "holds the value " + std::to_string(nLargest) + ", but " + stFormat.strName + " ends at " +
             std::to_string(stFormat.GetMaxValue()) + ".";
    }
    return {};
  }

  QDir m_dir;
  std::string m_strPixelFormat;
  SRecordedFrames m_stFrames;
};

} // namespace

std::string LoadRecordedFrames(const std::string &strFolder, const std::string &strPixelFormat,
                               SRecordedFrames *pstFrames)
{
  const QString strPath = QString::fromStdString(strFolder);
  if (!QFileInfo(strPath).isDir()) {
    return "There is no folder \"" + strFolder + "\".";
  }
  return CRecordingReader(QDir(strPath), strPixelFormat).ReadAll(pstFrames);
}
