/// \file
/// Where an image lies in the view that shows it.
#pragma once

#include <QPointF>
#include <QRectF>
#include <QSize>

namespace ffc::host {

/// Scale and place of an image in a view: fitted to it, or at a scale of the user's own. An image smaller than the
/// view lies in its middle; a larger one never leaves a gap at an edge.
class CViewTransform {
public:
  /// View pixels per image pixel.
  static constexpr double MIN_SCALE = 1.0 / 32;
  static constexpr double MAX_SCALE = 64.0;

  void SetImageSize(const QSize &size);
  void SetViewSize(const QSize &size);

  /// As large as the view allows, and so again whenever a size changes.
  void Fit();
  /// At a scale, with the image's point under a point of the view kept there.
  void ScaleAt(double dScale, const QPointF &ptView);
  void Pan(const QPointF &ptDistance);
  /// Moves the image as little as needed to bring one of its pixels into view.
  void Reveal(const QPointF &ptImage);

  bool IsFitted() const { return m_bFitted; }
  double GetScale() const { return m_dScale; }
  /// The image's rectangle in the view; empty without an image.
  QRectF GetTarget() const;
  QPointF ToImage(const QPointF &ptView) const { return (ptView - m_ptOrigin) / m_dScale; }
  QPointF ToView(const QPointF &ptImage) const { return ptImage * m_dScale + m_ptOrigin; }

private:
  void Update();

  QSize m_sizeImage;
  QSize m_sizeView;
  double m_dScale = 1.0;
  QPointF m_ptOrigin; ///< the image's upper left corner in the view
  bool m_bFitted = true;
};

} // namespace ffc::host
