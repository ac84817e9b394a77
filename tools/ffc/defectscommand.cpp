#include <QFileInfo>

#include "frames/wholefile.h"
#include "genapi/sensorformat.h"
#include "quality/defects.h"
#include "tools/ffc/commands.h"
#include "tools/ffc/correctionmarks.h"
#include "tools/ffc/flat.h"
#include "tools/ffc/inputs.h"

namespace ffc::tool {

using genapi::EColorLayout;
using genapi::FindSensorFormat;
using genapi::SSensorFormat;

namespace {

constexpr uint32_t MAX_FRAMES = 256; ///< of the sums; what comes after them is left out

/// Reads frames as they came and looks for defects.
class CDefectSearch {
public:
  explicit CDefectSearch(const SOptions &stOptions) : m_stOptions(stOptions) {}

  std::optional<STrouble> Run()
  {
    std::optional<STrouble> stTrouble = CheckOutput(m_stOptions.strOut);
    stTrouble = stTrouble ? stTrouble : CheckOutput(m_stOptions.strMap);
    stTrouble = stTrouble ? stTrouble : Read(m_stOptions.listBright, m_stackBright);
    stTrouble = stTrouble ? stTrouble : Read(m_stOptions.listDark, m_stackDark);
    if (stTrouble) {
      return stTrouble;
    }
    m_listDefects = quality::FindDefects(m_stackBright, m_stackDark, m_eColors, m_stOptions.stDefectLimits);
    return Save();
  }

  const std::vector<quality::SDefect> &GetDefects() const { return m_listDefects; }
  const quality::CFrameStack &GetBright() const { return m_stackBright; }
  const quality::CFrameStack &GetDark() const { return m_stackDark; }

private:
  std::optional<STrouble> CheckOutput(const std::string &strFile) const
  {
    const QString strPath = QString::fromStdString(strFile);
    return strPath.isEmpty() || m_stOptions.bForce || !QFileInfo::exists(strPath)
             ? std::nullopt
             : std::optional<STrouble>(
                 STrouble{false, MakeSentence(strPath, "is there already; replacing it takes --force.")});
  }

  std::optional<STrouble> Read(const std::vector<std::string> &listNames, quality::CFrameStack &stack)
  {
    const Result<QStringList> listFiles = ListFiles(listNames, m_stOptions.raw.has_value());
    if (!listFiles) {
      return STrouble{false, QString::fromStdString(listFiles.GetError())};
    }
    for (const QString &strFile : listFiles.GetValue()) {
      std::optional<STrouble> stTrouble = ReadFile(strFile, stack);
      if (stTrouble) {
        return stTrouble;
      }
    }
    return std::nullopt;
  }

  std::optional<STrouble> ReadFile(const QString &strFile, quality::CFrameStack &stack)
  {
    auto reader = OpenFrames(strFile, m_stOptions);
    if (!reader) {
      return STrouble{false, QString::fromStdString(reader.GetError())};
    }
    const frames::SFrameInfo &stInfo = reader.GetValue()->GetInfo();
    std::optional<STrouble> stTrouble =
      CheckUncorrected(strFile, stInfo, "; defects are found in frames as they came.");
    stTrouble = stTrouble ? stTrouble : Prepare(strFile, stInfo, stack);
    std::vector<uint8_t> listFrame(stInfo.stLayout.GetFrameSize());
    for (uint64_t n = 0; !stTrouble && n < stInfo.nFrames && stack.GetFrameCount() < MAX_FRAMES; ++n) {
      const Result<> read = reader.GetValue()->Read(listFrame.data());
      if (!read) {
        return STrouble{false, MakeSentence(strFile, read.GetError())};
      }
      if (m_nShift > 0) {
        frames::ShiftRight(listFrame.data(), stInfo.stLayout, m_nShift);
      }
      if (!stack.Add(listFrame.data(), listFrame.size())) {
        return STrouble{true, MakeSentence(strFile, "is unlike the frames before.")};
      }
    }
    return stTrouble;
  }

  /// Whatever was read first says what all frames are.
  std::optional<STrouble> Prepare(const QString &strFile, const frames::SFrameInfo &stInfo, quality::CFrameStack &stack)
  {
    const frames::SLayout &stLayout = stInfo.stLayout;
    if (m_stackBright.GetWidth() == 0) {
      const SSensorFormat *pStated =
        m_stOptions.strPixelFormat.empty() ? nullptr : FindSensorFormat(m_stOptions.strPixelFormat);
      const uint32_t nBits = 8 * stLayout.nBytesPerSample;
      const uint32_t nStated = pStated != nullptr ? pStated->nBitDepth : stInfo.nBitDepth;
      m_eColors = pStated != nullptr ? pStated->eLayout : stInfo.eColors.value_or(EColorLayout::Mono);
      m_nBitDepth = nStated != 0 && nStated <= nBits ? nStated : nBits;
      m_nShift = m_stOptions.eAlignment == frames::EAlignment::Left ? nBits - m_nBitDepth : 0;
    } else if (stLayout.nWidth != m_stackBright.GetWidth() || stLayout.nHeight != m_stackBright.GetHeight()) {
      return STrouble{true, MakeSentence(strFile, "has frames of another size than the others.")};
    }
    if (stack.GetWidth() == 0 &&
        (!stack.Prepare(stLayout.nWidth, stLayout.nHeight, m_nBitDepth) || !stack.AlsoKeepSquares())) {
      return STrouble{false, MakeSentence(strFile, "has frames that need more memory than there is.")};
    }
    return std::nullopt;
  }

  std::optional<STrouble> Save() const
  {
    const QByteArray byteMap =
      quality::MakeDefectsXml(m_listDefects, m_stackBright.GetWidth(), m_stackBright.GetHeight());
    const auto fnSave = [this](const std::string &strFile, const QByteArray &byteContent) {
      return strFile.empty() || m_stOptions.bDryRun
               ? Result<>()
               : frames::SaveWholeFile(QString::fromStdString(strFile), byteContent);
    };
    const Result<> saved =
      RunUntilFailure([&] { return fnSave(m_stOptions.strOut, quality::MakeDefectsCsv(m_listDefects)); },
                      [&] { return fnSave(m_stOptions.strMap, byteMap); });
    return saved ? std::nullopt : std::optional<STrouble>(STrouble{false, QString::fromStdString(saved.GetError())});
  }

  const SOptions &m_stOptions;
  EColorLayout m_eColors = EColorLayout::Mono;
  uint32_t m_nBitDepth = 8;
  uint32_t m_nShift = 0;
  quality::CFrameStack m_stackBright;
  quality::CFrameStack m_stackDark;
  std::vector<quality::SDefect> m_listDefects;
};

} // namespace

EExitCode RunDefects(const SOptions &stOptions, CReport &report)
{
  CDefectSearch search(stOptions);
  const QString strOut = QString::fromStdString(stOptions.strOut);
  const std::optional<STrouble> stTrouble = search.Run();
  if (stTrouble) {
    report.AddTrouble(strOut, *stTrouble);
    return report.Finish(QStringLiteral("defects"));
  }
  const uint32_t nFewest = std::min(search.GetBright().GetFrameCount(), search.GetDark().GetFrameCount());
  if (nFewest < 4) {
    report.Warn(QStringLiteral("Finding pixels with high temporal noise needs at least 4 bright and 4 dark frames."));
  }
  const QString strSummary = quality::SummarizeDefects(search.GetDefects());
  report.AddDone(strOut,
                 {{"status", stOptions.bDryRun ? "would be written" : "written"},
                  {"defects", static_cast<double>(search.GetDefects().size())},
                  {"summary", strSummary},
                  {"brightFrames", static_cast<double>(search.GetBright().GetFrameCount())},
                  {"darkFrames", static_cast<double>(search.GetDark().GetFrameCount())}},
                 QStringLiteral("%1: %2, from %3 bright and %4 dark frames")
                   .arg(strOut, strSummary)
                   .arg(search.GetBright().GetFrameCount())
                   .arg(search.GetDark().GetFrameCount()));
  return report.Finish(QStringLiteral("defects"));
}

} // namespace ffc::tool
