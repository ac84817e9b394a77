#include "host/window/imageview.h"

#include <algorithm>
#include <cmath>

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>

namespace ffc::host {
namespace {

const QColor BACKGROUND(43, 45, 48); ///< neutral, so that the eye judges the image and not its surroundings
const QColor FAINT(130, 133, 138);
constexpr double ZOOM_STEP = 1.25;
constexpr double WHEEL_CLICK = 120.0;
constexpr int LONG_STEP = 10; ///< pixels
constexpr double DIVIDER_STEP = 0.02;
constexpr int DIVIDER_REACH = 5; ///< view pixels beside the divider that take hold of it
constexpr int LABEL_MARGIN = 4;

QPointF GetMiddle(const QWidget &widget)
{
  return {widget.width() / 2.0, widget.height() / 2.0};
}

QPoint GetStep(int nKey)
{
  switch (nKey) {
  case Qt::Key_Left: return {-1, 0};
  case Qt::Key_Right: return {1, 0};
  case Qt::Key_Up: return {0, -1};
  case Qt::Key_Down: return {0, 1};
  default: return {};
  }
}

} // namespace

CImageView::CImageView(QWidget *pParent) : QWidget(pParent)
{
  setMouseTracking(true);
  setFocusPolicy(Qt::StrongFocus);
  setAttribute(Qt::WA_OpaquePaintEvent);
  setCursor(Qt::CrossCursor);
}

void CImageView::SetPicture(const QImage &imgPicture)
{
  const bool bSize = imgPicture.size() != m_imgPicture.size();
  m_imgPicture = imgPicture;
  m_transform.SetImageSize(imgPicture.size());
  if (bSize) {
    m_marks.SetImageSize(imgPicture.size());
    emit SigMarked();
    Changed();
  }
  update();
}

void CImageView::SetLeftPicture(const QImage &imgLeft)
{
  m_imgLeft = imgLeft;
  update();
}

void CImageView::SetLabels(const QString &strLeft, const QString &strRight)
{
  m_strLeft = strLeft;
  m_strRight = strRight;
  update();
}

void CImageView::SetTool(EImageTool eTool)
{
  m_marks.SetTool(eTool);
}

bool CImageView::IsAtDivider(const QPointF &ptView) const
{
  return !m_imgLeft.isNull() && std::abs(ptView.x() - GetDividerX()) <= DIVIDER_REACH;
}

void CImageView::MoveDivider(double dPlace)
{
  m_dDivider = std::clamp(dPlace, 0.0, 1.0);
  update();
}

/// The nearest pixel of the image.
QPoint CImageView::ToPixel(const QPointF &ptView) const
{
  const QPointF ptImage = m_transform.ToImage(ptView);
  return {std::clamp(static_cast<int>(std::floor(ptImage.x())), 0, std::max(0, m_imgPicture.width() - 1)),
          std::clamp(static_cast<int>(std::floor(ptImage.y())), 0, std::max(0, m_imgPicture.height() - 1))};
}

void CImageView::SlotFit()
{
  m_transform.Fit();
  Changed();
}

void CImageView::SlotOneToOne()
{
  m_transform.ScaleAt(1.0, GetMiddle(*this));
  Changed();
}

void CImageView::SlotZoomIn()
{
  Scale(ZOOM_STEP, GetMiddle(*this));
}

void CImageView::SlotZoomOut()
{
  Scale(1.0 / ZOOM_STEP, GetMiddle(*this));
}

void CImageView::Scale(double dFactor, const QPointF &ptView)
{
  m_transform.ScaleAt(m_transform.GetScale() * dFactor, ptView);
  Changed();
}

void CImageView::SetPixel(const QPoint &ptPixel)
{
  m_ptPixel = m_imgPicture.rect().contains(ptPixel) ? ptPixel : QPoint(-1, -1);
  Changed();
}

void CImageView::Changed()
{
  update();
  emit SigViewChanged();
}

void CImageView::paintEvent(QPaintEvent *)
{
  QPainter painter(this);
  painter.fillRect(rect(), BACKGROUND);
  if (m_imgPicture.isNull()) {
    painter.setPen(FAINT);
    painter.drawText(rect(), Qt::AlignCenter, tr("No image"));
    return;
  }
  painter.setRenderHint(QPainter::SmoothPixmapTransform, m_transform.GetScale() < 1.0);
  painter.drawImage(m_transform.GetTarget(), m_imgPicture);
  PaintSplit(painter);
  m_marks.Paint(painter, m_transform);
  PaintLabels(painter);
  if (m_bByKeyboard && m_ptPixel.x() >= 0) {
    const QRectF rcPixel(m_transform.ToView(m_ptPixel), m_transform.ToView(m_ptPixel + QPoint(1, 1)));
    painter.setPen(QColor(255, 200, 0));
    painter.drawRect(rcPixel.adjusted(-3, -3, 2, 2));
  }
  if (hasFocus()) {
    painter.setPen(palette().color(QPalette::Highlight));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
  }
}

void CImageView::PaintSplit(QPainter &painter) const
{
  if (m_imgLeft.isNull()) {
    return;
  }
  painter.save();
  painter.setClipRect(0, 0, GetDividerX(), height());
  painter.drawImage(m_transform.GetTarget(), m_imgLeft);
  painter.restore();
  painter.setPen(QPen(Qt::black, 3));
  painter.drawLine(GetDividerX(), 0, GetDividerX(), height());
  painter.setPen(Qt::white);
  painter.drawLine(GetDividerX(), 0, GetDividerX(), height());
}

/// Each half bears its own, on a ground that no image hides.
void CImageView::PaintLabels(QPainter &painter) const
{
  const auto Draw = [&](const QString &strLabel, const QRect &rcHalf) {
    if (strLabel.isEmpty()) {
      return;
    }
    const QRect rcInner = rcHalf.adjusted(LABEL_MARGIN, LABEL_MARGIN, -LABEL_MARGIN, -LABEL_MARGIN);
    const QRect rcText = painter.boundingRect(rcInner, Qt::AlignLeft | Qt::TextWordWrap, strLabel);
    painter.setClipRect(rcHalf);
    painter.fillRect(rcText.adjusted(-LABEL_MARGIN, -2, LABEL_MARGIN, 2), QColor(0, 0, 0, 170));
    painter.setPen(Qt::white);
    painter.drawText(rcText, Qt::AlignLeft | Qt::TextWordWrap, strLabel);
    painter.setClipping(false);
  };
  const int nDivider = m_imgLeft.isNull() ? 0 : GetDividerX();
  Draw(m_strLeft, QRect(0, 0, nDivider, height()));
  Draw(m_strRight, QRect(nDivider, 0, width() - nDivider, height()));
}

void CImageView::resizeEvent(QResizeEvent *)
{
  m_transform.SetViewSize(size());
  Changed();
}

void CImageView::wheelEvent(QWheelEvent *pEvent)
{
  Scale(std::pow(ZOOM_STEP, pEvent->angleDelta().y() / WHEEL_CLICK), pEvent->position());
  pEvent->accept();
}

void CImageView::mousePressEvent(QMouseEvent *pEvent)
{
  m_ptDrag = pEvent->localPos();
  m_bDividing = pEvent->button() == Qt::LeftButton && IsAtDivider(pEvent->localPos());
  if (!m_bDividing && pEvent->button() == Qt::LeftButton && !m_imgPicture.isNull()) {
    m_marks.Begin(ToPixel(pEvent->localPos()));
    update();
  }
}

void CImageView::mouseReleaseEvent(QMouseEvent *)
{
  if (!m_bDividing && m_marks.GetTool() != EImageTool::Pan) {
    emit SigMarked();
  }
  m_bDividing = false;
}

void CImageView::mouseMoveEvent(QMouseEvent *pEvent)
{
  if ((pEvent->buttons() & Qt::LeftButton) != 0) {
    if (m_bDividing) {
      MoveDivider(pEvent->localPos().x() / std::max(1, width()));
    } else if (m_marks.GetTool() != EImageTool::Pan) {
      m_marks.Extend(ToPixel(pEvent->localPos()));
    } else {
      m_transform.Pan(pEvent->localPos() - m_ptDrag);
    }
    m_ptDrag = pEvent->localPos();
  }
  ShowCursor(pEvent->localPos());
  m_bByKeyboard = false;
  const QPointF ptImage = m_transform.ToImage(pEvent->localPos());
  SetPixel({static_cast<int>(std::floor(ptImage.x())), static_cast<int>(std::floor(ptImage.y()))});
}

void CImageView::ShowCursor(const QPointF &ptView)
{
  setCursor(m_bDividing || IsAtDivider(ptView) ? Qt::SplitHCursor : Qt::CrossCursor);
}

void CImageView::mouseDoubleClickEvent(QMouseEvent *pEvent)
{
  if (m_transform.IsFitted()) {
    m_transform.ScaleAt(1.0, pEvent->localPos());
  } else {
    m_transform.Fit();
  }
  Changed();
}

void CImageView::leaveEvent(QEvent *)
{
  if (!m_bByKeyboard) {
    SetPixel({-1, -1});
  }
}

void CImageView::keyPressEvent(QKeyEvent *pEvent)
{
  const QPoint ptStep = GetStep(pEvent->key());
  if (pEvent->key() == Qt::Key_Escape) {
    m_marks.Clear();
    emit SigMarked();
    update();
    return;
  }
  if ((pEvent->modifiers() & Qt::ControlModifier) != 0 && ptStep.x() != 0 && !m_imgLeft.isNull()) {
    MoveDivider(m_dDivider + ptStep.x() * DIVIDER_STEP);
    return;
  }
  if (ptStep.isNull() || m_imgPicture.isNull()) {
    QWidget::keyPressEvent(pEvent);
    return;
  }
  const int nLength = (pEvent->modifiers() & Qt::ShiftModifier) != 0 ? LONG_STEP : 1;
  const QPoint ptFrom = m_ptPixel.x() < 0 ? m_imgPicture.rect().center() : m_ptPixel;
  const QPoint ptTo = ptFrom + ptStep * nLength;
  m_bByKeyboard = true;
  m_transform.Reveal(ptTo);
  SetPixel({std::clamp(ptTo.x(), 0, m_imgPicture.width() - 1), std::clamp(ptTo.y(), 0, m_imgPicture.height() - 1)});
}

} // namespace ffc::host
