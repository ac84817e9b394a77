#include "camera/software/selfcorrection/usersets.h"

#include <utility>

namespace ffc::camera {

namespace {

constexpr int64_t SET_DEFAULT = 0;
constexpr int64_t SET_USER = 1;

genapi::CSoftwareEnumeration &AddSetList(genapi::CSoftwareNodeMap &deviceMap, const char *pName)
{
  return deviceMap.AddEnumeration(pName).Entry(DEFAULT_USER_SET, SET_DEFAULT).Entry("UserSet0", SET_USER).Strict();
}

} // namespace

CUserSets::CUserSets(genapi::CSoftwareNodeMap &deviceMap, CCameraFlash &flash, CSettingList settings)
  : m_flash(flash), m_settings(std::move(settings)), m_mapFactory(m_settings.Save()),
    m_pLocked(deviceMap.Find<genapi::CSoftwareInteger>("TLParamsLocked"))
{
  m_pSelector = &AddSetList(deviceMap, "UserSetSelector");
  m_pStart = &AddSetList(deviceMap, "UserSetDefault");
  m_pStart->OnWrite([this](int64_t nSet) {
    SFlashContent stContent = m_flash.Get();
    stContent.strStartSet = m_pStart->GetEntry(nSet)->GetSymbolic().c_str();
    m_flash.Store(std::move(stContent));
  });
  deviceMap.AddCommand("UserSetLoad").Access([this] { return GetAccess(false); }).OnExecute([this] { LoadSelected(); });
  deviceMap.AddCommand("UserSetSave").Access([this] { return GetAccess(true); }).OnExecute([this] { SaveSelected(); });
}

Result<> CUserSets::PowerOn()
{
  const SFlashContent &stContent = m_flash.Get();
  for (const auto &[strName, mapSet] : stContent.mapUserSets) {
    if (!m_settings.Load(mapSet)) {
      return Failure("The user set \"" + strName + "\" in the camera's flash does not fit the camera.");
    }
  }
  if (m_pStart->GetEntryByName(stContent.strStartSet.c_str()) == nullptr) {
    return Failure("The camera's flash names a user set \"" + stContent.strStartSet +
                   "\" that the camera does not have.");
  }
  m_pStart->Select(stContent.strStartSet);
  m_settings.Load(GetSet(stContent.strStartSet));
  return {};
}

bool CUserSets::StartsWithDefault() const
{
  return m_pStart->Peek() == SET_DEFAULT;
}

// Not available rather than not writable, which an access without verification would pass over.
GenApi::EAccessMode CUserSets::GetAccess(bool bSaving) const
{
  const bool bRefused = m_pLocked->Peek() != 0 || (bSaving && m_pSelector->Peek() == SET_DEFAULT);
  return bRefused ? GenApi::NA : GenApi::WO;
}

SettingSnapshot CUserSets::GetSet(const std::string &strName) const
{
  const auto &mapSaved = m_flash.Get().mapUserSets;
  const auto itSet = mapSaved.find(strName);
  return itSet == mapSaved.end() ? m_mapFactory : itSet->second;
}

void CUserSets::LoadSelected()
{
  m_settings.Load(GetSet(m_pSelector->PeekSymbolic()));
}

void CUserSets::SaveSelected()
{
  SFlashContent stContent = m_flash.Get();
  stContent.mapUserSets[m_pSelector->PeekSymbolic()] = m_settings.Save();
  m_flash.Store(std::move(stContent));
}

} // namespace ffc::camera
