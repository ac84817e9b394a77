#include "host/measurement/defectfiles.h"

#include "frames/wholefile.h"
#include "quality/defects.h"

namespace ffc::host {

Result<> SaveDefects(const QString &strBase, const quality::SReport &stReport)
{
  if (stReport.listDefects.empty()) {
    return {};
  }
  return RunUntilFailure(
    [&] {
      return frames::SaveWholeFile(strBase + QStringLiteral(".csv"), quality::MakeDefectsCsv(stReport.listDefects));
    },
    [&] {
      return frames::SaveWholeFile(strBase + QStringLiteral(".xml"),
                                   quality::MakeDefectsXml(stReport.listDefects, stReport.nWidth, stReport.nHeight));
    });
}

} // namespace ffc::host
