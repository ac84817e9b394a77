/// \file
/// A coefficient generator, its frames and its table.
#pragma once

#include <cstdint>
#include <vector>

#include <gtest/gtest.h>

#include "pluginobject/shadingcorrection/imagecalc/getsccoefficient.h"
#include "tests/pluginobject/shadingcorrection/imagecalc/testimage.h"

using TBytes = std::vector<uint8_t>;
using TWords = std::vector<int32_t>;

/// Frames of 64 x 64 pixels, for 2 x 2 blocks and a table of 128 bytes.
class CCoefficientTest : public testing::Test {
protected:
  static constexpr BLOCK_PARAM GRID = {64, 64, 32, 32, 0};
  static constexpr int32_t TABLE_SIZE = 128;
  static constexpr uint8_t UNTOUCHED = 0xA5;

  CGetSCCoefficient m_generator;
  ffc::test::CTestImage m_bright = ffc::test::CTestImage(64, 64, 8, 200);
  ffc::test::CTestImage m_dark = ffc::test::CTestImage(64, 64, 8, 10);
  TBytes m_listTable = TBytes(TABLE_SIZE, UNTOUCHED);
  int32_t m_nSize = TABLE_SIZE;

  int32_t CalcWithDark()
  {
    return m_generator.CalcWithDark(m_bright.GetData(), m_dark.GetData(), 8, Table(), &m_nSize);
  }
  int32_t CalcWithoutDark() { return m_generator.CalcWithoutDark(m_bright.GetData(), 8, Table(), &m_nSize); }

  bool IsTableUntouched() const { return m_listTable == TBytes(m_listTable.size(), UNTOUCHED); }
  uint8_t *Table() { return m_listTable.data(); }

  /// The four words of an element of a table that is nTableColumns wide.
  TWords GetElement(int32_t nColumn, int32_t nRow, int32_t nTableColumns = 4) const
  {
    TWords listWords;
    for (int32_t nWord = 0; nWord < 4; ++nWord) {
      const auto i = static_cast<std::size_t>((nRow * nTableColumns + nColumn) * 8 + nWord * 2);
      listWords.push_back(m_listTable[i] + 256 * m_listTable[i + 1]);
    }
    return listWords;
  }
};
