/// \file
/// The frames of the acquisitions that a table can be made of once more.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>

#include "camera/icamera.h"
#include "flat/weightedflat.h"

namespace ffc::host {

/// Keeps the frames of the plug-in's last dark and last bright acquisition that succeeded, seen by the host as they
/// passed: as many as the plug-in took, but no more than the limit. They are dropped as soon as the next acquisition of
/// the kind begins, and by Reset. Nothing is kept of what passes beside an acquisition.
///
/// Used on the user-interface thread, but for Take.
class CAcquiredFrames {
public:
  enum class EKind { Dark, Bright };
  static constexpr std::size_t LIMIT = std::size_t{1} << 30U; ///< bytes of one kind

  explicit CAcquiredFrames(std::size_t nLimit = LIMIT) : m_nLimit(nLimit) {}

  /// The plug-in is about to start the stream, which it may do more than once for one acquisition.
  /// \param nFrames that it takes
  /// \param bSettles frames come before these that it leaves out: a colour camera balances its white
  void Begin(EKind eKind, uint32_t nFrames, bool bSettles);
  /// The plug-in has taken one more.
  void Count();
  /// On the frame thread.
  void Take(const camera::SCameraFrame &stFrame);
  /// The plug-in has stopped the stream.
  void End();
  /// The acquisition is over. Its frames are kept where it has succeeded.
  void Finish(bool bSucceeded);
  /// Drops everything: another camera, or frames of another kind.
  void Reset();

  /// Null: there are none.
  std::shared_ptr<const flat::SFrameSet> GetBright() const { return m_pBright; }
  std::shared_ptr<const flat::SFrameSet> GetDark() const { return m_pDark; }

private:
  bool Fits(const camera::SCameraFrame &stFrame) const;
  bool IsCompleteLocked() const;

  const std::size_t m_nLimit;
  std::shared_ptr<const flat::SFrameSet> m_pBright;
  std::shared_ptr<const flat::SFrameSet> m_pDark;
  EKind m_eKind = EKind::Bright;
  bool m_bBegun = false; ///< and not finished
  std::mutex m_mutex;    ///< guards what follows
  std::shared_ptr<flat::SFrameSet> m_pTaken;
  uint32_t m_nWanted = 0; ///< 0: no frames are kept
  bool m_bSettled = false;
};

} // namespace ffc::host
