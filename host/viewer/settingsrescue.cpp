#include "host/viewer/settingsrescue.h"

#include <map>
#include <string>

#include "host/viewer/featuretext.h"

namespace ffc::host {
namespace {

constexpr const char *SELECTOR = "UserSetSelector";
constexpr const char *USER_SET = "UserSet0";

using Texts = std::map<std::string, std::string>;

Texts ReadAll(GenApi::INodeMap &nodeMap)
{
  Texts mapTexts;
  GenApi::NodeList_t listNodes;
  nodeMap.GetNodes(listNodes);
  for (GenApi::INode *pNode : listNodes) {
    auto *pValue = dynamic_cast<GenApi::IValue *>(pNode);
    if (pValue != nullptr && GenApi::IsReadable(pNode->GetAccessMode()) &&
        dynamic_cast<GenApi::ICommand *>(pNode) == nullptr && dynamic_cast<GenApi::IRegister *>(pNode) == nullptr) {
      mapTexts[pNode->GetName().c_str()] = ReadText(*pValue);
    }
  }
  return mapTexts;
}

QStringList ListChanges(const Texts &mapBefore, const Texts &mapAfter)
{
  QStringList listChanges;
  for (const auto &[strName, strAfter] : mapAfter) {
    const auto itBefore = mapBefore.find(strName);
    if (itBefore != mapBefore.end() && itBefore->second != strAfter) {
      listChanges << QStringLiteral("%1: %2 -> %3")
                       .arg(QString::fromStdString(strName), QString::fromStdString(itBefore->second),
                            QString::fromStdString(strAfter));
    }
  }
  return listChanges;
}

GenApi::IEnumeration *FindSelector(GenApi::INodeMap &nodeMap)
{
  return dynamic_cast<GenApi::IEnumeration *>(nodeMap.GetNode(SELECTOR));
}

GenApi::ICommand *FindLoad(GenApi::INodeMap &nodeMap)
{
  return dynamic_cast<GenApi::ICommand *>(nodeMap.GetNode("UserSetLoad"));
}

} // namespace

bool CSettingsRescue::IsPossible() const
{
  try {
    GenApi::IEnumeration *pSelector = FindSelector(m_nodeMap);
    return pSelector != nullptr && pSelector->GetEntryByName(USER_SET) != nullptr && FindLoad(m_nodeMap) != nullptr;
  } catch (...) {
    return false;
  }
}

Result<QStringList> CSettingsRescue::Restore()
{
  if (!IsPossible()) {
    return Failure("this camera has no user set \"UserSet0\"");
  }
  try {
    const Texts mapBefore = ReadAll(m_nodeMap);
    const Result<> loaded = Load();
    if (!loaded) {
      return loaded.GetFailure();
    }
    return ListChanges(mapBefore, ReadAll(m_nodeMap));
  } catch (const GenICam::GenericException &exception) {
    return Failure(exception.GetDescription());
  } catch (...) {
    return Failure("the camera does not answer");
  }
}

Result<> CSettingsRescue::Load()
{
  GenApi::IEnumeration &selector = *FindSelector(m_nodeMap);
  const GenICam::gcstring strSelected = selector.ToString();
  Result<> result;
  try {
    selector.FromString(USER_SET);
    FindLoad(m_nodeMap)->Execute();
  } catch (const GenICam::GenericException &exception) {
    result = Failure(exception.GetDescription());
  }
  selector.FromString(strSelected);
  return result;
}

} // namespace ffc::host
