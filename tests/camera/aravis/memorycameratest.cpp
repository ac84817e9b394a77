// Cameras without a wire: what is wrong with one is told when it is opened or started, and nothing stays open.
#include "camera/aravis/araviscamera.h"

#include <map>
#include <utility>

#include <gtest/gtest.h>

#include "tests/camera/aravis/memorydevice.h"
#include "tests/camera/framecollector.h"

using ffc::camera::CAravisCamera;
using ffc::camera::CErrorSlot;
using ffc::camera::CObjectPointer;
using ffc::camera::SFeatureNote;
using ffc::camera::SFrameLosses;
using ffc::test::CFrameCollector;
using ffc::test::CMemoryDevice;
using ffc::test::MakeDescription;
using ffc::test::MakeRegister;
using ffc::test::SKeptFrame;

namespace {

using NodeTexts = std::map<std::string, std::string>;

/// The least that a stream needs. AcquisitionStart writes 1 to address 0, AcquisitionStop 1 to address 4.
NodeTexts MakeNodes()
{
  return {
    {"Width", R"(<Integer Name="Width"><Value>16</Value></Integer>)"},
    {"Height", R"(<Integer Name="Height"><Value>16</Value></Integer>)"},
    {"PixelFormat",
     R"(<Enumeration Name="PixelFormat"><EnumEntry Name="Mono8"><Value>17301505</Value></EnumEntry><Value>17301505</Value></Enumeration>)"},
    {"PayloadSize", R"(<Integer Name="PayloadSize"><Value>256</Value></Integer>)"},
    {"AcquisitionStart",
     R"(<Command Name="AcquisitionStart"><pValue>StartReg</pValue><CommandValue>1</CommandValue></Command>)"},
    {"AcquisitionStop",
     R"(<Command Name="AcquisitionStop"><pValue>StopReg</pValue><CommandValue>1</CommandValue></Command>)"},
  };
}

std::string Describe(const NodeTexts &mapNodes)
{
  std::string strNodes;
  for (const auto &stNode : mapNodes) {
    strNodes += stNode.second + "\n";
  }
  return MakeDescription(strNodes + MakeRegister("StartReg", 0) + MakeRegister("StopReg", 4) +
                         MakeRegister("ModeReg", 8) + MakeRegister("FarReg", 0x5000));
}

/// A device with these nodes, and the camera on it.
class CCameraInMemory {
public:
  explicit CCameraInMemory(const NodeTexts &mapNodes) : m_device(Describe(mapNodes))
  {
    auto created = CAravisCamera::Create(m_device.ShareDevice(), "Camera");
    m_strError = created.GetError();
    m_pCamera = created ? std::move(created).GetValue() : nullptr;
  }

  std::string Read(const char *pName)
  {
    return dynamic_cast<GenApi::IValue &>(*m_pCamera->GetDeviceNodeMap()->GetNode(pName)).ToString(true).c_str();
  }
  /// Expects that nothing is left of the try. \return why it could not start
  std::string FailToStart()
  {
    const std::string strError = m_pCamera->Start().GetError();
    EXPECT_FALSE(m_pCamera->IsStreaming());
    EXPECT_EQ(Read("TLParamsLocked"), "0");
    return strError;
  }

  CMemoryDevice m_device;
  std::string m_strError; ///< why there is no camera
  std::unique_ptr<CAravisCamera> m_pCamera;
};

} // namespace

TEST(MemoryCamera, ACameraWithoutWhatAStreamNeedsIsRefusedInWords)
{
  CMemoryDevice undescribed("no description");
  EXPECT_EQ(CAravisCamera::Create(undescribed.ShareDevice(), "Camera").GetError(),
            "Camera has no description of its features that can be read");
  for (const auto &stNode : MakeNodes()) {
    NodeTexts mapNodes = MakeNodes();
    mapNodes.erase(stNode.first);
    EXPECT_EQ(CCameraInMemory(mapNodes).m_strError, "Camera has no feature " + stNode.first);
  }
}

TEST(MemoryCamera, StartAndStopReachTheCameraAndLockItsGeometryMeanwhile)
{
  CCameraInMemory camera(MakeNodes());
  ASSERT_NE(camera.m_pCamera, nullptr) << camera.m_strError;
  EXPECT_EQ(camera.Read("TLParamsLocked"), "0") << "the camera's own description has none";
  ASSERT_EQ(camera.m_pCamera->Start().GetError(), "");
  EXPECT_TRUE(camera.m_pCamera->IsStreaming());
  EXPECT_EQ(camera.Read("TLParamsLocked"), "1");
  EXPECT_EQ(camera.m_device.Peek(0), 1U);
  EXPECT_EQ(camera.m_device.Peek(4), 0U);
  camera.m_pCamera->Stop();
  EXPECT_FALSE(camera.m_pCamera->IsStreaming());
  EXPECT_EQ(camera.Read("TLParamsLocked"), "0");
  EXPECT_EQ(camera.m_device.Peek(4), 1U);
}

TEST(MemoryCamera, ALockThatIsNoIntegerIsLeftAlone)
{
  NodeTexts mapNodes = MakeNodes();
  mapNodes["TLParamsLocked"] = R"(<Float Name="TLParamsLocked"><Value>0.5</Value></Float>)";
  CCameraInMemory camera(mapNodes);
  ASSERT_NE(camera.m_pCamera, nullptr) << camera.m_strError;
  ASSERT_EQ(camera.m_pCamera->Start().GetError(), "");
  EXPECT_EQ(camera.Read("TLParamsLocked"), "0.5");
  camera.m_pCamera->Stop();
  EXPECT_EQ(camera.Read("TLParamsLocked"), "0.5");
}

TEST(MemoryCamera, APayloadThatIsNoFramesIsRefused)
{
  for (const auto &[pPayload, pError] :
       {std::pair(R"(<Integer Name="PayloadSize"><Value>0</Value></Integer>)",
                  "A frame of 0 bytes cannot be received."),
        {R"(<Integer Name="PayloadSize"><Value>-5</Value></Integer>)", "A frame of -5 bytes cannot be received."},
        {R"(<Integer Name="PayloadSize"><Value>2147483648</Value></Integer>)",
         "A frame of 2147483648 bytes cannot be received."},
        {R"(<Float Name="PayloadSize"><Value>256</Value></Float>)", "A frame of 0 bytes cannot be received."}}) {
    NodeTexts mapNodes = MakeNodes();
    mapNodes["PayloadSize"] = pPayload;
    CCameraInMemory camera(mapNodes);
    ASSERT_NE(camera.m_pCamera, nullptr) << camera.m_strError;
    EXPECT_EQ(camera.FailToStart(), pError);
    EXPECT_EQ(camera.m_device.Peek(0), 0U) << "it was never started";
  }
}

TEST(MemoryCamera, AStreamThatCannotBeOpenedStartsNothingAndTheNextTryIsANewOne)
{
  CCameraInMemory camera(MakeNodes());
  ASSERT_NE(camera.m_pCamera, nullptr) << camera.m_strError;
  camera.m_device.Memory().bNoStream = true;
  EXPECT_EQ(camera.FailToStart(), "The camera's stream cannot be opened: no channel is free");
  EXPECT_EQ(camera.m_device.Peek(0), 0U);
  camera.m_device.Memory().bNoStream = false;
  EXPECT_EQ(camera.m_pCamera->Start().GetError(), "");
}

TEST(MemoryCamera, ACameraThatDoesNotStartLeavesNoStreamOpen)
{
  for (const auto &[pStart, pError] :
       {std::pair(R"(<Integer Name="AcquisitionStart"><pValue>StartReg</pValue></Integer>)",
                  "AcquisitionStart is no command"),
        {R"(<Command Name="AcquisitionStart"><pValue>FarReg</pValue><CommandValue>1</CommandValue></Command>)",
         "no such address"}}) {
    NodeTexts mapNodes = MakeNodes();
    mapNodes["AcquisitionStart"] = pStart;
    CCameraInMemory camera(mapNodes);
    ASSERT_NE(camera.m_pCamera, nullptr) << camera.m_strError;
    const std::string strError = camera.FailToStart();
    EXPECT_NE(strError.find(pError), std::string::npos) << strError;
  }
}

TEST(MemoryCamera, TheModeIsContinuousWhereTheCameraHasIt)
{
  const std::string ENTRY = R"(<EnumEntry Name="SingleFrame"><Value>0</Value></EnumEntry>)";
  for (const bool bContinuous : {false, true}) {
    NodeTexts mapNodes = MakeNodes();
    mapNodes["AcquisitionMode"] = R"(<Enumeration Name="AcquisitionMode">)" + ENTRY +
                                  (bContinuous ? R"(<EnumEntry Name="Continuous"><Value>2</Value></EnumEntry>)" : "") +
                                  "<pValue>ModeReg</pValue></Enumeration>";
    CCameraInMemory camera(mapNodes);
    ASSERT_NE(camera.m_pCamera, nullptr) << camera.m_strError;
    EXPECT_EQ(camera.Read("AcquisitionMode"), bContinuous ? "Continuous" : "SingleFrame");
  }
}

TEST(MemoryCamera, TheOutputHasWhatTheCameraHasInTheRightKind)
{
  NodeTexts mapNodes = MakeNodes();
  mapNodes["Width"] = R"(<Float Name="Width"><Value>16</Value></Float>)";
  mapNodes["PixelFormat"] = R"(<Integer Name="PixelFormat"><Value>17301505</Value></Integer>)";
  CCameraInMemory camera(mapNodes);
  ASSERT_NE(camera.m_pCamera, nullptr) << camera.m_strError;
  const GenApi::INodeMap &output = *camera.m_pCamera->GetOutputNodeMap();
  EXPECT_EQ(output.GetNode("OutputWidth"), nullptr);
  EXPECT_EQ(output.GetNode("OutPixelFormat"), nullptr);
  EXPECT_NE(output.GetNode("OutputHeight"), nullptr);
  std::string strMissing;
  for (const SFeatureNote &stNote : camera.m_pCamera->GetFeatureNotes()) {
    strMissing += stNote.eKind == SFeatureNote::EKind::Missing ? stNote.strFeature + " " : "";
  }
  EXPECT_EQ(strMissing, "Width PixelFormat ExposureTime ");
}

/// The camera library's own, which is no GigE Vision camera: its stream counts other things.
TEST(MemoryCamera, ACameraOfAnotherTransportDeliversItsFrames)
{
  CErrorSlot error;
  CObjectPointer<ArvDevice> pDevice(arv_fake_device_new("ffc", error.Out()));
  ASSERT_NE(pDevice, nullptr) << error.GetMessage();
  auto created = CAravisCamera::Create(std::move(pDevice), "Camera");
  ASSERT_EQ(created.GetError(), "");
  const std::unique_ptr<CAravisCamera> pCamera = std::move(created).GetValue();
  CFrameCollector frames(*pCamera);
  ASSERT_EQ(pCamera->Start().GetError(), "");
  const std::vector<SKeptFrame> listFrames = frames.Take(2);
  pCamera->Stop();
  ASSERT_EQ(listFrames.size(), 2U);
  EXPECT_EQ(listFrames[1].stInfo.nSize, 512U * 512U);
  EXPECT_EQ(listFrames[1].stInfo.nFrameId, listFrames[0].stInfo.nFrameId + 1);
  const SFrameLosses stLosses = pCamera->GetLink()->GetLosses();
  EXPECT_EQ(stLosses.nIncomplete + stLosses.nUnusable + stLosses.nMissingPackets + stLosses.nResentPackets, 0U);
}
