#include <Host/Job.h>
#include <MuTlkHelper/CommonTool.h>
