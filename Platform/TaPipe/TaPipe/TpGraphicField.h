#pragma once

#include <TaPipe/TpGraphicPosition.h>

#include <zApi/zDat6.h>

// The values of an element as they stand in a container: every number takes 8 bytes, a `z32f` those of a double.
// Reading fails with -984 where a number does not fit its value.

[[nodiscard]] zStatus TpField_Write(zDat6Writer* writer, z32f value);
[[nodiscard]] zStatus TpField_Write(zDat6Writer* writer, z64f value);
[[nodiscard]] zStatus TpField_Write(zDat6Writer* writer, z32s value);
[[nodiscard]] zStatus TpField_Write(zDat6Writer* writer, z32u value);
[[nodiscard]] zStatus TpField_Write(zDat6Writer* writer, TaPipe::TpGraphicPositionType value);
[[nodiscard]] zStatus TpField_Write(zDat6Writer* writer, const zPoint3d32f& value);
[[nodiscard]] zStatus TpField_Write(zDat6Writer* writer, const zPoint64f& value);
[[nodiscard]] zStatus TpField_Write(zDat6Writer* writer, const zPoint3d64f& value);

[[nodiscard]] zStatus TpField_Read(zDat6Reader* reader, z32f* value);
[[nodiscard]] zStatus TpField_Read(zDat6Reader* reader, z64f* value);
[[nodiscard]] zStatus TpField_Read(zDat6Reader* reader, z32s* value);
[[nodiscard]] zStatus TpField_Read(zDat6Reader* reader, z32u* value);
[[nodiscard]] zStatus TpField_Read(zDat6Reader* reader, TaPipe::TpGraphicPositionType* value);
[[nodiscard]] zStatus TpField_Read(zDat6Reader* reader, zPoint3d32f* value);
[[nodiscard]] zStatus TpField_Read(zDat6Reader* reader, zPoint64f* value);
[[nodiscard]] zStatus TpField_Read(zDat6Reader* reader, zPoint3d64f* value);
