#include "host/window/recordingpanel.h"

#include <QComboBox>
#include <QFormLayout>
#include <QLabel>

#include "genapi/sensorformat.h"

namespace ffc::host {
namespace {

enum EAlignmentItem { ITEM_GUESS, ITEM_RIGHT, ITEM_LEFT };

} // namespace

CRecordingPanel::CRecordingPanel(QWidget *pParent)
  : QGroupBox(tr("Recording"), pParent), m_pFormat(new QComboBox(this)), m_pAlignment(new QComboBox(this))
{
  m_pFormat->setObjectName(QStringLiteral("RecordedFormat"));
  m_pAlignment->setObjectName(QStringLiteral("RecordedAlignment"));
  m_pAlignment->addItems({tr("as the values show"), tr("low end (right)"), tr("high end (left)")});
  m_pAlignment->setToolTip(tr("Where the bits of a sample stand in 16"));
  QFormLayout *pLayout = new QFormLayout(this);
  pLayout->addRow(new QLabel(tr("Samples"), this), m_pFormat);
  pLayout->addRow(new QLabel(tr("Bits at"), this), m_pAlignment);
  for (QComboBox *pChoice : {m_pFormat, m_pAlignment}) {
    connect(pChoice, QOverload<int>::of(&QComboBox::activated), this, &CRecordingPanel::Choose);
  }
  hide();
}

void CRecordingPanel::ShowCamera(const SCameraOptions &stCamera, const std::string &strPixelFormat)
{
  setVisible(!stCamera.strReplayFolder.empty());
  const genapi::SSensorFormat *pPlayed = genapi::FindSensorFormat(strPixelFormat);
  m_pFormat->clear();
  m_pFormat->addItem(tr("guessed: %1").arg(QString::fromStdString(strPixelFormat)));
  for (const genapi::SSensorFormat &stFormat : genapi::GetSensorFormats()) {
    if (pPlayed != nullptr && stFormat.GetBytesPerPixel() == pPlayed->GetBytesPerPixel()) {
      m_pFormat->addItem(QLatin1String(stFormat.pName), QLatin1String(stFormat.pName));
    }
  }
  const int nFormat = m_pFormat->findData(QString::fromStdString(stCamera.strPixelFormat));
  m_pFormat->setCurrentIndex(stCamera.strPixelFormat.empty() || nFormat < 0 ? 0 : nFormat);
  m_pAlignment->setCurrentIndex(!stCamera.eAlignment                                ? ITEM_GUESS
                                : *stCamera.eAlignment == frames::EAlignment::Right ? ITEM_RIGHT
                                                                                    : ITEM_LEFT);
  m_pAlignment->setEnabled(pPlayed != nullptr && pPlayed->GetBytesPerPixel() > 1);
}

void CRecordingPanel::Choose()
{
  std::optional<frames::EAlignment> eAlignment;
  if (m_pAlignment->currentIndex() != ITEM_GUESS) {
    eAlignment = m_pAlignment->currentIndex() == ITEM_LEFT ? frames::EAlignment::Left : frames::EAlignment::Right;
  }
  emit SigChosen(m_pFormat->currentData().toString(), eAlignment);
}

} // namespace ffc::host
