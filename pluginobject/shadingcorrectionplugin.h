/// \file
/// The plug-in object.
#pragma once

#include <memory>
#include <set>
#include <string>

#include <QPointer>
#include <QString>
#include <QTranslator>

#include "pluginobject/iplugin.h"
#include "pluginobject/shadingcorrection/liveframes.h"
#include "pluginobject/shadingcorrection/shadingcorrectiondlg.h"

/// The one object that a host creates: identity, translation, the correction dialog, whose messages it relays, and
/// the way of frames to the dialog's process.
class CShadingCorrectionPlugin : public IPluginExtended {
  Q_OBJECT

public:
  /// Reads the module's own version; a module without one has 0.0.0.0.
  CShadingCorrectionPlugin();
  ~CShadingCorrectionPlugin() override;

  void SlotProcessDemoMsg(const PLUGIN_MSG &stPluginMsg) override;
  const char *GetPluginGUID() override;
  const char *GetPluginName() override;
  const char *GetPluginDisplayName() override;
  const char *GetPluginDescription() override;
  uint32_t GetInterfaceVersion() override;
  PLUGIN_VERSION GetPluginVersion() override;
  bool HasSettingDialog() override;
  bool IsDialogVisible() override;
  bool IsDialogHidden() override;
  const char *GetStatusText(int32_t nStatus) override;
  [[nodiscard]] int32_t Initialize(PLUGIN_INIT_PARAM *pInitParam) override;
  int32_t Uninitialize() override;
  int32_t ProcessImage(PLUGIN_IMAGE_INFO *pInput, PLUGIN_IMAGE_INFO *pOutput, uint32_t nMode,
                       PLUGIN_PROCESS_RESULT *pResult) override;
  int32_t GetProperty(uint32_t nKey, const QVariant *pInput, QVariant *pValue) override;

  // The class's own virtual operations; their order belongs to the binary interface too.

  /// Destroys the object.
  virtual void Release();
  /// \param nLanguage 1: loads the Chinese translation; else nothing
  virtual void SetLanguage(int32_t nLanguage);
  /// Sets the application's locale codec to GB2312, the code page of the texts that a Chinese host passes,
  /// and installs a translation, one that is in force already but once. \return false when it cannot be loaded; the
  /// codec is set all the same
  virtual bool LoadTranslation(QString strPath);
  /// Builds the hidden dialog and its title. \return 0; -3 without device node map; -2 without memory
  [[nodiscard]] virtual int32_t CreateDialog(PLUGIN_INIT_PARAM *pInitParam);
  [[nodiscard]] virtual int32_t InitDialogProcess();
  virtual void CloseDialogProcess();
  virtual void DestroyDialog();
  virtual void ConnectDialogSignals();

private:
  const char *__KeepText(const QString &strText);
  void __ProcessMessage(const PLUGIN_MSG &stPluginMsg);
  QString __GetTitle(const PLUGIN_INIT_PARAM &stInitParam) const;

  // The dialog in service.
  QPointer<CShadingCorrectionDlg> m_pDialog;
  QMetaObject::Connection m_parentDestroyed;
  QTranslator m_translator;
  bool m_bTranslatorInstalled = false;
  QString m_strTranslation; // what the installed translator has loaded
  PLUGIN_VERSION m_stVersion;
  std::string m_strName;
  std::string m_strGUID;
  // Every name and description that a host was given: it may keep the pointers, so a text of another language comes
  // beside them.
  std::set<std::string> m_setTexts;
  const char *m_pDisplayName = "";
  const char *m_pDescription = "";
  std::string m_strLastStatusText;
  // The frames' way past the dialog. It never changes, so that the frame thread may ask for it at any time.
  const std::shared_ptr<ffc::dialog::CLiveFrames> m_pLiveFrames = std::make_shared<ffc::dialog::CLiveFrames>();
};
