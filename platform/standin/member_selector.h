// The states of the member-selector service as a whole.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace tarvex::standin {

/// Forgets every device in every state; the states themselves stay.
void empty_selector_states();

}  // namespace tarvex::standin
