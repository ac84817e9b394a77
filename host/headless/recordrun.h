/// \file
/// Recording frames without a window.
#pragma once

#include <memory>

#include <QString>

#include "host/headless/workflowsession.h"
#include "host/recording/framerecorder.h"
#include "host/recording/recordingfiles.h"

namespace ffc::host {

/// Records frames of any camera into a folder, as they come or corrected with a coefficient file. User-interface
/// thread.
class CRecordRun {
public:
  CRecordRun(const SHeadlessOptions &stOptions, CameraFactory fnOpenCamera, CProgressLine &progress);

  /// \return why the recording is not complete, but for lost frames; what was recorded before stays
  Result<> Run();
  /// After Run.
  const SRecordCounts &GetCounts() const { return m_stCounts; }
  /// How many frames were recorded and how many were lost, and why; ends with a line feed.
  QString GetSummary() const;

private:
  Result<> Prepare();
  Result<> LoadCoefficients();
  Result<> Record();
  Result<> WaitUntilFull(const CFrameRecorder &recorder);
  Result<> Close();
  QJsonObject ReadSettings();
  bool IsCorrected() const { return !m_session.GetOptions().stRecording.strCoefficients.empty(); }

  CWorkflowSession m_session;
  CRecordingFiles m_files;
  SRecordCounts m_stCounts;
};

} // namespace ffc::host
