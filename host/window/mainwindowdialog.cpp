// What the main window does with the plug-in's dialog: where it stands, and what was done in it.

#include "host/window/mainwindow.h"

#include <QDialog>
#include <QLabel>
#include <QScreen>
#include <QTimer>

#include "host/dialogdriver/dialogdriver.h"
#include "host/viewer/featuretext.h"
#include "host/window/appearance.h"
#include "host/window/camerapanel.h"
#include "host/window/dialogplace.h"
#include "host/window/imageview.h"
#include "host/window/qualitypanel.h"
#include "host/window/sidefilecheck.h"
#include "pluginobject/statuscode.h"

namespace ffc::host {

void CMainWindow::SlotShowDialog()
{
  if (GetViewer() == nullptr) {
    return;
  }
  QDialog *pDialog = CDialogDriver::FindAnyDialog();
  const bool bFirst = pDialog != nullptr && !m_bDialogPlaced;
  if (bFirst) {
    PlaceDialog(*pDialog);
  }
  GetViewer()->ShowDialog();
  if (bFirst) {
    PresetDialog(*pDialog);
  }
  RaiseDialog();
}

void CMainWindow::PlaceDialog(QWidget &dialog)
{
  const QRect rcImage(m_pView->mapToGlobal(QPoint(0, 0)), m_pView->size());
  dialog.move(FindDialogPlace(screen()->availableGeometry(), frameGeometry(), rcImage, dialog.size()));
  m_bDialogPlaced = true;
}

/// Some window managers leave it behind when a box of the host's has closed.
void CMainWindow::RaiseDialog()
{
  if (QDialog *pDialog = CDialogDriver::FindDialog()) {
    pDialog->raise();
    pDialog->activateWindow();
  }
}

/// As the command line asks, else as the camera had it last.
void CMainWindow::PresetDialog(QDialog &dialog)
{
  const int nFrames = m_stPreset.nFrames > 0 ? m_stPreset.nFrames : m_stMemory.nFrames;
  if (nFrames > 0) {
    (void)CDialogDriver(dialog).SetFrameCount(nFrames);
  }
  PresetGray(dialog);
}

/// A bright field brings a grey of its own, so that this is done again after it.
void CMainWindow::PresetGray(QDialog &dialog)
{
  const int nGray = m_stPreset.nExpectGray >= 0 ? m_stPreset.nExpectGray : m_stMemory.nExpectGray;
  if (nGray >= 0) {
    (void)CDialogDriver(dialog).SetExpectGray(nGray);
  }
}

void CMainWindow::RecallCamera()
{
  m_strCameraGroup = FindCameraGroup(GetViewer()->GetCamera());
  m_stMemory = LoadCameraMemory(m_strCameraGroup);
  m_dialogObserver.SetLastFile(m_stMemory.strFile);
  if (m_stMemory.stLimits) {
    m_pQualityPanel->SetLimits(*m_stMemory.stLimits);
  }
}

void CMainWindow::RememberCamera()
{
  if (!m_strCameraGroup.isEmpty()) {
    m_stMemory.stLimits = m_pQualityPanel->GetLimits();
    SaveCameraMemory(m_strCameraGroup, m_stMemory);
  }
}

void CMainWindow::RememberOutcome(const SDialogOutcome &stOutcome, const CDialogDriver &driver)
{
  const int nGray = driver.GetExpectGray();
  switch (stOutcome.eAction) {
  case EDialogAction::AcquireBright:
    m_stMemory.nFrames = driver.GetFrameCount();
    m_nSuggestedGray = nGray;
    break;
  case EDialogAction::Execute:
    if (m_stPreset.nExpectGray < 0) {
      m_stMemory.nExpectGray = nGray == m_nSuggestedGray ? -1 : nGray;
    }
    break;
  case EDialogAction::LoadFile:
  case EDialogAction::SaveFile:
    m_stMemory.strFile = stOutcome.strFile.isEmpty() ? m_stMemory.strFile : stOutcome.strFile;
    m_dialogObserver.SetLastFile(m_stMemory.strFile);
    OfferCoefficients();
    break;
  default: return;
  }
  RememberCamera();
}

void CMainWindow::ObserveDialog()
{
  m_coefficients.Reset();
  const std::string strMode = ReadFeature(*GetViewer()->GetCamera().GetDeviceNodeMap(), "ShadingCorrectionMode");
  m_bByCameraMode = !strMode.empty();
  if (QDialog *pDialog = CDialogDriver::FindAnyDialog()) {
    m_dialogObserver.Observe(*pDialog);
    const SDialogNote stMode = DescribeMode(QString::fromStdString(strMode));
    ShowNote(stMode.strText.isEmpty() ? DescribeLastFile(m_stMemory.strFile) : stMode);
  } else {
    ShowNote({});
  }
  OfferCoefficients();
  OfferReference();
}

void CMainWindow::BeginAcquisition()
{
  delete m_pFeatures; // the camera is the plug-in's now
  m_pQualityPanel->MarkStale(tr("a new acquisition"));
}

void CMainWindow::EndAcquisition()
{
  m_acquired.End();
  m_coefficients.EndAcquisition();
  GetViewer()->GetPipeline().Withhold(false);
  RaiseDialog();
  if (m_bCloseWanted) {
    m_bCloseWanted = false;
    QTimer::singleShot(0, this, &QWidget::close);
  }
}

/// The box that only repeats that the user has cancelled is not shown; any other failure is.
void CMainWindow::AnswerBox(QDialog *pBox, const QString &strText)
{
  if (!m_bCancelled || !strText.contains(GetViewer()->GetStatusText(PLUGIN_STATUS_BUFFER_TIMEOUT))) {
    return;
  }
  m_bQuiet = true;
  pBox->setAttribute(Qt::WA_DontShowOnScreen);
  QTimer::singleShot(0, pBox, &QDialog::reject);
}

void CMainWindow::CheckSideFile(const QString &strFile)
{
  if (GetViewer() != nullptr) {
    m_pCameraPanel->ShowError(DescribeMisfit(strFile, *GetViewer()->GetCamera().GetDeviceNodeMap()));
  }
}

void CMainWindow::NoteOutcome(const SDialogOutcome &stOutcome)
{
  QDialog *pDialog = CDialogDriver::FindAnyDialog();
  const bool bCancelled = m_bCancelled && m_bQuiet;
  m_bCancelled = false;
  m_bQuiet = false;
  if (pDialog == nullptr || GetViewer() == nullptr) {
    return;
  }
  m_progress.EndAcquisition(); // what the plug-in reads from now on is of no acquisition
  const CDialogDriver driver(*pDialog);
  if (stOutcome.strError.isEmpty()) {
    RememberOutcome(stOutcome, driver);
  }
  if (stOutcome.eAction == EDialogAction::AcquireBright && stOutcome.strError.isEmpty()) {
    PresetGray(*pDialog);
  }
  m_coefficients.Note(stOutcome, driver, m_bByCameraMode);
  NoteReferenceFrames(stOutcome);
  if (stOutcome.strError.isEmpty()) {
    MarkStale(stOutcome);
    KeepSideFile(stOutcome);
  }
  ShowNote(DescribeOutcome({stOutcome, bCancelled, driver.IsPreviewOffered(), m_coefficients.GetBright(),
                            GetViewer()->GetCamera().IsStreaming()}));
}

void CMainWindow::KeepSideFile(const SDialogOutcome &stOutcome)
{
  if (stOutcome.eAction == EDialogAction::Execute) {
    m_stCorrectedShape.reset(); // the next corrected frame has that of the new coefficients
  }
  const SCoefficientOrigin &stOrigin = m_coefficients.GetOrigin();
  if (stOutcome.eAction != EDialogAction::SaveFile || stOutcome.strFile.isEmpty() || m_bByCameraMode ||
      stOrigin.eKind != SCoefficientOrigin::EKind::Acquired || !m_stCorrectedShape) {
    return;
  }
  const Result<> written = WriteSideFile(stOutcome.strFile, stOrigin, *m_stCorrectedShape,
                                         *GetViewer()->GetCamera().GetDeviceNodeMap(), GetViewer()->DescribePrograms());
  if (!written) {
    m_pCameraPanel->ShowError(QString::fromStdString(written.GetError()));
  }
}

void CMainWindow::MarkStale(const SDialogOutcome &stOutcome)
{
  switch (stOutcome.eAction) {
  case EDialogAction::Execute: m_pQualityPanel->MarkStale(tr("new coefficients were computed")); break;
  case EDialogAction::LoadFlash: m_pQualityPanel->MarkStale(tr("coefficients were loaded from the flash")); break;
  case EDialogAction::LoadFile:
    if (!stOutcome.strFile.isEmpty()) {
      m_pQualityPanel->MarkStale(tr("coefficients were loaded from a file"));
    }
    break;
  default: break;
  }
}

void CMainWindow::ShowNote(const SDialogNote &stNote)
{
  m_pNote->setText(stNote.strText);
  SetWarning(*m_pNote, stNote.bWarning);
  m_pNote->setVisible(!stNote.strText.isEmpty());
}

} // namespace ffc::host
