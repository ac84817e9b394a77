/// \file
/// A module with the two exports and a plug-in that tells what happens to it.

#include <QCoreApplication>
#include <QStringList>

#include "camera/icamera.h"
#include "tests/host/fakeplugin.h"

using ffc::pluginobject::MakePluginMsg;

namespace {

/// In the application, so that it outlives the module.
void Log(const QString &strWord)
{
  QStringList listLog = qApp->property("fakePluginLog").toStringList();
  qApp->setProperty("fakePluginLog", listLog << strWord);
}

/// Knows no Chinese. Showing the dialog asks for frames, hiding it stops them; inverts every byte.
class CTalkingPlugin final : public CFakePlugin {
public:
  CTalkingPlugin()
  {
    m_fnProcess = [](const PLUGIN_IMAGE_INFO &stInput, PLUGIN_IMAGE_INFO &stOutput, PLUGIN_PROCESS_RESULT &stResult) {
      const uint8_t *pInput = static_cast<const uint8_t *>(stInput.pBuffer);
      uint8_t *pOutput = static_cast<uint8_t *>(stOutput.pBuffer);
      for (int32_t nByte = 0; nByte < stInput.nPayloadSize; ++nByte) {
        pOutput[nByte] = static_cast<uint8_t>(~pInput[nByte]);
      }
      stResult.bCorrected = 1;
      return 0;
    };
    Log("create");
  }
  ~CTalkingPlugin() override { Log("destroy"); }

  int32_t Initialize(PLUGIN_INIT_PARAM *pInitParam) override
  {
    if (pInitParam->nLanguage == 1) {
      return -4;
    }
    // The three maps must be the camera's, each in its place.
    const auto HasNode = [](void *pMap, const char *pName) {
      return static_cast<GenApi::INodeMap *>(pMap)->GetNode(pName) != nullptr;
    };
    const bool bMaps = HasNode(pInitParam->pOutputNodeMap, "OutputWidth") &&
                       HasNode(pInitParam->pStreamNodeMap, "StreamBufferHandlingMode") &&
                       HasNode(pInitParam->pDeviceNodeMap, "TLParamsLocked");
    Log(QStringLiteral("initialize %1 %2").arg(pInitParam->pDeviceName).arg(bMaps));
    return 0;
  }

  int32_t Uninitialize() override
  {
    Log("uninitialize");
    return 0;
  }

  void SlotProcessDemoMsg(const PLUGIN_MSG &stPluginMsg) override
  {
    const bool bShow = stPluginMsg.nMsgCode == PLUGIN_MSG_SHOW_DIALOG;
    emit SigPluginMsg(MakePluginMsg(bShow ? PLUGIN_MSG_ACQUISITION_ON : PLUGIN_MSG_ACQUISITION_OFF));
  }
};

} // namespace

extern "C" {

Q_DECL_EXPORT IPlugin *CreatePluginObject()
{
  return qApp->property("fakePluginFails").toBool() ? nullptr : new CTalkingPlugin;
}

Q_DECL_EXPORT void DestoryPluginObject(IPlugin *pPlugin)
{
  delete pPlugin;
}
}
