#include "host/viewer/cameratexts.h"

#include <gtest/gtest.h>

#include "camera/software/simulated/simulatedcamera.h"
#include "host/viewer/featuretext.h"

using ffc::camera::SFeatureNote;
using ffc::camera::SFrameLosses;
using namespace ffc::host;

TEST(CameraTexts, EachNoteIsASentenceWithTheNamesOfBothFeatures)
{
  using EKind = SFeatureNote::EKind;
  const QStringList listTexts = DescribeFeatureNotes({{EKind::Aliased, "Gain", "GainRaw in raw steps"},
                                                      {EKind::Supplied, "TriggerMode", "Off"},
                                                      {EKind::Hidden, "PixelColorFilter", "it names none"},
                                                      {EKind::Guessed, "PixelFormat", "By the size."},
                                                      {EKind::Missing, "ExposureTime", "there is none"}});
  EXPECT_EQ(listTexts.join(QLatin1Char('\n')).toStdString(),
            "Gain is the camera's GainRaw in raw steps.\n"
            "TriggerMode is always Off: the camera has none.\n"
            "PixelColorFilter is kept from the plug-in: it names none.\n"
            "PixelFormat is guessed. By the size.\n"
            "ExposureTime is missing, so that no flat field can be taken: there is none.");
}

TEST(CameraTexts, TriggersThatAreOnAreNamedWithTheirSource)
{
  ffc::camera::SSimulatedCameraOptions stOptions;
  stOptions.nWidth = 64;
  stOptions.nHeight = 64;
  const auto pCamera = ffc::camera::CreateSimulatedCamera(stOptions).GetValue();
  EXPECT_EQ(DescribeTriggers(*pCamera), "");
  dynamic_cast<GenApi::IValue &>(*pCamera->GetDeviceNodeMap()->GetNode("TriggerMode")).FromString("On");
  const QString strSource = QString::fromStdString(ReadFeature(*pCamera->GetDeviceNodeMap(), "TriggerSource"));
  const QString strTriggers = DescribeTriggers(*pCamera);
  EXPECT_FALSE(strTriggers.isEmpty());
  EXPECT_TRUE(strSource.isEmpty() || strTriggers.contains("(" + strSource + ")")) << strTriggers.toStdString();
}

TEST(CameraTexts, LossesSayHowManyFramesAndWhy)
{
  EXPECT_EQ(DescribeLosses({}).toStdString(), "");
  SFrameLosses stLosses;
  stLosses.nIncomplete = 3;
  stLosses.nNeverSeen = 2;
  stLosses.nMissingPackets = 7;
  EXPECT_EQ(DescribeLosses(stLosses).toStdString(), "Frames lost: 5 (3 incomplete, 2 never seen, 7 packets missing)");
  SFrameLosses stOther;
  stOther.nWithoutRoom = 1;
  stOther.nOverwritten = 10;
  stOther.nUnusable = 100;
  stOther.nResentPackets = 4;
  stLosses += stOther;
  EXPECT_EQ(stLosses.GetFrames(), 116U);
  EXPECT_NE(DescribeLosses(stLosses).indexOf(QStringLiteral("1 without a free buffer, 10 given up for newer ones, 100 "
                                                            "in a format that cannot be received, 7 packets missing, 4 "
                                                            "packets sent again")),
            -1);
}
