#include "camera/software/selfcorrection/coefficientregister.h"

#include <cstddef>
#include <string>
#include <utility>

namespace ffc::camera {

namespace {

void ExchangeBytePairs(uint8_t *pBytes, std::size_t nCount)
{
  for (std::size_t nAt = 0; nAt + 1 < nCount; nAt += 2) {
    std::swap(pBytes[nAt], pBytes[nAt + 1]);
  }
}

[[noreturn]] void ThrowRuntime(const std::string &strReason)
{
  throw GenICam::RuntimeException(strReason.c_str(), __FILE__, __LINE__);
}

std::string Describe(const SBlockLayout &stLayout)
{
  return std::to_string(stLayout.nWidth) + " x " + std::to_string(stLayout.nHeight) + " pixels at (" +
         std::to_string(stLayout.nOffsetX) + ", " + std::to_string(stLayout.nOffsetY) + ") in blocks of " +
         std::to_string(stLayout.nBlockSide);
}

} // namespace

CCoefficientRegister::CCoefficientRegister(genapi::CSoftwareNodeMap &deviceMap, CCameraFlash &flash,
                                           std::function<SBlockLayout()> fnLayout)
  : m_flash(flash), m_fnLayout(std::move(fnLayout))
{
  const auto getLength = [this] { return int64_t{m_fnLayout().GetRegisterSize()}; };
  deviceMap.AddInteger("FFCCoefficientsSize").OnRead(getLength);
  deviceMap.AddRegister("FFCValueAll")
    .Length(getLength)
    .OnRead([this] { return Read(); })
    .OnWrite([this](const std::vector<uint8_t> &listBytes) { Write(listBytes); });
  deviceMap.AddCommand("FFCFlashLoad").OnExecute([this] { LoadFromFlash(); });
  deviceMap.AddCommand("FFCFlashSave").OnExecute([this] { SaveToFlash(); });
}

std::shared_ptr<const SCoefficients> CCoefficientRegister::GetApplicable() const
{
  return CountsNow() && m_pHeld->stLayout.HasTable() ? m_pHeld : nullptr;
}

// An empty register reads as zeros, whatever its length.
std::vector<uint8_t> CCoefficientRegister::Read() const
{
  if (!CountsNow()) {
    return {};
  }
  std::vector<uint8_t> listBytes = m_pHeld->listRegister;
  if (m_pHeld->stLayout.eMode == ECorrectionMode::FlatField) {
    ExchangeBytePairs(listBytes.data() + listBytes.size() - RECORD_SIZE, RECORD_SIZE);
  }
  return listBytes;
}

void CCoefficientRegister::Write(const std::vector<uint8_t> &listBytes)
{
  m_pHeld = std::make_shared<const SCoefficients>(SCoefficients{m_fnLayout(), listBytes});
}

void CCoefficientRegister::LoadFromFlash()
{
  const auto &pSaved = m_flash.Get().pCoefficients;
  if (pSaved == nullptr) {
    ThrowRuntime("The flash has no coefficients");
  }
  const SBlockLayout stLayout = m_fnLayout();
  if (!(pSaved->stLayout == stLayout)) {
    ThrowRuntime("The coefficients in the flash are for " + Describe(pSaved->stLayout) + ", not for " +
                 Describe(stLayout));
  }
  m_pHeld = pSaved;
}

void CCoefficientRegister::SaveToFlash()
{
  if (!CountsNow()) {
    ThrowRuntime("The camera has no coefficients for " + Describe(m_fnLayout()));
  }
  SFlashContent stContent = m_flash.Get();
  stContent.pCoefficients = m_pHeld;
  m_flash.Store(std::move(stContent));
}

} // namespace ffc::camera
