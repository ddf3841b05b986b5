#include <MuVision/RefFrame.h>

namespace Mu::Vision
{
RefFrame& RefFrame::SetIdentity()
{
    *this = RefFrame();
    return *this;
}

bool RefFrame::IsIdentity() const
{
    const bool turns = rows.xx != 1.0 || rows.yy != 1.0 || rows.zz != 1.0 || rows.xy != 0.0 || rows.xz != 0.0 ||
                       rows.yx != 0.0 || rows.yz != 0.0 || rows.zx != 0.0 || rows.zy != 0.0;
    const bool moves = rows.xt != 0.0 || rows.yt != 0.0 || rows.zt != 0.0;
    return !turns && !moves;
}
} // namespace Mu::Vision
