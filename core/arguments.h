// All that a proxied method's row is written with.
#pragma once

#include "core/marks.h"
#include "core/object_arguments.h"
#include "core/read_only.h"
#include "core/value_arguments.h"
