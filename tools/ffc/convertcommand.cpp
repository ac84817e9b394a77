#include <QDir>
#include <QFileInfo>

#include "frames/rawfile.h"
#include "tools/ffc/commands.h"
#include "tools/ffc/flat.h"
#include "tools/ffc/inputs.h"
#include "tools/ffc/transfer.h"

namespace ffc::tool {

using genapi::FindSensorFormat;
using genapi::SSensorFormat;

namespace {

/// The kind that --to names.
const frames::IFileKind *FindTarget(const std::string &strTo)
{
  static const frames::CRawFile raw;
  return strTo == "raw" ? &raw : frames::FindFileKind(QStringLiteral("frame.") + QString::fromStdString(strTo));
}

class CConversion {
public:
  CConversion(const SOptions &stOptions, const frames::IFileKind &kind, CReport &report)
    : m_stOptions(stOptions), m_kind(kind), m_report(report)
  {
  }

  /// From any thread.
  void Convert(const QString &strFile, uint32_t nThreads)
  {
    const QString strOut = QDir(QString::fromStdString(m_stOptions.strOut))
                             .filePath(QFileInfo(strFile).completeBaseName() + QStringLiteral(".") +
                                       QString::fromStdString(m_stOptions.strTo));
    uint64_t nFrames = 0;
    const std::optional<STrouble> stTrouble = Process(strFile, strOut, nThreads, &nFrames);
    if (stTrouble) {
      m_report.AddTrouble(strFile, *stTrouble);
      return;
    }
    const QString strStatus = m_stOptions.bDryRun ? QStringLiteral("would be converted") : QStringLiteral("converted");
    m_report.AddDone(strFile, {{"status", strStatus}, {"output", strOut}, {"frames", static_cast<double>(nFrames)}},
                     QStringLiteral("%1: %2, %3, in %4").arg(strFile, strStatus, CountFrames(nFrames), strOut));
  }

private:
  std::optional<STrouble> Process(const QString &strFile, const QString &strOut, uint32_t nThreads, uint64_t *pnFrames)
  {
    auto reader = OpenFrames(strFile, m_stOptions);
    if (!reader) {
      return STrouble{false, QString::fromStdString(reader.GetError())};
    }
    const frames::SFrameInfo &stInfo = reader.GetValue()->GetInfo();
    *pnFrames = stInfo.nFrames;
    if (stInfo.nFrames > m_kind.GetMaxFrames()) {
      return STrouble{true, QStringLiteral("The file \"%1\" has %2 frames, but a %3 file takes %4: convert to tif or "
                                           "ser.")
                              .arg(strFile)
                              .arg(stInfo.nFrames)
                              .arg(m_kind.GetName())
                              .arg(m_kind.GetMaxFrames())};
    }
    if (!m_stOptions.bForce && QFileInfo::exists(strOut)) {
      return STrouble{false, MakeSentence(strOut, "is there already; replacing it takes --force.")};
    }
    if (!stInfo.strRemark.isEmpty()) {
      m_report.Warn(MakeSentence(strFile, "had to be guessed at: ") + stInfo.strRemark);
    }
    return m_stOptions.bDryRun ? std::nullopt : Write(*reader.GetValue(), strFile, strOut, nThreads);
  }

  std::optional<STrouble> Write(frames::IFrameReader &reader, const QString &strFile, const QString &strOut,
                                uint32_t nThreads) const
  {
    STransfer stTransfer;
    stTransfer.strFrom = strFile;
    stTransfer.strTo = strOut;
    stTransfer.pKind = &m_kind;
    stTransfer.stInfo = reader.GetInfo();
    stTransfer.nThreads = nThreads;
    stTransfer.fnChange = [](void *, SFrameHashes *) { return Result<>(); };
    const SSensorFormat *pStated =
      m_stOptions.strPixelFormat.empty() ? nullptr : FindSensorFormat(m_stOptions.strPixelFormat);
    if (pStated != nullptr) {
      stTransfer.stInfo.nBitDepth = pStated->nBitDepth;
      stTransfer.stInfo.eColors = pStated->eLayout;
    }
    return Transfer(reader, stTransfer, nullptr);
  }

  const SOptions &m_stOptions;
  const frames::IFileKind &m_kind;
  CReport &m_report;
};

} // namespace

EExitCode RunConvert(const SOptions &stOptions, CReport &report)
{
  const QString strFolder = QString::fromStdString(stOptions.strOut);
  const frames::IFileKind *pKind = FindTarget(stOptions.strTo);
  if (!pKind->IsSupported()) {
    report.Warn(QStringLiteral("This program was built without %1.").arg(pKind->GetName()));
    return EXIT_USAGE;
  }
  const Result<QStringList> listFiles = ListInputs(stOptions);
  if (!listFiles) {
    report.Warn(QString::fromStdString(listFiles.GetError()));
    return EXIT_SOME_FAILED;
  }
  const Result<QStringList> listOutputs =
    PlanOutputs(listFiles.GetValue(), strFolder, QString::fromStdString(stOptions.strTo));
  if (!listOutputs) {
    report.Warn(QString::fromStdString(listOutputs.GetError()));
    return EXIT_USAGE;
  }
  const Result<> made = stOptions.bDryRun ? Result<>() : MakeFolder(strFolder);
  if (!made) {
    report.Warn(QString::fromStdString(made.GetError()));
    return EXIT_SOME_FAILED;
  }
  CConversion conversion(stOptions, *pKind, report);
  ForEachFile(listFiles.GetValue(), stOptions.nThreads, report,
              [&](const QString &strFile, uint32_t nThreads) { conversion.Convert(strFile, nThreads); });
  return report.Finish(QStringLiteral("convert"));
}

} // namespace ffc::tool
