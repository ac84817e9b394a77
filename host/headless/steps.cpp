#include "host/headless/steps.h"

namespace ffc::host {

QString RunSteps(const std::vector<SStep> &listSteps, CProgressLine &progress)
{
  for (const SStep &stStep : listSteps) {
    progress.BeginStep(stStep.pName);
    const QString strError = stStep.fnRun();
    if (!strError.isEmpty()) {
      return QStringLiteral("%1: %2").arg(QLatin1String(stStep.pName), strError.simplified());
    }
  }
  return {};
}

QString RunUntilFailure(const std::vector<std::function<QString()>> &listActions)
{
  QString strError;
  for (const auto &fnAction : listActions) {
    strError = fnAction();
    if (!strError.isEmpty()) {
      break;
    }
  }
  return strError;
}

} // namespace ffc::host
