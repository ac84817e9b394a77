/// \file
/// Giving a camera the settings back that an interrupted acquisition left in its user set.
#pragma once

#include <QString>
#include <QStringList>

#include <GenApi/GenApi.h>

#include "platform/result.h"

namespace ffc::host {

/// While the plug-in acquires on a camera that corrects flat fields itself, the user's state is in "UserSet0" and
/// the factory's is live. A host that ends meanwhile leaves it so; this loads "UserSet0" again.
///
/// For a button or a command line, on the user-interface thread, while the camera's stream stands still. It never
/// writes into a user set. Nothing is thrown.
class CSettingsRescue {
public:
  /// \param nodeMap of the camera, outlives this object
  explicit CSettingsRescue(GenApi::INodeMap &nodeMap) : m_nodeMap(nodeMap) {}

  /// Whether the camera has user sets with a "UserSet0" among them.
  bool IsPossible() const;
  /// Loads "UserSet0" and puts the selector back, also on failure.
  /// \return what that changed, one line for each feature: "Gain: 0 -> 7.5"
  Result<QStringList> Restore();

private:
  Result<> Load();

  GenApi::INodeMap &m_nodeMap;
};

} // namespace ffc::host
