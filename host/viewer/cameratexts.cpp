#include "host/viewer/cameratexts.h"

#include <QCoreApplication>

#include "camera/activetriggers.h"

namespace ffc::host {
namespace {

QString Translate(const char *pText)
{
  return QCoreApplication::translate("CameraTexts", pText);
}

QString DescribeNote(const camera::SFeatureNote &stNote)
{
  const QString strFeature = QString::fromStdString(stNote.strFeature);
  const QString strSource = QString::fromStdString(stNote.strSource);
  switch (stNote.eKind) {
  case camera::SFeatureNote::EKind::Aliased: return Translate("%1 is the camera's %2.").arg(strFeature, strSource);
  case camera::SFeatureNote::EKind::Supplied:
    return Translate("%1 is always %2: the camera has none.").arg(strFeature, strSource);
  case camera::SFeatureNote::EKind::Hidden:
    return Translate("%1 is kept from the plug-in: %2.").arg(strFeature, strSource);
  case camera::SFeatureNote::EKind::Guessed: return Translate("%1 is guessed. %2").arg(strFeature, strSource);
  default: return Translate("%1 is missing, so that no flat field can be taken: %2.").arg(strFeature, strSource);
  }
}

} // namespace

QStringList DescribeFeatureNotes(const std::vector<camera::SFeatureNote> &listNotes)
{
  QStringList listTexts;
  for (const camera::SFeatureNote &stNote : listNotes) {
    listTexts << DescribeNote(stNote);
  }
  return listTexts;
}

QString DescribeTriggers(camera::ICamera &camera)
{
  QStringList listTexts;
  for (const camera::SActiveTrigger &stTrigger : camera::ListActiveTriggers(*camera.GetDeviceNodeMap())) {
    const QString strSelector =
      stTrigger.strSelector.empty() ? QStringLiteral("TriggerMode") : QString::fromStdString(stTrigger.strSelector);
    listTexts << (stTrigger.strSource.empty()
                    ? strSelector
                    : QStringLiteral("%1 (%2)").arg(strSelector, QString::fromStdString(stTrigger.strSource)));
  }
  return listTexts.join(QStringLiteral(", "));
}

QString DescribeLosses(const camera::SFrameLosses &stLosses)
{
  QStringList listReasons;
  const std::pair<uint64_t, const char *> REASONS[] = {
    {stLosses.nIncomplete, QT_TRANSLATE_NOOP("CameraTexts", "%1 incomplete")},
    {stLosses.nNeverSeen, QT_TRANSLATE_NOOP("CameraTexts", "%1 never seen")},
    {stLosses.nWithoutRoom, QT_TRANSLATE_NOOP("CameraTexts", "%1 without a free buffer")},
    {stLosses.nOverwritten, QT_TRANSLATE_NOOP("CameraTexts", "%1 given up for newer ones")},
    {stLosses.nUnusable, QT_TRANSLATE_NOOP("CameraTexts", "%1 in a format that cannot be received")},
    {stLosses.nMissingPackets, QT_TRANSLATE_NOOP("CameraTexts", "%1 packets missing")},
    {stLosses.nResentPackets, QT_TRANSLATE_NOOP("CameraTexts", "%1 packets sent again")},
  };
  for (const auto &[nCount, pText] : REASONS) {
    if (nCount > 0) {
      listReasons << Translate(pText).arg(nCount);
    }
  }
  return listReasons.isEmpty()
           ? QString()
           : Translate("Frames lost: %1 (%2)").arg(stLosses.GetFrames()).arg(listReasons.join(QStringLiteral(", ")));
}

} // namespace ffc::host
