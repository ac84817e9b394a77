#include "camera/realcameras.h"
#include "camera/iscenecontrol.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <thread>

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "camera/icameralink.h"
#include "tests/camera/aravis/gigecameraprocess.h"
#include "tests/camera/framecollector.h"

using ffc::camera::AreRealCamerasSupported;
using ffc::camera::FindSceneControl;
using ffc::camera::ICamera;
using ffc::camera::ListRealCameras;
using ffc::camera::OpenRealCamera;
using ffc::camera::SCameraFrame;
using ffc::camera::SFrameLosses;
using ffc::camera::SRealCameraInfo;
using ffc::test::CFrameCollector;
using ffc::test::CGigeCameraProcess;
using ffc::test::SKeptFrame;

namespace {

class RealCameras : public testing::Test {
protected:
  /// The camera, which is expected to be there.
  std::unique_ptr<ICamera> Open(const std::string &strId)
  {
    auto opened = OpenRealCamera(strId);
    EXPECT_EQ(opened.GetError(), "");
    std::unique_ptr<ICamera> pCamera = opened ? std::move(opened).GetValue() : nullptr;
    return pCamera;
  }

  template <class TInterface>
  static TInterface &Device(ICamera &camera, const char *pName)
  {
    return dynamic_cast<TInterface &>(*camera.GetDeviceNodeMap()->GetNode(pName));
  }
  static std::string Read(GenApi::INodeMap *pMap, const char *pName)
  {
    return dynamic_cast<GenApi::IValue &>(*pMap->GetNode(pName)).ToString(true).c_str();
  }
};

/// Another camera's stream to another program: beginnings of frames, to a port of this machine that is its own.
class CForeignStream {
public:
  CForeignStream() : m_nSocket(socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0))
  {
    m_stAddress.sin_family = AF_INET;
    m_stAddress.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t nSize = sizeof m_stAddress;
    auto *pAddress = reinterpret_cast<sockaddr *>(&m_stAddress);
    if (bind(m_nSocket, pAddress, nSize) == 0 && getsockname(m_nSocket, pAddress, &nSize) == 0) {
      m_thread = std::thread([this] { Run(); });
    }
  }
  ~CForeignStream()
  {
    m_bStop = true;
    if (m_thread.joinable()) {
      m_thread.join();
    }
    close(m_nSocket);
  }
  CForeignStream(const CForeignStream &) = delete;
  CForeignStream &operator=(const CForeignStream &) = delete;

  bool IsRunning() const { return m_thread.joinable(); }

private:
  void Run() const
  {
    uint8_t listLeader[44] = {}; // status, frame number, packet's kind and number; then payload, time, format, size
    listLeader[4] = 1;
    listLeader[11] = 1;
    listLeader[20] = 0x01;
    listLeader[21] = 0x08;
    listLeader[23] = 0x01;
    listLeader[27] = listLeader[31] = 64;
    for (uint16_t nFrame = 1; !m_bStop; ++nFrame) {
      listLeader[2] = uint8_t(nFrame >> 8U);
      listLeader[3] = uint8_t(nFrame & 0xFFU);
      sendto(m_nSocket, listLeader, sizeof listLeader, 0, reinterpret_cast<const sockaddr *>(&m_stAddress),
             sizeof m_stAddress);
      std::this_thread::sleep_for(std::chrono::microseconds(100));
    }
  }

  int m_nSocket;
  sockaddr_in m_stAddress = {};
  std::atomic<bool> m_bStop{false};
  std::thread m_thread;
};

/// What a frame says of itself before its bytes.
struct SLeader {
  const char *pFault;
  uint16_t nPayloadType; ///< 1: an image
  uint32_t nPixelFormat;
  uint32_t nWidth;
  uint32_t nHeight;
  uint16_t nPaddingX;
};

/// Sends frames of one packet of data, as a camera does whose firmware is wrong.
class CFrameForger {
public:
  /// \param nPort where the program receives
  explicit CFrameForger(int64_t nPort) : m_nSocket(socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0))
  {
    m_stAddress.sin_family = AF_INET;
    m_stAddress.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    m_stAddress.sin_port = htons(uint16_t(nPort));
  }
  ~CFrameForger() { close(m_nSocket); }
  CFrameForger(const CFrameForger &) = delete;
  CFrameForger &operator=(const CFrameForger &) = delete;

  void Send(const SLeader &stLeader, std::size_t nBytes)
  {
    ++m_nFrame;
    std::vector<uint8_t> listLeader = Begin(1, 0);
    Put(stLeader.nPayloadType, 4, &listLeader);
    Put(0, 8, &listLeader); // time
    Put(stLeader.nPixelFormat, 4, &listLeader);
    Put(stLeader.nWidth, 4, &listLeader);
    Put(stLeader.nHeight, 4, &listLeader);
    Put(0, 8, &listLeader); // offsets
    Put(stLeader.nPaddingX, 2, &listLeader);
    Put(0, 2, &listLeader);
    SendPacket(listLeader);
    std::vector<uint8_t> listData = Begin(3, 1);
    listData.resize(listData.size() + nBytes, 0x40);
    SendPacket(listData);
    std::vector<uint8_t> listTrailer = Begin(2, 2);
    Put(stLeader.nPayloadType, 4, &listTrailer);
    Put(stLeader.nHeight, 4, &listTrailer);
    SendPacket(listTrailer);
  }

private:
  static void Put(uint64_t nValue, std::size_t nBytes, std::vector<uint8_t> *plistPacket)
  {
    while (nBytes-- > 0) {
      plistPacket->push_back(uint8_t(nValue >> (8 * nBytes)));
    }
  }
  std::vector<uint8_t> Begin(uint8_t nKind, uint32_t nPacket) const
  {
    std::vector<uint8_t> listPacket;
    Put(0, 2, &listPacket); // no error
    Put(m_nFrame, 2, &listPacket);
    Put(nKind, 1, &listPacket);
    Put(nPacket, 3, &listPacket);
    return listPacket;
  }
  void SendPacket(const std::vector<uint8_t> &listPacket) const
  {
    const auto *pAddress = reinterpret_cast<const sockaddr *>(&m_stAddress);
    EXPECT_EQ(sendto(m_nSocket, listPacket.data(), listPacket.size(), 0, pAddress, sizeof m_stAddress),
              ssize_t(listPacket.size()));
  }

  int m_nSocket;
  sockaddr_in m_stAddress = {};
  uint16_t m_nFrame = 0;
};

class RealCamerasThatLosePackets : public RealCameras, public testing::WithParamInterface<uint32_t> {};

struct SFormat {
  const char *pName;
  uint32_t nCode;
  uint32_t nDeliveredCode;
  uint32_t nBytesPerPixel;
};

double GetMean(const SKeptFrame &stFrame)
{
  double dSum = 0;
  const std::vector<uint16_t> listSamples = stFrame.GetSamples();
  for (const uint16_t nSample : listSamples) {
    dSum += nSample;
  }
  return dSum / double(listSamples.size());
}

} // namespace

TEST_F(RealCameras, ACameraIsListedAndOpenedByIdAddressOrMakerAndSerialNumber)
{
  EXPECT_TRUE(AreRealCamerasSupported());
  const CGigeCameraProcess process({});
  ASSERT_TRUE(process.IsRunning());
  const std::vector<SRealCameraInfo> listCameras = ListRealCameras();
  const auto itCamera = std::find_if(listCameras.begin(), listCameras.end(), [&](const SRealCameraInfo &stInfo) {
    return stInfo.strSerial == process.GetSerial();
  });
  ASSERT_NE(itCamera, listCameras.end());
  EXPECT_EQ(itCamera->strProtocol, "GigEVision");
  EXPECT_EQ(itCamera->strAddress, "127.0.0.1");
  for (const std::string &strId :
       {itCamera->strId, itCamera->strAddress,
        itCamera->strVendor + "-" + itCamera->strSerial}) { // the other tests have the serial number
    const auto pCamera = Open(strId);
    ASSERT_NE(pCamera, nullptr) << strId;
    EXPECT_EQ(pCamera->GetDisplayName(), itCamera->GetDisplayName());
    EXPECT_EQ(Read(pCamera->GetOutputNodeMap(), "DeviceDisplayName"), itCamera->GetDisplayName());
    EXPECT_EQ(FindSceneControl(*pCamera), nullptr);
    ASSERT_NE(pCamera->GetLink(), nullptr);
    EXPECT_FALSE(pCamera->GetLink()->IsLost());
  }
  const std::string strError = OpenRealCamera("nowhere").GetError();
  EXPECT_EQ(strError.rfind("no camera 'nowhere' answers; there are: ", 0), 0U) << strError;
  EXPECT_NE(strError.find(itCamera->strId), std::string::npos) << strError;
}

TEST_F(RealCameras, FramesComeInEveryFormatAndTheOutputMirrorsTheCamera)
{
  const SFormat FORMATS[] = {{"Mono8", 0x01080001, 0x01080001, 1},
                             {"Mono16", 0x01100007, 0x01100007, 2},
                             {"Mono12Packed", 0x010C0006, 0x01100005, 2}};
  CGigeCameraProcess process({});
  const auto pCamera = Open(process.GetSerial());
  ASSERT_NE(pCamera, nullptr);
  for (const SFormat &stFormat : FORMATS) {
    SCOPED_TRACE(stFormat.pName);
    Device<GenApi::IEnumeration>(*pCamera, "PixelFormat").FromString(stFormat.pName);
    for (const auto &[pOutput, pDevice] : {std::pair("OutPixelFormat", "PixelFormat"),
                                           {"OutputPayloadSize", "PayloadSize"},
                                           {"OutputWidth", "Width"},
                                           {"OutputHeight", "Height"}}) {
      EXPECT_EQ(Read(pCamera->GetOutputNodeMap(), pOutput), Read(pCamera->GetDeviceNodeMap(), pDevice));
    }
    ffc::test::CFrameCollector frames(*pCamera);
    ASSERT_EQ(pCamera->Start().GetError(), "");
    const std::vector<SKeptFrame> listFrames = frames.Take(3);
    pCamera->Stop();
    ASSERT_EQ(listFrames.size(), 3U);
    const SCameraFrame &stInfo = listFrames[2].stInfo;
    EXPECT_EQ(stInfo.nPixelFormat, stFormat.nDeliveredCode);
    EXPECT_EQ(stInfo.nWidth, 128U);
    EXPECT_EQ(stInfo.nHeight, 96U);
    EXPECT_EQ(stInfo.nSize, 128U * 96U * stFormat.nBytesPerPixel);
    EXPECT_EQ(stInfo.nFrameId, listFrames[0].stInfo.nFrameId + 2);
    const double dFullScale = stFormat.nDeliveredCode == 0x01100005 ? 4095 : stFormat.nBytesPerPixel == 2 ? 65535 : 255;
    EXPECT_NEAR(GetMean(listFrames[2]) / dFullScale, 0.51, 0.05);
  }
}

TEST_F(RealCameras, TheGeometryIsLockedWhileFramesCome)
{
  const CGigeCameraProcess process({});
  const auto pCamera = Open(process.GetSerial());
  ASSERT_NE(pCamera, nullptr);
  auto &width = Device<GenApi::IInteger>(*pCamera, "Width");
  EXPECT_EQ(Read(pCamera->GetDeviceNodeMap(), "TLParamsLocked"), "0");
  for (int nTurn = 0; nTurn < 2; ++nTurn) {
    ASSERT_EQ(pCamera->Start().GetError(), "");
    EXPECT_EQ(pCamera->Start().GetError(), "") << "it runs already";
    EXPECT_TRUE(pCamera->IsStreaming());
    EXPECT_EQ(Read(pCamera->GetDeviceNodeMap(), "TLParamsLocked"), "1");
    EXPECT_EQ(width.GetAccessMode(), GenApi::RO);
    EXPECT_THROW(width.SetValue(64), GenICam::AccessException);
    pCamera->Stop();
    EXPECT_FALSE(pCamera->IsStreaming());
    EXPECT_EQ(Read(pCamera->GetDeviceNodeMap(), "TLParamsLocked"), "0");
  }
  width.SetValue(64);
  ffc::test::CFrameCollector frames(*pCamera);
  ASSERT_EQ(pCamera->Start().GetError(), "");
  const std::vector<SKeptFrame> listFrames = frames.Take(1);
  pCamera->Stop();
  ASSERT_EQ(listFrames.size(), 1U);
  EXPECT_EQ(listFrames[0].stInfo.nWidth, 64U);
}

TEST_F(RealCameras, NoFrameComesAfterStopAndTheLensCapIsSeen)
{
  CGigeCameraProcess process({});
  const auto pCamera = Open(process.GetSerial());
  ASSERT_NE(pCamera, nullptr);
  ffc::test::CFrameCollector frames(*pCamera);
  process.SetLensCap(true);
  ASSERT_EQ(pCamera->Start().GetError(), "");
  const std::vector<SKeptFrame> listDark = frames.Take(2);
  pCamera->Stop();
  ASSERT_EQ(listDark.size(), 2U);
  EXPECT_LT(GetMean(listDark[1]), 4.0);
  const std::size_t nCount = frames.GetCount();
  process.SetLensCap(false); // a round trip to the camera, in which it would have sent
  EXPECT_EQ(frames.GetCount(), nCount);
  Device<GenApi::IFloat>(*pCamera, "ExposureTime").SetValue(5000);
  ASSERT_EQ(pCamera->Start().GetError(), "");
  const std::vector<SKeptFrame> listBright = frames.Take(2);
  pCamera->Stop();
  ASSERT_EQ(listBright.size(), 2U);
  EXPECT_NEAR(GetMean(listBright[1]), 65.0, 6.0);
}

TEST_F(RealCameras, ASlowReceiverOfNewestFramesOnlyMissesTheOthers)
{
  const CGigeCameraProcess process({});
  const auto pCamera = Open(process.GetSerial());
  ASSERT_NE(pCamera, nullptr);
  dynamic_cast<GenApi::IEnumeration &>(*pCamera->GetStreamNodeMap()->GetNode("StreamBufferHandlingMode"))
    .FromString("NewestOnly");
  std::atomic<int> nFrames{0};
  pCamera->SetFrameCallback([&](const SCameraFrame &) {
    std::this_thread::sleep_for(std::chrono::milliseconds(60)); // six frames of the camera
    ++nFrames;
  });
  ASSERT_EQ(pCamera->Start().GetError(), "");
  while (nFrames < 4) {
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  pCamera->Stop();
  EXPECT_GE(pCamera->GetLink()->GetLosses().nOverwritten, 3U);
}

TEST_F(RealCameras, WhatAnotherCameraSendsToAnotherProgramIsNotTakenForItsFrames)
{
  const CGigeCameraProcess process({});
  const auto pCamera = Open(process.GetSerial());
  ASSERT_NE(pCamera, nullptr);
  const CForeignStream foreign;
  ASSERT_TRUE(foreign.IsRunning());
  ffc::test::CFrameCollector frames(*pCamera);
  for (int nStream = 0; nStream < 4; ++nStream) {
    SCOPED_TRACE(nStream);
    ASSERT_EQ(pCamera->Start().GetError(), "");
    const std::vector<SKeptFrame> listFrames = frames.Take(2);
    pCamera->Stop();
    ASSERT_EQ(listFrames.size(), 2U);
    EXPECT_EQ(listFrames[1].stInfo.nSize, 128U * 96U);
    const SFrameLosses stLosses = pCamera->GetLink()->GetLosses();
    EXPECT_EQ(stLosses.nIncomplete + stLosses.nWithoutRoom + stLosses.nNeverSeen + stLosses.nMissingPackets, 0U);
  }
}

TEST_F(RealCameras, AFrameThatIsNotWhatItSaysIsCountedAndNeverDelivered)
{
  const SLeader LEADERS[] = {
    {"no pixels", 1, 0x01080001, 0, 16, 0},
    {"no lines", 1, 0x01080001, 16, 0, 0},
    {"padded lines", 1, 0x01080001, 14, 16, 2},
    {"a format of no bits", 1, 0x01000001, 16, 16, 0},
    {"more than was sent", 1, 0x01100007, 16, 16, 0},
    {"more than was sent, packed", 1, 0x010C0006, 16, 16, 0},
    {"more than a number of 64 bits counts", 1, 0x01100007, 1565199712, 736597059, 0},
    {"more than a number of 64 bits counts, packed", 1, 0x010C0006, 0x7FFFFFFF, 0x7FFFFFFF, 0},
    {"no image", 4, 0x01080001, 16, 16, 0}, // chunks of data only
  };
  CGigeCameraProcess::SOptions stOptions;
  stOptions.nWidth = stOptions.nHeight = 16;
  const CGigeCameraProcess process(stOptions);
  const auto pCamera = Open(process.GetSerial());
  ASSERT_NE(pCamera, nullptr);
  Device<GenApi::IEnumeration>(*pCamera, "TriggerMode").FromString("On"); // it sends nothing itself
  ffc::test::CFrameCollector frames(*pCamera);
  ASSERT_EQ(pCamera->Start().GetError(), "");
  CFrameForger forger(Device<GenApi::IInteger>(*pCamera, "GevSCPHostPort").GetValue());
  uint64_t nUnusable = 0;
  for (const SLeader &stLeader : LEADERS) {
    SCOPED_TRACE(stLeader.pFault);
    forger.Send(stLeader, 16 * 16);
    while (pCamera->GetLink()->GetLosses().GetFrames() + frames.GetCount() <= nUnusable) {
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    EXPECT_EQ(pCamera->GetLink()->GetLosses().nUnusable, ++nUnusable);
    ASSERT_EQ(frames.GetCount(), 0U);
  }
  frames.Expect(1);
  forger.Send({"", 1, 0x01080001, 16, 16, 0}, 16 * 16);
  const std::vector<SKeptFrame> listFrames = frames.Collect();
  ASSERT_EQ(listFrames.size(), 1U);
  EXPECT_EQ(listFrames[0].stInfo.nSize, 16U * 16U);
  EXPECT_EQ(listFrames[0].stInfo.nFrameId, nUnusable) << "the others count";
  pCamera->Stop();
}

TEST_P(RealCamerasThatLosePackets, EveryLostFrameIsCountedAndSaidToBeLost)
{
  CGigeCameraProcess::SOptions stOptions;
  stOptions.nFramePeriod = 20000; // slow enough that an incomplete frame is given up before all buffers are in use
  stOptions.nLostPackets = GetParam();
  const CGigeCameraProcess process(stOptions);
  const auto pCamera = Open(process.GetSerial());
  ASSERT_NE(pCamera, nullptr);
  std::atomic<uint64_t> nDelivered{0};
  std::atomic<uint64_t> nGaps{0};
  uint64_t nNext = 0;
  pCamera->SetFrameCallback([&](const SCameraFrame &stFrame) {
    nGaps += stFrame.nFrameId - nNext;
    nNext = stFrame.nFrameId + 1;
    ++nDelivered;
  });
  ASSERT_EQ(pCamera->Start().GetError(), "");
  while (nDelivered + pCamera->GetLink()->GetLosses().GetFrames() < 40) {
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  pCamera->Stop();
  const SFrameLosses stLosses = pCamera->GetLink()->GetLosses();
  SCOPED_TRACE(testing::Message() << stLosses.nIncomplete << " incomplete, " << stLosses.nNeverSeen << " never seen, "
                                  << stLosses.nWithoutRoom << " without room, " << nDelivered << " delivered");
  EXPECT_LE(nGaps, stLosses.GetFrames()) << "a frame that was lost behind the last that came is no gap yet";
  EXPECT_EQ(stLosses.nUnusable + stLosses.nOverwritten, 0U);
  // Of a frame's packets, some ten, at least one is lost in one frame of twenty, in two of five, and in nearly all.
  EXPECT_EQ(stLosses.nIncomplete > 0, stLosses.nMissingPackets > 0);
  if (GetParam() >= 50) {
    EXPECT_GT(stLosses.nIncomplete, 4U);
  }
  if (GetParam() == 500) {
    EXPECT_LT(nDelivered, 5U);
  } else {
    EXPECT_GT(nDelivered, GetParam() == 5 ? 25U : 8U);
  }
}

INSTANTIATE_TEST_SUITE_P(PerMille, RealCamerasThatLosePackets, testing::Values(5U, 50U, 500U),
                         [](const auto &stInfo) { return std::to_string(stInfo.param); });

TEST_F(RealCameras, ACameraInUseByAnotherProgramIsRefused)
{
  const CGigeCameraProcess process({});
  const auto pCamera = Open(process.GetSerial());
  ASSERT_NE(pCamera, nullptr);
  EXPECT_EQ(OpenRealCamera(process.GetSerial()).GetError(),
            pCamera->GetDisplayName() + " is in use by another program, or was until a moment ago");
}

TEST_F(RealCameras, ACameraThatGoesIsToldWithoutBeingAskedAndIsOpenedAgainWhenItIsBack)
{
  CGigeCameraProcess process({});
  auto pCamera = Open(process.GetSerial());
  ASSERT_NE(pCamera, nullptr);
  std::atomic<int> nTold{0};
  pCamera->GetLink()->SetLostCallback([&] { ++nTold; });
  {
    ffc::test::CFrameCollector frames(*pCamera);
    ASSERT_EQ(pCamera->Start().GetError(), "");
    ASSERT_EQ(frames.Take(1).size(), 1U);
    process.Kill();
    while (nTold == 0) { // the test's own time limit ends it
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    EXPECT_TRUE(pCamera->GetLink()->IsLost());
    EXPECT_THROW(Device<GenApi::IInteger>(*pCamera, "Width").GetValue(), GenICam::RuntimeException);
    EXPECT_EQ(Device<GenApi::IInteger>(*pCamera, "Width").GetAccessMode(), GenApi::NA);
    const auto tStop = std::chrono::steady_clock::now();
    pCamera->Stop();
    EXPECT_FALSE(pCamera->IsStreaming());
    EXPECT_EQ(pCamera->Start().GetError(), "The camera does not answer any more.");
    EXPECT_FALSE(pCamera->IsStreaming());
    pCamera.reset();
    EXPECT_LT(std::chrono::steady_clock::now() - tStop, std::chrono::seconds(1)) << "what is gone is not waited for";
  }
  EXPECT_EQ(nTold, 1);
  process.Restart();
  pCamera = Open(process.GetSerial());
  ASSERT_NE(pCamera, nullptr);
  ffc::test::CFrameCollector frames(*pCamera);
  ASSERT_EQ(pCamera->Start().GetError(), "");
  EXPECT_EQ(frames.Take(2).size(), 2U);
  pCamera->Stop();
}
