#include "pluginobject/shadingcorrection/intslider.h"

#include <QMouseEvent>
#include <QWheelEvent>

namespace {

constexpr int STEP = 10;

// \return nValue one step up for a difference of at least 1, else one step down
int StepTowards(int nValue, int nDifference)
{
  return nDifference < 1 ? nValue - STEP : nValue + STEP;
}

} // namespace

void CIntSlider::wheelEvent(QWheelEvent *pEvent)
{
  // A wheel that is turned sideways counts as well.
  const QPoint delta = pEvent->angleDelta();
  setValue(StepTowards(value(), qAbs(delta.x()) > qAbs(delta.y()) ? delta.x() : delta.y()));
  pEvent->accept();
}

void CIntSlider::mousePressEvent(QMouseEvent *pEvent)
{
  setPageStep(0);
  QSlider::mousePressEvent(pEvent);
  const double dPart = static_cast<double>(pEvent->x()) / width();
  const int nClicked = static_cast<int>(minimum() + (static_cast<double>(maximum()) - minimum()) * dPart);
  const int nValue = isSliderDown() ? value() : StepTowards(value(), nClicked - value());
  // The base class remembers by itself which part was pressed, so a grabbed handle still drags.
  setSliderDown(false);
  setValue(nValue);
}
