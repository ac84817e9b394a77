#include "frames/fitsfile.h"

#include <algorithm>
#include <utility>
#include <vector>

#include <QFile>

#include "frames/fileio.h"
#include "frames/fitsheader.h"
#include "frames/partialfile.h"

namespace ffc::frames {
namespace {

constexpr uint8_t SIGN_BIT = 0x80;

bool IsTurned(const SFrameInfo &stInfo)
{
  return stInfo.stFits.eRowOrder == SFitsFeatures::ERowOrder::BottomUp;
}

/// The last row becomes the first.
void TurnOver(uint8_t *pFrame, const SLayout &stLayout)
{
  const std::size_t nLine = stLayout.GetLineSize();
  uint8_t *pLast = pFrame + stLayout.GetFrameSize();
  for (uint32_t nY = 0; nY < stLayout.nHeight / 2; ++nY) {
    pLast -= nLine;
    std::swap_ranges(pFrame, pFrame + nLine, pLast);
    pFrame += nLine;
  }
}

/// Samples of a file begin with their high byte; with BZERO 32768 its highest bit says the opposite.
void FlipSigns(uint8_t *pFrame, const SLayout &stLayout)
{
  for (std::size_t n = 0; n < stLayout.GetFrameSize(); n += 2) {
    pFrame[n] = static_cast<uint8_t>(pFrame[n] ^ SIGN_BIT);
  }
}

bool HasNegative(const uint8_t *pFrame, const SLayout &stLayout)
{
  unsigned nBits = 0;
  for (std::size_t n = 0; n < stLayout.GetFrameSize(); n += 2) {
    nBits |= pFrame[n];
  }
  return (nBits & SIGN_BIT) != 0;
}

class CFitsReader final : public IFrameReader {
public:
  Result<> Open(const QString &strPath)
  {
    m_file.setFileName(strPath);
    Result<> result = OpenForReading(m_file);
    if (!result) {
      return result;
    }
    Result<SFitsHeader> header = ReadFitsHeader(m_file);
    if (!header) {
      return header.GetFailure();
    }
    m_stHeader = std::move(header).GetValue();
    return CheckRest();
  }

  const SFrameInfo &GetInfo() const override { return m_stHeader.stInfo; }
  void Close() override { m_file.close(); }

  Result<> Read(void *pFrame, Texts *pTexts) override
  {
    const SFrameInfo &stInfo = m_stHeader.stInfo;
    if (pTexts != nullptr) {
      *pTexts = stInfo.mapTexts;
    }
    if (m_nRead >= stInfo.nFrames) {
      return Failure("ends early.");
    }
    ++m_nRead;
    const Result<> result = ReadExactly(m_file, pFrame, stInfo.stLayout.GetFrameSize());
    return result ? Decode(static_cast<uint8_t *>(pFrame)) : result;
  }

private:
  /// What follows the image would be lost, or belongs to it.
  Result<> CheckRest()
  {
    const SFrameInfo &stInfo = m_stHeader.stInfo;
    const qint64 nBegin = m_file.pos();
    const uint64_t nData = stInfo.nFrames * stInfo.stLayout.GetFrameSize();
    const uint64_t nEnd = nData + GetFitsPadding(nData);
    // Within a file that CheckFrameSize has looked at, places are found.
    m_file.seek(nBegin + static_cast<qint64>(nEnd));
    if (m_file.read(8) == "XTENSION") {
      return Failure("has further parts behind its image (extensions), which would be lost: save the image alone.");
    }
    m_file.seek(nBegin);
    return {};
  }

  Result<> Decode(uint8_t *pFrame) const
  {
    const SLayout &stLayout = m_stHeader.stInfo.stLayout;
    if (stLayout.nBytesPerSample == 2) {
      if (!m_stHeader.bSigned) {
        FlipSigns(pFrame, stLayout);
      } else if (HasNegative(pFrame, stLayout)) {
        return Failure("has negative values in frame " + std::to_string(m_nRead) +
                       "; only values from 0 are those of a camera.");
      }
      ConvertOrder<QSysInfo::BigEndian>(pFrame, stLayout);
    }
    if (IsTurned(m_stHeader.stInfo)) {
      TurnOver(pFrame, stLayout);
    }
    return {};
  }

  SFitsHeader m_stHeader;
  QFile m_file;
  uint64_t m_nRead = 0;
};

class CFitsWriter final : public IFrameWriter {
public:
  CFitsWriter(const QString &strPath, const SFrameInfo &stInfo) : m_file(strPath), m_stInfo(stInfo) {}

  Result<> Open() { return m_file.Open(); }

  Result<> Write(const void *pFrame, const Texts &mapTexts) override
  {
    Result<> result = m_listFrame.empty() ? WriteHeader(mapTexts) : Result<>();
    if (!result) {
      return result;
    }
    const auto *pBytes = static_cast<const uint8_t *>(pFrame);
    m_listFrame.assign(pBytes, pBytes + m_stInfo.stLayout.GetFrameSize());
    if (m_stInfo.stLayout.nBytesPerSample == 2) {
      ConvertOrder<QSysInfo::BigEndian>(m_listFrame.data(), m_stInfo.stLayout);
      FlipSigns(m_listFrame.data(), m_stInfo.stLayout);
    }
    if (IsTurned(m_stInfo)) {
      TurnOver(m_listFrame.data(), m_stInfo.stLayout);
    }
    m_nData += m_listFrame.size();
    return m_file.Write(m_listFrame.data(), m_listFrame.size());
  }

  Result<> Commit(ECommit eCommit) override
  {
    const QByteArray bytePadding(static_cast<int>(GetFitsPadding(m_nData)), '\0');
    return RunUntilFailure(
      [&] { return m_file.Write(bytePadding.constData(), static_cast<uint64_t>(bytePadding.size())); },
      [&] { return m_file.Commit(eCommit); });
  }

private:
  /// The texts come with the first frame.
  Result<> WriteHeader(const Texts &mapTexts)
  {
    const Result<QByteArray> header = MakeFitsHeader(m_stInfo, mapTexts);
    if (!header) { // no memory
      return m_file.Describe(QString::fromStdString(header.GetError()));
    }
    return m_file.Write(header.GetValue().constData(), static_cast<uint64_t>(header.GetValue().size()));
  }

  CPartialFile m_file;
  SFrameInfo m_stInfo;
  std::vector<uint8_t> m_listFrame; ///< as it stands in the file; empty before the first
  uint64_t m_nData = 0;
};

} // namespace

bool IsFitsSupported()
{
  return true;
}

Result<std::unique_ptr<IFrameReader>> CFitsFile::Open(const QString &strPath) const
{
  return OpenObject<IFrameReader>(std::make_unique<CFitsReader>(), strPath);
}

Result<std::unique_ptr<IFrameWriter>> CFitsFile::Create(const QString &strPath, const SFrameInfo &stInfo) const
{
  return OpenObject<IFrameWriter>(std::make_unique<CFitsWriter>(strPath, stInfo));
}

} // namespace ffc::frames
