#include "tools/ffc/commands.h"
#include "tools/ffc/library.h"

namespace ffc::tool {

EExitCode RunLibrary(const SOptions &stOptions, CReport &report)
{
  const QString strFolder = QString::fromStdString(stOptions.strLibrary);
  for (const std::string &strFlat : stOptions.listFrames) {
    const std::optional<STrouble> stTrouble =
      AddToLibrary(strFolder, QString::fromStdString(strFlat), stOptions.bForce);
    if (stTrouble) {
      report.AddTrouble(QString::fromStdString(strFlat), *stTrouble);
    }
  }
  const Result<std::vector<SLibraryFlat>> listFlats = ListLibrary(strFolder);
  if (!listFlats) {
    report.AddTrouble(strFolder, {false, QString::fromStdString(listFlats.GetError())});
    return report.Finish(QStringLiteral("library"));
  }
  for (const SLibraryFlat &stFlat : listFlats.GetValue()) {
    const QString strConditions = DescribeConditions(stFlat.stSide);
    report.AddDone(stFlat.strPath,
                   {{"conditions", strConditions},
                    {"created", stFlat.stSide.strCreated},
                    {"brightFrames", static_cast<double>(stFlat.stSide.nBrightFrames)}},
                   QStringLiteral("%1: %2").arg(stFlat.strPath, strConditions));
  }
  return report.Finish(QStringLiteral("library"));
}

} // namespace ffc::tool
