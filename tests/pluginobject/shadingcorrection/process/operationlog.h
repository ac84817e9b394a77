/// \file
/// What an operation of a process does, in order.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "tests/pluginobject/shadingcorrection/process/processrig.h"

namespace ffc::test {

/// Lines of CAccessRecorder.
using Log = std::vector<std::string>;

Log Join(const std::vector<Log> &listParts);

/// The lines of writes.
Log KeepWrites(const Log &listLog);

/// All that an operation, which has to succeed, reads, writes, executes and asks, with the process's messages between
/// them: "start stream" and "stop stream".
Log RecordOperation(CProcessRig &rig, const std::function<int32_t()> &fnOperation);

} // namespace ffc::test
