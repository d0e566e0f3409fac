// SPDX-License-Identifier: Apache-2.0
#include "time_text.h"

#include <array>
#include <ctime>

namespace tarvex::shell {

std::string time_text(std::chrono::system_clock::time_point time)
{
  const std::time_t seconds = std::chrono::system_clock::to_time_t(time);
  const auto within = std::chrono::duration_cast<std::chrono::milliseconds>(time.time_since_epoch()).count() % 1000;
  std::tm parts{};
  gmtime_r(&seconds, &parts);
  std::array<char, 40> text;
  const std::size_t length = std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%S", &parts);
  const std::string thousandths = std::to_string(1000 + within).substr(1);
  return std::string(text.data(), length) + '.' + thousandths + 'Z';
}

}  // namespace tarvex::shell
