/// \file
/// Numbers as text, the same in every locale.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace ffc::genapi {

/// \return nothing when any part of the text is no number of that type
template <class TValue>
std::optional<TValue> ParseValue(const std::string &strText) = delete;
/// Decimal, or hexadecimal behind "0x".
template <>
std::optional<int64_t> ParseValue<int64_t>(const std::string &strText);
template <>
std::optional<double> ParseValue<double>(const std::string &strText);
/// "1", "0", "true" or "false".
template <>
std::optional<bool> ParseValue<bool>(const std::string &strText);

/// The shortest text that reads back as the same value.
std::string FormatValue(int64_t nValue);
std::string FormatValue(double dValue);
std::string FormatValue(bool bValue);

/// "0x" and two digits per byte; also what ParseBytes takes.
std::string FormatBytes(const std::vector<uint8_t> &listBytes);
std::optional<std::vector<uint8_t>> ParseBytes(const std::string &strText);

} // namespace ffc::genapi
