#include "tests/support/classnames/header.h"

namespace ffc::test {

std::string CSample::GetName() const
{
  return "sample";
}

std::string DescribeHome()
{
  CSample sample;
  sample.Add("home");
  return DescribeSample(sample) + CSampleBase().GetName();
}

} // namespace ffc::test
