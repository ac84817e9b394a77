#include "host/viewer/settingsrescue.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include "camera/software/simulated/simulatedcamera.h"
#include "host/viewer/featuretext.h"

using namespace ffc::host;

TEST(SettingsRescue, BringsTheUsersSetBackAndListsWhatChangedUnlessTheCameraStreams)
{
  const QTemporaryDir dir;
  ffc::camera::SSimulatedCameraOptions stOptions;
  stOptions.nWidth = 64;
  stOptions.nHeight = 64;
  stOptions.eMode = ffc::camera::ECorrectionMode::FlatField;
  stOptions.strFlashFile = dir.filePath("camera.flash").toStdString();
  const auto pCamera = ffc::camera::CreateSimulatedCamera(stOptions).GetValue();
  GenApi::INodeMap &nodeMap = *pCamera->GetDeviceNodeMap();
  CSettingsRescue rescue(nodeMap);
  ASSERT_TRUE(rescue.IsPossible());
  const std::string strGain = ReadFeature(nodeMap, "Gain");
  const std::string strSelected = ReadFeature(nodeMap, "UserSetSelector");
  dynamic_cast<GenApi::IValue &>(*nodeMap.GetNode("Gain")).FromString("3");
  ASSERT_EQ(pCamera->Start().GetError(), "");
  EXPECT_NE(rescue.Restore().GetError(), "") << "user sets cannot be switched while frames come";
  EXPECT_EQ(ReadFeature(nodeMap, "UserSetSelector"), strSelected);
  pCamera->Stop();
  EXPECT_NE(ReadFeature(nodeMap, "Gain"), strGain);
  const ffc::Result<QStringList> changes = rescue.Restore();
  ASSERT_EQ(changes.GetError(), "");
  EXPECT_EQ(changes.GetValue().filter("Gain: 3").size(), 1) << changes.GetValue().join(' ').toStdString();
  EXPECT_EQ(ReadFeature(nodeMap, "Gain"), strGain);
  EXPECT_EQ(ReadFeature(nodeMap, "UserSetSelector"), strSelected);
}
