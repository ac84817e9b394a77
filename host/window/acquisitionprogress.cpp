#include "host/window/acquisitionprogress.h"

#include <algorithm>

#include <QCoreApplication>
#include <QTimer>

#include "host/window/waitbox.h"

namespace ffc::host {
namespace {

constexpr int END_CHECK_MS = 20;

} // namespace

CAcquisitionProgress::CAcquisitionProgress(QWidget *pWindow) : QObject(pWindow), m_pWindow(pWindow) {}

CAcquisitionProgress::~CAcquisitionProgress() = default;

void CAcquisitionProgress::BeginAcquisition()
{
  m_nFrames = 0;
  m_nTotal = m_fnTotal ? m_fnTotal() : 0;
  m_bCancelled = false;
  m_bAcquiring = true;
  emit SigBegun();
  // A plug-in that streams on afterwards says so with the same message, and never that it has ended.
  ArmEndCheck();
}

void CAcquisitionProgress::ArmEndCheck()
{
  QTimer::singleShot(END_CHECK_MS, this, [this] {
    if (m_bPassing) {
      ArmEndCheck();
    } else if (m_bAcquiring) {
      EndAcquisition();
    }
  });
}

void CAcquisitionProgress::CountAcquiredFrame()
{
  if (!m_bAcquiring || m_bPassing) {
    return;
  }
  ++m_nFrames;
  emit SigCounted();
  if (m_nTotal == 1 || m_bCancelled) {
    return;
  }
  ShowBox();
  LetEventsPass();
}

void CAcquisitionProgress::ShowBox()
{
  if (m_pBox == nullptr) {
    m_pBox = std::make_unique<CWaitBox>(tr("Acquisition"), m_pWindow);
    m_pBox->setObjectName(QStringLiteral("AcquisitionProgress"));
    m_pBox->SetClosingText(tr("The window closes when the plug-in is done with the camera."));
    connect(m_pBox.get(), &QProgressDialog::canceled, this, [this] {
      m_bCancelled = true;
      emit SigCancelled();
    });
  }
  const QString strTaking =
    m_nTotal == 0 ? tr("Taking frames: %1").arg(m_nFrames) : tr("Taking frames: %1 of %2").arg(m_nFrames).arg(m_nTotal);
  m_pBox->ShowProgress(strTaking, m_nTotal == 0 ? 0 : std::min(m_nFrames, m_nTotal), m_nTotal);
}

void CAcquisitionProgress::LetEventsPass()
{
  m_bPassing = true;
  QCoreApplication::processEvents();
  m_bPassing = false;
}

void CAcquisitionProgress::EndAcquisition()
{
  if (!m_bAcquiring) {
    return;
  }
  m_bAcquiring = false;
  m_bCancelled = false;
  m_pBox.reset();
  emit SigEnded();
}

} // namespace ffc::host
