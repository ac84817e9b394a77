/// \file
/// The figures of one run, as JSON and as a short table.
#pragma once

#include <cstdint>
#include <optional>
#include <utility>

#include <QJsonObject>
#include <QList>
#include <QString>
#include <QStringList>

#include "camera/correctionmode.h"
#include "quality/defects.h"
#include "quality/uniformity.h"

namespace ffc::quality {

/// How far, in percentage points, the shading of reloaded coefficients may lie from the one before. Both are
/// figures of noisy frames.
constexpr double RELOAD_TOLERANCE_PERCENT = 0.2;

/// Whether the coefficients know the dark level.
enum class EDarkField {
  Unknown, ///< coefficients from a file, or a camera
  None,    ///< none was taken, or it was too bright to be used
  Used
};

struct SReport {
  camera::ECorrectionMode eMode = camera::ECorrectionMode::None; ///< None: the host corrects, else the camera
  bool bBaseline = false; ///< there was no correction: nothing is known after it, or of coefficients
  QString strCamera;
  QString strPixelFormat;
  uint32_t nWidth = 0;
  uint32_t nHeight = 0;
  QString strPrograms;        ///< names and versions of what measured and corrected; empty: not known
  QString strCoefficientFile; ///< that the coefficients were loaded from, or are kept in; empty: none
  EDarkField eDarkField = EDarkField::Unknown;
  int nFrameCount = 0;        ///< bright frames that the coefficients were made of; 0: not known
  int nDarkCount = 1;         ///< dark ones, where the coefficients know the dark level
  bool bWeighted = false;     ///< the bright frames were weighted instead of averaged
  int nExpectGray = -1;       ///< 0 to 255; -1: not known
  int nExpectGrayDn = 0;      ///< the same at the format's depth
  uint32_t nBrightFrames = 0; ///< fresh frames measured
  uint32_t nDarkFrames = 0;
  uint32_t nBlockSize = 0; ///< side of a block of the camera's coefficients, pixels
  SUniformity stBefore;
  SUniformity stAfter;
  /// With the coefficients of the camera's flash, after a power cycle.
  std::optional<SUniformity> stAfterReload;
  /// Samples clipped by the correction alone; only known where before and after are the same exposures.
  double dNewlyClippedPercent = 0;
  double dFramesPerSecond = 0;      ///< of the host's correction
  double dMegapixelsPerSecond = 0;  ///< the same
  std::vector<SDefect> listDefects; ///< of the frames before the correction
  QStringList listNotes;
};

/// Bright and dark frames before and after the correction. Of one size and depth.
struct SFigureStacks {
  const CFrameStack &stDarkBefore;
  const CFrameStack &stDarkAfter;
  const CFrameStack &stBrightBefore;
  const CFrameStack &stBrightAfter;
  genapi::EColorLayout eLayout;
};

/// Fills in the figures before and after, and the numbers of frames that they come from.
void MeasureFigures(const SFigureStacks &stStacks, SReport &stReport);

/// What the figures mean, in words; empty when there is nothing to remark. Says so when the correction
/// made PRNU worse, and why.
QStringList MakeFigureNotes(const SReport &stReport);

/// How the figures came about, as names and values, in the language of the program: coefficients, expected grey, frames
/// measured, method, units, versions. What is not known is left out.
QList<std::pair<QString, QString>> ListConditions(const SReport &stReport);

/// A key for every figure.
QJsonObject MakeReportJson(const SReport &stReport);

/// A table of some 30 lines of up to 100 columns, with a line feed at the end.
QString MakeReportTable(const SReport &stReport);

} // namespace ffc::quality
