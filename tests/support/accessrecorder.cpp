#include "tests/support/accessrecorder.h"

#include <map>

namespace ffc::test {

namespace {

struct SKindStyle {
  const char *pVerb;
  bool bDetail; // left out of the short log
};

const SKindStyle &GetStyle(genapi::SNodeAccess::EKind eKind)
{
  using EKind = genapi::SNodeAccess::EKind;
  static const std::map<EKind, SKindStyle> MAP_STYLES = {
    {EKind::LookUp, {"find", true}},
    {EKind::AccessMode, {"implemented?", false}},
    {EKind::EntryAccessMode, {"implemented?", true}},
    {EKind::Read, {"get", false}},
    {EKind::Write, {"set", false}},
    {EKind::Limit, {"limit", true}},
    {EKind::Entries, {"entries", false}},
    {EKind::CurrentEntry, {"get", false}},
    {EKind::EntryValue, {"get", true}},
    {EKind::Execute, {"execute", false}},
    {EKind::IsDone, {"done?", true}},
    {EKind::RegisterRead, {"read", false}},
    {EKind::RegisterWrite, {"write", false}},
    {EKind::RegisterLength, {"length", true}},
  };
  return MAP_STYLES.at(eKind);
}

std::string Describe(const genapi::SNodeAccess &stAccess, const SKindStyle &stStyle)
{
  std::string strLine = std::string(stStyle.pVerb) + " " + stAccess.strNode;
  if (stAccess.eKind == genapi::SNodeAccess::EKind::Write) {
    strLine += " = " + stAccess.strValue;
  }
  if (stAccess.eKind == genapi::SNodeAccess::EKind::RegisterRead ||
      stAccess.eKind == genapi::SNodeAccess::EKind::RegisterWrite) {
    strLine += " " + std::to_string(stAccess.nLength);
  }
  return strLine;
}

} // namespace

void CAccessRecorder::operator()(const genapi::SNodeAccess &stAccess)
{
  const SKindStyle &stStyle = GetStyle(stAccess.eKind);
  if (stStyle.bDetail && m_eDetail == EDetail::Values) {
    return;
  }
  const std::lock_guard lock(m_mutex);
  m_listLines.push_back(Describe(stAccess, stStyle));
}

std::vector<std::string> CAccessRecorder::GetLog() const
{
  const std::lock_guard lock(m_mutex);
  return m_listLines;
}

void CAccessRecorder::Clear()
{
  const std::lock_guard lock(m_mutex);
  m_listLines.clear();
}

} // namespace ffc::test
