/// \file
/// A float feature that stands for another feature of the camera.
#pragma once

#include <mutex>
#include <string>

#include <GenApi/GenApi.h>

#include "genapi/softwarenodemap/nodeguard.h"

namespace ffc::camera {

/// What a CFloatAlias stands for: exactly one of the two sources, and what its numbers are multiplied with.
struct SFloatSource {
  GenApi::IFloat *pFloat = nullptr;
  GenApi::IInteger *pInteger = nullptr;
  GenApi::IFloat *pFactor = nullptr; ///< a feature of the camera, which may change; null: none
  double dFactor = 1.0;              ///< beside pFactor, above 0
};

/// The value is the source's times the factors; what is written to an integer goes to the nearest value that it takes.
/// Access mode, range and exceptions are the source's.
class CFloatAlias final : public GenApi::INode, public GenApi::IFloat {
public:
  /// \param mutex the lock of the source's map, which outlives this
  CFloatAlias(std::recursive_mutex &mutex, std::string strName, const SFloatSource &stSource);

  GenICam::gcstring GetName(bool = false) const override { return m_guard.GetName().c_str(); }
  GenApi::INode *GetNode() override { return this; }
  GenApi::EAccessMode GetAccessMode() const override;

  void SetValue(double dValue, bool bVerify = true) override;
  double GetValue(bool bVerify = false, bool bIgnoreCache = false) override;
  double GetMin() override;
  double GetMax() override;
  bool HasInc() override;
  double GetInc() override;
  GenICam::gcstring ToString(bool bVerify = false, bool bIgnoreCache = false) override;
  void FromString(const GenICam::gcstring &strValue, bool bVerify = true) override;

private:
  double AskFactor() const;
  void SetInteger(double dValue, bool bVerify);

  SFloatSource m_stSource;
  genapi::CNodeGuard m_guard; ///< for its name and its exceptions
};

} // namespace ffc::camera
