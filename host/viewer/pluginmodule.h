/// \file
/// The plug-in module as a viewer loads it.
#pragma once

#include <QLibrary>
#include <QString>

#include "platform/result.h"
#include "pluginobject/iplugin.h"

namespace ffc::host {

/// Loads a `.plx`, makes its one plug-in object and destroys it, through the two exports alone.
///
/// The destructor destroys the plug-in and unloads the module. Used on the user-interface thread.
class CPluginModule {
public:
  CPluginModule() = default;
  ~CPluginModule();
  CPluginModule(const CPluginModule &) = delete;
  CPluginModule &operator=(const CPluginModule &) = delete;

  /// FlatFieldCorrection.plx beside the executable.
  static QString GetDefaultPath();

  /// Loads the module and makes its plug-in; what was loaded before goes first.
  /// \return on failure one line that names the file and the reason; nothing is loaded then
  Result<> Load(const QString &strPath);

  /// Does nothing when nothing is loaded.
  void Unload();

  /// File and version of the module that is loaded, "FlatFieldCorrection.plx 1.0.0.0"; without the version where its
  /// file tells none, empty while nothing is loaded.
  QString Describe() const;

  /// Null while nothing is loaded.
  IPlugin *GetPlugin() const { return m_pPlugin; }

private:
  QLibrary m_library;
  IPlugin *m_pPlugin = nullptr;
  FnDestoryPluginObject m_fnDestroy = nullptr;
};

} // namespace ffc::host
