// All families of the text face.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "counter_labels.h"
#include "equality.h"
#include "placement_text.h"
#include "print_text.h"
#include "schema_text.h"
#include "value_text.h"
