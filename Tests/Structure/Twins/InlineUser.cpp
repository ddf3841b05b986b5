// Uses inline operations of each library that has some, as the library might.
#include <MuVision/RefFrame.h>
#include <MuVision/Sectors.h>
#include <zApi/zArrayList.h>
#include <zApi/zSerializer.h>
#include <zVision/zM3dTransform2d.h>

int UseInlineOperations(void* list, void* serializer, zPoint64f* point);

int UseInlineOperations(void* list, void* serializer, zPoint64f* point)
{
    const zM3dTransform2d transform{1, 0, 0, 0, 1, 0};
    const zPoint3d64f moved = Mu::Vision::RefFrame().Apply(zPoint3d64f{1, 2, 3});
    const Mu::Vision::AnnularSector3d<double> sector;
    return zArrayList_Add(list, point) + xzSerializer_WritePrimitives(serializer, &moved, 8, 3) +
           zM3dTransform2d_Apply(&transform, point, point) +
           Mu::Vision::IsPointInAnnularSector(sector, {moved.x, moved.y, moved.z}, 1);
}
