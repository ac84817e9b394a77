#include "host/options/camerachoice.h"

#include <algorithm>
#include <tuple>

#include <QCoreApplication>

namespace ffc::host {

using camera::ECorrectionMode;
using camera::SRealCameraInfo;

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

QString NameStarted(const SCameraOptions &stCamera)
{
  if (!stCamera.strCameraId.empty()) {
    return Translate("%1 (as started)").arg(QString::fromStdString(stCamera.strCameraId));
  }
  if (!stCamera.strReplayFolder.empty()) {
    return Translate("Recorded: %1").arg(QString::fromStdString(stCamera.strReplayFolder));
  }
  return Translate("%1 (as started)")
    .arg(stCamera.strPixelFormat.empty() ? QStringLiteral("Mono12") : QString::fromStdString(stCamera.strPixelFormat));
}

/// What was said for the first camera alone is left out.
SCameraOptions ForAnother(SCameraOptions stCamera)
{
  stCamera.strCameraId.clear();
  stCamera.strReplayFolder.clear();
  stCamera.strFlashFile.clear();
  stCamera.strPixelFormat.clear();
  stCamera.eAlignment.reset();
  stCamera.nBlockSize = 0;
  stCamera.eMode = ECorrectionMode::None;
  return stCamera;
}

} // namespace

std::vector<SCameraChoice> ListCameraChoices(const SCameraOptions &stCamera,
                                             const std::vector<SRealCameraInfo> &listRealCameras)
{
  std::vector<SCameraChoice> listChoices{{NameStarted(stCamera), stCamera, false}};
  for (const SRealCameraInfo &stInfo : listRealCameras) {
    SCameraChoice stChoice{QString::fromStdString(stInfo.GetDisplayName()), ForAnother(stCamera), false};
    stChoice.stCamera.strCameraId = stInfo.strId;
    listChoices.push_back(stChoice);
  }
  for (const SKind &stKind : ALL_KINDS) {
    SCameraChoice stChoice{Translate(stKind.pName), ForAnother(stCamera), false};
    stChoice.stCamera.strPixelFormat = stKind.pFormat;
    stChoice.stCamera.eMode = stKind.eMode;
    listChoices.push_back(stChoice);
  }
  listChoices.push_back({Translate("Recorded frames..."), ForAnother(stCamera), true});
  return listChoices;
}

int KeepChoice(std::vector<SCameraChoice> &listChoices, const SCameraChoice &stOpen)
{
  auto it = std::find_if(listChoices.begin(), listChoices.end(), [&](const SCameraChoice &stChoice) {
    return std::tie(stChoice.strName, stChoice.stCamera.strCameraId) ==
           std::tie(stOpen.strName, stOpen.stCamera.strCameraId);
  });
  if (it == listChoices.end()) {
    it = listChoices.insert(listChoices.begin() + 1, stOpen);
  }
  *it = stOpen;
  return static_cast<int>(it - listChoices.begin());
}

} // namespace ffc::host
