/* Whether the voice guide may run: for executables that link voice-decision-double.cpp instead of the library's unit.
 */
#ifndef VAULTPAD_TESTS_SUPPORT_VOICE_DECISION_DOUBLE_H
#define VAULTPAD_TESTS_SUPPORT_VOICE_DECISION_DOUBLE_H

namespace vaultpad::test {

/* What VoiceGuide::getVoiceEnableStatus() returns; 0 at the start of each test. */
extern int voiceDecision;

}  // namespace vaultpad::test

#endif
