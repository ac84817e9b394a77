#include "camera/correctionmode.h"

namespace ffc::camera {
namespace {

struct SModeName {
  ECorrectionMode eMode;
  const char *pName;
};

constexpr SModeName ALL_MODES[] = {
  {ECorrectionMode::None, "none"},
  {ECorrectionMode::FlatField, "flatfield"},
  {ECorrectionMode::Vignetting, "vignetting"},
  {ECorrectionMode::Unknown, "unknown"},
};

} // namespace

const char *GetModeName(ECorrectionMode eMode)
{
  for (const SModeName &stMode : ALL_MODES) {
    if (stMode.eMode == eMode) {
      return stMode.pName;
    }
  }
  return "";
}

std::optional<ECorrectionMode> FindMode(const std::string &strName)
{
  for (const SModeName &stMode : ALL_MODES) {
    if (strName == stMode.pName) {
      return stMode.eMode;
    }
  }
  return std::nullopt;
}

} // namespace ffc::camera
