#include "camera/aravis/overlay/featureoverlay.h"

#include <algorithm>
#include <cctype>

#include "camera/aravis/overlay/colorfilter.h"

namespace ffc::camera {

namespace {

using EKind = SFeatureNote::EKind;

/// Microseconds of a unit; 1 for every other text, as for none.
double GetMicroseconds(std::string strUnit)
{
  std::transform(strUnit.begin(), strUnit.end(), strUnit.begin(),
                 [](char cLetter) { return static_cast<char>(std::tolower(static_cast<unsigned char>(cLetter))); });
  const std::pair<const char *, double> UNITS[] = {
    {"ns", 1e-3}, {"nanoseconds", 1e-3}, {"ms", 1e3},      {"msec", 1e3}, {"milliseconds", 1e3},
    {"s", 1e6},   {"sec", 1e6},          {"seconds", 1e6},
  };
  for (const auto &[pUnit, dFactor] : UNITS) {
    if (strUnit == pUnit) {
      return dFactor;
    }
  }
  return 1.0;
}

} // namespace

CFeatureOverlay::CFeatureOverlay(const CAravisNodeMap &map) : m_map(map)
{
  CheckIntegers();
  AddExposureTime();
  AddGain();
  AddTriggerMode();
  AddColorFilter();
  AddBalanceRatio();
}

GenApi::INode *CFeatureOverlay::GetNode(const GenICam::gcstring &strName) const
{
  const auto itReplaced = m_mapReplaced.find(strName.c_str());
  return itReplaced == m_mapReplaced.end() ? m_map.GetNode(strName) : itReplaced->second;
}

void CFeatureOverlay::GetNodes(GenApi::NodeList_t &listNodes) const
{
  GenApi::NodeList_t listInner;
  m_map.GetNodes(listInner);
  std::map<std::string, GenApi::INode *> mapLeft = m_mapReplaced;
  for (GenApi::INode *pNode : listInner) {
    const auto itReplaced = mapLeft.find(pNode->GetName().c_str());
    GenApi::INode *pShown = itReplaced == mapLeft.end() ? pNode : itReplaced->second;
    if (itReplaced != mapLeft.end()) {
      mapLeft.erase(itReplaced);
    }
    if (pShown != nullptr) {
      listNodes.push_back(pShown);
    }
  }
  for (const auto &[strName, pNode] : mapLeft) {
    if (pNode != nullptr) {
      listNodes.push_back(pNode);
    }
  }
}

/// The camera's own node, unless the camera has none of the kind after all.
GenApi::INode *CFeatureOverlay::FindThere(const char *pName) const
{
  GenApi::INode *pNode = m_map.GetNode(pName);
  return pNode != nullptr && GenApi::IsImplemented(pNode->GetAccessMode()) ? pNode : nullptr;
}

/// \param pUnitText what is added to the name in words; null: nothing
std::optional<CFeatureOverlay::SCandidate> CFeatureOverlay::MakeCandidate(const char *pName, const char *pUnitText,
                                                                          double dFactor) const
{
  GenApi::INode *pNode = FindThere(pName);
  SCandidate stCandidate;
  stCandidate.stSource.pFloat = dynamic_cast<GenApi::IFloat *>(pNode);
  stCandidate.stSource.pInteger = dynamic_cast<GenApi::IInteger *>(pNode);
  stCandidate.stSource.dFactor = dFactor;
  if (stCandidate.stSource.pFloat == nullptr && stCandidate.stSource.pInteger == nullptr) {
    return std::nullopt;
  }
  stCandidate.strText = std::string(pName) + (pUnitText == nullptr ? "" : pUnitText);
  return stCandidate;
}

void CFeatureOverlay::Use(const char *pFeature, const SCandidate &stCandidate)
{
  const SFloatSource &stSource = stCandidate.stSource;
  const bool bAsItIs = stSource.pFloat != nullptr && stSource.pFactor == nullptr && stSource.dFactor == 1.0 &&
                       stCandidate.strText == pFeature;
  if (bAsItIs) {
    return;
  }
  m_listOwn.push_back(std::make_unique<CFloatAlias>(m_map.GetMutex(), pFeature, stSource));
  Replace(pFeature, m_listOwn.back().get());
  const bool bOtherKind = stSource.pInteger != nullptr && stCandidate.strText == pFeature;
  Note(EKind::Aliased, pFeature, stCandidate.strText + (bOtherKind ? " as an integer" : ""));
}

void CFeatureOverlay::Replace(const char *pFeature, GenApi::INode *pNode)
{
  m_mapReplaced[pFeature] = pNode;
}

void CFeatureOverlay::Note(EKind eKind, const char *pFeature, const std::string &strSource)
{
  m_listNotes.push_back({eKind, pFeature, strSource});
}

/// What the plug-in reads as integers, and nothing can stand for.
void CFeatureOverlay::CheckIntegers()
{
  for (const char *pName : {"Width", "Height", "PayloadSize"}) {
    GenApi::INode *pNode = FindThere(pName);
    if (dynamic_cast<GenApi::IInteger *>(pNode) == nullptr) {
      Note(EKind::Missing, pName, pNode == nullptr ? "there is none" : "it is no integer");
    }
  }
  if (dynamic_cast<GenApi::IEnumeration *>(FindThere("PixelFormat")) == nullptr) {
    Note(EKind::Missing, "PixelFormat", "there is no list of pixel formats");
  }
}

std::optional<CFeatureOverlay::SCandidate> CFeatureOverlay::FindExposure() const
{
  for (const char *pName : {"ExposureTime", "ExposureTimeAbs"}) {
    const std::string strUnit = m_map.GetUnit(pName);
    const double dFactor = GetMicroseconds(strUnit);
    const std::string strInUnit = " in " + strUnit;
    auto candidate = MakeCandidate(pName, dFactor == 1.0 ? nullptr : strInUnit.c_str(), dFactor);
    if (candidate) {
      return candidate;
    }
  }
  const std::string strUnit = m_map.GetUnit("ExposureTimeRaw");
  auto candidate = MakeCandidate("ExposureTimeRaw", nullptr, GetMicroseconds(strUnit));
  if (!candidate) {
    return std::nullopt;
  }
  candidate->stSource.pFactor = dynamic_cast<GenApi::IFloat *>(FindThere("ExposureTimeBaseAbs"));
  if (candidate->stSource.pFactor != nullptr) {
    candidate->stSource.dFactor = 1.0;
    candidate->strText += " times ExposureTimeBaseAbs";
  } else {
    candidate->strText += " in " + (strUnit.empty() ? std::string("microseconds, as is assumed") : strUnit);
  }
  return candidate;
}

void CFeatureOverlay::AddExposureTime()
{
  const auto candidate = FindExposure();
  if (candidate) {
    Use("ExposureTime", *candidate);
  } else {
    Note(EKind::Missing, "ExposureTime", "neither ExposureTime nor ExposureTimeAbs nor ExposureTimeRaw is there");
  }
}

/// The plug-in reads it and does not use its value, which may therefore be in raw steps.
void CFeatureOverlay::AddGain()
{
  for (const auto &[pName, pUnitText] :
       {std::pair<const char *, const char *>("Gain", nullptr), {"GainAbs", nullptr}, {"GainRaw", " in raw steps"}}) {
    const auto candidate = MakeCandidate(pName, pUnitText, 1.0);
    if (candidate) {
      Use("Gain", *candidate);
      return;
    }
  }
  Replace("Gain", m_supplied.AddFloat("Gain", 0.0).Access(GenApi::RO).GetNode());
  Note(EKind::Supplied, "Gain", "0");
}

void CFeatureOverlay::AddTriggerMode()
{
  GenApi::INode *pNode = FindThere("TriggerMode");
  if (pNode == nullptr) {
    genapi::CSoftwareEnumeration &node = m_supplied.AddEnumeration("TriggerMode").Entry("Off", 0).Strict();
    Replace("TriggerMode", node.GetNode());
    Note(EKind::Supplied, "TriggerMode", "Off");
  } else if (dynamic_cast<GenApi::IEnumeration *>(pNode) == nullptr) {
    Note(EKind::Missing, "TriggerMode", "it is no list of modes");
  }
}

void CFeatureOverlay::AddColorFilter()
{
  GenApi::INode *pNode = m_map.GetNode("PixelColorFilter");
  auto *pFilter = dynamic_cast<GenApi::IEnumeration *>(pNode);
  if (pNode == nullptr) {
    return;
  }
  if (pFilter == nullptr) {
    Replace("PixelColorFilter", nullptr);
    Note(EKind::Hidden, "PixelColorFilter", "it is no list of layouts");
    return;
  }
  const bool bImplemented = GenApi::IsImplemented(pNode->GetAccessMode());
  auto pOwn = std::make_unique<CColorFilter>(*pNode, *pFilter);
  if (bImplemented && !GenApi::IsImplemented(pOwn->GetAccessMode())) {
    Note(EKind::Hidden, "PixelColorFilter", "it names no Bayer layout at the moment, so the camera is monochrome");
  }
  Replace("PixelColorFilter", pOwn.get());
  m_listOwn.push_back(std::move(pOwn));
}

/// Only what is read before the bright field and written back after it: its unit does not matter. Without the
/// ratios, the white balance is left to the camera.
void CFeatureOverlay::AddBalanceRatio()
{
  if (FindThere("BalanceWhiteAuto") == nullptr) {
    return;
  }
  for (const auto &[pName, pUnitText] : {std::pair<const char *, const char *>("BalanceRatio", nullptr),
                                         {"BalanceRatioAbs", nullptr},
                                         {"BalanceRatioRaw", " in raw steps"}}) {
    const auto candidate = MakeCandidate(pName, pUnitText, 1.0);
    if (candidate && dynamic_cast<GenApi::IEnumeration *>(FindThere("BalanceRatioSelector")) != nullptr) {
      Use("BalanceRatio", *candidate);
      return;
    }
  }
  Replace("BalanceWhiteAuto", nullptr);
  Note(EKind::Hidden, "BalanceWhiteAuto", "the ratios that it sets cannot be saved, so the plug-in leaves it alone");
}

} // namespace ffc::camera
