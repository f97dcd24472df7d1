// Everything a host needs to load the parameter module and use its classes.
#pragma once

#include "base_types.h"
#include "result_codes.h"
#include "identities.h"
#include "framework_interfaces.h"
#include "framework_streams.h"
#include "collection_interfaces.h"
#include "module_interfaces.h"
#include "framework_storage.h"
#include "module_entry.h"
