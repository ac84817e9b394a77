/// \file
/// Whoever covers and uncovers the lens of a camera whose scene software cannot set.
#pragma once

#include <functional>
#include <iosfwd>
#include <optional>

#include "platform/result.h"

namespace ffc::host {

/// Covers the lens, or uncovers it, and comes back when that is done.
using LensAttendant = std::function<Result<>(bool bCovered)>;

/// Asks the person at the terminal, or gives a rig with a shutter some time.
class CTerminalAttendant {
public:
  /// \param dDelay seconds to wait in place of an answer; none: somebody presses Enter
  /// \param input, output outlive this
  CTerminalAttendant(std::istream &input, std::ostream &output, std::optional<double> dDelay)
    : m_input(input), m_output(output), m_dDelay(dDelay)
  {
  }

  /// Asks only when something is to change.
  Result<> Cover(bool bCovered);

private:
  std::istream &m_input;
  std::ostream &m_output;
  std::optional<double> m_dDelay;
  std::optional<bool> m_bCovered;
};

} // namespace ffc::host
