// Includes the general descriptors and marks, with which most rows of proxied methods are written.
#pragma once

#include "core/marks.h"
#include "core/object_arguments.h"
#include "core/read_only.h"
#include "core/value_arguments.h"
