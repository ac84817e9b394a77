#include "host/window/inspectionbar.h"

#include <QDoubleSpinBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace ffc::host {
namespace {

constexpr double LEAST_THRESHOLD = 50; ///< percent

} // namespace

CInspectionBar::CInspectionBar(QWidget *pParent)
  : QWidget(pParent), m_pOverexposed(new QLabel(this)), m_pThreshold(new QDoubleSpinBox(this)),
    m_pRegion(new QLabel(this))
{
  m_pOverexposed->setObjectName(QStringLiteral("Overexposed"));
  m_pThreshold->setObjectName(QStringLiteral("OverexposedFrom"));
  m_pThreshold->setRange(LEAST_THRESHOLD, 100);
  m_pThreshold->setDecimals(1);
  m_pThreshold->setValue(100);
  m_pThreshold->setPrefix(tr("from "));
  m_pThreshold->setSuffix(QStringLiteral(" %"));
  m_pThreshold->setKeyboardTracking(false);
  m_pThreshold->setToolTip(tr("From where on a sample counts as over-exposed, of the format's maximum"));
  m_pRegion->setObjectName(QStringLiteral("RegionFigures"));
  m_pRegion->setTextInteractionFlags(Qt::TextSelectableByMouse);
  m_pRegion->setWordWrap(true);
  m_pRegion->hide();
  QHBoxLayout *pLine = new QHBoxLayout;
  pLine->addWidget(m_pOverexposed);
  pLine->addWidget(m_pThreshold);
  pLine->addStretch();
  QVBoxLayout *pLayout = new QVBoxLayout(this);
  pLayout->setContentsMargins(6, 2, 6, 2);
  pLayout->setSpacing(2);
  pLayout->addLayout(pLine);
  pLayout->addWidget(m_pRegion);
  connect(m_pThreshold, QOverload<double>::of(&QDoubleSpinBox::valueChanged), this, &CInspectionBar::SigThreshold);
  ShowFigures(nullptr, nullptr, QRect());
}

double CInspectionBar::GetThreshold() const
{
  return m_pThreshold->value();
}

void CInspectionBar::SetThreshold(double dPercent)
{
  m_pThreshold->setValue(dPercent);
}

/// Of what is shown and, below, of what it was made of.
QString CInspectionBar::DescribeBoth(const SFrameCopy &stFrame, const SFrameCopy *pPrevious, const QRect &rcRegion)
{
  QString strText = DescribeRegion(MeasureRegion(stFrame, rcRegion, pPrevious), rcRegion);
  if (stFrame.pRaw != nullptr && !strText.isEmpty()) {
    const SFrameCopy *pRawBefore = pPrevious == nullptr ? nullptr : pPrevious->pRaw.get();
    strText = tr("corrected: %1\nraw: %2")
                .arg(strText, DescribeRegion(MeasureRegion(*stFrame.pRaw, rcRegion, pRawBefore), rcRegion));
  }
  return strText;
}

void CInspectionBar::ShowFigures(const SFrameCopy *pFrame, const SFrameCopy *pPrevious, const QRect &rcRegion)
{
  const std::optional<double> dPercent =
    pFrame == nullptr ? std::nullopt : GetOverexposedPercent(GetSamples(*pFrame), GetThreshold());
  // One sample of a large frame is not to round to none.
  const int nDecimals = dPercent && *dPercent > 0 && *dPercent < 0.1 ? 5 : 2;
  m_pOverexposed->setText(dPercent ? tr("Over-exposed: %1 % of the camera's samples").arg(*dPercent, 0, 'f', nDecimals)
                                   : tr("Over-exposed: no figures"));
  const QString strRegion = pFrame == nullptr ? QString() : DescribeBoth(*pFrame, pPrevious, rcRegion);
  m_pRegion->setText(strRegion);
  m_pRegion->setVisible(!strRegion.isEmpty());
}

} // namespace ffc::host
