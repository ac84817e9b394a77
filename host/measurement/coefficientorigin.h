/// \file
/// What the coefficients in use were made of.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <unordered_set>

#include <QString>
#include <QStringList>

#include "genapi/sensorformat.h"
#include "host/dialogdriver/dialogobserver.h"
#include "host/viewer/framepipeline.h"
#include "quality/brightfield.h"
#include "quality/report.h"

namespace ffc::host {

class CDialogDriver;

/// Counts the different frames of the stream while it lives, and judges their light. A recording that is played in a
/// loop repeats itself, and an average over repeats is worth no more than one over the frames that differ. Nobody else
/// asks the pipeline for frames meanwhile.
class CDifferentFrames {
public:
  /// Sees each frame as it came, on the frame thread.
  using FnFrame = std::function<void(const camera::SCameraFrame &stFrame)>;

  /// \param fnFrame gets them too; may be empty
  explicit CDifferentFrames(CFramePipeline &pipeline, FnFrame fnFrame = {});
  ~CDifferentFrames();
  CDifferentFrames(const CDifferentFrames &) = delete;
  CDifferentFrames &operator=(const CDifferentFrames &) = delete;

  /// A number for each.
  using Seen = std::unordered_set<std::size_t>;
  /// Ends counting.
  Seen Stop();
  /// Different frames that were judged, 16 at most.
  uint32_t GetJudgedCount() const { return m_stack.GetFrameCount(); }
  /// Mean of those, as a share of the depth's maximum; 0 for none. After Stop.
  double GetBrightness() const;
  /// Reasons against using them as a bright field, in sentences. After Stop.
  QStringList JudgeLight() const;

private:
  void Take(const camera::SCameraFrame &stFrame);

  CFramePipeline &m_pipeline;
  FnFrame m_fnFrame;
  Seen m_setSeen;
  const genapi::SSensorFormat *m_pFormat = nullptr; ///< of the frames that are judged
  quality::CFrameStack m_stack;
  quality::CLightWatch m_watch;
};

struct SCoefficientOrigin {
  enum class EKind {
    None,     ///< there are none, or nobody saw where they came from
    Acquired, ///< computed from frames that were acquired here
    File,
    Flash
  };
  EKind eKind = EKind::None;
  int nAskedFrames = 0;                          ///< of the bright field
  int nFrames = 0;                               ///< those of them that differ from each other; 0: not known
  int nDarkFrames = 1;                           ///< where the dark field is used
  int nExpectGray = -1;                          ///< 0 to 255; -1: not known
  QString strMethod = QStringLiteral("average"); ///< how the bright frames became a reference
  QString strNoise; ///< where their noise was known from; empty where the method does not ask
  quality::EDarkField eDarkField = quality::EDarkField::Unknown;
  QString strFile;               ///< of the coefficients, loaded or saved; empty: there is none
  QString strSha256;             ///< of that file, in hexadecimal; empty: it cannot be read
  QStringList listBrightRemarks; ///< reasons against using the bright field

  bool IsRepeated() const { return nFrames < nAskedFrames; }
  bool IsWeighted() const { return strMethod == QLatin1String("weighted"); }
  /// What a reader of figures has to know about it, in sentences.
  QStringList GetNotes() const;
};

/// Follows what is done in the dialog. What its sliders show is what would be done next, not what was done.
class CCoefficientWatch {
public:
  /// The plug-in begins to take frames, which may happen more than once for one press of a button.
  /// \param fnFrame gets the frames, too
  void BeginAcquisition(CFramePipeline &pipeline, CDifferentFrames::FnFrame fnFrame = {});
  /// The plug-in has its frames, or has given up.
  void EndAcquisition();
  /// \param bByCamera the camera corrects: it keeps count and grey together with its coefficients, and the dialog shows
  ///   them after loading
  void Note(const SDialogOutcome &stOutcome, const CDialogDriver &driver, bool bByCamera);
  /// Another camera.
  void Reset() { *this = CCoefficientWatch(); }

  /// Of the bright field that was acquired last.
  const SCoefficientOrigin &GetBright() const { return m_stBright; }
  /// Of the coefficients in use.
  const SCoefficientOrigin &GetOrigin() const { return m_stOrigin; }

private:
  void NoteDone(const SDialogOutcome &stOutcome, const CDialogDriver &driver, bool bByCamera);
  void NoteBright(const CDialogDriver &driver);
  void NoteLoaded(SCoefficientOrigin::EKind eKind, const QString &strFile, const CDialogDriver &driver, bool bByCamera);

  std::unique_ptr<CDifferentFrames> m_pFrames;
  CDifferentFrames::Seen m_setSeen; ///< since a button was pressed
  uint32_t m_nJudged = 0;           ///< frames of the largest acquisition since a button was pressed
  QStringList m_listBrightRemarks;  ///< of that
  bool m_bDark = false;             ///< the plug-in has a dark field that it uses
  SCoefficientOrigin m_stBright;
  SCoefficientOrigin m_stOrigin;
};

} // namespace ffc::host
