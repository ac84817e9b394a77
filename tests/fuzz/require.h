/// \file
/// Promises that hold for every input.
#pragma once

/// Says what is broken and ends the program, which a fuzzer and a test both see, when bHolds is false.
void Require(bool bHolds, const char *pPromise);
