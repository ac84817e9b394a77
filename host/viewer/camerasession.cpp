#include "host/viewer/camerasession.h"

#include <algorithm>
#include <utility>

#include <QScopedValueRollback>

#include "camera/icameralink.h"
#include "host/viewer/blocksize.h"
#include "host/viewer/cameratexts.h"
#include "host/viewer/settingsrescue.h"

namespace ffc::host {

using camera::ICamera;
using camera::ICameraLink;

namespace {

constexpr int64_t REOPEN_MS = 2000; ///< each attempt takes about a second
constexpr int64_t STALL_MS = 3000;  ///< beside two exposures
constexpr int64_t UNUSABLE_MS = 500;
const char *const EXPOSURE = "ExposureTime";

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

void CCameraSession::Forget()
{
  ++m_nEpoch;
  m_strPluginError.clear();
  m_bStalled = false;
  m_nReadMs = 0;
  m_dExposureMs = 0;
}

void CCameraSession::Close()
{
  emit SigClosing();
  m_worker.Finish(); // it may be reading the camera
  m_pViewer.reset();
  m_pFound.reset();
  Forget();
}

/// Only what the plug-in does keeps the caller waiting. Whoever is the first to access a camera that was unplugged
/// waits until the library gives up: that is the worker.
void CCameraSession::CloseLive()
{
  if (m_pViewer != nullptr) {
    m_worker.RunLive([this] { m_pViewer->StopStream(); });
  }
  emit SigClosing();
  if (m_pViewer != nullptr) {
    Destroy(m_pViewer->Dismantle());
    m_pViewer.reset();
  }
  Destroy(std::move(m_pFound));
  Forget();
}

void CCameraSession::Destroy(Camera pCamera)
{
  if (pCamera != nullptr) {
    m_worker.Post([pShared = std::shared_ptr<ICamera>(std::move(pCamera))]() mutable {
      pShared.reset();
      return nullptr;
    });
  }
}

Result<> CCameraSession::Open(const SSetup &stSetup)
{
  const QScopedValueRollback switching(m_bSwitching, true);
  CloseLive();
  Result<Camera> opened = Failure("There is not enough memory for the camera.");
  m_worker.RunLive([&] { opened = stSetup.fnOpenCamera(); });
  if (!opened) {
    emit SigError(QString::fromStdString(opened.GetError()));
    return opened.GetFailure();
  }
  m_stSetup = stSetup;
  m_stSetup.listWatched.emplace_back(EXPOSURE);
  Adopt(std::move(opened).GetValue());
  return {};
}

void CCameraSession::Adopt(Camera pCamera)
{
  Result<> blockSize = SelectBlockSize(*pCamera, m_stSetup.nBlockSize);
  m_pViewer = std::make_unique<CViewer>(std::move(pCamera));
  m_pViewer->SetAcquisitionObserver(m_pObserver);
  m_pViewer->SetDialogParent(m_stSetup.pWindow);
  connect(m_pViewer.get(), &CViewer::SigStreamChanged, this, &CCameraSession::SigChanged);
  Result<> plugin = m_pViewer->Open(m_stSetup.strModule, m_stSetup.eLanguage);
  m_strPluginError = GetText(plugin);
  emit SigOpened();
  const Result<> result =
    RunUntilFailure([&] { return blockSize; }, [this] { return StartLive(); }, [&] { return plugin; });
  emit SigError(GetText(result));
  emit SigChanged();
  NoteFrame();
  m_nUnusable = 0;
}

/// The packet size may have to be found out first.
Result<> CCameraSession::StartLive()
{
  m_worker.RunLive([this] { (void)m_pViewer->StartStream(); });
  return m_pViewer->GetStreamState();
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
    const QScopedValueRollback switching(m_bSwitching, true);
    NoteFrame();
    emit SigError(GetText(StartLive()));
  }
  NoteWritten();
  emit SigChanged();
}

Result<QStringList> CCameraSession::RestoreSettings()
{
  const bool bStreaming = m_pViewer->GetCamera().IsStreaming();
  m_pViewer->StopStream();
  Result<QStringList> restored = CSettingsRescue(*m_pViewer->GetCamera().GetDeviceNodeMap()).Restore();
  const Result<> started = bStreaming ? m_pViewer->StartStream() : Result<>();
  NoteWritten();
  emit SigChanged();
  return restored && !started ? started.GetFailure() : restored;
}

bool CCameraSession::Watch(bool bMayReopen)
{
  if (m_bSwitching || m_pViewer == nullptr) {
    return false;
  }
  if (IsLost()) {
    Reopen(bMayReopen);
    return false;
  }
  ReadWatched();
  CheckStall();
  return true;
}

void CCameraSession::Reopen(bool bMayReopen)
{
  emit SigError(tr("The camera is lost. It is opened again as soon as it answers."));
  if (!bMayReopen) {
    return;
  }
  if (m_pFound != nullptr) {
    const QScopedValueRollback switching(m_bSwitching, true);
    Camera pFound = std::move(m_pFound);
    CloseLive();
    Adopt(std::move(pFound));
    return;
  }
  const bool bAskedJustNow = m_nReopenedMs > 0 && m_clock.elapsed() - m_nReopenedMs < REOPEN_MS;
  if (!m_bLooking && !bAskedJustNow) {
    LookForLost();
  }
}

void CCameraSession::LookForLost()
{
  m_bLooking = true;
  m_worker.Post([this, fnOpenCamera = m_stSetup.fnOpenCamera, nEpoch = m_nEpoch]() -> std::function<void()> {
    Result<Camera> opened = fnOpenCamera();
    auto pShared = std::make_shared<Camera>(opened ? std::move(opened).GetValue() : nullptr);
    return [this, pShared, nEpoch] {
      m_bLooking = false;
      m_nReopenedMs = std::max<int64_t>(m_clock.elapsed(), 1);
      if (nEpoch == m_nEpoch) {
        m_pFound = std::move(*pShared);
      } else {
        Destroy(std::move(*pShared));
      }
    };
  });
}

/// At most one reading at a time: a camera that does not answer gets no further questions.
void CCameraSession::ReadWatched()
{
  if (std::exchange(m_bReading, true)) {
    return;
  }
  m_worker.Post([this, &map = *m_pViewer->GetCamera().GetDeviceNodeMap(), listWatched = m_stSetup.listWatched,
                 nEpoch = m_nEpoch, nBegunMs = m_clock.elapsed()]() -> std::function<void()> {
    CFeatureStates mapStates;
    for (const std::string &strName : listWatched) {
      mapStates[strName] = ReadFeatureState(map, strName);
    }
    return [this, mapStates = std::move(mapStates), nEpoch, nBegunMs] {
      m_bReading = false;
      if (nEpoch == m_nEpoch && !m_bSwitching && !IsLost()) {
        TakeStates(mapStates, nBegunMs);
      }
    };
  });
}

void CCameraSession::TakeStates(const CFeatureStates &mapStates, int64_t nBegunMs)
{
  m_nReadMs = nBegunMs;
  const auto itExposure = mapStates.find(EXPOSURE);
  m_dExposureMs = itExposure == mapStates.end() ? 0.0 : itExposure->second.dValue / 1000.0;
  emit SigRead(mapStates);
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
  // A camera that has ceased to answer too is lost, which is known soon, and is not asked for its triggers.
  const bool bAnswers = m_nReadMs > m_nFrameMs + UNUSABLE_MS;
  const bool bStalled = m_pViewer->GetCamera().IsStreaming() && bAnswers &&
                        static_cast<double>(nSilent) > static_cast<double>(STALL_MS) + 2 * m_dExposureMs;
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
