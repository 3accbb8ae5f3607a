// Includes everything that the row of a proxied method is written with.
#pragma once

#include "core/marks.h"
#include "core/object_arguments.h"
#include "core/read_only.h"
#include "core/value_arguments.h"
