// What the main window saves and remembers: frames, presets, the coefficients used last; and what it tells of itself.

#include "host/window/mainwindow.h"

#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QFileInfo>
#include <QInputDialog>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>

#include "host/dialogdriver/dialogdriver.h"
#include "host/recording/framesettings.h"
#include "host/window/camerapanel.h"
#include "host/window/camerapresets.h"
#include "host/window/featurebrowser.h"
#include "host/window/framesaving.h"

namespace ffc::host {
namespace {

constexpr int DEFAULT_SEQUENCE = 16; ///< frames
constexpr int MAX_SEQUENCE = 9999;

/// File boxes of the toolkit's own, which can be filled in; the desktop's cannot.
class COwnFileBoxes {
public:
  COwnFileBoxes() : m_bBefore(QCoreApplication::testAttribute(Qt::AA_DontUseNativeDialogs))
  {
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
  }
  ~COwnFileBoxes() { QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs, m_bBefore); }
  COwnFileBoxes(const COwnFileBoxes &) = delete;
  COwnFileBoxes &operator=(const COwnFileBoxes &) = delete;

private:
  bool m_bBefore;
};

} // namespace

void CMainWindow::SlotSaveImage()
{
  // The frame of now, however long the user thinks about its name.
  const std::shared_ptr<SFrameCopy> pFrame = m_pFrame;
  if (!IsFree() || pFrame == nullptr) {
    return;
  }
  const SFrameOrigin stOrigin = {ReadFrameSettings(*GetViewer()->GetCamera().GetDeviceNodeMap()),
                                 DescribeCorrection(m_stFrameOrigin)};
  const QString strPath = AskFramePath(this, tr("Save image"), 1);
  if (strPath.isEmpty()) {
    return;
  }
  ShowIfFailed(SaveFrameCopy(strPath, *pFrame, stOrigin));
}

void CMainWindow::SlotSaveSequence()
{
  if (!IsFree() || m_pFrame == nullptr) {
    return;
  }
  if (!GetViewer()->GetCamera().IsStreaming()) {
    ShowMessage(tr("Start the camera first: a sequence is saved as its frames come."));
    return;
  }
  bool bAccepted = false;
  const int nFrames = QInputDialog::getInt(this, tr("Save sequence"), tr("Number of frames"), DEFAULT_SEQUENCE, 1,
                                           MAX_SEQUENCE, 1, &bAccepted);
  const QString strPath =
    bAccepted ? AskFramePath(this, tr("Save sequence"), static_cast<uint32_t>(nFrames)) : QString();
  if (strPath.isEmpty()) {
    return;
  }
  SetBusy(true);
  const Result<uint32_t> saved = SaveSequence(
    strPath, static_cast<uint32_t>(nFrames), GetViewer()->GetPipeline(),
    {ReadFrameSettings(*GetViewer()->GetCamera().GetDeviceNodeMap()), DescribeCorrection(m_coefficients.GetOrigin())},
    this);
  SetBusy(false);
  ShowIfFailed(saved);
}

/// The entries are those of the camera that is open when the menu is.
void CMainWindow::AddPresets(QMenu *pMenu)
{
  QMenu *pPresets = pMenu->addMenu(tr("&Presets"));
  pPresets->setObjectName(QStringLiteral("Presets"));
  connect(pPresets, &QMenu::aboutToShow, this, [this, pPresets] {
    pPresets->clear();
    if (!IsFree() || IsRecorded()) {
      pPresets->addAction(tr("No camera with settings"))->setEnabled(false);
      return;
    }
    CCameraPresets presets(GetViewer()->GetCamera());
    QMenu *pRemove = nullptr;
    for (const QString &strName : presets.ListNames()) {
      QString strEntry = strName;
      strEntry.replace(QLatin1Char('&'), QStringLiteral("&&"));
      pPresets->addAction(strEntry, this, [this, strName] { ApplyPreset(strName); });
      pRemove = pRemove == nullptr ? new QMenu(tr("&Remove"), pPresets) : pRemove;
      pRemove->addAction(strEntry, this, [this, strName] { CCameraPresets(GetViewer()->GetCamera()).Remove(strName); });
    }
    pPresets->addSeparator();
    pPresets->addAction(tr("&Save as..."), this, [this] { SlotSavePreset(); });
    if (pRemove != nullptr) {
      pPresets->addMenu(pRemove);
    }
  });
}

void CMainWindow::SlotSavePreset()
{
  if (!IsFree()) {
    return;
  }
  const QString strName =
    QInputDialog::getText(this, tr("Save preset"), tr("Name of this camera's settings as they are now")).trimmed();
  if (!strName.isEmpty()) {
    CCameraPresets(GetViewer()->GetCamera()).Save(strName);
  }
}

void CMainWindow::SlotShowFeatures()
{
  if (!IsFree()) {
    return;
  }
  delete m_pFeatures;
  auto *pBrowser = new CFeatureBrowser(*GetViewer()->GetCamera().GetDeviceNodeMap(), this);
  pBrowser->setAttribute(Qt::WA_DeleteOnClose);
  connect(pBrowser, &CFeatureBrowser::SigWritten, m_pCameraPanel, &CCameraPanel::Refresh);
  m_pFeatures = pBrowser;
  pBrowser->show();
}

void CMainWindow::ApplyPreset(const QString &strName)
{
  if (!IsFree()) {
    return;
  }
  const bool bStreaming = GetViewer()->GetCamera().IsStreaming();
  if (bStreaming) {
    m_session.StartOrStop();
  }
  const QStringList listRefused = CCameraPresets(GetViewer()->GetCamera()).Apply(strName);
  if (bStreaming) {
    m_session.StartOrStop();
  }
  m_pCameraPanel->Refresh();
  if (!listRefused.isEmpty()) {
    m_pCameraPanel->ShowError(
      tr("The camera did not take all of the preset; set these by hand:\n%1").arg(listRefused.join('\n')));
  }
}

void CMainWindow::OfferCoefficients()
{
  const QString &strFile = m_stMemory.strFile;
  const bool bOffer = !strFile.isEmpty() && QFileInfo::exists(strFile) && CDialogDriver::FindAnyDialog() != nullptr;
  m_pLastCoefficients->setEnabled(bOffer);
  m_pLastCoefficients->setText(
    bOffer ? tr("L&oad the last coefficients (%1)").arg(QFileInfo(strFile).fileName().replace('&', "&&"))
           : tr("L&oad the last coefficients"));
}

void CMainWindow::SlotLoadLastCoefficients()
{
  if (!IsFree()) {
    return;
  }
  LoadCoefficients(m_stMemory.strFile);
}

/// By the dialog's own button.
void CMainWindow::LoadCoefficients(const QString strFile)
{
  SlotShowDialog();
  QDialog *pDialog = CDialogDriver::FindDialog();
  if (pDialog == nullptr || strFile.isEmpty()) {
    return;
  }
  const COwnFileBoxes boxes;
  const SDialogAnswer stAnswer = CDialogDriver(*pDialog).LoadFile(strFile);
  if (!stAnswer.strBox.isEmpty()) {
    ShowMessage(tr("%1 was not loaded: %2").arg(strFile, stAnswer.strBox));
  }
}

void CMainWindow::AddHelp()
{
  QMenu *pHelp = menuBar()->addMenu(tr("&Help"));
  AddAction(pHelp, tr("&First steps"), Qt::Key_F1, [this] {
    ShowMessage(tr("1. Choose the camera, start it, and press \"To 70 %\" with an evenly lit target before the lens.\n"
                   "2. Press \"Flat-field correction...\". Cover the lens and acquire the dark field; uncover it and "
                   "acquire the bright field; press Execute.\n"
                   "3. View > Raw beside corrected shows what has changed; View > Stretch makes small differences "
                   "visible.\n"
                   "4. Quality > Measure tells how even the image is, from fresh frames, and saves a report."));
  });
  AddAction(pHelp, tr("&About"), QKeySequence(), [this] {
    ShowMessage(tr("%1\nReference host of the flat-field correction plug-in\nQt %2")
                  .arg(GetToolName(), QString::fromLatin1(qVersion())));
  });
}

} // namespace ffc::host
