// A host that is killed in the middle of an acquisition, and the next one.
#include <QDateTime>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>

#include <gtest/gtest.h>

#include "camera/software/simulated/simulatedcamera.h"
#include "genapi/softwarenodemap/softwarenodemap.h"

using ffc::camera::CreateSimulatedCamera;
using ffc::camera::ECorrectionMode;
using ffc::camera::ICamera;
using ffc::camera::SSimulatedCameraOptions;
using ffc::genapi::CSoftwareCommand;
using ffc::genapi::CSoftwareEnumeration;
using ffc::genapi::CSoftwareFloat;
using ffc::genapi::CSoftwareNodeMap;

namespace {

constexpr int LIMIT_MS = 60000;
constexpr double USERS_GAIN = 3.5;
constexpr double USERS_EXPOSURE = 12000.0;

class KilledHost : public testing::Test {
protected:
  std::unique_ptr<ICamera> Open() const
  {
    SSimulatedCameraOptions stOptions;
    stOptions.strPixelFormat = "Mono8";
    stOptions.nWidth = 128;
    stOptions.nHeight = 128;
    stOptions.eMode = ECorrectionMode::FlatField;
    stOptions.strFlashFile = m_strFlash.toStdString();
    auto created = CreateSimulatedCamera(stOptions);
    EXPECT_EQ(created.GetError(), "");
    std::unique_ptr<ICamera> pCamera = std::move(created).GetValue();
    return pCamera;
  }

  static CSoftwareNodeMap &Map(ICamera &camera) { return dynamic_cast<CSoftwareNodeMap &>(*camera.GetDeviceNodeMap()); }
  static double Peek(ICamera &camera, const char *pName) { return Map(camera).Find<CSoftwareFloat>(pName)->Peek(); }

  // A camera that starts with its user's settings.
  void KeepUsersSettings() const
  {
    const auto pCamera = Open();
    Map(*pCamera).Find<CSoftwareFloat>("Gain")->SetValue(USERS_GAIN);
    Map(*pCamera).Find<CSoftwareFloat>("ExposureTime")->SetValue(USERS_EXPOSURE);
    Map(*pCamera).Find<CSoftwareEnumeration>("UserSetSelector")->FromString("UserSet0");
    Map(*pCamera).Find<CSoftwareCommand>("UserSetSave")->Execute();
    Map(*pCamera).Find<CSoftwareEnumeration>("UserSetDefault")->FromString("UserSet0");
  }

  QStringList Arguments(const char *pWhat) const
  {
    return {pWhat,     "--mode",         "flatfield", "--flash", m_strFlash,           "--size",
            "128x128", "--pixel-format", "Mono8",     "--out",   m_dir.filePath("out")};
  }

  // Every acquisition begins by writing the user's settings into the flash.
  void KillAfterSaves(int nSaves) const
  {
    QProcess host;
    QDateTime former = QFileInfo(m_strFlash).lastModified();
    QThread::msleep(20); // so that the first save has another time
    host.start(FFCHOST, Arguments("--headless"));
    ASSERT_TRUE(host.waitForStarted(LIMIT_MS));
    QElapsedTimer timer;
    timer.start();
    int nSaved = 0;
    while (nSaved < nSaves && timer.elapsed() < LIMIT_MS && !host.waitForFinished(2)) {
      const QDateTime now = QFileInfo(m_strFlash).lastModified();
      nSaved += now.isValid() && now != former ? 1 : 0;
      former = now;
    }
    ASSERT_EQ(QProcess::Running, host.state()) << host.readAllStandardError().toStdString();
    host.kill();
    ASSERT_TRUE(host.waitForFinished(LIMIT_MS));
    EXPECT_EQ(QProcess::CrashExit, host.exitStatus());
    EXPECT_EQ(nSaves, nSaved);
  }

  QTemporaryDir m_dir;
  QString m_strFlash = m_dir.filePath("camera.flash");
};

} // namespace

TEST_F(KilledHost, LeavesTheUsersSettingsInTheUserSetWhereTheNextOneFindsThem)
{
  KeepUsersSettings();
  for (const int nSaves : {1, 2}) { // in the dark, in the bright acquisition
    ASSERT_NO_FATAL_FAILURE(KillAfterSaves(nSaves));
    const auto pCamera = Open(); // refuses a flash that is not whole
    ASSERT_NE(pCamera, nullptr);
    EXPECT_EQ(Peek(*pCamera, "Gain"), USERS_GAIN);
    EXPECT_EQ(Peek(*pCamera, "ExposureTime"), USERS_EXPOSURE);
    // Also where the camera does not start with them.
    Map(*pCamera).Find<CSoftwareEnumeration>("UserSetSelector")->FromString("Default");
    Map(*pCamera).Find<CSoftwareCommand>("UserSetLoad")->Execute();
    EXPECT_EQ(Peek(*pCamera, "Gain"), 0.0);
    Map(*pCamera).Find<CSoftwareEnumeration>("UserSetSelector")->FromString("UserSet0");
    Map(*pCamera).Find<CSoftwareCommand>("UserSetLoad")->Execute();
    EXPECT_EQ(Peek(*pCamera, "Gain"), USERS_GAIN);
  }
}

TEST_F(KilledHost, IsMadeGoodByOneCommand)
{
  KeepUsersSettings();
  {
    const auto pCamera = Open();
    Map(*pCamera).Find<CSoftwareEnumeration>("UserSetDefault")->FromString("Default");
  }
  QProcess host;
  host.start(FFCHOST, Arguments("--restore-settings"));
  ASSERT_TRUE(host.waitForFinished(LIMIT_MS));
  const std::string strOutput = host.readAllStandardOutput().toStdString();
  EXPECT_EQ(host.exitCode(), 0) << host.readAllStandardError().toStdString();
  EXPECT_NE(std::string::npos, strOutput.find("Gain: 0 -> 3.5")) << strOutput;
  EXPECT_NE(std::string::npos, strOutput.find("The camera has the settings of UserSet0 again.")) << strOutput;
}

TEST_F(KilledHost, SaysSoWhereTheCameraHasNoUserSets)
{
  QProcess host;
  host.start(FFCHOST, {"--restore-settings", "--size", "128x128"});
  ASSERT_TRUE(host.waitForFinished(LIMIT_MS));
  EXPECT_EQ(host.exitCode(), 1);
  EXPECT_EQ(host.readAllStandardError().replace("\r\n", "\n").toStdString(),
            "ffchost: this camera has no user set \"UserSet0\"\n");
}
