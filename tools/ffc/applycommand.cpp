#include <QDir>
#include <QFileInfo>

#include "frames/correctionmark.h"
#include "frames/partialfile.h"
#include "tools/ffc/commands.h"
#include "tools/ffc/contenthash.h"
#include "tools/ffc/correctionmarks.h"
#include "tools/ffc/flat.h"
#include "tools/ffc/framecorrector.h"
#include "tools/ffc/inputs.h"
#include "tools/ffc/library.h"
#include "tools/ffc/manifest.h"
#include "tools/ffc/transfer.h"

namespace ffc::tool {
namespace {

/// The samples of a whole file; empty when it cannot be read.
QString HashFrames(const QString &strFile, const SOptions &stOptions)
{
  auto reader = OpenFrames(strFile, stOptions);
  if (!reader) {
    return {};
  }
  CContentHash hash;
  std::vector<uint8_t> listFrame(reader.GetValue()->GetInfo().stLayout.GetFrameSize());
  for (uint64_t n = 0; n < reader.GetValue()->GetInfo().nFrames; ++n) {
    if (!reader.GetValue()->Read(listFrame.data())) {
      return {};
    }
    CContentHash hashFrame;
    hashFrame.Add(listFrame.data(), listFrame.size());
    hash.Add(hashFrame);
  }
  return hash.Get();
}

class CApplication {
public:
  CApplication(const SOptions &stOptions, const CFlat &flat, CManifest *pManifest, CReport &report)
    : m_stOptions(stOptions), m_flat(flat), m_pManifest(pManifest), m_report(report), m_corrector(flat)
  {
  }

  /// From any thread.
  void Correct(const QString &strFile, uint32_t nThreads)
  {
    const QString strOut = m_stOptions.bInPlace
                             ? strFile
                             : QDir(QString::fromStdString(m_stOptions.strOut)).filePath(QFileInfo(strFile).fileName());
    QString strStatus = QStringLiteral("corrected");
    uint64_t nFrames = 0;
    std::optional<STrouble> stTrouble = Process(strFile, strOut, nThreads, &strStatus, &nFrames);
    if (stTrouble) {
      m_report.AddTrouble(strFile, *stTrouble);
      return;
    }
    m_report.AddDone(strFile, {{"status", strStatus}, {"output", strOut}, {"frames", static_cast<double>(nFrames)}},
                     QStringLiteral("%1: %2, %3, in %4").arg(strFile, strStatus, CountFrames(nFrames), strOut));
  }

private:
  std::optional<STrouble> Process(const QString &strFile, const QString &strOut, uint32_t nThreads, QString *pstrStatus,
                                  uint64_t *pnFrames)
  {
    auto reader = OpenFrames(strFile, m_stOptions);
    if (!reader) {
      return STrouble{false, QString::fromStdString(reader.GetError())};
    }
    const frames::SFrameInfo &stInfo = reader.GetValue()->GetInfo();
    *pnFrames = stInfo.nFrames;
    const bool bInterrupted = m_stOptions.bResume && m_stOptions.bInPlace && IsInterrupted(strFile);
    if (m_stOptions.bResume && !bInterrupted && IsDone(strFile, strOut, stInfo)) {
      *pstrStatus = QStringLiteral("done before");
      return std::nullopt;
    }
    std::optional<STrouble> stTrouble = CheckInput(strFile, stInfo, bInterrupted);
    stTrouble = stTrouble ? stTrouble : CheckOutput(strOut);
    if (stTrouble || m_stOptions.bDryRun) {
      *pstrStatus = QStringLiteral("would be corrected");
      return stTrouble;
    }
    return Write(*reader.GetValue(), strFile, strOut, nThreads);
  }

  /// Whether a former run ended between the mark and the frames.
  bool IsInterrupted(const QString &strFile) const
  {
    return !FindKind(strFile, m_stOptions)->KeepsTexts() && QFileInfo::exists(frames::GetMarkPath(strFile)) &&
           IsMarkAhead(strFile, HashFrames(strFile, m_stOptions));
  }

  /// What is really there decides: the same frames, and the output that was made of them.
  bool IsDone(const QString &strFile, const QString &strOut, const frames::SFrameInfo &stInfo)
  {
    if (m_stOptions.bInPlace) {
      const Result<QString> correction = FindCorrection(strFile, stInfo);
      return correction && correction.GetValue() == m_flat.GetSha256();
    }
    const std::optional<SManifestEntry> stEntry = m_pManifest->Find(QFileInfo(strOut).fileName());
    return stEntry && QFile::exists(strOut) && stEntry->strFlat == m_flat.GetSha256() &&
           HashFrames(strFile, m_stOptions) == stEntry->stHashes.strRead &&
           HashFrames(strOut, m_stOptions) == stEntry->stHashes.strWritten;
  }

  std::optional<STrouble> CheckInput(const QString &strFile, const frames::SFrameInfo &stInfo, bool bInterrupted) const
  {
    const std::optional<STrouble> stTrouble =
      m_stOptions.bForce || bInterrupted
        ? std::nullopt
        : CheckUncorrected(strFile, stInfo, "; correcting it once more takes --force.");
    return stTrouble ? stTrouble : m_flat.CheckFits(strFile, stInfo);
  }

  std::optional<STrouble> CheckOutput(const QString &strOut) const
  {
    if (m_stOptions.bForce || m_stOptions.bInPlace || !QFileInfo::exists(strOut)) {
      return std::nullopt;
    }
    auto reader = OpenFrames(strOut, m_stOptions);
    const Result<QString> flat =
      reader ? FindCorrection(strOut, reader.GetValue()->GetInfo()) : Result<QString>(QString());
    // Of a run that was killed before it could note it.
    if (m_stOptions.bResume && flat && flat.GetValue() == m_flat.GetSha256()) {
      return std::nullopt;
    }
    return STrouble{false, MakeSentence(strOut, "is there already; replacing it takes --force.")};
  }

  std::optional<STrouble> Write(frames::IFrameReader &reader, const QString &strFile, const QString &strOut,
                                uint32_t nThreads)
  {
    STransfer stTransfer;
    stTransfer.strFrom = strFile;
    stTransfer.strTo = strOut;
    stTransfer.pKind = FindKind(strFile, m_stOptions);
    stTransfer.stInfo = reader.GetInfo();
    stTransfer.mapTexts[frames::TEXT_CORRECTION] = m_flat.DescribeCorrection();
    stTransfer.nThreads = nThreads;
    stTransfer.fnChange = [&](void *pFrame, SFrameHashes *pHashes) {
      return m_corrector.Correct(pFrame, reader.GetInfo(), pHashes);
    };
    if (m_stOptions.bResume) {
      frames::CPartialFile::RemoveLeftOvers(strOut);
    }
    CMarkFile mark(strOut);
    if (!stTransfer.pKind->KeepsTexts()) {
      stTransfer.fnBeforeCommit = [&](const SHashes &stHashes) {
        return mark.Write(m_flat.DescribeCorrection(), stHashes);
      };
    }
    SHashes stHashes;
    std::optional<STrouble> stTrouble = Transfer(reader, stTransfer, m_pManifest == nullptr ? nullptr : &stHashes);
    if (stTrouble) {
      return stTrouble;
    }
    mark.Keep();
    if (m_pManifest == nullptr) {
      return std::nullopt;
    }
    const Result<> added = m_pManifest->Add(QFileInfo(strOut).fileName(), {m_flat.GetSha256(), stHashes});
    return added ? std::nullopt : std::optional<STrouble>(STrouble{false, QString::fromStdString(added.GetError())});
  }

  const SOptions &m_stOptions;
  const CFlat &m_flat;
  CManifest *m_pManifest;
  CReport &m_report;
  CFrameCorrector m_corrector;
};

/// The flat on the command line, or the library's for the first of the frames.
std::optional<STrouble> FindFlat(const SOptions &stOptions, const QStringList &listFiles, CReport &report,
                                 QString &strFlat)
{
  if (stOptions.strLibrary.empty()) {
    strFlat = QString::fromStdString(stOptions.strFlat);
    return std::nullopt;
  }
  const Result<std::vector<SLibraryFlat>> listFlats = ListLibrary(QString::fromStdString(stOptions.strLibrary));
  if (!listFlats) {
    return Refuse(QString::fromStdString(listFlats.GetError()));
  }
  const auto reader = OpenFrames(listFiles.front(), stOptions);
  if (!reader) {
    return STrouble{false, QString::fromStdString(reader.GetError())};
  }
  const Result<SLibraryFlat> flat =
    ChooseFlat(listFlats.GetValue(), reader.GetValue()->GetInfo(), stOptions.strPixelFormat, stOptions.stOrigin);
  if (!flat) {
    return Refuse(QString::fromStdString(flat.GetError()));
  }
  report.Warn(QStringLiteral("The library's flat is \"%1\": %2.")
                .arg(flat.GetValue().strPath, DescribeConditions(flat.GetValue().stSide)));
  strFlat = flat.GetValue().strPath;
  return std::nullopt;
}

EExitCode Stop(CReport &report, const SOptions &stOptions, const STrouble &stTrouble)
{
  report.AddTrouble(QString::fromStdString(stOptions.strFlat), stTrouble);
  return report.Finish(QStringLiteral("apply"));
}

} // namespace

EExitCode RunApply(const SOptions &stOptions, CReport &report)
{
  const Result<QStringList> listFiles = ListInputs(stOptions);
  if (!listFiles) {
    return Stop(report, stOptions, {false, QString::fromStdString(listFiles.GetError())});
  }
  if (listFiles.GetValue().isEmpty()) { // of this shard
    return report.Finish(QStringLiteral("apply"));
  }
  QString strFlat;
  std::optional<STrouble> stTrouble = FindFlat(stOptions, listFiles.GetValue(), report, strFlat);
  CFlat flat;
  stTrouble = stTrouble ? stTrouble : flat.Load(strFlat, stOptions);
  if (stTrouble) {
    return Stop(report, stOptions, *stTrouble);
  }
  CManifest manifest;
  if (!stOptions.bInPlace) {
    const QString strFolder = QString::fromStdString(stOptions.strOut);
    const Result<QStringList> listOutputs = PlanOutputs(listFiles.GetValue(), strFolder, {});
    if (!listOutputs) {
      report.Warn(QString::fromStdString(listOutputs.GetError()));
      return EXIT_USAGE;
    }
    const Result<> prepared = stOptions.bDryRun ? Result<>()
                                                : RunUntilFailure([&] { return MakeFolder(strFolder); },
                                                                  [&] { return manifest.Open(strFolder); });
    if (!prepared) {
      return Stop(report, stOptions, {false, QString::fromStdString(prepared.GetError())});
    }
  }
  CApplication application(stOptions, flat, stOptions.bInPlace ? nullptr : &manifest, report);
  ForEachFile(listFiles.GetValue(), stOptions.nThreads, report,
              [&](const QString &strFile, uint32_t nThreads) { application.Correct(strFile, nThreads); });
  return report.Finish(QStringLiteral("apply"));
}

} // namespace ffc::tool
