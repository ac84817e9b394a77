#include "host/window/dialognote.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

namespace ffc::host {
namespace {

QString Translate(const char *pText)
{
  return QCoreApplication::translate("DialogNote", pText);
}

QString GetName(const QString &strFile)
{
  return QDir::toNativeSeparators(strFile);
}

SDialogNote DescribeCancelled(const SDialogFacts &stFacts)
{
  return {stFacts.bPreviewOffered
            ? Translate("Acquisition cancelled. The coefficients from before are kept: tick Preview to use them.")
            : Translate("Acquisition cancelled: no frames were taken over."),
          false};
}

SDialogNote DescribeBright(const SCoefficientOrigin &stBright)
{
  QStringList listTexts = stBright.listBrightRemarks;
  if (stBright.IsRepeated()) {
    listTexts << Translate(
                   "Only %1 of %2 bright frames differ: the camera repeats itself, and the noise is that of %1.")
                   .arg(stBright.nFrames)
                   .arg(stBright.nAskedFrames);
  }
  return {listTexts.join(QLatin1Char(' ')), !listTexts.isEmpty()};
}

/// The plug-in does not tell whether the bytes have reached the volume.
SDialogNote DescribeSaved(const QString &strFile)
{
  const QFileInfo info(strFile);
  if (!info.isFile() || info.size() == 0) {
    return {Translate("NOT saved: %1 is missing or empty. Is there room on the volume?").arg(GetName(strFile)), true};
  }
  return {Translate("Saved: %1 (%2 bytes)").arg(GetName(strFile)).arg(info.size()), false};
}

SDialogNote DescribeFailed(EDialogAction eAction, const QString &strError, bool bStreaming)
{
  switch (eAction) {
  case EDialogAction::LoadFile: return {Translate("NOT loaded: %1").arg(strError), true};
  case EDialogAction::LoadFlash: return {Translate("NOT loaded from the camera: %1").arg(strError), true};
  case EDialogAction::SaveFile: return {Translate("NOT saved: %1").arg(strError), true};
  case EDialogAction::SaveFlash:
    return {(bStreaming ? Translate("NOT written to the camera: %1. Many cameras write only while their stream is "
                                    "stopped: stop it, and try again.")
                        : Translate("NOT written to the camera: %1"))
              .arg(strError),
            true};
  default: return {};
  }
}

} // namespace

SDialogNote DescribeOutcome(const SDialogFacts &stFacts)
{
  const SDialogOutcome &stOutcome = stFacts.stOutcome;
  if (stFacts.bCancelled) {
    return DescribeCancelled(stFacts);
  }
  if (!stOutcome.strError.isEmpty()) {
    return DescribeFailed(stOutcome.eAction, stOutcome.strError, stFacts.bStreaming);
  }
  switch (stOutcome.eAction) {
  case EDialogAction::AcquireBright:
  case EDialogAction::Execute: return DescribeBright(stFacts.stBright);
  case EDialogAction::LoadFile:
    return {stOutcome.strFile.isEmpty() ? QString() : Translate("Loaded: %1").arg(GetName(stOutcome.strFile)), false};
  case EDialogAction::LoadFlash: return {Translate("Loaded from the camera's flash"), false};
  case EDialogAction::SaveFile: return stOutcome.strFile.isEmpty() ? SDialogNote() : DescribeSaved(stOutcome.strFile);
  case EDialogAction::SaveFlash: return {Translate("Written to the camera, which starts with it from now on"), false};
  default: return {};
  }
}

SDialogNote DescribeLastFile(const QString &strFile)
{
  return strFile.isEmpty() || !QFileInfo::exists(strFile)
           ? SDialogNote()
           : SDialogNote{Translate("Coefficients last used with this camera: %1").arg(GetName(strFile)), false};
}

SDialogNote DescribeMode(const QString &strMode)
{
  const bool bKnown = strMode.isEmpty() || strMode == QLatin1String("FlatFieldCorrection") ||
                      strMode == QLatin1String("TailorFlatFieldCorrection");
  return bKnown
           ? SDialogNote()
           : SDialogNote{
               Translate("The plug-in does not know this camera's correction %1: its dialog is grey.").arg(strMode),
               true};
}

} // namespace ffc::host
