#include "pluginobject/shadingcorrection/intslider.h"

#include <QSignalSpy>
#include <QStyle>
#include <QStyleOptionSlider>
#include <QWheelEvent>
#include <QtTest>

#include <gtest/gtest.h>

#include "tests/pluginobject/shadingcorrection/mousemove.h"

namespace {

// A shown horizontal slider from 0 to 100 at 50 that knows where its handle is.
class CSliderUnderTest : public CIntSlider {
public:
  CSliderUnderTest() : CIntSlider(Qt::Horizontal)
  {
    setRange(0, 100);
    setValue(50);
    resize(400, 30);
    show();
  }

  QPoint GetHandleCentre() const
  {
    QStyleOptionSlider option;
    initStyleOption(&option);
    return style()->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, this).center();
  }

  QPoint GetPointAt(double dPart) const { return {static_cast<int>(dPart * width()), GetHandleCentre().y()}; }
};

// \return whether the slider accepted the turn
bool TurnWheel(QWidget &widget, QPoint delta)
{
  const QPointF posMiddle = widget.rect().center();
  QWheelEvent event(posMiddle, widget.mapToGlobal(posMiddle.toPoint()), QPoint(), delta, Qt::NoButton, Qt::NoModifier,
                    Qt::NoScrollPhase, false);
  event.ignore();
  QApplication::sendEvent(&widget, &event);
  return event.isAccepted();
}

bool TurnWheel(QWidget &widget, int nDelta)
{
  return TurnWheel(widget, QPoint(0, nDelta));
}

TEST(IntSlider, AWheelTurnedSidewaysMovesTheValueToo)
{
  CSliderUnderTest slider;
  EXPECT_TRUE(TurnWheel(slider, QPoint(120, 0)));
  EXPECT_EQ(slider.value(), 60);
  EXPECT_TRUE(TurnWheel(slider, QPoint(-120, 10)));
  EXPECT_EQ(slider.value(), 50);
  EXPECT_TRUE(TurnWheel(slider, QPoint(-10, 120)));
  EXPECT_EQ(slider.value(), 60);
}

TEST(IntSlider, AWheelTurnMovesTheValueByTen)
{
  CSliderUnderTest slider;
  EXPECT_TRUE(TurnWheel(slider, 120));
  EXPECT_EQ(slider.value(), 60);
  EXPECT_TRUE(TurnWheel(slider, -120));
  EXPECT_TRUE(TurnWheel(slider, -1));
  EXPECT_EQ(slider.value(), 40);
  EXPECT_TRUE(TurnWheel(slider, 1));
  EXPECT_EQ(slider.value(), 50);
}

TEST(IntSlider, AWheelEventWithoutTurnMovesTheValueDown)
{
  CSliderUnderTest slider;
  TurnWheel(slider, 0);
  EXPECT_EQ(slider.value(), 40);
}

TEST(IntSlider, AWheelTurnAtAnEndLeavesTheValueThereAndIsAccepted)
{
  CSliderUnderTest slider;
  slider.setValue(100);
  EXPECT_TRUE(TurnWheel(slider, 120));
  EXPECT_EQ(slider.value(), 100);
  slider.setValue(3);
  EXPECT_TRUE(TurnWheel(slider, -120));
  EXPECT_EQ(slider.value(), 0);
}

TEST(IntSlider, AClickStepsByTenTowardsItInsteadOfJumping)
{
  CSliderUnderTest slider;
  QTest::mouseClick(&slider, Qt::LeftButton, Qt::NoModifier, slider.GetPointAt(0.95));
  EXPECT_EQ(slider.value(), 60);
  QTest::mouseClick(&slider, Qt::LeftButton, Qt::NoModifier, slider.GetPointAt(0.05));
  EXPECT_EQ(slider.value(), 50);
}

TEST(IntSlider, AClickTakesThePageStepAway)
{
  CSliderUnderTest slider;
  slider.setPageStep(25);
  QTest::mouseClick(&slider, Qt::LeftButton, Qt::NoModifier, slider.GetPointAt(0.95));
  EXPECT_EQ(slider.pageStep(), 0);
}

TEST(IntSlider, AClickBesideTheHandleAtItsOwnValueStepsDown)
{
  CSliderUnderTest slider;
  slider.setRange(0, 40);
  slider.setValue(20);
  QTest::mouseClick(&slider, Qt::LeftButton, Qt::NoModifier, QPoint(209, slider.GetHandleCentre().y()));
  EXPECT_EQ(slider.value(), 10) << "the integer part of 20.9 is 20, which is no step up";
}

TEST(IntSlider, AClickOneValueAboveStepsUp)
{
  CSliderUnderTest slider;
  slider.setRange(0, 40);
  slider.setValue(20);
  QTest::mouseClick(&slider, Qt::LeftButton, Qt::NoModifier, QPoint(219, slider.GetHandleCentre().y()));
  EXPECT_EQ(slider.value(), 30);
}

TEST(IntSlider, AClickWorksOnARangeThatDoesNotStartAtZero)
{
  CSliderUnderTest slider;
  slider.setRange(-200, -100);
  slider.setValue(-150);
  QTest::mouseClick(&slider, Qt::LeftButton, Qt::NoModifier, slider.GetPointAt(0.2));
  EXPECT_EQ(slider.value(), -160);
  QTest::mouseClick(&slider, Qt::LeftButton, Qt::NoModifier, slider.GetPointAt(0.8));
  EXPECT_EQ(slider.value(), -150);
}

TEST(IntSlider, AClickOnTheHandleDoesNotStep)
{
  CSliderUnderTest slider;
  QSignalSpy spyChanged(&slider, &QSlider::valueChanged);
  QTest::mouseClick(&slider, Qt::LeftButton, Qt::NoModifier, slider.GetHandleCentre());
  EXPECT_EQ(slider.value(), 50);
  EXPECT_EQ(spyChanged.count(), 0);
}

TEST(IntSlider, APressOnTheHandleGrabsIt)
{
  CSliderUnderTest slider;
  const QPoint posHandle = slider.GetHandleCentre();
  QTest::mousePress(&slider, Qt::LeftButton, Qt::NoModifier, posHandle);
  DragMouseTo(slider, slider.mapToGlobal(posHandle + QPoint(80, 0)));
  QTest::mouseRelease(&slider, Qt::LeftButton, Qt::NoModifier, posHandle + QPoint(80, 0));
  EXPECT_GT(slider.value(), 60);
  EXPECT_LT(slider.value(), 80);
  EXPECT_FALSE(slider.isSliderDown());
}

} // namespace
