#include "host/recording/recordingfiles.h"

#include <algorithm>
#include <utility>

#include <QJsonDocument>

#include "frames/correctionmark.h"
#include "frames/wholefile.h"
#include "host/recording/framesettings.h"

namespace ffc::host {
namespace {

const QString SUMMARY = QStringLiteral("recording.json");
const QString LINES = QStringLiteral("frames.jsonl");
const QString TOGETHER = QStringLiteral("ser");

} // namespace

Result<> CRecordingFiles::Open(const SStreamFormat &stFormat, uint64_t nFrames)
{
  m_pKind = frames::FindFileKind(QStringLiteral("frame.") + m_strSuffix);
  if (m_pKind == nullptr || !m_pKind->IsSupported()) {
    return Failure(QStringLiteral("this program was built without %1").arg(m_strSuffix));
  }
  if (!m_dir.mkpath(QStringLiteral("."))) {
    return Failure(QStringLiteral("cannot make the folder %1").arg(m_dir.absolutePath()));
  }
  const QStringList listThere =
    m_dir.entryList({SUMMARY, LINES, QStringLiteral("frame_*"), QStringLiteral("frames.*")}, QDir::Files, QDir::Name);
  if (!listThere.isEmpty()) {
    return Failure(QStringLiteral("the folder %1 has a recording already (%2): choose another one with --out")
                     .arg(m_dir.absolutePath(), listThere.front()));
  }
  m_stInfo = frames::MakeFrameInfo(stFormat.nWidth, stFormat.nHeight, *stFormat.pFormat);
  m_stInfo.nFrames = m_strSuffix == TOGETHER ? std::min<uint64_t>(nFrames, m_pKind->GetMaxFrames()) : 1;
  m_pLines = std::make_unique<frames::CPartialFile>(m_dir.filePath(LINES));
  Result<> result = m_pLines->Open();
  if (result && m_strSuffix == TOGETHER) {
    auto writer = m_pKind->Create(m_dir.filePath(QStringLiteral("frames.ser")), m_stInfo);
    result = writer ? Result<>() : writer.GetFailure();
    m_pTogether = writer ? std::move(writer).GetValue() : nullptr;
  }
  return result;
}

void CRecordingFiles::SetSettings(const QJsonObject &settings)
{
  const std::lock_guard<std::mutex> lock(m_mutex);
  m_settings = settings;
}

QJsonObject CRecordingFiles::GetSettings()
{
  const std::lock_guard<std::mutex> lock(m_mutex);
  return m_settings;
}

Result<> CRecordingFiles::Write(const SRecordedFrame &stFrame)
{
  if (stFrame.stCopy.listBytes.size() != m_stInfo.stLayout.GetFrameSize()) {
    return Failure("a frame of another size came");
  }
  const QString strName = m_pTogether != nullptr
                            ? QStringLiteral("frames.ser")
                            : QStringLiteral("frame_%1.%2").arg(m_nWritten, 6, 10, QLatin1Char('0')).arg(m_strSuffix);
  QJsonObject line = DescribeFrame(GetSettings(), stFrame);
  const frames::Texts mapTexts = MakeFrameTexts(line, m_strMark);
  line.insert(QStringLiteral("file"), strName);
  const QByteArray byteLine = frames::ToLine(line).toUtf8() + '\n';
  ++m_nWritten;
  return RunUntilFailure([&] { return WriteFrame(stFrame, mapTexts, strName); },
                         [&] { return m_pLines->Write(byteLine.constData(), static_cast<uint64_t>(byteLine.size())); });
}

Result<> CRecordingFiles::WriteFrame(const SRecordedFrame &stFrame, const frames::Texts &mapTexts,
                                     const QString &strName)
{
  if (m_pTogether != nullptr) {
    return m_pTogether->Write(stFrame.stCopy.listBytes.data(), mapTexts);
  }
  const auto writer = m_pKind->Create(m_dir.filePath(strName), m_stInfo);
  if (!writer) {
    return writer.GetFailure();
  }
  return RunUntilFailure([&] { return writer.GetValue()->Write(stFrame.stCopy.listBytes.data(), mapTexts); },
                         [&] { return writer.GetValue()->Commit(); });
}

Result<> CRecordingFiles::Close(QJsonObject summary)
{
  summary.insert(QStringLiteral("settings"), GetSettings());
  const QString strMarkPath = frames::GetMarkPath(m_dir.filePath(QStringLiteral("frames.ser")));
  // A file that only seems to be corrected is refused later, one that only seems not to be would be corrected twice.
  return RunUntilFailure(
    [&] {
      return m_pTogether == nullptr || m_strMark.isEmpty()
               ? Result<>()
               : frames::SaveWholeFile(strMarkPath, m_strMark.toUtf8() + '\n');
    },
    [&] { return m_pTogether == nullptr || m_nWritten == 0 ? Result<>() : m_pTogether->Commit(); },
    [&] { return m_pLines->Commit(frames::ECommit::Quick); },
    [&] { return frames::SaveWholeFile(m_dir.filePath(SUMMARY), QJsonDocument(summary).toJson()); });
}

} // namespace ffc::host
