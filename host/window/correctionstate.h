/// \file
/// Whether the frames that are shown are corrected, and why not.
#pragma once

#include <optional>

#include <QString>

namespace ffc::host {

/// Size and format of a frame.
struct SFrameShape {
  uint32_t nWidth = 0;
  uint32_t nHeight = 0;
  uint32_t nPixelFormat = 0; ///< PFNC code

  bool operator==(const SFrameShape &stOther) const
  {
    return nWidth == stOther.nWidth && nHeight == stOther.nHeight && nPixelFormat == stOther.nPixelFormat;
  }
  /// "2048 x 1536 Mono12".
  QString GetText() const;
};

/// What the host knows when it shows a frame.
struct SCorrectionFacts {
  bool bLost = false; ///< the camera was unplugged
  bool bHasFrame = false;
  QString strPluginError;                      ///< why there is no plug-in; empty when there is one
  bool bCorrected = false;                     ///< the plug-in's flag for this frame
  int32_t nStatus = 0;                         ///< of ProcessImage
  QString strStatusText;                       ///< the plug-in's words for it
  bool bAcquiring = false;                     ///< the plug-in is taking frames for itself
  bool bWithheld = false;                      ///< an acquisition was cancelled, its frames are kept from the plug-in
  bool bChoosingFile = false;                  ///< a file box of the plug-in is open
  bool bPreview = false;                       ///< the plug-in was told to correct
  bool bByCamera = false;                      ///< the camera corrects its frames itself
  SFrameShape stShape;                         ///< of this frame
  std::optional<SFrameShape> stCorrectedShape; ///< of the last frame that the plug-in corrected
};

struct SCorrectionState {
  enum class EKind { NoFrame, Corrected, Raw, NotCorrected };
  EKind eKind = EKind::NoFrame;
  QString strText; ///< in the language of the program; never empty
};

/// Never silent: a frame that the user expects corrected, and that is not, comes with the reason.
SCorrectionState JudgeCorrection(const SCorrectionFacts &stFacts);

} // namespace ffc::host
