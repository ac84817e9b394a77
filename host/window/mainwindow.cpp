#include "host/window/mainwindow.h"

#include <algorithm>
#include <utility>

#include <QApplication>
#include <QCloseEvent>
#include <QFileDialog>
#include <QMessageBox>
#include <QSettings>
#include <QSplitter>
#include <QTabWidget>

#include "camera/icameralink.h"
#include "camera/realcameras.h"
#include "host/dialogdriver/dialogdriver.h"
#include "host/viewer/blocksize.h"
#include "host/viewer/featuretext.h"
#include "host/viewer/settingsrescue.h"
#include "host/window/camerapanel.h"
#include "host/window/imageview.h"
#include "host/window/measurementguide.h"
#include "host/window/plotpanel.h"
#include "host/window/qualitypanel.h"
#include "host/window/reportsaving.h"
#include "host/window/scenepanel.h"
#include "host/window/statusline.h"

namespace ffc::host {
namespace {

constexpr int REFRESH_MS = 33;
constexpr int64_t STATUS_MS = 200;
constexpr int64_t PLOT_MS = 250;
constexpr int64_t SLOW_MS = 1000;
constexpr int64_t RECONNECT_MS = 5000; ///< each attempt holds the window for about a second
constexpr int64_t STALL_MS = 3000;     ///< beside two exposures

double GetExposureMs(CViewer &viewer)
{
  auto *pExposure = dynamic_cast<GenApi::IFloat *>(viewer.GetCamera().GetDeviceNodeMap()->GetNode("ExposureTime"));
  try {
    return pExposure == nullptr ? 0.0 : pExposure->GetValue() / 1000.0;
  } catch (const GenICam::GenericException &) {
    return 0.0;
  }
}

} // namespace

CMainWindow::CMainWindow(const SHostOptions &stOptions, CameraFactory fnOpenCamera)
  : m_stOptions(stOptions), m_fnOpenCamera(std::move(fnOpenCamera)), m_listChoices(ListCameraChoices(stOptions)),
    m_progress(this), m_pView(new CImageView(this)), m_pCameraPanel(new CCameraPanel(this)),
    m_pScenePanel(new CScenePanel(this)), m_pPlotPanel(new CPlotPanel(this)), m_pQualityPanel(new CQualityPanel(this)),
    m_pStatusLine(new CStatusLine(this))
{
  setObjectName(QStringLiteral("MainWindow"));
  MakeLayout();
  MakeActions();
  ConnectPanels();
  RestoreLayout();
  m_pCameraPanel->SetChoices(m_listChoices);
  m_progress.SetTotalQuery([this] { return GetAcquisitionTotal(); });
  m_clock.start();
  startTimer(REFRESH_MS);
}

CMainWindow::~CMainWindow()
{
  CloseCamera();
}

void CMainWindow::CloseCamera()
{
  m_pCameraPanel->SetViewer(nullptr);
  m_pScenePanel->SetScene(nullptr);
  m_pQualityPanel->Clear();
  m_pViewer.reset();
  m_pView->SetPicture(QImage());
  m_pFrame.reset();
  m_stCorrectedShape.reset();
  m_frameRate.Reset();
  m_strPluginError.clear();
  m_bByCamera = false;
  m_bStalled = false;
}

Result<> CMainWindow::OpenCamera(const SHostOptions &stOptions)
{
  CloseCamera();
  OpenedCamera opened = m_fnOpenCamera(stOptions);
  if (!opened) {
    m_pCameraPanel->ShowError(QString::fromStdString(opened.GetError()));
    return opened.GetFailure();
  }
  Adopt(std::move(opened).GetValue(), stOptions);
  return {};
}

void CMainWindow::Adopt(std::unique_ptr<ICamera> pCamera, const SHostOptions &stOptions)
{
  m_stCameraOptions = stOptions;
  Result<> result = SelectBlockSize(*pCamera, stOptions.nBlockSize);
  m_pViewer = std::make_unique<CViewer>(std::move(pCamera));
  m_pViewer->SetAcquisitionObserver(&m_progress);
  connect(m_pViewer.get(), &CViewer::SigStreamChanged, m_pCameraPanel, &CCameraPanel::Refresh);
  const Result<> plugin = m_pViewer->Open(stOptions);
  m_strPluginError = QString::fromStdString(plugin.GetError());
  m_pScenePanel->SetScene(m_pViewer->GetCamera().GetSceneControl());
  m_pCameraPanel->SetViewer(m_pViewer.get());
  setWindowTitle(QString::fromStdString(m_pViewer->GetCamera().GetDisplayName()));
  result = result ? m_pViewer->StartStream() : result;
  result = result ? plugin : result;
  m_pCameraPanel->ShowError(QString::fromStdString(result.GetError()));
  m_pCameraPanel->Refresh();
  m_nFrameMs = m_clock.elapsed();
}

void CMainWindow::SlotChoose(int nChoice)
{
  SCameraChoice &stChoice = m_listChoices[std::size_t(nChoice)];
  if (stChoice.bAsksFolder) {
    const QString strFolder = QFileDialog::getExistingDirectory(this, tr("Folder of recorded frames"));
    stChoice.stOptions.strReplayFolder = strFolder.toStdString();
    stChoice.stOptions.strPixelFormat.clear();
    if (strFolder.isEmpty()) {
      m_pCameraPanel->Select(m_nChoice);
      return;
    }
  }
  m_nChoice = nChoice;
  m_pCameraPanel->Select(nChoice);
  const Result<> opened = OpenCamera(stChoice.stOptions);
  if (!opened) {
    Complain(opened.GetFailure());
  }
}

void CMainWindow::SlotLookForCameras()
{
  QApplication::setOverrideCursor(Qt::WaitCursor);
  const std::vector<SRealCameraInfo> listCameras = ListRealCameras();
  QApplication::restoreOverrideCursor();
  const SHostOptions stOptions = m_listChoices[std::size_t(m_nChoice)].stOptions;
  m_listChoices = ListCameraChoices(m_stOptions, listCameras);
  const auto it = std::find_if(m_listChoices.begin(), m_listChoices.end(), [&](const SCameraChoice &stChoice) {
    return !stChoice.bAsksFolder && stChoice.stOptions.strCameraId == stOptions.strCameraId &&
           stChoice.stOptions.strReplayFolder == stOptions.strReplayFolder &&
           stChoice.stOptions.strPixelFormat == stOptions.strPixelFormat && stChoice.stOptions.eMode == stOptions.eMode;
  });
  m_nChoice = it == m_listChoices.end() ? 0 : int(it - m_listChoices.begin());
  m_pCameraPanel->SetChoices(m_listChoices);
  m_pCameraPanel->Select(m_nChoice);
  if (listCameras.empty()) {
    m_pCameraPanel->ShowError(AreRealCamerasSupported() ? tr("No real camera answers.")
                                                        : tr("This program was built without real cameras."));
  }
}

void CMainWindow::SlotRestoreSettings()
{
  if (m_bBusy || m_pViewer == nullptr || m_progress.IsAcquiring()) {
    return;
  }
  const bool bStreaming = m_pViewer->GetCamera().IsStreaming();
  m_pViewer->StopStream();
  CSettingsRescue rescue(*m_pViewer->GetCamera().GetDeviceNodeMap());
  const Result<QStringList> restored = rescue.Restore();
  const Result<> started = bStreaming ? m_pViewer->StartStream() : Result<>();
  m_pCameraPanel->Refresh();
  if (!restored || !started) {
    Complain(restored ? started.GetFailure() : restored.GetFailure());
    return;
  }
  const QStringList &listChanges = restored.GetValue();
  Say(listChanges.isEmpty() ? tr("The camera has the settings of UserSet0 already.")
                            : tr("The camera has the settings of UserSet0 again:\n%1").arg(listChanges.join('\n')));
}

void CMainWindow::SlotStartStop()
{
  if (m_pViewer == nullptr) {
    return;
  }
  if (m_pViewer->GetCamera().IsStreaming()) {
    m_pViewer->StopStream();
  } else {
    m_nFrameMs = m_clock.elapsed();
    m_pCameraPanel->ShowError(QString::fromStdString(m_pViewer->StartStream().GetError()));
  }
  m_pCameraPanel->Refresh();
}

void CMainWindow::SlotShowDialog()
{
  if (m_pViewer != nullptr) {
    m_pViewer->ShowDialog();
  }
}

void CMainWindow::timerEvent(QTimerEvent *)
{
  if (m_pViewer == nullptr) {
    return;
  }
  TakeFrame();
  const int64_t nNow = m_clock.elapsed();
  if (nNow - m_nStatusMs >= STATUS_MS) {
    m_nStatusMs = nNow;
    UpdateStatus();
  }
  if (nNow - m_nSlowMs >= SLOW_MS && !m_progress.IsAcquiring()) {
    m_nSlowMs = nNow;
    UpdateSlowly();
  }
}

void CMainWindow::TakeFrame()
{
  // A frame that an analysis still reads stays as it is.
  auto pFrame = m_pFrame != nullptr && m_pFrame.use_count() == 1 ? m_pFrame : std::make_shared<SFrameCopy>();
  if (!m_pViewer->GetPipeline().TakeLatest(*pFrame)) {
    return;
  }
  const bool bFirst = m_pFrame == nullptr;
  m_pFrame = std::move(pFrame);
  m_nFrameMs = m_clock.elapsed();
  if (m_pFrame->bCorrected) {
    m_stCorrectedShape = SFrameShape{m_pFrame->nWidth, m_pFrame->nHeight, m_pFrame->nPixelFormat};
  }
  ShowPicture();
  if (bFirst || m_nFrameMs - m_nPlotMs >= PLOT_MS) {
    m_nPlotMs = m_pPlotPanel->Offer(m_pFrame) ? m_nFrameMs : m_nPlotMs;
  }
}

void CMainWindow::ShowPicture()
{
  if (m_pFrame != nullptr) {
    m_pView->SetPicture(MakeDisplayPicture(*m_pFrame, m_stDisplay));
    m_pStatusLine->ShowPixel(GetPixelText(*m_pFrame, m_pView->GetPixel().x(), m_pView->GetPixel().y()));
  }
}

void CMainWindow::UpdateStatus()
{
  const SFrameCounts stCounts = m_pViewer->GetPipeline().GetCounts();
  m_pStatusLine->ShowCounts(stCounts);
  m_pStatusLine->ShowRate(m_frameRate.Update(stCounts.nReceived, m_clock.elapsed()));
  SCorrectionFacts stFacts;
  stFacts.bLost = IsCameraLost();
  stFacts.bHasFrame = m_pFrame != nullptr;
  stFacts.strPluginError = m_strPluginError;
  stFacts.bAcquiring = m_progress.IsAcquiring();
  stFacts.bWithheld = m_progress.IsCancelled();
  stFacts.bPreview = IsPreviewOn();
  stFacts.bByCamera = m_bByCamera;
  stFacts.stCorrectedShape = m_stCorrectedShape;
  if (m_pFrame != nullptr) {
    stFacts.bCorrected = m_pFrame->bCorrected;
    stFacts.nStatus = m_pFrame->nStatus;
    stFacts.strStatusText = m_pFrame->nStatus == 0 ? QString() : m_pViewer->GetStatusText(m_pFrame->nStatus);
    stFacts.stShape = {m_pFrame->nWidth, m_pFrame->nHeight, m_pFrame->nPixelFormat};
    m_pStatusLine->ShowShape(stFacts.stShape.GetText(), m_pView->GetTransform().GetScale());
  }
  m_pStatusLine->ShowCorrection(JudgeCorrection(stFacts));
}

bool CMainWindow::IsCameraLost()
{
  ICameraLink *pLink = m_pViewer->GetCamera().GetLink();
  return pLink != nullptr && pLink->IsLost();
}

/// Opens a lost camera again when it answers. While something waits for the user's answer, nothing is taken from
/// under it.
void CMainWindow::Reconnect()
{
  m_pCameraPanel->ShowError(tr("The camera is lost. It is opened again as soon as it answers."));
  const int64_t nNow = m_clock.elapsed();
  const bool bAskedJustNow = m_nReconnectMs > 0 && nNow - m_nReconnectMs < RECONNECT_MS;
  if (m_bBusy || QApplication::activeModalWidget() != nullptr || bAskedJustNow) {
    return;
  }
  OpenedCamera opened = m_fnOpenCamera(m_stCameraOptions);
  m_nReconnectMs = std::max<int64_t>(m_clock.elapsed(), 1);
  if (opened) {
    CloseCamera();
    Adopt(std::move(opened).GetValue(), m_stCameraOptions);
  }
}

void CMainWindow::UpdateSlowly()
{
  if (IsCameraLost()) {
    Reconnect();
    return;
  }
  m_bByCamera = ReadFeature(*m_pViewer->GetCamera().GetDeviceNodeMap(), CORRECTION_FEATURE) == "On";
  m_pCameraPanel->Refresh();
  m_pScenePanel->Refresh();
  const int64_t nSilent = m_clock.elapsed() - m_nFrameMs;
  const bool bStalled =
    m_pViewer->GetCamera().IsStreaming() && double(nSilent) > double(STALL_MS) + 2 * GetExposureMs(*m_pViewer);
  if (bStalled) {
    m_pCameraPanel->ShowError(tr("No frame for %1 s: the camera is lost, or waits for a trigger.").arg(nSilent / 1000));
  } else if (m_bStalled) {
    m_pCameraPanel->ShowError(QString());
  }
  m_bStalled = bStalled;
}

/// Whether the plug-in was told to correct on the host. Its dialog shows that; hidden, it says so itself.
bool CMainWindow::IsPreviewOn() const
{
  if (QDialog *pDialog = CDialogDriver::FindDialog()) {
    return CDialogDriver(*pDialog).IsPreviewOn();
  }
  return m_pViewer->IsPluginInUse();
}

uint32_t CMainWindow::GetAcquisitionTotal() const
{
  QDialog *pDialog = CDialogDriver::FindAnyDialog();
  if (pDialog == nullptr) {
    return 0;
  }
  const CDialogDriver driver(*pDialog);
  return driver.IsAcquiringBright() ? uint32_t(driver.GetFrameCount()) : 1;
}

void CMainWindow::SetBusy(bool bBusy)
{
  m_bBusy = bBusy;
  m_pControls->setEnabled(!bBusy);
  m_pQualityPanel->SetBusy(bBusy);
}

void CMainWindow::Complain(const Failure &failure)
{
  ShowBox(QMessageBox::Warning, QString::fromStdString(failure.GetText()));
}

void CMainWindow::Say(const QString &strText)
{
  ShowBox(QMessageBox::Information, strText);
}

void CMainWindow::ShowBox(int nIcon, const QString &strText)
{
  QMessageBox box(QMessageBox::Icon(nIcon), tr("Flat field"), strText, QMessageBox::NoButton, this);
  box.setObjectName(QStringLiteral("Complaint"));
  box.addButton(tr("&OK"), QMessageBox::AcceptRole);
  box.exec();
}

void CMainWindow::SlotMeasure()
{
  if (m_bBusy || m_pViewer == nullptr) {
    return;
  }
  SetBusy(true);
  Result<CMeasurement::QualityResult> measured = [this] {
    CMeasurementGuide guide(*m_pScenePanel, this);
    return CMeasurement(*m_pViewer, guide).Measure();
  }();
  SetBusy(false);
  if (!measured) {
    Complain(measured.GetFailure());
  } else if (measured.GetValue() != nullptr) {
    m_pQualityPanel->ShowResult(measured.GetValue());
    m_pTabs->setCurrentWidget(m_pQualityPanel);
  }
}

void CMainWindow::SlotCheckDrift()
{
  if (m_bBusy || m_pViewer == nullptr) {
    return;
  }
  SetBusy(true);
  const Result<std::optional<double>> measured = [this] {
    CMeasurementGuide guide(*m_pScenePanel, this);
    return CMeasurement(*m_pViewer, guide).MeasureDrift();
  }();
  SetBusy(false);
  if (!measured) {
    Complain(measured.GetFailure());
  } else if (measured.GetValue()) {
    m_pQualityPanel->ShowDrift(*measured.GetValue());
    m_pTabs->setCurrentWidget(m_pQualityPanel);
  }
}

void CMainWindow::SlotSaveReport()
{
  if (m_bBusy || m_pQualityPanel->GetResult() == nullptr) {
    return;
  }
  const QString strPath = AskReportPath(this);
  if (strPath.isEmpty()) {
    return;
  }
  SetBusy(true);
  const Result<> saved = SaveReport(strPath, m_pQualityPanel->GetResult(), m_pQualityPanel->GetLimit(), this);
  SetBusy(false);
  if (!saved) {
    Complain(saved.GetFailure());
  }
}

void CMainWindow::closeEvent(QCloseEvent *pEvent)
{
  if (m_bBusy || m_progress.IsAcquiring()) {
    pEvent->ignore(); // the box in front can be cancelled
    return;
  }
  SaveLayout();
  QMainWindow::closeEvent(pEvent);
  // The plug-in's dialog too: the program ends with its last window.
  QApplication::closeAllWindows();
}

} // namespace ffc::host
