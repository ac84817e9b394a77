/// \file
/// Software nodes with a number: integer, float, boolean.
#pragma once

#include <cstdint>
#include <limits>

#include "genapi/softwarenodemap/numbertext.h"
#include "genapi/softwarenodemap/softwarenode.h"

namespace ffc::genapi {

/// A value node with a text form and without a range of its own.
template <class TNode, class TInterface, class TValue>
class CSoftwareScalar : public CSoftwareValueNode<TNode, TInterface, TValue> {
public:
  GenICam::gcstring ToString(bool bVerify = false, bool = false) override
  {
    const auto lock = this->m_guard.Acquire();
    return FormatValue(this->Read(bVerify)).c_str();
  }

  void FromString(const GenICam::gcstring &strValue, bool bVerify = true) override
  {
    const auto lock = this->m_guard.Acquire();
    this->CheckWritable(bVerify);
    const auto value = ParseValue<TValue>(strValue.c_str());
    if (!value) {
      this->m_guard.ThrowInvalidArgument("'" + std::string(strValue.c_str()) + "' is no value of this node");
    }
    this->SetValue(*value, bVerify);
  }

protected:
  using CSoftwareValueNode<TNode, TInterface, TValue>::CSoftwareValueNode;
};

/// A scalar with a minimum, a maximum and an increment.
template <class TNode, class TInterface, class TValue>
class CSoftwareNumber : public CSoftwareScalar<TNode, TInterface, TValue> {
public:
  using Setting = CValueOrCallback<TValue>;

  /// Undeclared: every value of the type; NaN is never in range.
  TNode &Range(Setting min, Setting max)
  {
    m_min = std::move(min);
    m_max = std::move(max);
    return static_cast<TNode &>(*this);
  }

  /// Verified values are the minimum plus a multiple of this; a float within a millionth of a step.
  /// A float with an increment needs a range.
  TNode &Increment(Setting inc)
  {
    m_inc = std::move(inc);
    return static_cast<TNode &>(*this);
  }

  void SetValue(TValue value, bool bVerify = true) override
  {
    const auto lock = this->m_guard.Acquire();
    if (this->CheckWritable(bVerify)) {
      CheckRange(value);
    }
    this->Write(value);
  }

  TValue GetValue(bool bVerify = false, bool = false) override
  {
    const auto lock = this->m_guard.Acquire();
    return this->Read(bVerify);
  }

  TValue GetMin() override { return Ask(m_min); }
  TValue GetMax() override { return Ask(m_max); }

protected:
  CSoftwareNumber(std::string strName, std::recursive_mutex &mutex, TValue defaultInc)
    : CSoftwareScalar<TNode, TInterface, TValue>(std::move(strName), mutex), m_inc(defaultInc)
  {
  }

  TValue AskIncrement() const { return Ask(m_inc); }

private:
  TValue Ask(const Setting &setting) const
  {
    const auto lock = this->m_guard.Acquire();
    this->CheckAvailable();
    return setting.Get();
  }

  void CheckRange(TValue value) const;

  Setting m_min = std::numeric_limits<TValue>::lowest();
  Setting m_max = std::numeric_limits<TValue>::max();
  Setting m_inc;
};

class CSoftwareInteger final : public CSoftwareNumber<CSoftwareInteger, GenApi::IInteger, int64_t> {
public:
  CSoftwareInteger(std::string strName, std::recursive_mutex &mutex) : CSoftwareNumber(std::move(strName), mutex, 1) {}

  int64_t GetInc() override { return AskIncrement(); }
};

class CSoftwareFloat final : public CSoftwareNumber<CSoftwareFloat, GenApi::IFloat, double> {
public:
  CSoftwareFloat(std::string strName, std::recursive_mutex &mutex) : CSoftwareNumber(std::move(strName), mutex, 0.0) {}

  bool HasInc() override { return AskIncrement() > 0.0; }
  /// AccessException when there is none.
  double GetInc() override;
};

/// Its texts are "1" and "0"; "true" and "false" are understood too.
class CSoftwareBoolean final : public CSoftwareScalar<CSoftwareBoolean, GenApi::IBoolean, bool> {
public:
  CSoftwareBoolean(std::string strName, std::recursive_mutex &mutex) : CSoftwareScalar(std::move(strName), mutex) {}

  void SetValue(bool bValue, bool bVerify = true) override;
  bool GetValue(bool bVerify = false, bool bIgnoreCache = false) const override;
};

} // namespace ffc::genapi
