#include "host/window/imagemarks.h"

#include <algorithm>

namespace ffc::host {
namespace {

const QColor REGION_COLOR(255, 200, 0);
const QColor LINE_COLOR(0, 200, 255);

QRect GetRectBetween(const QPoint &ptFirst, const QPoint &ptSecond)
{
  return {QPoint(std::min(ptFirst.x(), ptSecond.x()), std::min(ptFirst.y(), ptSecond.y())),
          QPoint(std::max(ptFirst.x(), ptSecond.x()), std::max(ptFirst.y(), ptSecond.y()))};
}

} // namespace

void CImageMarks::Begin(const QPoint &ptPixel)
{
  m_ptBegin = ptPixel;
  Extend(ptPixel);
}

void CImageMarks::Extend(const QPoint &ptPixel)
{
  if (m_eTool == EImageTool::Region) {
    m_rcRegion = m_ptBegin == ptPixel ? QRect() : GetRectBetween(m_ptBegin, ptPixel);
  } else if (m_eTool == EImageTool::Line) {
    m_line = {m_ptBegin, ptPixel};
    m_bLine = m_ptBegin != ptPixel;
  }
}

void CImageMarks::Clear()
{
  m_rcRegion = QRect();
  m_bLine = false;
}

void CImageMarks::SetImageSize(const QSize &szImage)
{
  const QRect rcImage(QPoint(0, 0), szImage);
  if (!rcImage.contains(m_rcRegion)) {
    m_rcRegion = QRect();
  }
  m_bLine = m_bLine && rcImage.contains(m_line.p1()) && rcImage.contains(m_line.p2());
}

void CImageMarks::Paint(QPainter &painter, const CViewTransform &transform) const
{
  painter.setBrush(Qt::NoBrush);
  if (!m_rcRegion.isEmpty()) {
    painter.setPen(REGION_COLOR);
    painter.drawRect(
      QRectF(transform.ToView(m_rcRegion.topLeft()), transform.ToView(m_rcRegion.bottomRight() + QPoint(1, 1))));
  }
  if (m_bLine) {
    const QPointF ptMiddle(0.5, 0.5);
    painter.setPen(LINE_COLOR);
    painter.drawLine(transform.ToView(m_line.p1() + ptMiddle), transform.ToView(m_line.p2() + ptMiddle));
  }
}

} // namespace ffc::host
