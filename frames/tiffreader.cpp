#include <algorithm>
#include <cstring>

#include "frames/fileio.h"
#include "frames/tifffile.h"
#include "frames/tifftags.h"

namespace ffc::frames {
namespace {

constexpr uint16_t LOSSLESS[] = {COMPRESSION_NONE, COMPRESSION_LZW, COMPRESSION_ADOBE_DEFLATE, COMPRESSION_DEFLATE,
                                 COMPRESSION_PACKBITS};

// Of the directory that was read last; the tag's default where it is missing.
template <class TValue>
TValue GetTag(TIFF *pTiff, uint32_t nTag)
{
  TValue value{};
  TIFFGetFieldDefaulted(pTiff, nTag, &value);
  return value;
}

const char *DescribePhotometric(uint16_t nPhotometric)
{
  switch (nPhotometric) {
  case PHOTOMETRIC_MINISWHITE: return "is a grey picture with white as zero; only black as zero is read.";
  case PHOTOMETRIC_PALETTE: return "is a palette picture; only grey pictures are read.";
  default: return "is a colour picture; only grey pictures are read.";
  }
}

// Largest value that a file may state, as a depth; 0 for one that says nothing.
uint32_t GetStatedDepth(TIFF *pTiff)
{
  uint16_t nMaximum = 0;
  if (TIFFGetField(pTiff, TIFFTAG_MAXSAMPLEVALUE, &nMaximum) != 1) {
    return 0;
  }
  for (const uint32_t nDepth : {8U, 10U, 12U, 14U}) {
    if (nMaximum == (1U << nDepth) - 1) {
      return nDepth;
    }
  }
  return 0;
}

class CTiffReader final : public IFrameReader {
public:
  Result<> Open(const QString &strPath)
  {
    m_file.setFileName(strPath);
    Result<> result = OpenForReading(m_file);
    if (!result) {
      return result;
    }
    m_pTiff = OpenTiff(m_file, "rm", &m_strError);
    if (m_pTiff == nullptr) {
      return Describe();
    }
    return RunUntilFailure([this] { return CheckDirectory(m_stInfo.stLayout); }, [this] { return ReadInfo(); });
  }

  const SFrameInfo &GetInfo() const override { return m_stInfo; }
  void Close() override { m_file.close(); }

  Result<> Read(void *pFrame, Texts *pTexts) override
  {
    if (m_nRead > 0) {
      Result<> result = ReadNextDirectory();
      if (!result) {
        return result;
      }
    }
    ++m_nRead;
    if (pTexts != nullptr) {
      *pTexts = GetTiffTexts(m_pTiff.get());
    }
    return ReadStrips(static_cast<uint8_t *>(pFrame));
  }

private:
  /// The library tells why, so far; nobody promises that it always does.
  Failure Describe() const
  {
    return Failure("cannot be read as TIFF: " + (m_strError.empty() ? "it is damaged" : m_strError) + ".");
  }

  Result<> ReadInfo()
  {
    m_stInfo.stTiff.bBig = TIFFIsBigTIFF(m_pTiff.get()) != 0;
    m_stInfo.stTiff.nCompression = GetTag<uint16_t>(m_pTiff.get(), TIFFTAG_COMPRESSION);
    m_stInfo.stTiff.nOrientation = GetTag<uint16_t>(m_pTiff.get(), TIFFTAG_ORIENTATION);
    m_stInfo.stTiff.nResolutionUnit = GetTag<uint16_t>(m_pTiff.get(), TIFFTAG_RESOLUTIONUNIT);
    m_stInfo.stTiff.fResolutionX = GetTag<float>(m_pTiff.get(), TIFFTAG_XRESOLUTION);
    m_stInfo.stTiff.fResolutionY = GetTag<float>(m_pTiff.get(), TIFFTAG_YRESOLUTION);
    m_stInfo.nBitDepth = GetStatedDepth(m_pTiff.get());
    m_stInfo.mapTexts = GetTiffTexts(m_pTiff.get());
    m_stInfo.nFrames = TIFFNumberOfDirectories(m_pTiff.get());
    TIFFSetDirectory(m_pTiff.get(), 0);
    return m_strError.empty() ? CheckImageJ() : Describe();
  }

  // That program keeps frames beyond 4 GB behind a single directory.
  Result<> CheckImageJ() const
  {
    const QString strDescription = m_stInfo.mapTexts.value(TEXT_DESCRIPTION);
    const int nPlace = strDescription.indexOf(QStringLiteral("\nimages="));
    if (!strDescription.startsWith(QStringLiteral("ImageJ=")) || nPlace < 0) {
      return {};
    }
    const qulonglong nImages = strDescription.mid(nPlace + 8).section('\n', 0, 0).trimmed().toULongLong();
    if (nImages > m_stInfo.nFrames) {
      return Failure("says that it holds " + std::to_string(nImages) + " frames, but has directories for " +
                     std::to_string(m_stInfo.nFrames) + ": save it as BigTIFF.");
    }
    return {};
  }

  Result<> ReadNextDirectory()
  {
    if (TIFFReadDirectory(m_pTiff.get()) != 1) {
      return m_strError.empty() ? Failure("ends early.") : Describe();
    }
    SLayout stLayout;
    Result<> result = CheckDirectory(stLayout);
    if (result && stLayout != m_stInfo.stLayout) {
      return Failure("has frames of different sizes: frame " + std::to_string(m_nRead + 1) + " is " +
                     frames::Describe(stLayout) + ", unlike the first one: " + frames::Describe(m_stInfo.stLayout) +
                     ".");
    }
    return result;
  }

  // Whether a frame of the directory can be read.
  Result<> CheckDirectory(SLayout &stLayout)
  {
    TIFF *pTiff = m_pTiff.get();
    const auto nPhotometric = GetTag<uint16_t>(pTiff, TIFFTAG_PHOTOMETRIC);
    const auto nSamples = GetTag<uint16_t>(pTiff, TIFFTAG_SAMPLESPERPIXEL);
    const auto nBits = GetTag<uint16_t>(pTiff, TIFFTAG_BITSPERSAMPLE);
    const auto nFormat = GetTag<uint16_t>(pTiff, TIFFTAG_SAMPLEFORMAT);
    const auto nCompression = GetTag<uint16_t>(pTiff, TIFFTAG_COMPRESSION);
    if (nPhotometric != PHOTOMETRIC_MINISBLACK || nSamples != 1) {
      return Failure(DescribePhotometric(nSamples == 1 ? nPhotometric : uint16_t{PHOTOMETRIC_RGB}));
    }
    if ((nBits != 8 && nBits != 16) || (nFormat != SAMPLEFORMAT_UINT && nFormat != SAMPLEFORMAT_VOID)) {
      return Failure("has samples of " + std::to_string(nBits) + " bits" +
                     (nFormat == SAMPLEFORMAT_UINT ? "" : " that are no unsigned numbers") +
                     "; unsigned ones of 8 or 16 are read.");
    }
    if (std::find(std::begin(LOSSLESS), std::end(LOSSLESS), nCompression) == std::end(LOSSLESS)) {
      return Failure("has the compression " + std::to_string(nCompression) +
                     "; none, LZW, deflate and PackBits are read.");
    }
    if (TIFFIsTiled(pTiff) != 0) {
      return Failure("is stored in tiles; only strips are read.");
    }
    stLayout = {GetTag<uint32_t>(pTiff, TIFFTAG_IMAGEWIDTH), GetTag<uint32_t>(pTiff, TIFFTAG_IMAGELENGTH),
                nBits / uint32_t{8}};
    const uint64_t nRatio = nCompression == COMPRESSION_NONE ? 1 : MAX_COMPRESSION;
    return CheckFrameSize(stLayout.nWidth, stLayout.nHeight, stLayout.nBytesPerSample,
                          static_cast<uint64_t>(m_file.size()) * nRatio);
  }

  Result<> ReadStrips(uint8_t *pFrame)
  {
    const std::size_t nFrame = m_stInfo.stLayout.GetFrameSize();
    const uint32_t nStrips = TIFFNumberOfStrips(m_pTiff.get());
    std::size_t nDone = 0;
    for (uint32_t nStrip = 0; nStrip < nStrips; ++nStrip) {
      const tmsize_t nRead =
        TIFFReadEncodedStrip(m_pTiff.get(), nStrip, pFrame + nDone, static_cast<tmsize_t>(nFrame - nDone));
      if (nRead <= 0) {
        return Describe();
      }
      nDone += static_cast<std::size_t>(nRead);
    }
    // The library counts strips as the rows need them, and takes a short one for damage; nobody promises that.
    return nDone == nFrame ? Result<>() : Describe();
  }

  SFrameInfo m_stInfo;
  QFile m_file;
  std::string m_strError;
  TiffPtr m_pTiff;
  uint64_t m_nRead = 0;
};

} // namespace

bool IsTiffSupported()
{
  return true;
}

Result<std::unique_ptr<IFrameReader>> CTiffFile::Open(const QString &strPath) const
{
  return OpenObject<IFrameReader>(std::make_unique<CTiffReader>(), strPath);
}

} // namespace ffc::frames
