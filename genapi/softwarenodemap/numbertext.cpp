#include "genapi/softwarenodemap/numbertext.h"

#include <array>
#include <charconv>

namespace ffc::genapi {

namespace {

bool HasHexPrefix(const std::string &strText)
{
  return strText.size() > 2 && strText[0] == '0' && (strText[1] == 'x' || strText[1] == 'X');
}

template <class TNumber, class... TFormat>
std::optional<TNumber> ParseWhole(const char *pBegin, const char *pEnd, TFormat... format)
{
  TNumber number{};
  const auto stResult = std::from_chars(pBegin, pEnd, number, format...);
  if (stResult.ec != std::errc() || stResult.ptr != pEnd) {
    return std::nullopt;
  }
  return number;
}

template <class TNumber>
std::string FormatNumber(TNumber number)
{
  std::array<char, 64> aText{};
  const auto stResult = std::to_chars(aText.data(), aText.data() + aText.size(), number);
  return std::string(aText.data(), stResult.ptr);
}

} // namespace

template <>
std::optional<int64_t> ParseValue<int64_t>(const std::string &strText)
{
  const char *pEnd = strText.data() + strText.size();
  if (HasHexPrefix(strText)) {
    const auto nBits = ParseWhole<uint64_t>(strText.data() + 2, pEnd, 16);
    return nBits ? std::optional<int64_t>(static_cast<int64_t>(*nBits)) : std::nullopt;
  }
  return ParseWhole<int64_t>(strText.data(), pEnd, 10);
}

template <>
std::optional<double> ParseValue<double>(const std::string &strText)
{
  return ParseWhole<double>(strText.data(), strText.data() + strText.size());
}

template <>
std::optional<bool> ParseValue<bool>(const std::string &strText)
{
  if (strText == "1" || strText == "true") {
    return true;
  }
  if (strText == "0" || strText == "false") {
    return false;
  }
  return std::nullopt;
}

std::string FormatValue(int64_t nValue)
{
  return FormatNumber(nValue);
}

std::string FormatValue(double dValue)
{
  return FormatNumber(dValue);
}

std::string FormatValue(bool bValue)
{
  return bValue ? "1" : "0";
}

std::string FormatBytes(const std::vector<uint8_t> &listBytes)
{
  static const char HEX_DIGITS[] = "0123456789abcdef";
  std::string strText = "0x";
  for (const uint8_t nByte : listBytes) {
    strText += HEX_DIGITS[nByte >> 4];
    strText += HEX_DIGITS[nByte & 15];
  }
  return strText;
}

std::optional<std::vector<uint8_t>> ParseBytes(const std::string &strText)
{
  if (!HasHexPrefix(strText) || strText.size() % 2 != 0) {
    return std::nullopt;
  }
  std::vector<uint8_t> listBytes;
  for (std::size_t nAt = 2; nAt < strText.size(); nAt += 2) {
    const char *pDigits = strText.data() + nAt;
    const auto nByte = ParseWhole<uint8_t>(pDigits, pDigits + 2, 16);
    if (!nByte) {
      return std::nullopt;
    }
    listBytes.push_back(*nByte);
  }
  return listBytes;
}

} // namespace ffc::genapi
