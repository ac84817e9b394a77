#include <algorithm>

#include "frames/fileio.h"
#include "frames/partialfile.h"
#include "frames/tifffile.h"
#include "frames/tifftags.h"

namespace ffc::frames {
namespace {

constexpr std::size_t STRIP_SIZE = std::size_t{1} << 20U;
// Leaves room for the directories below the 4 GB that offsets of 32 bits reach.
constexpr uint64_t LARGEST_SMALL_FILE = 3900000000U;
constexpr uint64_t DIRECTORY_SIZE = 4096;

class CTiffWriter final : public IFrameWriter {
public:
  CTiffWriter(const QString &strPath, const SFrameInfo &stInfo) : m_file(strPath), m_stInfo(stInfo) {}

  Result<> Open()
  {
    Result<> result = m_file.Open();
    if (!result) {
      return result;
    }
    const uint64_t nFrame = m_stInfo.stLayout.GetFrameSize() + DIRECTORY_SIZE;
    const bool bBig = m_stInfo.stTiff.bBig || m_stInfo.nFrames > LARGEST_SMALL_FILE / nFrame;
    m_pTiff = OpenTiff(m_file.GetFile(), bBig ? "w8" : "w", &m_strError);
    return m_pTiff == nullptr ? Result<>(Describe()) : Result<>();
  }

  Result<> Write(const void *pFrame, const Texts &mapTexts) override
  {
    STiffSetting stSetting;
    SetTags(stSetting);
    SetTiffTexts(m_pTiff.get(), mapTexts, stSetting);
    if (stSetting.bTorn) {
      (void)m_pTiff.release();
    }
    if (!stSetting.bTaken) {
      return Describe();
    }
    // The library says either way that it failed, so far; nobody promises that it always does both.
    const bool bWritten =
      WriteStrips(static_cast<const uint8_t *>(pFrame)) && TIFFWriteDirectory(m_pTiff.get()) == 1 && m_strError.empty();
    return bWritten ? Result<>() : Describe();
  }

  Result<> Commit(ECommit eCommit) override
  {
    m_pTiff.reset();
    return m_strError.empty() ? m_file.Commit(eCommit) : Describe();
  }

private:
  Failure Describe() const
  {
    const QString strSystem = m_file.GetFile().error() == QFileDevice::NoError ? QString::fromStdString(m_strError)
                                                                               : m_file.GetFile().errorString();
    return m_file.Describe(strSystem);
  }

  uint32_t GetStripRows() const
  {
    const std::size_t nRows = std::max<std::size_t>(1, STRIP_SIZE / m_stInfo.stLayout.GetLineSize());
    return static_cast<uint32_t>(std::min<std::size_t>(nRows, m_stInfo.stLayout.nHeight));
  }

  void SetTags(STiffSetting &stSetting)
  {
    const auto fnSet = [&](uint32_t nTag, auto value) { SetTiffField(m_pTiff.get(), nTag, value, stSetting); };
    const STiffFeatures &stFeatures = m_stInfo.stTiff;
    fnSet(TIFFTAG_IMAGEWIDTH, m_stInfo.stLayout.nWidth);
    fnSet(TIFFTAG_IMAGELENGTH, m_stInfo.stLayout.nHeight);
    fnSet(TIFFTAG_BITSPERSAMPLE, 8 * m_stInfo.stLayout.nBytesPerSample);
    fnSet(TIFFTAG_SAMPLESPERPIXEL, 1);
    fnSet(TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISBLACK);
    fnSet(TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
    fnSet(TIFFTAG_COMPRESSION, stFeatures.nCompression);
    fnSet(TIFFTAG_ORIENTATION, stFeatures.nOrientation);
    fnSet(TIFFTAG_ROWSPERSTRIP, GetStripRows());
    if (stFeatures.fResolutionX > 0 && stFeatures.fResolutionY > 0) {
      fnSet(TIFFTAG_XRESOLUTION, stFeatures.fResolutionX);
      fnSet(TIFFTAG_YRESOLUTION, stFeatures.fResolutionY);
      fnSet(TIFFTAG_RESOLUTIONUNIT, stFeatures.nResolutionUnit);
    }
    if (m_stInfo.nBitDepth > 8 && m_stInfo.nBitDepth < 16) {
      fnSet(TIFFTAG_MAXSAMPLEVALUE, (1U << m_stInfo.nBitDepth) - 1);
    }
  }

  bool WriteStrips(const uint8_t *pFrame)
  {
    const std::size_t nStrip = GetStripRows() * m_stInfo.stLayout.GetLineSize();
    const std::size_t nFrame = m_stInfo.stLayout.GetFrameSize();
    uint32_t nIndex = 0;
    for (std::size_t nDone = 0; nDone < nFrame; nDone += nStrip, ++nIndex) {
      const std::size_t nBytes = std::min(nStrip, nFrame - nDone);
      // The library reverses bits in place only for fax compressions.
      void *pStrip = const_cast<uint8_t *>(pFrame + nDone);
      if (TIFFWriteEncodedStrip(m_pTiff.get(), nIndex, pStrip, static_cast<tmsize_t>(nBytes)) < 0) {
        return false;
      }
    }
    return true;
  }

  CPartialFile m_file;
  SFrameInfo m_stInfo;
  std::string m_strError;
  TiffPtr m_pTiff;
};

} // namespace

Result<std::unique_ptr<IFrameWriter>> CTiffFile::Create(const QString &strPath, const SFrameInfo &stInfo) const
{
  return OpenObject<IFrameWriter>(std::make_unique<CTiffWriter>(strPath, stInfo));
}

} // namespace ffc::frames
