// Another class of the same name, which has no function in common with the one of the home.
namespace ffc::test {

class CSample {
public:
  int Count(int nStep);

private:
  int m_nCount = 0;
};

int CSample::Count(int nStep)
{
  return m_nCount += nStep;
}

} // namespace ffc::test
