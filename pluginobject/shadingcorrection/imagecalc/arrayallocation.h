/// \file
/// Arrays whose allocation may fail.
#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <limits>
#include <memory>
#include <new>

namespace ffc::imagecalc {

/// Takes an array of at least one element, its elements not initialised.
/// \param listFactors numbers of elements along each side; the array holds their product
/// \return null when there is no such memory; never an exception, however large the product
template <class TElement>
std::unique_ptr<TElement[]> AllocateArray(std::initializer_list<uint64_t> listFactors) noexcept
{
  constexpr uint64_t LARGEST = static_cast<uint64_t>(std::numeric_limits<std::ptrdiff_t>::max()) / sizeof(TElement);
  uint64_t nCount = 1;
  for (const uint64_t nFactor : listFactors) {
    if (nFactor != 0 && nCount > LARGEST / nFactor) {
      return nullptr;
    }
    nCount *= nFactor;
  }
  const auto nElements = static_cast<std::size_t>(nCount == 0 ? 1 : nCount);
  return std::unique_ptr<TElement[]>(new (std::nothrow) TElement[nElements]);
}

} // namespace ffc::imagecalc
