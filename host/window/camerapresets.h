/// \file
/// Settings of a camera under names of the user's own.
#pragma once

#include <GenApi/GenApi.h>
#include <QString>
#include <QStringList>

#include "camera/icamera.h"

namespace ffc::host {

/// Several sets of settings for each camera, kept with what else the window remembers of it.
/// User-interface thread.
class CCameraPresets {
public:
  /// \param camera outlives this object
  explicit CCameraPresets(camera::ICamera &camera);

  QStringList ListNames() const;
  /// Remembers format, region, binning, exposure, gain, black level and frame rate, as far as the camera has them.
  void Save(const QString &strName);
  void Remove(const QString &strName);
  /// Writes them into the camera, whose stream stands still. What it refuses is left as it is.
  /// \return what was refused, one line for each feature
  QStringList Apply(const QString &strName);

private:
  QString GetGroup(const QString &strName) const;
  void Write(const QString &strFeature, const QString &strValue, QStringList &listRefused);

  GenApi::INodeMap &m_map;
  QString m_strGroup; ///< of all of them
};

} // namespace ffc::host
