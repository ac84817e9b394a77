#include "host/headless/featuresnapshot.h"

#include <set>

#include "host/viewer/featuretext.h"

namespace ffc::host {
namespace {

const char *const SELECTOR = "BalanceRatioSelector";
const char *const SELECTED = "BalanceRatio";

} // namespace

CFeatureSnapshot::CFeatureSnapshot(GenApi::INodeMap &nodeMap)
{
  GenApi::NodeList_t listNodes;
  nodeMap.GetNodes(listNodes);
  for (GenApi::INode *pNode : listNodes) {
    auto *pValue = dynamic_cast<GenApi::IValue *>(pNode);
    if (pValue != nullptr && dynamic_cast<GenApi::ICommand *>(pNode) == nullptr && GenApi::IsReadable(pNode)) {
      m_mapValues[pNode->GetName().c_str()] = ReadText(*pValue);
    }
  }
  ReadRatios(nodeMap);
}

void CFeatureSnapshot::ReadRatios(GenApi::INodeMap &nodeMap)
{
  auto *pSelector = dynamic_cast<GenApi::IEnumeration *>(nodeMap.GetNode(SELECTOR));
  auto *pSelected = dynamic_cast<GenApi::IValue *>(nodeMap.GetNode(SELECTED));
  if (pSelected == nullptr || !GenApi::IsWritable(pSelector)) {
    return;
  }
  try {
    const int64_t nBefore = pSelector->GetIntValue();
    GenApi::NodeList_t listEntries;
    pSelector->GetEntries(listEntries);
    for (GenApi::INode *pNode : listEntries) {
      if (auto *pEntry = dynamic_cast<GenApi::IEnumEntry *>(pNode)) {
        pSelector->SetIntValue(pEntry->GetValue());
        m_mapValues[std::string(SELECTED) + "[" + pEntry->GetSymbolic().c_str() + "]"] = ReadText(*pSelected);
      }
    }
    pSelector->SetIntValue(nBefore);
  } catch (const GenICam::GenericException &exception) {
    m_mapValues[SELECTED] = exception.GetDescription();
  }
}

QStringList CFeatureSnapshot::GetDifferences(const CFeatureSnapshot &other) const
{
  std::set<std::string> setNames;
  for (const CFeatureSnapshot *pSnapshot : {this, &other}) {
    for (const auto &[strName, strValue] : pSnapshot->m_mapValues) {
      setNames.insert(strName);
    }
  }
  QStringList listDifferences;
  for (const std::string &strName : setNames) {
    const auto itOwn = m_mapValues.find(strName);
    const auto itOther = other.m_mapValues.find(strName);
    if (itOwn == m_mapValues.end() || itOther == other.m_mapValues.end() || itOwn->second != itOther->second) {
      listDifferences << QString::fromStdString(strName);
    }
  }
  return listDifferences;
}

} // namespace ffc::host
