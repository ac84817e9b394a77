#include "host/window/acquisitionprogress.h"

#include <algorithm>

#include <QCoreApplication>
#include <QProgressDialog>
#include <QTimer>

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
  m_bClosing = false;
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
    m_pBox = std::make_unique<QProgressDialog>(m_pWindow);
    m_pBox->setObjectName(QStringLiteral("AcquisitionProgress"));
    m_pBox->setWindowTitle(tr("Acquisition"));
    m_pBox->setCancelButtonText(tr("&Cancel"));
    m_pBox->setWindowModality(Qt::ApplicationModal);
    m_pBox->setMinimumDuration(0);
    m_pBox->setAutoReset(false);
    m_pBox->setAutoClose(false);
    m_pBox->setMinimumWidth(320);
    connect(m_pBox.get(), &QProgressDialog::canceled, this, [this] {
      m_bCancelled = true;
      emit SigCancelled();
    });
    m_pBox->setRange(0, static_cast<int>(m_nTotal));
    m_pBox->show();
  }
  ShowText();
}

void CAcquisitionProgress::ShowText()
{
  const QString strTaking =
    m_nTotal == 0 ? tr("Taking frames: %1").arg(m_nFrames) : tr("Taking frames: %1 of %2").arg(m_nFrames).arg(m_nTotal);
  m_pBox->setLabelText(m_bClosing ? strTaking + QLatin1Char('\n') +
                                      tr("The window closes when the plug-in is done with the camera.")
                                  : strTaking);
}

void CAcquisitionProgress::ExplainClosing()
{
  m_bClosing = m_bAcquiring;
  if (m_bAcquiring && m_pBox != nullptr) {
    ShowText();
  }
}

void CAcquisitionProgress::LetEventsPass()
{
  m_bPassing = true;
  // Lets events pass itself, being modal; more may wait behind those.
  m_pBox->setValue(static_cast<int>(m_nTotal == 0 ? 0 : std::min(m_nFrames, m_nTotal)));
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
