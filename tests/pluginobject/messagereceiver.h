/// \file
/// A host's receiver that is connected by name.
#pragma once

#include <vector>

#include <QObject>

#include "pluginobject/pluginrecords.h"

/// Keeps the messages that it is sent.
class CMessageReceiver : public QObject {
  Q_OBJECT

public:
  std::vector<PLUGIN_MSG> m_listReceived;

public slots:
  void SlotReceive(const PLUGIN_MSG &stPluginMsg) { m_listReceived.push_back(stPluginMsg); }
};
