/// \file
/// The state of a camera's features at one moment.
#pragma once

#include <cstdint>
#include <map>
#include <string>

#include <GenApi/GenApi.h>
#include <QString>
#include <QStringList>

namespace ffc::host {

/// One feature, as a field of a form shows it.
struct SFeatureState {
  enum class EKind { Other, Float, Integer, Enumeration };

  bool bReadable = false;
  bool bWritable = false;
  EKind eKind = EKind::Other;
  QString strText;   ///< of every feature with a value; empty when it cannot be read
  QString strError;  ///< why it cannot be read although it is readable; empty: it can
  double dValue = 0; ///< of a float, as are the next two
  double dMin = 0;
  double dMax = 0;
  int64_t nValue = 0; ///< of an integer, as are the next three
  int64_t nMin = 0;
  int64_t nMax = 0;
  int64_t nInc = 1;
  QStringList listEntries; ///< of an enumeration: those that can be selected now
};

/// Reads one feature; one that does not exist is not readable. From any thread that may use the map.
SFeatureState ReadFeatureState(GenApi::INodeMap &nodeMap, const std::string &strName);

/// By name.
using CFeatureStates = std::map<std::string, SFeatureState>;

} // namespace ffc::host
