#include "host/headless/inertworkflow.h"

#include <QJsonDocument>
#include <QJsonObject>

#include "camera/correctionmode.h"
#include "host/headless/steps.h"

namespace ffc::host {

using camera::ISceneControl;

Result<> CInertWorkflow::Run()
{
  return RunSteps(
    {
      {"open", [this] { return m_session.Open(); }},
      {"dialog", [this] { return OpenDialogWhileStreaming(); }},
      {"controls", [this] { return CheckControls(); }},
      {"stream", [this] { return CheckStream(); }},
      {"report", [this] { return WriteResults(); }},
    },
    m_session.GetProgress());
}

QString CInertWorkflow::GetSummary() const
{
  const quality::SReport &stReport = m_session.GetReport();
  return (QStringLiteral("%1, %2: the plug-in does not know this camera's correction; every control of its dialog is "
                         "disabled, and the stream runs on\n")
            .arg(stReport.strCamera, stReport.strPixelFormat));
}

Result<> CInertWorkflow::OpenDialogWhileStreaming()
{
  return RunUntilFailure([this] { return m_session.SetScene(false, ISceneControl::EPurpose::Measurement); },
                         [this] { return m_session.ReadFormat(); }, [this] { return m_session.OpenDialog(); });
}

Result<> CInertWorkflow::CheckControls()
{
  const QStringList listEnabled = m_session.GetDriver().ListEnabledControls();
  if (!listEnabled.isEmpty()) {
    return Failure(QStringLiteral("enabled in spite of it: %1").arg(listEnabled.join(QStringLiteral(", "))));
  }
  return {};
}

Result<> CInertWorkflow::CheckStream()
{
  bool bTouched = false;
  const Result<> result = m_session.GetCollector().Collect(MEASURED_FRAMES, CFramePipeline::EWanted::Any,
                                                           [&](const SProcessedFrame &stFrame) {
                                                             bTouched = bTouched || stFrame.pCorrected != nullptr;
                                                             return true;
                                                           });
  return result && bTouched ? Failure("the plug-in changes frames all the same") : result;
}

Result<> CInertWorkflow::WriteResults()
{
  const quality::SReport &stReport = m_session.GetReport();
  const QJsonObject json{
    {"camera", stReport.strCamera},
    {"mode", QLatin1String(camera::GetModeName(stReport.eMode))},
    {"pixel_format", stReport.strPixelFormat},
    {"width", static_cast<int>(stReport.nWidth)},
    {"height", static_cast<int>(stReport.nHeight)},
    {"every_control_disabled", true},
    {"stream_runs_on", true},
    {"frames_seen", static_cast<int>(MEASURED_FRAMES)},
  };
  const CResultFolder &folder = m_session.GetFolder();
  return RunUntilFailure([&] { return folder.WriteDialog(m_session.GetDriver().GrabPicture()); },
                         [&] { return folder.WriteReport(QJsonDocument(json).toJson(QJsonDocument::Indented)); });
}

} // namespace ffc::host
