// How the main window finds an exposure.

#include "host/window/mainwindow.h"

#include <GenApi/GenApi.h>

#include "host/window/camerapanel.h"
#include "host/window/frameinspection.h"

namespace ffc::host {
namespace {

constexpr const char *EXPOSURE = "ExposureTime";

/// Null where the camera has none that can be written now.
GenApi::IFloat *FindExposure(GenApi::INodeMap &map)
{
  GenApi::INode *pNode = map.GetNode(EXPOSURE);
  return GenApi::IsWritable(pNode) ? dynamic_cast<GenApi::IFloat *>(pNode) : nullptr;
}

} // namespace

void CMainWindow::SlotExpose()
{
  if (!IsFree()) {
    return;
  }
  if (!GetViewer()->GetCamera().IsStreaming()) {
    m_pCameraPanel->ShowError(tr("Start the camera first: the exposure is found from its frames."));
  } else if (FindExposure(*GetViewer()->GetCamera().GetDeviceNodeMap()) == nullptr) {
    m_pCameraPanel->ShowError(tr("The exposure time cannot be changed: switch the camera's own exposure control off."));
  } else {
    m_pCameraPanel->ShowError(QString());
    m_exposure.Begin();
  }
}

void CMainWindow::ContinueExposure()
{
  if (!m_exposure.IsRunning() || m_progress.IsAcquiring()) {
    return;
  }
  GenApi::IFloat *pExposure = FindExposure(*GetViewer()->GetCamera().GetDeviceNodeMap());
  if (pExposure == nullptr) {
    m_exposure.Cancel();
    return;
  }
  try {
    const CExposureHelper::SStep stStep =
      m_exposure.Look(GetSamples(*m_pFrame), pExposure->GetValue(), pExposure->GetMin(), pExposure->GetMax());
    if (stStep.eOutcome == CExposureHelper::EOutcome::Write) {
      pExposure->SetValue(stStep.dExposure);
    }
    if (const QString strError = DescribeExposure(stStep); !strError.isEmpty()) {
      m_pCameraPanel->ShowError(strError);
    }
  } catch (const GenICam::GenericException &exception) {
    m_exposure.Cancel();
    m_pCameraPanel->ShowError(
      tr("The exposure time cannot be set: %1").arg(QString::fromUtf8(exception.GetDescription())));
  }
  m_pCameraPanel->Refresh();
}

QString CMainWindow::DescribeExposure(const CExposureHelper::SStep &stStep)
{
  const QString strLevel = QString::number(stStep.dLevel, 'f', 0);
  switch (stStep.eOutcome) {
  case CExposureHelper::EOutcome::TooDark:
    return tr("The longest exposure reaches %1 % only: add light, or raise the gain.").arg(strLevel);
  case CExposureHelper::EOutcome::TooBright:
    return tr("The shortest exposure still gives %1 %: take light away, or lower the gain.").arg(strLevel);
  case CExposureHelper::EOutcome::Unsteady:
    return tr("The image does not become steady, it is at %1 %: look whether the light changes, then try again.")
      .arg(strLevel);
  case CExposureHelper::EOutcome::NoFigures:
    return tr("Frames of this pixel format cannot be judged: choose a mono or Bayer format that is not packed.");
  default: return {};
  }
}

} // namespace ffc::host
