#include "frames/pngfile.h"

#include <cstring>

#include <QBuffer>
#include <QFile>
#include <QImage>
#include <QImageReader>
#include <QImageWriter>

#include "frames/fileio.h"
#include "frames/partialfile.h"

namespace ffc::frames {
namespace {

// The toolkit's scale for the least compression that compresses: noise does not become much smaller with more.
constexpr int FAST_QUALITY = 80;

class CPngReader final : public IFrameReader {
public:
  Result<> Open(const QString &strPath)
  {
    QFile file(strPath);
    Result<> result = OpenForReading(file);
    if (!result) {
      return result;
    }
    QImageReader reader(&file, "png");
    const QSize size = reader.size();
    if (size.isValid()) {
      result = CheckFrameSize(static_cast<uint64_t>(size.width()), static_cast<uint64_t>(size.height()), 1,
                              static_cast<uint64_t>(file.size()) * MAX_COMPRESSION);
    }
    if (!result) {
      return result;
    }
    if (!reader.read(&m_image)) {
      return Failure("cannot be read: " + reader.errorString().toStdString() + ".");
    }
    return Describe();
  }

  const SFrameInfo &GetInfo() const override { return m_stInfo; }
  void Close() override {} // the file was read as a whole

  Result<> Read(void *pFrame, Texts *pTexts) override
  {
    const std::size_t nLine = m_stInfo.stLayout.GetLineSize();
    auto *pLine = static_cast<uint8_t *>(pFrame);
    // Without the padding that a picture's lines may end with.
    for (int nY = 0; nY < m_image.height(); ++nY, pLine += nLine) {
      std::memcpy(pLine, m_image.constScanLine(nY), nLine);
    }
    if (pTexts != nullptr) {
      *pTexts = m_stInfo.mapTexts;
    }
    return {};
  }

private:
  Result<> Describe()
  {
    if (m_image.format() != QImage::Format_Grayscale8 && m_image.format() != QImage::Format_Grayscale16) {
      return Failure("is not a grey picture of 8 or 16 bit.");
    }
    m_stInfo.stLayout = {static_cast<uint32_t>(m_image.width()), static_cast<uint32_t>(m_image.height()),
                         m_image.format() == QImage::Format_Grayscale8 ? 1U : 2U};
    for (const QString &strKey : m_image.textKeys()) {
      m_stInfo.mapTexts[strKey] = m_image.text(strKey);
    }
    return {};
  }

  QImage m_image;
  SFrameInfo m_stInfo;
};

class CPngWriter final : public IFrameWriter {
public:
  CPngWriter(const QString &strPath, const SLayout &stLayout) : m_file(strPath), m_stLayout(stLayout) {}

  Result<> Open() { return m_file.Open(); }

  Result<> Write(const void *pFrame, const Texts &mapTexts) override
  {
    QImage image(static_cast<int>(m_stLayout.nWidth), static_cast<int>(m_stLayout.nHeight),
                 m_stLayout.nBytesPerSample == 1 ? QImage::Format_Grayscale8 : QImage::Format_Grayscale16);
    if (image.isNull()) {
      return m_file.Describe(QStringLiteral("there is no picture of this size"));
    }
    const std::size_t nLine = m_stLayout.GetLineSize();
    const auto *pLine = static_cast<const uint8_t *>(pFrame);
    for (int nY = 0; nY < image.height(); ++nY, pLine += nLine) {
      std::memcpy(image.scanLine(nY), pLine, nLine);
    }
    for (auto it = mapTexts.begin(); it != mapTexts.end(); ++it) {
      image.setText(it.key(), it.value());
    }
    // Into memory first: the toolkit loses some when a file refuses its bytes.
    QBuffer buffer;
    QImageWriter writer(&buffer, "png");
    writer.setQuality(FAST_QUALITY);
    buffer.open(QIODevice::WriteOnly);
    if (!writer.write(image)) {
      return m_file.Describe(writer.errorString());
    }
    return m_file.Write(buffer.data().constData(), static_cast<uint64_t>(buffer.size()));
  }

  Result<> Commit(ECommit eCommit) override { return m_file.Commit(eCommit); }

private:
  CPartialFile m_file;
  SLayout m_stLayout;
};

} // namespace

Result<std::unique_ptr<IFrameReader>> CPngFile::Open(const QString &strPath) const
{
  return OpenObject<IFrameReader>(std::make_unique<CPngReader>(), strPath);
}

Result<std::unique_ptr<IFrameWriter>> CPngFile::Create(const QString &strPath, const SFrameInfo &stInfo) const
{
  return OpenObject<IFrameWriter>(std::make_unique<CPngWriter>(strPath, stInfo.stLayout));
}

} // namespace ffc::frames
