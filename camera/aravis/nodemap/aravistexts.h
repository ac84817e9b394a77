/// \file
/// Adapters of nodes with bytes: string and register.
#pragma once

#include <cstdint>

#include "camera/aravis/nodemap/aravisnode.h"

namespace ffc::camera {

class CAravisString final : public CAravisNode<GenApi::IString> {
public:
  CAravisString(ArvGcFeatureNode *pNode, std::string strName, SNodeMapState &state);

  /// A longer verified text is an OutOfRangeException, and so is one with a zero in it, which would be cut there.
  void SetValue(const GenICam::gcstring &strValue, bool bVerify = true) override;
  GenICam::gcstring GetValue(bool bVerify = false, bool bIgnoreCache = false) override;
  int64_t GetMaxLength() override;
  GenICam::gcstring ToString(bool bVerify = false, bool bIgnoreCache = false) override;
  void FromString(const GenICam::gcstring &strValue, bool bVerify = true) override;

private:
  ArvGcFeatureNode *FindEnd() const;
  GenICam::gcstring ReadText(ArvGcRegister *pRegister) const;

  ArvGcString *m_pString;
};

/// Read and written as a whole, as the software register: any other length is an OutOfRangeException, a null
/// buffer an InvalidArgumentException, verified or not. Its text is "0x" and two digits per byte.
class CAravisRegister final : public CAravisNode<GenApi::IRegister> {
public:
  CAravisRegister(ArvGcFeatureNode *pNode, std::string strName, SNodeMapState &state);

  void Set(const uint8_t *pBuffer, int64_t nLength, bool bVerify = true) override;
  void Get(uint8_t *pBuffer, int64_t nLength, bool bVerify = false, bool bIgnoreCache = false) override;
  int64_t GetLength(bool bVerify = false) override;
  int64_t GetAddress(bool bVerify = false) override;
  GenICam::gcstring ToString(bool bVerify = false, bool bIgnoreCache = false) override;
  void FromString(const GenICam::gcstring &strValue, bool bVerify = true) override;

private:
  int64_t AskLength() const;
  void CheckBlock(const void *pBuffer, int64_t nLength) const;

  ArvGcRegister *m_pRegister;
};

} // namespace ffc::camera
