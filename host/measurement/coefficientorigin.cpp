#include "host/measurement/coefficientorigin.h"

#include <algorithm>
#include <functional>
#include <limits>
#include <string_view>
#include <utility>

#include <QCoreApplication>

#include "host/dialogdriver/dialogdriver.h"

namespace ffc::host {
namespace {

using EKind = SCoefficientOrigin::EKind;

QString Translate(const char *pText)
{
  return QCoreApplication::translate("CoefficientOrigin", pText);
}

} // namespace

CDifferentFrames::CDifferentFrames(CFramePipeline &pipeline) : m_pipeline(pipeline)
{
  pipeline.Request(std::numeric_limits<uint32_t>::max(), CFramePipeline::EWanted::Any,
                   [this](const SProcessedFrame &stFrame) {
                     const char *pBytes = static_cast<const char *>(stFrame.pRaw->pBuffer);
                     m_setSeen.insert(std::hash<std::string_view>()({pBytes, stFrame.pRaw->nSize}));
                   });
}

CDifferentFrames::~CDifferentFrames()
{
  m_pipeline.CancelRequest();
}

CDifferentFrames::Seen CDifferentFrames::Stop()
{
  m_pipeline.CancelRequest();
  return std::move(m_setSeen);
}

QStringList SCoefficientOrigin::GetNotes() const
{
  QStringList listNotes;
  if (eKind == EKind::File) {
    listNotes << Translate("The coefficients come from the file %1").arg(strFile);
  }
  if (eKind == EKind::Flash) {
    listNotes << Translate("The coefficients come from the camera's flash");
  }
  if (nFrames == 0) {
    listNotes << Translate("How many frames the coefficients were made of is not known");
  } else if (IsRepeated()) {
    listNotes << Translate(
                   "The coefficients come from %1 different bright frames, although %2 were asked for: the camera "
                   "repeats itself")
                   .arg(nFrames)
                   .arg(nAskedFrames);
  }
  return listNotes;
}

void CCoefficientWatch::BeginAcquisition(CFramePipeline &pipeline)
{
  EndAcquisition(); // before the next one asks for frames
  m_pFrames = std::make_unique<CDifferentFrames>(pipeline);
}

void CCoefficientWatch::EndAcquisition()
{
  if (m_pFrames != nullptr) {
    m_setSeen.merge(m_pFrames->Stop());
    m_pFrames.reset();
  }
}

void CCoefficientWatch::Note(const SDialogOutcome &stOutcome, const CDialogDriver &driver, bool bByCamera)
{
  EndAcquisition();
  if (stOutcome.strError.isEmpty()) {
    NoteDone(stOutcome, driver, bByCamera);
  }
  m_setSeen.clear();
}

void CCoefficientWatch::NoteDone(const SDialogOutcome &stOutcome, const CDialogDriver &driver, bool bByCamera)
{
  switch (stOutcome.eAction) {
  case EDialogAction::AcquireBright: NoteBright(driver); break;
  case EDialogAction::Execute:
    m_stOrigin = m_stBright;
    m_stOrigin.nExpectGray = driver.GetExpectGray();
    break;
  case EDialogAction::LoadFlash: NoteLoaded(EKind::Flash, QString(), driver, bByCamera); break;
  case EDialogAction::LoadFile:
    if (!stOutcome.strFile.isEmpty()) {
      NoteLoaded(EKind::File, stOutcome.strFile, driver, bByCamera);
    }
    break;
  default: break;
  }
}

void CCoefficientWatch::NoteBright(const CDialogDriver &driver)
{
  m_stBright = SCoefficientOrigin();
  m_stBright.eKind = EKind::Acquired;
  m_stBright.nAskedFrames = driver.GetFrameCount();
  m_stBright.nFrames = std::min(m_stBright.nAskedFrames, static_cast<int>(m_setSeen.size()));
}

void CCoefficientWatch::NoteLoaded(EKind eKind, const QString &strFile, const CDialogDriver &driver, bool bByCamera)
{
  m_stOrigin = SCoefficientOrigin();
  m_stOrigin.eKind = eKind;
  m_stOrigin.strFile = strFile;
  if (bByCamera) {
    m_stOrigin.nAskedFrames = m_stOrigin.nFrames = driver.GetFrameCount();
    m_stOrigin.nExpectGray = driver.GetExpectGray();
  }
}

} // namespace ffc::host
