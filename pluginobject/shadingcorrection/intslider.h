/// \file
/// A slider that moves in fixed steps.
#pragma once

#include <QSlider>

/// A slider on which each wheel turn and each click moves the value by 10, towards the turn or the
/// click. A press on the handle drags it as usual. For forms that promote a slider to it.
class CIntSlider : public QSlider {
  Q_OBJECT

public:
  using QSlider::QSlider;

protected:
  void wheelEvent(QWheelEvent *pEvent) override;
  /// Sets the page step to 0, so that the base class does not move by pages as well.
  void mousePressEvent(QMouseEvent *pEvent) override;
};
