/// \file
/// Adapters of nodes with a number: integer, float, boolean.
#pragma once

#include <cstdint>

#include "camera/aravis/nodemap/aravisnode.h"
#include "genapi/softwarenodemap/numbertext.h"

namespace ffc::camera {

/// The text forms, the same as those of the software nodes.
template <class TInterface, class TValue>
class CAravisScalar : public CAravisNode<TInterface> {
public:
  GenICam::gcstring ToString(bool bVerify = false, bool bIgnoreCache = false) override
  {
    return genapi::FormatValue(this->GetValue(bVerify, bIgnoreCache)).c_str();
  }

  void FromString(const GenICam::gcstring &strValue, bool bVerify = true) override
  {
    const auto lock = this->m_core.Acquire();
    this->m_core.CheckWritable(bVerify);
    const auto value = genapi::ParseValue<TValue>(strValue.c_str());
    if (!value) {
      this->m_core.Guard().ThrowInvalidArgument("'" + std::string(strValue.c_str()) + "' is no value of this node");
    }
    this->SetValue(*value, bVerify);
  }

protected:
  using CAravisNode<TInterface>::CAravisNode;
};

class CAravisInteger final : public CAravisScalar<GenApi::IInteger, int64_t> {
public:
  CAravisInteger(ArvGcFeatureNode *pNode, std::string strName, SNodeMapState &state);

  void SetValue(int64_t nValue, bool bVerify = true) override;
  int64_t GetValue(bool bVerify = false, bool bIgnoreCache = false) override;
  int64_t GetMin() override;
  int64_t GetMax() override;
  /// At least 1, which is also that of a node that is not available.
  int64_t GetInc() override;

private:
  ArvGcInteger *m_pInteger;
};

class CAravisFloat final : public CAravisScalar<GenApi::IFloat, double> {
public:
  CAravisFloat(ArvGcFeatureNode *pNode, std::string strName, SNodeMapState &state);

  /// To the nearest value that the camera can have, verified against the range only: an increment is no more than
  /// told.
  void SetValue(double dValue, bool bVerify = true) override;
  double GetValue(bool bVerify = false, bool bIgnoreCache = false) override;
  double GetMin() override;
  double GetMax() override;
  bool HasInc() override;
  /// AccessException when there is none.
  double GetInc() override;

private:
  double AskIncrement() const;
  double CheckRange(double dValue);

  ArvGcFloat *m_pFloat;
};

class CAravisBoolean final : public CAravisScalar<GenApi::IBoolean, bool> {
public:
  CAravisBoolean(ArvGcFeatureNode *pNode, std::string strName, SNodeMapState &state);

  void SetValue(bool bValue, bool bVerify = true) override;
  bool GetValue(bool bVerify = false, bool bIgnoreCache = false) const override;

private:
  ArvGcBoolean *m_pBoolean;
};

} // namespace ffc::camera
