/// \file
/// The live image.
#pragma once

#include <QImage>
#include <QString>
#include <QWidget>

#include "host/window/imagemarks.h"
#include "host/window/viewtransform.h"

namespace ffc::host {

/// Shows a picture fitted or at a scale: the wheel zooms at the mouse, dragging pans, arrow keys move the pixel that
/// is read (Shift: by ten), + and - zoom. With a second picture, that one stands left of a divider, which the mouse
/// drags and Ctrl with an arrow key moves. With a tool, dragging marks a region or a line; Escape clears both.
class CImageView : public QWidget {
  Q_OBJECT

public:
  explicit CImageView(QWidget *pParent = nullptr);

  void SetPicture(const QImage &imgPicture);
  const QImage &GetPicture() const { return m_imgPicture; }
  /// What stands left of the divider, of the picture's size; null: the picture has the whole view.
  void SetLeftPicture(const QImage &imgLeft);
  const QImage &GetLeftPicture() const { return m_imgLeft; }
  /// What stands upon the pictures; empty: nothing.
  void SetLabels(const QString &strLeft, const QString &strRight);
  const QString &GetLeftLabel() const { return m_strLeft; }
  const QString &GetRightLabel() const { return m_strRight; }
  /// The divider's place in the view.
  int GetDividerX() const { return qRound(width() * m_dDivider); }
  void SetTool(EImageTool eTool);
  const CImageMarks &GetMarks() const { return m_marks; }
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
  /// Another region or line, or none any more.
  void SigMarked();

protected:
  void paintEvent(QPaintEvent *pEvent) override;
  void resizeEvent(QResizeEvent *pEvent) override;
  void wheelEvent(QWheelEvent *pEvent) override;
  void mousePressEvent(QMouseEvent *pEvent) override;
  void mouseReleaseEvent(QMouseEvent *pEvent) override;
  void mouseMoveEvent(QMouseEvent *pEvent) override;
  void mouseDoubleClickEvent(QMouseEvent *pEvent) override;
  void leaveEvent(QEvent *pEvent) override;
  void keyPressEvent(QKeyEvent *pEvent) override;

private:
  void Scale(double dFactor, const QPointF &ptView);
  void SetPixel(const QPoint &ptPixel);
  void Changed();
  void PaintSplit(QPainter &painter) const;
  void PaintLabels(QPainter &painter) const;
  bool IsAtDivider(const QPointF &ptView) const;
  void MoveDivider(double dPlace);
  QPoint ToPixel(const QPointF &ptView) const;
  void ShowCursor(const QPointF &ptView);

  QImage m_imgPicture;
  QImage m_imgLeft;
  QString m_strLeft;
  QString m_strRight;
  double m_dDivider = 0.5; ///< share of the view's width that is left of it
  bool m_bDividing = false;
  CImageMarks m_marks;
  CViewTransform m_transform;
  QPoint m_ptPixel{-1, -1};
  bool m_bByKeyboard = false; ///< the pixel was chosen with the arrow keys, and is marked
  QPointF m_ptDrag;
};

} // namespace ffc::host
