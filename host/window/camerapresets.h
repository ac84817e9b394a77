/// \file
/// Settings of a camera under names of the user's own.
#pragma once

#include <GenApi/GenApi.h>
#include <QString>
#include <QStringList>

namespace ffc::host {

/// Several sets of settings for each camera, told apart by its serial number, kept with what the window remembers.
/// User-interface thread.
class CCameraPresets {
public:
  /// \param map of the camera, which outlives this object
  explicit CCameraPresets(GenApi::INodeMap &map);

  QStringList ListNames() const;
  /// Remembers format, region, binning, exposure, gain, black level and frame rate, as far as the camera has them.
  void Save(const QString &strName);
  void Remove(const QString &strName);
  /// Writes them into the camera, whose stream stands still. What it refuses is left as it is.
  /// \return what was refused, one line for each feature
  QStringList Apply(const QString &strName);

private:
  QString GetGroup() const;
  void Write(const QString &strFeature, const QString &strValue, QStringList &listRefused);

  GenApi::INodeMap &m_map;
  QString m_strSerial;
};

} // namespace ffc::host
