/// \file
/// The pixel formats of GenICam's Pixel Format Naming Convention (PFNC) that this system knows: the one table of them.
///
/// Needs no GenApi, whoever provides it.
#pragma once

#include <cstdint>
#include <string_view>

namespace ffc::genapi {

/// Colour filters of a sensor's pixels; the name tells the colours of the first two. The numbers are those of the
/// PixelColorFilter feature and of the image computations.
enum class EColorLayout : int32_t { Mono = 0, BayerRG = 1, BayerGB = 2, BayerGR = 3, BayerBG = 4 };

enum class EColor { Red = 0, Green = 1, Blue = 2 };
constexpr int COLOR_COUNT = 3;

/// How the samples of a frame lie in memory.
enum class EPacking {
  None,   ///< in whole bytes: up to 8 bits in one, more in two
  Shared, ///< GigE Vision: two samples in three bytes: high byte, the low bits of both, the other high byte
  Stream, ///< PFNC "p": one stream of bits, least significant first
};

struct SPixelFormat {
  const char *pName = ""; ///< as PFNC or GigE Vision calls it, which is the PixelFormat entry's name
  uint32_t nCode = 0;     ///< PFNC code
  uint32_t nBitDepth = 0; ///< significant bits per sample
  EPacking ePacking = EPacking::None;
  EColorLayout eLayout = EColorLayout::Mono;
  uint32_t nSamples = 1; ///< per pixel

  constexpr bool IsBayer() const { return eLayout != EColorLayout::Mono; }
  /// Of a pixel whose samples are not packed.
  constexpr uint32_t GetBytesPerPixel() const { return nSamples * (nBitDepth > 8 ? 2 : 1); }
  constexpr uint32_t GetMaxValue() const { return (1U << nBitDepth) - 1; }
};

/// By rising code.
inline constexpr SPixelFormat PIXEL_FORMATS[] = {
  {"Mono8", 0x01080001, 8, EPacking::None, EColorLayout::Mono, 1},
  {"Mono8s", 0x01080002, 8, EPacking::None, EColorLayout::Mono, 1},
  {"BayerGR8", 0x01080008, 8, EPacking::None, EColorLayout::BayerGR, 1},
  {"BayerRG8", 0x01080009, 8, EPacking::None, EColorLayout::BayerRG, 1},
  {"BayerGB8", 0x0108000A, 8, EPacking::None, EColorLayout::BayerGB, 1},
  {"BayerBG8", 0x0108000B, 8, EPacking::None, EColorLayout::BayerBG, 1},
  {"R8", 0x010800C9, 8, EPacking::None, EColorLayout::Mono, 1},
  {"G8", 0x010800CD, 8, EPacking::None, EColorLayout::Mono, 1},
  {"B8", 0x010800D1, 8, EPacking::None, EColorLayout::Mono, 1},
  {"Mono10p", 0x010A0046, 10, EPacking::Stream, EColorLayout::Mono, 1},
  {"BayerBG10p", 0x010A0052, 10, EPacking::Stream, EColorLayout::BayerBG, 1},
  {"BayerGB10p", 0x010A0054, 10, EPacking::Stream, EColorLayout::BayerGB, 1},
  {"BayerGR10p", 0x010A0056, 10, EPacking::Stream, EColorLayout::BayerGR, 1},
  {"BayerRG10p", 0x010A0058, 10, EPacking::Stream, EColorLayout::BayerRG, 1},
  {"Mono10Packed", 0x010C0004, 10, EPacking::Shared, EColorLayout::Mono, 1},
  {"Mono12Packed", 0x010C0006, 12, EPacking::Shared, EColorLayout::Mono, 1},
  {"BayerGR10Packed", 0x010C0026, 10, EPacking::Shared, EColorLayout::BayerGR, 1},
  {"BayerRG10Packed", 0x010C0027, 10, EPacking::Shared, EColorLayout::BayerRG, 1},
  {"BayerGB10Packed", 0x010C0028, 10, EPacking::Shared, EColorLayout::BayerGB, 1},
  {"BayerBG10Packed", 0x010C0029, 10, EPacking::Shared, EColorLayout::BayerBG, 1},
  {"BayerGR12Packed", 0x010C002A, 12, EPacking::Shared, EColorLayout::BayerGR, 1},
  {"BayerRG12Packed", 0x010C002B, 12, EPacking::Shared, EColorLayout::BayerRG, 1},
  {"BayerGB12Packed", 0x010C002C, 12, EPacking::Shared, EColorLayout::BayerGB, 1},
  {"BayerBG12Packed", 0x010C002D, 12, EPacking::Shared, EColorLayout::BayerBG, 1},
  {"Mono12p", 0x010C0047, 12, EPacking::Stream, EColorLayout::Mono, 1},
  {"BayerBG12p", 0x010C0053, 12, EPacking::Stream, EColorLayout::BayerBG, 1},
  {"BayerGB12p", 0x010C0055, 12, EPacking::Stream, EColorLayout::BayerGB, 1},
  {"BayerGR12p", 0x010C0057, 12, EPacking::Stream, EColorLayout::BayerGR, 1},
  {"BayerRG12p", 0x010C0059, 12, EPacking::Stream, EColorLayout::BayerRG, 1},
  {"Mono14p", 0x010E0104, 14, EPacking::Stream, EColorLayout::Mono, 1},
  {"BayerGR14p", 0x010E0105, 14, EPacking::Stream, EColorLayout::BayerGR, 1},
  {"BayerRG14p", 0x010E0106, 14, EPacking::Stream, EColorLayout::BayerRG, 1},
  {"BayerGB14p", 0x010E0107, 14, EPacking::Stream, EColorLayout::BayerGB, 1},
  {"BayerBG14p", 0x010E0108, 14, EPacking::Stream, EColorLayout::BayerBG, 1},
  {"Mono10", 0x01100003, 10, EPacking::None, EColorLayout::Mono, 1},
  {"Mono12", 0x01100005, 12, EPacking::None, EColorLayout::Mono, 1},
  {"Mono16", 0x01100007, 16, EPacking::None, EColorLayout::Mono, 1},
  {"BayerGR10", 0x0110000C, 10, EPacking::None, EColorLayout::BayerGR, 1},
  {"BayerRG10", 0x0110000D, 10, EPacking::None, EColorLayout::BayerRG, 1},
  {"BayerGB10", 0x0110000E, 10, EPacking::None, EColorLayout::BayerGB, 1},
  {"BayerBG10", 0x0110000F, 10, EPacking::None, EColorLayout::BayerBG, 1},
  {"BayerGR12", 0x01100010, 12, EPacking::None, EColorLayout::BayerGR, 1},
  {"BayerRG12", 0x01100011, 12, EPacking::None, EColorLayout::BayerRG, 1},
  {"BayerGB12", 0x01100012, 12, EPacking::None, EColorLayout::BayerGB, 1},
  {"BayerBG12", 0x01100013, 12, EPacking::None, EColorLayout::BayerBG, 1},
  {"Mono14", 0x01100025, 14, EPacking::None, EColorLayout::Mono, 1},
  {"BayerGR16", 0x0110002E, 16, EPacking::None, EColorLayout::BayerGR, 1},
  {"BayerRG16", 0x0110002F, 16, EPacking::None, EColorLayout::BayerRG, 1},
  {"BayerGB16", 0x01100030, 16, EPacking::None, EColorLayout::BayerGB, 1},
  {"BayerBG16", 0x01100031, 16, EPacking::None, EColorLayout::BayerBG, 1},
  {"BayerGR14", 0x01100109, 14, EPacking::None, EColorLayout::BayerGR, 1},
  {"BayerRG14", 0x0110010A, 14, EPacking::None, EColorLayout::BayerRG, 1},
  {"BayerGB14", 0x0110010B, 14, EPacking::None, EColorLayout::BayerGB, 1},
  {"BayerBG14", 0x0110010C, 14, EPacking::None, EColorLayout::BayerBG, 1},
  {"RGB8", 0x02180014, 8, EPacking::None, EColorLayout::Mono, 3},
  {"BGR8", 0x02180015, 8, EPacking::None, EColorLayout::Mono, 3},
};

/// Packed formats of less than 8 bits, by rising code: a host receives and shows them, no correction knows them.
inline constexpr SPixelFormat NARROW_FORMATS[] = {
  {"Mono1p", 0x01010037, 1, EPacking::Stream, EColorLayout::Mono, 1},
  {"Mono2p", 0x01020038, 2, EPacking::Stream, EColorLayout::Mono, 1},
  {"Mono4p", 0x01040039, 4, EPacking::Stream, EColorLayout::Mono, 1},
  {"BayerGR4p", 0x0104010D, 4, EPacking::Stream, EColorLayout::BayerGR, 1},
  {"BayerRG4p", 0x0104010E, 4, EPacking::Stream, EColorLayout::BayerRG, 1},
  {"BayerGB4p", 0x0104010F, 4, EPacking::Stream, EColorLayout::BayerGB, 1},
  {"BayerBG4p", 0x01040110, 4, EPacking::Stream, EColorLayout::BayerBG, 1},
};

/// A format that is no more than a name here.
struct SNamedFormat {
  const char *pName;
  uint32_t nCode; ///< PFNC code
};

/// Colours after a camera has computed them, coordinates, confidence: no sensor's own samples. By rising code.
inline constexpr SNamedFormat COMPUTED_FORMATS[] = {
  {"Coord3D_A8", 0x010800AF},
  {"Coord3D_B8", 0x010800B0},
  {"Coord3D_C8", 0x010800B1},
  {"Confidence8", 0x010800C6},
  {"Coord3D_A16", 0x011000B6},
  {"Coord3D_B16", 0x011000B7},
  {"Coord3D_C16", 0x011000B8},
  {"Confidence16", 0x011000C7},
  {"Coord3D_A32f", 0x012000BD},
  {"Coord3D_B32f", 0x012000BE},
  {"Coord3D_C32f", 0x012000BF},
  {"Confidence32f", 0x012000C8},
  {"YUV411_8_UYYVYY", 0x020C001E},
  {"YCbCr411_8_CbYYCrYY", 0x020C003C},
  {"YCbCr601_411_8_CbYYCrYY", 0x020C003F},
  {"YCbCr709_411_8_CbYYCrYY", 0x020C0042},
  {"YUV422_8_UYVY", 0x0210001F},
  {"YUV422_8", 0x02100032},
  {"RGB565p", 0x02100035},
  {"BGR565p", 0x02100036},
  {"YCbCr422_8", 0x0210003B},
  {"YCbCr601_422_8", 0x0210003E},
  {"YCbCr709_422_8", 0x02100041},
  {"YCbCr422_8_CbYCrY", 0x02100043},
  {"YCbCr601_422_8_CbYCrY", 0x02100044},
  {"YCbCr709_422_8_CbYCrY", 0x02100045},
  {"Coord3D_AC8", 0x021000B4},
  {"YUV8_UYV", 0x02180020},
  {"RGB8_Planar", 0x02180021},
  {"YCbCr8_CbYCr", 0x0218003A},
  {"YCbCr601_8_CbYCr", 0x0218003D},
  {"YCbCr709_8_CbYCr", 0x02180040},
  {"Coord3D_ABC8", 0x021800B2},
  {"RGBa8", 0x02200016},
  {"BGRa8", 0x02200017},
  {"RGB10V1Packed", 0x0220001C},
  {"RGB10p32", 0x0220001D},
  {"Coord3D_AC16", 0x022000BB},
  {"RGB10", 0x02300018},
  {"BGR10", 0x02300019},
  {"RGB12", 0x0230001A},
  {"BGR12", 0x0230001B},
  {"RGB10_Planar", 0x02300022},
  {"RGB12_Planar", 0x02300023},
  {"RGB16_Planar", 0x02300024},
  {"RGB16", 0x02300033},
  {"BGR16", 0x0230004B},
  {"Coord3D_ABC16", 0x023000B9},
  {"Coord3D_AC32f", 0x024000C2},
  {"Coord3D_AC32f_Planar", 0x024000C3},
  {"Coord3D_ABC32f", 0x026000C0},
  {"Coord3D_ABC32f_Planar", 0x026000C1},
};

/// \return one of PIXEL_FORMATS; null for a code that is not there
constexpr const SPixelFormat *FindPixelFormat(uint32_t nCode)
{
  for (const SPixelFormat &stFormat : PIXEL_FORMATS) {
    if (stFormat.nCode == nCode) {
      return &stFormat;
    }
  }
  return nullptr;
}

/// \return one of PIXEL_FORMATS; null for a name that is not there
constexpr const SPixelFormat *FindPixelFormat(std::string_view strName)
{
  for (const SPixelFormat &stFormat : PIXEL_FORMATS) {
    if (stFormat.pName == strName) {
      return &stFormat;
    }
  }
  return nullptr;
}

/// Whether the code is that of a Bayer format of the table.
constexpr bool IsBayerFormat(uint32_t nCode)
{
  const SPixelFormat *pFormat = FindPixelFormat(nCode);
  return pFormat != nullptr && pFormat->IsBayer();
}

/// The code of a format that the table has; of any other name, where it is a constant, there is no code to compile.
constexpr uint32_t GetPixelFormatCode(std::string_view strName)
{
  return FindPixelFormat(strName)->nCode;
}

/// One of PIXEL_FORMATS or NARROW_FORMATS; null for a code that is in neither.
constexpr const SPixelFormat *FindReceivedFormat(uint32_t nCode)
{
  for (const SPixelFormat &stFormat : NARROW_FORMATS) {
    if (stFormat.nCode == nCode) {
      return &stFormat;
    }
  }
  return FindPixelFormat(nCode);
}

/// Null for a code that is in none of the tables.
constexpr const char *FindFormatName(uint32_t nCode)
{
  for (const SNamedFormat &stFormat : COMPUTED_FORMATS) {
    if (stFormat.nCode == nCode) {
      return stFormat.pName;
    }
  }
  const SPixelFormat *pFormat = FindReceivedFormat(nCode);
  return pFormat == nullptr ? nullptr : pFormat->pName;
}

/// Whether a frame has one sample of the sensor for each pixel, of 8 bits at least: everything else passes a correction
/// by.
constexpr bool IsCorrectable(uint32_t nCode)
{
  const SPixelFormat *pFormat = FindPixelFormat(nCode);
  return pFormat != nullptr && pFormat->nSamples == 1;
}

/// The format with the same samples in whole bytes, those of less than 8 bits as 8; null where the table has none.
constexpr const SPixelFormat *FindUnpackedFormat(const SPixelFormat &stPacked)
{
  const uint32_t nBitDepth = stPacked.nBitDepth < 8 ? 8 : stPacked.nBitDepth;
  for (const SPixelFormat &stFormat : PIXEL_FORMATS) {
    if (stFormat.ePacking == EPacking::None && stFormat.nBitDepth == nBitDepth &&
        stFormat.eLayout == stPacked.eLayout && stFormat.nSamples == stPacked.nSamples) {
      return &stFormat;
    }
  }
  return nullptr;
}

/// Bits that a pixel takes in memory: every PFNC code tells, known or not.
constexpr uint32_t GetBitsPerPixel(uint32_t nCode)
{
  return nCode >> 16U & 0xFFU;
}

/// "BayerRG", "BayerGB", "BayerGR" or "BayerBG", as PixelColorFilter calls it; "Mono".
constexpr const char *GetLayoutName(EColorLayout eLayout)
{
  constexpr const char *NAMES[] = {"Mono", "BayerRG", "BayerGB", "BayerGR", "BayerBG"};
  return NAMES[static_cast<int32_t>(eLayout)];
}

/// The layout of a PixelColorFilter value; Mono for any other text.
constexpr EColorLayout GetColorLayout(std::string_view strName)
{
  for (const EColorLayout eLayout :
       {EColorLayout::BayerRG, EColorLayout::BayerGB, EColorLayout::BayerGR, EColorLayout::BayerBG}) {
    if (strName == GetLayoutName(eLayout)) {
      return eLayout;
    }
  }
  return EColorLayout::Mono;
}

/// Colour of a pixel; Green for mono.
constexpr EColor GetPixelColor(EColorLayout eLayout, uint32_t nX, uint32_t nY)
{
  // By layout; a 2x2 cell, row by row.
  constexpr EColor CELLS[][4] = {
    {EColor::Green, EColor::Green, EColor::Green, EColor::Green},
    {EColor::Red, EColor::Green, EColor::Green, EColor::Blue},
    {EColor::Green, EColor::Blue, EColor::Red, EColor::Green},
    {EColor::Green, EColor::Red, EColor::Blue, EColor::Green},
    {EColor::Blue, EColor::Green, EColor::Green, EColor::Red},
  };
  return CELLS[static_cast<int32_t>(eLayout)][(nY % 2) * 2 + nX % 2];
}

} // namespace ffc::genapi
