#include "frames/serfile.h"

#include <algorithm>
#include <cstdlib>
#include <vector>

#include <QDateTime>
#include <QFile>
#include <QtEndian>

#include "frames/fileio.h"
#include "frames/partialfile.h"
#include "frames/serheader.h"

namespace ffc::frames {

using genapi::EColorLayout;

namespace {

constexpr int DATE_SIZE = 8;
constexpr int HEADER_DATES = 16;
/// Dates count tenths of a microsecond from the first day of the year 1.
constexpr qint64 TICKS = 10000; ///< in a millisecond
constexpr qint64 MILLISECONDS_TO_EPOCH = 62135596800000;

// What speaks against a byte order: values beyond the depth, and differences of neighbours.
struct SDoubt {
  bool bBeyond = false;
  uint64_t nDifferences = 0;

  bool operator<(const SDoubt &stOther) const
  {
    return bBeyond != stOther.bBeyond ? stOther.bBeyond : nDifferences < stOther.nDifferences;
  }
};

template <uint16_t (*fnGet)(const void *)>
SDoubt MeasureDoubt(const std::vector<uint8_t> &listFrame, uint32_t nBitDepth)
{
  SDoubt stDoubt;
  const uint32_t nMaximum = (1U << nBitDepth) - 1;
  int32_t nFormer = fnGet(listFrame.data());
  for (std::size_t n = 0; n + 1 < listFrame.size(); n += 2) {
    const int32_t nValue = fnGet(listFrame.data() + n);
    stDoubt.bBeyond |= static_cast<uint32_t>(nValue) > nMaximum;
    stDoubt.nDifferences += static_cast<uint64_t>(std::abs(nValue - nFormer));
    nFormer = nValue;
  }
  return stDoubt;
}

class CSerReader final : public IFrameReader {
public:
  Result<> Open(const QString &strPath)
  {
    m_file.setFileName(strPath);
    Result<> result = OpenForReading(m_file);
    if (!result) {
      return result;
    }
    const Result<SSerHeader> header = ParseSerHeader(m_file.read(SER_HEADER_SIZE));
    if (!header) {
      return header.GetFailure();
    }
    Describe(header.GetValue());
    return RunUntilFailure([this] { return CheckSize(); },
                           [&] {
                             // In a file of this size every place is found.
                             ReadDates();
                             return FindByteOrder(header.GetValue().bFlagged);
                           });
  }

  const SFrameInfo &GetInfo() const override { return m_stInfo; }
  void Close() override { m_file.close(); }

  Result<> Read(void *pFrame, Texts *pTexts) override
  {
    if (pTexts != nullptr) {
      *pTexts = m_stInfo.mapTexts;
    }
    if (m_nRead >= m_stInfo.nFrames) {
      return Failure("ends early.");
    }
    ++m_nRead;
    Result<> result = ReadExactly(m_file, pFrame, m_stInfo.stLayout.GetFrameSize());
    if (result && m_bSwapped) {
      SwapSamples(pFrame, m_stInfo.stLayout);
    }
    return result;
  }

private:
  void Describe(const SSerHeader &stHeader)
  {
    m_stInfo.stLayout = {static_cast<uint32_t>(stHeader.nWidth), static_cast<uint32_t>(stHeader.nHeight),
                         stHeader.nBitDepth > 8 ? 2U : 1U};
    m_stInfo.nFrames = static_cast<uint64_t>(stHeader.nFrames);
    m_stInfo.nBitDepth = static_cast<uint32_t>(std::max(stHeader.nBitDepth, 8));
    m_stInfo.eColors = FindSerColors(stHeader.nColors);
    m_stInfo.mapTexts = stHeader.mapTexts;
    m_stInfo.byteSerDates = stHeader.byteDates;
  }

  Result<> CheckSize() const
  {
    const SLayout &stLayout = m_stInfo.stLayout;
    const uint64_t nData = static_cast<uint64_t>(m_file.size()) - SER_HEADER_SIZE;
    Result<> result = CheckFrameSize(stLayout.nWidth, stLayout.nHeight, stLayout.nBytesPerSample, nData);
    if (result && m_stInfo.nFrames > nData / stLayout.GetFrameSize()) {
      return Failure("is too short for " + std::to_string(m_stInfo.nFrames) + " frames of " +
                     frames::Describe(stLayout) + ": it ends after " + std::to_string(nData / stLayout.GetFrameSize()) +
                     ".");
    }
    return result;
  }

  // The times of the frames stand behind the last frame; they may be missing.
  void ReadDates()
  {
    const uint64_t nFramesEnd = SER_HEADER_SIZE + m_stInfo.nFrames * m_stInfo.stLayout.GetFrameSize();
    const uint64_t nDates = m_stInfo.nFrames * DATE_SIZE;
    if (static_cast<uint64_t>(m_file.size()) - nFramesEnd >= nDates) {
      m_file.seek(static_cast<qint64>(nFramesEnd));
      m_stInfo.byteSerDates += m_file.read(static_cast<qint64>(nDates));
    }
    m_file.seek(SER_HEADER_SIZE);
  }

  Result<> FindByteOrder(bool bFlagged)
  {
    if (m_stInfo.stLayout.nBytesPerSample == 1) {
      return {};
    }
    std::vector<uint8_t> listFrame(m_stInfo.stLayout.GetFrameSize());
    Result<> result = ReadExactly(m_file, listFrame.data(), listFrame.size());
    if (!result) { // the disk: the file is known to be long enough
      return result;
    }
    const bool bBigEndian = MeasureDoubt<qFromBigEndian<uint16_t>>(listFrame, m_stInfo.nBitDepth) <
                            MeasureDoubt<qFromLittleEndian<uint16_t>>(listFrame, m_stInfo.nBitDepth);
    m_bSwapped = bBigEndian != (Q_BYTE_ORDER == Q_BIG_ENDIAN);
    m_stInfo.strRemark =
      QStringLiteral("The samples have the %1 byte first: neighbours then differ less (the header's flag is %2, which "
                     "programs use either way).")
        .arg(bBigEndian ? QStringLiteral("high") : QStringLiteral("low"))
        .arg(bFlagged ? 1 : 0);
    m_file.seek(SER_HEADER_SIZE);
    return {};
  }

  SFrameInfo m_stInfo;
  QFile m_file;
  uint64_t m_nRead = 0;
  bool m_bSwapped = false;
};

class CSerWriter final : public IFrameWriter {
public:
  CSerWriter(const QString &strPath, const SFrameInfo &stInfo) : m_file(strPath), m_stInfo(stInfo) {}

  Result<> Open()
  {
    return RunUntilFailure([this] { return m_file.Open(); }, [this] { return WriteHeader(); });
  }

  Result<> Write(const void *pFrame, const Texts &mapTexts) override
  {
    NoteTime(mapTexts.value(TEXT_TIME));
    ++m_nWritten;
    return m_file.WriteLittleEndian(pFrame, m_stInfo.stLayout);
  }

  Result<> Commit(ECommit eCommit) override
  {
    const bool bChanged = m_nWritten != m_stInfo.nFrames || HasTimes();
    if (HasTimes()) {
      // The header has the local time and the universal one: where the camera stands is not known.
      m_stInfo.byteSerDates = m_byteTimes.left(DATE_SIZE) + m_byteTimes.left(DATE_SIZE) + m_byteTimes;
    }
    m_stInfo.nFrames = m_nWritten;
    const QByteArray byteTimes = m_stInfo.byteSerDates.mid(HEADER_DATES);
    return RunUntilFailure([&] { return m_file.Write(byteTimes.constData(), static_cast<uint64_t>(byteTimes.size())); },
                           [&] { return bChanged ? WriteHeader() : Result<>(); },
                           [&] { return m_file.Commit(eCommit); });
  }

private:
  /// At the beginning of the file.
  Result<> WriteHeader()
  {
    const SLayout &stLayout = m_stInfo.stLayout;
    SSerHeader stHeader;
    stHeader.nColors = GetSerColors(m_stInfo.eColors.value_or(EColorLayout::Mono));
    stHeader.nWidth = static_cast<int32_t>(stLayout.nWidth);
    stHeader.nHeight = static_cast<int32_t>(stLayout.nHeight);
    stHeader.nBitDepth = static_cast<int32_t>(m_stInfo.nBitDepth);
    if (stHeader.nBitDepth == 0 || (stHeader.nBitDepth > 8 ? 2U : 1U) != stLayout.nBytesPerSample) {
      stHeader.nBitDepth = static_cast<int32_t>(8 * stLayout.nBytesPerSample);
    }
    stHeader.nFrames = static_cast<int32_t>(m_stInfo.nFrames);
    stHeader.mapTexts = m_stInfo.mapTexts;
    stHeader.byteDates = m_stInfo.byteSerDates.left(HEADER_DATES);
    const QByteArray byteHeader = MakeSerHeader(stHeader);
    m_file.GetFile().seek(0);
    return m_file.Write(byteHeader.constData(), static_cast<uint64_t>(byteHeader.size()));
  }

  /// Whether every frame came with its time, in a file that did not have them all before.
  bool HasTimes() const
  {
    return m_stInfo.byteSerDates.isEmpty() && static_cast<uint64_t>(m_byteTimes.size()) == m_nWritten * DATE_SIZE;
  }

  void NoteTime(const QString &strTime)
  {
    QDateTime time = QDateTime::fromString(strTime, Qt::ISODateWithMs);
    if (!time.isValid()) {
      return;
    }
    time.setTimeSpec(Qt::UTC);
    char acTime[DATE_SIZE];
    qToLittleEndian<qint64>((time.toMSecsSinceEpoch() + MILLISECONDS_TO_EPOCH) * TICKS, acTime);
    m_byteTimes.append(acTime, DATE_SIZE);
  }

  CPartialFile m_file;
  SFrameInfo m_stInfo;
  uint64_t m_nWritten = 0;
  QByteArray m_byteTimes; ///< of the frames that came with one
};

} // namespace

Result<std::unique_ptr<IFrameReader>> CSerFile::Open(const QString &strPath) const
{
  return OpenObject<IFrameReader>(std::make_unique<CSerReader>(), strPath);
}

Result<std::unique_ptr<IFrameWriter>> CSerFile::Create(const QString &strPath, const SFrameInfo &stInfo) const
{
  return OpenObject<IFrameWriter>(std::make_unique<CSerWriter>(strPath, stInfo));
}

} // namespace ffc::frames
