/* Who may open a pad. */
#ifndef VAULTPAD_SOURCE_PRIVILEGE_GATE_H
#define VAULTPAD_SOURCE_PRIVILEGE_GATE_H

namespace vaultpad {

/* Asks the platform whether this process holds the pad's privilege. Returns 1 allowed, 0 denied. */
int check_vpad_api_privilege();

}  // namespace vaultpad

#endif
