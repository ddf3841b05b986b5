#include <Eigen/Dense>
#include <Host/Job.h>
#include <Support/Builders.h>
#include <TaPipe/ITool.h>
#include <vector>

#include "CommonTool.h"
