// Routes for tests, written as text.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <initializer_list>

#include "route_file.h"

namespace tarvex::route_load {

inline route route_of(const std::string &line) { return std::get<route>(parse_line(line)); }
inline prefix prefix_of(const std::string &text) { return route_of(text + " 1").destination; }

/// Sorted, as read_route_file gives them.
inline std::vector<route> routes_of(std::initializer_list<const char *> lines)
{
  std::vector<route> routes;
  for (const char *line : lines) routes.push_back(route_of(line));
  std::ranges::sort(routes, {}, &route::destination);
  return routes;
}

}  // namespace tarvex::route_load
