/// \file
/// A plug-in without a correction, for tests of the host.
#pragma once

#include <atomic>
#include <functional>

#include "pluginobject/iplugin.h"

/// Answers every operation harmlessly; a test replaces what it is about.
class CFakePlugin : public IPlugin {
  Q_OBJECT

public:
  using FnProcess = std::function<int32_t(const PLUGIN_IMAGE_INFO &stInput, PLUGIN_IMAGE_INFO &stOutput,
                                          PLUGIN_PROCESS_RESULT &stResult)>;

  void SlotProcessDemoMsg(const PLUGIN_MSG &) override {}
  const char *GetPluginGUID() override { return "fake"; }
  const char *GetPluginName() override { return "fake"; }
  const char *GetPluginDisplayName() override { return "fake"; }
  const char *GetPluginDescription() override { return "fake"; }
  uint32_t GetInterfaceVersion() override { return 0x10000; }
  PLUGIN_VERSION GetPluginVersion() override { return {}; }
  bool HasSettingDialog() override { return true; }
  bool IsDialogVisible() override { return false; }
  bool IsDialogHidden() override { return true; }
  const char *GetStatusText(int32_t) override { return "fake text"; }
  int32_t Initialize(PLUGIN_INIT_PARAM *) override { return 0; }
  int32_t Uninitialize() override { return 0; }
  int32_t ProcessImage(PLUGIN_IMAGE_INFO *pInput, PLUGIN_IMAGE_INFO *pOutput, uint32_t nMode,
                       PLUGIN_PROCESS_RESULT *pResult) override
  {
    m_nMode = nMode;
    return m_fnProcess ? m_fnProcess(*pInput, *pOutput, *pResult) : 0;
  }

  FnProcess m_fnProcess;
  std::atomic<uint32_t> m_nMode{0};
};
