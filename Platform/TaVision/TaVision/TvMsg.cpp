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
