#pragma once

#include <zApi/zTypes.h>

#include <opencv2/core.hpp>

#include <cstddef>

// What OpenCV takes for the masking that InputUtils does. Present if the library is installed.

namespace Bench
{
/// Pixels under a mask, in `out`; the rest is null.
inline void CropByImages(const z16s* pixels, const z8u* mask, std::size_t rows, std::size_t columns, cv::Mat& out)
{
    const auto height = static_cast<int>(rows);
    const auto width = static_cast<int>(columns);
    // The library takes no pointers to constants; nothing is written there.
    const cv::Mat source(height, width, CV_16SC1, const_cast<z16s*>(pixels));
    const cv::Mat kept(height, width, CV_8UC1, const_cast<z8u*>(mask));
    out.create(height, width, CV_16SC1);
    out.setTo(cv::Scalar(zNULL_16S));
    source.copyTo(out, kept);
}

/// Pixels of `first` up to, not including, `end` with heights from `low` to `high`, in `out`; the rest is null.
inline void MaskByImages(const z16s* pixels, int count, int first, int end, int low, int high, cv::Mat& out)
{
    const cv::Mat source(1, count, CV_16SC1, const_cast<z16s*>(pixels));
    out.create(1, count, CV_16SC1);
    out.setTo(cv::Scalar(zNULL_16S));
    const cv::Range columns(first, end);
    cv::Mat kept;
    cv::inRange(source.colRange(columns), cv::Scalar(low), cv::Scalar(high), kept);
    source.colRange(columns).copyTo(out.colRange(columns), kept);
}
} // namespace Bench
