#pragma once

#include <TaVision/TvMsgClass.h>

inline constexpr zPoint3d64f TvUNKNOWN_POINT = {zNULL_64F, zNULL_64F, zNULL_64F};

/// A geometric feature. Every family uses the members that it needs; those of its features that were not set are null.
struct TvFeatureMsgClass : TvMsgClass
{
    zPoint3d64f position = TvUNKNOWN_POINT;
    zPoint3d64f direction = TvUNKNOWN_POINT; ///< of a line, or the normal of a circle or plane
    z64f size = zNULL_64F;                   ///< radius of a circle, distance of a plane

    [[nodiscard]] zStatus CopyFrom(const TvFeatureMsgClass& source)
    {
        position = source.position;
        direction = source.direction;
        size = source.size;
        return TvMsgClass::CopyFrom(source);
    }

    [[nodiscard]] zStatus SaveTo(zDat6Writer* writer) const
    {
        zTRY(TvMsgClass::SaveTo(writer));
        zTRY(zDat6_WriteReals(writer, position));
        zTRY(zDat6_WriteReals(writer, direction));
        return zDat6_WriteReals(writer, size);
    }

    [[nodiscard]] zStatus LoadFrom(zDat6Reader* reader)
    {
        zTRY(TvMsgClass::LoadFrom(reader));
        zTRY(zDat6_ReadReals(reader, &position));
        zTRY(zDat6_ReadReals(reader, &direction));
        return zDat6_ReadReals(reader, &size);
    }
};

// What the families offer under names of their own.

[[nodiscard]] inline zStatus TvFeature_Make(zType type, std::size_t count, zAlloc alloc, zObject* out)
{
    return TvMsg_Make<TvFeatureMsgClass>(type, count, alloc, out, [](TvFeatureMsgClass&) { return zOK; });
}

[[nodiscard]] inline zPoint3d64f TvFeature_Point(zObject msg, zType type, zPoint3d64f TvFeatureMsgClass::*member)
{
    return TvMsg_Member<TvFeatureMsgClass>(msg, type, member, TvUNKNOWN_POINT);
}

[[nodiscard]] inline z64f TvFeature_Size(zObject msg, zType type)
{
    return TvMsg_Member<TvFeatureMsgClass>(msg, type, &TvFeatureMsgClass::size, zNULL_64F);
}

template <typename Value>
[[nodiscard]] zStatus TvFeature_Set(zObject msg, zType type, Value TvFeatureMsgClass::*member, const Value* value)
{
    return TvMsg_SetMember<TvFeatureMsgClass>(msg, type, member, value);
}
