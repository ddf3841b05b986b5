#include <TaVision/TvMeasureMsg.h>
#include <TaVision/TvMsgClass.h>
#include <TaVision/TvNullMsg.h>

#include <limits>

namespace
{
constexpr zPoint3d64f UNKNOWN_POSITION = {zNULL_64F, zNULL_64F, zNULL_64F};

struct Measure : TvMsgClass
{
    z64f value = zNULL_64F;
    zPoint3d64f labelPosition = UNKNOWN_POSITION;
    bool passed = true;
    z32u sourceId = 0;

    [[nodiscard]] zStatus CopyFrom(const Measure& source)
    {
        zTRY(TvMsgClass::CopyFrom(source));
        value = source.value;
        labelPosition = source.labelPosition;
        passed = source.passed;
        sourceId = source.sourceId;
        return zOK;
    }

    [[nodiscard]] zStatus SaveTo(zDat6Writer* writer) const
    {
        zTRY(TvMsgClass::SaveTo(writer));
        zTRY(zDat6_WriteReals(writer, value));
        zTRY(zDat6_WriteReals(writer, labelPosition));
        zTRY(zDat6_WriteNumber(writer, passed ? 1 : 0));
        return zDat6_WriteNumber(writer, sourceId);
    }

    [[nodiscard]] zStatus LoadFrom(zDat6Reader* reader)
    {
        z64u storedPassed = 0;
        z64u storedId = 0;
        zTRY(TvMsgClass::LoadFrom(reader));
        zTRY(zDat6_ReadReals(reader, &value));
        zTRY(zDat6_ReadReals(reader, &labelPosition));
        zTRY(zDat6_ReadNumber(reader, 1, &storedPassed));
        zTRY(zDat6_ReadNumber(reader, std::numeric_limits<z32u>::max(), &storedId));
        passed = storedPassed == 1;
        sourceId = static_cast<z32u>(storedId);
        return zOK;
    }
};

template <typename Value>
Value Get(zObject msg, Value Measure::*member, const Value& otherwise)
{
    return TvMsg_Member<Measure>(msg, zTypeOf(TvMeasureMsg), member, otherwise);
}

bool IsNull(zObject msg)
{
    return xzCastClass_ObjectIs(msg, zTypeOf(TvNullMsg));
}
} // namespace

zDEFINE_OBJECT_TYPE(TvMeasureMsg, TvMsg, &TvMsg_Ops<Measure>);

zStatus TvMeasureMsg_Construct(TvMeasureMsg* msg, std::size_t count, z32u sourceId, zAlloc alloc)
{
    zFAULT_GATE();
    return TvMsg_Make<Measure>(zTypeOf(TvMeasureMsg), count, alloc, msg, [sourceId](Measure& made) {
        made.sourceId = sourceId;
        return zOK;
    });
}

z32u TvMeasureMsg_SourceId(TvMeasureMsg msg)
{
    return Get(msg, &Measure::sourceId, z32u{0});
}

z64f TvMeasureMsg_Value(TvMeasureMsg msg)
{
    return Get(msg, &Measure::value, zNULL_64F);
}

zStatus TvMeasureMsg_SetValue(TvMeasureMsg msg, z64f value)
{
    zFAULT_GATE();
    return TvMsg_SetMember<Measure>(msg, zTypeOf(TvMeasureMsg), &Measure::value, &value);
}

bool TvMeasureMsg_Status(TvMeasureMsg msg)
{
    return Get(msg, &Measure::passed, false);
}

zStatus TvMeasureMsg_SetStatus(TvMeasureMsg msg, bool passed)
{
    zFAULT_GATE();
    return TvMsg_SetMember<Measure>(msg, zTypeOf(TvMeasureMsg), &Measure::passed, &passed);
}

bool TvMeasureMsg_HasLabelPosition(TvMeasureMsg msg)
{
    return TvMeasureMsg_LabelPosition(msg).x != zNULL_64F;
}

zPoint3d64f TvMeasureMsg_LabelPosition(TvMeasureMsg msg)
{
    return Get(msg, &Measure::labelPosition, UNKNOWN_POSITION);
}

zStatus TvMeasureMsg_SetLabelPosition(TvMeasureMsg msg, z64f x, z64f y, z64f z)
{
    zFAULT_GATE();
    if (IsNull(msg))
    {
        return zOK;
    }
    const zPoint3d64f position = {x, y, z};
    return TvMsg_SetMember<Measure>(msg, zTypeOf(TvMeasureMsg), &Measure::labelPosition, &position);
}

zStatus TvMeasureMsg_SetStampAt(TvMeasureMsg msg, std::size_t index, const zStamp* stamp)
{
    zFAULT_GATE();
    const bool isTaken = IsNull(msg) || xzCastClass_ObjectIs(msg, zTypeOf(TvMeasureMsg));
    return isTaken ? zMsgSet_SetStampAt(msg, index, stamp) : zERROR_PARAMETER;
}
