/// \file
/// The live image.
#pragma once

#include <QImage>
#include <QWidget>

#include "host/window/viewtransform.h"

namespace ffc::host {

/// Shows a picture fitted or at a scale: the wheel zooms at the mouse, dragging pans, arrow keys move the pixel that
/// is read (Shift: by ten), + and - zoom.
class CImageView : public QWidget {
  Q_OBJECT

public:
  explicit CImageView(QWidget *pParent = nullptr);

  void SetPicture(const QImage &imgPicture);
  const QImage &GetPicture() const { return m_imgPicture; }
  const CViewTransform &GetTransform() const { return m_transform; }
  /// The pixel that is read; outside the image: none.
  QPoint GetPixel() const { return m_ptPixel; }

  QSize sizeHint() const override { return {720, 540}; }
  QSize minimumSizeHint() const override { return {320, 240}; }

public slots:
  void SlotFit();
  void SlotOneToOne();
  void SlotZoomIn();
  void SlotZoomOut();

signals:
  /// The pixel that is read, or another scale.
  void SigViewChanged();

protected:
  void paintEvent(QPaintEvent *pEvent) override;
  void resizeEvent(QResizeEvent *pEvent) override;
  void wheelEvent(QWheelEvent *pEvent) override;
  void mousePressEvent(QMouseEvent *pEvent) override;
  void mouseMoveEvent(QMouseEvent *pEvent) override;
  void mouseDoubleClickEvent(QMouseEvent *pEvent) override;
  void leaveEvent(QEvent *pEvent) override;
  void keyPressEvent(QKeyEvent *pEvent) override;

private:
  void Scale(double dFactor, const QPointF &ptView);
  void SetPixel(const QPoint &ptPixel);
  void Changed();

  QImage m_imgPicture;
  CViewTransform m_transform;
  QPoint m_ptPixel{-1, -1};
  bool m_bByKeyboard = false; ///< the pixel was chosen with the arrow keys, and is marked
  QPointF m_ptDrag;
};

} // namespace ffc::host
