#include "host/window/framesaving.h"

#include <algorithm>
#include <limits>
#include <memory>
#include <utility>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>

#include "frames/correctionmark.h"
#include "frames/ifilekind.h"
#include "frames/wholefile.h"
#include "host/recording/framesettings.h"
#include "host/viewer/viewer.h"
#include "host/window/displaypicture.h"
#include "host/window/savebox.h"
#include "host/window/waitbox.h"

namespace ffc::host {

using frames::IFileKind;
using frames::IFrameWriter;
using genapi::SPixelFormat;

namespace {

const QString FOLDER_KEY = QStringLiteral("frames/folder");
const QString KIND_KEY = QStringLiteral("frames/kind");

QString Translate(const char *pText)
{
  return QCoreApplication::translate("FrameSaving", pText);
}

QString MakeFilter(const IFileKind &kind)
{
  return QStringLiteral("%1 (*.%2)").arg(kind.GetName(), kind.GetSuffixes().join(QStringLiteral(" *.")));
}

Result<frames::SFrameInfo> DescribeFrames(const SFrameCopy &stFrame, const frames::Texts &mapTexts)
{
  const SPixelFormat *pFormat = GetShownFormat(stFrame);
  if (pFormat == nullptr) {
    return Failure(Translate("Frames of this pixel format cannot be saved: choose a mono or Bayer format that is not "
                             "packed."));
  }
  frames::SFrameInfo stInfo = frames::MakeFrameInfo(stFrame.nWidth, stFrame.nHeight, *pFormat);
  stInfo.mapTexts = mapTexts;
  return stInfo;
}

/// \return the file of a frame, counted from 1: one for each where the kind does not hold so many
QString GetFramePath(const QString &strPath, const frames::IFileKind &kind, uint32_t nFrames, uint32_t nNumber)
{
  if (kind.GetMaxFrames() >= nFrames) {
    return strPath;
  }
  const QFileInfo file(strPath);
  return file.dir().filePath(
    QStringLiteral("%1-%2.%3").arg(file.completeBaseName()).arg(nNumber, 4, 10, QLatin1Char('0')).arg(file.suffix()));
}

/// Writes a sequence into one file, or into one for each frame.
class CSequenceFiles {
public:
  CSequenceFiles(const QString &strPath, uint32_t nFrames, const SFrameOrigin &stOrigin)
    : m_strPath(strPath), m_kind(*frames::FindFileKind(strPath)), m_nFrames(nFrames), m_stOrigin(stOrigin)
  {
  }

  Result<> Write(const SRecordedFrame &stFrame)
  {
    const frames::Texts mapTexts = MakeFrameTexts(DescribeFrame(m_stOrigin.settings, stFrame), m_stOrigin.strMark);
    const Result<frames::SFrameInfo> info = DescribeFrames(stFrame.stCopy, mapTexts);
    if (!info) {
      return info.GetFailure();
    }
    if (m_nWritten > 0 && info.GetValue().stLayout != m_stLayout) {
      return Failure(Translate("The frames changed their size on the way: save the sequence again."));
    }
    m_stLayout = info.GetValue().stLayout;
    m_bCorrected = m_bCorrected || stFrame.stCopy.bCorrected;
    return RunUntilFailure([&] { return m_pWriter == nullptr ? Create(info.GetValue()) : Result<>(); },
                           [&] { return m_pWriter->Write(stFrame.stCopy.listBytes.data(), mapTexts); },
                           [&] {
                             ++m_nWritten;
                             return IsSingle() ? Commit() : Result<>();
                           });
  }

  /// After the last frame.
  Result<> Close() { return m_pWriter == nullptr ? Result<>() : Commit(); }

private:
  bool IsSingle() const { return m_kind.GetMaxFrames() < m_nFrames; }

  Result<> Create(frames::SFrameInfo stInfo)
  {
    stInfo.nFrames = IsSingle() ? 1 : m_nFrames;
    m_strFile = GetFramePath(m_strPath, m_kind, m_nFrames, m_nWritten + 1);
    Result<std::unique_ptr<IFrameWriter>> created = m_kind.Create(m_strFile, stInfo);
    if (!created) {
      return created.GetFailure();
    }
    m_pWriter = std::move(created).GetValue();
    return {};
  }

  /// The mark comes first: a file that only seems to be corrected is refused, one that only seems not to be would be
  /// corrected twice.
  Result<> Commit()
  {
    const QString strMarkPath = frames::GetMarkPath(m_strFile);
    const bool bMarkBeside = !m_kind.KeepsTexts() && m_bCorrected;
    Result<> committed = RunUntilFailure(
      [&] { return bMarkBeside ? frames::SaveWholeFile(strMarkPath, m_stOrigin.strMark.toUtf8() + '\n') : Result<>(); },
      [&] { return m_pWriter->Commit(); });
    m_pWriter.reset();
    if (committed && !bMarkBeside) {
      QFile::remove(strMarkPath); // a former file's of that name
    }
    m_bCorrected = false;
    return committed;
  }

  QString m_strPath;
  const IFileKind &m_kind;
  uint32_t m_nFrames;
  SFrameOrigin m_stOrigin;
  frames::SLayout m_stLayout;
  QString m_strFile; ///< that is being written
  std::unique_ptr<IFrameWriter> m_pWriter;
  bool m_bCorrected = false; ///< one of its frames is
  uint32_t m_nWritten = 0;
};

} // namespace

QString DescribeCorrection(const SCoefficientOrigin &stOrigin)
{
  QJsonObject mark =
    frames::MakeCorrectionMark(QFileInfo(stOrigin.strFile).fileName(), stOrigin.strSha256, GetToolName());
  if (stOrigin.strSha256.isEmpty()) {
    mark[QStringLiteral("sha256")] = QJsonValue(); // in no file
  }
  if (stOrigin.eKind == SCoefficientOrigin::EKind::Acquired) {
    mark[QStringLiteral("brightFrames")] = stOrigin.nFrames;
    mark[QStringLiteral("darkUsed")] = stOrigin.eDarkField == quality::EDarkField::Used;
    mark[QStringLiteral("expectedGray")] = stOrigin.nExpectGray;
  }
  return frames::ToLine(mark);
}

QString AskFramePath(QWidget *pParent, const QString &strTitle, uint32_t nFrames)
{
  QStringList listFilters;
  QString strFirst; // one that has a place for everything
  for (const IFileKind *pKind : frames::ListFileKinds()) {
    listFilters << MakeFilter(*pKind);
    strFirst = strFirst.isEmpty() && pKind->KeepsTexts() && pKind->GetMaxFrames() > 1 ? listFilters.last() : strFirst;
  }
  QSettings settings;
  const auto complete = [&](const QString &strTyped, const QString &strFilter) {
    const int nKind = std::max(0, listFilters.indexOf(strFilter));
    return frames::FindFileKind(strTyped) != nullptr
             ? strTyped
             : strTyped + QLatin1Char('.') +
                 frames::ListFileKinds()[static_cast<std::size_t>(nKind)]->GetSuffixes().first();
  };
  const auto findFirst = [nFrames](const QString &strPath) {
    return QStringList{GetFramePath(strPath, *frames::FindFileKind(strPath), nFrames, 1)};
  };
  const SSaveBox stBox = {strTitle, QDir(settings.value(FOLDER_KEY, QDir::homePath()).toString()).absolutePath(),
                          listFilters, settings.value(KIND_KEY, strFirst).toString()};
  const SSaveAnswer stAnswer = AskSavePath(pParent, stBox, complete, findFirst);
  if (!stAnswer.strPath.isEmpty()) {
    settings.setValue(FOLDER_KEY, QFileInfo(stAnswer.strPath).absolutePath());
    settings.setValue(KIND_KEY, stAnswer.strFilter);
  }
  return stAnswer.strPath;
}

Result<> SaveFrameCopy(const QString &strPath, const SFrameCopy &stFrame, const SFrameOrigin &stOrigin)
{
  CSequenceFiles files(strPath, 1, stOrigin);
  SRecordedFrame stRecorded;
  stRecorded.stCopy = stFrame;
  return RunUntilFailure([&] { return files.Write(stRecorded); }, [&] { return files.Close(); });
}

Result<uint32_t> SaveSequence(const QString &strPath, uint32_t nFrames, CFramePipeline &pipeline,
                              const SFrameOrigin &stOrigin, QWidget *pParent)
{
  CWaitBox box(Translate("Save sequence"), pParent);
  box.SetClosingText(Translate("The window closes when the frames are saved."));
  CSequenceFiles files(strPath, nFrames, stOrigin);
  CFrameRecorder recorder({nFrames}, [&files](const SRecordedFrame &stFrame) { return files.Write(stFrame); });
  pipeline.Request(std::numeric_limits<uint32_t>::max(), CFramePipeline::EWanted::Any,
                   [&recorder](const SProcessedFrame &stFrame) { recorder.Add(stFrame); });
  while (!box.IsCancelled() && !recorder.IsDone() && recorder.GetCounts().nDropped == 0) {
    box.ShowProgress(Translate("Saving frames"), static_cast<uint32_t>(recorder.GetCounts().nWritten), nFrames);
    CWaitBox::LetPass();
  }
  pipeline.CancelRequest();
  const Result<> ended = recorder.Discard();
  const SRecordCounts stCounts = recorder.GetCounts();
  if (!ended) {
    return ended.GetFailure();
  }
  if (stCounts.nDropped > 0) {
    return Failure(Translate("The disk is slower than the camera: %1 of %2 frames were missed. Save fewer frames, or "
                             "lower the frame rate.")
                     .arg(stCounts.nDropped)
                     .arg(nFrames));
  }
  const Result<> closed = stCounts.nWritten == nFrames ? files.Close() : Result<>();
  if (!closed) {
    return closed.GetFailure();
  }
  return static_cast<uint32_t>(stCounts.nWritten);
}

} // namespace ffc::host
