#include "host/camerachoice.h"

#include <QCoreApplication>

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
  if (!stOptions.strReplayFolder.empty()) {
    return Translate("Recorded: %1").arg(QString::fromStdString(stOptions.strReplayFolder));
  }
  return Translate("%1 (as started)")
    .arg(stOptions.strPixelFormat.empty() ? QStringLiteral("Mono12")
                                          : QString::fromStdString(stOptions.strPixelFormat));
}

} // namespace

std::vector<SCameraChoice> ListCameraChoices(const SHostOptions &stOptions)
{
  std::vector<SCameraChoice> listChoices{{NameStarted(stOptions), stOptions, false}};
  for (const SKind &stKind : ALL_KINDS) {
    SCameraChoice stChoice{Translate(stKind.pName), stOptions, false};
    stChoice.stOptions.strReplayFolder.clear();
    stChoice.stOptions.strFlashFile.clear();
    stChoice.stOptions.nBlockSize = 0;
    stChoice.stOptions.strPixelFormat = stKind.pFormat;
    stChoice.stOptions.eMode = stKind.eMode;
    listChoices.push_back(stChoice);
  }
  listChoices.push_back({Translate("Recorded frames..."), stOptions, true});
  return listChoices;
}
