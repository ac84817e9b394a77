/// \file
/// The gains in a coefficient file of the host-side correction.
#pragma once

#include <cstdint>
#include <vector>

#include <QString>

namespace ffc::host {

/// Reads the gains of a table for images of that size, line by line; 4096 is a gain of 1.
/// \return empty when the file cannot be read, is no such table, or memory is short
std::vector<uint16_t> ReadGains(const QString &strFile, uint32_t nWidth, uint32_t nHeight);

} // namespace ffc::host
