#include "tests/support/usersets.h"

#include <utility>

namespace ffc::test {

namespace {

constexpr const char *FACTORY_SET = "Default";

template <class TNode, class TState>
void TakeValue(GenApi::INode *pNode, TState &mapValues)
{
  const auto *pValue = dynamic_cast<TNode *>(pNode);
  if (pValue != nullptr) {
    mapValues[pNode->GetName().c_str()] = pValue->Peek();
  }
}

} // namespace

CUserSets::CUserSets(genapi::CSoftwareNodeMap &map, FnTake fnTake, FnPut fnPut)
  : m_map(map), m_fnTake(std::move(fnTake)), m_fnPut(std::move(fnPut))
{
  for (const char *pName : {"UserSetSelector", "UserSetDefault"}) {
    m_map.AddEnumeration(pName).Entry(FACTORY_SET, 0).Entry("UserSet0", 1);
  }
  AddCommands();
}

void CUserSets::Save(const std::string &strSet)
{
  const auto lock = m_map.Lock();
  if (m_listNodes.empty()) {
    ListNodes();
  }
  SState stState;
  for (GenApi::INode *pNode : m_listNodes) {
    TakeValue<genapi::CSoftwareInteger>(pNode, stState.mapValues);
    TakeValue<genapi::CSoftwareFloat>(pNode, stState.mapValues);
    TakeValue<genapi::CSoftwareEnumeration>(pNode, stState.mapValues);
  }
  stState.listMore = m_fnTake();
  m_mapSets[strSet] = stState;
}

void CUserSets::Load(const std::string &strSet)
{
  const auto lock = m_map.Lock();
  const SState &stState = m_mapSets.at(strSet);
  for (const auto &[strName, value] : stState.mapValues) {
    if (auto *pFloat = m_map.Find<genapi::CSoftwareFloat>(strName)) {
      pFloat->Poke(std::get<double>(value));
    } else if (auto *pInteger = m_map.Find<genapi::CSoftwareInteger>(strName)) {
      pInteger->Poke(std::get<int64_t>(value));
    } else {
      m_map.Find<genapi::CSoftwareEnumeration>(strName)->Poke(std::get<int64_t>(value));
    }
  }
  m_fnPut(stState.listMore);
}

void CUserSets::AddCommands()
{
  const auto *pLocked = m_map.Find<genapi::CSoftwareInteger>("TLParamsLocked");
  m_map.AddCommand("UserSetLoad")
    .Access([pLocked] { return pLocked->Peek() != 0 ? GenApi::NA : GenApi::WO; })
    .OnExecute([this] { Load(GetSelected()); });
  const auto saveAccess = [this, pLocked] { return m_bSaveLocked && pLocked->Peek() != 0 ? GenApi::NA : GenApi::WO; };
  m_map.AddCommand("UserSetSave").Access(saveAccess).OnExecute([this] {
    if (GetSelected() == FACTORY_SET) {
      throw GenICam::AccessException("the factory set cannot be overwritten", __FILE__, __LINE__);
    }
    Save(GetSelected());
  });
}

void CUserSets::ListNodes()
{
  GenApi::NodeList_t listAll;
  m_map.GetNodes(listAll);
  for (GenApi::INode *pNode : listAll) {
    const std::string strName = pNode->GetName().c_str();
    const bool bOwn = strName == "UserSetSelector" || strName == "UserSetDefault";
    if (!bOwn && GenApi::IsWritable(pNode->GetAccessMode())) {
      m_listNodes.push_back(pNode);
    }
  }
}

std::string CUserSets::GetSelected() const
{
  return m_map.Find<genapi::CSoftwareEnumeration>("UserSetSelector")->PeekSymbolic();
}

} // namespace ffc::test
