#include "host/viewer/camerasession.h"

#include <algorithm>
#include <utility>

#include "camera/icameralink.h"
#include "host/viewer/blocksize.h"
#include "host/viewer/cameratexts.h"
#include "host/viewer/settingsrescue.h"

namespace ffc::host {

using camera::ICamera;
using camera::ICameraLink;

namespace {

constexpr int64_t REOPEN_MS = 5000; ///< each attempt holds the caller for about a second
constexpr int64_t STALL_MS = 3000;  ///< beside two exposures
constexpr int64_t UNUSABLE_MS = 500;

double GetExposureMs(CViewer &viewer)
{
  auto *pExposure = dynamic_cast<GenApi::IFloat *>(viewer.GetCamera().GetDeviceNodeMap()->GetNode("ExposureTime"));
  try {
    return pExposure == nullptr ? 0.0 : pExposure->GetValue() / 1000.0;
  } catch (const GenICam::GenericException &) {
    return 0.0;
  }
}

QString GetText(const Result<> &result)
{
  return QString::fromStdString(result.GetError());
}

} // namespace

CCameraSession::CCameraSession(IAcquisitionObserver *pObserver, QObject *pParent)
  : QObject(pParent), m_pObserver(pObserver)
{
  m_clock.start();
}

CCameraSession::~CCameraSession() = default;

void CCameraSession::Close()
{
  emit SigClosing();
  m_pViewer.reset();
  m_strPluginError.clear();
  m_bStalled = false;
}

Result<> CCameraSession::Open(const SSetup &stSetup)
{
  Close();
  Result<std::unique_ptr<ICamera>> opened = stSetup.fnOpenCamera();
  if (!opened) {
    emit SigError(QString::fromStdString(opened.GetError()));
    return opened.GetFailure();
  }
  m_stSetup = stSetup;
  Adopt(std::move(opened).GetValue());
  return {};
}

void CCameraSession::Adopt(std::unique_ptr<ICamera> pCamera)
{
  const Result<> blockSize = SelectBlockSize(*pCamera, m_stSetup.nBlockSize);
  m_pViewer = std::make_unique<CViewer>(std::move(pCamera));
  m_pViewer->SetAcquisitionObserver(m_pObserver);
  m_pViewer->SetDialogParent(m_stSetup.pWindow);
  connect(m_pViewer.get(), &CViewer::SigStreamChanged, this, &CCameraSession::SigChanged);
  const Result<> plugin = m_pViewer->Open(m_stSetup.strModule, m_stSetup.eLanguage);
  m_strPluginError = GetText(plugin);
  emit SigOpened();
  const Result<> result =
    RunUntilFailure([&] { return blockSize; }, [this] { return m_pViewer->StartStream(); }, [&] { return plugin; });
  emit SigError(GetText(result));
  emit SigChanged();
  NoteFrame();
  m_nUnusable = 0;
}

bool CCameraSession::IsLost()
{
  ICameraLink *pLink = m_pViewer == nullptr ? nullptr : m_pViewer->GetCamera().GetLink();
  return pLink != nullptr && pLink->IsLost();
}

void CCameraSession::StartOrStop()
{
  if (m_pViewer->GetCamera().IsStreaming()) {
    m_pViewer->StopStream();
  } else {
    NoteFrame();
    emit SigError(GetText(m_pViewer->StartStream()));
  }
  emit SigChanged();
}

Result<QStringList> CCameraSession::RestoreSettings()
{
  const bool bStreaming = m_pViewer->GetCamera().IsStreaming();
  m_pViewer->StopStream();
  Result<QStringList> restored = CSettingsRescue(*m_pViewer->GetCamera().GetDeviceNodeMap()).Restore();
  const Result<> started = bStreaming ? m_pViewer->StartStream() : Result<>();
  emit SigChanged();
  return restored && !started ? started.GetFailure() : restored;
}

bool CCameraSession::Watch(bool bMayReopen)
{
  if (IsLost()) {
    Reopen(bMayReopen);
    return false;
  }
  CheckStall();
  return true;
}

void CCameraSession::Reopen(bool bMayReopen)
{
  emit SigError(tr("The camera is lost. It is opened again as soon as it answers."));
  const int64_t nNow = m_clock.elapsed();
  const bool bAskedJustNow = m_nReopenedMs > 0 && nNow - m_nReopenedMs < REOPEN_MS;
  if (!bMayReopen || bAskedJustNow) {
    return;
  }
  Result<std::unique_ptr<ICamera>> opened = m_stSetup.fnOpenCamera();
  m_nReopenedMs = std::max<int64_t>(m_clock.elapsed(), 1);
  if (opened) {
    Close();
    Adopt(std::move(opened).GetValue());
  }
}

void CCameraSession::CheckStall()
{
  const int64_t nSilent = m_clock.elapsed() - m_nFrameMs;
  const ICameraLink *pLink = m_pViewer->GetCamera().GetLink();
  const uint64_t nUnusable = pLink == nullptr ? 0 : pLink->GetLosses().nUnusable;
  if (nUnusable > std::exchange(m_nUnusable, nUnusable) && nSilent > UNUSABLE_MS) {
    m_bStalled = true;
    emit SigError(tr("The camera sends frames that cannot be received: choose another pixel format."));
    return;
  }
  const bool bStalled = m_pViewer->GetCamera().IsStreaming() &&
                        static_cast<double>(nSilent) > static_cast<double>(STALL_MS) + 2 * GetExposureMs(*m_pViewer);
  if (bStalled) {
    m_strTriggers = m_bStalled ? m_strTriggers : DescribeTriggers(m_pViewer->GetCamera());
    emit SigError(
      m_strTriggers.isEmpty()
        ? tr("No frame for %1 s, though no trigger is on: the camera is lost, or sends nothing.").arg(nSilent / 1000)
        : tr("No frame for %1 s: the camera waits for its trigger. On are: %2.")
            .arg(nSilent / 1000)
            .arg(m_strTriggers));
  } else if (m_bStalled) {
    emit SigError(QString());
  }
  m_bStalled = bStalled;
}

} // namespace ffc::host
