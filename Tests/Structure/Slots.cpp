#include <MuTlkHelper/CommonTool.h>
#include <TaPipe/CommonTool.h>
