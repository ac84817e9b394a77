/// \file
/// The interface between a viewer and its plug-ins. The order of the virtual operations, after those
/// of QObject, is the binary contract: new ones go to the end of a new interface.
#pragma once

#include <cstdint>

#include <QObject>
#include <QVariant>

#include "pluginobject/pluginrecords.h"

/// A plug-in as the host sees it.
///
/// Calling order: CreatePluginObject, Initialize, anything, Uninitialize, DestoryPluginObject. The
/// identity queries that need no translation may be called before Initialize. All operations belong on
/// the host's user-interface thread, except ProcessImage, which runs on the thread that delivers frames.
/// Status results are the codes of pluginobject/statuscode.h.
class IPlugin : public QObject {
  Q_OBJECT

public:
  using QObject::QObject;

signals:
  /// The plug-in's only way to tell the host something. The host connects directly when it wants to act
  /// before the plug-in goes on (codes 10 and 11), or queued.
  void SigPluginMsg(const PLUGIN_MSG &stPluginMsg);

public slots:
  /// Codes 1, 2 and 13; every other code is ignored.
  virtual void SlotProcessDemoMsg(const PLUGIN_MSG &stPluginMsg) = 0;

public:
  virtual const char *GetPluginGUID() = 0;
  /// Fixed English name.
  virtual const char *GetPluginName() = 0;
  /// Translated name, UTF-8; empty before Initialize. Stays where it is for the life of the object.
  virtual const char *GetPluginDisplayName() = 0;
  /// Translated description, UTF-8; empty before Initialize. Stays where it is for the life of the object.
  virtual const char *GetPluginDescription() = 0;
  virtual uint32_t GetInterfaceVersion() = 0;
  virtual PLUGIN_VERSION GetPluginVersion() = 0;
  virtual bool HasSettingDialog() = 0;
  virtual bool IsDialogVisible() = 0;
  virtual bool IsDialogHidden() = 0;
  /// Translated text of a status code, UTF-8, the English one without memory; valid until the next call.
  virtual const char *GetStatusText(int32_t nStatus) = 0;
  [[nodiscard]] virtual int32_t Initialize(PLUGIN_INIT_PARAM *pInitParam) = 0;
  virtual int32_t Uninitialize() = 0;
  /// Entry of every frame. A frame of fewer bytes than its pixels take is not corrected; the output's buffer must
  /// have room for as many pixels as the input has.
  /// \param nMode PLUGIN_PROCESS_MODE_FRAME
  /// \return 0, or -3 for a null buffer, another mode, or a pixel format the correction cannot use.
  ///   Whether the output was written is told by the result's flag alone.
  virtual int32_t ProcessImage(PLUGIN_IMAGE_INFO *pInput, PLUGIN_IMAGE_INFO *pOutput, uint32_t nMode,
                               PLUGIN_PROCESS_RESULT *pResult) = 0;
};

/// Adds properties.
class IPluginExtended : public IPlugin {
  Q_OBJECT

public:
  using IPlugin::IPlugin;

  /// \param nKey EPluginProperty
  /// \param pInput further input that a key may ask for
  /// \return 0, or -4 for an unknown key, with the value untouched
  [[nodiscard]] virtual int32_t GetProperty(uint32_t nKey, const QVariant *pInput, QVariant *pValue);
};

extern "C" {
/// The module's two exports: make a plug-in (null when that fails), and destroy it (null is ignored).
using FnCreatePluginObject = IPlugin *(*)();
using FnDestoryPluginObject = void (*)(IPlugin *);
}
constexpr const char *CREATE_PLUGIN_OBJECT = "CreatePluginObject";
constexpr const char *DESTORY_PLUGIN_OBJECT = "DestoryPluginObject";
