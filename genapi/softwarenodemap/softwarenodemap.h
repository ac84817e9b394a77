/// \file
/// A GenApi node map whose nodes are declared in C++.
#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include <GenApi/GenApi.h>

#include "genapi/softwarenodemap/commandnode.h"
#include "genapi/softwarenodemap/enumerationnode.h"
#include "genapi/softwarenodemap/numbernodes.h"
#include "genapi/softwarenodemap/textnodes.h"

namespace ffc::genapi {

/// Declare the nodes first, each with its value, access mode, range and callbacks:
///
///     map.AddInteger("Width", 640).Range(2, 640).Increment(2).LockedWhile(tlParamsLocked);
///
/// then hand the map out. Accesses behave as in GenApi, from any thread:
/// - a node that is not implemented (NI) or not available (NA): AccessException from every access but
///   the query of its access mode;
/// - a verified read of a write-only node, a verified write of a read-only one: AccessException.
///   Without verification the access passes through to the store or the callback; a node whose value
///   comes from a callback and that has no write callback refuses also then;
/// - a verified value out of range or between increments: OutOfRangeException;
/// - an unknown entry or a text that does not parse: InvalidArgumentException; an entry that is not
///   available: AccessException.
///
/// One recursive lock guards the map. Callbacks run with it held: they may use nodes of the same map,
/// and must not wait for a thread that does.
class CSoftwareNodeMap final : public GenApi::INodeMap {
public:
  CSoftwareNodeMap() = default;
  CSoftwareNodeMap(const CSoftwareNodeMap &) = delete;
  CSoftwareNodeMap &operator=(const CSoftwareNodeMap &) = delete;

  /// Each throws LogicalErrorException when the name is taken. The node lives as long as the map.
  CSoftwareInteger &AddInteger(const std::string &strName, int64_t nValue = 0);
  CSoftwareFloat &AddFloat(const std::string &strName, double dValue = 0.0);
  CSoftwareBoolean &AddBoolean(const std::string &strName, bool bValue = false);
  CSoftwareEnumeration &AddEnumeration(const std::string &strName);
  CSoftwareString &AddString(const std::string &strName, const std::string &strValue = {});
  CSoftwareRegister &AddRegister(const std::string &strName, int64_t nLength = 0);
  CSoftwareCommand &AddCommand(const std::string &strName);

  /// A declared node of a kind, such as Find<CSoftwareInteger>("Width"); null when there is none.
  template <class TNode>
  TNode *Find(const std::string &strName) const
  {
    return dynamic_cast<TNode *>(GetNode(strName.c_str()));
  }

  /// Holds off all other threads, so that several values can be read as one snapshot.
  std::unique_lock<std::recursive_mutex> Lock() const { return std::unique_lock<std::recursive_mutex>(m_mutex); }

  GenApi::INode *GetNode(const GenICam::gcstring &strName) const override;
  /// In the order of declaration.
  void GetNodes(GenApi::NodeList_t &listNodes) const override;

private:
  template <class TNode>
  TNode &Add(const std::string &strName);

  mutable std::recursive_mutex m_mutex;
  std::vector<std::unique_ptr<GenApi::INode>> m_listNodes;
  std::map<std::string, GenApi::INode *> m_mapNodes;
};

} // namespace ffc::genapi
