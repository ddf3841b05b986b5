#include <TaVision/TvMsgClass.h>

zDEFINE_OBJECT_TYPE(TvMsg, zMsgSet, nullptr);

zStatus TvMsgClass::CopyFrom(const TvMsgClass& source)
{
    zTRY(xzMsgSet_CopyStamps(this, &source));
    boundingBox = source.boundingBox;
    transform = source.transform;
    spaceType = source.spaceType;
    return zOK;
}

zStatus TvMsgClass::SaveTo(zDat6Writer* writer) const
{
    zTRY(xzMsgSet_SaveStamps(this, writer));
    zTRY(zDat6_WriteReals(writer, boundingBox));
    zTRY(zDat6_WriteReals(writer, transform));
    return zDat6_WriteSigned(writer, spaceType);
}

zStatus TvMsgClass::LoadFrom(zDat6Reader* reader)
{
    zTRY(xzMsgSet_LoadStamps(this, reader));
    zTRY(zDat6_ReadReals(reader, &boundingBox));
    zTRY(zDat6_ReadReals(reader, &transform));
    return zDat6_ReadSigned(reader, &spaceType);
}
