/// \file
/// The values of a camera's features at one moment.
#pragma once

#include <map>
#include <string>

#include <GenApi/GenApi.h>
#include <QStringList>

namespace ffc::host {

/// The values of all features of a node map, as texts. User-interface thread.
class CFeatureSnapshot {
public:
  CFeatureSnapshot() = default;
  /// Reads every node that can be read and has a value; commands have none. The white-balance ratio is read
  /// for every colour, for which its selector is moved and put back.
  explicit CFeatureSnapshot(GenApi::INodeMap &nodeMap);

  /// Names of the features whose values differ, and of those that only one of the two has.
  QStringList GetDifferences(const CFeatureSnapshot &other) const;

private:
  void ReadRatios(GenApi::INodeMap &nodeMap);

  std::map<std::string, std::string> m_mapValues;
};

} // namespace ffc::host
