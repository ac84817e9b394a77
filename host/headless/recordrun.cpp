#include "host/headless/recordrun.h"

#include <limits>
#include <utility>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QThread>

#include "camera/icameralink.h"
#include "frames/correctionmark.h"
#include "frames/sidefile.h"
#include "host/headless/steps.h"
#include "host/recording/framesettings.h"
#include "host/viewer/cameratexts.h"
#include "host/viewer/viewer.h"

namespace ffc::host {
namespace {

constexpr unsigned long POLL_MS = 5;
constexpr qint64 SETTINGS_MS = 1000; ///< between two looks at what may change meanwhile
constexpr qint64 STALL_MS = 20000;

} // namespace

CRecordRun::CRecordRun(const SHeadlessOptions &stOptions, CameraFactory fnOpenCamera, CProgressLine &progress)
  : m_session(stOptions, std::move(fnOpenCamera), progress),
    m_files(QString::fromStdString(stOptions.stWorkflow.strOutFolder),
            QString::fromStdString(stOptions.stRecording.strFormat))
{
  // Whatever stands before the lens is what is recorded.
  m_session.SetLensAttendant([](bool) { return Result<>(); });
}

Result<> CRecordRun::Run()
{
  Result<> result = RunSteps({{"open", [this] { return Prepare(); }},
                              {"coefficients", [this] { return LoadCoefficients(); }},
                              {"recording", [this] { return Record(); }}},
                             m_session.GetProgress());
  m_session.StopStream();
  m_session.GetProgress().Clear();
  return result;
}

Result<> CRecordRun::Prepare()
{
  return RunUntilFailure([this] { return m_session.Open(); }, [this] { return m_session.GetViewer().StartStream(); },
                         [this] { return m_session.ReadFormat(); });
}

Result<> CRecordRun::LoadCoefficients()
{
  if (!IsCorrected()) {
    return {};
  }
  const QString strPath = QString::fromStdString(m_session.GetOptions().stRecording.strCoefficients);
  const Result<QString> hash = frames::HashCoefficientFile(strPath);
  if (!hash) {
    return Failure(QStringLiteral("cannot read %1: %2").arg(strPath, QString::fromStdString(hash.GetError())));
  }
  m_files.SetCorrection(
    frames::ToLine(frames::MakeCorrectionMark(QFileInfo(strPath).fileName(), hash.GetValue(), GetToolName())));
  return RunUntilFailure([&] { return m_session.OpenDialog(); },
                         [&] { return m_session.Judge(m_session.GetDriver().LoadFile(strPath)); },
                         [&] {
                           return m_session.GetDriver().IsPreviewOn()
                                    ? Result<>()
                                    : Failure("the dialog does not correct with " + strPath.toStdString());
                         },
                         // Loading stops the stream.
                         [&] { return m_session.GetViewer().StartStream(); });
}

Result<> CRecordRun::Record()
{
  const SRecordingOptions &stRecording = m_session.GetOptions().stRecording;
  Result<> opened = m_files.Open(m_session.GetFormat(), stRecording.nFrames);
  if (!opened) {
    return opened;
  }
  m_files.SetSettings(ReadSettings());
  m_session.GetProgress().BeginStep("recording", stRecording.nFrames);
  CFrameRecorder recorder({stRecording.nFrames, stRecording.bStopOnLoss},
                          [this](const SRecordedFrame &stFrame) { return m_files.Write(stFrame); });
  CFramePipeline &pipeline = m_session.GetViewer().GetPipeline();
  pipeline.Request(std::numeric_limits<uint32_t>::max(),
                   IsCorrected() ? CFramePipeline::EWanted::Corrected : CFramePipeline::EWanted::Any,
                   [&recorder](const SProcessedFrame &stFrame) { recorder.Add(stFrame); });
  const Result<> waited = WaitUntilFull(recorder);
  pipeline.CancelRequest();
  const Result<> written = recorder.Finish();
  m_stCounts = recorder.GetCounts();
  const Result<> closed = Close();
  return !written ? written : !waited ? waited : closed;
}

Result<> CRecordRun::WaitUntilFull(const CFrameRecorder &recorder)
{
  QElapsedTimer sinceFrame;
  QElapsedTimer sinceSettings;
  sinceFrame.start();
  sinceSettings.start();
  uint64_t nTaken = 0;
  while (!recorder.IsFull()) {
    QThread::msleep(POLL_MS);
    QCoreApplication::processEvents();
    const camera::ICameraLink *pLink = m_session.GetViewer().GetCamera().GetLink();
    if (pLink != nullptr && pLink->IsLost()) {
      return Failure("the camera does not answer any more");
    }
    if (sinceSettings.elapsed() >= SETTINGS_MS) {
      m_files.SetSettings(ReadSettings());
      sinceSettings.restart();
    }
    const uint64_t nNow = recorder.GetCounts().nTaken;
    if (nNow != nTaken) {
      nTaken = nNow;
      sinceFrame.restart();
    } else if (sinceFrame.elapsed() > STALL_MS) {
      return Failure(QStringLiteral("no %1frame came for %2 s")
                       .arg(QLatin1String(IsCorrected() ? "corrected " : ""))
                       .arg(STALL_MS / 1000));
    }
  }
  return {};
}

Result<> CRecordRun::Close()
{
  const SRecordingOptions &stRecording = m_session.GetOptions().stRecording;
  const QString strCoefficients = QString::fromStdString(stRecording.strCoefficients);
  return m_files.Close({{QStringLiteral("frames"), static_cast<double>(m_stCounts.nWritten)},
                        {QStringLiteral("asked"), static_cast<double>(stRecording.nFrames)},
                        {QStringLiteral("lostByDisk"), static_cast<double>(m_stCounts.nDropped)},
                        {QStringLiteral("lostOnTheWay"), static_cast<double>(m_stCounts.nMissing)},
                        {QStringLiteral("coefficients"), strCoefficients},
                        {QStringLiteral("tool"), GetToolName()}});
}

QJsonObject CRecordRun::ReadSettings()
{
  return ReadFrameSettings(*m_session.GetViewer().GetCamera().GetDeviceNodeMap());
}

QString CRecordRun::GetSummary() const
{
  const SRecordingOptions &stRecording = m_session.GetOptions().stRecording;
  QString strSummary = QStringLiteral("%1 of %2 frames recorded in %3\n")
                         .arg(m_stCounts.nWritten)
                         .arg(stRecording.nFrames)
                         .arg(QString::fromStdString(m_session.GetOptions().stWorkflow.strOutFolder));
  if (m_stCounts.nDropped > 0) {
    strSummary +=
      QStringLiteral("%1 frames were lost between these: the disk was too slow for them\n").arg(m_stCounts.nDropped);
  }
  if (m_stCounts.nMissing > 0) {
    strSummary += QStringLiteral("%1 frames never came: lost in the camera or on the way\n").arg(m_stCounts.nMissing);
  }
  return strSummary;
}

} // namespace ffc::host
