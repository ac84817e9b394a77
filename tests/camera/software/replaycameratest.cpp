#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>
#include <numeric>
#include <set>
#include <string>
#include <vector>

#include <QDir>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include "camera/iscenecontrol.h"
#include "camera/software/replay/framereplay.h"
#include "camera/software/replay/replaycamera.h"
#include "frames/recordedframes.h"
#include "tests/camera/framecollector.h"

using ffc::camera::CFrameReplay;
using ffc::camera::CreateReplayCamera;
using ffc::camera::FindSceneControl;
using ffc::camera::ICamera;
using ffc::camera::ISceneControl;
using ffc::camera::SReplayCameraOptions;
using ffc::test::CFrameCollector;
using ffc::test::SKeptFrame;

namespace {

// A folder of tiny pictures, each filled with one value.
class CRecordingFolder {
public:
  void Add(const char *pName, QImage::Format eFormat, uint16_t nValue, int nWidth = 6, int nHeight = 4)
  {
    QImage image(nWidth, nHeight, eFormat);
    for (int nY = 0; nY < nHeight; ++nY) {
      for (int nX = 0; nX < nWidth; ++nX) {
        if (eFormat == QImage::Format_Grayscale16) {
          reinterpret_cast<uint16_t *>(image.scanLine(nY))[nX] = nValue;
        } else {
          image.setPixel(nX, nY, qRgb(nValue, nValue, nValue));
        }
      }
    }
    EXPECT_TRUE(image.save(m_dir.filePath(pName), "png")) << pName;
  }

  // nDark dark frames of values 1, 2, ... and nBright bright ones of values 101, 102, ...
  void AddFrames(int nDark, int nBright, QImage::Format eFormat = QImage::Format_Grayscale8)
  {
    for (int n = 0; n < nDark; ++n) {
      Add(QString::asprintf("dark_%03d.png", n).toUtf8().constData(), eFormat, static_cast<uint16_t>(1 + n));
    }
    for (int n = 0; n < nBright; ++n) {
      Add(QString::asprintf("bright_%03d.png", n).toUtf8().constData(), eFormat, static_cast<uint16_t>(101 + n));
    }
  }

  void Remove(const char *pName) { QDir(m_dir.path()).remove(pName); }
  std::string GetPath() const { return m_dir.path().toStdString(); }

private:
  QTemporaryDir m_dir;
};

std::unique_ptr<ICamera> Open(const CRecordingFolder &folder, const std::string &strFormat = {})
{
  auto created = CreateReplayCamera({folder.GetPath(), strFormat, 2000.0});
  EXPECT_EQ(created.GetError(), "");
  std::unique_ptr<ICamera> pCamera = std::move(created).GetValue();
  return pCamera;
}

std::string GetError(const CRecordingFolder &folder, const std::string &strFormat = {})
{
  const auto created = CreateReplayCamera({folder.GetPath(), strFormat, 50.0});
  EXPECT_FALSE(created);
  return created.GetError();
}

std::string GetText(GenApi::INodeMap *pMap, const char *pName)
{
  return dynamic_cast<GenApi::IValue *>(pMap->GetNode(pName))->ToString().c_str();
}

// Bright frames of one pixel each, of values 101, 102, ...
ffc::frames::SRecordedFrames MakeRecording(int nBright)
{
  ffc::frames::SRecordedFrames stFrames;
  for (int n = 0; n < nBright; ++n) {
    stFrames.listBright.push_back({static_cast<uint8_t>(101 + n)});
  }
  return stFrames;
}

int ExposeValue(CFrameReplay &replay)
{
  std::vector<uint8_t> listFrame;
  replay.Expose({}, {}, 0, listFrame);
  return listFrame.at(0);
}

// The values of many frames, after those that the change before may still have missed.
std::vector<int> TakeValues(ffc::test::CFrameCollector &collector, std::size_t nCount)
{
  collector.Take(1);
  std::vector<int> listValues;
  for (const SKeptFrame &stFrame : collector.Take(nCount)) {
    listValues.push_back(stFrame.GetSamples()[0]);
  }
  return listValues;
}

std::set<int> AsSet(const std::vector<int> &listValues)
{
  return {listValues.begin(), listValues.end()};
}

// The real frames, when the machine has them.
std::string FindRealFrames()
{
  const QString strData = qEnvironmentVariable("FFC_TEST_DATA");
  const QString strFolder = strData + "/emva1288_set001";
  return !strData.isEmpty() && QDir(strFolder).exists() ? strFolder.toStdString() : std::string();
}

} // namespace

TEST(ReplayCamera, PlaysBrightFramesInOrderAndRoundAgainFromOneFrameLater)
{
  CFrameReplay replay(MakeRecording(6));
  std::vector<int> listValues;
  for (int n = 0; n < 12; ++n) {
    listValues.push_back(ExposeValue(replay));
  }
  EXPECT_EQ(listValues, (std::vector<int>{101, 102, 103, 102, 103, 101, 103, 101, 102, 101, 102, 103}));
}

TEST(ReplayCamera, AHostThatTakesEveryNthFrameOnlyGetsDifferentFramesAllTheSame)
{
  for (int nStep = 1; nStep <= 10; ++nStep) {
    CFrameReplay replay(MakeRecording(40)); // 20 of them for acquisitions
    std::set<int> setTaken;
    for (int n = 0; n < 16 * nStep; ++n) {
      const int nValue = ExposeValue(replay);
      if (n % nStep == 0) {
        setTaken.insert(nValue);
      }
    }
    EXPECT_GE(setTaken.size(), 14U) << "every " << nStep << " of 20, 16 times";
  }
}

TEST(ReplayCamera, AcquisitionAndMeasurementNeverShareAFrame)
{
  using EPurpose = ISceneControl::EPurpose;
  CRecordingFolder folder;
  folder.AddFrames(4, 5);
  const auto pCamera = Open(folder);
  ffc::test::CFrameCollector collector(*pCamera);
  ISceneControl *pScene = FindSceneControl(*pCamera);
  EXPECT_FALSE(pScene->CanArrange()) << "recorded frames show what they show";
  ASSERT_EQ(pCamera->Start().GetError(), "");
  for (int nRound = 0; nRound < 2; ++nRound) {
    pScene->SetLensCap(false);
    pScene->SetPurpose(EPurpose::Acquisition);
    EXPECT_EQ(AsSet(TakeValues(collector, 10)), (std::set<int>{101, 102, 103}));
    pScene->SetPurpose(EPurpose::Measurement);
    EXPECT_EQ(AsSet(TakeValues(collector, 10)), (std::set<int>{104, 105}));
    pScene->SetLensCap(true);
    EXPECT_EQ(AsSet(TakeValues(collector, 10)), (std::set<int>{3, 4}));
    pScene->SetPurpose(EPurpose::Acquisition);
    EXPECT_EQ(AsSet(TakeValues(collector, 10)), (std::set<int>{1, 2}));
  }
  pCamera->Stop();
}

TEST(ReplayCamera, FilesArePlayedInTheOrderOfTheirNames)
{
  CRecordingFolder folder;
  folder.AddFrames(2, 0);
  folder.Add("bright_b.png", QImage::Format_Grayscale8, 2);
  folder.Add("bright_a.png", QImage::Format_Grayscale8, 1);
  folder.Add("bright_c.png", QImage::Format_Grayscale8, 3);
  folder.Add("other_a.png", QImage::Format_Grayscale8, 9);
  const auto frames = ffc::frames::LoadRecordedFrames(folder.GetPath(), std::nullopt);
  ASSERT_EQ(frames.GetError(), "");
  const auto &stFrames = frames.GetValue();
  ASSERT_EQ(stFrames.listBright.size(), 3U);
  EXPECT_EQ(stFrames.listBright[0][0], 1);
  EXPECT_EQ(stFrames.listBright[1][0], 2);
  EXPECT_EQ(stFrames.listBright[2][0], 3);
}

TEST(ReplayCamera, SixteenBitFilesLoseNoBit)
{
  for (const uint16_t nValue :
       {uint16_t{0}, uint16_t{1}, uint16_t{255}, uint16_t{256}, uint16_t{4095}, uint16_t{40001}, uint16_t{65535}}) {
    CRecordingFolder folder;
    folder.AddFrames(2, 1, QImage::Format_Grayscale16);
    folder.Add("bright_x.png", QImage::Format_Grayscale16, nValue);
    const auto frames = ffc::frames::LoadRecordedFrames(folder.GetPath(), std::nullopt);
    ASSERT_EQ(frames.GetError(), "");
    const auto &stFrames = frames.GetValue();
    EXPECT_EQ(stFrames.stLayout.nBytesPerSample, 2U);
    const auto &listFrame = stFrames.listBright[1];
    ASSERT_EQ(listFrame.size(), 6U * 4U * 2U);
    for (std::size_t n = 0; n < listFrame.size(); n += 2) {
      uint16_t nRead = 0;
      std::memcpy(&nRead, listFrame.data() + n, 2);
      ASSERT_EQ(nRead, nValue);
    }
  }
}

TEST(ReplayCamera, LinesAreTightlyPackedWhateverTheWidth)
{
  CRecordingFolder folder;
  for (const char *pName : {"dark_0.png", "dark_1.png", "bright_0.png", "bright_1.png"}) {
    folder.Add(pName, QImage::Format_Grayscale8, 77, 7, 3); // a picture's lines end at multiples of 4 bytes
  }
  const auto pCamera = Open(folder, "BayerRG8");
  ffc::test::CFrameCollector collector(*pCamera);
  ASSERT_EQ(pCamera->Start().GetError(), "");
  const auto listFrames = collector.Take(1);
  ASSERT_EQ(listFrames.size(), 1U);
  EXPECT_EQ(listFrames[0].listBytes, std::vector<uint8_t>(21, 77));
  EXPECT_EQ(listFrames[0].stInfo.nPixelFormat, 0x01080009U);
  pCamera->Stop();
}

TEST(ReplayCamera, FeaturesDescribeTheRecording)
{
  CRecordingFolder folder;
  folder.AddFrames(2, 2, QImage::Format_Grayscale16);
  const auto pCamera = Open(folder, "BayerGB12");
  GenApi::INodeMap *pDevice = pCamera->GetDeviceNodeMap();
  EXPECT_EQ(GetText(pDevice, "PixelFormat"), "BayerGB12");
  EXPECT_EQ(GetText(pDevice, "PixelColorFilter"), "BayerGB");
  EXPECT_EQ(GetText(pDevice, "Width"), "6");
  EXPECT_EQ(GetText(pDevice, "PayloadSize"), "48");
  EXPECT_EQ(GetText(pCamera->GetOutputNodeMap(), "OutputPayloadSize"), "48");
  EXPECT_EQ(GetText(pDevice, "AcquisitionFrameRate"), "2000");
  EXPECT_THROW(dynamic_cast<GenApi::IInteger *>(pDevice->GetNode("Width"))->SetValue(4), GenICam::OutOfRangeException);
  dynamic_cast<GenApi::IFloat *>(pDevice->GetNode("ExposureTime"))->SetValue(500.0);
  EXPECT_EQ(GetText(pDevice, "ExposureTime"), "500");
}

TEST(ReplayCamera, FiftyFramesPerSecondUnlessSaid)
{
  EXPECT_EQ(SReplayCameraOptions().dFrameRate, 50.0);
}

TEST(ReplayCamera, AFolderThatIsNoneIsNamed)
{
  EXPECT_EQ(CreateReplayCamera({"/no/such/folder", "", 50.0}).GetError(), "There is no folder \"/no/such/folder\".");
}

TEST(ReplayCamera, TooFewFramesOfAKindAreCounted)
{
  CRecordingFolder folder;
  folder.AddFrames(2, 1);
  EXPECT_NE(GetError(folder).find("has 1 frames in \"bright_*\" files; at least 2"), std::string::npos)
    << GetError(folder);
  folder.Remove("dark_000.png");
  EXPECT_NE(GetError(folder).find("has 1 frames in \"dark_*\" files"), std::string::npos) << GetError(folder);
}

TEST(ReplayCamera, WithoutDarkFramesTheLensCannotBeCovered)
{
  CRecordingFolder folder;
  folder.AddFrames(0, 2);
  const auto pCamera = Open(folder);
  ISceneControl *pScene = FindSceneControl(*pCamera);
  EXPECT_FALSE(pScene->CanCover());
  pScene->SetLensCap(true);
  EXPECT_FALSE(pScene->IsLensCapOn());
  ffc::test::CFrameCollector collector(*pCamera);
  ASSERT_EQ(pCamera->Start().GetError(), "");
  EXPECT_EQ(AsSet(TakeValues(collector, 3)), std::set<int>{101});
  pCamera->Stop();
  folder.AddFrames(2, 2);
  EXPECT_TRUE(FindSceneControl(*Open(folder))->CanCover());
}

TEST(ReplayCamera, DepthAndAlignmentThatNobodyStatesAreGuessedAndTheGuessIsTold)
{
  CRecordingFolder folder;
  folder.AddFrames(2, 2, QImage::Format_Grayscale16);
  folder.Add("bright_9.png", QImage::Format_Grayscale16, 4095);
  const auto pRight = Open(folder);
  EXPECT_EQ(GetText(pRight->GetDeviceNodeMap(), "PixelFormat"), "Mono12");
  ASSERT_EQ(pRight->GetFeatureNotes().size(), 1U);
  EXPECT_NE(pRight->GetFeatureNotes()[0].strSource.find("12 bits, right-aligned, because the largest is 4095"),
            std::string::npos);
  EXPECT_TRUE(Open(folder, "Mono16")->GetFeatureNotes().empty()) << "stated";

  CRecordingFolder folderLeft;
  for (const char *pName : {"dark_0.png", "dark_1.png", "bright_0.png", "bright_1.png"}) {
    folderLeft.Add(pName, QImage::Format_Grayscale16, pName[0] == 'd' ? 17 << 4 : 3001 << 4);
  }
  EXPECT_EQ(GetText(Open(folderLeft)->GetDeviceNodeMap(), "DeviceModelName"), "Mono12, left-aligned in its files");
  SReplayCameraOptions stOptions;
  stOptions.strFolder = folderLeft.GetPath();
  stOptions.eAlignment = ffc::frames::EAlignment::Right;
  const auto stated = CreateReplayCamera(stOptions);
  ASSERT_TRUE(stated) << stated.GetError();
  EXPECT_EQ(GetText(stated.GetValue()->GetDeviceNodeMap(), "PixelFormat"), "Mono16");
}

TEST(ReplayCamera, FilesThatDoNotFitTogetherAreNamed)
{
  CRecordingFolder size;
  size.AddFrames(2, 2);
  size.Add("bright_009.png", QImage::Format_Grayscale8, 1, 8, 4);
  EXPECT_NE(GetError(size).find("bright_009.png\" is 8 x 4 with 8 bits per pixel, unlike the first one: 6 x 4"),
            std::string::npos)
    << GetError(size);
  CRecordingFolder depth;
  depth.AddFrames(2, 2);
  depth.Add("bright_009.png", QImage::Format_Grayscale16, 1);
  EXPECT_NE(GetError(depth).find("bright_009.png\" is 6 x 4 with 16 bits"), std::string::npos) << GetError(depth);
}

TEST(ReplayCamera, FilesThatAreNoGreyPicturesAreNamed)
{
  CRecordingFolder color;
  color.AddFrames(2, 2);
  color.Add("bright_009.png", QImage::Format_RGB32, 1);
  EXPECT_NE(GetError(color).find("bright_009.png\" is not a grey picture"), std::string::npos) << GetError(color);
  CRecordingFolder text;
  text.AddFrames(2, 2);
  QFile file(QString::fromStdString(text.GetPath()) + "/dark_x.png");
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.write("no picture");
  file.close();
  EXPECT_NE(GetError(text).find("dark_x.png\" cannot be read"), std::string::npos) << GetError(text);
}

TEST(ReplayCamera, AFileThatEndsEarlyIsNamed)
{
  CRecordingFolder folder;
  for (const char *pName : {"dark_0.png", "dark_1.png", "bright_0.png", "bright_1.png", "bright_009.png"}) {
    folder.Add(pName, QImage::Format_Grayscale8, 200, 64, 64);
  }
  QFile file(QString::fromStdString(folder.GetPath()) + "/bright_009.png");
  ASSERT_TRUE(file.resize(file.size() / 2));
  EXPECT_NE(GetError(folder).find("bright_009.png\" cannot be read"), std::string::npos) << GetError(folder);
}

TEST(ReplayCamera, LeftAlignedSamplesAreShiftedAndTheNameSaysSo)
{
  CRecordingFolder folder;
  for (const char *pName : {"dark_0.png", "dark_1.png", "bright_0.png", "bright_1.png"}) {
    folder.Add(pName, QImage::Format_Grayscale16, pName[0] == 'd' ? 17 << 4 : 3001 << 4);
  }
  const auto pCamera = Open(folder, "Mono12");
  EXPECT_EQ(GetText(pCamera->GetDeviceNodeMap(), "DeviceModelName"), "Mono12, left-aligned in its files");
  ffc::test::CFrameCollector collector(*pCamera);
  ASSERT_EQ(pCamera->Start().GetError(), "");
  EXPECT_EQ(AsSet(TakeValues(collector, 2)), std::set<int>{3001});
  pCamera->Stop();
  folder.Add("bright_2.png", QImage::Format_Grayscale16, 5);
  EXPECT_NE(GetError(folder, "Mono12").find("but Mono12 ends at 4095"), std::string::npos) << "not all are shifted";
}

TEST(ReplayCamera, ValuesBeyondTheFormatAreFound)
{
  CRecordingFolder folder;
  folder.AddFrames(2, 2, QImage::Format_Grayscale16);
  folder.Add("bright_009.png", QImage::Format_Grayscale16, 1024);
  EXPECT_NE(GetError(folder, "Mono10").find("bright_009.png\" holds the value 1024, but Mono10 ends at 1023"),
            std::string::npos)
    << GetError(folder, "Mono10");
  EXPECT_NE(Open(folder, "Mono12"), nullptr);
}

TEST(ReplayCamera, FormatsThatTheFilesDoNotHaveAreRefused)
{
  CRecordingFolder folder;
  folder.AddFrames(2, 2);
  EXPECT_NE(GetError(folder, "Mono12").find("has 8 bits per pixel, which the pixel format Mono12 does not have"),
            std::string::npos)
    << GetError(folder, "Mono12");
  EXPECT_NE(GetError(folder, "RGB8").find("there is no pixel format \"RGB8\""), std::string::npos);
  const auto created = CreateReplayCamera({folder.GetPath(), "", std::nan("")});
  EXPECT_NE(created.GetError().find("frame rate"), std::string::npos);
}

TEST(ReplayCamera, RealFramesHaveTheirPublishedMeans)
{
  const std::string strFolder = FindRealFrames();
  if (strFolder.empty()) {
    GTEST_SKIP() << "the recorded frames are not on this machine";
  }
  const auto frames = ffc::frames::LoadRecordedFrames(strFolder, ffc::frames::SSampleFormat{"Mono12", 12});
  ASSERT_EQ(frames.GetError(), "");
  const auto &stFrames = frames.GetValue();
  EXPECT_EQ(stFrames.stLayout.nWidth, 640U);
  EXPECT_EQ(stFrames.stLayout.nHeight, 480U);
  ASSERT_EQ(stFrames.listDark.size(), 8U);
  ASSERT_EQ(stFrames.listBright.size(), 40U);
  const auto getMean = [](const std::vector<uint8_t> &listBytes) {
    const auto *pSamples = reinterpret_cast<const uint16_t *>(listBytes.data());
    const std::size_t nCount = listBytes.size() / 2;
    return std::accumulate(pSamples, pSamples + nCount, 0.0) / static_cast<double>(nCount);
  };
  EXPECT_NEAR(getMean(stFrames.listBright[0]), 1981.0, 20.0);
  EXPECT_NEAR(getMean(stFrames.listDark[0]), 14.8, 1.0);
}
