/// \file
/// What became of the things that were done in the plug-in's dialog, in words.
#pragma once

#include <QString>

#include "host/dialogdriver/dialogobserver.h"
#include "host/measurement/coefficientorigin.h"

namespace ffc::host {

struct SDialogNote {
  QString strText; ///< in the language of the program; empty: there is nothing to tell
  bool bWarning = false;
};

/// What the host knows when the plug-in is done with a button.
struct SDialogFacts {
  SDialogOutcome stOutcome;
  bool bCancelled = false;      ///< the user cancelled the acquisition
  bool bPreviewOffered = false; ///< coefficients from before can still be used
  SCoefficientOrigin stBright;  ///< of the last bright field
  bool bStreaming = false;
};

/// The dialog stays silent when it has loaded or saved.
SDialogNote DescribeOutcome(const SDialogFacts &stFacts);

/// What a camera was corrected with before.
/// \param strFile of coefficients; empty, or gone meanwhile: there is nothing to tell
SDialogNote DescribeLastFile(const QString &strFile);

/// Why every control of the dialog is grey.
/// \param strMode the camera's correction
/// \return empty for a correction that the plug-in knows, and for none
SDialogNote DescribeMode(const QString &strMode);

} // namespace ffc::host
