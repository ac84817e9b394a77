/// \file
/// Software nodes with bytes: string and register.
#pragma once

#include <cstdint>
#include <limits>
#include <vector>

#include "genapi/softwarenodemap/softwarenode.h"

namespace ffc::genapi {

class CSoftwareString final : public CSoftwareValueNode<CSoftwareString, GenApi::IString, std::string> {
public:
  CSoftwareString(std::string strName, std::recursive_mutex &mutex) : CSoftwareValueNode(std::move(strName), mutex) {}

  /// Bytes; a longer verified text is an OutOfRangeException. Undeclared: no limit.
  CSoftwareString &MaxLength(CValueOrCallback<int64_t> maxLength);

  void SetValue(const GenICam::gcstring &strValue, bool bVerify = true) override;
  GenICam::gcstring GetValue(bool bVerify = false, bool bIgnoreCache = false) override;
  int64_t GetMaxLength() override;
  GenICam::gcstring ToString(bool bVerify = false, bool bIgnoreCache = false) override;
  void FromString(const GenICam::gcstring &strValue, bool bVerify = true) override;

private:
  CValueOrCallback<int64_t> m_maxLength = std::numeric_limits<int64_t>::max();
};

/// A block of bytes that is read and written as a whole: any other length is an OutOfRangeException,
/// a null buffer an InvalidArgumentException, verified or not. Its text is "0x" and two digits per byte.
class CSoftwareRegister final : public CSoftwareValueNode<CSoftwareRegister, GenApi::IRegister, std::vector<uint8_t>> {
public:
  CSoftwareRegister(std::string strName, std::recursive_mutex &mutex) : CSoftwareValueNode(std::move(strName), mutex) {}

  /// Bytes. What the store lacks of it reads as zero.
  CSoftwareRegister &Length(CValueOrCallback<int64_t> length);

  void Set(const uint8_t *pBuffer, int64_t nLength, bool bVerify = true) override;
  void Get(uint8_t *pBuffer, int64_t nLength, bool bVerify = false, bool bIgnoreCache = false) override;
  int64_t GetLength(bool bVerify = false) override;
  /// 0: it stands at no address.
  int64_t GetAddress(bool bVerify = false) override;
  GenICam::gcstring ToString(bool bVerify = false, bool bIgnoreCache = false) override;
  void FromString(const GenICam::gcstring &strValue, bool bVerify = true) override;

private:
  void CheckBlock(const void *pBuffer, int64_t nLength) const;

  CValueOrCallback<int64_t> m_length = int64_t{0};
};

} // namespace ffc::genapi
