/// \file
/// Frame counts and their places on the frame-count slider.
#pragma once

namespace ffc::dialog {

/// Slider position of a frame count: 1, 2, 4, 8, 16 at 0, 4, 8, 12, 16; any other count at 0.
int FrameCountToPosition(int nFrameCount);
/// Snaps a slider position down to a multiple of 4, within 0 to 16.
int SnapPosition(int nPosition);
/// Frame count of a snapped position.
int PositionToFrameCount(int nPosition);

} // namespace ffc::dialog
