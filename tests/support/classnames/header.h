/// \file
/// Classes with everything that a header brings into each library that includes it.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

/// Has no function outside of the header, so that each user has its table.
class CSampleBase {
public:
  virtual ~CSampleBase() = default;
  virtual std::string GetName() const { return std::string(m_nLetters, 'a'); }

private:
  std::size_t m_nLetters = 3;
};

namespace ffc::test {

/// Has one, in home.cpp.
class CSample : public CSampleBase {
public:
  std::string GetName() const override;
  std::size_t GetCount() const { return m_listNames.size(); }
  void Add(const std::string &strName) { m_listNames.push_back(strName); }

private:
  std::vector<std::string> m_listNames;
};

template <class TSample>
std::string DescribeSample(const TSample &sample)
{
  return sample.GetName() + " of " + std::to_string(sample.GetCount());
}

} // namespace ffc::test
