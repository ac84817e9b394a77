#include "host/options/camerachoice.h"

#include <QCoreApplication>

namespace ffc::host {
namespace {

QString Translate(const char *pText)
{
  return QCoreApplication::translate("CameraChoice", pText);
}

struct SKind {
  const char *pFormat;
  ECorrectionMode eMode;
  const char *pName;
};

const SKind ALL_KINDS[] = {
  {"Mono12", ECorrectionMode::None, QT_TRANSLATE_NOOP("CameraChoice", "Simulated, mono")},
  {"BayerRG8", ECorrectionMode::None, QT_TRANSLATE_NOOP("CameraChoice", "Simulated, colour")},
  {"Mono12", ECorrectionMode::FlatField, QT_TRANSLATE_NOOP("CameraChoice", "Simulated, corrects flat field itself")},
  {"Mono12", ECorrectionMode::Vignetting, QT_TRANSLATE_NOOP("CameraChoice", "Simulated, corrects vignetting itself")},
};

QString NameStarted(const SHostOptions &stOptions)
{
  if (!stOptions.strCameraId.empty()) {
    return Translate("%1 (as started)").arg(QString::fromStdString(stOptions.strCameraId));
  }
  if (!stOptions.strReplayFolder.empty()) {
    return Translate("Recorded: %1").arg(QString::fromStdString(stOptions.strReplayFolder));
  }
  return Translate("%1 (as started)")
    .arg(stOptions.strPixelFormat.empty() ? QStringLiteral("Mono12")
                                          : QString::fromStdString(stOptions.strPixelFormat));
}

/// What was said for the first camera alone is left out.
SHostOptions ForAnother(SHostOptions stOptions)
{
  stOptions.strCameraId.clear();
  stOptions.strReplayFolder.clear();
  stOptions.strFlashFile.clear();
  stOptions.strPixelFormat.clear();
  stOptions.nBlockSize = 0;
  stOptions.eMode = ECorrectionMode::None;
  return stOptions;
}

} // namespace

std::vector<SCameraChoice> ListCameraChoices(const SHostOptions &stOptions,
                                             const std::vector<SRealCameraInfo> &listRealCameras)
{
  std::vector<SCameraChoice> listChoices{{NameStarted(stOptions), stOptions, false}};
  for (const SRealCameraInfo &stInfo : listRealCameras) {
    SCameraChoice stChoice{QString::fromStdString(stInfo.GetDisplayName()), ForAnother(stOptions), false};
    stChoice.stOptions.strCameraId = stInfo.strId;
    listChoices.push_back(stChoice);
  }
  for (const SKind &stKind : ALL_KINDS) {
    SCameraChoice stChoice{Translate(stKind.pName), ForAnother(stOptions), false};
    stChoice.stOptions.strPixelFormat = stKind.pFormat;
    stChoice.stOptions.eMode = stKind.eMode;
    listChoices.push_back(stChoice);
  }
  listChoices.push_back({Translate("Recorded frames..."), ForAnother(stOptions), true});
  return listChoices;
}

} // namespace ffc::host
