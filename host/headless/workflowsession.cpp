#include "host/headless/workflowsession.h"

#include <algorithm>
#include <utility>

#include <QCoreApplication>
#include <QDateTime>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include "camera/icameralink.h"
#include "host/measurement/coefficientorigin.h"
#include "host/viewer/blocksize.h"
#include "host/viewer/cameratexts.h"
#include "quality/noise.h"
#include "quality/referenceadvice.h"

namespace ffc::host {

using camera::ECorrectionMode;
using camera::FindSceneControl;
using camera::ICameraLink;
using camera::ISceneControl;
using genapi::EColorLayout;

namespace {

/// A colour camera's bright acquisition discards so many frames while its white balance settles.
constexpr uint32_t SETTLING_FRAMES = 7;
/// The plug-in warns of a bright field below this share of the depth's maximum, and of one that is too bright.
constexpr double DARK_SHARE = 20.0 / 255.0;
const QString FLASH_FILE = QStringLiteral("camera.flash");

} // namespace

CWorkflowSession::CWorkflowSession(const SHeadlessOptions &stOptions, CameraFactory fnOpenCamera,
                                   CProgressLine &progress)
  : m_stOptions(stOptions), m_fnOpenCamera(std::move(fnOpenCamera)), m_progress(progress),
    m_folder(QString::fromStdString(stOptions.stWorkflow.strOutFolder))
{
  m_stReport.eMode = stOptions.stCamera.eMode;
  m_stReport.nFrameCount = stOptions.stWorkflow.nFrames;
  m_stReport.eDarkField = quality::EDarkField::None;
}

CWorkflowSession::~CWorkflowSession()
{
  StopStream();
}

void CWorkflowSession::StopStream()
{
  if (m_pViewer != nullptr) {
    m_pViewer->StopStream();
  }
}

Result<> CWorkflowSession::Open()
{
  return RunUntilFailure([this] { return m_folder.Prepare(); }, [this] { return PrepareFlash(); },
                         [this] { return OpenCameraInViewer(); },
                         [this] { return SelectBlockSize(m_pViewer->GetCamera(), m_stOptions.stCamera.nBlockSize); },
                         [this] { return OpenPlugin(); });
}

Result<> CWorkflowSession::PrepareFlash()
{
  if (m_stOptions.stCamera.eMode == ECorrectionMode::None || !m_stOptions.stCamera.strFlashFile.empty()) {
    return {};
  }
  const QString strFlash = m_folder.GetPath(FLASH_FILE);
  m_stOptions.stCamera.strFlashFile = strFlash.toStdString();
  QFile file(strFlash);
  if (file.exists() && !file.remove()) {
    return Failure(QStringLiteral("cannot replace %1: %2").arg(strFlash, file.errorString()));
  }
  return {};
}

Result<> CWorkflowSession::OpenCameraInViewer()
{
  OpenedCamera opened = m_fnOpenCamera(m_stOptions.stCamera);
  if (!opened) {
    return opened.GetFailure();
  }
  m_pViewer = std::make_unique<CViewer>(std::move(opened).GetValue());
  m_pViewer->SetAcquisitionObserver(this);
  m_pViewer->GetPipeline().SetObserver([this] { m_progress.CountFrame(); });
  m_collector.emplace(m_pViewer->GetPipeline());
  m_collector->SetCheck([this] { return m_pViewer->GetStreamState(); });
  m_stReport.strCamera = QString::fromStdString(m_pViewer->GetCamera().GetDisplayName());
  if (FindSceneControl(m_pViewer->GetCamera()) == nullptr && !m_fnAttend) {
    return Failure("the scene of this camera cannot be set by software");
  }
  return {};
}

Result<> CWorkflowSession::OpenPlugin()
{
  const SPluginOptions &stPlugin = m_stOptions.stPlugin;
  Result<> opened = m_pViewer->Open(QString::fromStdString(stPlugin.strModule),
                                    stPlugin.bChinese ? ELanguage::Chinese : ELanguage::English);
  m_stReport.strPrograms = m_pViewer->DescribePrograms();
  return opened;
}

Result<> CWorkflowSession::OpenDialog()
{
  m_pViewer->ShowDialog();
  QCoreApplication::processEvents();
  QDialog *pDialog = CDialogDriver::FindDialog();
  if (pDialog == nullptr) {
    return Failure("the plug-in shows no dialog");
  }
  m_driver.emplace(*pDialog);
  return {};
}

Result<> CWorkflowSession::ReopenDialog()
{
  m_driver.reset();
  return RunUntilFailure([this] { return m_pViewer->Reopen(); }, [this] { return OpenDialog(); });
}

Result<> CWorkflowSession::PowerCycle()
{
  m_driver.reset();
  m_collector.reset();
  m_pViewer.reset();
  return RunUntilFailure([this] { return OpenCameraInViewer(); }, [this] { return OpenPlugin(); });
}

Result<> CWorkflowSession::SetScene(bool bLensCap, ISceneControl::EPurpose ePurpose)
{
  m_pViewer->StopStream();
  ISceneControl *pScene = FindSceneControl(m_pViewer->GetCamera());
  if (pScene != nullptr) {
    pScene->SetLensCap(bLensCap);
    pScene->SetPurpose(ePurpose);
  } else {
    m_progress.Clear();
    Result<> covered = m_fnAttend(bLensCap);
    if (!covered) {
      return covered;
    }
  }
  return m_pViewer->StartStream();
}

Result<> CWorkflowSession::ReadFormat()
{
  const Result<SStreamFormat> format = ReadStreamFormat(*m_collector);
  if (!format) {
    return format.GetFailure();
  }
  m_stFormat = format.GetValue();
  m_stReport.strPixelFormat = QString::fromLatin1(m_stFormat.pFormat->pName);
  m_stReport.nWidth = m_stFormat.nWidth;
  m_stReport.nHeight = m_stFormat.nHeight;
  return {};
}

Result<> CWorkflowSession::PrepareMeasurement(bool bLensCap)
{
  Result<> result = SetScene(bLensCap, ISceneControl::EPurpose::Measurement);
  m_progress.BeginStep(bLensCap ? "measuring dark frames" : "measuring bright frames", MEASURED_FRAMES);
  return result;
}

bool CWorkflowSession::CanCover() const
{
  return camera::CanBeCovered(FindSceneControl(m_pViewer->GetCamera()));
}

void CWorkflowSession::HoldNextMoment()
{
  if (m_bHolding) {
    HoldMoment(m_nMoment++);
  }
}

void CWorkflowSession::HoldMoment(std::optional<uint64_t> nMoment)
{
  if (ISceneControl *pScene = FindSceneControl(m_pViewer->GetCamera())) {
    pScene->HoldMoment(nMoment);
  }
}

SDialogAnswer CWorkflowSession::Acquire(const std::function<SDialogAnswer()> &fnPress)
{
  m_bHolding = true;
  HoldNextMoment(); // the camera's white balance looks at frames before the plug-in takes any
  SDialogAnswer stAnswer = fnPress();
  m_bHolding = false;
  HoldMoment(std::nullopt);
  return stAnswer;
}

Result<> CWorkflowSession::AcquireDark()
{
  if (!CanCover()) {
    m_stReport.listNotes << QStringLiteral("there are no dark frames: no dark field was taken");
    return {};
  }
  m_progress.BeginStep("dark field", 1);
  const SDialogAnswer stAnswer = Acquire([this] { return m_driver->AcquireDark(); });
  const Result<> result = Judge(stAnswer);
  // One that is too bright is kept, and not used.
  m_stReport.eDarkField = result && !stAnswer.bWarning ? quality::EDarkField::Used : quality::EDarkField::None;
  return result && stAnswer.strPrompt.isEmpty() ? Failure("the dialog reports no result") : result;
}

Result<> CWorkflowSession::SelectFrameCount()
{
  return Judge(m_driver->SetFrameCount(m_stOptions.stWorkflow.nFrames));
}

Result<> CWorkflowSession::AcquireBright()
{
  const uint32_t nSettling = m_stFormat.pFormat->eLayout == EColorLayout::Mono ? 0 : SETTLING_FRAMES;
  m_progress.BeginStep("bright field", static_cast<uint32_t>(m_stOptions.stWorkflow.nFrames) + nSettling);
  CDifferentFrames frames(m_pViewer->GetPipeline());
  const SDialogAnswer stAnswer = Acquire([this] { return m_driver->AcquireBright(); });
  const Result<> result = Judge(stAnswer);
  NoteBrightFrames(static_cast<uint32_t>(frames.Stop().size()));
  m_bTooDark = stAnswer.bWarning && frames.GetJudgedCount() > 0 && frames.GetBrightness() < DARK_SHARE;
  m_listBrightRemarks = frames.JudgeLight();
  return result && !m_driver->IsExecuteEnabled() ? Failure("the dialog does not accept the bright field") : result;
}

/// Repeats of a recording are no frames of their own.
void CWorkflowSession::NoteBrightFrames(uint32_t nDifferent)
{
  const int nAsked = m_stOptions.stWorkflow.nFrames;
  m_stReport.nFrameCount = std::min(nAsked, static_cast<int>(nDifferent));
  if (m_stReport.nFrameCount < nAsked) {
    m_stReport.listNotes << QStringLiteral("the camera repeats itself: only %1 of %2 bright frames differ")
                              .arg(m_stReport.nFrameCount)
                              .arg(nAsked);
  }
}

void CWorkflowSession::Advise(const quality::CFrameStack &stBrightBefore)
{
  const quality::SReferenceFacts stFacts = {m_stFormat.pFormat->nBitDepth, m_stReport.nFrameCount, false,
                                            m_stReport.eMode, m_stReport.nBlockSize};
  m_listAdvice = quality::AdviseReference(quality::MeasureNoise(stBrightBefore, m_stFormat.pFormat->eLayout), stFacts);
}

quality::SVerdict CWorkflowSession::GetVerdict() const
{
  return quality::Judge(m_stReport.stBefore, m_stReport.stAfter, m_stOptions.stWorkflow.stLimits);
}

QByteArray CWorkflowSession::MakeJson() const
{
  QJsonObject json = quality::MakeReportJson(m_stReport);
  json.insert(QStringLiteral("measured_at"), QDateTime::currentDateTimeUtc().toString(Qt::ISODate));
  json.insert(QStringLiteral("advice"), QJsonArray::fromStringList(m_listAdvice));
  json.insert(QStringLiteral("bright_field_remarks"), QJsonArray::fromStringList(m_listBrightRemarks));
  quality::InsertVerdict(GetVerdict(), json);
  if (m_bTooDark) {
    json.insert(QStringLiteral("verdict"), QLatin1String(quality::GetVerdictName(quality::EVerdict::Fail)));
  }
  json.insert(QStringLiteral("within_limit"), IsWithinLimit());
  return QJsonDocument(json).toJson(QJsonDocument::Indented);
}

QString CWorkflowSession::MakeSummary() const
{
  QString strSummary = quality::MakeReportTable(m_stReport);
  for (const QString &strRemark : m_listBrightRemarks) {
    strSummary += QStringLiteral("  note: %1\n").arg(strRemark);
  }
  for (const QString &strAdvice : m_listAdvice) {
    strSummary += QStringLiteral("  advice: %1\n").arg(strAdvice);
  }
  if (m_bTooDark) {
    strSummary +=
      QStringLiteral("  FAIL: the bright field is as good as dark, and the figures say nothing of a correction: "
                     "is the lens covered, or the light off?\n");
  }
  for (const QString &strVerdict : quality::DescribeVerdict(GetVerdict())) {
    strSummary += QStringLiteral("  %1\n").arg(strVerdict);
  }
  return strSummary;
}

bool CWorkflowSession::IsWithinLimit() const
{
  return !m_bTooDark && GetVerdict().KeepsLimits();
}

Result<> CWorkflowSession::SelectExpectGray()
{
  Result<> result = m_stOptions.stWorkflow.nExpectGray >= 0
                      ? Judge(m_driver->SetExpectGray(m_stOptions.stWorkflow.nExpectGray))
                      : Result<>();
  m_stReport.nExpectGray = m_driver->GetExpectGray();
  m_stReport.nExpectGrayDn = m_stReport.nExpectGray << (m_stFormat.pFormat->nBitDepth - 8);
  return result;
}

void CWorkflowSession::NoteCamera()
{
  camera::ICamera &camera = m_pViewer->GetCamera();
  m_stReport.listNotes << DescribeFeatureNotes(camera.GetFeatureNotes());
  const ICameraLink *pLink = camera.GetLink();
  const QString strLosses = pLink == nullptr ? QString() : DescribeLosses(pLink->GetLosses());
  if (!strLosses.isEmpty()) {
    m_stReport.listNotes << strLosses;
  }
}

Result<> CWorkflowSession::Judge(const SDialogAnswer &stAnswer)
{
  if (!stAnswer.strBox.isEmpty()) {
    const Result<> stream = m_pViewer->GetStreamState();
    return Failure(stream ? stAnswer.strBox
                          : QStringLiteral("%1 (%2)").arg(stAnswer.strBox, QString::fromStdString(stream.GetError())));
  }
  if (stAnswer.bWarning && !m_stReport.listNotes.contains(stAnswer.strPrompt)) {
    m_stReport.listNotes << stAnswer.strPrompt;
  }
  return {};
}

} // namespace ffc::host
