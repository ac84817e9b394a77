/// \file
/// The image computations' own statuses, as the plug-in's status codes.
#pragma once

#include <cstdint>

/// 0 stays 0; -101, -102 and -106 become -3, -103 becomes -2, -105 becomes -1011, anything else -1.
int32_t MapCalcStatus(int32_t nCalcStatus);
