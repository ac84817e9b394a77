#include "host/viewer/featurestate.h"

namespace ffc::host {
namespace {

QStringList ListEntries(GenApi::IEnumeration &enumeration)
{
  GenApi::NodeList_t listNodes;
  enumeration.GetEntries(listNodes);
  QStringList listNames;
  for (GenApi::INode *pNode : listNodes) {
    auto *pEntry = dynamic_cast<GenApi::IEnumEntry *>(pNode);
    if (pEntry != nullptr && GenApi::IsAvailable(pNode)) {
      listNames << QString::fromUtf8(pEntry->GetSymbolic().c_str());
    }
  }
  return listNames;
}

void ReadNumbers(GenApi::INode &node, SFeatureState &stState)
{
  if (auto *pFloat = dynamic_cast<GenApi::IFloat *>(&node)) {
    stState.eKind = SFeatureState::EKind::Float;
    stState.dMin = pFloat->GetMin();
    stState.dMax = pFloat->GetMax();
    stState.dValue = pFloat->GetValue();
  } else if (auto *pInteger = dynamic_cast<GenApi::IInteger *>(&node)) {
    stState.eKind = SFeatureState::EKind::Integer;
    stState.nMin = pInteger->GetMin();
    stState.nMax = pInteger->GetMax();
    stState.nInc = pInteger->GetInc();
    stState.nValue = pInteger->GetValue();
  }
}

void ReadValue(GenApi::INode &node, SFeatureState &stState)
{
  if (auto *pEnumeration = dynamic_cast<GenApi::IEnumeration *>(&node)) {
    stState.eKind = SFeatureState::EKind::Enumeration;
    stState.listEntries = ListEntries(*pEnumeration);
  } else {
    ReadNumbers(node, stState);
  }
  if (auto *pValue = dynamic_cast<GenApi::IValue *>(&node)) {
    stState.strText = QString::fromUtf8(pValue->ToString().c_str());
  }
}

} // namespace

SFeatureState ReadFeatureState(GenApi::INodeMap &nodeMap, const std::string &strName)
{
  SFeatureState stState;
  GenApi::INode *pNode = nodeMap.GetNode(strName.c_str());
  stState.bReadable = pNode != nullptr && GenApi::IsReadable(pNode);
  if (!stState.bReadable) {
    return stState;
  }
  stState.bWritable = GenApi::IsWritable(pNode);
  try {
    ReadValue(*pNode, stState);
  } catch (const GenICam::GenericException &exception) {
    stState.strError = QString::fromUtf8(exception.GetDescription());
  }
  return stState;
}

} // namespace ffc::host
