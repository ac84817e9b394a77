#include "host/window/viewtransform.h"

#include <algorithm>

namespace ffc::host {
namespace {

/// Along one axis: in the middle when there is room, else without a gap.
double Place(double dOrigin, double dImage, double dView)
{
  return dImage <= dView ? (dView - dImage) / 2 : std::clamp(dOrigin, dView - dImage, 0.0);
}

/// How far an interval of a pixel must move to lie within the view.
double Distance(double dBegin, double dEnd, double dView)
{
  return dBegin < 0 ? -dBegin : dEnd > dView ? dView - dEnd : 0.0;
}

} // namespace

void CViewTransform::SetImageSize(const QSize &size)
{
  if (size != m_sizeImage) {
    m_sizeImage = size;
    Update();
  }
}

void CViewTransform::SetViewSize(const QSize &size)
{
  m_sizeView = size;
  Update();
}

void CViewTransform::Fit()
{
  m_bFitted = true;
  Update();
}

void CViewTransform::ScaleAt(double dScale, const QPointF &ptView)
{
  const QPointF ptImage = ToImage(ptView);
  m_bFitted = false;
  m_dScale = std::clamp(dScale, MIN_SCALE, MAX_SCALE);
  m_ptOrigin = ptView - ptImage * m_dScale;
  Update();
}

void CViewTransform::Pan(const QPointF &ptDistance)
{
  m_ptOrigin += ptDistance;
  Update();
}

void CViewTransform::Reveal(const QPointF &ptImage)
{
  const QPointF ptBegin = ToView(ptImage);
  const QPointF ptEnd = ToView(ptImage + QPointF(1, 1));
  Pan({Distance(ptBegin.x(), ptEnd.x(), m_sizeView.width()), Distance(ptBegin.y(), ptEnd.y(), m_sizeView.height())});
}

QRectF CViewTransform::GetTarget() const
{
  return {m_ptOrigin, QSizeF(m_sizeImage) * m_dScale};
}

void CViewTransform::Update()
{
  if (m_sizeImage.isEmpty() || m_sizeView.isEmpty()) {
    return;
  }
  if (m_bFitted) {
    const double dScale = std::min(static_cast<double>(m_sizeView.width()) / m_sizeImage.width(),
                                   static_cast<double>(m_sizeView.height()) / m_sizeImage.height());
    m_dScale = std::clamp(dScale, MIN_SCALE, MAX_SCALE);
  }
  m_ptOrigin = {Place(m_ptOrigin.x(), m_sizeImage.width() * m_dScale, m_sizeView.width()),
                Place(m_ptOrigin.y(), m_sizeImage.height() * m_dScale, m_sizeView.height())};
}

} // namespace ffc::host
