#include <TaPipe/TpGraphicField.h>

#include <zApi/zFault.h>

#include <bit>
#include <cmath>
#include <limits>

namespace
{
/// True if a `z32f` holds `value`: then it comes back bit by bit.
bool IsSingle(z64f value)
{
    // Compared first: a conversion out of range is undefined.
    if (std::isfinite(value) && std::abs(value) > std::numeric_limits<z32f>::max())
    {
        return false;
    }
    return std::bit_cast<z64u>(z64f{static_cast<z32f>(value)}) == std::bit_cast<z64u>(value);
}
} // namespace

zStatus TpField_Write(zDat6Writer* writer, z32f value)
{
    return zDat6_WriteReals(writer, z64f{value});
}

zStatus TpField_Write(zDat6Writer* writer, z64f value)
{
    return zDat6_WriteReals(writer, value);
}

zStatus TpField_Write(zDat6Writer* writer, z32s value)
{
    return zDat6_WriteSigned(writer, value);
}

zStatus TpField_Write(zDat6Writer* writer, z32u value)
{
    return zDat6_WriteNumber(writer, value);
}

zStatus TpField_Write(zDat6Writer* writer, TaPipe::TpGraphicPositionType value)
{
    return TpField_Write(writer, static_cast<z32s>(value));
}

zStatus TpField_Write(zDat6Writer* writer, const zPoint3d32f& value)
{
    return zDat6_WriteReals(writer, zPoint3d64f{value.x, value.y, value.z});
}

zStatus TpField_Write(zDat6Writer* writer, const zPoint64f& value)
{
    return zDat6_WriteReals(writer, value);
}

zStatus TpField_Write(zDat6Writer* writer, const zPoint3d64f& value)
{
    return zDat6_WriteReals(writer, value);
}

zStatus TpField_Read(zDat6Reader* reader, z32f* value)
{
    z64f stored = 0;
    zTRY(zDat6_ReadReals(reader, &stored));
    if (!IsSingle(stored))
    {
        return zERROR_FORMAT;
    }
    *value = static_cast<z32f>(stored);
    return zOK;
}

zStatus TpField_Read(zDat6Reader* reader, z64f* value)
{
    return zDat6_ReadReals(reader, value);
}

zStatus TpField_Read(zDat6Reader* reader, z32s* value)
{
    return zDat6_ReadSigned(reader, value);
}

zStatus TpField_Read(zDat6Reader* reader, z32u* value)
{
    z64u stored = 0;
    zTRY(zDat6_ReadNumber(reader, std::numeric_limits<z32u>::max(), &stored));
    *value = static_cast<z32u>(stored);
    return zOK;
}

zStatus TpField_Read(zDat6Reader* reader, TaPipe::TpGraphicPositionType* value)
{
    z32s stored = 0;
    zTRY(TpField_Read(reader, &stored));
    *value = static_cast<TaPipe::TpGraphicPositionType>(stored);
    return zOK;
}

zStatus TpField_Read(zDat6Reader* reader, zPoint3d32f* value)
{
    zTRY(TpField_Read(reader, &value->x));
    zTRY(TpField_Read(reader, &value->y));
    return TpField_Read(reader, &value->z);
}

zStatus TpField_Read(zDat6Reader* reader, zPoint64f* value)
{
    return zDat6_ReadReals(reader, value);
}

zStatus TpField_Read(zDat6Reader* reader, zPoint3d64f* value)
{
    return zDat6_ReadReals(reader, value);
}
