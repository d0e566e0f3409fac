// All families that exported functions of the pipeline are made of.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "default_entries.h"
#include "entry_read.h"
#include "entry_write.h"
#include "idle_time.h"
#include "indirect_entries.h"
#include "placement_data.h"
#include "profile_members.h"
#include "profile_read_back.h"
#include "selector_groups.h"
#include "table_properties.h"
