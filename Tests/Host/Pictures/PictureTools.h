#pragma once

#include <Host/Pictures/Picture.h>

#include <Support/Builders.h>

#include <TaPipe/TpGraphic.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <string_view>
#include <vector>

/// Words for tests of pictures: drawn in one line, looked at by places of the world.
namespace Mu::Host::Testing
{
inline Ta::Object<void*> NewGraphic()
{
    Ta::Object<void*> graphic;
    MU_CHECK(TpGraphic_Construct(graphic.Out(), nullptr));
    return graphic;
}

/// A surface of 11 x 11 samples at 0 mm, 1 mm apart from (0, 0).
inline Support::SurfaceBuilder FlatSurface()
{
    return Support::Surface(Support::Rows<z16s>(11, std::vector<z16s>(11, 0)));
}

/// A surface of 60 x 40 samples, 0.5 mm apart from (100, -20), which rises from 3 mm by 0.01 mm a column and 0.1 mm a
/// row. The first 9 samples of row 7 are null.
inline Ta::Object<void*> SlopedSurface()
{
    Support::Rows<z16s> rows;
    for (int row = 0; row < 40; ++row)
    {
        auto& heights = rows.emplace_back();
        for (int column = 0; column < 60; ++column)
        {
            heights.push_back(static_cast<z16s>(row == 7 && column < 9 ? Support::NullPixel : 10 * row + column));
        }
    }
    return Support::Surface(rows).Scale(0.5, 0.5, 0.01).Offset(100, -20, 3);
}

inline Result Measured(std::string output, double value, Decision decision, const Limits& limits = {})
{
    return {"tool", "Type", std::move(output), {}, TaPipe::PipeDataType::Measurement, ResultState::Value, value,
            "mm",   limits, decision};
}

inline ScanResult ScanOf(std::vector<Result> results = {})
{
    ScanResult scan;
    scan.name = "scan.tif";
    scan.width = 11;
    scan.length = 11;
    scan.validCount = 121;
    scan.results = std::move(results);
    return scan;
}

/// A picture of a message, with graphics, on a page whose pixels can be read.
inline Picture Drawn(void* message, const std::vector<void*>& graphics = {}, const ScanResult& scan = ScanOf(),
                     PictureFormat format = PictureFormat::Png)
{
    return {PictureContent{message, graphics, &scan}, format};
}

inline std::string Encoded(void* message, PictureFormat format, const std::vector<void*>& graphics = {},
                           const ScanResult& scan = ScanOf())
{
    return DrawPicture({message, graphics, &scan}, format);
}

inline double Difference(const Colour& a, const Colour& b)
{
    return std::max({std::abs(a.red - b.red), std::abs(a.green - b.green), std::abs(a.blue - b.blue)});
}

/// The pixel in which a place of the page lies.
inline Colour PixelAt(const Picture& picture, const Place& place)
{
    return picture.Page().PixelAt(static_cast<std::size_t>(place.x), static_cast<std::size_t>(place.y));
}

/// Whether a colour stands at a place of the page, or in a pixel beside it.
inline testing::AssertionResult ShowsOnPage(const Picture& picture, const Place& place, const Colour& colour)
{
    double nearest = 1;
    for (const double x : {-1.0, 0.0, 1.0})
    {
        for (const double y : {-1.0, 0.0, 1.0})
        {
            nearest = std::min(nearest, Difference(PixelAt(picture, {place.x + x, place.y + y}), colour));
        }
    }
    return nearest < 0.08 ? testing::AssertionSuccess()
                          : testing::AssertionFailure()
                                << "the colour is off by " << nearest << " at " << place.x << ", " << place.y;
}

/// The same at a place of the world.
inline testing::AssertionResult Shows(const Picture& picture, double across, double up, const Colour& colour)
{
    return ShowsOnPage(picture, picture.DataView()->OnPage(across, up), colour);
}

inline bool HasText(const Picture& picture, std::string_view part)
{
    return std::ranges::any_of(picture.Page().Texts(), [part](const PlacedText& placed) {
        return placed.text.find(part) != std::string::npos;
    });
}

inline testing::AssertionResult TextsAreOnThePage(const Picture& picture)
{
    const Area page = picture.Page().Page();
    for (const PlacedText& placed : picture.Page().Texts())
    {
        if (!page.Holds({placed.extents.left, placed.extents.top}) ||
            !page.Holds({placed.extents.Right(), placed.extents.Bottom()}))
        {
            return testing::AssertionFailure() << "\"" << placed.text << "\" leaves the page";
        }
    }
    return testing::AssertionSuccess();
}
} // namespace Mu::Host::Testing
