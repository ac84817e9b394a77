#include "genapi/softwarenodemap/softwarenodemap.h"

namespace ffc::genapi {

CSoftwareInteger &CSoftwareNodeMap::AddInteger(const std::string &strName, int64_t nValue)
{
  return Add<CSoftwareInteger>(strName).Poke(nValue);
}

CSoftwareFloat &CSoftwareNodeMap::AddFloat(const std::string &strName, double dValue)
{
  return Add<CSoftwareFloat>(strName).Poke(dValue);
}

CSoftwareBoolean &CSoftwareNodeMap::AddBoolean(const std::string &strName, bool bValue)
{
  return Add<CSoftwareBoolean>(strName).Poke(bValue);
}

CSoftwareEnumeration &CSoftwareNodeMap::AddEnumeration(const std::string &strName)
{
  return Add<CSoftwareEnumeration>(strName);
}

CSoftwareString &CSoftwareNodeMap::AddString(const std::string &strName, const std::string &strValue)
{
  return Add<CSoftwareString>(strName).Poke(strValue);
}

CSoftwareRegister &CSoftwareNodeMap::AddRegister(const std::string &strName, int64_t nLength)
{
  return Add<CSoftwareRegister>(strName).Length(nLength);
}

CSoftwareCommand &CSoftwareNodeMap::AddCommand(const std::string &strName)
{
  return Add<CSoftwareCommand>(strName);
}

GenApi::INode *CSoftwareNodeMap::GetNode(const GenICam::gcstring &strName) const
{
  const auto lock = Lock();
  const auto itNode = m_mapNodes.find(strName.c_str());
  return itNode == m_mapNodes.end() ? nullptr : itNode->second;
}

void CSoftwareNodeMap::GetNodes(GenApi::NodeList_t &listNodes) const
{
  const auto lock = Lock();
  for (const auto &pNode : m_listNodes) {
    listNodes.push_back(pNode.get());
  }
}

template <class TNode>
TNode &CSoftwareNodeMap::Add(const std::string &strName)
{
  const auto lock = Lock();
  if (m_mapNodes.count(strName) != 0) {
    throw GenICam::LogicalErrorException(("Node '" + strName + "' is declared twice").c_str(), __FILE__, __LINE__);
  }
  auto pNode = std::make_unique<TNode>(strName, m_mutex);
  TNode &node = *pNode;
  m_listNodes.push_back(std::move(pNode));
  m_mapNodes[strName] = &node;
  return node;
}

} // namespace ffc::genapi
