/// \file
/// A hook that refuses what is written, for as long as a test wants.
#pragma once

#include <string>
#include <vector>

#include "genapi/softwarenodemap/nodeaccess.h"

/// Features that a camera does not let itself be set to. Give it to an observed map with std::ref.
class CRefusals {
public:
  /// Refuses every write and every execution of a node from now on.
  /// \param strValue the only value to be refused; empty: all of them
  void Refuse(const std::string &strNode, const std::string &strValue = {});
  /// Refuses nothing any more.
  void Permit() { m_listRefused.clear(); }
  /// Writes and executions that were refused since the last call.
  int TakeCount();

  /// One access; throws when it is refused.
  void operator()(const ffc::genapi::SNodeAccess &stAccess);

private:
  struct SRefused {
    std::string strNode;
    std::string strValue;
  };

  std::vector<SRefused> m_listRefused;
  int m_nCount = 0;
};
