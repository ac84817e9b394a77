/// \file
/// Looking at the image: stretch, raw beside corrected, regions, lines, over-exposure, exposure; and the look itself.

#include <algorithm>
#include <cmath>

#include <QAction>
#include <QDir>
#include <QDoubleSpinBox>
#include <QMouseEvent>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QSpinBox>
#include <QToolBar>
#include <QToolButton>

#include <qwt_plot.h>
#include <qwt_plot_curve.h>
#include <qwt_plot_spectrogram.h>
#include <qwt_scale_draw.h>
#include <qwt_scale_map.h>
#include <qwt_scale_widget.h>

#include "frames/ifilekind.h"
#include "host/options/cameraopening.h"
#include "host/window/appearance.h"
#include "host/window/blockmapplot.h"
#include "host/window/curveplot.h"
#include "host/window/imageview.h"
#include "tests/host/window/windowfixture.h"

using namespace ffc::host;
using ffc::camera::FindSceneControl;

namespace {

class ViewTools : public WindowFixture {
protected:
  CImageView &GetView() const { return *m_pWindow->findChild<CImageView *>(); }
  bool WaitPicture() const
  {
    return QTest::qWaitFor([this] { return !GetView().GetPicture().isNull(); });
  }
  void Trigger(const char *pText)
  {
    if (QAction *pAction = FindAction(pText)) {
      pAction->trigger();
    }
  }

  void Send(QEvent::Type eType, const QPointF &ptView, Qt::MouseButtons buttons)
  {
    QMouseEvent event(eType, ptView, Qt::LeftButton, buttons, Qt::NoModifier);
    QApplication::sendEvent(&GetView(), &event);
  }
  /// With the left button, in the view's pixels.
  void Drag(const QPointF &ptFrom, const QPointF &ptTo)
  {
    Send(QEvent::MouseButtonPress, ptFrom, Qt::LeftButton);
    Send(QEvent::MouseMove, ptTo, Qt::LeftButton);
    Send(QEvent::MouseButtonRelease, ptTo, Qt::NoButton);
  }
  QPointF ToView(int nColumn, int nLine) const { return GetView().GetTransform().ToView({nColumn + 0.5, nLine + 0.5}); }

  /// Lightest less darkest grey of the picture's middle.
  static int GetSpan(const QImage &imgPicture)
  {
    int nLeast = 255;
    int nMost = 0;
    for (int nX = 0; nX < imgPicture.width(); ++nX) {
      const int nGrey = qGray(imgPicture.pixel(nX, imgPicture.height() / 2));
      nLeast = std::min(nLeast, nGrey);
      nMost = std::max(nMost, nGrey);
    }
    return nMost - nLeast;
  }
};

} // namespace

TEST_F(ViewTools, AStretchIsToldOnTheImageAndLeavesTheFiguresAlone)
{
  ShowWindow();
  ASSERT_TRUE(WaitPicture());
  Press("StartStop");
  EXPECT_EQ(GetView().GetRightLabel().toStdString(), "") << "the full range is no stretch";
  QTest::qWait(50); // the last frame that was under way
  const int nFull = GetSpan(GetView().GetPicture());
  const std::string strFigures = GetText("Overexposed");
  Trigger("Auto");
  EXPECT_GT(GetSpan(GetView().GetPicture()), 2 * nFull);
  EXPECT_TRUE(GetView().GetRightLabel().startsWith("stretched: black ")) << GetView().GetRightLabel().toStdString();
  QTest::qWait(250);
  EXPECT_EQ(GetText("Overexposed"), strFigures);
  Trigger("Fixed");
  QSpinBox *pBlack = Find<QSpinBox>("StretchBlack");
  EXPECT_TRUE(pBlack->isEnabled());
  EXPECT_GT(pBlack->value(), 500) << "from where the automatic one was";
  pBlack->setValue(4000);
  EXPECT_TRUE(GetView().GetRightLabel().startsWith("stretched: black 4000 DN")) << "the user's own grey";
  EXPECT_EQ(qGray(GetView().GetPicture().pixel(0, 0)), 0);
  Trigger("Full range");
  EXPECT_EQ(GetView().GetRightLabel().toStdString(), "");
  EXPECT_EQ(GetSpan(GetView().GetPicture()), nFull);
}

TEST_F(ViewTools, RawStandsBesideCorrectedWithBothHalvesLabelled)
{
  m_stPlugin.strModule = FAKE_MODULE; // inverts every byte
  m_stCamera.strPixelFormat = "BayerRG8";
  ShowWindow();
  ASSERT_TRUE(WaitPicture());
  EXPECT_TRUE(GetView().GetLeftPicture().isNull());
  Key(Qt::Key_B, Qt::ControlModifier);
  ASSERT_TRUE(QTest::qWaitFor([this] { return !GetView().GetLeftPicture().isNull(); }));
  EXPECT_EQ(GetView().GetLeftLabel().toStdString(), "raw");
  EXPECT_EQ(GetView().GetRightLabel().toStdString(), "corrected");
  Press("StartStop");
  Key(Qt::Key_K, Qt::ControlModifier); // bare samples
  const QPoint ptMiddle = GetView().GetPicture().rect().center();
  EXPECT_EQ(qGray(GetView().GetLeftPicture().pixel(ptMiddle)), 255 - qGray(GetView().GetPicture().pixel(ptMiddle)));

  Trigger("Auto");
  const QString strRight = GetView().GetRightLabel().section('\n', 1);
  EXPECT_EQ(GetView().GetLeftLabel().section('\n', 1), strRight) << "both halves alike";
  Trigger("Per image");
  EXPECT_NE(GetView().GetLeftLabel().section('\n', 1), GetView().GetRightLabel().section('\n', 1));

  GetView().SetTool(EImageTool::Region);
  Drag(ToView(100, 80), ToView(131, 95));
  GetView().SetTool(EImageTool::Pan);
  const QStringList listFigures = Find<QLabel>("RegionFigures")->text().split('\n');
  ASSERT_EQ(listFigures.size(), 2) << GetText("RegionFigures");
  const auto GetRed = [](const QString &strFigures) {
    return strFigures.section("R: mean ", 1).section(' ', 0, 0).toDouble();
  };
  EXPECT_TRUE(listFigures[0].startsWith("corrected: Region 32 x 16 px"));
  EXPECT_TRUE(listFigures[1].startsWith("raw: Region 32 x 16 px"));
  EXPECT_NEAR(GetRed(listFigures[0]) + GetRed(listFigures[1]), 255, 0.11) << GetText("RegionFigures");

  const int nDivider = GetView().GetDividerX();
  Send(QEvent::MouseMove, QPointF(nDivider + 2, 100), Qt::NoButton);
  EXPECT_EQ(GetView().cursor().shape(), Qt::SplitHCursor);
  Drag(QPointF(nDivider, 100), QPointF(nDivider - 60, 100));
  EXPECT_NEAR(GetView().GetDividerX(), nDivider - 60, 1);
  GetView().setFocus();
  QTest::keyClick(&GetView(), Qt::Key_Right, Qt::ControlModifier);
  EXPECT_GT(GetView().GetDividerX(), nDivider - 60);
}

TEST_F(ViewTools, WithoutACorrectionTheSplitViewSaysSo)
{
  ShowWindow();
  ASSERT_TRUE(WaitPicture());
  Key(Qt::Key_B, Qt::ControlModifier);
  EXPECT_TRUE(GetView().GetLeftPicture().isNull());
  EXPECT_TRUE(GetView().GetRightLabel().startsWith("No raw image beside it")) << "the half is not called corrected";
}

TEST_F(ViewTools, ADrawnRegionHasMeanAndNoiseAndALineItsProfile)
{
  ShowWindow();
  ASSERT_TRUE(WaitPicture());
  QwtPlot *pProfile = Find<QwtPlot>("LineProfile");
  EXPECT_FALSE(pProfile->isVisible());
  Key(Qt::Key_3, Qt::ControlModifier);
  Drag(ToView(100, 80), ToView(131, 95));
  EXPECT_EQ(GetView().GetMarks().GetRegion(), QRect(100, 80, 32, 16));
  const QRegularExpression noise("noise [2-3][0-9]\\.[0-9]* DN, deviation [3-5]"); // shot noise at some 2900 DN
  EXPECT_TRUE(QTest::qWaitFor([&] {
    const QString strFigures = Find<QLabel>("RegionFigures")->text();
    return strFigures.startsWith("Region 32 x 16 px at 100, 80: mean ") && strFigures.contains(noise);
  }))
    << GetText("RegionFigures");
  Key(Qt::Key_4, Qt::ControlModifier);
  Drag(ToView(10, 10), ToView(70, 90));
  EXPECT_TRUE(pProfile->isVisible());
  const auto CountPoints = [pProfile] {
    const QwtPlotItemList listCurves = pProfile->itemList(QwtPlotItem::Rtti_PlotCurve);
    return listCurves.isEmpty() ? 0 : static_cast<int>(static_cast<QwtPlotCurve *>(listCurves[0])->dataSize());
  };
  EXPECT_TRUE(QTest::qWaitFor([&] { return CountPoints() == 81; })) << CountPoints();
  GetView().setFocus();
  QTest::keyClick(&GetView(), Qt::Key_Escape);
  EXPECT_FALSE(pProfile->isVisible());
  EXPECT_FALSE(Find<QLabel>("RegionFigures")->isVisible());
}

TEST_F(ViewTools, OverexposureIsCountedFromAThresholdOfTheUsersOwn)
{
  ShowWindow();
  EXPECT_TRUE(WaitText("Overexposed", "Over-exposed: 0.00 %"));
  FindSceneControl(GetCamera())->SetIllumination(1.25); // some 90 % of the format's maximum in the middle
  Find<QDoubleSpinBox>("OverexposedFrom")->setValue(80);
  EXPECT_TRUE(QTest::qWaitFor([this] {
    const double dPercent = Find<QLabel>("Overexposed")->text().section(' ', 1, 1).toDouble();
    return dPercent > 5 && dPercent < 95;
  }))
    << GetText("Overexposed");
}

TEST_F(ViewTools, OneClickExposesTo70Percent)
{
  ShowWindow();
  ASSERT_TRUE(WaitPicture());
  auto *pExposure = dynamic_cast<GenApi::IFloat *>(GetCamera().GetDeviceNodeMap()->GetNode("ExposureTime"));
  pExposure->SetValue(1500);
  QTest::qWait(100);
  QDoubleSpinBox *pField = Find<QDoubleSpinBox>("ExposureTime");
  pField->setFocus();
  Press("Expose");
  // The middle lies at 72 % with 10000 microseconds.
  EXPECT_TRUE(QTest::qWaitFor([&] { return std::abs(pExposure->GetValue() - 9700) < 700; }, 5000))
    << pExposure->GetValue();
  EXPECT_TRUE(QTest::qWaitFor([&] { return std::abs(pField->value() - pExposure->GetValue()) < 1; }))
    << "the field with the focus shows what the camera has, too: " << pField->value();
  EXPECT_FALSE(Find<QLabel>("CameraError")->isVisible()) << GetText("CameraError");
  Press("StartStop");
  Press("StartStop");
  FindSceneControl(GetCamera())->SetLensCap(true);
  QTest::qWait(100);
  Press("Expose");
  EXPECT_TRUE(WaitText("CameraError", "The longest exposure reaches ")) << GetText("CameraError");
}

TEST_F(ViewTools, LockedPlotsKeepTheirScalesAndRawProfilesAreDashed)
{
  m_stPlugin.strModule = FAKE_MODULE;
  m_stCamera.strPixelFormat = "BayerRG8";
  ShowWindow();
  QwtPlot *pRow = Find<QwtPlot>("RowProfile");
  const auto CountDashed = [pRow] {
    int nDashed = 0;
    for (QwtPlotItem *pItem : pRow->itemList(QwtPlotItem::Rtti_PlotCurve)) {
      nDashed += static_cast<QwtPlotCurve *>(pItem)->pen().style() == Qt::DashLine ? 1 : 0;
    }
    return nDashed;
  };
  EXPECT_TRUE(QTest::qWaitFor([&] { return CountDashed() == 3; })) << "one for each colour";
  Key(Qt::Key_R, Qt::ControlModifier);
  EXPECT_TRUE(QTest::qWaitFor([&] { return CountDashed() == 0; }));
  Key(Qt::Key_L, Qt::ControlModifier);
  const double dTop = pRow->axisInterval(QwtPlot::yLeft).maxValue();
  FindSceneControl(GetCamera())->SetIllumination(0.2);
  QSignalSpy spy(m_pWindow.get(), &CMainWindow::SigPlotted);
  ASSERT_TRUE(QTest::qWaitFor([&] { return spy.count() >= 3; }));
  EXPECT_EQ(pRow->axisInterval(QwtPlot::yLeft).maxValue(), dTop);
  Key(Qt::Key_L, Qt::ControlModifier);
  EXPECT_TRUE(QTest::qWaitFor([&] { return pRow->axisInterval(QwtPlot::yLeft).maxValue() != dTop; }));
}

TEST_F(ViewTools, TheBlockMapHasTheImagesAspectAndItsUpperLineOnTop)
{
  ShowWindow();
  QSignalSpy spy(m_pWindow.get(), &CMainWindow::SigPlotted);
  ASSERT_TRUE(QTest::qWaitFor([&] { return spy.count() >= 2; }));
  const QwtPlot &map = *Find<QwtPlot>("BlockMap");
  const QwtScaleMap mapX = map.canvasMap(QwtPlot::xBottom);
  const QwtScaleMap mapY = map.canvasMap(QwtPlot::yLeft);
  const double dWide = mapX.transform(1) - mapX.transform(0);
  const double dHigh = mapY.transform(1) - mapY.transform(0);
  EXPECT_GT(dHigh, 0) << "line 1 lies below line 0";
  EXPECT_NEAR(dWide, dHigh, 0.15 * dHigh);
  // 256 x 192 pixels in blocks of 32: the axes end where the image does, and so does what is drawn on.
  EXPECT_EQ(map.axisInterval(QwtPlot::xBottom), QwtInterval(0, 8));
  EXPECT_EQ(map.axisInterval(QwtPlot::yLeft).normalized(), QwtInterval(0, 6));
  EXPECT_NEAR(map.canvas()->width(), 8 * dWide, 3);
  EXPECT_NEAR(map.canvas()->height(), 6 * dHigh, 3);
  const QRect rcAxis = map.axisWidget(QwtPlot::xBottom)->geometry();
  EXPECT_TRUE(map.contentsRect().contains(rcAxis));
  EXPECT_NEAR(rcAxis.top(), map.canvas()->geometry().bottom(), 3);
  EXPECT_NEAR(map.axisWidget(QwtPlot::yRight)->geometry().left(), map.canvas()->geometry().right(), 3);
}

TEST_F(ViewTools, PlotsFollowTheLook)
{
  ApplyLook(ELook::Light);
  ShowWindow();
  const QwtPlot &plot = *Find<QwtPlot>("RowProfile");
  const QToolButton *pMore = Find<QToolBar>("ViewTools")->findChild<QToolButton *>("qt_toolbar_ext_button");
  ASSERT_NE(pMore, nullptr);
  const auto CountLight = [pMore] { // opaque pixels of the arrow
    const QImage imgArrow = pMore->icon().pixmap(12).toImage();
    int nLight = 0;
    for (int nPixel = 0; nPixel < imgArrow.width() * imgArrow.height(); ++nPixel) {
      const QColor clrPixel = imgArrow.pixelColor(nPixel % imgArrow.width(), nPixel / imgArrow.width());
      nLight += clrPixel.alpha() > 128 && clrPixel.lightness() > 150 ? 1 : 0;
    }
    return nLight;
  };
  EXPECT_GT(plot.canvasBackground().color().lightness(), 200);
  EXPECT_EQ(CountLight(), 0);
  Trigger("Dark, as the dialog");
  EXPECT_TRUE(QTest::qWaitFor([&] { return plot.canvasBackground().color().lightness() < 60; }));
  for (const char *pPlane : {"R", "G", "B", "Mono"}) {
    EXPECT_GT(GetPlaneColor(QLatin1String(pPlane), plot.palette()).lightness(), 150) << pPlane;
  }
  QLabel warning;
  SetWarning(warning, true);
  EXPECT_GT(warning.palette().color(QPalette::WindowText).lightness(), 150);
  EXPECT_GT(CountLight(), 6) << "what has no room in a tool bar is found";
  EXPECT_LT(m_pWindow->palette().color(QPalette::Window).lightness(), 60);
  EXPECT_EQ(RestoreLook(), ELook::AsDialog) << "and remembers it";
  Trigger("As the desktop");
  EXPECT_EQ(RestoreLook(), ELook::AsDesktop);
}

TEST(BlockMap, OfNoBlocksIsEmptyAndLargeNumbersAreShort)
{
  CBlockMapPlot plot(nullptr);
  ffc::quality::SBlockMeans stBlocks;
  stBlocks.nColumns = 2;
  stBlocks.nLines = 1;
  stBlocks.listMeans = {90, 110};
  plot.SetBlocks(stBlocks);
  auto *pMap = static_cast<QwtPlotSpectrogram *>(plot.itemList(QwtPlotItem::Rtti_PlotSpectrogram).value(0));
  ASSERT_NE(pMap, nullptr);
  EXPECT_NE(pMap->data(), nullptr);
  plot.SetBlocks({});
  EXPECT_EQ(pMap->data(), nullptr);
  const QwtScaleDraw &scale = *plot.axisScaleDraw(QwtPlot::yLeft);
  EXPECT_EQ(scale.label(-2.5e6).text().toStdString(), "-2.5M");
  EXPECT_EQ(scale.label(12000).text().toStdString(), "12k");
  EXPECT_EQ(scale.label(9999).text().toStdString(), "9999");
}

TEST_F(ViewTools, ColourIsOfferedForMosaicsOnly)
{
  ShowWindow();
  ASSERT_TRUE(WaitPicture());
  EXPECT_FALSE(FindAction("Colour")->isVisible());
  m_stCamera.strPixelFormat = "BayerRG8";
  ShowWindow();
  ASSERT_TRUE(WaitPicture());
  EXPECT_TRUE(FindAction("Colour")->isVisible());
}

TEST_F(ViewTools, RecordedFramesOfferNoSettingsThatDoNothing)
{
  const ffc::frames::SLayout stLayout{64, 48, 1};
  const std::vector<uint8_t> listFrame(stLayout.GetFrameSize(), 90);
  const QString strFolder = m_folder.filePath("recorded");
  ASSERT_TRUE(QDir().mkpath(strFolder));
  for (const char *pName : {"dark_1", "dark_2", "bright_1", "bright_2"}) {
    const QString strPath = QStringLiteral("%1/%2.png").arg(strFolder, QLatin1String(pName));
    ASSERT_EQ(ffc::frames::SaveFrame(strPath, stLayout, listFrame.data()).GetError(), "");
  }
  m_stCamera.strReplayFolder = strFolder.toStdString();
  m_stCamera.strPixelFormat = "Mono8";
  ShowWindow(OpenCamera);
  for (const char *pName : {"ExposureTime", "Expose", "Gain", "BlackLevel", "Width", "OffsetX"}) {
    EXPECT_FALSE(Find<QWidget>(pName)->isVisible()) << pName;
  }
  EXPECT_TRUE(Find<QWidget>("PixelFormat")->isVisible());
}

TEST_F(ViewTools, ACameraWithARegionOfInterestHasItsOffset)
{
  ShowWindow();
  EXPECT_TRUE(Find<QWidget>("OffsetX")->isVisible());
  EXPECT_FALSE(Find<QWidget>("BinningHorizontal")->isVisible()) << "which this camera has not";
  Press("StartStop");
  Find<QSpinBox>("Width")->setValue(128);
  Find<QSpinBox>("OffsetX")->setMaximum(128); // until the panel looks again
  Find<QSpinBox>("OffsetX")->setValue(64);
  EXPECT_EQ(dynamic_cast<GenApi::IInteger *>(GetCamera().GetDeviceNodeMap()->GetNode("OffsetX"))->GetValue(), 64);
}

TEST_F(ViewTools, TheTabKeyGoesFromTheExposureToStopToTheDialogToThePlots)
{
  ShowWindow();
  EXPECT_EQ(QApplication::focusWidget()->objectName().toStdString(), "ExposureTime");
  QStringList listOrder;
  QWidget *pWidget = QApplication::focusWidget();
  for (int nStep = 0; nStep < 200; ++nStep, pWidget = pWidget->nextInFocusChain()) {
    listOrder << pWidget->objectName();
  }
  int nBefore = 0;
  for (const char *pName : {"ExposureTime", "Expose", "Gain", "Width", "StartStop", "LensCap", "ShowDialog", "Tabs"}) {
    const int nPlace = listOrder.indexOf(QLatin1String(pName), 0);
    EXPECT_GE(nPlace, nBefore) << pName;
    nBefore = nPlace;
  }
}
