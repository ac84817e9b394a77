#include "tests/support/correctingcamera.h"

#include <algorithm>

namespace ffc::test {

CCorrectingCamera::CCorrectingCamera(const std::string &strPixelFormat, int64_t nWidth, int64_t nHeight,
                                     const std::set<std::string> &setAbsent, ECoefficients eCoefficients)
  : CTestCamera(strPixelFormat, nWidth, nHeight), m_correction(Device(), setAbsent, eCoefficients),
    m_userSets(
      Device(), [this] { return TakeBalance(); },
      [this](const std::vector<double> &listState) { PutBalance(listState); })
{
  AddTrigger();
  SaveAsDefault();
  m_userSets.Save("UserSet0");
}

bool CCorrectingCamera::TakeFrame()
{
  return m_bTriggered.exchange(false) || CTestCamera::TakeFrame();
}

void CCorrectingCamera::ChangeDefault(const std::function<void()> &fnChange)
{
  const auto lock = Device().Lock();
  m_userSets.Save("present");
  m_userSets.Load("Default");
  fnChange();
  SaveAsDefault();
  m_userSets.Load("present");
}

void CCorrectingCamera::AddTrigger()
{
  Enumeration("TriggerSource").Select("Line0");
  m_features.SetStreamHandlers([this] { m_bTriggered = Integer("TLParamsLocked").Peek() != 0; }, nullptr);
}

std::vector<double> CCorrectingCamera::TakeBalance() const
{
  std::vector<double> listState(m_adBalanceRatio.begin(), m_adBalanceRatio.end());
  listState.push_back(static_cast<double>(m_nWhiteBalance));
  return listState;
}

void CCorrectingCamera::PutBalance(const std::vector<double> &listState)
{
  std::copy_n(listState.begin(), m_adBalanceRatio.size(), m_adBalanceRatio.begin());
  m_nWhiteBalance = static_cast<int64_t>(listState.back());
}

} // namespace ffc::test
