#pragma once

#include <TaVision/TvMsgClass.h>

/// The kind of array in which a family keeps its samples, and how it is asked.
struct TvArrayKind
{
    zType type;
    zStatus (*construct)(zObject* array, zType itemType, std::size_t length, std::size_t width, zAlloc alloc);
    std::size_t (*length)(zObject array);
    std::size_t (*width)(zObject array);
    zType (*itemType)(zObject array);
    void* (*items)(zObject array);
};

/// Rows of `zArray2`: surfaces and images.
extern const TvArrayKind TvGRID_ARRAYS;

/// An array of a message, with what is asked of it most.
struct TvSamples
{
    zObject array = nullptr; ///< holds a reference; null if the message has no such samples
    zType itemType = nullptr;
    unsigned char* items = nullptr; ///< null if there are none
};

/// What every message with samples has: a grid of points, and intensities in step with them if there are any.
struct TvDataMsgClass : TvMsgClass
{
    std::size_t width = 0;
    std::size_t length = 0;
    zPoint3d64f offset = {0, 0, 0};
    zPoint3d64f scale = {1, 1, 1};
    const TvArrayKind* kind = nullptr;
    TvSamples points; ///< the pixels of an image
    TvSamples intensity;

    void ReleaseParts() noexcept;
    [[nodiscard]] zStatus CopyFrom(const TvDataMsgClass& source);
    [[nodiscard]] zStatus SaveTo(zDat6Writer* writer) const;

    /// Gives a new message what was written, if its points lie in an array of that kind, of an item type that
    /// `isPointType` takes. -984 for others, for more than `TvMSG_MAX_ITEMS`, and for intensities out of step.
    [[nodiscard]] zStatus LoadGrid(zDat6Reader* reader, const TvArrayKind& arrayKind, bool (*isPointType)(zType));

    /// Gives a new message its points, without defined values. -997 beyond `TvMSG_MAX_ITEMS`.
    [[nodiscard]] zStatus BuildGrid(const TvArrayKind& arrayKind, zType itemType, std::size_t newLength,
                                    std::size_t newWidth);

    /// Gives a new message its points, all null. `pointType` is made of `z16s` coordinates.
    [[nodiscard]] zStatus Build(const TvArrayKind& arrayKind, zType pointType, std::size_t newLength,
                                std::size_t newWidth);
};

// What the families offer under names of their own. `msg` is null if the handle was of another type.

/// Points or intensities.
using TvWhichSamples = TvSamples TvDataMsgClass::*;

[[nodiscard]] void* TvSamples_At(const TvDataMsgClass* msg, TvWhichSamples which, std::size_t row, std::size_t column);
[[nodiscard]] void* TvSamples_Items(const TvDataMsgClass* msg, TvWhichSamples which);
[[nodiscard]] zObject TvSamples_Array(const TvDataMsgClass* msg, TvWhichSamples which, std::size_t index);
[[nodiscard]] zType TvSamples_Type(const TvDataMsgClass* msg, TvWhichSamples which);
[[nodiscard]] zStatus TvSamples_CopyPoints(TvDataMsgClass* msg, zObject from);
[[nodiscard]] zStatus TvSamples_CopyIntensity(TvDataMsgClass* msg, zObject from);
[[nodiscard]] zStatus TvSamples_AllocateIntensity(TvDataMsgClass* msg, zType itemType);
