/// \file
/// The features of a camera that corrects its own frames, for tests.
#pragma once

#include <atomic>
#include <functional>
#include <set>
#include <string>

#include "tests/support/correctionfeatures.h"
#include "tests/support/testcamera.h"
#include "tests/support/usersets.h"

namespace ffc::test {

/// A test camera with user sets, a software trigger and a register of coefficients. It starts in the factory
/// state, which is the state of its construction until SaveAsDefault.
class CCorrectingCamera : public CTestCamera {
public:
  /// \param setAbsent any of FixedPatternNoiseCorrectMode, DeadPixelCorrect, RemoveParameterLimit, DigitalShift,
  ///   FlatFieldCorrection, FFCExpectGray
  explicit CCorrectingCamera(const std::string &strPixelFormat = "Mono8", int64_t nWidth = 64, int64_t nHeight = 48,
                             const std::set<std::string> &setAbsent = {},
                             ECoefficients eCoefficients = ECoefficients::FlatField);

  /// With the trigger on, one frame for each TriggerSoftware while it streams and listens to "Software".
  bool TakeFrame() override;

  ffc::test::CUserSets &UserSets() { return m_userSets; }
  ffc::test::CCorrectionFeatures &Correction() { return m_correction; }
  /// Makes the present state the factory set.
  void SaveAsDefault() { m_userSets.Save("Default"); }
  /// Changes the factory set alone: the change is made on it and taken from the present state again.
  void ChangeDefault(const std::function<void()> &fnChange);

private:
  void AddTrigger();
  std::vector<double> TakeBalance() const;
  void PutBalance(const std::vector<double> &listState);

  std::atomic<bool> m_bTriggered{false};
  ffc::test::CCorrectionFeatures m_correction;
  ffc::test::CUserSets m_userSets;
};

} // namespace ffc::test
