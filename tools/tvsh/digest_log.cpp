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
  if (listening_) p4_pd_tarvex_switch_macLearningDigest_deregister(where_.session, where_.device);
}

void digest_log::listen(const target &where)
{
  require_stand_in();  // another driver's messages have a form of their own
  const std::lock_guard lock(switching_);
  require_success(p4_pd_tarvex_switch_macLearningDigest_register(where.session, where.device,
                                                                 reinterpret_cast<pd_callback_t>(&receive), this),
                  "asking for learning reports");
  where_ = where;
  listening_ = true;
}

void digest_log::stop()
{
  const std::lock_guard lock(switching_);
  if (!listening_.exchange(false)) return;
  require_success(p4_pd_tarvex_switch_macLearningDigest_deregister(where_.session, where_.device),
                  "ending the learning reports");
}

std::vector<learned_address> digest_log::latest() const
{
  const std::lock_guard lock(mutex_);
  return {kept_.begin(), kept_.end()};
}

void digest_log::receive(std::uint32_t session, void *message, void *self)
{
  static_cast<digest_log *>(self)->keep(session, message);
}

void digest_log::keep(std::uint32_t session, void *message)
{
  const auto *const digest = static_cast<const standin_digest_msg_t *>(message);
  {
    const std::lock_guard lock(mutex_);
    for (std::uint32_t i = 0; i < digest->entry_count; ++i) {
      const std::uint8_t *const entry = digest->entries + std::size_t{i} * digest->entry_bytes;
      const std::uint64_t mac =
          std::uint64_t{field_of(entry, "ingMd_smacOui")} << 24 | field_of(entry, "ingMd_smacStation");
      kept_.push_back({digest->dev_id, mac, field_of(entry, "ingMd_ingL2Domain"), field_of(entry, "ingMd_ingL2Aintf")});
      if (kept_.size() > most_kept) kept_.pop_front();
    }
  }
  // With no lock held: the driver is called from within its callback.
  p4_pd_tarvex_switch_macLearningDigest_notify_ack(session, message);
}

}  // namespace tarvex::shell
