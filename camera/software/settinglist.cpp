#include "camera/software/settinglist.h"

#include <algorithm>
#include <utility>

namespace ffc::camera {

namespace {

bool IsInRange(GenApi::IInteger &node, int64_t nValue)
{
  // Unsigned, because the distance of two signed values may be too large for one.
  const uint64_t nFromMin = static_cast<uint64_t>(nValue) - static_cast<uint64_t>(node.GetMin());
  return nValue >= node.GetMin() && nValue <= node.GetMax() && nFromMin % static_cast<uint64_t>(node.GetInc()) == 0;
}

bool IsInRange(GenApi::IFloat &node, double dValue)
{
  return dValue >= node.GetMin() && dValue <= node.GetMax();
}

} // namespace

void CSettingList::Add(const std::string &strName, SSetting stSetting)
{
  m_mapSettings[strName] = std::move(stSetting);
}

void CSettingList::AddNodes(const genapi::CSoftwareNodeMap &map)
{
  GenApi::NodeList_t listNodes;
  map.GetNodes(listNodes);
  for (GenApi::INode *pNode : listNodes) {
    const std::string strName = pNode->GetName().c_str();
    if (m_setExcluded.count(strName) + m_mapSettings.count(strName) > 0 || !GenApi::IsWritable(pNode)) {
      continue;
    }
    if (auto *pEnumeration = dynamic_cast<genapi::CSoftwareEnumeration *>(pNode)) {
      AddNode(*pEnumeration,
              [](genapi::CSoftwareEnumeration &node, int64_t nValue) { return node.GetEntry(nValue) != nullptr; });
    } else if (auto *pInteger = dynamic_cast<genapi::CSoftwareInteger *>(pNode)) {
      AddNode(*pInteger, [](genapi::CSoftwareInteger &node, int64_t nValue) { return IsInRange(node, nValue); });
    } else if (auto *pFloat = dynamic_cast<genapi::CSoftwareFloat *>(pNode)) {
      AddNode(*pFloat, [](genapi::CSoftwareFloat &node, double dValue) { return IsInRange(node, dValue); });
    }
  }
}

template <class TNode, class TAcceptable>
void CSettingList::AddNode(TNode &node, TAcceptable fnIsAcceptable)
{
  using Value = decltype(node.Peek());
  SSetting stSetting;
  stSetting.fnGet = [&node] { return SettingValue(node.Peek()); };
  stSetting.fnSet = [&node](const SettingValue &value) { node.Poke(std::get<Value>(value)); };
  stSetting.fnIsAcceptable = [&node, fnIsAcceptable](const SettingValue &value) {
    return fnIsAcceptable(node, std::get<Value>(value));
  };
  Add(node.GetName().c_str(), std::move(stSetting));
}

SettingSnapshot CSettingList::Save() const
{
  SettingSnapshot mapSnapshot;
  for (const auto &[strName, stSetting] : m_mapSettings) {
    mapSnapshot[strName] = stSetting.fnGet();
  }
  return mapSnapshot;
}

bool CSettingList::Load(const SettingSnapshot &mapSnapshot) const
{
  const SettingSnapshot mapBefore = Save();
  const auto isSameKind = [](const auto &a, const auto &b) {
    return a.first == b.first && a.second.index() == b.second.index();
  };
  if (!std::equal(mapBefore.begin(), mapBefore.end(), mapSnapshot.begin(), mapSnapshot.end(), isSameKind)) {
    return false;
  }
  SetAll(mapSnapshot);
  if (!AreAcceptable(mapSnapshot)) {
    SetAll(mapBefore);
    return false;
  }
  return true;
}

void CSettingList::SetAll(const SettingSnapshot &mapSnapshot) const
{
  for (const auto &[strName, value] : mapSnapshot) {
    m_mapSettings.at(strName).fnSet(value);
  }
}

bool CSettingList::AreAcceptable(const SettingSnapshot &mapSnapshot) const
{
  return std::all_of(mapSnapshot.begin(), mapSnapshot.end(),
                     [this](const auto &entry) { return m_mapSettings.at(entry.first).fnIsAcceptable(entry.second); });
}

} // namespace ffc::camera
