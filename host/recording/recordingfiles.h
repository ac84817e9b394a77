/// \file
/// The files of a recording.
#pragma once

#include <cstdint>
#include <memory>
#include <mutex>

#include <QDir>
#include <QJsonObject>
#include <QString>

#include "frames/ifilekind.h"
#include "frames/partialfile.h"
#include "host/measurement/freshframes.h"
#include "host/recording/framerecorder.h"
#include "platform/result.h"

namespace ffc::host {

/// In one folder: "frame_000000.tif" and so on, or "frames.ser" with all of them; "frames.jsonl" with one line for each
/// frame; "recording.json". Each frame bears its number, its time and the camera's settings, and the mark of its
/// correction.
class CRecordingFiles {
public:
  /// \param strSuffix png, tif, fits or ser
  CRecordingFiles(const QString &strFolder, const QString &strSuffix) : m_dir(strFolder), m_strSuffix(strSuffix) {}

  /// Refuses a folder that has a recording already.
  /// \param nFrames that are to be written
  Result<> Open(const SStreamFormat &stFormat, uint64_t nFrames);
  /// For the frames that are written from now on. From any thread.
  void SetSettings(const QJsonObject &settings);
  /// A JSON object; empty: the frames are as they came. Before the first frame.
  void SetCorrection(const QString &strMark) { m_strMark = strMark; }

  /// On one thread. Messages name the file.
  Result<> Write(const SRecordedFrame &stFrame);
  /// After the last frame.
  /// \param summary for recording.json, besides the settings
  Result<> Close(QJsonObject summary);

private:
  Result<> WriteFrame(const SRecordedFrame &stFrame, const frames::Texts &mapTexts, const QString &strName);
  QJsonObject GetSettings();

  QDir m_dir;
  const QString m_strSuffix;
  const frames::IFileKind *m_pKind = nullptr;
  frames::SFrameInfo m_stInfo;
  QString m_strMark;
  std::unique_ptr<frames::IFrameWriter> m_pTogether; ///< of the kind that holds all frames in one file
  std::unique_ptr<frames::CPartialFile> m_pLines;
  uint64_t m_nWritten = 0;
  std::mutex m_mutex; ///< guards
  QJsonObject m_settings;
};

} // namespace ffc::host
