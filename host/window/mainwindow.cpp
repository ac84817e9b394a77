#include "host/window/mainwindow.h"

#include <utility>

#include <QApplication>
#include <QCloseEvent>
#include <QDialog>
#include <QFileDialog>
#include <QLabel>
#include <QMessageBox>
#include <QSettings>
#include <QSplitter>
#include <QTabWidget>

#include "camera/icameralink.h"
#include "camera/iscenecontrol.h"
#include "camera/realcameras.h"
#include "host/dialogdriver/dialogdriver.h"
#include "host/viewer/cameratexts.h"
#include "host/viewer/errortexts.h"
#include "host/viewer/featuretext.h"
#include "host/window/camerapanel.h"
#include "host/window/displaypicture.h"
#include "host/window/imagearea.h"
#include "host/window/imageview.h"
#include "host/window/measurementguide.h"
#include "host/window/plotpanel.h"
#include "host/window/qualitypanel.h"
#include "host/window/recordingpanel.h"
#include "host/window/reportsaving.h"
#include "host/window/scenepanel.h"
#include "host/window/statusline.h"
#include "host/window/windowkeys.h"

namespace ffc::host {

using camera::AreRealCamerasSupported;
using camera::FindSceneControl;
using camera::ICameraLink;
using camera::ListRealCameras;
using camera::SRealCameraInfo;

namespace {

constexpr int REFRESH_MS = 33;
constexpr int QUALITY_TAB = 1;
constexpr int64_t STATUS_MS = 200;
constexpr int64_t PLOT_MS = 250;
constexpr int64_t SLOW_MS = 1000;

} // namespace

CMainWindow::CMainWindow(const SCameraOptions &stCamera, SPluginOptions stPlugin, CameraFactory fnOpenCamera)
  : m_stFirstCamera(stCamera), m_stPlugin(std::move(stPlugin)), m_fnOpenCamera(std::move(fnOpenCamera)),
    m_listChoices(ListCameraChoices(stCamera)), m_progress(this), m_dialogObserver(this), m_session(&m_progress, this),
    m_pCameraPanel(new CCameraPanel(this)), m_pScenePanel(new CScenePanel(this)),
    m_pRecordingPanel(new CRecordingPanel(this)), m_pImageArea(new CImageArea(this)), m_pView(&m_pImageArea->GetView()),
    m_pPlotPanel(new CPlotPanel(this)), m_pQualityPanel(new CQualityPanel(this)), m_pStatusLine(new CStatusLine(this)),
    m_pNote(new QLabel(this))
{
  setObjectName(QStringLiteral("MainWindow"));
  MakeLayout();
  MakeActions();
  new CWindowKeys(*this);
  ConnectPanels();
  ConnectSession();
  RestoreLayout();
  m_pCameraPanel->SetChoices(m_listChoices);
  m_progress.SetTotalQuery([this] { return GetAcquisitionTotal(); });
  m_clock.start();
  startTimer(REFRESH_MS);
}

CMainWindow::~CMainWindow()
{
  m_session.Close();
}

void CMainWindow::ConnectSession()
{
  connect(&m_session, &CCameraSession::SigOpened, this, &CMainWindow::ShowCamera);
  connect(&m_session, &CCameraSession::SigClosing, this, &CMainWindow::ForgetCamera);
  connect(&m_session, &CCameraSession::SigChanged, m_pCameraPanel, &CCameraPanel::Refresh);
  connect(&m_session, &CCameraSession::SigError, m_pCameraPanel, &CCameraPanel::ShowError);
  connect(&m_session, &CCameraSession::SigRead, this, &CMainWindow::ShowStates);
  connect(m_pCameraPanel, &CCameraPanel::SigWritten, &m_session, &CCameraSession::NoteWritten);
}

void CMainWindow::ShowStates(const CFeatureStates &mapStates)
{
  m_bByCamera = mapStates.at(CORRECTION_FEATURE).strText == QLatin1String("On");
  m_pCameraPanel->ShowStates(mapStates);
}

void CMainWindow::ForgetCamera()
{
  RememberCamera();
  m_strCameraGroup.clear();
  m_pCameraPanel->SetViewer(nullptr);
  m_pScenePanel->SetScene(nullptr);
  m_pQualityPanel->Clear();
  m_pFrame.reset();
  m_pImageArea->SetFrame(nullptr);
  m_pStatusLine->Clear();
  setWindowTitle(QString());
  m_exposure.Cancel();
  delete m_pFeatures;
  m_stCorrectedShape.reset();
  m_frameRate.Reset();
  m_bByCamera = false;
  m_bDialogPlaced = false;
  m_coefficients.Reset();
  m_acquired.Reset();
  m_bOtherFrames = false;
  OfferReference();
  ShowNote({});
}

void CMainWindow::ShowCamera()
{
  CViewer &viewer = *m_session.GetViewer();
  viewer.GetPipeline().KeepRaw(true);
  m_pScenePanel->SetScene(FindSceneControl(viewer.GetCamera()));
  m_pCameraPanel->SetViewer(&viewer, IsRecorded());
  RecallCamera();
  m_pRecordingPanel->ShowCamera(m_stOpenCamera, ReadFeature(*viewer.GetCamera().GetDeviceNodeMap(), "PixelFormat"));
  if (focusWidget() == nullptr) {
    findChild<QWidget *>(QStringLiteral("ExposureTime"))->setFocus(); // what one sets first
  }
  ObserveDialog();
  setWindowTitle(QString::fromStdString(viewer.GetCamera().GetDisplayName()));
}

void CMainWindow::ReplayAs(const QString &strPixelFormat, std::optional<frames::EAlignment> eAlignment)
{
  SCameraOptions &stKept = m_listChoices[static_cast<std::size_t>(m_nChoice)].stCamera;
  SCameraOptions stCamera = stKept;
  stCamera.strPixelFormat = strPixelFormat.toStdString();
  stCamera.eAlignment = eAlignment;
  const Result<> opened = OpenCamera(stCamera);
  if (opened) {
    stKept = stCamera;
    return;
  }
  (void)OpenCamera(stKept);
  ShowError(opened.GetFailure());
}

Result<> CMainWindow::OpenCamera(const SCameraOptions &stCamera)
{
  m_stOpenCamera = stCamera;
  std::vector<std::string> listWatched = m_pCameraPanel->GetFeatures();
  listWatched.emplace_back(CORRECTION_FEATURE);
  return m_session.Open({[fnOpen = m_fnOpenCamera, stCamera] { return fnOpen(stCamera); }, stCamera.nBlockSize,
                         QString::fromStdString(m_stPlugin.strModule),
                         m_stPlugin.bChinese ? ELanguage::Chinese : ELanguage::English, this, listWatched});
}

void CMainWindow::SlotChoose(int nChoice)
{
  SCameraChoice &stChoice = m_listChoices[static_cast<std::size_t>(nChoice)];
  if (stChoice.bAsksFolder) {
    const QString strFolder = QFileDialog::getExistingDirectory(this, tr("Folder of recorded frames"));
    if (strFolder.isEmpty()) {
      m_pCameraPanel->Select(m_nChoice);
      return;
    }
    stChoice.stCamera.strReplayFolder = strFolder.toStdString();
    stChoice.stCamera.strPixelFormat.clear();
    stChoice.stCamera.eAlignment.reset();
  }
  m_nChoice = nChoice;
  m_pCameraPanel->Select(nChoice);
  ShowIfFailed(OpenCamera(stChoice.stCamera));
}

void CMainWindow::SlotLookForCameras()
{
  QApplication::setOverrideCursor(Qt::WaitCursor);
  std::vector<SRealCameraInfo> listCameras;
  m_session.RunLive([&] { listCameras = ListRealCameras(); });
  QApplication::restoreOverrideCursor();
  const SCameraChoice stOpen = m_listChoices[static_cast<std::size_t>(m_nChoice)];
  m_listChoices = ListCameraChoices(m_stFirstCamera, listCameras);
  m_nChoice = KeepChoice(m_listChoices, stOpen);
  m_pCameraPanel->SetChoices(m_listChoices);
  m_pCameraPanel->Select(m_nChoice);
  if (listCameras.empty()) {
    m_pCameraPanel->ShowError(AreRealCamerasSupported() ? tr("No real camera answers.")
                                                        : tr("This program was built without real cameras."));
  }
}

void CMainWindow::SlotRestoreSettings()
{
  if (!IsFree()) {
    return;
  }
  const Result<QStringList> changes = m_session.RestoreSettings();
  if (ShowIfFailed(changes)) {
    return;
  }
  ShowMessage(changes.GetValue().isEmpty()
                ? tr("The camera has the settings of UserSet0 already.")
                : tr("The camera has the settings of UserSet0 again:\n%1").arg(changes.GetValue().join('\n')));
}

void CMainWindow::SlotStartStop()
{
  if (GetViewer() != nullptr) {
    m_session.StartOrStop();
  }
}

void CMainWindow::timerEvent(QTimerEvent *)
{
  if (GetViewer() == nullptr) {
    return;
  }
  TakeFrame();
  const int64_t nNow = m_clock.elapsed();
  if (nNow - m_nStatusMs >= STATUS_MS) {
    m_nStatusMs = nNow;
    UpdateStatus();
    m_pImageArea->UpdateFigures();
  }
  if (nNow - m_nSlowMs >= SLOW_MS && !m_progress.IsAcquiring()) {
    m_nSlowMs = nNow;
    UpdateSlowly();
  }
}

/// One that nobody looks at any more: a frame that is shown or analysed stays as it is.
std::shared_ptr<SFrameCopy> CMainWindow::FindFreeFrame()
{
  for (std::shared_ptr<SFrameCopy> &pFrame : m_listFrames) {
    pFrame = pFrame == nullptr ? std::make_shared<SFrameCopy>() : pFrame;
    if (pFrame.use_count() == 1) {
      return pFrame;
    }
  }
  return std::make_shared<SFrameCopy>();
}

void CMainWindow::TakeFrame()
{
  std::shared_ptr<SFrameCopy> pFrame = FindFreeFrame();
  if (!GetViewer()->GetPipeline().TakeLatest(*pFrame)) {
    return;
  }
  const bool bFirst = m_pFrame == nullptr;
  m_pFrame = std::move(pFrame);
  m_nFrameMs = m_clock.elapsed();
  m_session.NoteFrame();
  if (m_pFrame->bCorrected) {
    m_stFrameOrigin = m_coefficients.GetOrigin();
    m_stCorrectedShape = SFrameShape{m_pFrame->nWidth, m_pFrame->nHeight, m_pFrame->nPixelFormat};
  }
  m_pImageArea->SetFrame(m_pFrame);
  m_pStatusLine->ShowPixel(GetPixelText(*m_pFrame, m_pView->GetPixel().x(), m_pView->GetPixel().y()));
  ContinueExposure();
  if (bFirst || m_nFrameMs - m_nPlotMs >= PLOT_MS) {
    m_nPlotMs = m_pPlotPanel->Offer(m_pFrame) ? m_nFrameMs : m_nPlotMs;
  }
}

void CMainWindow::UpdateStatus()
{
  SFrameCounts stCounts = GetViewer()->GetPipeline().GetCounts();
  QString strLosses;
  if (const ICameraLink *pLink = GetViewer()->GetCamera().GetLink()) {
    const camera::SFrameLosses stLosses = pLink->GetLosses();
    stCounts.nLost = stLosses.GetFrames(); // also those before the first that came
    strLosses = DescribeLosses(stLosses);
  }
  m_pStatusLine->ShowCounts(stCounts, strLosses);
  m_pStatusLine->ShowRate(m_frameRate.Update(stCounts.nReceived, m_clock.elapsed()));
  SCorrectionFacts stFacts;
  stFacts.bLost = m_session.IsLost();
  stFacts.bHasFrame = m_pFrame != nullptr;
  stFacts.strPluginError = m_session.GetPluginError();
  stFacts.bAcquiring = m_progress.IsAcquiring();
  stFacts.bWithheld = m_progress.IsCancelled();
  stFacts.bPreview = IsPreviewOn();
  stFacts.bChoosingFile = m_dialogObserver.IsFileBoxOpen();
  stFacts.bByCamera = m_bByCamera;
  stFacts.stCorrectedShape = m_stCorrectedShape;
  if (m_pFrame != nullptr) {
    stFacts.bCorrected = m_pFrame->bCorrected;
    stFacts.nStatus = m_pFrame->nStatus;
    stFacts.strStatusText = m_pFrame->nStatus == 0 ? QString() : GetViewer()->GetStatusText(m_pFrame->nStatus);
    stFacts.stShape = {m_pFrame->nWidth, m_pFrame->nHeight, m_pFrame->nPixelFormat};
    m_pQualityPanel->CheckShape(stFacts.stShape);
    m_pStatusLine->ShowShape(stFacts.stShape.GetText(), m_pView->GetTransform().GetScale());
  }
  m_pStatusLine->ShowCorrection(JudgeCorrection(stFacts));
  OfferReference();
}

/// Under a modal box no camera goes: whoever has opened the box finds its own afterwards.
void CMainWindow::UpdateSlowly()
{
  if (m_session.Watch(!m_bBusy && QApplication::activeModalWidget() == nullptr)) {
    m_pScenePanel->Refresh();
  }
}

/// Whether the plug-in was told to correct on the host. Its dialog shows that; hidden, it says so itself.
bool CMainWindow::IsPreviewOn()
{
  if (QDialog *pDialog = CDialogDriver::FindDialog()) {
    return CDialogDriver(*pDialog).IsPreviewOn();
  }
  return GetViewer()->IsPluginInUse();
}

uint32_t CMainWindow::GetAcquisitionTotal() const
{
  QDialog *pDialog = CDialogDriver::FindAnyDialog();
  if (pDialog == nullptr) {
    return 0;
  }
  const CDialogDriver driver(*pDialog);
  return driver.IsAcquiringBright() ? static_cast<uint32_t>(driver.GetFrameCount()) : 1;
}

bool CMainWindow::IsFree()
{
  return GetViewer() != nullptr && !m_bBusy && !m_progress.IsAcquiring();
}

void CMainWindow::SetBusy(bool bBusy)
{
  m_bBusy = bBusy;
  m_pControls->setEnabled(!bBusy);
  m_pQualityPanel->SetBusy(bBusy);
}

void CMainWindow::ShowError(const Failure &failure)
{
  ShowBox(QMessageBox::Warning, TranslateError(failure.GetText()));
}

void CMainWindow::ShowMessage(const QString &strText)
{
  ShowBox(QMessageBox::Information, strText);
}

void CMainWindow::ShowBox(int nIcon, const QString &strText)
{
  QMessageBox box(QMessageBox::Icon(nIcon), tr("Flat field"), strText, QMessageBox::NoButton, this);
  box.setObjectName(QStringLiteral("MessageBox"));
  box.addButton(tr("&OK"), QMessageBox::AcceptRole);
  box.exec();
}

void CMainWindow::SlotMeasure()
{
  if (!IsFree()) {
    return;
  }
  SetBusy(true);
  Result<CMeasurement::QualityResult> measured = [this] {
    CMeasurementGuide guide(*m_pScenePanel, this);
    return CMeasurement(*GetViewer(), guide, m_coefficients.GetOrigin()).Measure(IsPreviewOn());
  }();
  SetBusy(false);
  if (!ShowIfFailed(measured) && measured.GetValue() != nullptr) {
    m_pQualityPanel->ShowResult(measured.GetValue(), QDateTime::currentDateTime());
    m_pTabs->setCurrentIndex(QUALITY_TAB);
  }
}

void CMainWindow::SlotCheckDrift()
{
  if (!IsFree()) {
    return;
  }
  SetBusy(true);
  const Result<std::optional<double>> measured = [this] {
    CMeasurementGuide guide(*m_pScenePanel, this);
    return CMeasurement(*GetViewer(), guide, m_coefficients.GetOrigin()).MeasureDrift(IsPreviewOn());
  }();
  SetBusy(false);
  if (!ShowIfFailed(measured) && measured.GetValue()) {
    m_pQualityPanel->ShowDrift(*measured.GetValue());
    m_pTabs->setCurrentIndex(QUALITY_TAB);
  }
}

void CMainWindow::SlotSaveReport()
{
  if (m_bBusy || !m_pQualityPanel->CanSaveReport()) {
    return;
  }
  const QString strPath = AskReportPath(this);
  if (strPath.isEmpty()) {
    return;
  }
  SetBusy(true);
  const Result<> saved = SaveReport(strPath, m_pQualityPanel->GetResult(), m_pQualityPanel->GetLimits(),
                                    m_pQualityPanel->GetMeasuredTime(), this);
  SetBusy(false);
  ShowIfFailed(saved);
}

void CMainWindow::closeEvent(QCloseEvent *pEvent)
{
  if (m_bBusy || m_progress.IsAcquiring()) {
    pEvent->ignore();
    m_bCloseWanted = m_progress.IsAcquiring();
    return;
  }
  SaveLayout();
  QMainWindow::closeEvent(pEvent);
  // The plug-in's dialog too: the program ends with its last window.
  QApplication::closeAllWindows();
}

} // namespace ffc::host
