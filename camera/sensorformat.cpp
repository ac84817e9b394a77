#include "camera/sensorformat.h"

#include <algorithm>
#include <iterator>

namespace {

template <class TPredicate>
const SSensorFormat *FindFormat(TPredicate fnMatches)
{
  const auto &listFormats = GetSensorFormats();
  const auto itFormat = std::find_if(listFormats.begin(), listFormats.end(), fnMatches);
  return itFormat == listFormats.end() ? nullptr : &*itFormat;
}

} // namespace

const std::vector<SSensorFormat> &GetSensorFormats()
{
  static const std::vector<SSensorFormat> LIST_FORMATS = {
    {"Mono8", 0x01080001, 8, EColorLayout::Mono},         {"Mono10", 0x01100003, 10, EColorLayout::Mono},
    {"Mono12", 0x01100005, 12, EColorLayout::Mono},       {"Mono14", 0x01100025, 14, EColorLayout::Mono},
    {"Mono16", 0x01100007, 16, EColorLayout::Mono},       {"BayerGR8", 0x01080008, 8, EColorLayout::BayerGR},
    {"BayerGR10", 0x0110000C, 10, EColorLayout::BayerGR}, {"BayerGR12", 0x01100010, 12, EColorLayout::BayerGR},
    {"BayerGR16", 0x0110002E, 16, EColorLayout::BayerGR}, {"BayerRG8", 0x01080009, 8, EColorLayout::BayerRG},
    {"BayerRG10", 0x0110000D, 10, EColorLayout::BayerRG}, {"BayerRG12", 0x01100011, 12, EColorLayout::BayerRG},
    {"BayerRG16", 0x0110002F, 16, EColorLayout::BayerRG}, {"BayerGB8", 0x0108000A, 8, EColorLayout::BayerGB},
    {"BayerGB10", 0x0110000E, 10, EColorLayout::BayerGB}, {"BayerGB12", 0x01100012, 12, EColorLayout::BayerGB},
    {"BayerGB16", 0x01100030, 16, EColorLayout::BayerGB}, {"BayerBG8", 0x0108000B, 8, EColorLayout::BayerBG},
    {"BayerBG10", 0x0110000F, 10, EColorLayout::BayerBG}, {"BayerBG12", 0x01100013, 12, EColorLayout::BayerBG},
    {"BayerBG16", 0x01100031, 16, EColorLayout::BayerBG},
  };
  return LIST_FORMATS;
}

const SSensorFormat *FindSensorFormat(const std::string &strName)
{
  return FindFormat([&strName](const SSensorFormat &stFormat) { return stFormat.strName == strName; });
}

const SSensorFormat *FindSensorFormat(uint32_t nCode)
{
  return FindFormat([nCode](const SSensorFormat &stFormat) { return stFormat.nCode == nCode; });
}

std::vector<SSensorFormat> GetSensorFormats(EColorLayout eLayout)
{
  std::vector<SSensorFormat> listFormats;
  std::copy_if(GetSensorFormats().begin(), GetSensorFormats().end(), std::back_inserter(listFormats),
               [eLayout](const SSensorFormat &stFormat) { return stFormat.eLayout == eLayout; });
  return listFormats;
}

EColor GetPixelColor(EColorLayout eLayout, uint32_t nX, uint32_t nY)
{
  if (eLayout == EColorLayout::Mono) {
    return EColor::Green;
  }
  static const EColor ALL_COLORS[][4] = {
    {EColor::Green, EColor::Red, EColor::Blue, EColor::Green},
    {EColor::Red, EColor::Green, EColor::Green, EColor::Blue},
    {EColor::Green, EColor::Blue, EColor::Red, EColor::Green},
    {EColor::Blue, EColor::Green, EColor::Green, EColor::Red},
  };
  const int nLayout = static_cast<int>(eLayout) - static_cast<int>(EColorLayout::BayerGR);
  return ALL_COLORS[nLayout][(nY % 2) * 2 + nX % 2];
}

const char *GetLayoutName(EColorLayout eLayout)
{
  static const char *const ALL_NAMES[] = {"Mono", "BayerGR", "BayerRG", "BayerGB", "BayerBG"};
  return ALL_NAMES[static_cast<int>(eLayout)];
}
