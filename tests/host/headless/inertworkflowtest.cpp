#include <QJsonDocument>
#include <QJsonObject>

#include "tests/host/headless/deviceworkflowfixture.h"

using namespace ffc::host;
using ffc::camera::ECorrectionMode;
using ffc::camera::SSimulatedCameraOptions;

namespace {

class InertWorkflow : public DeviceWorkflowFixture {
protected:
  InertWorkflow() { m_stOptions.stCamera.eMode = ECorrectionMode::Unknown; }

  QJsonObject ReadReport() const
  {
    QFile file(GetPath("report.json"));
    return file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll()).object() : QJsonObject();
  }
};

} // namespace

TEST_F(InertWorkflow, TheDialogOffersNothingAndTheStreamRunsOn)
{
  ASSERT_EQ(Run(), "");
  EXPECT_EQ(m_strSummary.count('\n'), 1);
  EXPECT_TRUE(m_strSummary.endsWith('\n'));
  EXPECT_TRUE(m_strSummary.contains("every control of its dialog is disabled"));
  EXPECT_TRUE(m_strSummary.contains("the stream runs on"));
  const QJsonObject json = ReadReport();
  EXPECT_EQ(json["mode"].toString(), "unknown");
  EXPECT_TRUE(json["every_control_disabled"].toBool());
  EXPECT_TRUE(json["stream_runs_on"].toBool());
  EXPECT_EQ(json["frames_seen"].toInt(), 16);
  EXPECT_EQ(json["pixel_format"].toString(), "Mono8");
  EXPECT_TRUE(QFile::exists(GetPath("dialog.png")));
}

TEST_F(InertWorkflow, AControlThatCanBeOperatedIsNamed)
{
  // A camera whose correction is known after all.
  m_fnBuild = [](SSimulatedCameraOptions &stCamera) { stCamera.eMode = ECorrectionMode::FlatField; };
  const std::string strError = Run();
  EXPECT_EQ(strError.rfind("controls: enabled in spite of it: ", 0), 0U) << strError;
  EXPECT_NE(strError.find("AcquisitionBrightFrame_Button"), std::string::npos) << strError;
  EXPECT_TRUE(ReadReport().isEmpty());
}
