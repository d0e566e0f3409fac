// Takes the stand-in's messages apart and gives them back to it.
//
// SPDX-License-Identifier: Apache-2.0
#include "digest_log.h"

#include <cstring>

#include "stand_in.h"
#include "status_text.h"
#include "tarvex_pd/learning_digest.h"

namespace tarvex::shell {

namespace {

std::uint32_t field_of(const std::uint8_t *entry, const char *name)
{
  std::uint32_t size = 0;
  std::uint32_t value = 0;
  const void *const at =
      p4_pd_tarvex_switch_get_digest_entry_field(const_cast<std::uint8_t *>(entry), "macLearningDigest", name, &size);
  if (at != nullptr && size <= sizeof value) std::memcpy(&value, at, size);
  return value;
}

}  // namespace

digest_log::~digest_log()
{
  if (!listening_) return;
  try {
    give_back();
  } catch (const shell_error &) {
    // The device may be gone, and the callback with it.
  }
}

void digest_log::listen(const target &where)
{
  require_stand_in();  // another driver's messages have a form of their own
  const std::lock_guard lock(switching_);
  callback_.take_place(where.device, [&](const registered_callback &own) {
    require_success(
        p4_pd_tarvex_switch_macLearningDigest_register(where.session, where.device, own.function, own.cookie),
        "asking for learning reports");
  });
  where_ = where;
  listening_ = true;
}

void digest_log::stop()
{
  const std::lock_guard lock(switching_);
  if (listening_.exchange(false)) give_back();
}

void digest_log::give_back()
{
  callback_.give_back(where_.device, [&](const registered_callback &earlier) {
    const pd_status_t status = earlier.function == nullptr
                                   ? p4_pd_tarvex_switch_macLearningDigest_deregister(where_.session, where_.device)
                                   : p4_pd_tarvex_switch_macLearningDigest_register(earlier.session, where_.device,
                                                                                    earlier.function, earlier.cookie);
    require_success(status, "ending the learning reports");
  });
}

std::vector<learned_address> digest_log::latest() const
{
  const std::lock_guard lock(mutex_);
  return {kept_.begin(), kept_.end()};
}

void digest_log::receive(std::uint32_t session, void *message, void *self)
{
  auto &log = *static_cast<digest_log *>(self);
  log.keep(message);
  // With no lock held: the driver is called from within its callback.
  const registered_callback earlier = log.callback_.earlier();
  if (earlier.function == nullptr) {
    p4_pd_tarvex_switch_macLearningDigest_notify_ack(session, message);
  } else {
    reinterpret_cast<standin_digest_cb_t>(earlier.function)(
        earlier.session, static_cast<standin_digest_msg_t *>(message), earlier.cookie);
  }
}

void digest_log::keep(const void *message)
{
  const auto *const digest = static_cast<const standin_digest_msg_t *>(message);
  const std::lock_guard lock(mutex_);
  for (std::uint32_t i = 0; i < digest->entry_count; ++i) {
    const std::uint8_t *const entry = digest->entries + std::size_t{i} * digest->entry_bytes;
    const std::uint64_t mac =
        std::uint64_t{field_of(entry, "ingMd_smacOui")} << 24 | field_of(entry, "ingMd_smacStation");
    kept_.push_back({digest->dev_id, mac, field_of(entry, "ingMd_ingL2Domain"), field_of(entry, "ingMd_ingL2Aintf")});
    if (kept_.size() > most_kept) kept_.pop_front();
  }
}

}  // namespace tarvex::shell
