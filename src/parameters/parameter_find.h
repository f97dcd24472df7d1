// Condition search over a parameter set: "name op value" tests with numeric
// operators, tolerances ("+-", "%"), quoted word tests, and plain text search
// (docs/parameters.md, "Find conditions").
#pragma once

#include "params.h"

// 0 when the condition holds for `set`, E_FAIL otherwise.
HRESULT ParamsFind(IParameters* set, tagREFString condition);
