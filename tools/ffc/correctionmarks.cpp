#include "tools/ffc/correctionmarks.h"

#include <exception>
#include <system_error>

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

#include "frames/correctionmark.h"
#include "frames/fileio.h"
#include "frames/wholefile.h"
#include "tools/ffc/inputs.h"

namespace ffc::tool {
namespace {

constexpr qint64 LARGEST_MARK = 1 << 16;
const QString FRAMES_HASH = QStringLiteral("framesHash");

/// The mark beside a file; an empty object where there is none.
Result<QJsonObject> ReadMark(const QString &strFile)
{
  QFile file(frames::GetMarkPath(strFile));
  if (!file.exists() || file.size() > LARGEST_MARK) {
    return QJsonObject();
  }
  const Result<QByteArray> bytes = frames::ReadWhole(file);
  if (!bytes) {
    return Failure(MakeSentence(file.fileName(), bytes.GetError()));
  }
  return QJsonDocument::fromJson(bytes.GetValue()).object();
}

} // namespace

Result<QString> FindCorrection(const QString &strFile, const frames::SFrameInfo &stInfo)
{
  const QByteArray byteText = stInfo.mapTexts.value(frames::TEXT_CORRECTION).toUtf8();
  const Result<QJsonObject> mark =
    byteText.isEmpty() ? ReadMark(strFile) : Result<QJsonObject>(QJsonDocument::fromJson(byteText).object());
  if (!mark) {
    return mark.GetFailure();
  }
  const QJsonObject &object = mark.GetValue();
  const bool bMark = object.contains(QStringLiteral("flat")) && object.contains(QStringLiteral("sha256"));
  return bMark ? object.value(QStringLiteral("sha256")).toString(QStringLiteral("?")) : QString();
}

std::optional<STrouble> CheckUncorrected(const QString &strFile, const frames::SFrameInfo &stInfo, const char *pWhy)
{
  const Result<QString> correction = FindCorrection(strFile, stInfo);
  if (!correction) {
    return STrouble{false, QString::fromStdString(correction.GetError())};
  }
  return correction.GetValue().isEmpty()
           ? std::nullopt
           : std::optional<STrouble>(Refuse(MakeSentence(strFile, std::string("is corrected already") + pWhy)));
}

bool IsMarkAhead(const QString &strFile, const QString &strFramesHash)
{
  const Result<QJsonObject> mark = ReadMark(strFile);
  const QString strMarked = mark ? mark.GetValue().value(FRAMES_HASH).toString() : QString();
  return !strMarked.isEmpty() && strMarked == strFramesHash;
}

CMarkFile::CMarkFile(const QString &strFile)
  : m_strPath(frames::GetMarkPath(strFile)), m_path(frames::ToPath(m_strPath))
{
}

CMarkFile::~CMarkFile()
{
  if (!m_bPending) {
    return;
  }
  if (!m_byteFormer) {
    std::error_code error;
    std::filesystem::remove(m_path, error);
    return;
  }
  try {
    (void)frames::SaveWholeFile(m_strPath, *m_byteFormer);
  } catch (const std::exception &) {
    // The file was corrected before this run: what its mark says of the flat is wrong, that it is corrected is not.
  }
}

Result<> CMarkFile::Write(const QString &strCorrection, const SHashes &stHashes)
{
  if (QFile::exists(m_strPath)) {
    QFile file(m_strPath); // closed before it is replaced
    Result<QByteArray> former = frames::ReadWhole(file);
    if (!former) {
      return Failure(MakeSentence(m_strPath, former.GetError()));
    }
    m_byteFormer = std::move(former).GetValue();
  }
  QJsonObject object = QJsonDocument::fromJson(strCorrection.toUtf8()).object();
  object[FRAMES_HASH] = stHashes.strRead;
  const QByteArray byteMark = frames::ToLine(object).toUtf8() + '\n';
  m_bPending = true;
  Result<> saved = frames::SaveWholeFile(m_strPath, byteMark);
  m_bPending = saved.IsOk();
  return saved;
}

void CMarkFile::Keep() noexcept
{
  m_bPending = false;
}

} // namespace ffc::tool
