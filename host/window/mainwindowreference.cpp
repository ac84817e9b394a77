// How the main window makes a weighted table out of the frames of the plug-in's last acquisitions.

#include "host/window/mainwindow.h"

#include <algorithm>
#include <optional>
#include <thread>

#include <QAction>
#include <QDir>
#include <QFileInfo>

#include "flat/weightedflat.h"
#include "frames/partialfile.h"
#include "frames/sidefile.h"
#include "host/dialogdriver/dialogdriver.h"
#include "host/viewer/featuretext.h"
#include "host/window/referencedialog.h"
#include "host/window/savebox.h"
#include "host/window/sidefilecheck.h"
#include "host/window/waitbox.h"

namespace ffc::host {
namespace {

/// One computation, which outlives whoever has cancelled it.
struct SWork {
  flat::SFlatFrames stFrames;
  std::atomic<bool> bStop{false};
  std::optional<Result<flat::SWeightedFlat>> result; ///< of the user-interface thread
};

/// It balances its white before the frames that count.
bool IsColourCamera(GenApi::INodeMap &deviceMap)
{
  const std::string strFilter = ReadFeature(deviceMap, "PixelColorFilter");
  return !strFilter.empty() && strFilter != "None";
}

} // namespace

void CMainWindow::ExpectAcquisition()
{
  const std::optional<EDialogAction> eAction = m_dialogObserver.GetAction();
  QDialog *pDialog = CDialogDriver::FindAnyDialog();
  if (!m_bByCameraMode && pDialog != nullptr && eAction == EDialogAction::AcquireDark) {
    m_acquired.Begin(CAcquiredFrames::EKind::Dark, 1, false);
  } else if (!m_bByCameraMode && pDialog != nullptr && eAction == EDialogAction::AcquireBright) {
    m_acquired.Begin(CAcquiredFrames::EKind::Bright, static_cast<uint32_t>(CDialogDriver(*pDialog).GetFrameCount()),
                     IsColourCamera(*GetViewer()->GetCamera().GetDeviceNodeMap()));
  }
  m_coefficients.BeginAcquisition(GetViewer()->GetPipeline(),
                                  [this](const camera::SCameraFrame &stFrame) { m_acquired.Take(stFrame); });
}

void CMainWindow::NoteReferenceFrames(const SDialogOutcome &stOutcome)
{
  const bool bBright = stOutcome.eAction == EDialogAction::AcquireBright;
  if (bBright || stOutcome.eAction == EDialogAction::AcquireDark) {
    m_acquired.Finish(stOutcome.strError.isEmpty());
    m_bOtherFrames = m_bOtherFrames && !bBright;
  }
}

/// \return empty: it can be made
QString CMainWindow::ExplainNoReference() const
{
  if (CDialogDriver::FindAnyDialog() == nullptr) {
    return tr("There is no camera with the plug-in's dialog.");
  }
  if (m_bByCameraMode) {
    return tr("This camera corrects its frames itself: it takes no table of the host's.");
  }
  if (m_bOtherFrames) {
    return tr("The frames have another size or format than the bright field: acquire it again.");
  }
  return m_acquired.GetBright() == nullptr ? tr("Acquire a bright field in the plug-in's dialog first.") : QString();
}

void CMainWindow::OfferReference()
{
  const std::shared_ptr<const flat::SFrameSet> pBright = m_acquired.GetBright();
  if (pBright != nullptr && m_pFrame != nullptr && !m_progress.IsAcquiring() &&
      !(SFrameShape{pBright->nWidth, pBright->nHeight, pBright->pFormat->nCode} ==
        SFrameShape{m_pFrame->nWidth, m_pFrame->nHeight, m_pFrame->nPixelFormat})) {
    m_acquired.Reset();
    m_bOtherFrames = true;
  }
  const QString strWhyNot = ExplainNoReference();
  const QString strTip = strWhyNot.isEmpty()
                           ? tr("Weighs every part of the acquired frames by how far it stands out of their noise")
                           : strWhyNot;
  m_pMakeReference->setEnabled(strWhyNot.isEmpty());
  m_pMakeReference->setToolTip(strTip);
  m_pMakeReference->setStatusTip(strTip);
}

void CMainWindow::SlotMakeReference()
{
  if (!IsFree() || !ExplainNoReference().isEmpty()) {
    return;
  }
  const auto pWork = std::make_shared<SWork>();
  pWork->stFrames = {m_acquired.GetBright(), m_acquired.GetDark(),
                     static_cast<uint32_t>(CDialogDriver(*CDialogDriver::FindAnyDialog()).GetExpectGray()),
                     std::max(1U, std::thread::hardware_concurrency())};
  const bool bStarted = m_referenceWork.Start([pWork]() -> std::function<void()> {
    const auto pMade =
      std::make_shared<Result<flat::SWeightedFlat>>(flat::MakeWeightedFlat(pWork->stFrames, pWork->bStop));
    return [pWork, pMade] { pWork->result = *pMade; };
  });
  if (!bStarted) {
    ShowMessage(tr("The computation that was cancelled has not ended yet: try again in a moment."));
    return;
  }
  SetBusy(true);
  {
    CWaitBox box(tr("Make from the acquired frames"), this);
    box.ShowProgress(tr("Weighting the frames"), 0, 0);
    while (m_referenceWork.IsBusy() && !box.IsCancelled()) {
      CWaitBox::LetPass();
    }
    pWork->bStop = box.IsCancelled();
  }
  SetBusy(false);
  if (!pWork->bStop) {
    ShowReference(pWork->result.value_or(Failure("There is not enough memory.")), pWork->stFrames.nExpectGray);
  }
}

void CMainWindow::ShowReference(const Result<flat::SWeightedFlat> &made, uint32_t nExpectGray)
{
  if (ShowIfFailed(made) || CReferenceDialog(made.GetValue(), this).exec() != QDialog::Accepted) {
    return;
  }
  const QDir dir = m_stMemory.strFile.isEmpty() ? QDir::home() : QFileInfo(m_stMemory.strFile).dir();
  const SSaveBox stBox = {
    tr("Save coefficients"), dir.filePath(QStringLiteral("weighted.ffc")), {tr("Coefficients (*.ffc)")}, QString()};
  const QString strFile = AskSavePath(this, stBox, QStringLiteral("ffc"));
  if (!strFile.isEmpty() && !ShowIfFailed(SaveReference(made.GetValue(), nExpectGray, strFile))) {
    LoadCoefficients(strFile);
  }
}

Result<> CMainWindow::SaveReference(const flat::SWeightedFlat &stFlat, uint32_t nExpectGray, const QString &strFile)
{
  const std::shared_ptr<const flat::SFrameSet> pBright = m_acquired.GetBright();
  if (pBright == nullptr) {
    return Failure(tr("The frames have another size or format than the bright field: acquire it again."));
  }
  frames::CPartialFile file(strFile);
  SCoefficientOrigin stOrigin;
  stOrigin.nFrames = static_cast<int>(stFlat.nFrames);
  stOrigin.nExpectGray = static_cast<int>(nExpectGray);
  stOrigin.eDarkField = stFlat.nDarkFrames > 0 ? quality::EDarkField::Used : quality::EDarkField::None;
  stOrigin.strMethod = QStringLiteral("weighted");
  stOrigin.strNoise = QLatin1String(reference::DescribeNoiseSource(stFlat.eNoise));
  return RunUntilFailure(
    [&] { return file.Open(); }, [&] { return file.Write(stFlat.pTable->data.GetData(), stFlat.pTable->nSize); },
    [&] { return file.Commit(frames::ECommit::Durable); },
    [&] {
      const Result<QString> hash = frames::HashCoefficientFile(strFile);
      stOrigin.strSha256 = hash ? hash.GetValue() : QString();
      return WriteSideFile(strFile, stOrigin, {pBright->nWidth, pBright->nHeight, pBright->pFormat->nCode},
                           *GetViewer()->GetCamera().GetDeviceNodeMap(), GetViewer()->DescribePrograms());
    });
}

} // namespace ffc::host
