/// \file
/// Where the image lies, what the status line says, how fast frames come.

#include <gtest/gtest.h>

#include "host/window/correctionstate.h"
#include "host/window/framerate.h"
#include "host/window/viewtransform.h"

using namespace ffc::host;

namespace {

using EKind = SCorrectionState::EKind;

CViewTransform MakeTransform(const QSize &sizeImage, const QSize &sizeView)
{
  CViewTransform transform;
  transform.SetImageSize(sizeImage);
  transform.SetViewSize(sizeView);
  return transform;
}

/// A raw frame of 2048 x 1536 Mono12, with the plug-in there and its preview off.
SCorrectionFacts MakeFacts()
{
  SCorrectionFacts stFacts;
  stFacts.bHasFrame = true;
  stFacts.stShape = {2048, 1536, 0x01100005};
  return stFacts;
}

void ExpectState(const SCorrectionFacts &stFacts, EKind eKind, const char *pText)
{
  const SCorrectionState stState = JudgeCorrection(stFacts);
  EXPECT_EQ(stState.eKind, eKind);
  EXPECT_EQ(stState.strText.toStdString(), pText);
}

} // namespace

TEST(ViewTransform, FitsTheImageInTheMiddle)
{
  CViewTransform transform = MakeTransform({2000, 1000}, {500, 500});
  EXPECT_DOUBLE_EQ(transform.GetScale(), 0.25);
  EXPECT_EQ(transform.GetTarget(), QRectF(0, 125, 500, 250));
  transform.SetViewSize({1000, 500});
  EXPECT_DOUBLE_EQ(transform.GetScale(), 0.5) << "and again when a size changes";
  transform.SetImageSize({100, 100});
  EXPECT_EQ(transform.GetTarget(), QRectF(250, 0, 500, 500));
}

TEST(ViewTransform, ZoomingKeepsThePointUnderTheMouse)
{
  CViewTransform transform = MakeTransform({2000, 1000}, {500, 500});
  const QPointF ptMouse(300, 260);
  transform.ScaleAt(1.0, ptMouse);
  const QPointF ptImage = transform.ToImage(ptMouse);
  transform.ScaleAt(4.0, ptMouse);
  EXPECT_NEAR(transform.ToImage(ptMouse).x(), ptImage.x(), 1e-9);
  EXPECT_NEAR(transform.ToImage(ptMouse).y(), ptImage.y(), 1e-9);
  EXPECT_FALSE(transform.IsFitted());
  transform.ScaleAt(1000.0, ptMouse);
  EXPECT_EQ(transform.GetScale(), CViewTransform::MAX_SCALE);
  transform.ScaleAt(0.0, ptMouse);
  EXPECT_EQ(transform.GetScale(), CViewTransform::MIN_SCALE);
  transform.Fit();
  EXPECT_DOUBLE_EQ(transform.GetScale(), 0.25);
}

TEST(ViewTransform, PanningLeavesNoGap)
{
  CViewTransform transform = MakeTransform({2000, 1000}, {500, 500});
  transform.ScaleAt(1.0, {0, 0});
  transform.Pan({1e6, 1e6});
  EXPECT_EQ(transform.GetTarget().topLeft(), QPointF(0, 0));
  transform.Pan({-1e6, -1e6});
  EXPECT_EQ(transform.GetTarget().bottomRight(), QPointF(500, 500));
}

TEST(ViewTransform, RevealsAPixelBeyondTheEdge)
{
  CViewTransform transform = MakeTransform({2000, 1000}, {500, 500});
  transform.ScaleAt(2.0, {0, 0});
  transform.Reveal({1999, 999});
  EXPECT_EQ(transform.ToView({2000, 1000}), QPointF(500, 500));
  transform.Reveal({0, 999});
  EXPECT_EQ(transform.ToView({0, 1000}), QPointF(0, 500)) << "no farther than needed";
}

TEST(CorrectionState, IsNeverSilentAboutAFrameThatShouldBeCorrected)
{
  ExpectState({}, EKind::NoFrame, "no frame yet");
  SCorrectionFacts stFacts = MakeFacts();
  ExpectState(stFacts, EKind::Raw, "raw (preview is off)");
  stFacts.bPreview = true;
  ExpectState(stFacts, EKind::NotCorrected,
              "NOT corrected: preview is on, but the plug-in wrote no image; acquire and execute again");
  stFacts.bCorrected = true;
  ExpectState(stFacts, EKind::Corrected, "corrected");
  stFacts = MakeFacts();
  stFacts.bByCamera = true;
  ExpectState(stFacts, EKind::Corrected, "corrected by the camera");
}

TEST(CorrectionState, SaysWhyAFrameIsNotCorrected)
{
  SCorrectionFacts stFacts = MakeFacts();
  stFacts.strPluginError = "no such file";
  ExpectState(stFacts, EKind::NotCorrected, "NOT corrected: no such file");

  stFacts = MakeFacts();
  stFacts.nStatus = -3;
  stFacts.strStatusText = "Invalid input param";
  ExpectState(stFacts, EKind::NotCorrected, "NOT corrected: Invalid input param (-3)");

  stFacts = MakeFacts();
  stFacts.bAcquiring = true;
  ExpectState(stFacts, EKind::NotCorrected, "NOT corrected: the plug-in is taking frames");
  stFacts.bWithheld = true;
  ExpectState(stFacts, EKind::NotCorrected, "NOT corrected: acquisition cancelled, the plug-in still waits for frames");
}

TEST(CorrectionState, NamesAnotherSizeOrFormatAlthoughThePlugInHasSwitchedItsPreviewOff)
{
  SCorrectionFacts stFacts = MakeFacts();
  stFacts.stCorrectedShape = stFacts.stShape;
  ExpectState(stFacts, EKind::Raw, "raw (preview is off)");
  stFacts.stShape = {1024, 768, 0x01080001};
  ExpectState(stFacts, EKind::NotCorrected,
              "NOT corrected: the frame is 1024 x 768 Mono8, the coefficients are for 2048 x 1536 Mono12: "
              "acquire anew or load a file");
  EXPECT_EQ((SFrameShape{4, 2, 0xAB}).GetText().toStdString(), "4 x 2 0x000000ab");
  for (const SFrameShape &stOther : {SFrameShape{5, 2, 0xAB}, {4, 3, 0xAB}, {4, 2, 0xAC}}) {
    EXPECT_FALSE((SFrameShape{4, 2, 0xAB}) == stOther);
  }
}

TEST(CorrectionState, AFormatThatIsNoSensorsIsNamedAndNeverCorrected)
{
  SCorrectionFacts stFacts = MakeFacts();
  stFacts.stShape.nPixelFormat = 0x02180014;
  stFacts.bPreview = true;
  ExpectState(stFacts, EKind::NotCorrected,
              "NOT corrected: frames of the format RGB8 cannot be corrected, choose a mono or Bayer format");
  stFacts.stShape.nPixelFormat = 0x026000C0;
  ExpectState(stFacts, EKind::NotCorrected,
              "NOT corrected: frames of the format Coord3D_ABC32f cannot be corrected, choose a mono or Bayer format");
  EXPECT_EQ((SFrameShape{4, 2, 0x0210001F}).GetText().toStdString(), "4 x 2 YUV422_8_UYVY");
}

TEST(FrameRate, CountsOverHalfSeconds)
{
  CFrameRate rate;
  EXPECT_EQ(rate.Update(100, 1000), 0);
  EXPECT_EQ(rate.Update(110, 1400), 0) << "too early to tell";
  EXPECT_DOUBLE_EQ(rate.Update(115, 1500), 30);
  EXPECT_DOUBLE_EQ(rate.Update(120, 1600), 30) << "stands until the next half second is over";
  EXPECT_DOUBLE_EQ(rate.Update(115, 2100), 0) << "another stream";
  EXPECT_DOUBLE_EQ(rate.Update(3, 2700), 0) << "its count begins anew";
  EXPECT_DOUBLE_EQ(rate.Update(13, 3200), 20);
  rate.Reset();
  EXPECT_EQ(rate.Update(7, 3000), 0);
}
