// Takes the stand-in's messages apart and gives them back to it.
//
// SPDX-License-Identifier: Apache-2.0
#include "digest_log.h"

#include "catalogue.h"
#include "stand_in.h"
#include "status_text.h"

namespace tarvex::shell {

namespace {

/// Has the driver call `callback` with the reports of the digest.
std::uint32_t register_callback(std::uint32_t session, const target &where, const registered_callback &callback)
{
  target of_session = where;
  of_session.session = session;
  return function_call(function_for(family_id::digest_register), of_session)
      .give(argument_kind::callback, reinterpret_cast<const void *>(callback.function))
      .give(argument_kind::cookie, static_cast<const void *>(callback.cookie))
      .status();
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
  the_digest();
  callback_.take_place(where.device, [&](const registered_callback &own) {
    require_success(register_callback(where.session, where, own), "asking for learning reports");
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
                                   ? function_call(function_for(family_id::digest_deregister), where_).status()
                                   : register_callback(earlier.session, where_, earlier);
    require_success(status, "ending the learning reports");
  });
}

std::vector<learned_entry> digest_log::latest() const
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
    target of_session;
    of_session.session = session;
    function_call(function_for(family_id::digest_notify_ack), of_session)
        .give(argument_kind::digest_message, static_cast<const void *>(message))
        .make();
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
    kept_.push_back({digest->dev_id, {entry, entry + digest->entry_bytes}});
    if (kept_.size() > most_kept) kept_.pop_front();
  }
}

}  // namespace tarvex::shell
