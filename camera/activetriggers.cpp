#include "camera/activetriggers.h"

namespace ffc::camera {

namespace {

GenApi::IEnumeration *Find(GenApi::INodeMap &nodeMap, const char *pName)
{
  return dynamic_cast<GenApi::IEnumeration *>(nodeMap.GetNode(pName));
}

// Empty when it cannot be read.
std::string Read(GenApi::IEnumeration *pNode)
{
  try {
    return GenApi::IsReadable(pNode) ? pNode->ToString().c_str() : "";
  } catch (const GenICam::GenericException &) {
    return {};
  }
}

void AddIfActive(GenApi::INodeMap &nodeMap, const std::string &strSelector, std::vector<SActiveTrigger> *plistActive)
{
  if (Read(Find(nodeMap, "TriggerMode")) == "On") {
    plistActive->push_back({strSelector, Read(Find(nodeMap, "TriggerSource"))});
  }
}

void AddSelected(GenApi::INodeMap &nodeMap, GenApi::IEnumeration &selector, std::vector<SActiveTrigger> *plistActive)
{
  GenApi::NodeList_t listEntries;
  selector.GetEntries(listEntries);
  for (GenApi::INode *pNode : listEntries) {
    if (!GenApi::IsAvailable(pNode->GetAccessMode())) {
      continue;
    }
    const std::string strEntry = dynamic_cast<GenApi::IEnumEntry &>(*pNode).GetSymbolic().c_str();
    try {
      selector.FromString(strEntry.c_str());
    } catch (const GenICam::GenericException &) {
      continue;
    }
    AddIfActive(nodeMap, strEntry, plistActive);
  }
}

} // namespace

std::vector<SActiveTrigger> ListActiveTriggers(GenApi::INodeMap &nodeMap)
{
  std::vector<SActiveTrigger> listActive;
  GenApi::IEnumeration *pSelector = Find(nodeMap, "TriggerSelector");
  const std::string strSelected = Read(pSelector);
  try {
    if (strSelected.empty() || !GenApi::IsWritable(pSelector)) {
      AddIfActive(nodeMap, strSelected, &listActive);
      return listActive;
    }
    AddSelected(nodeMap, *pSelector, &listActive);
  } catch (const GenICam::GenericException &) {
    // What was read so far is returned.
  }
  try {
    if (Read(pSelector) != strSelected) {
      pSelector->FromString(strSelected.c_str());
    }
  } catch (const GenICam::GenericException &) {
    // A camera that takes one entry and then refuses the former one has been lost, which is noticed elsewhere.
  }
  return listActive;
}

} // namespace ffc::camera
