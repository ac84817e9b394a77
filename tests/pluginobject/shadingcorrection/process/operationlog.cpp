#include "tests/pluginobject/shadingcorrection/process/operationlog.h"

#include <gtest/gtest.h>

#include "tests/support/accessrecorder.h"

namespace ffc::test {

using genapi::SNodeAccess;

Log Join(const std::vector<Log> &listParts)
{
  Log listJoined;
  for (const Log &listPart : listParts) {
    listJoined.insert(listJoined.end(), listPart.begin(), listPart.end());
  }
  return listJoined;
}

Log KeepWrites(const Log &listLog)
{
  Log listWrites;
  for (const std::string &strLine : listLog) {
    if (strLine.rfind("set ", 0) == 0) {
      listWrites.push_back(strLine);
    }
  }
  return listWrites;
}

Log RecordOperation(CProcessRig &rig, const std::function<int32_t()> &fnOperation)
{
  Log listLog;
  rig.SetHook([&listLog](const SNodeAccess &stAccess) {
    CAccessRecorder recorder;
    recorder(stAccess);
    listLog = Join({listLog, recorder.GetLog()});
  });
  rig.SetMessageHook([&listLog](int32_t nCode) {
    listLog.emplace_back(nCode == PLUGIN_MSG_ACQUISITION_ON    ? "start stream"
                         : nCode == PLUGIN_MSG_ACQUISITION_OFF ? "stop stream"
                                                               : "message " + std::to_string(nCode));
  });
  EXPECT_EQ(fnOperation(), 0);
  rig.SetHook(nullptr);
  rig.SetMessageHook(nullptr);
  return listLog;
}

} // namespace ffc::test
