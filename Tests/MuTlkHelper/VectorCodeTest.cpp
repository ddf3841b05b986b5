#include <MuTlkHelper/VectorCode.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <string_view>

namespace
{
using namespace Mu::TlkHelper;

// The suite runs a second time with wide vectors switched off (see CMakeLists.txt), so that both codes are tested.
bool AreWideVectorsSwitchedOff()
{
    const char* const tunables = std::getenv("GLIBC_TUNABLES");
    return tunables != nullptr && std::string_view(tunables).find("-AVX2") != std::string_view::npos;
}

TEST(VectorCode, is_the_widest_that_the_machine_runs_and_the_user_allows)
{
#if MU_HAS_AVX2_CODE
    const bool isWide = __builtin_cpu_supports("avx2") != 0 && !AreWideVectorsSwitchedOff();
    EXPECT_EQ(BestVectorCode(), isWide ? VectorCode::Avx2 : VectorCode::Portable);
#else
    EXPECT_EQ(BestVectorCode(), VectorCode::Portable);
#endif
}
} // namespace
