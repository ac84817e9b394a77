#include "genapi/softwarenodemap/textnodes.h"

#include <algorithm>

#include "genapi/softwarenodemap/numbertext.h"

namespace ffc::genapi {

CSoftwareString &CSoftwareString::MaxLength(CValueOrCallback<int64_t> maxLength)
{
  m_maxLength = std::move(maxLength);
  return *this;
}

void CSoftwareString::SetValue(const GenICam::gcstring &strValue, bool bVerify)
{
  const auto lock = m_guard.Acquire();
  if (CheckWritable(bVerify) && static_cast<int64_t>(strValue.length()) > m_maxLength.Get()) {
    m_guard.ThrowOutOfRange("text is longer than " + std::to_string(m_maxLength.Get()) + " bytes");
  }
  Write(strValue.c_str());
}

GenICam::gcstring CSoftwareString::GetValue(bool bVerify, bool)
{
  const auto lock = m_guard.Acquire();
  return Read(bVerify).c_str();
}

int64_t CSoftwareString::GetMaxLength()
{
  const auto lock = m_guard.Acquire();
  CheckAvailable();
  return m_maxLength.Get();
}

GenICam::gcstring CSoftwareString::ToString(bool bVerify, bool)
{
  return GetValue(bVerify);
}

void CSoftwareString::FromString(const GenICam::gcstring &strValue, bool bVerify)
{
  SetValue(strValue, bVerify);
}

CSoftwareRegister &CSoftwareRegister::Length(CValueOrCallback<int64_t> length)
{
  m_length = std::move(length);
  return *this;
}

void CSoftwareRegister::Set(const uint8_t *pBuffer, int64_t nLength, bool bVerify)
{
  const auto lock = m_guard.Acquire();
  CheckWritable(bVerify);
  CheckBlock(pBuffer, nLength);
  Write(std::vector<uint8_t>(pBuffer, pBuffer + nLength));
}

void CSoftwareRegister::Get(uint8_t *pBuffer, int64_t nLength, bool bVerify, bool)
{
  const auto lock = m_guard.Acquire();
  std::vector<uint8_t> listBytes = Read(bVerify);
  CheckBlock(pBuffer, nLength);
  listBytes.resize(static_cast<std::size_t>(nLength));
  std::copy(listBytes.begin(), listBytes.end(), pBuffer);
}

int64_t CSoftwareRegister::GetLength(bool)
{
  const auto lock = m_guard.Acquire();
  CheckAvailable();
  return m_length.Get();
}

int64_t CSoftwareRegister::GetAddress(bool)
{
  const auto lock = m_guard.Acquire();
  CheckAvailable();
  return 0;
}

GenICam::gcstring CSoftwareRegister::ToString(bool bVerify, bool)
{
  const auto lock = m_guard.Acquire();
  std::vector<uint8_t> listBytes = Read(bVerify);
  listBytes.resize(static_cast<std::size_t>(m_length.Get()));
  return FormatBytes(listBytes).c_str();
}

void CSoftwareRegister::FromString(const GenICam::gcstring &strValue, bool bVerify)
{
  const auto lock = m_guard.Acquire();
  CheckWritable(bVerify);
  const auto listBytes = ParseBytes(strValue.c_str());
  if (!listBytes) {
    m_guard.ThrowInvalidArgument("text is no block of bytes");
  }
  Set(listBytes->data(), static_cast<int64_t>(listBytes->size()), bVerify);
}

void CSoftwareRegister::CheckBlock(const void *pBuffer, int64_t nLength) const
{
  if (pBuffer == nullptr) {
    m_guard.ThrowInvalidArgument("there is no buffer");
  }
  if (nLength != m_length.Get()) {
    m_guard.ThrowOutOfRange("register has " + std::to_string(m_length.Get()) + " bytes, not " +
                            std::to_string(nLength));
  }
}

} // namespace ffc::genapi
