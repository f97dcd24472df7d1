// Factories of framework objects that the module makes by class name.
#pragma once

#include "smart_ptr.h"

struct BASEObject {
  // A new "ParametersCreatable", or null.
  static IParametersCreatable* CreateParameters();
  // A new "DblBuffer" (a vector of numbers), or null.
  static IDblVector* CreateDBLBuffer();
};
