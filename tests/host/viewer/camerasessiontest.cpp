#include "host/viewer/camerasession.h"

#include <atomic>
#include <future>
#include <thread>

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTest>
#include <QThread>
#include <QTimer>

#include <gtest/gtest.h>

#include "tests/host/faultycamera.h"

using namespace ffc::host;
using ffc::camera::ICamera;

namespace {

class CameraSession : public testing::Test {
protected:
  /// A camera with faults, and a plug-in that is there.
  static CCameraSession::SSetup MakeSetup(const CFaultyCamera::SFaults &stFaults = {})
  {
    CCameraSession::SSetup stSetup;
    stSetup.fnOpenCamera = [stFaults]() -> ffc::Result<std::unique_ptr<ICamera>> {
      return std::make_unique<CFaultyCamera>("Mono8", stFaults);
    };
    stSetup.strModule = FAKE_MODULE;
    return stSetup;
  }

  std::string GetLastError() const
  {
    return m_spyError.isEmpty() ? "nothing was said" : m_spyError.last().at(0).toString().toStdString();
  }
  /// As the window does, but more often.
  template <class TCondition>
  bool WatchUntil(TCondition fnCondition)
  {
    return QTest::qWaitFor(
      [&] {
        m_session.Watch(true);
        return fnCondition();
      },
      20000);
  }
  bool IsStreaming() { return m_session.GetViewer()->GetCamera().IsStreaming(); }

  CCameraSession m_session{nullptr, nullptr};
  QSignalSpy m_spyOpened{&m_session, &CCameraSession::SigOpened};
  QSignalSpy m_spyClosing{&m_session, &CCameraSession::SigClosing};
  QSignalSpy m_spyChanged{&m_session, &CCameraSession::SigChanged};
  QSignalSpy m_spyError{&m_session, &CCameraSession::SigError};
};

} // namespace

TEST_F(CameraSession, AnOpenedCameraStreamsWithThePlugInOnIt)
{
  ASSERT_EQ(m_session.Open(MakeSetup()).GetError(), "");
  EXPECT_EQ(m_spyOpened.size(), 1);
  EXPECT_EQ(m_spyChanged.size(), 1);
  EXPECT_EQ(GetLastError(), "");
  EXPECT_EQ(m_session.GetPluginError().toStdString(), "");
  EXPECT_TRUE(m_session.GetViewer()->HasPlugin());
  EXPECT_TRUE(IsStreaming());
  m_session.Close();
  EXPECT_EQ(m_session.GetViewer(), nullptr);
}

TEST_F(CameraSession, ACameraThatCannotBeOpenedLeavesNone)
{
  ASSERT_TRUE(m_session.Open(MakeSetup()).IsOk());
  CCameraSession::SSetup stSetup = MakeSetup();
  stSetup.fnOpenCamera = [] { return ffc::Failure("camera: none answers"); };
  EXPECT_EQ(m_session.Open(stSetup).GetError(), "camera: none answers");
  EXPECT_EQ(GetLastError(), "camera: none answers");
  EXPECT_EQ(m_session.GetViewer(), nullptr);
  EXPECT_FALSE(m_session.IsLost());
  EXPECT_FALSE(m_session.Watch(true)) << "there is nothing to watch";
}

TEST_F(CameraSession, WithoutAPlugInTheCameraStreamsAllTheSame)
{
  CCameraSession::SSetup stSetup = MakeSetup();
  stSetup.strModule = "/no/such.plx";
  EXPECT_TRUE(m_session.Open(stSetup).IsOk());
  EXPECT_TRUE(IsStreaming());
  EXPECT_NE(m_session.GetPluginError().toStdString().find("no such file"), std::string::npos);
  EXPECT_EQ(GetLastError(), m_session.GetPluginError().toStdString());
}

TEST_F(CameraSession, ABlockSizeThatTheCameraDoesNotHaveKeepsTheStreamFromStarting)
{
  CCameraSession::SSetup stSetup = MakeSetup();
  stSetup.nBlockSize = 32;
  EXPECT_TRUE(m_session.Open(stSetup).IsOk());
  EXPECT_EQ(GetLastError(), "this camera has no coefficient blocks");
  EXPECT_FALSE(IsStreaming());
}

TEST_F(CameraSession, StartsAndStopsTheStream)
{
  ASSERT_TRUE(m_session.Open(MakeSetup()).IsOk());
  m_session.StartOrStop();
  EXPECT_FALSE(IsStreaming());
  m_session.StartOrStop();
  EXPECT_TRUE(IsStreaming());
  EXPECT_EQ(m_spyChanged.size(), 3);
}

TEST_F(CameraSession, ACameraThatRefusesToStartIsReported)
{
  CFaultyCamera::SFaults stFaults;
  stFaults.bRefusesToStart = true;
  EXPECT_TRUE(m_session.Open(MakeSetup(stFaults)).IsOk());
  EXPECT_EQ(GetLastError(), "the cable is out");
}

TEST_F(CameraSession, ALostCameraIsOpenedAgainWhenItAnswersAndNotTooOften)
{
  auto pLost = std::make_shared<std::atomic<bool>>(false);
  std::atomic<int> nAsked{0};
  CCameraSession::SSetup stSetup = MakeSetup();
  stSetup.fnOpenCamera = [&]() -> ffc::Result<std::unique_ptr<ICamera>> {
    if (++nAsked == 2) {
      return ffc::Failure("none answers");
    }
    CFaultyCamera::SFaults stFaults;
    stFaults.pLost = nAsked == 1 ? pLost : std::make_shared<std::atomic<bool>>(false);
    return std::make_unique<CFaultyCamera>("Mono8", stFaults);
  };
  ASSERT_TRUE(m_session.Open(stSetup).IsOk());
  EXPECT_TRUE(m_session.Watch(true));
  *pLost = true;
  EXPECT_TRUE(m_session.IsLost());
  EXPECT_FALSE(m_session.Watch(false));
  EXPECT_EQ(nAsked, 1) << "something waited for the user's answer";
  EXPECT_EQ(GetLastError().rfind("The camera is lost.", 0), 0U);
  ASSERT_TRUE(WatchUntil([&] { return nAsked == 2; }));
  QElapsedTimer timer;
  timer.start();
  EXPECT_EQ(m_spyClosing.size(), 1) << "by opening only: a lost camera stays until it answers";
  ASSERT_TRUE(WatchUntil([&] { return nAsked == 3; }));
  EXPECT_GT(timer.elapsed(), 1500) << "it was asked just now";
  EXPECT_TRUE(WatchUntil([&] { return !m_session.IsLost(); }));
}

TEST_F(CameraSession, ALostCameraThatAnswersAtOnceStreamsAgain)
{
  auto pLost = std::make_shared<std::atomic<bool>>(false);
  CCameraSession::SSetup stSetup = MakeSetup();
  stSetup.fnOpenCamera = [&]() -> ffc::Result<std::unique_ptr<ICamera>> {
    CFaultyCamera::SFaults stFaults;
    stFaults.pLost = pLost = std::make_shared<std::atomic<bool>>(false);
    return std::make_unique<CFaultyCamera>("Mono8", stFaults);
  };
  ASSERT_TRUE(m_session.Open(stSetup).IsOk());
  *pLost = true;
  ASSERT_TRUE(WatchUntil([&] { return !m_session.IsLost(); }));
  EXPECT_TRUE(IsStreaming());
  EXPECT_EQ(m_spyOpened.size(), 2);
  EXPECT_EQ(GetLastError(), "");
}

TEST_F(CameraSession, EventsPassWhileACameraIsOpenedOrDestroyed)
{
  class CSlowCamera final : public CFaultyCamera {
  public:
    CSlowCamera(std::shared_ptr<std::atomic<std::thread::id>> pDestroyed)
      : CFaultyCamera("Mono8", {}), m_pDestroyed(std::move(pDestroyed))
    {
    }
    ~CSlowCamera() override
    {
      std::this_thread::sleep_for(std::chrono::milliseconds(50));
      *m_pDestroyed = std::this_thread::get_id();
    }

  private:
    std::shared_ptr<std::atomic<std::thread::id>> m_pDestroyed;
  };
  auto pDestroyed = std::make_shared<std::atomic<std::thread::id>>();
  std::promise<void> promise;
  std::atomic<std::thread::id> opened;
  CCameraSession::SSetup stSetup = MakeSetup();
  stSetup.fnOpenCamera = [&]() -> ffc::Result<std::unique_ptr<ICamera>> {
    promise.get_future().wait();
    opened = std::this_thread::get_id();
    return std::make_unique<CSlowCamera>(pDestroyed);
  };
  QTimer::singleShot(0, [&] { promise.set_value(); }); // or it would never end
  ASSERT_TRUE(m_session.Open(stSetup).IsOk());
  EXPECT_NE(opened.load(), std::this_thread::get_id());
  ASSERT_TRUE(m_session.Open(MakeSetup()).IsOk());
  EXPECT_EQ(pDestroyed->load(), opened.load()) << "before the next one was opened";
  EXPECT_TRUE(IsStreaming());
}

TEST_F(CameraSession, ACameraThatIsBackWhenAnotherWasChosenIsNotUsed)
{
  auto pLost = std::make_shared<std::atomic<bool>>(false);
  std::atomic<int> nOpened{0};
  std::promise<void> promise;
  std::shared_future<void> mayAnswer = promise.get_future().share();
  CCameraSession::SSetup stSetup = MakeSetup();
  stSetup.fnOpenCamera = [&, mayAnswer]() -> ffc::Result<std::unique_ptr<ICamera>> {
    CFaultyCamera::SFaults stFaults;
    stFaults.pLost = pLost;
    if (++nOpened > 1) {
      mayAnswer.wait();
    }
    return std::make_unique<CFaultyCamera>("Mono8", stFaults);
  };
  ASSERT_TRUE(m_session.Open(stSetup).IsOk());
  *pLost = true;
  EXPECT_FALSE(m_session.Watch(true)) << "looks for it beside";
  QTimer::singleShot(0, [&] { promise.set_value(); });
  ASSERT_TRUE(m_session.Open(MakeSetup()).IsOk());
  EXPECT_EQ(nOpened, 2);
  QTest::qWait(10);
  EXPECT_TRUE(m_session.Watch(true));
  EXPECT_EQ(m_spyOpened.size(), 2);
  EXPECT_EQ(m_session.GetViewer()->GetCamera().GetLink(), nullptr) << "the chosen one cannot be lost";
}

TEST_F(CameraSession, WatchedFeaturesAreReadBesideAndNotShownWhenTheUserHasWrittenMeanwhile)
{
  CCameraSession::SSetup stSetup = MakeSetup();
  stSetup.listWatched = {"ExposureTime", "PixelFormat", "NoSuchFeature"};
  ASSERT_TRUE(m_session.Open(stSetup).IsOk());
  std::vector<CFeatureStates> listRead;
  QObject::connect(&m_session, &CCameraSession::SigRead,
                   [&](const CFeatureStates &mapStates) { listRead.push_back(mapStates); });
  EXPECT_TRUE(m_session.Watch(true));
  m_session.NoteWritten();
  QTest::qWait(100);
  EXPECT_TRUE(listRead.empty());
  ASSERT_TRUE(WatchUntil([&] { return !listRead.empty(); }));
  EXPECT_GT(listRead[0].at("ExposureTime").dMax, listRead[0].at("ExposureTime").dValue);
  EXPECT_EQ(listRead[0].at("PixelFormat").strText.toStdString(), "Mono8");
  EXPECT_FALSE(listRead[0].at("PixelFormat").bWritable) << "it streams";
  EXPECT_FALSE(listRead[0].at("NoSuchFeature").bReadable);
}

TEST_F(CameraSession, FramesThatCannotBeReceivedAreSaidToBeSoAtOnce)
{
  CFaultyCamera::SFaults stFaults;
  stFaults.pLost = std::make_shared<std::atomic<bool>>(false);
  stFaults.bDeliversNothing = true;
  stFaults.bUnusableFrames = true;
  ASSERT_TRUE(m_session.Open(MakeSetup(stFaults)).IsOk());
  QElapsedTimer timer;
  timer.start();
  while (GetLastError().empty() && timer.elapsed() < 20000) {
    EXPECT_TRUE(m_session.Watch(true));
    QThread::msleep(10);
  }
  EXPECT_EQ(GetLastError(), "The camera sends frames that cannot be received: choose another pixel format.");
}

TEST_F(CameraSession, ACameraWithoutUserSetsHasNoSettingsToRestoreAndStreamsOn)
{
  ASSERT_TRUE(m_session.Open(MakeSetup()).IsOk());
  EXPECT_EQ(m_session.RestoreSettings().GetError(), "this camera has no user set \"UserSet0\"");
  EXPECT_TRUE(IsStreaming());
  m_session.StartOrStop();
  EXPECT_NE(m_session.RestoreSettings().GetError(), "");
  EXPECT_FALSE(IsStreaming()) << "as the user left it";
}
