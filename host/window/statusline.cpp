#include "host/window/statusline.h"

#include <algorithm>

#include <QLabel>
#include <QStyle>
#include <QStyleOption>
#include <QStylePainter>

namespace ffc::host {
namespace {

const char *GetStyle(SCorrectionState::EKind eKind)
{
  switch (eKind) {
  case SCorrectionState::EKind::Corrected: return "background: #2e7d32; color: white; padding: 1px 8px";
  case SCorrectionState::EKind::NotCorrected: return "background: #b3261e; color: white; padding: 1px 8px";
  default: return "background: #6b6e73; color: white; padding: 1px 8px";
  }
}

/// Leaves out the middle of a text that has no room, so that a long one does not widen the window.
class CElidedLabel final : public QLabel {
public:
  using QLabel::QLabel;

  QSize minimumSizeHint() const override
  {
    const QSize szWhole = QLabel::minimumSizeHint();
    const int nText = fontMetrics().horizontalAdvance(text());
    const int nLeast = std::min(nText, fontMetrics().averageCharWidth() * LEAST_CHARACTERS);
    return {szWhole.width() - nText + nLeast, szWhole.height()};
  }

protected:
  void paintEvent(QPaintEvent *) override
  {
    QStylePainter painter(this);
    QStyleOption option;
    option.initFrom(this);
    painter.drawPrimitive(QStyle::PE_Widget, option);
    const QRect rcText = contentsRect();
    const QString strShown = fontMetrics().elidedText(text(), Qt::ElideMiddle, rcText.width());
    painter.drawItemText(rcText, Qt::AlignLeft | Qt::AlignVCenter, palette(), isEnabled(), strShown, foregroundRole());
  }

private:
  static constexpr int LEAST_CHARACTERS = 12;
};

} // namespace

CStatusLine::CStatusLine(QWidget *pParent)
  : QStatusBar(pParent), m_pCorrection(Add(new CElidedLabel(this), "Correction", 0)),
    m_pRate(Add(new QLabel(this), "Rate", 0)), m_pDropped(Add(new QLabel(this), "Dropped", 0)),
    m_pShape(Add(new QLabel(this), "Shape", 0)), m_pPixel(Add(new QLabel(this), "Pixel", 1))
{
  m_pPixel->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  Clear();
}

QLabel *CStatusLine::Add(QLabel *pLabel, const char *pName, int nStretch)
{
  pLabel->setObjectName(QLatin1String(pName));
  pLabel->setContentsMargins(6, 0, 6, 0);
  addWidget(pLabel, nStretch);
  return pLabel;
}

void CStatusLine::ShowCorrection(const SCorrectionState &stState)
{
  if (m_pCorrection->text() != stState.strText) {
    m_pCorrection->setText(stState.strText);
    m_pCorrection->setToolTip(stState.strText);
    m_pCorrection->setStyleSheet(QLatin1String(GetStyle(stState.eKind)));
  }
}

void CStatusLine::ShowRate(double dRate)
{
  m_pRate->setText(tr("%1 frames/s").arg(dRate, 0, 'f', 1));
}

void CStatusLine::ShowCounts(const SFrameCounts &stCounts, const QString &strLosses)
{
  m_pDropped->setText(tr("dropped %1").arg(stCounts.nLost));
  m_pDropped->setToolTip(tr("Camera frames that never came: %1\nFrames that came and were not shown, because the "
                            "display is slower than the camera: %2\nFrames received: %3")
                           .arg(stCounts.nLost)
                           .arg(stCounts.nOverwritten)
                           .arg(stCounts.nReceived) +
                         (strLosses.isEmpty() ? QString() : QLatin1Char('\n') + strLosses));
}

void CStatusLine::ShowShape(const QString &strShape, double dScale)
{
  m_pShape->setText(QStringLiteral("%1   %2 %").arg(strShape).arg(100.0 * dScale, 0, 'f', 0));
}

void CStatusLine::ShowPixel(const QString &strPixel)
{
  m_pPixel->setText(strPixel);
}

void CStatusLine::Clear()
{
  for (QLabel *pLabel : {m_pRate, m_pDropped, m_pShape, m_pPixel}) {
    pLabel->clear();
  }
  m_pDropped->setToolTip(QString());
  ShowCorrection(JudgeCorrection({}));
}

} // namespace ffc::host
