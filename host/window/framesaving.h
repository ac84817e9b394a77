/// \file
/// Saving what the window shows: one frame, or a sequence as it comes.
#pragma once

#include <QJsonObject>
#include <QString>

#include "host/measurement/coefficientorigin.h"
#include "host/viewer/framepipeline.h"
#include "platform/result.h"

class QWidget;

namespace ffc::host {

/// What is kept with the samples.
struct SFrameOrigin {
  QJsonObject settings; ///< of ReadFrameSettings
  QString strMark;      ///< of DescribeCorrection: kept with each frame that is corrected, so that none is twice
};

/// For the frames that the plug-in has corrected: a JSON object that says with what, as far as that is known.
QString DescribeCorrection(const SCoefficientOrigin &stOrigin);

/// Asks where to, with the kinds of files that there are.
/// \param nFrames that are to be saved: a kind of file that takes one frame gets one file for each
/// \return empty: the user has cancelled; else with a known ending
QString AskFramePath(QWidget *pParent, const QString &strTitle, uint32_t nFrames);

/// Samples as they are: never what the display makes of them.
Result<> SaveFrameCopy(const QString &strPath, const SFrameCopy &stFrame, const SFrameOrigin &stOrigin);

/// Saves the next frames of the stream, as they are shown, corrected where the plug-in corrects. A kind of file that
/// takes one frame is written as NAME-0001.png and so on. Shows how far it is; the user may cancel, and nothing is left
/// of an unfinished file then.
/// \param strPath as AskFramePath gives it
/// \return how many were saved
Result<uint32_t> SaveSequence(const QString &strPath, uint32_t nFrames, CFramePipeline &pipeline,
                              const SFrameOrigin &stOrigin, QWidget *pParent);

} // namespace ffc::host
