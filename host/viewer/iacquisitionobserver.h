/// \file
/// Following the progress of the plug-in's acquisitions.
#pragma once

namespace ffc::host {

/// While the plug-in acquires, it blocks the user-interface thread; all that a host sees there are the plug-in's
/// messages and its accesses to the camera's features. Called on that thread, from within the acquisition.
class IAcquisitionObserver {
public:
  virtual ~IAcquisitionObserver() = default;

  /// The plug-in wants frames; the stream has not begun.
  virtual void ExpectAcquisition() {}
  /// The plug-in begins to take frames.
  virtual void BeginAcquisition() = 0;
  /// The plug-in has one more frame: it has compared the payload size with the one it expects.
  virtual void CountAcquiredFrame() = 0;
  /// The plug-in takes no more frames.
  virtual void EndAcquisition() = 0;
};

} // namespace ffc::host
