#pragma once

#include <TaApi/Datum.h>
#include <TaApi/JsonSerializer.h>
#include <TaApi/Node.h>
#include <TaApi/NodeVisitor.h>
#include <TaApi/PropertiesValue.h>
#include <TaApi/Structure.h>
