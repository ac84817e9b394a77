#include "frames/recordedframes.h"

#include <algorithm>
#include <memory>
#include <utility>

#include <QDir>
#include <QFileInfo>

#include "frames/alignment.h"
#include "frames/fileio.h"
#include "frames/ifilekind.h"

namespace ffc::frames {

using genapi::EColorLayout;
using genapi::GetLayoutName;

namespace {

constexpr int MIN_FRAMES = 2; // of each kind: one to acquire, one to measure

// Endings that can be read.
QStringList ListSuffixes()
{
  QStringList listSuffixes;
  for (const IFileKind *pKind : ListFileKinds()) {
    listSuffixes << pKind->GetSuffixes();
  }
  return listSuffixes;
}

std::string DescribeBits(uint32_t nBytesPerSample)
{
  return std::to_string(8 * nBytesPerSample) + " bits per pixel";
}

// PFNC name of what a file says of its frames.
std::string GetStatedFormat(const SFrameInfo &stInfo)
{
  const uint32_t nBits = stInfo.nBitDepth == 0 ? 8 * stInfo.stLayout.nBytesPerSample : stInfo.nBitDepth;
  return GetLayoutName(stInfo.eColors.value_or(EColorLayout::Mono)) + std::to_string(nBits);
}

// Reads the files of one recording; the first one sets what all others must be.
class CRecordingReader {
public:
  CRecordingReader(const QDir &dir, const std::optional<SSampleFormat> &stFormat, std::optional<EAlignment> eAlignment)
    : m_dir(dir), m_stFormat(stFormat), m_eAlignment(eAlignment)
  {
  }

  Result<SRecordedFrames> ReadAll()
  {
    Result<> result = RunUntilFailure([this] { return ReadScene("dark", m_stFrames.listDark, false); },
                                      [this] { return ReadScene("bright", m_stFrames.listBright, true); });
    result = result ? DecideSamples() : result;
    if (!result) {
      return result.GetFailure();
    }
    return std::move(m_stFrames);
  }

private:
  using Frames = std::vector<std::vector<uint8_t>>;

  Result<> ReadScene(const char *pScene, Frames &listFrames, bool bNeeded)
  {
    const QString strBegin = QLatin1String(pScene) + QStringLiteral("_");
    const QStringList listSuffixes = ListSuffixes();
    for (const QString &strName : ListNames(m_dir, strBegin, listSuffixes)) {
      Result<> result = ReadFile(m_dir.filePath(strName), listFrames);
      if (!result) {
        return Failure("The file \"" + m_dir.filePath(strName).toStdString() + "\" " + result.GetError());
      }
    }
    if (listFrames.size() < MIN_FRAMES && (bNeeded || !listFrames.empty())) {
      return Failure("The folder \"" + m_dir.path().toStdString() + "\" has " + std::to_string(listFrames.size()) +
                     " frames in \"" + pScene + "_*\" files; at least " + std::to_string(MIN_FRAMES) + " are needed (" +
                     (strBegin + "*." + listSuffixes.join(", " + strBegin + "*.")).toStdString() + ").");
    }
    return {};
  }

  // The messages go on from the file's name.
  Result<> ReadFile(const QString &strPath, Frames &listFrames)
  {
    Result<std::unique_ptr<IFrameReader>> reader = FindFileKind(strPath)->Open(strPath);
    if (!reader) {
      return reader.GetFailure();
    }
    const SFrameInfo &stInfo = reader.GetValue()->GetInfo();
    Result<> result = m_stFrames.stLayout.nWidth == 0 ? SetUp(stInfo) : CheckLikeFirst(stInfo.stLayout);
    for (uint64_t n = 0; result && n < stInfo.nFrames; ++n) {
      std::vector<uint8_t> listFrame(stInfo.stLayout.GetFrameSize());
      result = reader.GetValue()->Read(listFrame.data());
      NoteValues(strPath, listFrame);
      listFrames.push_back(std::move(listFrame));
    }
    return result;
  }

  Result<> SetUp(const SFrameInfo &stInfo)
  {
    const SLayout &stLayout = stInfo.stLayout;
    m_strLayout = GetLayoutName(stInfo.eColors.value_or(EColorLayout::Mono));
    m_stFrames.strStatedFormat = GetStatedFormat(stInfo);
    if (!m_stFormat && stInfo.nBitDepth != 0) {
      m_stFormat = SSampleFormat{m_stFrames.strStatedFormat, stInfo.nBitDepth};
    }
    if (m_stFormat && m_stFormat->GetBytesPerSample() != stLayout.nBytesPerSample) {
      return Failure("has " + DescribeBits(stLayout.nBytesPerSample) + ", which the pixel format " +
                     m_stFormat->strName + " does not have.");
    }
    m_stFrames.stLayout = stLayout;
    return {};
  }

  Result<> CheckLikeFirst(const SLayout &stLayout) const
  {
    const SLayout &stFirst = m_stFrames.stLayout;
    if (stLayout == stFirst) {
      return {};
    }
    return Failure("is " + Describe(stLayout) + ", unlike the first one: " + Describe(stFirst) + ".");
  }

  void NoteValues(const QString &strPath, const std::vector<uint8_t> &listFrame)
  {
    SEvidence stEvidence;
    stEvidence.Add(listFrame.data(), m_stFrames.stLayout);
    m_stEvidence.Add(stEvidence);
    if (m_strBeyond.empty() && m_stFormat && stEvidence.nLargest > m_stFormat->GetMaximum()) {
      m_strBeyond = "The file \"" + strPath.toStdString() + "\" holds the value " +
                    std::to_string(stEvidence.nLargest) + ", but " + m_stFormat->strName + " ends at " +
                    std::to_string(m_stFormat->GetMaximum()) + ".";
    }
  }

  // Values beyond the depth are those of left-aligned samples, or of another format.
  Result<> DecideSamples()
  {
    if (m_stFrames.stLayout.nBytesPerSample == 1) {
      return {};
    }
    const uint32_t nStated = m_stFormat ? m_stFormat->nBitDepth : 0;
    const Result<SDepth> depth = DecideDepth(m_stEvidence, m_stFrames.stLayout, {nStated, m_eAlignment});
    if (!depth) {
      return Failure(m_strBeyond.empty() ? "The recording in \"" + m_dir.path().toStdString() + "\" " + depth.GetError()
                                         : m_strBeyond);
    }
    if (nStated == 0) {
      m_stFrames.strStatedFormat = m_strLayout + std::to_string(depth.GetValue().nBitDepth);
      m_stFrames.strGuess = depth.GetValue().strReason.toStdString();
    }
    AlignRight(depth.GetValue().GetShift(m_stFrames.stLayout));
    return {};
  }

  void AlignRight(uint32_t nShift)
  {
    m_stFrames.bLeftAligned = nShift > 0;
    if (nShift == 0) {
      return;
    }
    for (Frames *pFrames : {&m_stFrames.listDark, &m_stFrames.listBright}) {
      for (std::vector<uint8_t> &listFrame : *pFrames) {
        ShiftRight(listFrame.data(), m_stFrames.stLayout, nShift);
      }
    }
  }

  QDir m_dir;
  std::optional<SSampleFormat> m_stFormat;
  std::optional<EAlignment> m_eAlignment;
  std::string m_strLayout; ///< of the colours, as formats begin with it
  SRecordedFrames m_stFrames;
  SEvidence m_stEvidence;
  std::string m_strBeyond; // the first value beyond the format, as a sentence
};

} // namespace

Result<SRecordedFrames> LoadRecordedFrames(const std::string &strFolder, const std::optional<SSampleFormat> &stFormat,
                                           std::optional<EAlignment> eAlignment)
{
  const QString strPath = QString::fromStdString(strFolder);
  if (!QFileInfo(strPath).isDir()) {
    return Failure("There is no folder \"" + strFolder + "\".");
  }
  return CRecordingReader(QDir(strPath), stFormat, eAlignment).ReadAll();
}

} // namespace ffc::frames
