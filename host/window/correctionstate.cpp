#include "host/window/correctionstate.h"

#include <QCoreApplication>

#include "genapi/pfnc.h"

namespace ffc::host {

namespace {

using EKind = SCorrectionState::EKind;

QString Translate(const char *pText)
{
  return QCoreApplication::translate("CorrectionState", pText);
}

QString GetFormatText(uint32_t nPixelFormat)
{
  const char *pName = genapi::FindFormatName(nPixelFormat);
  return pName == nullptr ? QStringLiteral("0x%1").arg(nPixelFormat, 8, 16, QLatin1Char('0'))
                          : QString::fromLatin1(pName);
}

SCorrectionState NotCorrected(const QString &strWhy)
{
  return {EKind::NotCorrected, Translate("NOT corrected: %1").arg(strWhy)};
}

} // namespace

QString SFrameShape::GetText() const
{
  return QStringLiteral("%1 x %2 %3").arg(nWidth).arg(nHeight).arg(GetFormatText(nPixelFormat));
}

SCorrectionState JudgeCorrection(const SCorrectionFacts &stFacts)
{
  if (stFacts.bLost) {
    return NotCorrected(Translate("the camera is lost"));
  }
  if (!stFacts.bHasFrame) {
    return {EKind::NoFrame, Translate("no frame yet")};
  }
  if (stFacts.bCorrected) {
    return {EKind::Corrected, Translate("corrected")};
  }
  if (stFacts.bByCamera) {
    return {EKind::Corrected, Translate("corrected by the camera")};
  }
  if (!genapi::IsCorrectable(stFacts.stShape.nPixelFormat)) {
    return NotCorrected(Translate("frames of the format %1 cannot be corrected, choose a mono or Bayer format")
                          .arg(GetFormatText(stFacts.stShape.nPixelFormat)));
  }
  if (!stFacts.strPluginError.isEmpty()) {
    return NotCorrected(stFacts.strPluginError);
  }
  if (stFacts.nStatus != 0) {
    return NotCorrected(QStringLiteral("%1 (%2)").arg(stFacts.strStatusText).arg(stFacts.nStatus));
  }
  if (stFacts.bWithheld) {
    return NotCorrected(Translate("acquisition cancelled, the plug-in still waits for frames"));
  }
  if (stFacts.bAcquiring) {
    return NotCorrected(Translate("the plug-in is taking frames"));
  }
  if (stFacts.bChoosingFile) {
    return NotCorrected(Translate("a file is being chosen"));
  }
  // The plug-in switches its preview off when a frame does not fit, so the frames' shape is asked first.
  if (stFacts.stCorrectedShape && !(*stFacts.stCorrectedShape == stFacts.stShape)) {
    return NotCorrected(Translate("the frame is %1, the coefficients are for %2: acquire anew or load a file")
                          .arg(stFacts.stShape.GetText(), stFacts.stCorrectedShape->GetText()));
  }
  if (stFacts.bPreview) {
    return NotCorrected(Translate("preview is on, but the plug-in wrote no image; acquire and execute again"));
  }
  return {EKind::Raw, Translate("raw (preview is off)")};
}

} // namespace ffc::host
